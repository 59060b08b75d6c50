"""All bars of the editor: which are there, and what they have to be told."""

from __future__ import annotations

from typing import TYPE_CHECKING, Callable

import kaVel
from editor.panels.CatalogueBar import CatalogueBar
from editor.panels.History import History
from editor.panels.KeysBar import KeysBar
from editor.panels.Levels import Levels
from editor.panels.Outliner import Outliner
from editor.panels.Panel import Panel
from editor.panels.PieceBar import PieceBar
from editor.panels.Saving import ForAllBar, Leaving, Saving
from editor.panels.Status import Status
from editor.panels.ToolControls import ToolControls
from editor.panels.Toolbar import Toolbar
from editor.panels.ViewsBar import ViewsBar

if TYPE_CHECKING:
    from editor.Editor import Editor


class Panels:
    """The bars of one editor."""

    def __init__(self, editor: Editor):
        self._editor = editor
        self.toolbar, self.status, self.catalogue = Toolbar(editor), Status(editor), CatalogueBar(editor)
        self.saving, self.leaving, self.levels = Saving(editor), Leaving(editor), Levels(editor)
        self.views, self.keys = ViewsBar(editor), KeysBar(editor)
        self.toolControls, self.piece, self.history = ToolControls(editor), PieceBar(editor), History(editor)
        self.all: list[Panel] = [self.toolbar, Outliner(editor), self.catalogue, self.toolControls, self.piece,
                                 self.history, self.views, self.keys, self.status, self.saving, self.leaving,
                                 self.levels]
        self.forAll = ForAllBar(editor)
        self.all.append(self.forAll)
        self._size = (0, 0)
        self._away: list[Panel] = []

    def open(self) -> None:
        """Shows those that are always there."""
        for panel in self.all:
            if panel.isAlways:
                self._editor.attempt(panel.show)
        self.piece.follow()

    def close(self) -> None:
        """Takes all off the screen."""
        for panel in self.all:
            panel.hide()
        self.catalogue.end()

    def putAway(self) -> None:
        """Takes all off the screen until the next frame in which the level is still there."""
        self._away = self._away or self._shown()
        for panel in self._away:
            panel.hide()

    def selected(self) -> None:
        """Something else is selected."""
        self.piece.follow()
        for panel in self._shown():
            panel.selected()

    def edited(self) -> None:
        """Something was edited, undone or redone."""
        self.piece.follow()
        for panel in self._shown():
            panel.edited()

    def toolTaken(self) -> None:
        """Another tool is in hand."""
        for panel in self._shown():
            panel.toolTaken()

    def switchHistory(self) -> None:
        """Shows what was done, for which the bar of the piece makes room, or takes it off the screen."""
        self.history.switch()
        self.piece.putIfShown()

    def viewsChanged(self) -> None:
        """Another view was switched."""
        self.views.putIfShown()
        self.views.refresh()

    def doFrame(self) -> None:
        """Keeps the bars in their places when the window becomes another size, and has them do their own."""
        away, self._away = self._away, []
        for panel in away:
            panel.show()
        window = kaVel.getSystem('WindowSystem2')
        size = int(window.width), int(window.height)
        for panel in self._shown():
            if size != self._size:
                panel.put()
            panel.doFrame()
        self._size = size

    def ask(self, go: Callable[[], object]) -> None:
        """Asks whether a level with unsaved edits is to be left."""
        self.leaving.ask(go)

    def askToSave(self) -> None:
        """Shows what saving would write."""
        self.saving.show()

    def askForLevel(self) -> None:
        """Asks for the name of a new level, or for one to go to."""
        self.levels.show()

    def _shown(self) -> list[Panel]:
        return [panel for panel in self.all if panel.isShown]
