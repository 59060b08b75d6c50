"""How a save of an older version becomes one of the present version: a function for each step, by what it changes.

The function for version 1 changes the content of a save of that version, in place, into one of version 2. `tests/saves`
keeps a save of each version.
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


@migration(3)
def theStairsHaveAGate(document: Document):
    """Nightfall's stairs had no gate, and nobody passed number two: who was there before finds it open and goes on."""
    night = document['parts'].get('nightfall')
    if night is not None:
        night.update(gateIsOpen=True, guestHasPassed=True)


@migration(2)
def modsAreNamed(document: Document):
    """There were no mods."""
    document['mods'] = {}


@migration(1)
def placesNameTheirNumbers(document: Document):
    """Where the player stands, and where he was last safe, were bare lists; lessons had the names of their lines."""
    document['parts'].pop('lessons', None)
    at, turn, pitch = document['stand'] or (None, 0.0, 0.0)
    document['stand'] = at and {'at': at, 'turn': turn, 'pitch': pitch}
    safety = document['parts'].get('safety')
    if safety is not None:
        document['parts']['safety'] = {'at': safety[0], 'turn': safety[1], 'deaths': safety[2]}
