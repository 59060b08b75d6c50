"""A line of text that tells what has just happened, and fades."""

import kaVel
import words
from objects.Placing import LevelClock
from objects.things.Drawn import Text, write

COLOR = (0.86, 0.80, 0.66)
SIZE = 0.021
SHADE = (0.03, 0.025, 0.02)  # behind the letters, for a line that lies on something light
STAYS, FADES = 3.0, 1.5  # seconds


class Notice:
    """The line of one level, in the middle of the screen's upper part; it stays for some seconds."""

    def __init__(self, coordinator: kaVel.Coordinator, name: str = 'notice', stays: float = STAYS):
        line, shade = (Text(coordinator, name + end, at=(0.5 + off, 0.80 - 1.8 * off), size=SIZE, color=(*color, 0),
                            anchor=('H_CENTER', 'V_CENTER'), depth=depth)
                       for end, off, color, depth in (('', 0.0, COLOR, 0.5), ('Shade', 0.0009, SHADE, 0.6)))
        self.graphics, self.shade = line.getComponent('graphics2'), shade.getComponent('graphics2')
        self.clock = LevelClock(line)
        self.stays = stays
        self.since = None
        self.told: words.Told = ''
        self.wording = words.changes
        kaVel.addComponent(line, 'hud', 'ScriptComponent', frameCallback=self.doFrame)

    def show(self, text: words.Told):
        """Shows a text in place of the last one; it fades by itself."""
        self.told = text
        self._write()
        self.since = self.clock.seconds()

    def _write(self):
        self.wording = words.changes
        for graphics in (self.graphics, self.shade):
            write(graphics, self.told, SIZE)

    def doFrame(self):
        if self.since is None:
            return
        if self.wording != words.changes:
            self._write()
        past = self.clock.seconds() - self.since
        alpha = min(1.0, max(0.0, 1.0 - (past - self.stays) / FADES))
        self.graphics.color = kaVel.Vec4(*COLOR, alpha)
        self.shade.color = kaVel.Vec4(*SHADE, 0.8 * alpha)
        if past > self.stays + FADES:
            self.since = None
