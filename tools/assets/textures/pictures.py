"""Surfaces that show something: paintings, the window, the clock."""

import math
import random

from field import Field, cells, fbm, from_function, strokes, value_noise, wandering_paths
from picture import Picture, normals_from_height
from textures.common import maps_of


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
    return maps_of(colour, relief, 0.9, paint * 0.10 + 0.04, normal_size=128)


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
    return maps_of(
        colour.blend((0.012, 0.010, 0.008), cracks * 0.4), relief, 0.9, clouds * 0.10 + 0.04, normal_size=128
    )


def nightWindow(n=256):
    """What stands behind the window panes: moonlit fog, bare branches, dirt and rain on the glass."""
    sky = from_function(
        n, lambda u, v: 0.62 * math.exp(-3.6 * math.hypot(u - 0.64, (v - 0.22) * 1.1)) + 0.20 * (1 - v)
    )
    return _pane(n, sky, from_function(n, lambda u, v: math.hypot(u - 0.64, (v - 0.22) * 1.5)).smoothstep(0.066, 0.052))


def nightPane(n=256):
    """The same panes without the moon, for a house that has the moon in one place: paler above, and above the snow."""
    sky = from_function(n, lambda u, v: 0.16 + 0.16 * (1 - v) + 0.12 * math.exp(-((v - 0.98) ** 2) * 30))
    return _pane(n, sky, Field.constant(n, 0.0))


def moonDisc(n=64):
    """The moon with its seas, for a disc of its own."""
    seas = fbm(n, 3, 3, 4, "moon seas", 0.5).smoothstep(0.45, 0.62)
    glow = Picture.flat(n, (0.52, 0.56, 0.56)).blend((0.30, 0.34, 0.37), seas * 0.8)
    return {"Diffuse": (Picture.flat(8, (0.0, 0.0, 0.0)), "DXT1"), "Emissive": (glow, "A8R8G8B8")}


def _pane(n, sky, moon):
    """Glass before a sky of some brightness, with a moon or none in it."""
    light = sky + fbm(n, 3, 4, 6, "night fog", 0.55) * 0.16
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
    return maps_of(colour, hand * 2.0 - cracks * 0.6, 1.0, 0.20 - age * 0.15, normal_size=128)
