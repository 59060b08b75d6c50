"""Creatures: the Damp in the pipes, the Fittings, the Guest, and the small lives that warn of them."""

import numpy

import cries
import filters
import friction
import grains
import loops
import modal
import mouth
import noise
import rooms
import shapes
import water
from take import sound

PIPE_MOUTH = ((105.0, 40.0, 1.0), (235.0, 60.0, 0.9), (410.0, 90.0, 0.6), (730.0, 160.0, 0.35), (1450.0, 400.0, 0.12))
"""A throat that is a length of iron pipe."""


def _squelch(take, seconds=0.25, low=260.0, high=1300.0):
    """Something wet lets go of a surface: a band of noise that climbs, and bubbles in it."""
    rise = shapes.smooth_curve(seconds, ((0, take.between(0, 0.4)), (seconds, take.between(0.6, 1))))
    climb = low * (high / low) ** rise
    flow = shapes.smooth_curve(seconds, ((0, 0), (seconds * take.between(0.15, 0.5), 1), (seconds, 0)))
    suck = filters.moving_bandpass(noise.white(take.rng, seconds), climb, 4.0)
    catches = noise.wander(take.rng, seconds, 90.0, 0.0, 1.0)[: len(flow)] ** 2
    pops = water.bubbling(take, seconds, 90.0 * flow, low, high * 1.5, 0.6)
    return shapes.level(suck * catches * flow) * flow + 0.5 * shapes.level(pops) * flow


def _damp_breath(take, seconds, wet):
    """One breath of the Damp out of a pipe: it rattles past what is in the way and draws water along."""
    length = take.near(1.0, 0.06)
    pipe = [(hz / length, width / length, gain) for hz, width, gain in PIPE_MOUTH]
    rattle = numpy.clip(noise.wander(take.rng, seconds, 34.0, -0.6, 1.0), 0.0, 1.0)
    blow = filters.formants(noise.pink(take.rng, seconds) * (1.0 - wet + 1.6 * wet * rattle), pipe)
    flow = shapes.smooth_curve(seconds, ((0, 0), (seconds * 0.45, 1), (seconds, 0)))
    gurgle = water.bubbling(take, seconds, 5.0 + 40.0 * wet * flow, 70.0, 380.0, 0.7)
    return shapes.lay(shapes.level(blow * flow ** 1.5), (0.0, shapes.level(gurgle) * flow, 0.35 * wet))


def _breathing(take, seconds, cycle, wet, uneven=0.12):
    """Breath after breath, in and out, to a loop's length: what is drawn in is higher and shorter."""
    breaths = []
    count = max(1, round(seconds / cycle))
    for i in range(count):
        at = (i + take.between(0.0, uneven)) * seconds / count
        drawn, given = take.near(0.38 * cycle, uneven), take.near(0.46 * cycle, uneven)
        breaths.append((at, filters.bell(_damp_breath(take, drawn, wet * 0.6), 420.0, 1.0, 8.0), take.near(0.6, 0.2)))
        breaths.append((at + drawn + 0.04 * cycle, _damp_breath(take, given, wet), take.near(1.0, 0.15)))
    return loops.wrapped(shapes.lay(*breaths), seconds)


@sound(loop=True, loudness=-31, silence=1.2, what="the Damp at rest: something breathes in the pipes",
       judgement="good: a slow breath that is iron and water at once; nothing else here sounds like it")
def blob_idle(take):
    seconds = 24.0
    breath = _breathing(take, seconds, 5.6, 0.55)
    more = seconds + 1.0
    trickle = water.bubbling(take, more, 7.0 * noise.wander_loop(take.rng, more, 0.5), 180.0, 800.0, 0.5)
    deep = noise.band(take.rng, more, 28.0, 75.0) * noise.wander_loop(take.rng, more, 0.4, 0.2, 1.0)
    steady = loops.seamless(0.16 * shapes.level(trickle) + 0.2 * deep, 1.0)
    echoed = loops.wrapped(rooms.heard_in(take, shapes.level(breath), rooms.PIPE, 0.6), seconds)
    return loops.begun_quietly(echoed + steady)


@sound(loop=True, loudness=-27, what="the Damp near by: it pours and draws itself along",
       judgement="good: sheets of wet noise that pull loose one by one over the same breath")
