"""Player: what a clerk with a flashlight hears of himself."""

import numpy

import filters
import friction
import grains
import loops
import modal
import mouth
import noise
import rooms
import shapes
from take import sound


def _tin(take, hard=0.9, lowest=900.0):
    """A tap on the flashlight's brass tube."""
    tube = modal.body(take, "sheet", take.near(lowest, 0.1), count=14, tilt=0.3, damping=9.0)
    return shapes.unit(modal.struck(take, tube, hard, 0, 0.12, 0.7))


def _slide_switch(take, closes):
    """The thumb pushes a ridged slider; a spring contact snaps over; the tube and its lens answer."""
    t = 0.06
    speed = shapes.smooth_curve(t, [(0.0, 0.0), (t * 0.6, 0.2), (t, 0.0)])
    tube = modal.body(take, "sheet", take.near(1250.0, 0.1), count=10, damping=14.0)
    ridges = shapes.unit(modal.ring(friction.rubbed(take, speed, 1400.0, 500.0), tube, 0.04))
    snap = modal.body(take, "iron", take.near(2200.0 if closes else 1800.0, 0.1), count=9, tilt=0.0, damping=16.0)
    lens = modal.body(take, "glass", take.near(3900.0, 0.05), count=5, damping=4.0)
    x = shapes.lay((0.0, ridges, 0.25), (t * 0.85, shapes.unit(modal.struck(take, snap, 0.95, 1, 0.06, 0.9)), 0.7),
                   (t * 0.86, _tin(take), 0.7 if closes else 0.9))
    if closes:
        x = shapes.lay(x, (t + 0.012, shapes.unit(modal.struck(take, lens, 0.9, 0, 0.2, 0.1)), 0.05))
    return rooms.heard_in(take, x, rooms.CLOSET, 0.12)


@sound(variants=3, loudness=-29.0, what="the flashlight's slider pushed on", judgement="good")
def flashlight_on(take):
    return _slide_switch(take, True)


@sound(variants=3, loudness=-30.0, what="the flashlight's slider pulled off", judgement="good")
def flashlight_off(take):
    return _slide_switch(take, False)


@sound(loop=True, loudness=-25.0, what="the flashlight's crank turned: gears and a small dynamo",
       judgement="fair: gears, slack and a whine; the hand on it is faint")
def crank(take):
    """Ten turns of a crank; each presses hardest twice a turn. The wheels mesh, the dynamo whines with them."""
    turn = 0.66
    seconds = turn * 11
    t = shapes.times(seconds)
    push = noise.wander(take.rng, seconds, 5.0, 0.95, 1.05) + 0.13 * numpy.sin(4 * numpy.pi * t / turn)
    push += 0.05 * numpy.sin(2 * numpy.pi * t / turn + 1.0)
    angle = numpy.cumsum(push) / numpy.mean(push) / shapes.RATE / turn
    case = modal.body(take, "sheet", 520.0, count=34, tilt=0.25, damping=11.0)
    pinion = modal.body(take, "iron", 1700.0, count=8, tilt=0.3, damping=30.0)
    slow, fast = _teeth(take, angle, 23, 0.5), _teeth(take, angle, 23 * 7, 0.6)
    whine = sum(numpy.sin(2 * numpy.pi * angle * 161 * k) / k ** 1.5 for k in (1, 2, 3, 5))
    whine *= (push - 0.75) * noise.wander(take.rng, seconds, 12.0, 0.8, 1.0)
    brushes = noise.band(take.rng, seconds, 2500, 8000, 1) * numpy.maximum(numpy.sin(2 * numpy.pi * angle * 80), 0) ** 3
    slack = _teeth(take, angle, 2, 0.3)
    knob = modal.body(take, "wood", 410.0, count=14, tilt=0.4, damping=1.5)
    grip = grains.rustle(take, seconds, 0.3 + 0.3 * numpy.sin(2 * numpy.pi * t / turn) ** 2, 500.0, 3500.0, 80.0)
    x = shapes.lay((0.0, shapes.level(modal.ring(slow + 0.4 * fast, case, 0.1)), 0.9),
                   (0.0, shapes.level(modal.ring(slow + fast, pinion, 0.1)), 0.35), (0.0, shapes.level(whine), 0.13),
                   (0.0, shapes.level(brushes), 0.12), (0.0, shapes.level(grip), 0.08),
                   (0.0, shapes.unit(modal.ring(slack, knob, 0.1)), 1.6))
    return loops.seamless(shapes.cut(x, seconds), turn)


