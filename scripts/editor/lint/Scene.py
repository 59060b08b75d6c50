"""A level as the rules see it: its objects, its floors, how far the player gets in it, and where it was built."""

from __future__ import annotations

import math
import os
from typing import Any, Iterator

import callSites
import kaVel
import standing
from objects.Placing import Triple
from objects.things.Keys import keysIn, locksIn

#: Edge of the squares that floors are divided into, metres.
EDGE = 0.25
#: How far hands reach from where one stands, metres, and how high and low.
ARM, HIGH, LOW = 1.1, 2.1, -0.4
_SCRIPTS = os.path.dirname(os.path.dirname(os.path.dirname(__file__)))


class Scene:
    """One level at one moment. What costs time is found when it is first asked for."""

    def __init__(self, level: kaVel.Coordinator):
        self.level = level
        self.file = 'levels/%s.py' % level.levelName
        self.maps: list[kaVel.MapRootEntity] = [each for each in level.children if _is(each, 'MapRootEntity')]
        self.player: Any = level.getChild('Player')
        self._handles: dict[str, kaVel.Object] = {}
        self._grounds: dict[str, Ground] = {}

    def entities(self, root: kaVel.Object) -> Iterator[kaVel.Entity]:
        """The entities below an object that a script has named; what the engine makes by itself is left out."""
        for child in root.children:
            if _is(child, 'Entity') and not child.getName().startswith('.'):
                yield child
                yield from self.entities(child)

    def pathOf(self, handle: kaVel.Object) -> str:
        """The path of an object below its level."""
        path = kaVel.pathOf(handle)
        above = kaVel.pathOf(self.level) + '/'
        path = path[len(above):] if path.startswith(above) else path
        self._handles.setdefault(path, handle)
        return path

    def placeIn(self, map: kaVel.MapRootEntity, at: kaVel.Vec4) -> str:
        """A name for a place that is no object, by whole metres: 'villa:2,0,-3'."""
        return '%s:%d,%d,%d' % (self.pathOf(map), round(at.x), round(at.y), round(at.z))

    def originOf(self, path: str) -> tuple[str, int]:
        """Script, below the folder of scripts, and line of the call that an object of this path came from."""
        return self.originOfObject(self._handles.get(path))

    def originOfObject(self, handle: kaVel.Object | None) -> tuple[str, int]:
        """The same of an object."""
        piece = pieceOf(handle) if handle else None
        if not piece:
            return self.file, 0
        call = piece.getPattern().calls[0]
        return os.path.relpath(call[0].co_filename, _SCRIPTS), callSites.positionOf(call)[0]

    def ground(self, map: kaVel.MapRootEntity) -> Ground:
        """The floors of a map, and how far the player gets on them."""
        name = map.getName()
        if name not in self._grounds:
            self._grounds[name] = Ground(self, map)
        return self._grounds[name]

    def end(self):
        """Lets go of what was surveyed."""
        for ground in self._grounds.values():
            ground.survey.murder()

    def feet(self) -> Triple | None:
        """Where the player stands; None in a level in which nobody walks."""
        stood = standing.of(self.level) if self.player else None
        return stood[0] if stood else None


class Ground:
    """The floors of one map."""

    def __init__(self, scene: Scene, map: kaVel.MapRootEntity):
        self.scene, self.map = scene, map
        self.survey = kaVel.make('FloorSurvey')
        self.survey.begin(map, EDGE)
        while self.survey.work(1 << 16):
            pass
        self.held: set[str] = set()      # names of the keys that the player can have
        self._walk()
        self.bins: dict[tuple[int, int], list[Triple]] = {}  # the places that he reaches, by metre
        for spot in range(self.survey.spotCount):
            if self.survey.getWay(spot) >= 0:
                at = self.survey.getSpot(spot)
                self.bins.setdefault((math.floor(at.x), math.floor(at.z)), []).append((at.x, at.y, at.z))

    def _walk(self):
        """Goes as far as doors allow, takes the keys that lie there, and goes on through those that they open."""
        feet = self.scene.feet()
        if feet is None:
            return
        keys = {name: [_placeOf(key) for key in found] for name, found in keysIn(self.scene.level).items()}
        locks = {lock.thing: lock for lock in locksIn(self.scene.level)}
        while True:
            self.survey.flood(kaVel.Vec4(*feet, 1))
            reached = [self.survey.getSpot(spot) for spot in range(self.survey.spotCount)
                       if self.survey.getWay(spot) >= 0]
            new = {name for name, places in keys.items() if name not in self.held and any(
                _inReach((at.x, at.y, at.z), place) for place in places for at in reached)}
            self.held |= new
            for door in range(self.survey.doorCount):
                lock = locks.get(self.survey.getDoor(door))
                if lock and lock.key in self.held:
                    self.survey.setBarred(door, False)
            if not new:
                return

    def near(self, at: Triple, metres: float) -> Iterator[Triple]:
        """The places that the player reaches within some metres along x and z, at any height."""
        x0, x1 = math.floor(at[0] - metres), math.floor(at[0] + metres)
        z0, z1 = math.floor(at[2] - metres), math.floor(at[2] + metres)
        for x in range(x0, x1 + 1):
            for z in range(z0, z1 + 1):
                yield from self.bins.get((x, z), ())

    def shine(self):
        """Has the survey know the light of all places."""
        while self.survey.shine(1 << 16):
            pass


def _inReach(feet: Triple, place: Triple):
    return math.hypot(place[0] - feet[0], place[2] - feet[2]) < ARM and LOW < place[1] - feet[1] < HIGH


def _placeOf(entity: kaVel.Entity) -> Triple:
    return tripleOf(entity.getComponent('transform').position)


def tripleOf(at: kaVel.Vec4) -> Triple:
    return at.x, at.y, at.z


def pieceOf(handle: kaVel.Object) -> kaVel.AnyObject | None:
    """The object at or above another one that a level's own script has placed by a pattern; None for none."""
    above: Any = handle
    while above and not _is(above, 'Coordinator'):
        built = above.getPattern()
        if built and built.calls:
            return above
        above = above.parent
    return None


def _is(handle: kaVel.Object, className: str) -> bool:
    return handle._getType().isSubclassOf(kaVel.classNamed(className))


def isKind(handle: kaVel.Object | None, *classNames: str) -> bool:
    """Whether there is an object, and it is of one of some classes."""
    return bool(handle) and any(_is(handle, name) for name in classNames)
