"""Friction: what sticks and slips. A slip is a small blow; how often it comes makes a groan or a squeal."""

import numpy
from scipy import signal

import shapes


def slips(take, rate, roughness=0.2, doubling=0.3):
    """A train of slips: `rate` a second, one value a sample; where the rate is 0 nothing moves.

    `roughness` (0..1) throws the moments and sizes about; `doubling` weakens every second slip, which gives the
    subharmonic growl of a hinge. Each slip snaps back at once and leaves a slower pull behind it.
    """
    rng = take.rng
    n = len(rate)
    phase = numpy.cumsum(rate) / shapes.RATE
    count = int(phase[-1]) + 1
    moments = numpy.arange(count) + roughness * 0.45 * rng.standard_normal(count)
    at = numpy.searchsorted(phase, numpy.sort(numpy.clip(moments, 0.0, phase[-1])))
    at = at[at < n]
    size = numpy.exp(roughness * rng.standard_normal(len(at)))
    size[1::2] *= 1.0 - doubling * rng.random(len(at[1::2]))
    out = numpy.zeros(n)
    numpy.add.at(out, at, size)
    snap = numpy.concatenate([[1.0], -0.12 * numpy.exp(-numpy.arange(60) / 14.0)])
    return signal.oaconvolve(out, snap)[:n]


def rubbed(take, speed, grain=900.0, bumps=40.0):
    """The force of one rough surface drawn over another; `speed` in metres a second, one value a sample.

    `grain` is the number of fine ridges a metre, whose pitch follows the speed; `bumps` the number of coarse ones,
    which knock. Faster is brighter and louder.
    """
    rng = take.rng
    path = numpy.cumsum(speed) / shapes.RATE
    length = path[-1] + 0.01
    fine = _along(rng, path, length, grain)
    finer = _along(rng, path, length, grain * 5.3)
    coarse = _along(rng, path, length, bumps)
    knocks = numpy.maximum(_along(rng, path, length, bumps * 2.0) - 1.0, 0.0)
    roughness = numpy.diff(fine + 0.6 * finer, prepend=0.0) * 14.0 * (0.5 + 0.35 * coarse)
    hits = numpy.diff(knocks, prepend=0.0) * 40.0
    hiss = rng.standard_normal(len(speed)) * (0.25 + 0.4 * numpy.abs(coarse))
    return (roughness + hits + 0.3 * hiss) * numpy.sqrt(numpy.maximum(speed, 0.0))


def _along(rng, path, length, per_metre):
    """Random heights along a path, `per_metre` of them, joined by straight lines."""
    height = rng.standard_normal(int(length * per_metre) + 3)
    return numpy.interp(path * per_metre, numpy.arange(len(height)), height)
