"""Where pieces stand among their siblings, in a way that outlives handles."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any, Iterator, NamedTuple

import kaVel
from editor.edits import Address

if TYPE_CHECKING:
    from editor.source.Pieces import LevelPieces, Piece


class Behind(NamedTuple):
    """What stands behind a piece: another piece, or else a sibling that is none; neither behind the last one.

    The step counts those of a name that are no pieces.
    """
    piece: Piece | None = None
    step: Address.Step | None = None


class Order:
    """The order of a level's pieces as it was when they were first asked for."""

    def __init__(self, pieces: LevelPieces):
        self._pieces = pieces
        self._rows: dict[Any, dict[Any, tuple[int, Behind]]] = {}  # by parent and child

    def behind(self, piece: Piece) -> Behind:
        """What stands behind a piece."""
        return self._row(piece.parent)[piece.root][1]

    def place(self, piece: Piece) -> int:
        """How many siblings stand before a piece."""
        return self._row(piece.parent)[piece.root][0]

    def _row(self, parent: Any) -> dict[Any, tuple[int, Behind]]:
        if parent not in self._rows:
            told = [*_told(self._pieces, parent), (None, Behind())]
            self._rows[parent] = {child: (number, behind)
                                  for number, ((child, _), (_, behind)) in enumerate(zip(told, told[1:]))}
        return self._rows[parent]


def restore(pieces: LevelPieces, places: list[tuple[Piece, Behind]]):
    """Puts pieces before what stood behind them; siblings among them are told in the order that they had."""
    siblings: dict[Any, dict[Behind, Any]] = {}
    for piece, behind in reversed(places):
        if behind.piece:
            kaVel.Reflection.placeBefore(piece.root, behind.piece.root)
        elif behind.step:
            parent = piece.parent
            if parent not in siblings:
                siblings[parent] = {told: child for child, told in _told(pieces, parent)}
            if behind in siblings[parent]:
                kaVel.Reflection.placeBefore(piece.root, siblings[parent][behind])


def _told(pieces: LevelPieces, parent: Any) -> Iterator[tuple[Any, Behind]]:
    """The children of an object, each with what is noted of it as somebody's next."""
    counts: dict[str, int] = {}
    for child in parent.children:
        if child.isDying():
            continue
        piece = pieces.builtAs(child)
        if piece:
            yield child, Behind(piece)
            continue
        name = Address.nameOf(child)
        yield child, Behind(None, (name, counts.setdefault(name, 0)))
        counts[name] += 1
