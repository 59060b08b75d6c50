"""Where in the source each piece was called for: the calls that lead to it, and what their names stood for then."""

from __future__ import annotations

import ast
import functools
import inspect
from types import CodeType
from typing import Any

from editor.source import Literals
from editor.source.Files import Script, Texts
from editor.source.Parameters import Pattern
from editor.source.Pieces import LevelPieces, Piece
from editor.source.Tracing import Scope, Unknown, Values

#: More runs of one call than this are not followed.
MOST_RUNS = 20000
NO_VALUE = object()


class Site:
    """A chain of calls by which pieces came to be, one for each run of it."""

    def __init__(self, calls: Any):
        self.calls = calls
        self.pieces: list[Piece] = []
        self.scopes: list[Scope] = []           # one for each run, in the order in which they ran
        self.scopeOf: dict[Piece, Scope] = {}   # where it is known which run built a piece


class Sites:
    """The sites of all pieces of a level that its scripts have called for."""

    def __init__(self, pieces: LevelPieces, texts: Texts):
        self.texts = texts
        self.values = Values()
        self._sites: dict[Any, Site] = {}
        self._scripts: dict[ast.Call, Script] = {}
        self.through: dict[ast.Call, list[Piece]] = {}  # the pieces that came by a call, at any depth
        for piece in pieces.everyone():
            if piece.source and piece.source.calls:
                self._sites.setdefault(piece.source.calls, Site(piece.source.calls)).pieces.append(piece)
        for site in self._sites.values():
            self._follow(site)

    def all(self) -> list[Site]:
        return list(self._sites.values())

    def of(self, piece: Piece) -> Site | None:
        return self._sites.get(piece.source.calls) if piece.source else None

    def scopeOf(self, piece: Piece) -> Scope | None:
        """The call that built a piece, with what its names stood for; None where that cannot be told."""
        site = self.of(piece)
        return site.scopeOf.get(piece) if site else None

    def script(self, piece: Piece) -> Script | None:
        return self.texts.of(piece.source.calls[0][0].co_filename) if piece.source and piece.source.calls else None

    def scriptOf(self, call: ast.Call) -> Script | None:
        """The script that a call by which pieces came stands in."""
        return self._scripts.get(call)

    # Following the calls

    def _follow(self, site: Site):
        frames = [self._frame(call) for call in site.calls]
        for frame in frames:
            if frame:
                self.through.setdefault(frame[1], []).extend(site.pieces)
                self._scripts[frame[1]] = frame[0]
        if any(frame is None for frame in frames):
            return
        try:
            site.scopes = self._scopes(list(reversed(frames)), [code for code, _ in reversed(site.calls)])
        except Unknown:
            return
        self._assign(site)

    def _frame(self, call: tuple[CodeType, int]) -> tuple[Script, ast.Call] | None:
        script = self.texts.of(call[0].co_filename)
        node = script.callAt(call) if script else None
        return (script, node) if script and node else None

    def _scopes(self, frames: list[Any], codes: list[CodeType]) -> list[Scope]:
        """The innermost scopes of all runs, for frames from the outside in."""
        runs: list[Scope | None] = [None]
        for (script, call), code in zip(frames, codes):
            inner: list[Scope | None] = []
            function = script.functionOf(code)
            for caller in runs:
                scope = Scope(script, function, call, caller)
                scope.isDirect = caller is not None and self._isCallOf(caller, function, code)
                for rows in self.values.ways(scope):
                    run = Scope(script, function, call, caller)
                    run.isDirect, run.rows = scope.isDirect, rows
                    inner.append(run)
                if len(inner) > MOST_RUNS:
                    raise Unknown
            runs = inner
        return [run for run in runs if run]

    def _isCallOf(self, caller: Scope, function: Any, code: CodeType) -> bool:
        """Whether a call is one of the very function that it led to, rather than of something between."""
        called = caller.call.func
        try:
            real: Any = self.values.value(called, caller)
        except Unknown:
            return function is not None and isinstance(called, ast.Name) and called.id == function.name
        real = inspect.unwrap(getattr(real, '__init__', real) if inspect.isclass(real) else real)
        return getattr(real, '__code__', None) is code

    def _assign(self, site: Site):
        """Finds which run built which piece: by their order where that fits, or else by what the calls came to."""
        keys = [self._key(scope, site.pieces[0]) for scope in site.scopes]
        wanted = [self._wanted(piece, keys[0]) for piece in site.pieces] if keys else []
        if len(keys) == len(wanted) and all(_fit(key, want) for key, want in zip(keys, wanted)):
            site.scopeOf = dict(zip(site.pieces, site.scopes))
            return
        runs: dict[str, list[Scope]] = {}
        for key, scope in zip(keys, site.scopes):
            runs.setdefault(_text(key), []).append(scope)
        for piece, want in zip(site.pieces, wanted):
            fitting = runs.get(_text(want), [])
            if fitting:
                site.scopeOf[piece] = fitting.pop(0)

    def _key(self, scope: Scope, piece: Piece) -> dict[str, Any]:
        """What the arguments of a call come to in a scope."""
        assert piece.source
        found = {}
        for name in ['name', *piece.source.given]:
            node = argumentNode(scope.call, piece.pattern, name)
            try:
                found[name] = self.values.value(node, scope) if node is not None else NO_VALUE
            except Unknown:
                found[name] = NO_VALUE
        return found

    @staticmethod
    def _wanted(piece: Piece, key: dict[str, Any]) -> dict[str, Any]:
        """The same of what a piece was built with."""
        assert piece.source
        given = dict(piece.source.given, name=piece.source.name)
        return {name: given.get(name) if value is not NO_VALUE else NO_VALUE for name, value in key.items()}

    def isDirect(self, piece: Piece, scope: Scope) -> bool:
        """Whether a piece's call is one of its pattern, rather than of a function that calls it."""
        try:
            return self.values.value(scope.call.func, scope) is piece.pattern
        except Unknown:
            return False


def _fit(key: dict[str, Any], want: dict[str, Any]) -> bool:
    return all(value is NO_VALUE or Literals.alike(value, want.get(name)) for name, value in key.items())


def _text(values: dict[str, Any]) -> str:
    return repr([(name, _even(value)) for name, value in values.items() if value is not NO_VALUE])


def _even(value: Any) -> Any:
    if isinstance(value, (tuple, list)):
        return tuple(_even(each) for each in value)
    return round(float(value), 6) + 0.0 if isinstance(value, (int, float)) and not isinstance(value, bool) else value


def argumentNode(call: ast.Call, pattern: Pattern, name: str) -> ast.expr | None:
    """The node by which a call gives a pattern its parameter of a name."""
    for word in call.keywords:
        if word.arg == name:
            return word.value
    names = _placed(pattern)
    if name not in names or any(isinstance(each, ast.Starred) for each in call.args):
        return None
    place = names.index(name)
    return call.args[place] if place < len(call.args) else None


@functools.lru_cache(maxsize=1024)
def _placed(pattern: Pattern) -> list[str]:
    """The parameters of a pattern that may be given by their place."""
    return [each.name for each in inspect.signature(pattern).parameters.values()
            if each.kind in (each.POSITIONAL_ONLY, each.POSITIONAL_OR_KEYWORD)]
