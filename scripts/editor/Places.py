"""Where pieces stand by their arguments, and what becomes of these when a piece is moved, turned or scaled.

The numbers that come out are short ones, as a person would write them.
"""

from __future__ import annotations

import math
from typing import Any, Callable, Iterable, Mapping

import kaVel
from objects.Placing import Triple
from objects.Placing import turned as orientation

#: Parameters that hold places, one or a sequence of them; and those of angles, degrees: about y, then x, then z.
PLACES, ANGLES = ('at', 'points', 'places', 'waypoints'), ('turn', 'pitch', 'roll')
#: Parameters that a piece grows by: the first one that it has.
SIZES = ('scale', 'size')
#: Decimals of metres and of degrees.
METRES, DEGREES = 3, 1


def placeOf(arguments: Mapping[str, Any]) -> Triple | None:
    """Where a piece stands: its place, or the middle of its places; None for one without."""
    places = [place for name in PLACES for place in _triples(arguments.get(name))]
    return middle(places) if places else None


def middle(places: Iterable[Triple]) -> Triple:
    """The mean of some places."""
    x, y, z = zip(*places)
    return sum(x) / len(x), sum(y) / len(y), sum(z) / len(z)


def moved(arguments: Mapping[str, Any], by: Triple) -> dict[str, Any]:
    """The arguments that differ when a piece is moved; ValueError for one that has no place."""
    return _placed(arguments, lambda place: (place[0] + by[0], place[1] + by[1], place[2] + by[2]))


def turned(arguments: Mapping[str, Any], angle: float, pivot: Triple, axis: Triple = (0, 1, 0)) -> dict[str, Any]:
    """The arguments that differ when a piece is turned about an axis through a place, degrees.

    ValueError for one that has no place, or takes none of the angles that it would need.
    """
    half = math.radians(angle) / 2
    turn = kaVel.Quaternion(math.cos(half), *(math.sin(half) * each for each in axis))
    changed = _placed(arguments, lambda place: _around(place, pivot, turn))
    changed.update(onTheSpot(arguments, angle, axis))
    return changed


def onTheSpot(arguments: Mapping[str, Any], angle: float, axis: Triple = (0, 1, 0)) -> dict[str, Any]:
    """The angles that differ when a piece is turned where it stands; ValueError where it has not those it needs."""
    if not angle or not any(name in arguments for name in ANGLES):
        return {}
    before = [float(arguments.get(name) or 0) for name in ANGLES]
    if abs(axis[1]) > 0.999 and not before[1] and not before[2]:
        after = [before[0] + math.copysign(angle, angle * axis[1]), 0.0, 0.0]
    else:
        half = math.radians(angle) / 2
        turn = kaVel.Quaternion(math.cos(half), *(math.sin(half) * each for each in axis))
        after = anglesOf(turn * orientation(*before))
    changed = {name: degrees(new) for name, old, new in zip(ANGLES, before, after)
               if abs(degrees(new) - degrees(old)) > 0.05}
    missing = [name for name in changed if name not in arguments]
    if missing:
        raise ValueError('cannot be turned that way: its pattern takes no %s' % ' and no '.join(missing))
    return changed


def anglesOf(turn: kaVel.Quaternion) -> list[float]:
    """Turn, pitch and roll of an orientation, degrees, as `objects.Placing.turned` takes them."""
    r, i, j, k = turn.r, turn.i, turn.j, turn.k
    down = max(-1.0, min(1.0, 2 * (r * i - j * k)))
    if abs(down) > 0.99999:  # straight up or down: the roll is part of the turn
        return [math.degrees(2 * math.atan2(j, r)), math.degrees(math.asin(down)), 0.0]
    return [math.degrees(math.atan2(2 * (r * j + i * k), 1 - 2 * (i * i + j * j))), math.degrees(math.asin(down)),
            math.degrees(math.atan2(2 * (r * k + i * j), 1 - 2 * (i * i + k * k)))]


def isScalable(arguments: Mapping[str, Any]) -> bool:
    """Whether a piece takes a size."""
    return any(each in arguments for each in SIZES)


def scaled(arguments: Mapping[str, Any], factors: Triple) -> dict[str, Any]:
    """The arguments that differ when a piece is made larger; ValueError for one whose size is given."""
    name = next((each for each in SIZES if each in arguments), '')
    if not name:
        raise ValueError('has a size that its pattern gives: it takes neither %s' % ' nor '.join(SIZES))
    value = arguments[name]
    if isinstance(value, (int, float)):
        return {name: tidy(value * max(factors, key=lambda each: abs(each - 1)))}
    if len(value) == 2:
        factors = (factors[0], factors[2], 1)
    return {name: tuple(tidy(a * b) for a, b in zip(value, factors))}


def tidy(number: float, decimals: int = METRES) -> float:
    """A number with few decimals, whole ones as whole numbers."""
    short = round(number, decimals)
    return int(short) if short == int(short) else short


def metres(place: Iterable[float]) -> Triple:
    """A place with few decimals."""
    x, y, z = (tidy(each) for each in place)
    return x, y, z


def degrees(angle: float) -> float:
    """An angle above -180 and up to 180, with few decimals."""
    wrapped = tidy((angle + 180) % 360 - 180, DEGREES)
    return 180 if wrapped == -180 else wrapped


def _placed(arguments: Mapping[str, Any], change: Callable[[Triple], Triple]) -> dict[str, Any]:
    if placeOf(arguments) is None:
        raise ValueError('has no place of its own: its pattern takes none of %s' % ', '.join(PLACES))
    return {name: _each(arguments[name], lambda place: metres(change(place)))
            for name in PLACES if _triples(arguments.get(name))}


def _around(place: Triple, pivot: Triple, turn: kaVel.Quaternion) -> Triple:
    away = kaVel.Quaternion(0, *(a - b for a, b in zip(place, pivot)))
    after = turn * away * turn.inverse()
    return pivot[0] + after.i, pivot[1] + after.j, pivot[2] + after.k


def _triples(value: Any) -> list[Triple]:
    if _isTriple(value):
        return [value]
    if isinstance(value, (tuple, list)) and value and all(map(_isTriple, value)):
        return list(value)
    return []


def _each(value: Any, change: Callable[[Triple], Triple]) -> Any:
    return change(value) if _isTriple(value) else type(value)(map(change, value))


def _isTriple(value: Any) -> bool:
    return (isinstance(value, (tuple, list)) and len(value) == 3
            and all(isinstance(each, (int, float)) and not isinstance(each, bool) for each in value))
