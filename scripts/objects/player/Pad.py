"""The buttons of a game pad, which press the keys of actions, and its rumble. Sticks are the player's own affair."""

from __future__ import annotations

import bindings
import kaVel
import settings
from objects.Placing import LevelClock
from perLevel import PerLevel

PLAYER = 0       # whose pad it is
PULLED = 0.35    # part of a trigger's way from which it counts as pressed
HARD = 3.0       # metres a second downwards that a landing is felt by

_pads: PerLevel[Pad] = PerLevel()


class Pad:
    """Presses the keys that the buttons of the first pad stand for, as long as its level lives, and shakes it."""

    def __init__(self, player: kaVel.Entity):
        self.body = player.getComponent('physics')
        self.input = kaVel.getSystem('InputSystem')
        self.keys = bindings.padKeys()
        self.told = self.down = 0   # bits: of this frame so far, of the frame before
        self.shaking = 0.0  # seconds left
        self.landings = 0
        self.clock = LevelClock(player)
        office = kaVel.officeOf(player)
        kaVel.subscribe('ButtonPressed', self.notePressed, office)
        kaVel.subscribe('LeftTriggerPos', self.noteLeftTrigger, office)
        kaVel.subscribe('RightTriggerPos', self.noteRightTrigger, office)
        # Before the player's own step, and in a paused level, too.
        hands = kaVel.make('Entity', parent=player, name='pad')
        kaVel.addComponent(hands, 'cursor', 'ScriptComponent', frameCallback=self.doFrame)

    def notePressed(self, message: kaVel.IReflectedThing, button: int, pad: int):
        if pad == PLAYER:
            self.told |= button

    def noteLeftTrigger(self, message: kaVel.IReflectedThing, position: float, pad: int):
        self.noteTrigger('Left trigger', position, pad)

    def noteRightTrigger(self, message: kaVel.IReflectedThing, position: float, pad: int):
        self.noteTrigger('Right trigger', position, pad)

    def noteTrigger(self, name: str, position: float, pad: int):
        if pad == PLAYER and position > PULLED:
            self.told |= bindings.PAD_BUTTONS[name]

    def doFrame(self):
        now, before, self.down, self.told = self.told, self.down, self.told, 0
        for bit, key in self.keys.items():
            if now & ~before & bit:
                self.input.keyDown(key)
            elif before & ~now & bit:
                self.input.keyUp(key)
        self.feelLandings()
        self.stopInTime()

    def feelLandings(self):
        if not self.body:
            return
        landings = getattr(self.body, 'landings', 0)
        if landings != self.landings and self.landings and self.body.landingSpeed > HARD:
            self.shake(min(1.0, self.body.landingSpeed / 8.0), 0.18)
        self.landings = landings

    def shake(self, strength: float, seconds: float):
        """Shakes the pad, 0 to 1, for some seconds of the level's time, if the player wants it so."""
        strength *= settings.get('rumble')
        if strength > 0:
            self.shaking = seconds
            self.input.shakePad(PLAYER, strength)

    def stopInTime(self):
        if self.shaking <= 0.0:
            return
        self.shaking -= self.clock.frameSeconds()
        if self.shaking <= 0.0:
            self.input.shakePad(PLAYER, 0.0)


def pad(player: kaVel.Entity):
    """Lets the first pad play the player of a level."""
    _pads[player.getAncestorOfType(kaVel.Reflection.Coordinator)] = Pad(player)


def shakePad(inLevel: kaVel.Object, strength: float, seconds: float):
    """Shakes the pad of a level's player; nothing happens without one."""
    level = inLevel.getAncestorOfType(kaVel.Reflection.Coordinator)
    if level in _pads:
        _pads[level].shake(strength, seconds)
