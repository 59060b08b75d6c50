"""Places that notice the player, and what the engine has told when something is first met."""

from __future__ import annotations

import math
from typing import Callable

import kaVel
import words
from objects.Placing import LevelClock, Triple, addVolume, placed
from objects.screen import Tutorials

#: Where a player is noticed, metres above his feet: higher than what rolls and crawls, lower than one who crouches.
LOW, HIGH = 0.72, 0.86


@kaVel.pattern
def Place(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), size: Triple = (1, 1, 1)):
    """A named box in the world: its transform's position is the middle, its scale the extent in metres."""
    return placed(parent, name, at=at, scale=size)


@kaVel.pattern
def Trigger(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), size: tuple[float, float] = (1, 1),
            enter: Callable[[], object] = lambda: None, once: bool = True,
            again: Callable[[], object] | None = None):
    """Calls `enter` when the player comes onto an area of the floor, `size` along x and z around `at`.

    Once, or at each entry. In a level that is loaded again `again` is called for one that he has entered before, if
    there is such a function; `once` that stays entered.
    """
    trigger = placed(parent, name, at=(at[0], at[1] + (LOW + HIGH) / 2, at[2]))
    addVolume(trigger, (size[0], HIGH - LOW, size[1])).trigger = True
    kaVel.addComponent(trigger, 'physics', 'WallPhysics')
    event = kaVel.addComponent(trigger, 'scriptedSequence', 'EventTriggerVolume')
    clock, last = LevelClock(trigger), -math.inf

    def touched():
        nonlocal last
        now, before = clock.seconds(), last
        last = now
        if once:
            event.eventFunc = None
        if now <= 0:
            (again or (lambda: None))()
        elif once or now - before > 0.25:
            enter()

    event.eventFunc = touched
    return trigger


def tutorialFourCreate(player: kaVel.AnyObject):
    """Tells how a battery is changed, once a level; the engine calls this with the player at each battery."""
    Tutorials.show(player, words.said('teach.battery'), action='battery')
