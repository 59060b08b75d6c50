"""What an editor has changed in a level and could not write into its scripts: `levels/<Level>.changes`, line by line.

    villa/letter#2: turn = 40               an argument of the pattern's call, the third 'letter' below villa
    villa/letter#2: name = 'invoice'        another name
    villa/crate: removed                    taken out once its map is built
    villa/crate: parent = 'villa/cart'      hung below another object
    villa/desk/deskPad/graphics2: .visible = False      a property of an object below

Paths begin below the level and name things as the scripts do. Arguments are changed where the level calls the pattern,
so that whoever asked for the thing has it as it is to be; the rest is done when its map is built, before the load
completes. A line that means nothing, or nothing that there still is, is told and left out. The lines are a set: git may
join those of two people in any order.
"""

from __future__ import annotations

import ast
import contextlib
import importlib
import inspect
import os
import re
from typing import Any, Callable, NamedTuple

import kaVel
import levelScripts

_LINE = re.compile(r'(?P<path>\S[^:]*):\s*(?:(?P<removed>removed)|(?P<key>\.?\w+)\s*=\s*(?P<value>.*\S))\s*$')
REMOVED, NAME, PARENT = 'removed', 'name', 'parent'

#: Names of classes that a value may be made of, besides what Python writes itself.
_MADE = ('Vec4', 'Quaternion')


class Line(NamedTuple):
    """One change: the path of what it is about, what of it, and to what."""
    path: str
    key: str  # 'removed', 'name', 'parent', an argument, or a property with a dot before it
    value: Any = None
    number: int = 0  # of the line in its file, from 1; 0 for one that stands in none yet


def fileOf(levelName: str) -> str:
    """The file of a level's changes, whether or not there is one."""
    folders = list(importlib.import_module('levels').__path__)
    beside = next((each for each in folders if os.path.isfile(os.path.join(each, levelName + '.py'))), folders[0])
    return os.path.join(beside, levelName + '.changes')


def read(text: str, file: str = '') -> list[Line]:
    """The changes in a text; a line that is none is told with its number and left out."""
    found: list[Line] = []
    for number, row in enumerate(text.splitlines(), 1):
        if not row.strip() or row.lstrip().startswith('#'):
            continue
        match = _LINE.match(row.strip())
        try:
            if not match:
                raise ValueError("'path: key = value' or 'path: removed' is wanted")
            if match['removed']:
                found.append(Line(match['path'], REMOVED, None, number))
            else:
                found.append(Line(match['path'], match['key'], valueOf(match['value']), number))
        except (ValueError, SyntaxError) as error:
            kaVel.log('%s:%d: %r is left out: %s' % (_shown(file), number, row.strip(), error))
    return found


def valueOf(text: str) -> Any:
    """The value that a text stands for: what `ast.literal_eval` takes, a kaVel.Vec4 or a kaVel.Quaternion."""
    node = ast.parse(text, mode='eval').body
    if isinstance(node, ast.Call) and isinstance(node.func, ast.Attribute) and node.func.attr in _MADE:
        return getattr(kaVel, node.func.attr)(*(ast.literal_eval(each) for each in node.args))
    return ast.literal_eval(node)


def _shown(file: str) -> str:
    return os.path.join('scripts', os.path.relpath(file, levelScripts.FOLDER)) if file else '.changes'


class Removed(NamedTuple):
    """A call of the scripts whose object a change has taken out."""
    built: kaVel.BuiltFrom
    parent: Any         # what it stood below
    parentPath: str     # the same as the scripts name it
    name: str
    number: int         # of those with its name and parent


