"""The minds of those who live in the menagerie: trees of the engine's library over a few steps in Python.

A tree is the same for all who have it; what one of them remembers stands in his `Mind`.
"""

from __future__ import annotations

import functools
import importlib
import math
import random
from typing import Callable, Sequence

import GameConfig
import kaVel
from BehaviorLib.Growing import Growing
from BehaviorLib.Patrol import giveRound
from kaVel import ActionStatus, Entity, StatusCode
from menagerie.Shell import PLANS
from objects.Placing import LevelClock

Place = tuple[float, float]

#: Luminance that the shade does not bear.
GLARE = 0.07
#: How high above the floor one looks for light, metres.
CHEST = 1.1

_minds: dict[Entity, Mind] = {}


class Mind:
    """What one creature is about: its way, its dice, and how long it has stood."""

    def __init__(self, entity: Entity, *rooms: str, opensDoors: bool = True, closesDoors: bool = True,
                 speed: float = 0.8, stay: tuple[float, float] = (2.0, 5.0)):
        self.entity, self.rooms, self.stay = entity, rooms, stay
        self.transform = entity.getComponent('transform')
        self.follower = kaVel.addComponent(entity, 'pathFollower', 'PathFollower', opensDoors=opensDoors,
                                           closesDoors=closesDoors, speed=speed, arriveRadius=0.35)
        # Dice of its own: what one does has no part in what another does.
        self.dice = random.Random('%s %d' % (entity.name, GameConfig.seed))
        self.clock = LevelClock(entity)
        self.goal: Place | None = None
        self.until = 0.0
        _minds[entity] = self

    def place(self) -> Place:
        at = self.transform.position
        return at.x, at.z

    def think(self, *trees: str):
        """Gives it its trees, the first of which it begins with."""
        kaVel.addComponent(self.entity, 'behaviors', 'BTComponent', behaviors=list(trees), defaultBehavior=trees[0])

    def choose(self) -> ActionStatus:
        """Picks somewhere in one of its rooms, mostly another one than it is in."""
        here = roomOf(self.place())
        others = [room for room in self.rooms if room != here] or list(self.rooms)
        self.goal = somewhereIn(self.dice.choice(others), self.dice)
        return ActionStatus.AS_Complete

    def walk(self) -> ActionStatus:
        """Goes where it has chosen to go."""
        if self.goal is None:
            return ActionStatus.AS_Failed
        if self.follower.goal != at(self.goal) or not (self.follower.underWay or self.follower.arrived):
            self.follower.goTo(at(self.goal))
        if self.follower.arrived or self.follower.failed:
            self.goal = None
        if self.follower.failed:
            return ActionStatus.AS_Failed
        return ActionStatus.AS_Complete if self.follower.arrived else ActionStatus.AS_InProgress

    def linger(self) -> ActionStatus:
        """Stands for a while."""
        now = self.clock.seconds()
        if not self.until:
            self.follower.stop()
            self.until = now + self.dice.uniform(*self.stay)
        if now < self.until:
            return ActionStatus.AS_InProgress
        self.until = 0.0
        return ActionStatus.AS_Complete


class Warden:
    """One that walks its round by the library's own tree, and minds nobody: it has neither eyes nor ears."""

    def __init__(self, entity: Entity, stops: Sequence[Place]):
        self.entity, self.transform = entity, entity.getComponent('transform')
        kaVel.addComponent(entity, 'pathFollower', 'PathFollower', opensDoors=True, closesDoors=True, speed=0.95,
                           arriveRadius=0.35)
        kaVel.addComponent(entity, 'perception', 'PerceptionComponent', hasEyes=False, hasEars=False)
        giveRound(entity, map(at, stops))
        kaVel.addComponent(entity, 'behaviors', 'BTComponent', behaviors=['Patrol'], defaultBehavior='Patrol')


class Hunter(Mind):
    """One without eyes that goes for what it hears."""

    def __init__(self, entity: Entity, home: Place):
        super().__init__(entity, closesDoors=False, speed=2.0, stay=(2.0, 3.0))
        self.home = home
        self.senses = kaVel.addComponent(entity, 'perception', 'PerceptionComponent', hasEyes=False, nearRange=0.0,
                                         hearingThreshold=0.002, hearingGain=0.7, noticeLevel=0.4, memoryTime=9.0,
                                         ownNoiseRange=1.2)
        self.reached: list[Place] = []  # where it has looked for what it heard

    def knows(self) -> StatusCode:
        """Whether something has been heard."""
        return StatusCode.SC_Success if self.senses.knows else StatusCode.SC_Failure

    def hunt(self) -> ActionStatus:
        """Goes where it heard the last thing, and there by what it has heard since."""
        if not self.senses.knows:
            return ActionStatus.AS_Failed
        heard = self.senses.place
        self.follower.goTo(heard)
        if self.follower.arrived:
            self.reached.append(self.place())
            self.senses.forget()
            return ActionStatus.AS_Complete
        return ActionStatus.AS_Failed if self.follower.failed else ActionStatus.AS_InProgress

    def goHome(self) -> ActionStatus:
        """Goes back to where it lies, unless it hears something."""
        if self.senses.knows:
            return ActionStatus.AS_Failed
        self.goal = self.home
        return self.walk()


