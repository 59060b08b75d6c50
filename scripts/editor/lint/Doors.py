"""Doors that stay shut: locked ones whose key lies nowhere, or behind them."""

from __future__ import annotations

from typing import Iterator

import kaVel
from editor.lint.Findings import Finding, rule
from editor.lint.Scene import Scene, tripleOf
from objects.things.Keys import keysIn, locksIn


@rule
def locked(scene: Scene) -> Iterator[Finding]:
    """Doors that are locked, and that the player cannot open with what he can have by then."""
    if scene.feet() is None:
        return
    locks = {lock.thing: lock for lock in locksIn(scene.level)}
    for map in scene.maps:
        ground = scene.ground(map)
        for number in range(ground.survey.doorCount):
            leaf = ground.survey.getDoor(number)
            if ground.survey.getBarred(number):
                lock = locks.get(leaf)
                yield _told(scene, leaf, lock.key if lock else None)
    for lock in locks.values():
        if lock.thing and lock.key and lock.isLocked() and not lock.thing.getComponent('physics') and not any(
                lock.key in scene.ground(map).held for map in scene.maps):
            yield _told(scene, lock.thing, lock.key)


def _told(scene: Scene, leaf: kaVel.Entity, key: str | None) -> Finding:
    at = tripleOf(leaf.getComponent('transform').position)
    path = scene.pathOf(leaf)
    if not key:
        return Finding('locked', path, at, 'it is locked, and no key opens it',
                       'give it a `key`, or have a script unlock it')
    if key not in keysIn(scene.level):
        return Finding('locked', path, at, 'its key %r lies nowhere' % key, "place a `Key` that `opens` %r" % key)
    return Finding('locked', path, at, 'its key %r lies where the player cannot come to' % key,
                   'lay the key on this side of the door')
