"""Counters that script and play change, and the screen shows for a while when they do: plates found, bells rung.

    plates = place.Counter(level, 'plates', words.said('workshop.plates'), most=3, full=openTheDoor)
    volume.setInteractFunc(lambda player: plates.add())

A counter is kept with the game.
"""

from __future__ import annotations

from typing import Callable

import kaVel
import words
from objects.Placing import LevelClock, Pair
from objects.things.Drawn import Text
from saves.Kept import keepPart

COLOR = (0.86, 0.80, 0.66)
STAYS, FADES = 3.0, 1.0  # seconds


class Counter:
    """A number from 0 to `most` with a name; `full` is called once when it gets there."""

    def __init__(self, level: kaVel.Coordinator, name: str, told: words.Told, most: int,
                 full: Callable[[], object] | None = None, at: Pair = (0.5, 0.12)):
        self.told, self.most, self.full = told, most, full
        self.count = 0
        line = Text(level, name, at=at, size=0.020, color=(*COLOR, 0), anchor=('H_CENTER', 'V_CENTER'))
        self.graphics, self.clock = line.getComponent('graphics2'), LevelClock(line)
        self.until = 0.0
        kaVel.addComponent(line, 'interactCounter', 'ScriptComponent')
        kaVel.addComponent(line, 'hud', 'ScriptComponent', frameCallback=self.doFrame)
        keepPart(level, 'counter.' + name, lambda: self.count, self._become)

    def add(self, amount: int = 1):
        """Counts on, or back by a negative amount, within its bounds; and is shown."""
        before = self.count
        self.count = min(max(self.count + amount, 0), self.most)
        self.graphics.text = words.text('counter', name=str(self.told), count=words.number(self.count),
                                        most=words.number(self.most))
        self.until = self.clock.seconds() + STAYS
        if self.full and before < self.most == self.count:
            self.full()

    def _become(self, count: int):
        self.count = count

    def doFrame(self):
        alpha = min(1.0, max(0.0, 1.0 + (self.until - self.clock.seconds()) / FADES)) if self.until else 0.0
        if alpha != self.graphics.color.w:
            self.graphics.color = kaVel.Vec4(*COLOR, alpha)
