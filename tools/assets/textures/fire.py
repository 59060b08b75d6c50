"""What burns, and glass that it shines through."""

import math

from field import cells, fbm, from_function
from picture import Picture
from textures.common import maps_of


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
    return maps_of(colour, height, 1.8, emissive=glow)


def wax(n=64):
    """Tallow candle, unrolled: drips below, lit from the flame above."""
    drips = fbm(n, 8, 2, 4, "wax drips")
    colour = Picture.ramp(drips, [(0.2, (0.50, 0.44, 0.33)), (0.8, (0.62, 0.56, 0.44))])
    glow = Picture.ramp(
        from_function(n, lambda u, v: max(0.0, 1.0 - v * 2.1) ** 2),
        [(0.0, (0.02, 0.010, 0.003)), (1.0, (0.72, 0.36, 0.10))],
    )
    return maps_of(colour, drips * 1.6, 1.4, drips * 0.08 + 0.05, glow)


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


def _glass(n, seed, tint):
    """Lit glass of one colour, brightest in its middle, streaked with soot."""
    soot = fbm(n, 5, 5, 5, seed, 0.6).smoothstep(0.35, 0.75)
    glow = from_function(n, lambda u, v: math.exp(-(((v - 0.55) / 0.34) ** 2))) * (1.0 - soot * 0.55)
    bright = tuple(min(1.0, 0.35 + 0.75 * c) for c in tint)
    stops = [(0.0, (0.0, 0.0, 0.0)), (0.45, tuple(0.42 * c for c in tint)), (0.85, tint), (1.0, bright)]
    return {
        "Diffuse": (Picture.flat(8, tuple(0.10 * c + 0.01 for c in tint)), "DXT1"),
        "Emissive": (Picture.ramp(glow, stops), "DXT1"),
    }


def glassRed(n=64):
    return _glass(n, "glass red", (0.95, 0.10, 0.06))


def glassBlue(n=64):
    return _glass(n, "glass blue", (0.12, 0.30, 0.95))


def glassGreen(n=64):
    return _glass(n, "glass green", (0.16, 0.80, 0.24))


def glassAmber(n=64):
    return _glass(n, "glass amber", (1.0, 0.60, 0.16))


def lens(n=64):
    """Lens of a lit stage lamp: blown-out middle, rings towards the rim; v from the middle outwards."""
    glow = from_function(n, lambda u, v: (1.0 - 0.45 * v) * (0.90 + 0.10 * math.sin(40 * v)))
    stops = [(0.0, (0.10, 0.08, 0.05)), (0.6, (0.85, 0.74, 0.52)), (1.0, (1.0, 0.96, 0.86))]
    return {"Diffuse": (Picture.flat(8, (0.3, 0.3, 0.3)), "DXT1"), "Emissive": (Picture.ramp(glow, stops), "DXT1")}
