#!/usr/bin/env python3
"""Draws the few small pictures of the benchmark skins: python3 make-bench-images.py [OUTPUT_FOLDER]

The skins themselves are written at build time by GenerateSkins.cmake, which copies these
pictures under as many names as a skin needs. Pure Python, so that a change is a new run.
"""
import importlib.util
import os
import sys

# The PNG writer of the sample skin's pictures.
_spec = importlib.util.spec_from_file_location(
    'sample_images', os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', 'examples', 'skins',
                                  'make-sample-images.py'))
_sample = importlib.util.module_from_spec(_spec)
_spec.loader.exec_module(_sample)


def write_png(path, width, height, pixel):
    """pixel(x, y) -> (r, g, b, a) bytes."""
    _sample.write_png(path, width, height, [[pixel(x, y) for x in range(width)] for y in range(height)])


def texture(x, y):
    # Wood-like stripes with a little grain: every pixel differs from its neighbours, so a
    # copy from the wrong place shows.
    grain = ((x * 7 + y * 13) ^ (x * y)) % 23
    stripe = (y + (x // 9) * 3) % 16
    r = 150 + stripe * 3 + grain
    g = 100 + stripe * 2 + grain // 2
    b = 50 + stripe + grain // 3
    return (min(r, 255), min(g, 255), min(b, 255), 255)


def rounded(width, height, radius, colour, edge):
    """A rounded button face: colour inside, edge on the border, soft alpha at the corners."""
    def pixel(x, y):
        cx = min(max(x + 0.5, radius), width - radius)
        cy = min(max(y + 0.5, radius), height - radius)
        d = ((x + 0.5 - cx) ** 2 + (y + 0.5 - cy) ** 2) ** 0.5
        alpha = max(0.0, min(1.0, radius - d + 0.5))
        border = d > radius - 2.0 or x < 1 or y < 1 or x >= width - 1 or y >= height - 1
        shade = 1.0 - 0.35 * y / height
        base = edge if border else tuple(int(c * shade) for c in colour)
        return base + (int(alpha * 255),)
    return pixel


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(os.path.abspath(__file__)), 'images')
    os.makedirs(out, exist_ok=True)
    write_png(os.path.join(out, 'Texture.png'), 64, 64, texture)
    faces = {
        'BtnNormal': ((70, 110, 190), (30, 50, 100)),
        'BtnHover': ((90, 150, 230), (40, 70, 140)),
        'BtnPressed': ((40, 70, 140), (20, 30, 70)),
        'BtnDisabled': ((140, 140, 140), (90, 90, 90)),
    }
    for name, (colour, edge) in faces.items():
        write_png(os.path.join(out, name + '.png'), 48, 32, rounded(48, 32, 8, colour, edge))
    write_png(os.path.join(out, 'Icon.png'), 16, 16, rounded(16, 16, 4, (200, 60, 60), (120, 20, 20)))


if __name__ == '__main__':
    main()
