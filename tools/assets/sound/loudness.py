"""Loudness: measured by the broadcasters' recommendation R 128 (BS.1770), and sounds brought to their target by it."""

import numpy
from scipy import ndimage, signal

import filters
import shapes

TRUE_PEAK_DB = -2.0
SILENT = -120.0


def weighted(x):
    """The K-weighted signal, two columns for stereo, one for mono."""
    x = x.reshape(len(x), -1)
    bright = filters.high_shelf(x, 1682.0, 4.0)
    return filters.highpass(filters.highpass(bright, 38.1, 1), 38.1, 1)


def of_windows(x, seconds=0.4, hop=0.1):
    """LUFS of each window; a mono file counts as one loudspeaker. What is shorter than a window lies in silence."""
    power = numpy.square(weighted(x)).sum(axis=1)
    n, step = shapes.samples(seconds), shapes.samples(hop)
    power = numpy.concatenate([numpy.zeros(n), power, numpy.zeros(n)]) if len(x) < 2 * n else power
    total = numpy.concatenate([[0.0], numpy.cumsum(power)])
    starts = numpy.arange(0, len(power) - n + 1, step)
    mean = (total[starts + n] - total[starts]) / n
    return -0.691 + 10.0 * numpy.log10(numpy.maximum(mean, 10 ** (SILENT / 10)))


def momentary(x):
    """LUFS of the loudest 400 ms."""
    return float(of_windows(numpy.concatenate([x, numpy.zeros((shapes.samples(0.4),) + x.shape[1:])]), hop=0.01).max())


def integrated(x):
    """LUFS of the whole, pauses left out: windows below -70 LUFS, then those 10 LU below the rest."""
    windows = of_windows(x)
    for gate in (-70.0, None):
        mean = _mean(windows)
        windows = windows[windows > (gate if gate is not None else mean - 10.0)]
        if not len(windows):
            return SILENT
    return _mean(windows)


def _mean(windows):
    return float(10.0 * numpy.log10(numpy.mean(10.0 ** (windows / 10.0)))) if len(windows) else SILENT


def true_peak(x):
    """dB of the largest value between the samples too (4 times oversampled)."""
    fine = signal.resample_poly(numpy.concatenate([x, numpy.zeros((64,) + x.shape[1:])]), 4, 1, axis=0)
    return float(20.0 * numpy.log10(max(numpy.max(numpy.abs(fine)), 1e-9)))


def limited(x, ceiling_db):
    """Peaks held below a ceiling by a gain that looks 2 ms ahead."""
    ceiling, n = shapes.db(ceiling_db), shapes.samples(0.002)
    size = numpy.abs(x.reshape(len(x), -1)).max(axis=1)
    need = numpy.minimum(ceiling / numpy.maximum(size, 1e-12), 1.0)
    held = ndimage.minimum_filter1d(need, 2 * n + 1)
    gain = ndimage.uniform_filter1d(held, 2 * n + 1)
    return x * gain.reshape((-1,) + (1,) * (x.ndim - 1))


def without_rumble(x):
    """Without DC and what lies below hearing. The sound is filtered as if it came round before, for those that loop."""
    lead = x[-shapes.RATE:]
    return filters.highpass(numpy.concatenate([lead, x]), 30.0)[len(lead):]


def finished(x, target, whole):
    """Centred, at `target` LUFS (of the whole, or of the loudest 400 ms), its peaks below the ceiling.

    A sharp sound whose target asks for higher peaks is limited by up to 6 dB; beyond that it ends up quieter.
    """
    measure = integrated if whole else momentary
    for _ in range(3):
        x = x * shapes.db(target - measure(x))
        over = true_peak(x) - TRUE_PEAK_DB
        if over <= 0.0:
            break
        x = limited(x * shapes.db(-max(over - 6.0, 0.0)), TRUE_PEAK_DB - 0.3)
    x = x * shapes.db(min(0.0, TRUE_PEAK_DB - true_peak(x)))
    return centred(x, whole)


def centred(x, whole):
    """Without the little DC that a cut or a limiter leaves: lifted evenly, or by a hump that spares the ends."""
    hump = numpy.ones(len(x)) if whole else numpy.hanning(len(x))
    return x - x.mean(axis=0) * (hump / hump.mean()).reshape((-1,) + (1,) * (x.ndim - 1))
