#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Draws the TGA files in this directory: ships with alpha, gulls on a black color key, and the font."""
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

    def save(self, name, depth):
        """Writes the TGA file, bottom row first. Depth 24 turns pixels below half alpha to black."""
        data = bytearray(struct.pack("<BBBHHBHHHHBB", 0, 0, 2, 0, 0, 0, 0, 0, self.width, self.height, depth, 0))
        for y in reversed(range(self.height)):
            for red, green, blue, alpha in self.pixels[y * self.width:(y + 1) * self.width]:
                shown = alpha >= 0.5
                keyed = [max(round(c), 1) if shown else 0 for c in (blue, green, red)]
                data += bytes([round(blue), round(green), round(red), round(alpha * 255)]
                              if depth == 32 else keyed)
        with open(os.path.join(HERE, name), "wb") as file:
            file.write(data)


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
    c.save("schooner.tga", 32)


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
    c.save("steamer.tga", 32)


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
    c.save("trawler.tga", 32)


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
    c.save("sloop.tga", 32)


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
    c.save("gulls.tga", 24)


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
CELL_WIDTH, CELL_HEIGHT, PITCH, PEN = 16, 28, 2.75, 2.5


def stroke_points(text):
    points = [(2.5 + PITCH * int(p[0]), 3.5 + PITCH * int(p[1])) for p in text.lstrip("~").split()]
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
    header = struct.pack("<BBBHHBHHHHBB", 0, 0, 3, 0, 0, 0, 0, 0, CELL_WIDTH, CELL_HEIGHT * len(GLYPHS), 8, 0)
    with open(os.path.join(HERE, "font.tga"), "wb") as file:
        file.write(header + b"".join(reversed(rows)))


if __name__ == "__main__":
    for draw in (schooner, steamer, trawler, sloop, gulls, font):
        draw()
