"""What may stand next in a line: commands, paths, properties, methods, values, each with a sentence on it."""

from __future__ import annotations

import rlcompleter
from typing import Any, Callable, Iterable

import bindings
import kaVel
from console import Values
from console.Python import namespace
from console.Session import Session, Wrong, firstSentence

#: The line as it would be, what is shown of it, and a sentence.
Way = tuple[str, str, str]
#: What stands in place of a word, and a sentence on it.
Choice = tuple[str, str]

MOST_WAYS = 60

#: What the words behind the engine's own commands are.
NATIVE = {'ls': ('object',), 'changeLevel': ('level',), 'reload': ('module',), 'spawn': ('module', 'pattern')}


def ways(session: Session, line: str) -> list[Way]:
    """The ways to go on with a line, best first."""
    if line.startswith('>'):
        return _pythonWays(session, line)
    words = line.split(' ')
    if len(words) == 1:
        return [(word, ('%s %s' % (word, param)).rstrip(), sentence)
                for word, param, sentence in _commands(session) if word.startswith(line)]
    takes = session.takes(words[0]) or NATIVE.get(words[0], ())
    kind = takes[min(len(words) - 2, len(takes) - 1)] if takes else 'text'
    if kind == 'line':
        before = ' '.join(words[:2]) + ' '
        return [(before + way, shown, sentence) for way, shown, sentence in ways(session, ' '.join(words[2:]))]
    if kind not in KINDS or (len(words) - 1 > len(takes) and kind != 'value'):
        return []
    before = ' '.join(words[:-1]) + ' '
    return [(before + choice, choice, sentence)
            for choice, sentence in _first(KINDS[kind](session, words[-1], words[1:-1]))]


def _first(choices: Iterable[Choice]) -> list[Choice]:
    return [choice for choice, _ in zip(choices, range(MOST_WAYS))]


def _commands(session: Session) -> list[list[str]]:
    return [row.split('\t') for row in session.console.commandTable.splitlines()]


def _pythonWays(session: Session, line: str) -> list[Way]:
    begin = max((line.rfind(mark) + 1 for mark in ' ()[]=,+-*/>:'), default=1)
    text, completer, found = line[begin:], rlcompleter.Completer(namespace(session)), []
    while text and len(found) < MOST_WAYS and (choice := completer.complete(text, len(found))):
        found.append((line[:begin] + choice.rstrip('()'), choice.rstrip('()'), ''))
    return found


def _objects(session: Session, text: str, before: list[str]):
    """Children of the object that the path leads to by its last slash; prefixes where nothing is typed."""
    folder, slash, begun = text.rpartition('/')
    try:
        begin = folder + slash if folder.endswith(':') else folder
        parent = Values.resolve(session, begin) if slash else session.start()
    except Wrong:
        return
    roots = [parent] if slash else [parent, Values.systems()]
    if not slash:
        yield from ((prefix, sentence) for prefix, sentence in (('c:/', 'The level'), ('s:/', 'The systems'))
                    if prefix.startswith(text))
    for root in roots:
        for child in sorted(root.children, key=lambda each: each.getName().endswith('Manager')):
            name = child.getName()
            if name.lower().startswith(begun.lower()) and not name.startswith('unnamed__'):
                yield folder + slash + name, Values.classOf(child)


def _members(members: Callable[[Any], dict[str, str]]):
    def choices(session: Session, text: str, before: list[str]):
        path, begun = Values.split(text)
        if '.' not in text.rpartition('/')[2][1:]:
            yield from _objects(session, text, before)
            if not path:
                return
            path, begun = text, ''
        try:
            handle = Values.resolve(session, path)
        except Wrong:
            return
        for name, comment in members(handle).items():
            if name.lower().startswith(begun.lower()):
                yield '%s.%s' % (path, name), firstSentence(comment)
    return choices


def _values(session: Session, text: str, before: list[str]):
    try:
        handle, name = Values.member(session, before[0])
        present = getattr(handle, name)
    except (Wrong, RuntimeError, AttributeError):
        return
    if isinstance(present, bool):
        found = [('on', ''), ('off', '')]
    elif isinstance(present, kaVel.Handle):
        found = list(_objects(session, text, before))
    else:
        rows = session.console.enumNames(handle, name).splitlines()
        found = [(value, firstSentence(comment)) for value, _, comment in (row.partition('\t') for row in rows)]
        found = found or [(Values.show(present).strip('()').replace(',', ''), 'As it is')]
    yield from (choice for choice in found if choice[0].lower().startswith(text.lower()))


def _patterns(session: Session, text: str, before: list[str]):
    import importlib
    home = before[0] if '.' in before[0] else 'levels.' + before[0]
    try:
        module = importlib.import_module(home)
    except Exception:  # no such module, or one that is wrong: the command tells what
        return
    for name, each in sorted(vars(module).items()):
        if name.startswith(text) and callable(each) and hasattr(each, '__wrapped__'):
            yield name, firstSentence(each.__doc__)


def _words(words: Callable[[], Iterable[str]]):
    def choices(session: Session, text: str, before: list[str]):
        yield from ((word, '') for word in words() if word.lower().startswith(text.lower()))
    return choices


def _levels() -> list[str]:
    import loader
    return loader.levelNames()


def _saves() -> list[str]:
    import saves
    entries = saves.listed()
    return sorted({each.slot for each in entries}) + [each.name for each in entries]


def _views() -> list[str]:
    from editor.Views import views
    if not views.all():
        views.gather()
    return [view.name for view in views.all()]


def _modules() -> list[str]:
    import sys

    import levelScripts
    return ['objects.GameObjects', *_levels(), *sorted(
        name for name, module in sys.modules.items()
        if (getattr(module, '__file__', None) or '').startswith(levelScripts.FOLDER))]


#: What a word may be -> the choices for what has been typed of it, behind the words before it.
KINDS: dict[str, Callable[[Session, str, list[str]], Iterable[Choice]]] = {
    'object': _objects,
    'member': _members(Values.properties),
    'method': _members(Values.methods),
    'value': _values,
    'pattern': _patterns,
    'level': _words(_levels),
    'module': _words(_modules),
    'save': _words(_saves),
    'view': _words(_views),
    'key': _words(lambda: bindings.KEYS),
    'importance': _words(lambda: ('error', 'warning', 'information', 'debug')),
    'gift': _words(lambda: ('life', 'sanity')),
}
