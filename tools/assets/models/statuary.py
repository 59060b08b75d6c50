"""Carved stone and what grows among it: the hooded mourner, tombstones, a dead tree."""

import math
import random

from mesh import Mesh, add, cross, scale, turn_y, unit
from models.common import WOOD

MARBLE = 1.0  # metres that one repeat of the surface covers

_ROBE = [
    (0.0, 0.40),
    (0.06, 0.385),
    (0.30, 0.31),
    (0.60, 0.245),
    (0.90, 0.22),
    (1.15, 0.235),
    (1.34, 0.245),
    (1.42, 0.20),
    (1.49, 0.135),
    (1.56, 0.135),
    (1.66, 0.148),
    (1.74, 0.115),
    (1.79, 0.05),
    (1.80, 0.0),
]


def _along(profile, y):
    for (y0, r0), (y1, r1) in zip(profile, profile[1:]):
        if y <= y1:
            t = (y - y0) / (y1 - y0)
            return r0 + (r1 - r0) * t * t * (3.0 - 2.0 * t)
    return profile[-1][1]


def _bump(x, middle, width):
    return math.exp(-(((x - middle) / width) ** 2))


def mourner():
    """Hooded figure, 1.8 m, its head bowed and its hands in its sleeves; the hood is empty."""
    mesh = Mesh()

    def robe(s, t):
        angle, y = math.tau * (s - 0.5), 1.80 * (1.0 - t)
        fall = max(0.0, 1.15 - y)
        folds = (
            math.sin(9 * angle + 1.2 + 0.6 * math.sin(2.2 * y))
            + 0.7 * math.sin(14 * angle - 0.8 * y + 0.5)
            + 0.4 * math.sin(23 * angle + 1.9 * y)
        )
        radius = _along(_ROBE, y) * (1.0 + 0.055 * folds * min(1.0, fall + 0.10))
        front = _bump(angle, 0.0, 0.62)
        # The hood's mouth: its front is drawn in until nothing is left but shadow.
        mouth = front * _bump(y, 1.605, 0.085)
        radius *= 1.0 - 0.88 * mouth
        # Its rim stands out around it.
        rim = _bump(abs(angle), 0.95, 0.22) * _bump(y, 1.60, 0.11) + front * _bump(y, 1.735, 0.035)
        radius += 0.028 * rim
        bow = 0.085 * max(0.0, y - 1.30) / 0.5
        wide = 1.0 + 0.12 * _bump(y, 1.32, 0.16)
        place = (math.sin(angle) * radius * wide, y, math.cos(angle) * radius * 0.84 + bow)
        return place, (s * 1.9, t * 1.8)

    mesh.surface(robe, 72, 60)
    for side in (-1.0, 1.0):
        path = [
            (side * 0.225, 1.33, 0.0),
            (side * 0.275, 1.18, 0.03),
            (side * 0.265, 1.05, 0.10),
            (side * 0.17, 1.00, 0.21),
            (side * 0.05, 1.02, 0.265),
            (-side * 0.02, 1.03, 0.27),
        ]
        mesh.tube(path, [0.075, 0.088, 0.092, 0.088, 0.098, 0.085], 14)
    # Cloth that hangs from the sleeves' joint.
    drape = Mesh()

    def hanging(s, t):
        spread = 0.13 * (1.0 - 0.55 * t)
        x = (0.5 - s) * 2.0 * spread
        z = 0.285 + 0.03 * math.cos(math.pi * (s - 0.5)) + 0.012 * math.sin(17 * s + 2 * t) - 0.035 * t
        return (x, 1.02 - 0.42 * t, z), (s * 0.3, t * 0.42)

    drape.surface(lambda s, t: hanging(1.0 - s, t), 12, 8)
    mesh.joined(drape)
    return mesh.scaled_uv(MARBLE)


def mournerHollow():
    """The dark inside of the hood of `mourner`, at the same origin: a disc behind the hood's rim."""
    mesh = Mesh()
    corners = []
    for i in range(20):
        angle = math.tau * i / 20
        y = 1.60 + 0.108 * math.cos(angle)
        corners.append((-0.090 * math.sin(angle), y, 0.137 + 0.17 * (y - 1.60)))
    mesh.facet(corners)
    return mesh


def _slab(mesh, half, thick, height, round_from, wobble):
    """Upright slab with a round top."""
    outline = [(-half, 0.0), (-half, round_from)]
    for i in range(1, 12):
        angle = math.pi * i / 12
        outline.append((-half * math.cos(angle), round_from + (height - round_from) * math.sin(angle)))
    outline += [(half, round_from), (half, 0.0)]
    centre = (0.0, round_from * 0.5)
    bevel = 0.022

    def inset(p):
        dx, dy = centre[0] - p[0], (centre[1] - p[1]) if p[1] > 0.0 else 0.0
        length = math.hypot(dx, dy) or 1.0
        return (p[0] + dx / length * bevel, p[1] + dy / length * bevel)

    inner = [inset(p) for p in outline]
    for z, sign in ((thick, 1.0), (-thick, -1.0)):
        corners = [(x, y, z) for x, y in inner]
        mesh.polygon(corners, (0.0, 0.0, sign), [(x + wobble, -y) for x, y, _ in corners])
        edge = z - sign * bevel
        for (x0, y0), (x1, y1), (a0, b0), (a1, b1) in zip(outline, outline[1:], inner, inner[1:]):
            side = unit((y0 - y1, x1 - x0, 0.0))
            normal = unit((side[0], side[1], sign))
            corners = [(x0, y0, edge), (x1, y1, edge), (a1, b1, z), (a0, b0, z)]
            mesh.polygon(corners, normal, [(x + wobble, -y) for x, y, _ in corners])
    travelled = 0.0
    for (x0, y0), (x1, y1) in zip(outline, outline[1:]):
        length = math.hypot(x1 - x0, y1 - y0)
        normal = unit((y0 - y1, x1 - x0, 0.0))
        low, high = -thick + bevel, thick - bevel
        corners = [(x0, y0, low), (x0, y0, high), (x1, y1, high), (x1, y1, low)]
        ends = (travelled, travelled + length)
        mesh.polygon(corners, normal, [(low, ends[0]), (high, ends[0]), (high, ends[1]), (low, ends[1])])
        travelled += length


