"""What an editor has changed in a level and could not write into its scripts: `levels/<Level>.changes`, line by line.

    villa/letter#2: turn = 40               an argument of the pattern's call, the third 'letter' below villa
    villa/letter#2: name = 'invoice'        another name
    villa/crate: removed                    taken out once its map is built
    villa/crate: parent = 'villa/cart'      hung below another object
    villa/desk/deskPad/graphics2: .visible = False      a property of an object below
    villa/vase: placed = ('Vase', {'at': (1, 0, 2)})    a pattern that no script of the level calls

Paths begin below the level and name things as the scripts do. Arguments are changed where the level calls the pattern,
so that whoever asked for the thing has it as it is to be; the rest is done when its map is built, before the load
completes. A line that means nothing, or nothing that there still is, is told and left out. The lines are a set: git may
join those of two people in any order.

A mod has such a file for a level of its own, and for any other one that it changes: `levels/<Level>.changes` in it.
They are taken in the order in which mods are loaded, behind the level's own.
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
import mods

_LINE = re.compile(r'(?P<path>\S[^:]*):\s*(?:(?P<removed>removed)|(?P<key>\.?\w+)\s*=\s*(?P<value>.*\S))\s*$')
REMOVED, NAME, PARENT, PLACED = 'removed', 'name', 'parent', 'placed'
#: What is done once a map is built, rather than when a pattern is called.
LATE = REMOVED, PARENT, PLACED

#: Names of classes that a value may be made of, besides what Python writes itself.
_MADE = ('Vec4', 'Quaternion')


class Line(NamedTuple):
    """One change: the path of what it is about, what of it, and to what."""
    path: str
    key: str  # 'removed', 'name', 'parent', 'placed', an argument, or a property with a dot before it
    value: Any = None
    number: int = 0  # of the line in its file, from 1; 0 for one that stands in none yet
    file: str = ''


def fileOf(levelName: str, mod: mods.Mod | None = None) -> str:
    """The file of a level's own changes, or of those that a mod makes in it, whether or not there is one."""
    mod = mod or mods.ownerOfLevel(levelName)
    if mod:
        return os.path.join(mod.folder, 'levels', levelName + '.changes')
    folders = list(importlib.import_module('levels').__path__)
    beside = next((each for each in folders if os.path.isfile(os.path.join(each, levelName + '.py'))), folders[0])
    return os.path.join(beside, levelName + '.changes')


def changing(levelName: str) -> list[mods.Mod]:
    """The mods that change a level which is not theirs, in the order in which they are loaded."""
    return [mod for mod in mods.behindLevel(levelName) if os.path.isfile(fileOf(levelName, mod))]


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
                found.append(Line(match['path'], REMOVED, None, number, file))
            else:
                found.append(Line(match['path'], match['key'], valueOf(match['value']), number, file))
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
    owner = mods.ownerOf(file)
    if owner:
        return owner[1]
    return os.path.join('scripts', os.path.relpath(file, levelScripts.FOLDER)) if file else '.changes'


#: Path of the object of a call, '' for none, and steps down from there: names, and which one of those that share one.
Place = tuple[str, tuple[tuple[str, int], ...]]


class Call(NamedTuple):
    """A call of a pattern by the scripts of a level, as they have it."""
    above: str          # path of the object of another call that it hangs its own in; '' for none
    steps: tuple[tuple[str, int], ...]  # from there, or from the level, down to what it hangs it below
    path: str           # of its object, below the level
    name: str
    order: int          # how many were called before it


class Removed(NamedTuple):
    """A call of the scripts whose object a change has taken out."""
    built: kaVel.BuiltFrom
    name: str


