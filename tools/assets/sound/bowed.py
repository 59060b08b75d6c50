"""Bowed strings: many notes at once, each a string of two delay lines on which a bow sticks and slips."""

import numpy

import filters
import shapes

BLOCK = 2048

LOSS_POLE = 0.45
"""Of the one-pole filter at the bridge: how much faster the high partials die."""

LOSS_GAIN = 0.955

FRICTION_SLOPE = 3.0
"""How sharply the bow's grip gives way as it slides; less slope is a heavier bow."""


class Stroke:
    """One bowed note.

    `pitch` in Hz, `seconds` with its release, `force` 0..1, `attack` and `release` in seconds. `point` is the bow's
    place as a share of the string: 0.04 is glassy at the bridge, 0.2 soft over the fingerboard. `shake` is the
    vibrato's depth and `slide` the way to the pitch from below, both in semitones; `pulse` bows to and fro that many
    times a second.
    """

    def __init__(self, pitch, seconds, force=0.5, attack=0.25, release=0.4, point=0.127, shake=0.12, slide=0.0,
                 pulse=0.0):
        self.pitch, self.seconds, self.force = pitch, seconds, force
        self.attack, self.release = attack, release
        self.point, self.shake, self.slide, self.pulse = point, shake, slide, pulse


def play(strokes, rng):
    """The sound of each stroke at the bridge, as arrays of the strokes' lengths, tuned and roughly of level 0.1."""
    lanes = _Lanes(strokes, rng)
    steps = int(max(s.seconds for s in strokes) * shapes.RATE)
    out = numpy.zeros((steps, len(strokes)), dtype=numpy.float32)
    for start in range(0, steps, BLOCK):
        lanes.run(start, out[start : start + BLOCK])
    return [out[: int(s.seconds * shapes.RATE), i].astype(float) for i, s in enumerate(strokes)]


class _Lanes:
    """The state of every string, side by side, so that one step of time moves them all."""

    def __init__(self, strokes, rng):
        self.rng = rng
        self.n = len(strokes)
        column = lambda name: numpy.array([getattr(s, name) for s in strokes], dtype=float)
        self.pitch, self.seconds, self.force = column("pitch"), column("seconds"), column("force")
        self.attack, self.release, self.shake = column("attack"), column("release"), column("shake")
        self.point, self.slide, self.pulse = column("point"), column("slide"), column("pulse")
        self.room = int(shapes.RATE / self.pitch.min() * 1.2) + 8
        self.neck = numpy.zeros(self.n * self.room)
        self.bridge = numpy.zeros(self.n * self.room)
        self.base = numpy.arange(self.n) * self.room
        self.loss = numpy.zeros(self.n)
        self.shake_rate = rng.uniform(4.6, 5.6, self.n)
        self.shake_phase = rng.uniform(0.0, 6.28, self.n)
        self.wander_phase = rng.uniform(0.0, 6.28, (3, self.n))

    def run(self, start, out):
        """Fills `out`, steps by strings, from the step `start` on."""
        count = len(out)
        t = ((start + numpy.arange(count)) / shapes.RATE)[:, None]
        bow = self._bow(t)
        period = shapes.RATE / self._frequency(t) - LOSS_POLE / (1.0 - LOSS_POLE)
        to_bridge, to_nut = period * self.point, period * (1.0 - self.point)
        whole_b, whole_n = to_bridge.astype(int), to_nut.astype(int)
        part_b, part_n = to_bridge - whole_b, to_nut - whole_n
        step = (start + numpy.arange(count))[:, None]
        near_b, far_b = self._slots(step - whole_b), self._slots(step - whole_b - 1)
        near_n, far_n = self._slots(step - whole_n), self._slots(step - whole_n - 1)
        write = self._slots(step + numpy.zeros((1, self.n), dtype=int))
        neck, bridge, loss = self.neck, self.bridge, self.loss
        slope = FRICTION_SLOPE + 1.5 * (1.0 - self.force)
        for i in range(count):
            a = bridge[near_b[i]]
            a += (bridge[far_b[i]] - a) * part_b[i]
            out[i] = a
            loss *= LOSS_POLE
            loss += a * ((1.0 - LOSS_POLE) * LOSS_GAIN)
            b = neck[near_n[i]]
            b += (neck[far_n[i]] - b) * part_n[i]
            difference = bow[i] + loss + b
            grip = numpy.abs(difference * slope)
            grip += 0.75
            grip *= grip
            grip *= grip
            kick = difference * numpy.minimum(1.0, 1.0 / grip)
            neck[write[i]] = kick - loss
            bridge[write[i]] = kick - b

    def _slots(self, step):
        return self.base + step % self.room

    def _bow(self, t):
        """The bow's speed: its strokes, and the roughness of hair and rosin."""
        rise = numpy.clip(t / self.attack, 0.0, 1.0)
        fall = numpy.clip((self.seconds - t) / self.release, 0.0, 1.0)
        speed = (0.035 + 0.05 * self.force) * numpy.sin(rise * numpy.pi / 2) * fall
        swell = 1.0 + 0.07 * numpy.sin(t * 1.9 + self.wander_phase[2])
        turns = numpy.where(self.pulse > 0.0, numpy.tanh(4.0 * numpy.sin(numpy.pi * self.pulse * t)), 1.0)
        rough = 1.0 + 0.25 * filters.lowpass(self.rng.standard_normal((len(t), self.n)), 3000.0, 1)
        return speed * swell * turns * rough

    def _frequency(self, t):
        depth = self.shake * numpy.clip((t - 0.25) / 0.6, 0.0, 1.0)
        shake = depth * numpy.sin(2 * numpy.pi * self.shake_rate * t + self.shake_phase)
        wander = 0.03 * numpy.sin(0.7 * t + self.wander_phase[0]) + 0.02 * numpy.sin(2.3 * t + self.wander_phase[1])
        slide = -self.slide * numpy.exp(-t / 0.09)
        return self.pitch * 2.0 ** ((shake + wander + slide) / 12.0)
