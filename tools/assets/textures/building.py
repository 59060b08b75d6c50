"""Walls and floors."""

import math
import random

from field import Field, fbm, from_function, strokes, value_noise, wandering_paths, white
from picture import Picture, cavity
from textures.common import maps_of


def plaster(n=512):
    """Old lime plaster, 2 m: trowel marks, stains, hair cracks, flakes gone to the grey coat beneath."""
    coarse = fbm(n, 3, 3, 4, "plaster coarse")
    trowel = fbm(n, 6, 14, 4, "plaster trowel").warped(coarse, fbm(n, 4, 4, 3, "plaster warp"), 60)
    grit = white(n, "plaster grit").blurred(1)
    flakes = fbm(n, 7, 7, 6, "plaster flakes", 0.6).smoothstep(0.66, 0.69)
    cracks = strokes(n, wandering_paths(9, "plaster cracks", 0.55, 0.33, 0.02), 1.2)
    height = trowel * 0.55 + grit * 0.5 + coarse * 0.5 - flakes * 0.9 - cracks * 1.1
    stains = fbm(n, 2, 2, 6, "plaster stains", 0.55).smoothstep(0.42, 0.78)
    drips = fbm(n, 24, 2, 5, "plaster drips").smoothstep(0.52, 0.85) * stains
    colour = Picture.ramp(trowel * 0.6 + coarse * 0.4, [(0.2, (0.39, 0.355, 0.30)), (0.8, (0.53, 0.49, 0.42))])
    colour = colour.blend((0.27, 0.22, 0.16), stains * 0.55).blend((0.17, 0.135, 0.10), drips * 0.6)
    colour = colour.blend((0.295, 0.265, 0.225), flakes * 0.85).blend((0.08, 0.07, 0.06), cracks * 0.8)
    colour = colour.shade(cavity(height, 3, 0.5)).shade(grit * 0.24 + 0.88)
    return maps_of(colour, height, 2.2)


def _leaf(x, y, angle, length, width):
    """Whether a point lies in a pointed leaf that grows from the origin; angle 0 is up."""
    s, c = math.sin(angle), math.cos(angle)
    along, across = (x * s - y * c) / length, (x * c + y * s) / width
    if not 0.0 < along < 1.0:
        return False
    half = math.sin(math.pi * along**0.75)
    return abs(across) < half and not (abs(across) < 0.14 and along < 0.75)


def _damask(u, v):
    """Ornament of one wallpaper repeat, 0 or 1: an ogee lattice with a palmette in each field."""
    x, y = u - 0.5, v - 0.5
    ogee = 0.25 + 0.23 * math.cos(math.tau * y)
    if abs(abs(x) - ogee) < 0.013 + 0.008 * math.cos(math.tau * 8 * y):
        return 1.0
    for cx, cy in ((0.0, 0.08), (0.5, 0.58), (-0.5, 0.58), (0.5, -0.42), (-0.5, -0.42)):
        px, py = x - cx, y - cy
        if math.hypot(px, py - 0.015) < 0.028 or abs(math.hypot(abs(px) - 0.062, py - 0.035) - 0.034) < 0.010:
            return 1.0
        for angle, length, width in (
            (0.0, 0.27, 0.072),
            (0.46, 0.235, 0.050),
            (1.05, 0.13, 0.034),
            (math.pi, 0.17, 0.030),
        ):
            if _leaf(px, py, angle, length, width) or _leaf(px, py, -angle, length, width):
                return 1.0
    return 0.0


