"""Pictures that are projected onto walls and floors; their alpha fades out before the border is reached."""

import math
import random

from field import Field, fbm, from_function, strokes, white
from picture import Picture
from textures.common import stored


def _decal(colour, alpha):
    """One file of its own name: colours as a screen shows them, soft alpha, nothing on the outermost texels."""
    n = alpha.n
    inside = from_function(n, lambda u, v: min(u, v, 1.0 - u, 1.0 - v) * n).smoothstep(1.0, 6.0)
    return {"": (Picture(stored(colour).channels + [(alpha * inside).clamp()]), "DXT5")}


def bloodPool(n=512):
    """A dried pool with a thick rim, and what splashed around it."""
    warp = fbm(n, 5, 5, 6, "pool warp", 0.58)
    shape = from_function(n, lambda u, v: math.hypot((u - 0.46) * 1.05, (v - 0.50) * 1.30)) + (warp - 0.5) * 0.26
    pool = shape.smoothstep(0.275, 0.255)
    rng = random.Random("pool drops")
    drops = []
    for _ in range(90):
        angle, away = rng.uniform(0, math.tau), 0.24 + abs(rng.gauss(0.0, 0.10))
        u, v = 0.46 + math.cos(angle) * away, 0.50 + math.sin(angle) * away * 0.85
        long = rng.uniform(0.0, 0.018)
        drops.append([(u, v, rng.uniform(0.25, 1.0)), (u + math.cos(angle) * long, v + math.sin(angle) * long, 0.3)])
    splash = strokes(n, [d for d in drops if all(0.04 < p[0] < 0.96 and 0.04 < p[1] < 0.96 for p in d)], 5.0)
    rim = shape.smoothstep(0.215, 0.262) * pool
    dried = fbm(n, 22, 22, 4, "pool dried", 0.6)
    colour = Picture.ramp(dried, [(0.2, (0.050, 0.006, 0.004)), (0.8, (0.105, 0.012, 0.008))])
    colour = colour.blend((0.024, 0.003, 0.003), rim * 0.75)
    return _decal(colour, (pool * (dried * 0.12 + 0.86) + splash * 0.85).clamp())


def bloodDrag(n=512):
    """Something bleeding was dragged along, from left to right; four fingers tried to hold on."""
    streak = fbm(n, 2, 60, 5, "drag streak", 0.6)
    fade = fbm(n, 4, 6, 5, "drag fade", 0.6)
    band = from_function(n, lambda u, v: abs(v - 0.52 - 0.05 * math.sin(4.2 * u)) / (0.13 + 0.03 * math.sin(7 * u + 1)))
    worn = from_function(n, lambda u, v: 1.0 - 0.75 * u)
    cover = band.smoothstep(1.0, 0.72) * (streak + worn * 0.55 + fade * 0.3).smoothstep(0.80, 1.08)
    rng = random.Random("drag fingers")
    fingers = []
    for finger in range(4):
        v = 0.26 + 0.035 * finger
        path = [(0.18 + 0.012 * finger, v, 1.0)]
        for step in range(1, 16):
            v += rng.gauss(0.0, 0.0022)
            path.append((0.18 + 0.043 * step, v, 1.0 - 0.055 * step))
        fingers.append(path)
    scratch = strokes(n, fingers, 6.0) * (streak + 0.25).smoothstep(0.40, 0.75)
    colour = Picture.ramp(fade, [(0.2, (0.060, 0.008, 0.006)), (0.8, (0.120, 0.017, 0.011))])
    return _decal(colour, (cover * 0.86 + scratch * 0.8).clamp())


def glassBreath(n=256):
    """Breath on cold glass: a pale bloom, thickest in its middle, with a grain of drops and an edge that frays."""
    frayed = fbm(n, 6, 6, 5, "breath edge", 0.55)
    drops = fbm(n, 32, 32, 2, "breath drops", 0.5)
    bloom = from_function(n, lambda u, v: math.hypot(u - 0.5, (v - 0.5) * 1.15)) + (frayed - 0.5) * 0.22
    colour = Picture.flat(n, (0.50, 0.54, 0.58))
    return _decal(colour, (bloom.smoothstep(0.42, 0.08) * (drops * 0.25 + 0.75) * 0.9).clamp())


