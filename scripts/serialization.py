"""Settings of the systems. The engine calls `configureSystem` once for each, before the system starts.

SETTINGS is the game's own table: a line there sets a property of every run. What a player changes lies in the file
that `playerSettingsPath` names and wins over the table; what a headless run needs wins over both.
"""

import json
import os

import GameConfig
import kaVel

#: Class of the system -> its properties, set in this order.
SETTINGS = {
    'GlobalConfigSystem': {
        'defaultSceneAmbient': 0.2,
    },
    'GameLoopSystem': {
        'frameLimit': GameConfig.frames,
        'unattended': GameConfig.headless or GameConfig.frames > 0,
    },
    'InputSystem': {
        'replayFile': GameConfig.replay,
        'recordFile': GameConfig.record,
    },
}

#: What the player's file may set.
PLAYER_MAY_SET = {
    'GraphicsSystem2': ('gamma',),
    'WindowSystem2': ('fullScreen', 'displayMode'),
}


def configureSystem(system):
    """Sets the properties of a system that was just made and is about to start."""
    className = system._getType().name
    kaVel.configure(system, **SETTINGS.get(className, {}))
    for name, value in playerSettings(className).items():
        _setFromPlayer(system, className, name, value)
    if GameConfig.headless and className in HEADLESS:
        HEADLESS[className](system)


def playerSettingsPath():
    """Where a player's settings lie: the per-user folder of the platform."""
    folder = os.environ.get('XDG_CONFIG_HOME') or os.path.expanduser('~/.config')
    return os.path.join(folder, 'mornal', 'settings.json')


def playerSettings(className):
    """What the player set for a system; a broken file is logged and counts as empty. Headless runs have no player."""
    if GameConfig.headless or className not in PLAYER_MAY_SET:
        return {}
    path = playerSettingsPath()
    try:
        with open(path, encoding='utf-8') as file:
            settings = json.load(file)[className]
        return {name: settings[name] for name in PLAYER_MAY_SET[className] if name in settings}
    except (FileNotFoundError, KeyError):
        return {}
    except (OSError, ValueError, TypeError) as problem:
        kaVel.log('%s: ignored, since it cannot be read: %s. Mend or delete the file.' % (path, problem))
        return {}


def _setFromPlayer(system, className, name, value):
    try:
        setattr(system, name, value)
    except (RuntimeError, AttributeError, TypeError, ValueError) as problem:
        kaVel.log('%s: %s.%s = %r ignored: %s' % (playerSettingsPath(), className, name, value, problem))


def _fixedTime(timeSystem):
    source = kaVel.make('BSTimeSource', parent=timeSystem, name='fixedTime', frameRate=GameConfig.fixedFrameRate)
    timeSystem.setSource(source)


def _fixedWindow(windowSystem):
    windowSystem.setWindowedSize(*GameConfig.headlessSize)


#: What a headless run changes: class of the system -> function of the system.
HEADLESS = {
    'TimeSystem': _fixedTime,
    'WindowSystem2': _fixedWindow,
}
