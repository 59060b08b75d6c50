"""Machines: the boiler and its coal, the lift, the dynamo and what hangs on it."""

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


def _shell(take, damping=2.0):
    """The boiler itself: riveted plate, large and half full."""
    return modal.body(take, "sheet", 58.0, 30, 0.55, damping=damping)


def _fire(take, seconds, heat):
    """Coal that burns behind an iron door; `heat` 0..1, one value a sample."""
    flutter = noise.wander_loop(take.rng, seconds, 11.0, 0.4, 1.0)
    draught = filters.moving_lowpass(noise.tilted(take.rng, seconds, 4.5), 120.0 + 900.0 * heat**2) * flutter
    roar = noise.band(take.rng, seconds, 40.0, 220.0) * noise.wander_loop(take.rng, seconds, 16.0, 0.2, 1.0) * heat
    coals = shapes.cut(grains.cloud(take, seconds, 6.0, lambda t: grains.pebble(t, 1500.0), 0.9), seconds)
    return shapes.level(draught) * (0.3 + heat) + 0.9 * roar + 0.5 * coals


def _tick(take):
    """A plate that stretches by a hair."""
    return modal.struck(take, modal.body(take, "metal", take.near(900.0, 0.4), 8, damping=6.0), 0.9)


@sound(loop=True, loudness=-31, what="the boiler at a low fire: it ticks, simmers and sighs",
       judgement="good: simmering water under a quiet draught, plates that tick as they stretch")
def boiler_low(take):
    seconds = 25.0
    fire = _fire(take, seconds, 0.25 * noise.wander_loop(take.rng, seconds, 0.4, 0.6, 1.0))
    simmer = water.bubbling(take, seconds, 70.0 * noise.wander_loop(take.rng, seconds, 0.6), 160.0, 900.0, 0.4)
    ticking = grains.cloud(take, seconds, 1.3, _tick, 0.7)
    sigh = noise.band(take.rng, seconds, 1800.0, 7000.0) * noise.wander_loop(take.rng, seconds, 0.35) ** 5
    shell = modal.ring(fire * 0.02, _shell(take), 0.1)
    x = 0.8 * shapes.level(fire) + 0.5 * shapes.level(shapes.cut(shell, seconds))
    x = x + 0.35 * shapes.level(filters.lowpass(simmer, 900.0, 1))
    x = x + 0.9 * shapes.unit(shapes.cut(ticking, seconds)) + 0.1 * sigh
    return loops.seamless(rooms.heard_in(take, x, rooms.CELLAR, 0.25)[: len(x)], 1.0)


@sound(loop=True, loudness=-22, what="the boiler lit: it roars and shakes its plates",
       judgement="good: the roar has a body of iron, the loose door chatters, steam blows off behind")
def boiler_roar(take):
    seconds = 21.0
    heat = noise.wander_loop(take.rng, seconds, 0.8, 0.75, 1.0)
    fire = _fire(take, seconds, heat)
    door = modal.body(take, "metal", 240.0, 14, 0.4, damping=3.0)
    chatter = grains.cloud(take, seconds, 9.0 * noise.wander_loop(take.rng, seconds, 1.5) ** 2,
                           lambda t: modal.struck(t, door, 0.6), 0.5)
    shell = modal.ring(fire * 0.02, _shell(take, 1.4), 0.1)
    steam = noise.band(take.rng, seconds, 900.0, 9000.0, 1) * noise.wander_loop(take.rng, seconds, 0.5, 0.1, 1.0) ** 2
    boil = water.bubbling(take, seconds, 160.0, 90.0, 420.0, 0.5)
    x = 0.8 * shapes.level(fire) + 0.7 * shapes.level(shapes.cut(shell, seconds))
    x = x + 0.7 * shapes.unit(shapes.cut(chatter, seconds))
    x = shapes.saturated(x + 0.12 * steam + 0.25 * shapes.level(boil), 0.35)
    return loops.seamless(rooms.heard_in(take, x, rooms.CELLAR, 0.3)[: len(x)], 1.0)


@sound(long=True, loudness=-24, what="the boiler is lit: valve, gas, the catch, and the fire that climbs",
       judgement="good: one can tell each step; the catch is a soft blow, as coal gas is")
