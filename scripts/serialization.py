"""Settings of the systems. The engine calls `configureSystem` once for each, before the system starts.

SETTINGS is the game's own table: a line there sets a property of every run. What a player chose, see `settings`, wins
over it; a headless run has no player, and what it needs wins over the table.
"""

from __future__ import annotations

from typing import Any

import editing
import GameConfig
import inspecting
import kaVel
import mods
import settings
import userFolders
from reports import Keeping
from reports.Playing import Played, configured

#: Class of the system -> its properties, set in this order.
SETTINGS = {
    'GlobalConfigSystem': {
        'defaultSceneAmbient': 0.2,
        'consoleEnabled': True,
    },
    'GameLoopSystem': {
        'longestFrame': 0.1,
        'frameLimit': GameConfig.frames,
        'unattended': GameConfig.headless or GameConfig.frames > 0,
    },
    'ConsoleSystem': {
        'historyFile': '' if GameConfig.headless else userFolders.file('state', 'consoleHistory'),
    },
    'SoundSystem': {
        'overlays': mods.soundFolders(),
    },
    'TweakSystem': {
        'keptFile': '' if GameConfig.headless else userFolders.file('config', 'tweakBars'),
        'teller': inspecting.tell,
        'edited': editing.edited,
        'font': '..\\assets\\fonts\\Andika-Regular.ttf',
    },
    'InputSystem': {
        'replayFile': GameConfig.played.input if GameConfig.played else GameConfig.replay,
        'runFile': Keeping.inputFile(),
        'recordFile': GameConfig.record,
    },
    'FrameMeter': {
        'file': GameConfig.meter,
    },
    'StateDigest': {
        'recordFile': GameConfig.digest,
        'dumpFile': GameConfig.dump,
    },
}


def configureSystem(system: kaVel.System):
    """Sets the properties of a system that was just made and is about to start."""
    className = system._getType().name
    kaVel.configure(system, **SETTINGS.get(className, {}))
    if not GameConfig.headless:
        settings.giveTo(system, className)
    elif className in HEADLESS:
        HEADLESS[className](system)
    if GameConfig.played:
        _configurePlayed(system, className, GameConfig.played)


def _configurePlayed(system: Any, className: str, played: Played):
    """Sets what is otherwise while a report is played: time and window are those of its run."""
    kaVel.configure(system, **configured(className, played))
    if className == 'TimeSystem':
        system.setSource(kaVel.make('PlayedTimeSource', parent=system, name='playedTime', tickRate=played.clock))
    elif className == 'WindowSystem2':
        system.setPlayedSize(*played.size)


def _fixedTime(timeSystem: kaVel.TimeSystem):
    source = kaVel.make('BSTimeSource', parent=timeSystem, name='fixedTime', frameRate=GameConfig.fixedFrameRate)
    timeSystem.setSource(source)


def _fixedWindow(windowSystem: kaVel.WindowSystem2):
    windowSystem.setWindowedSize(*GameConfig.headlessSize)


def _unheardSound(soundSystem: kaVel.SoundSystem):
    kaVel.configure(soundSystem, offline=True, recordFile=GameConfig.sound)


def _drawnOrNot(graphicsSystem: kaVel.GraphicsSystem2):
    graphicsSystem.setWithoutDrawing(GameConfig.undrawn)


#: What a headless run changes: class of the system -> function of the system.
HEADLESS = {
    'TimeSystem': _fixedTime,
    'WindowSystem2': _fixedWindow,
    'SoundSystem': _unheardSound,
    'GraphicsSystem2': _drawnOrNot,
}
