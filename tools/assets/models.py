"""Recipes of the game's models. A recipe returns a Mesh; its name is the model's.

Walls and panels stand on the plane z = 0 and face +z. Furniture stands on y = 0 around the origin with its front
towards +z. Pieces of one thing that wear different textures are models of their own that share one origin: a lamp is
`lampBase` and `lampShade` at the same place. The last line of a recipe names the size its texture covers.
"""

import math
import random

from mesh import Mesh, add, cross, sub, turn_x, turn_y, turn_z, unit
from textures import BOOK_SPINE_PART, BOOK_SPINES

PLASTER, WALLPAPER, WOOD, BOARDS, TILES, BRICK, RUST, IRON, BRASS, LEATHER, CLOTH, CERAMIC, GLASS = (
    2.0,
    2.0,
    1.0,
    2.0,
    1.2,
    1.0,
    1.0,
    0.5,
    0.5,
    0.5,
    0.5,
    0.4,
    0.25,
)
FITTED = 1.0  # texture coordinates already run over the whole texture

STOREY = 3.2  # floor to ceiling
WALL_THICKNESS = 0.18
DOOR_WIDTH, DOOR_HEIGHT = 1.0, 2.15
WINDOW_WIDTH, WINDOW_SILL, WINDOW_HEAD = 1.2, 1.08, 2.78
WAINSCOT_HEIGHT = 1.05


def _wall_quad(mesh, x0, x1, y0, y1, z=0.0):
    """Upright rectangle that faces +z; u runs to the viewer's right, v down from the ceiling."""
    corners = [(x1, y1, z), (x0, y1, z), (x0, y0, z), (x1, y0, z)]
    mesh.polygon(corners, (0.0, 0.0, 1.0), [(1.0 - x, STOREY - y) for x, y, _ in corners])


def _fitted_quad(mesh, corners):
    """Rectangle that shows a whole texture: corners clockwise from the top left as the viewer sees it."""
    normal = unit(cross(sub(corners[1], corners[0]), sub(corners[2], corners[0])))
    mesh.polygon(corners, normal, [(0.0, 0.0), (1.0, 0.0), (1.0, 1.0), (0.0, 1.0)])


# Building kit, in steps of 2 m


def wallPlain():
    mesh = Mesh()
    _wall_quad(mesh, -1.0, 1.0, 0.0, STOREY)
    return mesh.scaled_uv(WALLPAPER)


def _wall_with_opening(width, sill, head):
    mesh = Mesh()
    half, back = width / 2, -WALL_THICKNESS
    _wall_quad(mesh, -1.0, -half, 0.0, STOREY)
    _wall_quad(mesh, half, 1.0, 0.0, STOREY)
    _wall_quad(mesh, -half, half, head, STOREY)
    if sill > 0.0:
        _wall_quad(mesh, -half, half, 0.0, sill)
        mesh.polygon(
            [(half, sill, 0), (-half, sill, 0), (-half, sill, back), (half, sill, back)],
            (0.0, 1.0, 0.0),
            [(half, 0), (-half, 0), (-half, -back), (half, -back)],
        )
    mesh.polygon(
        [(half, head, 0), (half, head, back), (-half, head, back), (-half, head, 0)],
        (0.0, -1.0, 0.0),
        [(half, 0), (half, -back), (-half, -back), (-half, 0)],
    )
    for x, sign in ((-half, 1.0), (half, -1.0)):
        mesh.polygon(
            [(x, sill, 0), (x, head, 0), (x, head, back), (x, sill, back)],
            (sign, 0.0, 0.0),
            [(0, STOREY - sill), (0, STOREY - head), (-back, STOREY - head), (-back, STOREY - sill)],
        )
    return mesh


def wallDoorway():
    return _wall_with_opening(DOOR_WIDTH, 0.0, DOOR_HEIGHT).scaled_uv(WALLPAPER)


def wallWindow():
    return _wall_with_opening(WINDOW_WIDTH, WINDOW_SILL, WINDOW_HEAD).scaled_uv(WALLPAPER)


