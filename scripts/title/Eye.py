"""The camera of the title: it drifts as one who stands and breathes, and never comes to rest."""

from __future__ import annotations

import math

import kaVel
from objects.Placing import LevelClock, onFrame, turned

#: Metres and degrees of the drift, and seconds of its two swings, which meet in no common time.
ASIDE, RISE, TURN, PITCH = 0.22, 0.02, 2.2, 0.5
LONG, SHORT = 47.0, 13.7


class Eye:
    """Moves a camera to and fro around where it was built."""

    def __init__(self, camera: kaVel.Entity, turn: float, pitch: float):
        self.transform, self.clock = camera.getComponent('transform'), LevelClock(camera)
        self.at, self.turn, self.pitch = self.transform.position, turn, pitch
        onFrame(camera, self.doFrame)

    def doFrame(self):
        now = self.clock.seconds()
        long, short = math.sin(math.tau * now / LONG), math.sin(math.tau * now / SHORT)
        self.transform.position = self.at + kaVel.Vec4(ASIDE * long, RISE * short, 0, 0)
        self.transform.orientation = turned(self.turn - TURN * long, self.pitch + PITCH * short)
