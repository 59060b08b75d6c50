"""A picture by which brightness and gamma are set: three candles of which the faintest is barely there."""

from __future__ import annotations

import kaVel
import settings
import words
from screens import Kit as kit
from screens import Screens

VEIL = 1.0

#: Linear light of the marks on black, as parts of white: what is not to be seen, what is barely, and what is clearly.
MARKS = (('hidden', 0.0002), ('barely', 0.002), ('clearly', 0.02))


def build(menu: kaVel.Entity):
    level = menu.getAncestorOfType(kaVel.Reflection.Coordinator)
    assert level
    sheet = kit.Column(menu, 'sheet', anchor='center', width=1300, gap=22)
    kit.Label(sheet, 'title', words='calibration.title', size='large', align='center')
    marks = kit.Row(sheet, 'marks', gap=60)
    shown = {}
    for name, _ in MARKS:
        mark = kit.Column(marks, name, grow=1, gap=8)
        shown[name] = kit.Picture(mark, 'flame', picture='iconCandle', size=(200, 200))
        kit.Label(mark, 'line', words='calibration.' + name, size='small', color='faded', align='center')

    def show():
        for name, light in MARKS:
            value = _onScreen(light)
            kit.component(shown[name]).color = kaVel.Vec4(value, value, value, 1)

    def change(name: str, value: float):
        settings.set(name, value)
        show()

    kit.Slider(sheet, 'gamma', words='options.gamma', least=1, most=4, step=0.1, value=settings.get('gamma'),
               shown=lambda value: words.number(value, 1), changed=lambda value: change('gamma', value))
    kit.Slider(sheet, 'brightness', words='options.brightness', least=0.5, most=2, step=0.05,
               value=settings.get('brightness'), shown=words.percent,
               changed=lambda value: change('brightness', value))
    kit.Label(sheet, 'how', words='calibration.how', align='center', color='faded')
    below = kit.Row(sheet, 'below', gap=24)

    def usual():
        for name in ('gamma', 'brightness'):
            settings.reset(name)
            kit.component(sheet.getChild(name)).value = settings.get(name)
        Screens.rebuild(level)

    kit.Button(below, 'usual', words='calibration.usual', align='center', grow=1, pressed=usual)
    kit.Button(below, 'back', words='menu.ok', align='center', grow=1, pressed=lambda: Screens.close(level))
    show()


def _onScreen(light: float) -> float:
    """What a linear light becomes on the screen, by the curve that the world's picture takes."""
    x = light * 4.5 * settings.get('brightness')
    filmic = x * (2.5 * x + 0.15) / (x * (2.5 * x + 0.75) + 0.14)
    return filmic ** (1 / settings.get('gamma'))
