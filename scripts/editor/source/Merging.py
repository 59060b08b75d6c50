"""Joins two changes of one text, line by line."""

from __future__ import annotations

import difflib
from typing import NamedTuple


class Conflict(NamedTuple):
    """Lines, counted from 1 in the text of the others, that both have changed, each otherwise."""
    first: int
    last: int


class _Hunk(NamedTuple):
    begin: int
    end: int
    lines: list[str]


def join(base: str, ours: str, theirs: str) -> tuple[str, list[Conflict]]:
    """A text with the changes of both, and where they contradict each other: there it has theirs."""
    if theirs == base or ours == theirs:
        return ours, []
    if ours == base:
        return theirs, []
    rows = base.splitlines(keepends=True)
    mine, other = _hunks(rows, ours), _hunks(rows, theirs)
    conflicts, taken = [], list(other)
    for hunk in mine:
        meeting = [each for each in other if _meet(hunk, each)]
        if hunk in meeting:
            continue  # both did the same
        if meeting:
            shift = sum(len(each.lines) - (each.end - each.begin) for each in other if each.end <= meeting[0].begin)
            conflicts.append(Conflict(meeting[0].begin + shift + 1,
                                      max(each.begin + shift + max(len(each.lines), 1) for each in meeting)))
        else:
            taken.append(hunk)
    for hunk in sorted(taken, reverse=True):
        rows[hunk.begin:hunk.end] = hunk.lines
    return ''.join(rows), conflicts


def _hunks(base: list[str], text: str) -> list[_Hunk]:
    lines = text.splitlines(keepends=True)
    matcher = difflib.SequenceMatcher(None, base, lines, autojunk=False)
    return [_Hunk(begin, end, lines[a:b]) for tag, begin, end, a, b in matcher.get_opcodes() if tag != 'equal']


def _meet(one: _Hunk, other: _Hunk) -> bool:
    """Whether two changes touch the same lines, or put something at the same place."""
    if one.begin == one.end or other.begin == other.end:
        return one.begin <= other.end and other.begin <= one.end
    return one.begin < other.end and other.begin < one.end
