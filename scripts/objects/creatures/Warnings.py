"""What is small and knows first: rats leave before the Damp comes, crows fall silent before the Guest, moths come to
the player's lamp.
"""

from __future__ import annotations

import math
import random
from typing import Sequence

import GameConfig
import kaVel
from objects.creatures.Creatures import Swarm
from objects.creatures.Damp import dampsIn
from objects.creatures.Guest import guestsAbroad
from objects.creatures.Prey import Prey
from objects.Placing import Triple, onFrame, placed
from objects.sound.Sounds import sounds

#: Metres at which rats know of the Damp, and at which they think it gone; seconds that they stay away besides.
ALARM, CALM, SULK = 9.0, 13.0, 12.0
#: Metres a second that rats run, and go about.
RUN, STROLL = 2.6, 0.7
#: Metres at which crows know of the Guest; seconds from call to call, and that they stay silent after him.
HUSH, CALLS, DOUBT = 30.0, (4.0, 11.0), 14.0
#: Metres from which moths see the flashlight, how fast they come, and how far before the eye they then are.
LURED, FLIGHT, BEFORE = 7.0, 1.8, 1.3


@kaVel.pattern
def Rats(parent: kaVel.MapRootEntity, name: str = '', at: Triple = (0, 0, 0), number: int = 7,
         hole: Triple | None = None, way: Sequence[Triple] = (), reach: float = 1.4):
    """Rats about `at`; before the Damp comes they run to their `hole`, past the places of `way`, and are gone in it.

    Some time after it has gone they come back the same way.
    """
    rats = Swarm(parent, name or 'rats', kind='Rat', count=number, at=at, reach=reach, lowest=at[1], highest=at[1],
                 cruiseSpeed=STROLL)
    nest = placed(rats, 'nest', at=at)
    rats.getComponent('flocking').anchor = nest
    sounds(nest, 'RatsRun', 'RatSqueak')
    driver = _Rats(rats, nest, [at, *way, hole or at])
    onFrame(nest, driver.doFrame)
    return rats


class _Rats:
    """Where the rats gather: at home, on the run, or in their hole."""

    def __init__(self, rats: kaVel.Entity, nest: kaVel.Entity, way: list[Triple]):
        self.rats, self.swarm, self.prey = rats, rats.getComponent('flocking'), Prey(nest)
        self.nest, self.sound = nest.getComponent('transform'), nest.getComponent('sound')
        self.way, self.reach = way, self.swarm.reach
        self.stop, self.isAway, self.runs, self.quietAt = 0, False, False, 0.0
        self.dice = random.Random('%s %d' % (rats.name, GameConfig.seed))
        self.squeakAt = self.dice.uniform(4, 15)
        self.frame = 0

    def doFrame(self):
        self.frame += 1
        now = self.prey.clock.seconds()
        if self.frame % 10 == 0:
            self.watch(now)
        self.run(self.prey.clock.frameSeconds())
        if self.frame % 5 == 0:
            self.hide()
        if now > self.squeakAt:
            self.squeakAt = now + self.dice.uniform(6, 22) / (4 if self.runs else 1)
            if self.stop < len(self.way) - 1 or self.runs:
                self.sound.playSoundEffect('RatSqueak')

    def watch(self, now: float):
        """Leaves when the Damp is near, and comes back when it has been gone for a while."""
        x, _, z = self.way[0]
        nearest = min((math.hypot(place.x - x, place.z - z) for place in
                       (damp.getComponent('transform').position for damp in dampsIn(self.prey.level))), default=1e6)
        if nearest < (CALM if self.isAway else ALARM):
            self.quietAt = now + SULK
            if not self.isAway:
                self.isAway = True
                self.sound.playSoundEffect('RatSqueak')
        elif self.isAway and now > self.quietAt:
            self.isAway = False

    def run(self, seconds: float):
        """Takes the nest along the way to where it belongs now."""
        goal = len(self.way) - 1 if self.isAway else 0
        x, _, z = self.way[self.stop]
        place = self.nest.position
        left = math.hypot(x - place.x, z - place.z)
        isThere = left < 0.05
        if isThere and self.stop != goal:
            self.stop += 1 if goal > self.stop else -1
        runs = not isThere or self.stop != goal
        if runs != self.runs:
            self.runs = runs
            kaVel.configure(self.swarm, cruiseSpeed=RUN if runs else STROLL,
                            reach=0.5 if runs or self.isAway else self.reach)
            if runs:
                self.sound.playSoundEffect('RatsRun')
            else:
                self.sound.stopSoundEffect('RatsRun')
        if left > 0:
            step = min(RUN * seconds, left) / left
            self.nest.position = kaVel.Vec4(place.x + step * (x - place.x), place.y, place.z + step * (z - place.z), 1)

    def hide(self):
        """In the hole they are not to be seen."""
        x, _, z = self.way[-1]
        away = self.isAway and self.stop == len(self.way) - 1
        for member in self.swarm.members:
            place, drawn = member.getComponent('transform').position, member.getComponent('graphics2')
            if drawn.visible == away and (not away or math.hypot(place.x - x, place.z - z) < 0.7):
                drawn.visible = not away


