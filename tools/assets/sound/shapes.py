"""Shapes: lengths, envelopes, and laying sounds over one another. Samples are floats at 44.1 kHz, (n,) or (n, 2)."""

import numpy

RATE = 44100


def samples(seconds):
    return max(1, int(round(seconds * RATE)))


def silence(seconds):
    return numpy.zeros(samples(seconds))


def times(seconds):
    """The time of each sample, in seconds."""
    return numpy.arange(samples(seconds)) / RATE


def db(decibels):
    """The factor that a number of decibels stands for."""
    return 10.0 ** (decibels / 20.0)


def curve(seconds, points):
    """Straight lines through (second, value) points, one value a sample."""
    at, value = zip(*points)
    return numpy.interp(times(seconds), at, value)


def smooth_curve(seconds, points):
    """Like `curve`, with rounded corners: each stretch eases in and out."""
    t = times(seconds)
    out = numpy.full(len(t), float(points[0][1]))
    for (t0, v0), (t1, v1) in zip(points, points[1:]):
        u = numpy.clip((t - t0) / max(t1 - t0, 1e-9), 0.0, 1.0)
        out = numpy.where(t >= t0, v0 + (v1 - v0) * u * u * (3 - 2 * u), out)
    return out


def decay(seconds, t60, attack=0.0005):
    """An envelope that rises within `attack` and falls by 60 dB in `t60` seconds."""
    t = times(seconds)
    return numpy.minimum(t / attack, 1.0) * 10.0 ** (-3.0 * numpy.maximum(t - attack, 0.0) / t60)


def faded(x, rise=0.003, fall=0.01):
    """Raised-cosine fades at both ends."""
    out = numpy.array(x, dtype=float)
    shape = (-1,) + (1,) * (out.ndim - 1)
    for n, at_end in ((min(samples(rise), len(out)), False), (min(samples(fall), len(out)), True)):
        ramp = 0.5 - 0.5 * numpy.cos(numpy.pi * (numpy.arange(n) + 0.5) / n)
        if at_end:
            out[len(out) - n:] *= ramp[::-1].reshape(shape)
        else:
            out[:n] *= ramp.reshape(shape)
    return out


def unit(x):
    """Scaled so that the largest sample is 1."""
    peak = numpy.max(numpy.abs(x)) if len(x) else 0.0
    return x / peak if peak > 0.0 else x


def level(x, rms=1.0):
    """Scaled to this root mean square over the part that is not silent."""
    power = numpy.square(x)
    loud = power[power > 1e-8 * max(power.max(), 1e-30)]
    return x * (rms / numpy.sqrt(loud.mean())) if len(loud) else x


def lay(*layers):
    """The sum of layers, each a signal, (second, signal) or (second, signal, gain); as long as the last one sounds."""
    placed = []
    for layer in layers:
        at, x, gain = (0.0, layer, 1.0) if isinstance(layer, numpy.ndarray) else (tuple(layer) + (1.0,))[:3]
        placed.append((max(0, int(round(at * RATE))), x, gain))
    wide = any(x.ndim == 2 for _, x, _ in placed)
    length = max(start + len(x) for start, x, _ in placed)
    out = numpy.zeros((length, 2) if wide else length)
    for start, x, gain in placed:
        out[start:start + len(x)] += gain * (x[:, None] if wide and x.ndim == 1 else x)
    return out


def cut(x, seconds):
    """Exactly so long: shortened, or filled with silence."""
    n = samples(seconds)
    if len(x) >= n:
        return x[:n]
    return numpy.concatenate([x, numpy.zeros((n - len(x),) + x.shape[1:])])


def trimmed(x, floor_db=-62.0):
    """Without what lies `floor_db` below the peak at both ends, faded where it was cut."""
    size = numpy.abs(x.reshape(len(x), -1)).max(axis=1)
    loud = numpy.flatnonzero(size > size.max() * db(floor_db))
    if not len(loud):
        return x
    first, last = max(0, loud[0] - samples(0.002)), min(len(x), loud[-1] + samples(0.02))
    return faded(x[first:last], 0.001, 0.02)


def panned(x, place):
    """Mono to stereo at -1 (left) to 1 (right), the same power everywhere; `place` may be one value a sample."""
    angle = (numpy.asarray(place) + 1.0) * (numpy.pi / 4.0)
    return numpy.stack([x * numpy.cos(angle), x * numpy.sin(angle)], axis=1)


def saturated(x, drive=1.0):
    """Rounded off as by an overdriven stage; small samples keep their size."""
    return numpy.tanh(x * drive) / drive


def resampled(x, ratio):
    """Played `ratio` times as fast, a number or one a sample of what is read; linear, for noise and short grains."""
    if numpy.isscalar(ratio):
        at = numpy.arange(0.0, len(x) - 1, ratio)
    else:
        at = numpy.cumsum(ratio)
        at = at[at < len(x) - 1]
    return numpy.interp(at, numpy.arange(len(x)), x)
