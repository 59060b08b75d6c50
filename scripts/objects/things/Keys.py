"""Keys, and the locks that they open.

    place.Key(map, 'cellarKey', at=(2, 0.8, 1), opens='cellarKey', label='the cellar key')
    place.HingedDoor(map, 'cellarDoor', at=(4, 0, 0), key='cellarKey')

A key's name is what it opens: all doors and drawers that take a key of that name. Creatures have keys by the doors'
names, see `PathFollower.addKey`; both turn the door's own lock, so that what one of them has unlocked is open to all.
"""

from __future__ import annotations

import math
from typing import Callable

import kaVel
import words
from objects.creatures.Creatures import shaped
from objects.Placing import Triple, addVolume, around, placed, turned
from objects.player.Pockets import Pockets, pocketsOf, taken
from objects.screen.Marks import marked
from perLevel import PerLevel, levelOf


_locks: PerLevel[list[Lock]] = PerLevel()
_keys: PerLevel[dict[str, list[kaVel.Entity]]] = PerLevel()


def locksIn(level: kaVel.Coordinator) -> list[Lock]:
    """The locks that were built in a level."""
    return _locks.get(level, [])


def keysIn(level: kaVel.Coordinator) -> dict[str, list[kaVel.Entity]]:
    """The keys that lie in a level, by the name of what they open."""
    there = {name: [key for key in keys if key and levelOf(key) == level]
             for name, keys in _keys.get(level, {}).items()}
    return {name: keys for name, keys in there.items() if keys}


class Lock:
    """What keeps a door or a drawer shut: `isLocked` tells, `unlock` opens it for good, `rattle` lets it be heard.

    One that takes no key is opened by scripts alone.
    """

    def __init__(self, thing: kaVel.Entity, key: str | None, isLocked: Callable[[], bool],
                 unlock: Callable[[], object], rattle: Callable[[], object]):
        self.thing, self.key = thing, key
        self.isLocked, self.unlock, self.rattle = isLocked, unlock, rattle
        level = levelOf(thing)
        _locks[level] = [*locksIn(level), self]

    def holds(self) -> bool:
        """Tries the lock with what the player has: whether this use was spent on it."""
        if not self.isLocked():
            return False
        pockets = pocketsOf(self.thing)
        if self.key and pockets.has(self.key):
            self.unlock()
            pockets.tell(words.said('keys.unlocked', key=pockets.label(self.key)))
        else:
            self.rattle()
            pockets.tell(words.said('keys.locked'))
        return True


def _key() -> kaVel.MeshBuilder:
    """A key 9 cm long that lies along x, its bow at -x."""
    mesh = kaVel.MeshBuilder()
    ring, bow = 14, 0.016
    for number in range(ring):
        angle = 360.0 * number / ring
        x, y, z = around((-0.034, 0, 0), angle, 0, 0, bow)
        mesh.addCylinder(0.0032, math.tau * bow / ring + 0.002, 6, at=kaVel.Vec4(x, y, z, 1),
                         turn=turned(angle, roll=90))
    mesh.addCylinder(0.0036, 0.062, 8, at=kaVel.Vec4(0.012, 0, 0, 1), turn=turned(0, roll=90))
    for x in (-0.014, -0.010):
        mesh.addCylinder(0.0055, 0.0025, 10, at=kaVel.Vec4(x, 0, 0, 1), turn=turned(0, roll=90))
    for x, wide, deep in ((0.038, 0.004, 0.015), (0.030, 0.003, 0.012), (0.034, 0.004, 0.006)):
        mesh.addBox(kaVel.Vec4(wide / 2 + 0.0006, 0.0015, deep / 2, 0), at=kaVel.Vec4(x, 0, deep / 2, 1))
    return mesh


@kaVel.pattern
def Key(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, opens: str = '',
        label: words.Told = ''):
    """A key that lies on `at` until the player takes it. It `opens` what takes a key of that name, else of its own."""
    key = placed(parent, name, at=(at[0], at[1] + 0.004, at[2]), turn=turn)
    volume = addVolume(key, (0.16, 0.10, 0.16), 'BV_NONE')
    shaped(key, _key, 'brass')
    opened, called = opens or name, label or words.said('keys.key')

    def put(pockets: Pockets):
        pockets.add(opened, called)

    taken(key, volume, put, lambda: pocketsOf(key).tell(words.said('keys.taken', what=called)), 'PickUp')
    marked(key, 'take')
    known = keysIn(levelOf(key))
    _keys[levelOf(key)] = {**known, opened: [*known.get(opened, ()), key]}
    return key