class LevelChanges:
    """The changes of one level that is being built."""

    def __init__(self, lines: list[Line]):
        self._waiting = {(line.path, line.key): line for line in lines}
        self._paths = {line.path for line in lines}
        self._counts: dict[tuple[Any, str], int] = {}
        self._roots: dict[str, Any] = {}               # what was called for, by its path in the scripts
        self._others: dict[Any, Place] = {}            # of what else something hangs below
        self._called: Call | None = None               # the call under way
        self.calls: dict[Any, Call] = {}               # by what they have built
        self.removed: dict[Any, Removed] = {}
        self.placed: dict[Any, Line] = {}              # what no script called for

    def call(self, pattern: Callable[..., Any], arguments: tuple[Any, ...], options: dict[str, Any]):
        """The arguments of a pattern's call, with those that were changed."""
        self._called = None
        if not arguments:
            return arguments, options
        parent, name = arguments[0], options.get('name', arguments[1] if len(arguments) > 1 else '')
        if not isinstance(name, str):
            return arguments, options
        above, steps = self._placeOf(parent)
        path = self._pathOf(parent, name)
        changed = {key: self._waiting.pop((path, key)) for at, key in list(self._waiting)
                   if at == path and key[0] != '.' and key not in LATE} if path in self._paths else {}
        self._called = Call(above, steps, path, name, len(self.calls))
        return self._with(pattern, arguments, options, changed) if changed else (arguments, options)

    def built(self, root: Any):
        """Notes what the last call came to."""
        if self._called:
            self._roots[self._called.path] = root
            self.calls[root] = self._called
        self._called = None

    def _pathOf(self, parent: Any, name: str) -> str:
        """Path of the next call for this parent and name, as the scripts name them."""
        number = self._counts.get((parent, name), 0)
        self._counts[parent, name] = number + 1
        above, steps = self._placeOf(parent)
        return '/'.join([*filter(None, [above]), *(_step(*each) for each in steps), _step(name, number)])

    def _placeOf(self, entity: Any) -> Place:
        """The call that an object belongs to, by its path, and the steps down to it from there."""
        if entity in self.calls:
            return self.calls[entity].path, ()
        if not entity or not entity.parent:
            return '', ()
        if entity not in self._others:
            above, steps = self._placeOf(entity.parent)
            name = _nameOf(entity)
            named = [each for each in entity.parent.children if _nameOf(each) == name and not each.isDying()]
            self._others[entity] = above, (*steps, (name, named.index(entity)))
        return self._others[entity]

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
        for line in sorted(lines, key=lambda line: line.path.count('/')):
            if line.key == PLACED:
                self._place(level, self._waiting.pop((line.path, line.key)))
        lines = [line for line in lines if line.key != PLACED]
        # All is found as the scripts have it, before anything is taken elsewhere or out.
        found = [(line, self._find(level, line.path), self._find(level, line.value) if line.key == PARENT else None)
                 for line in lines]
        hung: list[tuple[Line, Any, Any]] = []
        for line, handle, parent in found:
            if line.key == PARENT and mapName and not parent and line.value.partition('/')[0] != mapName:
                continue  # the other map may be built yet
            del self._waiting[line.path, line.key]
            if not handle:
                self._tell(line, 'there is no %s' % line.path)
            elif line.key != PARENT:
                self._attempt(line, lambda: self._set(handle, line))
            elif not parent:
                self._tell(line, 'there is no %s' % line.value)
            else:
                hung.append((line, handle, parent))
        self._hang(hung)
        for line, handle, _ in found:
            if line.key == REMOVED and handle:
                self._remove(handle)

    def _place(self, level: kaVel.Coordinator, line: Line):
        """Calls a pattern that no script calls; it hangs below what its path says."""
        import objects.GameObjects as place
        above, _, name = line.path.rpartition('/')
        try:
            patternName, arguments = line.value
            pattern: Any = getattr(place, patternName, None)
            parent = self._find(level, above)
            if not getattr(pattern, 'isPattern', False):
                raise ValueError('there is no pattern %r' % patternName)
            if not parent:
                raise ValueError('there is no %s' % above)
            before, kaVel.amending = kaVel.amending, None
            try:
                root = pattern(parent, name.partition('#')[0], **arguments)
            finally:
                kaVel.amending = before
            self.placed[root] = line
            self._roots[line.path] = root
        except Exception as error:
            self._tell(line, str(error))

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

    def _attempt(self, line: Line, change: Callable[[], object]):
        try:
            change()
        except Exception as error:
            self._tell(line, str(error))

    @staticmethod
    def _set(handle: Any, line: Line):
        if line.key[0] == '.':
            if not hasattr(handle, line.key[1:]):
                raise ValueError('%s has no property %r' % (handle._getType().name, line.key[1:]))
            setattr(handle, line.key[1:], line.value)
        elif line.key != REMOVED:
            raise ValueError('no script of the level has called for it by a pattern')

    def _hang(self, hung: list[tuple[Line, Any, Any]]):
        """Hangs objects below others, in an order in which none hangs below itself on the way."""
        while hung:
            ready = [each for each in hung if not _isBelow(each[2], each[1])]
            if not ready:
                # Each waits for another one: one goes out of the way.
                self._putAside(hung)
                continue
            for line, handle, parent in ready:
                if not _isBelow(parent, handle):
                    self._attempt(line, lambda: handle.setParent(parent))
                    hung.remove((line, handle, parent))

    def _putAside(self, hung: list[tuple[Line, Any, Any]]):
        for line, handle, _ in hung:
            map = handle.getAncestorOfType(kaVel.Reflection.MapRootEntity)
            if map and handle.parent != map:
                handle.setParent(map)
                return
        line, *_ = hung.pop()
        self._tell(line, 'it would hang below itself')

    def _remove(self, handle: Any):
        for each in kaVel.descendants(handle):
            built = each.pattern
            if isinstance(built, kaVel.BuiltFrom) and built.calls and built.atStart and each not in self.removed:
                self.removed[each] = Removed(built, nameInScripts(built) or each.getName())
        handle.setName('.gone')
        handle.murder()

    def _tell(self, line: Line, cause: str):
        kaVel.log('%s:%d: the change of %s is left out: %s' % (_shown(line.file), line.number, line.path, cause))


