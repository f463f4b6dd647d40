#!/usr/bin/env python3
"""Draws the sample skin's pictures: python3 make-sample-images.py [OUTPUT_FOLDER]

Every picture of examples/skins/sample/Images is made here, so that a change of colour or size
is a change of this script and a new run. Pure Python: shapes are drawn at 4x and averaged down,
which gives smooth edges and real alpha for pictures that stand on a textured background.
"""
import math
import os
import struct
import sys
import zlib

SS = 4  # supersampling factor


def write_png(path, width, height, pixels):
    """pixels: list of rows of (r, g, b, a) tuples."""
    raw = b''.join(b'\x00' + bytes(c for px in row for c in px) for row in pixels)

    def chunk(kind, data):
        return struct.pack('>I', len(data)) + kind + data + struct.pack('>I', zlib.crc32(kind + data) & 0xffffffff)

    png = b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', width, height, 8, 6, 0, 0, 0))
    png += chunk(b'IDAT', zlib.compress(raw, 9)) + chunk(b'IEND', b'')
    with open(path, 'wb') as f:
        f.write(png)


def render(width, height, shade):
    """shade(x, y) -> (r, g, b, a) floats 0..1 at supersampled points; averaged per pixel."""
    rows = []
    for py in range(height):
        row = []
        for px in range(width):
            acc = [0.0, 0.0, 0.0, 0.0]
            for sy in range(SS):
                for sx in range(SS):
                    r, g, b, a = shade(px + (sx + 0.5) / SS, py + (sy + 0.5) / SS)
                    acc[0] += r * a
                    acc[1] += g * a
                    acc[2] += b * a
                    acc[3] += a
            n = SS * SS
            alpha = acc[3] / n
            if alpha > 0:
                colour = tuple(min(255, int(round(acc[i] / acc[3] * 255))) for i in range(3))
            else:
                colour = (0, 0, 0)
            row.append(colour + (int(round(alpha * 255)),))
        rows.append(row)
    return rows


def mix(c1, c2, t):
    return tuple(c1[i] + (c2[i] - c1[i]) * t for i in range(len(c1)))


def hexc(value):
    return tuple(((value >> s) & 0xFF) / 255.0 for s in (16, 8, 0))


# The palette of the sample skin.
NIGHT = hexc(0x1B2130)
DUSK = hexc(0x2A3348)
STEEL = hexc(0x3A4560)
ACCENT = hexc(0x3FA7FF)
ACCENT_DEEP = hexc(0x1C6FD0)
GLOW = hexc(0x9FD4FF)
WHITE = (1.0, 1.0, 1.0)
GREY = hexc(0x7A8296)


def backdrop(width, height):
    def shade(x, y):
        t = y / height
        base = mix(DUSK, NIGHT, t)
        # Fine brushed lines and a soft light from the top left.
        brush = 0.009 * math.sin((x * 0.9 + y * 0.15) * 1.7) + 0.010 * math.sin(x * 0.23 + y * 0.05)
        light = 0.10 * max(0.0, 1.0 - math.hypot(x / width, y / height) * 1.3)
        c = tuple(min(1.0, max(0.0, v + brush + light)) for v in base)
        # A recessed display strip behind the title and the track.
        if 14 <= y <= 96 and 14 <= x <= width - 14:
            inner = mix(hexc(0x111623), hexc(0x161C2B), (y - 14) / 82)
            edge = min(x - 14, width - 14 - x, y - 14, 96 - y)
            c = mix(hexc(0x55607A), inner, min(1.0, edge / 1.5)) if edge < 1.5 else inner
        return c + (1.0,)
    SSsave = globals()['SS']
    globals()['SS'] = 1
    rows = render(width, height, shade)
    globals()['SS'] = SSsave
    return rows


