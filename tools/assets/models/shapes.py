"""Shapes of the engine's own needs."""

import math

from mesh import Mesh, turn_x


def lightCone():
    """Cone with its apex at the origin that opens along +z to radius 1 at z = 1."""
    mesh = Mesh()
    mesh.lathe([(1.0, -1.0), (0.0, 0.0)], 32, closed_uv=1.0)
    mesh.turned(turn_x, -math.pi / 2)
    sides = 32
    corners = [(math.sin(math.tau * i / sides), math.cos(math.tau * i / sides), 1.0) for i in range(sides)]
    mesh.polygon(corners, (0.0, 0.0, 1.0), [(0.5 + 0.5 * x, 0.5 - 0.5 * y) for x, y, _ in corners])
    return mesh


def unitsphere():
    """Sphere of radius 1 around the origin."""
    mesh = Mesh()
    mesh.lathe(
        [(math.sin(math.pi * i / 16) if 0 < i < 16 else 0.0, -math.cos(math.pi * i / 16)) for i in range(17)],
        32,
        smooth=1.0,
        closed_uv=1.0,
    )
    return mesh
