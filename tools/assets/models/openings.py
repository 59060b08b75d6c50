"""What fills the openings of walls: doors, windows and the curtains before them."""

import math

from mesh import Mesh, turn_x, turn_y, turn_z
from models.common import (
    BRASS,
    CLOTH,
    DOOR_HEIGHT,
    DOOR_WIDTH,
    FITTED,
    WALL_THICKNESS,
    WINDOW_HEAD,
    WINDOW_SILL,
    WINDOW_WIDTH,
    WOOD,
    fitted_quad,
    raised_panel,
)


def doorFrame():
    """Lining and architraves of a doorway, on both sides of the wall."""
    mesh = Mesh()
    half, head, back = DOOR_WIDTH / 2, DOOR_HEIGHT, -WALL_THICKNESS
    for sign in (-1.0, 1.0):
        inner, outer = sorted((sign * half, sign * (half - 0.022)))
        mesh.box((inner, 0.0, back - 0.004), (outer, head, 0.004), 0.003, "y")
        x0, x1 = sorted((sign * (half - 0.012), sign * (half + 0.098)))
        for z0, z1 in ((0.0, 0.024), (back - 0.024, back)):
            mesh.box((x0, 0.0, z0), (x1, head + 0.10, z1), 0.008, "y")
        x0, x1 = sorted((sign * (half + 0.07), sign * (half + 0.10)))
        mesh.box((x0, 0.0, 0.018), (x1, head + 0.10, 0.040), 0.008, "y")
    mesh.box((-half, head - 0.022, back - 0.004), (half, head, 0.004), 0.003)
    for z0, z1 in ((0.0, 0.026), (back - 0.026, back)):
        mesh.box((-half - 0.098, head - 0.012, z0), (half + 0.098, head + 0.098, z1), 0.008)
    mesh.box((-half - 0.13, head + 0.098, 0.0), (half + 0.13, head + 0.135, 0.055), 0.010)
    return mesh.scaled_uv(WOOD)


ROOM_DOOR_WIDTH, ROOM_DOOR_HEIGHT = 0.92, 2.10  # of a leaf that fills an opening of 0.9 to 1 m


def door():
    """Four-panel door leaf; the origin is at the hinge, the leaf lies along +x."""
    return _panelled_leaf(DOOR_WIDTH - 0.05, DOOR_HEIGHT - 0.035, 0.008).scaled_uv(WOOD)


def doorHandle():
    """Knobs and plates of `door`, at the same origin."""
    return _knobs(DOOR_WIDTH - 0.05 - 0.062, 1.0).scaled_uv(BRASS)


def roomDoor():
    """Four-panel door leaf around its middle, for doors that swing."""
    leaf = _panelled_leaf(ROOM_DOOR_WIDTH, ROOM_DOOR_HEIGHT, 0.0)
    return leaf.moved((-ROOM_DOOR_WIDTH / 2, -ROOM_DOOR_HEIGHT / 2, 0.0)).scaled_uv(WOOD)


def roomDoorHandle():
    """Knobs and plates of `roomDoor`, at the same origin."""
    return _knobs(ROOM_DOOR_WIDTH / 2 - 0.062, 1.0 - ROOM_DOOR_HEIGHT / 2).scaled_uv(BRASS)


def _panelled_leaf(width, height, foot):
    """A leaf of four panels from x = 0 on, `foot` metres above the ground."""
    mesh = Mesh()
    thick = 0.022
    stile = 0.12
    middle = width / 2
    for x0, x1 in ((0.0, stile), (middle - stile / 2, middle + stile / 2), (width - stile, width)):
        mesh.box((x0, foot, -thick), (x1, height, thick), 0.004, "y")
    for y0, y1 in ((foot, 0.22), (0.86, 1.02), (height - 0.13, height)):
        for x0, x1 in ((stile, middle - stile / 2), (middle + stile / 2, width - stile)):
            mesh.box((x0, y0, -thick), (x1, y1, thick), 0.004)
    for y0, y1 in ((0.22, 0.86), (1.02, height - 0.13)):
        for x0, x1 in ((stile, middle - stile / 2), (middle + stile / 2, width - stile)):
            raised_panel(mesh, x0, x1, y0, y1, 0.004, 0.012, 0.05)
            back = Mesh()
            raised_panel(back, -x1, -x0, y0, y1, 0.004, 0.012, 0.05)
            mesh.joined(back.turned(turn_y, math.pi))
    return mesh


