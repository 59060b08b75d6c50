"""Qualities that belong together, under one name, and the measurement that finds the one for a machine."""

from __future__ import annotations

from typing import Any

import kaVel
from settings import Store

#: Name of what is no preset but the player's own choice.
OWN = 'own'

#: Preset -> its settings, the one that costs most first.
PRESETS: dict[str, dict[str, Any]] = {
    'veryHigh': {'shadowQuality': 'veryHigh', 'effectQuality': 'high', 'antialiasing': True},
    'high': {'shadowQuality': 'high', 'effectQuality': 'high', 'antialiasing': True},
    'medium': {'shadowQuality': 'medium', 'effectQuality': 'high', 'antialiasing': False},
    'low': {'shadowQuality': 'low', 'effectQuality': 'low', 'antialiasing': False},
}


def current() -> str:
    """The preset that all settings of it agree with; `OWN` for none."""
    return next((name for name, values in PRESETS.items()
                 if all(Store.get(setting) == value for setting, value in values.items())), OWN)


def choose(preset: str) -> None:
    """Sets all that belongs to a preset."""
    for name, value in PRESETS[preset].items():
        if Store.get(name) != value:
            Store.set(name, value)


class Measurement:
    """Two seconds in which what is seen is drawn with each preset in turn, and the best one in time is taken.

    All are drawn at half the size, from where the automatic scale goes on up or down. Whoever measures calls `doFrame`
    in every frame until it is done.
    """

    SECONDS, SCALE = 2.0, 0.5
    #: Part of a frame's time that is left for what the room behind does not show.
    SPARE = 0.15
    #: Frames behind a change that are not judged: the targets were just made anew.
    SETTLING = 2

    def __init__(self):
        self.pacing, self.graphics = kaVel.getSystem('FramePacingSystem'), kaVel.getSystem('GraphicsSystem2')
        self.before = {name: Store.get(name) for name in ('renderScale', 'vsync', *PRESETS['low'])}
        self.times: dict[str, list[float]] = {}
        self.left = list(PRESETS)
        self.spent = 0.0
        #: The preset that was found; empty until it is.
        self.found = ''
        Store.show('vsync', False)
        Store.show('renderScale', self.SCALE)
        self._begin()

    def part(self) -> float:
        """How much of it is over, 0 to 1."""
        return min(1.0, self.spent / self.SECONDS)

    def doFrame(self) -> None:
        if self.found:
            return
        seconds = self.pacing.frameSeconds
        self.spent += seconds
        self.times[self.left[0]].append(seconds)
        done = len(PRESETS) - len(self.left) + 1
        if self.spent >= self.SECONDS * done / len(PRESETS) and len(self.times[self.left[0]]) > self.SETTLING:
            self.left.pop(0)
            if self.left:
                self._begin()
            else:
                self._end()

    def stop(self) -> None:
        """Leaves everything as it was."""
        for name, value in self.before.items():
            Store.show(name, value)

    def seconds(self, preset: str) -> float:
        """How long a frame took with a preset, the middle one."""
        times = sorted(self.times[preset][self.SETTLING:])
        return times[len(times) // 2]

    def _begin(self) -> None:
        self.times[self.left[0]] = []
        for name, value in PRESETS[self.left[0]].items():
            Store.show(name, value)

    def _end(self) -> None:
        self.stop()
        most = (1 - self.SPARE) / Store.get('targetFrameRate')
        self.found = next((preset for preset in PRESETS if self.seconds(preset) <= most), 'low')
        kaVel.log('Frames took %s; the preset is %s.' % (
            ', '.join('%.1f ms with %s' % (1000 * self.seconds(preset), preset) for preset in PRESETS), self.found))
        choose(self.found)
