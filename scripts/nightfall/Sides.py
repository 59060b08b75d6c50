"""The sides of rooms: which parts of walls they are made of, and where something stands or hangs at them."""

from __future__ import annotations

from typing import Iterator, Literal, NamedTuple

from nightfall.Plan import EAST, KINDS, NORTH, SOUTH, THICK, WALLS, WEST, Room, Wall
from objects.Placing import Triple

Side = Literal['north', 'east', 'south', 'west']
SIDES: tuple[Side, ...] = ('north', 'east', 'south', 'west')

HALF = THICK / 2


class Piece(NamedTuple):
    """A part of a side of a room: from where to where along it, and from which height to which."""

    start: float
    end: float
    low: float
    high: float


def plane(room: Room, side: Side):
    """Along which axis a side of a room runs, and where its face is across."""
    return {'north': ('x', room.north, 1), 'south': ('x', room.south, -1),
            'east': ('z', room.east, 1), 'west': ('z', room.west, -1)}[side]


def wallsOf(room: Room, side: Side) -> Iterator[Wall]:
    """The parts of walls that are a side of a room, cut to it."""
    along, face, out = plane(room, side)
    start, end = (room.west, room.east) if along == 'x' else (room.south, room.north)
    for wall in WALLS:
        low, high = max(wall.floor, room.floor), min(wall.ceiling, room.ceiling)
        first, last = max(wall.start, start), min(wall.end, end)
        if wall.along == along and abs(wall.at - (face + out * HALF)) < 0.02 and last - first > 0.3 and high > low:
            holes = tuple(hole for hole in wall.holes if first < hole.where < last)
            yield wall._replace(start=first, end=last, holes=holes, floor=low, ceiling=high)


def pieces(wall: Wall) -> Iterator[Piece]:
    """What is solid of a wall: between its openings, and below and above them."""
    start = wall.start
    for hole in sorted(wall.holes, key=lambda hole: hole.where):
        width, low, high = KINDS[hole.kind]
        left, right = hole.where - width / 2, hole.where + width / 2
        yield Piece(start, left, wall.floor, wall.ceiling)
        if low > 0:
            yield Piece(left, right, wall.floor, wall.floor + low)
        yield Piece(left, right, wall.floor + high, wall.ceiling)
        start = right
    yield Piece(start, wall.end, wall.floor, wall.ceiling)


def turnOf(side: Side):
    """Which way a thing looks that stands with its back at a side of a room."""
    return {'north': SOUTH, 'south': NORTH, 'east': WEST, 'west': EAST}[side]


def onSide(room: Room, side: Side, where: float, height: float = 0.0, off: float = 0.0) -> Triple:
    """A place at a side of a room: `where` along it, so high above the floor, so far off the wall."""
    along, face, out = plane(room, side)
    across = face - out * off
    return (where, room.floor + height, across) if along == 'x' else (across, room.floor + height, where)
