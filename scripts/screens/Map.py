"""The plan that the player draws of where he has been."""

from __future__ import annotations

from typing import Any

import kaVel
from objects.player.Charts import chartOf
from screens import Screens
from screens import Kit as kit

UNIT = 30.0     # a metre, 1/1080 of the height
LETTERS = 21.0
PEN = 3.4
PAPER = (0.80, 0.72, 0.56, 1)


def build(menu: kaVel.Entity):
    level: Any = menu.getAncestorOfType(kaVel.Reflection.Coordinator)
    page = kit.Column(menu, 'page', anchor='centerFill', width=1340, gap=14)
    draw(level, kit.Column(page, 'sheet', grow=1))
    kit.Button(page, 'back', words='menu.back', pressed=lambda: Screens.close(level))


def draw(level: kaVel.Coordinator, sheet: kaVel.Entity):
    """Draws what has been seen of a level, or says that nothing has."""
    chart = chartOf(level)
    if not chart or not chart.seen:
        kit.Label(sheet, 'none', words='notebook.noChart', color='faded')
        return
    width, height = chart.size
    sketch = kit.Sketch(sheet, 'chart', size=(width * UNIT, height * UNIT), pen=PEN, paper=PAPER, anchor='center')
    chart.drawOn(kit.component(sketch), UNIT, LETTERS)
