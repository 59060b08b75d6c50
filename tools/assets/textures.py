"""Recipes of the game's textures. A recipe returns {map name: (picture, file kind)}.

Every recipe starts from a height field, because light, dirt and wear all follow the relief: the normal map
is its slope, hollows are darkened by `cavity`, and stains collect where it is low. A comment gives the size in
metres that one repeat covers; models.py lays its texture coordinates out to match.
"""

import math
import random

from field import Field, cells, fbm, from_function, strokes, value_noise, wandering_paths, white
from picture import Picture, cavity, normals_from_height


def _stored(reflectance):
    """Recipes say how much light a surface gives back; files hold it nearly as a screen does."""
    return Picture([channel.power(0.58) for channel in reflectance.channels])


def _maps(diffuse, height, strength, specular=None, emissive=None, normal_size=None, specular_size=128):
    maps = {"Diffuse": (_stored(diffuse), "DXT1")}
    normal = normals_from_height(height.resized(normal_size or height.n), strength)
    maps["Normal"] = (normal, "DXT1")
    if specular is not None:
        maps["Specular"] = (Picture.grey(specular).resized(min(specular_size, specular.n)), "DXT1")
    if emissive is not None:
        # Glow fades smoothly into black, where compression would show steps.
        maps["Emissive"] = (emissive.resized(min(128, emissive.n)), "A8R8G8B8")
    return maps


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
    return _maps(colour, height, 2.2)


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
    return _maps(colour, height, 1.1, print_ * 0.06 * (1.0 - damp) + 0.01, normal_size=256)


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
    return _maps(colour, height, 1.3, (0.13 - wear * 0.09 - pores * 0.08).clamp(), normal_size=256)


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
    return _maps(colour, height, 1.9, (0.08 - dirt * 0.06 - gap * 0.08 - pores * 0.03).clamp())


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
    return _maps(colour, height, 1.0, polish, normal_size=256)


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
    return _maps(colour.shade(cavity(height, 3, 0.28)).shade(grit * 0.3 + 0.85), height, 1.1, normal_size=256)


def firebox(n=256):
    """Inside of a fireplace, unrolled from jamb to jamb, the whole of it: black with soot, warm from the coals."""
    body, _, rough, grit, height = _brickwork(n, 10, 6, "firebox")
    soot = from_function(n, lambda u, v: 1.25 - v * 0.75 - abs(u - 0.5) * 0.3) + (rough - 0.5) * 0.5
    colour = Picture.ramp(rough, [(0.2, (0.150, 0.080, 0.055)), (0.8, (0.235, 0.130, 0.088))])
    colour = colour.blend((0.16, 0.145, 0.125), 1.0 - body).blend((0.020, 0.018, 0.017), soot.clamp() * 0.9)
    heat = from_function(n, lambda u, v: math.exp(-(((u - 0.5) / 0.20) ** 2) - ((v - 0.86) / 0.30) ** 2))
    glow = heat * (body * 0.55 + 0.25) * (rough * 0.7 + 0.55) * (1.2 - soot * 0.35)
    warm = Picture.ramp(glow.clamp(), [(0.0, (0.0, 0.0, 0.0)), (0.4, (0.16, 0.045, 0.012)), (1.0, (0.50, 0.20, 0.060))])
    return _maps(colour.shade(grit * 0.3 + 0.85), height, 1.5, emissive=warm)


def rust(n=256):
    """Painted iron gone to rust, 1 m: grey-green paint, blisters, orange bloom, runs."""
    decay = fbm(n, 4, 4, 6, "rust decay", 0.6)
    bare = decay.smoothstep(0.50, 0.58)
    bloom = fbm(n, 12, 12, 5, "rust bloom", 0.6)
    runs = fbm(n, 28, 2, 4, "rust runs").smoothstep(0.5, 0.85)
    grit = white(n, "rust grit").blurred(1)
    height = (1.0 - bare) * 0.8 + bloom * bare * 1.4 + grit * 0.5
    paint = Picture.ramp(bloom, [(0.2, (0.125, 0.135, 0.125)), (0.8, (0.185, 0.195, 0.178))])
    rusted = Picture.ramp(
        bloom, [(0.15, (0.070, 0.042, 0.029)), (0.5, (0.150, 0.080, 0.046)), (0.85, (0.225, 0.128, 0.070))]
    )
    colour = paint.blend((0.20, 0.115, 0.065), runs * 0.5).blend(rusted, bare)
    return _maps(colour.shade(cavity(height, 2, 0.3)), height, 1.5, (1.0 - bare) * 0.12 + 0.03)


