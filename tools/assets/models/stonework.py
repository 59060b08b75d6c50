"""Stone building kit, in steps of 2 m: walls 0.3 m thick that face +z, arches, vaults, columns.

The kit wears any surface that covers 2 m. Walls have a back, so that they keep light out from both sides.
"""

import math

from mesh import Mesh, turn_z
from models.common import STONE, STOREY

THICKNESS = 0.30
ARCH_HALF = 0.70  # half the width of an opening
ARCH_SPRING = 1.55  # where the arch begins to bend
ARCH_STEPS = 14
PLINTH = [(0.34, 0.0), (0.31, 0.045), (0.02, 0.055), (0.0, 0.06)]
COPING = [(STOREY, 0.13), (STOREY - 0.10, 0.13), (STOREY - 0.13, 0.085), (STOREY - 0.20, 0.05), (STOREY - 0.23, 0.0)]
DOORWAY = (0.60, 2.20)  # half width and head of a square doorway
GRILLE = (0.62, 2.02, 2.86)  # half width, sill and head of a grille's opening


def _face(mesh, x0, x1, y0, y1, z=0.0, facing=1.0):
    """Upright rectangle; u and v follow the place, so that neighbours continue each other."""
    corners = [(x1, y1, z), (x0, y1, z), (x0, y0, z), (x1, y0, z)]
    mesh.polygon(corners, (0.0, 0.0, facing), [(1.0 - x, STOREY - y) for x, y, _ in corners])


def _reveal(mesh, points, back):
    """Band that joins the outline of an opening to the wall's back; it faces the opening's inside."""
    travelled = 0.0
    for (x0, y0), (x1, y1) in zip(points, points[1:]):
        length = math.hypot(x1 - x0, y1 - y0)
        normal = ((y1 - y0) / length, -(x1 - x0) / length, 0.0)
        corners = [(x0, y0, 0.0), (x1, y1, 0.0), (x1, y1, back), (x0, y0, back)]
        ends = (travelled, travelled + length)
        mesh.polygon(corners, normal, [(0.0, ends[0]), (0.0, ends[1]), (-back, ends[1]), (-back, ends[0])])
        travelled += length


def _top(mesh):
    """Closes a wall from above, so that no light falls in between its faces."""
    y, back = STOREY, -THICKNESS
    mesh.facet([(-1.0, y, back), (-1.0, y, 0.0), (1.0, y, 0.0), (1.0, y, back)])


def _courses(mesh):
    """Foot and head of a wall of full width."""
    mesh.moulding(PLINTH, -1.0, 1.0)
    mesh.moulding(COPING, -1.0, 1.0)
    _top(mesh)


def stoneWall():
    mesh = Mesh()
    _face(mesh, -1.0, 1.0, 0.0, STOREY)
    _face(mesh, -1.0, 1.0, 0.0, STOREY, -THICKNESS, -1.0)
    _courses(mesh)
    return mesh.scaled_uv(STONE)


def _arch_outline():
    """Left foot, over the arch, to the right foot."""
    bend = [
        (-ARCH_HALF * math.cos(math.pi * i / ARCH_STEPS), ARCH_SPRING + ARCH_HALF * math.sin(math.pi * i / ARCH_STEPS))
        for i in range(ARCH_STEPS + 1)
    ]
    return [(-ARCH_HALF, 0.0)] + bend + [(ARCH_HALF, 0.0)]


