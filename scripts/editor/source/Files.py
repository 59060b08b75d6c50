"""The files of scripts as the level that runs was made from them: their text, and what stands where in it."""

from __future__ import annotations

import ast
import os
import sys
from types import CodeType
from typing import Any, Iterable, Iterator

import callSites
import levelChanges
import levelScripts
import mods
from editor.source.Modules import moduleOf

#: Functions, and what else has a name space of its own.
Function = ast.FunctionDef | ast.AsyncFunctionDef
#: First and last byte of something in a text.
Span = tuple[int, int]


def shown(file: str) -> str:
    """A file as it is told: scripts/levels/Hall.py."""
    if file.startswith(levelScripts.FOLDER + os.sep):
        return os.path.join('scripts', os.path.relpath(file, levelScripts.FOLDER))
    owner = mods.ownerOf(file)
    return owner[1] if owner else file


class Script:
    """The text of one script, as bytes, since that is how Python counts columns."""

    def __init__(self, file: str, text: str):
        self.file = file
        self.text = text
        self.data = text.encode()
        self.tree = ast.parse(text, file)
        self.module = sys.modules.get(moduleOf(file))
        self.lines = [0]
        for line in self.data.splitlines(keepends=True):
            self.lines.append(self.lines[-1] + len(line))
        self._parents: dict[ast.AST, ast.AST] = {}
        self._calls: dict[tuple[int, int, int, int], ast.Call] = {}
        self._functions: dict[tuple[str, int], Function] = {}
        for node in ast.walk(self.tree):
            self._note(node)
        self._codes = {(code.co_name, code.co_firstlineno): code
                       for code in _codes(compile(text, file, 'exec', dont_inherit=True))}

    def _note(self, node: ast.AST):
        for child in ast.iter_child_nodes(node):
            self._parents[child] = node
        if isinstance(node, ast.Call):
            self._calls[node.lineno, node.col_offset, node.end_lineno or 0, node.end_col_offset or 0] = node
        elif isinstance(node, Function):
            first = min([node.lineno, *(each.lineno for each in node.decorator_list)])
            self._functions[node.name, first] = node

    def callAt(self, call: tuple[CodeType, int]) -> ast.Call | None:
        """The call that an instruction is; None if the text is not the one that the code was made from."""
        if not self.isOf(call[0]):
            return None
        line, column, endLine, endColumn = callSites.positionOf(call)
        return self._calls.get((line, column, endLine, endColumn))

    def isOf(self, code: CodeType) -> bool:
        """Whether a piece of code was made from this text."""
        now = self._codes.get((code.co_name, code.co_firstlineno))
        return now is not None and now.co_linetable == code.co_linetable and now.co_names == code.co_names

    def functionOf(self, code: CodeType) -> Function | None:
        """The function that a piece of code is."""
        return self._functions.get((code.co_name, code.co_firstlineno))

    def function(self, name: str) -> Function | None:
        """The function of the module's own that has a name."""
        return next((node for node in self.tree.body if isinstance(node, Function) and node.name == name), None)

    def parent(self, node: ast.AST) -> ast.AST | None:
        return self._parents.get(node)

    def above(self, node: ast.AST) -> Iterator[ast.AST]:
        """What a node stands in, from the inside out."""
        up = self._parents.get(node)
        while up is not None:
            yield up
            up = self._parents.get(up)

    def statementOf(self, node: ast.AST) -> ast.stmt | None:
        """The statement that a node is a part of."""
        if isinstance(node, ast.stmt):
            return node
        return next((each for each in self.above(node) if isinstance(each, ast.stmt)), None)

    def span(self, node: Any) -> Span:
        """First and last byte of a node."""
        return (self.lines[node.lineno - 1] + node.col_offset, self.lines[node.end_lineno - 1] + node.end_col_offset)

    def source(self, node: ast.AST) -> str:
        begin, end = self.span(node)
        return self.data[begin:end].decode()

    def linesOf(self, node: Any) -> Span:
        """First and last byte of the whole lines that a node stands on."""
        return self.lines[node.lineno - 1], self.lines[node.end_lineno]

    def globals(self) -> dict[str, Any]:
        return vars(self.module) if self.module else {}


def _codes(code: CodeType) -> Iterator[CodeType]:
    yield code
    for each in code.co_consts:
        if isinstance(each, CodeType):
            yield from _codes(each)


class Texts:
    """The files of a level, each read once: edits are told from these texts, whatever becomes of the files."""

    def __init__(self, levelName: str):
        self._scripts: dict[str, Script | None] = {}
        self._read: dict[str, str] = {}
        self.changes = _textOf(levelChanges.fileOf(levelName))  # of the level's file of changes
        self.written: dict[str, str] = {}   # what files were given when the level was last saved
        self.begun: dict[str, str] = {}     # what was in them before
        self.planned: dict[str, str] = {}   # what they are to be given
        self.paths: dict[Any, str] = {}     # how the planned scripts name pieces

    def of(self, file: str) -> Script | None:
        """A script; None for one that cannot be read or is none."""
        name = os.path.realpath(file)
        if name not in self._scripts:
            self.remember([file])
            try:
                self._scripts[name] = Script(file, self._read[name]) if self._read[name] else None
            except (SyntaxError, ValueError):
                self._scripts[name] = None
        return self._scripts[name]

    def remember(self, files: Iterable[str]):
        """Reads files as they are now, before somebody changes them."""
        for file in files:
            name = os.path.realpath(file)
            if name not in self._read:
                self._read[name] = _textOf(name)

    def areAsWritten(self) -> bool:
        """Whether files that were saved have still what was written into them."""
        return bool(self.written) and all(_textOf(file) == text for file, text in self.written.items())


def _textOf(file: str) -> str:
    try:
        with open(file, encoding='utf-8', newline='') as stream:
            return stream.read()
    except (OSError, UnicodeError):
        return ''
