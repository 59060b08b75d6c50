"""Desk, tables and chairs; a sitter looks towards +z."""

import math

from mesh import Mesh, turn_x, turn_y
from models.common import BRASS, LEATHER, WOOD

_TURNED_LEG = [
    (0.018, 0.0),
    (0.024, 0.012),
    (0.026, 0.03),
    (0.017, 0.05),
    (0.019, 0.09),
    (0.028, 0.22),
    (0.031, 0.30),
    (0.022, 0.335),
    (0.032, 0.35),
    (0.032, 0.365),
    (0.020, 0.378),
    (0.026, 0.40),
]


def _turned_leg(height, thickness=1.0):
    leg = Mesh()
    leg.lathe([(r * thickness, y / 0.40 * height) for r, y in _TURNED_LEG], 14)
    return leg


def desk():
    """Writing desk, 1.7 x 0.8 m, two pedestals of drawers; the sitter is at +z."""
    mesh = Mesh()
    mesh.box((-0.85, 0.735, -0.40), (0.85, 0.77, 0.40), 0.010)
    mesh.box((-0.83, 0.715, -0.38), (0.83, 0.735, 0.38), 0.006)
    mesh.box((-0.40, 0.61, 0.335), (0.40, 0.715, 0.355), 0.004)
    mesh.box((-0.40, 0.18, -0.36), (0.40, 0.715, -0.34), 0.004)
    for sign in (-1.0, 1.0):
        x0, x1 = sorted((sign * 0.40, sign * 0.81))
        mesh.box((x0, 0.07, -0.36), (x1, 0.715, 0.335), 0.006, "y")
        mesh.box((x0 - 0.012, 0.0, -0.372), (x1 + 0.012, 0.075, 0.352), 0.010)
        for y0, y1 in ((0.10, 0.33), (0.345, 0.53), (0.545, 0.70)):
            mesh.box((x0 + 0.025, y0, 0.325), (x1 - 0.025, y1, 0.350), 0.007)
    return mesh.scaled_uv(WOOD)


def deskFittings():
    mesh = Mesh()
    for sign in (-1.0, 1.0):
        for y in (0.215, 0.4375, 0.6225):
            for dx in (-0.075, 0.075):
                knob = Mesh()
                knob.lathe([(0.008, 0.0), (0.006, 0.012), (0.014, 0.02), (0.015, 0.027), (0.0, 0.033)], 10)
                mesh.joined(knob.turned(turn_x, math.pi / 2).moved((sign * 0.605 + dx, y, 0.350)))
    return mesh.scaled_uv(BRASS)


def deskPad():
    mesh = Mesh()
    mesh.box((-0.36, 0.77, -0.02), (0.36, 0.776, 0.36), 0.003)
    return mesh.scaled_uv(LEATHER)


def sideTable():
    """Round tripod table, 0.6 m across, 0.65 m high."""
    mesh = Mesh()
    mesh.lathe(
        [
            (0.0, 0.615),
            (0.27, 0.618),
            (0.295, 0.628),
            (0.302, 0.638),
            (0.300, 0.648),
            (0.285, 0.652),
            (0.278, 0.648),
            (0.0, 0.648),
        ],
        32,
        smooth=0.8,
    )
    mesh.lathe(
        [
            (0.035, 0.16),
            (0.048, 0.19),
            (0.050, 0.24),
            (0.028, 0.29),
            (0.024, 0.40),
            (0.034, 0.46),
            (0.022, 0.50),
            (0.030, 0.58),
            (0.075, 0.605),
            (0.075, 0.618),
        ],
        18,
    )
    for i in range(3):
        leg = Mesh()
        leg.tube(
            [
                (0.0, 0.22, 0.02),
                (0.0, 0.20, 0.09),
                (0.0, 0.13, 0.17),
                (0.0, 0.05, 0.23),
                (0.0, 0.018, 0.28),
                (0.0, 0.018, 0.31),
            ],
            0.021,
            10,
        )
        mesh.joined(leg.turned(turn_y, i * math.tau / 3))
    return mesh.scaled_uv(WOOD)


