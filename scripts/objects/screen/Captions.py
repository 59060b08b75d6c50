"""Captions: what is heard, written low on the screen, with the side that it comes from.

Which sounds have one, and how loud they must be at the ears, stands in the project of sounds; what is written stands in
the tables of words under "caption" and the event's name. One's own steps are not told. How captions look, and whether
there are any, is the player's (`settings`).
"""

from __future__ import annotations

import kaVel
import settings
import words
from objects.Placing import LevelClock
from objects.things.Drawn import Picture, Text
from perLevel import PerLevel

LINES = 3
STAYS, FADES = 3.2, 0.6  # seconds
SIZE = 0.0185            # em, share of the window's longer side, by the factor 1
STEP = 1.75              # from line to line, in ems
LOWEST = 0.045           # of the lowest line's middle, share of the window's height
COLOR = (0.90, 0.86, 0.76)
DIRECTED = 0.45          # how far from straight ahead a sound is before its side is told, part of 1
OWN_STEP = 2.2           # metres: steps nearer than that are the player's own
LOOKED = 8               # frames from one look at the directions to the next


class _Line:
    """A place for one caption."""

    def __init__(self, level: kaVel.Coordinator, number: int):
        name = 'caption%d' % number
        self.number = number
        self.shade = Picture(level, name + 'Shade', picture='shade60', at=(0.5, 0.1), size=(0.1, 0.02), depth=0.47)
        self.text = Text(level, name, at=(0.5, 0.1), color=(*COLOR, 0), anchor=('H_CENTER', 'V_CENTER'), depth=0.45)
        self.graphics, self.back = self.text.getComponent('graphics2'), self.shade.getComponent('graphics2')
        self.back.visible = False

    def show(self, written: str, alpha: float):
        window = kaVel.getSystem('WindowSystem2')
        longer = max(window.width, window.height)
        size = words.fontSize(SIZE * settings.get('captionSize')) * min(1.0, window.height * 16 / 9 / longer)
        height = STEP * size
        y = LOWEST + (self.number + 0.5) * height * longer / window.height
        kaVel.configure(self.graphics, text=written, fontSize=size, fontName=words.font(),
                        color=kaVel.Vec4(*COLOR, alpha))
        shade = round(settings.get('captionBackground') * 5) * 20
        self.back.visible = bool(shade and written and alpha > 0.4)
        if self.back.visible:
            self.back.textureName = 'shade%d' % shade
            self.shade.getComponent('transform').scale = kaVel.Vec4(self.graphics.width + 1.2 * size, height, 1, 0)
        for part, depth in ((self.text, 0.45), (self.shade, 0.47)):
            part.getComponent('screenSpaceHelper').windowPosition = kaVel.Vec4(0.5, y, depth, 1)

    def hide(self):
        self.graphics.text = ''
        self.back.visible = False


class _Told:
    """A caption that is shown: the event, where it is heard from, and since when."""

    def __init__(self, event: str, caption: str, direction: kaVel.Vec4, now: float):
        self.event, self.caption, self.direction, self.since = event, caption, direction, now

    def written(self) -> str:
        key = 'caption.' + self.event
        text = words.text(key) if words.has(key) else self.caption
        side = _side(self.direction) if settings.get('captionDirection') else ''
        return words.text('caption.side.' + side, caption=text) if side else text


class Captions:
    """The captions of one level."""

    def __init__(self, level: kaVel.Coordinator):
        self.level = level
        self.lines = [_Line(level, number) for number in range(LINES)]
        self.told: list[_Told] = []
        self.shown = 0
        self.frame = 0
        self.clock = LevelClock(self.lines[0].text)
        kaVel.subscribe('SoundHeardMessage', self._heard, kaVel.officeOf(level))
        kaVel.addComponent(self.lines[0].text, 'hud', 'ScriptComponent', frameCallback=self.doFrame)

    def _heard(self, message: kaVel.IReflectedThing, caption: str, direction: kaVel.Vec4, loudness: float):
        if not self.level or not settings.get('captions'):
            return
        event = next((sound.name for sound in self._sounds() if sound.caption == caption), '')
        if _isOwnStep(event, direction.w):
            return
        now = self.clock.seconds()
        known = next((told for told in self.told if told.event == event), None)
        if known:
            known.since, known.direction = now, direction
            return
        self.told.append(_Told(event, caption, direction, now))
        del self.told[:-LINES]

    def _sounds(self) -> list[kaVel.HeardSound]:
        return self.level.getManager('sound').heardSounds

    def doFrame(self):
        now = self.clock.seconds()
        self.told = [told for told in self.told if now - told.since < STAYS + FADES and settings.get('captions')]
        if not self.told and not self.shown:
            return
        self.frame += 1
        if self.told and self.frame % LOOKED == 0:
            self._follow()
        for line, told in zip(self.lines, reversed(self.told)):
            line.show(told.written(), min(1.0, max(0.0, 1.0 - (now - told.since - STAYS) / FADES)))
        for line in self.lines[len(self.told):self.shown]:
            line.hide()
        self.shown = len(self.told)

    def _follow(self):
        """Turns what is still heard with the head."""
        heard = {sound.name: sound.direction for sound in self._sounds()}
        for told in self.told:
            told.direction = heard.get(told.event, told.direction)


_captions: PerLevel[Captions] = PerLevel()


def attend(level: kaVel.Coordinator):
    """Gives a level captions, which it shows where the player wants some."""
    if level not in _captions:
        _captions[level] = Captions(level)


def _isOwnStep(event: str, distance: float) -> bool:
    return event.startswith('Step') and distance < OWN_STEP


def _side(direction: kaVel.Vec4) -> str:
    """The side that a direction from the ears is on; empty for ahead, and for what has no place."""
    if direction.x == direction.y == direction.z == 0 or abs(direction.x) <= DIRECTED and direction.z > 0:
        return ''
    if abs(direction.x) < abs(direction.z) and direction.z < 0:
        return 'behind'
    return 'left' if direction.x < 0 else 'right'
