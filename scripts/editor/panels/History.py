"""The steps that were done: a click goes back to one, or forth again."""

from __future__ import annotations

from editor.panels.Panel import BOTTOM, RIGHT, Panel

#: Of the bar.
HEIGHT = 200


class History(Panel):
    """Oldest step first; the last one that is done is marked."""

    name = 'History'
    isAlways = False

    def placeIn(self, width: int, height: int):
        return width - RIGHT, height - BOTTOM - HEIGHT, RIGHT, HEIGHT

    def fill(self) -> None:
        self.button('Undo', self.editor.commands.undo, 'Ctrl+Z', beside=False)
        self.button('Redo', self.editor.commands.redo, 'Ctrl+Y')
        self._steps = ['As it was loaded', *self.editor.edits.history()]
        self.bar.addList('steps', lambda: len(self._steps), self._row,
                         lambda number: self.editor.attempt(lambda: self.editor.edits.goTo(int(number))))

    def edited(self) -> None:
        self._steps = ['As it was loaded', *self.editor.edits.history()]

    def _row(self, number: int) -> str:
        mark = '* ' if number == self.editor.edits.position else ''
        return mark + self._steps[number] if number < len(self._steps) else ''
