"""Air: wind by its gusts, and what it whistles through."""

import numpy

import filters
import noise
import shapes


def gusts(take, seconds, calm=0.25, rate=0.22):
    """How hard it blows, 0..1: slow swells with a quicker unrest on them; the end meets the beginning."""
    slow = noise.wander_loop(take.rng, seconds, rate)
    quick = noise.wander_loop(take.rng, seconds, rate * 6.0)
    return calm + (1.0 - calm) * numpy.clip(slow**1.5 * (0.7 + 0.6 * quick), 0.0, 1.0)


def wind(take, strength, low=90.0, high=900.0):
    """Wind of this strength (0..1, one value a sample) around a house: deeper and duller when it is weak."""
    seconds = len(strength) / shapes.RATE
    rush = noise.pink(take.rng, seconds)
    body = filters.moving_lowpass(rush, low + (high - low) * strength**1.3)
    edges = numpy.zeros(len(strength))
    torn = noise.pink(take.rng, seconds)
    for place in (0.35, 0.8, 1.7):
        middle = high * place * (0.6 + 0.5 * strength) * noise.wander_loop(take.rng, seconds, 0.8, 0.85, 1.15)
        edges += filters.moving_bandpass(torn, middle[: len(torn)], 3.5) * take.between(0.5, 1.0)
    return (body + 0.7 * edges * strength) * (0.15 + strength) ** 1.4


def whistle(take, strength, hz, sharpness=28.0):
    """The thin tone of wind in a gap; it starts at a certain strength, climbs with it and breaks into its octave."""
    seconds = len(strength) / shapes.RATE
    unrest = noise.wander(take.rng, seconds, 7.0, -0.02, 0.02)[: len(strength)]
    middle = hz * (0.75 + 0.5 * strength + unrest)
    source = noise.white(take.rng, seconds)[: len(strength)]
    tone = filters.moving_bandpass(filters.moving_bandpass(source, middle, sharpness), middle, sharpness)
    over = filters.moving_bandpass(source, middle * 2.02, sharpness)
    sounding = numpy.clip((strength - 0.35) * 2.0, 0.0, 1.0)
    return shapes.level(tone) * sounding**1.5 + 0.15 * shapes.level(over) * sounding**3