def blob_near(take):
    seconds = 17.0
    breath = _breathing(take, seconds, 3.9, 0.8)
    pulls = [(take.between(0.0, seconds - 1.0), _squelch(take, take.between(0.2, 0.7)), take.between(0.2, 0.8))
             for _ in range(34)]
    drawn = shapes.cut(shapes.lay(*pulls), seconds)
    pour = water.running(take, seconds, 120.0, 900.0, 0.6) * noise.wander_loop(take.rng, seconds, 1.2, 0.1, 1.0) ** 2
    weight = noise.band(take.rng, seconds, 30.0, 95.0) * noise.wander_loop(take.rng, seconds, 0.9, 0.1, 1.0)
    x = 0.8 * shapes.level(breath) + 0.35 * drawn + 0.4 * shapes.level(pour) + 0.4 * weight
    return loops.seamless(rooms.heard_in(take, x, rooms.SMALL, 0.2)[: len(x)], 1.0)


@sound(loop=True, loudness=-23, what="the Damp hunts: it comes in surges and growls in its pipe",
       judgement="good: the surges have a tempo to run from; the growl under them is plain")
def blob_hunt(take):
    seconds = 13.0
    t = shapes.times(seconds)
    surge = numpy.maximum(numpy.sin(2 * numpy.pi * 1.25 * t + 0.5 * numpy.sin(0.5 * t)), 0.0) ** 1.5
    breath = _breathing(take, seconds, 1.6, 0.9, 0.08)
    rate = 44.0 + 26.0 * surge + 10.0 * noise.wander_loop(take.rng, seconds, 1.1)
    growl = filters.formants(friction.slips(take, rate, 0.12, 0.7) * (0.25 + surge), PIPE_MOUTH)
    slosh = filters.moving_lowpass(noise.pink(take.rng, seconds), 200.0 + 2600.0 * surge) * surge
    flood = water.running(take, seconds, 110.0, 1300.0, 1.0) * (0.15 + surge)
    pulls = [(take.between(0.0, seconds - 1.0), _squelch(take, take.between(0.1, 0.3), 300.0, 2200.0),
              take.between(0.2, 0.7)) for _ in range(40)]
    drawn = shapes.cut(shapes.lay(*pulls), seconds)
    x = 0.5 * (shapes.level(breath) + shapes.level(slosh) + shapes.level(flood)) + 0.55 * shapes.level(growl)
    x = shapes.saturated(x + 0.25 * drawn, 0.4)
    return loops.seamless(rooms.heard_in(take, x, rooms.SMALL, 0.25)[: len(x)], 0.8)


@sound(variants=3, loudness=-17, what="the Damp takes hold",
       judgement="good: a cold slap, suction, and air that is shut out")
def blob_touch(take):
    slap = noise.band(take.rng, 0.12, 150.0, 3500.0) * shapes.decay(0.12, 0.1, 0.002)
    weight = modal.struck(take, modal.body(take, "box", 52.0, 8), 0.05)
    sucks = [(0.05 + i * take.between(0.08, 0.16), _squelch(take, take.between(0.2, 0.5), 200.0, 1800.0), 0.8 ** i)
             for i in range(6)]
    shutting = shapes.curve(1.4, ((0, 5000), (0.5, 500), (1.4, 120)))
    shut = filters.moving_lowpass(noise.pink(take.rng, 1.4), shutting) * shapes.decay(1.4, 1.3, 0.05)
    x = shapes.lay((0.0, slap, 0.6), (0.0, shapes.unit(weight), 1.1), (0.0, shapes.lay(*sucks), 0.3),
                   (0.02, shut, 0.3))
    return shapes.faded(rooms.heard_in(take, x, rooms.SMALL, 0.15), 0.001, 0.2)


@sound(variants=2, loudness=-20, what="the lamp's beam burns the Damp: it boils and shrinks",
       judgement="fair: steam over a boil with a groan that falls; the steam covers most of the groan")
def blob_burn(take):
    seconds = (1.9, 2.6)[take.variant - 1]
    heat = shapes.smooth_curve(seconds, ((0, 0.1), (0.2, 1), (seconds * 0.7, 0.6), (seconds, 0)))
    steam = filters.moving_highpass(noise.white(take.rng, seconds), 900.0 + 3500.0 * heat) * heat
    spit = shapes.cut(grains.cloud(take, seconds, 160.0 * heat, lambda t: grains.crumb(t, 3600.0), 0.8), seconds)
    boil = water.bubbling(take, seconds, 140.0 * heat, 150.0, 1100.0, 0.8)
    rate = shapes.smooth_curve(seconds, ((0, 150), (seconds * 0.3, 175), (seconds, 58)))
    groan = filters.formants(friction.slips(take, rate, 0.08, 0.6) * heat, PIPE_MOUTH)
    x = shapes.lay((0.0, 0.1 * steam), (0.0, shapes.level(spit), 0.15), (0.0, shapes.level(boil), 0.3),
                   (0.0, shapes.level(groan), 0.4))
    return shapes.faded(rooms.heard_in(take, x, rooms.SMALL, 0.2), 0.004, 0.2)


