"""Water: bubbles, drops and what runs. A drop is heard by the bubble it drags under, not by its splash."""

import numpy

import filters
import noise
import shapes


def bubble(take, hz, rise=0.15, depth=1.0):
    """A bubble of air that rings at `hz` and climbs by the share `rise` as it comes up; `depth` makes it longer."""
    seconds = min(0.6, depth * 45.0 / hz + 0.01)
    t = shapes.times(seconds)
    climb = 1.0 + rise * (t / seconds) ** 1.5
    tone = numpy.sin(2 * numpy.pi * numpy.cumsum(hz * climb) / shapes.RATE)
    return tone * shapes.decay(seconds, seconds * 1.2, take.between(0.0008, 0.003))


def drop(take, hz=1400.0):
    """One drop into standing water: a tick, and after it a bubble or two."""
    tick = noise.band(take.rng, 0.004, 2500.0, 9000.0) * shapes.decay(0.004, 0.004, 0.0003)
    first = take.between(0.012, 0.035)
    body = shapes.lay((0.0, tick, 0.12), (first, bubble(take, take.near(hz, 0.2), take.between(0.1, 0.5)), 0.8))
    if take.chance(0.6):
        later = first + take.between(0.03, 0.09)
        body = shapes.lay(body, (later, bubble(take, take.near(hz * 1.6, 0.3), 0.2), take.between(0.15, 0.4)))
    return body


def bubbling(take, seconds, density, low, high, rise=0.1):
    """Many bubbles, `density` a second (a number or one value a sample), small ones more often than large ones."""
    stock = [bubble(take, low * (high / low) ** (i / 23.0), rise * take.between(0.3, 2.0)) for i in range(24)]
    hits = noise.sparks(take.rng, seconds, density, 0.6)
    out = numpy.zeros(len(hits) + max(map(len, stock)))
    for at in numpy.flatnonzero(hits):
        size = take.rng.beta(1.3, 1.0)
        grain = stock[int(size * 23.999)]
        out[at : at + len(grain)] += grain * abs(hits[at]) * (1.1 - size) ** 1.2
    return out[: len(hits)]


def running(take, seconds, low=350.0, high=3500.0, fullness=1.0):
    """Water that runs over something: bubbles without number, and the wash between them."""
    push = noise.wander_loop(take.rng, seconds, 1.5, 0.5, 1.0)
    drops = bubbling(take, seconds, 260.0 * fullness * push, low, high)
    wash = noise.band(take.rng, seconds, low, high * 1.6, 1) * push
    return shapes.level(drops) + 0.35 * filters.low_shelf(wash, low, -6.0)
