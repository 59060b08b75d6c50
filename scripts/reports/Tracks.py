"""What numbers were, moment by moment: of properties that are watched, and of all that the open bars show."""

from __future__ import annotations

import math
from typing import Any, Iterator

import kaVel

#: Objects with open bars that are followed, the last ones that were opened.
MOST_OBJECTS = 4


class Track:
    """A property of an object, by the moments of the tape: a number, of a vector its length."""

    def __init__(self, thing: Any, name: str):
        first, _, rest = name.partition('.')
        while rest and thing.getChild(first):  # a component by its key, an object below
            thing, name = thing.getChild(first), rest
            first, _, rest = name.partition('.')
        self.thing, self.name = thing, name
        self.first = 0
        self.values: list[float] = []
        self.read()  # raises for what is none

    def read(self) -> float:
        value = self.thing
        for part in self.name.split('.'):
            value = getattr(value, part)
        if isinstance(value, kaVel.Vec4):
            value = math.sqrt(value.x * value.x + value.y * value.y + value.z * value.z)
        return float(value)

    def note(self, moment: int) -> None:
        if moment != self.first + len(self.values):
            self.first, self.values = moment, []
        try:
            self.values.append(self.read())
        except (AttributeError, RuntimeError, TypeError, ValueError):  # it is gone, or something else by now
            self.values.append(math.nan)

    def at(self, moment: int) -> float:
        index = moment - self.first
        return self.values[index] if 0 <= index < len(self.values) else math.nan

    def drop(self, oldest: int) -> None:
        """Forgets what was before the oldest moment, now and then."""
        if oldest - self.first > 600:
            del self.values[:oldest - self.first]
            self.first = oldest


class Tracks:
    """All that is followed while moments are recorded, by the path of the object and the property's name."""

    def __init__(self) -> None:
        self.asked: dict[str, Track] = {}    # by whoever called `watch`
        self.watched: dict[str, Track] = {}  # in the inspector
        self.fields: dict[str, Track] = {}   # of objects with open bars
        self._objects: list[Any] = []

    def watch(self, thing: Any, name: str) -> None:
        """Follows a property: 'mass', 'transform.position.y'; AttributeError or TypeError for what is no number."""
        key = _keyOf(thing, name)
        self.asked[key] = self._taken(key) or Track(thing, name)

    def shown(self) -> dict[str, Track]:
        """What has a curve: what somebody asked for, and what is watched in the inspector."""
        return {**self.watched, **self.asked}

    def clear(self) -> None:
        for each in self._all():
            each.first, each.values = 0, []

    def note(self, moment: int, oldest: int) -> None:
        for each in self._all():
            each.note(moment)
            each.drop(oldest)

    def follow(self) -> bool:
        """Takes up what the inspector watches and shows by now; whether other curves are to be seen."""
        bars = kaVel.getSystem('TweakSystem')
        self._followBars([bars.getBarObject(index) for index in range(bars.barCount)][-MOST_OBJECTS:])
        pairs = [(bars.getWatchedObject(index), bars.getWatchedProperty(index)) for index in range(bars.watchCount)]
        keys = {_keyOf(thing, name): (thing, name) for thing, name in pairs if thing}
        if keys.keys() == self.watched.keys():
            return False
        found = {key: self._taken(key) or _trackOf(*pair) for key, pair in keys.items()}
        self.watched = {key: track for key, track in found.items() if track}
        return True

    def _followBars(self, objects: list[Any]) -> None:
        if objects == self._objects:
            return
        self._objects = objects
        fields: dict[str, Track] = {}
        for thing in objects:
            for part, name in _numbersOf(thing):
                key = _keyOf(part, name)
                track = self._taken(key) or _trackOf(part, name)
                if track:
                    fields[key] = track
        self.fields = fields

    def _taken(self, key: str) -> Track | None:
        return self.asked.get(key) or self.watched.get(key) or self.fields.get(key)

    def _all(self) -> Iterator[Track]:
        seen = {id(each): each for group in (self.asked, self.watched, self.fields) for each in group.values()}
        return iter(seen.values())


def _keyOf(thing: Any, name: str) -> str:
    return '%s %s' % (kaVel.pathOf(thing), name)


def _trackOf(thing: Any, name: str) -> Track | None:
    try:
        return Track(thing, name)
    except (AttributeError, RuntimeError, TypeError, ValueError):
        return None


def _numbersOf(thing: Any) -> Iterator[tuple[Any, str]]:
    """The properties of an object and of its components that are numbers, or vectors."""
    if not thing:
        return
    component = kaVel.Reflection.AbstractComponent
    parts = [thing, *(each for each in thing.children if each._getType().isSubclassOf(component))]
    for part in parts:
        for name in sorted({name for each in type(part).__mro__ for name in vars(each)}):
            if name.startswith('_') or not hasattr(getattr(type(part), name), '__set__'):
                continue
            try:
                value = getattr(part, name)
            except (AttributeError, RuntimeError, TypeError, ValueError):
                continue
            if isinstance(value, (int, float, kaVel.Vec4)):
                yield part, name
