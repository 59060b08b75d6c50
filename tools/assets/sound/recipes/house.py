"""House: fire and lamps, the clock, water in the walls, and a building that does not lie still."""

import numpy

import filters
import friction
import grains
import loops
import modal
import noise
import rooms
import shapes
import water
from take import sound


def _snap(take):
    """One crack of burning wood: a splinter that flies, with or without a body behind it."""
    seconds = take.between(0.003, 0.018)
    x = noise.band(take.rng, seconds, take.near(1400.0, 0.5), take.near(7000.0, 0.4)) * shapes.decay(seconds, seconds)
    return shapes.unit(x)


@sound(loop=True, loudness=-30, what="a wood fire in an open grate",
       judgement="good: body, flutter and snaps stand apart; the bursts of snaps are as uneven as they should be")
def fire(take):
    seconds = 25.0
    flutter = noise.wander_loop(take.rng, seconds, 9.0, 0.25, 1.0)
    flutter = flutter * noise.wander_loop(take.rng, seconds, 1.2, 0.6, 1.0)
    body = noise.band(take.rng, seconds, 35.0, 160.0) * flutter
    tongue = filters.moving_lowpass(noise.pink(take.rng, seconds), 300.0 + 900.0 * flutter) * flutter
    hiss = noise.band(take.rng, seconds, 2500.0, 9000.0) * noise.wander_loop(take.rng, seconds, 0.7) ** 3
    busy = noise.wander_loop(take.rng, seconds, 0.9) ** 3
    small = shapes.cut(grains.cloud(take, seconds, 2.0 + 45.0 * busy, _snap, 1.0), seconds)
    pops = shapes.cut(grains.cloud(take, seconds, 0.7, _pop, 0.5), seconds)
    x = 0.4 * body + 0.6 * tongue + 0.03 * hiss + 0.6 * small + 1.1 * pops
    return loops.seamless(rooms.heard_in(take, x, rooms.SMALL, 0.25)[: len(x)], 1.0)


def _pop(take):
    """A log that gives: a crack with wood behind it, and sparks after it."""
    modes = modal.body(take, "wood", take.near(320.0, 0.4), 14)
    sparks = grains.cloud(take, 0.25, shapes.curve(0.25, ((0, 90), (0.25, 0))), _snap)
    return shapes.unit(shapes.lay(modal.struck(take, modes, 0.95), (0.01, sparks, 0.25)))


@sound(loop=True, loudness=-42, what="an electric lamp that hums on an uneven current",
       judgement="fair: right for what it is, and what it is is a hum")
def lamp_hum(take):
    seconds = 12.5
    t = shapes.times(seconds)
    sag = noise.wander_loop(take.rng, seconds, 0.5, 0.75, 1.0)
    hum = sum(gain * numpy.sin(2 * numpy.pi * 100 * n * t + n)
              for n, gain in enumerate((1, 0.5, 0.33, 0.1, 0.16, 0.05), 1))
    edge = numpy.maximum(numpy.sin(2 * numpy.pi * 100 * t), 0.0) ** 12 * noise.band(take.rng, seconds, 1800.0, 6500.0)
    filament = filters.resonator(edge, 2730.0, 0.08) * 0.02
    slow = noise.wander_loop(take.rng, seconds, 3.0) ** 4
    x = hum * sag + 0.35 * edge * (0.3 + slow) + filament + 0.02 * noise.band(take.rng, seconds, 400.0, 5000.0)
    return loops.seamless(x, 0.5)


def _beat(take, wheel, case, heavy):
    """One beat of an escapement: the tooth drops on the pallet, and slides off it as the wheel turns on."""
    drop = modal.struck(take, wheel, take.between(0.85, 0.95))
    slide = noise.band(take.rng, 0.012, 1500.0, 6000.0) * shapes.decay(0.012, 0.012, 0.004)
    knock = modal.struck(take, case, 0.5)
    lift = modal.struck(take, wheel, 0.7)
    return shapes.lay((0.0, drop, 0.5), (0.002, knock, heavy), (0.006, slide, 0.02),
                      (take.near(0.024, 0.1), lift, 0.22))


@sound(loop=True, loudness=-34, silence=0.9, what="a longcase clock, a second to a beat",
       judgement="good: tick and tock differ, every beat a little; wheel, pallet and case are all there")
def clock_tick(take):
    wheel = [modal.body(take, "metal", hz, 10, 0.4, damping=9.0) for hz in (1850.0, 1560.0)]
    case = modal.body(take, "wood", 128.0, 20, 0.5)
    beats = [(0.02 + i + take.between(-0.004, 0.004), _beat(take, wheel[i % 2], case, (0.55, 0.8)[i % 2]),
              take.near(1.0, 0.08))
             for i in range(16)]
    x = rooms.heard_in(take, shapes.lay(*beats), rooms.SMALL, 0.35)
    whisper = 0.0008 * noise.pink(take.rng, 16.0)
    return loops.wrapped(x, 16.0) + whisper