def wallpaper(n=512):
    """Faded damask paper, 2 m (four repeats of 0.5 m): raised print, seams, damp, torn spots."""
    motif = from_function(n // 4, _damask).v
    quarter = n // 4
    print_ = Field(n, [motif[(y % quarter) * quarter + x % quarter] for y in range(n) for x in range(n)])
    print_ = print_.blurred(1)
    wear = fbm(n, 5, 5, 6, "paper wear", 0.6)
    print_ = print_ * (wear.smoothstep(0.78, 0.50) * 0.75 + 0.25)
    fibre = fbm(n, 48, 48, 3, "paper fibre")
    seams = from_function(n, lambda u, v: 1.0 if (u * 4) % 2 < 0.012 else 0.0)
    torn = fbm(n, 4, 4, 7, "paper torn", 0.62).smoothstep(0.735, 0.75)
    bubbles = fbm(n, 9, 9, 3, "paper bubbles")
    damp = fbm(n, 2, 2, 6, "paper damp", 0.55).smoothstep(0.45, 0.8)
    runs = fbm(n, 20, 2, 5, "paper runs").smoothstep(0.5, 0.8) * damp
    height = print_ * 0.6 + fibre * 0.35 + bubbles * 1.6 - seams * 0.8 - torn * 1.2
    colour = Picture.ramp(fibre * 0.4 + wear * 0.6, [(0.2, (0.105, 0.135, 0.110)), (0.8, (0.165, 0.195, 0.155))])
    colour = colour.blend((0.315, 0.285, 0.185), print_ * 0.68)
    colour = colour.blend((0.15, 0.115, 0.07), damp * 0.5).blend((0.07, 0.052, 0.034), runs * 0.55)
    colour = colour.blend(Picture.ramp(fibre, [(0.2, (0.37, 0.34, 0.29)), (0.8, (0.48, 0.44, 0.38))]), torn)
    colour = colour.shade(cavity(height, 3, 0.45)).blend((0.05, 0.05, 0.04), seams * 0.5)
    return maps_of(colour, height, 1.1, print_ * 0.06 * (1.0 - damp) + 0.01, normal_size=256)


def _grain(n, seed, cells_v=10, figure=2.6):
    """Wood figure with its grain along u: the tone 0..1 and the pores 0..1."""
    warp = fbm(n, 2, 5, 4, seed + " warp")
    long_ = fbm(n, 1, cells_v, 5, seed + " long", 0.55)
    rings = (warp * figure + long_ * 2.2).map(lambda a: 0.5 + 0.5 * math.sin(math.tau * a))
    fine = fbm(n, 3, 128, 2, seed + " fine", 0.7)
    pores = value_noise(n, 8, n // 2, seed + " pores").smoothstep(0.55, 1.1)
    return rings * 0.34 + long_ * 0.42 + fine * 0.24, pores


def wood(n=512):
    """Dark polished furniture wood, 1 m, grain along u: figure, pores, scratches, worn varnish."""
    tone, pores = _grain(n, "wood")
    scratches = strokes(n, wandering_paths(26, "wood scratches", 0.12, 0.05, 0.0), 0.7)
    wear = fbm(n, 4, 6, 5, "wood wear", 0.55).smoothstep(0.5, 0.85)
    height = tone * 0.25 - pores * 0.3 - scratches * 0.4
    colour = Picture.ramp(
        tone, [(0.15, (0.112, 0.058, 0.032)), (0.5, (0.180, 0.098, 0.054)), (0.9, (0.255, 0.148, 0.083))]
    )
    colour = colour.blend((0.070, 0.038, 0.023), pores * 0.45).blend((0.30, 0.21, 0.14), scratches * 0.35)
    colour = colour.shade(1.0 - wear * 0.22)
    return maps_of(colour, height, 1.3, (0.13 - wear * 0.09 - pores * 0.08).clamp(), normal_size=256)


def boards(n=512):
    """Floor boards along u, 2 m with ten rows: gaps, butt joints, nails, wear along the grain."""
    rows = 10
    tone, pores = _grain(n, "boards", 14, 2.4)
    rng = random.Random("boards layout")
    layout = [
        (rng.randrange(n), rng.randrange(n), rng.uniform(-0.17, 0.15), rng.uniform(0.1, 0.9)) for _ in range(rows)
    ]
    tone_out, pore_out, edge_out, nail_out = [], [], [], []
    for y in range(n):
        row = y * rows // n
        shift_u, shift_v, level, joint = layout[row]
        source = ((y + shift_v) % n) * n
        top, bottom = -(-row * n // rows), -(-(row + 1) * n // rows)
        from_edge = min(y - top, bottom - 1 - y)
        tones = tone.v[source + shift_u : source + n] + tone.v[source : source + shift_u]
        pored = pores.v[source + shift_u : source + n] + pores.v[source : source + shift_u]
        joint_x = int(joint * n)
        nails_here = abs((y - top) / (bottom - top) - 0.5)
        for x in range(n):
            to_joint = abs((x - joint_x + n // 2) % n - n // 2)
            edge_out.append(min(from_edge, to_joint))
            side = 0.5 * level if x > joint_x else -0.5 * level
            tone_out.append(tones[x] + level + side)
            pore_out.append(pored[x])
            nail_out.append(math.hypot(to_joint - 7, (abs(nails_here) - 0.28) * (bottom - top)))
    tone, pores = Field(n, tone_out), Field(n, pore_out)
    edge = Field(n, edge_out)
    gap = edge.smoothstep(1.6, 0.2)
    rounded = edge.smoothstep(0.0, 6.0)
    nails = Field(n, nail_out).smoothstep(3.0, 1.8)
    dirt = fbm(n, 3, 3, 6, "boards dirt", 0.58).smoothstep(0.4, 0.75)
    grit = white(n, "boards grit").blurred(1)
    height = rounded * 1.6 - gap * 1.5 + tone * 0.35 - pores * 0.5 - nails * 0.6 + grit * 0.2
    colour = Picture.ramp(
        tone, [(0.1, (0.105, 0.068, 0.044)), (0.5, (0.195, 0.132, 0.086)), (0.95, (0.300, 0.215, 0.145))]
    )
    colour = colour.blend((0.065, 0.042, 0.028), pores * 0.6).blend((0.085, 0.066, 0.050), dirt * 0.55)
    colour = colour.shade(rounded * 0.35 + 0.65).blend((0.012, 0.010, 0.008), gap * 0.95)
    colour = colour.blend((0.09, 0.075, 0.065), nails * 0.9).shade(grit * 0.2 + 0.9)
    return maps_of(colour, height, 1.9, (0.08 - dirt * 0.06 - gap * 0.08 - pores * 0.03).clamp())


def tiles(n=512):
    """Worn stone floor tiles, 1.2 m with 4 x 4 of them: uneven laying, chipped corners, dirty joints."""
    count = 4
    rng = random.Random("tiles layout")
    kinds = [[(rng.uniform(-1, 1), rng.uniform(-1, 1), rng.random()) for _ in range(count)] for _ in range(count)]
    warp_u = fbm(n, 10, 10, 4, "tiles edge u", 0.6)
    warp_v = fbm(n, 10, 10, 4, "tiles edge v", 0.6)
    size = n / count
    edge_out, tilt_out, tone_out = [], [], []
    for i in range(n * n):
        x, y = i % n / size, i // n / size
        cx, cy = int(x), int(y)
        fx = x - cx + (warp_u.v[i] - 0.5) * 0.035
        fy = y - cy + (warp_v.v[i] - 0.5) * 0.035
        corner = math.hypot(max(abs(fx - 0.5) - 0.40, 0.0), max(abs(fy - 0.5) - 0.40, 0.0))
        edge_out.append(0.10 - corner)
        tilt_x, tilt_y, tone = kinds[cy][cx]
        tilt_out.append((fx - 0.5) * tilt_x + (fy - 0.5) * tilt_y)
        tone_out.append(tone)
    edge, tilt, kind = Field(n, edge_out), Field(n, tilt_out), Field(n, tone_out)
    chips = fbm(n, 14, 14, 5, "tiles chips", 0.6).smoothstep(0.60, 0.72) * edge.smoothstep(0.075, 0.02)
    body = (edge - chips * 0.03).smoothstep(0.008, 0.035)
    cracks = strokes(n, wandering_paths(5, "tiles cracks", 0.35, 0.22, 0.012), 1.0) * body
    stone = fbm(n, 8, 8, 6, "tiles stone", 0.6)
    scuffs = fbm(n, 3, 3, 6, "tiles scuffs", 0.55)
    pits = white(n, "tiles pits").blurred(1).smoothstep(0.62, 0.75)
    height = body * 3.0 + tilt * 2.2 * body + stone * 0.5 - pits * 0.35 - cracks * 1.4 - chips * 1.2
    colour = Picture.ramp(
        stone * 0.55 + kind * 0.45,
        [(0.15, (0.155, 0.150, 0.140)), (0.5, (0.225, 0.210, 0.185)), (0.85, (0.310, 0.280, 0.235))],
    )
    colour = colour.blend((0.125, 0.105, 0.080), scuffs.smoothstep(0.45, 0.8) * 0.6)
    grout = Picture.ramp(fbm(n, 30, 30, 3, "tiles grout"), [(0.2, (0.050, 0.045, 0.038)), (0.8, (0.105, 0.095, 0.080))])
    colour = colour.blend((0.33, 0.31, 0.28), chips * 0.35).blend((0.03, 0.027, 0.024), cracks * 0.85)
    colour = colour.blend(grout, 1.0 - body).shade(cavity(height, 4, 0.16))
    polish = (scuffs.smoothstep(0.75, 0.35) * 0.14 + 0.02) * body
    return maps_of(colour, height, 1.0, polish, normal_size=256)


def _brickwork(n, courses, stretchers, seed):
    """Bonded bricks: where brick is and not mortar, the tone of each brick, roughness, grit and the relief of all."""
    rng = random.Random(seed + " layout")
    tones = [[rng.random() for _ in range(stretchers)] for _ in range(courses)]
    warp_u, warp_v = fbm(n, 12, 12, 4, seed + " edge u", 0.6), fbm(n, 12, 12, 4, seed + " edge v", 0.6)
    sway = 0.0175 * n
    edge_out, tone_out = [], []
    for i in range(n * n):
        y = (i // n + (warp_v.v[i] - 0.5) * sway) / n * courses % courses
        course = int(y)
        x = ((i % n + (warp_u.v[i] - 0.5) * sway) / n * stretchers + 0.5 * (course % 2)) % stretchers
        column = int(x)
        edge_out.append(min(min(x - column, column + 1 - x) / stretchers, min(y - course, course + 1 - y) / courses))
        tone_out.append(tones[course][column])
    body, tone = Field(n, edge_out).smoothstep(0.004, 0.011), Field(n, tone_out)
    rough = fbm(n, 16, 16, 5, seed + " rough", 0.6)
    grit = white(n, seed + " grit").blurred(1)
    return body, tone, rough, grit, body * 2.4 + rough * 1.3 + grit * 0.7 + tone * body * 0.5


def brick(n=512):
    """Sooty brickwork, 1 m: four stretchers a course, twelve courses, crumbling mortar."""
    body, tone, rough, grit, height = _brickwork(n, 12, 4, "brick")
    soot = fbm(n, 2, 2, 5, "brick soot", 0.55).smoothstep(0.48, 0.85)
    stops = [(0.1, (0.170, 0.090, 0.062)), (0.5, (0.265, 0.132, 0.086)), (0.9, (0.325, 0.185, 0.125))]
    colour = Picture.ramp(tone * 0.65 + rough * 0.35, stops)
    mortar = Picture.ramp(rough, [(0.2, (0.17, 0.155, 0.135)), (0.8, (0.27, 0.25, 0.22))])
    colour = colour.blend(mortar, 1.0 - body).blend((0.040, 0.035, 0.031), soot * 0.55)
    return maps_of(colour.shade(cavity(height, 3, 0.28)).shade(grit * 0.3 + 0.85), height, 1.1, normal_size=256)


def firebox(n=256):
    """Inside of a fireplace, unrolled from jamb to jamb, the whole of it: black with soot, warm from the coals."""
    body, _, rough, grit, height = _brickwork(n, 10, 6, "firebox")
    soot = from_function(n, lambda u, v: 1.25 - v * 0.75 - abs(u - 0.5) * 0.3) + (rough - 0.5) * 0.5
    colour = Picture.ramp(rough, [(0.2, (0.150, 0.080, 0.055)), (0.8, (0.235, 0.130, 0.088))])
    colour = colour.blend((0.16, 0.145, 0.125), 1.0 - body).blend((0.020, 0.018, 0.017), soot.clamp() * 0.9)
    heat = from_function(n, lambda u, v: math.exp(-(((u - 0.5) / 0.20) ** 2) - ((v - 0.86) / 0.30) ** 2))
    glow = heat * (body * 0.55 + 0.25) * (rough * 0.7 + 0.55) * (1.2 - soot * 0.35)
    warm = Picture.ramp(glow.clamp(), [(0.0, (0.0, 0.0, 0.0)), (0.4, (0.16, 0.045, 0.012)), (1.0, (0.50, 0.20, 0.060))])
    return maps_of(colour.shade(grit * 0.3 + 0.85), height, 1.5, emissive=warm)
