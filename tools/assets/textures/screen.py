"""Pictures that lie on the screen: straight alpha, colours as they are shown."""

import math

from field import Field, fbm, from_function, strokes
from picture import Picture


def _image(colour, alpha, kind="DXT5"):
    return {"": (Picture(colour.channels + [alpha.clamp()]), kind)}


def vignetteFrame(n=256):
    """Darkness that closes in from the edges of the screen; uncompressed, since it is all gradient."""
    edge = from_function(n, lambda u, v: ((2 * u - 1) ** 4 + (2 * v - 1) ** 4) ** 0.25)
    smoke = fbm(n, 4, 4, 6, "vignette smoke", 0.55)
    alpha = (edge + (smoke - 0.5) * 0.22).smoothstep(0.62, 1.10)
    return _image(Picture.flat(n, (0.010, 0.008, 0.007)), alpha * 0.96, "A8R8G8B8")


def emblem(n=512):
    """An open eye in a ring of thorns, cut from tarnished brass."""

    def ring(radius, half):
        return from_function(n, lambda u, v: abs(math.hypot(u - 0.5, v - 0.5) - radius)).smoothstep(half + 0.004, half)

    thorns = []
    for i in range(36):
        angle = math.tau * i / 36
        outwards = 1.0 if i % 2 else -1.0
        base, lean = 0.405, 0.10 * outwards
        foot = (0.5 + base * math.cos(angle), 0.5 + base * math.sin(angle), 1.0)
        far = base + 0.050 * outwards
        thorns.append([foot, (0.5 + far * math.cos(angle + lean), 0.5 + far * math.sin(angle + lean), 0.10)])
    vines = []
    for strand in range(2):
        path = []
        for i in range(181):
            angle = math.tau * i / 180
            radius = 0.405 + 0.016 * math.sin(9 * angle + math.pi * strand)
            path.append((0.5 + radius * math.cos(angle), 0.5 + radius * math.sin(angle), 1.0))
        vines.append(path)
    thorn = Field(n, [max(a, b) for a, b in zip(strokes(n, thorns, 5.5).v, strokes(n, vines, 4.2).v)])

    def lid(u, v, half, tall):
        x = abs(u - 0.5) / half
        return (1.0 - x * x) * tall - abs(v - 0.5) if x < 1.0 else -1.0

    outer = from_function(n, lambda u, v: lid(u, v, 0.30, 0.155)).smoothstep(-0.002, 0.004)
    inner = from_function(n, lambda u, v: lid(u, v, 0.262, 0.128)).smoothstep(-0.002, 0.004)
    iris = from_function(n, lambda u, v: math.hypot(u - 0.5, v - 0.5)).smoothstep(0.110, 0.104)
    hollow = from_function(n, lambda u, v: math.hypot(u - 0.5, v - 0.5)).smoothstep(0.088, 0.082)
    slit = from_function(
        n,
        lambda u, v: abs(u - 0.5) / max(0.001, 0.030 * (1.0 - (abs(v - 0.5) / 0.095) ** 2))
        if abs(v - 0.5) < 0.095
        else 9.0,
    )
    slit = slit.smoothstep(1.15, 0.95)
    rays = from_function(n, lambda u, v: math.sin(28 * math.atan2(v - 0.5, u - 0.5)) * 0.5 + 0.5) * hollow
    lashes = []
    for i in range(11):
        x = -0.25 + 0.05 * i
        y = (1.0 - (x / 0.30) ** 2) * 0.155
        for sign in (-1.0, 1.0):
            lashes.append([(0.5 + x, 0.5 + sign * y, 1.0), (0.5 + x * 1.14, 0.5 + sign * (y + 0.058), 0.12)])
    lash = strokes(n, lashes, 4.5)
    solid = (outer - inner + iris - hollow + slit + rays * 0.8).clamp()
    solid = Field(n, [max(a, b, c, d) for a, b, c, d in zip(solid.v, thorn.v, lash.v, ring(0.345, 0.006).v)])
    age = fbm(n, 6, 6, 6, "emblem age", 0.58)
    lit = from_function(n, lambda u, v: 1.05 - 0.55 * v + 0.12 * math.cos(math.tau * u))
    brass = Picture.ramp(
        (age * 0.55 + lit * 0.45).clamp(),
        [(0.2, (0.21, 0.155, 0.075)), (0.6, (0.52, 0.42, 0.22)), (0.95, (0.82, 0.72, 0.46))],
    )
    brass = brass.blend((0.11, 0.16, 0.12), age.smoothstep(0.58, 0.80) * 0.55)
    return _image(brass.blend((0.03, 0.02, 0.015), (1.0 - solid.blurred(1))), solid)


