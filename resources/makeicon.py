#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Draws the program's icon, a raised barrier over a number plate, and the pictures of two buttons.

Run it in this folder after a change: it writes icon1.svg, icon1.ico (16 to 256 px) and icons/ (the
desktop's icon, 16 to 512 px) from one list of shapes, so that they never differ, and apply.png and
cancel.png (twice the size that buttons show them in, for finer screens). Needs nothing but Python 3.
"""
import os
import struct
import zlib

SIDE = 64
SAMPLES = 4
SIZES = (16, 24, 32, 48, 64, 128, 256)
DESKTOP_SIZES = (16, 22, 24, 32, 48, 64, 96, 128, 256, 512)
BUTTON_SIZE = 48

DARK, LIGHT, RED, INK = '#1c2329', '#f0f4f7', '#d9362b', '#12171b'
YES, NO = '#7fdb9a', '#ff9a8f'  # light enough for dark buttons


def rounded(x, y, w, h, r):
    """A rectangle with corners cut by four short chords each."""
    from math import cos, pi, sin
    centres = ((x + w - r, y + r, -90), (x + w - r, y + h - r, 0),
               (x + r, y + h - r, 90), (x + r, y + r, 180))
    return [(cx + r * cos((start + step * 15) * pi / 180), cy + r * sin((start + step * 15) * pi / 180))
            for cx, cy, start in centres for step in range(7)]


def bar(ax, ay, bx, by, half, begin=0.0, end=1.0):
    """A piece of a straight bar, between two shares of its length."""
    length = ((bx - ax) ** 2 + (by - ay) ** 2) ** 0.5
    nx, ny = -(by - ay) / length * half, (bx - ax) / length * half
    x0, y0 = ax + (bx - ax) * begin, ay + (by - ay) * begin
    x1, y1 = ax + (bx - ax) * end, ay + (by - ay) * end
    return [(x0 + nx, y0 + ny), (x1 + nx, y1 + ny), (x1 - nx, y1 - ny), (x0 - nx, y0 - ny)]


def arm(begin, end):
    """A piece of the barrier's arm."""
    return bar(15.0, 35.0, 57.0, 12.0, 3.6, begin, end)


ICON = [
    (rounded(0, 0, SIDE, SIDE, 12), DARK),
    (arm(0, 1), LIGHT),
    (arm(0.2, 0.4), RED),
    (arm(0.6, 0.8), RED),
    (rounded(8, 27, 11, 17, 2.5), LIGHT),
    (rounded(6, 41, 52, 17, 3.5), LIGHT),
    (rounded(8.5, 43.5, 47, 12, 2), INK),
    (rounded(12, 46.5, 6, 6, 1), LIGHT),
    (rounded(21, 46.5, 6, 6, 1), LIGHT),
    (rounded(30, 46.5, 6, 6, 1), LIGHT),
    (rounded(42, 46.5, 9, 6, 1), LIGHT),
]
# The ends of bars that meet are round, by a small disc.
APPLY = [(bar(11, 35, 26, 50, 5), YES), (bar(26, 50, 54, 16, 5), YES)] + [
    (rounded(x - 5, y - 5, 10, 10, 5), YES) for x, y in ((11, 35), (26, 50), (54, 16))]
CANCEL = [(bar(14, 14, 50, 50, 5), NO), (bar(50, 14, 14, 50, 5), NO)] + [
    (rounded(x - 5, y - 5, 10, 10, 5), NO) for x in (14, 50) for y in (14, 50)]


def svg():
    lines = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {SIDE} {SIDE}">']
    for points, colour in ICON:
        path = ' '.join(f'{x:.2f},{y:.2f}' for x, y in points)
        lines.append(f'  <polygon fill="{colour}" points="{path}"/>')
    return '\n'.join(lines + ['</svg>', ''])


def spans(points, y):
    """Where a horizontal line at y enters and leaves the shape."""
    cuts = []
    for (x0, y0), (x1, y1) in zip(points, points[1:] + points[:1]):
        if (y0 <= y) != (y1 <= y):
            cuts.append(x0 + (y - y0) * (x1 - x0) / (y1 - y0))
    cuts.sort()
    return zip(cuts[::2], cuts[1::2])


def pixels(shapes, size):
    """Rows of RGBA bytes, each pixel the mean of its samples."""
    fine = size * SAMPLES
    grid = [[None] * fine for _ in range(fine)]
    for points, colour in shapes:
        for row in range(fine):
            for left, right in spans(points, (row + 0.5) * SIDE / fine):
                first = max(0, round(left * fine / SIDE))
                last = min(fine, round(right * fine / SIDE))
                grid[row][first:last] = [colour] * (last - first)
    for top in range(0, fine, SAMPLES):
        line = bytearray()
        for left in range(0, fine, SAMPLES):
            seen = [c for row in grid[top:top + SAMPLES] for c in row[left:left + SAMPLES] if c]
            parts = [tuple(bytes.fromhex(c[1:])) for c in seen]
            mean = [round(sum(p[i] for p in parts) / len(parts)) if parts else 0 for i in range(3)]
            line += bytes(mean + [round(255 * len(seen) / SAMPLES ** 2)])
        yield bytes(line)


def png(shapes, size):
    def chunk(name, data):
        body = name + data
        return struct.pack('>I', len(data)) + body + struct.pack('>I', zlib.crc32(body))

    raw = b''.join(b'\0' + line for line in pixels(shapes, size))
    header = struct.pack('>IIBBBBB', size, size, 8, 6, 0, 0, 0)
    return (b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', header) + chunk(b'IDAT', zlib.compress(raw, 9))
            + chunk(b'IEND', b''))


def ico():
    pictures = [png(ICON, size) for size in SIZES]
    offset = 6 + 16 * len(SIZES)
    entries = b''
    for size, picture in zip(SIZES, pictures):
        entries += struct.pack('<BBBBHHII', size % 256, size % 256, 0, 0, 1, 32, len(picture), offset)
        offset += len(picture)
    return struct.pack('<HHH', 0, 1, len(SIZES)) + entries + b''.join(pictures)


if __name__ == '__main__':
    with open('icon1.svg', 'w', encoding='ascii') as file:
        file.write(svg())
    with open('icon1.ico', 'wb') as file:
        file.write(ico())
    os.makedirs('icons', exist_ok=True)
    for size in DESKTOP_SIZES:
        with open(f'icons/{size}.png', 'wb') as file:
            file.write(png(ICON, size))
    for name, shapes in (('apply.png', APPLY), ('cancel.png', CANCEL)):
        with open(name, 'wb') as file:
            file.write(png(shapes, BUTTON_SIZE))
