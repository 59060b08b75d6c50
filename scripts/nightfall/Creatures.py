"""Who else is in the house: the Fittings of the sewing room, the Guest, the Damp in the bath, and what warns."""

from __future__ import annotations

import math

import kaVel
import objects.GameObjects as place
from kaVel import MapRootEntity
from nightfall.Plan import UP
from objects.creatures import Guest
from objects.creatures.Damp import sendHome
from objects.creatures.Fittings import wake
from objects.Placing import Triple

#: Where the figures of the sewing room stand, which way they look, how, and how far they go from there: not so far that
#: they could shut the way between the door and the hatch.
FITTINGS: tuple[tuple[Triple, float, str, float], ...] = (
    ((16.7, UP, 7.25), 150, 'standing', 1.1), ((20.3, UP, 5.8), 235, 'reaching', 0.6),
    ((20.2, UP, 3.6), 250, 'begging', 1.6), ((18.6, UP, 2.25), 20, 'shrouded', 1.2),
    ((20.2, UP, 4.8), 250, 'pointing', 1.0))

#: The way that the Guest goes once: from the stairs' door past number two, and away down the corridor.
PASSING: tuple[Triple, ...] = ((15.15, UP, 13.0), (15.15, UP, 7.5), (15.15, UP, 2.7), (15.15, UP, 0.85),
                               (1.2, UP, 0.85))

#: His round, up and down the passage; he begins at an end of it where nobody in the linen room could see him.
ROUND: tuple[Triple, ...] = ((15.15, UP, 2.7), (15.15, UP, 7.5), (15.15, UP, 12.9), (15.15, UP, 7.5))


class Creatures:
    """All of them, and where they are in the story."""

    def __init__(self, map: MapRootEntity):
        self.map = map
        self.level = map.getAncestorOfType(kaVel.Reflection.Coordinator)
        self.guest = place.Guest(map, 'guest', points=ROUND, speed=0.85, abroad=False)
        self.isGuestAbroad = False
        # What groans for it does so behind the bath's outer wall, where it does not hear itself.
        self.damp = place.Damp(map, 'damp', at=(18.0, UP, 12.0), territory=1.2, pipes=((21.6, UP + 1.0, 12.4),))
        for number, (at, turn, pose, roams) in enumerate(FITTINGS):
            place.Fitting(map, 'fitting%d' % number, at=at, turn=turn, pose=pose, roams=roams, awake=False)
        place.Moths(map, 'moths', at=(13.95, UP + 1.15, -2.7), number=8)
        place.Rats(map, 'rats', at=(12.0, UP, 4.4), number=5, hole=(10.1, UP, 5.4), reach=1.0)
        place.Crows(map, 'crows', at=(3.2, UP + 3.2, 4.6), number=5, reach=2.5)
        place.Rats(map, 'hallRats', at=(13.6, 0, 22.6), number=6, hole=(11.0, 0, 24.7), way=((12.6, 0, 22.4),))

    def wakeFittings(self, awake: bool):
        """Lets the figures move, as long as they are not seen."""
        wake(self.level, awake)

    def announceGuest(self):
        """Has the crows know of the Guest before he is there."""
        Guest.announce(self.guest)

    def bringGuest(self):
        """Has the Guest begin his round, where nobody looks."""
        Guest.lead(self.guest, ROUND)
        if not self.isGuestAbroad:
            Guest.bring(self.guest, self.farEnd())
        self.isGuestAbroad = True

    def sendGuestPast(self):
        """Has the Guest go down the passage and away, past somebody who is in number two."""
        Guest.lead(self.guest, PASSING)
        Guest.bring(self.guest, PASSING[0])
        self.isGuestAbroad = True

    def guestIsAway(self) -> bool:
        """Whether the Guest has gone round the corner into the corridor."""
        return self.isGuestAbroad and self.guest.getComponent('transform').position.x < 13.6

    def farEnd(self) -> Triple:
        """The end of the Guest's way that is farther from the player."""
        x, _, z = place.visitorOf(self.level).standing()[0]
        return max((ROUND[0], ROUND[2]), key=lambda end: math.hypot(end[0] - x, end[2] - z))

    def guestHasPassed(self, z: float) -> bool:
        """Whether the Guest has gone by somebody in the passage, to the north."""
        return self.isGuestAbroad and self.guest.getComponent('transform').position.z > z

    def dismissGuest(self):
        """Has the Guest gone."""
        Guest.dismiss(self.guest)
        self.isGuestAbroad = False

    def calm(self):
        """Sends everyone home who hunts."""
        sendHome(self.damp)
        if self.isGuestAbroad:
            x, y, z = self.farEnd()
            self.guest.getComponent('transform').position = kaVel.Vec4(x, y + 0.25, z, 1)
            self.guest.getComponent('perception').forget()

    def dampIsNear(self, at: Triple, metres: float) -> bool:
        """Whether the Damp is within so many metres of a place."""
        here = self.damp.getComponent('transform').position
        return math.dist((here.x, here.y, here.z), at) < metres

    def dampIsBelow(self, height: float) -> bool:
        """Whether the Damp's middle is lower than that, metres."""
        return self.damp.getComponent('transform').position.y < height

    def rouse(self, at: kaVel.Vec4):
        """Lets the Damp know of somebody at a place."""
        self.damp.getComponent('perception').alarm(at, 1.5)