def iron(n=256):
    """Blackened cast iron, 0.5 m."""
    cast = fbm(n, 20, 20, 4, "iron cast", 0.6)
    grit = white(n, "iron grit").blurred(1)
    bloom = fbm(n, 5, 5, 5, "iron bloom", 0.6).smoothstep(0.55, 0.8)
    height = cast * 0.9 + grit * 0.6
    colour = Picture.ramp(cast, [(0.2, (0.058, 0.058, 0.062)), (0.8, (0.112, 0.110, 0.112))])
    colour = colour.blend((0.150, 0.082, 0.048), bloom * 0.5)
    return _maps(
        colour.shade(grit * 0.3 + 0.85), height, 1.1, (0.24 - bloom * 0.18 - grit * 0.06).clamp(), normal_size=128
    )


def brass(n=256):
    """Tarnished brass, 0.5 m."""
    tarnish = fbm(n, 5, 5, 6, "brass tarnish", 0.58).smoothstep(0.35, 0.75)
    lines = fbm(n, 3, 90, 3, "brass lines", 0.7)
    height = lines * 0.25 + tarnish * 0.3
    colour = Picture.ramp(lines, [(0.2, (0.340, 0.245, 0.105)), (0.8, (0.450, 0.335, 0.155))])
    colour = colour.blend((0.135, 0.105, 0.062), tarnish * 0.75)
    return _maps(colour, height, 0.8, 0.55 - tarnish * 0.42, normal_size=128)


def leather(n=256):
    """Cracked oxblood leather, 0.5 m."""
    border, tone = cells(n, 40, "leather cells")
    creases = fbm(n, 5, 5, 5, "leather creases", 0.55)
    folds = (creases - 0.5).abs().smoothstep(0.045, 0.0)
    height = border.smoothstep(0.0, 0.35) * 0.8 - folds * 0.8 + creases * 0.8
    wear = fbm(n, 3, 3, 5, "leather wear", 0.55).smoothstep(0.45, 0.8)
    colour = Picture.ramp(creases * 0.7 + tone * 0.3, [(0.2, (0.135, 0.046, 0.036)), (0.8, (0.215, 0.080, 0.058))])
    colour = colour.blend((0.300, 0.165, 0.105), wear * 0.42).shade(cavity(height, 2, 0.35))
    return _maps(colour, height, 1.2, (0.15 - wear * 0.08 - folds * 0.07).clamp())


def cloth(n=256):
    """Heavy wine-red cloth, 0.5 m: twill weave, faded streaks, dust."""
    weave = from_function(
        n, lambda u, v: 0.5 + 0.5 * math.sin(math.tau * 64 * u) * math.sin(math.tau * (64 * v + 32 * u))
    )
    fade = fbm(n, 8, 2, 5, "cloth fade", 0.55)
    lint = white(n, "cloth lint").blurred(1)
    height = weave * 0.7 + lint * 0.5
    colour = Picture.ramp(fade, [(0.2, (0.125, 0.030, 0.036)), (0.8, (0.235, 0.072, 0.070))])
    return _maps(
        colour.shade(weave * 0.3 + 0.75).blend((0.28, 0.23, 0.20), lint.smoothstep(0.6, 0.8) * 0.25),
        height,
        0.9,
        normal_size=128,
    )


