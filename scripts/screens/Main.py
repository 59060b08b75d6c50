"""The main menu, over the room of the title."""

from __future__ import annotations

import kaVel
import mods
import saves
from perLevel import levelOf
from screens import Kit as kit
from screens import Screens, Ways

PAUSES = False
VEIL = 0.0


def build(menu: kaVel.Entity):
    level = levelOf(menu)
    column = kit.Column(menu, 'column', anchor='left', width=560, gap=2)
    kit.Label(column, 'name', literal='Mornal', size=132, color='candle')
    kit.Column(column, 'rule', anchor='left', look='ruled', width=500, height=2)
    kit.Label(column, 'line', words='main.line', size='small', color='faded', margin=(4, 8, 0, 30))

    last = saves.newest()
    if last:
        kit.Button(column, 'continue', words='menu.continue', size='large', pressed=lambda: _goOn(level))
        kit.Label(column, 'place', literal=saves.placeOf(last), size='small', color='faded', margin=(26, 0, 0, 10))
    kit.Button(column, 'newGame', words='menu.newGame', size='large', pressed=Ways.begin)
    if saves.listed():
        kit.Button(column, 'load', words='menu.load', size='large', pressed=lambda: Screens.open(level, 'Saves'))
    kit.Button(column, 'options', words='menu.options', size='large', pressed=lambda: Screens.open(level, 'Options'))
    if mods.installed():
        kit.Button(column, 'mods', words='menu.mods', size='large', pressed=lambda: Screens.open(level, 'Mods'))
    kit.Button(column, 'credits', words='menu.credits', size='large', pressed=lambda: Screens.open(level, 'Credits'))
    kit.Button(column, 'quit', words='menu.quit', size='large', pressed=lambda: Ways.toDesktop(level))


def back(level: kaVel.Coordinator):
    """There is nothing behind the title: the focus goes to the way out."""
    menu = Screens.top(level)
    if menu:
        kit.focus(menu.getDescendantByPath('column/quit'))


def _goOn(level: kaVel.Coordinator):
    from screens import Saves
    Saves.goOn(level)
