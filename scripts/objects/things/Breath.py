"""Breath on cold glass: who stands close before a window sees his own, and who has gone by has left his."""

from __future__ import annotations

from typing import NamedTuple, Sequence

import kaVel
from objects.creatures.Guest import guestsAbroad
from objects.creatures.Prey import Prey
from objects.creatures.Prints import Prints
from objects.Placing import Pair, Triple, onFrame, placed

#: Metres before the glass within which breath reaches it; how far below the eyes it comes from.
REACHES, MOUTH = 0.9, 0.09
#: Seconds from breath to breath, also when he is tired, and how long it stays.
CALM, TIRED, STAYS = 3.4, 1.5, 9.0
#: The same of a Guest: how near he goes by, how high he breathes, and how long that stays.
PASSES, HIGH, LINGERS = 1.3, 1.52, 150.0


class Pane(NamedTuple):
    """Glass: its middle, its size across and up, and the way that it faces into the room, 0, 90, 180 or -90 degrees."""

    at: Triple
    size: Pair
    turn: float

    def before(self, place: kaVel.Vec4) -> tuple[float, float]:
        """How far before the glass a place is, and how far from its middle across; metres."""
        east, north = place.x - self.at[0], place.z - self.at[2]
        return {0: (north, east), 90: (east, north), 180: (-north, east), -90: (-east, north)}[int(self.turn)]

    def holds(self, across: float, height: float) -> bool:
        return abs(across) < self.size[0] / 2 - 0.1 and abs(height - self.at[1]) < self.size[1] / 2 - 0.1

    def spot(self, across: float, height: float) -> Triple:
        x, _, z = self.at
        return (x + across, height, z) if int(self.turn) in (0, 180) else (x, height, z + across)


@kaVel.pattern
def Glass(parent: kaVel.MapRootEntity, name: str = '', *, panes: Sequence[Pane] = ()):
    """Has breath show on panes: the player's while he stands close and looks out, a Guest's for a while."""
    glass = placed(parent, name or 'glass')
    driver = _Glass(glass, panes)
    onFrame(glass, driver.doFrame)
    return glass


class _Glass:
    """Who breathes on which pane, and when."""

    def __init__(self, glass: kaVel.Entity, panes: Sequence[Pane]):
        self.prey, self.panes = Prey(glass), panes
        self.own = Prints(self.prey.map, glass.name + ' breath', 'glassBreath', (0.34, 0.28), 4, STAYS, depth=0.03)
        self.his = Prints(self.prey.map, glass.name + ' his breath', 'glassBreath', (0.42, 0.36), 4, LINGERS,
                          depth=0.03)
        self.marked: set[Pane] = set()
        self.frame, self.nextAt = 0, 0.0

    def doFrame(self):
        self.frame += 1
        if self.frame % 6 == 0:
            self.breathe()
            self.own.fade()
        elif self.frame % 30 == 15:
            self.watch()
            self.his.fade()

    def breathe(self):
        """The player's, at his own pace."""
        now, player = self.prey.clock.seconds(), self.prey.component
        if now < self.nextAt or not player or not self.prey.entity:
            return
        self.nextAt = now + (CALM if player.isFatigued() else TIRED)
        eye = self.prey.entity.getChild('camera').getComponent('transform')
        place, ahead = eye.position, eye.getDirection()
        for pane in self.panes:
            far, across = pane.before(place)
            towards, _ = pane.before(kaVel.Vec4(pane.at[0] + ahead.x, 0, pane.at[2] + ahead.z, 1))
            if 0 < far < REACHES and towards < -0.5 and pane.holds(across, place.y - MOUTH):
                self.own.leave(pane.spot(across, place.y - MOUTH), pane.turn + 180, pitch=0)

    def watch(self):
        """A Guest breathes once on each pane that he goes by."""
        for guest in guestsAbroad(self.prey.level):
            place = guest.getComponent('transform').position
            for pane in self.panes:
                far, across = pane.before(place)
                height = place.y + HIGH
                isThere = 0 < far < PASSES and pane.holds(across, height)
                if isThere and pane not in self.marked:
                    self.his.leave(pane.spot(across, height), pane.turn + 180, pitch=0)
                    self.marked.add(pane)
                elif not isThere:
                    self.marked.discard(pane)
