"""Masonry, flagstones, concrete, carved stone, and open ground."""

import math
import random

from field import Field, cells, fbm, from_function, strokes, value_noise, wandering_paths, white
from picture import Picture, cavity
from textures.common import maps_of

_COURSES = (0.0, 0.155, 0.275, 0.43, 0.56, 0.70, 0.86, 1.0)  # heights at which the rows of blocks meet


def _blocks(n, seed):
    """Rows of squared stones of unequal length: distance to the joint in texture widths, tone and tilt of each."""
    rng = random.Random(seed)
    rows = []
    for _ in range(len(_COURSES) - 1):
        cuts, at = [], rng.random()
        while not cuts or cuts[-1] - cuts[0] < 0.99:
            cuts.append(at)
            at += rng.uniform(0.17, 0.34)
        cuts = [cuts[0] + (c - cuts[0]) * (1.0 / (at - cuts[0])) for c in cuts]
        rows.append([(c, rng.random(), rng.uniform(-1, 1), rng.uniform(-1, 1)) for c in cuts])
    warp_u, warp_v = fbm(n, 9, 9, 5, seed + " edge u", 0.62), fbm(n, 9, 9, 5, seed + " edge v", 0.62)
    edge_out, tone_out, tilt_out = [], [], []
    for i in range(n * n):
        v = (i // n / n + (warp_v.v[i] - 0.5) * 0.022) % 1.0
        u = i % n / n + (warp_u.v[i] - 0.5) * 0.022
        row = next(k for k in range(len(_COURSES) - 1) if v < _COURSES[k + 1])
        stones = rows[row]
        u = stones[0][0] + (u - stones[0][0]) % 1.0
        k = max(j for j, stone in enumerate(stones) if stone[0] <= u)
        left, right = stones[k][0], stones[k + 1][0] if k + 1 < len(stones) else stones[0][0] + 1.0
        low, high = _COURSES[row], _COURSES[row + 1]
        dx, dy = min(u - left, right - u), min(v - low, high - v)
        corner = 0.028
        edge = min(dx, dy)
        if dx < corner and dy < corner:
            edge = min(edge, corner - math.hypot(corner - dx, corner - dy))
        edge_out.append(edge)
        tone_out.append(stones[k][1])
        tilt_out.append((u - left) / (right - left) * stones[k][2] + (v - low) / (high - low) * stones[k][3])
    return Field(n, edge_out), Field(n, tone_out), Field(n, tilt_out)


def stone(n=512):
    """Old squared masonry, 2 m: seven courses, sooty joints, damp that runs down."""
    edge, tone, tilt = _blocks(n, "stone blocks")
    body = edge.smoothstep(0.002, 0.011)
    round_ = edge.smoothstep(0.0, 0.030)
    rough = fbm(n, 14, 14, 6, "stone rough", 0.62)
    pits = value_noise(n, 90, 90, "stone pits").smoothstep(0.72, 0.95) * body
    grit = white(n, "stone grit").blurred(1)
    cracks = strokes(n, wandering_paths(7, "stone cracks", 0.30, 0.30, 0.02), 1.0) * body
    height = round_ * 3.2 + tilt * body * 1.5 + rough * 1.7 - pits * 0.9 + grit * 0.5 - cracks * 1.2
    stops = [(0.15, (0.130, 0.122, 0.108)), (0.5, (0.205, 0.190, 0.165)), (0.85, (0.290, 0.268, 0.228))]
    colour = Picture.ramp(rough * 0.45 + tone * 0.55, stops)
    damp = fbm(n, 3, 2, 6, "stone damp", 0.55).smoothstep(0.46, 0.74)
    runs = fbm(n, 22, 2, 5, "stone runs").smoothstep(0.50, 0.80) * damp
    moss = (fbm(n, 5, 5, 6, "stone moss", 0.6) + (1.0 - round_) * 0.16).smoothstep(0.62, 0.80)
    colour = colour.blend((0.085, 0.078, 0.066), damp * 0.40).blend((0.055, 0.050, 0.043), runs * 0.45)
    colour = colour.blend((0.075, 0.088, 0.048), moss * 0.55)
    mortar = Picture.ramp(rough, [(0.2, (0.070, 0.064, 0.056)), (0.8, (0.135, 0.124, 0.108))])
    colour = colour.blend(mortar, 1.0 - body).blend((0.03, 0.027, 0.024), cracks * 0.8)
    colour = colour.shade(cavity(height, 3, 0.20)).shade(grit * 0.24 + 0.88)
    wet = (damp * 0.10 + runs * 0.10 + 0.012) * body
    return maps_of(colour, height, 1.35, wet, normal_size=256)


def flagstones(n=512):
    """Worn floor slabs, 2 m: cracked, hollowed by feet, wet in the hollows."""
    border, tone = cells(n, 4, "flags cells", 0.62)
    warp = fbm(n, 12, 12, 5, "flags warp", 0.6)
    body = (border + (warp - 0.5) * 0.10).smoothstep(0.015, 0.075)
    rough = fbm(n, 16, 16, 6, "flags rough", 0.6)
    hollow = fbm(n, 3, 3, 5, "flags hollow", 0.5)
    cracks = strokes(n, wandering_paths(8, "flags cracks", 0.35, 0.28, 0.03), 1.1) * body
    grit = white(n, "flags grit").blurred(1)
    height = body * 2.6 + rough * 0.9 + hollow * 1.2 + grit * 0.35 - cracks * 1.4 + tone * body * 0.5
    stops = [(0.15, (0.105, 0.100, 0.092)), (0.5, (0.165, 0.155, 0.140)), (0.85, (0.235, 0.220, 0.190))]
    colour = Picture.ramp(rough * 0.5 + tone * 0.5, stops)
    puddle = hollow.smoothstep(0.46, 0.36)
    dirt = fbm(n, 4, 4, 6, "flags dirt", 0.58).smoothstep(0.45, 0.75)
    colour = colour.blend((0.085, 0.072, 0.056), dirt * 0.45).blend((0.045, 0.040, 0.033), (1.0 - body) * 0.92)
    colour = colour.blend((0.022, 0.020, 0.018), cracks * 0.85).shade(1.0 - puddle * 0.42)
    colour = colour.shade(cavity(height, 3, 0.18)).shade(grit * 0.2 + 0.9)
    wet = (puddle * 0.34 + 0.03 + (1.0 - dirt) * 0.03).clamp() * (body * 0.8 + 0.2)
    smooth = height * (1.0 - puddle * 0.75)
    return maps_of(colour, smooth, 1.2, wet, normal_size=256, specular_size=256)


def concrete(n=512):
    """Cast concrete, 2 m: panels of 1 x 0.5 m with their joints, tie holes and blow holes, water stains and rust."""
    rows, columns = 4, 2
    rng = random.Random("concrete panels")
    level = [[rng.random() for _ in range(columns)] for _ in range(rows)]
    cloud = fbm(n, 5, 5, 7, "concrete cloud", 0.60)
    fine = fbm(n, 40, 40, 4, "concrete fine", 0.6)

    def panel(u, v):
        x, y = u * columns % 1.0 / columns, v * rows % 1.0 / rows
        edge = min(x, 1.0 / columns - x, y, 1.0 / rows - y)
        tie = math.hypot(min(abs(x - 0.10), abs(1.0 / columns - x - 0.10)), y - 0.125)
        return edge, tie, level[int(v * rows)][int(u * columns)]

    edge, tie, tone = (from_function(n, lambda u, v, k=k: panel(u, v)[k]) for k in range(3))
    joint = edge.smoothstep(0.0035, 0.0010)
    lip = edge.smoothstep(0.014, 0.004)
    hole = tie.smoothstep(0.0105, 0.0085)
    blow = value_noise(n, 120, 120, "concrete holes").smoothstep(1.00, 1.16)
    grit = white(n, "concrete grit").blurred(1)
    cracks = strokes(n, wandering_paths(4, "concrete cracks", 0.5, 0.26, 0.02), 0.9)
    height = cloud * 0.8 + fine * 0.5 - joint * 1.8 - hole * 4.0 - blow * 1.6 + grit * 0.4 - cracks * 1.2 + tone * 0.8
    stops = [(0.15, (0.150, 0.150, 0.148)), (0.5, (0.215, 0.214, 0.208)), (0.85, (0.275, 0.272, 0.262))]
    colour = Picture.ramp(cloud * 0.55 + tone * 0.25 + fine * 0.20, stops)
    stains = fbm(n, 2, 2, 6, "concrete stains", 0.55).smoothstep(0.46, 0.78)
    runs = fbm(n, 26, 2, 5, "concrete runs").smoothstep(0.52, 0.84)
    colour = colour.blend((0.095, 0.092, 0.086), stains * 0.50).blend((0.075, 0.072, 0.068), runs * stains * 0.6)
    colour = colour.blend((0.125, 0.122, 0.115), lip * 0.35)
    rust = fbm(n, 16, 1, 5, "concrete rust").smoothstep(0.70, 0.92) * cloud.smoothstep(0.45, 0.65)
    dark = (joint * 0.7 + hole + blow * 0.7 + cracks * 0.8).clamp()
    colour = colour.blend((0.150, 0.082, 0.044), rust * 0.40).blend((0.040, 0.039, 0.037), dark * 0.85)
    colour = colour.shade(cavity(height, 3, 0.22)).shade(grit * 0.2 + 0.9)
    return maps_of(colour, height, 1.3, runs * stains * 0.10 + 0.02, normal_size=256)


def marble(n=256):
    """Weathered carving stone, 1 m: grey-white, veined with dirt, lichen in spots."""
    coarse = fbm(n, 3, 3, 6, "marble coarse", 0.55)
    vein = (fbm(n, 4, 4, 5, "marble vein", 0.6) - 0.5).abs().smoothstep(0.045, 0.0)
    runs = fbm(n, 18, 2, 5, "marble runs").smoothstep(0.50, 0.85)
    lichen = fbm(n, 7, 7, 6, "marble lichen", 0.62).smoothstep(0.62, 0.70)
    grit = white(n, "marble grit").blurred(1)
    height = coarse * 0.8 + grit * 0.6 + lichen * 0.7
    colour = Picture.ramp(coarse, [(0.2, (0.205, 0.198, 0.182)), (0.8, (0.330, 0.320, 0.295))])
    colour = colour.blend((0.150, 0.142, 0.125), runs * 0.55).blend((0.140, 0.135, 0.125), vein * 0.20)
    colour = colour.blend((0.190, 0.195, 0.120), lichen * 0.45)
    return maps_of(colour.shade(grit * 0.2 + 0.9), height, 0.9, 0.05 - runs * 0.03, normal_size=256)


def earth(n=512):
    """Graveyard ground, 2 m: black soil, moss in cushions, pebbles and dead leaves."""
    moss_field = fbm(n, 5, 5, 6, "earth moss", 0.6)
    moss = moss_field.smoothstep(0.46, 0.60)
    blades = value_noise(n, 150, 150, "earth blades")
    clods = fbm(n, 18, 18, 5, "earth clods", 0.6)
    border, tone = cells(n, 22, "earth pebbles")
    pebble = border.smoothstep(0.16, 0.30) * tone.smoothstep(0.70, 0.74) * (1.0 - moss)
    leaf_border, leaf_tone = cells(n, 30, "earth leaves")
    leaves = leaf_border.smoothstep(0.10, 0.15) * leaf_tone.smoothstep(0.92, 0.93)
    height = clods * 2.0 + moss * (1.2 + blades * 0.9) + pebble * 1.8 + leaves * 0.7
    colour = Picture.ramp(clods, [(0.2, (0.040, 0.031, 0.023)), (0.8, (0.105, 0.083, 0.060))])
    green = Picture.ramp(blades * 0.6 + moss_field * 0.4, [(0.25, (0.038, 0.052, 0.020)), (0.8, (0.105, 0.125, 0.050))])
    colour = colour.blend(green, moss * 0.92)
    colour = colour.blend(Picture.ramp(tone, [(0.7, (0.115, 0.110, 0.100)), (1.0, (0.195, 0.185, 0.165))]), pebble)
    colour = colour.blend(
        Picture.ramp(leaf_tone, [(0.84, (0.080, 0.050, 0.026)), (1.0, (0.120, 0.082, 0.045))]), leaves * 0.85
    )
    return maps_of(colour.shade(cavity(height, 3, 0.22)), height, 1.5, pebble * 0.05 + 0.008, normal_size=256)


def bark(n=256):
    """Bark of a dead tree, 1 m, grain along u: grey, split, shedding."""
    ridges = fbm(n, 4, 40, 5, "bark ridges", 0.6)
    split = (ridges - 0.5).abs().smoothstep(0.10, 0.0)
    rough = fbm(n, 16, 30, 4, "bark rough", 0.6)
    height = ridges * 1.6 + rough * 0.8 - split * 1.6
    colour = Picture.ramp(rough, [(0.2, (0.105, 0.098, 0.088)), (0.8, (0.205, 0.192, 0.170))])
    return maps_of(colour.blend((0.032, 0.028, 0.024), split * 0.85), height, 1.6, normal_size=256)


def _sky(n, moonlight):
    """Torn cloud and a few stars, repeating to the sides; `moonlight` gives the glow and the disc of a moon."""
    veil = fbm(n, 5, 9, 7, "sky cloud", 0.56).smoothstep(0.30, 0.70)
    stars = white(n, "sky stars").map(lambda a: (a - 0.9988) * 800.0 if a > 0.9988 else 0.0)
    glow, disc = moonlight
    light = (glow * (veil * 0.75 + 0.25) + veil * 0.10).clamp()
    stops = [
        (0.0, (0.010, 0.013, 0.020)),
        (0.25, (0.050, 0.062, 0.086)),
        (0.6, (0.160, 0.185, 0.225)),
        (1.0, (0.42, 0.46, 0.50)),
    ]
    sky = Picture.ramp(light, stops).blend((0.45, 0.48, 0.55), (stars * (1.0 - veil)).clamp())
    sky = sky.blend((0.86, 0.88, 0.86), disc * (1.0 - veil * 0.55))
    return {"Diffuse": (Picture.flat(8, (0.0, 0.0, 0.0)), "DXT1"), "Emissive": (sky, "A8R8G8B8")}


def nightSky(n=512):
    """Night over an open yard, the whole of it: a veiled moon low in the sky."""
    away = from_function(n, lambda u, v: math.hypot(u - 0.60, v - 0.66))
    edge = from_function(n, lambda u, v: min(u, 1.0 - u)).smoothstep(0.0, 0.25)
    glow = away.map(lambda d: 0.9 * math.exp(-d * 15.0) + 0.28 * math.exp(-d * 3.5)) * edge
    return _sky(n, (glow, away.smoothstep(0.0155, 0.0135)))


def nightCloud(n=512):
    """The same night without the moon, which continues `nightSky` on both sides."""
    nothing = Field.constant(n, 0.0)
    return _sky(n, (nothing, nothing))


def graveyardHeights(n=128):
    """Heights of the churchyard: a trodden way along its south, low mounds, a bank that rises to the north."""
    rough = fbm(n, 4, 4, 5, "yard rough", 0.5)
    fine = fbm(n, 18, 18, 3, "yard fine", 0.6)
    graves = ((0.22, 0.40), (0.50, 0.36), (0.78, 0.42), (0.30, 0.62), (0.68, 0.64))

    def mounds(u, v):
        return max(math.exp(-(((u - x) / 0.075) ** 2) - ((v - y) / 0.085) ** 2) for x, y in graves)

    way = from_function(n, lambda u, v: v).smoothstep(0.80, 0.62)
    bank = from_function(n, lambda u, v: v).smoothstep(0.42, 0.0)
    height = rough * 0.34 + from_function(n, mounds) * 0.20 + bank * 0.46 + fine * 0.07
    return {"": (Picture.grey(height * way + fine * 0.03), "R32F")}
