"""A change of one piece, written into the source of its pattern: for all that the pattern builds.

    rewriting = ForAll.offer(edits)         # of the last step; Refused says why the pattern cannot have it
    print(rewriting.diff())
    ForAll.apply(edits, rewriting)          # a step of its own, which is undone in the pattern's file

A parameter gets another default. A property of an object below is set where the pattern returns what it has built, or
stands in the call that has made the pattern.
"""

from __future__ import annotations

import ast
import difflib
import inspect
import os
import sys
from typing import TYPE_CHECKING, Any

import levelChanges
from editor.edits import Changes
from editor.edits.Refused import Refused
from editor.source import Files, Merging, Tracing
from editor.source.Configuring import Configuring, canConfigure, isConfigured
from editor.source.Files import Function, Script
from editor.source.Literals import ANGLES
from editor.source.Patches import textOf
from editor.source.Splices import Splices

if TYPE_CHECKING:
    from editor.edits.Edits import LevelEdits
    from editor.source.Pieces import Piece


class Rewriting(Changes.Change):
    """Another text for the file of a pattern."""

    def __init__(self, piece: Piece, names: list[str], script: Script, after: str):
        self.patternName, self.names = piece.patternName, names
        self.file, self._before, self._after = script.file, script.text, after
        #: Whether the piece has nothing of its own to say of it any more.
        self.isWhole = not any(name in (piece.source.given if piece.source else {}) for name in names)

    @property
    def label(self) -> str:
        return 'In %s, for all: %s' % (self.patternName, ', '.join(self.names))

    def diff(self) -> str:
        """What would change in the pattern's file."""
        name = Files.shown(self.file)
        return ''.join(difflib.unified_diff(self._before.splitlines(keepends=True),
                                            self._after.splitlines(keepends=True), 'a/' + name, 'b/' + name))

    def do(self, edits: LevelEdits):
        self._write(self._before, self._after)

    def undo(self, edits: LevelEdits):
        self._write(self._after, self._before)

    def _write(self, before: str, after: str):
        """Has the file say something else, and the level be built anew by it."""
        from editor.source import Writing
        from reloading import Levels
        text, conflicts = Merging.join(before, after, Writing.read(self.file))
        if conflicts:
            raise Refused('%s:%d was changed by somebody else' % (Files.shown(self.file), conflicts[0].first))
        Writing.write({self.file: text})
        Levels.renew(['../' + Files.shown(self.file)])


def offer(edits: LevelEdits) -> Rewriting:
    """What the last step would be in the source of its pattern; Refused where it cannot be."""
    change = edits.lastChange()
    if isinstance(change, Changes.Arguments):
        names = [name for name in change.after if change.after[name] != change.before.get(name)]
        if not names or Changes.PLACING & set(names):
            raise Refused('where a piece stands is its own')
        return _rewritten(edits, change.piece, lambda made: [made.default(name, change.after[name]) for name in names],
                          names)
    if isinstance(change, Changes.Property):
        (number, steps), name = change.key
        piece = edits.pieces.number(number)
        if piece:
            return _rewritten(edits, piece, lambda made: made.property(steps, name, change.value), [name])
    raise Refused('the last step has changed no property or parameter of one piece')


def apply(edits: LevelEdits, rewriting: Rewriting):
    """Writes it. The piece that it was tried on follows its pattern from then on, unless its call says it itself."""
    isUndone = rewriting.isWhole and bool(edits.undo())
    try:
        edits.perform(rewriting.label, rewriting)
    except Refused:
        if isUndone:
            edits.redo()
        raise


def _rewritten(edits: LevelEdits, piece: Piece, write: Any, names: list[str]) -> Rewriting:
    making = _Making(piece)
    if os.path.realpath(making.script.file) == os.path.realpath(
            os.path.splitext(levelChanges.fileOf(edits.pieces.levelName))[0] + '.py'):
        raise Refused('%s stands in the script of the level itself' % piece.patternName)
    write(making)
    after = making.splices.text()
    compile(after, making.script.file, 'exec', dont_inherit=True)
    return Rewriting(piece, names, making.script, after)


