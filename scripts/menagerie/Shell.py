"""The seven rooms: floors, walls and ceilings, doors, and the blocks that make them solid.

                   north
      +---------+   +-----------+   +-----------+      z = 9.6
      | kennel  |   |  court    ||  yard        |
      |         |   |           .               |      z = 6.6: the crowd's doorway
      +---/-----+---+----===----++----===-------+      z = 3.6 / 3
      |   hall                   /    store     |      z = 0: the store's door
      +---/------------===------++--------------+      z = -3 / -3.6
      |  dark   |   | gallery   |
      +---------+   +-----------+                      z = -9.6

      x = -6   -2   0           6 / 6.6        12.6

Walls are 0.3 m thick and stand back to back. The blocks reach a metre out of the rooms where nothing is behind them.
"""

from __future__ import annotations

from typing import NamedTuple

import objects.GameObjects as place
import words
from kaVel import Entity, MapRootEntity

NORTH, EAST, SOUTH, WEST = 0, 90, 180, -90

HEIGHT = 3.2
DOORWAY = (1.2, 2.2)  # width and height of the openings
ARCH = (1.4, 2.25)
WALL = 0.6            # metres between two rooms

#: The map's middle, such that openings lie on whole cells of its grids, and its extents.
MIDDLE, EXTENT = (3.25, HEIGHT / 2, 0.25), (22.0, HEIGHT, 22.0)
CELL = 0.5


class Plan(NamedTuple):
    """What a room is made of: least and greatest x and z, whole pieces of 2 m, and its kit."""

    west: float
    east: float
    south: float
    north: float
    kit: str = 'stone'

    def xs(self):
        return tuple(self.west + 1 + 2 * i for i in range(round((self.east - self.west) / 2)))

    def zs(self):
        return tuple(self.south + 1 + 2 * i for i in range(round((self.north - self.south) / 2)))

    def holds(self, x: float, z: float):
        """Whether a place lies in the room or in its half of a wall."""
        half = WALL / 2
        return self.west - half <= x <= self.east + half and self.south - half <= z <= self.north + half


PLANS = {
    'hall': Plan(-6, 6, -3, 3),
    'kennel': Plan(-6, -2, 3.6, 9.6, 'concrete'),
    'court': Plan(0, 6, 3.6, 9.6),
    'yard': Plan(6.6, 12.6, 3.6, 9.6),
    'store': Plan(6.6, 12.6, -3, 3, 'concrete'),
    'dark': Plan(-6, -2, -9.6, -3.6),
    'gallery': Plan(0, 6, -9.6, -3.6),
}

#: Room and side -> kind of opening and where it is along the wall.
OPENINGS = {
    ('hall', NORTH): (('door', -3.0), ('arch', 3.0)),
    ('hall', SOUTH): (('door', -3.0), ('arch', 3.0)),
    ('hall', EAST): (('door', 0.0),),
    ('kennel', SOUTH): (('door', -3.0),),
    ('court', SOUTH): (('arch', 3.0),),
    ('court', EAST): (('door', 6.6),),
    ('yard', WEST): (('door', 6.6),),
    ('yard', SOUTH): (('arch', 9.6),),
    ('store', NORTH): (('arch', 9.6),),
    ('store', WEST): (('door', 0.0),),
    ('dark', NORTH): (('door', -3.0),),
    ('gallery', NORTH): (('arch', 3.0),),
}

KITS = {
    'stone': (place.StoneFloor, place.StoneCeiling, place.StoneWall, {'door': place.StoneDoorway,
                                                                      'arch': place.StoneArch}),
    'concrete': (place.ConcreteFloor, place.ConcreteCeiling, place.ConcreteWall, {'door': place.ConcreteDoorway,
                                                                                  'arch': place.ConcreteArch}),
}


def build(map: MapRootEntity):
    """All rooms under their entities, by name."""
    rooms = {name: place.Entity(map, name) for name in PLANS}
    for name, plan in PLANS.items():
        _room(rooms[name], name, plan)
    _sills(rooms)
    _blocks(map)
    place.ReverbZone(rooms['kennel'], 'echo', at=(-4, 0, 6.6), size=(4, HEIGHT, 6), room='smallRoom')
    place.ReverbZone(rooms['yard'], 'echo', at=(9.6, 0, 6.6), size=(6, HEIGHT, 6), room='tunnel')
    return rooms


def roomAt(x: float, z: float):
    """The name of the room at a place; that of the hall between rooms."""
    return next((name for name, plan in PLANS.items() if plan.holds(x, z)), 'hall')


def _room(room: Entity, name: str, plan: Plan):
    floor, ceiling, plain, openings = KITS[plan.kit]
    place.tiled(room, floor, 'floor', plan.xs(), plan.zs())
    place.tiled(room, ceiling, 'ceiling', plan.xs(), plan.zs())
    for side, turn, xs, zs in ((NORTH, SOUTH, plan.xs(), (plan.north,)), (SOUTH, NORTH, plan.xs(), (plan.south,)),
                               (EAST, WEST, (plan.east,), plan.zs()), (WEST, EAST, (plan.west,), plan.zs())):
        holes = {where: kind for kind, where in OPENINGS.get((name, side), ())}
        for x in xs:
            for z in zs:
                along = x if side in (NORTH, SOUTH) else z
                kind = next((kind for where, kind in holes.items() if abs(where - along) < 0.01), None)
                (openings[kind] if kind else plain)(room, 'wall', at=(x, 0, z), turn=turn)


