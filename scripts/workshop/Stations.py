"""Where the number keys lead, and what is under way there when a picture is taken."""

from __future__ import annotations

import math
from typing import TYPE_CHECKING, Callable, NamedTuple

import kaVel
from objects.Placing import Triple

if TYPE_CHECKING:
    from levels.Workshop import Visit


class Station(NamedTuple):
    name: str
    at: Triple      # the visitor's feet, metres
    turn: float     # degrees
    pitch: float    # degrees, down
    begin: Callable[[Visit], object] = lambda visit: None  # sets something going, for a picture


def _openStore(visit: Visit):
    visit.leaves['storeDoor'].getComponent('physics').prevAngle = math.radians(52)


def _openCistern(visit: Visit):
    visit.leaves['cisternDoor'].getComponent('physics').openDoor(visit.visitor.player, False)


def _drop(visit: Visit):
    visit.stack.lift()


def _lift(visit: Visit):
    crate = visit.map.getChild('lightCrate')
    crate.getComponent('transform').position = kaVel.Vec4(-4.2, 1.5, 8.3, 1)
    crate.getComponent('physics').velocity = kaVel.Vec4(0, 0, 0, 0)


def _press(visit: Visit):
    visit.fuseBox.light()
    visit.chute.press(None)


def _throw(visit: Visit):
    visit.goTo(9)
    visit.bolts.throw()


STATIONS = (
    Station('workshop', (3.2, 0, -2.4), -52, 5),
    Station('crates', (1.0, 0, -2.4), -42, 16),
    Station('stack', (5.7, 0, -1.3), 134, 11, _drop),
    Station('floats', (-0.6, 0, 6.5), 45, 26),
    Station('ironDoor', (1.7, 0, -1.7), 74, 4, _openStore),
    Station('slidingDoor', (0.1, 0, 0.6), -14, 2, _openCistern),
    Station('updraught', (-1.9, 0, 6.2), -48, 2, _lift),
    Station('chute', (0.6, 0, -0.4), 38, -4, _press),
    Station('targets', (0.9, 0, -1.3), 200, 7, _throw),
)
