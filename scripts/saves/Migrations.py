"""How a save of an older version becomes one of the present version: a function for each step, by what it changes.

    @migration(1)
    def lookIsKeptInDegrees(document): ...

takes the content of a save of version 1 and makes it one of version 2. It changes the document in place.
"""

from __future__ import annotations

from typing import Any, Callable

Document = dict[str, Any]

#: Version -> what makes the next one of it.
_STEPS: dict[int, Callable[[Document], None]] = {}


def migration(version: int):
    """Makes a function the step from a version to the next one."""
    def register(step: Callable[[Document], None]):
        assert version not in _STEPS, 'two migrations begin at version %d' % version
        _STEPS[version] = step
        return step
    return register


def migrate(document: Document, version: int, wanted: int) -> Document:
    """The document as one of another, later version."""
    for each in range(version, wanted):
        _STEPS[each](document)
    return document
