"""A question with the answers Yes and No."""

from __future__ import annotations

from typing import Any, Callable, Mapping

import kaVel
from screens import Kit as kit
from screens import Screens

COVERS = False
VEIL = 0.7


def sample(level: kaVel.Coordinator) -> dict[str, object]:
    return {'question': 'menu.delete'}


def build(menu: kaVel.Entity, question: str = '', yes: Callable[[], object] | None = None,
          no: Callable[[], object] | None = None, values: Mapping[str, object] | None = None):
    level: Any = menu.getAncestorOfType(kaVel.Reflection.Coordinator)

    def answer(function: Callable[[], object] | None):
        Screens.close(level)
        if function:
            function()

    paper = kit.Column(menu, 'box', anchor='center', width=760, gap=18, look='ink', padding=36)
    kit.Label(paper, 'question', words=question, values=values, size='large', align='center')
    kit.Space(paper, 'space', size=8)
    answers = kit.Row(paper, 'answers', gap=24)
    kit.Button(answers, 'yes', words='menu.yes', align='center', grow=1, pressed=lambda: answer(yes))
    kit.Button(answers, 'no', words='menu.no', align='center', grow=1, pressed=lambda: answer(no))
    kit.focus(answers.getChild('no'))
