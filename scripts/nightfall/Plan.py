"""Where everything is: rooms, walls and the openings in them, as numbers that the other modules build from.

The guest floor lies at the height UP, the hall at 0, beside it: no room is over another.
"""

from __future__ import annotations

from typing import Literal, NamedTuple

NORTH, EAST, SOUTH, WEST = 0, 90, 180, -90

UP = 3.0         # height of the guest floor, metres
STOREY = 2.5     # height of its rooms
TOP = UP + STOREY
THICK = 0.2      # of walls

DOOR_WIDTH, DOOR_HEIGHT = 1.0, 2.13  # of openings, which a frame makes narrower by the breadth of a thumb


class Room(NamedTuple):
    """What is between the walls of a room: least and greatest x and z, the floor's height and the ceiling's, kit."""

    west: float
    east: float
    south: float
    north: float
    floor: float = UP
    ceiling: float = TOP
    kit: Literal['papered', 'plain', 'tiled', 'stone', 'shaft'] = 'papered'

    def holds(self, x: float, z: float):
        """Whether a place lies in the room or in its half of a wall."""
        half = THICK / 2
        return self.west - half <= x <= self.east + half and self.south - half <= z <= self.north + half

    def middle(self):
        return (self.west + self.east) / 2, (self.south + self.north) / 2


ROOMS = {
    'corridor': Room(0, 16, 0, 1.7),                # 16 m from west to east
    'passage': Room(14.3, 16, 1.9, 14),             # 12 m on to the north
    'eight': Room(0, 3.8, -4.5, -0.2),
    'seven': Room(4, 7.8, -4.5, -0.2),
    'six': Room(8, 11.8, -4.5, -0.2),
    'five': Room(12, 16, -4.5, -0.2),
    'four': Room(9.8, 14.1, 1.9, 5.7),
    'three': Room(9.8, 14.1, 5.9, 9.7),
    'two': Room(9.8, 14.1, 9.9, 14),
    'sewing': Room(16.2, 20.6, 1.9, 7.6, kit='plain'),
    'linen': Room(16.2, 20.6, 7.8, 10.6, kit='plain'),
    'bath': Room(16.2, 20.6, 10.8, 14, kit='tiled'),
    'landing': Room(10.5, 20.6, 14.2, 17),
    'hall': Room(10.5, 20.6, 17, 25, floor=0.0),
    'service': Room(5.8, 10.3, 17.6, 22.2, floor=0.0, ceiling=2.6, kit='stone'),
    'lift': Room(4.2, 5.6, 19.5, 20.9, floor=0.0, ceiling=2.4, kit='shaft'),
    'chute': Room(7.0, 8.2, 22.4, 23.8, floor=0.0, ceiling=1.4, kit='shaft'),
}

#: Openings of each kind: width, and heights of their lower and upper edge above the floor.
KINDS = {'door': (DOOR_WIDTH, 0.0, DOOR_HEIGHT), 'window': (1.1, 0.85, 2.15), 'hatch': (1.0, 0.0, 1.25),
         'tall': (1.5, 1.0, 4.6), 'gate': (1.2, 0.0, 2.15)}


class Hole(NamedTuple):
    """An opening in a wall: its kind, and the x or z of its middle along the wall."""

    kind: Literal['door', 'window', 'hatch', 'tall', 'gate']
    where: float


class Wall(NamedTuple):
    """A wall along x or z, from corner to corner; `one` and `other` are the rooms at its lower and higher side.

    A room that is no room ('') is the night outside.
    """

    along: Literal['x', 'z']
    start: float
    end: float
    at: float  # its middle across
    one: str
    other: str
    holes: tuple[Hole, ...] = ()
    floor: float = UP
    ceiling: float = TOP


def _door(where: float):
    return Hole('door', where)


def _window(where: float):
    return Hole('window', where)