def iconCandle(n=128):
    """HUD: a candle in outline, as light that is left."""

    def flame(u, v):
        y = (0.46 - v) / 0.34
        half = 0.115 * math.sin(math.pi * min(1.0, max(0.0, 1.0 - y) ** 0.7)) if 0.0 < y < 1.0 else 0.0
        return half - abs(u - 0.5 - 0.02 * math.sin(5 * v))

    burning = from_function(n, flame).smoothstep(0.0, 0.012)
    body = from_function(n, lambda u, v: min(0.115 - abs(u - 0.5), v - 0.54, 0.90 - v)).smoothstep(0.0, 0.012)
    hollow = from_function(n, lambda u, v: min(0.085 - abs(u - 0.5), v - 0.575, 0.865 - v)).smoothstep(0.0, 0.012)
    wick = from_function(n, lambda u, v: min(0.014 - abs(u - 0.5), v - 0.42, 0.55 - v)).smoothstep(0.0, 0.010)
    wax = (body - hollow * 0.80 + wick).clamp()
    colour = Picture.flat(n, (0.80, 0.74, 0.62)).blend((1.0, 0.78, 0.36), burning)
    shape = Field(n, [max(a, b) for a, b in zip(wax.v, burning.v)])
    return _image(colour, shape * 0.95)


def iconMind(n=128):
    """HUD: a head in profile, as soundness of mind."""
    outline = [
        (0.62, 0.93),
        (0.60, 0.80),
        (0.72, 0.78),
        (0.76, 0.70),
        (0.74, 0.64),
        (0.78, 0.61),
        (0.74, 0.56),
        (0.82, 0.52),
    ]
    outline += [
        (0.75, 0.42),
        (0.74, 0.28),
        (0.64, 0.14),
        (0.46, 0.09),
        (0.28, 0.15),
        (0.18, 0.30),
        (0.20, 0.48),
        (0.29, 0.62),
        (0.28, 0.93),
    ]
    rim = strokes(n, [[(x, y, 1.0) for x, y in outline]], 3.0)
    spiral = [
        (0.47 + 0.021 * a * math.cos(a), 0.36 + 0.021 * a * math.sin(a), 1.0) for a in (0.25 * i for i in range(1, 37))
    ]
    shape = Field(n, [max(a, b) for a, b in zip(rim.v, strokes(n, [spiral], 2.2).v)])
    return _image(Picture.flat(n, (0.80, 0.74, 0.62)), shape * 0.95)


def panel(n=256):
    """Dark translucent board for text, with a thin brass rule inside its worn edge."""
    edge = from_function(n, lambda u, v: min(u, v, 1.0 - u, 1.0 - v))
    worn = fbm(n, 12, 12, 6, "panel worn", 0.62)
    body = (edge + (worn - 0.5) * 0.030).smoothstep(0.006, 0.014)
    rule = (edge - 0.040).abs().smoothstep(0.0075, 0.0030) * worn.smoothstep(0.25, 0.45)
    colour = Picture.ramp(worn, [(0.2, (0.020, 0.016, 0.013)), (0.8, (0.048, 0.040, 0.032))]).blend(
        (0.50, 0.40, 0.22), rule
    )
    return _image(colour, body * 0.80 + rule * 0.15)