class LevelChanges:
    """The changes of one level that is being built."""

    def __init__(self, lines: list[Line], file: str):
        self._file = file
        self._waiting = {(line.path, line.key): line for line in lines}
        self._paths = {line.path for line in lines}
        self._counts: dict[tuple[Any, str], int] = {}
        self._roots: dict[str, Any] = {}               # what was called for, by its path in the scripts
        self._given: dict[Any, str] = {}               # the other way, for those that got another name
        self.numbers: dict[Any, int] = {}              # of what was called for, among those of its name and parent
        self._called, self._isRenamed = '', False      # the path of the call under way
        self.parents: dict[Any, str] = {}              # of what was hung elsewhere: its path in the scripts
        self.removed: dict[Any, Removed] = {}

    def call(self, pattern: Callable[..., Any], arguments: tuple[Any, ...], options: dict[str, Any]):
        """The arguments of a pattern's call, with those that were changed."""
        self._called = ''
        if not arguments:
            return arguments, options
        parent, name = arguments[0], options.get('name', arguments[1] if len(arguments) > 1 else '')
        if not isinstance(name, str):
            return arguments, options
        path = self._pathOf(parent, name)
        changed = {key: self._waiting.pop((path, key)) for at, key in list(self._waiting)
                   if at == path and key[0] != '.' and key not in (REMOVED, PARENT)} if path in self._paths else {}
        self._called, self._isRenamed = path, NAME in changed
        return self._with(pattern, arguments, options, changed) if changed else (arguments, options)

    def built(self, root: Any):
        """Notes what the last call came to."""
        if self._called:
            self._roots[self._called] = root
            number = self._called.rpartition('/')[2].rpartition('#')[2]
            self.numbers[root] = int(number) if '#' in self._called.rpartition('/')[2] else 0
            if self._isRenamed:
                self._given[root] = self._called
        self._called = ''

    def _pathOf(self, parent: Any, name: str) -> str:
        """Path of the next call for this parent and name, as the scripts name them."""
        number = self._counts.get((parent, name), 0)
        self._counts[parent, name] = number + 1
        above = self._scriptsPath(parent)
        return (above + '/' if above else '') + name + ('#%d' % number if number else '')

    def _scriptsPath(self, entity: Any) -> str:
        steps: list[str] = []
        while entity and entity.parent:
            known = self._given.get(entity)
            if known:
                return '/'.join([known, *reversed(steps)])
            steps.append(entity.getName())
            entity = entity.parent
        return '/'.join(reversed(steps))

    def _with(self, pattern: Callable[..., Any], arguments: tuple[Any, ...], options: dict[str, Any],
              changed: dict[str, Line]):
        parameters = inspect.signature(pattern).parameters
        names, loose = list(parameters), any(each.kind == each.VAR_KEYWORD for each in parameters.values())
        given, more = list(arguments), dict(options)
        for key, line in changed.items():
            if key not in names and not loose:
                self._tell(line, '%s has no parameter %r%s' % (pattern.__name__, key, kaVel.nearestHint(key, names)))
            elif key in names and names.index(key) < len(given):
                given[names.index(key)] = line.value
            else:
                more[key] = line.value
        return tuple(given), more

    def finish(self, level: kaVel.Coordinator, mapName: str = ''):
        """Does what is to be done once a map is built, or with '' once the level is."""
        lines = [line for line in self._waiting.values() if not mapName or line.path.partition('/')[0] == mapName]
        found = [(line, self._find(level, line.path)) for line in lines]
        for line, handle in found:
            del self._waiting[line.path, line.key]
            if not handle:
                self._tell(line, 'there is no %s' % line.path)
            else:
                self._apply(level, handle, line)

    def _find(self, level: kaVel.Coordinator, path: str) -> Any:
        """What stands at a path of the scripts, which may go on below what a pattern has built."""
        begin, rest = path, ''
        while begin not in self._roots and begin:
            begin, _, last = begin.rpartition('/')
            rest = last + ('/' + rest if rest else '')
        root: Any = level
        if begin:
            root = self._roots[begin]
        for step in rest.split('/') if rest else ():
            name, mark, number = step.rpartition('#')
            if not root:
                return root
            root = _child(root, name, int(number)) if mark and number.isdigit() else _child(root, step, 0)
        return root

    def _apply(self, level: kaVel.Coordinator, handle: Any, line: Line):
        try:
            if line.key == REMOVED:
                self._noteRemoved(handle)
                handle.setName('.gone')
                handle.murder()
            elif line.key == PARENT:
                parent = self._find(level, line.value)
                if not parent:
                    raise ValueError('there is no %s' % line.value)
                self.parents[handle] = kaVel.pathOf(handle.parent).partition('/')[2]
                handle.setParent(parent)
            elif line.key[0] == '.':
                if not hasattr(handle, line.key[1:]):
                    raise ValueError('%s has no property %r' % (handle._getType().name, line.key[1:]))
                setattr(handle, line.key[1:], line.value)
            else:
                raise ValueError('no script of the level has called for it by a pattern')
        except Exception as error:
            self._tell(line, str(error))

    def _noteRemoved(self, handle: Any):
        for each in kaVel.descendants(handle):
            built = each.pattern
            if isinstance(built, kaVel.BuiltFrom) and built.calls and built.atStart and each not in self.removed:
                self.removed[each] = Removed(built, each.parent, self._scriptsPath(each.parent),
                                             nameInScripts(built) or each.getName(), self.numbers.get(each, 0))

    def _tell(self, line: Line, cause: str):
        kaVel.log('%s:%d: the change of %s is left out: %s' % (_shown(self._file), line.number, line.path, cause))


def _child(parent: Any, name: str, number: int) -> Any:
    named = (each for each in parent.children if each.getName() == name)
    return next((each for count, each in enumerate(named) if count == number), kaVel.Handle())


_ofLevels: dict[str, LevelChanges] = {}


def numberInScripts(levelName: str, root: Any) -> int | None:
    """How many of its name and parent the scripts had called for before an object; None where nobody counted."""
    changes = _ofLevels.get(levelName)
    return changes.numbers.get(root) if changes else None


def parentInScripts(levelName: str, root: Any) -> str | None:
    """Path below the level of what the scripts hang an object below that a change hangs elsewhere; None for others."""
    changes = _ofLevels.get(levelName)
    return changes.parents.get(root) if changes else None


def removedInScripts(levelName: str) -> dict[Any, Removed]:
    """What the scripts of a level call for and a change has taken out, parents before what stood below them."""
    changes = _ofLevels.get(levelName)
    return changes.removed if changes else {}


def nameInScripts(built: kaVel.BuiltFrom) -> str:
    """The name that a script gave where a change has given another one; '' where none has."""
    arguments, options = built.called or ((), {})
    name = options.get('name', arguments[1] if len(arguments) > 1 else '')
    return name if isinstance(name, str) else ''


@contextlib.contextmanager
def taken(level: kaVel.Coordinator, mapName: str = ''):
    """Within it, what the level calls for is built as it was changed; at the end the rest of the changes is done.

    Does nothing for a level without a file of changes. For a map, within the level's own or later, the rest is only
    that of the map.
    """
    changes = _ofLevels.get(level.levelName) if mapName else _readFor(level.levelName)
    if changes is None:
        yield
        return
    before, kaVel.amending = kaVel.amending, changes
    try:
        yield
        changes.finish(level, mapName)
    finally:
        kaVel.amending = before


def _readFor(levelName: str) -> LevelChanges | None:
    file = fileOf(levelName)
    _ofLevels.pop(levelName, None)
    try:
        with open(file, encoding='utf-8') as stream:
            lines = read(stream.read(), file)
    except FileNotFoundError:
        return None
    except (OSError, UnicodeError) as error:
        kaVel.log('%s cannot be read, and what stands in it is left out: %s' % (_shown(file), error))
        return None
    changes = _ofLevels[levelName] = LevelChanges(lines, file)
    return changes
