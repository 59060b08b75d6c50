"""What is bound to what in this game: the table, and what the player wants otherwise, which a file of his keeps."""

from __future__ import annotations

import difflib
import functools
from typing import Callable, Iterable

from bindings.Table import ACTIONS, BUTTONS, CONTEXTS, KEYS, PAD, PAD_BUTTONS, PAD_KEYS, TOGETHER
from keptLines import KeptLines
from listeners import Listeners

#: What a line of the file begins with that binds a pad's button, and what stands for an action without input.
_PAD_LINE, _NONE = 'pad.', 'none'

_inputs: dict[str, tuple[str, ...]] = {}
_pads: dict[str, str] = {}
_wasRead = False
_listeners: Listeners[[]] = Listeners('bindings')


def _header() -> list[str]:
    return ['# Keys and buttons of Mornal that differ from the usual ones, as in: forward = W, Up', '']


FILE = KeptLines('bindings.txt', _header)


def inputsOf(action: str) -> tuple[str, ...]:
    """Names of an action's keys and mouse buttons; KeyError that names the nearest action for one that is none."""
    _readOnce()
    return _inputs[action] if action in _inputs else _usual(action)


def padOf(action: str) -> str:
    """Name of an action's button of a pad; empty for none."""
    _readOnce()
    return _pads.get(action, PAD.get(action, ''))


@functools.cache
def keysOf(action: str) -> frozenset[int]:
    """Virtual-key codes of an action, its button of a pad among them; KeyError as `inputsOf`."""
    codes = [keyCode(each, action) for each in inputsOf(action) if each not in BUTTONS]
    if padOf(action):
        codes.append(_padKey(padOf(action)))
    return frozenset(codes)


@functools.cache
def buttonsOf(action: str) -> frozenset[int]:
    """Numbers of an action's mouse buttons; KeyError as `inputsOf`."""
    return frozenset(BUTTONS[each] for each in inputsOf(action) if each in BUTTONS)


def padKeys() -> dict[int, int]:
    """Bit of a pad's button -> virtual-key code that it presses; ValueError where a button is bound that no pad has."""
    for action in {*PAD, *_pads}:
        if padOf(action):
            _padKey(padOf(action))
    return {bit: PAD_KEYS[button] for button, bit in PAD_BUTTONS.items()}


def keyCode(name: str, action: str = '') -> int:
    """Virtual-key code of a letter, a digit or a key of `KEYS`; ValueError for anything else."""
    if name in KEYS:
        return KEYS[name]
    if len(name) == 1 and (name in '0123456789' or 'A' <= name <= 'Z'):
        return ord(name)
    raise ValueError('bindings.ACTIONS[%r] has %r, which is no key; a letter or digit, or one of: %s'
                     % (action, name, ', '.join((*KEYS, *BUTTONS))))


def keyNamed(code: int) -> str:
    """Name of the key with a virtual-key code; empty for one that has none here."""
    if code < 128 and (chr(code).isdigit() or 'A' <= chr(code) <= 'Z'):
        return chr(code)
    return next((name for name, known in KEYS.items() if known == code), '')


def bind(action: str, inputs: Iterable[str]) -> None:
    """Gives an action other keys and mouse buttons, at once and in the games to come; ValueError for what is none."""
    _usual(action)
    wanted = tuple(dict.fromkeys(inputs))
    for each in wanted:
        _checkInput(each, action)
    _inputs[action] = wanted
    _keep(action, ', '.join(wanted) or _NONE)


def bindPad(action: str, button: str) -> None:
    """Gives an action another button of the pad, or none with an empty name; as `bind`."""
    _usual(action)
    if button:
        _padKey(button)
    _pads[action] = button
    _keep(_PAD_LINE + action, button or _NONE)


def reset(action: str) -> None:
    """Gives an action its usual inputs again."""
    wasBound, hadPad = _inputs.pop(action, None), _pads.pop(action, None)
    if wasBound is not None:
        _keep(action, None)
    if hadPad is not None:
        _keep(_PAD_LINE + action, None)


def resetAll() -> None:
    """Gives all actions their usual inputs again."""
    for action in {*_inputs, *_pads}:
        reset(action)


def followTable() -> None:
    """Goes by what the table says by now."""
    keysOf.cache_clear()
    buttonsOf.cache_clear()
    _listeners.call()


def isUsual(action: str) -> bool:
    """Whether an action has its usual inputs."""
    return inputsOf(action) == _usual(action) and padOf(action) == PAD.get(action, '')


def conflicts(action: str) -> dict[str, list[str]]:
    """Inputs of an action that others have, too, where both are listened to: input -> those actions."""
    found: dict[str, list[str]] = {}
    for other in ACTIONS:
        if other == action or other in TOGETHER or action in TOGETHER or not _meet(action, other):
            continue
        common = [each for each in inputsOf(action) if each in inputsOf(other)]
        common += [padOf(action)] if padOf(action) and padOf(action) == padOf(other) else []
        for each in common:
            found.setdefault(each, []).append(other)
    return found


def onChange(function: Callable[[], object]) -> None:
    """Calls a function whenever something was bound otherwise; what `Listeners` says holds for it."""
    _listeners.add(function)


def trouble() -> str:
    """What went wrong with the file lately, for the player; empty when all is well."""
    return FILE.trouble


def _meet(one: str, other: str) -> bool:
    contexts = [{context for context, actions in CONTEXTS.items() if action in actions} for action in (one, other)]
    return not contexts[0] or not contexts[1] or bool(contexts[0] & contexts[1])


def _usual(action: str) -> tuple[str, ...]:
    try:
        return ACTIONS[action]
    except KeyError:
        near = difflib.get_close_matches(action, ACTIONS, n=1)
        hint = '; did you mean %r?' % near[0] if near else ''
        raise KeyError('no action %r in bindings.ACTIONS%s' % (action, hint)) from None


def _checkInput(name: str, action: str) -> None:
    if name not in BUTTONS:
        keyCode(name, action)


def _padKey(button: str) -> int:
    try:
        return PAD_KEYS[button]
    except KeyError:
        raise ValueError('bindings.PAD has %r, which is no button of a pad; those are: %s'
                         % (button, ', '.join(PAD_BUTTONS))) from None


def _keep(name: str, text: str | None) -> None:
    import GameConfig  # which kaVel needs, and kaVel needs this
    keysOf.cache_clear()
    buttonsOf.cache_clear()
    if not GameConfig.headless:
        FILE.write(name, text)
    _listeners.call()


def _readOnce() -> None:
    global _wasRead
    if _wasRead:
        return
    _wasRead = True
    import GameConfig
    import kaVel
    if GameConfig.headless:
        return
    for line in FILE.read():
        try:
            _take(line.name, '' if line.text == _NONE else line.text)
        except ValueError as problem:
            kaVel.log('%s:%d: %s. The usual inputs are taken.' % (FILE.path(), line.number, problem))


def _take(name: str, text: str) -> None:
    """Takes over a line of the file; one of an action that there is not is left alone."""
    if name.startswith(_PAD_LINE):
        if name[len(_PAD_LINE):] in ACTIONS:
            if text:
                _padKey(text)
            _pads[name[len(_PAD_LINE):]] = text
    elif name in ACTIONS:
        wanted = tuple(each.strip() for each in text.split(',') if each.strip())
        for each in wanted:
            _checkInput(each, name)
        _inputs[name] = wanted
