"""What the player has on him: the notes that he found, what is in his pockets, and the plan that he draws."""

from __future__ import annotations

from typing import Any

import kaVel
import words
from objects.player.Pockets import pocketsOf
from screens import Map, Screens
from screens import Kit as kit


def build(menu: kaVel.Entity):
    level: Any = menu.getAncestorOfType(kaVel.Reflection.Coordinator)
    page = kit.Column(menu, 'page', anchor='centerFill', width=1340, gap=14)
    kit.Tabs(page, 'tabs', grow=1, pages=[('notebook.notes', lambda sheet: _notes(level, sheet)),
                                          ('notebook.pockets', lambda sheet: _pockets(level, sheet)),
                                          ('notebook.chart', lambda sheet: Map.draw(level, sheet))])
    kit.Button(page, 'back', words='menu.back', pressed=lambda: Screens.close(level))


def _notes(level: kaVel.Coordinator, sheet: kaVel.Entity):
    pages = pocketsOf(level).pages
    if not pages:
        kit.Label(sheet, 'none', words='notebook.noNotes', color='faded')
    for number, page in enumerate(reversed(list(pages.values()))):
        kit.Button(sheet, 'note%d' % number, literal=_headline(str(page.title), str(page.text)), row=True,
                   pressed=lambda page=page: Screens.open(level, 'NoteReader', page=page))


def _headline(title: str, text: str) -> str:
    first = text.split('\n')[0]
    if len(first) > 60:
        first = first[:56].rsplit(' ', 1)[0] + ' …'
    return words.text('notebook.note', title=title, text=first)


def _pockets(level: kaVel.Coordinator, sheet: kaVel.Entity):
    pockets = pocketsOf(level)
    player = level.getChild('Player')
    mind = player.getComponent('player') if player else None
    lines = [str(pockets.label(name)) if pockets.count(name) == 1
             else words.text('notebook.several', count=words.number(pockets.count(name)), what=pockets.label(name))
             for name in pockets.names() if name not in pockets.pages]
    if mind and mind.getHasFlashlight():
        lines.insert(0, words.count('notebook.batteries', mind.batteries))
        lines.insert(0, words.text('notebook.lamp'))
    for number, line in enumerate(lines or [words.text('notebook.nothing')]):
        kit.Label(sheet, 'thing%d' % number, literal=line[:1].upper() + line[1:], color='paper' if lines else 'faded',
                  margin=(12, 6, 0, 6))
