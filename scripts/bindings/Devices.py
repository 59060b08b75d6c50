"""Which device the player used last, and what a prompt calls an action on it."""

from __future__ import annotations

from typing import Any, Callable

from bindings.Bound import inputsOf, padOf
from bindings.Table import PAD_KEYS
from listeners import Listeners

KEYS_AND_MOUSE, PAD = 'keys', 'pad'

#: Part of its way from which a stick or a trigger counts as used: worn ones rest a little off the middle.
_USED = 0.5

#: Way of the mouse from which it counts as used, parts of the window: a desk shakes.
_MOVED = 0.004

_device = KEYS_AND_MOUSE
_listeners: Listeners[[str]] = Listeners('devices')


def device() -> str:
    """What was used last: 'keys' for keyboard and mouse, or 'pad'."""
    return _device


def onDeviceChange(function: Callable[[str], object]) -> None:
    """Calls a function with 'keys' or 'pad' whenever the player takes up the other one, as `Listeners` says."""
    _listeners.add(function)


def promptOf(action: str) -> str:
    """Name of what the player presses for an action on the device that he used last; empty for none."""
    button, inputs = padOf(action), inputsOf(action)
    if button and (_device == PAD or not inputs):
        return button
    return inputs[0] if inputs else ''


def promptName(action: str) -> str:
    """What `promptOf` is called in the player's language."""
    import words  # which needs kaVel, which needs this
    prompt = promptOf(action)
    if not prompt:
        return ''
    return words.padName(prompt) if prompt not in inputsOf(action) else words.keyName(prompt)


def attend() -> None:
    """Begins to listen to the devices."""
    import kaVel
    kaVel.subscribe('KeyDownMessage', _onKey)
    kaVel.subscribe('MouseDownMessage', lambda message, button, x, y: _use(KEYS_AND_MOUSE))
    kaVel.subscribe('MouseMove', _onMove)
    kaVel.subscribe('ButtonPressed', lambda message, button, pad: _use(PAD))
    for stick in ('LeftJoyPos', 'RightJoyPos'):
        kaVel.subscribe(stick, lambda message, x, y, pad: _use(PAD) if max(abs(x), abs(y)) > _USED else None)
    for trigger in ('LeftTriggerPos', 'RightTriggerPos'):
        kaVel.subscribe(trigger, lambda message, way, pad: _use(PAD) if way > _USED else None)


def _onKey(message: Any, key: int) -> None:
    if key not in PAD_KEYS.values():
        _use(KEYS_AND_MOUSE)


def _onMove(message: Any, x: float, y: float) -> None:
    if abs(x) + abs(y) > _MOVED:
        _use(KEYS_AND_MOUSE)


def _use(what: str) -> None:
    global _device
    if what == _device:
        return
    _device = what
    _listeners.call(what)
