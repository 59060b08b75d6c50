"""What one may do who has died: the level shows why, and this is what stands below it."""

from __future__ import annotations

from typing import Callable

import kaVel
import saves
from perLevel import levelOf
from screens import Kit as kit
from screens import Screens, Ways

PAUSES = False
VEIL = 0.0


def build(menu: kaVel.Entity, comeBack: Callable[[], object]):
    level = levelOf(menu)
    column = kit.Column(menu, 'column', anchor='bottom', width=620, gap=2, margin=(0, 0, 0, 60))
    kit.Button(column, 'safe', words='death.safe', size='large', align='center', pressed=comeBack)
    if saves.listed():
        kit.Button(column, 'load', words='menu.load', size='large', align='center',
                   pressed=lambda: Screens.open(level, 'Saves'))
    kit.Button(column, 'leave', words='pause.leave', size='large', align='center',
               pressed=lambda: Ways.toTitle(level))


def back(level: kaVel.Coordinator):
    """Nobody gets away from it by going back: the focus stays where it is."""


def sample(level: kaVel.Coordinator) -> dict[str, object]:
    """What it may be opened with to be looked at."""
    return {'comeBack': lambda: Screens.close(level)}
