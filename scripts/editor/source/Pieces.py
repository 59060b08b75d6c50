"""Pieces: the calls of patterns that a level is made of, which is what an editor edits.

    pieces = Pieces.of(level)
    piece = pieces.pieceOf(entityUnderTheMouse)
    piece.patternName, piece.arguments, piece.origin     # 'Armchair', {'at': (-2.05, 0, 2.62), ...}, (file, 71, 4)

A piece keeps its number when its pattern builds it anew, and over reloads of the level; its `root` does not. What
another pattern built as a part of its own is no piece.
"""

from __future__ import annotations

from typing import TYPE_CHECKING, Any, Iterator

import callSites
import kaVel
import levelChanges
import mods
import session
from editor.edits import Address, Standing
from editor.source import Literals, Parameters
from editor.source.Modules import moduleOf
from editor.source.Parameters import Parameter, Pattern, parametersOf  # noqa: F401 (offered here)

if TYPE_CHECKING:
    from editor.edits import Aside

#: File, line and column of a call, both counted from 1.
Origin = tuple[str, int, int]


class Source:
    """What a piece's call says where it stands in the scripts: the state that changes are told from."""

    def __init__(self, piece: Piece, built: kaVel.BuiltFrom, name: str):
        self.calls = built.calls
        self.name = name
        self.above: Piece | None = None             # what the call hangs it below, as `Piece.above` and `Piece.steps`
        self.steps: tuple[Address.Step, ...] = ()
        self.order = 0                              # among the calls of those with its parent
        self.isRemoved = False  # whether the level's file of changes takes out what the call makes
        self._piece = piece
        self._built = built
        self._told: dict[str, Any] | None = None

    @property
    def given(self) -> dict[str, Any]:
        """The arguments of the call; looked up when they are asked for: few of thousands ever are."""
        if self._told is None:
            called = self._built.called or (self._built.arguments, self._built.options)
            self._told = Parameters.given(self._piece.pattern, *called)
        return self._told


class Piece:
    """One call of a pattern by a level's own script, or one that an edit has added, whose `source` is None."""

    def __init__(self, number: int, root: Any, pattern: Pattern):
        self.number = number
        self.root: Any = root
        self.pattern = pattern
        self.source: Source | None = None
        self._above: Piece | None = None
        self.heldCount = 0                  # how many pieces say that they hang in its subtree, gone ones among them
        self.steps: tuple[Address.Step, ...] = ()  # from there, or from the level, to what it hangs below
        self.section: str | None = None     # function of the level that its call is to be written into
        self.saved: tuple[str, dict[str, Any]] | None = None  # name and arguments that were written last
        self.placed: tuple[Piece | None, tuple[Address.Step, ...]] | None = None  # where the files hang it
        self.missing = ''  # why its pattern is gone from the scripts, where it is
        self.removed = False
        self.locked = False
        self.hidden = False
        self.group = ''
        self.stand = Standing.Standing()
        self.touches: list[Any] | None = None  # what the level has done to it besides, once that was asked for
        self.aside: Aside.Kept | None = None   # what it was when it was taken out of the level, see `Aside`
        self._built: kaVel.BuiltFrom | None = None
        self._name = ''
        self._given: dict[str, Any] | None = None
        self._patternName = ''

    def __repr__(self):
        return '<piece %d: %s %s>' % (self.number, self.patternName, self.name)

    @property
    def name(self) -> str:
        return self._name or (self.root.getName() if self.root else '')

    @property
    def above(self) -> Piece | None:
        """The piece whose subtree it hangs in."""
        return self._above

    @above.setter
    def above(self, above: Piece | None):
        if self._above:
            self._above.heldCount -= 1
        if above:
            above.heldCount += 1
        self._above = above

    @property
    def path(self) -> str:
        """Path of its root below the level, whether or not this still stands."""
        begin = [self.above.path] if self.above else []
        return '/'.join([*begin, *(name for name, _ in self.steps), self.name])

    @property
    def parent(self) -> Any:
        """The object that its root hangs below."""
        return self.root.parent if self.root else kaVel.Handle()

    @property
    def patternName(self) -> str:
        """Name of the pattern in the catalogue, or 'module.Name' for one of a level's own."""
        if not self._patternName:
            self._patternName = Parameters.nameOf(self.pattern, self._moduleOfCall())
        return self._patternName

    def _moduleOfCall(self) -> str:
        return moduleOf(self.source.calls[0][0].co_filename) if self.source and self.source.calls else ''

    @property
    def takesName(self) -> bool:
        """Whether its pattern is told a name."""
        return Parameters.nameParameter(self.pattern) is not None

    @property
    def given(self) -> dict[str, Any]:
        """The arguments that its call gives, without parent and name."""
        if self._given is None:
            built = self._built
            assert built, 'a piece has arguments, or the call that they come from'
            self._given = Parameters.given(self.pattern, built.arguments, built.options)
        return self._given

    @property
    def arguments(self) -> dict[str, Any]:
        """All parameters with their values, defaults included."""
        every: dict[str, Any] = {each.name: each.default for each in parametersOf(self.pattern)
                                 if each.default is not Parameters.Needed}
        every.update(self.given)
        return every

    @property
    def origin(self) -> Origin | None:
        """File, line and column of the call; None for a piece that no script has yet."""
        if not self.source or not self.source.calls:
            return None
        call = self.source.calls[0]
        line, column, _, _ = callSites.positionOf(call)
        return call[0].co_filename, line, column + 1

    def asCall(self) -> str:
        """The call as Python would have it: what "copy as Python" gives."""
        arguments = ['map', repr(self.name)]
        arguments += ['%s=%s' % (name, Literals.show(value)) for name, value in self.given.items()]
        module, _, short = self.patternName.rpartition('.')
        return '%s(%s)' % (short if module else 'place.' + short, ', '.join(arguments))

    # How edits change it

    def setGiven(self, given: dict[str, Any]):
        self._given = given

    def setName(self, name: str):
        self._name = name

    def isChanged(self) -> bool:
        """Whether it differs from what the scripts say."""
        source = self.source
        if source is None:
            return not self.removed
        isOther = self._given is not None and self._given != source.given or self._built and self._built.called
        return self.removed or self._name != source.name or bool(isOther) or self.hangsElsewhere()

    def hangsElsewhere(self) -> bool:
        """Whether it hangs below another object than its call says."""
        source = self.source
        if source is None or not self.root:
            return False
        return self._above is not source.above or self.steps != source.steps


