"""The values of the settings in this game: what the player chose, what holds now, and the file that keeps it."""

from __future__ import annotations

import difflib
from typing import Any, Callable

import GameConfig
import kaVel
from keptLines import KeptLines
from listeners import Listeners
from settings.Given import ForPlayer
from settings.Kinds import textOf
from settings.Table import BY_NAME, SETTINGS, Setting


def _header() -> list[str]:
    """What a new file says: every setting with its default, as a comment."""
    lines = ['# Settings of Mornal. Take the # from the front of a line and change it; a missing one is as told here.']
    for setting in SETTINGS:
        lines += ['', '# %s: %s.' % (setting.meaning, setting.kind.allowed),
                  '#%s = %s' % (setting.name, textOf(setting.default))]
    return lines + ['']


FILE = KeptLines('settings.txt', _header)

_values: dict[str, Any] = {}
_wasRead = False
_listeners: Listeners[[str]] = Listeners('settings')


def find(name: str) -> Setting:
    """The setting of this name; ValueError that names the nearest one if there is none."""
    try:
        return BY_NAME[name]
    except KeyError:
        near = difflib.get_close_matches(name, BY_NAME, n=1)
        hint = '; did you mean %r?' % near[0] if near else ''
        raise ValueError('no setting %r%s' % (name, hint)) from None


def get(name: str) -> Any:
    """The value of a setting: what the player chose, or the default."""
    setting = find(name)
    _readOnce()
    return _values.get(name, setting.default)


def set(name: str, value: Any) -> None:
    """Gives a setting a value or its text: checked, in force at once, and kept. ValueError if it is not allowed."""
    keep(name, value)
    _putInForce(name)


def keep(name: str, value: Any) -> None:
    """Keeps a value that is in force already; checked as by `set`."""
    hold(name, value)
    if not GameConfig.headless:
        FILE.write(name, textOf(_values[name]))


def show(name: str, value: Any) -> None:
    """Puts a value in force for this game alone; checked as by `set`."""
    hold(name, value)
    _putInForce(name)


def hold(name: str, value: Any) -> None:
    """Has `get` give a value, which is in force already, and keeps it nowhere; checked as by `set`."""
    setting = find(name)
    _readOnce()
    _values[name] = _checked(setting, value if isinstance(value, str) else textOf(value))


def reset(name: str) -> None:
    """Gives a setting its default again, and takes it out of the file."""
    find(name)
    _readOnce()
    _values.pop(name, None)
    if not GameConfig.headless:
        FILE.write(name, None)
    _putInForce(name)


def resetAll() -> None:
    """Gives all settings their defaults again."""
    for setting in SETTINGS:
        if get(setting.name) != setting.default:
            reset(setting.name)


def followTable(before: dict[str, Any]) -> None:
    """Puts in force what the table says otherwise by now, where the player chose nothing."""
    for setting in SETTINGS:
        if before.get(setting.name, setting.default) != setting.default and setting.name not in _values:
            _putInForce(setting.name)


def onChange(function: Callable[[str], object]) -> None:
    """Calls a function with the name of every setting that changes, when its new value is in force.

    What `Listeners` says holds for it.
    """
    _listeners.add(function)


def giveTo(system: Any, className: str) -> None:
    """Gives a system that is about to start all that the player set for it."""
    for setting in SETTINGS:
        if setting.system == className:
            setting.give(system, get(setting.name))


def giveToPlayer(player: Any) -> None:
    """Gives a player who has just been built all that is set for him."""
    for setting in SETTINGS:
        if isinstance(setting.give, ForPlayer):
            setting.give.giveTo(player, get(setting.name))


def path() -> str:
    """Where the settings lie: `mornal/settings.txt` in $XDG_CONFIG_HOME or ~/.config."""
    return FILE.path()


def trouble() -> str:
    """What went wrong with the file lately, for the player; empty when all is well."""
    return FILE.trouble


def _putInForce(name: str) -> None:
    setting = find(name)
    if setting.system:
        setting.give(kaVel.Reflection.getSystemN(setting.system), get(name))
    _listeners.call(name)


def _checked(setting: Setting, text: str) -> Any:
    try:
        return setting.kind.read(text.strip())
    except ValueError:
        shown = text if len(text) <= 80 else text[:80] + '...'
        raise ValueError('%s is %r, but has to be %s' % (setting.name, shown, setting.kind.allowed)) from None


def _readOnce() -> None:
    global _wasRead
    if _wasRead or GameConfig.headless:
        return
    _wasRead = True
    for line in FILE.read():
        if line.name not in BY_NAME:
            continue
        try:
            _values[line.name] = _checked(BY_NAME[line.name], line.text)
        except ValueError as problem:
            kaVel.log('%s:%d: %s. The default is taken.' % (path(), line.number, problem))