def _teeth(take, angle, count, roughness):
    """Impulses where the teeth of a wheel meet; each tooth has its own wear, the same at every turn."""
    wear = 1.0 + roughness * take.rng.standard_normal(count)
    step = numpy.floor(angle * count).astype(int)
    at = numpy.flatnonzero(numpy.diff(step, prepend=step[0]))
    out = numpy.zeros(len(angle))
    out[at] = wear[step[at] % count] * take.rng.uniform(0.8, 1.2, len(at))
    return numpy.convolve(out, modal.blow(0.002, 0.75))[:len(out)]


def _breathing(take, cycles, period, effort, pause, voiced=0.0):
    """In and out so many times; no two breaths are as long or as deep. Wraps."""
    x, at = [], 0.0
    for _ in range(cycles):
        length = take.near(period, 0.1)
        inward, outward = length * (1 - pause) * 0.44, length * (1 - pause) * 0.56
        depth = take.near(1.0, 0.2)
        if take.chance(0.4 * effort + 0.15):
            x.append((at + 0.02, filters.bandpass(modal.contact(take, 0.45), 900.0, 5000.0), 0.1 * depth))
        x += [(at, mouth.breath(take, inward, True, effort), 0.75 * depth),
              (at + inward * 1.04, mouth.breath(take, outward, False, effort), depth)]
        if voiced and take.chance(0.75):
            x.append((at + inward * 1.06, _groan(take, outward * 0.55), voiced * depth * take.between(0.4, 1.0)))
        at += length
    return loops.wrapped(rooms.heard_in(take, shapes.lay(*x), rooms.CLOSET, 0.06), at)


def _groan(take, seconds):
    """What slips into a breath that is let out too fast: a throat that is hardly closed."""
    hz = shapes.smooth_curve(seconds, [(0.0, take.near(118.0, 0.08)), (seconds, take.near(88.0, 0.08))])
    envelope = shapes.smooth_curve(seconds, [(0.0, 0.0), (seconds * 0.15, 1.0), (seconds, 0.0)])
    return shapes.unit(mouth.spoken(mouth.throat(take, hz, 0.7), "er", "u")) * envelope


@sound(loop=True, loudness=-37.0, silence=1.2, what="the player's breath at rest", judgement="good")
def breath_calm(take):
    return _breathing(take, 5, 3.6, 0.08, 0.22)


@sound(loop=True, loudness=-30.0, silence=0.6, what="the player's breath after running",
       judgement="good: no two alike; it never swallows")
def breath_hard(take):
    return _breathing(take, 8, 1.55, 0.55, 0.08)


@sound(loop=True, loudness=-25.0, what="the player's breath when none is left",
       judgement="good: ragged; the groans in it are hardly heard")
def breath_exhausted(take):
    return _breathing(take, 12, 0.98, 1.0, 0.02, 0.16)


def _heart(take, beats, per_minute, force):
    """Two valves heard through bone, and the blood that rushes after them. Wraps."""
    x, at = [], 0.05
    for _ in range(beats):
        gap = 60.0 / per_minute * take.between(0.97, 1.03)
        first = filters.resonator(modal.blow(0.4, 0.0), take.near(47.0, 0.04), 0.16)
        second = filters.resonator(modal.blow(0.3, 0.15), take.near(64.0, 0.04), 0.11)
        tap = filters.bandpass(modal.blow(0.1, 0.25), 90.0, 320.0)
        rush = noise.band(take.rng, 0.28, 110, 420, 1) * shapes.smooth_curve(0.28, [(0, 0), (0.1, 1), (0.28, 0)])
        x += [(at, shapes.unit(first), 1.0), (at + 0.004, shapes.unit(tap), 0.5 + 0.4 * force),
              (at + 0.3 * min(gap, 0.9) + 0.03, shapes.unit(second), 0.55),
              (at + 0.3 * min(gap, 0.9) + 0.032, shapes.unit(tap), 0.45), (at + 0.05, rush, 0.03 + 0.03 * force)]
        at += gap
    flesh = noise.band(take.rng, at, 40, 160, 1) * 0.006
    return loops.wrapped(filters.lowpass(shapes.lay(*x, (0.0, flesh)), 420.0), at - 0.05)


