#!/usr/bin/env python3
"""Draws the pictures of the sample skin's library window: python3 make-library-images.py [OUTPUT_FOLDER]

The scan's progress bar (PGBL, PGBX, PGBR behind, PGFL, PGFX, PGFR filled), the balance track
bar (TrackBarThumb, its glow, and the channel band of ProgressFill) and the jog wheel
(InchingSwitchMask and the 48 frames InchingSwitch0..47, its mark a step of 7.5 degrees further
round in each). Drawing helpers and the palette come from make-sample-images.py.
"""
import importlib.util
import math
import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
_spec = importlib.util.spec_from_file_location('sample_images', os.path.join(HERE, 'make-sample-images.py'))
S = importlib.util.module_from_spec(_spec)
_spec.loader.exec_module(S)

TRACK_HEIGHT = 14
FILL_HEIGHT = 12
CAP = 6


def rounded_bar(width, height, cap, left, right, top, bottom, edge):
    """A piece of a rounded bar cap pixels round at the ends that left/right say it has."""
    r = height / 2.0

    def shade(x, y):
        cx = x
        if left and x < r:
            cx = r
        if right and x > width - r:
            cx = width - r
        d = math.hypot(x - cx, y - r)
        if d > r:
            return (0.0, 0.0, 0.0, 0.0)
        c = S.mix(top, bottom, y / height)
        if d > r - 1.0:
            c = edge
        return c + (1.0,)
    return S.render(width, height, shade)


def track_pieces():
    top, bottom, edge = S.hexc(0x0E121C), S.hexc(0x1A2131), S.hexc(0x4A5570)
    return {
        'ScanBackLeft': (CAP, TRACK_HEIGHT, rounded_bar(CAP, TRACK_HEIGHT, CAP, True, False, top, bottom, edge)),
        'ScanBackMiddle': (2, TRACK_HEIGHT, rounded_bar(2, TRACK_HEIGHT, CAP, False, False, top, bottom, edge)),
        'ScanBackRight': (CAP, TRACK_HEIGHT, rounded_bar(CAP, TRACK_HEIGHT, CAP, False, True, top, bottom, edge)),
    }


def fill_pieces():
    top, bottom, edge = S.GLOW, S.ACCENT_DEEP, S.ACCENT
    cap = CAP - 1
    return {
        'ScanFillLeft': (cap, FILL_HEIGHT, rounded_bar(cap, FILL_HEIGHT, cap, True, False, top, bottom, edge)),
        'ScanFillMiddle': (2, FILL_HEIGHT, rounded_bar(2, FILL_HEIGHT, cap, False, False, top, bottom, edge)),
        'ScanFillRight': (cap, FILL_HEIGHT, rounded_bar(cap, FILL_HEIGHT, cap, False, True, top, bottom, edge)),
    }


def channel(width, height):
    """The track bar's channel is the band of rows height / 2 - 2 to height / 2 + 1; the seek bar
    draws the same picture as its fill."""
    def shade(x, y):
        middle = height // 2 - 2
        if middle <= y < middle + 4:
            c = S.mix(S.ACCENT, S.ACCENT_DEEP, (y - middle) / 3.0)
            if y == middle:
                c = S.GLOW
            return c + (1.0,)
        return (0.0, 0.0, 0.0, 0.0)
    return S.render(width, height, shade)


def thumb(width, height, glow):
    r = 3.0

    def shade(x, y):
        cx = min(max(x, r + 0.5), width - r - 0.5)
        cy = min(max(y, r + 0.5), height - r - 0.5)
        d = math.hypot(x - cx, y - cy)
        if d > r:
            return (0.0, 0.0, 0.0, 0.0)
        c = S.mix(S.hexc(0x6C7A9C) if not glow else S.GLOW, S.hexc(0x3A4560) if not glow else S.ACCENT, y / height)
        if d > r - 1.0:
            c = S.ACCENT if not glow else S.WHITE
        # Two grip lines across the middle.
        if abs(y - height / 2.0 + 2) < 0.6 or abs(y - height / 2.0 + 2 - 4) < 0.6:
            if 3 <= x <= width - 3:
                c = S.hexc(0x222836)
        return c + (1.0,)
    return S.render(width, height, shade)


def wheel_mask(size):
    c0 = size / 2.0

    def shade(x, y):
        d = math.hypot(x - c0, y - c0)
        if d > c0 - 0.5:
            return (0.0, 0.0, 0.0, 0.0)
        c = S.mix(S.hexc(0x0E121C), S.hexc(0x262D3F), y / size)
        if d > c0 - 2.0:
            c = S.hexc(0x4A5570)
        return c + (1.0,)
    return S.render(size, size, shade)


def wheel_frame(size, index):
    c0 = size / 2.0
    radius = c0 - 1.0
    turn = math.radians(index * 360.0 / 48.0)

    def shade(x, y):
        dx, dy = x - c0, y - c0
        d = math.hypot(dx, dy)
        if d > radius:
            return (0.0, 0.0, 0.0, 0.0)
        angle = math.atan2(dy, dx) - turn
        # Grooves round the rim turn with the wheel; the face is lit from the top left.
        c = S.mix(S.hexc(0x56648A), S.hexc(0x262D3F), (dx + dy + 2 * radius) / (4 * radius))
        if d > radius * 0.72 and math.cos(angle * 24) > 0.55:
            c = S.mix(c, S.hexc(0x171C28), 0.6)
        if d > radius - 1.2:
            c = S.hexc(0x5C6886)
        mark_x = c0 + math.cos(turn - math.pi / 2) * radius * 0.52
        mark_y = c0 + math.sin(turn - math.pi / 2) * radius * 0.52
        if math.hypot(x - mark_x, y - mark_y) <= radius * 0.12:
            c = S.ACCENT
        return c + (1.0,)
    return S.render(size, size, shade)


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else os.path.join(HERE, 'sample', 'Images', 'Library')
    os.makedirs(out, exist_ok=True)
    for name, (width, height, pixels) in list(track_pieces().items()) + list(fill_pieces().items()):
        S.write_png(os.path.join(out, name + '.png'), width, height, pixels)
    S.write_png(os.path.join(out, 'Channel.png'), 24, 12, channel(24, 12))
    S.write_png(os.path.join(out, 'Thumb.png'), 11, 20, thumb(11, 20, False))
    S.write_png(os.path.join(out, 'ThumbGlow.png'), 11, 20, thumb(11, 20, True))
    S.write_png(os.path.join(out, 'WheelMask.png'), 76, 76, wheel_mask(76))
    for index in range(48):
        S.write_png(os.path.join(out, 'Wheel%d.png' % index), 64, 64, wheel_frame(64, index))


if __name__ == '__main__':
    main()
