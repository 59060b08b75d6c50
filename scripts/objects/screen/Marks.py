"""The marks around the reticle: what can be done with what the player points at, without a word.

    marked(entity, 'take')
    marked(leaf, lambda: 'locked' if door.locked else 'hold')

What can be used and was not marked shows 'use'. A wall, which ends the ray but has nothing to use, shows none.
"""

from __future__ import annotations

from typing import Callable, Literal, Union

import kaVel
from objects.things.Drawn import Picture
from perLevel import PerLevel

Mark = Literal['use', 'take', 'hold', 'held', 'locked', 'read']
#: A mark, or a function that says which one it is just now.
Marking = Union[Mark, Callable[[], Mark]]

MARKS: tuple[Mark, ...] = ('use', 'take', 'hold', 'held', 'locked', 'read')
SIZE, PRESSED_SIZE = 0.026, 0.021  # shares of the window's longer side

_markings: PerLevel[dict[kaVel.Object, Marking]] = PerLevel()


def marked(entity: kaVel.Entity, marking: Marking):
    """Says which mark stands for an entity whose volume can be used."""
    level = entity.getAncestorOfType(kaVel.Reflection.Coordinator)
    if level not in _markings:
        _markings[level] = {}
    _markings[level][entity] = marking


def markOf(volume: kaVel.BoundingVolume | None) -> Mark | None:
    """The mark of a volume; None for none, and for what cannot be used."""
    if not volume or not volume.triggerFunc:
        return None
    marking = _markings.get(volume.getAncestorOfType(kaVel.Reflection.Coordinator), {}).get(volume.parent, 'use')
    return marking() if callable(marking) else marking


class Marks:
    """The marks on a player's screen, of which one is seen at most; a pressed one is smaller."""

    def __init__(self, player: kaVel.Entity):
        self.pictures = {mark: Picture(player, 'mark' + mark.capitalize(), picture='mark' + mark.capitalize(),
                                       size=(SIZE, SIZE), depth=0.8) for mark in MARKS}
        self.shown: Mark | None = None
        self.pressed = False
        for picture in self.pictures.values():
            picture.getComponent('graphics2').visible = False

    def show(self, mark: Mark | None, pressed: bool):
        """Shows one mark in place of the last one."""
        if mark != self.shown:
            self._setVisible(self.shown, False)
            self._setVisible(mark, True)
            self.shown = mark
        elif pressed == self.pressed:
            return
        self.pressed = pressed
        if mark and self.pictures[mark]:
            size = PRESSED_SIZE if pressed else SIZE
            self.pictures[mark].getComponent('transform').scale = kaVel.Vec4(size, size, 1, 0)

    def _setVisible(self, mark: Mark | None, visible: bool):
        if mark and self.pictures[mark]:
            self.pictures[mark].getComponent('graphics2').visible = visible