#: All walls. They overlap at corners and leave no gap.
WALLS = (
    # the guest floor from south to north
    Wall('x', -0.2, 16.2, -4.6, '', 'eight', (_window(5.9), _window(9.9), _window(14))),
    Wall('x', -0.2, 16.2, -0.1, 'eight', 'corridor', (_door(3.0), _door(5.4), _door(9.2), _door(13.2))),
    Wall('z', -4.7, 1.9, -0.1, '', 'eight', (_window(-2.4),)),
    Wall('z', -4.5, -0.2, 3.9, 'eight', 'seven'),
    Wall('z', -4.5, -0.2, 7.9, 'seven', 'six'),
    Wall('z', -4.5, -0.2, 11.9, 'six', 'five'),
    Wall('z', -4.7, 1.9, 16.1, 'five', ''),
    Wall('x', -0.2, 14.3, 1.8, 'corridor', '', (_window(1.8), _window(4.8), _window(7.8))),
    Wall('x', 14.3, 16, 1.8, 'corridor', 'passage', (_door(15.15),)),
    Wall('x', 16, 20.8, 1.8, '', 'sewing'),
    Wall('z', 1.9, 14.1, 14.2, 'four', 'passage', (_door(3.8), _door(7.0), _door(12.6))),
    Wall('z', 1.9, 14.1, 16.1, 'passage', 'sewing', (_door(3.4), _door(9.6))),
    Wall('z', 1.7, 14.2, 9.7, '', 'four', (_window(3.8), _window(7.8), _window(11.9))),
    Wall('x', 9.8, 14.1, 5.8, 'four', 'three'),
    Wall('x', 9.8, 14.1, 9.8, 'three', 'two', (Hole('hatch', 11.75),)),
    Wall('x', 16.2, 20.6, 7.7, 'sewing', 'linen', (Hole('hatch', 19.6),)),
    Wall('x', 16.2, 20.6, 10.7, 'linen', 'bath'),
    Wall('z', 1.7, 14.1, 20.7, 'sewing', '', (_window(4.6), _window(12.4))),
    Wall('x', 9.6, 20.8, 14.1, 'two', 'landing', (_door(15.15), _door(18.2))),
    # around the landing and the hall, from the hall's floor up
    Wall('z', 14, 17, 10.4, '', 'landing'),
    Wall('z', 14, 25.2, 20.7, 'landing', '', (), 0.0, TOP),
    Wall('z', 16.9, 25.2, 10.4, 'service', 'hall', (_door(20.4),), 0.0, TOP),
    Wall('x', 10.3, 20.8, 25.1, 'hall', '', (Hole('tall', 13.0), Hole('tall', 16.4)), 0.0, TOP),
    Wall('x', 10.5, 20.6, 16.9, '', 'hall', (), 0.0, UP),
    # the service passage
    Wall('x', 5.6, 10.3, 17.5, '', 'service', (), 0.0, 2.6),
    Wall('x', 5.6, 10.3, 22.3, 'service', 'chute', (Hole('hatch', 7.6),), 0.0, 2.6),
    Wall('z', 17.4, 22.4, 5.7, 'lift', 'service', (Hole('gate', 20.2),), 0.0, 2.6),
    # the lift's cage and the mouth of the chute
    Wall('x', 4.0, 5.6, 19.4, '', 'lift', (), 0.0, 2.6),
    Wall('x', 4.0, 5.6, 21.0, 'lift', '', (), 0.0, 2.6),
    Wall('z', 19.3, 21.1, 4.1, '', 'lift', (), 0.0, 2.6),
    Wall('z', 22.4, 24.0, 6.9, '', 'chute', (), 0.0, 1.6),
    Wall('z', 22.4, 24.0, 8.3, 'chute', '', (), 0.0, 1.6),
    Wall('x', 6.8, 8.4, 23.9, 'chute', '', (), 0.0, 1.6),
)

#: The stairs: steps, height and depth of one, x of their middle, their width, z of their head and foot.
STEPS, RISE, TREAD = 16, UP / 16, 0.3
STAIRS_X, STAIRS_WIDTH, STAIRS_HEAD = 19.9, 1.3, 17.0
STAIRS_FOOT = STAIRS_HEAD + (STEPS - 1) * TREAD

#: Doors by name: x and z of the middle, the way they face, and the rooms they join.
DOORS = {
    'doorEight': (3.0, -0.1, SOUTH, 'eight', 'corridor'),
    'doorSeven': (5.4, -0.1, SOUTH, 'seven', 'corridor'),
    'doorSix': (9.2, -0.1, SOUTH, 'six', 'corridor'),
    'doorFive': (13.2, -0.1, SOUTH, 'five', 'corridor'),
    'passageDoor': (15.15, 1.8, NORTH, 'corridor', 'passage'),
    'doorFour': (14.2, 3.8, WEST, 'four', 'passage'),
    'doorThree': (14.2, 7.0, WEST, 'three', 'passage'),
    'doorTwo': (14.2, 12.6, WEST, 'two', 'passage'),
    'sewingDoor': (16.1, 3.4, EAST, 'sewing', 'passage'),
    'linenDoor': (16.1, 9.6, EAST, 'linen', 'passage'),
    'landingDoor': (15.15, 14.1, NORTH, 'passage', 'landing'),
    'bathDoor': (18.2, 14.1, NORTH, 'bath', 'landing'),
    'serviceDoor': (10.4, 20.4, WEST, 'hall', 'service'),
}


def roomAt(x: float, z: float):
    """The name of the room at a place; that of the nearest one outside of all."""
    inside = next((name for name, room in ROOMS.items() if room.holds(x, z)), None)
    if inside:
        return inside

    def distance(name: str):
        room = ROOMS[name]
        return (max(room.west - x, 0, x - room.east) ** 2 + max(room.south - z, 0, z - room.north) ** 2)

    return min(ROOMS, key=distance)
