"""The cellar's three rooms: floors, walls and ceilings, and the blocks that make them solid.

                north
      +----------------------+        z = 10.6
      |  updraught   balls   |
      |       cistern        |
      +-------=====----------+        z = 4.6 / 4
         | boiler     chute  |
         /   workshop        +-----------+   z = 2
         |           bench   /  store    |
         |   crates          |           |
         +-------------------+-----------+   z = -4

      x = -6  -4            4           10.6

Walls are 0.3 m thick and stand back to back. The blocks reach a metre out of the rooms where nothing is behind them, so
that nothing gets through however fast it comes.
"""

from __future__ import annotations

from typing import Mapping

import objects.GameObjects as place
from kaVel import Entity, MapRootEntity

NORTH, EAST, SOUTH, WEST = 0, 90, 180, -90

HEIGHT = 3.2
DOOR_Z = -1.0    # of the doorways in the workshop's west and east wall
ARCH_X = -1.0    # of the arch to the cistern
DOORWAY = (1.2, 2.2)  # width and height of the openings
ARCH = (1.4, 2.25)


def build(map: MapRootEntity):
    """All three rooms under their entities; returns those by name."""
    rooms = {name: place.Entity(map, name) for name in ('workshop', 'store', 'cistern')}
    workshop(rooms['workshop'])
    store(rooms['store'])
    cistern(rooms['cistern'])
    blocks(map)
    place.ReverbZone(rooms['store'], 'echo', at=(7.6, 0, -1), size=(6, HEIGHT, 6), room='smallRoom')
    place.ReverbZone(rooms['cistern'], 'echo', at=(-1, 0, 7.6), size=(10, HEIGHT, 6), room='tunnel')
    return rooms


def workshop(room: Entity):
    xs = zs = (-3, -1, 1, 3)
    place.tiled(room, place.StoneFloor, 'floor', xs, zs)
    place.tiled(room, place.StoneCeiling, 'ceiling', xs, zs)
    place.wall(room, 'north', xs, (4,), SOUTH, place.StoneWall, place.StoneArch, ARCH_X)
    place.wall(room, 'south', xs, (-4,), NORTH, place.StoneWall)
    place.wall(room, 'west', (-4,), zs, EAST, place.StoneWall, place.StoneDoorway, DOOR_Z)
    place.wall(room, 'east', (4,), zs, WEST, place.StoneWall, place.StoneDoorway, DOOR_Z)
    for x in (-4.3, 4.3):
        place.Box(room, 'sill', at=(x, -0.1, DOOR_Z), size=(0.7, 0.1, 1.6), surface='stone')
    place.Box(room, 'sill', at=(ARCH_X, -0.1, 4.3), size=(1.8, 0.1, 0.7), surface='stone')
    for z in (-2.0, 2.0):
        place.Box(room, 'beam', at=(0, 2.86, z), size=(8.2, 0.34, 0.26), surface='wood', repeats=1.0)
    for x in (-3, -1, 1, 3):
        place.PipeRun(room, 'pipes', at=(x, HEIGHT, 0.2))


def store(room: Entity):
    xs, zs = (5.6, 7.6, 9.6), (-3, -1, 1)
    place.tiled(room, place.ConcreteFloor, 'floor', xs, zs)
    place.tiled(room, place.ConcreteCeiling, 'ceiling', xs, zs)
    place.wall(room, 'north', xs, (2,), SOUTH, place.ConcreteWall)
    place.wall(room, 'south', xs, (-4,), NORTH, place.ConcreteWall)
    place.wall(room, 'west', (4.6,), zs, EAST, place.ConcreteWall, place.ConcreteDoorway, DOOR_Z)
    place.wall(room, 'east', (10.6,), zs, WEST, place.ConcreteWall)


def cistern(room: Entity):
    xs, zs = (-5, -3, -1, 1, 3), (5.6, 7.6, 9.6)
    place.tiled(room, place.StoneFloor, 'floor', xs, zs)
    place.tiled(room, place.StoneCeiling, 'ceiling', xs, zs)
    place.wall(room, 'north', xs, (10.6,), SOUTH, place.StoneWall)
    place.wall(room, 'south', xs, (4.6,), NORTH, place.StoneWall, place.StoneArch, ARCH_X)
    place.wall(room, 'west', (-6,), zs, EAST, place.StoneWall)
    place.wall(room, 'east', (4,), zs, WEST, place.StoneWall)
    place.VaultRib(room, 'rib', at=(-1, 0, 7.6), turn=EAST)


def blocks(map: MapRootEntity):
    """What walkers and bodies meet: one block a wall, for at a seam between two a body could catch.

    Floor and ceiling are the map's own.
    """
    def between(name: str, x0: float, x1: float, z0: float, z1: float, y0: float = 0.0, y1: float = HEIGHT):
        place.Block(map, name, at=((x0 + x1) / 2, y0, (z0 + z1) / 2), size=(x1 - x0, y1 - y0, z1 - z0))

    between('southWall', -6, 12, -5, -4)
    between('storeEast', 10.6, 11.6, -4, 2)
    between('storeNorth', 4.6, 11.6, 2, 3)
    between('cisternWest', -7, -6, 4.6, 10.6)
    between('cisternEast', 4, 5, 4.6, 10.6)
    between('cisternNorth', -7, 5, 10.6, 11.6)
    # The walls with openings: the parts beside them, and what is above.
    half = ARCH[0] / 2
    between('archWest', -7, ARCH_X - half, 4, 4.6)
    between('archEast', ARCH_X + half, 5, 4, 4.6)
    between('archAbove', ARCH_X - half, ARCH_X + half, 4, 4.6, ARCH[1])
    half = DOORWAY[0] / 2
    for name, x0, x1 in (('west', -4.6, -4), ('east', 4, 4.6)):
        between(name + 'WallSouth', x0, x1, -4, DOOR_Z - half)
        between(name + 'WallNorth', x0, x1, DOOR_Z + half, 4)
        between(name + 'WallAbove', x0, x1, DOOR_Z - half, DOOR_Z + half, DOORWAY[1])
    between('behindLockedDoor', -5.6, -4.6, DOOR_Z - 1, DOOR_Z + 1)


def sight(rooms: Mapping[str, Entity], leaves: Mapping[str, Entity], visitor: place.Visitor):
    """Which of the rooms are drawn, by where the visitor is and looks and which doors are open."""
    hinged, sliding = (leaves[name].getComponent('physics') for name in ('storeDoor', 'cisternDoor'))
    return place.Sight(rooms, lambda x, z: 'store' if x > 4.3 else 'cistern' if z > 4.3 else 'workshop',
                       (place.Opening('workshop', 'store', (4.3, DOOR_Z), lambda: abs(hinged.prevAngle) > 0.005),
                        place.Opening('workshop', 'cistern', (ARCH_X, 4.3),
                                      lambda: abs(sliding.currentOffset) > 0.005)), visitor)