def _sills(rooms: dict[str, Entity]):
    """What one steps on within the walls."""
    for name, at, size in (('hall', (-3, 3.3), (1.6, 0.7)), ('hall', (3, 3.3), (1.8, 0.7)),
                           ('hall', (-3, -3.3), (1.6, 0.7)), ('hall', (3, -3.3), (1.8, 0.7)),
                           ('hall', (6.3, 0), (0.7, 1.6)), ('court', (6.3, 6.6), (0.7, 1.6)),
                           ('store', (9.6, 3.3), (1.8, 0.7))):
        place.Box(rooms[name], 'sill', at=(at[0], -0.1, at[1]), size=(size[0], 0.1, size[1]), surface='stone')


def _blocks(map: MapRootEntity):
    """What walkers and bodies meet: blocks without seams, with gaps at the openings, and lintels over those."""
    def between(name: str, x0: float, x1: float, z0: float, z1: float, y0: float = 0.0, y1: float = HEIGHT):
        place.Block(map, name, at=((x0 + x1) / 2, y0, (z0 + z1) / 2), size=(x1 - x0, y1 - y0, z1 - z0))

    def alongX(name: str, z0: float, z1: float, x0: float, x1: float, *openings: tuple[str, float]):
        for kind, where in openings:
            width, height = DOORWAY if kind == 'door' else ARCH
            between(name, x0, where - width / 2, z0, z1)
            between(name + 'Above', where - width / 2, where + width / 2, z0, z1, height)
            x0 = where + width / 2
        between(name, x0, x1, z0, z1)

    def alongZ(name: str, x0: float, x1: float, z0: float, z1: float, where: float):
        width, height = DOORWAY
        between(name, x0, x1, z0, where - width / 2)
        between(name, x0, x1, where + width / 2, z1)
        between(name + 'Above', x0, x1, where - width / 2, where + width / 2, height)

    between('northWall', -7, 13.6, 9.6, 10.6)
    between('southWall', -7, 13.6, -10.6, -9.6)
    between('westWall', -7, -6, -9.6, 9.6)
    between('eastWall', 12.6, 13.6, -9.6, 9.6)
    between('betweenKennelAndCourt', -2, 0, 3.6, 9.6)
    between('betweenDarkAndGallery', -2, 0, -9.6, -3.6)
    between('southEast', 6, 12.6, -9.6, -3)
    alongX('hallNorth', 3, 3.6, -6, 6, *OPENINGS['hall', NORTH])
    alongX('hallSouth', -3.6, -3, -6, 6, *OPENINGS['hall', SOUTH])
    alongX('storeNorth', 3, 3.6, 6, 12.6, *OPENINGS['store', NORTH])
    alongZ('storeWest', 6, 6.6, -3, 3, 0)
    alongZ('courtEast', 6, 6.6, 3.6, 9.6, 6.6)


def doors(map: MapRootEntity, pointer: place.Pointer):
    """The three iron doors and the sliding one, with frames and rail; returns the leaves by name."""
    leaves = {
        'kennelDoor': place.IronDoor(map, 'kennelDoor', at=(-3, 0, 3.3), turn=NORTH),
        'darkDoor': place.IronDoor(map, 'darkDoor', at=(-3, 0, -3.3), turn=NORTH),
        'storeDoor': place.IronDoor(map, 'storeDoor', at=(6.3, 0, 0), turn=EAST),
        'galleryDoor': place.SlidingDoor(map, 'galleryDoor', at=(3, 0, -2.9), turn=SOUTH),
    }
    place.IronDoorFrame(map, 'kennelFrame', at=(-3, 0, 3), turn=SOUTH)
    place.IronDoorFrame(map, 'darkFrame', at=(-3, 0, -3), turn=NORTH)
    place.IronDoorFrame(map, 'storeFrame', at=(6, 0, 0), turn=WEST)
    place.DoorRail(map, 'rail', at=(3 - 0.85, 2.445, -2.9), turn=NORTH)
    for name, leaf in leaves.items():
        door = leaf.getComponent('physics')
        pointer.name(leaf, words.said('workshop.slidingDoor' if name == 'galleryDoor' else 'workshop.ironDoor'),
                     lambda door=door: words.said('workshop.closeDoor' if door.open else 'workshop.openDoor'))
    return leaves


def sight(rooms: dict[str, Entity], leaves: dict[str, Entity], visitor: place.Visitor):
    """Which of the rooms are drawn, by where the visitor is and looks and which doors are open."""
    def ajar(name: str):
        door = leaves[name].getComponent('physics')
        return lambda: door.open or door.openness > 0.005

    Opening = place.Opening
    return place.Sight(rooms, roomAt, (
        Opening('hall', 'kennel', (-3, 3.3), ajar('kennelDoor')), Opening('hall', 'court', (3, 3.3)),
        Opening('hall', 'dark', (-3, -3.3), ajar('darkDoor')),
        Opening('hall', 'gallery', (3, -3.3), ajar('galleryDoor')),
        Opening('hall', 'store', (6.3, 0), ajar('storeDoor')), Opening('court', 'yard', (6.3, 6.6)),
        Opening('yard', 'store', (9.6, 3.3))), visitor)