def dampSheen(n=256):
    """What the wet black thing leaves: a film with a ragged rim, thicker in streaks."""
    warp = fbm(n, 5, 5, 5, "sheen warp", 0.6)
    shape = from_function(n, lambda u, v: math.hypot(u - 0.5, (v - 0.5) * 1.2)) + (warp - 0.5) * 0.34
    film = shape.smoothstep(0.36, 0.22)
    streak = fbm(n, 4, 18, 4, "sheen streak", 0.6)
    colour = Picture.ramp(streak, [(0.2, (0.0030, 0.0034, 0.0036)), (0.8, (0.0120, 0.0126, 0.0120))])
    return _decal(colour, (film * (streak * 0.5 + 0.45)).clamp())


def wetPrint(n=256):
    """One wet print of a narrow shoe, its toe at the top."""
    sole = [[(0.50, 0.20, 1.5), (0.485, 0.30, 2.1), (0.48, 0.38, 2.2), (0.49, 0.47, 1.7)]]
    waist = [[(0.49, 0.47, 1.3), (0.50, 0.58, 0.9)]]
    heel = [[(0.505, 0.70, 1.45), (0.505, 0.77, 1.5)]]
    pressed = strokes(n, sole + waist + heel, 15.0).blurred(1)
    water = fbm(n, 9, 9, 5, "print water", 0.62)
    rim = (strokes(n, sole + heel, 19.0) - strokes(n, sole + heel, 14.0)).clamp().blurred(1)
    drops = strokes(n, [[(0.62, 0.30, 0.4), (0.622, 0.302, 0.4)], [(0.37, 0.55, 0.3), (0.372, 0.552, 0.3)],
                        [(0.58, 0.86, 0.35), (0.582, 0.862, 0.35)]], 6.0)
    colour = Picture.ramp(water, [(0.2, (0.010, 0.012, 0.014)), (0.8, (0.030, 0.033, 0.036))])
    return _decal(colour, (pressed * (water * 0.5 + 0.42) + rim * 0.3 + drops * 0.6).clamp())


#: Palm of a hand print and its fingers from root to tip, in units of the palm's width; the thumb is the first.
_FINGERS = (
    ((-0.48, 0.12), (-0.88, -0.20), (-1.10, -0.52)),
    ((-0.38, -0.46), (-0.52, -1.00), (-0.62, -1.48)),
    ((-0.11, -0.54), (-0.14, -1.14), (-0.18, -1.70)),
    ((0.16, -0.50), (0.25, -1.06), (0.31, -1.56)),
    ((0.42, -0.36), (0.60, -0.80), (0.74, -1.18)),
)


def _hand(u, v, size, turn, mirrored):
    """Strokes of one hand print: three pads and the joints of five fingers."""
    s, c = math.sin(turn), math.cos(turn)

    def at(x, y, pressure):
        x = -x if mirrored else x
        return (u + (x * c - y * s) * size, v + (x * s + y * c) * size, pressure)

    paths = [[at(-0.25, 0.25, 2.2), at(-0.10, -0.22, 1.9)], [at(0.25, 0.30, 2.0), at(0.22, -0.18, 2.1)]]
    paths.append([at(-0.28, -0.25, 1.6), at(0.30, -0.22, 1.6)])
    for joints in _FINGERS:
        for (x0, y0), (x1, y1) in zip(joints, joints[1:]):
            paths.append([at(x0 + (x1 - x0) * 0.22, y0 + (y1 - y0) * 0.22, 0.80), at(x1, y1, 0.72)])
    return paths