@sound(variants=2, loudness=-22, what="the clock strikes one stroke on its wire gong",
       judgement="good: the slow beating of a coiled gong, the hammer's knock and the wooden case")
def clock_strike(take):
    hz = 172.0 * numpy.array([1.0, 1.008, 2.31, 3.63, 3.66, 5.12, 6.7, 8.61, 10.4, 12.9, 15.2])
    gain = numpy.array([0.9, 0.6, 1.0, 0.8, 0.5, 0.6, 0.4, 0.3, 0.22, 0.15, 0.1]) * take.rng.uniform(0.8, 1.2, 11)
    t60 = numpy.array([6.5, 6.0, 5.5, 4.4, 4.2, 3.2, 2.4, 1.8, 1.4, 1.0, 0.8])
    gong = modal.ring(modal.blow(0.01, 0.62), modal.Body(hz, t60, gain), 4.5)
    case = modal.struck(take, modal.body(take, "wood", 120.0, 18), 0.4)
    click = modal.struck(take, modal.body(take, "metal", 2100.0, 6, damping=8.0), 0.9)
    x = shapes.lay((0.0, click, 0.08), (0.004, gong, 1.0), (0.004, case, 0.9))
    return shapes.faded(rooms.heard_in(take, x, rooms.HALL, 0.3), 0.001, 1.2)


@sound(loudness=-34, what="the clock draws breath: the fly whirrs before it strikes",
       judgement="fair: a whirr of wheels; a real one has more of the case's own rattle")
def clock_warn(take):
    seconds = 1.5
    rate = shapes.smooth_curve(seconds, ((0, 8), (0.25, 42), (1.1, 46), (1.5, 15)))
    wheel = modal.body(take, "metal", 1300.0, 8, 0.4, damping=30.0)
    teeth = modal.ring(friction.slips(take, rate, 0.35, 0.5), wheel, 0.2)
    blades = 0.5 + 0.5 * numpy.sin(numpy.cumsum(rate) / shapes.RATE * 0.75)
    fly = noise.band(take.rng, seconds, 300.0, 1600.0) * blades
    case = modal.ring(friction.slips(take, rate * 0.5, 0.5), modal.body(take, "wood", 140.0, 12), 0.1)
    x = shapes.lay((0.06, teeth, 0.25), (0.06, fly * shapes.curve(seconds, ((0, 0), (0.3, 0.05), (1.5, 0)))),
                   (0.06, case, 0.2), (0.0, modal.struck(take, wheel, 0.8), 0.8))
    return shapes.faded(rooms.heard_in(take, x, rooms.SMALL, 0.3), 0.001, 0.2)


@sound(variants=6, loudness=-32, what="a drop falls into standing water in a cellar",
       judgement="good: the bubble after the tick makes it water; the room makes it a cellar")
def drip(take):
    x = water.drop(take, (900.0, 1250.0, 1700.0, 1100.0, 2100.0, 700.0)[take.variant - 1])
    if take.variant in (3, 6):
        x = shapes.lay(x, (take.between(0.12, 0.2), water.drop(take, 1900.0), 0.3))
    return shapes.faded(rooms.heard_in(take, x, rooms.CELLAR, 0.5), 0.001, 0.2)


def _pipe(take, hz=74.0, damping=1.0):
    """A run of iron pipe: the column in it and the iron around it."""
    column = numpy.array([1, 2, 3, 4, 5, 6, 8]) * take.near(hz, 0.06)
    iron = modal.body(take, "metal", take.near(310.0, 0.15), 12, 0.6, damping=3.0 * damping)
    return modal.Body(
        numpy.concatenate([column, iron.hz]),
        numpy.concatenate([0.9 / numpy.arange(1, 8) ** 0.5 / damping, iron.t60]),
        numpy.concatenate([0.8 / numpy.arange(1, 8) ** 0.6, 0.5 * iron.gain]),
    )


def _through_wall(x, hz=700.0):
    """What plaster and lath leave of a sound."""
    return filters.lowpass(filters.bell(x, 180.0, 1.0, 4.0), hz, 1)


@sound(variants=4, loudness=-28, what="a knock in the pipes: water that stops short",
       judgement="good: iron with a column of water behind it, at some distance in the wall")
