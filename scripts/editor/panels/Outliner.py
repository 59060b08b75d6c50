"""The pieces of the level by name: a click selects, a search finds by name, pattern or path."""

from __future__ import annotations

from typing import TYPE_CHECKING, NamedTuple, Union

import kaVel
from editor import Keys
from editor.panels.Panel import BOTTOM, LEFT, TOP, Panel
from editor.source.Pieces import Piece

if TYPE_CHECKING:
    from editor.Editor import Editor

#: What stands above pieces, the begin of their names, and their pattern.
Alike = tuple[Union[Piece, str], str, str]
#: So many pieces stand in one row that have the same name, and so many that differ by a number.
SAME, NUMBERED = 2, 8


class Row(NamedTuple):
    """A line of the list, with the pieces that a click on it means; none for a map."""

    text: str
    depth: int
    pieces: list[Piece]
    alike: Alike | None = None


class Outliner(Panel):
    """Maps, and below each its pieces, those that hang from another one below that.

    A row says what is hidden or locked and of which group it is. Pieces beside each other that are the same but for a
    number are one row, "+ floor x 12": a click selects them all and opens it, the next one folds it again. The list is
    put together when something was edited; what is drawn of it are the rows that are seen.
    """

    name = 'Outliner'
    _search = ''

    def __init__(self, editor: Editor):
        super().__init__(editor)
        self._rows: list[Row] = []
        self._open: set[Alike] = set()
        self._chosen: set[Piece] = set()

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

    def _found(self) -> list[Row]:
        words = self._search.lower().split()
        found: list[Row] = []
        for piece in filter(_stands, self.editor.pieces.all()):
            text = ' '.join((piece.path, piece.patternName, piece.group)).lower()
            if all(word in text for word in words):
                found.append(Row('%s  (%s)' % (piece.path, piece.patternName), 0, [piece]))
        return found

    def _tree(self) -> list[Row]:
        below: dict[Piece | str, list[Piece]] = {}
        for piece in filter(_stands, self.editor.pieces.all()):
            below.setdefault(piece.above or _mapOf(piece), []).append(piece)
        rows: list[Row] = []
        for name in sorted(key for key in below if isinstance(key, str)):
            rows.append(Row(name, 0, []))
            waiting: list[tuple[Piece | list[Piece], int]] = [(each, 1) for each in _folded(below[name])]
            while waiting:
                each, depth = waiting.pop()
                if isinstance(each, list):
                    rows.append(self._fold(each, depth))
                    waiting += [(piece, depth + 1) for piece in reversed(each)] if rows[-1].alike in self._open else []
                else:
                    rows.append(Row(_told(each), depth, [each]))
                    waiting += [(next, depth + 1) for next in _folded(below.get(each, []))]
        return rows

    def _fold(self, pieces: list[Piece], depth: int) -> Row:
        alike = _alike(pieces[0])
        return Row('%s %s x %d' % ('-' if alike in self._open else '+', alike[1], len(pieces)), depth, pieces, alike)

    def _row(self, number: int) -> str:
        if number >= len(self._rows):
            return ''
        row = self._rows[number]
        mark = '' if self._chosen.isdisjoint(row.pieces) else '* '
        return '\t' * row.depth + mark + row.text

    def _clicked(self, number: int) -> None:
        row = self._rows[number] if number < len(self._rows) else None
        if row is None or not row.pieces:
            return
        if Keys.held('Ctrl'):
            self.editor.selection.toggle(row.pieces)
        elif Keys.held('Shift'):
            self._selectTo(number)
        elif row.alike:
            self._openOrFold(row)
        elif self.editor.selected() == row.pieces:
            self.editor.attempt(self.editor.commands.frame)  # the second click goes there
        else:
            self.editor.select(row.pieces)

    def _openOrFold(self, row: Row) -> None:
        assert row.alike
        if row.alike not in self._open:
            self.editor.select(piece for piece in row.pieces if not piece.locked)
        self._open ^= {row.alike}
        self.edited()

    def _selectTo(self, number: int) -> None:
        last = self.editor.selected()[-1:]
        start = next((at for at, row in enumerate(self._rows) if last and last[0] in row.pieces), number)
        low, high = min(start, number), max(start, number)
        self.editor.selection.add([piece for row in self._rows[low:high + 1] for piece in row.pieces])

    def _selectFound(self) -> None:
        self.editor.select(piece for row in self._rows for piece in row.pieces if not piece.locked)


def _alike(piece: Piece) -> Alike:
    """What pieces have in common that stand in one row."""
    return piece.above or _mapOf(piece), piece.name.rstrip('0123456789') or piece.name, piece.patternName


def _folded(pieces: list[Piece]) -> list[Piece | list[Piece]]:
    """Pieces in reversed order; of those that are alike, if there are enough, a list in the place of the first."""
    alike: dict[Alike, list[Piece]] = {}
    for piece in pieces:
        alike.setdefault(_alike(piece), []).append(piece)
    rows: list[Piece | list[Piece]] = []
    for each in alike.values():
        enough = SAME if len({piece.name for piece in each}) == 1 else NUMBERED
        rows += [each] if len(each) >= enough else each
    return rows[::-1]


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
