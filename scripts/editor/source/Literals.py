"""Values as a person writes them in a level: rounded to what a hand means, and as Python text."""

from __future__ import annotations

import enum
from typing import Any

import kaVel

#: Digits behind the point: millimetres, tenths of a degree, and a little more for what is neither.
LENGTH, ANGLE, OTHER = 3, 1, 4
ANGLES = ('turn', 'pitch', 'roll', 'angle')
LENGTHS = ('at', 'size')


class NoLiteral(ValueError):
    """A value that cannot be written down."""


def rounded(name: str, value: Any) -> Any:
    """The value of a parameter as it is kept and written: a Vec4 becomes three numbers, numbers lose their noise."""
    if isinstance(value, kaVel.Vec4):
        value = (value.x, value.y, value.z)
    if isinstance(value, list) and (name in LENGTHS or name in ('scale', 'color')):
        value = tuple(value)
    if name in ANGLES and isinstance(value, (int, float)):
        value = _within(value)
    return _rounded(value, ANGLE if name in ANGLES else LENGTH if name in LENGTHS else OTHER)


def _within(degrees: float) -> float:
    """Degrees, whole turns taken out of what is more than one."""
    return degrees if -360 < degrees <= 360 else (degrees + 180) % 360 - 180


def _rounded(value: Any, digits: int) -> Any:
    if isinstance(value, (tuple, list)):
        return type(value)(_rounded(each, digits) for each in value) if type(value) in (tuple, list) else value
    if isinstance(value, dict):
        return {key: _rounded(each, digits) for key, each in value.items()}
    if not isinstance(value, float):
        return value
    if value != value or value in (float('inf'), float('-inf')):
        raise NoLiteral('%r is no number that a level could have' % value)
    near = round(value, digits)
    return int(near) if near == int(near) and digits <= LENGTH else near + 0.0


def show(value: Any) -> str:
    """Python text of a value; NoLiteral for what has none, as a function or an object of the level."""
    if isinstance(value, kaVel.Vec4):
        return 'kaVel.Vec4(%s)' % ', '.join(number(each) for each in (value.x, value.y, value.z, value.w))
    if isinstance(value, kaVel.Quaternion):
        return 'kaVel.Quaternion(%s)' % ', '.join(number(each, 7) for each in (value.r, value.i, value.j, value.k))
    if isinstance(value, bool) or value is None:
        return repr(value)
    if isinstance(value, enum.IntEnum):
        return repr(int(value))
    if isinstance(value, (int, float)):
        return number(value)
    if isinstance(value, str):
        return repr(value)
    if isinstance(value, tuple):
        return '(%s)' % (', '.join(map(show, value)) + (',' if len(value) == 1 else ''))
    if isinstance(value, list):
        return '[%s]' % ', '.join(map(show, value))
    if isinstance(value, dict):
        return '{%s}' % ', '.join('%s: %s' % (show(key), show(each)) for key, each in value.items())
    raise NoLiteral('%r cannot be written as text' % (value,))


def isWritable(value: Any) -> bool:
    try:
        show(value)
    except NoLiteral:
        return False
    return True


def number(value: float, digits: int = 6) -> str:
    """A number in the fewest digits that mean it."""
    if isinstance(value, int):
        return str(value)
    text = repr(round(value, digits) + 0.0)
    return text[:-2] if text.endswith('.0') else text


def alike(one: Any, other: Any) -> bool:
    """Whether two values are the same as far as a level can tell."""
    if isinstance(one, (int, float)) and isinstance(other, (int, float)) and not isinstance(one, bool):
        return abs(one - other) < 1e-6
    if isinstance(one, dict) and isinstance(other, dict):
        return one.keys() == other.keys() and all(alike(one[key], other[key]) for key in one)
    if isinstance(one, (tuple, list)) and isinstance(other, (tuple, list)):
        return len(one) == len(other) and all(alike(a, b) for a, b in zip(one, other))
    return one is other or type(one) is type(other) and one == other
