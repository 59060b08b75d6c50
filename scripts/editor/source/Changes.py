"""What an edit does to a level, each kind with its way back."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any, Protocol

import kaVel
from editor.source import Address, Making, Parameters, Standing, Touches
from editor.source.Refused import Refused

if TYPE_CHECKING:
    from editor.source.Edits import LevelEdits
    from editor.source.Pieces import Piece

#: Parameters that only say where a piece stands.
PLACING = frozenset(('at', 'turn', 'pitch', 'roll'))


class Change(Protocol):
    """Something that can be done and undone; both raise Refused and change nothing where they cannot be."""

    def do(self, edits: LevelEdits) -> None: ...
    def undo(self, edits: LevelEdits) -> None: ...


def _standing(piece: Piece) -> Piece:
    if not piece.root:
        raise Refused('%s %r stands in the level no more' % (piece.patternName, piece.name))
    return piece


class Arguments:
    """Other arguments for a piece. One that only moves is moved as a whole; any other one is built anew."""

    def __init__(self, piece: Piece, after: dict[str, Any]):
        self.piece = piece
        self.before, self.after = dict(piece.given), after
        self._moved: list[_Move] = []

    def do(self, edits: LevelEdits):
        _standing(self.piece)
        if self._moves():
            if not self._stand(onwards=True):
                self._plan(edits)
                self._stand(onwards=True)
        else:
            self._give(edits, self.after, self.before)

    def undo(self, edits: LevelEdits):
        _standing(self.piece)
        if self._stand(onwards=False):
            return
        self._give(edits, self.before, self.after)

    def _moves(self) -> bool:
        changed = {name for name in {*self.before, *self.after} if self.before.get(name) != self.after.get(name)}
        if not changed <= PLACING or 'at' not in _full(self.piece, self.before) or not _isRigid(self.piece):
            return False
        return self._motion().isAll(self.piece.stand)

    def _motion(self) -> Standing.Motion:
        return Standing.Motion(_full(self.piece, self.before), _full(self.piece, self.after))

    def _plan(self, edits: LevelEdits):
        """Notes where the piece and the pieces below it stand, and will stand."""
        piece = self.piece
        motion = self._motion()
        self._moved = [_Move(piece, motion, self.after)]
        self._moved += [_Move(each, motion, _carried(each, motion)) for each in edits.pieces.below(piece)]

    def _stand(self, onwards: bool) -> bool:
        """Stands all that it moves as it is after the move, or before; False where something was built anew since."""
        if not self._moved or not all(move.isReady(onwards) for move in self._moved):
            return False
        for move in self._moved:
            move.stand(onwards)
        return True

    def _give(self, edits: LevelEdits, wanted: dict[str, Any], present: dict[str, Any]):
        piece = self.piece
        carried = [(each, dict(each.given)) for each in edits.pieces.below(piece)]
        for each in [piece, *(each for each, _ in carried)]:
            Touches.find(each)
        moves = 'at' in _full(piece, wanted) and any(wanted.get(name) != present.get(name) for name in PLACING)
        motion = Standing.Motion(_full(piece, present), _full(piece, wanted)) if moves else None
        piece.setGiven(wanted)
        for each, _ in carried if motion else ():
            each.setGiven(_carried(each, motion))
        if piece.stand.isKept:
            self._standKept(motion)
            return
        try:
            Making.rebuild(edits.pieces, piece, edits.properties)
        except Refused:
            piece.setGiven(present)
            for each, given in carried:
                each.setGiven(given)
            raise

    def _standKept(self, motion: Standing.Motion | None):
        """What others hold on to is not built anew: it is moved, and the rest shows when the level is loaded."""
        if motion:
            after = self.piece.stand.moved(motion)
            after.restore()
            self.piece.stand = after


class _Move:
    """How one piece stands, and what its call says, before and after a move."""

    def __init__(self, piece: Piece, motion: Standing.Motion, after: dict[str, Any]):
        self._piece = piece
        self._before = piece.stand, dict(piece.given)
        self._after = piece.stand.moved(motion), after

    def isReady(self, onwards: bool) -> bool:
        return self._piece.stand is (self._before if onwards else self._after)[0]

    def stand(self, onwards: bool):
        stand, given = self._after if onwards else self._before
        stand.restore()
        self._piece.stand = stand
        self._piece.setGiven(given)


def _full(piece: Piece, given: dict[str, Any]) -> dict[str, Any]:
    every = {each.name: each.default for each in Parameters.parametersOf(piece.pattern)
             if each.name in PLACING and each.default is not Parameters.Needed}
    every.update(given)
    return every


def _isRigid(piece: Piece) -> bool:
    """Whether a piece can be moved as it stands: every object of it takes its place from a transform."""
    return piece.stand.isRigid and bool(piece.stand.places)


def _carried(piece: Piece, motion: Standing.Motion | None) -> dict[str, Any]:
    """The arguments of a piece that moves along with the one that it hangs below."""
    from editor.source import Literals
    given = dict(piece.given)
    if motion is None or 'at' not in _full(piece, given) or not isinstance(_full(piece, given)['at'], tuple):
        return given
    x, y, z = _full(piece, given)['at']
    place = motion.place(kaVel.Vec4(x, y, z, 1))
    given['at'] = Literals.rounded('at', place)
    if motion.turned and 'turn' in _full(piece, given):
        given['turn'] = Literals.rounded('turn', _full(piece, given)['turn'] + motion.turned)
    return given


class Adding:
    """A new piece below an object."""

    def __init__(self, edits: LevelEdits, piece: Piece, parent: Any):
        self.piece = piece
        self._parent = Address.of(edits.pieces, parent)

    def do(self, edits: LevelEdits):
        parent = Address.find(edits.pieces, self._parent)
        if not parent:
            raise Refused('what %r was to hang below is gone' % self.piece.name)
        Making.build(edits.pieces, self.piece, parent, edits.properties)

    def undo(self, edits: LevelEdits):
        root = _standing(self.piece).root
        edits.pieces.leave(self.piece)
        Making.bury(root)


class Removing:
    """Takes pieces out of the level, with all that hangs below them."""

    def __init__(self, edits: LevelEdits, pieces: list[Piece]):
        taken = set(pieces)
        self.tops = [piece for piece in pieces if not _isBelow(piece, taken)]
        self._gone: list[tuple[Piece, Address.Address, Piece | None, Any]] = []

    def do(self, edits: LevelEdits):
        for piece in self.tops:
            _standing(piece)
        self._gone = []
        gone, behind = [], _Behind(edits)
        for top in self.tops:
            for piece in [top, *edits.pieces.below(top)]:
                Touches.find(piece)
        for top in self.tops:
            for piece in [top, *edits.pieces.below(top)]:
                gone.append((piece, Address.of(edits.pieces, piece.parent), *behind.of(piece)))
        self._gone = gone
        roots = [top.root for top in self.tops]
        for piece, *_ in reversed(gone):
            edits.pieces.leave(piece)
        for root in roots:
            Making.bury(root)

    def undo(self, edits: LevelEdits):
        waiting: list[tuple[Piece, Piece | None, Any]] = []
        for piece, address, following, handle in self._gone:
            parent = Address.find(edits.pieces, address)
            if not parent:
                raise Refused('what %r hung below is gone' % piece.name)
            Making.build(edits.pieces, piece, parent, edits.properties)
            waiting.append((piece, following, handle))
        for piece, following, handle in reversed(waiting):
            sibling = following.root if following else handle
            if sibling:
                kaVel.Reflection.placeBefore(piece.root, sibling)


def _isBelow(piece: Piece, taken: set[Piece]) -> bool:
    above = piece.above
    while above:
        if above in taken:
            return True
        above = above.above
    return False


class _Behind:
    """What stands behind each child of its parent: a piece, since its root may change, or an object."""

    def __init__(self, edits: LevelEdits):
        self._pieces = edits.pieces
        self._order: dict[Any, dict[Any, Any]] = {}

    def of(self, piece: Piece) -> tuple[Piece | None, Any]:
        parent = piece.parent
        if parent not in self._order:
            living = [each for each in parent.children if not each.isDying()]
            self._order[parent] = dict(zip(living, living[1:]))
        handle = self._order[parent].get(piece.root, kaVel.Handle())
        other = self._pieces.pieceOf(handle) if handle else None
        return (other, handle) if other and other.root == handle else (None, handle)


class Renaming:
    """Another name for a piece's root."""

    def __init__(self, piece: Piece, name: str):
        self.piece, self.before, self.after = piece, piece.name, name

    def do(self, edits: LevelEdits):
        self._give(self.after)

    def undo(self, edits: LevelEdits):
        self._give(self.before)

    def _give(self, name: str):
        _standing(self.piece).root.setName(name)
        self.piece.setName(name)


