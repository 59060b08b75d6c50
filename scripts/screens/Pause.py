"""What stands between the player and a game that holds its breath."""

from __future__ import annotations

import kaVel
import saves
import standing
import words
from perLevel import levelOf
from saves import Moments
from screens import Kit as kit
from screens import Screens, Ways

VEIL = 0.72


def build(menu: kaVel.Entity):
    level = levelOf(menu)
    saves.keepPicture()
    column = kit.Column(menu, 'column', anchor='left', width=520, gap=2)
    kit.Label(column, 'title', words='pause.title', size='title')
    place = Moments.placeName(level, standing.of(level), False)
    if words.has(place):
        kit.Label(column, 'place', words=place, size='small', color='faded')
    kit.Space(column, 'space', size=26)
    kit.Button(column, 'resume', words='menu.resume', size='large', pressed=lambda: Screens.close(level))
    for name, key in (('Notebook', 'pause.notebook'), ('Map', 'pause.map')):
        if name in Screens.known():
            kit.Button(column, name, words=key, size='large', pressed=lambda name=name: Screens.open(level, name))
    kit.Button(column, 'options', words='menu.options', size='large', pressed=lambda: Screens.open(level, 'Options'))
    if saves.listed():
        kit.Button(column, 'load', words='menu.load', size='large', pressed=lambda: Screens.open(level, 'Saves'))
    kit.Space(column, 'gap', size=14)
    kit.Button(column, 'title_', words='pause.leave', size='large', pressed=lambda: Ways.toTitle(level))
    kit.Button(column, 'quit', words='menu.quit', size='large', pressed=lambda: Ways.toDesktop(level))
