"""Lines that tell which key does what: each once, and only who has not found it out by himself.

    Tutorials.teach(map, words.said('teach.walk'), action='forward', learnt=hasWalked, after=8)
"""

from __future__ import annotations

from typing import Callable, NamedTuple

import bindings
import kaVel
import words
from objects.Placing import LevelClock
from objects.things.Drawn import Text, write
from perLevel import PerLevel, levelOf
from saves.Kept import keepPart

COLOR = (0.86, 0.80, 0.66)
SIZE = 0.019
STAYS, FADES = 6.0, 0.8  # seconds; one that is learnt meanwhile goes at once


class _Lesson(NamedTuple):
    text: words.Told
    action: str
    isLearnt: Callable[[], object]
    due: float  # seconds of the level
    isNeeded: Callable[[], object]

    @property
    def name(self) -> str:
        """What it is told apart by, in whatever language."""
        return '%s %s' % (self.action, self.text.key if isinstance(self.text, words.Said) else self.text)


class _Board:
    """The line of a level, low in the middle of the screen, and the lessons that wait for it."""

    def __init__(self, level: kaVel.Coordinator):
        line = Text(level, 'tutorial', at=(0.5, 0.25), size=SIZE, color=(*COLOR, 0), anchor=('H_CENTER', 'V_CENTER'))
        self.graphics = line.getComponent('graphics2')
        self.clock = LevelClock(line)
        self.told: set[str] = set()
        self.line, self.wording = '', words.changes
        self.lessons: list[_Lesson] = []
        self.shown: _Lesson | None = None
        self.until = self.alpha = 0.0
        kaVel.addComponent(line, 'tutorial', 'ScriptComponent', frameCallback=self.doFrame)
        keepPart(level, 'lessons', self.done, self.leaveOut, travels=True)
        kaVel.finishLoad(line)

    def done(self) -> list[str]:
        """The names of the lessons that were shown, or learnt without that."""
        return sorted(self.told - {lesson.name for lesson in self.lessons})

    def leaveOut(self, names: list[str]):
        """Takes lessons for shown."""
        self.told.update(names)
        self.lessons = [lesson for lesson in self.lessons if lesson.name not in names]

    def add(self, lesson: _Lesson):
        if lesson.name not in self.told:
            self.told.add(lesson.name)
            self.lessons.append(lesson)

    def doFrame(self):
        now = self.clock.seconds()
        self.write()
        if not self.shown:
            self.choose(now)
        elif now >= self.until or self.shown.isLearnt():
            self.until = now
            self.fade(-1)
            self.shown = self.shown if self.alpha > 0 else None
            return
        self.fade(1 if self.shown else -1)

    def choose(self, now: float):
        self.lessons = [lesson for lesson in self.lessons if not lesson.isLearnt()]
        due = next((lesson for lesson in self.lessons if now >= lesson.due and lesson.isNeeded()), None)
        if not due:
            return
        self.lessons.remove(due)
        self.shown, self.until = due, now + STAYS
        self.write()

    def write(self):
        """Brings the line into the language, the keys and the device of the moment."""
        line = _line(self.shown) if self.shown else self.line
        if line != self.line or self.wording != words.changes:
            self.line, self.wording = line, words.changes
            write(self.graphics, line, SIZE)

    def fade(self, direction: int):
        alpha = min(1.0, max(0.0, self.alpha + direction * self.clock.frameSeconds() / FADES))
        if alpha != self.alpha:
            self.alpha = alpha
            self.graphics.color = kaVel.Vec4(*COLOR, alpha)


_boards: PerLevel[_Board] = PerLevel()


def teach(anything: kaVel.Object, text: words.Told, action: str = '', learnt: Callable[[], object] = lambda: False,
          after: float = 8.0, needed: Callable[[], object] = lambda: True):
    """Has the level of an object show a line in `after` seconds, when it is needed, unless it has been learnt by then.

    It stays for some seconds, or until it is learnt. The same line is shown once a level.
    """
    board = _boardOf(levelOf(anything))
    board.add(_Lesson(text, action, learnt, board.clock.seconds() + after, needed))


def show(anything: kaVel.Object, text: words.Told, action: str = ''):
    """As `teach`, at once."""
    teach(anything, text, action, after=0.0)


def keyOf(action: str) -> str:
    """What the player presses for an action, as it is told to him; empty for none."""
    return bindings.promptName(action) if action else ''


class Prompt(NamedTuple):
    """The key for an action as a value of a text: what it is by the time at which it is read."""

    action: str

    def __str__(self):
        return keyOf(self.action)

    def __format__(self, form: str):
        return str(self)


def _line(lesson: _Lesson):
    key = keyOf(lesson.action)
    return '%s   %s' % (key, lesson.text) if key else str(lesson.text)


def _boardOf(level: kaVel.Coordinator):
    if level not in _boards:
        _boards[level] = _Board(level)
    return _boards[level]
