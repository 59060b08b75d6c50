"""Finds pieces again in a level that was loaded anew, so that numbers, history and unsaved edits go on."""

from __future__ import annotations

from typing import Any

import kaVel
from editor.edits import Address, Aside, Making
from editor.edits.Refused import Refused
from editor.source import Files, Parameters, Paths
from editor.source.Pieces import LevelPieces, Piece


def follow(pieces: LevelPieces, level: kaVel.Coordinator):
    """Has the pieces of a level stand for those of the level that took its place.

    They are found by path and pattern. What was changed and not saved is changed again; what is not found is told.
    """
    Parameters.forget()
    fresh = LevelPieces(level)
    found = _paired(pieces, fresh)
    pieces.begin(level)
    numbers = {new: old for old, new in found.items()}
    unsaved: list[tuple[Piece, str, dict[str, Any]]] = []
    gone: list[Piece] = []
    hung = [(old, old.above, old.steps) for old in pieces.all() if old.placed and (old.above, old.steps) != old.placed]
    lost: list[tuple[Piece, bool]] = []  # and whether it is to stand again
    for old in pieces.everyone():
        if old not in found:
            lost.append((old, old.source is None and old.saved is None and not old.removed))
            old.source = None
    for new in fresh.everyone():
        old = numbers.get(new)
        if old is None:
            pieces.adopt(new)
            continue
        if new.removed:
            old.source = new.source
            if not old.removed:
                lost.append((old, True))  # it was brought back since it was saved
            continue
        if old.removed:
            gone.append(old)
        wanted = _unsaved(old, new)
        _stand(old, new)
        pieces.enterFound(old)
        if wanted:
            unsaved.append((old, *wanted))
    for piece in pieces.everyone():
        if piece.above in numbers:
            piece.above = numbers[piece.above]
        if piece.source and piece.source.above in numbers:
            piece.source.above = numbers[piece.source.above]
        if piece.placed and piece.placed[0] in numbers:
            piece.placed = numbers[piece.placed[0]], piece.placed[1]
    _again(pieces, unsaved, gone, lost)
    for piece, above, steps in hung:
        _hangAgain(pieces, piece, above, steps)


def _paired(pieces: LevelPieces, fresh: LevelPieces) -> dict[Piece, Piece]:
    """Old pieces and those that stand for them: by how the scripts name them, or else by what they are."""
    known: dict[Piece, str] = pieces.edits.paths if pieces.edits else Paths.of(Paths.spotsOf(pieces.everyone()))
    present = {path: new for new, path in Paths.of(Paths.spotsOf(fresh.everyone())).items()}
    byPath = {old: present[path] for old, path in known.items()
              if path in present and present[path].patternName == old.patternName}
    isOurs = pieces.edits and pieces.edits.texts.areAsWritten()
    pairs = {old: new for old, new in byPath.items() if isOurs or _isToldAlike(old, new)}
    pairs.update(_byTelling([each for each in pieces.all() if each not in pairs],
                            [each for each in fresh.all() if each not in set(pairs.values())]))
    taken = set(pairs.values())
    for old, new in byPath.items():
        if old not in pairs and new not in taken:
            pairs[old] = new
            taken.add(new)
    return pairs


def _isToldAlike(old: Piece, new: Piece) -> bool:
    """Whether the scripts tell the same of two pieces as they did when they were read or written last."""
    before = old.saved or ((old.source.name, old.source.given) if old.source else (old.name, old.given))
    return before == (new.name, new.given)


def _byTelling(olds: list[Piece], news: list[Piece]) -> dict[Piece, Piece]:
    """Pairs of the same path. Of those that share it with others, the ones that are told the same go first: where one
    was removed and brought back, their order tells nothing.
    """
    pairs: dict[Piece, Piece] = {}
    present: dict[str, list[Piece]] = {}
    for new in news:
        present.setdefault(new.path, []).append(new)
    isShared = {path for path, there in present.items() if len(there) > 1}
    for isSame in (True, False):
        for old in olds:
            if old in pairs or isSame and old.path not in isShared:
                continue
            there = present.get(old.path, [])
            new = next((new for new in there if new.patternName == old.patternName
                        and (not isSame or new.given == old.given)), None)
            if new:
                pairs[old] = new
                there.remove(new)
    return pairs