def diningTable():
    """Plank table with turned legs, 1.8 x 0.85 m."""
    mesh = Mesh()
    for i in range(5):
        z = -0.425 + i * 0.17
        mesh.box((-0.9, 0.725, z), (0.9, 0.765, z + 0.168), 0.007)
    mesh.box((-0.80, 0.62, -0.35), (0.80, 0.725, -0.325), 0.005)
    mesh.box((-0.80, 0.62, 0.325), (0.80, 0.725, 0.35), 0.005)
    for x in (-0.81, 0.785):
        mesh.box((x, 0.62, -0.33), (x + 0.025, 0.725, 0.33), 0.005, "z")
    for x in (-0.78, 0.78):
        for z in (-0.32, 0.32):
            mesh.box((x - 0.042, 0.58, z - 0.042), (x + 0.042, 0.725, z + 0.042), 0.006, "y")
            mesh.joined(_turned_leg(0.58, 1.35).moved((x, 0.0, z)))
    return mesh.scaled_uv(WOOD)


def chair():
    """Slat-back chair; the sitter looks towards +z."""
    mesh = Mesh()
    for x in (-0.19, 0.19):
        mesh.joined(_turned_leg(0.43).moved((x, 0.0, 0.19)))
        mesh.tube(
            [(x, 0.0, -0.24), (x, 0.22, -0.20), (x, 0.45, -0.19), (x, 0.75, -0.225), (x * 1.02, 1.03, -0.285)],
            0.019,
            10,
        )
        mesh.tube([(x, 0.15, -0.205), (x, 0.15, 0.19)], 0.011, 8)
    mesh.tube([(-0.19, 0.17, 0.19), (0.19, 0.17, 0.19)], 0.011, 8)
    mesh.box((-0.22, 0.425, -0.21), (0.22, 0.445, 0.225), 0.008)
    for y, z, height in ((0.60, -0.208, 0.05), (0.77, -0.232, 0.05), (0.95, -0.272, 0.085)):
        slat = Mesh()
        slat.box((-0.19, -height / 2, -0.008), (0.19, height / 2, 0.008), 0.005)
        mesh.joined(slat.bent(lambda p: (p[0], p[1], p[2] - 0.028 + 0.75 * p[0] * p[0])).moved((0.0, y, z)))
    return mesh.scaled_uv(WOOD)


def chairSeat():
    mesh = Mesh()
    mesh.cushion((-0.20, 0.44, -0.17), (0.20, 0.48, 0.21), 0.018, 3, 0.018)
    return mesh.scaled_uv(LEATHER)


def armchair():
    """Deep leather armchair, 0.9 m wide; the sitter looks towards +z."""
    mesh = Mesh()
    mesh.cushion((-0.42, 0.13, -0.38), (0.42, 0.34, 0.36), 0.05, 2)
    mesh.cushion((-0.28, 0.33, -0.22), (0.28, 0.48, 0.40), 0.06, 3, 0.025)
    for sign in (-1.0, 1.0):
        x0, x1 = sorted((sign * 0.27, sign * 0.45))
        mesh.cushion((x0, 0.15, -0.36), (x1, 0.62, 0.38), 0.075, 3, 0.01)
    back = Mesh()
    back.cushion((-0.38, 0.30, -0.09), (0.38, 1.06, 0.09), 0.08, 3, 0.02)
    mesh.joined(back.moved((0.0, -0.3, 0.0)).turned(turn_x, -0.17).moved((0.0, 0.3, -0.30)))
    pad = Mesh()
    pad.cushion((-0.26, 0.46, 0.05), (0.26, 0.98, 0.15), 0.05, 3, 0.03)
    mesh.joined(pad.moved((0.0, -0.3, 0.0)).turned(turn_x, -0.17).moved((0.0, 0.3, -0.27)))
    return mesh.scaled_uv(LEATHER)


def armchairFeet():
    mesh = Mesh()
    for x in (-0.36, 0.36):
        for z in (-0.30, 0.30):
            foot = Mesh()
            foot.lathe([(0.016, 0.0), (0.026, 0.015), (0.028, 0.04), (0.020, 0.06), (0.034, 0.085), (0.036, 0.14)], 12)
            mesh.joined(foot.moved((x, 0.0, z)))
    return mesh.scaled_uv(WOOD)
