"""What scripts do to a level past its edits while its editor is open: a button of a bar, a command of the console.

Properties that are set of what stands in a map, also by setters that are called as functions; pieces that patterns are
called for, and objects that are made without one; other names and parents of pieces; and what is murdered become a step
like all others once the frame is over. What a level does by itself while it goes on is not recorded.
"""

from __future__ import annotations

import sys
from typing import TYPE_CHECKING, Any

import _kaVel
import kaVel
from editor import Inspected
from editor.edits import Changes, Touches
from editor.edits.Refused import Refused
from editor.source import Literals, Parameters
from editor.source.Pieces import Piece

if TYPE_CHECKING:
    from editor.Editor import Editor

#: Properties that say nothing that would be undone.
_LEFT = frozenset(('pattern',))


class Recording:
    """Hears changes and patterns for the editor of one level, while that is open and does nothing itself."""

    def __init__(self, editor: Editor):
        self._editor = editor
        self._isOpen = False
        self._calls: list[tuple[Any, Any, Any]] = []  # of patterns that are under way
        self._begin()

    def _begin(self) -> None:
        self._before: dict[tuple[Any, str], Any] = {}
        self._made: list[tuple[Any, tuple[Any, Any, Any]]] = []
        self._bare: list[Any] = []                    # what was hung somewhere for the first time, without a pattern
        self._named: dict[Piece, str] = {}
        self._hung: dict[Piece, Changes.Reparenting] = {}
        self._murdered: dict[Any, list[Changes.Change]] = {}

    def begin(self) -> None:
        self._isOpen = True
        self._editor.edits.attend(self)
        self.hear(True)

    def end(self) -> None:
        self.note()
        self.hear(False)
        self._isOpen = False
        self._editor.edits.attend(None)

    def hear(self, on: bool) -> None:
        """Listens, or does not: while an edit is made it is heard by nobody, so that it costs nothing."""
        if self._isOpen:
            _kaVel.hearChanges(self._heard if on else None)
            kaVel.amending = self if on else None

    def _heard(self, handle: Any, name: str) -> None:
        """Notes how an object is that a script is about to change: a property, or 'murder'."""
        if self._calls or name in _LEFT or _isOfTheEditor():
            return
        if not self._isContent(handle):
            if name == 'parent':
                self._bare.append(handle)
            return
        piece = self._editor.pieces.builtAs(handle)
        if name == 'murder':
            self._noteMurder(handle, piece)
        elif name == 'name':
            if piece:
                self._named.setdefault(piece, piece.name)
        elif name == 'parent':
            if piece and piece not in self._hung:
                change = self._hung[piece] = Changes.Reparenting(self._editor.edits, piece, piece.parent)
                change.noteBefore(self._editor.edits)
        elif (handle, name) not in self._before:
            self._before[handle, name] = getattr(handle, name, None)

    def _noteMurder(self, handle: Any, piece: Piece | None) -> None:
        """Notes what is about to go: pieces, which are built again by their patterns, and what is none."""
        if handle in self._murdered or handle in self._bare or any(handle == root for root, _ in self._made):
            return
        edits, pieces = self._editor.edits, self._editor.pieces
        gone = [piece] if piece else [each for each in pieces.all() if _isBelow(each.root, handle)]
        self.hear(False)
        try:
            changes: list[Changes.Change] = []
            if gone:
                removing = Changes.Removing(edits, gone)
                removing.note(edits)
                for each in removing.pieces:
                    Touches.find(each)
                changes.append(removing)
            if not piece:
                changes.append(Changes.Bare(edits, handle, isMade=False))
            self._murdered[handle] = changes
        finally:
            self.hear(True)

    def _isContent(self, handle: Any) -> bool:
        """Whether an object stands in a map of the level, while that stands still."""
        level = self._editor.level
        if not level or level.loopState != kaVel.Coordinator.LoopControlState.LOOP_STOP:
            return False
        map = handle.getAncestorOfType(kaVel.Reflection.MapRootEntity) if handle else None
        # What has a dot before its name, as the ghost of what is placed next, is the editor's own.
        return bool(map) and map.parent == level and not handle.isDying() and '/.' not in kaVel.pathOf(handle)

    def leave(self, thing: Any, name: str) -> None:
        """Forgets that a property was set: somebody else notes it."""
        self._before.pop((thing, name), None)

    # What is asked of whoever amends the calls of patterns

    def call(self, pattern: Any, arguments: Any, options: Any) -> Any:
        self._calls.append((pattern, arguments, options))
        return arguments, options

    def built(self, root: Any) -> None:
        called = self._calls.pop()
        if self._isContent(root):
            self._made.append((root, called))

    # Steps

    def note(self) -> None:
        """Makes a step of what was heard since it was last asked."""
        heard = _Heard(self._editor, self._made, self._bare, self._before, self._named, self._hung, self._murdered)
        self._begin()
        self._calls = []
        if heard.label:
            self._editor.attempt(heard.step)


