"""The workshop in the cellar: heavy doors, benches and machines, and what is pushed, thrown and switched there.

What moves as a body has its origin in its middle: crates, balls, the leaves of doors, bolts.
"""

import math

from mesh import Mesh, turn_x, turn_y, turn_z
from models.common import CERAMIC, IRON, RUST, STOREY, WOOD

LEAF = (1.12, 2.16, 0.07)  # an iron door's leaf
SLIDING_LEAF = (1.70, 2.40, 0.08)
CRATE = 0.60  # edge of a cargo crate


def _rivets(mesh, places, radius=0.012):
    """Round heads on places (x, y, z) that face along z's sign."""
    for x, y, z in places:
        head = Mesh()
        head.lathe([(radius, 0.0), (radius * 0.8, radius * 0.5), (0.0, radius * 0.75)], 6)
        mesh.joined(head.turned(turn_x, math.copysign(math.pi / 2, z)).moved((x, y, z)))


def ironDoor():
    """Riveted iron leaf around its middle, hinged on the left as one faces it, with a ring on either side."""
    mesh = Mesh()
    w, h, t = (side / 2 for side in LEAF)
    mesh.box((-w, -h, -t + 0.02), (w, h, t - 0.02), 0.004, "y")
    for side in (-1.0, 1.0):
        z0, z1 = sorted((side * (t - 0.021), side * t))
        for x in (-w, w - 0.10):
            mesh.box((x, -h, z0), (x + 0.10, h, z1), 0.005, "y")
        for y in (-h, -0.42, 0.32, h - 0.12):
            mesh.box((-w + 0.1, y, z0), (w - 0.1, y + 0.12, z1), 0.005)
        rows = [-h + 0.06 + i * (2 * h - 0.12) / 9 for i in range(10)]
        _rivets(mesh, [(x, y, side * t) for y in rows for x in (-w + 0.05, w - 0.05)])
        across = [-w + 0.2 + i * (2 * w - 0.4) / 4 for i in range(5)]
        _rivets(mesh, [(x, y, side * t) for y in (-0.36, 0.38) for x in across])
        ring = [
            (w - 0.16 + 0.055 * math.sin(a), -0.10 - 0.055 * math.cos(a), side * (t + 0.012))
            for a in (math.tau * i / 14 for i in range(15))
        ]
        mesh.tube(ring, 0.009, 6, caps=False)
        mesh.tube([(w - 0.16, -0.03, side * (t - 0.01)), (w - 0.16, -0.03, side * (t + 0.03))], 0.02, 8)
    for y in (-0.75, 0.0, 0.75):
        mesh.tube([(-w - 0.012, y - 0.08, 0.0), (-w - 0.012, y + 0.08, 0.0)], 0.022, 8)
    return mesh.scaled_uv(IRON)


def ironDoorFrame():
    """Lining of a stone doorway from the inside edge of one wall through the one behind it; the sill is bare."""
    mesh = Mesh()
    half, head, thick = 0.60, 2.20, 0.035
    for sign in (-1.0, 1.0):
        x0, x1 = sorted((sign * (half + 0.02), sign * (half - thick + 0.02)))
        mesh.box((x0, 0.0, -0.42), (x1, head, -0.18), 0.006, "y")
    mesh.box((-half, head - thick + 0.02, -0.42), (half, head + 0.02, -0.18), 0.006)
    return mesh.scaled_uv(IRON)


def slidingDoor():
    """Plank leaf around its middle, that hangs from wheels; the iron on it is `slidingDoorIron`."""
    mesh = Mesh()
    w, h, t = (side / 2 for side in SLIDING_LEAF)
    planks = 8
    for i in range(planks):
        x0 = -w + 2 * w * i / planks
        mesh.box((x0 + 0.003, -h, -t + 0.025), (x0 + 2 * w / planks - 0.003, h, t - 0.025), 0.006, "y")
    for side in (-1.0, 1.0):
        z0, z1 = sorted((side * (t - 0.026), side * t))
        for y in (-h + 0.12, -0.10, h - 0.34):
            mesh.box((-w + 0.02, y, z0), (w - 0.02, y + 0.20, z1), 0.006)
    return mesh.scaled_uv(WOOD)


