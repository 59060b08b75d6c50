"""Has patterns build pieces in a level that stands: new ones, and those whose arguments have changed."""

from __future__ import annotations

import traceback
from typing import TYPE_CHECKING, Any

import kaVel
from editor.edits import Address, Aside, Order, Touches
from editor.edits.Refused import Refused

if TYPE_CHECKING:
    from editor.source.Pieces import LevelPieces, Piece

#: Name of what was murdered and waits for the end of the frame, so that no path leads to it.
GONE = '.gone'


def build(pieces: LevelPieces, piece: Piece, parent: Any, properties: dict[Any, Any], before: Any = None):
    """Builds a piece below a parent, before one of its children, with the properties that were changed below it.

    Refused if its pattern fails; what it had made by then is gone.
    """
    root = _called(piece, parent)
    if before:
        kaVel.Reflection.placeBefore(root, before)
    Touches.again(piece, root)
    pieces.enter(piece, root)
    _giveProperties(pieces, piece, properties)
    kaVel.finishLoad(root)
    if piece.hidden:
        show(piece, False)


def _called(piece: Piece, parent: Any) -> Any:
    if piece.missing:
        raise Refused(piece.missing)
    before = parent.childCount
    options = dict(piece.given)
    if piece.takesName:
        options['name'] = piece.name
    try:
        root = piece.pattern(parent, **options)
    except Exception as error:
        for child in list(parent.children)[before:]:
            bury(child)
        kaVel.log('%s is not built:\n%s' % (piece, traceback.format_exc()))
        raise Refused('%s %r is not built: %s' % (piece.patternName, piece.name, error)) from error
    if not root:
        raise Refused('the pattern %s has built nothing' % piece.patternName)
    return root


def _giveProperties(pieces: LevelPieces, piece: Piece, properties: dict[Any, Any]):
    for (address, name), value in properties.items():
        if address[0] != piece.number:
            continue
        handle = Address.find(pieces, address)
        if not handle:
            kaVel.log('%s has no %s any more: %s is not set' % (piece, Address.show(address[1]), name))
            continue
        setattr(handle, name, value)


def rebuild(pieces: LevelPieces, piece: Piece, properties: dict[Any, Any], parent: Any = None) -> Aside.Kept | None:
    """Has a piece built anew where it stands, and the pieces below it with it; the old one stays where that fails.

    Gives the old one where that is kept.
    """
    kept = Aside.note(pieces, piece)
    old, order = piece.root, Order.Order(pieces)
    below = [(each, Address.below(each.above.root if each.above else old, each.root.parent))
             for each in pieces.below(piece)]
    places = [(each, order.behind(each)) for each, _ in below]
    before = old if parent is None else None
    build(pieces, piece, old.parent if parent is None else parent, properties, before)
    isKept = Aside.take(pieces, kept)
    if not isKept:
        bury(old)
    for each, steps in below:
        assert each.above
        place = Address.follow(each.above.root, steps) if each.above.root else None
        if place:
            build(pieces, each, place, properties)
        else:
            kaVel.log('%s stood below what is no more, and is gone with it' % each)
            pieces.leave(each)
    Order.restore(pieces, [(each, behind) for each, behind in places if each.root])
    return kept if isKept else None


def takeAway(pieces: LevelPieces, piece: Piece):
    """Takes a piece out of the level with those below it; kept alive in its `aside` where that can be."""
    kept = Aside.note(pieces, piece)
    piece.aside = kept if Aside.take(pieces, kept) else None
    if not piece.aside:
        for row in kept.rows:
            Touches.find(row.piece)
        bury(kept.root)
    for row in reversed(kept.rows):
        pieces.leave(row.piece)


def bury(root: Any):
    """Murders an object, whose name is free at once."""
    if root:
        root.setName(GONE)
        root.murder()


def show(piece: Piece, shown: bool):
    """Has what is drawn below a piece's root be seen, or not."""
    drawn = kaVel.Reflection.GraphicsComponent2
    for each in kaVel.descendants(piece.root) if piece.root else ():
        if each._getType().isSubclassOf(drawn):
            each.visible = shown
