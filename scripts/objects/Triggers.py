"""Patterns of places that notice who enters them, and what the engine has told when something is first met."""

from __future__ import annotations

import kaVel
from objects.GameObjects import Notice, placed
from objects.Placing import Triple
from perLevel import PerLevel

BATTERY_HINT = 'R   puts a fresh battery in'

_batteryTold: PerLevel[Notice] = PerLevel()


@kaVel.pattern
def Place(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), size: Triple = (1, 1, 1)):
    """A named box in the world: its transform's position is the middle, its scale the extent in metres."""
    return placed(parent, name, at=at, scale=size)


def tutorialFourCreate(player: kaVel.AnyObject):
    """Tells how a battery is changed, once a level; the engine calls this with the player at each battery."""
    level = player.getAncestorOfType(kaVel.Reflection.Coordinator)
    if level in _batteryTold:
        return
    _batteryTold[level] = notice = Notice(level, 'batteryHint')
    kaVel.finishLoad(level.getChild('batteryHint'))
    notice.show(BATTERY_HINT)