@sound(loop=True, loudness=-32.0, silence=1.0, what="the player's heart, 66 beats a minute",
       judgement="good; small loudspeakers lose its lows")
def heart_calm(take):
    return _heart(take, 8, 66.0, 0.4)


@sound(loop=True, loudness=-26.0, silence=1.0, what="the player's heart, 124 beats a minute",
       judgement="good; small loudspeakers lose its lows")
def heart_fast(take):
    return _heart(take, 16, 124.0, 1.0)


def _murmur(take, seconds, size, pause):
    """One voice that whispers on and off; what runs over the end begins the bed."""
    x, at = [(0.0, shapes.silence(seconds))], take.between(0.0, 1.5)
    while at < seconds - 1.0:
        phrase = mouth.whisper(take, int(take.between(3, 9)), take.near(size, 0.03), take.between(4.6, 6.4))
        x.append((at, phrase, take.between(0.5, 1.0)))
        at += len(phrase) / shapes.RATE + take.near(pause, 0.6)
    return loops.wrapped(shapes.lay(*x), seconds)


@sound(loop=True, stereo=True, loudness=-34.0, silence=2.0, what="two voices whisper close by",
       judgement="good: formants and sibilants as in speech; vowels glide a little evenly")
def whispers_near(take):
    """One at each ear, wandering a little; they never wait for one another."""
    seconds, voices = 22.0, []
    for size, side in ((0.98, -1.0), (1.17, 1.0)):
        place = side * noise.wander_loop(take.rng, seconds, 0.4, 0.35, 1.0)
        voices.append(shapes.panned(_murmur(take, seconds, size, 1.1), place))
    return loops.wrapped(rooms.heard_in(take, shapes.lay(*voices), rooms.SMALL, 0.15), seconds)


@sound(loop=True, stereo=True, loudness=-32.0, what="a roomful of voices whispers", judgement="good")
def whispers_many(take):
    seconds, voices = 24.0, []
    for index in range(8):
        place = noise.wander_loop(take.rng, seconds, 0.15, -1.0, 1.0)
        x = _murmur(take, seconds, (0.9, 1.0, 1.12, 1.25)[index % 4], 0.7)
        voices.append((0.0, shapes.panned(x, place), take.between(0.5, 1.0)))
    return loops.wrapped(rooms.heard_in(take, shapes.lay(*voices), rooms.HALL, 0.6), seconds)


@sound(loop=True, stereo=True, loudness=-36.0, what="whispers smeared into one long breath", judgement="good")
def whispers_far(take):
    """Grains of speech, slowed and turned round, in a hall that never falls silent."""
    seconds, x = 26.0, []
    speech = numpy.concatenate([mouth.whisper(take, 8, size) for size in (0.88, 1.0, 1.15)])
    for _ in range(260):
        n = shapes.samples(take.between(0.12, 0.5))
        start = int(take.between(0, len(speech) - n - 1))
        grain = shapes.faded(shapes.resampled(speech[start:start + n], take.between(0.55, 0.85)), 0.06, 0.12)
        grain = grain[::-1] if take.chance(0.6) else grain
        x.append((take.between(0.0, seconds), shapes.panned(grain, take.between(-0.9, 0.9)), take.between(0.3, 1.0)))
    bed = rooms.heard_in(take, filters.lowpass(shapes.lay(*x), 3800.0), rooms.CHAPEL, 1.5)
    return loops.wrapped(bed, seconds)


