"""What the camera looks at: its name on the screen, and the key that does something with it."""

from __future__ import annotations

from typing import Callable, Union

import kaVel
import objects.Drawn as drawn
from objects.Walker import Walker

GRID = '.MapData_partitioningGrid/partitioning'  # below a map
REACH = 2.3  # metres from the eye

NAME_COLOR = (0.80, 0.74, 0.60, 1)
HINT_COLOR = (0.62, 0.55, 0.42, 1)

#: What E does with a thing: a text, a function that says it, or nothing.
Hint = Union[str, Callable[[], Union[str, None]], None]


class Pointer:
    """Casts a ray from a walker's eye in each frame, tells what it meets, and lets E and the left button act on it.

    Everything that stands in the way or can be used is found: what is behind a wall is not pointed at.
    """

    def __init__(self, walker: Walker, map: kaVel.MapRootEntity):
        self.walker, self.map = walker, map
        self.names: dict[kaVel.Object, tuple[str, Hint]] = {}
        self.target = None
        coordinator = walker.player.getAncestorOfType(kaVel.Reflection.Coordinator)
        drawn.Picture(coordinator, 'aim', picture='white', size=(0.0028, 0.0028))
        self.lines = [drawn.Text(coordinator, name, at=(0.5, height), size=size, color=color,
                                 anchor=('H_CENTER', 'V_CENTER'))
                      for name, height, size, color in (('pointedAt', 0.43, 0.019, NAME_COLOR),
                                                        ('hint', 0.40, 0.015, HINT_COLOR))]
        self.shown = ['', '']
        kaVel.onKey(coordinator, 'use', self.act)
        kaVel.addComponent(self.lines[0], 'hud', 'ScriptComponent', frameCallback=self.doFrame)

    def name(self, entity: kaVel.Entity, name: str, use: Hint = None):
        """Tells what an entity with a volume is called, and what E does with it: a text, or a function that says it."""
        self.names[entity] = (name, use)

    def use(self, entity: kaVel.Entity, name: str, use: Hint, function: Callable[..., object]):
        """As `name`; E calls a function with the player's component."""
        self.name(entity, name, use)
        entity.getComponent('boundingVolume').setInteractFunc(function)

    def doFrame(self):
        eye = self.walker.eye.position
        ray = kaVel.Vec4(*(part * REACH for part in self.walker.ahead()), 0)
        grid = self.map.getDescendantByPath(GRID)
        self.target = grid.findVolumeOnSegment(eye, ray, True) if grid else None
        name, use = self.names.get(self.target.parent, ('', None)) if self.target else ('', None)
        use = use() if callable(use) else use
        for number, text in enumerate((name, 'E   ' + use if use else '')):
            if text != self.shown[number]:
                self.shown[number] = text
                self.lines[number].getComponent('graphics2').text = text

    def act(self):
        """Uses what is pointed at; whether there was something to use."""
        if not self.target or not self.target.triggerFunc:
            return False
        self.target.interactWithPlayer(self.walker.player.getComponent('player'))
        return True
