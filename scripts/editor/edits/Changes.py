"""What an edit does to a level, each kind with its way back."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

import kaVel
from editor.edits import Address, Aside, Making, Order, Photo, Standing, Touches
from editor.edits.Refused import Refused
from editor.source import Parameters

if TYPE_CHECKING:
    from editor.edits.Edits import LevelEdits
    from editor.source.Pieces import LevelPieces, Piece

#: Parameters that only say where a piece stands.
PLACING = frozenset(('at', 'turn', 'pitch', 'roll'))


class Change:
    """Something that can be done and undone; both raise Refused and change nothing where they cannot be."""

    def do(self, edits: LevelEdits) -> None:
        raise NotImplementedError

    def undo(self, edits: LevelEdits) -> None:
        raise NotImplementedError

    def forget(self) -> None:
        """Lets go of what it has kept, once it was undone and will not be done again."""


def namesIn(change: Change) -> list[str]:
    """The names of pieces that a change has given or taken from the level."""
    if isinstance(change, Adding):
        return [change.piece.name]
    if isinstance(change, Removing):
        return [piece.name for piece in change.pieces]
    return [change.before, change.after] if isinstance(change, Renaming) else []


def _standing(piece: Piece) -> Piece:
    if not piece.root:
        raise Refused('%s %r stands in the level no more' % (piece.patternName, piece.name))
    return piece


class Arguments(Change):
    """Other arguments for a piece. One that only moves is moved as a whole; any other one is built anew, once."""

    def __init__(self, piece: Piece, after: dict[str, Any]):
        self.piece = piece
        self.before, self.after = dict(piece.given), after
        changed = {name for name in {*self.before, *after} if self.before.get(name) != after.get(name)}
        self._motion = _motion(piece, self.before, after) if changed & PLACING else None
        self._isMove = self._motion is not None and changed <= PLACING
        self._moves: list[_Move] = []  # of the piece, and of those that it carries along
        self._kept: dict[bool, Aside.Kept] = {}  # the piece as it is after the change, or before, while it is not so

    def do(self, edits: LevelEdits):
        _standing(self.piece)
        if self._moves and (self._stand(onwards=True) or self._swap(edits.pieces, onwards=True)):
            return
        self._moves = [_Move(self.piece, self.after)]
        if self._motion:
            motion = self._motion
            self._moves += [_Move(each, _carried(each, motion)) for each in edits.pieces.below(self.piece)]
        if not self._stand(onwards=True):
            self._give(edits, onwards=True)

    def undo(self, edits: LevelEdits):
        _standing(self.piece)
        if not self._stand(onwards=False) and not self._swap(edits.pieces, onwards=False):
            self._give(edits, onwards=False)

    def _stand(self, onwards: bool) -> bool:
        """Stands all that it moves as it is after the move, or before; False where something has to be built anew."""
        if not self._isMove or not all(move.isPossible(onwards) for move in self._moves):
            return False
        for move in self._moves:
            move.stand(onwards)
        return True

    def _give(self, edits: LevelEdits, onwards: bool):
        """Has all of them built anew."""
        whole = [self.piece, *edits.pieces.below(self.piece)]
        for each in whole:
            Touches.find(each)
        for move in self._moves:
            move.give(onwards)
        if any(each.stand.isKept for each in whole):
            self._standKept(onwards)
            return
        try:
            kept = Making.rebuild(edits.pieces, self.piece, edits.properties)
        except Refused:
            for move in self._moves:
                move.give(not onwards)
            raise
        if kept:
            self._kept[not onwards] = kept

    def _swap(self, pieces: LevelPieces, onwards: bool) -> bool:
        """Puts what was kept in the place of what stands there, which is kept in its turn; False where nothing was."""
        wanted = self._kept.pop(onwards, None)
        if not wanted:
            return False
        present = Aside.note(pieces, self.piece)
        isWhole = {row.piece for row in present.rows} <= {row.piece for row in wanted.rows}
        if not isWhole or not Aside.giveBack(pieces, wanted, self.piece.parent, present.root):
            Aside.discard(wanted)
            return False
        for move in self._moves:
            move.give(onwards)
        if Aside.take(pieces, present):
            self._kept[not onwards] = present
        else:
            Making.bury(present.root)
        return True

    def forget(self):
        for kept in self._kept.values():
            Aside.discard(kept)

    def _standKept(self, onwards: bool):
        """What others hold on to is not built anew: it is moved, and the rest shows when the level is loaded."""
        ways = (self.before, self.after) if onwards else (self.after, self.before)
        motion = _motion(self.piece, *ways) if self._motion else None
        for move in self._moves if motion else ():
            assert motion
            move.carry(motion, onwards)


class _Move:
    """How one piece stands, and what its call says, before and after a change."""

    def __init__(self, piece: Piece, after: dict[str, Any]):
        self._piece = piece
        self._motion = _motion(piece, piece.given, after)
        self._before = piece.stand, dict(piece.given)
        self._after = piece.stand.moved(self._motion) if self._motion else piece.stand, after

    def isPossible(self, onwards: bool) -> bool:
        """Whether the piece stands as it was noted, and can be moved to where its pattern would have it."""
        stand = self._before[0]
        if self._motion is None:
            return not stand.places
        isNoted = self._piece.stand is (stand if onwards else self._after[0])
        isRigid = stand.isRigid and bool(stand.places) and self._motion.isAll(stand)
        return isNoted and (isRigid or stand.isKept)

    def stand(self, onwards: bool):
        stand = (self._after if onwards else self._before)[0]
        stand.restore()
        self._piece.stand = stand
        self.give(onwards)

    def carry(self, motion: Standing.Motion, onwards: bool):
        """Moves the piece from where it stands as its own arguments tell, or by a motion where they tell no place."""
        ways = (self._before[1], self._after[1]) if onwards else (self._after[1], self._before[1])
        self._piece.stand = self._piece.stand.moved(_motion(self._piece, *ways) or motion)
        self._piece.stand.restore()

    def give(self, onwards: bool):
        self._piece.setGiven((self._after if onwards else self._before)[1])


def _full(piece: Piece, given: dict[str, Any]) -> dict[str, Any]:
    every = {each.name: each.default for each in Parameters.parametersOf(piece.pattern)
             if each.name in PLACING and each.default is not Parameters.Needed}
    every.update(given)
    return every


def _motion(piece: Piece, before: dict[str, Any], after: dict[str, Any]) -> Standing.Motion | None:
    """What takes a piece from some arguments to others; None for one whose arguments tell no place."""
    wholes = _full(piece, before), _full(piece, after)
    return Standing.Motion(*wholes) if all(map(_tellsPlace, wholes)) else None


def _tellsPlace(arguments: dict[str, Any]) -> bool:
    return isinstance(arguments.get('at'), (tuple, list)) and len(arguments['at']) == 3


def _carried(piece: Piece, motion: Standing.Motion) -> dict[str, Any]:
    """The arguments of a piece that moves along with the one that it hangs below."""
    from editor.source import Literals
    given = dict(piece.given)
    whole = _full(piece, given)
    if not _tellsPlace(whole):
        return given
    given['at'] = Literals.rounded('at', motion.place(kaVel.Vec4(*whole['at'], 1)))
    if motion.turned and 'turn' in whole:
        given['turn'] = Literals.rounded('turn', whole['turn'] + motion.turned)
    return given


class Adding(Change):
    """A new piece below an object."""

    def __init__(self, edits: LevelEdits, piece: Piece, parent: Any):
        self.piece = piece
        self._parent = Address.of(edits.pieces, parent)

    def do(self, edits: LevelEdits):
        parent = Address.find(edits.pieces, self._parent)
        if not parent:
            raise Refused('what %r was to hang below is gone' % self.piece.name)
        if not Aside.giveBack(edits.pieces, self.piece.aside, parent):
            Making.build(edits.pieces, self.piece, parent, edits.properties)

    def undo(self, edits: LevelEdits):
        if self.piece.root:  # its pattern may be gone by now, and with it the piece
            Making.takeAway(edits.pieces, self.piece)

    def forget(self):
        Aside.discard(self.piece.aside)


class Removing(Change):
    """Takes pieces out of the level, with all that hangs below them."""

    def __init__(self, edits: LevelEdits, pieces: list[Piece]):
        taken = set(pieces)
        self.tops = [piece for piece in pieces if not _isBelow(piece, taken)]
        self._gone: list[tuple[Piece, Address.Address, Order.Behind]] = []

    @property
    def pieces(self) -> list[Piece]:
        return [piece for piece, *_ in self._gone]

    def do(self, edits: LevelEdits):
        self.note(edits)
        for top in self.tops:
            Making.takeAway(edits.pieces, top)

    def note(self, edits: LevelEdits):
        """Notes how the pieces stand that are about to go."""
        for piece in self.tops:
            _standing(piece)
        self._gone = []
        gone, order = [], Order.Order(edits.pieces)
        self.tops.sort(key=order.place)
        addresses: dict[Any, Address.Address] = {}
        for top in self.tops:
            for piece in [top, *edits.pieces.below(top)]:
                parent = piece.parent
                if parent not in addresses:
                    addresses[parent] = Address.of(edits.pieces, parent)
                gone.append((piece, addresses[parent], order.behind(piece)))
        self._gone = gone

    def undo(self, edits: LevelEdits):
        back: list[tuple[Piece, Order.Behind]] = []
        parents: dict[Address.Address, Any] = {}
        try:
            for piece, address, behind in self._gone:
                if not piece.root:  # it has not come with the one that it hangs below
                    parent = parents[address] = parents.get(address) or Address.find(edits.pieces, address)
                    self._bringBack(edits, piece, parent)
                    back.append((piece, behind))
        except Refused:
            for piece, _ in back:
                if piece.root:
                    Making.takeAway(edits.pieces, piece)
            raise
        Order.restore(edits.pieces, back)

    @staticmethod
    def _bringBack(edits: LevelEdits, piece: Piece, parent: Any):
        if not parent:
            raise Refused('what %r hung below is gone' % piece.name)
        if not Aside.giveBack(edits.pieces, piece.aside, parent):
            Making.build(edits.pieces, piece, parent, edits.properties)


def _isBelow(piece: Piece, taken: set[Piece]) -> bool:
    above = piece.above
    while above:
        if above in taken:
            return True
        above = above.above
    return False


class Renaming(Change):
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


class Reparenting(Change):
    """Another parent for a piece."""

    def __init__(self, edits: LevelEdits, piece: Piece, parent: Any):
        self.piece = piece
        self._before, self._after = (Address.of(edits.pieces, each) for each in (piece.parent, parent))
        self._behind = Order.Behind()

    def noteBefore(self, edits: LevelEdits):
        """Notes how the piece stands that somebody else is about to hang elsewhere."""
        self._behind = Order.Order(edits.pieces).behind(self.piece)

    def noteAfter(self, edits: LevelEdits):
        """Notes where it hangs now."""
        edits.pieces.hang(self.piece)
        self._after = Address.of(edits.pieces, self.piece.parent)

    def do(self, edits: LevelEdits):
        self._behind = Order.Order(edits.pieces).behind(_standing(self.piece))
        self._hang(edits, self._after)

    def undo(self, edits: LevelEdits):
        self._hang(edits, self._before)
        Order.restore(edits.pieces, [(self.piece, self._behind)])

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
            Aside.discard(Making.rebuild(edits.pieces, self.piece, edits.properties, parent))


class Bare(Change):
    """An object that no level's script has called a pattern for: made by a script, or murdered."""

    def __init__(self, edits: LevelEdits, root: Any, isMade: bool):
        self.name = root.getName()
        self._isMade, self._root = isMade, root
        self._parent = Address.of(edits.pieces, root.parent)
        self._note()

    def _note(self):
        siblings = list(self._root.parent.children)
        self._next = next(iter(siblings[siblings.index(self._root) + 1:]), kaVel.Handle())
        self._step = Address.stepTo(self._root)
        self._photo = Photo.take(self._root)

    def do(self, edits: LevelEdits):
        self._bring(edits) if self._isMade else self._take(edits)

    def undo(self, edits: LevelEdits):
        self._take(edits) if self._isMade else self._bring(edits)

    def _take(self, edits: LevelEdits):
        parent = Address.find(edits.pieces, self._parent)
        if not self._root and parent:
            self._root = Address.follow(parent, (self._step,))  # its piece was built anew
        if not self._root or self._root.isDying():
            return  # it went with its level, which no script has told of it
        self._note()
        if not kaVel.getSystem('ShelfSystem').take(self._root):
            Making.bury(self._root)
        self.standAgain(edits)

    def _bring(self, edits: LevelEdits):
        parent = Address.find(edits.pieces, self._parent)
        if not parent:
            raise Refused('what %r hung below is gone' % self.name)
        before = self._next if self._next and self._next.parent == parent else kaVel.Handle()
        if not kaVel.getSystem('ShelfSystem').giveBack(self._root, parent, before):
            self._root = self._photo.build(parent)
            if before:
                kaVel.Reflection.placeBefore(self._root, before)
        self.standAgain(edits)

    def standAgain(self, edits: LevelEdits):
        """Has the piece that it is a part of know which parts it has now."""
        piece = edits.pieces.number(self._parent[0])
        if piece and piece.root:
            edits.pieces.gather(piece)

    def forget(self):
        kaVel.getSystem('ShelfSystem').discard(self._root)


