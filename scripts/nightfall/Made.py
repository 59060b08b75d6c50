"""Furniture that is built here out of boards, iron and cloth. It stands on its `at`."""

from __future__ import annotations

import math

import kaVel
import objects.GameObjects as place
from kaVel import Entity
from objects.Placing import Triple
from objects.things.Lathe import drape, spindle


def boxes(*corners: tuple[Triple, Triple]):
    """A mesh of boxes, each of its least and its greatest corner, with a texture that lies on all of them alike."""
    mesh = kaVel.MeshBuilder()
    for low, high in corners:
        middle = [(a + b) / 2 for a, b in zip(low, high)]
        mesh.addBox(kaVel.Vec4(*((b - a) / 2 for a, b in zip(low, high)), 0), at=kaVel.Vec4(*middle, 1))
    mesh.applyWorldTextureCoordinates(1.2)
    mesh.generateTangents()
    return mesh


def _part(parent: Entity, name: str, at: Triple, turn: float, surface: str, *corners: tuple[Triple, Triple]):
    return place.Built(parent, name, mesh=boxes(*corners), at=at, turn=turn, surface=surface)


def bed(room: Entity, name: str, at: Triple, turn: float = 0.0):
    """An iron bed, 1 m by 2 m, its head to the south at a turn of 0."""
    posts = [((x - 0.02, 0, z - 0.02), (x + 0.02, h, z + 0.02)) for x in (-0.47, 0.47)
             for z, h in ((-0.98, 1.05), (0.98, 0.75))]
    rails = [((-0.47, h - 0.02, z - 0.012), (0.47, h + 0.02, z + 0.012))
             for z, heights in ((-0.98, (0.62, 1.0)), (0.98, (0.5, 0.7))) for h in heights]
    bars = [((x - 0.008, 0.5, z - 0.008), (x + 0.008, top, z + 0.008)) for x in (-0.28, -0.09, 0.09, 0.28)
            for z, top in ((-0.98, 1.0), (0.98, 0.7))]
    sides = [((x - 0.015, 0.27, -0.98), (x + 0.015, 0.33, 0.98)) for x in (-0.46, 0.46)]
    frame = _part(room, name, at, turn, 'iron', *posts, *rails, *bars, *sides)
    _part(frame, 'mattress', at, turn, 'cloth', ((-0.45, 0.3, -0.95), (0.45, 0.47, 0.95)),
          ((-0.47, 0.36, -0.35), (0.47, 0.51, 0.96)))
    _part(frame, 'pillow', at, turn, 'paper', ((-0.33, 0.47, -0.9), (0.33, 0.58, -0.52)))
    place.Block(frame, 'block', at=at, size=(1.0, 0.6, 2.0), turn=turn)
    return frame


def washstand(room: Entity, at: Triple, turn: float = 0.0):
    """A table with a basin and a jug."""
    stand = _part(room, 'washstand', at, turn, 'wood', ((-0.4, 0.72, -0.24), (0.4, 0.76, 0.24)),
                  ((-0.4, 0.76, -0.24), (0.4, 0.95, -0.21)), ((-0.36, 0.15, -0.2), (0.36, 0.19, 0.2)),
                  *(((x - 0.02, 0, z - 0.02), (x + 0.02, 0.72, z + 0.02)) for x in (-0.36, 0.36) for z in (-0.2, 0.2)))
    place.Plate(stand, 'basin', at=place.around(at, turn, 0.08, 0.76, 0), turn=turn, scale=(1.7, 3, 1.7))
    place.Jar(stand, 'jug', at=place.around(at, turn, -0.24, 0.76, 0.02), turn=turn)
    place.Block(stand, 'block', at=at, size=(0.82, 0.95, 0.5), turn=turn)
    return stand


def coatStand(room: Entity, name: str, at: Triple):
    """A post with hooks, and a long coat on one of them."""
    post = _part(room, name, at, 0, 'wood', ((-0.025, 0, -0.025), (0.025, 1.75, 0.025)),
                 ((-0.22, 0, -0.025), (0.22, 0.03, 0.025)), ((-0.025, 0, -0.22), (0.025, 0.03, 0.22)),
                 ((-0.14, 1.62, -0.012), (0.14, 1.65, 0.012)), ((-0.012, 1.62, -0.14), (0.012, 1.65, 0.14)))
    place.Built(post, 'coat', mesh=_coat(), at=at, turn=12, surface='wetCloth')
    place.Block(post, 'block', at=at, size=(0.45, 1.7, 0.45))
    return post


