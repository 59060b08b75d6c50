"""What the tweak bars say of where an object comes from: the call of its pattern, and the line of the script.

The nearest thing above an object that a level's script had built speaks for it.
"""

from __future__ import annotations

import os
from typing import Any, cast

import callSites
import kaVel
from editor.source import Literals


def tell(thing: kaVel.Object, what: str) -> str:
    """The call that made an object, or its place in the scripts; empty where nobody knows."""
    return callOf(thing) if what == 'call' else placeOf(thing)


def callOf(thing: kaVel.Object) -> str:
    """The call as a line of Python: place.Armchair(study, 'readingChair', at=(-2.1, 0, 2.4)), or the object's path."""
    root, built = _built(thing)
    if built is None:
        return pathText(thing)
    given = [_text(value) for value in built.arguments]
    given += ['%s=%s' % (name, _text(value)) for name, value in built.options.items()]
    call = '%s(%s)' % (_patternText(built.pattern), ', '.join(given))
    return call if root == thing else '%s.getDescendantByPath(%r)' % (call, _pathBelow(root, thing))


def placeOf(thing: kaVel.Object) -> str:
    """File and line of the innermost call in a level's script: levels/Villa.py:41; empty where there is none."""
    _, built = _built(thing)
    if built is None or not built.calls:
        return ''
    code, _ = built.calls[0]
    line = callSites.positionOf(built.calls[0])[0]
    folder = os.path.dirname(__file__)
    inside = code.co_filename.startswith(folder + os.sep)
    return '%s:%d' % (os.path.relpath(code.co_filename, folder) if inside else code.co_filename, line)


def pathText(thing: Any) -> str:
    """Python text that finds an object by its path below its level."""
    level = thing.getAncestorOfType(kaVel.Reflection.Coordinator)
    if not level or level == thing:
        return 'level' if level else repr(kaVel.pathOf(thing))
    return 'level.getDescendantByPath(%r)' % _pathBelow(level, thing)


def _built(thing: Any) -> tuple[Any, kaVel.BuiltFrom | None]:
    """What a level's script has called a pattern for, rather than what that pattern has made as a part of its own."""
    nearest: tuple[Any, kaVel.BuiltFrom | None] = None, None
    while thing:
        built = thing.getPattern()
        if isinstance(built, kaVel.BuiltFrom):
            if built.calls:
                return thing, built
            nearest = nearest if nearest[1] else (thing, built)
        thing = thing.parent
    return nearest


def _pathBelow(root: kaVel.Object, thing: Any) -> str:
    names: list[str] = []
    while thing and thing != root:
        names.append(thing.getName())
        thing = thing.parent
    return '/'.join(reversed(names))


def _patternText(pattern: Any) -> str:
    module = pattern.__module__
    return ('place.%s' if module.startswith('objects.') else module.rpartition('.')[2] + '.%s') % pattern.__name__


def _text(value: Any) -> str:
    if isinstance(value, kaVel.Handle):
        return pathText(cast(kaVel.Object, value)) if value else 'None'
    try:
        return Literals.show(value)
    except Literals.NoLiteral:
        return getattr(value, '__qualname__', repr(value))
