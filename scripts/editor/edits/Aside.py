"""Pieces that stand in the level no more, or stand there as others, and are kept alive for whoever undoes that.

    kept = Aside.note(pieces, piece)
    Aside.take(pieces, kept)               # False where the piece has to be built anew once it is wanted again
    Aside.giveBack(pieces, kept, parent)

The engine keeps the objects (`ShelfSystem`): drawn, touched and found by nobody, as good as gone. Lamps, furniture,
walls and loose bodies are taken; what acts by itself, or is known to others, is built anew as ever.
"""

from __future__ import annotations

import functools
from collections import OrderedDict
from typing import TYPE_CHECKING, Any, NamedTuple

import kaVel
from editor.edits import Address, Touches

if TYPE_CHECKING:
    from editor.edits.Standing import Standing
    from editor.source.Pieces import LevelPieces, Piece

#: How many pieces are kept; where more come, the oldest ones go.
MOST = 20000


class Row(NamedTuple):
    """What a piece was when it was taken."""

    piece: Piece
    root: Any
    stand: Standing
    above: Piece | None
    steps: tuple[Address.Step, ...]


class Kept(NamedTuple):
    """A piece that was taken, with those that hang below it; the first row is its own."""

    rows: list[Row]

    @property
    def root(self) -> Any:
        return self.rows[0].root


_kept: OrderedDict[Any, Kept] = OrderedDict()  # by root, the oldest first
_count = 0


@functools.cache
def _shelf() -> kaVel.ShelfSystem:
    return kaVel.getSystem('ShelfSystem')


def note(pieces: LevelPieces, piece: Piece) -> Kept:
    """What a piece and those below it are now."""
    return Kept([Row(each, each.root, each.stand, each.above, each.steps) for each in (piece, *pieces.below(piece))])


def take(pieces: LevelPieces, kept: Kept) -> bool:
    """Takes what was noted out of the level, with all its objects; False, with nothing done, where that cannot be."""
    global _count
    if not _shelf().take(kept.root):
        return False
    while _kept and not next(iter(_kept)):  # gone with its level
        _forget(next(iter(_kept.values())))
    _kept[kept.root] = kept
    _count += len(kept.rows)
    while _count > MOST and len(_kept) > 1:
        _dropOldest(pieces)
    return True


def isThere(kept: Kept | None) -> bool:
    """Whether something was taken and is still there to be given back."""
    return kept is not None and _kept.get(kept.root) is kept and _shelf().holds(kept.root)


def giveBack(pieces: LevelPieces, kept: Kept | None, parent: Any, before: Any = None) -> bool:
    """Hangs what was taken below a parent, before one of its children or behind all, and has its pieces stand again."""
    if not kept or _kept.get(kept.root) is not kept:
        return False
    if not _shelf().giveBack(kept.root, parent, before or kaVel.Handle()):
        return False
    _forget(kept)
    for row in kept.rows:
        pieces.putBack(*row)
    return True


def discard(kept: Kept | None):
    """Has go for good what was taken and is wanted no more."""
    if kept is not None and _kept.get(kept.root) is kept:
        _forget(kept)
        _shelf().discard(kept.root)


def _forget(kept: Kept):
    global _count
    del _kept[kept.root]
    _count -= len(kept.rows)


def _dropOldest(pieces: LevelPieces):
    kept = next(iter(_kept.values()))
    findTouches(pieces, kept)
    discard(kept)


def findTouches(pieces: LevelPieces, kept: Kept):
    """Finds what the level had done to pieces that were taken out of it, before they are lost."""
    parents: dict[Piece | None, Any] = {}
    standing: Any = None
    for row in kept.rows:
        if row.piece.removed and row.root:
            above = parents.get(row.above, row.above.root if row.above else pieces.level)
            parent = Address.follow(above, row.steps) if above else None
            if parent:
                # What hung below another one is compared beside it: only what the first one hung below is in the level.
                standing = standing or parent
                Touches.find(row.piece, row.root, standing)
            parents[row.piece] = row.root
