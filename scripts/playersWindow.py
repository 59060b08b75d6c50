"""The window in its player's hands: F11 and Alt+Enter switch to the whole display and back, a size that the window was
given is kept, and the game stands still and is silent while another window is in front, if the player wants it so: a
level that he plays waits behind its pause screen until he resumes it."""

from __future__ import annotations

from typing import Any

import bindings
import kaVel
import settings
import stillness

#: The level that was stopped when its window went behind another; None while there is none.
_stopped: Any = None


def attend() -> None:
    """Begins with all of it, and with the pacing of frames; for games that somebody watches."""
    kaVel.getSystem('FramePacingSystem')
    kaVel.getSystem('GameLoopSystem').frameCallback = settings.doFrame
    kaVel.subscribe('KeyDownMessage', _onKey)
    kaVel.subscribe('WindowFocusMessage', _onFocus)
    kaVel.subscribe('WindowSizeMessage', _onSize)
    kaVel.subscribe('WindowCloseMessage', _onClose)


def _onKey(message: Any, key: int) -> None:
    withAlt = any(map(kaVel.getSystem('InputSystem').isKeyDown, bindings.keysOf('alternative')))
    if key in bindings.keysOf('fullScreen') or (withAlt and key in bindings.keysOf('fullScreenWithAlt')):
        inWindow = settings.get('windowMode') == 'window'
        settings.set('windowMode', 'fullScreen' if inWindow else 'window')


def _onFocus(message: Any, active: bool) -> None:
    global _stopped
    states = kaVel.Coordinator.LoopControlState
    kaVel.getSystem('SoundSystem').silent = not active and not settings.get('soundWithoutFocus')
    if active:
        if _stopped and _stopped.loopState == states.LOOP_STOP:
            stillness.goOn(_stopped)
        _stopped = None
        return
    level = kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator
    if not level or level.loopState != states.LOOP_RUN or not settings.get('pauseWithoutFocus'):
        return
    if not _pause(level):
        stillness.stop(level)
        _stopped = level


def follow(old: Any, new: Any) -> None:
    """Has a level that was built anew go on when the old one would have, with the window's focus."""
    global _stopped
    if _stopped and _stopped == old:
        _stopped = new


def _pause(level: Any) -> bool:
    """Opens the pause screen over a level that is played, unless a screen is open already."""
    from screens import Screens  # of the scripts of the level, which are read anew with it
    return bool(level.getChild('Player') and not Screens.isOpen(level) and Screens.open(level, 'Pause'))


def _onClose(message: Any) -> None:
    from screens import Ways  # of the scripts of the level, which are read anew with it
    level = kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator
    if level and not Ways.mayClose(level):
        kaVel.getSystem('WindowSystem2').refuseToClose()


def _onSize(message: Any, width: int, height: int) -> None:
    trial = settings.trial()
    if trial and 'windowSize' in trial.before:
        return
    try:
        settings.keep('windowSize', (width, height))
    except ValueError:
        pass  # too small or too large to begin the next game with
