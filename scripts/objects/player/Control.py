"""What the keyboard and the mouse ask of one who looks around and moves about."""

import functools
import math
from typing import Callable, Mapping, Sequence

import bindings
import kaVel

LOOK_SPEED = 2.4                  # radians for a mouse move across the whole window
STEEPEST_PITCH = math.radians(85)


class Control:
    """What is held, and where the mouse has turned the view; where nobody plays, the key for it ends the game.

    Lives as its level does.
    """

    def __init__(self, coordinator: kaVel.Coordinator, turn: float = 0.0, pitch: float = 0.0):
        self.heldKeys = set()
        self.look(turn, pitch)
        office = kaVel.officeOf(coordinator)
        kaVel.subscribe('KeyDownMessage', self.handleKeyDown, office)
        kaVel.subscribe('KeyUpMessage', self.handleKeyUp, office)
        kaVel.subscribe('MouseMove', self.handleMouseMove, office)
        if not coordinator.getChild('Player'):  # whose key for it opens the pause screen
            kaVel.onKey(coordinator, 'quit', lambda: kaVel.getSystem('GameLoopSystem').quit(0))

    def looking(self) -> tuple[float, float]:
        """Turn and pitch of the view, as `look` takes them."""
        return math.degrees(self.yaw), math.degrees(self.pitch)

    def look(self, turn: float, pitch: float):
        """Turns the view, degrees; a positive pitch looks down."""
        self.yaw, self.pitch = math.radians(turn), math.radians(pitch)

    def handleKeyDown(self, message: kaVel.IReflectedThing, key: int):
        self.heldKeys.add(key)

    def handleKeyUp(self, message: kaVel.IReflectedThing, key: int):
        self.heldKeys.discard(key)

    def isHeld(self, action: str):
        """Whether a key of an action is down."""
        return not self.heldKeys.isdisjoint(bindings.keysOf(action))

    def heldMoves(self, moves: Mapping[str, Sequence[int]]):
        """Sum of the directions whose actions are held."""
        held = [direction for action, direction in moves.items() if self.isHeld(action)]
        return [sum(axis) for axis in zip(*held)] or [0] * len(next(iter(moves.values())))

    def handleMouseMove(self, message: kaVel.IReflectedThing, x: float, y: float):
        self.yaw = (self.yaw + x * LOOK_SPEED) % math.tau
        self.pitch = min(STEEPEST_PITCH, max(-STEEPEST_PITCH, self.pitch + y * LOOK_SPEED))

    def orientation(self):
        """Of the view: the turn about y after the pitch about x."""
        cy, sy = math.cos(self.yaw / 2), math.sin(self.yaw / 2)
        cp, sp = math.cos(self.pitch / 2), math.sin(self.pitch / 2)
        return kaVel.Quaternion(cy * cp, cy * sp, sy * cp, -sy * sp)


def onPlaceKeys(level: kaVel.Object, count: int, goTo: Callable[[int], object]):
    """Has the number keys of a level call `goTo(number)`, from 1 to `count`; keys beyond the ninth there are none."""
    for number in range(1, min(count, 9) + 1):
        kaVel.onKey(level, 'place%d' % number, functools.partial(goTo, number))
