"""What values a setting may have: how one is read from a text, and what a menu needs to offer it."""

from __future__ import annotations

from typing import Any, Callable, NamedTuple


class Kind(NamedTuple):
    """What values a setting has: `read` makes one of a text or raises ValueError, `allowed` tells the texts."""

    read: Callable[[str], Any]
    allowed: str
    #: The values of one that is chosen from few, and the ends of a number.
    choices: tuple[Any, ...] = ()
    least: float = 0.0
    most: float = 0.0


def word(*words: str) -> Kind:
    def read(text: str) -> str:
        for each in words:
            if text.lower() == each.lower():
                return each
        raise ValueError
    return Kind(read, ' or '.join(words), words)


def switch() -> Kind:
    return Kind(lambda text: word('on', 'off').read(text) == 'on', 'on or off', (True, False))


def number(least: float, most: float, type: Callable[[str], Any] = float) -> Kind:
    def read(text: str) -> Any:
        value = type(text)
        if not least <= value <= most:  # which is so of what is no number, too
            raise ValueError
        return value
    named = 'a whole number' if type is int else 'a number'
    return Kind(read, '%s from %g to %g' % (named, least, most), (), least, most)


def size(least: tuple[int, int], most: tuple[int, int]) -> Kind:
    def read(text: str) -> tuple[int, int]:
        width, height = (int(side) for side in text.lower().split('x'))
        if not (least[0] <= width <= most[0] and least[1] <= height <= most[1]):
            raise ValueError
        return width, height
    return Kind(read, 'a size like 1280x720, from %dx%d to %dx%d' % (*least, *most))


def either(instead: str, other: Kind) -> Kind:
    def read(text: str) -> Any:
        return instead if text.lower() == instead else other.read(text)
    return Kind(read, '%s, or %s' % (instead, other.allowed), (), other.least, other.most)


def line(most: int) -> Kind:
    """A text of one line, as the name of a device; it may be empty."""
    def read(text: str) -> str:
        if len(text) > most or not text.isprintable():
            raise ValueError
        return text
    return Kind(read, 'a text of a line, %d characters at most' % most)


def textOf(value: Any) -> str:
    """A value as the file has it."""
    if isinstance(value, bool):
        return 'on' if value else 'off'
    if isinstance(value, tuple):
        return 'x'.join(str(side) for side in value)
    return '%g' % value if isinstance(value, float) else str(value)
