"""What the player's keys come to before his body hears of them: pressed once or held, as he wants it, and his mouse's
buttons as keys.

The body knows keys alone, runs while one is held and crouches at every other press. Where the player wants it otherwise
his keys are heard here, and a key that no keyboard has is pressed in their stead.
"""

from __future__ import annotations

import bindings
import kaVel
import settings
from objects.Placing import onFrame
from perLevel import PerLevel

#: Actions of a player, and the key that the engine knows each of them by.
KEYS = {'forward': 'W', 'back': 'S', 'left': 'A', 'right': 'D', 'run': 'Shift', 'crouch': 'Ctrl', 'use': 'E',
        'flashlight': 'F', 'battery': 'R'}

#: How the body takes the keys of an action, and the key that is pressed for them where the player wants it otherwise.
_OWN_MODE = {'run': ('sprintMode', 'hold', 0x97), 'crouch': ('crouchMode', 'toggle', 0x98)}

#: Actions without a key in the body that are held, too.
_LEANING = ('leanLeft', 'leanRight')

_WALKING = ('forward', 'back', 'left', 'right')

_all: PerLevel[Holding] = PerLevel()


def codesOf(action: str) -> frozenset[int]:
    """Virtual-key codes of an action, with those that stand for its mouse buttons."""
    return bindings.keysOf(action).union(bindings.BUTTON_KEYS[each] for each in bindings.inputsOf(action)
                                         if each in bindings.BUTTONS)


class Holding:
    """Between the keys and one player, as long as his level lives."""

    def __init__(self, level: kaVel.Coordinator, player: kaVel.PlayerComponent):
        self.player = player
        self.input = kaVel.getSystem('InputSystem')
        self.presses: list[tuple[int, bool]] = []  # due at the next frame: a message is not sent within one of its kind
        self.rebind()
        office = kaVel.officeOf(level)
        kaVel.subscribe('KeyDownMessage', self._down, office)
        kaVel.subscribe('KeyUpMessage', self._up, office)
        kaVel.subscribe('MouseDownMessage', self._buttonDown, office)
        kaVel.subscribe('MouseUpMessage', self._buttonUp, office)
        onFrame(kaVel.make('Entity', parent=player.parent, name='holding'), self._press)
        _all[level] = self

    def rebind(self):
        """Gives the body the keys that its actions have now."""
        self.player.freeKeys()
        for action, key in KEYS.items():
            codes = {_OWN_MODE[action][2]} if self._isOtherwise(action) else codesOf(action)
            for code in codes if action != 'use' else bindings.keysOf('use'):
                self.player.bindKey(code, bindings.keyCode(key))
        self.player.useButtons = sum(1 << button for button in bindings.buttonsOf('use'))
        for _, _, standIn in _OWN_MODE.values():
            if self.input.isKeyDown(standIn):
                self.input.keyUp(standIn)

    def _isOtherwise(self, action: str):
        mode = _OWN_MODE.get(action)
        return mode is not None and settings.get(mode[0]) != mode[1]

    def _down(self, message: kaVel.IReflectedThing, key: int):
        if self._isOtherwise('run') and key in codesOf('run'):
            self._turn(_OWN_MODE['run'][2])
        if self._isOtherwise('crouch') and key in codesOf('crouch') and not self.player.isCrouched():
            self._tap(_OWN_MODE['crouch'][2])

    def _up(self, message: kaVel.IReflectedThing, key: int):
        if self._isOtherwise('crouch') and key in codesOf('crouch') and self.player.isCrouched():
            self._tap(_OWN_MODE['crouch'][2])
        standIn = _OWN_MODE['run'][2]
        if self.input.isKeyDown(standIn) and any(key in codesOf(action) for action in _WALKING) and not self._walks():
            self.presses.append((standIn, False))  # who stands still has done with running

    def _walks(self):
        return any(self.input.isKeyDown(code) for action in _WALKING for code in codesOf(action))

    def _turn(self, key: int):
        self.presses.append((key, not self.input.isKeyDown(key)))

    def _tap(self, key: int):
        self.presses += [(key, True), (key, False)]

    def _press(self):
        presses, self.presses = self.presses, []
        for key, down in presses:
            (self.input.keyDown if down else self.input.keyUp)(key)

    def _buttonDown(self, message: kaVel.IReflectedThing, button: int, x: float, y: float):
        if self._isHeld(button):
            self.input.keyDown(_keyOfButton(button))

    def _buttonUp(self, message: kaVel.IReflectedThing, button: int, x: float, y: float):
        if self.input.isKeyDown(_keyOfButton(button)):
            self.input.keyUp(_keyOfButton(button))

    def _isHeld(self, button: int):
        """Whether a button stands for what the body knows a key for, but for using, which it knows buttons for."""
        return any(button in bindings.buttonsOf(action) for action in (*KEYS, *_LEANING) if action != 'use')


def _keyOfButton(button: int) -> int:
    return next((bindings.BUTTON_KEYS[name] for name, number in bindings.BUTTONS.items() if number == button), 0)


def _rebindAll():
    for level, holding in list(_all.items()):
        if level and holding.player:
            holding.rebind()


def _onSetting(name: str):
    if name in (mode for mode, _, _ in _OWN_MODE.values()):
        _rebindAll()


bindings.onChange(_rebindAll)
settings.onChange(_onSetting)
