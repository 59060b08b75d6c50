"""Whether a new mode of the window stays; who does not see this question gets the old one back."""

from __future__ import annotations

import math

import kaVel
import settings
from screens import Kit as kit
from screens import Screens

COVERS = False
VEIL = 0.6


def build(menu: kaVel.Entity):
    level = menu.getAncestorOfType(kaVel.Reflection.Coordinator)
    assert level
    trial = settings.trial()
    paper = kit.Column(menu, 'box', anchor='center', width=860, gap=18, look='ink', padding=36)
    kit.Label(paper, 'question', words='options.keep', size='large', align='center')
    line = kit.Label(paper, 'left', literal=' ', align='center', color='faded')
    answers = kit.Row(paper, 'answers', gap=24)

    def answer(keep: bool):
        if trial:
            trial.confirm() if keep else trial.takeBack()

    kit.Button(answers, 'keep', words='options.keep.yes', align='center', grow=1, pressed=lambda: answer(True))
    kit.Button(answers, 'back', words='options.keep.no', align='center', grow=1, pressed=lambda: answer(False))
    kit.focus(answers.getChild('back'))

    shown = [-1]

    def count():
        if not trial or trial.isOver():
            return Screens.close(level)
        seconds = math.ceil(trial.left())
        if seconds != shown[0]:
            shown[0] = seconds
            kit.say(line, words='options.keep.left', seconds=seconds)

    kaVel.addComponent(kaVel.make('Entity', parent=menu, name='clock'), 'menu', 'ScriptComponent', frameCallback=count)


def back(level: kaVel.Coordinator):
    """Escape says no."""
    trial = settings.trial()
    if trial:
        trial.takeBack()


def sample(level: kaVel.Coordinator):
    """Something to ask about, for a look at this screen."""
    settings.tryOut('windowMode', settings.get('windowMode'))
    return {}