def _cloth(take, seconds, points, heavy=0.4):
    """Coat and trousers in motion; `heavy` is the share of the coat."""
    strength = shapes.smooth_curve(seconds, points)
    thin = grains.rustle(take, seconds, strength, 1100.0, 7500.0, 260.0)
    coat = grains.rustle(take, seconds, strength, 300.0, 2600.0, 110.0)
    return shapes.lay((0.0, shapes.unit(thin), 1.0 - heavy), (0.0, shapes.unit(coat), heavy))


@sound(variants=3, loudness=-35.0, what="the player stoops", judgement="good")
def crouch_down(take):
    t = take.near(0.5, 0.15)
    x = _cloth(take, t, [(0.0, 0.0), (t * 0.25, 0.8), (t * 0.6, 0.5), (t * 0.75, 0.7), (t, 0.0)], 0.5)
    knee = filters.lowpass(modal.struck(take, modal.body(take, "board", 110.0, count=8), 0.1), 400.0)
    leather = filters.bandpass(friction.slips(take, shapes.curve(0.16, [(0, 55), (0.16, 95)]), 0.4), 350.0, 1800.0)
    return shapes.lay((0.0, x, 1.0), (t * 0.7, shapes.unit(knee), 0.35), (t * 0.35, shapes.unit(leather), 0.12))


@sound(variants=3, loudness=-36.0, what="the player stands up", judgement="good")
def crouch_up(take):
    t = take.near(0.55, 0.15)
    x = _cloth(take, t, [(0.0, 0.0), (t * 0.35, 0.5), (t * 0.7, 0.9), (t, 0.0)], 0.45)
    leather = filters.bandpass(friction.slips(take, shapes.curve(0.2, [(0, 90), (0.2, 50)]), 0.4), 350.0, 1800.0)
    air = mouth.breath(take, 0.25, True, 0.15)
    return shapes.lay((0.0, x, 1.0), (t * 0.1, shapes.unit(leather), 0.1), (t * 0.15, shapes.unit(air), 0.1))


@sound(variants=4, loudness=-22.0, what="the player is hurt",
       judgement="fair: a hoarse grunt with its breath; still less than an actor")
def hurt(take):
    """The breath knocked out of a man: a blow on cloth, a grunt, air drawn in through the teeth."""
    t = take.between(0.22, 0.38)
    top = take.between(150.0, 190.0)
    hz = shapes.smooth_curve(t, [(0.0, top * 0.85), (t * 0.2, top), (t, top * 0.62)])
    envelope = shapes.smooth_curve(t, [(0.0, 0.0), (0.025, 1.0), (t * 0.5, 0.6), (t, 0.0)])
    folds = shapes.unit(mouth.throat(take, hz * noise.wander(take.rng, t, 25.0, 0.96, 1.04), 0.75))
    air = noise.pink(take.rng, t) * shapes.smooth_curve(t, [(0.0, 0.5), (0.04, 0.1), (t, 0.35)])
    grunt = mouth.spoken(shapes.saturated(folds * 2.0 + air, 0.8), take.pick(("a", "er")), take.pick(("o", "u")), 1.02)
    grunt = shapes.unit(grunt * envelope)
    push = mouth.breath(take, t * 1.3, False, 1.0)
    gasp = mouth.breath(take, take.between(0.3, 0.45), True, 0.9)
    body = filters.lowpass(modal.struck(take, modal.body(take, "board", 85.0, count=10), 0.15), 500.0)
    x = shapes.lay((0.0, shapes.unit(body), 0.35), (0.0, _cloth(take, 0.12, [(0, 0.0), (0.01, 1.0), (0.12, 0.0)]), 0.3),
                   (0.03, grunt, 1.0), (0.02, shapes.unit(push), 0.5), (0.1 + t, shapes.unit(gasp), 0.28))
    return rooms.heard_in(take, x, rooms.CLOSET, 0.12)


