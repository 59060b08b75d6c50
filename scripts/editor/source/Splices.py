"""Changes of a script's text: what is put in the place of which bytes."""

from __future__ import annotations

import ast
from typing import Any, Iterator

from editor.source import Layout
from editor.source.Files import Function, Script


class Splices:
    """The changes of one script, which are made all at once: every place is told in the text before."""

    def __init__(self, script: Script):
        self.script = script
        self._splices: list[tuple[int, int, int, str]] = []
        self._deleted: set[ast.stmt] = set()
        self._rows: dict[Any, set[ast.expr]] = {}  # table -> those to take out
        self._moves: list[tuple[ast.stmt, ast.stmt, bool]] = []
        self._grown: set[ast.AST] = set()
        self.imports: set[str] = set()  # lines that have been added at the top

    def replace(self, node: Any, text: str):
        begin, end = self.script.span(node)
        self._add(begin, end, Layout.broken(text, node.col_offset))

    def addArgument(self, call: ast.Call, name: str, text: str):
        """Gives a call one more argument, behind the others."""
        _, end = self.script.span(call)
        behind = max((self.script.span(each)[1] for each in _argumentsOf(call)), default=end - 1)
        self._add(behind, behind, '%s%s=%s' % (', ' if _argumentsOf(call) else '', name, text))

    def insertBefore(self, node: Any, text: str):
        begin, _ = self.script.span(node)
        self._add(begin, begin, text)

    def insertLines(self, statement: ast.stmt, lines: str, before: bool = False):
        """Puts whole lines behind the last line of a statement, or before its first."""
        begin, end = self.script.linesOf(statement)
        place = begin if before else end
        if not before and not self.script.data[:end].endswith(b'\n'):
            lines = '\n' + lines
        self._add(place, place, lines)
        above = self.script.parent(statement)
        if above is not None:
            self._grown.add(above)

    def insertAt(self, line: int, lines: str):
        """Puts whole lines before a line, counted from 1."""
        self._add(self.script.lines[line - 1], self.script.lines[line - 1], lines)

    def delete(self, statement: ast.stmt):
        """Takes a statement out."""
        self._deleted.add(statement)

    def deleteRow(self, table: Any, row: ast.expr):
        """Takes a row out of a tuple or list."""
        self._rows.setdefault(table, set()).add(row)

    def move(self, statement: ast.stmt, behind: ast.stmt, isAtEnd: bool = False):
        """Has a statement stand behind another one, with what is changed in it; at the end, behind all new lines."""
        self._moves.append((statement, behind, isAtEnd))
        self._deleted.add(statement)
        self._grown.add(self.script.parent(behind) or behind)

    def _takeMoved(self, spans: list[tuple[int, int, int, str]]) -> list[tuple[int, int, int, str]]:
        """The changes with those that put moved statements, as they are then, to their new places."""
        for number, (statement, behind, isAtEnd) in enumerate(self._moves):
            begin, end = self.script.linesOf(statement)
            inner = [each for each in spans if begin < each[0] < end]
            text = _spliced(self.script.data[begin:end], inner, begin).decode()
            isReturn = isAtEnd and isinstance(behind, ast.Return)
            place = self.script.linesOf(behind)[0 if isReturn else 1]
            spans = [*(each for each in spans if each not in inner), (place, place, 10**6 + number, text)]
        return spans

    def _deletedRows(self, table: Any, gone: set[ast.expr]) -> Iterator[tuple[int, int, int, str]]:
        """What takes rows out of a table: each run of them with the comma behind it, or with that before at the end."""
        spans = [self.script.span(row) for row in table.elts]
        kept = [number for number, row in enumerate(table.elts) if row not in gone]
        if not kept:
            yield *self.script.span(table), -1, '()' if isinstance(table, ast.Tuple) else '[]'
            return
        for before, after in zip([-1, *kept], kept):
            if after > before + 1:
                yield spans[before + 1][0], spans[after][0], -1, ''
        last, end = spans[kept[-1]][1], spans[-1][1]
        isAlone = isinstance(table, ast.Tuple) and len(kept) == 1
        hasComma = b',' in self.script.data[end:self.script.span(table)[1]].split(b'#')[0]
        if kept[-1] + 1 < len(table.elts) or isAlone and not hasComma:
            yield last, end, -1, ',' if isAlone and not hasComma else ''

    def _add(self, begin: int, end: int, text: str):
        splice = begin, end, len(self._splices), text
        if splice[:2] + splice[3:] not in [each[:2] + each[3:] for each in self._splices if each[0] == begin
                                           and begin != end]:
            self._splices.append(splice)

    def text(self) -> str:
        """The text with all changes."""
        data, spans = self.script.data, list(self._splices)
        for table, gone in self._rows.items():
            spans += self._deletedRows(table, gone)
        spans = self._takeMoved(spans)
        for begin, end, text in self._deletions():
            spans = [each for each in spans if not (begin < each[1] and each[0] < end)]
            spans.append((begin, end, -1, text))
        return _spliced(data, spans).decode()

    def _deletions(self) -> Iterator[tuple[int, int, str]]:
        going = self._widened()
        for statement in going:
            begin, end = self.script.linesOf(statement)
            above = self.script.parent(statement)
            if above is not None and self._isEmptied(above, statement, going):
                indent = ' ' * statement.col_offset
                yield begin, end, indent + 'pass\n'
            else:
                yield (*self._withBlank(begin, end), '')

    def _widened(self) -> list[ast.stmt]:
        """The statements to take out: loops that would be left without a body go with it."""
        found = set(self._deleted)
        changed = True
        while changed:
            changed = False
            for statement in list(found):
                above = self.script.parent(statement)
                if isinstance(above, (ast.For, ast.With)) and self._isLeftBare(above, found):
                    found.add(above)
                    changed = True
        inner = {each for each in found if any(up in found for up in self.script.above(each))}
        return [each for each in found if each not in inner]

    def _isLeftBare(self, above: ast.For | ast.With, gone: set[ast.stmt]) -> bool:
        return (above not in gone and not getattr(above, 'orelse', None) and above not in self._grown
                and all(each in gone for each in above.body))

    def _isEmptied(self, above: Any, statement: ast.stmt, going: list[ast.stmt]) -> bool:
        """Whether nothing but its docstring is left of a body, of which this is the first statement to go."""
        body = next((each for each in (getattr(above, 'body', []), getattr(above, 'orelse', []))
                     if isinstance(each, list) and statement in each), [])
        left = [each for each in body if each not in going and not _isDocstring(each)]
        gone = [each for each in body if each in going]
        isBody = isinstance(above, (Function, ast.If, ast.While, ast.For, ast.With, ast.Try))
        return isBody and not left and above not in self._grown and gone[:1] == [statement] and not (
            isinstance(above, Function) and any(_isDocstring(each) for each in body))

    def _withBlank(self, begin: int, end: int) -> tuple[int, int]:
        """Takes a blank line along where another one stands on the other side."""
        data = self.script.data
        isBlankBefore = begin == 0 or data[:begin].endswith(b'\n\n')
        return (begin, end + 1) if isBlankBefore and data[end:end + 1] == b'\n' else (begin, end)


def _spliced(data: bytes, spans: list[tuple[int, int, int, str]], begin: int = 0) -> bytes:
    """Bytes that begin at a place of the script with the changes that are made in them."""
    for first, end, _, text in sorted(spans, key=lambda each: (each[0], each[1], each[2]), reverse=True):
        data = data[:first - begin] + text.encode() + data[end - begin:]
    return data


def _argumentsOf(call: ast.Call) -> list[Any]:
    return [*call.args, *(word.value for word in call.keywords)]


def _isDocstring(statement: ast.stmt) -> bool:
    return isinstance(statement, ast.Expr) and isinstance(statement.value, ast.Constant) \
        and isinstance(statement.value.value, str)
