"""The lamp of the title goes out now and then, and who looks closely sees what has moved meanwhile."""

from __future__ import annotations

import random

import GameConfig
import kaVel
import objects.GameObjects as place
from objects.Placing import LevelClock, Triple, onFrame
from title.Room import BULB, LAMP

STRENGTH, REACH = 0.34, 3.3
STEADY, DARK = (9.0, 26.0), (1.6, 4.5)  # seconds
STUTTER = 0.7                           # seconds before it goes, and when it comes again

#: Where the chair stands: its place and turn. It never stands twice running as it did.
STANDS: tuple[tuple[Triple, float], ...] = (
    ((0.25, 0, 1.75), 0.0), ((0.30, 0, 1.70), -150.0), ((0.05, 0, 2.10), 12.0), ((0.75, 0, 1.25), 205.0),
    ((0.30, 0, 1.30), 182.0))

#: A chair that can be put elsewhere.
Chair = place.thing(moving=True, chair='wood', chairSeat='leather')


class Lamp:
    """The table lamp by the window, and the chair that it shines on."""

    def __init__(self, map: kaVel.MapRootEntity):
        lamp = place.Lamp(map, 'lamp', at=LAMP)
        self.shade = next(each for each in kaVel.descendants(lamp)
                          if getattr(each, 'emissiveTextureName', '') == 'lampShadeEmissive')
        light = place.SphereLight(lamp, 'light', at=(LAMP[0], LAMP[1] + BULB, LAMP[2]), strength=STRENGTH, reach=REACH,
                                  flicker=lambda seconds: self.factor)
        self.voice = place.sounds(light, 'LampSwitch')
        self.chair = Chair(map, 'chair', at=STANDS[0][0], turn=STANDS[0][1])
        self.clock, self.dice = LevelClock(lamp), random.Random('lamp %d' % GameConfig.seed)
        self.stand = 0
        self.factor, self.isOut = 1.0, False
        self.since, self.until = 0.0, self.dice.uniform(6, 10)
        onFrame(lamp, self.doFrame)

    def doFrame(self):
        now = self.clock.seconds()
        if now >= self.until:
            self.isOut = not self.isOut
            self.since, self.until = now, now + self.dice.uniform(*(DARK if self.isOut else STEADY))
            if self.isOut:
                self.moveChair()
        self.shine(self.strengthAt(now))

    def strengthAt(self, now: float) -> float:
        """Out, or on with a stutter as it comes and before it goes."""
        if self.isOut:
            return 0.0
        edge = min(now - self.since, self.until - now)
        if edge > STUTTER or now == 0:
            return 1.0 + 0.03 * self.dice.uniform(-1, 1)
        return 1.0 if self.dice.random() < 0.25 + 0.7 * edge / STUTTER else 0.12

    def shine(self, factor: float):
        self.factor = factor
        texture = 'lampShadeEmissive' if factor > 0.5 else 'black'
        if self.shade.emissiveTextureName != texture:
            self.shade.emissiveTextureName = texture

    def moveChair(self):
        """Puts the chair where nobody saw it go."""
        self.stand = (self.stand + self.dice.randrange(1, len(STANDS))) % len(STANDS)
        at, turn = STANDS[self.stand]
        for part in (self.chair, self.chair.getChild('chairSeat')):
            kaVel.configure(part.getComponent('transform'), position=kaVel.Vec4(*at, 1), orientation=place.turned(turn))
