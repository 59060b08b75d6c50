"""Grains: clouds of many small events: gravel, splinters, cloth, crackle."""

import numpy

import filters
import modal
import noise
import shapes


def cloud(take, seconds, density, grain, spread=0.8):
    """Many grains at random moments: `density` a second, a number or one value a sample.

    `grain(take)` makes one; a dozen are made and used over and over at other sizes and speeds.
    """
    stock = [grain(take) for _ in range(12)]
    hits = noise.sparks(take.rng, seconds, density, spread)
    out = numpy.zeros(len(hits) + 2 * max(map(len, stock)))
    for at in numpy.flatnonzero(hits):
        each = shapes.resampled(take.pick(stock), take.between(0.75, 1.35)) * hits[at]
        out[at:at + len(each)] += each
    return out


def pebble(take, hz=3200.0, material="stone"):
    """One small hard thing that hits another."""
    modes = modal.body(take, material, take.near(hz, 0.5), count=6, tilt=0.3)
    return shapes.unit(modal.struck(take, modes, take.between(0.7, 1.0)))


def crumb(take, hz=1500.0):
    """One soft clot: earth, ash, plaster."""
    t = take.between(0.004, 0.015)
    x = noise.band(take.rng, t, take.near(hz, 0.4) * 0.5, take.near(hz, 0.4) * 2.0)
    return shapes.unit(x * shapes.decay(t, t * 0.9, 0.0008))


def rustle(take, seconds, strength, low=900.0, high=7000.0, coarse=220.0):
    """Cloth or paper in motion: `strength` (0..1, one value a sample) is how fast it moves.

    Threads catch and let go `coarse` times a second; the stuff is brighter the faster it moves.
    """
    catches = filters.lowpass(numpy.abs(noise.sparks(take.rng, seconds, coarse * (0.15 + strength), 0.7)), 90.0) * 60.0
    threads = noise.band(take.rng, seconds, low, high, 1)
    sliding = noise.band(take.rng, seconds, low * 0.5, high * 0.6, 1)
    body = (threads * catches + 0.35 * sliding * noise.wander(take.rng, seconds, 25.0, 0.2, 1.0)) * strength
    return filters.moving_lowpass(body, 1200.0 + (high - 1200.0) * numpy.sqrt(numpy.clip(strength, 0.0, 1.0)))
