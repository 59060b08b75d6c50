"""Modal: solid things that ring. A body is a bank of modes; what strikes or rubs it is a force through that bank."""

import math
from dataclasses import dataclass

import numpy
from scipy import signal

import filters
import noise
import shapes


@dataclass(frozen=True)
class Material:
    """How a material rings: T60 in seconds at 100 Hz, how it shrinks with frequency, and how modes are spaced.

    A mode at f Hz falls by 60 dB in `ring / (1 + (f / corner) ** slope)` seconds. `spacing` is "bar" (modes spread
    like 1, 2.8, 5.4), "piece" (a thing that bends two ways and twists), "plate" (dense, even) or "shell" (in near
    pairs, as of a bell or a pot). `jitter` detunes.
    """

    ring: float
    corner: float
    slope: float
    spacing: str
    jitter: float


MATERIALS = {
    "wood": Material(0.16, 450.0, 1.0, "plate", 0.06),
    "board": Material(0.26, 300.0, 0.9, "plate", 0.08),
    "metal": Material(2.2, 1800.0, 1.1, "bar", 0.03),
    "iron": Material(1.2, 2600.0, 1.0, "piece", 0.05),
    "sheet": Material(1.1, 2500.0, 1.0, "plate", 0.05),
    "bell": Material(5.0, 1500.0, 1.2, "shell", 0.004),
    "stone": Material(0.07, 2500.0, 1.2, "plate", 0.08),
    "tile": Material(0.09, 3500.0, 1.1, "plate", 0.06),
    "glass": Material(0.55, 4500.0, 1.3, "shell", 0.03),
    "pot": Material(0.22, 2200.0, 1.0, "shell", 0.03),
    "box": Material(0.07, 250.0, 0.8, "plate", 0.15),
}


@dataclass(frozen=True)
class Body:
    """Modes as arrays: Hz, T60 in seconds, and gain."""

    hz: numpy.ndarray
    t60: numpy.ndarray
    gain: numpy.ndarray


def body(take, material, lowest, count=24, tilt=0.7, damping=1.0):
    """A thing of this material whose lowest mode lies at `lowest` Hz.

    `tilt` is how fast the gains fall along the modes (0 not at all); `damping` above 1 shortens the ringing, as of a
    thing that is held or stands full. Two things of one take differ as two things of one kind do.
    """
    kind = MATERIALS[material] if isinstance(material, str) else material
    hz = lowest * _ratios(kind.spacing, count)
    hz = hz * numpy.exp(kind.jitter * take.rng.standard_normal(count))
    hz[0] = lowest
    t60 = kind.ring / damping / (1.0 + (hz / kind.corner) ** kind.slope)
    t60 = t60 * numpy.exp(0.25 * take.rng.standard_normal(count))
    gain = (hz / lowest) ** -tilt * take.rng.uniform(0.25, 1.0, count)
    kept = hz < 0.45 * shapes.RATE
    return Body(hz[kept], numpy.maximum(t60[kept], 0.004), gain[kept])


def _ratios(spacing, count):
    bending = ((numpy.arange(count) + 1.5) / 1.5) ** 2
    if spacing == "bar":
        return bending
    if spacing == "piece":
        twisting = 2.35 * (numpy.arange(count) + 1.0)
        return numpy.sort(numpy.concatenate([bending, 1.62 * bending, twisting]))[:count]
    if spacing == "shell":
        n = numpy.arange(count) // 2 + 2.0
        pair = 1.0 + 0.006 * (numpy.arange(count) % 2)
        return (n * n - 1) / numpy.sqrt(n * n + 1) / (3 / math.sqrt(5)) * pair
    grid = sorted(m * m + 1.7 * n * n for m in range(1, 12) for n in range(1, 12))
    return numpy.array(grid[:count]) / grid[0]


def ring(force, modes, tail=None):
    """What a body sounds like under a force; `tail` seconds of ringing are kept after it, by default until -50 dB."""
    tail = float(modes.t60.max()) * 0.8 if tail is None else tail
    driven = numpy.concatenate([force, shapes.silence(tail)])
    out = numpy.zeros(len(driven))
    for hz, t60, gain in zip(modes.hz, modes.t60, modes.gain):
        out += gain * filters.resonator(driven, hz, t60)
    return out


def blow(seconds, hardness=0.5):
    """The force of one hit: a rounded pulse, 6 ms wide for what is soft (0), 0.15 ms for what is hard (1)."""
    width = 0.006 * (0.025 ** hardness)
    n = max(3, shapes.samples(width))
    out = shapes.silence(max(seconds, width + 0.001))
    out[:n] = signal.windows.hann(n + 2)[1:-1]
    return out / out.sum() * 6.0


def contact(take, hardness):
    """What two surfaces say where they meet, before the bodies ring: a burst of grit, 12 ms if soft, 2 ms if hard."""
    t = 0.012 * 0.17 ** hardness
    grit = noise.white(take.rng, t * 4) * shapes.decay(t * 4, t * 3, 0.0002)
    return shapes.unit(filters.lowpass(grit, 500.0 * 30.0 ** hardness, 1))


def struck(take, modes, hardness=0.5, bounces=0, tail=None, dirt=0.35):
    """One hit on a body: every hit falls on another place, so the modes answer in another mixture.

    `dirt` is how much of the contact itself is in it, besides the ringing: 0 is a clean bell, 1 mostly a knock.
    """
    answer = Body(modes.hz, modes.t60, modes.gain * take.rng.uniform(0.3, 1.0, len(modes.gain)))
    gap, gain, at = take.between(0.05, 0.09), 1.0, 0.0
    force, touch = shapes.silence(0.02), shapes.silence(0.02)
    for _ in range(bounces + 1):
        grit = contact(take, hardness)
        force = shapes.lay(force, (at, blow(0.01, hardness), gain), (at, grit, 0.25 * gain * dirt))
        touch = shapes.lay(touch, (at, grit, gain))
        at, gain, gap = at + gap, gain * take.between(0.35, 0.6), gap * take.between(0.55, 0.75)
    ringing = ring(force, answer, tail)
    return shapes.lay(ringing, (0.0, touch, dirt * numpy.abs(ringing).max()))
