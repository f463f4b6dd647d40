#!/usr/bin/env python3
"""Draws the pictures of the sample skin's browser window and of the player's seek bar and volume:
python3 make-browse-images.py [OUTPUT_FOLDER]

  tab strip     BarLeft, BarXScale, BarRight (the strip behind the tabs, 32 high) and the tab faces
                TabbarButtonActive, TabbarButtonMouseOn, TabbarButtonMenuSelected (one size: a
                left half, the middle column that is tiled, a right half) with TabbarArrow
  folder bars   the same three faces with "Png" at the end of their names, 32 high
  scroll bar    arrows NormalTop/HoverTop/ClickTop and NormalBottom/HoverBottom/ClickBottom,
                the track YRepeat, and a thumb in three sets (Top*, YRepeate*, Grip*, Bottom*)
  volume        SliderBk and its disabled and bordered forms, the thumb SliderTrack in four states
  seek bar      ProgressBk (a groove in its upper four rows, as the fill is drawn two pixels above
                centre; alike in every column, since it is stretched whole), ProgressTrack and its
                glow and down forms; the fill is the library window's ProgressFill
Drawing helpers and the palette come from make-sample-images.py.
"""
import importlib.util
import math
import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
_spec = importlib.util.spec_from_file_location('sample_images', os.path.join(HERE, 'make-sample-images.py'))
S = importlib.util.module_from_spec(_spec)
_spec.loader.exec_module(S)

CLEAR = (0.0, 0.0, 0.0, 0.0)
STRIP_TOP, STRIP_BOTTOM = S.hexc(0x2E3850), S.hexc(0x1E2536)


def strip(width, height, left_edge, right_edge):
    """The tab strip: a dark gradient with a light line at its foot, closed at the ends asked."""
    def shade(x, y):
        c = S.mix(STRIP_TOP, STRIP_BOTTOM, y / height)
        if y >= height - 1:
            c = S.STEEL
        if (left_edge and x < 1) or (right_edge and x >= width - 1):
            c = S.hexc(0x141926)
        return c + (1.0,)
    return S.render(width, height, shade)


def face(width, height, top, bottom, line, underline):
    """A tab or folder-bar face: rounded at its top corners; `underline` rows of `line` at its foot."""
    r = 4.0

    def shade(x, y):
        cx = min(max(x, r), width - r)
        cy = max(y, r)
        if math.hypot(x - cx, y - cy) > r:
            return CLEAR
        c = S.mix(top, bottom, y / height)
        if y >= height - underline:
            c = line
        return c + (1.0,)
    return S.render(width, height, shade)


def chevron(width, height, up, ink):
    def shade(x, y):
        t = (height - y) if up else y
        inside = S.tri(x, t, 0.5, 0.5, width - 0.5, 0.5, width / 2.0, height - 0.5)
        return ink + (1.0 if inside else 0.0,)
    return S.render(width, height, shade)


def arrow_box(width, height, up, state):
    """A scroll bar arrow: a square key at the bar's end and, towards the track, 10 rows of the
    track itself, over which the thumb travels at either end of its way."""
    body = {'normal': S.hexc(0x2A3348), 'hover': S.hexc(0x39466A), 'pressed': S.ACCENT_DEEP}[state]
    ink = {'normal': S.GREY, 'hover': S.GLOW, 'pressed': S.WHITE}[state]
    key = height - 10
    top = 0 if up else 10
    r = 3.0
    rows = track(width, 10)

    def shade(x, y):
        if not top <= y < top + key:
            row = rows[int(y - (key if up else 0))][int(x)]
            return tuple(c / 255.0 for c in row[:3]) + (1.0,)
        ky = y - top
        cx = min(max(x, r), width - r)
        cy = min(max(ky, r), key - r)
        if math.hypot(x - cx, ky - cy) > r:
            return CLEAR
        gx, gy = x - (width - 8) / 2.0, ky - (key - 4) / 2.0
        if 0 <= gx <= 8 and 0 <= gy <= 4:
            t = (4 - gy) if up else gy
            if S.tri(gx, t, 0.0, 0.0, 8.0, 0.0, 4.0, 4.0):
                return ink + (1.0,)
        return body + (1.0,)
    return S.render(width, height, shade)


THUMB = {'normal': (S.hexc(0x56648A), S.hexc(0x404C6A)),
         'hover': (S.hexc(0x6E7EA8), S.hexc(0x56648A)),
         'pressed': (S.ACCENT, S.ACCENT_DEEP)}


def thumb_cap(width, height, state, top):
    light, dark = THUMB[state]
    r = 5.0

    def shade(x, y):
        cx = min(max(x, r), width - r)
        cy = max(y, r) if top else min(y, height - r)
        if math.hypot(x - cx, y - cy) > r:
            return CLEAR
        return S.mix(light, dark, x / width) + (1.0,)
    return S.render(width, height, shade)


def thumb_body(width, height, state, grip):
    light, dark = THUMB[state]

    def shade(x, y):
        c = S.mix(light, dark, x / width)
        if grip and 3 <= x < width - 3 and int(y) in (1, 3, 5):
            c = S.hexc(0x1B2130) if state != 'pressed' else S.WHITE
        return c + (1.0,)
    return S.render(width, height, shade)


