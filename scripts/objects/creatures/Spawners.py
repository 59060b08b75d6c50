"""Places where something comes from, now and then, and never while the player looks."""

from __future__ import annotations

import importlib
import math
import random
from typing import Any, Mapping

import GameConfig
import kaVel
from mods.Levels import isPattern
from objects.creatures.Prey import Prey
from objects.Happenings import startable
from objects.house.MapSize import mapOf
from objects.Placing import LevelClock, Pair, Triple, onFrame, placed

VIEW = math.cos(math.radians(62))  # of the angle off the way he looks at which a place counts as in the picture
HEIGHTS = (0.2, 1.0, 1.7)          # metres above the floor at which a place is looked at
TRIES = 8                          # places that are thought of at a time


@kaVel.pattern
def Spawner(parent: kaVel.Object, name: str = '', pattern: str = 'Walker', at: Triple = (0, 0, 0),
            radius: float = 2.0, every: Pair = (20.0, 40.0), first: float = 5.0, atMost: int = 1, total: int = 0,
            away: float = 5.0, works: bool = True, arguments: Mapping[str, Any] = {}):
    """Makes what a `pattern` makes, within `radius` metres of `at`, never in sight of the player.

    The `first` one comes after so many seconds, the next ones after seconds between the two of `every`; never are there
    more than `atMost` at once, and no more than `total` come, 0 for without end. None comes nearer to the player
    than `away` metres. `arguments` are those of the pattern. One that does not work waits for a happening to start it.
    """
    known = [each for each, thing in vars(importlib.import_module('objects.GameObjects')).items() if isPattern(thing)]
    if pattern not in known:
        raise ValueError('pattern is %r, and there is none of that name%s'
                         % (pattern, kaVel.nearestHint(pattern, known)))
    if not 0 < every[0] <= every[1]:
        raise ValueError('every is %r: give the least and the greatest number of seconds between two' % (every,))
    if atMost < 1 or total < 0 or radius < 0 or away < 0:
        raise ValueError('atMost is %r, total %r, radius %r, away %r: one at least, and nothing below 0'
                         % (atMost, total, radius, away))
    spawner = placed(parent, name, at=at)
    work = _Spawning(spawner, pattern, at, radius, every, atMost, total, away, arguments)
    work.due, work.works = first, works
    onFrame(spawner, work.doFrame)
    startable(spawner, work.start)
    return spawner


class _Spawning:
    """The work of one spawner. What it has made stands below it, and is not kept in saves."""

    def __init__(self, spawner: kaVel.Entity, pattern: str, at: Triple, radius: float, every: Pair, atMost: int,
                 total: int, away: float, arguments: Mapping[str, Any]):
        self.spawner, self.pattern, self.at, self.radius, self.every = spawner, pattern, at, radius, every
        self.atMost, self.total, self.away, self.arguments = atMost, total, away, arguments
        self.clock, self.prey, self.map = LevelClock(spawner), Prey(spawner), mapOf(spawner)
        # Dice of its own: what comes has no part in what else is thrown for.
        self.dice = random.Random('%s %d' % (spawner.name, GameConfig.seed))
        self.due, self.count, self.works = 0.0, 0, True
        self.alive: list[kaVel.AnyObject] = []

    def start(self, works: bool):
        """Has it work, from now on, or not."""
        if works and not self.works:
            self.due = self.clock.seconds()
        self.works = works

    def doFrame(self):
        now = self.clock.seconds()
        if not self.works or now < self.due or (self.total and self.count >= self.total):
            return
        self.alive = [each for each in self.alive if each and not each.isDying()]
        place = self.findPlace() if len(self.alive) < self.atMost else None
        if place is None:
            self.due = now + 0.5
            return
        self.due = now + self.dice.uniform(*self.every)
        self.count += 1
        self.alive.append(self.make(place))

    def make(self, place: Triple) -> kaVel.AnyObject:
        build = getattr(importlib.import_module('objects.GameObjects'), self.pattern)
        made = build(self.spawner, '%s%d' % (self.spawner.name, self.count), at=place, **self.arguments)
        kaVel.finishLoad(made)
        return made

    def findPlace(self) -> Triple | None:
        """A place that the player neither sees nor is near to; None for none just now."""
        for _ in range(TRIES):
            angle, far = self.dice.uniform(0, math.tau), self.radius * math.sqrt(self.dice.random())
            place = self.at[0] + far * math.cos(angle), self.at[1], self.at[2] + far * math.sin(angle)
            if self.isFree(place):
                return place
        return None

    def isFree(self, place: Triple) -> bool:
        own, camera = self.prey.place(), self.prey.entity.getChild('camera') if self.prey.entity else None
        if own is None or not camera or not self.map:
            return own is None
        if math.hypot(own.x - place[0], own.z - place[2]) < self.away:
            return False
        eye = camera.getComponent('transform')
        return not any(_isSeen(self.map, eye, kaVel.Vec4(place[0], place[1] + height, place[2], 1))
                       for height in HEIGHTS)


def _isSeen(map: kaVel.MapRootEntity, eye: kaVel.TransformComponent, place: kaVel.Vec4) -> bool:
    way, ahead = place - eye.position, eye.getDirection()
    shown = way.x * ahead.x + way.y * ahead.y + way.z * ahead.z > VIEW * way.magnitude()
    return shown and kaVel.Reflection.isLineFree(map, eye.position, place)
