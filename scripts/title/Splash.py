"""The splash: an eye in the dark that looks on as the menu comes, and closes before the room of the title is seen."""

from __future__ import annotations

from typing import Any

import kaVel
import session
from objects.Placing import LevelClock
from objects.things.Drawn import Picture

SIZE = 0.15                         # share of the window's longer side
OPEN, CLOSES, ROOM = 0.26, 0.10, 1.0  # seconds: the eye is open, it closes, the room comes up
SKIPPED_BY = ('KeyDownMessage', 'MouseDownMessage', 'ButtonPressed')


class Splash:
    """Shows the logo once in a session, over a room that is dark meanwhile; any key, click or button ends it."""

    def __init__(self, level: kaVel.Coordinator):
        self.over = False
        self.picture = level.getManager('graphics2')
        self.picture.dissolveAmount = 1.0
        self.logo = Picture(level, 'logo', picture='emblem', size=(SIZE, SIZE))
        self.transform, self.clock = self.logo.getComponent('transform'), LevelClock(self.logo)
        kaVel.addComponent(self.logo, 'tklogo', 'ScriptComponent', frameCallback=self.doFrame)
        if session.splashShown:
            self.logo.getComponent('graphics2').visible = False
        for message in SKIPPED_BY:
            kaVel.subscribe(message, self.skip, kaVel.officeOf(level))

    def doFrame(self):
        past = self.clock.seconds() - OPEN
        if session.splashShown or past >= CLOSES:
            self.end()
        elif past > 0:
            self.transform.scale = kaVel.Vec4(SIZE, SIZE * (1.0 - past / CLOSES), 1, 0)

    def skip(self, *_: Any):
        self.end()

    def end(self):
        """Has the room come up; once, though a murdered logo has one more frame."""
        if self.over:
            return
        self.over = session.splashShown = True
        self.logo.murder()
        kaVel.interpolate(self.picture, 'dissolveAmount', 0.0, ROOM)