def _knobs(x, y):
    """A knob on a plate at a place of a leaf's plane, on both sides of it."""
    mesh = Mesh()
    for side in (1.0, -1.0):
        plate = Mesh()
        plate.box((-0.027, -0.11, 0.0), (0.027, 0.11, 0.004), 0.002, "y")
        knob = Mesh()
        knob.lathe(
            [
                (0.013, 0.0),
                (0.011, 0.02),
                (0.010, 0.032),
                (0.022, 0.040),
                (0.029, 0.052),
                (0.028, 0.064),
                (0.018, 0.074),
                (0.0, 0.077),
            ],
            16,
        )
        plate.joined(knob.turned(turn_x, math.pi / 2).moved((0.0, 0.02, 0.0)))
        if side < 0:
            plate.turned(turn_y, math.pi)
        mesh.joined(plate.moved((x, y, side * 0.022)))
    return mesh


def windowFrame():
    """Casing, sill and glazing bars of a window wall: two columns of four panes."""
    mesh = Mesh()
    half, sill, head, back = WINDOW_WIDTH / 2, WINDOW_SILL, WINDOW_HEAD, -WALL_THICKNESS
    for sign in (-1.0, 1.0):
        x0, x1 = sorted((sign * (half - 0.005), sign * (half + 0.085)))
        mesh.box((x0, sill - 0.02, 0.0), (x1, head + 0.085, 0.024), 0.007, "y")
        x0, x1 = sorted((sign * half, sign * (half - 0.045)))
        mesh.box((x0, sill, back), (x1, head, back + 0.055), 0.006, "y")
    mesh.box((-half - 0.085, head - 0.005, 0.0), (half + 0.085, head + 0.085, 0.026), 0.007)
    mesh.box((-half - 0.13, head + 0.085, 0.0), (half + 0.13, head + 0.12, 0.05), 0.010)
    mesh.box((-half - 0.12, sill - 0.045, -0.10), (half + 0.12, sill - 0.005, 0.07), 0.010)
    mesh.box((-half, head - 0.045, back), (half, head, back + 0.055), 0.006)
    mesh.box((-half, sill, back), (half, sill + 0.055, back + 0.055), 0.006)
    mesh.box((-0.022, sill, back), (0.022, head, back + 0.05), 0.006, "y")
    rows = 4
    for i in range(1, rows):
        y = sill + (head - sill) * i / rows
        mesh.box((-half, y - 0.013, back + 0.004), (half, y + 0.013, back + 0.042), 0.005)
    return mesh.scaled_uv(WOOD)


def windowPane():
    mesh = Mesh()
    half, z = WINDOW_WIDTH / 2, -WALL_THICKNESS + 0.012
    fitted_quad(
        mesh, [(half, WINDOW_HEAD, z), (-half, WINDOW_HEAD, z), (-half, WINDOW_SILL, z), (half, WINDOW_SILL, z)]
    )
    return mesh.scaled_uv(FITTED)


def curtain():
    """One heavy drape, gathered at the top; half of a window's pair."""
    mesh = Mesh()
    width, top, bottom = 0.58, 2.92, 0.05

    def cloth(s, t):
        fold = math.sin(math.tau * (5.0 * s + 0.22 * math.sin(3.0 * t + 1.0))) + 0.35 * math.sin(
            math.tau * (11 * s + 0.4 * t)
        )
        flare = 1.0 + 0.10 * t * t - 0.16 * math.sin(math.pi * t) ** 2
        x = (s - 0.5) * width * flare
        z = 0.10 + fold * (0.026 + 0.020 * t) + 0.01 * math.sin(7 * t + 5 * s)
        return (-x, top + (bottom - top) * (1.0 - t), z), (s * width * 2.1, t * (top - bottom))

    mesh.surface(cloth, 60, 14)
    return mesh.scaled_uv(CLOTH)


def curtainRod():
    mesh = Mesh()
    mesh.tube([(-1.0, 2.95, 0.10), (1.0, 2.95, 0.10)], 0.014, 12)
    for sign in (-1.0, 1.0):
        knob = Mesh()
        knob.lathe([(0.0, 0.0), (0.022, 0.004), (0.016, 0.016), (0.030, 0.034), (0.026, 0.058), (0.0, 0.075)], 14)
        mesh.joined(knob.turned(turn_z, -sign * math.pi / 2).moved((sign * 1.0, 2.95, 0.10)))
        mesh.tube([(sign * 0.9, 2.95, 0.10), (sign * 0.9, 2.95, 0.0)], 0.010, 8)
    for i in range(14):
        x = (-0.93 + i * 0.052) if i < 7 else (0.93 - (i - 7) * 0.052)
        ring = [
            (x, 2.95 + 0.024 * math.cos(math.tau * k / 10), 0.10 + 0.024 * math.sin(math.tau * k / 10))
            for k in range(11)
        ]
        mesh.tube(ring, 0.004, 5, caps=False)
    return mesh.scaled_uv(BRASS)
