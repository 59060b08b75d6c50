"""Loops: sounds whose end runs into their beginning."""

import numpy
from scipy import ndimage

import shapes


def seamless(x, overlap=0.5):
    """The last `overlap` seconds faded over the first ones, with even power: for noise, water, wind, breath."""
    n = min(shapes.samples(overlap), len(x) // 2)
    turn = numpy.linspace(0.0, numpy.pi / 2, n).reshape((-1,) + (1,) * (x.ndim - 1))
    out = numpy.array(x[:len(x) - n])
    out[:n] = x[:n] * numpy.sin(turn) + x[len(x) - n:] * numpy.cos(turn)
    return out


def wrapped(x, seconds):
    """A loop of exactly so long: what rings on after its end is laid over its beginning. For beats, ticks and music."""
    n = shapes.samples(seconds)
    out = numpy.zeros((n,) + x.shape[1:])
    for start in range(0, len(x), n):
        piece = x[start:start + n]
        out[:len(piece)] += piece
    return out


def begun_quietly(x):
    """The same loop begun where 5 ms of it are quietest: what encoding does to a file's ends is not heard there."""
    power = numpy.square(x.reshape(len(x), -1)).sum(axis=1)
    near = ndimage.uniform_filter1d(power, shapes.samples(0.005), mode="wrap")
    return numpy.roll(x, -int(numpy.argmin(near)), axis=0)
