"""Rooms: places that sounds are heard in, as impulse responses: early reflections and a tail that darkens."""

from dataclasses import dataclass

import numpy
from scipy import signal

import filters
import shapes


@dataclass(frozen=True)
class Room:
    """`size` metres across, `t60` seconds at 500 Hz; above `bright` Hz the tail dies first; `echoes` early ones."""

    size: float
    t60: float
    bright: float
    echoes: int


CLOSET = Room(1.5, 0.16, 3500.0, 8)
SMALL = Room(4.0, 0.35, 4500.0, 12)
HALL = Room(12.0, 1.3, 3500.0, 18)
CELLAR = Room(7.0, 1.0, 2200.0, 16)
CHAPEL = Room(22.0, 3.2, 2800.0, 24)
OUTDOORS = Room(35.0, 0.6, 1800.0, 4)
PIPE = Room(0.9, 0.8, 1400.0, 30)


def response(take, room, channels=1):
    """The impulse response of a room without the direct sound; the channels of two are alike in tone, not in detail."""
    return numpy.stack([_one_ear(take.rng, room) for _ in range(channels)], axis=1).squeeze()


def _one_ear(rng, room):
    first = room.size / 343.0
    out = shapes.silence(room.t60 * 1.1 + first * 4)
    for _ in range(room.echoes):
        at = first * (1.0 + 3.0 * rng.random() ** 1.5)
        out[int(at * shapes.RATE)] += rng.choice((-1.0, 1.0)) * 0.5 * (first / at) ** 1.2
    out = filters.lowpass(out, room.bright * 1.8, 1)
    tail = rng.standard_normal(len(out)) * 0.09
    t = numpy.arange(len(out)) / shapes.RATE
    mellow = filters.lowpass(tail, room.bright * 0.5, 1) * 1.6 * 10.0 ** (-3.0 * t / room.t60)
    crisp = filters.highpass(tail, room.bright * 0.5, 1) * 10.0 ** (-3.0 * t / (room.t60 * 0.45))
    build = numpy.clip((t - first) / (first * 2.5), 0.0, 1.0)
    return out + (mellow + filters.lowpass(crisp, room.bright * 2.0, 1)) * build


def heard_in(take, x, room, wet=0.3, stereo=False):
    """The sound with a share of a room: `wet` 1 has the room as strong as the sound itself.

    The tail is added after the sound's end; mono in and `stereo` makes stereo out.
    """
    echo = response(take, room, 2 if stereo or x.ndim == 2 else 1)
    dry = x if x.ndim == echo.ndim else numpy.repeat(x[:, None], 2, axis=1)
    room_power = numpy.sqrt(numpy.sum(numpy.square(echo), axis=0)).mean()
    return shapes.lay(dry, signal.fftconvolve(dry, echo / room_power, axes=0) * wet)
