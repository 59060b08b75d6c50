"""Two seconds in which the game finds out what the machine draws in time."""

from __future__ import annotations

import kaVel
from screens import Kit as kit
from screens import Screens
from settings.Presets import Measurement

COVERS = False
VEIL = 0.0

_measurement: Measurement | None = None


def build(menu: kaVel.Entity):
    global _measurement
    level = menu.getAncestorOfType(kaVel.Reflection.Coordinator)
    assert level
    measurement = _measurement = Measurement()
    paper = kit.Column(menu, 'box', anchor='bottom', width=860, gap=18, look='ink', padding=30)
    line = kit.Label(paper, 'line', words='options.measuring', align='center')
    bar = kit.Progress(paper, 'bar')
    done = kit.Button(paper, 'done', words='menu.cancel', align='center', pressed=lambda: Screens.close(level))
    told = [False]

    def measure():
        measurement.doFrame()
        kit.component(bar).value = measurement.part()
        if measurement.found and not told[0]:
            told[0] = True
            kit.say(line, words='options.measured.' + measurement.found,
                    milliseconds='%.0f' % (1000 * measurement.seconds(measurement.found)))
            kit.say(done, words='menu.ok')

    kaVel.addComponent(kaVel.make('Entity', parent=menu, name='clock'), 'menu', 'ScriptComponent',
                       frameCallback=measure)


def closing():
    global _measurement
    if _measurement and not _measurement.found:
        _measurement.stop()
    _measurement = None
