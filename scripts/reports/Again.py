"""This run played again, in its own window, up to a frame of its past: there it waits, as it was to the last bit, or
goes on with whoever sits before it.

It is the report of that frame that is played, by the game's process itself, which begins anew for it.
"""

from __future__ import annotations

import os
import shutil

import GameConfig
import kaVel
import mods
from reports import Keeping

_OWN_IMAGE = '/proc/self/exe'


def upTo(frame: int, takeOver: bool) -> None:
    """Begins this run anew and plays it to the end of a frame; ValueError where that cannot be.

    There it waits, or with `takeOver` is handed over to the player.
    """
    if mods.loaded():
        raise ValueError('with mods on, the game can start no program, itself included: write a report, and play it '
                         'by ./play --report FILE --%s %d' % ('from' if takeOver else 'hold', frame))
    environment = _environment()
    environment['KAVEL_FROM' if takeOver else 'KAVEL_HOLD'] = str(frame)
    if GameConfig.played:
        shutil.rmtree(GameConfig.played.folder, True)
    kaVel.getSystem('InputSystem').runFile = ''  # which ends this run's record in order
    kaVel.log('The run begins anew, and is played to frame %d' % frame)
    os.execve(_OWN_IMAGE, ['kaVel'], environment)


def _environment() -> dict[str, str]:
    """What the run is started with: a report of this one, or the one that it plays itself."""
    if GameConfig.played:
        environment = dict(GameConfig.played.environment)
        for word in ('KAVEL_FROM', 'KAVEL_HOLD'):
            environment.pop(word, None)
        return environment
    environment = {name: value for name, value in os.environ.items() if not name.startswith('KAVEL_')}
    return {**environment, 'KAVEL_REPORT': Keeping.writeForAgain()}