def stoneArch():
    """Wall with a round-arched doorway, 1.4 m wide and 2.25 m high, framed by wedge-shaped stones."""
    mesh = Mesh()
    outline = _arch_outline()
    for z, facing in ((0.0, 1.0), (-THICKNESS, -1.0)):
        for x0, x1 in ((-1.0, -ARCH_HALF), (ARCH_HALF, 1.0)):
            _face(mesh, x0, x1, 0.0, STOREY, z, facing)
        for (x0, y0), (x1, y1) in zip(outline[1:-2], outline[2:-1]):
            corners = [(x1, STOREY, z), (x0, STOREY, z), (x0, y0, z), (x1, y1, z)]
            mesh.polygon(corners, (0.0, 0.0, facing), [(1.0 - x, STOREY - y) for x, y, _ in corners])
    _reveal(mesh, outline, -THICKNESS)
    stones = 15
    for i in range(stones):
        angle = math.pi * (i + 0.5) / stones - math.pi / 2
        wedge = Mesh()
        deep = 0.225 if i == stones // 2 else 0.19
        wedge.box((-0.068, ARCH_HALF - 0.002, -0.02), (0.068, ARCH_HALF + deep, 0.035), 0.010, "y")
        wedge.bent(lambda p: (p[0] * (0.5 + 0.62 * p[1]), p[1], p[2]))
        mesh.joined(wedge.turned(turn_z, -angle).moved((0.0, ARCH_SPRING, 0.0)))
    for sign in (-1.0, 1.0):
        x0, x1 = sorted((sign * (ARCH_HALF - 0.002), sign * (ARCH_HALF + 0.17)))
        for course in range(5):
            wide = 0.05 * (course % 2)
            low, high = sorted((x0, x1))
            low, high = (low - wide, high) if sign < 0 else (low, high + wide)
            mesh.box((low, course * 0.31 + 0.002, -0.02), (high, course * 0.31 + 0.308, 0.032), 0.010)
    mesh.moulding(COPING, -1.0, 1.0)
    _top(mesh)
    return mesh.scaled_uv(STONE)


def stoneDoorway():
    """Wall with a square doorway, 1.2 m wide and 2.2 m high, under a lintel of one stone."""
    mesh = Mesh()
    half, head = DOORWAY
    for z, facing in ((0.0, 1.0), (-THICKNESS, -1.0)):
        for x0, x1, y0 in ((-1.0, -half, 0.0), (half, 1.0, 0.0), (-half, half, head)):
            _face(mesh, x0, x1, y0, STOREY, z, facing)
    _reveal(mesh, [(-half, 0.0), (-half, head), (half, head), (half, 0.0)], -THICKNESS)
    mesh.box((-half - 0.22, head + 0.002, -0.02), (half + 0.22, head + 0.30, 0.035), 0.012)
    for sign in (-1.0, 1.0):
        for course in range(7):
            wide = 0.06 * (course % 2)
            low, high = sorted((sign * (half + 0.002), sign * (half + 0.17 + wide)))
            mesh.box((low, course * 0.314 + 0.002, -0.02), (high, course * 0.314 + 0.312, 0.030), 0.010)
    mesh.moulding(COPING, -1.0, 1.0)
    _top(mesh)
    return mesh.scaled_uv(STONE)


def stoneTunnel():
    """Vaulted passage from the wall plane z = 0 to z = 2, 1.44 m wide; its ends vanish behind the arches."""
    mesh = Mesh()
    half, start, end = ARCH_HALF + 0.02, 0.02, 1.98
    outline = [(-half, 0.0)] + [
        (-half * math.cos(math.pi * i / ARCH_STEPS), ARCH_SPRING + half * math.sin(math.pi * i / ARCH_STEPS))
        for i in range(ARCH_STEPS + 1)
    ]
    outline.append((half, 0.0))
    shell = Mesh()
    _reveal(shell, outline, start - end)
    mesh.joined(shell.moved((0.0, 0.0, end)))
    return mesh.scaled_uv(STONE)


def stoneGrilleWall():
    """Wall with a barred opening high up; the bars are `grilleBars`."""
    mesh = Mesh()
    half, sill, head = GRILLE
    for z, facing in ((0.0, 1.0), (-THICKNESS, -1.0)):
        for x0, x1, y0, y1 in (
            (-1.0, -half, 0.0, STOREY),
            (half, 1.0, 0.0, STOREY),
            (-half, half, 0.0, sill),
            (-half, half, head, STOREY),
        ):
            _face(mesh, x0, x1, y0, y1, z, facing)
    _reveal(mesh, [(-half, sill), (-half, head), (half, head), (half, sill), (-half, sill)], -THICKNESS)
    _courses(mesh)
    return mesh.scaled_uv(STONE)


def grilleBars():
    mesh = Mesh()
    half, sill, head = GRILLE
    for i in range(7):
        x = -half + 2 * half * (i + 0.5) / 7
        mesh.tube([(x, sill - 0.02, -0.16), (x, head + 0.02, -0.16)], 0.013, 8, caps=False)
    for y in (sill + 0.22, head - 0.22):
        mesh.box((-half - 0.02, y - 0.018, -0.178), (half + 0.02, y + 0.018, -0.142), 0.003)
    return mesh.scaled_uv(0.5)