def _panelling(width, panels):
    """Wainscot: skirting, framed raised panels, chair rail."""
    mesh = Mesh()
    half = width / 2
    mesh.moulding([(0.15, 0.0), (0.15, 0.018), (0.135, 0.034), (0.11, 0.036), (0.0, 0.036)], -half, half)
    mesh.moulding(
        [(1.05, 0.0), (1.05, 0.05), (1.035, 0.056), (1.015, 0.05), (1.005, 0.034), (0.985, 0.028), (0.975, 0.016)],
        -half,
        half,
    )
    mesh.box((-half, 0.89, 0.0), (half, 0.985, 0.018), 0.004)
    mesh.box((-half, 0.14, 0.0), (half, 0.235, 0.018), 0.004)
    stile = 0.09
    step = (width - stile) / panels
    for i in range(panels + 1):
        x = -half + i * step
        mesh.box((x, 0.235, 0.0), (x + stile, 0.89, 0.018), 0.004, grain="y")
    for i in range(panels):
        x0, x1 = -half + i * step + stile, -half + (i + 1) * step
        _raised_panel(mesh, x0, x1, 0.235, 0.89, 0.0, 0.016, 0.045)
    return mesh


def _raised_panel(mesh, x0, x1, y0, y1, z, rise, slope):
    """Fielded panel: a sunk margin that slopes up to a flat middle."""
    outer = [(x1, y1, z), (x0, y1, z), (x0, y0, z), (x1, y0, z)]
    inner = [
        (x1 - slope, y1 - slope, z + rise),
        (x0 + slope, y1 - slope, z + rise),
        (x0 + slope, y0 + slope, z + rise),
        (x1 - slope, y0 + slope, z + rise),
    ]
    mesh.facet(inner, "y")
    for i in range(4):
        j = (i + 1) % 4
        mesh.facet([outer[i], outer[j], inner[j], inner[i]], "y" if i % 2 else "x")


def wainscot():
    return _panelling(2.0, 3).scaled_uv(WOOD)


def wainscotNarrow():
    return _panelling(0.40, 1).scaled_uv(WOOD)


def cornice():
    mesh = Mesh()
    top = STOREY
    mesh.moulding(
        [
            (top, 0.15),
            (top - 0.03, 0.15),
            (top - 0.04, 0.135),
            (top - 0.065, 0.125),
            (top - 0.10, 0.085),
            (top - 0.13, 0.045),
            (top - 0.14, 0.04),
            (top - 0.14, 0.028),
            (top - 0.20, 0.022),
            (top - 0.21, 0.0),
        ],
        -1.0,
        1.0,
    )
    return mesh.scaled_uv(PLASTER)


def skirting():
    mesh = Mesh()
    mesh.moulding([(0.15, 0.0), (0.15, 0.014), (0.135, 0.022), (0.0, 0.022)], -1.0, 1.0)
    return mesh.scaled_uv(WOOD)


def floor():
    mesh = Mesh()
    mesh.facet([(-1, 0, -1), (-1, 0, 1), (1, 0, 1), (1, 0, -1)])
    return mesh.scaled_uv(BOARDS)


def floorTiles():
    mesh = Mesh()
    mesh.facet([(-1.2, 0, -1.2), (-1.2, 0, 1.2), (1.2, 0, 1.2), (1.2, 0, -1.2)])
    return mesh.scaled_uv(TILES)


def ceiling():
    mesh = Mesh()
    mesh.facet([(-1, STOREY, -1), (1, STOREY, -1), (1, STOREY, 1), (-1, STOREY, 1)])
    return mesh.scaled_uv(PLASTER)


def ceilingBeam():
    mesh = Mesh()
    mesh.box((-3.0, STOREY - 0.21, -0.10), (3.0, STOREY + 0.02, 0.10), 0.014)
    return mesh.scaled_uv(WOOD)


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


