"""The last minutes of a level, scrubbed back and forth: a bar for `TimelineSystem`, and curves of what is watched.

    from reports import Timeline

    Timeline.record(True)                    # from now on; nothing is kept before
    Timeline.watch(door, 'transform.position.y')
    Timeline.open()                          # the bar "Timeline", among those that F2 shows
    Timeline.show(-2.5)                      # the moment two and a half seconds ago; the level stands still
    Timeline.goOn()                          # back in the present, which is as it was to the last bit

In a report that is played, the last minute is recorded, and the bar opens at its end.
"""

from __future__ import annotations

import math
from typing import Any

import GameConfig
import kaVel
import stillness

BAR = 'Timeline'
MOST_POINTS = 400   # of a curve

_watches: dict[str, Watch] = {}
_shown: int | None = None    # the moment that is looked at
_stopped: Any = None         # the level that stands still for it, and went before
_bar: Any = None
_fields = {'object': '', 'property': ''}


class Watch:
    """A property of an object, by the moments of the tape: a number, of a vector its length."""

    def __init__(self, thing: Any, name: str):
        first, _, rest = name.partition('.')
        while rest and thing.getChild(first):  # a component by its key, an object below
            thing, name = thing.getChild(first), rest
            first, _, rest = name.partition('.')
        self.thing, self.name = thing, name
        self.first = 0
        self.values: list[float] = []
        self.read()  # raises for what is none

    def read(self) -> float:
        value = self.thing
        for part in self.name.split('.'):
            value = getattr(value, part)
        if isinstance(value, kaVel.Vec4):
            value = math.sqrt(value.x * value.x + value.y * value.y + value.z * value.z)
        return float(value)

    def note(self, moment: int) -> None:
        if moment != self.first + len(self.values):
            self.first, self.values = moment, []
        try:
            self.values.append(self.read())
        except (AttributeError, RuntimeError, TypeError, ValueError):  # it is gone, or something else by now
            self.values.append(math.nan)

    def at(self, moment: int) -> float:
        index = moment - self.first
        return self.values[index] if 0 <= index < len(self.values) else math.nan

    def drop(self, oldest: int) -> None:
        """Forgets what was before the oldest moment, now and then."""
        if oldest - self.first > 600:
            del self.values[:oldest - self.first]
            self.first = oldest


def record(on: bool) -> None:
    """Has the frames from now on be kept, or no more of them."""
    system = _system()
    system.recording = on
    system.callback = _note if on else None
    if on:
        for watch in _watches.values():
            watch.first, watch.values = 0, []


def watch(thing: kaVel.Object, name: str) -> None:
    """Watches a property of an object or of its components: 'physics.mass', 'transform.position.y'.

    AttributeError or TypeError for what is no number.
    """
    key = '%s %s' % (kaVel.pathOf(thing), name)
    _watches[key] = Watch(thing, name)
    if _bar:
        _fill()


def values() -> dict[str, float]:
    """What is watched, as it was in the moment that is looked at, or is now."""
    moment = _system().newest if _shown is None else _shown
    return {key: each.at(moment) for key, each in _watches.items()}


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


def showMoment(moment: int) -> None:
    """Shows a moment by its number, or the nearest one that is kept."""
    global _shown, _stopped
    system, level = _system(), kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator
    if system.newest < system.oldest or _isReplaying():
        return
    if level.loopState != kaVel.Coordinator.LoopControlState.LOOP_STOP:
        stillness.stop(level)
        _stopped = level
    _shown = max(system.oldest, min(moment, system.newest))
    system.show(_shown)


def goOn() -> None:
    """Comes back to the present; a level that stood still for the looking goes on."""
    global _shown, _stopped
    _system().goOn()
    level, _stopped, _shown = _stopped, None, None
    if level:
        stillness.goOn(level)


def open() -> None:
    """Puts the bar among those that F2 shows, and shows them."""
    global _bar
    _bar = kaVel.getSystem('TweakSystem').makeBar(BAR)
    _fill()
    kaVel.getSystem('TweakSystem').shown = True


def _system() -> Any:
    return kaVel.getSystem('TimelineSystem')


def _isReplaying() -> bool:
    """Whether a report still plays: its frames cannot wait."""
    return bool(GameConfig.played and kaVel.getSystem('InputSystem').replaying)


def _note(moment: int) -> None:
    global _shown, _stopped
    _shown = _stopped = None  # who lets the level go on comes back to the present
    oldest = _system().oldest
    for watch in _watches.values():
        watch.note(moment)
        watch.drop(oldest)
    if _bar and moment % 30 == 0:
        _fitSlider()


def _fill() -> None:
    """Puts the controls on the bar."""
    bar = _bar
    bar.clear()
    bar.help = 'The last minutes, frame by frame. Looking back stops the level; "Go on" leads to the present.'
    bar.addValue('recording', 'Record', lambda: bool(_system().recording), record)
    bar.addText('kept', 'Kept', _kept)
    bar.addValue('ago', 'Seconds', _ago, show)
    _fitSlider()
    for name, label, step in (('far', '|<', None), ('second', '-1 s', -1.0), ('back', '<', -1), ('ahead', '>', 1),
                              ('secondAhead', '+1 s', 1.0)):
        bar.addButton(name, label, lambda step=step: _step(step))
        bar.sameLine()
    bar.addButton('present', 'Go on', goOn)
    bar.group('Watched')
    for name in _fields:
        bar.addValue(name, name, lambda name=name: _fields[name], lambda text, name=name: _enter(name, text))
    bar.addButton('watch', 'Watch', _watchEntered)
    for key in _watches:
        bar.addCurve(key, key, lambda key=key: _curve(key))
    bar.group('')


def _fitSlider() -> None:
    """Has the slider reach back as far as there is something."""
    system = _system()
    _bar.setRange('ago', min(-1.0, system.secondsOf(system.oldest) - system.secondsOf(system.newest)), 0.0)


def _kept() -> str:
    system = _system()
    count = system.newest - system.oldest + 1
    seconds = system.secondsOf(system.newest) - system.secondsOf(system.oldest) if count > 0 else 0.0
    return '%.1f s, %d moments, %.1f MB' % (seconds, count, system.bytes / 1e6)


def _ago() -> float:
    system = _system()
    return 0.0 if _shown is None else system.secondsOf(_shown) - system.secondsOf(system.newest)


def _step(step: int | float | None) -> None:
    system = _system()
    moment = system.newest if _shown is None else _shown
    if step is None:
        showMoment(system.oldest)
    elif isinstance(step, float):
        show(_ago() + step)
    else:
        showMoment(moment + step)


def _enter(name: str, text: str) -> None:
    _fields[name] = text


def _watchEntered() -> None:
    level = kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator
    thing = level.getDescendantByPath(_fields['object'])
    if not thing:
        raise ValueError('nothing stands at %r in the level' % _fields['object'])
    watch(thing, _fields['property'])


def _curve(key: str) -> str:
    """The values that are kept as a text, behind the share of the width where the moment is that is looked at."""
    system, each = _system(), _watches[key]
    first, last = system.oldest, system.newest
    count = last - first + 1
    if count < 2:
        return '-1 nan'
    points = min(count, MOST_POINTS)
    cursor = -1.0 if _shown is None else (_shown - first) / count
    return ' '.join(['%g' % cursor, *('%g' % each.at(first + index * count // points) for index in range(points))])
