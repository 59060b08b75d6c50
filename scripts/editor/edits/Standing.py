"""How the objects of a piece stand, and what it takes to stand them elsewhere without building them anew."""

from __future__ import annotations

import math
from typing import TYPE_CHECKING, Any, NamedTuple

import kaVel
from editor.edits import Address

if TYPE_CHECKING:
    from editor.source.Pieces import Piece

#: Classes that take their place from the transform beside them in every frame, or when the load completes.
#: What is of another class may have noted places of its own, and its piece is built anew where it moves.
RIGID = frozenset((
    'Entity', 'TransformComponent', 'BoundingVolume', 'WallPhysics', 'RigidBody', 'ModelGraphicsComponent2',
    'DecalComponent', 'LightComponent', 'WorldBasedTCBoxGraphicsComponent', 'ObjectGroupComponent',
    'SoundComponent', 'BodySounds', 'QuadComponent2', 'TextComponent2'))
#: Classes that a level has one of and that others hold on to: a change of their pattern shows when the level is loaded.
KEPT = frozenset(('PlayerComponent', 'PartitioningGrid', 'MapDataComponent', 'ViewerComponent', 'MenuComponent'))

#: Name of what `makeSolid` hangs below what stands in the way.
FENCE = 'block'

#: A transform, its position and its orientation.
Place = tuple[Any, kaVel.Vec4, kaVel.Quaternion]


class Standing:
    """Where the transforms of a piece's own objects are, and whether they may be moved by themselves."""

    def __init__(self):
        self.places: list[Place] = []
        self.isRigid = True
        self.isKept = False    # whether others hold on to what is in it, so that it is never built anew
        self.isFenced = False  # whether the level has made it solid, see `objects.things.Bodies.makeSolid`

    def restore(self):
        """Stands all objects where they were."""
        for transform, position, orientation in self.places:
            transform.position = position
            transform.orientation = orientation

    def moved(self, motion: Motion) -> Standing:
        """The standing after a motion, which changes nothing yet."""
        after = Standing()
        after.isRigid, after.isKept, after.isFenced = self.isRigid, self.isKept, self.isFenced
        after.places = [(transform, motion.place(position), motion.turn(orientation))
                        for transform, position, orientation in self.places]
        return after


class Gatherer:
    """Gathers the standings of all pieces in one walk over a tree, parents before children."""

    def __init__(self):
        self.found: dict[Piece, Standing] = {}
        self._of: dict[Any, Standing] = {}

    def visit(self, entity: Any, piece: Piece | None):
        """Notes an object, which is the root of a piece or below what was visited before."""
        if piece:
            standing = self.found[piece] = Standing()
        else:
            above = self._of.get(entity.parent)
            if above is None:
                return
            standing = above
        self._of[entity] = standing
        _note(standing, entity)


def of(root: Any, roots: Any) -> Standing:
    """The standing of a piece that was just built; below `roots` are other pieces."""
    standing = Standing()
    waiting = [root]
    for entity in waiting:
        _note(standing, entity)
        waiting.extend(child for child in entity.children if child not in roots and not child.isDying())
    return standing


def _note(standing: Standing, entity: Any):
    kind = entity._getType().name
    if kind == 'TransformComponent':
        standing.places.append((entity, entity.position, entity.orientation))
    elif kind == 'Entity' and entity.getName() == FENCE and entity.pattern is None:
        standing.isFenced = True
    if kind == 'DynamicMeshAsset' and not Address.nameOf(entity):
        return  # what a component makes for itself once it is seen
    if kind not in RIGID:
        standing.isRigid = False
        standing.isKept = standing.isKept or kind in KEPT


class Angles(NamedTuple):
    turn: float
    pitch: float
    roll: float


class Motion:
    """What takes objects from one `at` and angles to others: a turn about the old place, and a move to the new one.

    What stood exactly at the old place or angles gets exactly the new ones, as its pattern would have it.
    """

    def __init__(self, before: dict[str, Any], after: dict[str, Any]):
        self._from, self._to = _vector(before), _vector(after)
        self._old, self._new = orientation(*_angles(before)), orientation(*_angles(after))
        self._way = self._new * self._old.inverse()
        self._isTurn = _angles(before) != _angles(after)
        self.turned = _angles(after).turn - _angles(before).turn

    def isAll(self, standing: Standing) -> bool:
        """Whether it has a piece stand as its pattern would: a pattern may turn its parts by an angle of their own."""
        if not self._isTurn:
            return True
        if self._old == orientation(0, 0, 0) and len(standing.places) > 1:
            return False  # who knows which parts turn along
        return all(
            stood == self._old and abs(position.x - self._from.x) + abs(position.z - self._from.z) < 1e-4
            for _, position, stood in standing.places)

    def place(self, position: kaVel.Vec4) -> kaVel.Vec4:
        if position == self._from:
            return self._to
        away = (position.x - self._from.x, position.y - self._from.y, position.z - self._from.z)
        if self._isTurn:
            way = self._way * kaVel.Quaternion(0, *away) * self._way.inverse()
            away = (way.i, way.j, way.k)
        return kaVel.Vec4(self._to.x + away[0], self._to.y + away[1], self._to.z + away[2], position.w)

    def turn(self, orientation: kaVel.Quaternion) -> kaVel.Quaternion:
        if not self._isTurn:
            return orientation
        return self._new if orientation == self._old else self._way * orientation


def _vector(arguments: dict[str, Any]) -> kaVel.Vec4:
    x, y, z = arguments['at']
    return kaVel.Vec4(x, y, z, 1)


def _angles(arguments: dict[str, Any]) -> Angles:
    return Angles(*(arguments.get(name, 0.0) for name in Angles._fields))


def orientation(turn: float, pitch: float, roll: float) -> kaVel.Quaternion:
    """As `objects.Placing.turned`, which may be read anew with the level."""
    return _axis(1, turn) * _axis(0, pitch) * _axis(2, roll)


def _axis(axis: int, degrees: float) -> kaVel.Quaternion:
    half = math.radians(degrees) / 2
    parts = [0.0, 0.0, 0.0]
    parts[axis] = math.sin(half)
    return kaVel.Quaternion(math.cos(half), *parts)
