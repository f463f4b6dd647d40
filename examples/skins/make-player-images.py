#!/usr/bin/env python3
"""Draws the pictures of the sample skin's player window: python3 make-player-images.py [OUTPUT_FOLDER]

  list header   VistaBtn0 (the header while there are no columns), VistaBtn1 (a column at rest),
                VistaBtn2 (under the mouse), VistaBtn3 (the current column): 21 high, caps of 4
  group box     BarX: the bar across the top of a group box, 24 high (its ends and middle alike)
Drawing helpers and the palette come from make-sample-images.py.
"""
import importlib.util
import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
_spec = importlib.util.spec_from_file_location('sample_images', os.path.join(HERE, 'make-sample-images.py'))
S = importlib.util.module_from_spec(_spec)
_spec.loader.exec_module(S)


def header(width, height, top, bottom, rule):
    """A header cell: a soft gradient, a divider at its right edge and a rule at its foot."""
    def shade(x, y):
        c = S.mix(top, bottom, y / height)
        if y >= height - 1:
            c = rule
        elif x >= width - 1 and 3 <= y < height - 3:
            c = S.hexc(0x141926)
        return c + (1.0,)
    return S.render(width, height, shade)


def group_bar(width, height):
    """The group box's bar: a band with an accent line at its foot, alike in every column, since
    the box draws the same picture as its left end, its middle and its right end."""
    def shade(x, y):
        c = S.mix(S.hexc(0x2E3850), S.hexc(0x242C40), y / height)
        if y >= height - 2:
            c = S.ACCENT
        return c + (1.0,)
    return S.render(width, height, shade)


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else os.path.join(HERE, 'sample', 'Images', 'Player')
    os.makedirs(out, exist_ok=True)

    def save(name, width, height, pixels):
        S.write_png(os.path.join(out, name + '.png'), width, height, pixels)

    save('HeaderEmpty', 12, 21, header(12, 21, S.hexc(0x283147), S.hexc(0x20283A), S.STEEL))
    save('HeaderRest', 12, 21, header(12, 21, S.hexc(0x2E3850), S.hexc(0x232B3E), S.STEEL))
    save('HeaderHover', 12, 21, header(12, 21, S.hexc(0x39466A), S.hexc(0x2A3348), S.GLOW))
    save('HeaderCurrent', 12, 21, header(12, 21, S.hexc(0x2A4C78), S.hexc(0x1F3A5E), S.ACCENT))
    save('GroupBar', 4, 24, group_bar(4, 24))


if __name__ == '__main__':
    main()
