#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Draws the TGA files in this directory: pictures of color numbers with their palettes, and the font."""
import math
import os
import struct

HERE = os.path.dirname(os.path.abspath(__file__))
SUBROWS = 5


class Canvas:
    """Straight-alpha pixels that polygons are painted on with smooth edges. Rows grow downward."""

    def __init__(self, width, height):
        self.width, self.height = width, height
        self.pixels = [[0.0, 0.0, 0.0, 0.0] for _ in range(width * height)]

    def paint(self, x, y, color, coverage):
        pixel = self.pixels[y * self.width + x]
        rest = pixel[3] * (1.0 - coverage)
        alpha = coverage + rest
        for i in range(3):
            pixel[i] = (color[i] * coverage + pixel[i] * rest) / alpha
        pixel[3] = alpha

    def polygon(self, points, top, bottom=None):
        """Fills a polygon with a color, or with a gradient from its top to its bottom."""
        bottom = bottom or top
        low, high = min(p[1] for p in points), max(p[1] for p in points)
        for y in range(max(0, math.floor(low)), min(self.height, math.ceil(high))):
            covered = [0.0] * self.width
            for i in range(SUBROWS):
                self.cover(points, y + (i + 0.5) / SUBROWS, covered)
            t = min(max((y + 0.5 - low) / max(high - low, 1e-6), 0.0), 1.0)
            color = [a + (b - a) * t for a, b in zip(channels(top), channels(bottom))]
            for x, coverage in enumerate(covered):
                if coverage > 0.0:
                    self.paint(x, y, color, min(coverage, 1.0))

    def cover(self, points, y, covered):
        crossings = []
        for (ax, ay), (bx, by) in zip(points, points[1:] + points[:1]):
            if (ay <= y) != (by <= y):
                crossings.append(ax + (y - ay) * (bx - ax) / (by - ay))
        crossings.sort()
        for left, right in zip(crossings[::2], crossings[1::2]):
            for x in range(max(0, math.floor(left)), min(self.width, math.ceil(right))):
                covered[x] += max(0.0, min(right, x + 1) - max(left, x)) / SUBROWS

    def line(self, ax, ay, bx, by, width, color):
        length = math.hypot(bx - ax, by - ay)
        nx, ny = (by - ay) / length * width / 2, (ax - bx) / length * width / 2
        self.polygon([(ax + nx, ay + ny), (bx + nx, by + ny), (bx - nx, by - ny), (ax - nx, ay - ny)], color)

    def box(self, left, top, right, bottom, color, lower=None):
        self.polygon([(left, top), (right, top), (right, bottom), (left, bottom)], color, lower)

    def disc(self, x, y, radius, color):
        turn = [i * math.tau / 16 for i in range(16)]
        self.polygon([(x + radius * math.cos(a), y + radius * math.sin(a)) for a in turn], color)

    def save(self, name):
        """Writes a TGA file of color numbers, and keeps their colors for palettes.tga."""
        pixels = [tuple(round(c) for c in p[:3]) + (alpha_byte(p[3]),) for p in self.pixels]
        colors = make_palette(pixels)
        numbers = {}
        for pixel in set(pixels):
            numbers[pixel] = 0 if pixel[3] == 0 else 1 if pixel == channels(WINDOW) + (255,) else min(
                range(len(colors)), key=lambda i: color_distance(colors[i], pixel))
        write_gray(name, self.width, self.height, bytes(numbers[p] for p in pixels))
        PALETTES.append(colors + [(0, 0, 0, 0)] * (256 - len(colors)))


# Pixels of this color glow at night; their alpha is one less than opaque.
WINDOW, WINDOW_ALPHA = 0x4A5C6C, 254
PALETTES = []


def write_tga(name, kind, width, height, depth, rows):
    """Writes a TGA file; its bottom row comes first."""
    header = struct.pack("<BBBHHBHHHHBB", 0, 0, kind, 0, 0, 0, 0, 0, width, height, depth, 0)
    with open(os.path.join(HERE, name + ".tga"), "wb") as file:
        file.write(header + b"".join(reversed(rows)))


def write_gray(name, width, height, data):
    write_tga(name, 3, width, height, 8, [data[y * width:(y + 1) * width] for y in range(height)])


def alpha_byte(alpha):
    return 0 if alpha < 0.06 else 255 if alpha > 0.97 else round(alpha * 15) * 16


