"""Instruments: an old upright piano, a celesta, strings in a body of wood, low brass, a large drum. Hz and seconds."""

import numpy
from scipy import signal

import bowed
import filters
import modal
import noise
import shapes


def piano(take, hz, seconds, force=0.5):
    """A key of an upright that was last tuned years ago; its hammer, key and board are heard too.

    Held for `seconds`, then damped.
    """
    sound = modal.ring(modal.blow(0.01, 0.35 + 0.4 * force), _wires(take, hz, force), seconds + 0.35)
    sound = shapes.unit(sound * _let_go(len(sound), seconds))
    sound = sound + 0.25 * signal.fftconvolve(sound, _soundboard(take))[: len(sound)]
    thump = modal.struck(take, modal.body(take, "board", 92.0, 14, 0.6), 0.25)
    felt = noise.band(take.rng, 0.02, 250.0, 2400.0) * shapes.decay(0.02, 0.02, 0.002)
    lift = noise.band(take.rng, 0.06, 200.0, 1500.0) * shapes.decay(0.06, 0.06, 0.01)
    return shapes.lay(sound, (0.0, shapes.unit(thump), 0.16 + 0.1 * force), (0.0, felt, 0.035),
                      (seconds, lift, 0.008)) * (0.25 + force)


def _wires(take, hz, force):
    """The strings of a key, up to three that are not quite alike: stiff, so that their partials are stretched."""
    wires = 1 if hz < 60.0 else 2 if hz < 150.0 else 3
    stretch = 0.00035 * (1.0 + (hz / 700.0) ** 2)
    bright = (500.0 + 2600.0 * force) * (1.0 + hz / 900.0) * take.near(1.0, 0.15)
    modes = []
    for _ in range(wires):
        own = hz * 2.0 ** (take.between(-4.0, 4.0) / 1200.0)
        n = numpy.arange(1, min(40, int(9000.0 / hz)) + 1)
        f = n * own * numpy.sqrt(1.0 + stretch * n * n)
        t60 = (14.0 * (110.0 / hz) ** 0.45) / (1.0 + (f / 1400.0) ** 1.1)
        gain = numpy.abs(numpy.sin(numpy.pi * n * take.near(0.125, 0.03))) / n ** 0.35 * numpy.exp(-f / bright)
        modes.append((f, t60, gain / wires * take.between(0.7, 1.1)))
    return modal.Body(*(numpy.concatenate(part) for part in zip(*modes)))


def _let_go(n, seconds):
    """The damper comes down within a tenth of a second."""
    t = numpy.arange(n) / shapes.RATE
    return numpy.where(t < seconds, 1.0, numpy.exp(-(t - seconds) / 0.07))


def _soundboard(take):
    x = noise.band(take.rng, 0.22, 90.0, 2600.0, 1) * shapes.decay(0.22, 0.2, 0.001)
    return x / numpy.sqrt(numpy.sum(x * x))


def celesta(take, hz, force=0.5):
    """A struck steel plate over its box of wood: a pure tone, a short bright one, and the hammer's tap."""
    ratio = numpy.array([1.0, 1.0013, 2.003, 4.08, 6.9, 10.7])
    gain = numpy.array([1.0, 0.5, 0.12, 0.3 + 0.3 * force, 0.14, 0.06])
    t60 = numpy.array([3.2, 2.9, 1.6, 0.55, 0.25, 0.1]) * (520.0 / hz) ** 0.4
    plate = modal.ring(modal.blow(0.01, 0.6), modal.Body(hz * ratio * take.near(1.0, 0.0015), t60, gain), 2.8)
    tap = modal.struck(take, modal.body(take, "wood", 320.0, 16, 0.5), 0.6)
    return shapes.lay(shapes.unit(plate), (0.0, shapes.unit(tap), 0.22)) * (0.25 + force)


def _violin_body(take, size):
    """What wood and air of a string instrument add; `size` 1 is a violin, 2 a cello, 3.2 a bass."""
    main = [(275.0, 0.10, 1.0), (460.0, 0.07, 1.2), (540.0, 0.06, 1.0), (850.0, 0.04, 0.6), (1150.0, 0.03, 0.7),
            (2600.0, 0.012, 0.9)]
    hz = [f / size * take.near(1.0, 0.05) for f, _, _ in main] + list(take.rng.uniform(600.0, 5200.0, 46) / size**0.5)
    t60 = [t * 1.2 * size**0.5 for _, t, _ in main] + list(take.rng.uniform(0.015, 0.05, 46))
    gain = [g for _, _, g in main] + list(take.rng.uniform(0.1, 0.42, 46) * take.rng.choice((-1.0, 1.0), 46))
    impulse = shapes.silence(0.35)
    impulse[0] = 1.0
    answer = sum(g * filters.resonator(impulse, f, t) for f, t, g in zip(hz, t60, gain))
    answer[0] += 0.6
    return answer / numpy.sqrt(numpy.sum(answer * answer))


