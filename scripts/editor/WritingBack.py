"""What the inspector's bars have changed in a level while it is played: shown as lines of its files, written or undone.

The bar "Write back" comes up with the first such change beside the other bars; the editor need not be open for it.
"""

from __future__ import annotations

from typing import Any, Callable

import kaVel
import session
from editor import Inspected
from editor.edits import Edits, ForAll
from editor.edits.Refused import Refused
from editor.source import Pieces, Writing
from perLevel import PerLevel

NAME = 'Write back'
#: Its size in steps of which LETTERS are as many as the letters are high, and its most share of the window: it lies in
#: the lower right corner, below what the bars of objects show.
WIDTH, HEIGHT, LETTERS, MOST, EDGE = 620, 200, 15, (0.55, 0.26), 8

_offers: PerLevel[Offer] = PerLevel()


def note(level: kaVel.Coordinator, thing: Any, name: str, before: Any, after: Any) -> None:
    """Notes an edit that a bar has made already, and offers to write it into the level's files."""
    if not _isKnown(level):
        # Pieces are noted as they stood: what a bar has moved by now is moved by its edit.
        setattr(thing, name, before)
        Pieces.of(level)
        setattr(thing, name, after)
    offer = of(level)
    offer.attempt(lambda: Inspected.note(level, thing, name, before, after))
    offer.show()


def of(level: kaVel.Coordinator) -> Offer:
    """The offer of a level, made now if there is none."""
    offer = _offers.get(level)
    if offer is None:
        offer = _offers[level] = Offer(level)
    return offer


def _isKnown(level: kaVel.Coordinator) -> bool:
    known = session.editing.get(level.levelName)
    return known is not None and known.level == level


class Offer:
    """The bar of one level: the lines that would be written, and what is to become of them."""

    def __init__(self, level: kaVel.Coordinator):
        self._level = level
        self._edits = Edits.of(level)
        self._edits.onChange(self.show)
        self._lines: list[str] = []
        self._told = ''
        self._isForAll = False  # whether the pattern is to have the last change, rather than the piece
        self._isPlaced = False

    def attempt(self, function: Callable[[], object]) -> None:
        """Does something with the edits, or tells on the bar and in the log why it is not done."""
        self._told = ''
        try:
            function()
        except Refused as reason:
            self._told = str(reason)
            kaVel.log('The bars: %s' % reason)

    def show(self) -> None:
        """Shows the lines as they are by now; without any the bar goes."""
        if not self._level:
            return
        bar = kaVel.getSystem('TweakSystem').makeBar(NAME)
        kaVel.configure(bar, label=NAME, help='What the bars have changed in this level, as lines of its files')
        try:
            diff = ForAll.offer(self._edits).diff() if self._isForAll else Writing.diff(self._level)
            self._lines = diff.splitlines()
        except Refused as reason:
            self._lines, self._told = [], str(reason)
        isShown = bool(self._lines or self._told) and not _isEdited(self._level)
        if isShown and not self._isPlaced:
            self._isPlaced = True
            window, step = kaVel.getSystem('WindowSystem2'), kaVel.getSystem('TweakSystem').letters / LETTERS
            bar.setPlace(-EDGE, -EDGE, round(min(WIDTH * step, window.width * MOST[0])),
                         round(min(HEIGHT * step, window.height * MOST[1])))
        bar.shown = isShown
        bar.clear()
        if isShown:
            self._fill(bar)

    def write(self) -> None:
        """Writes the lines."""
        isForAll, self._isForAll = self._isForAll, False
        self._then(lambda: ForAll.apply(self._edits, ForAll.offer(self._edits)) if isForAll
                   else Writing.save(self._level))

    def choose(self, isForAll: bool) -> None:
        """Has the lines be those of the level, or those of the pattern of what was changed last."""
        self._isForAll, self._told = isForAll, ''
        self.show()

    def _fill(self, bar: Any) -> None:
        bar.addButton('write', 'Write', self.write)
        bar.setTip('write', 'Changes these lines in the files')
        bar.setEnabled('write', bool(self._lines))
        bar.sameLine()
        bar.addButton('undo', 'Undo the last one', lambda: self._then(self._edits.undo))
        bar.sameLine()
        bar.addButton('in the level', 'In this piece', lambda: self.choose(False))
        bar.setMarked('in the level', not self._isForAll)
        bar.sameLine()
        bar.addButton('in the pattern', 'In the pattern, for all', lambda: self.choose(True))
        bar.setMarked('in the pattern', self._isForAll)
        bar.setTip('in the pattern', 'Has all that the pattern builds be as what was changed last is')
        if self._told:
            bar.addText('told', '', lambda: self._told)
        bar.addList('diff', lambda: len(self._lines), self._line, lambda number: None)

    def _line(self, number: int) -> str:
        return self._lines[number] if number < len(self._lines) else ''

    def _then(self, function: Callable[[], object]) -> None:
        self.attempt(function)
        self.show()


def _isEdited(level: kaVel.Coordinator) -> bool:
    """Whether the editor of a level is open, which has a bar for this of its own."""
    from editor.Editor import Editor
    editor = Editor.openedIn(level)
    return bool(editor and editor.isOpen)
