"""Takes the calls of removed pieces out of the scripts."""

from __future__ import annotations

import ast
from typing import Any

from editor.source import Tracing
from editor.source.Configuring import isConfigured
from editor.source.Files import Function, Script
from editor.source.Pieces import Piece
from editor.source.Sites import Sites


class Removing:
    """The statements and rows of tables that go with the pieces that they made."""

    def __init__(self, sites: Sites, splicesOf: Any):
        self._sites, self._splicesOf = sites, splicesOf
        self._gone: set[Piece] = set()

    def write(self, removed: list[Piece]) -> list[Piece]:
        """Takes out what made these pieces and nothing else; gives those for which there is no such thing."""
        self._gone = set(removed)
        left = [piece for piece in removed if not self._takeStatement(piece)]
        return [piece for piece in left if not self._takeRow(piece)]

    def _takeStatement(self, piece: Piece) -> bool:
        """Deletes the innermost statement that is a call of nothing but removed pieces."""
        assert piece.source
        for call in piece.source.calls:
            script = self._sites.texts.of(call[0].co_filename)
            node = script.callAt(call) if script else None
            if script is None or node is None:
                return False
            statement = script.parent(node)
            if not isinstance(statement, (ast.Expr, ast.Assign)) or not self._isGone(self._sites.through.get(node, [])):
                continue
            uses = self._usesOf(script, statement)
            if uses is not None:
                for each in (statement, *uses):
                    self._splicesOf(script).delete(each)
                return True
        return False

    def _usesOf(self, script: Script, statement: ast.Expr | ast.Assign) -> list[ast.stmt] | None:
        """The lines that do something with what a statement keeps, if they can go with it; None where they cannot."""
        if isinstance(statement, ast.Expr):
            return []
        function = next((each for each in script.above(statement) if isinstance(each, Function)), None)
        target = statement.targets[0]
        if function is None or len(statement.targets) != 1 or not isinstance(target, ast.Name):
            return None
        nodes = [node for node in ast.walk(function) if isinstance(node, ast.Name) and node.id == target.id]
        uses = [script.statementOf(node) for node in nodes if node is not target]
        isSpent = all(each and self._isSpent(each, target.id) for each in uses)
        return [each for each in dict.fromkeys(uses) if each] if isSpent else None

    def _isSpent(self, line: ast.stmt, variable: str) -> bool:
        """Whether a line is of no use once what a name stands for is gone."""
        call = line.value if isinstance(line, (ast.Expr, ast.Assign)) else None
        if not isinstance(call, ast.Call):
            return False
        if isinstance(line, ast.Assign):
            script = self._sites.scriptOf(call)
            return script is not None and self._isGone(self._sites.through[call]) \
                and self._usesOf(script, line) is not None
        first = call.args[0] if call.args else None
        isMadeSolid = isinstance(first, ast.Name) and first.id == variable and _calledName(call) == 'makeSolid'
        return isConfigured(line, variable) or isMadeSolid or \
            call in self._sites.through and self._isGone(self._sites.through[call])

    def _isGone(self, pieces: list[Piece]) -> bool:
        return all(piece in self._gone for piece in pieces) and any(map(_isNew, pieces))

    def _takeRow(self, piece: Piece) -> bool:
        """Deletes the row of a loop's table that a removed piece came from, if all of that row was removed."""
        scope = self._sites.scopeOf(piece)
        if scope is None:
            return False
        for loop in Tracing.loopsAround(scope.script, scope.call):
            row = scope.rows.get(Tracing.rowOf(loop))
            table = scope.script.parent(row.node) if row and row.node else None
            if row and isinstance(loop, ast.For) and isinstance(table, (ast.Tuple, ast.List)) and len(table.elts) > 1 \
                    and table is loop.iter and self._isRowGone(scope.script, loop, row.node):
                self._splicesOf(scope.script).deleteRow(table, row.node)
                return True
        return False

    def _isRowGone(self, script: Script, loop: ast.For, row: Any) -> bool:
        """Whether a loop does nothing in a row but make pieces that were removed."""
        calls = {node for node in ast.walk(loop) if isinstance(node, ast.Call) and node in self._sites.through}
        if not all(isinstance(each, ast.For) or isinstance(each, ast.Expr) and each.value in calls
                   for each in _statements(loop)):
            return False
        isNew = False
        for site in self._sites.all():
            for piece in site.pieces:
                scope = site.scopeOf.get(piece)
                if scope is None and any(each in calls for each in self._callsOf(piece)):
                    return False
                while scope:
                    found = scope.rows.get(Tracing.rowOf(loop))
                    if found and found.node is row:
                        if piece not in self._gone:
                            return False
                        isNew = isNew or _isNew(piece)
                    scope = scope.caller
        return isNew

    def _callsOf(self, piece: Piece) -> list[Any]:
        return [call for call, pieces in self._sites.through.items() if piece in pieces]


def _calledName(call: ast.Call) -> str:
    return call.func.attr if isinstance(call.func, ast.Attribute) else getattr(call.func, 'id', '')


def _isNew(piece: Piece) -> bool:
    """Whether a piece was removed since the level was loaded, rather than by its file of changes."""
    return bool(piece.source) and not piece.source.isRemoved


def _statements(loop: ast.For) -> list[ast.stmt]:
    return [node for each in loop.body for node in ast.walk(each) if isinstance(node, ast.stmt)]