def _nameOf(entity: Any) -> str:
    """An object's name; empty for one that has none but that which the engine made up."""
    name = entity.getName()
    return '' if name.startswith('unnamed__') else name


def _step(name: str, number: int) -> str:
    return name + ('#%d' % number if number or not name else '')


def _child(parent: Any, name: str, number: int) -> Any:
    named = (each for each in parent.children if _nameOf(each) == name and not each.isDying())
    return next((each for count, each in enumerate(named) if count == number), kaVel.Handle())


def _isBelow(entity: Any, above: Any) -> bool:
    while entity and entity != above:
        entity = entity.parent
    return bool(entity)


_ofLevels: dict[str, LevelChanges] = {}


def callsInScripts(levelName: str) -> dict[Any, Call]:
    """The calls of a level's scripts by what they have built; none for a level without changes."""
    changes = _ofLevels.get(levelName)
    return changes.calls if changes else {}


def removedInScripts(levelName: str) -> dict[Any, Removed]:
    """What the scripts of a level call for and a change has taken out, parents before what stood below them."""
    changes = _ofLevels.get(levelName)
    return changes.removed if changes else {}


def placedIn(levelName: str) -> dict[Any, Line]:
    """What changes have placed in a level that no script calls for, by its root."""
    changes = _ofLevels.get(levelName)
    return changes.placed if changes else {}


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
    _ofLevels.pop(levelName, None)
    lines: list[Line] = []
    for file in [fileOf(levelName), *(fileOf(levelName, mod) for mod in changing(levelName))]:
        try:
            with open(file, encoding='utf-8') as stream:
                lines += read(stream.read(), file)
        except FileNotFoundError:
            continue
        except (OSError, UnicodeError) as error:
            kaVel.log('%s cannot be read, and what stands in it is left out: %s' % (_shown(file), error))
    if not lines:
        return None
    changes = _ofLevels[levelName] = LevelChanges(lines)
    return changes