def tombstone():
    """Round-topped headstone, 0.62 x 0.95 m, sunk a little into its ground."""
    mesh = Mesh()
    _slab(mesh, 0.31, 0.065, 1.12, 0.82, 0.0)
    mesh.box((-0.40, -0.1, -0.16), (0.40, 0.14, 0.16), 0.02)
    mesh.moved((0.0, -0.14, 0.0))
    return mesh.scaled_uv(MARBLE)


def tombCross():
    """Ringed cross on a stepped foot, 1.55 m."""
    mesh = Mesh()
    mesh.box((-0.38, -0.15, -0.28), (0.38, 0.16, 0.28), 0.02)
    mesh.box((-0.27, 0.16, -0.20), (0.27, 0.32, 0.20), 0.02)
    mesh.box((-0.095, 0.32, -0.07), (0.095, 1.55, 0.07), 0.016, "y")
    mesh.box((-0.37, 1.08, -0.066), (0.37, 1.26, 0.066), 0.016)
    ring = Mesh()
    ring.lathe(
        [(0.20, -0.045), (0.27, -0.045), (0.27, 0.045), (0.20, 0.045), (0.20, -0.045)], 32, smooth=0.3, grain_down=False
    )
    ring.vertices = [[(p[0], p[2], p[1]), (n[0], n[2], n[1]), uv] for p, n, uv in ring.vertices]
    ring.triangles = [(a, c, b) for a, b, c in ring.triangles]
    mesh.joined(ring.moved((0.0, 1.17, 0.0)))
    return mesh.scaled_uv(MARBLE)


def deadTree():
    """Bare tree, about 4.2 m, leaning; its roots run into the ground."""
    rng = random.Random("dead tree 5")
    mesh = Mesh()
    pending = [((0.0, -0.15, 0.0), (0.10, 1.0, 0.05), 0.17, 1.5, 0)]
    for i in range(5):
        angle = math.tau * i / 5 + rng.uniform(-0.3, 0.3)
        s, c = math.sin(angle), math.cos(angle)
        path = [(0.05 * s, 0.32, 0.05 * c), (0.16 * s, 0.13, 0.16 * c), (0.34 * s, 0.03, 0.34 * c)]
        path.append((0.62 * s, -0.10, 0.62 * c))
        mesh.tube(path, [0.12, 0.095, 0.06, 0.025], 8, caps=False)
    while pending:
        start, heading, thick, length, depth = pending.pop()
        steps = 5
        path, radii = [start], [thick]
        ahead = unit(heading)
        for step in range(1, steps + 1):
            bend = tuple(rng.gauss(0.0, 0.16 + 0.03 * depth) for _ in range(3))
            ahead = unit(add(ahead, add(bend, (0.0, 0.05, 0.0))))
            path.append(add(path[-1], scale(ahead, length / steps)))
            radii.append(thick * (1.0 - 0.42 * step / steps))
        mesh.tube(path, radii, max(4, 9 - depth), caps=depth > 0)
        if depth >= 5 or radii[-1] < 0.006:
            continue
        for _ in range(2 if depth else 3):
            side = unit(cross(ahead, (rng.gauss(0, 1), rng.gauss(0, 1), rng.gauss(0, 1))))
            turned = add(scale(ahead, 1.0), scale(side, rng.uniform(0.55, 1.15)))
            pending.append(
                (path[-1], turned, radii[-1] * rng.uniform(0.62, 0.86), length * rng.uniform(0.62, 0.8), depth + 1)
            )
    return mesh.scaled_uv(WOOD)


def _sky_side(mesh, turn):
    """One side of the sky around a yard, 15 m away; its foot stays above the roofs of the rooms beside the yard."""
    side = Mesh()
    reach, foot, head = 15.0, 3.4, 27.0
    corners = [(-reach, head, reach), (reach, head, reach), (reach, foot, reach), (-reach, foot, reach)]
    side.polygon(corners, (0.0, 0.0, -1.0), [(x / 30.0 + 0.5, (head - y) / 30.0) for x, y, _ in corners])
    mesh.joined(side.turned(turn_y, turn))


def skyNorth():
    """The night sky north of a yard, with the moon; `skySides` goes on from it all round."""
    mesh = Mesh()
    _sky_side(mesh, 0.0)
    return mesh


def skySides():
    mesh = Mesh()
    for quarter in (1, 2, 3):
        _sky_side(mesh, math.pi / 2 * quarter)
    return mesh
