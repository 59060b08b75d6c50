"""The pieces of the level by name: a click selects, a search finds by name, pattern or path."""

from __future__ import annotations

import kaVel
from editor import Keys
from editor.panels.Panel import BOTTOM, LEFT, TOP, Panel
from editor.source.Pieces import Piece


class Outliner(Panel):
    """Maps, and below each its pieces, those that hang from another one below that.

    A row says what is hidden or locked and of which group it is. The list is put together when something was edited;
    what is drawn of it are the rows that are seen.
    """

    name = 'Outliner'
    _search = ''
    _rows: list[tuple[Piece | None, str]] = []

    def placeIn(self, width: int, height: int):
        return 0, TOP, LEFT, height - TOP - BOTTOM

    def fill(self) -> None:
        commands = self.editor.commands
        self.value('Find', lambda: self._search, self._find, 'Name, pattern or path')
        self.bar.setLive('Find', True)
        self.button('Select these', self._selectFound, 'All that the search has found', beside=False)
        self.button('All', commands.selectAll, 'Ctrl+A')
        self.button('Hide', commands.hide, 'H', beside=False)
        self.button('Show', commands.showAll, 'All that was hidden (Alt+H)')
        self.button('Lock', commands.lock, 'L')
        self.button('Unlock', commands.unlockAll, 'All that was locked (Alt+L)')
        self.button('Hang below', commands.parent, 'Below the one that was selected last (Ctrl+P)', beside=False)
        self.button('Unhang', commands.unparent, 'Below the map (Ctrl+Shift+P)')
        self.bar.addText('count', '', lambda: '%d of %d selected' % (len(self.editor.selected()),
                                                                     len(self.editor.pieces.all())))
        self.bar.addList('pieces', lambda: len(self._rows), self._row, self._clicked)
        self.edited()

    def edited(self) -> None:
        self._rows = self._found() if self._search.strip() else self._tree()
        self.selected()

    def selected(self) -> None:
        self._chosen = set(self.editor.selected())

    def _find(self, text: str) -> None:
        self._search = text
        self.edited()

    def _found(self) -> list[tuple[Piece | None, str]]:
        words = self._search.lower().split()
        found: list[tuple[Piece | None, str]] = []
        for piece in filter(_stands, self.editor.pieces.all()):
            text = ' '.join((piece.path, piece.patternName, piece.group)).lower()
            if all(word in text for word in words):
                found.append((piece, '%s  (%s)' % (piece.path, piece.patternName)))
        return found

    def _tree(self) -> list[tuple[Piece | None, str]]:
        below: dict[Piece | str, list[Piece]] = {}
        for piece in filter(_stands, self.editor.pieces.all()):
            below.setdefault(piece.above or _mapOf(piece), []).append(piece)
        rows: list[tuple[Piece | None, str]] = []
        for name in sorted(key for key in below if isinstance(key, str)):
            rows.append((None, name))
            waiting = [(piece, 1) for piece in reversed(below[name])]
            while waiting:
                piece, depth = waiting.pop()
                rows.append((piece, '\t' * depth + _told(piece)))
                waiting += [(each, depth + 1) for each in reversed(below.get(piece, []))]
        return rows

    def _row(self, number: int) -> str:
        if number >= len(self._rows):
            return ''
        piece, text = self._rows[number]
        if piece not in self._chosen:
            return text
        bare = text.lstrip('\t')
        return '\t' * (len(text) - len(bare)) + '* ' + bare

    def _clicked(self, number: int) -> None:
        if number >= len(self._rows):
            return
        piece = self._rows[number][0]
        if piece is None:
            return
        if Keys.held('Ctrl'):
            self.editor.selection.toggle([piece])
        elif Keys.held('Shift'):
            self._selectTo(number)
        elif self.editor.selected() == [piece]:
            self.editor.attempt(self.editor.commands.frame)  # the second click goes there
        else:
            self.editor.select([piece])

    def _selectTo(self, number: int) -> None:
        last = self.editor.selected()[-1:]
        start = next((row for row, (piece, _) in enumerate(self._rows) if [piece] == last), number)
        low, high = min(start, number), max(start, number)
        self.editor.selection.add([piece for piece, _ in self._rows[low:high + 1] if piece])

    def _selectFound(self) -> None:
        self.editor.select([piece for piece, _ in self._rows if piece and not piece.locked])


def _stands(piece: Piece) -> bool:
    """Whether a piece has a root, which somebody may have murdered, and none that the engine keeps for itself."""
    return bool(piece.root) and not piece.name.startswith('.')


def _mapOf(piece: Piece) -> str:
    above = piece.root.getAncestorOfType(kaVel.Reflection.MapRootEntity)
    return above.getName() if above else 'the level'


def _told(piece: Piece) -> str:
    told = (('hidden', piece.hidden), ('locked', piece.locked), (piece.group, piece.group))
    marks = [mark for mark, on in told if on]
    return piece.name + ('  [%s]' % ', '.join(marks) if marks else '')
