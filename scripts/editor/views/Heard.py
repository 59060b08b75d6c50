"""What is heard at a place, how loud and how dull, and through which doors it comes."""

from __future__ import annotations

import math
from typing import Any, NamedTuple

import kaVel
from editor.Views import views
from editor.views.Kit import Scale, Shown, mapsOf, onScale, vec

#: Sounds that are told in words and drawn.
MOST = 14
#: Decibels below which nothing of a sound is left to hear.
SILENT = -60.0
#: Metres before and behind a door from which on a way has come through it, and how much longer it may be by the middle
#: of the door than around its frame.
FACE, DETOUR = 0.4, 0.8


class Heard(NamedTuple):
    """One source as it is heard: the entity, the way, what is left of a sound a metre away, the doors on the way."""

    entity: Any
    way: kaVel.HeardWay
    decibels: float
    doors: list[str]
    turns: list[kaVel.Vec4] = []  # the middles of these doors

    def __str__(self):
        dull = '' if self.way.lowpass > 15000 else ', dull (%.0f Hz)' % self.way.lowpass
        by = ' by ' + ', '.join(self.doors) if self.doors else ''
        through = '' if self.way.open else ' through walls'
        return '%4.0f dB  %s%s%s%s, %.0f m' % (self.decibels, self.entity.getName(), by, through, dull,
                                               self.way.distance)


def soundsIn(map: kaVel.MapRootEntity) -> list[Any]:
    """The entities of a map that sound from a place of their own."""
    return [each for each in kaVel.descendants(map) if each != map
            and each._getType().isSubclassOf(kaVel.Reflection.Entity)
            and each.getComponent('sound') and each.getComponent('transform')
            and each.getComponent('sound')._getType().isSubclassOf(kaVel.Reflection.SoundComponent)]


def doorsIn(map: kaVel.MapRootEntity) -> list[Any]:
    """The leaves of a map's doors."""
    kinds = kaVel.Reflection.DoorPhysics, kaVel.Reflection.SlidingDoorPhysics
    return [each for each in kaVel.descendants(map) if each._getType().isSubclassOf(kaVel.Reflection.Entity)
            and each.getComponent('physics')
            and any(each.getComponent('physics')._getType().isSubclassOf(kind) for kind in kinds)]


def hear(map: kaVel.MapRootEntity, at: kaVel.Vec4) -> list[Heard]:
    """How the sounds of a map are heard at a place, the loudest first; what is silent is left out."""
    ways = map.getComponent('soundWays')
    if not ways:
        return []
    found = []
    for entity in soundsIn(map):
        way = ways.hear(entity.getComponent('transform').position, at)
        decibels = 20 * math.log10(max(way.gain, 1e-9) / max(way.distance, 1.0))
        if decibels > SILENT:
            found.append(Heard(entity, way, decibels, []))
    found.sort(key=lambda heard: -heard.decibels)
    passed = [(heard, _doorsOn(map, ways, heard, at)) for heard in found[:MOST]]
    return [heard._replace(doors=[leaf.getName() for leaf in doors],
                           turns=[leaf.getComponent('physics').closedMiddle for leaf in doors])
            for heard, doors in passed]


def _doorsOn(map: kaVel.MapRootEntity, ways: kaVel.SoundWays, heard: Heard, at: kaVel.Vec4) -> list[Any]:
    """The doors that a way goes through: what is as far from face to face of a door as it is at all goes through it."""
    if heard.way.inSight or not heard.way.open:
        return []
    found = []
    source = heard.entity.getComponent('transform').position
    for leaf in doorsIn(map):
        one, other = _faces(leaf)
        if math.dist((one.x, one.z), (source.x, source.z)) > heard.way.distance + DETOUR:
            continue
        for near, far in ((one, other), (other, one)):
            first = ways.hear(source, near).distance
            if first + 2 * FACE + ways.hear(far, at).distance <= heard.way.distance + DETOUR:
                found.append((first, leaf))
                break
    return [leaf for _, leaf in sorted(found, key=lambda each: each[0])]