def _joint(take, lowest=300.0):
    """A turned ball of beech in its socket."""
    return modal.body(take, "wood", take.near(lowest, 0.2), 20, 0.3, damping=0.7)


def _knock(take, lowest):
    """Limb against limb."""
    return modal.struck(take, _joint(take, lowest), take.between(0.6, 0.9))


@sound(variants=4, loudness=-30, what="a mannequin's joint creaks where nobody moves",
       judgement="good: ticks that run together and stop short; drier than a floorboard")
def mannequin_creak(take):
    seconds = take.between(0.35, 0.9)
    bend = shapes.smooth_curve(seconds, ((0, 0.12), (seconds * take.between(0.3, 0.6), 1.0), (seconds, 0.3)))
    rate = take.near(100.0, 0.4) * bend * noise.wander(take.rng, seconds, 14.0, 0.8, 1.2)[: len(bend)]
    creak = modal.ring(friction.slips(take, rate, 0.1, 0.35) * bend, _joint(take), 0.1)
    stop = modal.struck(take, _joint(take, 420.0), 0.75)
    cloth = grains.rustle(take, seconds, 0.5 * bend, 500.0, 4500.0)
    x = shapes.lay(shapes.unit(creak), (seconds - 0.02, shapes.unit(stop), 0.35), (0.0, shapes.unit(cloth), 0.1))
    return shapes.faded(rooms.heard_in(take, x, rooms.SMALL, 0.3), 0.003, 0.1)


@sound(variants=4, loudness=-29, what="a mannequin turns its head: wood in wood, and the collar's cloth",
       judgement="good: a slow rub broken by single catches; the last catch is where it looks at you")
def mannequin_head(take):
    seconds = take.between(0.9, 1.7)
    speed = shapes.smooth_curve(
        seconds, ((0, 0), (seconds * 0.2, 0.7), (seconds * 0.55, 0.25), (seconds * 0.8, 1), (seconds, 0)))
    rub = modal.ring(friction.rubbed(take, 0.12 * speed, 1500.0, 160.0), _joint(take, 380.0), 0.1)
    catches, at = [], 0.15
    while at < seconds - 0.1:
        tick = modal.struck(take, _joint(take, 520.0), take.between(0.7, 0.95))
        catches.append((at, tick, take.between(0.15, 0.6)))
        at += take.between(0.06, 0.4)
    catches.append((seconds - 0.03, modal.struck(take, _joint(take, 330.0), 0.7), 1.0))
    collar = grains.rustle(take, seconds, speed, 700.0, 6000.0)
    x = shapes.lay((0.0, shapes.level(filters.highpass(rub, 260.0)), 0.05),
                   (0.0, shapes.unit(shapes.lay(*catches)), 0.9),
                   (0.0, shapes.level(collar), 0.02))
    return shapes.faded(rooms.heard_in(take, x, rooms.SMALL, 0.3), 0.01, 0.1)


@sound(variants=2, loudness=-17, what="a mannequin lunges: cloth, limbs that knock, two wooden feet",
       judgement="good: the clatter is a body's, not a heap's; nothing of it is a scream")
def mannequin_jump(take):
    seconds = 0.55
    rush = shapes.smooth_curve(seconds, ((0, 0), (0.18, 1), (0.4, 0.5), (seconds, 0)))
    cloth = grains.rustle(take, seconds, rush, 250.0, 6500.0, 160.0)
    wind = noise.band(take.rng, seconds, 120.0, 900.0, 1) * rush
    limbs = [(take.between(0.0, 0.45), _knock(take, take.pick((260.0, 340.0, 450.0))), take.between(0.2, 0.7))
             for _ in range(9)]
    boards = [modal.body(take, "board", take.near(85.0, 0.15), 24, 0.4) for _ in range(2)]
    feet = [(at, modal.struck(take, board, 0.5), 1.0) for at, board in zip((0.36, take.between(0.41, 0.47)), boards)]
    x = shapes.lay((0.0, shapes.level(cloth), 0.09), (0.0, wind, 0.06), (0.0, shapes.unit(shapes.lay(*limbs)), 0.7),
                   (0.0, shapes.unit(shapes.lay(*feet)), 1.0))
    return shapes.faded(rooms.heard_in(take, x, rooms.SMALL, 0.25), 0.004, 0.15)


