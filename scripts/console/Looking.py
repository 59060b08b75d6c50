"""Commands that look at objects and change them."""

from __future__ import annotations

import shlex
from typing import Any

import kaVel
from console import Values
from console.Session import Session, Wrong, command

MOST_FOUND = 60


@command('get', 'path.property', 'member')
def get(session: Session, line: str) -> str:
    """Shows a property of an object, or all of them."""
    handle, name = Values.member(session, line)
    if name:
        return '%s = %s' % (line, Values.show(getattr(handle, name)))
    rows = ['%s (%s)' % (kaVel.pathOf(handle), Values.classOf(handle))]
    width = max(map(len, Values.properties(handle)), default=0)
    return '\n'.join(rows + ['  %-*s  %s' % (width, each, _read(handle, each)) for each in Values.properties(handle)])


def _read(handle: Any, name: str) -> str:
    try:
        return Values.show(getattr(handle, name))
    except Exception as error:
        return '<%s>' % error


@command('set', 'property value', 'member', 'value')
def set_(session: Session, line: str) -> str:
    """Sets a property of an object."""
    where, _, text = line.partition(' ')
    handle, name = Values.member(session, where)
    if not name or not text:
        raise Wrong('name a property and its value, as in Player/player.sanity 50')
    present = getattr(handle, name)
    value = Values.read(session, text.strip(), present)
    try:
        setattr(handle, name, value)
    except Exception as error:
        names = session.console.enumNames(handle, name).split('\n')
        allowed = ' or '.join(row.split('\t')[0] for row in names if row)
        if isinstance(present, (int, float)) and isinstance(value, str):
            error = '%r is none of %s' % (value, allowed) if allowed else '%r is no number' % value
        raise Wrong('%s stays %s: %s' % (where, Values.show(present), error)) from None
    return '%s = %s' % (where, Values.show(getattr(handle, name)))


@command('call', 'method arguments', 'method', 'text')
def call(session: Session, line: str) -> str | None:
    """Calls a method of an object; arguments are numbers, texts and paths that begin with c:/ or s:/."""
    where, _, rest = line.partition(' ')
    path, name = Values.split(where)
    if not path:
        raise Wrong('name an object and a method, as in Player/transform.getPosition')
    handle = Values.resolve(session, path)
    if not name or not callable(getattr(handle, name, None)):
        raise Wrong('%s (%s) has no method %r%s' % (path, Values.classOf(handle), name,
                                                    kaVel.nearestHint(name, Values.methods(handle))))
    try:
        words = shlex.split(rest)
    except ValueError as error:
        raise Wrong('%s in %r' % (error, rest)) from None
    arguments = [Values.resolve(session, word) if word[:3] in ('c:/', 's:/') else Values.literal(word)
                 for word in words]
    try:
        result = getattr(handle, name)(*arguments)
    except (RuntimeError, TypeError) as error:
        raise Wrong('%s: %s' % (where, error)) from None
    return None if result is None else '%s gave %s' % (where, Values.show(result))


@command('find', 'text', 'text')
def find(session: Session, line: str) -> str:
    """Finds objects of the level and systems by a part of their name or class."""
    if not line:
        raise Wrong('what is to be found?')
    wanted, found = line.lower(), []
    for prefix, root in (('c:/', session.level), ('s:/', Values.systems())):
        above = len(kaVel.pathOf(root)) + 1
        for handle in kaVel.descendants(root):
            if wanted in handle.getName().lower() or wanted in Values.classOf(handle).lower():
                found.append('%s%s (%s)' % (prefix, kaVel.pathOf(handle)[above:], Values.classOf(handle)))
    if not found:
        raise Wrong('no name and no class has %r in it' % line)
    return '\n'.join(_cut(found))


def _cut(rows: list[str]) -> list[str]:
    return rows if len(rows) <= MOST_FOUND else rows[:MOST_FOUND] + ['... %d more' % (len(rows) - MOST_FOUND)]


@command('tree', 'path depth', 'object')
def tree(session: Session, line: str) -> str:
    """Shows what hangs below an object, two levels deep or as deep as said."""
    words = line.split()
    depth = int(words.pop()) if words and words[-1].isdigit() else 2
    return '\n'.join(_cut(list(_branches(Values.resolve(session, words[0] if words else ''), depth, 0))))


def _branches(handle: Any, depth: int, indent: int):
    yield '%s%s (%s)' % ('  ' * indent, handle.getName(), Values.classOf(handle))
    for child in handle.children if indent < depth else ():
        yield from _branches(child, depth, indent + 1)


@command('select', 'path', 'object')
def select(session: Session, line: str) -> str:
    """Makes an object the one at which paths begin; without a path the level again."""
    session.selected = Values.resolve(session, line) if line else None
    return 'Paths begin at %s' % Values.show(session.start())


@command('why', 'path', 'object')
def why(session: Session, line: str) -> str:
    """Says what a creature does, and why."""
    return kaVel.why(Values.resolve(session, line))


@command('watch', 'path.property', 'member')
def watch(session: Session, line: str) -> str | None:
    """Shows a property in the corner of the screen while the game goes on; again to show it no more."""
    if not line:
        return '\n'.join(session.watches) or 'Nothing is watched'
    if line in session.watches:
        session.watches.remove(line)
    else:
        _, name = Values.member(session, line)
        if not name:
            raise Wrong('name a property, as in Player/transform.position')
        session.watches.append(line)
    _follow(session)
    return None


def _follow(session: Session):
    """Has the watched values read in every frame for as long as there are any."""
    if 'cursor' not in session.entity.children:
        kaVel.addComponent(session.entity, 'cursor', 'ScriptComponent')
    reader = session.entity.getComponent('cursor')
    reader.frameCallback = (lambda: _showWatched(session)) if session.watches else None
    _showWatched(session)


def _showWatched(session: Session):
    rows = []
    for line in session.watches:
        try:
            rows.append('%s  %s' % (line, Values.show(getattr(*Values.member(session, line)))))
        except Wrong as wrong:
            rows.append('%s  <%s>' % (line, wrong))
    session.console.watchText = '\n'.join(rows)


@command('log', 'importance words', 'importance', 'text')
def log(session: Session, line: str) -> str:
    """Shows only lines of the log that are as important and have these words; without arguments all of them again."""
    word, _, words = line.partition(' ')
    levels = {'critical': 0, 'error': 1, 'warning': 2, 'information': 3, 'debug': 4}
    chosen = [level for name, level in levels.items() if word and name.startswith(word.lower())]
    if word and not chosen:
        chosen, words = [3], line
    session.console.shownImportance = chosen[0] if chosen else 3
    session.console.shownWords = words.strip()
    return 'The log is searched; "log" alone shows all of it' if line else 'All of the log is shown'
