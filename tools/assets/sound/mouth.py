"""Mouth: what comes out of one: breath, whispered syllables, a hoarse throat."""

import numpy

import filters
import noise
import shapes

# Formants in Hz of a grown man's vowels; `size` below 1 is a larger head, above 1 a smaller one.
VOWELS = {
    "a": (700, 1150, 2550, 3500), "e": (480, 1750, 2500, 3500), "i": (300, 2150, 2950, 3600),
    "o": (430, 850, 2450, 3300), "u": (320, 750, 2300, 3250), "er": (500, 1350, 1750, 3350),
}
# Of consonants: band in Hz, seconds, gain, and whether they burst.
CONSONANTS = {
    "s": (4800, 9500, 0.11, 1.0, False), "sh": (2200, 5600, 0.11, 0.9, False), "f": (1200, 8500, 0.08, 0.35, False),
    "h": (500, 3500, 0.06, 0.3, False), "th": (1600, 7500, 0.07, 0.3, False), "t": (3000, 8000, 0.03, 1.1, True),
    "k": (1500, 3800, 0.035, 1.0, True), "p": (400, 2200, 0.025, 0.7, True), "ch": (2500, 6500, 0.06, 1.0, True),
}


def breath(take, seconds, inward, effort):
    """One breath through an open mouth, drawn in or let out; `effort` 0 is asleep, 1 out of all breath.

    Drawn in it is thin and bright and stops short; let out it starts at once, sinks, and is darker.
    """
    e = effort
    if inward:
        envelope = shapes.smooth_curve(seconds, [(0, 0), (seconds * 0.55, 0.8), (seconds * 0.82, 1), (seconds, 0)])
        mouth = [(820 + 260 * e, 420, 0.5), (1750 + 200 * e, 600, 1.0), (2900, 800, 0.7), (4600, 1800, 0.35)]
    else:
        envelope = shapes.smooth_curve(seconds, [(0, 0), (seconds * 0.13, 1), (seconds * 0.45, 0.6), (seconds, 0)])
        mouth = [(480 + 160 * e, 300, 0.9), (1150 + 150 * e, 450, 1.0), (2450, 800, 0.4), (3900, 1500, 0.18)]
    mouth = [(take.near(hz, 0.06), width * (1 + 0.4 * e), gain) for hz, width, gain in mouth]
    flutter = 1.0 - 0.35 * noise.wander(take.rng, seconds, 18.0) * (0.4 + e)
    air = noise.pink(take.rng, seconds) + 0.35 * noise.white(take.rng, seconds)
    x = filters.formants(air, mouth) + 0.05 * filters.highpass(air, 5000.0, 1)
    return filters.highpass(x, 260.0) * envelope * flutter * (0.4 + 0.6 * e)


def throat(take, hz, rough=0.1):
    """The pulses of vocal folds at `hz`, one value a sample; `rough` unsettles their length and strength."""
    seconds = len(hz) / shapes.RATE
    unsteady = 1.0 + rough * 0.3 * noise.wander(take.rng, seconds, 60.0, -1.0, 1.0)
    turns = numpy.cumsum(hz * unsteady) / shapes.RATE
    phase = turns % 1.0
    opened = numpy.where(phase < 0.6, numpy.square(numpy.sin(numpy.pi * phase / 0.6)) * phase / 0.6, 0.0)
    flow = numpy.diff(opened, prepend=0.0) * 8.0
    strength = 1.0 - rough * noise.wander(take.rng, seconds, 45.0)
    strength *= 1.0 - 0.5 * rough * (numpy.floor(turns) % 2)
    return filters.lowpass(flow * strength + rough * 0.25 * noise.white(take.rng, seconds) * opened, 5000.0, 1)


def spoken(source, start, end, size=1.0):
    """A source through a mouth that glides from one vowel to another and closes a little at the end."""
    seconds, out = len(source) / shapes.RATE, numpy.zeros(len(source))
    for first, last, width, gain in zip(VOWELS[start], VOWELS[end], (110, 130, 200, 300), (1.0, 0.7, 0.4, 0.2)):
        track = size * shapes.smooth_curve(seconds, [(0.0, first * 0.92), (seconds * 0.25, first), (seconds, last)])
        out += gain * filters.moving_bandpass(source, track, track / (width * size))
    return out


def whisper(take, syllables, size=1.0, pace=5.5):
    """So many whispered syllables that mean nothing, `pace` a second; the mouth glides from one into the next."""
    knots, bursts, strength, at = [], [], [(0.0, 0.0)], 0.05
    for index in range(syllables):
        length = take.near(1.0 / pace, 0.35) * (1.5 if index == syllables - 1 else 1.0)
        low, high, t, gain, sudden = CONSONANTS[take.pick(tuple(CONSONANTS))]
        shape = shapes.decay(t, t * 1.5) if sudden else numpy.sin(numpy.pi * numpy.linspace(0, 1, shapes.samples(t)))
        hiss = noise.band(take.rng, t, low * size, min(high * size, 15000)) * shape
        bursts.append((at, hiss, gain * take.near(0.5, 0.3)))
        vowel = VOWELS[take.pick(tuple(VOWELS))]
        knots += [(at + t * 0.7, vowel), (at + max(length, t + 0.05), vowel)]
        stress = take.between(0.45, 1.0)
        strength += [(at + t * 0.4, 0.04), (at + t * 0.9 + 0.03, stress)]
        at += max(length, t + 0.06)
        strength.append((at - 0.02, stress * 0.5))
    seconds = at + 0.1
    strength += [(at + 0.05, 0.0), (seconds, 0.0)]
    air = noise.pink(take.rng, seconds) * shapes.smooth_curve(seconds, strength)
    x = numpy.zeros(len(air))
    for formant, (gain, q) in enumerate(((0.5, 4.0), (1.0, 6.0), (0.8, 7.0), (0.5, 7.0))):
        track = filters.lowpass(shapes.curve(seconds, [(s, v[formant] * size) for s, v in knots]), 14.0, 1)
        x += gain * filters.moving_bandpass(air, numpy.maximum(track, VOWELS["i"][0] * size), q)
    return shapes.lay(x * 3.0, *bursts)
