"""Lines of a script that set properties of what a pattern has built."""

from __future__ import annotations

import ast
from typing import Any, Iterator

from editor.source import Layout, Literals
from editor.source.Pieces import Piece
from editor.source.Splices import Splices


class Configuring:
    """The lines behind a statement that set properties of what it keeps under a name."""

    def __init__(self, splices: Splices, statement: ast.stmt, variable: str):
        self._splices, self._statement, self._variable = splices, statement, variable

    def write(self, steps: tuple[Any, ...], values: dict[str, Any]):
        """Has properties be set, in the line that sets them already where there is one."""
        where = _place(self._variable, steps)
        last, left = self._statement, dict(values)
        for line, call in self._lines():
            if self._splices.script.source(call.args[0]) == where:
                for word in call.keywords:
                    if word.arg in left:
                        self._splices.replace(word.value, Literals.show(left.pop(word.arg)))
            last = line
        if left:
            self._splices.insertLines(last, configureLine(self._statement.col_offset, self._variable, steps, left))

    def _lines(self) -> Iterator[tuple[ast.stmt, ast.Call]]:
        above: Any = self._splices.script.parent(self._statement)
        body = next((each for each in (getattr(above, 'body', []), getattr(above, 'orelse', []))
                     if self._statement in each), [])
        for line in body[body.index(self._statement) + 1:] if body else ():
            if not isConfigured(line, self._variable):
                return
            assert isinstance(line, ast.Expr) and isinstance(line.value, ast.Call)
            yield line, line.value


def isConfigured(line: ast.stmt, variable: str) -> bool:
    """Whether a line sets properties of something below what a name stands for, and does nothing else."""
    call = line.value if isinstance(line, ast.Expr) else None
    if not isinstance(call, ast.Call) or not isinstance(call.func, ast.Attribute) or not call.args:
        return False
    return call.func.attr == 'configure' and any(isinstance(each, ast.Name) and each.id == variable
                                                 for each in ast.walk(call.args[0]))


def configured(piece: Piece, properties: dict[Any, Any]) -> dict[tuple[Any, ...], dict[str, Any]]:
    """What was set of objects below a piece: steps down to each -> properties."""
    found: dict[tuple[Any, ...], dict[str, Any]] = {}
    for (address, name), value in properties.items():
        if address[0] == piece.number:
            found.setdefault(address[1], {})[name] = value
    return found


def canConfigure(steps: tuple[Any, ...], values: dict[str, Any]) -> bool:
    """Whether a line of a script can set properties of the object at the end of some steps."""
    return all(name and not number for name, number in steps) and all(map(Literals.isWritable, values.values()))


def configureLine(indent: int, variable: str, steps: tuple[Any, ...], values: dict[str, Any]) -> str:
    """The line that sets properties of an object below one that has a name."""
    told = ['%s=%s' % (name, Literals.show(value)) for name, value in values.items()]
    return Layout.call(indent, 'kaVel.configure(', [_place(variable, steps), *told])


def _place(variable: str, steps: tuple[Any, ...]) -> str:
    if len(steps) == 1:
        return variable + '.getChild(%r)' % steps[0][0]
    return variable + '.getDescendantByPath(%r)' % '/'.join(name for name, _ in steps) if steps else variable
