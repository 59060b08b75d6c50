"""What happens one after another: steps, and waits between them on the level's clock.

    Sequences.play(map, dimTheLamp, 2.0, strikeTheClock, Until(doorIsShut, atMost=20), musicEnds)
"""

from __future__ import annotations

import math
from typing import Callable, NamedTuple, Union

import kaVel
from objects.Placing import LevelClock, placed
from perLevel import PerLevel, levelOf


class Until(NamedTuple):
    """A wait for something to be so, or for the end of so many seconds."""

    isSo: Callable[[], object]
    atMost: float = math.inf


#: Something that is done, seconds that pass, or a wait.
Step = Union[Callable[[], object], float, Until]


class Sequence:
    """Steps under way; `stop` leaves out those that are left."""

    def __init__(self, steps: tuple[Step, ...], now: float):
        self._steps = iter(steps)
        self._wait = Until(lambda: True)
        self._end = now
        self.over = False

    def stop(self):
        """Ends it where it is."""
        self.over = True

    def advance(self, now: float):
        """Does all that is due. A wait begins when the one before it ended, whenever frames come."""
        while not self.over and (now >= self._end or self._wait.isSo()):
            self._next(min(now, self._end))

    def _next(self, now: float):
        step = next(self._steps, None)
        if step is None:
            self.over = True
        elif isinstance(step, Until):
            self._wait, self._end = step, now + step.atMost
        elif isinstance(step, (int, float)):
            self._wait, self._end = Until(lambda: False), now + step
        else:
            self._wait, self._end = Until(lambda: True), now
            step()


class _Stage:
    """The sequences of one level."""

    def __init__(self, level: kaVel.Coordinator):
        entity = placed(level, 'sequences')
        self.clock = LevelClock(entity)
        self.sequences: list[Sequence] = []
        kaVel.addComponent(entity, 'scriptedSequence', 'ScriptComponent', frameCallback=self.doFrame)
        kaVel.finishLoad(entity)

    def doFrame(self):
        now = self.clock.seconds()
        for sequence in tuple(self.sequences):
            sequence.advance(now)
        if any(sequence.over for sequence in self.sequences):
            self.sequences = [sequence for sequence in self.sequences if not sequence.over]


_stages: PerLevel[_Stage] = PerLevel()


def play(anything: kaVel.Object, *steps: Step) -> Sequence:
    """Begins a sequence in the level that an object stands in; its first step runs in the next frame."""
    level = levelOf(anything)
    if level not in _stages:
        _stages[level] = _Stage(level)
    stage = _stages[level]
    sequence = Sequence(steps, stage.clock.seconds())
    stage.sequences.append(sequence)
    return sequence
