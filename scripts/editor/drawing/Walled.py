"""The walls that stand in a level, as the plans of their pieces: for tools that draw onto them and cut into them."""

from __future__ import annotations

import importlib
import math
from typing import TYPE_CHECKING, Any, NamedTuple

import kaVel
from editor.edits.Refused import Refused
from editor.source.Pieces import Piece

if TYPE_CHECKING:
    from editor.Editor import Editor
    from objects.house.Plans import Plan, Point

#: Patterns that have walls, and the argument of each that has the lines within it.
LINES = {'Walls': 'plan', 'Room': 'partitions'}


class Walled:
    """A piece of walls: its plan, where that lies in the world, and the numbers that the piece has for its walls.

    A plan's places are told from the piece's own, x to the right and z ahead of it.
    """

    def __init__(self, piece: Piece):
        self.piece, self.arguments = piece, piece.arguments
        self.at, self.turn = self.arguments['at'], math.radians(self.arguments['turn'])
        plan, numbers = importlib.import_module('objects.house.Rooms').planOf(piece.patternName, self.arguments)
        self.plan: Plan = plan
        self.numbers: dict[int, int] = {number: wall for wall, number in numbers.items()}

    @property
    def floor(self) -> float:
        """Height of the walls' foot, metres."""
        return self.at[1]

    @property
    def openings(self) -> list[dict[str, Any]]:
        """What is cut into the walls, as the piece has it."""
        return [dict(each) for each in self.arguments['openings']]

    def inPlan(self, x: float, z: float) -> Point:
        """A place of the world on the plan."""
        dx, dz, c, s = x - self.at[0], z - self.at[2], math.cos(self.turn), math.sin(self.turn)
        return dx * c - dz * s, dx * s + dz * c

    def inWorld(self, spot: Point, height: float = 0.0) -> kaVel.Vec4:
        """A place of the plan in the world, so high above the foot of the walls."""
        c, s = math.cos(self.turn), math.sin(self.turn)
        return kaVel.Vec4(self.at[0] + spot[0] * c + spot[1] * s, self.at[1] + height,
                          self.at[2] + spot[1] * c - spot[0] * s, 1)

    def nearest(self, x: float, z: float, within: float) -> Spot | None:
        """The wall that a place of the world lies at, within so many metres of its middle."""
        spot, found = self.inPlan(x, z), None
        for number, wall in enumerate(self.plan.walls):
            along, left = wall.measure(spot)
            if abs(left) <= within and 0 <= along <= wall.length:
                within, found = abs(left), Spot(self, number, along)
        return found

    def holds(self, spot: Point) -> bool:
        """Whether a place of the plan lies within the outline of a room, or on it."""
        plans = importlib.import_module('objects.house.Plans')
        return any(plans.isOn(wall, spot) for wall in self.plan.walls) or any(
            plans.holds(room, spot) for room in self.plan.rooms)

    def touches(self, spot: Point) -> bool:
        """Whether a place of the plan lies on a wall."""
        plans = importlib.import_module('objects.house.Plans')
        return any(plans.isOn(wall, spot) for wall in self.plan.walls)


class Spot(NamedTuple):
    """A place at a wall: the wall's number on the plan, and metres along it."""

    walled: Walled
    wall: int
    along: float


def allOf(editor: Editor) -> list[Walled]:
    """The walls of a level that are seen; what cannot be read is left out."""
    found: list[Walled] = []
    for piece in editor.pieces.all():
        walled = None if piece.hidden else of(piece)
        if walled:
            found.append(walled)
    return found


def of(piece: Piece | None) -> Walled | None:
    """The walls of a piece; None for one that has none."""
    if not piece or piece.patternName not in LINES:
        return None
    try:
        return Walled(piece)
    except (Refused, ValueError, TypeError, KeyError):
        return None