def circle_button(size, state, glyph):
    cx = cy = size / 2.0
    radius = size / 2.0 - 1.0
    if state == 'normal':
        top, bottom, ring, ink = hexc(0x46526E), hexc(0x262D3F), hexc(0x5C6886), WHITE
    elif state == 'hover':
        top, bottom, ring, ink = hexc(0x56648A), hexc(0x303A52), ACCENT, GLOW
    elif state == 'pressed':
        top, bottom, ring, ink = ACCENT_DEEP, ACCENT, GLOW, WHITE
    else:
        top, bottom, ring, ink = hexc(0x3A3F4B), hexc(0x2C3039), hexc(0x474D5A), GREY

    def shade(x, y):
        d = math.hypot(x - cx, y - cy)
        if d > radius:
            # A faint shadow under the button, so it sits on the background.
            if d < radius + 1.0 and y > cy:
                return (0.0, 0.0, 0.0, 0.35 * (radius + 1.0 - d))
            return (0.0, 0.0, 0.0, 0.0)
        c = mix(top, bottom, (y - (cy - radius)) / (2 * radius))
        if d > radius - 1.4:
            c = ring
        if glyph(x - cx, y - cy, size):
            c = ink
        alpha = 0.55 if state == 'disabled' else 1.0
        return c + (alpha,)
    return render(size, size, shade)


def tri(px, py, x0, y0, x1, y1, x2, y2):
    def side(ax, ay, bx, by):
        return (bx - ax) * (py - ay) - (by - ay) * (px - ax)
    d1, d2, d3 = side(x0, y0, x1, y1), side(x1, y1, x2, y2), side(x2, y2, x0, y0)
    return not ((d1 < 0 or d2 < 0 or d3 < 0) and (d1 > 0 or d2 > 0 or d3 > 0))


def g_play(x, y, s):
    k = s / 36.0
    return tri(x, y, -5 * k, -8 * k, -5 * k, 8 * k, 8 * k, 0)


def g_pause(x, y, s):
    k = s / 36.0
    return abs(y) <= 7.5 * k and (-7 * k <= x <= -2.5 * k or 2.5 * k <= x <= 7 * k)


def g_stop(x, y, s):
    k = s / 36.0
    return abs(x) <= 6.5 * k and abs(y) <= 6.5 * k


def g_prev(x, y, s):
    k = s / 36.0
    return (-9 * k <= x <= -6.5 * k and abs(y) <= 7 * k) or tri(x, y, 8 * k, -7 * k, 8 * k, 7 * k, -6 * k, 0)


def g_next(x, y, s):
    return g_prev(-x, y, s)


def pill(width, height, state):
    """A common button face: a rounded bar that is stretched as three parts."""
    if state == 'disabled':
        top, bottom, edge = hexc(0x353A45), hexc(0x2B2F38), hexc(0x404654)
    elif state == 'normal':
        top, bottom, edge = hexc(0x4A5674), hexc(0x2D3548), hexc(0x5E6B8C)
    elif state == 'hover':
        top, bottom, edge = hexc(0x5B6A90), hexc(0x36405A), ACCENT
    else:
        top, bottom, edge = ACCENT_DEEP, hexc(0x2B84E0), GLOW
    r = height / 2.0 - 1.0

    def shade(x, y):
        cx = min(max(x, r + 1.0), width - r - 1.0)
        d = math.hypot(x - cx, y - height / 2.0)
        if d > r:
            return (0.0, 0.0, 0.0, 0.0)
        c = mix(top, bottom, y / height)
        if d > r - 1.2:
            c = edge
        return c + (1.0,)
    return render(width, height, shade)


def arrow(width, height):
    def shade(x, y):
        inside = tri(x, y, 0.5, 0.5, width - 0.5, 0.5, width / 2.0, height - 0.5)
        return WHITE + (1.0 if inside else 0.0,)
    return render(width, height, shade)


def check_box(size, checked):
    """A dialog check box: a rounded square, with a tick when checked."""
    def shade(x, y):
        r = 2.5
        cx = min(max(x, r + 0.5), size - r - 0.5)
        cy = min(max(y, r + 0.5), size - r - 0.5)
        d = math.hypot(x - cx, y - cy)
        if d > r:
            return (0.0, 0.0, 0.0, 0.0)
        if checked:
            k = size / 13.0
            near = lambda ax, ay, bx, by: seg_distance(x, y, ax * k, ay * k, bx * k, by * k) <= 1.1 * k
            if near(3.2, 6.8, 5.5, 9.2) or near(5.5, 9.2, 9.8, 3.8):
                return WHITE + (1.0,)
            return (ACCENT_DEEP if d <= r - 1.0 else GLOW) + (1.0,)
        return (DUSK if d <= r - 1.0 else GREY) + (1.0,)
    return render(size, size, shade)


