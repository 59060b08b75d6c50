"""Stops a level and lets it go on: what runs in it, and its clock, from which all that waits in it tells the time.

A clock that went on would have everything due at once when the level goes on.
"""

from __future__ import annotations

from typing import Any

import kaVel
from perLevel import PerLevel

#: Parts of a clock's scale.
PARTS, SHIFT = 256, 8

_scales: PerLevel[int] = PerLevel()  # of clocks that do not run as the wall's, in PARTS
_still: PerLevel[bool] = PerLevel()


def stop(level: kaVel.Coordinator):
    """Stops a level and its clock at once; what runs in a stopped level goes on."""
    level.loopState = kaVel.Coordinator.LoopControlState.LOOP_STOP
    _still[level] = True
    _give(level)


def goOn(level: kaVel.Coordinator):
    """Lets a level go on from where it stopped."""
    level.loopState = kaVel.Coordinator.LoopControlState.LOOP_RUN
    _still[level] = False
    _give(level)


def scale(level: kaVel.Coordinator, factor: float):
    """Has the clock of a level run faster or slower than the wall's; in one that stands still, once it goes on."""
    _scales[level] = round(factor * PARTS)
    _give(level)


def _give(level: kaVel.Coordinator):
    clock: Any = level.getTimerHandle('master')
    clock.setScaling(0 if _still.get(level) else _scales.get(level, PARTS), SHIFT)