def lampShade(n=128):
    """Parchment lamp shade, unrolled once round and once down: lit from within, brighter near the bulb."""
    fibre = fbm(n, 8, 16, 4, "shade fibre", 0.6)
    scorch = fbm(n, 3, 2, 4, "shade scorch").smoothstep(0.5, 0.8)
    seams = from_function(n, lambda u, v: 1.0 if (u * 8) % 1 < 0.05 or v < 0.06 or v > 0.94 else 0.0)
    colour = Picture.ramp(fibre, [(0.2, (0.42, 0.33, 0.20)), (0.8, (0.55, 0.45, 0.29))]).blend(
        (0.20, 0.13, 0.07), scorch * 0.5
    )
    light = from_function(n, lambda u, v: math.exp(-(((v - 0.58) * 2.1) ** 2)))
    glow = Picture.ramp(
        light * (0.8 + fibre * 0.3), [(0.0, (0.10, 0.042, 0.010)), (0.55, (0.66, 0.36, 0.12)), (1.0, (1.0, 0.72, 0.36))]
    )
    glow = glow.shade((1.0 - scorch * 0.4) * 0.68).shade(1.0 - seams * 0.75)
    return _maps(colour.blend((0.22, 0.16, 0.09), seams), fibre * 0.6 + seams, 1.0, emissive=glow)


def _rug_tone(u, v):
    """Index of the wool at a point of the rug: 0 field, 1 dark, 2 light, 3 accent."""
    border = min(u, 1 - u, (v) * 1.5, (1 - v) * 1.5)
    x, y = u - 0.5, (v - 0.5) * 1.5
    if border < 0.018:
        return 1
    if border < 0.035:
        return 2
    if border < 0.125:
        along = (x if min(v, 1 - v) * 1.5 <= min(u, 1 - u) else y) * 14
        across = (border - 0.08) / 0.045
        flower = (
            math.hypot((along % 1) - 0.5, across * 0.5)
            - 0.22
            - 0.10 * math.cos(6 * math.atan2(across * 0.5, (along % 1) - 0.5))
        )
        return 2 if flower < -0.17 else 3 if flower < 0 else 1
    if border < 0.145:
        return 2 if int((x + y) * 60) % 2 else 3
    medallion = abs(x) * 1.45 + abs(y) + 0.028 * math.cos(18 * math.atan2(y, x))
    for limit, tone in ((0.07, 2), (0.10, 3), (0.20, 1), (0.215, 2), (0.29, 3), (0.305, 1)):
        if medallion < limit:
            if tone == 1 and math.sin(14 * math.atan2(y, x)) > 0.45:
                return 2
            return tone
    corner = math.hypot(abs(x) - 0.36, abs(y) - 0.60)
    if corner < 0.16:
        return 3 if corner > 0.145 else 1 if math.sin(10 * math.atan2(abs(y) - 0.6, abs(x) - 0.36)) > 0 else 0
    if math.sin(x * 58) * math.sin(y * 58) > 0.72:
        return 2 if math.sin(x * 29) * math.sin(y * 29) > 0 else 3
    return 0