def handprints(n=512):
    """Bloody hands on a wall, one of which slid down."""
    paths = _hand(0.27, 0.38, 0.112, -0.22, False) + _hand(0.63, 0.32, 0.112, 0.28, True)
    prints = strokes(n, paths, 11.0)
    low = _hand(0.48, 0.74, 0.105, 0.05, True)
    prints = Field(n, [max(a, b) for a, b in zip(prints.v, strokes(n, low, 10.0).v)])
    smear = [
        [(x, 0.36 + 0.02 * i, 0.7), (x + 0.01, 0.62 + 0.05 * (i % 3), 0.35)]
        for i, x in enumerate((0.21, 0.25, 0.29, 0.33))
    ]
    smears = strokes(n, smear, 7.0) * fbm(n, 60, 3, 4, "hand smear").smoothstep(0.40, 0.75)
    skin = fbm(n, 50, 50, 3, "hand skin", 0.7).smoothstep(0.30, 0.52)
    drips = strokes(
        n,
        [
            [(x, y, 0.5), (x + 0.002, y + long, 0.28)]
            for x, y, long in ((0.30, 0.45, 0.20), (0.66, 0.40, 0.14), (0.60, 0.39, 0.26), (0.52, 0.80, 0.12))
        ],
        4.0,
    )
    colour = Picture.ramp(skin, [(0.2, (0.070, 0.009, 0.007)), (0.8, (0.125, 0.016, 0.011))])
    return _decal(colour, (prints.blurred(1) * (skin * 0.62 + 0.26) + smears * 0.5 + drips * 0.8).clamp())


def crack(n=512):
    """A crack that runs up a wall and forks, with plaster fallen from its edges."""
    paths, rng = [], random.Random("wall crack 7")
    pending = [(0.45, 0.97, -1.45, 1.0, 1.05)]
    while pending:
        u, v, angle, pressure, left = pending.pop()
        path = [(u, v, pressure)]
        while left > 0.0 and pressure > 0.08:
            angle += rng.gauss(0.0, 0.42)
            angle = -1.5 + (angle + 1.5) * 0.78
            u, v = u + math.cos(angle) * 0.016, v + math.sin(angle) * 0.016
            left, pressure = left - 0.016, pressure * 0.985
            path.append((u, v, pressure))
            if rng.random() < 0.06:
                pending.append((u, v, angle + rng.choice((-1, 1)) * rng.uniform(0.5, 1.2), pressure * 0.6, left * 0.6))
        paths.append([p for p in path if 0.03 < p[0] < 0.97 and 0.03 < p[1] < 0.97])
    paths = [p for p in paths if len(p) > 1]
    line = strokes(n, paths, 2.0)
    near = strokes(n, paths, 13.0).blurred(4)
    fallen = (near + fbm(n, 12, 12, 6, "crack fallen", 0.62) * 0.9).smoothstep(0.98, 1.04)
    under = Picture.ramp(
        fbm(n, 30, 30, 4, "crack under", 0.6), [(0.2, (0.135, 0.115, 0.092)), (0.8, (0.215, 0.188, 0.155))]
    )
    shadow = near.smoothstep(0.1, 0.8)
    colour = under.blend((0.060, 0.052, 0.044), (1.0 - fallen) * 0.8).blend((0.008, 0.007, 0.006), line)
    return _decal(colour, (line * 0.96 + fallen * 0.92 + shadow * 0.10).clamp())


def grime(n=256):
    """Soot and damp that gathered in a corner: black below, running and thinning upwards."""
    body = fbm(n, 4, 4, 6, "grime body", 0.58)
    runs = fbm(n, 18, 2, 5, "grime runs", 0.6)
    rise = from_function(n, lambda u, v: v * 1.25 - 0.42 - abs(u - 0.5) * 0.55)
    alpha = (rise + (body - 0.5) * 0.85 + (runs - 0.5) * 0.45).smoothstep(0.02, 0.75)
    edge = from_function(n, lambda u, v: min(u, 1.0 - u) * 6.0).clamp()
    colour = Picture.ramp(runs, [(0.2, (0.017, 0.015, 0.012)), (0.8, (0.046, 0.040, 0.030))])
    return _decal(colour, alpha * edge * 0.88)


