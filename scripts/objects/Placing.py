"""Where things stand: the entity with a place that every pattern begins with."""

from __future__ import annotations

import functools
import math
from typing import Callable

import kaVel

#: Metres along x, y and z, factors of them, or a colour's red, green and blue.
Triple = tuple[float, float, float]
#: Shares of the window, or metres, along x and y.
Pair = tuple[float, float]
#: What builds an object: a function `pattern(parent, name)`, mostly with `at` and `turn`.
Pattern = Callable[..., kaVel.Entity]


def turned(degrees: float, pitch: float = 0.0, roll: float = 0.0):
    """Orientation after a turn about y and, before it, a pitch about x and a roll about z, all in degrees.

    A positive pitch looks down.
    """
    return kaVel.Quaternion(*_turned(degrees, pitch, roll, math.copysign(1, degrees), math.copysign(1, pitch),
                                     math.copysign(1, roll)))


@functools.lru_cache(maxsize=10000)
def _turned(degrees: float, pitch: float, roll: float, *signs: float) -> tuple[float, float, float, float]:
    """The parts of `turned`; signs tell zeros apart, so that what was asked before changes nothing."""
    turn = (axisTurn(1, degrees) * axisTurn(0, pitch)) * axisTurn(2, roll)
    return turn.r, turn.i, turn.j, turn.k


def axisTurn(axis: int, degrees: float):
    """Orientation after a turn about x (0), y (1) or z (2)."""
    half = math.radians(degrees) / 2
    parts = [0.0, 0.0, 0.0]
    parts[axis] = math.sin(half)
    return kaVel.Quaternion(math.cos(half), *parts)


class LevelClock:
    """The game time of the level that an entity stands in: it stands still while the level is paused."""

    def __init__(self, entity: kaVel.Entity):
        self._timer = entity.getAncestorOfType(kaVel.Reflection.Coordinator).getTimerHandle('master')
        self._ticksPerSecond = kaVel.getSystem('TimeSystem').getTicksPerSecond()

    def seconds(self):
        """Seconds since the level began."""
        return self._timer.value / self._ticksPerSecond

    def frameSeconds(self):
        """Length of the present frame."""
        return self._timer.frameTimeSeconds


def onFrame(entity: kaVel.Entity, callback: Callable[[], object]):
    """Has a function without arguments called in every frame of a running level; one for each entity."""
    return kaVel.addComponent(entity, 'director', 'ScriptComponent', frameCallback=callback)


def placed(parent: kaVel.Object, name: str, at: Triple = (0, 0, 0), turn: float = 0.0, pitch: float = 0.0,
           roll: float = 0.0, scale: Triple = (1, 1, 1)):
    """An entity with a transform."""
    entity = kaVel.make('Entity', parent=parent, name=name)
    kaVel.addComponent(entity, 'transform', 'TransformComponent', position=kaVel.Vec4(*at, 1),
                       orientation=turned(turn, pitch, roll), scale=kaVel.Vec4(*scale, 0))
    return entity


def around(at: Triple, turn: float, right: float, up: float, ahead: float) -> Triple:
    """A place given from an object that stands at `at`, in the object's own directions."""
    c, s = math.cos(math.radians(turn)), math.sin(math.radians(turn))
    return (at[0] + right * c + ahead * s, at[1] + up, at[2] + ahead * c - right * s)


def cube(edge: float) -> Triple:
    """The extents of a cube."""
    return edge, edge, edge


def isInMap(entity: kaVel.Entity):
    """Whether an entity hangs under a map, whose grid then decides when it is drawn."""
    return bool(entity.getAncestorOfType(kaVel.Reflection.MapRootEntity))


def layerFor(entity: kaVel.Entity) -> kaVel.SceneGraph.LayerName:
    """Layer of what an entity shows in the world: culled by the map's grid, or always drawn outside of maps."""
    return 'WORLD' if isInMap(entity) else 'WORLD_UNCONDITIONAL'


def addVolume(entity: kaVel.Entity, hitBox: Triple, volumeType: kaVel.BoundingVolume.VolumeTypeName = 'BV_WALL'):
    """Gives an entity the box by which the map's grid finds it; 'BV_NONE' for what moves and stops nobody."""
    sides = [max(side, 0.05) for side in hitBox]
    return kaVel.addComponent(entity, 'boundingVolume', 'BoundingVolume', volumeType=volumeType,
                              hitBox=kaVel.Vec4(*sides, 0))
