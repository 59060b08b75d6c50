"""What scripts do to a level past its edits while its editor is open: a button of a bar, a command of the console.

Properties that are set of what stands in a map, and pieces that patterns are called for, become a step like all others
once the frame is over. What a level does by itself while it goes on is not recorded.
"""

from __future__ import annotations

from typing import TYPE_CHECKING, Any, Callable

import kaVel
from editor import Inspected
from editor.source import Changes, Literals, Parameters
from editor.source.Refused import Refused

if TYPE_CHECKING:
    from editor.Editor import Editor

#: Properties that say nothing that would be undone: names and parents are a matter of edits, the others pass.
_LEFT = frozenset(('name', 'parent', 'pattern', 'visible', 'active', 'playing'))


class Recording:
    """Hears setters and patterns for the editor of one level, while that is open and does nothing itself."""

    def __init__(self, editor: Editor):
        self._editor = editor
        self._isOpen = False
        self._before: dict[tuple[Any, str], Any] = {}
        self._calls: list[tuple[Any, Any, Any]] = []  # of patterns that are under way
        self._made: list[tuple[Any, tuple[Any, Any, Any]]] = []

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
        if not self._isOpen:
            return
        cls: Any = kaVel.Handle
        if on:
            cls.__setattr__ = self._heard()
            kaVel.amending = self
        elif '__setattr__' in vars(cls):
            del cls.__setattr__
            kaVel.amending = None

    def _heard(self) -> Callable[[Any, str, Any], None]:
        def set(handle: Any, name: str, value: Any) -> None:
            if name not in _LEFT and not self._calls and (handle, name) not in self._before and self._isContent(handle):
                self._before[handle, name] = getattr(handle, name, None)
            object.__setattr__(handle, name, value)

        return set

    def _isContent(self, handle: Any) -> bool:
        """Whether an object stands in a map of the level, while that stands still."""
        level = self._editor.level
        if not level or level.loopState != kaVel.Coordinator.LoopControlState.LOOP_STOP:
            return False
        map = handle.getAncestorOfType(kaVel.Reflection.MapRootEntity) if handle else None
        # What has a dot before its name, as the ghost of what is placed next, is the editor's own.
        return bool(map) and map.parent == level and '/.' not in kaVel.pathOf(handle)

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
        made, before = self._made, self._before
        self._made, self._before, self._calls = [], {}, []
        changed = [(key, value) for key, value in before.items() if _isOther(*key, value)]
        made = [each for each in made if each[0] and not each[0].isDying()]
        if not changed and not made:
            return
        label = 'Script: %s' % ', '.join([*('make %s' % root.getName() for root, _ in made[:3]),
                                          *('set %s of %s' % (name, handle.getName())
                                            for (handle, name), _ in changed[:3])])
        self._editor.attempt(lambda: self._step(label, made, changed))

    def _step(self, label: str, made: list[Any], changed: list[Any]) -> None:
        edits = self._editor.edits
        with edits.step(label):
            for root, called in made:
                self._adopt(root, *called)
            for (handle, name), value in changed:
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


def _isOther(handle: Any, name: str, before: Any) -> bool:
    return bool(handle) and not handle.isDying() and before is not None and getattr(handle, name) != before
