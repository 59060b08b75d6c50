"""Calls of pieces that hang below another object now: its name as their parent, behind the line that makes it."""

from __future__ import annotations

import ast
from typing import Any, Callable, Iterator, NamedTuple

from editor.edits.Refused import Refused
from editor.source import Tracing
from editor.source.Adding import Adding
from editor.source.Files import Function, Script
from editor.source.Pieces import LevelPieces, Piece
from editor.source.Sites import Sites
from editor.source.Tracing import Scope


class _Place(NamedTuple):
    """Where an object has a name: in a function, from a statement on; None for one that it has from the begin."""
    script: Script
    function: Function
    behind: ast.stmt | None
    name: Callable[[], str]  # asked for it, the function has that name from then on
    isAtEnd: bool = False    # whether that is behind the lines that are added to the function


class Hanging:
    """Writes other parents of pieces into the calls that made them, which are moved where that takes it."""

    def __init__(self, pieces: LevelPieces, sites: Sites, adding: Adding, splicesOf: Any):
        self._pieces, self._sites, self._adding, self._splicesOf = pieces, sites, adding, splicesOf
        self._moved: set[ast.stmt] = set()
        self._needed: set[ast.stmt] = set()  # what others hang below now

    def write(self, piece: Piece, added: list[Piece]) -> bool:
        """Has the scripts hang a piece where it hangs; False, with nothing written, where they cannot."""
        scope, statement = self._sites.scopeOf(piece), self._statementOf(piece)
        if scope is None or statement is None or not scope.call.args or self._hasNamesake(piece):
            return False
        for place in self._places(piece, scope, added):
            isThere = self._isKnown(place, scope, statement)
            if not isThere and (any(each.above is piece for each in added)
                                or not self._canMove(piece, place, scope, statement)):
                continue
            self._splicesOf(scope.script).replace(scope.call.args[0], place.name())
            if not isThere and place.behind is not None:
                self._splicesOf(scope.script).move(statement, place.behind, place.isAtEnd)
                self._moved.add(statement)
            self._needed |= {place.behind} if place.behind else set()
            return True
        return False

    def _hasNamesake(self, piece: Piece) -> bool:
        if any(each.getName() == piece.name and each != piece.root for each in piece.parent.children):
            return True
        return any(each is not piece and each.source and each.source.above is piece.above
                   and each.source.steps == piece.steps and piece.name in (each.name, each.source.name)
                   for each in self._pieces.everyone())

    def _statementOf(self, piece: Piece) -> ast.stmt | None:
        """The statement of a function that makes a piece, once and nothing else."""
        scope = self._sites.scopeOf(piece)
        if scope is None or not self._sites.isDirect(piece, scope) or len(self._sites.through[scope.call]) != 1:
            return None
        statement = scope.script.parent(scope.call)
        if not isinstance(statement, ast.Expr) and not (isinstance(statement, ast.Assign) and _variable(statement)):
            return None
        return statement if scope.script.parent(statement) is scope.function else None

    # Where its parent has a name

    def _places(self, piece: Piece, scope: Scope, added: list[Piece]) -> Iterator[_Place]:
        above = piece.above
        if above in added and above is not None:
            yield from self._ofAdded(above, piece, added)
        elif above is not None:
            yield from self._ofCalled(above, piece)
        else:
            yield from self._ofSiblings(piece, scope)

    def _ofCalled(self, above: Piece, piece: Piece) -> Iterator[_Place]:
        scope, statement = self._sites.scopeOf(above), self._statementOf(above)
        function = scope.function if scope else None
        if scope is not None and statement is not None and function is not None:
            yield _Place(scope.script, function, statement, lambda: self._adding.below(
                self._adding.kept(above, scope.script, function, scope.call), above.root, piece.parent))

    def _ofAdded(self, above: Piece, piece: Piece, added: list[Piece]) -> Iterator[_Place]:
        try:
            home = self._adding.homeOf(above, added)
        except Refused:
            return
        yield _Place(home.script, home.function, home.function.body[-1], lambda: self._adding.below(
            self._adding.variableOf(above, home.function), above.root, piece.parent), isAtEnd=True)

    def _ofSiblings(self, piece: Piece, scope: Scope) -> Iterator[_Place]:
        """By a parameter that the function has hung other pieces below."""
        for site in self._sites.all():
            for other in site.pieces:
                found = site.scopeOf.get(other)
                node = found.call.args[0] if found and found.call.args else None
                if found and isinstance(node, ast.Name) and found.function is scope.function and other is not piece \
                        and isinstance(found.function, Function) and not other.removed and not other.isChanged() \
                        and node.id in Tracing.parametersOf(found.function) and other.parent == piece.parent:
                    yield _Place(found.script, found.function, None, lambda: node.id)
                    return

    # Whether its call can stand there

    def _isKnown(self, place: _Place, scope: Scope, statement: ast.stmt) -> bool:
        """Whether the object has its name where the call stands."""
        if place.function is not scope.function or place.isAtEnd:
            return False
        return place.behind is None or place.behind.lineno < statement.lineno and place.behind not in self._moved

    def _canMove(self, piece: Piece, place: _Place, scope: Scope, statement: ast.stmt) -> bool:
        """Whether all that a statement says means the same behind another one, and nobody needs it before."""
        function = scope.function
        isHeld = statement in self._needed or place.behind in self._moved or piece.stand.isFenced
        if place.script is not scope.script or place.behind is None or function is None or isHeld:
            return False
        variable = _variable(statement)
        uses = [node for node in ast.walk(function) if isinstance(node, ast.Name) and node.id == variable
                and isinstance(node.ctx, ast.Load)] if variable else []
        if place.function is function:
            return not (place.isAtEnd and uses) and all(node.lineno > (place.behind.end_lineno or 0) for node in uses)
        if uses or self._adding.wouldBeSolid(piece, place.function):
            return False
        names = (node.id for argument in _rest(scope.call) for node in ast.walk(argument) if isinstance(node, ast.Name))
        return not any(Tracing.isLocal(function, name) for name in names)


def _variable(statement: ast.stmt) -> str:
    """The name that a statement keeps what it makes under; '' for none."""
    isKept = isinstance(statement, ast.Assign) and len(statement.targets) == 1
    target = statement.targets[0] if isKept and isinstance(statement, ast.Assign) else None
    return target.id if isinstance(target, ast.Name) else ''


def _rest(call: ast.Call) -> list[ast.expr]:
    return [*call.args[1:], *(word.value for word in call.keywords)]
