"""The level of the moment, built anew because a script of it has changed."""

from __future__ import annotations

import time
from typing import Any, Callable

import kaVel
import levelScripts
from listeners import Listeners
from mods.Tomls import Fault
from reloading import Faults

#: What a failure of the level is told as where no script of it is to blame.
LEVEL = 'the level'

#: Loads in a row that wrote one of their own files, and loads within RECENT seconds, after which a file is left alone.
MOST_OWN, MOST_LOADS, RECENT = 3, 20, 10.0
#: Seconds that a file has to rest before it is taken again after that.
REST = 5.0


class Refused(Exception):
    """Raised by who cannot have the level built anew just now; it says why."""


class Before:
    """Who is asked before a level is built anew; a function takes the place of one of the same module and name."""

    def __init__(self):
        self.functions: dict[tuple[str, str], Callable[[kaVel.Coordinator, list[str]], object]] = {}

    def add(self, function: Callable[[kaVel.Coordinator, list[str]], object]) -> None:
        self.functions[function.__module__, function.__qualname__] = function

    def call(self, level: kaVel.Coordinator, files: list[str]) -> None:
        for key, function in list(self.functions.items()):
            try:
                function(level, files)
            except Refused:
                raise
            except Exception as problem:
                self.functions.pop(key, None)
                kaVel.log('%s.%s, which is asked before levels are built anew, fails and is not called again: %r'
                          % (*key, problem))


before = Before()
after: Listeners[[kaVel.Coordinator, list[str]]] = Listeners('levels that are built anew')

_files: list[str] = []      # for which the level is built anew
_wantedAt = 0.0             # when it was asked for, s
_loads: list[float] = []    # when the last ones were
_span = (0, 0)              # when the last load began and ended, ns
_own: dict[str, int] = {}   # loads in a row that wrote a file
_left: dict[str, float] = {}  # files that are left alone: their last change, s
_blamed: set[str] = set()     # what a failure of the level was told as, as long as it has not been built


def renew(files: list[str]) -> None:
    """Has the level in charge built anew in the next frame, for some files that have changed."""
    global _wantedAt
    level: Any = kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator
    try:
        before.call(level, files)
    except Refused as refusal:
        Faults.tell(files[0], str(refusal))
        return
    _files[:] = sorted({*_files, *files})
    _wantedAt = time.monotonic()
    kaVel.getSystem('GameLoopSystem').queueRenewLevel()


def isLeftAlone(path: str, written: int) -> bool:
    """Whether a file is not to be taken anew, since it changes whenever it is."""
    now = time.monotonic()
    _own[path] = _own.get(path, 0) + 1 if _span[0] <= written <= _span[1] else 0
    _loads[:] = [load for load in _loads if now - load < RECENT]
    rested = now - _left.pop(path, -REST) >= REST
    if rested and _own[path] < MOST_OWN and len(_loads) < MOST_LOADS:
        return False
    _left[path] = now
    Faults.tell(path, 'It changes whenever it is read, and is left alone until it has rested for %d seconds.' % REST)
    return True


def begin() -> None:
    """Notes that the level is being built anew."""
    global _span
    _span = time.time_ns(), _span[1]
    _loads.append(time.monotonic())


def succeed(old: kaVel.Coordinator, new: kaVel.Coordinator) -> None:
    """Has a new level look on as the old one did, and takes back what was wrong with scripts."""
    files = _end()
    _goOn(old, new)
    for path in list(Faults.all()):
        if isOfLevel(path):
            Faults.mend(path)
    _blamed.clear()
    kaVel.log('Reload: the level %s is built anew for %s, %.0f ms after they were seen'
              % (new.levelName, ', '.join(map(Faults.shownPath, files)), 1000 * (time.monotonic() - _wantedAt)))
    Faults.showIn(new)
    after.call(new, files)


def isOfLevel(path: str) -> bool:
    """Whether a fault of this file is one of the level, which is mended when that is built."""
    return path in _blamed or path.startswith('../scripts/')


def fail(error: BaseException) -> None:
    """Tells why a level cannot be built anew; the old one goes on."""
    _end()
    place = levelScripts.placeOf(error)
    path, line = ('../' + place[0], place[1]) if place else (LEVEL, 0)
    _blamed.add(path)
    cause = error.text if isinstance(error, Fault) else '%s: %s' % (type(error).__name__, error)
    Faults.tell(path, cause, line)


def _end() -> list[str]:
    global _span
    _span = _span[0], time.time_ns()
    files = list(_files)
    _files.clear()
    return files


def _goOn(old: kaVel.Coordinator, new: kaVel.Coordinator) -> None:
    """A level that stood still stands still anew, behind the same screens."""
    import playersWindow
    import stillness
    from screens import Screens
    stopped = old.loopState == kaVel.Coordinator.LoopControlState.LOOP_STOP
    Screens.openAgain(old, new)
    if stopped and not Screens.isOpen(new):
        stillness.stop(new)
        playersWindow.follow(old, new)
