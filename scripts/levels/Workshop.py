"""Workshop: a cellar in which one walks, pushes, opens, switches and throws.

WASD and mouse, Shift runs, Ctrl crouches, E or the left button uses what the mark points at, G or the right button
throws a bolt, 1 to 9 lead to what there is to see, F9 begins anew: what was opened and taken stays so.

The rooms are built in `workshop/Shell.py`, what works in them in `workshop/Doors.py` and `workshop/Mechanisms.py`.
"""

from __future__ import annotations

import kaVel
import objects.GameObjects as place
from kaVel import Coordinator, MapRootEntity
from objects.player.Control import onPlaceKeys
from workshop import Bodies, Doors, Furnishing, Mechanisms, Shell
from workshop.Stations import STATIONS

#: What `tools/lint` finds here and is meant: kind -> object -> why.
LINT = {
    'locked': {'cellar/lockedDoor': 'it shows what a lock does'},
    'unreachable': {'cellar:0,0,7': 'the inside of the basin, which is full of floats'},
    'twice': {'cellar/workshop/sill': 'nothing but stone to step over, and the playthroughs know them by that name'},
    'leaks': {'cellar/workshop/fire': 'what is behind the boiler is lit by the glow of its door all the same',
              'cellar/workshop/doorLantern/light': 'the leaf beside it stands open most of the time'},
}

_visit: Visit


def build(coordinator: Coordinator):
    kaVel.configure(coordinator.getManager('graphics2'), sceneAmbient=0.04)
    coordinator.loadMap('cellar')
    _visit.goTo(1)


def cellar(map: MapRootEntity):
    """The map: the three rooms, the player and all that he meets."""
    global _visit
    _visit = Visit(map)


def views():
    """What a headless run takes pictures of: each station from where its number key leads, with something under way."""
    return [('%d-%s' % (number, station.name), lambda number=number: _visit.show(number))
            for number, station in enumerate(STATIONS, 1)]


class Visit:
    """Everything of one visit to the cellar, and the keys that lead about in it."""

    def __init__(self, map: MapRootEntity):
        coordinator = map.getAncestorOfType(kaVel.Reflection.Coordinator)
        kaVel.configure(map.getComponent('transform'), position=kaVel.Vec4(2.3, Shell.HEIGHT / 2, 3.3, 1),
                        scale=kaVel.Vec4(22, Shell.HEIGHT, 20, 0))
        place.hear(map)
        place.sounding(place.Entity(map, 'air'), 'AmbienceWorkshop')
        coordinator.getManager('reverb').surroundings = 'cellar'
        self.map = map
        place.Player(coordinator, fieldOfView=55, farClip=24)
        self.visitor = place.visitorOf(coordinator)
        self.pointer = place.Pointer(self.visitor)
        self.notice = place.Notice(coordinator)
        self.rooms = Shell.build(map)
        self.leaves = Doors.build(map, self.pointer)
        self.furnish()
        self.sight = Shell.sight(self.rooms, self.leaves, self.visitor)
        kaVel.onKey(coordinator, 'restart', lambda: kaVel.getSystem('GameLoopSystem').queueLoadLevel('Workshop'))
        onPlaceKeys(coordinator, len(STATIONS), self.goTo)

    def furnish(self):
        map, rooms, pointer = self.map, self.rooms, self.pointer
        for name, furnish in (('workshop', Furnishing.workshop), ('store', Furnishing.store),
                              ('cistern', Furnishing.cistern)):
            furnish(rooms[name], pointer)
        Bodies.crates(map, pointer)
        self.stack = Bodies.Piles(map, pointer, 'box', (3, 4, 2, 1), at=(7.6, 0, -3.2), edge=0.4, gap=0.2)
        self.targets = Bodies.Piles(map, pointer, 'tin', (2, 4, 3), at=(0.1, 0.9, -3.6), edge=0.24)
        Bodies.basin(map, pointer)
        self.switch = place.LightSwitch(rooms['workshop'], pointer, at=(1.0, 1.35, -4.0),
                                        lamp=(0.0, Shell.HEIGHT, 0.9))
        self.chute = Mechanisms.Chute(rooms['workshop'], pointer, self.notice)
        self.fuseBox = Mechanisms.FuseBox(rooms, pointer, self.notice)
        self.updraught = Mechanisms.Updraught(rooms['cistern'], map)
        self.bell = Mechanisms.Bell(rooms['cistern'], map, self.notice)
        self.bolts = place.Bolts(map, self.visitor)

    def goTo(self, number: int):
        """Stands the visitor at a station."""
        station = STATIONS[number - 1]
        self.visitor.goTo(station.at, station.turn, station.pitch)
        self.sight.update()

    def show(self, number: int):
        """As `goTo`, for a picture: what takes its time there is under way at once."""
        STATIONS[number - 1].begin(self)
        self.goTo(number)