class LevelPieces:
    """All pieces of one level, in the order of its tree."""

    def __init__(self, level: kaVel.Coordinator):
        self.level = level
        self.levelName = level.levelName
        self._numbered: dict[int, Piece] = {}
        self._byRoot: dict[Any, Piece] = {}
        self._last = 0
        self.edits: Any = None  # of this level, see `Edits`
        self._collect(level)

    def all(self) -> list[Piece]:
        """The pieces that stand in the level."""
        return [piece for piece in self._numbered.values() if not piece.removed]

    def everyone(self) -> list[Piece]:
        """Those that have been removed, too: what is written has to tell of them."""
        return list(self._numbered.values())

    def __iter__(self) -> Iterator[Piece]:
        return iter(self.all())

    def __len__(self):
        return len(self.all())

    def number(self, number: int) -> Piece | None:
        return self._numbered.get(number)

    def pieceOf(self, entity: Any) -> Piece | None:
        """The piece that an object belongs to; None for what no level's script called for."""
        while entity:
            piece = self._byRoot.get(entity)
            if piece:
                return piece
            entity = entity.parent
        return None

    def builtAs(self, root: Any) -> Piece | None:
        """The piece that an object is the root of."""
        return self._byRoot.get(root)

    def named(self, name: str) -> Piece | None:
        """The first piece of a name, or of a path below the level."""
        for piece in self.all():
            if piece.name == name or '/' in name and piece.path == name:
                return piece
        return None

    def below(self, piece: Piece) -> list[Piece]:
        """The pieces whose roots hang below a piece, in the order of the tree."""
        found: list[Piece] = []
        waiting = [child for child in piece.root.children] if piece.root and piece.heldCount else []
        while waiting:
            entity = waiting.pop(0)
            each = self._byRoot.get(entity)
            if each:
                found.append(each)
            waiting[:0] = list(entity.children)
        return found

    def files(self) -> set[str]:
        """The scripts that have called for the pieces."""
        return {code.co_filename for piece in self.everyone() if piece.source for code, _ in piece.source.calls}

    def maps(self) -> list[kaVel.MapRootEntity]:
        return [child for child in self.level.children
                if child._getType().isSubclassOf(kaVel.Reflection.MapRootEntity)]

    # How edits change them

    def enter(self, piece: Piece, root: Any):
        """Gives a piece the root that its pattern has just built."""
        self._byRoot.pop(piece.root, None)
        piece.root = root
        piece.removed = False
        self._numbered[piece.number] = piece
        self._byRoot[root] = piece
        self.hang(piece)
        self.gather(piece)

    def gather(self, piece: Piece):
        """Notes how the objects of a piece stand that has other ones now."""
        piece.stand = Standing.of(piece.root, self._byRoot)

    def putBack(self, piece: Piece, root: Any, stand: Standing.Standing, above: Piece | None,
                steps: tuple[Address.Step, ...]):
        """Gives a piece what was its own before it left."""
        self._byRoot.pop(piece.root, None)
        piece.root, piece.stand, piece.above, piece.steps, piece.removed = root, stand, above, steps, False
        self._numbered[piece.number] = piece
        self._byRoot[root] = piece

    def hang(self, piece: Piece):
        """Notes where a piece hangs."""
        parent = piece.root.parent
        piece.above = self.pieceOf(parent)
        piece.steps = Address.below(piece.above.root if piece.above else self.level, parent)

    def leave(self, piece: Piece):
        """Notes that a piece stands in the level no more."""
        self._byRoot.pop(piece.root, None)
        piece.root = kaVel.Handle()
        piece.removed = True
        if piece.source is None:
            self._numbered.pop(piece.number, None)

    def adopt(self, piece: Piece):
        """Takes a piece that another count has found, under a number of this one."""
        self._last += 1
        piece.number = self._last
        self._numbered[piece.number] = piece
        if piece.root:
            self._byRoot[piece.root] = piece

    def enterFound(self, piece: Piece):
        """Enters a piece whose root stands in a level that was loaded anew."""
        self._numbered[piece.number] = piece
        self._byRoot[piece.root] = piece

    def begin(self, level: kaVel.Coordinator):
        """Stands for another level from now on, with nothing in it yet."""
        self.level = level
        self._byRoot.clear()

    def make(self, pattern: Pattern, name: str, given: dict[str, Any]) -> Piece:
        """A piece that nothing stands for yet."""
        self._last += 1
        piece = Piece(self._last, kaVel.Handle(), pattern)
        piece.setGiven(given)
        piece.setName(name)
        piece._patternName = Parameters.nameOf(pattern)
        return piece

    def _collect(self, level: kaVel.Coordinator):
        standings, places, calls = Standing.Gatherer(), {}, levelChanges.callsInScripts(self.levelName)
        placed, isData = levelChanges.placedIn(self.levelName), mods.isLevelData(self.levelName)
        for entity in kaVel.descendants(level):
            built = entity.pattern
            isBuilt = isinstance(built, kaVel.BuiltFrom) and built.atStart and (
                built.calls or entity in placed or isData and _isOfMap(entity))
            piece = self._found(entity, built, places) if isBuilt else None
            if piece and entity in placed:
                piece.source = None
            standings.visit(entity, piece)
        for piece, standing in standings.found.items():
            piece.stand = standing
            standing.isKept = standing.isKept or _hasMore(piece)
        found = {root: piece for root, piece in {**self._byRoot, **self._collectRemoved()}.items() if root in calls}
        byPath = {calls[root].path: piece for root, piece in found.items()}
        for root, piece in found.items():
            assert piece.source
            call, source = calls[root], piece.source
            source.above, source.order, source.name = byPath.get(call.above), call.order, call.name
            source.steps = call.steps if source.above else (*Address.read(call.above), *call.steps)
            if piece.removed:
                piece.above, piece.steps = source.above, source.steps

    def _collectRemoved(self) -> dict[Any, Piece]:
        """Enters the calls that a change has left without an object: they are as good as removed and saved."""
        found: dict[Any, Piece] = {}
        for root, removed in levelChanges.removedInScripts(self.levelName).items():
            self._last += 1
            piece = found[root] = Piece(self._last, kaVel.Handle(), removed.built.pattern)
            piece._built, piece._name, piece.removed = removed.built, removed.name, True
            piece.source = Source(piece, removed.built, removed.name)
            piece.source.isRemoved = True
            self._numbered[piece.number] = piece
        return found

    def _found(self, root: Any, built: kaVel.BuiltFrom, places: dict[Any, Any]) -> Piece:
        self._last += 1
        piece = Piece(self._last, root, built.pattern)
        piece._built = built
        piece._name = root.getName()
        parent = root.parent
        if parent not in places:
            self.hang(piece)
            places[parent] = piece.above, piece.steps
        piece.above, piece.steps = piece.placed = places[parent]
        piece.source = Source(piece, built, levelChanges.nameInScripts(built) or piece._name)
        piece.source.above, piece.source.steps, piece.source.order = piece.above, piece.steps, self._last
        piece._patternName = Parameters.nameOf(piece.pattern, piece._moduleOfCall())
        self._numbered[piece.number] = piece
        self._byRoot[root] = piece
        return piece


def _isOfMap(entity: Any) -> bool:
    return entity.parent._getType().isSubclassOf(kaVel.Reflection.MapRootEntity)


def _hasMore(piece: Piece) -> bool:
    """Whether a script of the level has given components to what the pattern built: it may hold on to them."""
    assert piece._built
    return piece.root.childCount > piece._built.parts and any(
        each._getType().isSubclassOf(kaVel.Reflection.AbstractComponent)
        for each in list(piece.root.children)[piece._built.parts:])


def of(level: kaVel.Coordinator) -> LevelPieces:
    """The pieces of a level: of the one that stands there now, under the numbers that they have had before."""
    from editor.edits import Reload
    known = session.editing.get(level.levelName)
    if known is None:
        known = session.editing[level.levelName] = LevelPieces(level)
    elif known.level != level:
        Reload.follow(known, level)
    return known