def _spot(n, radius, soft):
    return from_function(n, lambda u, v: math.hypot(u - 0.5, v - 0.5)).smoothstep(radius + soft, radius)


def reticle(n=64):
    """What the player points with: a faint point, dark at its rim, so that it is seen on light walls, too."""
    colour = Picture.flat(n, (0.02, 0.018, 0.015)).blend((0.80, 0.74, 0.62), _spot(n, 0.055, 0.03))
    return _image(colour, _spot(n, 0.085, 0.05) * 0.55, "A8R8G8B8")


def reticleObject(n=64):
    """The point over what stands within reach: a little larger. What can be done with it, the marks beside it tell."""
    colour = Picture.flat(n, (0.02, 0.018, 0.015)).blend((0.90, 0.82, 0.64), _spot(n, 0.075, 0.03))
    return _image(colour, _spot(n, 0.105, 0.05) * 0.75, "A8R8G8B8")


def _mark(n, distance, cut=None):
    """A sign around the point: pale, with a dark rim, so that it is seen before a lamp as well as in the dark.

    `distance` tells how far outside of the sign a place lies, `cut` how far outside of what is dark within it; shares
    of the picture's width, negative inside.
    """
    body = from_function(n, distance)
    bright = body.smoothstep(0.012, -0.012)
    if cut:
        bright = bright * from_function(n, cut).smoothstep(-0.012, 0.012)
    colour = Picture.flat(n, (0.02, 0.018, 0.015)).blend((0.86, 0.80, 0.66), bright)
    shadow = body.smoothstep(0.075, 0.0) * 0.55
    alpha = Field(n, [max(a * 0.92, b) for a, b in zip(bright.v, shadow.v)])
    return _image(colour, alpha, "A8R8G8B8")


def _round(x, y, cx, cy, radius):
    return math.hypot(x - cx, y - cy) - radius


def _rod(x, y, x0, y0, x1, y1, radius):
    """Distance from a rod with round ends."""
    dx, dy = x1 - x0, y1 - y0
    along = max(0.0, min(1.0, ((x - x0) * dx + (y - y0) * dy) / (dx * dx + dy * dy)))
    return math.hypot(x - x0 - along * dx, y - y0 - along * dy) - radius


def _block(x, y, cx, cy, wide, high, corner):
    """Distance from a rectangle with round corners, given by half its sides."""
    dx, dy = abs(x - cx) - wide + corner, abs(y - cy) - high + corner
    return math.hypot(max(dx, 0.0), max(dy, 0.0)) + min(max(dx, dy), 0.0) - corner


def markUse(n=64):
    """A ring around the point: something to press, switch or turn."""
    return _mark(n, lambda x, y: min(abs(_round(x, y, 0.5, 0.5, 0.27)) - 0.035, _round(x, y, 0.5, 0.5, 0.07)))


def markTake(n=64):
    """Something small over a hollow hand: what goes into the pocket."""

    def sign(x, y):
        hollow = abs(_round(x, y, 0.5, 0.42, 0.30)) - 0.045 if y > 0.46 else _round(x, y, 0.5, 0.5, 0.075)
        ends = min(_round(x, y, 0.2, 0.46, 0.045), _round(x, y, 0.8, 0.46, 0.045))
        return min(hollow, _round(x, y, 0.5, 0.5, 0.085), ends)

    return _mark(n, sign)


#: Tips of an open hand's fingers: across, and how far up they reach.
_FINGERS = ((0.345, 0.27), (0.45, 0.20), (0.555, 0.22), (0.66, 0.32))


