"""The guest floor and its stairs as one who walks through them would draw them: north to the right, east down."""

from __future__ import annotations

from typing import Callable

import kaVel
import words
from nightfall.Plan import KINDS, ROOMS, STAIRS_FOOT, STAIRS_HEAD, STAIRS_WIDTH, STAIRS_X, TREAD, WALLS, Room, Wall
from objects.Placing import Pair
from objects.player.Charts import Chart, Line
from objects.player.Charts import Room as Drawn

WEST, SOUTH = -0.6, -5.0  # what lies at the plan's upper left corner
SIZE = 30.6, 22.0         # metres to the right and down
NEAR = 0.3                # from a room's edge to the middle of its wall
NARROWEST = 1.2           # metres that a name needs
PANE, DASH = 0.16, 0.5    # metres: between the lines of a window, and of one that is open


def build(level: kaVel.Coordinator, roomNow: Callable[[], str]) -> Chart:
    return Chart(level, SIZE, {name: _room(name, room) for name, room in ROOMS.items()}, roomNow)


def _at(x: float, z: float) -> Pair:
    return z - SOUTH, x - WEST


def _room(name: str, room: Room) -> Drawn:
    lines: list[Line] = []
    for at, inwards in ((room.south, 1.0), (room.north, -1.0)):
        lines += [(_at(a, b), _at(c, d)) for (a, b), (c, d) in _edge('x', room.west, room.east, at, inwards, room)]
    for at, inwards in ((room.west, 1.0), (room.east, -1.0)):
        lines += [(_at(b, a), _at(d, c)) for (a, b), (c, d) in _edge('z', room.south, room.north, at, inwards, room)]
    if name == 'hall':
        lines += _stairs()
    x, z = room.middle()
    width = room.north - room.south
    named = width > NARROWEST and name != 'corridor'
    return Drawn(tuple(lines), words.said('nightfall.chart.' + name) if named else '', _at(x, z), width)


def _edge(axis: str, start: float, end: float, at: float, inwards: float, room: Room) -> list[Line]:
    """The lines along one edge of a room, as places along it and across."""
    wall = next((wall for wall in WALLS if _isOf(wall, axis, start, end, at, room)), None)
    if not wall:
        count = max(1, round((end - start) / DASH / 2))
        step = (end - start) / count
        return [((start + step * n, at), (start + step * (n + 0.5), at)) for n in range(count)]
    lines: list[Line] = []
    begin = start
    for hole in sorted(wall.holes, key=lambda hole: hole.where):
        half = KINDS[hole.kind][0] / 2
        if not start < hole.where < end:
            continue
        lines.append(((begin, at), (hole.where - half, at)))
        begin = hole.where + half
        if hole.kind in ('window', 'tall'):
            lines += [((hole.where - half, at + off), (begin, at + off)) for off in (0.0, -inwards * PANE)]
        elif hole.kind == 'hatch':
            lines.append(((hole.where - half, at), (begin, at)))
        elif inwards > 0:  # the leaf is drawn by the one of the two rooms
            lines.append(((hole.where - half, at), (hole.where + half * 0.5, at + half)))
    return lines + [((begin, at), (end, at))]


def _isOf(wall: Wall, axis: str, start: float, end: float, at: float, room: Room) -> bool:
    """Whether a wall stands along the edge of a room, on its floor."""
    return (wall.along == axis and abs(wall.at - at) < NEAR and wall.start < (start + end) / 2 < wall.end
            and wall.ceiling > room.floor + 1.0)


def _stairs() -> list[Line]:
    near, far = STAIRS_X - STAIRS_WIDTH / 2, STAIRS_X + STAIRS_WIDTH / 2
    treads = round((STAIRS_FOOT - STAIRS_HEAD) / TREAD)
    return [(_at(near, STAIRS_HEAD + TREAD * n), _at(far, STAIRS_HEAD + TREAD * n)) for n in range(0, treads + 1, 2)] \
        + [(_at(near, STAIRS_HEAD), _at(near, STAIRS_FOOT))]