def track(width, height):
    def shade(x, y):
        c = S.hexc(0x161B27)
        if x < 1 or x >= width - 1:
            c = S.hexc(0x232A3B)
        return c + (1.0,)
    return S.render(width, height, shade)


def groove(width, height, rows, disabled):
    """A rounded groove `rows` high at the top of a picture `height` high; the rest is clear."""
    r = rows / 2.0
    edge = S.hexc(0x4A5570) if not disabled else S.hexc(0x3A3F4B)
    inner = S.hexc(0x0E121C) if not disabled else S.hexc(0x2C3039)

    def shade(x, y):
        if y >= rows:
            return CLEAR
        cx = min(max(x, r), width - r)
        d = math.hypot(x - cx, y - r)
        if d > r:
            return CLEAR
        return (edge if d > r - 1.0 else inner) + (1.0,)
    return S.render(width, height, shade)


def flat_groove(width, height, rows):
    """The seek bar's groove, drawn whole and stretched to the bar's width: the same in every
    column, so that stretching doesn't widen any end. `rows` high at the top; the rest is clear."""
    def shade(x, y):
        if y >= rows:
            return CLEAR
        return (S.hexc(0x4A5570) if y < 1 or y >= rows - 1 else S.hexc(0x0E121C)) + (1.0,)
    return S.render(width, height, shade)


def knob(size, state):
    ring = {'normal': S.hexc(0x9AA6C2), 'glow': S.GLOW, 'down': S.WHITE, 'disabled': S.GREY}[state]
    body = {'normal': S.hexc(0x46526E), 'glow': S.ACCENT_DEEP, 'down': S.ACCENT, 'disabled': S.hexc(0x3A3F4B)}[state]
    c0 = size / 2.0

    def shade(x, y):
        d = math.hypot(x - c0, y - c0)
        if d > c0 - 0.5:
            return CLEAR
        return (ring if d > c0 - 2.0 else body) + (1.0,)
    return S.render(size, size, shade)


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else os.path.join(HERE, 'sample', 'Images', 'Browse')
    os.makedirs(out, exist_ok=True)

    def save(name, width, height, pixels):
        S.write_png(os.path.join(out, name + '.png'), width, height, pixels)

    # The tab strip and the tab faces (32 high; the menu zone is the part below y 24).
    save('BarLeft', 4, 32, strip(4, 32, True, False))
    save('BarXScale', 10, 32, strip(10, 32, False, False))
    save('BarRight', 4, 32, strip(4, 32, False, True))
    save('TabActive', 20, 32, face(20, 32, S.hexc(0x3A4560), S.hexc(0x2A3348), S.ACCENT, 3))
    save('TabHover', 20, 32, face(20, 32, S.hexc(0x333D55), S.hexc(0x263045), S.hexc(0x5C6886), 1))
    save('TabMenu', 20, 32, face(20, 32, S.hexc(0x333D55), S.hexc(0x263045), S.GLOW, 8))
    save('TabArrow', 7, 4, chevron(7, 4, False, S.GLOW))
    # Folder bars: every bar at rest shows the hover face, the current one the active face.
    save('FolderActive', 20, 32, face(20, 32, S.ACCENT_DEEP, S.hexc(0x174F96), S.GLOW, 1))
    save('FolderRest', 20, 32, face(20, 32, S.hexc(0x2E3850), S.hexc(0x232B3E), S.STEEL, 1))
    save('FolderMenu', 20, 32, face(20, 32, S.hexc(0x39466A), S.hexc(0x2A3348), S.ACCENT, 2))
    # The scroll bar: 14 wide, the thumb 12 wide one pixel in.
    for state, prefix in (('normal', 'Normal'), ('hover', 'Hover'), ('pressed', 'Click')):
        save(prefix + 'Top', 14, 24, arrow_box(14, 24, True, state))
        save(prefix + 'Bottom', 14, 24, arrow_box(14, 24, False, state))
    save('YRepeat', 14, 4, track(14, 4))
    for state, suffix, fill in (('normal', 'Normal', 'Normal'), ('hover', 'Hover', 'Hover'),
                                ('pressed', 'Pressed', 'Click')):
        save('Top' + suffix, 12, 6, thumb_cap(12, 6, state, True))
        save('Bottom' + ('Click' if state == 'pressed' else suffix), 12, 6, thumb_cap(12, 6, state, False))
        save('YRepeate' + fill, 12, 4, thumb_body(12, 4, state, False))
        save('Grip' + fill, 12, 7, thumb_body(12, 7, state, True))
    # The volume slider.
    save('SliderBk', 20, 6, groove(20, 6, 6, False))
    save('SliderBkDisable', 20, 6, groove(20, 6, 6, True))
    save('SliderBkBorder', 20, 6, groove(20, 6, 6, False))
    save('SliderBkDisableBorder', 20, 6, groove(20, 6, 6, True))
    for state, name in (('normal', 'SliderTrack'), ('glow', 'SliderTrackGlow'), ('down', 'SliderTrackDown'),
                        ('disabled', 'SliderTrackDisable')):
        save(name, 12, 12, knob(12, state))
    # The seek bar.
    save('SeekGroove', 30, 8, flat_groove(30, 8, 4))
    for state, name in (('normal', 'SeekThumb'), ('glow', 'SeekThumbGlow'), ('down', 'SeekThumbDown')):
        save(name, 10, 10, knob(10, state))


if __name__ == '__main__':
    main()