def _coat() -> kaVel.MeshBuilder:
    """A long coat that hangs by its collar before a post, empty."""
    mesh = kaVel.MeshBuilder()
    drape(mesh, ((0.215, 0.52), (0.20, 0.8), (0.17, 1.1), (0.175, 1.3), (0.19, 1.42), (0.15, 1.49), (0.075, 1.54),
                 (0.06, 1.60), (0.075, 1.63)), 9, 0.032, flat=0.42)
    for side in (-1.0, 1.0):
        spindle(mesh, ((0.0, 0.045), (0.1, 0.062), (0.5, 0.056), (0.95, 0.05), (1.0, 0.054)),
                (0.125 * side, 1.475, 0.0), (0.215 * side, 0.84, 0.03), 12, flat=0.6)
    mesh.transform(at=kaVel.Vec4(0, 0, 0.12, 1))
    mesh.applyWorldTextureCoordinates(1.2)
    mesh.generateTangents()
    return mesh


def tub(room: Entity, name: str, at: Triple):
    """A bath, 1.6 m long, along z, half full of black water."""
    bath = _part(room, name, at, 0, 'ceramic', ((-0.38, 0.12, -0.8), (0.38, 0.18, 0.8)),
                 ((-0.4, 0.12, -0.82), (-0.33, 0.6, 0.82)), ((0.33, 0.12, -0.82), (0.4, 0.6, 0.82)),
                 ((-0.4, 0.12, -0.82), (0.4, 0.6, -0.75)), ((-0.4, 0.12, 0.75), (0.4, 0.6, 0.82)),
                 *(((x - 0.04, 0, z - 0.04), (x + 0.04, 0.12, z + 0.04)) for x in (-0.28, 0.28) for z in (-0.65, 0.65)))
    _part(bath, 'water', at, 0, 'hollow', ((-0.33, 0.4, -0.75), (0.33, 0.42, 0.75)))
    place.Block(bath, 'block', at=at, size=(0.82, 0.62, 1.66))
    return bath


def sheets(room: Entity, name: str, at: Triple, turn: float = 0.0, count: int = 5):
    """A pile of folded sheets, no two of them laid quite alike."""
    folds = [(0.012 * math.sin(2.4 * number + at[0]), 0.036 * number, 0.010 * math.cos(1.7 * number + at[2]))
             for number in range(count)]
    return _part(room, name, at, turn, 'paper', *(((x - 0.21, y, z - 0.15), (x + 0.21, y + 0.031, z + 0.15))
                                                  for x, y, z in folds))


def runner(room: Entity, name: str, at: Triple, turn: float = 0.0):
    """A strip of carpet, 1.05 m by 3.2 m."""
    return place.Rug(room, name, at=(at[0], at[1] + 0.002, at[2]), turn=turn, scale=(0.46, 1, 1))


def _between(one: Triple, other: Triple, share: float) -> Triple:
    """A place on the way from one to another."""
    (a, b, c), (d, e, f) = one, other
    return a + (d - a) * share, b + (e - b) * share, c + (f - c) * share


def _less(one: Triple, other: Triple) -> Triple:
    return one[0] - other[0], one[1] - other[1], one[2] - other[2]


def balustrade(room: Entity, name: str, start: Triple, end: Triple):
    """A railing 0.95 m high from one place to another, along a slope if they differ in height; solid."""
    middle = _between(start, end, 0.5)
    start, end = _less(start, middle), _less(end, middle)
    length, rise = math.hypot(end[0] - start[0], end[2] - start[2]), end[1] - start[1]
    alongX = abs(end[0] - start[0]) > abs(end[2] - start[2])
    count = max(2, round(length / 0.16))
    parts = [_post(_between(start, end, number / count), number in (0, count)) for number in range(count + 1)]
    pieces = count if rise else 1
    parts += [_rail(_between(start, end, number / pieces), _between(start, end, (number + 1) / pieces), alongX)
              for number in range(pieces)]
    fence = _part(room, name, middle, 0, 'wood', *parts)
    blocks = 8 if rise else 1
    size = (length / blocks, 1.1, 0.08) if alongX else (0.08, 1.1, length / blocks)
    for number in range(blocks):
        x, y, z = _between(start, end, (number + 0.5) / blocks)
        place.Block(fence, 'block%d' % number, size=size,
                    at=(middle[0] + x, middle[1] + y - (0.1 if rise else 0), middle[2] + z))
    return fence


def _post(at: Triple, isLast: bool):
    """One bar of a railing, or the post at its end."""
    (x, y, z), thick, high = at, 0.045 if isLast else 0.014, 1.02 if isLast else 0.9
    return (x - thick, y, z - thick), (x + thick, y + high, z + thick)


def _rail(one: Triple, other: Triple, alongX: bool):
    wide, deep = (0, 0.035) if alongX else (0.035, 0)
    low, high = [[pick(a, b) for a, b in zip(one, other)] for pick in (min, max)]
    return (low[0] - wide, low[1] + 0.9, low[2] - deep), (high[0] + wide, high[1] + 0.95, high[2] + deep)
