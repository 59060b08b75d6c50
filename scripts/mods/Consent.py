"""Which script mods the player has allowed to run, by the sum over their files: another sum asks again.

The file lies beside the game's own folder of settings and not in it: a run with script mods may write into that one,
and so could allow others.
"""

from __future__ import annotations

import os

import kaVel
import userFolders

#: Where it is for the whole run, even one that plays a report in folders of its own.
FOLDER = userFolders.of('config') and userFolders.of('config') + '-consent'
FILE = FOLDER and os.path.join(FOLDER, 'mods.txt')

_MOST_BYTES = 1 << 16


def isGiven(name: str, total: str) -> bool:
    """Whether a mod may run whose files have this sum."""
    return _given().get(name) == total


def give(name: str, total: str) -> bool:
    """Allows a mod as it is now, for good; whether that could be kept."""
    return _write(dict(_given(), **{name: total}))


def takeBack(name: str) -> bool:
    """Allows a mod no more; whether that could be kept."""
    given = _given()
    given.pop(name, None)
    return _write(given)


def _given() -> dict[str, str]:
    try:
        with open(FILE, encoding='utf-8') as file:
            pairs = [line.split() for line in file.read(_MOST_BYTES).splitlines()]
    except (OSError, ValueError):
        return {}
    return {pair[0]: pair[1] for pair in pairs if len(pair) == 2}


def _write(given: dict[str, str]) -> bool:
    fresh = FILE + '.new'
    try:
        os.makedirs(FOLDER, mode=0o700, exist_ok=True)
        with open(fresh, 'w', encoding='utf-8') as file:
            file.writelines('%s %s\n' % pair for pair in sorted(given.items()))
            file.flush()
            os.fsync(file.fileno())
        os.replace(fresh, FILE)
    except OSError as error:
        kaVel.log('Mods: what is allowed cannot be kept in %s: %s' % (FILE, error.strerror))
        return False
    return True