def slidingDoorIron():
    """Straps, bar handle and wheels of `slidingDoor`, at the same origin."""
    mesh = Mesh()
    w, h, t = (side / 2 for side in SLIDING_LEAF)
    for side in (-1.0, 1.0):
        z = side * (t + 0.004)
        for x in (-w + 0.16, w - 0.16):
            z0, z1 = sorted((side * (t - 0.01), z))
            mesh.box((x - 0.04, -h + 0.02, z0), (x + 0.04, h + 0.10, z1), 0.003, "y")
            _rivets(mesh, [(x, -h + 0.2 + 0.44 * i, z) for i in range(6)])
        mesh.tube(
            [(0.42, -0.22, side * t), (0.42, -0.22, side * (t + 0.06)), (0.42, 0.16, side * (t + 0.06)),
             (0.42, 0.16, side * t)], 0.014, 8)
    for x in (-w + 0.16, w - 0.16):
        wheel = Mesh()
        wheel.lathe([(0.0, -0.02), (0.075, -0.02), (0.075, 0.02), (0.0, 0.02)], 18, smooth=0.3)
        mesh.joined(wheel.turned(turn_x, math.pi / 2).moved((x, h + 0.10, 0.0)))
    return mesh.scaled_uv(IRON)


def doorRail():
    """Rail of a sliding door, 3.6 m along x, with its brackets to a wall at z = -0.1; the wheels run on y = 0."""
    mesh = Mesh()
    mesh.box((-1.8, -0.05, -0.015), (1.8, 0.0, 0.015), 0.004)
    for i in range(5):
        x = -1.7 + 0.85 * i
        mesh.box((x - 0.03, -0.10, -0.10), (x + 0.03, 0.02, -0.085), 0.003, "y")
        mesh.box((x - 0.02, -0.05, -0.09), (x + 0.02, -0.03, -0.01), 0.003, "z")
    for x in (-1.8, 1.76):
        mesh.box((x, -0.06, -0.04), (x + 0.04, 0.14, 0.04), 0.006, "y")
    return mesh.scaled_uv(IRON)


def cargoCrate():
    """Cube of planks with battens, 0.6 m around its middle."""
    mesh = Mesh()
    h, t = CRATE / 2, 0.022
    face = Mesh()
    for i in range(4):
        y0 = -h + t + (2 * h - 2 * t) * i / 4
        face.box((-h + t, y0 + 0.003, h - 2 * t), (h - t, y0 + (2 * h - 2 * t) / 4 - 0.003, h - t), 0.004)
    for x in (-h, h - 0.085):
        face.box((x, -h, h - t - 0.001), (x + 0.085, h, h), 0.005, "y")
    for y in (-h, h - 0.085):
        face.box((-h + 0.085, y, h - t - 0.001), (h - 0.085, y + 0.085, h), 0.005)
    brace = Mesh()
    reach = math.hypot(h - 0.085, h - 0.085) - 0.03
    brace.box((-reach, -0.035, h - t - 0.002), (reach, 0.035, h - 0.004), 0.005)
    face.joined(brace.turned(turn_z, math.pi / 4))
    for turn, angle in ((turn_y, 0.0), (turn_y, 0.5), (turn_y, 1.0), (turn_y, 1.5), (turn_x, 0.5), (turn_x, -0.5)):
        side = Mesh().joined(face)
        mesh.joined(side.turned(turn, angle * math.pi))
    return mesh.scaled_uv(WOOD)


def ball():
    """Ball of diameter 1 around its middle, with few triangles: there are hundreds of it."""
    mesh = Mesh()
    rings = 8
    profile = [
        (0.5 * math.sin(math.pi * i / rings) if 0 < i < rings else 0.0, -0.5 * math.cos(math.pi * i / rings))
        for i in range(rings + 1)
    ]
    mesh.lathe(profile, 12, smooth=1.0, closed_uv=1.0)
    return mesh