def _mapOf(entity: Any) -> Any:
    isMap = entity._getType().isSubclassOf(kaVel.Reflection.MapRootEntity)
    return entity if isMap else entity.getAncestorOfType(kaVel.Reflection.MapRootEntity)


class Property(Change):
    """Another value of a reflected property of any object of the level."""

    def __init__(self, edits: LevelEdits, handle: Any, name: str, value: Any, before: Any = None):
        self.key = Address.of(edits.pieces, handle), name
        self.value = value
        self._before = getattr(handle, name) if before is None else before
        self._first = self.key not in edits.properties

    def do(self, edits: LevelEdits):
        handle = self._find(edits)
        try:
            setattr(handle, self.key[1], self.value)
        except Exception as error:
            _putBack(handle, self.key[1], self._before)
            raise Refused('%s stays %r: %s' % (self.key[1], self._before, error)) from error
        edits.properties[self.key] = self.value

    def undo(self, edits: LevelEdits):
        setattr(self._find(edits), self.key[1], self._before)
        if self._first and self.key not in edits.written:
            edits.properties.pop(self.key, None)
        else:
            edits.properties[self.key] = self._before

    def _find(self, edits: LevelEdits) -> Any:
        handle = Address.find(edits.pieces, self.key[0])
        if not handle:
            raise Refused('the object whose %s was set is gone' % self.key[1])
        return handle


def _putBack(handle: Any, name: str, value: Any):
    """Gives a property its value back after a setter that failed half-way; one that fails again cannot be helped."""
    try:
        setattr(handle, name, value)
    except Exception as error:
        kaVel.log('%s cannot be set back either: %s' % (name, error))


class Mark(Change):
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