def stoneFloor():
    mesh = Mesh()
    mesh.facet([(-1, 0, -1), (-1, 0, 1), (1, 0, 1), (1, 0, -1)])
    return mesh.scaled_uv(STONE)


def stoneCeiling():
    """Ceiling of 2 m; its back reaches over the walls beside it and keeps the sky's light out."""
    mesh = Mesh()
    mesh.facet([(-1, STOREY, -1), (1, STOREY, -1), (1, STOREY, 1), (-1, STOREY, 1)])
    y, over = STOREY + 0.02, 1.0 + THICKNESS
    mesh.facet([(-over, y, -over), (-over, y, over), (over, y, over), (over, y, -over)])
    return mesh.scaled_uv(STONE)


def vaultRib():
    """Flat arch of stone across a room of 6 m, on corbels, 0.36 m wide; the room's ceiling rests on it."""
    mesh = Mesh()
    half, spring, crown, wide = 3.0, 2.28, 2.92, 0.18
    steps = 20

    def soffit(s):
        return spring + (crown - spring) * math.sin(math.pi * s) ** 0.75

    for i in range(steps):
        s0, s1 = i / steps, (i + 1) / steps
        x0, x1 = -half + 2 * half * s0, -half + 2 * half * s1
        y0, y1 = soffit(s0), soffit(s1)
        mesh.facet([(x0, y0, -wide), (x1, y1, -wide), (x1, y1, wide), (x0, y0, wide)])
        for z, sign in ((wide, 1.0), (-wide, -1.0)):
            corners = [(x1, STOREY, z), (x0, STOREY, z), (x0, y0, z), (x1, y1, z)]
            mesh.polygon(corners, (0.0, 0.0, sign), [(x, STOREY - y) for x, y, _ in corners])
    for sign in (-1.0, 1.0):
        for step, (y0, y1) in enumerate(((1.86, 2.02), (2.02, 2.16), (2.16, 2.32))):
            reach = 0.10 + 0.07 * step
            x0, x1 = sorted((sign * half, sign * (half - reach)))
            mesh.box((x0, y0, -wide - 0.02), (x1, y1, wide + 0.02), 0.018)
    return mesh.scaled_uv(STONE)


def column():
    """Round column from floor to ceiling on a square base."""
    mesh = Mesh()
    mesh.box((-0.27, 0.0, -0.27), (0.27, 0.16, 0.27), 0.016)
    mesh.lathe(
        [
            (0.255, 0.16),
            (0.262, 0.20),
            (0.245, 0.245),
            (0.215, 0.26),
            (0.222, 0.30),
            (0.205, 0.335),
            (0.195, 0.36),
            (0.198, 1.10),
            (0.185, 2.00),
            (0.170, 2.62),
            (0.182, 2.65),
            (0.182, 2.69),
            (0.170, 2.71),
            (0.195, 2.80),
            (0.262, 2.92),
        ],
        28,
        smooth=0.6,
        grain_down=False,
    )
    mesh.box((-0.29, 2.92, -0.29), (0.29, 3.04, 0.29), 0.016)
    mesh.box((-0.25, 3.04, -0.25), (0.25, STOREY, 0.25), 0.010)
    return mesh.scaled_uv(STONE)


def pedestal():
    """Square pedestal, 0.85 m high."""
    mesh = Mesh()
    for half, y0, y1, bevel in (
        (0.36, 0.0, 0.12, 0.014),
        (0.32, 0.12, 0.17, 0.022),
        (0.275, 0.17, 0.70, 0.010),
        (0.31, 0.70, 0.75, 0.018),
        (0.35, 0.75, 0.85, 0.014),
    ):
        mesh.box((-half, y0, -half), (half, y1, half), bevel)
    return mesh.scaled_uv(STONE)


def stoneStep():
    """Step, 2.4 x 0.3 x 0.36 m, worn in its middle."""
    mesh = Mesh()
    mesh.box((-1.2, 0.0, -0.18), (1.2, 0.30, 0.18), 0.018)
    return mesh.scaled_uv(STONE)
