#!/usr/bin/env python3
"""make_icon.py: draws the game's icon, a lit window with somebody behind it, into assets/icons.

`102.bmp` is the window's own, the PNG files are for desktops. The picture is drawn as shapes in the unit square, once
for every size, so that the small ones stay sharp; what would be thinner than a pixel there is drawn a pixel thick.
"""

import math
import pathlib
import struct

from preview import write_png

OUTPUT = pathlib.Path(__file__).resolve().parents[2] / "assets" / "icons"
SIZES = 16, 24, 32, 48, 64, 128, 256, 512
WINDOW_SIZE = 64  # of the picture that the window itself shows
SAMPLES = 4       # along each side of a pixel

NIGHT, WALL = (0.004, 0.005, 0.009), (0.014, 0.017, 0.026)
CANDLE, DIM = (1.0, 0.58, 0.16), (0.42, 0.15, 0.03)
FRAME = (0.008, 0.006, 0.005)

WEST, EAST, NORTH, SOUTH = 0.22, 0.78, 0.08, 0.92  # the window's edges
CORNER = 0.16                                      # radius of the picture's corners
BAR = 0.035                                        # of the bars between the panes


def mix(one, other, share):
    share = min(max(share, 0.0), 1.0)
    return tuple(a + (b - a) * share for a, b in zip(one, other))


def is_inside(x, y):
    """Whether a place lies on the picture, whose corners are round."""
    across, down = (max(CORNER - v, v - 1.0 + CORNER, 0.0) for v in (x, y))
    return math.hypot(across, down) <= CORNER


def is_figure(x, y):
    """The head, neck and shoulders of who stands behind the panes, somewhat to the right."""
    x -= 0.565
    head = math.hypot(x / 0.072, (y - 0.565) / 0.095) <= 1.0
    neck = abs(x) <= 0.030 and 0.62 <= y <= 0.72
    return head or neck or math.hypot(x / 0.155, (y - 0.90) / 0.205) <= 1.0


def is_bar(x, y, thick):
    """The bars between the panes, two wide and three high, and the sill."""
    rows = (NORTH + (SOUTH - NORTH) / 3, NORTH + (SOUTH - NORTH) * 2 / 3)
    return abs(x - 0.5) <= thick / 2 or any(abs(y - row) <= thick / 2 for row in rows)


def colour(x, y, pixel):
    """Red, green and blue at a place of the picture, linear; `pixel` is the length of one."""
    thick, edge = max(BAR, 1.15 * pixel), max(0.03, 1.0 * pixel)
    if not (WEST - edge <= x <= EAST + edge and NORTH - edge <= y <= SOUTH + edge):
        out = math.hypot(max(WEST - x, x - EAST, 0.0), max(NORTH - y, y - SOUTH, 0.0))
        return mix(mix(WALL, NIGHT, y * 0.6 + abs(x - 0.5)), CANDLE, 0.16 * math.exp(-out / 0.09))
    if not (WEST <= x <= EAST and NORTH <= y <= SOUTH) or is_bar(x, y, thick):
        return FRAME
    if is_figure(x, y):
        return mix(FRAME, DIM, 0.08)
    glow = math.hypot((x - 0.44) / 0.42, (y - 0.62) / 0.62)
    return mix(CANDLE, DIM, glow ** 1.4)


def encoded(linear):
    """A linear value as one of eight bits."""
    value = 12.92 * linear if linear <= 0.0031308 else 1.055 * linear ** (1 / 2.4) - 0.055
    return min(max(int(value * 255 + 0.5), 0), 255)


def drawn(size):
    """The picture as rows of red, green, blue and alpha."""
    return [[pixel_at(column, row, size) for column in range(size)] for row in range(size)]


def pixel_at(column, row, size):
    total, covered = [0.0, 0.0, 0.0], 0
    for down in range(SAMPLES):
        for across in range(SAMPLES):
            x, y = ((v + (s + 0.5) / SAMPLES) / size for v, s in ((column, across), (row, down)))
            if is_inside(x, y):
                covered += 1
                total = [a + b for a, b in zip(total, colour(x, y, 1 / size))]
    alpha = int(covered * 255 / SAMPLES ** 2 + 0.5)
    return (*(encoded(value / max(covered, 1)) for value in total), alpha)


def bitmap(rows):
    """A bitmap file with four bytes a pixel, whose header tells that one of them is alpha."""
    size = len(rows)
    pixels = b"".join(bytes((b, g, r, a)) for row in reversed(rows) for r, g, b, a in row)
    masks = struct.pack("<4I", 0xFF0000, 0xFF00, 0xFF, 0xFF000000)
    info = struct.pack("<IiiHHIIiiII", 108, size, size, 1, 32, 3, len(pixels), 2835, 2835, 0, 0) + masks
    info += b"BGRs" + bytes(108 - len(info) - 4)
    return b"BM" + struct.pack("<IHHI", 14 + len(info) + len(pixels), 0, 0, 14 + len(info)) + info + pixels


def main():
    OUTPUT.mkdir(parents=True, exist_ok=True)
    for size in SIZES:
        rows = drawn(size)
        write_png(OUTPUT / f"mornal-{size}.png", size, size, [bytes(v for p in row for v in p) for row in rows])
        if size == WINDOW_SIZE:
            (OUTPUT / "102.bmp").write_bytes(bitmap(rows))


if __name__ == "__main__":
    main()