def pipe_knock(take):
    pipe = _pipe(take)
    x, at = shapes.silence(0.01), 0.0
    for _ in range((1, 3, 2, 4)[take.variant - 1]):
        x = shapes.lay(x, (at, modal.struck(take, pipe, take.between(0.35, 0.7)), take.between(0.5, 1.0)))
        at += take.between(0.1, 0.34)
    rush = noise.band(take.rng, 0.5, 200.0, 900.0) * shapes.decay(0.5, 0.5, 0.02)
    x = _through_wall(shapes.lay(x, (0.02, rush, 0.02)), 1500.0)
    return shapes.faded(rooms.heard_in(take, x, rooms.PIPE, 0.5), 0.001, 0.15)


@sound(variants=3, loudness=-29, what="the pipes groan as they warm or cool",
       judgement="good: the groan bends and doubles as slipping iron does; the third is the least clear")
def pipe_groan(take):
    seconds = (2.6, 3.8, 1.9)[take.variant - 1]
    bend = noise.wander(take.rng, seconds, 1.6, 0.75, 1.25)
    strain = shapes.smooth_curve(
        seconds, ((0, 0), (seconds * 0.3, 1), (seconds * 0.65, 0.6), (seconds * 0.8, 0.9), (seconds, 0)))
    rate = (88.0, 61.0, 124.0)[take.variant - 1] * bend * (0.6 + 0.4 * strain)
    slips = friction.slips(take, rate, 0.03, 0.4) * strain
    groan = modal.ring(slips, _pipe(take, 62.0, 6.0), 0.6)
    iron = modal.body(take, "metal", 700.0, 10, damping=4.0)
    grit = shapes.cut(modal.ring(friction.rubbed(take, 0.03 * strain), iron, 0.2), seconds)
    x = _through_wall(shapes.lay(shapes.level(groan), (0.0, shapes.level(grit), 0.12)), 1300.0)
    return shapes.faded(rooms.heard_in(take, x, rooms.PIPE, 0.6), 0.05, 0.3)


@sound(loop=True, loudness=-36, what="water runs in a pipe behind the wall",
       judgement="good: a muffled rush with single gulps in it")
def pipe_water(take):
    seconds = 17.0
    rush = water.running(take, seconds, 220.0, 1500.0, 0.7)
    gulps = water.bubbling(take, seconds, 5.0, 140.0, 420.0, 0.5)
    peaks = ((130.0, 50.0, 1.0), (290.0, 80.0, 0.9), (520.0, 120.0, 0.6), (940.0, 260.0, 0.35))
    x = filters.formants(rush, peaks) + 0.12 * rush
    x = shapes.level(x) * noise.wander_loop(take.rng, seconds, 0.8, 0.7, 1.0) + 0.35 * shapes.level(gulps)
    x = _through_wall(x, 1100.0)
    return loops.seamless(rooms.heard_in(take, x, rooms.PIPE, 0.4)[: len(x)], 1.0)


@sound(variants=4, loudness=-31, what="something heavy, several rooms away",
       judgement="good: a floor that takes a weight, dulled by walls; no two have the same afterfall")
def thud(take):
    floor = modal.body(take, "board", take.near(48.0, 0.2), 14, 0.9)
    x = modal.struck(take, floor, take.between(0.05, 0.2), bounces=(0, 1, 2, 0)[take.variant - 1])
    things = modal.body(take, take.pick(("glass", "wood", "metal")), take.near(600.0, 0.4), 10, damping=2.0)
    rattle = grains.cloud(take, 0.5, shapes.curve(0.5, ((0, 30), (0.5, 0))), lambda t: modal.struck(t, things, 0.7))
    x = shapes.lay(shapes.unit(x), (0.03, shapes.unit(rattle), 0.12))
    if take.variant == 4:
        speed = shapes.smooth_curve(1.2, ((0, 0), (0.3, 0.4), (0.9, 0.3), (1.2, 0)))
        drag = modal.ring(friction.rubbed(take, speed), floor, 0.2)
        x = shapes.lay((0.0, shapes.level(drag), 0.05), (1.25, x, 1.0))
    x = filters.lowpass(filters.lowpass(x, 260.0, 1), 900.0, 2)
    return shapes.faded(rooms.heard_in(take, x, rooms.HALL, 0.5), 0.004, 0.4)


@sound(variants=6, loudness=-30, what="timber settles: a crack, and the give after it",
       judgement="good: dry cracks with the beam's body; every variant has its own rhythm")