def boiler_start(take):
    seconds = 11.0
    turn = shapes.smooth_curve(1.1, ((0, 0), (0.2, 0.9), (0.5, 0.4), (0.8, 1), (1.1, 0)))
    valve = modal.body(take, "metal", 520.0, 12, damping=3.0)
    squeal = modal.ring(friction.slips(take, (210.0 + 260.0 * turn) * (turn > 0.02), 0.05, 0.3) * turn, valve, 0.2)
    gas = noise.band(take.rng, 2.2, 1200.0, 8000.0) * shapes.smooth_curve(2.2, ((0, 0), (0.3, 1), (1.9, 1), (2.2, 0)))
    climb = shapes.smooth_curve(seconds - 2.6, ((0, 0.9), (0.4, 0.25), (4.0, 0.55), (seconds - 2.6, 0.9)))
    fire = _fire(take, seconds - 2.6, climb) * climb
    blow = noise.tilted(take.rng, 1.2, 6.0) * shapes.decay(1.2, 0.9, 0.03)
    shell = modal.struck(take, _shell(take, 1.2), 0.1)
    knocks = [(at, modal.struck(take, _shell(take), 0.6), take.between(0.02, 0.06))
              for at in (4.6, 6.1, 6.9, 8.4, 9.0)]
    x = shapes.lay((0.0, shapes.level(squeal), 0.12), (0.6, gas, 0.05), (2.6, shapes.level(fire), 0.3),
                   (2.58, blow, 0.45), (2.6, shapes.unit(shell), 0.8),
                   *[(at, shapes.unit(k), gain * 3) for at, k, gain in knocks])
    return shapes.faded(rooms.heard_in(take, x, rooms.CELLAR, 0.25), 0.005, 1.2)


@sound(variants=2, loudness=-20, what="coal runs down the chute",
       judgement="good: stone on sheet iron, a rush that thins out, stragglers at the end")
def chute(take):
    seconds = (2.4, 3.6)[take.variant - 1]
    flow = shapes.curve(seconds, ((0, 5), (0.25, 130), (seconds * 0.55, 90), (seconds * 0.8, 14), (seconds, 2)))
    sheet = modal.body(take, "sheet", take.near(130.0), 26, 0.4, damping=3.0)

    def lump(t):
        return shapes.lay(shapes.unit(modal.struck(t, sheet, t.between(0.5, 0.85))),
                          (0.0, grains.pebble(t, 1300.0), 0.5))

    fall = grains.cloud(take, seconds, flow, lump, 0.7)
    slide = modal.ring(friction.rubbed(take, flow / 90.0, 700.0, 40.0), sheet, 0.2)
    heap = grains.cloud(take, seconds, flow * 0.6, lambda t: grains.pebble(t, 900.0), 0.8)
    x = shapes.lay((0.0, shapes.level(fall), 0.5), (0.0, shapes.level(slide), 0.18), (0.25, shapes.level(heap), 0.3))
    return shapes.faded(rooms.heard_in(take, x, rooms.CELLAR, 0.2), 0.002, 0.2)


@sound(variants=3, loudness=-18, what="the service bell is struck",
       judgement="good: bronze with its warble and a clapper's tick; softer and duller from the first to the third")
def bell(take):
    ratio = numpy.array([0.5, 1.0, 1.006, 1.19, 1.5, 2.0, 2.008, 2.52, 2.67, 3.01, 4.02, 5.1, 6.3, 7.8])
    gain = numpy.array([0.25, 0.8, 0.5, 0.7, 0.35, 1.0, 0.7, 0.4, 0.35, 0.5, 0.4, 0.3, 0.22, 0.15])
    gain = gain * take.rng.uniform(0.7, 1.3, 14)
    bronze = modal.Body(ratio * 612.0, 4.2 / (1.0 + (ratio / 2.2) ** 1.3), gain)
    hardness = (0.9, 0.75, 0.6)[take.variant - 1]
    ring = modal.ring(modal.blow(0.01, hardness), bronze, 3.0)
    clapper = modal.struck(take, modal.body(take, "metal", 3100.0, 6, damping=10.0), 0.95)
    bracket = modal.struck(take, modal.body(take, "board", 190.0, 12), 0.4)
    x = shapes.lay(shapes.unit(ring), (0.0, shapes.unit(clapper), 0.2 * hardness),
                   (0.001, shapes.unit(bracket), 0.12))
    return shapes.faded(rooms.heard_in(take, x, rooms.SMALL, 0.2), 0.0005, 0.5)