def door():
    """Four-panel door leaf; the origin is at the hinge, the leaf lies along +x."""
    mesh = Mesh()
    width, height, thick = DOOR_WIDTH - 0.05, DOOR_HEIGHT - 0.035, 0.022
    stile = 0.12
    middle = width / 2
    for x0, x1 in ((0.0, stile), (middle - stile / 2, middle + stile / 2), (width - stile, width)):
        mesh.box((x0, 0.008, -thick), (x1, height, thick), 0.004, "y")
    for y0, y1 in ((0.008, 0.22), (0.86, 1.02), (height - 0.13, height)):
        for x0, x1 in ((stile, middle - stile / 2), (middle + stile / 2, width - stile)):
            mesh.box((x0, y0, -thick), (x1, y1, thick), 0.004)
    for y0, y1 in ((0.22, 0.86), (1.02, height - 0.13)):
        for x0, x1 in ((stile, middle - stile / 2), (middle + stile / 2, width - stile)):
            _raised_panel(mesh, x0, x1, y0, y1, 0.004, 0.012, 0.05)
            back = Mesh()
            _raised_panel(back, -x1, -x0, y0, y1, 0.004, 0.012, 0.05)
            mesh.joined(back.turned(turn_y, math.pi))
    return mesh.scaled_uv(WOOD)


