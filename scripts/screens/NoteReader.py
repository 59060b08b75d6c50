"""A note that was found, to be read again at leisure."""

from __future__ import annotations

from typing import Any

import kaVel
import words
from objects.player.Pockets import Page
from screens import Screens
from screens import Kit as kit

VEIL = 0.86
PAPER = 760, 1010
LONG = 420  # letters from which on a text is written smaller


def build(menu: kaVel.Entity, page: Page):
    level: Any = menu.getAncestorOfType(kaVel.Reflection.Coordinator)
    kit.Picture(menu, 'paper', picture='notePage', size=PAPER, anchor='center')
    sheet = kit.Column(menu, 'sheet', anchor='center', width=560, gap=26)
    kit.Label(sheet, 'title', literal=str(page.title), size=40.0, color='ink', align='center')
    text = str(page.text)
    kit.Label(sheet, 'text', literal=text, size=34.0 if len(text) < LONG else 28.0, color='ink')
    kit.Button(menu, 'back', words='menu.back', anchor='bottomRight', pressed=lambda: Screens.close(level))


def sample(level: kaVel.Coordinator) -> dict[str, Any]:
    """What it is looked at with."""
    key = 'nightfall.note.housekeeper.'
    return {'page': Page(words.said(key + 'title'), words.said(key + 'text'))}
