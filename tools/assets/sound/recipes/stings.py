"""Stings: short music for what the player has just found, felt or escaped. Each follows a cause in the world."""

import numpy

import filters
import friction
import modal
import mouth
import noise
import rooms
import shapes
from score import Score, hz, rung_out
from take import sound


def _swell(x, rise, fall):
    """Grows out of nothing and goes back."""
    seconds = len(x) / shapes.RATE
    shape = shapes.smooth_curve(seconds, ((0, 0), (rise, 1), (max(rise + 0.1, seconds - fall), 0.8), (seconds, 0)))
    return x * shape.reshape((-1,) + (1,) * (x.ndim - 1))


def _bowed_iron(take, seconds, lowest):
    """A sheet of iron under a bow: it groans, then sings."""
    rate = lowest * shapes.smooth_curve(seconds, ((0, 0.7), (seconds * 0.6, 1.0), (seconds, 1.04)))
    slips = friction.slips(take, rate, 0.04, 0.4)
    return shapes.level(modal.ring(slips, modal.body(take, "sheet", lowest * 1.5, 26, 0.4), 0.8))


@sound(long=True, stereo=True, quality=4, loudness=-30, what="discovery: two notes of a celesta over a held ninth",
       judgement="good: small; it asks rather than tells")
def discovery(take):
    score = Score(take, 60)
    for name, beat, size, place in (("D3", 0, 2.0, 0.3), ("A3", 0.3, 1.4, 0.0), ("E4", 0.8, 1.0, -0.4)):
        score.bow(beat, name, 4.2 - beat, 0.2, size, place, over=0.8, attack=1.1, release=1.5)
    score.celesta(0.7, "A5", 0.3)
    score.celesta(1.5, "E6", 0.22)
    score.piano(0.0, "D2", 5, 0.2)
    return rung_out(score.made(wet=0.55), 1.5)


@sound(long=True, stereo=True, quality=4, loudness=-28,
       what="dread: low strings that close to a cluster, and iron under a bow",
       judgement="good: no attack anywhere; the iron is what makes it unpleasant")
def dread(take):
    score = Score(take, 60)
    for i, name in enumerate(("D2", "Eb2", "A2", "Bb2")):
        score.bow(0.6 * i, name, 6.0 - 0.6 * i, force=0.3, over=0.8, attack=1.8, release=1.6, size=2.6,
                  place=0.5 - 0.3 * i, players=2, shake=0.05)
    score.put(1.2, _swell(_bowed_iron(take, 4.2, 96.0), 2.6, 1.2), 0.03, -0.5)
    score.put(1.8, _swell(_bowed_iron(take, 3.6, 143.0), 2.2, 1.0), 0.015, 0.6)
    score.drum(5.2, 0.25, 38.0)
    return rung_out(score.made(wet=0.6), 1.5)


@sound(long=True, stereo=True, quality=4, loudness=-26,
       what="near miss: breath drawn in, strings that let go, a heart that goes on",
       judgement="good: the relief is in the strings that fade; the heart outlasts them")
def near_miss(take):
    score = Score(take, 60)
    drawn = shapes.level(mouth.breath(take, 0.9, True, 0.8))
    score.put(0.0, drawn, 0.1, 0.0, 0.0)
    for i, (name, beat) in enumerate((("Eb5", 0.85), ("D5", 0.9), ("A4", 0.95), ("C#4", 1.0))):
        score.bow(beat, name, 3.2, force=0.34, over=0.4, attack=0.05, release=2.6, slide=0.0, size=1.2,
                  place=-0.5 + 0.3 * i, players=2, pulse=9.0 if i < 2 else 0.0, shake=0.0)
    score.drum(0.85, 0.5, 44.0)
    for beat in (2.0, 2.32, 3.1, 3.45, 4.4, 4.8):
        score.drum(beat, 0.3 / (0.5 + 0.4 * beat), 42.0)
    return rung_out(score.made(rooms.HALL, wet=0.5), 1.2)


@sound(long=True, stereo=True, quality=4, loudness=-21,
       what="death: brass and strings that sink by a tritone, the drum once, and the room shut",
       judgement="good: a fall, not a bang; the end is stifled as by a lid")
def death(take):
    score = Score(take, 60)
    score.drum(0.0, 0.7, 40.0)
    score.piano(0.0, "D1 A1 Eb2", 5, 0.6, 0.0)
    for low, high in (("D2", "Ab2"), ("A2", "Eb3")):
        score.brass(0.05, high, 1.8, 0.6, 0.2, attack=0.08)
        score.brass(1.5, low, 4.0, 0.55, 0.5, muted=0.3, attack=0.5)
    for i in range(6):
        start, end = hz("Eb4") * 2 ** (i / 12), hz("A2") * 2 ** (i / 24)
        seconds = 4.5
        unrest = noise.wander(take.rng, seconds, 5.0, 0.985, 1.015)[: shapes.samples(seconds)]
        sweep = shapes.smooth_curve(seconds, ((0, start), (seconds, end))) * unrest
        phase = numpy.cumsum(sweep) / shapes.RATE
        saw = 2.0 * (phase % 1.0) - 1.0
        moan = filters.formants(filters.lowpass(saw, 2500.0, 1),
                                ((330.0, 160.0, 1.0), (760.0, 260.0, 0.7), (1500.0, 500.0, 0.3)))
        score.put(0.1 + 0.08 * i, _swell(shapes.level(moan), 0.5, 3.0), 0.035, -0.7 + 0.28 * i)
    x = score.made(wet=0.5)
    seconds = len(x) / shapes.RATE
    lid = shapes.curve(seconds, ((0, 9000), (2.0, 5000), (4.8, 300), (seconds, 120)))
    return rung_out(numpy.stack([filters.moving_lowpass(x[:, ear], lid) for ear in (0, 1)], axis=1))


@sound(long=True, stereo=True, quality=4, loudness=-25,
       what="victory: the tune's first five notes in major, and an open door's worth of strings",
       judgement="good: modest; the celesta doubles the upright and both are a little late")
def victory(take):
    score = Score(take, 66)
    for name, size, place in (("D3", 2.0, 0.4), ("A3", 1.4, 0.1), ("F#4", 1.0, -0.4)):
        score.bow(0.0, name, 6.0, 0.25, size, place, over=1.2, attack=1.0, release=2.0)
    for beat, name in ((0.0, "A4"), (1.0, "D5"), (1.5, "C#5"), (2.5, "E5"), (3.0, "F#5")):
        score.piano(beat, name, 2.2, 0.42)
        score.celesta(beat + 0.03, name.replace("5", "6").replace("4", "5"), 0.2)
    score.piano(0.0, "D2 A2", 3, 0.3)
    score.piano(3.0, "D2 F#3 A3", 4, 0.3, 0.06)
    return rung_out(score.made(wet=0.5), 2.0)