def _unsaved(old: Piece, new: Piece) -> tuple[str, dict[str, Any]] | None:
    """Name and arguments of a piece with what was changed and not saved; None where that is nothing."""
    before = old.saved or ((old.source.name, old.source.given) if old.source else (old.name, old.given))
    name = old.name if old.name != before[0] else new.name
    given = dict(new.given)
    for key in {*before[1], *old.given}:
        if before[1].get(key) != old.given.get(key):
            if key in old.given:
                given[key] = old.given[key]
            else:
                given.pop(key, None)
    return (name, given) if name != new.name or given != new.given else None


def _stand(old: Piece, new: Piece):
    """Has a piece stand for what another one has found."""
    old.root, old.pattern, old.source, old.stand = new.root, new.pattern, new.source, new.stand
    old.above, old.steps, old.removed, old.saved = new.above, new.steps, False, None
    old.placed = new.placed
    old.setGiven(dict(new.given))
    old.setName(new.name)


def _again(pieces: LevelPieces, unsaved: list[tuple[Piece, str, dict[str, Any]]], gone: list[Piece],
           lost: list[tuple[Piece, bool]]):
    """Does again what was not saved, and forgets what is nowhere."""
    edits = pieces.edits
    properties = edits.properties if edits else {}
    if edits:
        edits.begin(Files.Texts(pieces.levelName))
    for piece, isWanted in lost:
        _seek(pieces, piece, isWanted, properties)
    for piece, name, given in unsaved:
        try:
            piece.setGiven(given)
            piece.setName(name)
            Aside.discard(Making.rebuild(pieces, piece, properties))
        except Refused as error:
            kaVel.log('%s was edited and not saved, and stays as its script has it: %s' % (piece, error))
    for piece in sorted(gone, key=_depth, reverse=True):  # each by itself, as they may be brought back
        Making.takeAway(pieces, piece)
    if edits:
        edits.setAgain()


def _hangAgain(pieces: LevelPieces, piece: Piece, above: Piece | None, steps: tuple[Address.Step, ...]):
    """Hangs a piece where it hung, which was not saved."""
    if not piece.root or (piece.above, piece.steps) == (above, steps):
        return
    begin = above.root if above else pieces.level
    parent = Address.follow(begin, steps) if begin else None
    if not parent:
        kaVel.log('%s hung below what is found no more, and hangs as its script has it' % piece)
        return
    piece.root.setParent(parent)
    pieces.hang(piece)


def _depth(piece: Piece) -> int:
    return _depth(piece.above) + 1 if piece.above else 0


def _seek(pieces: LevelPieces, piece: Piece, isWanted: bool, properties: dict[Any, Any]):
    """Builds a piece again that was added, or brought back, and not saved; any other one is gone from the scripts."""
    piece.root = kaVel.Handle()
    try:
        piece.pattern, piece.missing = Parameters.named(piece.patternName), ''
    except LookupError as error:
        # What a call has made in a module that levels import has no name to be found by.
        isWanted, piece.missing = False, '' if '<' in piece.patternName else str(error.args[0])
    parent: Any = piece.above.root if piece.above else pieces.level
    for name, _ in piece.steps if parent else ():
        parent = parent.getChild(name)
    if isWanted and parent:
        try:
            Making.build(pieces, piece, parent, properties)
            return
        except Refused as error:
            kaVel.log(str(error))
    if not piece.removed:
        kaVel.log('%s is found no more in the level that was loaded anew' % piece)
    piece.removed = True
