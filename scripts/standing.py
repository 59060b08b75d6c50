"""Where one stands in a level, and the way back there when the level is loaded again."""

from typing import Protocol

import editing
import kaVel
from perLevel import PerLevel

#: Where the feet or the eye are, metres, and turn and pitch of the view, degrees.
Standing = tuple[tuple[float, float, float], float, float]


class Viewer(Protocol):
    """One who looks around in a level: `standing()` tells where, and `goTo(*standing)` leads there."""

    def standing(self) -> Standing: ...

    def goTo(self, at: tuple[float, float, float], turn: float = 0.0, pitch: float = 0.0) -> None: ...


_viewers: PerLevel[Viewer] = PerLevel()
_wanted: tuple[str, Standing | None] | None = None  # name of a level, and where to stand in it


def follow(level: kaVel.Coordinator, viewer: Viewer):
    """Notes who looks around in a level."""
    _viewers[level] = viewer


def viewerIn(level: kaVel.Coordinator) -> Viewer | None:
    """Who looks around in a level; None where nobody does."""
    return _viewers.get(level)


def of(level: kaVel.Coordinator) -> Standing | None:
    """Where one stands in a level; None where nobody looks around."""
    return _viewers[level].standing() if level in _viewers else None


def reload(level: kaVel.Coordinator):
    """Loads a level again in the next frame, with its scripts as they are by then; one stands where one stood."""
    returnTo(level.levelName, of(level) or _wantedIn(level.levelName))


def returnTo(levelName: str, place: Standing | None):
    """Goes to a level in the next frame, to stand at a place there that `of` has told.

    Where that leads away from unsaved edits, their designer is asked first.
    """
    def go():
        global _wanted
        _wanted = levelName, place
        kaVel.getSystem('GameLoopSystem').queueLoadLevel(levelName)

    editing.leave(kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator, levelName, go)


def keep(level: kaVel.Coordinator):
    """Has the next level of this one's name begin where one stands in this one."""
    global _wanted
    _wanted = level.levelName, of(level) or _wantedIn(level.levelName)


def forget():
    """Has the next level begin where it begins."""
    global _wanted
    _wanted = None


def arrive(level: kaVel.Coordinator):
    """Stands in a level that was just loaded where one is wanted to, if anywhere."""
    global _wanted
    place = _wantedIn(level.levelName)
    if place and level in _viewers:
        _viewers[level].goTo(*place)
    _wanted = None


def _wantedIn(levelName: str):
    return _wanted[1] if _wanted and _wanted[0] == levelName else None