class _Making:
    """The source of a pattern: its function, or the call that has made it."""

    def __init__(self, piece: Piece):
        self._name = piece.patternName
        built: Any = inspect.unwrap(piece.pattern)
        self._call = _callOf(piece.pattern) if '<locals>' in built.__qualname__ else None
        if self._call:
            self.script, self._node, self._factory = self._call
        else:
            self.script = _scriptOf(built.__code__.co_filename)
            self._function = self.script.functionOf(built.__code__)
            if self._function is None or not self.script.isOf(built.__code__):
                raise Refused('%s was changed since the level was loaded' % Files.shown(self.script.file))
        self.splices = Splices(self.script)

    def default(self, name: str, value: Any):
        """Gives a parameter another default."""
        node = None if self._call else Tracing.defaultOf(self._ownFunction(), name)
        if node is None:
            raise Refused('%s has no default of its own for %s' % (self._name, name))
        self.splices.replace(node, textOf(value, self.script, name in ANGLES))

    def property(self, steps: tuple[Any, ...], name: str, value: Any):
        """Has a property be set of an object of what it builds."""
        if not canConfigure(steps, {name: value}):
            raise Refused('%s can be written in no line' % name)
        if self._call:
            self._inCall(name, value)
            return
        body = self._ownFunction().body
        last = body[-1]
        returns = [node for node in ast.walk(self._ownFunction()) if isinstance(node, ast.Return)]
        isPlain = len(body) > 1 and isinstance(last, ast.Return) and returns == [last]
        if not isPlain or not isinstance(last, ast.Return) or not isinstance(last.value, ast.Name):
            raise Refused('%s returns what it has built in more ways than one, or without a name' % self._name)
        before = body[:-1]
        while len(before) > 1 and isConfigured(before[-1], last.value.id):
            before.pop()
        Configuring(self.splices, before[-1], last.value.id).write(steps, {name: value})

    def _inCall(self, name: str, value: Any):
        known = inspect.signature(self._factory).parameters
        if name not in known or known[name].kind is inspect.Parameter.VAR_KEYWORD:
            raise Refused('%s is made by %s, which says nothing of %s' % (self._name, self._factory.__name__, name))
        word = next((word for word in self._node.keywords if word.arg == name), None)
        if word:
            self.splices.replace(word.value, textOf(value, self.script))
        elif self._node.keywords:
            self.splices.insertBefore(self._node.keywords[0], '%s=%s, ' % (name, textOf(value, self.script)))
        else:
            self.splices.addArgument(self._node, name, textOf(value, self.script))

    def _ownFunction(self) -> Function:
        assert self._function
        return self._function


def _scriptOf(file: str) -> Script:
    from editor.source import Writing
    try:
        return Script(file, Writing.read(file))
    except (SyntaxError, ValueError) as error:
        raise Refused('%s cannot be read: %s' % (Files.shown(file), error)) from error


def _callOf(pattern: Any) -> tuple[Script, ast.Call, Any]:
    """Where a module has a pattern be made by a call: `Desk = thing(desk='wood')`."""
    for module in list(sys.modules.values()):
        names = [name for name, value in vars(module).items() if value is pattern]
        file = getattr(module, '__file__', None)
        if not names or not file:
            continue
        script = _scriptOf(file)
        for node in script.tree.body:
            if isinstance(node, ast.Assign) and isinstance(node.value, ast.Call) \
                    and isinstance(node.value.func, ast.Name) and node.value.func.id in vars(module) \
                    and [each.id for each in node.targets if isinstance(each, ast.Name)] == names[:1]:
                return script, node.value, vars(module)[node.value.func.id]
    raise Refused('no script shows by which call the pattern was made')
