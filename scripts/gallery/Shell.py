"""What the rooms of the gallery have in common: 6 x 8 m each, in a row from west to east, 2 m of passage between.

A room's own space has its origin in the middle of its floor. The passages meet its west and east wall at z = -3, near
the south wall, so that one looks north at what the room shows.
"""

from __future__ import annotations

from typing import Any, Sequence

import objects.GameObjects as place
from kaVel import Object
from objects.Placing import Pattern, Triple

NORTH, EAST, SOUTH, WEST = 0, 90, 180, -90

WIDTH, DEPTH = 6.0, 8.0
PITCH = 8.0  # from room to room
DOOR_Z = -3.0


class Room:
    """One room while it is being built: its number and the place of its middle."""

    def __init__(self, parent: Object, number: int, rooms: int):
        self.parent = parent
        self.number = number
        self.x = PITCH * (number - 1)
        self.hasWestDoor = number > 1
        self.hasEastDoor = number < rooms

    def at(self, x: float, y: float, z: float):
        """A place of the room's own space in the map."""
        return (self.x + x, y, z)

    def put(self, pattern: Pattern, name: str, at: Triple = (0, 0, 0), **options: Any):
        """Builds a pattern at a place of the room's own space."""
        return pattern(self.parent, '%s%d' % (name, self.number), at=self.at(*at), **options)


def tiled(room: Room, pattern: Pattern, name: str, xs: Sequence[float] = (-2, 0, 2),
          zs: Sequence[float] = (-3, -1, 1, 3)):
    """A floor or ceiling of pieces of 2 m."""
    for x in xs:
        for z in zs:
            room.put(pattern, name, at=(x, 0, z))


def walls(room: Room, plain: Pattern, doorway: Pattern, north: Pattern | None = None):
    """Four walls of pieces of 2 m, with the doorways of the row; `north` takes the place of the middle piece there."""
    for x in (-2, 0, 2):
        room.put(north if north and x == 0 else plain, 'northWall', at=(x, 0, 4), turn=SOUTH)
        room.put(plain, 'southWall', at=(x, 0, -4), turn=NORTH)
    for z in (-3, -1, 1, 3):
        for x, turn, hasDoor in ((-3, EAST, room.hasWestDoor), (3, WEST, room.hasEastDoor)):
            room.put(doorway if hasDoor and z == DOOR_Z else plain, 'sideWall', at=(x, 0, z), turn=turn)


def corners(room: Room):
    """Closes the gaps between the walls' backs against light from outside."""
    for x in (-3.15, 3.15):
        for z in (-4.15, 4.15):
            room.put(place.Box, 'corner', at=(x, 0, z), size=(0.31, 3.2, 0.31), surface='stone')


def passage(room: Room):
    """The vaulted way from a room to the next one."""
    room.put(place.StoneTunnel, 'tunnel', at=(3, 0, DOOR_Z), turn=EAST)
    room.put(place.StoneFloor, 'tunnelFloor', at=(4, 0, DOOR_Z))


#: Width and height of the doorways of each kind: of masonry, and of the villa.
MASONRY, VILLA = (1.4, 2.25), (0.95, 2.1)
HEIGHT, THICK = 3.2, 1.0


def solids(map: Object, doorways: Sequence[tuple[float, float]]):
    """What stops those who walk: the floor, the long walls, and between any two rooms a wall with a gap.

    `doorways` has the width and height of the narrower doorway at both ends of each passage.
    """
    def between(name: str, x0: float, x1: float, z0: float, z1: float, y0: float = 0.0, y1: float = HEIGHT):
        place.Block(map, name, at=((x0 + x1) / 2, y0, (z0 + z1) / 2), size=(x1 - x0, y1 - y0, z1 - z0))

    west, east = -WIDTH / 2, PITCH * len(doorways) + WIDTH / 2
    between('ground', west - THICK, east + THICK, -5, 5, -THICK, 0)
    between('north', west - THICK, east + THICK, DEPTH / 2, DEPTH / 2 + THICK)
    between('south', west - THICK, east + THICK, -DEPTH / 2 - THICK, -DEPTH / 2)
    between('west', west - THICK, west, -DEPTH / 2, DEPTH / 2)
    between('east', east, east + THICK, -DEPTH / 2, DEPTH / 2)
    for number, (width, height) in enumerate(doorways):
        x0, x1 = PITCH * number + WIDTH / 2, PITCH * (number + 1) - WIDTH / 2
        between('wallSouth%d' % number, x0, x1, -DEPTH / 2, DOOR_Z - width / 2)
        between('wallNorth%d' % number, x0, x1, DOOR_Z + width / 2, DEPTH / 2)
        between('wallAbove%d' % number, x0, x1, DOOR_Z - width / 2, DOOR_Z + width / 2, height)


def crypt(room: Room, north: Pattern | None = None, ribs: Sequence[float] = (-2.0, 1.4)):
    """A room of masonry with flat arches under its ceiling."""
    tiled(room, place.StoneFloor, 'floor')
    tiled(room, place.StoneCeiling, 'ceiling')
    walls(room, place.StoneWall, place.StoneArch, north)
    for z in ribs:
        room.put(place.VaultRib, 'rib', at=(0, 0, z))


def bunker(room: Room):
    """A room of bare concrete on old flagstones."""
    tiled(room, place.StoneFloor, 'floor')
    tiled(room, place.ConcreteCeiling, 'ceiling')
    walls(room, place.ConcreteWall, place.ConcreteArch)


def doorwayBacks(room: Room):
    """The other side of the villa's thin doorways, which the passages look at."""
    for x, turn, hasDoor in ((-3.18, WEST, room.hasWestDoor), (3.18, EAST, room.hasEastDoor)):
        if hasDoor:
            room.put(place.PlasterDoorway, 'doorwayBack', at=(x, 0, DOOR_Z), turn=turn)


def parlour(room: Room):
    """A room of the villa: papered above panels, boards below."""
    tiled(room, place.FloorBoards, 'floor')
    tiled(room, place.PlasterCeiling, 'ceiling')
    walls(room, place.WallPlain, place.WallDoorway)
    for x in (-2, 0, 2):
        for z, turn in ((4, SOUTH), (-4, NORTH)):
            room.put(place.Wainscot, 'panels', at=(x, 0, z), turn=turn)
            room.put(place.Cornice, 'cornice', at=(x, 0, z), turn=turn)
    for x, turn, hasDoor in ((-3, EAST, room.hasWestDoor), (3, WEST, room.hasEastDoor)):
        for z in (-3, -1, 1, 3):
            room.put(place.Cornice, 'cornice', at=(x, 0, z), turn=turn)
            if not (hasDoor and z == DOOR_Z):
                room.put(place.Wainscot, 'panels', at=(x, 0, z), turn=turn)
            else:
                for beside in (z - 0.8, z + 0.8):
                    room.put(place.WainscotNarrow, 'panels', at=(x, 0, beside), turn=turn)
    doorwayBacks(room)
