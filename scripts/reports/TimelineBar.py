"""The bar "Timeline": buttons, curves that the mouse drags along, and what objects with open bars were like then."""

from __future__ import annotations

import math
from typing import Any

import kaVel
from reports import Timeline
from reports.Tracks import Track

NAME = 'Timeline'
MOST_POINTS = 400   # of a curve
MOVED = 'moved'     # the curve that is always there

_bar: Any = None
_curves: list[str] = []     # that stand on it
_rows: list[str] = []       # of the list, keys of what is followed
_wereShown: bool | None = None  # the other bars, before this one came


def open() -> None:
    """Shows the bar; the others come along, and go with it where they were not shown."""
    global _bar, _wereShown
    bars = kaVel.getSystem('TweakSystem')
    if not isOpen():
        _wereShown = bars.shown
    _bar = bars.makeBar(NAME)
    fill()
    _bar.setPlace(-16, -16, 580, 330)
    _bar.shown = True
    bars.shown = True


def close() -> None:
    """Puts the bar away, and those that it brought along."""
    if isOpen():
        _bar.shown = False
        kaVel.getSystem('TweakSystem').shown = bool(_wereShown)


def isOpen() -> bool:
    """Whether it is on the screen."""
    return bool(_bar and _bar.shown and kaVel.getSystem('TweakSystem').shown)


def fit() -> None:
    """Has the bar reach back as far as there is something, with a curve for all that is watched by now."""
    if not _bar:
        return
    rows = sorted(Timeline.tracks.fields)
    if list(Timeline.tracks.shown()) != _curves or bool(rows) != bool(_rows):
        fill()
    system = _system()
    _bar.setRange('ago', min(-1.0, system.secondsOf(system.oldest) - system.secondsOf(system.newest)), 0.0)
    _rows[:] = rows


def fill() -> None:
    """Puts the controls on the bar."""
    bar = _bar
    bar.clear()
    bar.help = 'Drag on a curve to look back: the level stands still meanwhile.'
    bar.addText('kept', '', _kept)
    bar.addValue('ago', 'Seconds', Timeline.ago, Timeline.show)
    for name, label, tip, pressed in (
            ('far', '|<', 'The oldest moment', lambda: Timeline.showMoment(_system().oldest)),
            ('second', '-1 s', 'A second back', lambda: Timeline.show(Timeline.ago() - 1)),
            ('back', '<', 'A frame back', lambda: Timeline.step(-1)),
            ('play', 'Play', 'Shows what was, as fast as it went', Timeline.play),
            ('ahead', '>', 'A frame on; behind the newest moment the level takes one', lambda: Timeline.step(1)),
            ('secondAhead', '+1 s', 'A second on', lambda: Timeline.show(Timeline.ago() + 1)),
            ('newest', '>|', 'The newest moment, and stop there', lambda: Timeline.showMoment(_system().newest)),
            ('present', 'Go on', 'Back to the present, which goes on', Timeline.resume)):
        bar.addButton(name, label, pressed)
        bar.setTip(name, tip)
        if name != 'present':
            bar.sameLine()
    bar.addCurve(MOVED, 'Things that move', _movedCurve, _drag)
    bar.addButton('whole', 'All of this moment', lambda: Timeline.again(False))
    bar.setTip('whole', 'Plays the run anew up to this frame and waits there: every field is what it was')
    bar.sameLine()
    bar.addButton('take', 'Play on from here', lambda: Timeline.again(True))
    bar.setTip('take', 'Plays the run anew up to this frame, and hands it over to you')
    bar.sameLine()
    bar.addValue('recording', 'Record', lambda: bool(_system().recording), Timeline.record)
    _curves[:] = Timeline.tracks.shown()
    for key in _curves:
        bar.addCurve(key, key, lambda key=key: _curveOf(key), _drag)
    _rows[:] = sorted(Timeline.tracks.fields)
    if not _rows:
        bar.addText('hint', '', lambda: 'The bar of an object opened, its numbers are kept, and stand here.')
        return
    bar.addList('then', lambda: len(_rows), _row, _watchRow)
    bar.setTip('then', 'What the objects with open bars were like then; a click watches a line')


def _system() -> Any:
    return kaVel.getSystem('TimelineSystem')


def _kept() -> str:
    """The line at the top; it is asked for in each frame."""
    Timeline.advance()
    system = _system()
    seconds = system.secondsOf(system.newest) - system.secondsOf(system.oldest) if system.newest >= system.oldest else 0
    now = '%.2f s ago, frame %d' % (-Timeline.ago(), Timeline.frame()) if Timeline.isShowing() else 'the present'
    return '%s   (%.1f s kept, %.1f MB)' % (now, seconds, system.bytes / 1e6)


def _drag(share: float) -> None:
    system = _system()
    Timeline.showMoment(system.oldest + round(share * (system.newest - system.oldest)))


def _curve(read: Any) -> str:
    """Numbers by their moments as a text, behind the share of the width where the moment is that is looked at."""
    system = _system()
    first, last = system.oldest, system.newest
    count = last - first + 1
    if count < 2:
        return '-1 nan'
    points = min(count, MOST_POINTS)
    cursor = (Timeline.moment() - first) / (count - 1) if Timeline.isShowing() else -1.0
    return ' '.join(['%g' % cursor, *('%g' % read(first + index * (count - 1) // (points - 1))
                                      for index in range(points))])


def _movedCurve() -> str:
    return _curve(lambda moment: _system().changesIn(moment) if moment else math.nan)  # at first all is new


def _curveOf(key: str) -> str:
    track = Timeline.tracks.shown().get(key)
    return _curve(track.at) if track else '-1 nan'


def _row(index: int) -> str:
    """A line of what was then, and what is now where that is another."""
    track = Timeline.tracks.fields.get(_rows[index]) if index < len(_rows) else None
    if not track:
        return ''
    then, now = track.at(Timeline.moment()), track.at(_system().newest)
    text = '%s.%s   %s' % ('/'.join(kaVel.pathOf(track.thing).split('/')[-2:]), track.name, _number(then))
    return text if then == now or math.isnan(then) and math.isnan(now) else text + '   (now %s)' % _number(now)


def _number(value: float) -> str:
    return 'not kept' if math.isnan(value) else '%.5g' % value


def _watchRow(index: int) -> None:
    track: Track | None = Timeline.tracks.fields.get(_rows[index]) if index < len(_rows) else None
    if track:
        kaVel.getSystem('TweakSystem').watch(track.thing, track.name)