def _motor(take, seconds, turns):
    """A direct-current motor with its gear: `turns` a second, one value a sample."""
    angle = 2 * numpy.pi * numpy.cumsum(turns) / shapes.RATE
    wobble = 0.12 * numpy.sin(angle)
    whine = sum(g * numpy.sin(angle * k + wobble * k * 0.2 + k)
                for k, g in ((11, 0.25), (22, 0.5), (23, 0.2), (44, 0.18), (66, 0.08)))
    hum = sum(g * numpy.sin(angle * k + k) for k, g in ((1, 0.4), (2, 0.7), (3, 0.3), (4, 0.35), (6, 0.2)))
    segments = 0.4 + 0.6 * numpy.maximum(numpy.sin(angle * 12), 0.0) ** 3
    brushes = noise.band(take.rng, seconds, 2200.0, 7500.0) * segments
    return hum + whine * (0.85 + 0.3 * numpy.sin(angle * 0.5)), brushes


def _cable(take, seconds, speed):
    """The car in its shaft: shoes on iron rails, rope over the wheel; `speed` 0..1, one value a sample."""
    rails = modal.ring(friction.rubbed(take, 0.5 * speed, 300.0, 9.0),
                       modal.body(take, "metal", 170.0, 18, damping=4.0), 0.1)
    joints = numpy.zeros(len(speed))
    joint = shapes.unit(modal.struck(take, modal.body(take, "metal", 95.0, 20, damping=3.0), 0.4))
    path = numpy.cumsum(speed) / shapes.RATE
    for at in numpy.searchsorted(path, numpy.arange(0.7, path[-1] - 0.3, 1.37)):
        piece = joint[: len(joints) - at]
        joints[at : at + len(piece)] += piece * take.near(1.0, 0.3)
    return 0.35 * shapes.level(shapes.cut(rails, seconds)) * speed + 0.8 * joints


@sound(loop=True, loudness=-25, what="the lift runs: motor, rope and rails",
       judgement="good: hum, gear, rail and joints are separate; the gear's tone is steadier than an old motor's")
def lift(take):
    seconds = 17.0
    turns = 16.0 + 0.35 * numpy.sin(2 * numpy.pi * shapes.times(seconds) / 8.0)
    turns = turns + noise.wander_loop(take.rng, seconds, 1.0, -0.1, 0.1)
    tone, brushes = _motor(take, seconds, turns)
    speed = noise.wander_loop(take.rng, seconds, 0.8, 0.85, 1.0)
    creak = modal.ring(friction.slips(take, 38.0 * noise.wander_loop(take.rng, seconds, 0.7), 0.3),
                       modal.body(take, "board", 160.0, 16), 0.1)
    x = 0.3 * filters.lowpass(tone, 1500.0, 1) + 0.03 * brushes + 0.1 * shapes.level(shapes.cut(creak, seconds))
    x = x + _cable(take, seconds, speed)
    return loops.seamless(rooms.heard_in(take, x, rooms.PIPE, 0.25)[: len(x)], 1.0)


@sound(loudness=-19, what="the lift starts: the contactor, the jerk, the motor that takes the load",
       judgement="good: leads into the loop's pitch")
def lift_start(take):
    seconds = 2.4
    turns = shapes.smooth_curve(seconds, ((0, 1.0), (0.3, 3.0), (1.6, 16.0), (seconds, 16.0)))
    tone, brushes = _motor(take, seconds, turns)
    grow = shapes.smooth_curve(seconds, ((0, 0), (0.15, 0.6), (0.6, 1.0), (seconds, 0.8)))
    contact = modal.struck(take, modal.body(take, "metal", 420.0, 14, damping=4.0), 0.8, bounces=2)
    jerk = modal.struck(take, modal.body(take, "board", 70.0, 20), 0.2)
    x = shapes.lay((0.0, shapes.unit(contact), 0.7), (0.09, shapes.unit(jerk), 0.9),
                   (0.1, 0.25 * filters.lowpass(tone, 1800.0, 1) * grow), (0.1, 0.05 * brushes * grow),
                   (0.15, 0.8 * _cable(take, seconds, turns / 16.0)))
    return shapes.faded(rooms.heard_in(take, x, rooms.PIPE, 0.2), 0.001, 0.5)


@sound(loudness=-18, what="the lift stops: the brake, the car that settles, the gate's rattle",
       judgement="good: three things in their order")