@sound(variants=3, loudness=-26, what="a wooden foot is set down",
       judgement="good: heel of wood on board, and the leg's joint a moment later")
def mannequin_step(take):
    foot = modal.struck(take, modal.body(take, "board", take.near(120.0, 0.15), 24, 0.4), take.between(0.5, 0.65))
    heel = modal.struck(take, _joint(take, 480.0), 0.85)
    knee = modal.struck(take, _joint(take, 300.0), 0.6)
    x = shapes.lay(shapes.unit(foot), (0.0, shapes.unit(heel), 0.4),
                   (take.between(0.07, 0.14), shapes.unit(knee), 0.18))
    return shapes.faded(rooms.heard_in(take, x, rooms.SMALL, 0.25), 0.0005, 0.1)


@sound(variants=3, loudness=-33, what="somebody breathes on the window pane",
       judgement="good: close and soft, with the glass in it; the squeak of a finger in the third")
def guest_breath(take):
    seconds = take.between(1.5, 2.3)
    out = mouth.breath(take, seconds, False, 0.3)
    pane = modal.ring(0.02 * out, modal.body(take, "glass", 380.0, 10, damping=4.0), 0.1)
    fog = filters.bell(filters.lowpass(out, 4500.0, 1), 520.0, 1.2, 5.0)
    x = shapes.lay(shapes.level(fog), (0.0, shapes.level(pane), 0.18))
    if take.variant == 3:
        rub = shapes.smooth_curve(0.5, ((0, 0), (0.15, 1), (0.5, 0)))
        squeak = modal.ring(
            friction.slips(take, 620.0 + 500.0 * rub, 0.02, 0.2) * rub,
            modal.body(take, "glass", 1100.0, 8, damping=3.0), 0.1)
        x = shapes.lay(x, (seconds * 0.8, shapes.unit(squeak), 0.5))
    return shapes.faded(rooms.heard_in(take, x, rooms.CLOSET, 0.2), 0.02, 0.15)


@sound(variants=4, loudness=-31, what="a wet sole leaves a print: the Guest goes by",
       judgement="good: softer than any living step, with a little suction as it lifts")
def guest_print(take):
    press = filters.lowpass(noise.tilted(take.rng, 0.14, 4.0), 900.0) * shapes.decay(0.14, 0.12, 0.012)
    floor = modal.struck(take, modal.body(take, "board", take.near(95.0, 0.15), 16), 0.05)
    wet = _squelch(take, 0.09, 700.0, 2600.0)
    lift = _squelch(take, take.between(0.08, 0.16), 500.0, 2200.0)
    x = shapes.lay((0.0, shapes.unit(press), 0.6), (0.0, shapes.unit(floor), 0.7), (0.01, wet, 0.05),
                   (take.between(0.28, 0.42), lift, 0.035))
    return shapes.faded(rooms.heard_in(take, x, rooms.HALL, 0.3), 0.002, 0.15)


@sound(variants=3, loudness=-34, what="the hem of a long coat over a floor",
       judgement="good: heavy cloth by strides; barely there, as meant")
def guest_hem(take):
    seconds = (1.6, 2.2, 2.8)[take.variant - 1]
    stride = numpy.maximum(numpy.sin(2 * numpy.pi * shapes.times(seconds) * take.near(0.95, 0.1)), 0.0) ** 0.8
    whole = shapes.smooth_curve(seconds, ((0, 0.2), (0.4, 1), (seconds - 0.5, 0.9), (seconds, 0)))
    hem = grains.rustle(take, seconds, 0.75 * stride * whole, 300.0, 4200.0, 110.0)
    drag = friction.rubbed(take, 0.4 * stride * whole, 350.0, 15.0)
    x = shapes.level(hem) + 0.25 * shapes.level(filters.lowpass(drag, 1800.0))
    return shapes.faded(rooms.heard_in(take, x, rooms.HALL, 0.25), 0.03, 0.3)


@sound(long=True, loudness=-23, what="the Guest is gone: a breath let out by many mouths, glass, cloth that falls",
       judgement="good: swells without a blow and empties the room; the mouths move, no word comes of it")
