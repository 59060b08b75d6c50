"""The catalogue with pictures: a click takes a pattern into the hand."""

from __future__ import annotations

from typing import Any

from editor import Catalogue
from editor.Pictures import Pictures
from editor.panels.Panel import BOTTOM, LEFT, RIGHT, Panel

EVERY = 'all kinds'
#: Of the bar.
HEIGHT = 170


class CatalogueBar(Panel):
    """Patterns of a kind, or all, in one row; the bar's own search finds them by name."""

    name = 'Catalogue'
    isAlways, isFrame = False, True

    def __init__(self, editor: Any):
        super().__init__(editor)
        self.pictures = Pictures()
        self._kind = EVERY
        self._entries: list[Catalogue.Entry] = []

    def placeIn(self, width: int, height: int):
        return LEFT, height - BOTTOM - HEIGHT, width - LEFT - RIGHT, HEIGHT

    def fill(self) -> None:
        self.choice('Kind', [EVERY, *Catalogue.kinds()], lambda: self._kind, self._choose)
        self._entries = Catalogue.matching('', '' if self._kind == EVERY else self._kind)
        self.bar.sameLine()
        self.bar.addPictures('patterns', lambda: len(self._entries), self._picture, self._clicked)

    def doFrame(self) -> None:
        self.pictures.doFrame()

    def end(self) -> None:
        """Ends what takes pictures in the background."""
        self.pictures.end()

    def _choose(self, kind: str) -> None:
        self._kind = kind
        self.refresh()

    def _picture(self, number: int) -> str:
        entry = self._entries[number]
        return '%s\t%s' % (self.pictures.of(entry.name, Catalogue.sourceOf(entry)), entry.name)

    def _clicked(self, number: int) -> None:
        self.editor.commands.takeUp(self._entries[int(number)].name)