@kaVel.pattern
def Moths(parent: kaVel.MapRootEntity, name: str = '', at: Triple = (0, 0, 0), number: int = 10, reach: float = 0.9):
    """Moths about a lamp at `at`, which come to the player's flashlight when it burns near them."""
    moths = Swarm(parent, name or 'moths', kind='Moth', count=number, at=at, reach=reach, lowest=at[1] - 2.0,
                  highest=at[1] + 1.0)
    lure = placed(moths, 'lure', at=at)
    moths.getComponent('flocking').anchor = lure
    sounds(lure, 'Moths').playSoundEffect('Moths')
    driver = _Moths(lure, at)
    onFrame(lure, driver.doFrame)
    return moths


class _Moths:
    """What the moths are drawn to."""

    def __init__(self, lure: kaVel.Entity, at: Triple):
        self.lure, self.prey = lure.getComponent('transform'), Prey(lure)
        self.home = kaVel.Vec4(*at, 1)
        self.goal: kaVel.Vec4 = self.home
        self.frame = 0

    def doFrame(self):
        self.frame += 1
        torch = self.prey.torch()
        if self.frame % 8 == 0 or (torch and self.goal is not self.home):
            self.goal = self.home
            if torch and (torch.place - self.home).magnitude() < LURED and (
                    self.frame % 8 or self.prey.shinesOn(self.lure.position, LURED)):
                ahead = torch.parent.getComponent('transform').getDirection()
                self.goal = torch.place + ahead * BEFORE
        way = self.goal - self.lure.position
        left = way.magnitude()
        if left > 0.01:
            self.lure.position = self.lure.position + way * (min(FLIGHT * self.prey.clock.frameSeconds(), left) / left)


@kaVel.pattern
def Crows(parent: kaVel.MapRootEntity, name: str = '', at: Triple = (0, 0, 0), number: int = 6, reach: float = 4.0):
    """Crows that go round about `at` and call; before a Guest comes they fall silent and are gone.

    Some time after him they come back.
    """
    crows = Swarm(parent, name or 'crows', kind='Crow', count=number, at=at, reach=reach, lowest=at[1] - 1.0,
                  highest=at[1] + 2.5, spacing=0.9, innerRadius=0.8, cruiseSpeed=2.2)
    roost = placed(crows, 'roost', at=at)
    crows.getComponent('flocking').anchor = roost
    sounds(roost, 'Crow', 'CrowWings', 'FlockPass')
    driver = _Crows(crows, roost)
    onFrame(roost, driver.doFrame)
    return crows


class _Crows:
    """Whether they are about, and when they call."""

    def __init__(self, crows: kaVel.Entity, roost: kaVel.Entity):
        self.swarm, self.prey, self.sound = crows.getComponent('flocking'), Prey(roost), roost.getComponent('sound')
        self.roost = roost.getComponent('transform')
        self.isSilent, self.backAt, self.frame = False, 0.0, 0
        self.dice = random.Random('%s %d' % (crows.name, GameConfig.seed))
        self.callAt = self.dice.uniform(*CALLS)

    def doFrame(self):
        self.frame += 1
        if self.frame % 10:
            return
        now = self.prey.clock.seconds()
        if self.knows():
            self.backAt = now + DOUBT
            if not self.isSilent:
                self.become(silent=True)
        elif self.isSilent and now > self.backAt:
            self.become(silent=False)
            self.callAt = now + 1.0
        if now > self.callAt and not self.isSilent:
            self.callAt = now + self.dice.uniform(*CALLS)
            self.sound.playSoundEffect('Crow')

    def knows(self) -> bool:
        """Whether a Guest is about who is not far off."""
        here = self.roost.position
        return any((guest.getComponent('transform').position - here).magnitude() < HUSH
                   for guest in guestsAbroad(self.prey.level))

    def become(self, silent: bool):
        """Has them go, with a beat of wings and no more, or come back."""
        self.isSilent = silent
        self.sound.playSoundEffect('CrowWings' if silent else 'FlockPass')
        for member in self.swarm.members:
            member.getComponent('graphics2').visible = not silent