class Reparenting:
    """Another parent for a piece."""

    def __init__(self, edits: LevelEdits, piece: Piece, parent: Any):
        self.piece = piece
        self._before, self._after = (Address.of(edits.pieces, each) for each in (piece.parent, parent))
        self._behind: tuple[Piece | None, Any] = (None, kaVel.Handle())

    def do(self, edits: LevelEdits):
        self._behind = _Behind(edits).of(_standing(self.piece))
        self._hang(edits, self._after)

    def undo(self, edits: LevelEdits):
        self._hang(edits, self._before)
        piece, handle = self._behind
        sibling = piece.root if piece else handle
        if sibling:
            kaVel.Reflection.placeBefore(self.piece.root, sibling)

    def _hang(self, edits: LevelEdits, address: Address.Address):
        parent = Address.find(edits.pieces, address)
        root = _standing(self.piece).root
        if not parent:
            raise Refused('what %r is to hang below is gone' % self.piece.name)
        if _mapOf(parent) == _mapOf(root) and not self.piece.stand.isKept:
            # What it is built from does not tell where it hangs, and nothing but the tree changes.
            root.setParent(parent)
            edits.pieces.hang(self.piece)
        else:
            Making.rebuild(edits.pieces, self.piece, edits.properties, parent)


def _mapOf(entity: Any) -> Any:
    isMap = entity._getType().isSubclassOf(kaVel.Reflection.MapRootEntity)
    return entity if isMap else entity.getAncestorOfType(kaVel.Reflection.MapRootEntity)


