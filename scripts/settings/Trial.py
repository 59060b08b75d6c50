"""Changes that can lock a player out come back by themselves, unless he says in time that he wants them.

    tryOut('windowMode', 'fullScreen')  # in force at once, kept nowhere
    trial().left()                      # seconds until it comes back
    trial().confirm()                   # from now on it is kept

A game that ends meanwhile begins the next time as it was before.
"""

from __future__ import annotations

from typing import Any

import GameConfig
import kaVel
from settings import Store

SECONDS = 10.0


class Trial:
    """Settings that are being tried out, and what they were before."""

    def __init__(self, seconds: float):
        self.before: dict[str, Any] = {}
        self.until = _now() + seconds

    def left(self) -> float:
        """Seconds until it comes back by itself; 0 when it is over."""
        return max(0.0, self.until - _now()) if _trial is self else 0.0

    def isOver(self) -> bool:
        return _trial is not self

    def confirm(self) -> None:
        """Keeps what is tried out."""
        if self._end():
            for name in self.before:
                Store.keep(name, Store.get(name))

    def takeBack(self) -> None:
        """Gives everything the values that it had."""
        if self._end():
            for name, value in self.before.items():
                Store.show(name, value)

    def _end(self) -> bool:
        global _trial
        wasUnderWay, _trial = _trial is self, None if _trial is self else _trial
        return wasUnderWay


_trial: Trial | None = None


def tryOut(name: str, value: Any, seconds: float = SECONDS) -> Trial:
    """Puts a value in force until it is confirmed or the time is up; checked as by `set`.

    Another one that is tried out meanwhile joins it, and both have the whole time again.
    """
    global _trial
    before = Store.get(name)
    Store.show(name, value)
    if not _trial:
        _trial = Trial(seconds)
    _trial.before.setdefault(name, before)
    _trial.until = _now() + seconds
    return _trial


def trial() -> Trial | None:
    """What is being tried out now."""
    return _trial


def doFrame() -> None:
    """Takes back what nobody confirmed in time. Frame step, of every game."""
    if _trial and _now() >= _trial.until:
        kaVel.log('Nobody confirmed %s: it is as before.' % ' and '.join(sorted(_trial.before)))
        _trial.takeBack()


def _now() -> float:
    """Seconds since some moment; a level that stands still holds nothing up."""
    if GameConfig.headless:
        return kaVel.getSystem('GameLoopSystem').frameNumber / GameConfig.fixedFrameRate
    time = kaVel.getSystem('TimeSystem')
    return time.toSeconds(time.now())
