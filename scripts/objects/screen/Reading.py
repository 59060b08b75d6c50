"""The sheet on which a note is read: paper over the picture, dimly seen, with the world at its sides."""

from __future__ import annotations

import math

import kaVel
import words
from objects.player.Pockets import Page
from objects.things.Drawn import Picture, Text

WIDTH, HEIGHT = 0.34, 0.46  # shares of the window's longer side, of a window that is high enough
TALLEST = 0.94              # share of the window's height
MARGIN = 0.04
TITLE_SIZE, TEXT_SIZE = 0.019, 0.0158
ROOM_FOR = 620              # letters of a text that is written at its full size
INK = (0.10, 0.075, 0.055, 1)
COMES_IN = 0.22             # seconds
ABOVE = -0.1                # of the letters, from the paper: less deep is drawn later
LOW = 0.12                  # where it comes from, share of the window's height below its place


class Sheet:
    """The sheet of one player, which shows a page or nothing."""

    def __init__(self, player: kaVel.Entity):
        self.picture = Picture(player, 'sheet', picture='notePage', size=(WIDTH, HEIGHT), depth=0.4)
        self.title = Text(self.picture, 'title', size=TITLE_SIZE, color=INK, anchor=('H_CENTER', 'V_TOP'), depth=ABOVE)
        self.text = Text(self.picture, 'text', size=TEXT_SIZE, color=INK, anchor=('H_LEFT', 'V_TOP'), depth=ABOVE)
        self.isOpen = False
        self.since = 0.0
        self.page: Page | None = None
        self.wording = words.changes
        self._setVisible(False)

    def open(self, page: Page):
        self.page = page
        self._write(page)
        self.isOpen, self.since = True, 0.0
        self.move(0.0)
        self._setVisible(True)

    def _write(self, page: Page):
        self.wording = words.changes
        title, text = str(page.title), str(page.text)
        window = kaVel.getSystem('WindowSystem2')
        size = min(1.0, TALLEST * window.height / max(window.width, window.height) / HEIGHT)
        small = size * min(1.0, math.sqrt(ROOM_FOR / max(len(text), 1)))
        self.picture.getComponent('transform').scale = kaVel.Vec4(WIDTH * size, HEIGHT * size, 1, 0)
        top = HEIGHT / 2 - MARGIN
        kaVel.configure(self.title.getComponent('graphics2'), text=title, fontName=words.font(),
                        fontSize=words.fontSize(TITLE_SIZE * size))
        kaVel.configure(self.text.getComponent('graphics2'), text=text, fontName=words.font(),
                        fontSize=words.fontSize(TEXT_SIZE * small),
                        wrapWidth=(WIDTH - 2 * MARGIN) * size)
        self._put(self.title, 0.0, top * size, ABOVE)
        self._put(self.text, (MARGIN - WIDTH / 2) * size, (top - 2.4 * TITLE_SIZE) * size, ABOVE)

    def close(self):
        if self.isOpen:
            self.isOpen = False
            self._setVisible(False)

    def move(self, seconds: float):
        """Has the sheet come in from below."""
        if self.isOpen and self.page and self.wording != words.changes:
            self._write(self.page)
        if self.isOpen and self.picture and self.since <= COMES_IN:
            self.since += seconds
            left = max(0.0, 1.0 - self.since / COMES_IN)
            self._put(self.picture, 0.5, 0.5 - LOW * left * left, 0.4)

    def _put(self, part: kaVel.Entity, x: float, y: float, depth: float):
        part.getComponent('screenSpaceHelper').windowPosition = kaVel.Vec4(x, y, depth, 1)

    def _setVisible(self, visible: bool):
        for part in (self.picture, self.title, self.text):
            if part:
                part.getComponent('graphics2').visible = visible