def color_distance(a, b):
    return sum((x - y) * (x - y) for x, y in zip(a, b)) + (1000000 if (a[3] >= 254 or b[3] >= 254) and a[3] != b[3] else 0)


def make_palette(pixels):
    """Returns up to 256 colors with alpha, by median cut; number 0 is transparent."""
    counts = {}
    for pixel in pixels:
        if pixel[3] == 255 and pixel[:3] == channels(WINDOW):
            continue
        if pixel[3] > 0:
            counts[pixel] = counts.get(pixel, 0) + 1
    groups = [[p for p in counts if p[3] == 255], [p for p in counts if p[3] < 255]]
    groups = [g for g in groups if g]
    while len(groups) < 250:
        widest, group, channel = max(
            ((max(p[c] for p in g) - min(p[c] for p in g)) * math.sqrt(sum(counts[p] for p in g)), i, c)
            for i, g in enumerate(groups) for c in range(4))
        if widest == 0:
            break
        parts = sorted(groups[group], key=lambda p: p[channel])
        groups[group:group + 1] = [parts[:len(parts) // 2], parts[len(parts) // 2:]]
    total = [sum(counts[p] for p in g) for g in groups]
    means = [tuple(round(sum(p[c] * counts[p] for p in g) / n) for c in range(4)) for g, n in zip(groups, total)]
    return [(0, 0, 0, 0), channels(WINDOW) + (WINDOW_ALPHA,)] + means


def channels(color):
    return (color >> 16, color >> 8 & 255, color & 255)


def schooner():
    c = Canvas(136, 118)
    wood, rope = 0x8A5A34, 0x6B5340
    c.line(112, 92, 135, 80, 2.2, wood)
    for x, top in ((48, 3), (84, 7)):
        c.line(x, top, x, 98, 2.6, wood)
    for ax, ay, bx, by in ((48, 6, 11, 90), (48, 4, 84, 10), (84, 8, 134, 80), (84, 12, 112, 90), (48, 8, 60, 94),
                           (84, 12, 96, 94), (48, 8, 36, 94)):
        c.line(ax, ay, bx, by, 0.6, rope)
    c.polygon([(46, 20), (46, 86), (9, 83), (19, 30)], 0xFFF6E0, 0xE2CBA4)
    c.polygon([(82, 23), (82, 86), (52, 84), (56, 33)], 0xFFF8E6, 0xE6D0AA)
    c.polygon([(46, 5), (46, 19), (24, 27)], 0xF4E6C8, 0xDDC9A4)
    c.polygon([(82, 9), (82, 21), (61, 29)], 0xF4E6C8, 0xDDC9A4)
    c.polygon([(88, 16), (131, 81), (108, 76), (93, 72)], 0xFFFAEA, 0xE9D5B2)
    c.polygon([(87, 30), (112, 84), (98, 82), (89, 80)], 0xF1E2C4, 0xD6C09A)
    for y in (40, 54, 68):
        c.line(46, y, 19 - (y - 30) * 0.19, y + 1, 0.7, 0xD8C29C)
        c.line(82, y, 56 - (y - 33) * 0.08, y + 1, 0.7, 0xD8C29C)
    for ax, ay, bx, by in ((46, 19, 17, 29), (46, 87, 6, 84), (82, 22, 54, 32), (82, 87, 49, 85)):
        c.line(ax, ay, bx, by, 1.6, wood)
    c.polygon([(48, 3), (62, 1), (58, 4), (61, 7), (48, 7)], 0xE0403A, 0xB8242A)
    c.polygon([(8, 88), (15, 92), (50, 97), (88, 96), (122, 87), (115, 100), (107, 118), (26, 118), (15, 108)],
              0x6E4328, 0x2E1A14)
    c.polygon([(8, 88), (15, 92), (50, 97), (88, 96), (122, 87), (121, 89), (88, 99), (50, 100), (14, 95)], 0xF2E8D4)
    c.polygon([(11, 98), (50, 104), (88, 103), (117, 96), (116, 98), (88, 105.4), (50, 106.4), (12, 100)], 0xC89B4A)
    for x in range(24, 108, 12):
        c.disc(x, 101.6 - abs(x - 66) * 0.05, 1.3, 0x2A1A12)
    c.box(56, 91, 76, 97, 0xB98A58, 0x8A6038)
    c.box(24, 89, 38, 95, 0xB98A58, 0x8A6038)
    c.box(60, 93, 63, 95, 0xFFE9A8)
    c.box(68, 93, 71, 95, 0xFFE9A8)
    c.save("schooner")


def steamer():
    c = Canvas(160, 74)
    for x, top in ((26, 8), (132, 6)):
        c.line(x, top, x, 46, 1.8, 0xC8A878)
        c.line(x, top + 4, x + (16 if x < 80 else -14), 40, 0.6, 0x6A6058)
        c.line(x, top + 4, x - (18 if x < 80 else -18), 40, 0.6, 0x6A6058)
    for x in (58, 76):
        c.polygon([(x, 8), (x + 11, 8), (x + 9, 34), (x - 2, 34)], 0xE2583C, 0xA83024)
        c.polygon([(x, 5), (x + 11, 5), (x + 11, 11), (x - 0.4, 11)], 0x2C2A30)
        c.polygon([(x - 0.6, 15), (x + 10.6, 15), (x + 10.4, 18), (x - 0.8, 18)], 0xFFF2DC)
        c.line(x + 3, 8, x + 1.4, 33, 1.2, 0xF08A68)
    c.box(34, 32, 116, 46, 0xFDFAF2, 0xDCD8CC)
    c.box(46, 25, 108, 33, 0xFFFFFA, 0xE4E0D4)
    c.box(92, 16, 110, 26, 0xFFFFFA, 0xE4E0D4)
    c.box(89, 14, 113, 17, 0x8E6A48)
    c.box(44, 24, 110, 26, 0xC6BEAE)
    c.box(32, 31, 118, 33, 0xC6BEAE)
    for x in range(95, 108, 4):
        c.box(x, 19, x + 2.6, 22, 0x3A5870)
    for x in range(50, 106, 6):
        c.box(x, 28, x + 3, 31, 0x3A5870)
    for x in range(38, 114, 6):
        c.disc(x + 1, 39.5, 1.5, 0x3A5870)
    for x in (38, 114):
        c.polygon([(x - 5, 27), (x + 7, 27), (x + 5, 31), (x - 3, 31)], 0xF6EFE0, 0xC0A880)
    c.polygon([(5, 38), (12, 44), (60, 47), (118, 46), (156, 36), (149, 56), (143, 74), (20, 74), (10, 62)],
              0x3A4456, 0x1C2028)
    c.polygon([(5, 38), (12, 44), (60, 47), (118, 46), (156, 36), (155, 39), (118, 49.4), (60, 50), (11, 47), (6, 42)],
              0xFFF8EA)
    c.polygon([(11, 64), (146, 64), (143, 74), (20, 74)], 0xA03A2C, 0x6E231C)
    for x in range(22, 142, 9):
        c.disc(x, 55, 1.5, 0xE8D8A0)
    c.polygon([(6, 39), (5, 26), (16, 28), (16, 34), (6, 33)], 0xE8E2D2, 0xC03A34)
    c.save("steamer")


def trawler():
    c = Canvas(84, 66)
    c.line(30, 4, 30, 44, 2, 0xA8794A)
    c.line(30, 12, 8, 34, 1.4, 0xA8794A)
    c.line(30, 6, 76, 36, 0.6, 0x5A5048)
    c.line(30, 6, 6, 40, 0.6, 0x5A5048)
    c.polygon([(8, 34), (16, 32), (22, 42), (10, 43)], 0x6E8A6A, 0x46604C)
    c.box(40, 22, 60, 44, 0xFFFAF0, 0xE0D6C4)
    c.polygon([(37, 20), (64, 20), (61, 24), (38, 24)], 0xE8803C, 0xB8541E)
    for x in (42.5, 48.5, 54.5):
        c.box(x, 27, x + 4, 32, 0x34566C, 0x5A86A0)
    c.box(44, 36, 49, 44, 0x9A6A40)
    c.box(64, 38, 71, 44, 0xC88A4A, 0x8E5A2A)
    c.polygon([(4, 38), (10, 43), (40, 46), (62, 44), (81, 33), (76, 50), (71, 66), (14, 66), (8, 54)],
              0x2F86A8, 0x17485E)
    c.polygon([(4, 38), (10, 43), (40, 46), (62, 44), (81, 33), (80, 36), (62, 47), (40, 49), (9, 46)], 0xFFF4DC)
    c.polygon([(9, 56), (75, 56), (71, 66), (14, 66)], 0xA8432E, 0x6E2A1E)
    for x in (20, 34, 48):
        c.disc(x, 50, 2.8, 0x2A2624)
        c.disc(x, 50, 1.2, 0x2F86A8)
    c.polygon([(30, 4), (40, 6), (30, 9)], 0xF2C23A)
    c.save("trawler")


def sloop():
    c = Canvas(52, 74)
    c.line(24, 1, 24, 60, 1.6, 0x9A7048)
    c.polygon([(22.6, 4), (22.6, 54), (2, 53), (10, 32)], 0xFF9A5C, 0xD2502E)
    c.polygon([(22.6, 24), (22.6, 32), (8.6, 36), (10, 31)], 0xFFF2DC)
    c.polygon([(26, 8), (47, 54), (34, 51), (27, 50)], 0xFFF6E4, 0xE6D4B4)
    c.line(24, 55, 1, 54, 1.4, 0x9A7048)
    c.line(24, 3, 49, 56, 0.5, 0x6A5A48)
    c.polygon([(4, 57), (12, 60), (32, 60), (51, 55), (45, 66), (40, 74), (14, 74), (8, 68)], 0xFCF8EE, 0xB8AE9C)
    c.polygon([(5, 61), (14, 64), (34, 64), (48, 60), (47, 62), (34, 66), (14, 66), (6, 63)], 0x2F6EA8)
    c.disc(16, 56, 2.1, 0xE8B890)
    c.polygon([(13.4, 58), (18.6, 58), (18.8, 61), (13, 61)], 0xD04A3A)
    c.save("sloop")


def gulls():
    c = Canvas(84, 14)
    for i, (tip, bend) in enumerate(((1, 3), (6, 4), (12, 6))):
        x = 28 * i
        for side in (-1, 1):
            outer, elbow = x + 14 + side * 12.5, x + 14 + side * 6
            c.polygon([(x + 14, 7), (elbow, bend), (outer, tip), (elbow, bend + 2.6), (x + 14, 10)],
                      0xF4F6FA, 0xC4CCD8)
            c.line(outer, tip, outer - side * 3, tip + (bend - tip) * 0.45, 1.6, 0x3A4048)
        c.polygon([(x + 8, 8.6), (x + 14, 6.6), (x + 19, 7), (x + 20, 8.6), (x + 15, 10.6)], 0xFFFFFF, 0xD8DEE8)
        c.box(x + 20, 7.6, x + 22, 9, 0xF0A030)
    c.save("gulls")


# One line a glyph, from the blank on: strokes as points (column, row) of a grid; row 0 is the top of the capitals,
# 2 that of small letters, 6 the base line. A tilde rounds the corners of its stroke.
GLYPHS = """

20 24|26 26
10 11|30 31
10 16|30 36|02 42|04 44
~41 40 00 03 43 46 06 05|20 26
40 06|00 01|45 46
~46 02 00 30 32 04 06 36 43
20 21
~30 12 14 36
~10 32 34 16
21 25|12 34|32 14
21 25|03 43
26 17
13 33
26 26
40 06
~20 00 06 46 40 20|14 32
11 20 26|16 36
~01 00 40 43 06|06 46
~00 40 43 13|~13 43 46 06
36 30 04 44
40 00 02|~02 42 46 06
~40 00 06 46 43 03 05
00 40 16
~20 00 03 43 40 20|~23 03 06 46 43 23
~06 46 40 00 03 43 41
23 23|26 26
23 23|26 17
41 03 45
02 42|04 44
01 43 05
~01 00 40 43 23 24|26 26
~34 32 12 14 34 44 40 00 06 46
06 20 46|14 34
00 06|~00 40 43 03|~03 43 46 06
~41 40 00 06 46 45
00 06|~00 40 46 06
40 00 06 46|03 33
40 00 06|03 33
~41 40 00 06 46 43|43 23
00 06|40 46|03 43
20 26|10 30|16 36
~40 46 06 05
00 06|40 03|13 46
00 06 46
06 00 23 40 46
06 00 46 40
~20 00 06 46 40 20
00 06|~00 40 43 03
~20 00 06 46 40 20|35 47
00 06|~00 40 43 03|23 46
~41 40 00 03 43 46 06 05
00 40|20 26
~00 06 46 40
00 26 40
00 16 22 36 40
00 46|40 06
00 23 40|23 26
00 40 06 46
30 10 17 37
00 46
10 30 37 17
02 20 42
07 47
10 21
~02 42 46|~43 03 06 46
00 06|~04 02 42 46 06 04
~43 42 02 06 46 45
40 46|~44 42 02 06 46 44
04 44|~44 42 02 06 46
~40 20 26|12 32
~44 42 02 06 46 44|~42 48 08
00 06|~04 02 42 46
22 26|20 20
~32 38 18|30 30
00 06|42 04|14 46
20 26
02 06|~04 02 22 26|~24 22 42 46
02 06|~04 02 42 46
~22 02 06 46 42 22
02 08|~04 02 42 46 06 04
42 48|~44 42 02 06 46 44
02 06|~05 02 32
~42 02 04 44 46 06
~10 16 36|02 32
42 46|~02 06 46 44
02 26 42
02 16 23 36 42
02 46|42 06
02 25|42 08
02 42 06 46
~30 20 23 13|~13 23 26 36
20 27
~10 20 23 33|~33 23 26 16
~03 12 34 43
00 40 46 06 00
""".split("\n")[1:97]
CELL_WIDTH, CELL_HEIGHT, PITCH, PEN = 14, 24, 2.4, 2.2


def stroke_points(text):
    points = [(2.2 + PITCH * int(p[0]), 2.8 + PITCH * int(p[1])) for p in text.lstrip("~").split()]
    for _ in range(3 if text.startswith("~") else 0):
        # Chaikin's corner cutting; the ends stay.
        cut = [points[0]]
        for (ax, ay), (bx, by) in zip(points, points[1:]):
            cut += [(ax * 0.8 + bx * 0.2, ay * 0.8 + by * 0.2), (ax * 0.2 + bx * 0.8, ay * 0.2 + by * 0.8)]
        points = cut + [points[-1]]
    return points


def segment_distance(x, y, a, b):
    dx, dy = b[0] - a[0], b[1] - a[1]
    square = dx * dx + dy * dy
    t = 0.0 if square == 0 else min(max(((x - a[0]) * dx + (y - a[1]) * dy) / square, 0.0), 1.0)
    return math.hypot(x - a[0] - t * dx, y - a[1] - t * dy)


def font():
    """A column of cells, in the order of the characters, as gray coverage."""
    rows = []
    for glyph in GLYPHS:
        segments = []
        for stroke in filter(None, glyph.split("|")):
            points = stroke_points(stroke)
            segments += zip(points, points[1:])
        for y in range(CELL_HEIGHT):
            nearest = [min([segment_distance(x + 0.5, y + 0.5, a, b) for a, b in segments], default=99.0)
                       for x in range(CELL_WIDTH)]
            rows.append(bytes(round(255 * min(max(PEN / 2 + 0.5 - d, 0.0), 1.0)) for d in nearest))
    write_tga("../../shared/font", 3, CELL_WIDTH, CELL_HEIGHT * len(GLYPHS), 8, rows)


def hash_noise(seed):
    seed = (seed ^ seed >> 16) * 0x85EBCA6B & 0xFFFFFFFF
    seed = (seed ^ seed >> 13) * 0xC2B2AE35 & 0xFFFFFFFF
    return ((seed ^ seed >> 16) >> 8) / 16777216


def mix(a, b, t):
    return a + (b - a) * t


def smooth_noise(x, seed):
    total, weight = 0.0, 0.5
    for octave in range(4):
        cell, t = math.floor(x), x - math.floor(x)
        key = cell * 7919 + seed + octave * 104729
        total += weight * mix(hash_noise(key), hash_noise(key + 7919), t * t * (3 - 2 * t))
        x *= 2
        weight *= 0.5
    return total


def hills():
    """Heights of three rows of hills, the farthest first; 255 is 200 rows of 720."""
    width, rows = 1024, []
    for layer, (height, rise, length) in enumerate(((60, 130, 300), (26, 98, 210), (4, 62, 120))):
        tops = []
        for x in range(width):
            place, share = x * 1.5, x / width * 1.2 - 0.1
            trees = 0.16 * smooth_noise(place / 11, 60) if layer == 2 else 0.0
            bump = smooth_noise(place / length + 9 * layer, 40) + trees
            side = 0.55 + 1.5 * (share - 0.46) ** 2
            tops.append(round(min((height + rise * bump) * side * 255 / 200, 255)))
        rows.append(bytes(tops))
    write_gray("hills", width, 3, b"".join(rows))


def noise_2d(x, y, seed):
    total, weight = 0.0, 0.5
    for octave in range(5):
        def corner(dx, dy):
            return hash_noise((math.floor(y) + dy) * 7919 + (math.floor(x) + dx) * 31 + seed + octave * 104729)

        u, v = x - math.floor(x), y - math.floor(y)
        u, v = u * u * (3 - 2 * u), v * v * (3 - 2 * v)
        total += weight * mix(mix(corner(0, 0), corner(1, 0), u), mix(corner(0, 1), corner(1, 1), u), v)
        x, y, weight = x * 2, y * 2, weight * 0.5
    return total


def cloud(name, width, height, seed):
    """A cloud with a soft edge, bright above and gray below."""
    c = Canvas(width, height)
    for y in range(height):
        for x in range(width):
            u, v = 2 * (x + 0.5) / width - 1, (y + 0.5) / height
            # A flat base below round tops.
            shape = 1 - u * u - (((0.72 - v) / 0.72) ** 2 if v < 0.72 else ((v - 0.72) / 0.28) ** 2)
            density = shape * 0.9 + (noise_2d(x / 26, y / 16, seed) - 0.5) * 1.7 * min(max(shape + 0.7, 0), 1) - 0.15
            edge = min(1 - abs(u), v, 1 - v) * 6
            alpha = min(max(density * 2.2, 0.0), 1.0) * min(max(edge, 0.0), 1.0)
            light = min(max(1.06 - 0.42 * v - 0.28 * max(density - 0.3, 0) + (noise_2d(x / 13, y / 9, seed + 9) - 0.5) * 0.5,
                            0.55), 1.0)
            if alpha > 0.06:
                c.paint(x, y, (255 * light, 255 * light, min(255 * (light + 0.02), 255)), alpha * 0.92)
    c.save(name)


def clouds():
    cloud("cumulus", 200, 60, 5)
    cloud("cloud", 180, 34, 77)


# The colors of the sky above and at the horizon, of clouds, and of the light on everything, by hours.
HOURS = ((0.0, 0x040818, 0x12224A, 0x1C2848, 0x3E4E80), (4.3, 0x0A1636, 0x2C3464, 0x30345A, 0x4A5488),
         (5.6, 0x2C4284, 0xE0806A, 0xE07A78, 0xA88090), (6.4, 0x3E68B4, 0xFFB070, 0xFFB090, 0xE8B090),
         (8.0, 0x3F86D8, 0xFFE4BE, 0xFFF0DE, 0xFFEAD0), (11.0, 0x2478DC, 0xC2E6FA, 0xFFFFFF, 0xFFFFFF),
         (16.0, 0x2E7CD8, 0xD4EAF0, 0xFFFAF0, 0xFFFCF4), (18.6, 0x3A5CB0, 0xFFCA80, 0xFFD0A0, 0xFFD4A4),
         (19.8, 0x2C3480, 0xFF7C48, 0xF87868, 0xC88A84), (20.9, 0x161C50, 0x8A4A78, 0x604070, 0x6C5A8C),
         (22.5, 0x060C24, 0x182A54, 0x202C50, 0x42528A), (24.0, 0x040818, 0x12224A, 0x1C2848, 0x3E4E80))


def lamp_color(hour):
    """Returns the color of the moon or the sun, which fades below the horizon."""
    height = math.sin((hour - 5.6) / 14.6 * math.pi)
    if hour < 5.2 or hour > 20.6:
        return channels(0xD8E2F8)
    share, fade = min(max(height * 2.2, 0.0), 1.0), min(max(1 + height * 10, 0.0), 1.0)
    return [round(mix(a, b, share) * fade) for a, b in zip(channels(0xFF7A30), channels(0xFFF6D8))]


def day():
    """A column for each quarter of an hour; a row for each color."""
    rows = []
    for kind in range(1, 5):
        row = bytearray()
        for quarter in range(96):
            hour = quarter / 4
            a, b = next((a, b) for a, b in zip(HOURS, HOURS[1:]) if a[0] <= hour < b[0])
            t = (hour - a[0]) / (b[0] - a[0])
            row += bytes(round(mix(x, y, t)) for x, y in zip(reversed(channels(a[kind])), reversed(channels(b[kind]))))
        rows.append(bytes(row))
    rows.append(b"".join(bytes(reversed(lamp_color(quarter / 4))) for quarter in range(96)))
    write_tga("day", 2, 96, 5, 24, rows)


LAMPS = {
    "schooner": [(17, 23, 26, 0xFFC060), (-60, 24, 12, 0x40E070), (-5, 21, 22, 0xFFB050), (16, 96, 9, 0xFFF0D0)],
    "steamer": [(20, 50, 12, 0xFFF0D0), (-20, 33, 24, 0xFFC878), (0, 33, 24, 0xFFC878), (20, 33, 24, 0xFFC878),
                (-45, 18, 14, 0xFFB860), (40, 18, 14, 0xFFB860), (52, 62, 9, 0xFFFFFF)],
    "trawler": [(8, 36, 24, 0xFFD890), (-12, 58, 12, 0xFF5040), (36, 30, 9, 0x40E070)],
    "sloop": [(-2, 70, 9, 0xFFF0D0), (-6, 14, 12, 0xFFB050)],
    "rock": [(30, 30, 15, 0xFFC870)],
    "town": [],
}
TOWN_WIDTH, TOWN_HEIGHT, QUAY = 620, 118, 14


def house(c, left, width, height, seed):
    walls = (0xE8D8B8, 0xD88A68, 0xE0B060, 0x9AB0B4, 0xF2EAE0, 0xC86A5C, 0xA8B884)
    roofs = (0xA8503A, 0x7E4438, 0x5C5560)
    base = TOWN_HEIGHT - QUAY
    top, wall = base - height, channels(walls[int(hash_noise(seed + 3) * 7)])
    c.box(left, top, left + width, base, wall[0] << 16 | wall[1] << 8 | wall[2])
    shade = [round(v * 0.8) for v in wall]
    c.box(left + width - 4, top, left + width, base, shade[0] << 16 | shade[1] << 8 | shade[2])
    rise, inset = 10 + 8 * hash_noise(seed + 5), 0.5 if hash_noise(seed + 6) > 0.5 else 0.2
    chimney = left + width * 2 // 3
    c.box(chimney, top - 16, chimney + 4, top, 0x6A4A40)
    c.polygon([(left - 2, top + 1), (left + width * inset, top - rise), (left + width * (1 - inset), top - rise),
               (left + width + 2, top + 1)], roofs[int(hash_noise(seed + 4) * 3)])
    for row in range(top + 5, base - 18, 11):
        for column in range(left + 4, left + width - 5, 9):
            lit = hash_noise(seed * 31 + row * 640 + column) < 0.72
            c.box(column, row, column + 4, row + 6, WINDOW if lit else 0x4A5C6E)
            if lit:
                LAMPS["town"].append((column + 2 - TOWN_WIDTH / 2, TOWN_HEIGHT - row - 3, 11, 0x4C3018))
    c.box(left + 4, base - 10, left + 9, base, 0x5A4034)


def town():
    c = Canvas(TOWN_WIDTH, TOWN_HEIGHT)
    base, left, seed = TOWN_HEIGHT - QUAY, 46, 500
    while left < TOWN_WIDTH - 45:
        width = 24 + int(hash_noise(seed) * 20)
        house(c, left, width, 26 + int(hash_noise(seed + 1) * 36), seed)
        left += width + (12 if hash_noise(seed + 2) > 0.8 else 1)
        seed += 10
    c.box(300, 34, 318, base, 0xE2D6C2)
    c.box(311, 34, 318, base, 0xBCAE9A)
    c.polygon([(297, 35), (309, 2), (321, 35)], 0x4E7A78)
    c.disc(309, 46, 5, 0xFFF8E0)
    c.box(306, 60, 311, 68, WINDOW)
    c.polygon([(0, TOWN_HEIGHT), (18, base), (TOWN_WIDTH, base), (TOWN_WIDTH, TOWN_HEIGHT)], 0x8A8078)
    c.box(16, base, TOWN_WIDTH, base + 3, 0xB4A898)
    for x in range(30, TOWN_WIDTH, 26):
        c.box(x, TOWN_HEIGHT - 9, x + 3, TOWN_HEIGHT, 0x4A4038)
    for x in range(34, TOWN_WIDTH, 78):
        c.box(x, base - 20, x + 1.6, base, 0x40342C)
        c.disc(x + 0.8, base - 20, 2.5, WINDOW)
        LAMPS["town"].append((x + 0.8 - TOWN_WIDTH / 2, QUAY + 20, 26, 0xC09650))
    c.save("town")


def tower():
    c = Canvas(44, 142)
    def band(low, high, color, start=-1.0, end=1.0):
        def half(y):
            return 17 - 6 * y / 130
        c.polygon([(22 + half(low) * start, 142 - low), (22 + half(low) * end, 142 - low),
                   (22 + half(high) * end, 142 - high), (22 + half(high) * start, 142 - high)], color)
    for i in range(5):
        white = i % 2 == 0
        band(20 * i, 20 * i + 20, 0xF8F4EC if white else 0xD8423A)
        band(20 * i, 20 * i + 20, 0xB8B8BC if white else 0xA03234, 0.3)
        band(20 * i, 20 * i + 20, 0xFEFCF8 if white else 0xE06A62, -0.8, -0.45)
    c.box(5, 37, 39, 42, 0x3A3E48)
    c.box(13, 22, 31, 37, WINDOW)
    c.polygon([(10, 22), (34, 22), (27, 12), (23, 4), (21, 4), (17, 12)], 0xC03A34)
    c.save("tower")


def rock():
    c = Canvas(240, 50)
    def shape(color, *points):
        c.polygon([((x + 190) * 0.75, 50 - y * 0.75) for x, y in points], color)
    shape(0x5E5A58, (-190, 0), (-150, 12), (-96, 18), (-60, 34), (-22, 38), (24, 36), (48, 24), (84, 20), (118, 6), (130, 0))
    shape(0x46444A, (-190, 0), (-120, 8), (-60, 14), (-20, 10), (40, 16), (90, 8), (130, 0))
    shape(0x6E8450, (-64, 32), (-40, 38), (20, 37), (40, 26), (6, 30), (-30, 28))
    shape(0xF0E6D4, (22, 34), (62, 26), (62, 46), (22, 50))
    shape(WINDOW, (30, 38), (36, 37), (36, 43), (30, 44))
    shape(WINDOW, (46, 35), (52, 34), (52, 40), (46, 41))
    shape(0xA8503C, (18, 48), (66, 44), (56, 62), (28, 64))
    c.save("rock")


def mill():
    c = Canvas(32, 60)
    for color, points in ((0xE8DCC4, [(-14, 0), (14, 0), (9, 46), (-9, 46)]), (0xB8A88C, [(2, 0), (14, 0), (9, 46), (3, 46)]),
                          (0x8A4A38, [(-11, 46), (11, 46), (5, 56), (-5, 56)]),
                          (0x5A3C2C, [(-3, 0), (3, 0), (3, 11), (-3, 11)]), (WINDOW, [(-2, 24), (2, 24), (2, 30), (-2, 30)])):
        c.polygon([(16 + x, 60 - y) for x, y in points], color)
    c.save("mill")


def lamps():
    """Writes the lamps: a place from the middle of the picture's lower edge, a radius, and a color."""
    lines = ["<lamps>"]
    for picture, places in LAMPS.items():
        for x, y, radius, color in places:
            lines.append(f"\t<{picture}><x>{x:g}</x><y>{y:g}</y><radius>{radius}</radius>"
                         f"<color>{color}</color></{picture}>")
    with open(os.path.join(HERE, "lamps.xml"), "w") as file:
        file.write("\n".join(lines + ["</lamps>", ""]))


def palettes():
    """Writes the colors of all pictures, a row for each."""
    rows = [b"".join(struct.pack("BBBB", blue, green, red, alpha) for red, green, blue, alpha in row)
            for row in PALETTES]
    write_tga("palettes", 2, 256, len(rows), 32, rows)


if __name__ == "__main__":
    for draw in (schooner, steamer, trawler, sloop, gulls, town, tower, rock, mill, clouds, palettes, lamps, font, hills,
                 day):
        draw()
