"""Pictures that a light throws through its lens: what a place gets of the light, where 0.5 lets it pass as it is."""

import math
import random

from field import fbm, from_function
from picture import Picture


def _bump(x, width):
    return math.exp(-(x / width) ** 2)


def flashlightLens(n=256):
    """A dirty flashlight: the filament's hot spot, the reflector's rings, dust, a hair and a thumb on the glass."""
    wobble = fbm(n, 3, 3, 3, "lens wobble", 0.5)

    def reflector(u, v):
        x, y = 2 * u - 1, 2 * v - 1
        # The filament is a little coil: its picture is not round, and not quite in the middle.
        spot = 0.50 * _bump(math.hypot((x + 0.02) * 1.15, y - 0.01), 0.20) + 0.30 * _bump(math.hypot(x - 0.02, y), 0.44)
        r = math.hypot(x, y)
        rings = 0.035 * _bump(r - 0.56, 0.07) - 0.025 * _bump(r - 0.44, 0.06) + 0.03 * _bump(r - 0.82, 0.07)
        rays = 0.012 * math.sin(7 * math.atan2(y, x) + 1.0) * min(r / 0.4, 1.0)
        return 0.17 + spot + rings + rays

    rng = random.Random("lens specks")
    specks = [(rng.uniform(0.2, 0.8), rng.uniform(0.2, 0.8), rng.uniform(0.010, 0.026), rng.uniform(0.05, 0.16))
              for _ in range(26)]

    def clean(u, v):
        left = 1.0
        for x, y, size, dark in specks:
            away = math.hypot(u - x, v - y)
            if away < 3 * size:
                left *= 1.0 - dark * _bump(away, size)
        hair = abs(v - 0.36 - 0.22 * (u - 0.62) - 0.05 * math.sin(9 * u))
        left *= 1.0 - 0.16 * _bump(hair, 0.006) * _bump(u - 0.63, 0.10)
        thumb = math.hypot((u - 0.36) * 1.2, v - 0.66)
        grooves = 0.5 + 0.5 * math.sin(150 * math.hypot(u - 0.30, (v - 0.60) * 0.8))
        return left * (1.0 - 0.11 * _bump(thumb, 0.12) * (0.5 + 0.5 * grooves))

    light = from_function(n, reflector) + (wobble - 0.5) * 0.09
    dirt = from_function(n, clean) * (fbm(n, 9, 9, 4, "lens dirt", 0.55) * 0.16 + 0.92)
    light = light * dirt
    # What is thrown far from the middle has gone through more glass.
    rim = from_function(n, lambda u, v: math.hypot(2 * u - 1, 2 * v - 1)).smoothstep(0.35, 1.0)
    colour = [light * (1.0 - rim * fade) for fade in (0.00, 0.06, 0.14)]
    # Uncompressed: it is all gradient, and lies on walls metres wide.
    return {"": (Picture([channel.clamp() for channel in (*colour, light * 0.0 + 1.0)]), "A8R8G8B8")}
