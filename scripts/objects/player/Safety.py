"""Dying and coming back, and the end of a level.

    safety = Safety(coordinator, player, Music(coordinator))
    safety.place(map, 'landing', at=(12, 3, 15), size=(2, 2), turn=90)
    lifeOf(coordinator).hurt(100, words.said('death.damp'))

Who dies is told why and stands again where he was last safe; what he opened and took stays so.
"""

from __future__ import annotations

from typing import Any, Callable, Sequence

import kaVel
import saves
import words
from objects import Sequences
from objects.Placing import LevelClock, Triple
from objects.player.Hands import handsOf
from objects.player.Life import lifeOf
from objects.player.Nerves import nervesOf
from objects.player.Visitor import visitorOf
from objects.Sequences import Until
from objects.sound.Music import Music
from objects.things.Drawn import Text, write
from objects.Triggers import Trigger
from saves import Moments
from saves.Kept import keepPart
from screens import Screens

#: What the picture's fade grows from: it goes by a factor.
FIRST_OF_FADE = 0.004
SIZE = 0.022
READ = 3.5  # seconds that the cause is shown
LINGER = 12.0  # seconds after which one who presses nothing is led on from the end
BEHIND_THE_END = 'Dawn'
COLOR = (0.80, 0.74, 0.62)


class Safety:
    """Where the player of a level comes back to, and what happens until then."""

    def __init__(self, level: kaVel.Coordinator, player: kaVel.Entity, music: Music):
        self.level, self.player, self.music = level, player, music
        self.body = player.getComponent('physics')
        self.mind = player.getComponent('player')
        self.picture = level.getManager('graphics2')
        self.line = Line(level, 'fate')
        at, turn, _ = visitorOf(level).standing()
        self.stand = at, turn
        self.deaths = 0
        self.isOver = False
        self._returns: list[Callable[[], object]] = []
        lifeOf(level).onDeath(self.die)
        keepPart(level, 'safety', self._told, self._become)
        Moments.shelter(level, lambda: (self.stand[0], self.stand[1], 0.0))

    def _told(self) -> dict[str, Any]:
        return {'at': list(self.stand[0]), 'turn': self.stand[1], 'deaths': self.deaths}

    def _become(self, told: dict[str, Any]):
        x, y, z = told['at']
        self.stand, self.deaths = ((x, y, z), told['turn']), told['deaths']

    def place(self, map: kaVel.MapRootEntity, name: str, at: Triple, size: tuple[float, float] = (1.5, 1.5),
              turn: float = 0.0, stand: Triple | None = None):
        """An area that the player comes back to once he has been there; he stands on `stand`, or on its middle.

        The game is saved when he is there for the first time.
        """
        def arrive():
            self.stand = stand or at, turn

        def reach():
            arrive()
            saves.atSafePlace()

        return Trigger(map, name, at=at, size=size, enter=reach, again=arrive)

    def onReturn(self, function: Callable[[], object]):
        """Has a function called each time the player comes back, before he sees anything."""
        self._returns.append(function)

    def die(self, cause: words.Told = ''):
        """Lets the player die, with a line that tells why; nothing happens to one who is dead."""
        if self.isOver:
            return
        self.isOver = True
        self.deaths += 1
        Moments.forbid(self.level, 'saves.no.dead', mayLeave=True)
        hands = handsOf(self.player)
        if hands:
            hands.letGo()
        self.mind.useInput = False
        self.music.play('')
        self.music.sting('StingDeath')
        self.picture.dissolveAmount = max(FIRST_OF_FADE, self.picture.dissolveAmount)
        self.body.dead = True
        choice = Choice(self.level)
        Sequences.play(self.level, Until(lambda: not self.body.dead, atMost=6), 0.6, lambda: self.line.show(cause),
                       choice.offer, Until(choice.isMade), self.line.hide, choice.end, 1.0, self.comeBack)

    def comeBack(self):
        """Stands the player where he was last safe."""
        at, turn = self.stand
        visitorOf(self.level).goTo(at, turn)
        kaVel.configure(self.body, dead=False, invincibilityTime=3.0)
        lifeOf(self.level).restore()
        nerves = nervesOf(self.level)
        if nerves:
            nerves.soothe()
        for function in self._returns:
            function()
        self.body.opening = True
        self.mind.useInput = True
        self.isOver = False
        Moments.allow(self.level)

    def end(self, lines: Sequence[words.Told], again: words.Told):
        """Ends the level well: the picture goes, some sentences come one after another, and how to go on."""
        if self.isOver:
            return
        self.isOver = True
        Moments.forbid(self.level, 'saves.no.over')
        self.mind.useInput = False
        kaVel.log('The level is won: %s' % lines[0])
        self.music.play('EndMusic')
        kaVel.interpolate(self.picture, 'dissolveAmount', 1.0, 3.0)
        texts = [Line(self.level, 'ending%d' % number, height=0.60 - 0.07 * number) for number in range(len(lines))]
        steps: list[Sequences.Step] = [3.5]
        for text, sentence in zip(texts, lines):
            steps += [lambda text=text, sentence=sentence: text.show(sentence), 3.5]
        onward = Line(self.level, 'again', height=0.2)
        Sequences.play(self.level, *steps, lambda: onward.show(again), self.offerTheWayOn, LINGER, self.goOn)

    def offerTheWayOn(self):
        """From now on a key leads on at once."""
        for action in ('use', 'quit'):
            kaVel.onKey(self.level, action, self.goOn)

    def goOn(self):
        """Goes on to what comes behind the end."""
        kaVel.getSystem('GameLoopSystem').queueLoadLevel(BEHIND_THE_END)