def _float_bed(third):
    """Upper halves of balls 0.2 m wide, packed in 1 x 1 m with their crests on y = 0; every third one of them."""
    mesh = Mesh()
    rows, columns = 6, 5
    profile = [(0.1 * math.cos(math.pi / 2 * i / 3), 0.1 * math.sin(math.pi / 2 * i / 3) - 0.1) for i in range(4)]
    for row in range(rows):
        for column in range(columns):
            # Every place has its own small lean off the grid; a row that is shifted runs on in the next piece.
            lean = (row * 7 + column * 3) % 5 * 0.006 - 0.012
            x = -0.5 + (column + 0.25 + 0.5 * (row % 2)) / columns + lean
            z = -0.5 + (row + 0.5) / rows - lean
            if (row * 4 + column * 5 + row // 2) % 3 == third:
                half = Mesh()
                half.lathe(profile, 10, smooth=1.0, closed_uv=0.7)
                mesh.joined(half.moved((x, 0.012 * ((row + 2 * column) % 3) - 0.012, z)))
    return mesh


def floatBedA():
    """A third of a bed of balls under those that roll; the others are `floatBedB` and `floatBedC`."""
    return _float_bed(0)


def floatBedB():
    return _float_bed(1)


def floatBedC():
    return _float_bed(2)


def workbench():
    """Bench of thick planks, 2.0 x 0.75 m and 0.9 m high."""
    mesh = Mesh()
    w, d, top = 1.0, 0.375, 0.90
    for i in range(3):
        z0 = -d + 2 * d * i / 3
        mesh.box((-w, top - 0.07, z0 + 0.002), (w, top, z0 + 2 * d / 3 - 0.002), 0.008)
    for x in (-w + 0.08, w - 0.18):
        for z in (-d + 0.05, d - 0.15):
            mesh.box((x, 0.0, z), (x + 0.10, top - 0.07, z + 0.10), 0.006, "y")
        mesh.box((x + 0.02, 0.16, -d + 0.1), (x + 0.08, 0.26, d - 0.1), 0.006, "z")
    mesh.box((-w + 0.12, top - 0.20, d - 0.11), (w - 0.12, top - 0.07, d - 0.07), 0.005)
    for i in range(2):
        z0 = -d + 0.06 + (2 * d - 0.12) * i / 2
        mesh.box((-w + 0.06, 0.26, z0 + 0.002), (w - 0.06, 0.29, z0 + d - 0.064), 0.005)
    return mesh.scaled_uv(WOOD)


def workbenchIron():
    """Vice, hammer, wrench and a tin on `workbench`, at the same origin."""
    mesh = Mesh()
    top = 0.90
    mesh.box((0.56, top, 0.16), (0.74, top + 0.03, 0.36), 0.006)
    mesh.box((0.58, top + 0.03, 0.20), (0.72, top + 0.15, 0.27), 0.012)
    mesh.box((0.56, top + 0.05, 0.31), (0.74, top + 0.17, 0.37), 0.012)
    mesh.tube([(0.65, top + 0.09, 0.18), (0.65, top + 0.09, 0.50)], 0.018, 8)
    mesh.tube([(0.53, top + 0.09, 0.47), (0.77, top + 0.09, 0.47)], 0.009, 6)
    mesh.tube([(-0.55, top + 0.014, 0.05), (-0.20, top + 0.014, 0.16)], 0.013, 8)
    mesh.box((-0.22, top, 0.09), (-0.17, top + 0.045, 0.23), 0.008, "z")
    mesh.tube([(0.02, top + 0.01, -0.10), (0.25, top + 0.01, -0.02)], 0.011, 6)
    for x, z in ((0.0, -0.11), (0.27, -0.012)):
        nut = Mesh()
        nut.lathe([(0.0, 0.0), (0.034, 0.0), (0.034, 0.02), (0.0, 0.02)], 6, smooth=0.1)
        mesh.joined(nut.moved((x, top, z)))
    tin = Mesh()
    tin.lathe([(0.0, 0.0), (0.07, 0.0), (0.07, 0.17), (0.055, 0.19), (0.025, 0.20), (0.025, 0.23), (0.0, 0.23)], 14,
              smooth=0.3)
    mesh.joined(tin.moved((-0.78, top, -0.18)))
    return mesh.scaled_uv(IRON)


def rack():
    """Shelves on iron posts, 1.8 x 0.5 m and 2.0 m high; the boards are `rackBoards`."""
    mesh = Mesh()
    for x in (-0.88, 0.84):
        for z in (-0.23, 0.19):
            mesh.box((x, 0.0, z), (x + 0.04, 2.0, z + 0.04), 0.004, "y")
        mesh.tube([(x + 0.02, 0.30, -0.22), (x + 0.02, 1.85, 0.22)], 0.010, 6)
    return mesh.scaled_uv(IRON)


def rackBoards():
    mesh = Mesh()
    for y in (0.22, 0.80, 1.38, 1.92):
        for i in range(2):
            z0 = -0.24 + 0.24 * i
            mesh.box((-0.90, y, z0 + 0.002), (0.90, y + 0.03, z0 + 0.238), 0.005)
    return mesh.scaled_uv(WOOD)


def boiler():
    """Lying boiler, 2.3 m long and 2 m high, its fire door towards +z; the fire behind it is `boilerFire`."""
    mesh = Mesh()
    shell = Mesh()
    profile = [(0.0, -1.05), (0.52, -1.03), (0.70, -0.94), (0.74, -0.88), (0.74, 0.88), (0.70, 0.94), (0.0, 0.94)]
    shell.lathe(profile, 32, smooth=0.5)
    mesh.joined(shell.turned(turn_x, math.pi / 2).moved((0.0, 1.05, 0.0)))
    for z in (-0.86, -0.3, 0.3, 0.90):
        hoop = Mesh()
        hoop.lathe([(0.735, -0.04), (0.757, -0.04), (0.757, 0.04), (0.735, 0.04)], 32, smooth=0.3, grain_down=False)
        mesh.joined(hoop.turned(turn_x, math.pi / 2).moved((0.0, 1.05, z)))
        count = 20
        for i in range(count):
            head = Mesh()
            head.lathe([(0.016, 0.0), (0.012, 0.010), (0.0, 0.013)], 5)
            head.moved((0.0, 0.755, 0.0)).turned(turn_z, math.tau * i / count)
            mesh.joined(head.moved((0.0, 1.05, z)))
    for z in (-0.75, 0.55):
        mesh.box((-0.62, 0.0, z), (0.62, 0.52, z + 0.22), 0.02)
    _fire_door(mesh)
    for x, y in ((-0.30, 1.55), (0.30, 1.55)):
        dial = Mesh()
        dial.lathe([(0.0, 0.0), (0.10, 0.0), (0.10, 0.04), (0.088, 0.05), (0.085, 0.035), (0.0, 0.035)], 20, smooth=0.3)
        mesh.joined(dial.turned(turn_x, math.pi / 2).moved((x, y, 0.94)))
    mesh.tube([(0.0, 1.7, -0.4), (0.0, STOREY, -0.4)], 0.16, 18, caps=False)
    mesh.tube([(0.5, 1.55, 0.4), (0.5, 2.3, 0.4), (0.62, 2.55, 0.4), (0.62, STOREY, 0.4)], 0.05, 12, caps=False)
    mesh.tube([(-0.4, 1.65, 0.1), (-0.4, 2.15, 0.1), (-1.4, 2.2, 0.1)], 0.045, 12)
    return mesh.scaled_uv(RUST)


def _fire_door(mesh):
    """Frame and half-closed grille before `boilerFire`."""
    for x0, x1, y0, y1 in ((-0.36, -0.27, 0.62, 1.22), (0.27, 0.36, 0.62, 1.22), (-0.27, 0.27, 0.62, 0.70),
                           (-0.27, 0.27, 1.14, 1.22)):
        mesh.box((x0, y0, 0.93), (x1, y1, 1.01), 0.012, "y")
    for i in range(5):
        x = -0.20 + 0.10 * i
        mesh.box((x - 0.018, 0.69, 0.965), (x + 0.018, 1.15, 0.995), 0.006, "y")


def boilerFire():
    """What glows behind the fire door's bars."""
    mesh = Mesh()
    mesh.polygon([(0.27, 1.14, 0.945), (-0.27, 1.14, 0.945), (-0.27, 0.70, 0.945), (0.27, 0.70, 0.945)],
                 (0.0, 0.0, 1.0), [(0.0, 0.0), (1.0, 0.0), (1.0, 0.8), (0.0, 0.8)])
    return mesh


def drillPress():
    """Standing drill with a belt wheel and a table, 1.9 m high, its front towards +z."""
    mesh = Mesh()
    mesh.box((-0.28, 0.0, -0.34), (0.28, 0.07, 0.36), 0.015)
    mesh.tube([(0.0, 0.06, -0.14), (0.0, 1.78, -0.14)], 0.065, 16)
    mesh.box((-0.20, 0.86, -0.08), (0.20, 0.91, 0.34), 0.01)
    mesh.box((-0.08, 0.72, -0.22), (0.08, 0.90, -0.02), 0.02, "y")
    mesh.box((-0.13, 1.42, -0.34), (0.13, 1.74, 0.30), 0.04)
    mesh.tube([(0.0, 1.44, 0.20), (0.0, 1.22, 0.20)], 0.045, 12)
    mesh.tube([(0.0, 1.24, 0.20), (0.0, 1.14, 0.20), (0.0, 1.03, 0.20)], [0.028, 0.022, 0.008], 10)
    wheel = Mesh()
    ring = [(0.17 * math.cos(math.tau * i / 24), 0.17 * math.sin(math.tau * i / 24), 0.0) for i in range(25)]
    wheel.tube(ring, 0.014, 8, caps=False)
    for i in range(3):
        a = math.tau * i / 6 + 0.3
        c, s = 0.17 * math.cos(a), 0.17 * math.sin(a)
        wheel.tube([(c, s, 0.0), (-c, -s, 0.0)], 0.010, 6)
    wheel.tube([(0.0, 0.0, -0.03), (0.0, 0.0, 0.09)], 0.02, 8)
    mesh.joined(wheel.turned(turn_y, math.pi / 2).moved((0.20, 1.58, 0.02)))
    drum = Mesh()
    drum.lathe([(0.0, 0.0), (0.15, 0.0), (0.15, 0.05), (0.10, 0.055), (0.10, 0.10), (0.0, 0.10)], 20, smooth=0.3)
    mesh.joined(drum.moved((0.0, 1.74, -0.16)))
    return mesh.scaled_uv(IRON)


def workLamp():
    """Tin shade on a rod of 0.6 m; the origin is its hook, the bulb is `workLampBulb`."""
    mesh = Mesh()
    mesh.tube([(0.0, 0.0, 0.0), (0.0, -0.56, 0.0)], 0.010, 8, caps=False)
    mesh.lathe([(0.055, 0.0), (0.050, -0.02), (0.0, -0.025)], 12, smooth=0.3)
    mesh.lathe([(0.0, -0.52), (0.04, -0.53), (0.05, -0.58), (0.12, -0.62), (0.235, -0.72), (0.24, -0.735)], 24)
    mesh.lathe([(0.24, -0.735), (0.225, -0.725), (0.11, -0.63), (0.0, -0.60)], 24)
    return mesh.scaled_uv(IRON)


def workLampBulb():
    mesh = Mesh()
    mesh.lathe([(0.0, -0.76), (0.03, -0.752), (0.05, -0.72), (0.052, -0.69), (0.036, -0.65), (0.02, -0.61)], 14,
               smooth=1.0, closed_uv=1.0)
    return mesh


def switchBox():
    """Box of a lever switch on a wall at z = 0, around its middle; the lever is `switchLever`."""
    mesh = Mesh()
    mesh.box((-0.10, -0.15, 0.0), (0.10, 0.15, 0.07), 0.012, "y")
    mesh.box((-0.028, -0.10, 0.069), (0.028, 0.10, 0.085), 0.005, "y")
    mesh.tube([(0.0, 0.15, 0.035), (0.0, 1.6, 0.035)], 0.014, 8)
    _rivets(mesh, [(x, y, 0.07) for x in (-0.08, 0.08) for y in (-0.13, 0.13)], 0.010)
    return mesh.scaled_uv(IRON)


def switchLever():
    """Lever around its pivot, along +z."""
    mesh = Mesh()
    mesh.tube([(0.0, 0.0, -0.02), (0.0, 0.0, 0.10)], 0.009, 8)
    knob = Mesh()
    knob.lathe([(0.0, -0.028), (0.02, -0.02), (0.028, 0.0), (0.02, 0.02), (0.0, 0.028)], 12, smooth=1.0)
    mesh.joined(knob.moved((0.0, 0.0, 0.11)))
    return mesh.scaled_uv(CERAMIC)


def fuseBox():
    """Open box of fuses on a wall at z = 0, around its middle."""
    mesh = Mesh()
    for low, high in (
        ((-0.22, -0.30, 0.0), (0.22, 0.30, 0.02)),
        ((-0.22, -0.30, 0.02), (-0.20, 0.30, 0.12)),
        ((0.20, -0.30, 0.02), (0.22, 0.30, 0.12)),
        ((-0.20, 0.28, 0.02), (0.20, 0.30, 0.12)),
        ((-0.20, -0.30, 0.02), (0.20, -0.28, 0.12)),
    ):
        mesh.box(low, high, 0.005, "y")
    door = Mesh()
    door.box((0.0, -0.30, 0.0), (0.43, 0.30, 0.015), 0.005, "y")
    mesh.joined(door.turned(turn_y, -1.9).moved((-0.22, 0.0, 0.12)))
    for row in (-0.14, 0.14):
        for x in (-0.12, 0.0, 0.12):
            for y in (-0.07, 0.07):
                mesh.box((x - 0.022, row + y - 0.012, 0.02), (x + 0.022, row + y + 0.012, 0.055), 0.004)
    for y in (0.30, -0.30):
        mesh.tube([(0.1, y, 0.05), (0.1, math.copysign(1.5, y), 0.05)], 0.016, 8)
    return mesh.scaled_uv(IRON)


def fuse():
    """Porcelain fuse around its middle, upright, 0.15 m long; its caps are `fuseCaps`."""
    mesh = Mesh()
    mesh.lathe([(0.022, -0.05), (0.026, 0.0), (0.022, 0.05)], 14, smooth=1.0)
    return mesh.scaled_uv(CERAMIC)


def fuseCaps():
    mesh = Mesh()
    for side in (-1.0, 1.0):
        low, high = sorted((side * 0.05, side * 0.08))
        mesh.lathe([(0.0, low), (0.026, low), (0.026, high), (0.0, high)], 14, smooth=0.3)
    return mesh.scaled_uv(IRON)


def buttonPost():
    """Post with a sloping head, 1.1 m high; the button on it is `pushButton`."""
    mesh = Mesh()
    mesh.box((-0.16, 0.0, -0.16), (0.16, 0.03, 0.16), 0.006)
    mesh.tube([(0.0, 0.03, 0.0), (0.0, 0.98, 0.0)], 0.045, 12)
    head = Mesh()
    head.box((-0.13, -0.06, -0.11), (0.13, 0.06, 0.11), 0.015)
    mesh.joined(head.turned(turn_x, 0.5).moved((0.0, 1.02, 0.0)))
    return mesh.scaled_uv(IRON)


def pushButton():
    mesh = Mesh()
    cap = Mesh()
    cap.lathe([(0.055, 0.0), (0.055, 0.025), (0.04, 0.036), (0.0, 0.04)], 18, closed_uv=1.0)
    return mesh.joined(cap.moved((0.0, 0.06, 0.0)).turned(turn_x, 0.5).moved((0.0, 1.02, 0.0)))


def chute():
    """Square funnel from the ceiling, its mouth 0.85 m wide at y = 0; the origin is the mouth's middle."""
    mesh = Mesh()
    half, high, thick = 0.425, 0.75, 0.015
    for i in range(4):
        side = Mesh()
        side.box((-half, 0.0, half - thick), (half, high, half), 0.004)
        side.box((-half - 0.02, 0.0, half - 0.001), (half + 0.02, 0.06, half + 0.02), 0.006)
        for x in (-half, half - 0.05):
            side.box((x, 0.06, half - 0.001), (x + 0.05, high, half + 0.012), 0.004, "y")
        mesh.joined(side.turned(turn_y, i * math.pi / 2))
    return mesh.scaled_uv(RUST)


def shaftGrate():
    """Round curb, 1.9 m wide and 0.12 m high, over a shaft with bars across; what turns below is `fanBlades`."""
    mesh = Mesh()
    mesh.lathe([(0.80, 0.10), (0.80, 0.0)], 40)
    mesh.lathe([(0.95, 0.0), (0.93, 0.12), (0.80, 0.12), (0.80, 0.02)], 40, smooth=0.4)
    for i in range(9):
        x = -0.64 + 0.16 * i
        reach = math.sqrt(0.81 ** 2 - x * x)
        mesh.box((x - 0.012, 0.075, -reach), (x + 0.012, 0.10, reach), 0.004, "z")
    for z in (-0.4, 0.4):
        reach = math.sqrt(0.81 ** 2 - z * z)
        mesh.box((-reach, 0.055, z - 0.02), (reach, 0.078, z + 0.02), 0.004)
    return mesh.scaled_uv(RUST)


def fanBlades():
    """Blades around the upright axis, to turn."""
    mesh = Mesh()
    for i in range(5):
        blade = Mesh()
        blade.box((0.10, -0.004, -0.13), (0.74, 0.004, 0.13), 0.002)
        blade.turned(turn_x, 0.35)
        mesh.joined(blade.turned(turn_y, math.tau * i / 5))
    mesh.lathe([(0.0, -0.05), (0.13, -0.04), (0.13, 0.03), (0.06, 0.05), (0.0, 0.05)], 16, smooth=0.4)
    return mesh.scaled_uv(IRON)


def pipeRun():
    """Two pipes along x under a ceiling, 2 m, with a collar; the origin is on the ceiling."""
    mesh = Mesh()
    for z, radius, y in ((-0.10, 0.055, -0.16), (0.12, 0.035, -0.14)):
        mesh.tube([(-1.0, y, z), (1.0, y, z)], radius, 12, caps=False)
        for x in (-0.6, 0.7):
            collar = Mesh()
            collar.lathe([(radius, -0.03), (radius + 0.02, -0.025), (radius + 0.02, 0.025), (radius, 0.03)], 14,
                         smooth=0.3)
            mesh.joined(collar.turned(turn_z, math.pi / 2).moved((x, y, z)))
    mesh.box((0.03, -0.24, -0.18), (0.07, 0.0, -0.165), 0.003, "y")
    mesh.box((0.03, -0.24, -0.18), (0.07, -0.225, 0.18), 0.003, "z")
    mesh.box((0.03, -0.24, 0.165), (0.07, 0.0, 0.18), 0.003, "y")
    return mesh.scaled_uv(RUST)


def bolt():
    """Iron bolt along z around its middle, 0.16 m long."""
    mesh = Mesh()
    rod = Mesh()
    rod.lathe([(0.0, -0.08), (0.026, -0.08), (0.026, -0.05), (0.013, -0.05), (0.013, 0.06), (0.0, 0.09)], 8, smooth=0.3)
    return mesh.joined(rod.turned(turn_x, math.pi / 2)).scaled_uv(IRON)
