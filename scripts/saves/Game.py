"""The game that is played: what a save of it says, and how a level becomes what a save says.

The engine's persistent state holds what has become of the objects of all levels, and a note of what goes with the
player from level to level. A save is that and what the present level wants to be kept.
"""

from __future__ import annotations

import datetime
import json
from typing import Any, Callable

import kaVel
import mods
import standing
from objects.Placing import LevelClock, onFrame
from perLevel import PerLevel, levelOf
from saves import Kept, Moments
from saves.Document import Document

#: Note of what travels; that there is one tells that the game of the level before goes on.
TRAVELS = 'travels'

_clocks: PerLevel[Clock] = PerLevel()


class Clock:
    """Counts the time that is played in one level, and does what waits for a better moment."""

    def __init__(self, level: kaVel.Coordinator):
        self.level = level
        self.played = 0.0  # seconds, those of the levels before it among them
        self.waiting: Callable[[], object] | None = None
        entity = kaVel.make('Entity', parent=level, name='saves')
        self.time = LevelClock(entity)
        onFrame(entity, self.doFrame)
        Kept.keepPart(level, 'played', lambda: self.played, self._take, travels=True)

    def _take(self, seconds: float):
        self.played = float(seconds)

    def doFrame(self):
        self.played += self.time.frameSeconds()
        if self.waiting and Moments.verdict(self.level).when != 'later':
            waiting, self.waiting = self.waiting, None
            waiting()


def attend(player: kaVel.Entity):
    """Begins to count for the level of a player who has just been built."""
    level = levelOf(player)
    if level not in _clocks:
        _clocks[level] = Clock(level)


def clockOf(level: Any) -> Clock | None:
    return _clocks.get(level)


def stateOf(level: kaVel.Coordinator) -> Any:
    """The persistent state of a level."""
    return level.getDescendantByPath('PersistentState/persist')


# Out of the game

def document(level: kaVel.Coordinator, why: str, isAwkward: bool = False) -> Document:
    """What a save of the present moment says."""
    clock = clockOf(level)
    stand = Moments.placeToStand(level, isAwkward)
    now = datetime.datetime.now(datetime.timezone.utc)
    return {
        'level': level.levelName, 'place': Moments.placeName(level, stand, why == 'safe'),
        'why': why,
        'made': now.strftime('%Y-%m-%dT%H:%M:%S.%fZ'), 'played': clock.played if clock else 0.0,
        'stand': {'at': list(stand[0]), 'turn': stand[1], 'pitch': stand[2]} if stand else None,
        'mods': mods.named(), 'calls': calls(level), 'objects': Kept.tellObjects(level), 'parts': Kept.tellParts(level)}


def calls(level: kaVel.Coordinator) -> dict[str, list[Any]]:
    """What has become of the objects of all levels: place -> name and arguments of each call."""
    state, told = stateOf(level), {}
    for number in range(state.getCallCount()):
        place, name = state.getCallPlace(number), state.getCallFunction(number)
        given = [state.getCallArgument(number, which) for which in range(state.getCallArgumentCount(number))]
        try:
            told.setdefault(place, []).append([name, *map(Kept.written, given)])
        except Kept.Unkeepable as error:
            kaVel.log('%s of %s is not saved: %s' % (name, place, error))
    return told


def progress(level: kaVel.Coordinator) -> Any:
    """What would be lost if the game ended now, in a form that can be compared: not seconds, nor steps to the side."""
    told = document(level, '')
    for each in ('made', 'played', 'why', 'stand', 'objects'):
        del told[each]
    told['parts'] = {name: _coarse(part) for name, part in told['parts'].items() if name != 'played'}
    return told


def _coarse(part: Any) -> Any:
    """A part without its fractions: what drains and recovers by itself is no loss."""
    if isinstance(part, float):
        return 0
    if isinstance(part, dict):
        return {name: _coarse(each) for name, each in part.items()}
    return [_coarse(each) for each in part] if isinstance(part, (list, tuple)) else part


# Into the game

def prepare(level: kaVel.Coordinator, told: Document):
    """Gives a level that is about to be built what has become of its objects."""
    state = stateOf(level)
    state.forgetEverything()
    restore = state.restoreNoArgs, state.restoreOneArg, state.restoreTwoArgs
    for place, each in told['calls'].items():
        for name, *arguments in each:
            restore[len(arguments)](place, name, *map(Kept.read, arguments))


def arrive(level: kaVel.Coordinator, told: Document):
    """Makes a level that has just been built what a save says."""
    _markAsGoingOn(level)
    viewer = standing.viewerIn(level)
    stand = told['stand']
    if viewer and stand:
        x, y, z = stand['at']
        viewer.goTo((x, y, z), stand['turn'], stand['pitch'])
    Kept.takeObjects(level, told['objects'])
    Kept.takeParts(level, told['parts'])


def travelFrom(level: Any):
    """Notes what goes with the player of a level that is being left, unless all has been forgotten since he came."""
    state = kaVel.getSystem('GameLoopSystem').getChild('PersistentState')
    component = state.getChild('persist') if state else None
    if level and component and level in _clocks and component.getNote(TRAVELS):
        component.setNote(TRAVELS, json.dumps(Kept.tellParts(level, onlyTravelling=True)))


def travelTo(level: kaVel.Coordinator) -> bool:
    """Gives a level that has just been built what the player brings along; whether the game before it goes on."""
    note = stateOf(level).getNote(TRAVELS)
    if level in _clocks:
        _markAsGoingOn(level)
        Kept.takeParts(level, json.loads(note or '{}'), onlyTravelling=True)
    return bool(note)


def _markAsGoingOn(level: kaVel.Coordinator):
    stateOf(level).setNote(TRAVELS, '{}')