class Choice:
    """What one may do who has died; he comes back by himself where he does nothing for as long as the cause is read."""

    #: Input that tells that somebody is there who chooses.
    TOUCHED_BY = ('KeyDownMessage', 'MouseDownMessage', 'MouseMove', 'ButtonPressed')

    def __init__(self, level: kaVel.Coordinator):
        self.level, self.clock = level, LevelClock(level.getChild('Player'))
        self.since, self.isTouched, self.comesBack = 0.0, False, False

    def offer(self):
        Screens.open(self.level, 'Death', comeBack=self.comeBack)
        self.since = self.clock.seconds()
        for message in self.TOUCHED_BY:
            kaVel.subscribe(message, self.touch, kaVel.officeOf(self.level))

    def touch(self, *_: object):
        self.isTouched = True

    def comeBack(self):
        self.comesBack = True

    def isMade(self) -> bool:
        isLate = self.clock.seconds() >= self.since + READ
        return self.comesBack or isLate and not (self.isTouched and Screens.isOpen(self.level, 'Death'))

    def end(self):
        while Screens.isOpen(self.level, 'Death'):
            Screens.close(self.level)


class Line:
    """A line of quiet text over everything, which comes and goes slowly."""

    def __init__(self, level: kaVel.Coordinator, name: str, height: float = 0.5):
        text = Text(level, name, at=(0.5, height), size=SIZE, color=(*COLOR, 0), anchor=('H_CENTER', 'V_CENTER'),
                    wrapWidth=0.6, align='TA_CENTER', depth=0.2)
        self.graphics = text.getComponent('graphics2')
        self.told: words.Told = ''
        self.wording = words.changes
        kaVel.addComponent(text, 'hud', 'ScriptComponent', frameCallback=self.doFrame)
        kaVel.finishLoad(text)

    def show(self, text: words.Told):
        self.told = text
        self._write()
        kaVel.interpolate(self.graphics, 'color', kaVel.Vec4(*COLOR, 1), 1.0)

    def _write(self):
        self.wording = words.changes
        write(self.graphics, self.told, SIZE)

    def doFrame(self):
        if self.wording != words.changes:
            self._write()

    def hide(self):
        kaVel.interpolate(self.graphics, 'color', kaVel.Vec4(*COLOR, 0), 0.8)
