"""Lamps, candles and what holds them."""

import math

from mesh import Mesh, add
from models.common import BRASS, IRON


def lampBase():
    """Brass table lamp, 0.42 m; the shade is `lampShade` at the same origin."""
    mesh = Mesh()
    mesh.lathe(
        [
            (0.0, 0.0),
            (0.085, 0.0),
            (0.088, 0.010),
            (0.078, 0.020),
            (0.050, 0.030),
            (0.028, 0.045),
            (0.016, 0.065),
            (0.022, 0.085),
            (0.038, 0.105),
            (0.044, 0.130),
            (0.034, 0.160),
            (0.016, 0.185),
            (0.012, 0.200),
            (0.018, 0.212),
            (0.011, 0.224),
            (0.011, 0.30),
            (0.016, 0.31),
            (0.016, 0.335),
            (0.0, 0.34),
        ],
        22,
    )
    return mesh.scaled_uv(BRASS)


def lampShade():
    mesh = Mesh()
    mesh.lathe([(0.165, 0.235), (0.150, 0.275), (0.128, 0.34), (0.095, 0.42)], 28, closed_uv=1.0)
    inner = Mesh()
    inner.lathe([(0.092, 0.42), (0.125, 0.34), (0.147, 0.275), (0.162, 0.235)], 28, closed_uv=1.0)
    for vertex in inner.vertices:
        vertex[1] = (-vertex[1][0], -vertex[1][1], -vertex[1][2])
    inner.triangles = [(a, c, b) for a, b, c in inner.triangles]
    return mesh.joined(inner)


def candleHolder():
    """Chamberstick: dish, socket and ring; the candle stands on 0.05 m."""
    mesh = Mesh()
    mesh.lathe(
        [
            (0.0, 0.0),
            (0.055, 0.0),
            (0.072, 0.012),
            (0.075, 0.020),
            (0.070, 0.018),
            (0.052, 0.007),
            (0.016, 0.006),
            (0.014, 0.03),
            (0.020, 0.05),
            (0.020, 0.056),
            (0.0125, 0.055),
            (0.0125, 0.045),
        ],
        22,
    )
    ring = [
        (0.0, 0.014 + 0.022 * math.sin(math.tau * i / 14), 0.096 + 0.022 * math.cos(math.tau * i / 14))
        for i in range(15)
    ]
    mesh.tube(ring, 0.004, 6, caps=False)
    return mesh.scaled_uv(BRASS)


def candelabrum():
    """Three-armed candlestick, 0.34 m; candles stand at x -0.13, 0, 0.13 on 0.30, 0.34 and 0.30 m."""
    mesh = Mesh()
    mesh.lathe(
        [
            (0.0, 0.0),
            (0.070, 0.0),
            (0.074, 0.010),
            (0.060, 0.020),
            (0.026, 0.034),
            (0.014, 0.055),
            (0.022, 0.085),
            (0.024, 0.100),
            (0.011, 0.125),
            (0.010, 0.18),
            (0.018, 0.195),
            (0.011, 0.21),
            (0.009, 0.31),
            (0.024, 0.332),
            (0.024, 0.340),
            (0.0, 0.340),
        ],
        18,
    )
    for sign in (-1.0, 1.0):
        arm = ((0.0, 0.20), (0.03, 0.178), (0.06, 0.165), (0.09, 0.168), (0.113, 0.185), (0.126, 0.215), (0.13, 0.258))
        mesh.tube([(sign * x, y, 0.0) for x, y in arm], 0.007, 8)
        cup = Mesh()
        cup.lathe([(0.0, 0.255), (0.009, 0.258), (0.012, 0.275), (0.024, 0.292), (0.024, 0.300), (0.0, 0.300)], 14)
        mesh.joined(cup.moved((sign * 0.13, 0.0, 0.0)))
    return mesh.scaled_uv(BRASS)