class Property:
    """Another value of a reflected property of any object of the level."""

    def __init__(self, edits: LevelEdits, handle: Any, name: str, value: Any, before: Any = None):
        self._key = Address.of(edits.pieces, handle), name
        self._value = value
        self._before = getattr(handle, name) if before is None else before
        self._first = self._key not in edits.properties

    def do(self, edits: LevelEdits):
        handle = self._find(edits)
        try:
            setattr(handle, self._key[1], self._value)
        except Exception as error:
            _putBack(handle, self._key[1], self._before)
            raise Refused('%s stays %r: %s' % (self._key[1], self._before, error)) from error
        edits.properties[self._key] = self._value

    def undo(self, edits: LevelEdits):
        setattr(self._find(edits), self._key[1], self._before)
        if self._first and self._key not in edits.written:
            edits.properties.pop(self._key, None)
        else:
            edits.properties[self._key] = self._before

    def _find(self, edits: LevelEdits) -> Any:
        handle = Address.find(edits.pieces, self._key[0])
        if not handle:
            raise Refused('the object whose %s was set is gone' % self._key[1])
        return handle


def _putBack(handle: Any, name: str, value: Any):
    """Gives a property its value back after a setter that failed half-way; one that fails again cannot be helped."""
    try:
        setattr(handle, name, value)
    except Exception as error:
        kaVel.log('%s cannot be set back either: %s' % (name, error))


class Mark:
    """What the editor alone knows of a piece: `locked`, `hidden`, `group`."""

    def __init__(self, piece: Piece, name: str, value: Any):
        self.piece, self._name = piece, name
        self._before, self._after = getattr(piece, name), value

    def do(self, edits: LevelEdits):
        self._give(self._after)

    def undo(self, edits: LevelEdits):
        self._give(self._before)

    def _give(self, value: Any):
        setattr(self.piece, self._name, value)
        if self._name == 'hidden':
            Making.show(self.piece, not value)
