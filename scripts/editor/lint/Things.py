"""What is wrong with single things: they float, they stand in walls, they have the name of another one."""

from __future__ import annotations

import math
from typing import Iterator, NamedTuple

import kaVel
from editor.lint.Findings import Finding, rule
from editor.lint.Scene import Scene, isKind, pieceOf, tripleOf
from editor.lint.Ways import reachOf
from objects.Placing import Triple
from objects.things.Models import boundsOf

#: Metres between two things that still touch.
TOUCH = 0.08
#: Metres from side to side from which on a thing is none that lies against a wall or hangs on it.
THICK = 0.3
#: Part of such a thing's extents that may not be in a wall; of all others more than the whole: what is flush is seen.
CORE, WHOLE = 0.6, 1.02
#: What is larger than this along all sides is a room, and holds nothing up by its box.
ROOM = 2.5
#: Metres that a wall is longer than a thing that stands in it: what is not, is what makes the thing solid.
LONGER = 1.0
BINS = 2.0  # metres


class Held(NamedTuple):
    """A box in the world: what it belongs to, its least and greatest corner, and the volume of a wall."""

    owner: kaVel.Entity
    low: Triple
    high: Triple
    volume: kaVel.BoundingVolume | None


@rule
def things(scene: Scene) -> Iterator[Finding]:
    """Things that touch nothing, and those that stand in walls."""
    for map in scene.maps:
        models, solids = _boxes(scene, map)
        near = _Near(models + solids)
        pieces: dict[kaVel.AnyObject, list[Held]] = {}
        for thing in models:
            pieces.setdefault(pieceOf(thing.owner) or thing.owner, []).append(thing)
        for piece, parts in pieces.items():
            if not any(_isHeld(piece, part, near) for part in parts):
                yield Finding('floats', scene.pathOf(piece), _foot(parts[0]), 'it touches nothing',
                              'set it on something, or hang it on a wall')
            wall = next(_walls(piece, parts[0], near), None)
            if wall:
                yield Finding('inWall', scene.pathOf(piece), _foot(parts[0]),
                              'it stands within %s' % scene.pathOf(wall.owner), 'move it out of there')


def _isHeld(piece: kaVel.AnyObject, part: Held, near: _Near) -> bool:
    """Whether a part of a piece touches anything but the piece itself; nothing falls below height 0."""
    return part.low[1] < TOUCH or any(
        _touch(part, each) and (pieceOf(each.owner) or each.owner) != piece for each in near.around(part))


def _walls(piece: kaVel.AnyObject, thing: Held, near: _Near) -> Iterator[Held]:
    """The walls that a thing stands in; what is solid of another thing is as coarse as a box, and no wall."""
    thick = min(high - low for low, high in zip(thing.low, thing.high)) >= THICK
    for each in near.around(thing):
        owner = pieceOf(each.owner) or each.owner
        isWall = each.volume and owner != piece and not owner.getComponent('graphics2') and any(
            high - low > thing.high[side] - thing.low[side] + LONGER
            for side, (low, high) in enumerate(zip(each.low, each.high)))
        if isWall and each.volume and _isWithin(thing, each.volume, CORE if thick else WHOLE):
            yield each


def _boxes(scene: Scene, map: kaVel.MapRootEntity) -> tuple[list[Held], list[Held]]:
    """The models of a map that stand still, and the solid boxes of it."""
    models, solids = [], []
    for entity in scene.entities(map):
        transform, volume = entity.getComponent('transform'), entity.getComponent('boundingVolume')
        drawn, body = entity.getComponent('graphics2'), entity.getComponent('physics')
        if not transform:
            continue
        at = tripleOf(transform.position)
        if volume and body and isKind(body, 'WallPhysics', 'DoorPhysics', 'SlidingDoorPhysics') and not volume.trigger:
            solids.append(_held(entity, at, reachOf(volume, transform), volume))
        elif volume and isKind(drawn, 'WorldBasedTCBoxGraphicsComponent'):
            solids.append(_held(entity, at, reachOf(volume, transform), None))
        elif isKind(drawn, 'ModelGraphicsComponent2') and volume and getattr(drawn, 'meshName', ''):
            if not body and not entity.getComponent('parentFollower') and not _isOfCreature(entity):
                models.append(_modelBox(entity, drawn.meshName, transform))
        elif isKind(drawn, 'ModelGraphicsComponent2') and volume:
            box = _held(entity, at, reachOf(volume, transform), None)
            if min(high - low for low, high in zip(box.low, box.high)) < ROOM:
                solids.append(box)
    return models, solids