def doorHandle():
    """Knobs and plates of `door`, at the same origin."""
    mesh = Mesh()
    x, y = DOOR_WIDTH - 0.05 - 0.062, 1.0
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
    return mesh.scaled_uv(BRASS)


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
    _fitted_quad(
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


# Fireplace


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


# Furniture

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


SHELF_HEIGHTS = (0.10, 0.50, 0.88, 1.24, 1.58, 1.90)


def bookshelf():
    """Open bookcase, 1.2 x 2.3 x 0.34 m; the shelf tops stand at SHELF_HEIGHTS."""
    mesh = Mesh()
    for x0, x1 in ((-0.60, -0.57), (0.57, 0.60)):
        mesh.box((x0, 0.0, -0.17), (x1, 2.22, 0.16), 0.004, "y")
    for x0, x1 in ((-0.61, -0.55), (0.55, 0.61)):
        mesh.box((x0, 0.0, 0.14), (x1, 2.22, 0.172), 0.006, "y")
    mesh.box((-0.57, 0.05, -0.17), (0.57, 2.22, -0.155), 0.002, "y")
    for y in SHELF_HEIGHTS:
        mesh.box((-0.57, y - 0.025, -0.155), (0.57, y, 0.15), 0.004)
    mesh.box((-0.62, 0.0, -0.17), (0.62, 0.08, 0.185), 0.008)
    mesh.box((-0.63, 2.20, -0.17), (0.63, 2.24, 0.19), 0.010)
    mesh.box((-0.66, 2.24, -0.17), (0.66, 2.29, 0.215), 0.014)
    return mesh.scaled_uv(WOOD)


def _book(mesh, rng, place, turn=0.0, lean=0.0, flat=False, size=None):
    """One closed book: bound boards, page block and a rounded spine cut from the books texture."""
    thick, tall, deep = size or (rng.uniform(0.018, 0.052), rng.uniform(0.19, 0.29), rng.uniform(0.14, 0.19))
    binding = rng.randrange(BOOK_SPINES)
    u0, u1 = (binding + 0.04) / BOOK_SPINES, (binding + 0.96) / BOOK_SPINES
    book = Mesh()
    half, board = thick / 2, 0.003
    cover_u = (u0 + u1) / 2

    def cover(corners, normal):
        # Covers take a narrow, unlettered stripe of their own spine, so that book and back are of one leather.
        v_low = 0.72
        book.polygon(
            corners, normal, [(cover_u + 0.004 * (i in (1, 2)), v_low + 0.022 * (i in (2, 3))) for i in range(4)]
        )

    def pages(corners, normal):
        book.polygon(corners, normal, [(0.56, 0.78), (0.96, 0.78), (0.96, 0.97), (0.56, 0.97)])

    for sign in (-1.0, 1.0):
        x_out, x_in = sign * half, sign * (half - board)
        n = (sign, 0.0, 0.0)
        cover([(x_out, 0, -deep), (x_out, tall, -deep), (x_out, tall, 0), (x_out, 0, 0)], n)
        cover([(x_in, 0, -deep), (x_in, tall, -deep), (x_in, tall, 0), (x_in, 0, 0)], (-sign, 0.0, 0.0))
        cover([(x_out, tall, -deep), (x_out, tall, 0), (x_in, tall, 0), (x_in, tall, -deep)], (0.0, 1.0, 0.0))
        cover([(x_out, 0, -deep), (x_out, tall, -deep), (x_in, tall, -deep), (x_in, 0, -deep)], (0.0, 0.0, -1.0))
    low, high, front = 0.004, tall - 0.005, -deep + 0.006
    inner = half - board
    pages([(-inner, high, 0), (inner, high, 0), (inner, high, front), (-inner, high, front)], (0.0, 1.0, 0.0))
    pages([(-inner, low, 0), (inner, low, 0), (inner, low, front), (-inner, low, front)], (0.0, -1.0, 0.0))
    pages([(-inner, high, front), (inner, high, front), (inner, low, front), (-inner, low, front)], (0.0, 0.0, -1.0))
    rings = []
    for y, v in ((0.0, BOOK_SPINE_PART - 0.004), (tall, 0.004)):
        ring = []
        for i in range(7):
            angle = math.pi * (i / 6 - 0.5) * 0.72
            s, c = math.sin(angle), math.cos(angle)
            spread = half / math.sin(math.pi * 0.36)
            ring.append(
                book.vertex(
                    (-s * spread, y, (c - math.cos(math.pi * 0.36)) * spread * 0.55),
                    (-s, 0.0, c),
                    (u0 + (u1 - u0) * i / 6, v),
                )
            )
        rings.append(ring)
    book.stitch(rings)
    top = [book.vertices[i][0] for i in rings[1]]
    book.polygon(top, (0.0, 1.0, 0.0), [(cover_u, 0.73)] * 3 + [(cover_u + 0.003, 0.735)] * 4)
    if flat:
        book.turned(turn_z, math.pi / 2).moved((tall / 2, half, 0.0))
    elif lean:
        book.turned(turn_z, lean)
    mesh.joined(book.turned(turn_y, turn).moved(place))
    return thick, tall, deep


def _book_row(seed, width, gap_at=None):
    """Books on a shelf, spines to +z, between x = -width / 2 and width / 2."""
    rng = random.Random(seed)
    mesh = Mesh()
    x = -width / 2
    while True:
        thick, tall = rng.uniform(0.018, 0.050), rng.choice((rng.uniform(0.19, 0.24), rng.uniform(0.22, 0.285)))
        deep = rng.uniform(0.15, 0.19)
        if x + thick > width / 2:
            return mesh
        lean = 0.0
        if gap_at and gap_at[0] < x < gap_at[1]:
            lean = 0.24
            x += tall * math.sin(lean)
            gap_at = (gap_at[1] + 9, gap_at[1] + 9)
            if x + thick > width / 2:
                return mesh
        pushed = rng.uniform(-0.028, 0.012)
        foot = thick / 2 * math.sin(abs(lean))
        _book(mesh, rng, (x + thick / 2, foot, 0.085 + pushed), lean=lean, size=(thick, tall, deep))
        x += thick * (1.0 / math.cos(lean)) + rng.choice((0.0006, 0.0006, 0.002))
        if gap_at and rng.random() < 0.04:
            x += 0.05


def bookRowA():
    return _book_row("row a", 1.12)


def bookRowB():
    return _book_row("row b", 1.10, (0.05, 0.3))


def bookRowC():
    return _book_row("row c", 0.70, (0.0, 0.2))


def bookStack():
    """Six books lying on one another, not quite square."""
    rng = random.Random("stack")
    mesh = Mesh()
    y = 0.0
    for _ in range(6):
        size = (rng.uniform(0.022, 0.05), rng.uniform(0.21, 0.27), rng.uniform(0.15, 0.19))
        _book(
            mesh,
            rng,
            (rng.uniform(-0.012, 0.012), y, 0.085 + rng.uniform(-0.01, 0.01)),
            turn=rng.uniform(-0.28, 0.28),
            flat=True,
            size=size,
        )
        y += size[0] + 0.0005
    return mesh


def bookSingle():
    mesh = Mesh()
    _book(mesh, random.Random("single 3"), (0.0, 0.0, 0.08), flat=True, size=(0.038, 0.25, 0.17))
    return mesh


def openBook():
    """A book lying open: two swelling halves of pages, each showing one written sheet."""
    mesh = Mesh()
    for side in (-1.0, 1.0):

        def page(s, t, side=side):
            # The reader sits at +z, so the right page lies towards -x and its inner edge is its left one.
            swell = max(0.0, math.sin(min(1.0, s * 1.25 + 0.1) * math.pi)) ** 0.8
            z = 0.14 - 0.28 * (t if side > 0 else 1.0 - t)
            return (-side * s * 0.19, 0.012 + 0.030 * swell * (1.0 - 0.35 * s), z), (
                s if side > 0 else 1.0 - s,
                0.5 + z / 0.28,
            )

        mesh.surface(page, 12, 2)
    for z, sign in ((0.14, 1.0), (-0.14, -1.0)):
        mesh.box((-0.195, 0.0, min(z, z - sign * 0.004)), (0.195, 0.012, max(z, z - sign * 0.004)), 0.001)
    for x in (-0.19, 0.19):
        mesh.box((x - 0.003, 0.0, -0.14), (x + 0.003, 0.016, 0.14), 0.001, "z")
    return mesh


def paperSheet():
    """One written sheet with a curled corner, readable from +z, lying on y = 0."""
    mesh = Mesh()

    def sheet(s, t):
        x, z = 0.105 - 0.21 * s, -0.1485 + 0.297 * t
        curl = max(0.0, s + t - 1.45) ** 2 * 0.06 + max(0.0, 0.35 - s - t) ** 2 * 0.10
        return (x, 0.0012 + curl, z), (s, t)

    mesh.surface(lambda s, t: sheet(1.0 - s, t), 8, 8)
    return mesh


def cabinet():
    """Two-door cupboard with a cornice, 1.1 x 1.9 x 0.5 m."""
    mesh = Mesh()
    mesh.box((-0.55, 0.10, -0.25), (0.55, 1.80, 0.225), 0.006, "y")
    mesh.box((-0.57, 0.0, -0.26), (0.57, 0.11, 0.25), 0.012)
    mesh.box((-0.57, 1.78, -0.26), (0.57, 1.82, 0.26), 0.010)
    mesh.box((-0.60, 1.82, -0.27), (0.60, 1.88, 0.29), 0.018)
    for x0, x1 in ((-0.525, -0.004), (0.004, 0.525)):
        for a, b in ((x0, x0 + 0.085), (x1 - 0.085, x1)):
            mesh.box((a, 0.135, 0.222), (b, 1.76, 0.247), 0.005, "y")
        for y0, y1 in ((0.135, 0.24), (0.88, 0.97), (1.66, 1.76)):
            mesh.box((x0 + 0.085, y0, 0.222), (x1 - 0.085, y1, 0.247), 0.005)
        for y0, y1 in ((0.24, 0.88), (0.97, 1.66)):
            _raised_panel(mesh, x0 + 0.085, x1 - 0.085, y0, y1, 0.2255, 0.014, 0.05)
    return mesh.scaled_uv(WOOD)


def cabinetFittings():
    mesh = Mesh()
    for x in (-0.045, 0.045):
        knob = Mesh()
        knob.lathe([(0.010, 0.0), (0.007, 0.014), (0.017, 0.024), (0.018, 0.033), (0.0, 0.040)], 12)
        mesh.joined(knob.turned(turn_x, math.pi / 2).moved((x, 0.93, 0.247)))
    for x in (-0.528, 0.528):
        for y in (0.35, 1.55):
            mesh.tube([(x, y - 0.035, 0.247), (x, y + 0.035, 0.247)], 0.007, 8)
    return mesh.scaled_uv(BRASS)


def clockCase():
    """Longcase clock, 2.15 m; the dial is `clockDial`."""
    mesh = Mesh()
    mesh.box((-0.25, 0.0, -0.15), (0.25, 0.10, 0.15), 0.012)
    mesh.box((-0.23, 0.10, -0.14), (0.23, 0.52, 0.13), 0.008, "y")
    mesh.box((-0.25, 0.52, -0.15), (0.25, 0.56, 0.15), 0.012)
    mesh.box((-0.17, 0.56, -0.12), (0.17, 1.42, 0.09), 0.008, "y")
    _raised_panel(mesh, -0.13, 0.13, 0.62, 1.36, 0.0905, 0.012, 0.03)
    _raised_panel(mesh, -0.18, 0.18, 0.15, 0.47, 0.1305, 0.012, 0.03)
    mesh.box((-0.25, 1.42, -0.15), (0.25, 1.46, 0.15), 0.012)
    mesh.box((-0.23, 1.46, -0.14), (0.23, 1.98, 0.095), 0.008, "y")
    for x0, x1 in ((-0.235, -0.185), (0.185, 0.235)):
        mesh.box((x0, 1.46, 0.09), (x1, 1.98, 0.145), 0.008, "y")
    mesh.box((-0.235, 1.925, 0.09), (0.235, 1.98, 0.145), 0.008)
    mesh.box((-0.235, 1.46, 0.09), (0.235, 1.505, 0.145), 0.008)
    mesh.box((-0.27, 1.98, -0.15), (0.27, 2.03, 0.18), 0.014)
    mesh.box((-0.17, 2.03, -0.13), (0.17, 2.10, 0.12), 0.020)
    return mesh.scaled_uv(WOOD)


def clockDial():
    mesh = Mesh()
    z = 0.0985
    _fitted_quad(mesh, [(0.185, 1.90, z), (-0.185, 1.90, z), (-0.185, 1.53, z), (0.185, 1.53, z)])
    return mesh


# Store-room things


def crate():
    """Nailed plank crate, 0.7 x 0.5 x 0.5 m."""
    mesh = Mesh()
    rng = random.Random("crate")
    w, h, d, t = 0.35, 0.50, 0.25, 0.018
    for i in range(4):
        y0, y1 = h * i / 4 + 0.003, h * (i + 1) / 4 - 0.003
        for z0, z1 in ((d - t, d), (-d, -d + t)):
            shift = rng.uniform(-0.003, 0.003)
            mesh.box((-w, y0, z0 + shift), (w, y1, z1 + shift), 0.005)
        for x0, x1 in ((w - t, w), (-w, -w + t)):
            shift = rng.uniform(-0.002, 0.002)
            mesh.box((x0 + shift, y0, -d + t), (x1 + shift, y1, d - t), 0.005, "z")
        z0, z1 = -d + 2 * d * i / 4 + 0.003, -d + 2 * d * (i + 1) / 4 - 0.003
        mesh.box((-w, h - 0.001, z0), (w, h + t, z1), 0.005)
    for z0, z1 in ((d, d + t), (-d - t, -d)):
        for x0, x1 in ((-w, -w + 0.075), (w - 0.075, w)):
            mesh.box((x0, 0.0, z0), (x1, h + t, z1), 0.005, "y")
        brace = Mesh()
        brace.box((-0.36, -0.036, z0 + 0.001), (0.36, 0.036, z1 - 0.004), 0.005)
        mesh.joined(
            brace.turned(turn_z, math.atan2(h - 0.07, 2 * w - 0.15) * (1 if z0 > 0 else -1)).bent(
                lambda p: (max(-w + 0.07, min(w - 0.07, p[0])), max(0.004, min(h, p[1] + h / 2)), p[2])
            )
        )
    for x0, x1 in ((-0.30, -0.22), (0.22, 0.30)):
        mesh.box((x0, h + t, -d), (x1, h + 2 * t, d), 0.005, "z")
    return mesh.scaled_uv(WOOD)


def barrel():
    """Oak barrel of sixteen staves, 0.9 m high."""
    mesh = Mesh()
    staves, height = 16, 0.90
    for i in range(staves):

        def stave(s, t):
            y = height * (1.0 - t)
            radius = 0.255 + 0.075 * math.sin(math.pi * (0.08 + 0.84 * t))
            across = (s - 0.5) * 0.985
            rise = 1.0 - 0.020 * (2 * across) ** 6
            angle = math.tau * (i + 0.5 + across) / staves
            return (
                (math.sin(angle) * radius * rise, y, math.cos(angle) * radius * rise),
                (t * height + i * 0.37, across * 0.11 + i * 0.113),
            )

        mesh.surface(stave, 4, 10)
    # What shows between the staves is wood in shadow, not the room behind.
    girth = [0.08 + 0.84 * i / 10 for i in range(11)]
    mesh.lathe([(0.246 + 0.075 * math.sin(math.pi * g), height * (g - 0.08) / 0.84) for g in girth], 16)
    rim = 0.255 + 0.075 * math.sin(math.pi * 0.08)
    # Up the outside, over the top and down to a floor below the head's planks, which closes what they leave open. A
    # profile that started inside would face the wood.
    top, inner = height, rim - 0.028
    lip = [(rim - 0.006, top - 0.051), (rim + 0.001, top), (rim - 0.025, top), (inner, top - 0.05), (0.0, top - 0.05)]
    mesh.lathe(lip, 32, smooth=0.3)
    for i in range(6):
        x0 = -rim + 0.05 + i * (2 * rim - 0.10) / 6
        x1 = x0 + (2 * rim - 0.10) / 6 - 0.003
        reach = math.sqrt(max(0.0, (rim - 0.026) ** 2 - max(abs(x0), abs(x1)) ** 2)) + 0.03
        mesh.box((x0, height - 0.055, -reach), (x1, height - 0.035, reach), 0.004, "z")
    return mesh.scaled_uv(WOOD)


def barrelHoops():
    mesh = Mesh()
    for t in (0.06, 0.26, 0.74, 0.94):
        y = 0.90 * (1.0 - t)
        profile = []
        for dy in (-0.022, 0.022):
            k = 1.0 - (y + dy) / 0.90
            profile.append((0.255 + 0.075 * math.sin(math.pi * (0.08 + 0.84 * k)) + 0.004, y + dy))
        (r0, y0), (r1, y1) = profile
        mesh.lathe([(r0 - 0.006, y0), (r0, y0), (r1, y1), (r1 - 0.006, y1)], 40, smooth=0.3, grain_down=False)
    return mesh.scaled_uv(IRON)


def radiator():
    """Cast-iron radiator of ten columns, 0.75 m high; it stands 6 cm off the wall at z = 0."""
    mesh = Mesh()
    for i in range(10):
        x = -0.27 + i * 0.06
        for z in (0.09, 0.17):
            mesh.tube([(x, 0.14, z), (x, 0.66, z)], 0.019, 9, caps=False)
        for y in (0.13, 0.67):
            mesh.tube([(x, y, 0.06), (x, y, 0.20)], 0.026, 9)
    for y in (0.13, 0.67):
        mesh.tube([(-0.31, y, 0.13), (0.31, y, 0.13)], 0.030, 10)
    for x in (-0.27, 0.27):
        mesh.tube([(x, 0.0, 0.09), (x, 0.12, 0.09)], 0.018, 8)
        mesh.tube([(x, 0.0, 0.17), (x, 0.12, 0.17)], 0.018, 8)
    return mesh.scaled_uv(RUST)


def pipe():
    """Heating pipe up a wall, floor to ceiling, with flanges and a valve."""
    mesh = Mesh()
    mesh.tube([(0.0, 0.0, 0.06), (0.0, STOREY, 0.06)], 0.026, 12, caps=False)
    for y in (0.05, 0.95, 2.0, 3.05):
        collar = Mesh()
        collar.lathe([(0.026, -0.016), (0.042, -0.013), (0.042, 0.013), (0.026, 0.016)], 16, smooth=0.3)
        mesh.joined(collar.moved((0.0, y, 0.06)))
    mesh.tube([(0.0, 0.55, 0.06), (0.0, 0.55, 0.15)], 0.012, 8)
    wheel = [(0.055 * math.cos(math.tau * i / 16), 0.55 + 0.055 * math.sin(math.tau * i / 16), 0.15) for i in range(17)]
    mesh.tube(wheel, 0.008, 6, caps=False)
    for i in range(3):
        a = math.tau * i / 6
        mesh.tube(
            [
                (0.055 * math.cos(a), 0.55 + 0.055 * math.sin(a), 0.15),
                (-0.055 * math.cos(a), 0.55 - 0.055 * math.sin(a), 0.15),
            ],
            0.006,
            6,
        )
    return mesh.scaled_uv(RUST)


# Lights and small things


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


def pictureFrame():
    """Carved frame around 0.62 x 0.78 m, centred on the origin; it hangs on the plane z = 0."""
    mesh = Mesh()
    profile = [
        (0.0, 0.0),
        (0.0, 0.030),
        (-0.012, 0.040),
        (-0.030, 0.036),
        (-0.042, 0.022),
        (-0.055, 0.026),
        (-0.066, 0.018),
        (-0.075, 0.008),
    ]
    half_w, half_h = 0.31 + 0.07, 0.39 + 0.07
    for length, reach, angle in (
        (half_w, half_h, 0.0),
        (half_h, half_w, math.pi / 2),
        (half_w, half_h, math.pi),
        (half_h, half_w, -math.pi / 2),
    ):
        bar = Mesh()
        bar.moulding(profile, -length, length, 1.0, 1.0)
        mesh.joined(bar.moved((0.0, reach, 0.0)).turned(turn_z, angle))
    return mesh.scaled_uv(BRASS)


def pictureCanvas():
    """Canvas of `pictureFrame`, the whole texture."""
    mesh = Mesh()
    _fitted_quad(mesh, [(0.315, 0.395, 0.009), (-0.315, 0.395, 0.009), (-0.315, -0.395, 0.009), (0.315, -0.395, 0.009)])
    return mesh


def rug():
    """Carpet, 2.2 x 3.2 m, with a few waves and curling edges; v runs along z."""
    mesh = Mesh()

    def pile(s, t):
        x, z = (s - 0.5) * 2.2, (t - 0.5) * 3.2
        wave = 0.010 * math.exp(-(((z - 0.9 - 0.25 * x) / 0.09) ** 2)) + 0.007 * math.exp(
            -(((z + 1.1 + 0.4 * x) / 0.07) ** 2)
        )
        edge = 1.0 - min(1.0, min(s, 1 - s, t, 1 - t) * 60)
        return (x, 0.012 - 0.009 * edge + wave, z), (s, t)

    mesh.surface(pile, 16, 44)
    return mesh


def bottle():
    mesh = Mesh()
    mesh.lathe(
        [
            (0.0, 0.004),
            (0.030, 0.0),
            (0.037, 0.006),
            (0.038, 0.02),
            (0.038, 0.17),
            (0.034, 0.195),
            (0.018, 0.225),
            (0.0145, 0.24),
            (0.0140, 0.285),
            (0.0175, 0.287),
            (0.0175, 0.300),
            (0.013, 0.302),
            (0.0, 0.300),
        ],
        20,
        smooth=0.9,
    )
    return mesh.scaled_uv(GLASS)


def cup():
    mesh = Mesh()
    mesh.lathe(
        [
            (0.0, 0.004),
            (0.022, 0.0),
            (0.024, 0.006),
            (0.034, 0.022),
            (0.040, 0.045),
            (0.0415, 0.068),
            (0.0395, 0.068),
            (0.038, 0.045),
            (0.031, 0.022),
            (0.018, 0.010),
            (0.0, 0.009),
        ],
        22,
        smooth=0.9,
    )
    mesh.tube(
        [(0.0, 0.056, 0.039), (0.0, 0.060, 0.056), (0.0, 0.048, 0.066), (0.0, 0.030, 0.058), (0.0, 0.024, 0.036)],
        0.0042,
        8,
    )
    return mesh.scaled_uv(CERAMIC)


def plate():
    mesh = Mesh()
    mesh.lathe(
        [
            (0.0, 0.003),
            (0.062, 0.0),
            (0.066, 0.003),
            (0.082, 0.009),
            (0.118, 0.019),
            (0.120, 0.022),
            (0.115, 0.0215),
            (0.080, 0.0125),
            (0.064, 0.0065),
            (0.0, 0.0062),
        ],
        30,
        smooth=0.9,
    )
    return mesh.scaled_uv(CERAMIC)


def jar():
    """Lidded stoneware jar, 0.26 m."""
    mesh = Mesh()
    mesh.lathe(
        [
            (0.0, 0.0),
            (0.062, 0.0),
            (0.068, 0.008),
            (0.092, 0.06),
            (0.102, 0.12),
            (0.090, 0.17),
            (0.066, 0.195),
            (0.064, 0.205),
            (0.072, 0.208),
            (0.072, 0.216),
            (0.058, 0.226),
            (0.026, 0.236),
            (0.012, 0.242),
            (0.018, 0.254),
            (0.012, 0.264),
            (0.0, 0.266),
        ],
        24,
    )
    return mesh.scaled_uv(CERAMIC)


# Shapes of the engine's own needs


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


#: Every recipe of this module: its public functions, in the order they stand in.
RECIPES = [
    value
    for name, value in list(globals().items())
    if callable(value) and getattr(value, '__module__', '') == __name__ and not name.startswith('_')
]
