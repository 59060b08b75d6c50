"""Paper and books."""

import math
import random

from field import Field, fbm, from_function, strokes
from picture import Picture
from textures.common import maps_of


def paper(n=256):
    """A written sheet, the whole of it: brown edges and a hurried hand."""
    fibre = fbm(n, 20, 20, 4, "sheet fibre", 0.6)
    edge = from_function(n, lambda u, v: min(u, 1 - u, v, 1 - v)).smoothstep(0.14, 0.0)
    rng = random.Random("sheet hand")
    lines = []
    for line in range(17):
        v = 0.11 + line * 0.047
        u, path = 0.12 + rng.random() * 0.02, []
        end = rng.uniform(0.5, 0.7) if line in (5, 11, 16) else rng.uniform(0.82, 0.89)
        while u < end:
            if rng.random() < 0.16:
                lines.append(path)
                path, u = [], u + 0.02
            path.append((u, v + rng.uniform(-0.013, 0.011), rng.uniform(0.5, 1.0)))
            u += rng.uniform(0.004, 0.011)
        lines.append(path)
    ink = strokes(n, [path for path in lines if len(path) > 1], 0.75)
    stain = from_function(n, lambda u, v: abs(math.hypot(u - 0.72, v - 0.7) - 0.13)).smoothstep(0.02, 0.0)
    colour = Picture.ramp(fibre, [(0.2, (0.43, 0.38, 0.285)), (0.8, (0.54, 0.49, 0.375))])
    colour = colour.blend((0.22, 0.16, 0.095), (edge * (fibre * 0.9 + 0.2)).clamp()).blend(
        (0.26, 0.18, 0.10), stain * 0.4
    )
    return maps_of(colour.blend((0.055, 0.045, 0.05), ink * 0.85), fibre, 0.6, normal_size=128)


BOOK_SPINES = 16  # spines side by side in the upper three quarters of the books texture
BOOK_SPINE_PART = 0.75
BOOK_COVER_PART = 0.5  # of the width of the lower quarter: left of it cover leather, right of it page edges


def books(n=512):
    """Atlas of sixteen book spines above, cover leather and page edges below; models.py knows the layout."""
    rng = random.Random("book bindings")
    dyes = [
        (0.155, 0.048, 0.040),
        (0.070, 0.085, 0.055),
        (0.058, 0.062, 0.092),
        (0.150, 0.098, 0.052),
        (0.085, 0.066, 0.052),
        (0.205, 0.155, 0.090),
        (0.110, 0.035, 0.048),
        (0.052, 0.052, 0.052),
    ]
    bindings = []
    for _ in range(BOOK_SPINES):
        bands = sorted(rng.uniform(0.08, 0.92) for _ in range(rng.choice((2, 3, 4, 5))))
        bindings.append((rng.choice(dyes), bands, rng.uniform(0.12, 0.3), rng.random() < 0.7))
    split = int(n * BOOK_SPINE_PART)
    width = n // BOOK_SPINES
    reds, greens, blues, height = [], [], [], []
    for y in range(n):
        v = y / split
        for x in range(n):
            if y < split:
                (r, g, b), bands, label, gilded = bindings[x // width]
                across = (x % width + 0.5) / width * 2 - 1
                rise = math.sqrt(max(0.0, 1.0 - across * across)) * 6.0
                for band in bands:
                    off = abs(v - band)
                    if off < 0.013:
                        rise += 1.5
                    elif gilded and off < 0.019:
                        r, g, b = 0.40, 0.30, 0.13
                if abs(v - label - 0.03) < 0.055 and abs(across) < 0.78:
                    inside = abs(v - label - 0.03) < 0.047 and abs(across) < 0.68
                    r, g, b = (r * 0.45, g * 0.45, b * 0.45) if inside else (0.40, 0.30, 0.13)
                    if (
                        inside
                        and gilded
                        and int((v - label) * 95) % 2
                        and (x * 7919 + y // 4 * 31) % 5 < 3
                        and abs(across) < 0.5
                    ):
                        r, g, b = 0.36, 0.27, 0.12
            elif x < n * BOOK_COVER_PART:
                r, g, b = 0.125, 0.070, 0.045
                rise = 6.0
            else:
                leaf = 0.76 + 0.24 * math.sin(y * 2.3) * math.sin(y * 0.71 + 1.0)
                r, g, b = 0.40 * leaf, 0.35 * leaf, 0.255 * leaf
                rise = leaf
            reds.append(r)
            greens.append(g)
            blues.append(b)
            height.append(rise)
    scuff = fbm(n, 16, 8, 6, "book scuff", 0.62)
    grain = fbm(n, 64, 64, 2, "book grain")
    colour = Picture([Field(n, reds), Field(n, greens), Field(n, blues)])
    colour = colour.shade(scuff * 0.7 + 0.62).blend((0.20, 0.145, 0.095), scuff.smoothstep(0.62, 0.82) * 0.5)
    relief = Field(n, height) + grain * 0.8
    return maps_of(colour, relief, 0.8, scuff.smoothstep(0.7, 0.3) * 0.08 + 0.015, normal_size=256)