def lift_stop(take):
    seconds = 1.3
    turns = shapes.smooth_curve(seconds, ((0, 16.0), (0.9, 2.0), (seconds, 0.3)))
    tone, brushes = _motor(take, seconds, turns)
    shrink = shapes.smooth_curve(seconds, ((0, 1), (0.8, 0.5), (seconds, 0)))
    shoe = modal.body(take, "metal", 330.0, 16, damping=3.0)
    brake = modal.ring(friction.slips(take, turns * 22.0, 0.1) * shrink, shoe, 0.1)
    land = modal.struck(take, modal.body(take, "board", 62.0, 22), 0.25, bounces=1)
    gate = modal.body(take, "metal", 520.0, 12, damping=3.0)
    fewer = shapes.curve(0.7, ((0, 45), (0.7, 2)))
    rattle = grains.cloud(take, 0.7, fewer, lambda t: modal.struck(t, gate, 0.7), 0.6)
    x = shapes.lay((0.0, 0.25 * filters.lowpass(tone, 1800.0, 1) * shrink + 0.04 * brushes * shrink),
                   (0.0, shapes.level(brake), 0.08), (0.95, shapes.unit(land), 1.0), (1.02, shapes.unit(rattle), 0.3))
    return shapes.faded(rooms.heard_in(take, x, rooms.PIPE, 0.2), 0.01, 0.2)


@sound(variants=2, loudness=-22, what="a fuse goes: the flash, the buzz, what tinkles after it",
       judgement="good: short and dry; the arc's buzz is the current's")
def fuse_blow(take):
    pop = noise.white(take.rng, 0.05) * shapes.decay(0.05, 0.04, 0.0002)
    plate = modal.struck(take, modal.body(take, "pot", take.near(820.0), 14, damping=2.0), 0.95)
    seconds = take.between(0.18, 0.4)
    t = shapes.times(seconds)
    bite = numpy.maximum(numpy.sin(2 * numpy.pi * 100.0 * t), 0.0) ** 3
    bite = bite * noise.wander(take.rng, seconds, 30.0)[: len(t)]
    arc = noise.band(take.rng, seconds, 900.0, 12000.0, 1) * bite * shapes.curve(seconds, ((0, 1), (seconds, 0)))
    low = numpy.sin(2 * numpy.pi * 100.0 * t) * shapes.curve(seconds, ((0, 1), (seconds, 0)))
    bits = grains.cloud(take, 0.5, shapes.curve(0.5, ((0, 40), (0.5, 0))),
                        lambda t: grains.pebble(t, 4200.0, "glass"), 0.7)
    x = shapes.lay((0.0, pop, 0.5), (0.0, shapes.unit(plate), 0.5), (0.01, arc, 0.3), (0.01, low, 0.05),
                   (0.12, shapes.unit(bits), 0.08))
    return shapes.faded(rooms.heard_in(take, x, rooms.SMALL, 0.2), 0.0003, 0.1)


@sound(loop=True, loudness=-27, what="the dynamo turns under its belt",
       judgement="good: the belt's joint slaps once a turn over hum and brushes")
def dynamo(take):
    seconds = 13.0
    turns = 9.0 + noise.wander_loop(take.rng, seconds, 0.6, -0.25, 0.25)
    tone, brushes = _motor(take, seconds, turns)
    angle = numpy.cumsum(turns) / shapes.RATE
    leather = modal.struck(take, modal.body(take, "box", 130.0, 14), 0.5)
    slap = shapes.unit(shapes.lay(leather, (0.0, grains.crumb(take, 1500.0), 0.5)))
    belt = numpy.zeros(len(angle))
    for at in numpy.searchsorted(angle, numpy.arange(0.4, angle[-1] - 0.2, 3.0)):
        piece = slap[: len(belt) - at]
        belt[at : at + len(piece)] += piece * take.near(1.0, 0.2)
    hiss = noise.band(take.rng, seconds, 500.0, 3000.0, 1) * (0.6 + 0.4 * numpy.sin(2 * numpy.pi * angle / 3.0))
    frame = modal.ring(belt * 0.3 + 0.002 * brushes, modal.body(take, "metal", 110.0, 18, damping=2.5), 0.1)
    x = 0.3 * tone + 0.05 * brushes + 0.7 * belt + 0.05 * hiss + 0.2 * shapes.unit(shapes.cut(frame, seconds))
    return loops.seamless(rooms.heard_in(take, x, rooms.SMALL, 0.2)[: len(x)], 1.0)
