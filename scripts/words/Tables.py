"""Tables of texts as files: what one says, and what is wrong with it, by line.

A table is a module of this folder with one dict of plain strings, `TEXTS = {'menu.resume': 'Resume', ...}`. It is read
and never run, so that a table with a fault costs nothing but the texts that the fault lies in.
"""

from __future__ import annotations

import ast
import os
import string
from typing import Callable, Iterator, Mapping, NamedTuple

FOLDER = os.path.dirname(__file__)

#: The language that stands in wherever another one has a hole; all others are held against it.
FIRST = 'english'

#: Keys that every language has for itself: its code, as 'de', and its own name for itself.
CODE, NAME = 'language.code', 'language.name'


#: Texts that others bring, in the order in which they are laid over the tables: the name of the table, the file as it
#: is called in texts, the texts by their keys, and the line of a key.
layers: list[tuple[str, str, Mapping[str, str], Callable[[str], int]]] = []


class Table(NamedTuple):
    """The good texts of a file, the lines that they stand in, and what is wrong with the others, as sentences."""

    name: str
    texts: dict[str, str]
    lines: dict[str, int]
    faults: list[str]


def names() -> list[str]:
    """The tables that there are, the first language before the others."""
    modules = sorted({file[:-3] for file in os.listdir(FOLDER) if file.endswith('.py') and file[:1].islower()}
                     | {layer[0] for layer in layers})
    return [FIRST] + [name for name in modules if name != FIRST]


def nameOf(file: str) -> str:
    """The name of the table that a file is."""
    return os.path.splitext(os.path.basename(file))[0]


def read(name: str, folder: str = FOLDER) -> Table:
    """The table of this name with what is laid over it; without texts where the file cannot be read or is no Python."""
    isBrought = any(layer[0] == name for layer in layers) and not os.path.exists(os.path.join(folder, name + '.py'))
    table = Table(name, {}, {}, []) if isBrought else _readFile(name, folder)
    for layer in layers:
        if layer[0] == name:
            _layOver(table, *layer[1:])
    return table


def _layOver(table: Table, shown: str, texts: Mapping[str, str], lineOf: Callable[[str], int]):
    for key, text in texts.items():
        try:
            placeholders(text)
        except ValueError as error:
            table.faults.append('%s:%d: %r: %s; write {{ for a brace' % (shown, lineOf(key), key, error))
            continue
        table.texts[key], table.lines[key] = text, lineOf(key)


def _readFile(name: str, folder: str) -> Table:
    table = Table(name, {}, {}, [])
    path = os.path.join(folder, name + '.py')
    shown = os.path.join('scripts', 'words', name + '.py')
    try:
        with open(path, encoding='utf-8') as file:
            tree = ast.parse(file.read())
    except SyntaxError as error:
        table.faults.append('%s:%d: %s' % (shown, error.lineno or 0, error.msg))
        return table
    except (OSError, ValueError) as error:
        table.faults.append('%s: %s' % (shown, error))
        return table
    content = next(_dicts(tree), None)
    if not isinstance(content, ast.Dict):
        line = content.lineno if content else 1
        table.faults.append('%s:%d: TEXTS has to be a dict of texts by their keys' % (shown, line))
        return table
    for key, value in zip(content.keys, content.values):
        _take(table, shown, key, value)
    return table


def compared(table: Table, first: Table) -> Table:
    """A table held against the first language: without texts of other placeholders, and told what it lacks."""
    shown = os.path.join('scripts', 'words', table.name + '.py')
    good, faults = dict(table.texts), list(table.faults)
    for key, text in table.texts.items():
        wanted = first.texts.get(_singular(key, first))
        if wanted is not None and _odd(placeholders(text), placeholders(wanted), key):
            faults.append('%s:%d: %r has the placeholders %s where %s has %s' % (
                shown, table.lines[key], key, _list(placeholders(text)), FIRST, _list(placeholders(wanted))))
            del good[key]
    lacking = [key for key in first.texts if key not in table.texts and not _isPlural(key)]
    if lacking and table.texts:
        more = ', ...' if len(lacking) > 5 else ''
        faults.append('%s lacks %d texts: %s%s' % (shown, len(lacking), ', '.join(lacking[:5]), more))
    return table._replace(texts=good, faults=faults)


def placeholders(text: str) -> set[str]:
    """Names in braces of a text; ValueError where the braces are not those of names."""
    found = set()
    for _, name, form, conversion in string.Formatter().parse(text):
        if name is None:
            continue
        if not name.isidentifier() or form or conversion:
            raise ValueError('{%s} is no name' % name)
        found.add(name)
    return found


def _dicts(tree: ast.Module) -> Iterator[ast.expr]:
    """What is assigned to TEXTS."""
    for statement in tree.body:
        targets = statement.targets if isinstance(statement, ast.Assign) else \
            [statement.target] if isinstance(statement, ast.AnnAssign) else []
        if any(isinstance(target, ast.Name) and target.id == 'TEXTS' for target in targets):
            value = getattr(statement, 'value', None)
            if value is not None:
                yield value


def _take(table: Table, shown: str, key: ast.expr | None, value: ast.expr):
    """Takes one entry of a table, or tells what is wrong with it."""
    if not isinstance(key, ast.Constant) or not isinstance(key.value, str):
        table.faults.append('%s:%d: a key has to be a text in quotes' % (shown, value.lineno))
        return
    name = key.value
    if not isinstance(value, ast.Constant) or not isinstance(value.value, str):
        table.faults.append('%s:%d: %r has to be a text in quotes' % (shown, value.lineno, name))
        return
    try:
        placeholders(value.value)
    except ValueError as error:
        table.faults.append('%s:%d: %r: %s; write {{ for a brace' % (shown, value.lineno, name, error))
        return
    if name in table.texts:
        table.faults.append('%s:%d: %r stands twice; the first one counts' % (shown, value.lineno, name))
        return
    table.texts[name] = value.value
    table.lines[name] = value.lineno


#: Ends of the keys that one text has for its numbers; which of them a language uses is its own.
PLURALS = ('.one', '.few', '.many', '.other')


def _isPlural(key: str) -> bool:
    return key.endswith(PLURALS[:3])


def _singular(key: str, first: Table) -> str:
    """The key of the first language that a key is held against: of a text for numbers, its form for any of them."""
    other = key.rpartition('.')[0] + '.other'
    return other if key.endswith(PLURALS) and other in first.texts else key


def _odd(found: set[str], wanted: set[str], key: str) -> bool:
    """Whether placeholders differ; a form for one thing may leave the number out."""
    return not found <= wanted if _isPlural(key) else found != wanted


def _list(found: set[str]) -> str:
    return ', '.join('{%s}' % name for name in sorted(found)) or 'none'
