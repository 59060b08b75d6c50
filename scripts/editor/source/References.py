"""What a level's calls name other pieces by: the route of a walker, the door that a deed opens."""

from __future__ import annotations

import functools
from typing import TYPE_CHECKING, Any, Iterable

from editor.source.Parameters import Pattern, parametersOf

if TYPE_CHECKING:
    from editor.source.Pieces import Piece

#: Parameters that are names of pieces with commas between them, and those that are deeds of `objects.Happenings`.
_NAMES, _DEEDS = ('route',), ('do',)


@functools.lru_cache(maxsize=None)
def _tellsNames(pattern: Pattern) -> bool:
    return any(each.name in _NAMES for each in parametersOf(pattern))


def takenAtLoad(pieces: Iterable[Piece], names: set[str]) -> list[Piece]:
    """Those of some pieces that have looked one of these names up when they were built."""
    return [piece for piece in pieces if _tellsNames(piece.pattern) and any(
        names & {part.strip() for part in str(value).split(',')}
        for name, value in piece.given.items() if name in _NAMES)]


def renamed(piece: Piece, before: str, after: str) -> dict[str, Any]:
    """The arguments of a piece that say another name or path; {} for one that does not say it."""
    found = {name: _named(value, before, after) for name, value in piece.given.items() if name in _NAMES}
    found.update((name, _done(value, before, after)) for name, value in piece.given.items() if name in _DEEDS)
    return {name: value for name, value in found.items() if value != piece.given[name]}


def _named(value: Any, before: str, after: str) -> Any:
    if not isinstance(value, str) or before not in (part.strip() for part in value.split(',')):
        return value
    return ', '.join(after if part.strip() == before else part.strip() for part in value.split(','))


def _done(value: Any, before: str, after: str) -> Any:
    if not isinstance(value, (list, tuple)):
        return value
    return type(value)(_deed(each, before, after) for each in value)


def _deed(deed: Any, before: str, after: str) -> Any:
    from objects.Happenings import DEEDS
    parts: list[Any] = list(deed) if isinstance(deed, (list, tuple)) else []
    known = DEEDS.get(parts[0]) if len(parts) > 1 and isinstance(parts[0], str) else None
    if known is None or not known.isThing or parts[1] != before:
        return deed
    return type(deed)([parts[0], after, *parts[2:]])
