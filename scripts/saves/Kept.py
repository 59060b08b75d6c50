"""Who in a level says that it wants to be kept: objects with their properties, and what is no property of anything.

    from saves.Kept import keep, keepPart

    keep(door, 'locked')                    # the property of an object with a path of its own below the level
    keep(lever)                             # all of them that can be read, set and written down
    keepPart(map, 'lift', tell=lambda: lift.isOpen, take=lift.standOpen)

What has become of a map's objects for good is noted by `kaVel.persist`, which a save has as well; this is for what can
be one way and the other. `take` runs once the whole level stands, before its first frame. A part that travels goes
with the player to other levels, too.
"""

from __future__ import annotations

import enum
import traceback
from typing import Any, Callable, NamedTuple

import kaVel
from perLevel import PerLevel, levelOf


class Unkeepable(ValueError):
    """A value that no save can hold."""


class Part(NamedTuple):
    """Something that is kept under a name: `tell` gives what JSON can hold, and `take` gets it back."""

    tell: Callable[[], Any]
    take: Callable[[Any], object]
    travels: bool


class _Wishes:
    """What one level wants to be kept, in the order in which it was said."""

    def __init__(self):
        self.objects: list[tuple[Any, tuple[str, ...]]] = []
        self.parts: dict[str, Part] = {}


_wishes: PerLevel[_Wishes] = PerLevel()


def keep(handle: kaVel.Object, *properties: str):
    """Says that properties of an object are to be kept; without names all that can be read, set and written down.

    The object needs a path of its own below its level. AttributeError that names the nearest one for a property that
    cannot be set.
    """
    settable = settableProperties(handle)
    for name in properties:
        if name not in settable:
            raise AttributeError('%s has no property %r that can be set%s'
                                 % (handle._getType().name, name, kaVel.nearestHint(name, settable)))
    _wishesOf(levelOf(handle)).objects.append((handle, properties))


def keepPart(inLevel: kaVel.Object, name: str, tell: Callable[[], Any], take: Callable[[Any], object],
             travels: bool = False):
    """Says that something is to be kept under a name, which is the only one of its level."""
    _wishesOf(levelOf(inLevel)).parts[name] = Part(tell, take, travels)


def _wishesOf(level: kaVel.Coordinator) -> _Wishes:
    if level not in _wishes:
        _wishes[level] = _Wishes()
    return _wishes[level]


def settableProperties(handle: Any) -> list[str]:
    """The properties of an object that can be read and set, by what reflection knows of its class."""
    names: dict[str, None] = {}
    for each in type(handle).__mro__:
        for name, member in sorted(vars(each).items()):
            if type(member).__name__ == 'reflected_property' and hasattr(handle, 'set' + name[:1].upper() + name[1:]):
                names.setdefault(name)
    return list(names)


# Telling

def tellObjects(level: kaVel.Coordinator) -> dict[str, dict[str, Any]]:
    """Path below the level -> property -> value, of all that live in it."""
    told: dict[str, dict[str, Any]] = {}
    for handle, names in _wishesOf(level).objects:
        if not handle or handle.isDying() or levelOf(handle) != level:
            continue
        path = pathBelow(level, handle)
        if level.getDescendantByPath(path) != handle:
            kaVel.log('%s is not kept: another object stands at its path; give it a name of its own' % path)
            continue
        told.setdefault(path, {}).update(_values(handle, names))
    return told


def _values(handle: Any, names: tuple[str, ...]) -> dict[str, Any]:
    if names:
        return {name: written(getattr(handle, name)) for name in names}
    values: dict[str, Any] = {}
    for name in settableProperties(handle):
        if name != 'name':
            try:
                values[name] = written(getattr(handle, name))
            except (Unkeepable, RuntimeError):
                pass  # a function, another object: what points elsewhere is no state of this one
    return values


def pathBelow(level: kaVel.Coordinator, handle: Any) -> str:
    """Names from below a level down to an object, joined by '/'."""
    names = []
    while handle != level:
        names.append(handle.getName())
        handle = handle.parent
    return '/'.join(reversed(names))


def tellParts(level: kaVel.Coordinator, onlyTravelling: bool = False) -> dict[str, Any]:
    """Name -> what a part tells; one that fails is told in the log and left out."""
    told: dict[str, Any] = {}
    for name, part in list(_wishesOf(level).parts.items()):
        if part.travels or not onlyTravelling:
            try:
                told[name] = part.tell()
            except Exception:
                kaVel.log('The part %r of the game is not kept:\n%s' % (name, traceback.format_exc()))
    return told


# Taking

def takeObjects(level: kaVel.Coordinator, told: dict[str, dict[str, Any]]):
    """Gives objects their properties back; what is not there any more is told in the log and left out."""
    for path, values in told.items():
        handle = level.getDescendantByPath(path)
        for name, value in values.items():
            try:
                if not handle:
                    raise LookupError('there is no such object any more')
                setattr(handle, name, read(value))
            except Exception as error:
                kaVel.log('%s of %s is left as new: %s' % (name, path, error))


def takeParts(level: kaVel.Coordinator, told: dict[str, Any], onlyTravelling: bool = False):
    """Gives parts back what they told, in the order in which the level named them."""
    for name, part in list(_wishesOf(level).parts.items()):
        if name in told and (part.travels or not onlyTravelling):
            try:
                part.take(told[name])
            except Exception:
                kaVel.log('The part %r of the save is left as new:\n%s' % (name, traceback.format_exc()))


# Values

def written(value: Any) -> Any:
    """A value as JSON has it; Unkeepable for what cannot be written down."""
    if isinstance(value, enum.Enum):
        return value.name
    if value is None or isinstance(value, (bool, int, float, str)):
        return value
    if isinstance(value, kaVel.Vec4):
        return {'vec4': [value.x, value.y, value.z, value.w]}
    if isinstance(value, kaVel.Quaternion):
        return {'quaternion': [value.r, value.i, value.j, value.k]}
    if isinstance(value, kaVel.Handle) and not value:
        return {'handle': None}
    raise Unkeepable('%r cannot be kept' % (value,))


def read(value: Any) -> Any:
    """The value that `written` made JSON of."""
    if not isinstance(value, dict):
        return value
    (kind, inner), = value.items()
    return {'vec4': lambda: kaVel.Vec4(*inner), 'quaternion': lambda: kaVel.Quaternion(*inner),
            'handle': kaVel.Handle}[kind]()
