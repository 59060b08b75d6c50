"""The board on the hall's wall, on which stands what each of them is doing."""

from __future__ import annotations

import math
from typing import Callable

import kaVel
import objects.GameObjects as place
from kaVel import Entity, MapRootEntity
from objects.Placing import LevelClock, onFrame, placed

MIDDLE = (-5.93, 1.62, 0.0)  # of the writing, metres; it faces east
SIZE = (2.5, 1.25)           # width and height of the slate, metres
LINE = 0.072                 # height of a line's letters, metres
READ_FROM = 7.0              # metres
REWRITTEN = 0.5              # seconds between two looks at the creatures
CHALK = (0.80, 0.80, 0.74)
#: Sizes of letters go by such steps, since each has its letters drawn anew.
STEP = 1.12


class Board:
    """A slate whose writing lies on the picture where the slate is, as large as it would be there."""

    def __init__(self, map: MapRootEntity, room: Entity, visitor: place.Visitor):
        self.map, self.visitor = map, visitor
        self.viewer = visitor.camera.getComponent('viewer')
        x, y, z = MIDDLE
        place.Box(room, 'slate', at=(x - 0.04, y - SIZE[1] / 2, z), size=(0.05, SIZE[1], SIZE[0]), surface='hollow')
        for side, at, size in (('top', (y + SIZE[1] / 2, z), (0.06, SIZE[0] + 0.12)),
                               ('bottom', (y - SIZE[1] / 2 - 0.06, z), (0.06, SIZE[0] + 0.12)),
                               ('south', (y - SIZE[1] / 2, z - SIZE[0] / 2 - 0.03), (SIZE[1], 0.06)),
                               ('north', (y - SIZE[1] / 2, z + SIZE[0] / 2 + 0.03), (SIZE[1], 0.06))):
            place.Box(room, 'frame ' + side, at=(x - 0.03, at[0], at[1]), size=(0.09, *size), surface='wood')
        self.tellers: list[Callable[[], str]] = []
        self.clock, self.due = LevelClock(room), 0.0
        self.text = place.Text(map.getAncestorOfType(kaVel.Reflection.Coordinator), 'boardText', text='',
                               color=(*CHALK, 0.9), anchor=('H_LEFT', 'V_TOP'))
        self.drawn = self.text.getComponent('graphics2')
        self.helper = self.text.getComponent('screenSpaceHelper')
        # After the eye has found its place and before pictures are laid out.
        onFrame(placed(room, 'boardClock'), self.rewrite)
        kaVel.addComponent(self.text, 'hud', 'ScriptComponent', frameCallback=self.doFrame)

    def add(self, teller: Callable[[], str]):
        """Has a line stand on the board, which a function says."""
        self.tellers.append(teller)

    def lines(self):
        return [line for line in (teller() for teller in self.tellers) if line]

    def rewrite(self):
        now = self.clock.seconds()
        if now < self.due:
            return
        self.due = now + REWRITTEN
        text = '\n'.join(self.lines())
        if text != self.drawn.text:
            self.drawn.text = text

    def doFrame(self):
        """Lays the writing onto the slate as the eye sees it; nothing where it cannot be read."""
        corner = kaVel.Vec4(MIDDLE[0], MIDDLE[1] + SIZE[1] / 2 - 0.06, MIDDLE[2] - SIZE[0] / 2 + 0.08, 1)
        seen = self.project(corner)
        self.drawn.visible = seen is not None and self.isFree()
        if seen is None:
            return
        x, y, metre = seen
        window = kaVel.getSystem('WindowSystem2')
        size = LINE * metre * window.height / max(window.width, window.height)
        self.helper.windowPosition = kaVel.Vec4(x, y, 0.5, 1)
        self.drawn.fontSize = STEP ** round(math.log(size, STEP))
        self.drawn.wrapWidth = (SIZE[0] - 0.16) * size / LINE

    def project(self, at: kaVel.Vec4):
        """Where a place is in shares of the window, and how many of its heights a metre takes there."""
        eye, ahead = self.visitor.eye.position, kaVel.Vec4(*self.visitor.ahead(), 0)
        way = at - eye
        depth = way.dot(ahead)
        if not 0.4 < depth < READ_FROM or eye.x < MIDDLE[0]:
            return None
        right = kaVel.Vec4(math.cos(self.visitor.yaw), 0, -math.sin(self.visitor.yaw), 0)
        up = ahead.cross(right)
        half = math.tan(self.viewer.verticalFieldOfViewAngle / 2)
        window = kaVel.getSystem('WindowSystem2')
        x = way.dot(right) / (depth * half) * window.height / window.width
        y = way.dot(up) / (depth * half)
        return 0.5 + x / 2, 0.5 + y / 2, 1 / (2 * depth * half)

    def isFree(self):
        """Whether nothing stands between the eye and the middle of the board."""
        eye = self.visitor.eye.position
        way = kaVel.Vec4(*MIDDLE, 1) - eye
        # From outside of the reader's own body.
        return kaVel.Reflection.isLineFree(self.map, eye + way * (0.5 / way.magnitude()), eye + way * 0.97)