def rug(n=512):
    """Worn oriental rug, the whole of it: u across, v along; mirrored design, threadbare patches."""
    colours = ((0.210, 0.042, 0.040), (0.040, 0.046, 0.078), (0.345, 0.285, 0.195), (0.235, 0.120, 0.055))
    tone = from_function(n // 2, _rug_tone).v
    half = n // 2
    channels = [
        Field(n, [colours[tone[(i // n // 2) * half + i % n // 2]][c] for i in range(n * n)]).blurred(1)
        for c in range(3)
    ]
    knots = from_function(n, lambda u, v: 0.5 + 0.5 * math.sin(math.tau * 128 * u) * math.sin(math.tau * 128 * v))
    pile = white(n, "rug pile").blurred(1)
    worn = fbm(n, 4, 4, 6, "rug worn", 0.6).smoothstep(0.52, 0.74)
    colour = (
        Picture(channels).blend((0.200, 0.168, 0.132), worn * 0.62).shade(pile * 0.7 + 0.62).shade(knots * 0.2 + 0.9)
    )
    height = pile * 1.4 + knots * 0.5 - worn * 0.6
    return _maps(colour, height, 1.1, normal_size=256)


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
    return _maps(colour.blend((0.055, 0.045, 0.05), ink * 0.85), fibre, 0.6, normal_size=128)


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
    return _maps(colour, relief, 0.8, scuff.smoothstep(0.7, 0.3) * 0.08 + 0.015, normal_size=256)


def _canvas(n, seed):
    """Weave and craquelure shared by the paintings: relief and crack mask."""
    weave = from_function(n, lambda u, v: math.sin(math.tau * 64 * u) * math.sin(math.tau * 64 * v))
    border, _ = cells(n, 22, seed + " craquelure")
    cracks = border.smoothstep(0.08, 0.0)
    return weave * 0.25 + fbm(n, 30, 30, 3, seed + " brush") * 0.9 - cracks * 0.8, cracks


def portrait(n=256):
    """Oil portrait nearly lost under its varnish: a pale face, hollow eyes, a white collar."""

    def face(u, v):
        return 1.0 - math.hypot((u - 0.5) / 0.135, (v - 0.37) / 0.185)

    paint = fbm(n, 5, 5, 6, "portrait paint", 0.55)
    colour = Picture.ramp(paint, [(0.2, (0.030, 0.024, 0.018)), (0.8, (0.095, 0.072, 0.048))])
    coat = from_function(n, lambda u, v: (v - 0.60) - 0.9 * abs(u - 0.5) ** 2 * 4 * 0.42)
    colour = colour.blend((0.022, 0.020, 0.022), coat.smoothstep(-0.02, 0.05))
    collar = from_function(n, lambda u, v: 0.06 - math.hypot((u - 0.5) * 0.75, (v - 0.585) * 1.2)).smoothstep(0.0, 0.02)
    colour = colour.blend((0.30, 0.275, 0.22), collar * 0.85)
    skin = from_function(n, face)
    light = from_function(n, lambda u, v: 0.75 - (u - 0.42) * 2.4 - abs(v - 0.34) * 0.9)
    flesh = Picture.ramp(
        (light + (paint - 0.5) * 0.35).clamp(),
        [(0.0, (0.075, 0.052, 0.036)), (0.5, (0.255, 0.195, 0.140)), (1.0, (0.43, 0.36, 0.27))],
    )
    colour = colour.blend(flesh, skin.smoothstep(0.0, 0.16))
    hair = from_function(
        n,
        lambda u, v: 1.0
        if face(u, v + 0.055 - 0.9 * (u - 0.5) ** 2 * 3) < 0.22 and v < 0.37 and face(u, v) > -0.22
        else 0.0,
    )
    colour = colour.blend((0.038, 0.028, 0.020), hair.blurred(2))
    for eye in (0.448, 0.552):
        socket = from_function(n, lambda u, v: math.hypot((u - eye) / 0.042, (v - 0.355) / 0.027)).smoothstep(
            1.15, 0.35
        )
        colour = colour.blend((0.016, 0.012, 0.010), socket * 0.94)
        glint = from_function(n, lambda u, v: math.hypot(u - eye + 0.006, v - 0.352)).smoothstep(0.008, 0.003)
        colour = colour.blend((0.36, 0.33, 0.28), glint * 0.8)
    nose = from_function(n, lambda u, v: abs(u - 0.512 - (v - 0.36) * 0.12) if 0.36 < v < 0.43 else 1.0).smoothstep(
        0.016, 0.002
    )
    mouth = from_function(
        n, lambda u, v: math.hypot((u - 0.5) / 0.045, (v - 0.468 + 2 * (u - 0.5) ** 2) / 0.010)
    ).smoothstep(1.0, 0.5)
    colour = colour.blend((0.10, 0.07, 0.05), nose * 0.6).blend((0.085, 0.036, 0.030), mouth * 0.85)
    relief, cracks = _canvas(n, "portrait")
    colour = colour.blend((0.012, 0.010, 0.008), cracks * 0.5)
    return _maps(colour, relief, 0.9, paint * 0.10 + 0.04, normal_size=128)


def landscape(n=256):
    """Oil landscape: a moonlit lake between black firs."""
    clouds = fbm(n, 3, 6, 6, "landscape clouds", 0.55)
    ridge = value_noise(n, 7, 1, "landscape ridge").v[:n]
    rng = random.Random("landscape firs")
    firs = [(rng.random(), rng.uniform(0.12, 0.34), rng.uniform(0.02, 0.045)) for _ in range(26)]
    sky = from_function(
        n, lambda u, v: 0.75 * math.exp(-5.5 * math.hypot(u - 0.62, v - 0.26)) + 0.30 - 0.2 * abs(v - 0.45)
    )
    colour = Picture.ramp(
        (sky + (clouds - 0.5) * 0.4).clamp(),
        [
            (0.0, (0.022, 0.026, 0.034)),
            (0.4, (0.085, 0.098, 0.105)),
            (0.7, (0.20, 0.205, 0.180)),
            (1.0, (0.52, 0.49, 0.37)),
        ],
    )
    moon = from_function(n, lambda u, v: math.hypot(u - 0.62, v - 0.26)).smoothstep(0.047, 0.038)
    colour = colour.blend((0.60, 0.57, 0.44), moon)
    hills = from_function(n, lambda u, v: v - 0.50 + 0.16 * ridge[int(u * n)]).smoothstep(0.0, 0.02)
    colour = colour.blend((0.035, 0.042, 0.045), hills)
    ripples = fbm(n, 4, 40, 4, "landscape ripples", 0.6)
    water = from_function(n, lambda u, v: v - 0.63).smoothstep(0.0, 0.01)
    gleam = from_function(n, lambda u, v: math.exp(-abs(u - 0.62) * (14 - 6 * v))) * ripples.smoothstep(0.4, 0.7)
    colour = colour.blend((0.050, 0.060, 0.066), water).blend((0.42, 0.40, 0.31), water * gleam * 0.8)

    def fir(u, v):
        for x, size, width in firs:
            foot = 0.80 + 0.12 * math.sin(x * 9)
            if foot - size < v < foot and abs(u - x) < width * (v - foot + size) / size * (
                0.7 + 0.3 * math.sin(v * 150)
            ):
                if not 0.45 < x < 0.78:
                    return 1.0
        return 1.0 if v > 0.86 + 0.03 * math.sin(u * 11) else 0.0

    colour = colour.blend((0.014, 0.017, 0.014), from_function(n, fir).blurred(1) * 0.95)
    relief, cracks = _canvas(n, "landscape")
    return _maps(colour.blend((0.012, 0.010, 0.008), cracks * 0.4), relief, 0.9, clouds * 0.10 + 0.04, normal_size=128)


def embers(n=256):
    """Charred logs and coals, 0.5 m: grey ash skin over cracks that still glow."""
    border, tone = cells(n, 11, "embers cells")
    rough = fbm(n, 12, 12, 5, "embers rough", 0.6)
    heat = fbm(n, 4, 4, 4, "embers heat").smoothstep(0.32, 0.72)
    cracks = (border + (rough - 0.5) * 0.35).smoothstep(0.20, 0.0)
    height = border.smoothstep(0.0, 0.4) * 2.4 + rough * 0.9
    colour = Picture.ramp(
        rough * 0.6 + tone * 0.4,
        [(0.2, (0.026, 0.023, 0.022)), (0.65, (0.070, 0.064, 0.060)), (0.9, (0.24, 0.225, 0.21))],
    )
    glow = Picture.ramp(
        (cracks * heat).clamp(),
        [(0.0, (0.0, 0.0, 0.0)), (0.12, (0.10, 0.012, 0.0)), (0.5, (0.75, 0.17, 0.02)), (1.0, (1.0, 0.62, 0.18))],
    )
    return _maps(colour, height, 1.8, emissive=glow)


def nightWindow(n=256):
    """What stands behind the window panes: moonlit fog, bare branches, dirt and rain on the glass."""
    fog = fbm(n, 3, 4, 6, "night fog", 0.55)
    light = (
        from_function(n, lambda u, v: 0.62 * math.exp(-3.6 * math.hypot(u - 0.64, (v - 0.22) * 1.1)) + 0.20 * (1 - v))
        + fog * 0.16
    )
    moon = from_function(n, lambda u, v: math.hypot(u - 0.64, (v - 0.22) * 1.5)).smoothstep(0.066, 0.052)
    rng = random.Random("night branches")
    paths, pending = [], [(0.10, 1.02, -1.32, 1.0, 1.25), (0.97, 1.05, -1.95, 0.85, 0.9)]
    while pending:
        u, v, angle, pressure, left = pending.pop()
        path = [(u, v, pressure)]
        while left > 0 and pressure > 0.07:
            angle += rng.gauss(0, 0.13)
            u, v = u + math.cos(angle) * 0.016, v + math.sin(angle) * 0.016
            left -= 0.016
            pressure *= 0.974
            path.append((u, v, pressure))
            if rng.random() < 0.16:
                pending.append(
                    (u, v, angle + rng.choice((-1, 1)) * rng.uniform(0.35, 0.9), pressure * 0.62, left * 0.75)
                )
        paths.append([p for p in path if 0.0 <= p[0] <= 1.0 and 0.0 <= p[1] <= 1.0])
    branches = strokes(n, [p for p in paths if len(p) > 1], 5.0)
    dirt = fbm(n, 6, 6, 6, "night dirt", 0.6).smoothstep(0.4, 0.8)
    grime = from_function(
        n, lambda u, v: min(u % 0.5, 0.5 - u % 0.5, (v % 0.25) * 1.5, (0.25 - v % 0.25) * 1.5)
    ).smoothstep(0.07, 0.0)
    rain = fbm(n, 60, 4, 3, "night rain").smoothstep(0.62, 0.95)
    glow = Picture.ramp(
        light.clamp(),
        [
            (0.0, (0.006, 0.010, 0.016)),
            (0.35, (0.066, 0.084, 0.106)),
            (0.7, (0.200, 0.240, 0.272)),
            (1.0, (0.50, 0.55, 0.57)),
        ],
    )
    glow = glow.blend((0.80, 0.85, 0.84), moon).blend((0.008, 0.011, 0.015), branches * 0.93)
    glow = glow.shade(1.0 - dirt * 0.4).shade(1.0 - grime * 0.7).shade(rain * 0.35 + 0.9)
    return {
        "Diffuse": (Picture.ramp(dirt, [(0.0, (0.020, 0.022, 0.024)), (1.0, (0.070, 0.064, 0.055))]), "DXT1"),
        "Normal": (normals_from_height(rain * 1.0 + dirt * 0.4, 1.2).resized(128), "DXT1"),
        "Specular": (Picture.grey(0.40 - dirt * 0.30).resized(128), "DXT1"),
        "Emissive": (glow.shade(0.9), "A8R8G8B8"),
    }


def wax(n=64):
    """Tallow candle, unrolled: drips below, lit from the flame above."""
    drips = fbm(n, 8, 2, 4, "wax drips")
    colour = Picture.ramp(drips, [(0.2, (0.50, 0.44, 0.33)), (0.8, (0.62, 0.56, 0.44))])
    glow = Picture.ramp(
        from_function(n, lambda u, v: max(0.0, 1.0 - v * 2.1) ** 2),
        [(0.0, (0.02, 0.010, 0.003)), (1.0, (0.72, 0.36, 0.10))],
    )
    return _maps(colour, drips * 1.6, 1.4, drips * 0.08 + 0.05, glow)


def flame(n=64):
    """Candle flame, v from the tip down to the wick: white-yellow above a blue foot."""
    v = from_function(n, lambda u, v: v)
    glow = Picture.ramp(
        v,
        [
            (0.0, (0.85, 0.38, 0.08)),
            (0.35, (1.0, 0.74, 0.32)),
            (0.7, (1.0, 0.90, 0.62)),
            (0.9, (0.62, 0.44, 0.30)),
            (1.0, (0.10, 0.13, 0.32)),
        ],
    )
    return {"Diffuse": (Picture.flat(n, (0.05, 0.04, 0.03)), "DXT1"), "Emissive": (glow, "DXT1")}


def clockFace(n=256):
    """Enamelled clock face, stopped at seven minutes to three."""
    marks = []
    for hour in range(12):
        angle = hour * math.tau / 12
        for spread in {
            0: (-0.05, 0.0, 0.05),
            3: (-0.035, 0.0, 0.035),
            6: (-0.05, -0.012, 0.03),
            9: (-0.04, 0.0, 0.04),
        }.get(hour, (-0.022, 0.022)):
            s, c = math.sin(angle + spread), -math.cos(angle + spread)
            marks.append([(0.5 + s * 0.31, 0.5 + c * 0.31, 1.0), (0.5 + s * 0.405, 0.5 + c * 0.405, 1.0)])
    ink = strokes(n, marks, 1.6)
    ring = from_function(n, lambda u, v: abs(math.hypot(u - 0.5, v - 0.5) - 0.435)).smoothstep(0.007, 0.003)
    hands = []
    for angle, length in ((math.tau * (53 / 60), 0.34), (math.tau * (2 + 53 / 60) / 12, 0.23)):
        s, c = math.sin(angle), -math.cos(angle)
        hands.append(
            [
                (0.5 - s * 0.06, 0.5 - c * 0.06, 1.2),
                (0.5 + s * length * 0.7, 0.5 + c * length * 0.7, 1.4),
                (0.5 + s * length, 0.5 + c * length, 0.3),
            ]
        )
    hand = strokes(n, hands, 2.6)
    age = fbm(n, 4, 4, 6, "clock age", 0.6)
    cracks = strokes(n, wandering_paths(5, "clock cracks", 0.4, 0.25, 0.02), 0.6)
    colour = Picture.ramp(age, [(0.2, (0.44, 0.395, 0.30)), (0.8, (0.58, 0.535, 0.43))]).blend(
        (0.20, 0.15, 0.09), age.smoothstep(0.55, 0.85) * 0.5
    )
    colour = colour.blend((0.05, 0.045, 0.04), ((ink + ring + hand).clamp() * 0.94)).blend(
        (0.12, 0.10, 0.08), cracks * 0.6
    )
    return _maps(colour, hand * 2.0 - cracks * 0.6, 1.0, 0.20 - age * 0.15, normal_size=128)


def ceramic(n=128):
    """Crazed, yellowed glaze, 0.4 m."""
    border, _ = cells(n, 12, "ceramic crazing")
    craze = border.smoothstep(0.11, 0.0)
    age = fbm(n, 4, 4, 5, "ceramic age", 0.55)
    colour = Picture.ramp(age, [(0.2, (0.40, 0.375, 0.315)), (0.8, (0.52, 0.495, 0.43))]).blend(
        (0.17, 0.13, 0.09), craze * 0.5
    )
    return _maps(colour, age * 0.8 - craze * 0.3, 0.6, 0.30 - age * 0.15)


def bottleGlass(n=64):
    """Dark green bottle glass with dust, 0.25 m."""
    dust = fbm(n, 4, 4, 5, "bottle dust", 0.6).smoothstep(0.4, 0.8)
    colour = Picture.flat(n, (0.022, 0.042, 0.026)).blend((0.16, 0.15, 0.12), dust * 0.5)
    return _maps(colour, dust, 0.6, 0.50 - dust * 0.38)


def flat():
    """The defaults of drawn objects that name no map: three files of their own names."""
    return {
        "flatNormal": (Picture.flat(8, (128 / 255, 128 / 255, 1.0)), "A8R8G8B8"),
        "black": (Picture.flat(8, (0.0, 0.0, 0.0)), "A8R8G8B8"),
        "white": (Picture.flat(8, (1.0, 1.0, 1.0)), "A8R8G8B8"),
    }


#: Every recipe of this module: its public functions, in the order they stand in.
RECIPES = [
    value
    for name, value in list(globals().items())
    if callable(value) and getattr(value, '__module__', '') == __name__ and not name.startswith('_')
]
