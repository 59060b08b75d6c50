"""What patterns may be told: names, defaults and kinds of their parameters, and where a pattern has its name."""

from __future__ import annotations

import functools
import importlib
import inspect
from typing import Any, Callable, NamedTuple

Pattern = Callable[..., Any]

#: Module that has all patterns of the game under one name.
CATALOGUE = 'objects.GameObjects'

#: What parameters of these names are, wherever they stand.
DOCS = {
    'at': 'Place in metres: x to the right, y up, z ahead',
    'turn': 'Degrees about the y axis: 0 faces north, 90 east, 180 south, -90 west',
    'pitch': 'Degrees about the x axis: a positive one looks down',
    'roll': 'Degrees about the z axis',
    'scale': 'Factors along x, y and z',
    'size': 'Extents along x, y and z, metres',
    'color': 'Red, green and blue, from 0 to 1',
    'strength': 'How bright it is',
    'reach': 'How far it reaches, metres',
    'surface': 'Name of the textures that it wears',
    'event': 'Event of the sound project',
}


class Parameter(NamedTuple):
    """One parameter of a pattern.

    `kind` is 'place', 'angle', 'triple', 'color', 'bool', 'int', 'float', 'str' or 'other'; `default` is `Needed` where
    a call has to give it.
    """
    name: str
    default: Any
    kind: str
    doc: str


class Needed:
    """Stands for the default of a parameter that has none."""


@functools.lru_cache(maxsize=None)
def parametersOf(pattern: Pattern) -> tuple[Parameter, ...]:
    """The parameters of a pattern besides parent and name, with those that it hands on to another pattern."""
    return tuple(Parameter(each.name, Needed if each.default is each.empty else each.default, _kindOf(each),
                           DOCS.get(each.name, '')) for each in _ownAndHandedOn(pattern))


def _ownAndHandedOn(pattern: Pattern) -> list[inspect.Parameter]:
    try:
        every = list(inspect.signature(pattern).parameters.values())
    except (TypeError, ValueError):
        return []
    own = [each for each in every[1:]
           if each.name != 'name' and each.kind in (each.POSITIONAL_OR_KEYWORD, each.KEYWORD_ONLY)]
    inner = _wrapped(pattern) if any(each.kind == each.VAR_KEYWORD for each in every) else None
    names = {each.name for each in own}
    return own + [each for each in (_ownAndHandedOn(inner) if inner else ()) if each.name not in names]


def takesAny(pattern: Pattern) -> bool:
    """Whether a pattern hands on parameters of which it does not tell the names."""
    every = inspect.signature(pattern).parameters.values()
    return _wrapped(pattern) is None and any(each.kind == each.VAR_KEYWORD for each in every)


def _wrapped(pattern: Pattern) -> Pattern | None:
    """The pattern that one builds upon, as `solid` does, if it keeps it under the name `pattern`."""
    built = inspect.unwrap(pattern)
    inner = inspect.getclosurevars(built).nonlocals.get('pattern') if inspect.isfunction(built) else None
    return inner if callable(inner) else None


def _kindOf(parameter: inspect.Parameter) -> str:
    name, default, told = parameter.name, parameter.default, str(parameter.annotation)
    if name == 'at':
        return 'place'
    if name in ('turn', 'pitch', 'roll', 'angle'):
        return 'angle'
    if 'color' in name.lower() and isinstance(default, tuple):
        return 'color'
    if isinstance(default, bool) or told == 'bool':
        return 'bool'
    if isinstance(default, int) and told == 'int':
        return 'int'
    if isinstance(default, (int, float)) or told == 'float':
        return 'float'
    if isinstance(default, str) or told == 'str':
        return 'str'
    return 'triple' if isinstance(default, tuple) and len(default) == 3 or 'Triple' in told else 'other'


@functools.lru_cache(maxsize=None)
def nameParameter(pattern: Pattern) -> str | None:
    """The parameter by which a pattern takes its object's name, if it does."""
    try:
        names = list(inspect.signature(pattern).parameters)
    except (TypeError, ValueError):
        return None
    return 'name' if 'name' in names[1:] else None


def given(pattern: Pattern, arguments: tuple[Any, ...], options: dict[str, Any]) -> dict[str, Any]:
    """What a call told of parameters by name, without parent and object's name, in the order of the call."""
    names = _inOrder(pattern)
    told = dict(zip(names, arguments))
    told.update(options)
    for taken in names[:1] + ['name']:
        told.pop(taken, None)
    return told


@functools.lru_cache(maxsize=None)
def _inOrder(pattern: Pattern) -> list[str]:
    """Names of what a call may give by its place alone."""
    try:
        return [name for name, each in inspect.signature(pattern).parameters.items()
                if each.kind in (each.POSITIONAL_ONLY, each.POSITIONAL_OR_KEYWORD)]
    except (TypeError, ValueError):
        return []


def isPattern(thing: Any) -> bool:
    return callable(thing) and getattr(thing, 'isPattern', False)


def nameOf(pattern: Pattern, module: str = '') -> str:
    """The name by which levels call a pattern: that of the catalogue, or 'module.Name' for one of a level's own."""
    name = _names(importlib.import_module(CATALOGUE)).get(pattern)
    if name:
        return name
    for where in filter(None, (module, getattr(pattern, '__module__', ''))):
        with_ = _names(importlib.import_module(where)).get(pattern)
        if with_:
            return where + '.' + with_
    return '%s.%s' % (pattern.__module__, pattern.__qualname__)


_namesByModule: dict[Any, dict[Pattern, str]] = {}


def _names(module: Any) -> dict[Pattern, str]:
    if module not in _namesByModule:
        found: dict[Pattern, str] = {}
        for name, value in vars(module).items():
            if isPattern(value):
                found.setdefault(value, name)
        _namesByModule[module] = found
    return _namesByModule[module]


def forget():
    """Forgets what was looked up: scripts were read anew."""
    _namesByModule.clear()
    parametersOf.cache_clear()
    nameParameter.cache_clear()
    _inOrder.cache_clear()


def named(name: str) -> Pattern:
    """The pattern of this name; LookupError that names the nearest one if it is gone."""
    import kaVel
    module, _, short = name.rpartition('.')
    try:
        where = importlib.import_module(module or CATALOGUE)
    except ImportError:
        raise LookupError('no pattern %r: there is no module %s' % (name, module)) from None
    found: Any = getattr(where, short, None)
    if not isPattern(found):
        raise LookupError('no pattern %r%s' % (name, kaVel.nearestHint(short, _names(where).values())))
    return found