#: Letters as pen strokes in a box of width 0.7 and height 1, y downwards.
_LETTERS = {
    "H": (((0.05, 0.0), (0.03, 1.0)), ((0.62, 0.02), (0.60, 1.0)), ((0.03, 0.52), (0.62, 0.47))),
    "E": (((0.52, 0.03), (0.06, 0.0), (0.03, 0.99), (0.56, 0.96)), ((0.04, 0.50), (0.45, 0.47))),
    "L": (((0.08, 0.0), (0.04, 0.97), (0.55, 0.94)),),
    "I": (((0.30, 0.0), (0.32, 1.0)),),
    "S": (
        ((0.56, 0.12), (0.34, 0.0), (0.08, 0.14), (0.12, 0.40), (0.46, 0.56), (0.56, 0.80), (0.32, 1.0), (0.04, 0.88)),
    ),
    "T": (((0.0, 0.03), (0.66, 0.0)), ((0.33, 0.02), (0.31, 1.0))),
    "N": (((0.04, 1.0), (0.06, 0.0), (0.56, 0.98), (0.60, 0.0)),),
    "Ö": (
        ((0.32, 0.0), (0.06, 0.30), (0.05, 0.70), (0.30, 1.0), (0.56, 0.72), (0.58, 0.30), (0.34, 0.0)),
        ((0.20, -0.22), (0.21, -0.19)),
        ((0.46, -0.23), (0.47, -0.20)),
    ),
    "R": (((0.05, 1.0), (0.06, 0.0), (0.48, 0.08), (0.52, 0.36), (0.08, 0.50), (0.58, 1.0)),),
}


def _lettering(text, u, v, size, seed):
    """Brush strokes of a word, each letter a little off its line."""
    rng = random.Random(seed)
    paths, drips = [], []
    for letter in text:
        if letter != " ":
            tilt, drop, swell = rng.uniform(-0.06, 0.06), rng.uniform(-0.06, 0.06), rng.uniform(0.94, 1.08)
            for stroke in _LETTERS[letter]:
                path = [
                    (u + (x + tilt * y) * size, v + (y * swell + drop) * size, rng.uniform(0.85, 1.15))
                    for x, y in stroke
                ]
                paths.append(path)
                if rng.random() < 0.75:
                    x, y, _ = max(path, key=lambda p: p[1])
                    drips.append([(x, y, 0.42), (x + rng.uniform(-0.003, 0.003), y + rng.uniform(0.03, 0.13), 0.16)])
        u += (0.64 if letter in " I" else 0.86) * size
    return paths, drips


def paintedSign(n=512):
    """Words in dripping paint, twice as wide as high when it is projected: SIE HÖREN, they hear."""
    words, drips = _lettering("SIE", 0.24, 0.13, 0.185, "sign 1")
    more, dripping = _lettering("HÖREN", 0.11, 0.52, 0.185, "sign 2")
    brush = fbm(n, 40, 40, 4, "sign brush", 0.65)
    paint = strokes(n, words + more, 10.5) * (brush * 0.75 + 0.62).clamp()
    running = strokes(n, drips + dripping, 8.0)
    colour = Picture.ramp(brush, [(0.2, (0.080, 0.010, 0.008)), (0.8, (0.165, 0.022, 0.014))])
    return _decal(colour, (paint.smoothstep(0.30, 0.75) * 0.92 + running * 0.85).clamp())


def scorch(n=256):
    """Where something burnt: black middle, brown ring, flakes."""
    away = from_function(n, lambda u, v: math.hypot(u - 0.5, v - 0.5)) + (fbm(n, 7, 7, 6, "scorch", 0.6) - 0.5) * 0.30
    grain = white(n, "scorch grain").blurred(1)
    colour = Picture.ramp(
        away, [(0.0, (0.008, 0.007, 0.006)), (0.28, (0.016, 0.013, 0.010)), (0.42, (0.060, 0.040, 0.024))]
    )
    return _decal(colour.shade(grain * 0.4 + 0.8), away.smoothstep(0.46, 0.16) * 0.94)