def shadow_die(take):
    seconds = 4.2
    out = shapes.smooth_curve(seconds, ((0, 0), (0.9, 1.0), (2.2, 0.6), (seconds, 0)))
    mouths = shapes.silence(seconds)
    for _ in range(7):
        rise = shapes.curve(
            seconds, ((0, take.between(0.9, 1.2)), (1.0, take.between(1.0, 1.3)), (seconds, take.between(0.45, 0.6))))
        source = noise.pink(take.rng, seconds) * noise.wander(take.rng, seconds, 11.0, 0.2, 1.0)[: len(out)]
        hum = mouth.throat(take, 118.0 * rise * take.near(1.0, 0.25), 0.5) * 0.05
        for hz, q, gain in ((560.0, 5.0, 1.0), (1150.0, 7.0, 0.6), (2500.0, 7.0, 0.35)):
            mouths += gain * filters.moving_bandpass(source + hum, hz * rise * take.near(1.0, 0.15), q)
    drawn = shapes.curve(1.1, ((0, 0.0), (0.8, 0.25), (1.05, 1.0), (1.1, 0.0)))
    inward = noise.tilted(take.rng, 1.1, 4.0) * drawn ** 2
    pane = modal.body(take, "glass", 760.0, 12)
    fewer = shapes.curve(1.4, ((0, 22), (1.4, 0)))
    cracks = grains.cloud(take, 1.4, fewer, lambda t: modal.struck(t, pane, 0.95), 0.9)
    deep = filters.lowpass(noise.tilted(take.rng, seconds, 6.0), 70.0) * out
    fall = grains.rustle(take, 0.9, shapes.smooth_curve(0.9, ((0, 0.1), (0.3, 0.9), (0.9, 0))), 250.0, 3500.0, 120.0)
    x = shapes.lay((0.0, inward[shapes.samples(0.2):], 0.25), (0.7, shapes.level(mouths * out), 0.4),
                   (0.9, shapes.unit(cracks), 0.12), (0.9, shapes.level(deep), 0.25), (4.1, shapes.level(fall), 0.06))
    return shapes.faded(rooms.heard_in(take, x, rooms.HALL, 0.5), 0.02, 0.6)


@sound(loop=True, loudness=-38, what="moths about a lamp: wings, and taps on the glass",
       judgement="fair: bursts of dry flutter at each moth's own rate; real ones are drier still")
def moths(take):
    seconds = 13.0
    out = shapes.silence(seconds)
    for _ in range(4):
        there = numpy.clip(noise.wander_loop(take.rng, seconds, 1.6, -1.4, 1.0), 0.0, 1.0)
        beat = take.near(34.0, 0.3) * noise.wander_loop(take.rng, seconds, 2.0, 0.85, 1.15)
        flap = numpy.maximum(numpy.sin(2 * numpy.pi * numpy.cumsum(beat) / shapes.RATE), 0.0) ** 2
        out += noise.band(take.rng, seconds, take.near(350.0, 0.3), take.near(2200.0, 0.3)) * flap * there
    glass = modal.body(take, "glass", 1900.0, 10, damping=4.0)
    taps = grains.cloud(take, seconds, 3.5 * noise.wander_loop(take.rng, seconds, 0.8),
                        lambda t: modal.struck(t, glass, 0.5), 0.7)
    x = shapes.level(out) + 3.0 * shapes.unit(shapes.cut(taps, seconds))
    return loops.seamless(x, 0.6)


@sound(variants=4, loudness=-29, what="a rat squeaks",
       judgement="fair: the slides and the breathiness are a rat's, some squeaks come out too pure")
def rat_squeak(take):
    calls, at = [], 0.0
    for _ in range(take.rng.integers(1, 4)):
        seconds = take.between(0.05, 0.16)
        low = take.between(2400.0, 3600.0)
        pitch = ((0, low), (0.35, low * take.between(1.15, 1.6)), (1, low * take.between(0.7, 1.0)))
        cry = cries.cry(take, seconds, pitch,
                        ((3300.0, 900.0, 1.0), (6400.0, 1600.0, 0.7)), rough=0.25, breath=0.35, tilt=1.4)
        calls.append((at, shapes.unit(cry), take.between(0.4, 1.0)))
        at += seconds + take.between(0.03, 0.14)
    return shapes.faded(rooms.heard_in(take, shapes.lay(*calls), rooms.SMALL, 0.3), 0.002, 0.05)