def seg_distance(px, py, ax, ay, bx, by):
    dx, dy = bx - ax, by - ay
    t = max(0.0, min(1.0, ((px - ax) * dx + (py - ay) * dy) / (dx * dx + dy * dy)))
    return math.hypot(px - ax - t * dx, py - ay - t * dy)


def radio(size, checked):
    """A dialog radio button: a ring, with an accent dot when checked."""
    def shade(x, y):
        d = math.hypot(x - size / 2.0, y - size / 2.0)
        r = size / 2.0 - 0.5
        if d > r:
            return (0.0, 0.0, 0.0, 0.0)
        if d > r - 1.2:
            return (GLOW if checked else GREY) + (1.0,)
        if checked and d <= r * 0.45:
            return ACCENT + (1.0,)
        return DUSK + (1.0,)
    return render(size, size, shade)


def field(width, height, part):
    """The number field's face: a dark inset bar in three parts (left end, middle, right end)."""
    r = 4.0
    full = 2 * r + 4

    def shade(x, y):
        # Each part is a slice of one bar of width `full`.
        bx = x if part == 'left' else (x + full - width if part == 'right' else full / 2.0)
        cx = min(max(bx, r), full - r)
        cy = min(max(y, r), height - r)
        d = math.hypot(bx - cx, y - cy)
        if d > r:
            return (0.0, 0.0, 0.0, 0.0)
        if d > r - 1.2:
            return STEEL + (1.0,)
        return mix(hexc(0xDDE3EE), WHITE, y / height) + (1.0,)
    return render(width, height, shade)


def note_icon(size):
    def shade(x, y):
        k = size / 16.0
        head = math.hypot(x - 5.5 * k, y - 11.5 * k) <= 3.0 * k
        stem = 7.6 * k <= x <= 9.0 * k and 2.5 * k <= y <= 11.5 * k
        flag = 9.0 * k <= x <= 13.0 * k and 2.5 * k <= y <= 5.0 * k - (x - 9.0 * k) * 0.3
        return GLOW + (1.0 if (head or stem or flag) else 0.0,)
    return render(size, size, shade)


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(os.path.abspath(__file__)), 'sample', 'Images')
    os.makedirs(out, exist_ok=True)
    write_png(os.path.join(out, 'Backdrop.png'), 480, 300, backdrop(480, 300))
    glyphs = {'Prev': g_prev, 'Play': g_play, 'Pause': g_pause, 'Stop': g_stop, 'Next': g_next}
    for name, glyph in glyphs.items():
        for state, suffix in (('normal', ''), ('hover', 'Hover'), ('pressed', 'Down'), ('disabled', 'Off')):
            write_png(os.path.join(out, '%s%s.png' % (name, suffix)), 36, 36, circle_button(36, state, glyph))
    for index, state in enumerate(('disabled', 'normal', 'hover', 'pressed')):
        write_png(os.path.join(out, 'Face%d.png' % index), 24, 26, pill(24, 26, state))
    write_png(os.path.join(out, 'Arrow.png'), 11, 6, arrow(11, 6))
    write_png(os.path.join(out, 'Note.png'), 16, 16, note_icon(16))
    # Skinned dialogs: idle and checked boxes and radios, and the number field's face.
    write_png(os.path.join(out, 'CheckIdle.png'), 13, 13, check_box(13, False))
    write_png(os.path.join(out, 'CheckOn.png'), 13, 13, check_box(13, True))
    write_png(os.path.join(out, 'RadioIdle.png'), 13, 13, radio(13, False))
    write_png(os.path.join(out, 'RadioOn.png'), 13, 13, radio(13, True))
    write_png(os.path.join(out, 'FieldLeft.png'), 6, 24, field(6, 24, 'left'))
    write_png(os.path.join(out, 'FieldMiddle.png'), 1, 24, field(1, 24, 'middle'))
    write_png(os.path.join(out, 'FieldRight.png'), 6, 24, field(6, 24, 'right'))


if __name__ == '__main__':
    main()
