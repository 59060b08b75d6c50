"""Saving, with what it would change shown first; and the question before a level with unsaved edits is left."""

from __future__ import annotations

from typing import TYPE_CHECKING, Callable

from editor.edits import ForAll
from editor.edits.Refused import Refused
from editor.panels.Panel import Panel
from editor.source import Writing

if TYPE_CHECKING:
    from editor.Editor import Editor


class Saving(Panel):
    """The diff, and whether to write it."""

    name = 'Save'
    isAlways = False

    def placeIn(self, width: int, height: int):
        return width // 8, 110, width * 3 // 4, max(height - 200, 160)

    def fill(self) -> None:
        self._targets()
        try:
            self._lines, isWritable = self.editor.diff().splitlines(), True
        except Refused as reason:
            self._lines, isWritable = [str(reason)], False
        self.button('Write', self._write, 'Changes these lines in the files', beside=False)
        self.bar.setEnabled('Write', isWritable and bool(self._lines))
        self.button('Leave as it is', self.hide)
        self._lines = self._lines or ['There is nothing to save.']
        self.bar.addList('diff', lambda: len(self._lines), lambda number: self._lines[number], lambda number: None)

    def _targets(self) -> None:
        """A button for each place where the level can be saved, where there are several."""
        targets = Writing.targets(self.editor.level)
        if len(targets) < 2:
            return
        self.bar.addText('where', '', lambda: 'Mods are on: where is this saved?')
        for target in targets:
            name = 'The mod %s' % target if target else 'The level itself'
            self.button(name, lambda target=target: self._choose(target), 'Shows what would be written there',
                        beside=target != targets[0])
            self.bar.setMarked(name, self.editor.isSaveTarget(target))

    def _choose(self, target: str) -> None:
        self.editor.saveTarget = target
        self.refresh()

    def edited(self) -> None:
        self.refresh()

    def _write(self) -> None:
        if self.editor.save():
            self.hide()


class ForAllBar(Panel):
    """What the last change would be in the source of its pattern, and whether to write it there."""

    name = 'In the pattern, for all'
    isAlways = False
    placeIn = Saving.placeIn

    def fill(self) -> None:
        rewriting = self.editor.attempt(lambda: ForAll.offer(self.editor.edits))
        lines = rewriting.diff().splitlines() if rewriting else [self.editor.messages[-1]]
        self.button('Write', lambda: rewriting and self._write(rewriting),
                    'Changes the pattern: all that it builds is so from then on', beside=False)
        self.bar.setEnabled('Write', rewriting is not None)
        self.button('Only in this piece', self.hide)
        self.bar.addList('diff', lambda: len(lines), lambda number: lines[number], lambda number: None)

    def edited(self) -> None:
        self.refresh()

    def _write(self, rewriting: ForAll.Rewriting) -> None:
        self.hide()
        ForAll.apply(self.editor.edits, rewriting)


class Leaving(Panel):
    """What is to become of unsaved edits when something leads away from the level."""

    name = 'Unsaved edits'
    isAlways = False

    def __init__(self, editor: Editor):
        super().__init__(editor)
        self._go: Callable[[], object] = lambda: None

    def placeIn(self, width: int, height: int):
        return width // 2 - 220, height // 2 - 60, 440, 120

    def ask(self, go: Callable[[], object]) -> None:
        """Comes up with the question; `go` leads away."""
        self._go = go
        self.show()

    def fill(self) -> None:
        self.bar.addText('question', '', lambda: 'This level has edits that are not saved.')
        self.button('Save and go', self._saveAndGo, beside=False)
        self.button('Go without', self._goWithout)
        self.button('Stay', self.hide)

    def _saveAndGo(self) -> None:
        if self.editor.save():
            self._goWithout()
        else:
            self.editor.panels.askToSave()

    def _goWithout(self) -> None:
        self.hide()
        self.editor.forsake()
        self._go()
