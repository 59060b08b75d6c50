"""The fireplace and what lies in it; its parts share one origin."""

import math
import random

from mesh import Mesh, turn_x, turn_y, turn_z, unit
from models.common import BRICK, IRON, STOREY, TILES, WOOD


def fireplace():
    """Brick chimney breast with an open firebox; it stands against a wall and faces +z."""
    mesh = Mesh()
    half, depth, opening, arch = 0.85, 0.42, 0.46, 0.82
    mesh.box((-half, 0.0, 0.0), (-opening, arch, depth), 0.008)
    mesh.box((opening, 0.0, 0.0), (half, arch, depth), 0.008)
    mesh.box((-half, arch, 0.0), (half, 1.22, depth), 0.008)
    mesh.box((-0.68, 1.22, 0.0), (0.68, STOREY, depth - 0.08), 0.008)
    # The back of the firebox stands clear of the panelling that runs on behind.
    mesh.polygon(
        [(opening, arch, 0.07), (-opening, arch, 0.07), (-opening, 0.0, 0.07), (opening, 0.0, 0.07)],
        (0.0, 0.0, 1.0),
        [(opening, -arch), (-opening, -arch), (-opening, 0.0), (opening, 0.0)],
    )
    # Flat arch over the opening: bricks on end that fan out and stand proud of the face.
    for i in range(-6, 7):
        wedge = Mesh()
        wedge.box((-0.036, 0.0, 0.0), (0.036, 0.225, 0.03), 0.006, "y")
        mesh.joined(wedge.turned(turn_z, -0.055 * i).moved((0.0765 * i, arch - 0.012, depth - 0.014)))
    return mesh.scaled_uv(BRICK)


def firebox():
    """Lining of the fireplace's opening: jambs, back and ceiling, the whole texture from jamb to jamb."""
    mesh = Mesh()
    x, top, front, back = 0.458, 0.818, 0.40, 0.072
    depth, whole = front - back, 2 * (front - back) + 2 * x
    outline = [((-x, front), 1.0), ((-x, back), 1.0 - depth / whole), ((x, back), depth / whole), ((x, front), 0.0)]
    for ((x0, z0), u0), ((x1, z1), u1) in zip(outline, outline[1:]):
        normal = unit((z0 - z1, 0.0, x1 - x0))
        corners = [(x1, top, z1), (x0, top, z0), (x0, 0.036, z0), (x1, 0.036, z1)]
        mesh.polygon(corners, normal, [(u1, 0.0), (u0, 0.0), (u0, 1.0), (u1, 1.0)])
    corners = [(-x, top, front), (-x, top, back), (x, top, back), (x, top, front)]
    mesh.polygon(corners, (0.0, -1.0, 0.0), [(0.9, 0.1), (0.8, 0.0), (0.2, 0.0), (0.1, 0.1)])
    return mesh


def mantel():
    mesh = Mesh()
    mesh.box((-1.02, 1.28, 0.0), (1.02, 1.335, 0.56), 0.012)
    mesh.box((-0.94, 1.22, 0.0), (0.94, 1.28, 0.49), 0.016)
    mesh.box((-0.90, 1.17, 0.0), (0.90, 1.22, 0.455), 0.010)
    for sign in (-1.0, 1.0):
        x0, x1 = sorted((sign * 0.67, sign * 0.87))
        mesh.box((x0, 0.0, 0.42), (x1, 0.16, 0.462), 0.010, "y")
        mesh.box((x0 + 0.02, 0.16, 0.42), (x1 - 0.02, 1.05, 0.448), 0.010, "y")
        mesh.box((x0, 1.05, 0.42), (x1, 1.17, 0.462), 0.010, "y")
    return mesh.scaled_uv(WOOD)


def hearth():
    mesh = Mesh()
    mesh.box((-1.0, 0.0, -0.02), (1.0, 0.035, 0.98), 0.010)
    return mesh.scaled_uv(TILES)


def grate():
    """Iron fire basket on feet."""
    mesh = Mesh()
    for i in range(9):
        x = -0.28 + i * 0.07
        mesh.tube([(x, 0.10, 0.30), (x, 0.13, 0.33), (x, 0.27, 0.34)], 0.008, 6)
        mesh.tube([(x, 0.10, 0.30), (x, 0.10, 0.06)], 0.008, 6)
    for y, z in ((0.135, 0.335), (0.265, 0.342)):
        mesh.tube([(-0.31, y, z), (0.31, y, z)], 0.011, 8)
    for x in (-0.31, 0.31):
        mesh.tube([(x, 0.0, 0.345), (x, 0.34, 0.345)], 0.014, 8)
        ball = Mesh()
        ball.lathe([(0.0, 0.0), (0.018, 0.006), (0.025, 0.022), (0.018, 0.040), (0.0, 0.046)], 10)
        mesh.joined(ball.moved((x, 0.335, 0.345)))
        mesh.tube([(x, 0.0, 0.06), (x, 0.26, 0.06), (x, 0.265, 0.34)], 0.010, 6)
    return mesh.scaled_uv(IRON)


def fireLogs():
    """Charred logs and a bed of coals in the grate."""
    mesh = Mesh()
    rng = random.Random("coals")
    for _ in range(34):
        lump = Mesh()
        size = rng.uniform(0.022, 0.05)
        lump.lathe(
            [
                (0.0, -size * 0.7),
                (size * 0.8, -size * 0.4),
                (size, 0.1 * size),
                (size * 0.6, size * 0.6),
                (0.0, size * 0.75),
            ],
            6,
            smooth=0.3,
        )
        lump.turned(turn_y, rng.random() * 6).turned(turn_x, rng.uniform(-0.5, 0.5))
        mesh.joined(lump.moved((rng.uniform(-0.25, 0.25), 0.125 + rng.uniform(0.0, 0.035), rng.uniform(0.09, 0.30))))
    for x, y, z, turn, lean, length, radius in (
        (-0.02, 0.20, 0.17, 0.12, 0.05, 0.52, 0.055),
        (0.03, 0.20, 0.26, -0.2, -0.08, 0.44, 0.045),
        (0.0, 0.285, 0.21, 0.55, 0.22, 0.40, 0.040),
    ):
        log = Mesh()
        log.lathe(
            [
                (0.0, -length / 2),
                (radius * 0.9, -length / 2 + 0.004),
                (radius, -length / 4),
                (radius * 0.93, 0.0),
                (radius * 1.02, length / 4),
                (radius * 0.85, length / 2 - 0.004),
                (0.0, length / 2),
            ],
            11,
            smooth=0.9,
        )
        mesh.joined(log.turned(turn_z, math.pi / 2 + lean).turned(turn_y, turn).moved((x, y, z)))
    return mesh.scaled_uv(0.5)
