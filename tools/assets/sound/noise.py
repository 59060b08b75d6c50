"""Noise: the seeded randomness that sounds are carved from. Each takes the generator of a Take."""

import numpy
from scipy import signal

import shapes


def white(rng, seconds):
    return rng.standard_normal(shapes.samples(seconds))


def tilted(rng, seconds, slope):
    """Noise whose power falls by `slope` dB an octave above 20 Hz: 3 is pink, 6 brown, negative ones rise."""
    n = shapes.samples(seconds)
    spectrum = numpy.fft.rfft(rng.standard_normal(n))
    hz = numpy.fft.rfftfreq(n, 1.0 / shapes.RATE)
    spectrum *= (numpy.maximum(hz, 20.0) / 1000.0) ** (-slope / 6.02)
    spectrum[hz < 15.0] = 0.0
    return shapes.level(numpy.fft.irfft(spectrum, n))


def pink(rng, seconds):
    return tilted(rng, seconds, 3.01)


def brown(rng, seconds):
    return tilted(rng, seconds, 6.02)


def band(rng, seconds, low, high, order=2):
    """White noise between two frequencies, of root mean square 1."""
    sections = signal.butter(order, (low, min(high, 0.48 * shapes.RATE)), "bandpass", fs=shapes.RATE, output="sos")
    return shapes.level(signal.sosfilt(sections, white(rng, seconds)))


def wander(rng, seconds, rate, low=0.0, high=1.0):
    """A smooth aimless curve between two values that turns about `rate` times a second."""
    knots = int(seconds * rate) + 4
    at = numpy.linspace(-1.5 / rate, seconds + 1.5 / rate, knots)
    value = signal.cspline1d(rng.uniform(low, high, knots))
    where = (shapes.times(seconds) - at[0]) / (at[1] - at[0])
    return numpy.clip(signal.cspline1d_eval(value, where), low, high)


def wander_loop(rng, seconds, rate, low=0.0, high=1.0):
    """A `wander` whose end meets its beginning."""
    fine = signal.resample(rng.uniform(low, high, max(4, int(seconds * rate))), 2048)
    where = numpy.arange(shapes.samples(seconds)) * (2048 / shapes.samples(seconds))
    return numpy.clip(numpy.interp(where, numpy.arange(2049), numpy.append(fine, fine[0])), low, high)


def sparks(rng, seconds, density, spread=1.0):
    """Single impulses at random moments, `density` a second (a number or one value a sample), of random size and sign.

    `spread` says how unequal the sizes are: 0 makes them alike, 1 makes few large ones among many small ones.
    """
    n = shapes.samples(seconds)
    hit = rng.random(n) < numpy.broadcast_to(numpy.asarray(density) / shapes.RATE, (n,))
    size = numpy.exp(spread * rng.standard_normal(n)) * rng.choice((-1.0, 1.0), n)
    return numpy.where(hit, size, 0.0)
