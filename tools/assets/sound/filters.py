"""Filters: fixed, resonant and moving ones. Frequencies in Hz; signals run along the first axis."""

import math

import numpy
from scipy import signal

import shapes

NYQUIST = shapes.RATE / 2


def lowpass(x, hz, order=2):
    return _butter(x, hz, "lowpass", order)


def highpass(x, hz, order=2):
    return _butter(x, hz, "highpass", order)


def bandpass(x, low, high, order=2):
    return _butter(x, (low, high), "bandpass", order)


def _butter(x, hz, kind, order):
    hz = numpy.clip(hz, 5.0, 0.98 * NYQUIST)
    return signal.sosfilt(signal.butter(order, hz, kind, fs=shapes.RATE, output="sos"), x, axis=0)


def bell(x, hz, q, decibels):
    """Raises or lowers the neighbourhood of a frequency."""
    a, w, alpha = _biquad_terms(hz, q, decibels)
    return _biquad(x, (1 + alpha * a, -2 * math.cos(w), 1 - alpha * a),
                   (1 + alpha / a, -2 * math.cos(w), 1 - alpha / a))


def low_shelf(x, hz, decibels):
    return _shelf(x, hz, decibels, 1)


def high_shelf(x, hz, decibels):
    return _shelf(x, hz, decibels, -1)


def _shelf(x, hz, decibels, side):
    a, w, alpha = _biquad_terms(hz, 0.707, decibels)
    c, r = side * math.cos(w), 2 * math.sqrt(a) * alpha
    top = (a * (a + 1 - (a - 1) * c + r), 2 * a * side * (a - 1 - (a + 1) * c), a * (a + 1 - (a - 1) * c - r))
    bottom = (a + 1 + (a - 1) * c + r, -2 * side * (a - 1 + (a + 1) * c), a + 1 + (a - 1) * c - r)
    return _biquad(x, top, bottom)


def _biquad_terms(hz, q, decibels):
    w = 2 * math.pi * min(hz, 0.98 * NYQUIST) / shapes.RATE
    return 10 ** (decibels / 40), w, math.sin(w) / (2 * q)


def _biquad(x, top, bottom):
    return signal.lfilter(numpy.array(top) / bottom[0], numpy.array(bottom) / bottom[0], x, axis=0)


def resonator(x, hz, t60):
    """A single mode driven by x: rings at `hz`, falls by 60 dB in `t60` seconds; an impulse of 1 rings at about 1."""
    if hz >= 0.98 * NYQUIST:
        return numpy.zeros_like(x)
    r = 10.0 ** (-3.0 / (t60 * shapes.RATE))
    w = 2 * math.pi * hz / shapes.RATE
    return signal.lfilter([0.0, math.sin(w)], [1.0, -2 * r * math.cos(w), r * r], x, axis=0)


def formants(x, peaks):
    """The sum of resonances (Hz, bandwidth in Hz, gain), each of gain 1 at its peak: a mouth, a pipe, a hollow body."""
    out = numpy.zeros(len(x))
    for hz, width, gain in peaks:
        top, bottom = signal.iirpeak(hz, hz / width, fs=shapes.RATE)
        out += gain * signal.lfilter(top, bottom, x)
    return out


BLOCK = 64


def moving_lowpass(x, hz, q=0.707):
    """A low-pass whose corner follows `hz`, one value a sample."""
    return _moving(x, hz, q, "low")


def moving_highpass(x, hz, q=0.707):
    return _moving(x, hz, q, "high")


def moving_bandpass(x, hz, q=2.0):
    """A band of gain 1 at its middle, which follows `hz`; `q` may follow too."""
    return _moving(x, hz, q, "band")


def _moving(x, hz, q, kind):
    """Biquads renewed every `BLOCK` samples; the state carries over, so slow movements leave no trace."""
    out = numpy.empty(len(x))
    hz = numpy.broadcast_to(hz, (len(x),))
    q = numpy.broadcast_to(q, (len(x),))
    state = numpy.zeros(2)
    for start in range(0, len(x), BLOCK):
        w = 2 * math.pi * min(max(float(hz[start]), 10.0), 0.95 * NYQUIST) / shapes.RATE
        c, alpha = math.cos(w), math.sin(w) / (2 * float(q[start]))
        top = {"low": ((1 - c) / 2, 1 - c, (1 - c) / 2), "high": ((1 + c) / 2, -1 - c, (1 + c) / 2),
               "band": (alpha, 0.0, -alpha)}[kind]
        norm = 1.0 + alpha
        bottom = (1.0, -2 * c / norm, (1 - alpha) / norm)
        block, state = signal.lfilter([t / norm for t in top], bottom, x[start:start + BLOCK], zi=state)
        out[start:start + BLOCK] = block
    return out
