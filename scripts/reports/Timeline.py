"""The last minutes of a level, scrubbed back and forth: what `TimelineSystem` has kept, and curves of what is watched.

    from reports import Timeline

    Timeline.record(True)                    # from now on; nothing is kept before
    Timeline.watch(door, 'transform.position.y')
    Timeline.open()                          # the bar "Timeline", which F10 opens and closes
    Timeline.show(-2.5)                      # the moment two and a half seconds ago; the level stands still
    Timeline.step(1)                         # a moment on; behind the newest one the level takes a frame
    Timeline.resume()                        # back in the present, which is as it was to the last bit, and on

In a report that is played, the last minute is recorded, and it waits at any frame that is asked for. What a moment
shows is where all stood, and what was followed (`Tracks`); to have a whole moment back the run is played anew
(`Again`).
"""

from __future__ import annotations

import bisect
import time
from typing import Any

import GameConfig
import kaVel
import stillness
from reports import Again
from reports.Tracks import Tracks

tracks = Tracks()

_shown: int | None = None    # the moment that is looked at
_stopped: Any = None         # the level that stands still for it, and went before
_steps = False               # whether the present frame is the last one that runs
_played: tuple[float, float] | None = None  # since when the moments are shown on and on, and from which second
_frames: list[tuple[int, int]] = []  # moment and frame, wherever frames were left out between two moments


def record(on: bool) -> None:
    """Has the frames from now on be kept, or no more of them."""
    system = _system()
    if on and not system.recording:
        tracks.clear()
        _frames.clear()
    system.recording = on
    system.callback = _note if on else None


def watch(thing: kaVel.Object, name: str) -> None:
    """Watches a property of an object or of its components: 'physics.mass', 'transform.position.y'.

    AttributeError or TypeError for what is no number.
    """
    tracks.watch(thing, name)
    _refresh()


def values() -> dict[str, float]:
    """What is watched, as it was in the moment that is looked at, or is now."""
    return {key: each.at(moment()) for key, each in tracks.shown().items()}


def moment() -> int:
    """The moment that is looked at, or the newest one."""
    return _system().newest if _shown is None else _shown


def isShowing() -> bool:
    """Whether a moment is looked at, and not the present that goes on."""
    return _shown is not None


def ago() -> float:
    """Seconds from the newest moment to the one that is looked at, 0 or less than 0."""
    system = _system()
    return 0.0 if _shown is None else system.secondsOf(_shown) - system.secondsOf(system.newest)


def frame() -> int:
    """Number of the frame that the moment is of which is looked at."""
    index = bisect.bisect_right(_frames, (moment(), 1 << 62)) - 1
    return _frames[index][1] + moment() - _frames[index][0] if index >= 0 else 0


def show(seconds: float) -> None:
    """Shows the moment so many seconds ago, 0 or less than 0; the level stands still meanwhile."""
    system = _system()
    wanted = system.secondsOf(system.newest) + min(0.0, seconds)
    first, last = system.oldest, system.newest
    while first < last:  # seconds grow from moment to moment
        middle = (first + last) // 2
        if system.secondsOf(middle) < wanted:
            first = middle + 1
        else:
            last = middle
    showMoment(first)


def showMoment(number: int) -> None:
    """Shows a moment by its number, or the nearest one that is kept."""
    global _shown
    system = _system()
    if system.newest < system.oldest:
        return
    _hold()
    _shown = max(system.oldest, min(number, system.newest))
    if _shown == system.newest:
        system.goOn()  # the present itself, to the last bit
    else:
        system.show(_shown)


def pause() -> None:
    """Has the level stand still at the end of this frame, and shows the bar; a report that plays waits."""
    open()
    _hold()
    showMoment(_system().newest)


def step(moments: int) -> None:
    """Shows a moment before or behind the one that is looked at; behind the newest one the level takes a frame."""
    global _steps
    if moments > 0 and moment() >= _system().newest:
        _hold()
        goOn()
        _steps = True
    else:
        showMoment(moment() + moments)


def play() -> None:
    """Shows the moments from this one on as fast as they went, to the newest one; or ends that."""
    global _played
    if _played:
        _played = None
        return
    system = _system()
    if moment() >= system.newest:
        showMoment(system.oldest)
    _played = time.monotonic(), system.secondsOf(moment())


def advance() -> None:
    """Shows the next moment where they are played; for the bar, which is drawn in each frame."""
    global _played
    if not _played:
        return
    since, begin = _played
    system = _system()
    show(begin + time.monotonic() - since - system.secondsOf(system.newest))
    if moment() >= system.newest:
        _played = None


def goOn() -> None:
    """Comes back to the present; a level that stood still for the looking goes on."""
    global _shown, _stopped, _played
    _system().goOn()
    _system().waiting = False
    level, _stopped, _shown, _played = _stopped, None, None, None
    if level:
        stillness.goOn(level)


def resume() -> None:
    """Goes on as `goOn`, and puts the bars away that were shown for a report that waits."""
    if _isReplaying():
        from reports import TimelineBar
        TimelineBar.close()
    goOn()


def again(takeOver: bool) -> None:
    """Has the run played anew up to the frame that is looked at, to have all of it back: to wait there, or to be played
    on by hand. The report that waits at its present frame is handed over at once."""
    if takeOver and GameConfig.played and _isReplaying() and moment() == _system().newest:
        resume()
        GameConfig.played.end()
    else:
        Again.upTo(frame(), takeOver)


def open() -> None:
    """Shows the bar."""
    from reports import TimelineBar
    tracks.follow()
    TimelineBar.open()


def switch() -> None:
    """Opens the bar, and records from then on; or closes it, and comes back to the present.

    Not while recorded input plays, in which it was pressed by whoever made it.
    """
    from reports import TimelineBar
    if _isReplaying():
        return
    if TimelineBar.isOpen():
        TimelineBar.close()
        goOn()
    else:
        record(True)
        open()


def _system() -> Any:
    return kaVel.getSystem('TimelineSystem')


def _isReplaying() -> bool:
    """Whether a report still plays: what waits then is the whole run."""
    return bool(GameConfig.played and kaVel.getSystem('InputSystem').replaying)


def _hold() -> None:
    """Has the level stand still, or a report wait that plays."""
    global _stopped
    if _isReplaying():
        if not _system().waiting:
            kaVel.log('The report waits behind frame %d' % kaVel.getSystem('GameLoopSystem').frameNumber)
        _system().waiting = True
        return
    level = kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator
    if level.loopState != kaVel.Coordinator.LoopControlState.LOOP_STOP:
        stillness.stop(level)
        _stopped = level


def _note(number: int) -> None:
    global _shown, _stopped, _steps, _played
    _shown = _stopped = _played = None  # who lets the level go on comes back to the present
    frameNumber = kaVel.getSystem('GameLoopSystem').frameNumber
    if number == 0:
        _frames.clear()
    if not _frames or frameNumber - number != _frames[-1][1] - _frames[-1][0]:
        _frames.append((number, frameNumber))
    tracks.note(number, _system().oldest)
    if number % 15 == 0:
        _refresh()
    if _steps:
        _steps = False
        showMoment(number)


def _refresh() -> None:
    """Has the bar show what is there by now, where it is open."""
    from reports import TimelineBar
    tracks.follow()
    TimelineBar.fit()