def strings(take, strokes, players=3, size=1.0, spread=6.0):
    """Each stroke as a desk of players bows it: one array a stroke. They are up to `spread` cents and 40 ms apart."""
    body = _violin_body(take, size)
    each = []
    for stroke in strokes:
        for _ in range(players):
            cents = take.between(-spread, spread)
            each.append(bowed.Stroke(
                stroke.pitch * 2.0 ** (cents / 1200.0), stroke.seconds, stroke.force * take.between(0.8, 1.15),
                stroke.attack * take.between(0.8, 1.3), stroke.release, stroke.point * take.near(1.0, 0.06),
                stroke.shake * take.between(0.6, 1.3), stroke.slide, stroke.pulse * take.near(1.0, 0.08)))
    played = bowed.play(each, take.rng)
    sounds = []
    for i, stroke in enumerate(strokes):
        parts = [(take.between(0.0, 0.04), played[i * players + k], take.between(0.75, 1.0)) for k in range(players)]
        sound = signal.fftconvolve(shapes.lay(*parts), body)
        soft = filters.lowpass(filters.highpass(sound, 0.7 * stroke.pitch, 2), 1100.0 + 6500.0 * stroke.force, 1)
        sounds.append(shapes.level(soft) * stroke.force * 0.26)
    return sounds


def plucked(take, hz, force=0.5):
    """A gut string pulled with the finger, on a wooden body: bright for a moment, then round."""
    seconds = 1.6
    delay = shapes.RATE / hz - 0.5
    pull = shapes.silence(seconds)
    width = int(delay)
    pull[:width] = filters.lowpass(noise.white(take.rng, width / shapes.RATE)[:width], 700.0 + 3500.0 * force, 1)
    whole, part = int(delay), delay - int(delay)
    loss = 0.985 ** (1.0 + hz / 300.0)
    loop = numpy.zeros(whole + 3)
    loop[0] = 1.0
    loop[whole : whole + 3] -= loss * numpy.convolve([1.0 - part, part], [0.5, 0.5])
    body = _violin_body(take, 2.0)
    string = shapes.unit(signal.lfilter([1.0], loop, pull))
    return shapes.faded(signal.fftconvolve(string, body)[: len(pull)], 0.0005, 0.2) * (0.1 + 0.5 * force)


def brass(take, hz, seconds, force=0.5, attack=0.18, muted=0.0):
    """A low brass note: it speaks late, brightens as it swells, and is never quite steady. `muted` 0..1 pinches it."""
    t = shapes.times(seconds)
    fall = min(0.35, seconds * 0.3)
    swell = shapes.smooth_curve(seconds,
                                ((0, 0), (attack, 0.75), (seconds * 0.55, 1.0), (seconds - fall, 0.85), (seconds, 0)))
    lip = noise.wander(take.rng, seconds, 7.0, -1.0, 1.0)[: len(t)]
    cents = -70.0 * numpy.exp(-t / 0.05) + 5.0 * lip + take.between(-6.0, 6.0)
    phase = 2 * numpy.pi * numpy.cumsum(hz * 2.0 ** (cents / 1200.0)) / shapes.RATE
    unrest = 1.0 + 0.08 * noise.wander(take.rng, seconds, 16.0, -1.0, 1.0)[: len(t)]
    blown = numpy.clip(swell * force * unrest, 0.0, 1.0)
    tone = numpy.zeros(len(t))
    for n in range(1, min(28, int(7000.0 / hz)) + 1):
        tone += numpy.sin(n * phase + 0.3 * n) * blown ** (1.0 + 0.3 * (n - 1)) / n**0.25
    breath = noise.band(take.rng, seconds, 300.0, 2500.0, 1) * blown * 0.025
    bell = ((280.0, 260.0, 0.9), (560.0, 380.0, 1.0), (1150.0, 800.0, 0.5))
    sound = filters.formants(tone + breath, bell) + 0.25 * tone
    if muted > 0.0:
        pinched = filters.formants(tone + breath, ((420.0, 90.0, 0.5), (1450.0, 260.0, 1.0), (2700.0, 500.0, 0.6)))
        sound = (1.0 - muted) * sound + muted * 1.5 * pinched
    return shapes.level(sound) * force * 0.24


def drum(take, hz=46.0, force=0.5, seconds=2.2):
    """A large slack drum, struck with felt: its pitch sinks, its head flaps."""
    t = shapes.times(seconds)
    head = numpy.array([1.0, 1.59, 2.14, 2.3, 2.65, 2.92, 3.5, 4.1])
    sound = shapes.silence(seconds)
    for ratio in head:
        sink = hz * ratio * (1.0 + 0.16 * force * numpy.exp(-t / 0.06)) * take.near(1.0, 0.01)
        fall = 10.0 ** (-3.0 * t / (seconds * 0.8 / ratio**0.9))
        wave = numpy.sin(2 * numpy.pi * numpy.cumsum(sink) / shapes.RATE)
        sound += wave * fall / ratio ** 1.2 * take.between(0.6, 1.0)
    skin = noise.band(take.rng, 0.09, 60.0, 600.0 + 1200.0 * force, 1) * shapes.decay(0.09, 0.08, 0.003)
    return shapes.lay(sound * numpy.minimum(t / 0.003, 1.0), (0.0, skin, 0.25)) * (0.2 + force)
