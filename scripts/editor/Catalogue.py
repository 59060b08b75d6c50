"""The catalogue: every pattern of `objects.GameObjects` by kind, with its first sentence and its picture.

    for each in Catalogue.entries():
        print(each.kind, each.name, each.help, each.picture())

The kind is the module of `objects` that a pattern stands in. Pictures are taken by `Pictures` on a level of their own.
"""

from __future__ import annotations

import ast
import functools
import importlib
import inspect
import os
import re
from typing import Any, Callable, NamedTuple

import kaVel

#: Where all patterns stand under one name.
HOME = 'objects.GameObjects'

#: What the engine or a level's frame makes for itself, and nobody puts down by hand.
_NOT_PLACED = {'Boid', 'Ceiling', 'Floor', 'LightPartitioningDummy', 'ScreenViewer', 'Hud', 'BatteryMeter', 'Entity'}


class Entry(NamedTuple):
    """A pattern as the catalogue shows it."""

    name: str
    kind: str
    help: str
    pattern: Callable[..., Any]

    def takes(self, parameter: str) -> bool:
        """Whether the pattern has a parameter of this name."""
        return parameter in inspect.signature(self.pattern).parameters


def entries() -> list[Entry]:
    """All patterns that can be placed, by kind and then by name."""
    return list(_all().values())


def kinds() -> list[str]:
    """The kinds that there are, in alphabetical order."""
    return sorted({each.kind for each in _all().values()})


def named(name: str) -> Entry:
    """The pattern of this name; KeyError that names the nearest one."""
    try:
        return _all()[name]
    except KeyError:
        raise KeyError('there is no pattern %r%s' % (name, kaVel.nearestHint(name, _all()))) from None


def matching(text: str, kind: str = '') -> list[Entry]:
    """The patterns of a kind, or of all, in whose name, kind or sentence all words of a text are found."""
    words = text.lower().split()
    return [each for each in entries() if kind in ('', each.kind)
            and all(word in ' '.join(each[:3]).lower() for word in words)]


def sourceOf(entry: Entry) -> str:
    """The script that a pattern's kind stands in."""
    return os.path.join(os.path.dirname(importlib.import_module(HOME).__file__ or ''), entry.kind + '.py')


def readableName(pattern: str) -> str:
    """The name of a pattern as a name for what it builds: 'LitCandle' -> 'litCandle'."""
    return pattern[:1].lower() + pattern[1:]


@functools.cache
def _all() -> dict[str, Entry]:
    home = importlib.import_module(HOME)
    stated = _stated(os.path.dirname(home.__file__ or ''))
    found = [Entry(name, *stated.get(name, ('Others', _sentence(inspect.getdoc(value)))), value)
             for name, value in vars(home).items() if name not in _NOT_PLACED and _isPattern(value)]
    return {each.name: each for each in sorted(found, key=lambda each: (each.kind, each.name))}


def _isPattern(value: Any) -> bool:
    """Whether something is a function that `kaVel.pattern` has marked."""
    return callable(value) and getattr(value, 'isPattern', False)


def _stated(folder: str) -> dict[str, tuple[str, str]]:
    """Name at the top of a module of `objects` -> kind and first sentence, as its source says."""
    found: dict[str, tuple[str, str]] = {}
    for file in sorted(os.listdir(folder)):
        if file.endswith('.py') and file != '__init__.py':
            with open(os.path.join(folder, file), encoding='utf-8') as source:
                found.update(_statedIn(ast.parse(source.read()), file[:-3]))
    return found


def _statedIn(module: ast.Module, kind: str):
    for statement, following in zip(module.body, [*module.body[1:], None]):
        if isinstance(statement, ast.FunctionDef) and statement.decorator_list:
            yield statement.name, (kind, _sentence(ast.get_docstring(statement)))
        elif isinstance(statement, ast.Assign) and isinstance(statement.targets[0], ast.Name):
            said = following.value if isinstance(following, ast.Expr) else None
            yield statement.targets[0].id, (kind, _sentence(said.value if isinstance(said, ast.Constant) else ''))


def _sentence(text: Any) -> str:
    """The first sentence of a comment, in one line."""
    line = ' '.join(str(text or '').split('\n\n')[0].split())
    return re.split(r'(?<=[.!?]) (?=[A-Z`])', line)[0]
