"""What the player points at: its name on the screen, and what using it does."""

from __future__ import annotations

from typing import Callable, Union

import kaVel
import words
import objects.things.Drawn as drawn
from objects.player.Visitor import Visitor
from objects.screen.Tutorials import keyOf

NAME_COLOR = (0.80, 0.74, 0.60, 1)
HINT_COLOR = (0.62, 0.55, 0.42, 1)

#: What E does with a thing: a text, a function that says it, or nothing.
Hint = Union[words.Told, Callable[[], Union[words.Told, None]], None]


class Pointer:
    """Tells by name what a player's reticle is on, and what using it does, of what has a name."""

    def __init__(self, visitor: Visitor):
        self.player = visitor.component
        self.names: dict[kaVel.Object, tuple[words.Told, Hint]] = {}
        coordinator = visitor.player.getAncestorOfType(kaVel.Reflection.Coordinator)
        self.lines = [drawn.Text(coordinator, name, at=(0.5, height), size=size, color=color,
                                 anchor=('H_CENTER', 'V_CENTER'))
                      for name, height, size, color in (('pointedAt', 0.43, 0.019, NAME_COLOR),
                                                        ('hint', 0.40, 0.015, HINT_COLOR))]
        self.shown = ['', '']
        kaVel.addComponent(self.lines[0], 'hud', 'ScriptComponent', frameCallback=self.doFrame)

    def name(self, entity: kaVel.Entity, name: words.Told, use: Hint = None):
        """Tells what an entity with a volume is called, and what E does with it: a text, or a function that says it."""
        entity.getComponent('boundingVolume').interact = True
        self.names[entity] = (name, use)

    def use(self, entity: kaVel.Entity, name: words.Told, use: Hint, function: Callable[..., object]):
        """As `name`; E calls a function with the player's component."""
        self.name(entity, name, use)
        entity.getComponent('boundingVolume').setInteractFunc(function)

    def doFrame(self):
        target = self.player.interactor
        name, use = self.names.get(target.parent, ('', None)) if target else ('', None)
        use = use() if callable(use) else use
        for number, text in enumerate((str(name), '%s   %s' % (keyOf('use'), use) if use else '')):
            if text != self.shown[number]:
                self.shown[number] = text
                self.lines[number].getComponent('graphics2').text = text
