"""How much life the player has left, who took it, and what happens when there is none.

    life = lifeOf(coordinator)
    life.hurt(20, words.said('death.damp'))
    life.onDeath(lambda cause: show(cause))
"""

from __future__ import annotations

import math
from typing import Callable

import kaVel
import words
from objects.Placing import LevelClock, onFrame
from perLevel import PerLevel
from saves.Kept import keepPart

WHOLE = 100.0
#: Life comes back by itself up to this, that much a second, once nothing has hurt for so many seconds.
RECOVERED, RECOVERY, REST = 70.0, 1.5, 6.0
#: Seconds between two cries.
CRY = 0.9

_lives: PerLevel[Life] = PerLevel()


class Life:
    """The player's life in one level: 100 is whole, 0 is death, which comes once until `restore`."""

    def __init__(self, coordinator: kaVel.Coordinator):
        self.coordinator = coordinator
        self.value = WHOLE
        self.cause: words.Told = ''  # of the last hurt: after death what the player died of
        self.isDead = False
        self._onDeath: list[Callable[[words.Told], object]] = []
        entity = kaVel.make('Entity', parent=coordinator, name='life')
        self._clock = LevelClock(entity)
        self._hurtAt, self._criedAt = -math.inf, -math.inf
        onFrame(entity, self._recover)
        # Who leaves when he is dead comes back as from any death.
        keepPart(coordinator, 'life', lambda: WHOLE if self.isDead else self.value, self._become, travels=True)

    def hurt(self, amount: float, cause: words.Told):
        """Takes so much life; `cause` is a sentence that tells the player what did it."""
        if self.isDead or not amount > 0:
            return
        now = self._clock.seconds()
        self.value, self.cause, self._hurtAt = max(self.value - amount, 0.0), cause, now
        if now >= self._criedAt + CRY:
            self._criedAt = now
            self._cry()
        if self.value <= 0:
            self._die()

    def onDeath(self, function: Callable[[words.Told], object]):
        """Has a function called with the cause when the player dies; in the order in which they were given."""
        self._onDeath.append(function)

    def restore(self):
        """Makes the player whole, as after a death."""
        self.value, self.cause, self.isDead = WHOLE, '', False
        self._hurtAt = -math.inf

    def _become(self, value: float):
        self.value = min(max(float(value), 1.0), WHOLE)

    def _cry(self):
        player = self.coordinator.getChild('Player')
        voice = player.getComponent('sound') if player else None
        if voice:
            if not voice.hasSoundEffect('Hurt'):
                voice.addSoundEffect('Hurt')
            voice.playSoundEffect('Hurt')

    def _die(self):
        self.isDead = True
        kaVel.log('The player dies: %s.' % str(self.cause).rstrip('.'))
        player = self.coordinator.getChild('Player')
        component = player.getComponent('player') if player else None
        if component and component.deathFunc:
            component.deathFunc()
        for function in list(self._onDeath):
            function(self.cause)

    def _recover(self):
        if not self.isDead and self.value < RECOVERED and self._clock.seconds() > self._hurtAt + REST:
            self.value = min(self.value + RECOVERY * self._clock.frameSeconds(), RECOVERED)


def lifeOf(coordinator: kaVel.Coordinator) -> Life:
    """The life of a level's player, whole when it is first asked for."""
    if coordinator not in _lives:
        _lives[coordinator] = Life(coordinator)
    return _lives[coordinator]
