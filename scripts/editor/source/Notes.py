"""What no line of a script could be changed for, as the lines of the level's file of changes."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

import levelChanges
from editor.edits import Address
from editor.edits.Refused import Refused
from editor.source import Literals, Paths
from levelChanges import NAME, PARENT, PLACED, REMOVED

if TYPE_CHECKING:
    from editor.source.Pieces import LevelPieces, Piece

HEAD = ('# What the editor has changed in the level %s where no line of its scripts could be: see '
        '`levelChanges`.\n')


class Notes:
    """The changes that a level's file is to have: those that it has had, and what was done since."""

    def __init__(self, pieces: LevelPieces, before: str):
        self._pieces = pieces
        #: Where the scripts call for pieces, and by which paths they name them.
        self.spots = Paths.spotsOf(pieces.everyone())
        self.paths = Paths.of(self.spots)
        # What became of calls is told anew; what no piece stands for stays as it is.
        known = set(self.paths.values())
        self._lines = {(line.path, line.key): line.value for line in levelChanges.read(before)
                       if (line.path not in known or line.key[0] == '.') and line.key != PLACED}

    def follow(self, spots: dict[Piece, Paths.Spot]):
        """Names things as the scripts will, which call for pieces at other spots."""
        after = Paths.of(spots)
        moved = {path: after.get(piece) for piece, path in self.paths.items()}
        lines: dict[tuple[str, str], Any] = {}
        for (path, key), value in self._lines.items():
            begin, rest = _longest(path, moved)
            now = moved.get(begin, begin)
            if now is not None:
                lines[now + rest, key] = value
        self._lines, self.spots, self.paths = lines, spots, after

    def has(self, piece: Piece) -> bool:
        """Whether something is noted of a piece, or of what is below it in the scripts."""
        path = self.paths.get(piece, '')
        return any(line == path or line.startswith(path + '/') for line, key in self._lines if key != PARENT
                   or line != path)

    def path(self, piece: Piece) -> str:
        """Where the scripts have a piece."""
        return self.paths.get(piece) or piece.path

    def argument(self, piece: Piece, name: str, value: Any):
        self._note(piece, self.path(piece), name, value)

    def placed(self, piece: Piece):
        """Notes a piece that no script calls for, and is not to."""
        if '.' in piece.patternName:
            raise Refused('%s is a pattern of the level\'s own, which no note can call' % piece.patternName)
        self._note(piece, self.path(piece), PLACED, (piece.patternName, dict(piece.given)))

    def removed(self, piece: Piece):
        path = self.path(piece)
        self._lines = {key: value for key, value in self._lines.items() if key[0] != path or key[1][0] == '.'}
        self._lines[path, REMOVED] = None

    def renamed(self, piece: Piece):
        self._note(piece, self.path(piece), NAME, piece.name)

    def parent(self, piece: Piece):
        above = self._pieces.pieceOf(piece.parent)
        path = Address.show(Address.below(above.root if above else self._pieces.level, piece.parent))
        self._lines[self.path(piece), PARENT] = '/'.join(filter(None, [self.path(above) if above else '', path]))

    def property(self, address: Address.Address, name: str, value: Any):
        piece = self._pieces.number(address[0]) if address[0] else None
        path = '/'.join(filter(None, [self.path(piece) if piece else '', Address.show(address[1])]))
        self._note(piece, path, '.' + name, value)

    def _note(self, piece: Piece | None, path: str, key: str, value: Any):
        if not Literals.isWritable(value):
            raise Refused('%s of %s is %r, which no text stands for' % (key.lstrip('.'), path, value))
        try:
            levelChanges.valueOf(Literals.show(value))
        except (ValueError, SyntaxError):
            raise Refused('%s of %s is %r, which no note can say' % (key.lstrip('.'), path, value)) from None
        self._lines[path, key] = value

    def text(self, levelName: str) -> str:
        """The whole file; '' where nothing is noted."""
        rows = ['%s: %s' % (path, REMOVED if key == REMOVED else '%s = %s' % (key, Literals.show(value)))
                for (path, key), value in sorted(self._lines.items(), key=lambda each: each[0])]
        return HEAD % levelName + '\n'.join(rows) + '\n' if rows else ''


def _longest(path: str, known: Any) -> tuple[str, str]:
    """The longest beginning of a path that is known, and the rest; all of it where none is."""
    begin = path
    while begin and begin not in known:
        begin = begin.rpartition('/')[0]
    return (begin, path[len(begin):]) if begin else (path, '')