def _isOfCreature(entity: kaVel.Entity) -> bool:
    above = entity
    while isKind(above, 'Entity') and not isKind(above, 'MapRootEntity'):
        if any(above.getComponent(key) for key in ('steering', 'behaviors', 'dummy', 'perception', 'flocking')):
            return True
        above = above.parent
    return False


def _held(owner: kaVel.Entity, at: Triple, reach: Triple, volume: kaVel.BoundingVolume | None) -> Held:
    low, high = ((at[0] + sign * reach[0], at[1] + sign * reach[1], at[2] + sign * reach[2]) for sign in (-1, 1))
    return Held(owner, low, high, volume)


def _modelBox(entity: kaVel.Entity, meshName: str, transform: kaVel.TransformComponent) -> Held:
    low, high = boundsOf(meshName)
    scale, at, turn = tripleOf(transform.scale), tripleOf(transform.position), transform.orientation
    corners = []
    for number in range(8):
        corner = [(high if number >> side & 1 else low)[side] * scale[side] for side in range(3)]
        way = turn * kaVel.Quaternion(0, *corner) * turn.inverse()
        corners.append((at[0] + way.i, at[1] + way.j, at[2] + way.k))
    sides = list(zip(*corners))
    x0, y0, z0 = (min(side) for side in sides)
    x1, y1, z1 = (max(side) for side in sides)
    return Held(entity, (x0, y0, z0), (x1, y1, z1), None)


class _Near:
    """Boxes by the squares that they lie over."""

    def __init__(self, boxes: list[Held]):
        self.bins: dict[tuple[int, int], list[Held]] = {}
        for box in boxes:
            for square in self._squares(box):
                self.bins.setdefault(square, []).append(box)

    def around(self, box: Held) -> list[Held]:
        found = {id(each): each for square in self._squares(box) for each in self.bins.get(square, ())}
        return list(found.values())

    def _squares(self, box: Held) -> Iterator[tuple[int, int]]:
        (x0, x1), (z0, z1) = ((math.floor((box.low[side] - TOUCH) / BINS), math.floor((box.high[side] + TOUCH) / BINS))
                              for side in (0, 2))
        return ((x, z) for x in range(x0, x1 + 1) for z in range(z0, z1 + 1))


def _touch(one: Held, other: Held) -> bool:
    return all(one.low[side] < other.high[side] + TOUCH and other.low[side] < one.high[side] + TOUCH
               for side in range(3))


def _isWithin(thing: Held, volume: kaVel.BoundingVolume, part: float) -> bool:
    """Whether a part of a thing's box, about its middle, is in a volume."""
    middle = [(low + high) / 2 for low, high in zip(thing.low, thing.high)]
    half = [(high - low) / 2 * part + (0.01 if part > 1 else 0) for low, high in zip(thing.low, thing.high)]
    return all(volume.boxToPoint(kaVel.Vec4(*(
        middle[side] + (half[side] if number >> side & 1 else -half[side]) for side in range(3)), 1))
        for number in range(8))


def _foot(thing: Held) -> Triple:
    return (thing.low[0] + thing.high[0]) / 2, thing.low[1], (thing.low[2] + thing.high[2]) / 2


@rule
def names(scene: Scene) -> Iterator[Finding]:
    """Entities with the name of another one below the same parent: a path finds the first of them alone.

    What a loop has placed may share a name, unless it has a state of its own, which saves and scripts ask for by path.
    """
    for map in scene.maps:
        for parent in (map, *scene.entities(map)):
            twins: dict[str, list[kaVel.Entity]] = {}
            for child in parent.children:
                if isKind(child, 'Entity') and not child.getName().startswith(('.', 'unnamed__')):
                    twins.setdefault(child.getName(), []).append(child)
            for found in twins.values():
                if len(found) > 1 and _areApart(scene, found):
                    yield Finding('twice', scene.pathOf(found[0]), None,
                                  '%d of this name below one parent' % len(found), 'give each a name of its own')


def _areApart(scene: Scene, twins: list[kaVel.Entity]) -> bool:
    """Whether things of one name are to be told apart: they have a state, or come from several lines of a script."""
    return any(_hasState(each) for each in twins) or len({scene.originOfObject(each) for each in twins}) > 1


def _hasState(entity: kaVel.Entity) -> bool:
    volume, body = entity.getComponent('boundingVolume'), entity.getComponent('physics')
    return bool(volume and (volume.trigger or volume.interact)) or bool(body and not isKind(body, 'WallPhysics'))
