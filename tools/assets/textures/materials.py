"""Metals, hide, cloth, glaze and glass."""

import math

from field import Field, cells, fbm, from_function, white
from picture import Picture, cavity
from textures.common import maps_of


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
    return maps_of(colour.shade(cavity(height, 2, 0.3)), height, 1.5, (1.0 - bare) * 0.12 + 0.03)


def iron(n=256):
    """Blackened cast iron, 0.5 m."""
    cast = fbm(n, 20, 20, 4, "iron cast", 0.6)
    grit = white(n, "iron grit").blurred(1)
    bloom = fbm(n, 5, 5, 5, "iron bloom", 0.6).smoothstep(0.55, 0.8)
    height = cast * 0.9 + grit * 0.6
    colour = Picture.ramp(cast, [(0.2, (0.058, 0.058, 0.062)), (0.8, (0.112, 0.110, 0.112))])
    colour = colour.blend((0.150, 0.082, 0.048), bloom * 0.5)
    return maps_of(
        colour.shade(grit * 0.3 + 0.85), height, 1.1, (0.24 - bloom * 0.18 - grit * 0.06).clamp(), normal_size=128
    )


def fittingWood(n=256):
    """Turned lime wood that hands have darkened, 0.5 m: fine grain, knocks, worn varnish."""
    grain = fbm(n, 3, 46, 5, "fitting grain", 0.62)
    wear = fbm(n, 4, 4, 5, "fitting wear", 0.58)
    knocks = fbm(n, 17, 17, 3, "fitting knocks", 0.6).smoothstep(0.66, 0.74)
    height = grain * 0.6 - knocks * 0.8
    colour = Picture.ramp(grain * 0.7 + wear * 0.3, [(0.2, (0.150, 0.096, 0.052)), (0.8, (0.300, 0.215, 0.128))])
    colour = colour.blend((0.075, 0.045, 0.025), (wear.smoothstep(0.52, 0.75) * 0.55 + knocks * 0.5).clamp())
    return maps_of(colour.shade(cavity(height, 2, 0.3)), height, 0.8, (0.16 - knocks * 0.1 - wear * 0.08).clamp())


def fittingCloth(n=256):
    """Yellowed linen that was never washed, 0.5 m: threads, folds that have taken dirt."""
    warp = fbm(n, 90, 6, 2, "linen warp", 0.6)
    weft = fbm(n, 6, 90, 2, "linen weft", 0.6)
    stain = fbm(n, 3, 3, 6, "linen stain", 0.6)
    height = warp * 0.5 + weft * 0.5
    colour = Picture.ramp(height, [(0.3, (0.205, 0.180, 0.138)), (0.7, (0.300, 0.272, 0.215))])
    colour = colour.blend((0.100, 0.078, 0.050), stain.smoothstep(0.45, 0.8) * 0.7)
    return maps_of(colour, height, 1.0, (stain * 0.02).clamp())


def wetCloth(n=128):
    """Heavy black cloth soaked with water, 0.5 m."""
    weave = fbm(n, 40, 40, 2, "wet weave", 0.6)
    runs = fbm(n, 20, 3, 4, "wet runs", 0.6)
    colour = Picture.ramp(runs, [(0.2, (0.0060, 0.0064, 0.0075)), (0.8, (0.0200, 0.0205, 0.0225))])
    return maps_of(colour, weave * 0.5 + runs, 1.2, normal_size=128)


def damp(n=128):
    """Something black and wet, 0.5 m: no colour of its own, ripples under a skin of water."""
    ripples = fbm(n, 7, 7, 5, "damp ripples", 0.62)
    skin = fbm(n, 14, 5, 3, "damp skin", 0.6)
    colour = Picture.ramp(skin, [(0.2, (0.0035, 0.0040, 0.0042)), (0.8, (0.0100, 0.0108, 0.0105))])
    maps = maps_of(colour, ripples * 2.4 + skin * 0.8, 2.0)
    # Faint greys take on colours where they are compressed.
    maps["Specular"] = (Picture.grey((skin.smoothstep(0.35, 0.75) * 0.2 + 0.05).clamp()), "A8R8G8B8")
    return maps


def brass(n=256):
    """Tarnished brass, 0.5 m."""
    tarnish = fbm(n, 5, 5, 6, "brass tarnish", 0.58).smoothstep(0.35, 0.75)
    lines = fbm(n, 3, 90, 3, "brass lines", 0.7)
    height = lines * 0.25 + tarnish * 0.3
    colour = Picture.ramp(lines, [(0.2, (0.340, 0.245, 0.105)), (0.8, (0.450, 0.335, 0.155))])
    colour = colour.blend((0.135, 0.105, 0.062), tarnish * 0.75)
    return maps_of(colour, height, 0.8, 0.55 - tarnish * 0.42, normal_size=128)


def leather(n=256):
    """Cracked oxblood leather, 0.5 m."""
    border, tone = cells(n, 40, "leather cells")
    creases = fbm(n, 5, 5, 5, "leather creases", 0.55)
    folds = (creases - 0.5).abs().smoothstep(0.045, 0.0)
    height = border.smoothstep(0.0, 0.35) * 0.8 - folds * 0.8 + creases * 0.8
    wear = fbm(n, 3, 3, 5, "leather wear", 0.55).smoothstep(0.45, 0.8)
    colour = Picture.ramp(creases * 0.7 + tone * 0.3, [(0.2, (0.135, 0.046, 0.036)), (0.8, (0.215, 0.080, 0.058))])
    colour = colour.blend((0.300, 0.165, 0.105), wear * 0.42).shade(cavity(height, 2, 0.35))
    return maps_of(colour, height, 1.2, (0.15 - wear * 0.08 - folds * 0.07).clamp())


def cloth(n=256):
    """Heavy wine-red cloth, 0.5 m: twill weave, faded streaks, dust."""
    weave = from_function(
        n, lambda u, v: 0.5 + 0.5 * math.sin(math.tau * 64 * u) * math.sin(math.tau * (64 * v + 32 * u))
    )
    fade = fbm(n, 8, 2, 5, "cloth fade", 0.55)
    lint = white(n, "cloth lint").blurred(1)
    height = weave * 0.7 + lint * 0.5
    colour = Picture.ramp(fade, [(0.2, (0.125, 0.030, 0.036)), (0.8, (0.235, 0.072, 0.070))])
    return maps_of(
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
    return maps_of(colour.blend((0.22, 0.16, 0.09), seams), fibre * 0.6 + seams, 1.0, emissive=glow)


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
    return maps_of(colour, height, 1.1, normal_size=256)


def ceramic(n=128):
    """Crazed, yellowed glaze, 0.4 m."""
    border, _ = cells(n, 12, "ceramic crazing")
    craze = border.smoothstep(0.11, 0.0)
    age = fbm(n, 4, 4, 5, "ceramic age", 0.55)
    colour = Picture.ramp(age, [(0.2, (0.40, 0.375, 0.315)), (0.8, (0.52, 0.495, 0.43))]).blend(
        (0.17, 0.13, 0.09), craze * 0.5
    )
    return maps_of(colour, age * 0.8 - craze * 0.3, 0.6, 0.30 - age * 0.15)


def bottleGlass(n=64):
    """Dark green bottle glass with dust, 0.25 m."""
    dust = fbm(n, 4, 4, 5, "bottle dust", 0.6).smoothstep(0.4, 0.8)
    colour = Picture.flat(n, (0.022, 0.042, 0.026)).blend((0.16, 0.15, 0.12), dust * 0.5)
    return maps_of(colour, dust, 0.6, 0.50 - dust * 0.38)
