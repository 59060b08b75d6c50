"""A line of text that tells what has just happened, and fades."""

import kaVel
from objects.Drawn import Text
from objects.Placing import LevelClock

COLOR = (0.86, 0.80, 0.66)
STAYS, FADES = 3.0, 1.5  # seconds


class Notice:
    """The line of one level, in the middle of the screen's upper part."""

    def __init__(self, coordinator: kaVel.Coordinator, name: str = 'notice'):
        line = Text(coordinator, name, at=(0.5, 0.80), size=0.021, color=(*COLOR, 0),
                    anchor=('H_CENTER', 'V_CENTER'))
        self.graphics = line.getComponent('graphics2')
        self.clock = LevelClock(line)
        self.since = None
        kaVel.addComponent(line, 'hud', 'ScriptComponent', frameCallback=self.doFrame)

    def show(self, text: str):
        """Shows a text in place of the last one; it fades by itself."""
        self.graphics.text = text
        self.since = self.clock.seconds()

    def doFrame(self):
        if self.since is None:
            return
        past = self.clock.seconds() - self.since
        alpha = min(1.0, max(0.0, 1.0 - (past - STAYS) / FADES))
        self.graphics.color = kaVel.Vec4(*COLOR, alpha)
        if past > STAYS + FADES:
            self.since = None