def markHold(n=64):
    """An open hand: what is gripped, and moves as the hand does."""

    def sign(x, y):
        palm = _block(x, y, 0.5, 0.62, 0.185, 0.17, 0.09)
        fingers = min(_rod(x, y, 0.5 + (fx - 0.5) * 0.82, 0.58, fx, fy, 0.043) for fx, fy in _FINGERS)
        return min(palm, fingers, _rod(x, y, 0.36, 0.68, 0.19, 0.52, 0.05))

    def gaps(x, y):
        return min(_rod(x, y, gx, 0.28, 0.5 + (gx - 0.5) * 0.9, 0.52, 0.008) for gx in (0.40, 0.50, 0.61))

    return _mark(n, sign, gaps)


def markHeld(n=64):
    """The same hand closed: it holds."""

    def sign(x, y):
        knuckles = min(_rod(x, y, kx, 0.40, kx, 0.52, 0.058) for kx in (0.335, 0.445, 0.555, 0.665))
        return min(_block(x, y, 0.5, 0.57, 0.215, 0.17, 0.09), knuckles)

    def lines(x, y):
        between = min(_rod(x, y, gx, 0.34, gx, 0.53, 0.012) for gx in (0.39, 0.50, 0.61))
        return min(between, _rod(x, y, 0.30, 0.60, 0.60, 0.60, 0.014))

    return _mark(n, sign, lines)


def markLocked(n=64):
    """A padlock."""

    def sign(x, y):
        shackle = abs(_round(x, y, 0.5, 0.40, 0.135)) - 0.036 if y < 0.40 else abs(abs(x - 0.5) - 0.135) - 0.036
        return min(_block(x, y, 0.5, 0.63, 0.22, 0.175, 0.05), max(shackle, y - 0.55))

    def keyhole(x, y):
        return min(_round(x, y, 0.5, 0.60, 0.05), _rod(x, y, 0.5, 0.62, 0.5, 0.71, 0.024))

    return _mark(n, sign, keyhole)


def markRead(n=64):
    """A written sheet."""

    def lines(x, y):
        ends = ((0.38, 0.63), (0.48, 0.60), (0.58, 0.63), (0.68, 0.52))
        return min(_rod(x, y, 0.37, ly, lx, ly, 0.017) for ly, lx in ends)

    return _mark(n, lambda x, y: _block(x, y, 0.5, 0.52, 0.21, 0.275, 0.03), lines)


def notePage(n=512):
    """A sheet of paper to read on: folded twice, brown at its worn edges, dim as by the light that one reads it in."""
    fibre = fbm(n, 40, 56, 4, "page fibre", 0.7)
    cloud = fbm(n, 3, 3, 4, "page cloud", 0.55)
    edge = from_function(n, lambda u, v: min(u, v, 1.0 - u, 1.0 - v))
    ragged = edge + (fibre - 0.5) * 0.016
    shade = (fibre * 0.7 + cloud * 0.3).clamp()
    colour = Picture.ramp(shade, [(0.2, (0.60, 0.525, 0.39)), (0.8, (0.755, 0.675, 0.52))])
    colour = colour.blend((0.36, 0.25, 0.14), (edge.smoothstep(0.11, 0.0) * (cloud * 0.9 + 0.15)).clamp())
    for fold in (0.335, 0.668):
        dark = from_function(n, lambda u, v, fold=fold: abs(v - fold - 0.0035)).smoothstep(0.006, 0.0)
        light = from_function(n, lambda u, v, fold=fold: abs(v - fold + 0.0035)).smoothstep(0.006, 0.0)
        colour = colour.blend((0.36, 0.30, 0.21), dark * 0.45).blend((0.86, 0.80, 0.66), light * 0.30)
    return _image(colour, ragged.smoothstep(0.004, 0.012))


def meterLight(n=32):
    """HUD: the light that is left, as a bar; the edge is soft, so that it does not crawl as it shrinks."""
    body = from_function(n, lambda u, v: min(u, 1.0 - u, v, 1.0 - v)).smoothstep(0.02, 0.12)
    shade = from_function(n, lambda u, v: 0.75 + 0.5 * v).clamp()
    return _image(Picture([shade * 0.86, shade * 0.74, shade * 0.44]), body * 0.85, "A8R8G8B8")