@sound(variants=3, loudness=-32.0, what="something small taken up and put away", judgement="good")
def pick_up(take):
    lift = modal.struck(take, modal.body(take, "wood", take.near(520.0, 0.3), count=10), 0.5, 0, 0.1)
    reach = _cloth(take, 0.22, [(0.0, 0.0), (0.12, 0.7), (0.22, 0.1)])
    pocket = _cloth(take, 0.3, [(0.0, 0.0), (0.08, 0.9), (0.2, 0.5), (0.3, 0.0)], 0.7)
    x = shapes.lay((0.0, reach, 0.5), (0.17, shapes.unit(lift), 0.7), (take.between(0.3, 0.36), pocket, 0.8))
    return rooms.heard_in(take, x, rooms.CLOSET, 0.1)


@sound(variants=3, loudness=-31.0, what="a sheet of paper unfolded", judgement="good")
def paper(take):
    """Stiff paper buckles in clicks, and hisses between them."""
    t = take.between(0.55, 0.8)
    strength = shapes.smooth_curve(t, [(0, 0), (t * 0.2, 0.9), (t * 0.45, 0.25), (t * 0.65, 1.0), (t, 0)])
    clicks = noise.sparks(take.rng, t, 260.0 * strength, 1.1)
    sheet = [(take.near(hz, 0.1), hz * 0.25, gain) for hz, gain in ((900, 0.4), (2100, 0.8), (3700, 1.0), (6200, 0.8))]
    return shapes.lay((0.0, shapes.unit(filters.formants(clicks, sheet)), 1.0),
                      (0.0, shapes.unit(grains.rustle(take, t, strength, 1800.0, 9500.0, 500.0)), 0.45))


@sound(variants=2, loudness=-28.0, silence=0.5, what="a battery pushed into the flashlight, the cap screwed on",
       judgement="good")
def battery_in(take):
    """Cap off, the cell slides down the tube, whose note rises, meets the spring, and the thread grinds shut."""
    t = 0.3
    speed = shapes.smooth_curve(t, [(0, 0), (0.08, 0.35), (t, 0.3)])
    rub = friction.rubbed(take, speed, 1500.0, 120.0)
    tube = filters.moving_bandpass(rub, shapes.curve(t, [(0, 620.0), (t, 1900.0)]), 6.0) + 0.25 * filters.bandpass(
        rub, 1500.0, 6000.0)
    spring = modal.struck(take, modal.body(take, "metal", 390.0, count=9, tilt=-0.3, damping=12.0), 0.7, 1, 0.25, 0.8)
    turns = []
    for index in range(3):
        length = take.between(0.1, 0.2)
        thread = shapes.smooth_curve(length, [(0, 0), (length * take.between(0.3, 0.6), take.between(0.12, 0.3)),
                                              (length, 0.0)])
        cap = modal.body(take, "sheet", take.near(1300.0, 0.2), count=16, tilt=0.2, damping=16.0)
        rub = modal.ring(friction.rubbed(take, thread, 2400.0, 220.0), cap, 0.05)
        turns.append((0.75 + index * 0.21 + take.between(-0.02, 0.02), shapes.unit(rub), take.between(0.2, 0.35)))
    x = shapes.lay((0.0, _tin(take, 0.8), 0.5), (0.12, shapes.unit(tube), 0.5), (0.41, shapes.unit(spring), 0.35),
                   (0.42, _tin(take, 0.7, 640.0), 0.8), *turns, (1.36, _tin(take, 0.8, 1100.0), 0.4))
    return rooms.heard_in(take, x, rooms.CLOSET, 0.1)


@sound(variants=3, loudness=-31.0, what="an arm thrown forward", judgement="good")
def throw(take):
    t = take.between(0.28, 0.36)
    rush = shapes.smooth_curve(t, [(0, 0), (t * 0.62, 1.0), (t, 0)]) ** 2
    whoosh = filters.moving_bandpass(noise.white(take.rng, t), 250.0 + 900.0 * rush, 1.2) * rush
    sleeve = _cloth(take, t, [(0, 0), (t * 0.55, 1.0), (t, 0)], 0.5)
    return shapes.lay((0.0, shapes.unit(whoosh), 0.7), (0.0, sleeve, 0.6))