class _Heard:
    """What was heard in a frame and came to something."""

    def __init__(self, editor: Editor, made: list[Any], bare: list[Any], before: dict[tuple[Any, str], Any],
                 named: dict[Piece, str], hung: dict[Piece, Changes.Reparenting],
                 murdered: dict[Any, list[Changes.Change]]):
        self._editor = editor
        self._made = [each for each in made if _isThere(each[0])]
        roots = {root for root, _ in self._made}
        self._bare = [each for each in dict.fromkeys(bare) if each not in roots and self._stands(each)]
        self._bare = [each for each in self._bare if not any(each != other and _isBelow(each, other)
                                                             for other in (*self._bare, *roots))]
        new = (*self._bare, *roots)
        self._changed = [(key, value) for key, value in before.items() if _isOther(*key, value)
                         and not any(_isBelow(key[0], root) for root in self._bare)]
        self._named = {piece: name for piece, name in named.items() if _isThere(piece.root)
                       and piece.root.getName() != name and piece.root not in new}
        self._hung = {piece: change for piece, change in hung.items() if _isThere(piece.root)}
        self._murdered = {handle: changes for handle, changes in murdered.items() if not _isThere(handle)}
        self.label = self._labelled()

    def _stands(self, handle: Any) -> bool:
        map = handle.getAncestorOfType(kaVel.Reflection.MapRootEntity) if _isThere(handle) else None
        return bool(map) and map.parent == self._editor.level and '/.' not in kaVel.pathOf(handle)

    def _labelled(self) -> str:
        told = [*('make %s' % root.getName() for root, _ in self._made),
                *('make %s' % root.getName() for root in self._bare),
                *('set %s of %s' % (name, handle.getName()) for (handle, name), _ in self._changed),
                *('rename %s' % name for name in self._named.values()),
                *('hang %s' % piece.name for piece in self._hung),
                *('remove %s' % _nameOf(changes) for changes in self._murdered.values())]
        more = ' and %d more' % (len(told) - 3) if len(told) > 3 else ''
        return 'Script: %s%s' % (', '.join(told[:3]), more) if told else ''

    def step(self) -> None:
        edits = self._editor.edits
        with edits.step(self.label):
            for root, called in self._made:
                self._adopt(root, *called)
            for root in self._bare:
                edits.done(Changes.Bare(edits, root, isMade=True))
                self._editor.message('%s was built by no pattern: it can be undone, and is not saved' % root.getName())
            for (handle, name), value in self._changed:
                self._set(handle, name, value)
            for piece, before in self._named.items():
                after = piece.root.getName()
                edits.done(Changes.Renaming(piece, after))
                piece.setName(after)
            for piece, change in self._hung.items():
                change.noteAfter(edits)
                edits.done(change)
            for changes in self._murdered.values():
                for each in changes:
                    edits.done(each)
                    if isinstance(each, Changes.Bare):
                        each.standAgain(edits)
                    for piece in each.pieces[::-1] if isinstance(each, Changes.Removing) else ():
                        self._editor.pieces.leave(piece)

    def _set(self, handle: Any, name: str, value: Any) -> None:
        try:
            Inspected.note(self._editor.level, handle, name, value, getattr(handle, name))
        except Refused as reason:
            setattr(handle, name, value)
            self._editor.message(reason)

    def _adopt(self, root: Any, pattern: Any, arguments: Any, options: Any) -> None:
        given: dict[str, Any] = {}
        for name, value in Parameters.given(pattern, arguments, options).items():
            try:
                given[name] = Literals.rounded(name, value)
            except Literals.NoLiteral:
                given[name] = value
        pieces = self._editor.pieces
        piece = pieces.make(pattern, root.getName(), given)
        pieces.enter(piece, root)
        self._editor.edits.done(Changes.Adding(self._editor.edits, piece, root.parent))


def _isOfTheEditor() -> bool:
    """Whether a script of the editor's own is at work: it shows and hides what it edits."""
    frame = sys._getframe(2)
    while frame.f_back and frame.f_globals.get('__name__') == kaVel.__name__:
        frame = frame.f_back
    return str(frame.f_globals.get('__name__')).partition('.')[0] == __name__.partition('.')[0]


def _isThere(handle: Any) -> bool:
    return bool(handle) and not handle.isDying()


def _isOther(handle: Any, name: str, before: Any) -> bool:
    return _isThere(handle) and before is not None and getattr(handle, name) != before


def _isBelow(entity: Any, above: Any) -> bool:
    while entity and entity != above:
        entity = entity.parent
    return bool(entity)


def _nameOf(changes: list[Changes.Change]) -> str:
    last = changes[-1]
    return last.name if isinstance(last, Changes.Bare) else Changes.namesIn(last)[0]
