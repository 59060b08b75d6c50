"""Who and what made the game, rolling by over whatever is behind; any way back ends it."""

from __future__ import annotations

from typing import Any

import kaVel
from perLevel import levelOf
from screens import Kit as kit
from screens import Screens

PAUSES = False
VEIL = 0.55

#: Headings and lines in their order; a heading without lines stands alone.
ROLL = (('game', 1), ('engine', 1), ('made', 6), ('fonts', 2), ('with', 6), ('thanks', 2))
SPEED = 62.0  # of a picture's 1080 lines, a second
HEIGHT, LEAD = 1080.0, 760.0


def build(menu: kaVel.Entity, leave: Any = None):
    """`leave` is called in place of closing the screen, when it ends by itself, too."""
    level = levelOf(menu)
    end = leave or (lambda: Screens.close(level))
    roll = kit.Scroll(menu, 'roll', anchor='centerFill', width=980, gap=6)
    kit.Space(roll, 'lead', size=LEAD)
    for name, count in ROLL:
        kit.Label(roll, name, words='credits.' + name, size='large', color='candle', align='center',
                  margin=(0, 56, 0, 8))
        for number in range(1, count + 1):
            kit.Label(roll, '%s%d' % (name, number), words='credits.%s.%d' % (name, number), align='center')
    kit.Space(roll, 'tail', size=HEIGHT)
    kit.Button(menu, 'back', words='menu.back', anchor='bottomRight', pressed=end)
    _Roll(menu, kit.component(roll), end)


def back(level: kaVel.Coordinator):
    """Ends the roll as its button does."""
    menu = Screens.top(level)
    if menu:
        kit.component(menu.getChild('back')).press()


class _Roll:
    """Moves the roll on, by the wall's time: it goes on over a level that stands still."""

    def __init__(self, menu: kaVel.Entity, roll: Any, end: Any):
        self.roll, self.end = roll, end
        self.loop = kaVel.getSystem('GameLoopSystem')
        self.frames, self.over = 0, False
        kaVel.addComponent(roll.parent, 'cursor', 'ScriptComponent', frameCallback=self.doFrame)

    def doFrame(self):
        self.frames += 1
        if self.over or self.frames < 3:  # it is laid out first
            return
        if not self.roll.scrollBy(SPEED * self.loop.time.frameTimeSeconds):
            self.over = True
            self.end()
