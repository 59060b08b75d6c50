"""New levels, and the way to those that there are."""

from __future__ import annotations

import loader
import standing
from editor.panels.Panel import Panel
from editor.source import Writing


class Levels(Panel):
    """A name for a new level; a list of the others."""

    name = 'Levels'
    isAlways = False
    _wanted = ''

    def placeIn(self, width: int, height: int):
        return width // 2 - 170, 110, 340, 320

    def fill(self) -> None:
        self._names = [name for name in loader.levelNames() if name != loader.LOADING_SCREEN]
        self.value('Name', lambda: self._wanted, self._want, 'Of the new level: a name as for a Python module')
        self.bar.setLive('Name', True)
        self.button('Make it', self._make, 'A map with a grid and a player, and nothing else', beside=False)
        self.button('Close', self.hide)
        self.bar.addList('levels', lambda: len(self._names), self._row, self._goTo)

    def _row(self, number: int) -> str:
        name = self._names[number]
        return '* ' + name if name == self.editor.level.levelName else name

    def _want(self, name: str) -> None:
        self._wanted = name.strip()

    def _make(self) -> None:
        Writing.newLevel(self._wanted)
        self.hide()
        standing.returnTo(self._wanted, None)

    def _goTo(self, number: int) -> None:
        self.hide()
        self.editor.attempt(lambda: standing.returnTo(self._names[int(number)], None))
