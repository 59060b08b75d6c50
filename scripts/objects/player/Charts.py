"""The plan that a player draws of where he has been: room by room, with a pen, as each is seen.

    Chart(level, size=(30, 21), rooms={'hall': Room(lines, 'hall', (4, 3), 5)}, roomNow=lambda: 'hall')

Places on a plan are metres to the right and down. The notebook shows the chart of its level, see `chartOf`.
"""

from __future__ import annotations

import math
import random
from typing import Callable, Mapping, NamedTuple

import kaVel
import words
from objects.Placing import Pair, onFrame, placed
from perLevel import PerLevel
from saves.Kept import keepPart

#: A line of a wall, a door or a stair, from place to place.
Line = tuple[Pair, Pair]

LOOKED = 15                # frames from one look at the room to the next
PIECE, WANDERS = 0.6, 0.035  # metres: a stroke's pieces, and how far the hand wanders from one to the next
BEYOND = 0.09              # metres that a stroke may go on past its end


class Room(NamedTuple):
    """What is drawn of a room: its lines, and its name in the middle of a place, within a width; '' for none."""

    lines: tuple[Line, ...]
    name: words.Told
    middle: Pair
    width: float


class Chart:
    """The plan of one level, as far as the player has seen it."""

    def __init__(self, level: kaVel.Coordinator, size: Pair, rooms: Mapping[str, Room], roomNow: Callable[[], str]):
        self.size, self.rooms, self.roomNow = size, rooms, roomNow
        self.seen: list[str] = []
        self.frame = 0
        keepPart(level, 'chart', lambda: self.seen, self.become)
        onFrame(placed(level, 'chart'), self.doFrame)
        _charts[level] = self

    def become(self, seen: list[str]):
        """Shows the rooms that another one had seen."""
        self.seen = [name for name in seen if name in self.rooms]

    def doFrame(self):
        self.frame += 1
        if self.frame % LOOKED == 1:
            room = self.roomNow()
            if room in self.rooms and room not in self.seen:
                self.seen.append(room)

    def drawOn(self, sketch: kaVel.SketchComponent, unit: float, letters: float):
        """Draws what has been seen, a metre `unit` long, with names of a size."""
        for name in self.seen:
            room, hand = self.rooms[name], random.Random(name)
            for line in room.lines:
                for (x, y), (toX, toY) in _byHand(line, hand):
                    sketch.addStroke(kaVel.Vec4(x * unit, y * unit, toX * unit, toY * unit))
            x, y = room.middle
            sketch.addText(str(room.name), kaVel.Vec4(x * unit, y * unit, room.width * unit, letters))


_charts: PerLevel[Chart] = PerLevel()


def chartOf(level: kaVel.Coordinator) -> Chart | None:
    """The chart of a level; None where nobody draws one."""
    return _charts.get(level)


def _byHand(line: Line, hand: random.Random) -> list[Line]:
    """The pieces in which a hand draws a line: nearly straight, and nearly from end to end."""
    (x, y), (toX, toY) = line
    length = math.hypot(toX - x, toY - y)
    if length <= 0.0:
        return []
    alongX, alongY = (toX - x) / length, (toY - y) / length
    start, end = -hand.uniform(0, BEYOND), length + hand.uniform(0, BEYOND)
    count = max(1, round((end - start) / PIECE))
    points, off = [], hand.uniform(-WANDERS, WANDERS)
    for number in range(count + 1):
        at = start + (end - start) * number / count
        points.append((x + alongX * at - alongY * off, y + alongY * at + alongX * off))
        off = 0.6 * off + hand.uniform(-WANDERS, WANDERS)
    return list(zip(points, points[1:]))
