"""Where screens lead: into the night, back to the title, out of the game. Who leaves a game has it saved."""

from __future__ import annotations

from typing import Callable

import editing
import kaVel
import saves
from screens import Screens

#: The levels that a new game begins in, that a game comes back to, and that it ends with.
FIRST, TITLE, DAWN = 'Nightfall', 'Title', 'Dawn'


def begin():
    """Begins a new game."""
    saves.begin(FIRST)


def toTitle(level: kaVel.Coordinator):
    """Leaves a game for the title."""
    _leave(level, 'leave.title', lambda: goTo(TITLE))


def toDesktop(level: kaVel.Coordinator):
    """Leaves the game."""
    _leave(level, 'leave.desktop', _quit)


def mayClose(level: kaVel.Coordinator) -> bool:
    """Saves the game of one who closes its window; where that fails he is asked, and the window stays.

    Who closes it on the question has answered that.
    """
    cause = _saved()
    if not cause or Screens.isOpen(level, 'Ask', question='leave.desktop'):
        return True
    Screens.ask(level, words='leave.desktop', yes=_quit, cause=cause)
    return not Screens.isOpen(level, 'Ask')


def goTo(levelName: str):
    """Goes to a level in the next frame; asks about unsaved edits of the present one first."""
    gameLoop = kaVel.getSystem('GameLoopSystem')
    editing.leave(gameLoop.currentlyActiveCoordinator, levelName, lambda: gameLoop.queueLoadLevel(levelName))


def _leave(level: kaVel.Coordinator, question: str, go: Callable[[], object]):
    """Saves, and asks only where that has failed and something would be lost."""
    cause = _saved()
    if cause:
        Screens.ask(level, words=question, yes=go, cause=cause)
    else:
        go()


def _saved() -> str:
    """Saves what would be lost; what kept it from being saved, or nothing."""
    outcome = saves.leave() if saves.isUnsaved() else None
    return outcome.said if outcome and not outcome.done else ''


def _quit():
    kaVel.getSystem('GameLoopSystem').quit(0)