class Hider(Mind):
    """One that cannot bear light."""

    def __init__(self, entity: Entity, map: kaVel.MapRootEntity, *rooms: str):
        super().__init__(entity, *rooms, speed=1.0, stay=(3.0, 8.0))
        self.map = map
        self.fleeing = False
        self.nextLook = 0.0

    def lightOn(self, place: Place):
        return kaVel.Reflection.lightAt(self.map, kaVel.Vec4(place[0], CHEST, place[1], 1))

    def isLit(self) -> StatusCode:
        """Whether it stands in the light, or is on the run from it."""
        now = self.clock.seconds()
        if now >= self.nextLook:
            self.nextLook = now + 0.25
            if not self.fleeing and self.lightOn(self.place()) > GLARE:
                self.fleeing, self.goal, self.until = True, None, 0.0
        return StatusCode.SC_Success if self.fleeing else StatusCode.SC_Failure

    def hide(self) -> ActionStatus:
        """Runs for the darkest place that it can think of."""
        if self.goal is None:
            places = [somewhereIn(room, self.dice) for room in self.rooms for _ in range(4)]
            self.goal = min(places, key=lambda place: (self.lightOn(place) > GLARE, math.dist(place, self.place())))
        outcome = self.walk()
        if outcome != ActionStatus.AS_InProgress:
            self.fleeing = False
        return outcome

    def choose(self) -> ActionStatus:
        """Picks another dark place."""
        places = [somewhereIn(self.dice.choice(self.rooms), self.dice) for _ in range(6)]
        self.goal = min(places, key=self.lightOn)
        return ActionStatus.AS_Complete if self.lightOn(self.goal) < GLARE else ActionStatus.AS_Failed

    def drift(self) -> ActionStatus:
        """Goes there, unless it comes into the light on its way."""
        return ActionStatus.AS_Failed if self.isLit() == StatusCode.SC_Success else self.walk()

    def wait(self) -> ActionStatus:
        """Stands in the dark, for as long as it is dark."""
        return ActionStatus.AS_Failed if self.isLit() == StatusCode.SC_Success else self.linger()


def at(place: Place):
    return kaVel.Vec4(place[0], 0, place[1], 1)


def roomOf(place: Place):
    """The name of the room at a place; '' between rooms."""
    return next((name for name, plan in PLANS.items() if plan.holds(*place)), '')


def somewhereIn(room: str, dice: random.Random) -> Place:
    plan = PLANS[room]
    return dice.uniform(plan.west + 0.9, plan.east - 0.9), dice.uniform(plan.south + 0.9, plan.north - 0.9)


def _step(name: str, otherwise: ActionStatus | StatusCode, entity: Entity):
    """Has a creature's mind do a step of this name."""
    mind = importlib.import_module(__name__)._minds.get(entity)  # the module as it is by now: trees outlive levels
    return getattr(mind, name)() if mind else otherwise


def buildTrees(library: kaVel.BTLib):
    """Adds the menagerie's trees to the library; those that are there already stay."""
    grow = Growing(library)

    def act(name: str, inWords: str):
        return library.BTCreateActionR(_named(name, inWords, ActionStatus.AS_Failed))

    def ask(name: str, inWords: str):
        return grow.ask(_named(name, inWords, StatusCode.SC_Failure))

    linger = functools.partial(act, 'linger', 'lingers')
    for name, root in (
            ('Stroll', lambda: grow.sequence(act('choose', 'thinks of a place'), act('walk', 'strolls'), linger())),
            ('Hunt', lambda: grow.selector(
                grow.sequence(ask('knows', 'has heard something'), act('hunt', 'goes for what it hears'), linger()),
                grow.sequence(act('goHome', 'goes to its corner'), act('linger', 'lies in its corner')))),
            ('Lurk', lambda: grow.selector(
                grow.sequence(ask('isLit', 'is in the light'), act('hide', 'flees from the light')),
                grow.sequence(act('choose', 'thinks of a dark place'), act('drift', 'drifts through the dark'),
                              act('wait', 'stands in the dark'))))):
        if not _isKnown(library, name):
            grow.plant(name, root())


def _isKnown(library: kaVel.BTLib, name: str):
    try:
        library.BTLookUp(name).DeleteTree()
    except RuntimeError:
        return False
    return True


def _named(name: str, inWords: str, otherwise: ActionStatus | StatusCode) -> Callable[[Entity], object]:
    """A leaf's function that bears the words by which its tree tells of it."""
    def leaf(entity: Entity):
        return _step(name, otherwise, entity)

    leaf.__name__ = leaf.__qualname__ = inWords
    return leaf
