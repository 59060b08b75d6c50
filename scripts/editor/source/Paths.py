"""How the scripts of a level name what they call for: paths below the level, as notes and reloads tell pieces by them.

A change of the tree moves no path: only other lines of the scripts do.
"""

from __future__ import annotations

from typing import TYPE_CHECKING, Iterable, NamedTuple

from editor.edits import Address

if TYPE_CHECKING:
    from editor.source.Pieces import Piece


class Spot(NamedTuple):
    """Where the scripts call for a piece: below which one, how far below, under which name, and when."""

    above: Piece | None
    steps: tuple[Address.Step, ...]
    name: str
    order: int


def spotsOf(pieces: Iterable[Piece]) -> dict[Piece, Spot]:
    """The spots of those pieces that scripts have called for."""
    return {piece: Spot(piece.source.above, piece.source.steps, piece.source.name, piece.source.order)
            for piece in pieces if piece.source}


def of(spots: dict[Piece, Spot]) -> dict[Piece, str]:
    """The path of each, with which one it is of those that share a name and what they are called below."""
    counts: dict[tuple[Piece | None, tuple[Address.Step, ...], str], int] = {}
    numbers: dict[Piece, int] = {}
    for piece, spot in sorted(spots.items(), key=lambda each: each[1].order):
        numbers[piece] = counts.get(spot[:3], 0)
        counts[spot[:3]] = numbers[piece] + 1
    found: dict[Piece, str] = {}
    for piece in spots:
        _find(piece, spots, numbers, found)
    return found


def _find(piece: Piece, spots: dict[Piece, Spot], numbers: dict[Piece, int], found: dict[Piece, str]) -> str:
    if piece not in found:
        spot = spots.get(piece)
        if spot is None:
            return piece.path
        above = [_find(spot.above, spots, numbers, found)] if spot.above else []
        found[piece] = '/'.join([*above, Address.show((*spot.steps, (spot.name, numbers[piece])))])
    return found[piece]


def isCalledBelow(piece: Piece, above: Iterable[Piece], spots: dict[Piece, Spot]) -> bool:
    """Whether the scripts call for a piece below one of others, wherever they hang now."""
    wanted = set(above)
    spot = spots.get(piece)
    while spot and spot.above:
        if spot.above in wanted:
            return True
        spot = spots.get(spot.above)
    return False
