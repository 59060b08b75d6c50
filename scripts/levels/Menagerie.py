"""Menagerie: rooms full of those who walk about by themselves, and a board that says why they do.

WASD and mouse, Shift runs, E uses what the mark points at, G throws a bolt, which is heard, L covers the lamp, 1 to 8
lead to what there is to see, F9 begins anew.

The rooms are built in `menagerie/Shell.py`, bodies in `menagerie/Creatures.py`, minds in `menagerie/Minds.py`.
"""

from __future__ import annotations

import kaVel
import objects.GameObjects as place
from kaVel import Coordinator, MapRootEntity
from menagerie import Creatures, Furnishing, Minds, Shell
from menagerie.Board import Board
from menagerie.Crowd import Crowd
from menagerie.Lamp import Lamp
from menagerie.Stations import STATIONS
from objects.player.Control import onPlaceKeys

_visit: Visit


def build(coordinator: Coordinator):
    kaVel.configure(coordinator.getManager('graphics2'), sceneAmbient=0.035)
    coordinator.loadMap('house')
    _visit.goTo(1)


def house(map: MapRootEntity):
    """The map: the rooms, the player and all who live there."""
    global _visit
    _visit = Visit(map)


def views():
    """What a headless run takes pictures of: each station from where its number key leads, with something under way."""
    return [('%d-%s' % (number, station.name), lambda number=number: _visit.show(number))
            for number, station in enumerate(STATIONS, 1)]


class Visit:
    """Everything of one visit, and the keys that lead about in it."""

    def __init__(self, map: MapRootEntity):
        coordinator = map.getAncestorOfType(kaVel.Reflection.Coordinator)
        kaVel.configure(map.getComponent('transform'), position=kaVel.Vec4(*Shell.MIDDLE, 1),
                        scale=kaVel.Vec4(*Shell.EXTENT, 0))
        map.getComponent('mapData').gridCellSize = Shell.CELL
        place.hear(map)
        place.sounding(place.Entity(map, 'air'), 'AmbienceCellar', volume=0.6)
        coordinator.getManager('reverb').surroundings = 'cellar'
        self.map = map
        place.Player(coordinator, fieldOfView=55, farClip=24)
        self.visitor = place.visitorOf(coordinator)
        self.pointer = place.Pointer(self.visitor)
        self.rooms = Shell.build(map)
        self.leaves = Shell.doors(map, self.pointer)
        for name, furnish in Furnishing.FURNISH.items():
            furnish(self.rooms[name])
        self.lamp = Lamp(map, self.visitor)
        self.bolts = place.Bolts(map, self.visitor)
        self.board = Board(map, self.rooms['hall'], self.visitor)
        self.populate()
        self.sight = Shell.sight(self.rooms, self.leaves, self.visitor)
        kaVel.onKey(coordinator, 'restart', lambda: kaVel.getSystem('GameLoopSystem').queueLoadLevel('Menagerie'))
        onPlaceKeys(coordinator, len(STATIONS), self.goTo)

    def populate(self):
        map = self.map
        Minds.buildTrees(kaVel.getSystem('BTLib'))
        self.strollers = [Minds.Mind(body, 'hall', 'court', 'yard', 'store', 'gallery')
                          for body in Creatures.strollers(map)]
        self.hound = Minds.Hunter(Creatures.hound(map), home=(-4.6, 7.6))
        self.shade = Minds.Hider(Creatures.shade(map), map, 'dark', 'kennel', 'hall')
        self.warden = Minds.Warden(Creatures.warden(map), ((9.6, 6.6), (3.0, 6.6), (3.0, 0.0), (9.6, 0.0)))
        for mind, tree in (*((stroller, 'Stroll') for stroller in self.strollers), (self.hound, 'Hunt'),
                           (self.shade, 'Lurk')):
            mind.think(tree)
        for mind in (*self.strollers, self.hound, self.shade, self.warden):
            self.pointer.name(mind.entity, mind.entity.name, lambda mind=mind: kaVel.Reflection.why(mind.entity))
            self.board.add(lambda mind=mind: kaVel.Reflection.why(mind.entity))
        self.crowd = Crowd(map)
        self.rats = Furnishing.rats(map, self.visitor.player).getComponent('flocking')
        self.board.add(self.crowd.tell)
        self.board.add(lambda: 'moths: ' + self.lamp.moths.tell())

    def goTo(self, number: int):
        """Stands the visitor at a station."""
        station = STATIONS[number - 1]
        self.visitor.goTo(station.at, station.turn, station.pitch)
        self.lamp.follow()
        self.sight.update()

    def show(self, number: int):
        """As `goTo`, for a picture: what takes its time there is under way at once."""
        STATIONS[number - 1].begin(self)
        self.goTo(number)