def settle(take):
    beam = modal.body(take, "board", take.near(150.0, 0.35), 26, 0.45, damping=0.9)
    x, at = shapes.silence(0.01), 0.0
    for i in range(take.rng.integers(1, 5)):
        x = shapes.lay(x, (at, modal.struck(take, beam, take.between(0.75, 1.0)), take.between(0.35, 1.0) * 0.8**i))
        at += take.between(0.02, 0.22)
    if take.variant % 2 == 0:
        seconds = take.between(0.5, 0.9)
        rate = shapes.smooth_curve(seconds, ((0, 60), (seconds * 0.4, 120), (seconds, 25)))
        give = modal.ring(friction.slips(take, rate, 0.5, 0.5) * shapes.decay(seconds, seconds * 1.3, 0.1), beam, 0.1)
        x = shapes.lay(shapes.unit(x), (at, shapes.unit(give), 0.35))
    dust = grains.cloud(take, 0.6, shapes.curve(0.6, ((0, 25), (0.6, 0))), grains.crumb)
    x = shapes.lay(shapes.unit(x), (at * 0.5, shapes.unit(dust), 0.04))
    return shapes.faded(rooms.heard_in(take, x, rooms.SMALL, 0.45), 0.001, 0.15)


@sound(variants=3, loudness=-38, what="plaster trickles inside a wall",
       judgement="good: crumbs first, dust after them; quiet")
def plaster(take):
    seconds = take.between(1.4, 2.6)
    fall = shapes.curve(seconds, ((0, 15), (0.15, 120), (seconds * 0.5, 45), (seconds, 0)))
    crumbs = grains.cloud(take, seconds, fall, lambda t: grains.crumb(t, 2200.0), 0.9)
    bits = grains.cloud(take, seconds, fall * 0.08, lambda t: grains.pebble(t, 2600.0), 0.6)
    dust = noise.band(take.rng, seconds, 3000.0, 9000.0) * shapes.curve(seconds, ((0, 0), (0.2, 1), (seconds, 0)))
    lath = modal.ring(shapes.cut(crumbs, seconds), modal.body(take, "board", 260.0, 10), 0.1)
    x = shapes.lay((0.0, shapes.unit(crumbs), 0.6), (0.0, shapes.unit(bits), 0.25), (0.0, dust, 0.006),
                   (0.0, shapes.unit(lath), 0.5))
    return shapes.faded(rooms.heard_in(take, x, rooms.CLOSET, 0.4), 0.01, 0.2)


@sound(variants=5, loudness=-29, what="a floorboard gives under a foot that nobody set there",
       judgement="good: single ticks that run together as the weight comes on, and come apart as it goes off")
def floorboard(take):
    seconds = take.between(0.45, 1.0)
    load = shapes.smooth_curve(seconds, ((0, 0.1), (seconds * take.between(0.35, 0.6), 1.0), (seconds, 0.15)))
    unrest = noise.wander(take.rng, seconds, 9.0, 0.85, 1.15)[: len(load)]
    rate = take.near(62.0, 0.35) * (0.2 + load * take.between(0.8, 1.7)) * unrest
    board = modal.body(take, "board", take.near(190.0, 0.25), 26, 0.35, damping=0.8)
    creak = modal.ring(friction.slips(take, rate, 0.07, 0.4) * load, board, 0.15)
    nail = modal.struck(take, modal.body(take, "metal", take.near(1900.0, 0.2), 5, damping=9.0), 0.8)
    x = shapes.lay(shapes.unit(creak), (seconds * 0.9, shapes.unit(modal.struck(take, board, 0.4)), 0.25),
                   (seconds * 0.5, nail, 0.02))
    return shapes.faded(rooms.heard_in(take, x, rooms.SMALL, 0.35), 0.004, 0.1)


@sound(variants=3, loudness=-33, what="a heavy curtain is drawn, or moves by itself",
       judgement="fair: folds and rings are there; the folds are near to mere noise")
def curtain(take):
    seconds = (0.9, 1.5, 2.2)[take.variant - 1]
    pull = shapes.smooth_curve(
        seconds, ((0, 0), (seconds * 0.25, 1), (seconds * 0.6, 0.5), (seconds * 0.75, 0.8), (seconds, 0)))
    pull = pull * (1.0, 0.9, 0.5)[take.variant - 1]
    folds = grains.rustle(take, seconds, pull, 250.0, 3800.0, 120.0)
    billow = noise.band(take.rng, seconds, 60.0, 240.0) * pull * noise.wander(take.rng, seconds, 5.0)[: len(pull)]
    ring = modal.body(take, "metal", 1650.0, 8, 0.3, damping=6.0)
    rings = grains.cloud(take, seconds, 26.0 * pull**2, lambda t: modal.struck(t, ring, 0.75), 0.7)
    share = (0.16, 0.12, 0.0)[take.variant - 1]
    x = shapes.lay((0.0, shapes.level(folds), 0.5), (0.0, billow, 0.35), (0.0, shapes.unit(rings), share * 6))
    return shapes.faded(rooms.heard_in(take, x, rooms.SMALL, 0.2), 0.01, 0.15)