def _faces(leaf: Any) -> tuple[kaVel.Vec4, kaVel.Vec4]:
    """The places before and behind a door's shut leaf."""
    door = leaf.getComponent('physics')
    isHinged = door._getType().isSubclassOf(kaVel.Reflection.DoorPhysics)
    turn = door.closedTurn if isHinged else leaf.getComponent('transform').orientation
    way, middle = turn * kaVel.Quaternion(0, 0, 0, FACE) * turn.inverse(), door.closedMiddle
    one, other = (kaVel.Vec4(middle.x + side * way.i, middle.y, middle.z + side * way.k, 1) for side in (1, -1))
    return one, other


@views.add
class Sounds(Shown):
    """The way that each sound takes to the ear, by the doors that it comes through, with what is left of it."""

    name = 'Heard'
    help = 'What is heard where one points, how much of it is left, and by which doors.'
    order = 20
    scale: Scale = (
        (-200.0, (0.75, 0.15, 0.15), 'less: than -45 dB of what a sound made there is a metre away'),
        (-45.0, (0.92, 0.50, 0.15), '-45 dB'),
        (-30.0, (0.90, 0.82, 0.25), '-30 dB'),
        (-18.0, (0.35, 0.80, 0.35), '-18 dB: and more'),
    )

    def begin(self) -> None:
        super().begin()
        self.heard: list[Heard] = []
        self.asked: tuple[float, float, float] | None = None

    def changed(self) -> None:
        self.asked = None

    def state(self) -> str:
        return '\n'.join(str(heard) for heard in self.heard) or 'nothing is heard here'

    def tell(self, at: kaVel.Vec4) -> str:
        ear = kaVel.Vec4(at.x, at.y + 1.5, at.z, 1)
        place = round(at.x, 2), round(at.y, 2), round(at.z, 2)
        if place != self.asked or self.frame % 60 == 1:
            self.asked = place
            self.heard = [heard for map in mapsOf(self.level) for heard in hear(map, ear)]
            self._draw(ear)
        return str(self.heard[0]).strip() if self.heard else 'nothing is heard here'

    def _draw(self, ear: kaVel.Vec4) -> None:
        self.component.clearShapes(self.layer)
        for heard in self.heard:
            color = vec(onScale(self.scale, heard.decibels), 0.9)
            source = heard.entity.getComponent('transform').position
            self.component.addShapeText(self.layer, source, '%s %.0f dB' % (heard.entity.getName(), heard.decibels),
                                        color)
            self._drawWay(ear, source, heard, color)

    def _drawWay(self, ear: kaVel.Vec4, source: kaVel.Vec4, heard: Heard, color: kaVel.Vec4) -> None:
        """Bright as far as the way is known: from door to door, or to where it is heard from; pale to the rest."""
        pale = kaVel.Vec4(color.x, color.y, color.z, 0.3)
        at = ear
        for turn in reversed(heard.turns):
            self.component.addShapeLine(self.layer, at, turn, color)
            self.component.addShapeCircle(self.layer, turn, 0.12, color)
            at = turn
        if heard.way.inSight or heard.turns:
            self.component.addShapeLine(self.layer, at, source, color)
            return
        if heard.way.open:
            first = self._inSight(ear, heard.way.apparent)
            self.component.addShapeLine(self.layer, ear, first, color)
            at = first
        self.component.addShapeLine(self.layer, at, source, pale)

    def _inSight(self, ear: kaVel.Vec4, apparent: kaVel.Vec4) -> kaVel.Vec4:
        """The end of the way towards a place, or what that meets first."""
        met = self.component.meet(ear, apparent - ear, self.component.parent)
        ends = [kaVel.Vec4(each.x, each.y, each.z, 1) for each in (apparent, met) if each is apparent or each.w]
        return min(ends, key=lambda end: math.dist((end.x, end.y, end.z), (ear.x, ear.y, ear.z)))