def candle():
    """Half-burnt candle, 0.11 m, standing on y = 0."""
    mesh = Mesh()
    mesh.lathe(
        [
            (0.0115, 0.0),
            (0.0118, 0.04),
            (0.0114, 0.085),
            (0.0125, 0.100),
            (0.0115, 0.106),
            (0.008, 0.103),
            (0.0, 0.101),
        ],
        14,
        smooth=1.3,
        closed_uv=1.0,
    )
    for angle, top, length in ((0.4, 0.100, 0.05), (2.4, 0.102, 0.03), (4.1, 0.098, 0.07)):
        s, c = math.sin(angle) * 0.0115, math.cos(angle) * 0.0115
        drip = Mesh()
        drip.tube(
            [(s, top, c), (s * 1.06, top - length * 0.5, c * 1.06), (s * 1.08, top - length, c * 1.08)], 0.0028, 6
        )
        for vertex in drip.vertices:
            vertex[2] = (0.3, 1.0 - vertex[0][1] / 0.106)
        mesh.joined(drip)
    return mesh


def candleFlame():
    """Flame of `candle`, at the same origin."""
    mesh = Mesh()
    mesh.lathe(
        [
            (0.0, 0.104),
            (0.0045, 0.109),
            (0.0068, 0.117),
            (0.0062, 0.126),
            (0.0040, 0.137),
            (0.0016, 0.147),
            (0.0, 0.152),
        ],
        10,
        smooth=1.2,
        closed_uv=1.0,
    )
    return mesh


def chandelier():
    """Iron wheel of six candles on chains; the origin hangs under the ceiling, the wheel 0.95 m below."""
    mesh = Mesh()
    y, radius = -0.95, 0.42
    ring = Mesh()
    ring.lathe(
        [
            (radius - 0.008, -0.024),
            (radius + 0.008, -0.024),
            (radius + 0.008, 0.024),
            (radius - 0.008, 0.024),
            (radius - 0.008, -0.024),
        ],
        36,
        smooth=0.3,
        grain_down=False,
    )
    mesh.joined(ring.moved((0.0, y, 0.0)))
    for i in range(6):
        angle = math.tau * i / 6
        s, c = math.sin(angle), math.cos(angle)
        cup = Mesh()
        cup.lathe(
            [
                (0.0, 0.02),
                (0.012, 0.022),
                (0.012, 0.04),
                (0.038, 0.048),
                (0.042, 0.058),
                (0.036, 0.054),
                (0.016, 0.052),
                (0.016, 0.064),
                (0.0, 0.064),
            ],
            14,
        )
        mesh.joined(cup.moved((s * radius, y, c * radius)))
        if i % 2 == 0:
            mesh.tube(
                [(s * radius, y, c * radius), (-s * radius, y, -c * radius)]
                if i == 0
                else [(0.0, y, 0.0), (s * radius, y, c * radius)],
                0.009,
                6,
            )
            for link in range(12):
                k0, k1 = link / 12, (link + 1.25) / 12
                a = (s * radius * (1 - k0), y + (0.95 - 0.12) * k0, c * radius * (1 - k0))
                b = (s * radius * (1 - min(1.0, k1)), y + (0.95 - 0.12) * min(1.0, k1), c * radius * (1 - min(1.0, k1)))
                side = (c * 0.011, 0.0, -s * 0.011) if link % 2 else (s * 0.006, 0.011, c * 0.006)
                mesh.tube([add(a, side), add(b, side)], 0.0032, 5)
                mesh.tube([add(a, (-side[0], -side[1], -side[2])), add(b, (-side[0], -side[1], -side[2]))], 0.0032, 5)
    mesh.tube([(0.0, -0.14, 0.0), (0.0, 0.0, 0.0)], 0.010, 8)
    mesh.lathe([(0.0, -0.03), (0.045, -0.02), (0.055, 0.0)], 16)
    return mesh.scaled_uv(IRON)