def _claw(take, board):
    tick = noise.band(take.rng, 0.004, 3000.0, 11000.0)
    return shapes.unit(shapes.lay(shapes.unit(modal.struck(take, board, 0.85)), (0.0, shapes.unit(tick), 0.5)))


@sound(loop=True, loudness=-33, what="rats run along a wall",
       judgement="good: claws by fours on board, several animals, never in step")
def rats_run(take):
    seconds = 9.0
    board = modal.body(take, "board", 260.0, 16, 0.25, damping=5.0)
    claws = [_claw(take, board) for _ in range(6)]
    feet = []
    for _ in range(3):
        at = take.between(0.0, 2.0)
        while at < seconds - 0.4:
            length = take.between(0.4, 1.3)
            gait, start = take.between(0.075, 0.11), at
            while at < start + length:
                for foot in (0.0, 0.022, 0.05):
                    feet.append((at + foot + take.between(0.0, 0.006), take.pick(claws), take.between(0.2, 1.0)))
                at += gait
            at += take.between(0.5, 2.2)
    x = shapes.cut(shapes.lay(*feet), seconds)
    x = x + 0.004 * noise.pink(take.rng, seconds)
    return loops.seamless(rooms.heard_in(take, x, rooms.CLOSET, 0.25)[: len(x)], 0.5)


CROW_MOUTH = ((1180.0, 260.0, 1.0), (1720.0, 320.0, 0.8), (2900.0, 600.0, 0.45), (4300.0, 900.0, 0.2))


def _caw(take):
    seconds = take.between(0.24, 0.42)
    low = take.between(330.0, 430.0)
    pitch = ((0, low * 0.85), (0.3, low * 1.15), (1, low * 0.75))
    return shapes.unit(cries.cry(take, seconds, pitch, CROW_MOUTH, rough=0.75, breath=0.5, tilt=0.35))


@sound(variants=4, loudness=-21, what="a crow calls",
       judgement="good: hoarse and nasal; the pitch breaks at the end as it should")
def crow(take):
    calls, at = [], 0.0
    for _ in range((1, 2, 3, 2)[take.variant - 1]):
        calls.append((at, _caw(take), take.between(0.7, 1.0)))
        at += take.between(0.42, 0.6)
    return shapes.faded(rooms.heard_in(take, shapes.lay(*calls), rooms.OUTDOORS, 0.3), 0.002, 0.1)


def _wingbeat(take):
    seconds = take.between(0.07, 0.12)
    push = shapes.smooth_curve(seconds, ((0, 0), (seconds * 0.3, 1), (seconds, 0)))
    air_moved = noise.band(take.rng, seconds, 140.0, 700.0, 1) * push
    feathers = noise.band(take.rng, seconds, 1400.0, 6000.0, 1) * push**2
    return shapes.level(air_moved) + 0.3 * feathers


@sound(variants=3, loudness=-27, what="a crow takes wing",
       judgement="good: heavy first beats, then lighter and quicker ones going away")
def wings(take):
    beats, at, gain = [], 0.0, 1.0
    for _ in range(take.rng.integers(6, 11)):
        beats.append((at, _wingbeat(take), gain))
        at += take.near(0.19, 0.15)
        gain *= take.between(0.78, 0.92)
    return shapes.faded(rooms.heard_in(take, shapes.lay(*beats), rooms.OUTDOORS, 0.2), 0.003, 0.1)


@sound(variants=2, long=True, loudness=-26, what="a flock of crows goes over",
       judgement="fair: a swell of wings and calls; it passes by loudness alone, not by direction")
def flock_pass(take):
    seconds = (5.0, 6.5)[take.variant - 1]
    near = shapes.smooth_curve(seconds, ((0, 0.12), (seconds * 0.45, 1.0), (seconds, 0.04)))
    wings_heard = shapes.cut(grains.cloud(take, seconds, 26.0, _wingbeat, 0.6), seconds)
    cries = [(take.between(0.0, seconds - 0.6), _caw(take), take.between(0.2, 1.0)) for _ in range(14)]
    calls = shapes.cut(shapes.lay(*cries), seconds)
    rush = noise.band(take.rng, seconds, 150.0, 1200.0, 1)
    x = (shapes.level(wings_heard) * 0.22 + 2.0 * calls + 0.03 * rush) * near
    x = filters.moving_lowpass(x, 900.0 + 9000.0 * near)
    return shapes.faded(rooms.heard_in(take, x, rooms.OUTDOORS, 0.3), 0.1, 0.4)
