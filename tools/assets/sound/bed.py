"""Bed: the sound of a place, in stereo, without a seam: its air, and what happens in it now and then."""

import numpy

import filters
import loops
import noise
import rooms
import shapes
from take import Take

TURN = 2.0
"""Seconds over which the air's end is faded into its beginning."""

OVER_AIR = 11.0
"""How far the peak of an event of gain 1 stands above air of gain 1."""


class Bed:
    """A loop of `seconds` in a `room` of `rooms`; what is added lies around the listener and wraps at the end."""

    def __init__(self, take, seconds, room):
        self.take = take
        self.seconds = seconds
        self.room = room
        self.sum = numpy.zeros((shapes.samples(seconds), 2))
        self.events = [(0.0, numpy.zeros((1, 2)))]

    def air(self, gain, low, high, slope=5.0, unrest=0.2):
        """The air of the place: noise between two frequencies that falls by `slope` dB an octave and is never still."""
        self.ears(gain, lambda take, seconds: filters.lowpass(
            filters.highpass(noise.tilted(take.rng, seconds, slope), low, 1), high, 2)
            * noise.wander_loop(take.rng, seconds, 0.3, 1.0 - unrest, 1.0))

    def ears(self, gain, make):
        """A lasting sound that is everywhere: `make(take, seconds)` is asked for each ear and for what both share."""
        left, right, middle = (shapes.level(make(self.take, self.seconds + TURN)) for _ in range(3))
        both = numpy.stack([middle + 0.7 * left, middle + 0.7 * right], axis=1)
        self.sum += shapes.level(loops.seamless(both, TURN)[: len(self.sum)]) * gain

    def lasting(self, gain, place, make, far=0.5):
        """A lasting sound from one side, -1 to 1; `far` is the share of the room in it."""
        x = shapes.level(make(self.take, self.seconds + TURN))
        x = loops.seamless(x, TURN)[: len(self.sum)]
        self.events.append((0.0, shapes.panned(x, place) * gain * (1.0 - far)))
        self.sum += loops.wrapped(self._in_room(shapes.panned(x, place)), self.seconds) * gain * far

    def happens(self, at, recipe, gain, place=0.0, variant=1, dull=6000.0, far=0.8):
        """A sound of the catalogue at a moment, as loud as `gain`, through walls that pass what is below `dull` Hz."""
        x = recipe(Take(f"{recipe.__name__} at {at}", variant))
        x = x if x.ndim == 1 else x.mean(axis=1)
        x = shapes.panned(filters.lowpass(shapes.unit(x), dull, 1), place) * (gain * OVER_AIR)
        self.events.append((at % self.seconds, x * (1.0 - far)))
        self.events.append((at % self.seconds, self._in_room(x) * far))

    def made(self):
        return loops.begun_quietly(self.sum + loops.wrapped(shapes.lay(*self.events), self.seconds))

    def _in_room(self, x):
        """What comes back from the room alone, about as strong as what went in."""
        dry = rooms.heard_in(Take("a bed's room"), x, self.room, 1.0)
        dry[: len(x)] -= x
        return dry
