"""Doors: hinges that stick and slip, latches, slams, and a heavy door on its rail."""

import numpy

import filters
import friction
import grains
import loops
import modal
import noise
import rooms
import shapes
from take import sound


def _hinge(take, rate, growl):
    """What a dry hinge sings into a door at this many slips a second: pin, knuckle, and the panel it shakes."""
    seconds = len(rate) / shapes.RATE
    rate = rate * noise.wander(take.rng, seconds, 32.0, 0.94, 1.06)
    force = friction.slips(take, rate, 0.2, growl) * noise.wander(take.rng, seconds, 16.0, 0.1, 1.0)
    panel = modal.body(take, "wood", take.near(165.0, 0.15), count=26, tilt=0.15)
    pin = modal.body(take, "iron", take.near(940.0, 0.2), count=6, tilt=0.3, damping=18.0)
    pitch = filters.lowpass(rate, 6.0, 1)
    sung = filters.moving_bandpass(force, 420.0 + 7.0 * pitch, 3.0) + 0.7 * filters.moving_bandpass(
        force, 1350.0 + 11.0 * pitch, 5.0)
    dust = noise.band(take.rng, seconds, 1500, 6000, 1) * filters.lowpass(numpy.abs(force), 60.0)
    x = shapes.lay((0.0, shapes.level(modal.ring(force, panel, 0.15)), 0.9), (0.0, shapes.level(sung), 1.0),
                   (0.0, shapes.level(modal.ring(force, pin, 0.1)), 0.22), (0.0, shapes.level(dust), 0.07))
    return filters.lowpass(filters.high_shelf(x, 3500.0, -9.0), 7000.0, 1)


def _stroke(take, seconds, low, high, stops):
    """How fast a hinge slips while a door is moved once: it starts, sticks now and then, swings on, comes to rest."""
    t = numpy.linspace(0.0, 1.0, shapes.samples(seconds))
    swing = low + (high - low) * numpy.sin(numpy.pi * t ** take.between(0.6, 1.1)) ** 1.3
    rate = swing * noise.wander(take.rng, seconds, 5.0, 0.85, 1.15) * _hops(take, seconds, 0.65, 1.15, 0.28)
    for _ in range(stops):
        at, width = take.between(0.1, 0.9), take.between(0.015, 0.05)
        rate = rate * (1.0 - 0.97 * numpy.exp(-numpy.square((t - at) / width)))
    return rate


def _hops(take, seconds, low, high, dwell):
    """A pitch that stays for about `dwell` seconds, then jumps: the pin has found another place to bite."""
    points, at = [(0.0, take.between(low, high))], 0.0
    while at < seconds:
        at += take.near(dwell, 0.7)
        points += [(at, points[-1][1]), (at + 0.02, take.between(low, high))]
    return shapes.curve(seconds, points)


def _latch_click(take, hard=0.85, lowest=1150.0):
    """A small iron tongue that jumps: click, spring, and the lock case round it."""
    tongue = modal.body(take, "iron", take.near(lowest, 0.2), count=16, tilt=0.0, damping=8.0)
    case = modal.body(take, "sheet", take.near(430.0, 0.2), count=14, tilt=0.4, damping=8.0)
    stile = modal.body(take, "wood", take.near(240.0, 0.2), count=14, tilt=0.5)
    return shapes.lay((0.0, shapes.unit(modal.struck(take, tongue, hard, 1, 0.08, 0.8)), 0.6),
                      (0.0005, shapes.unit(modal.struck(take, case, hard * 0.8, 0, 0.1, 0.5)), 0.5),
                      (0.001, shapes.unit(modal.struck(take, stile, 0.5, 0, 0.12)), 0.6))


def _knock(take, lowest, hard=0.35):
    """A door leaf that meets its frame."""
    leaf = modal.body(take, "board", take.near(lowest, 0.12), count=30, tilt=0.45)
    frame = modal.body(take, "wood", take.near(lowest * 2.6, 0.15), count=18, tilt=0.5)
    return shapes.lay((0.0, shapes.unit(modal.struck(take, leaf, hard)), 1.0),
                      (0.0006, shapes.unit(modal.struck(take, frame, min(1.0, hard + 0.25))), 0.5))


@sound(loop=True, loudness=-27.0, silence=0.6, what="a hinge moved slowly: single groans",
       judgement="good: single groans, no even pitch")
def creak_slow(take):
    seconds = 6.5
    rate = noise.wander(take.rng, seconds, 1.6, 5.0, 55.0) * noise.wander(take.rng, seconds, 7.0, 0.7, 1.3)
    return loops.seamless(shapes.cut(_hinge(take, rate, 0.5), seconds), 0.5)


@sound(loop=True, loudness=-24.0, what="a hinge moved fast: a cry that wavers",
       judgement="good: its pitch jumps as a biting pin does")
def creak_fast(take):
    seconds = 4.5
    rate = _hops(take, seconds, 120.0, 340.0, 0.3) * noise.wander(take.rng, seconds, 9.0, 0.85, 1.15)
    return loops.seamless(shapes.cut(_hinge(take, rate, 0.3), seconds), 0.4)


@sound(variants=4, loudness=-25.0, silence=0.5, what="a door opened slowly, once",
       judgement="good: sticks, lets go, glides")
def creak_long(take):
    x = _hinge(take, _stroke(take, take.between(1.7, 2.6), 6.0, take.between(80.0, 150.0), 3), 0.45)
    return rooms.heard_in(take, x, rooms.SMALL, 0.15)


@sound(variants=4, loudness=-23.0, what="a door pulled open", judgement="good: its pitch jumps once or twice")
def creak_short(take):
    x = _hinge(take, _stroke(take, take.between(0.5, 0.8), 40.0, take.between(190.0, 340.0), 1), 0.3)
    return rooms.heard_in(take, x, rooms.SMALL, 0.15)


@sound(variants=4, loudness=-27.0, what="a latch that falls into its plate", judgement="good")
def latch(take):
    x = shapes.lay((0.0, _latch_click(take, 0.7, 1500.0), 0.35), (take.between(0.03, 0.06), _latch_click(take), 1.0))
    return rooms.heard_in(take, x, rooms.SMALL, 0.14)


@sound(variants=3, loudness=-29.0, what="a door handle pressed down", judgement="good")
def handle(take):
    """The spindle grinds in its rose, the spring creaks, the tongue comes out of its plate."""
    t = take.between(0.18, 0.26)
    speed = shapes.smooth_curve(t, [(0.0, 0.0), (t * 0.3, 0.12), (t, 0.02)])
    spindle = modal.body(take, "iron", take.near(620.0, 0.2), count=18, tilt=-0.1, damping=14.0)
    grind = modal.ring(friction.rubbed(take, speed, 2600.0, 160.0), spindle, 0.06)
    rate = shapes.smooth_curve(t, [(0.0, 60.0), (t, take.between(240.0, 380.0))])
    spring = filters.bandpass(friction.slips(take, rate, 0.1, 0.2), 1800.0, 5200.0)
    x = shapes.lay((0.0, shapes.unit(grind), 0.5), (0.0, shapes.unit(spring), 0.12),
                   (t * 0.95, _latch_click(take), 1.0))
    return rooms.heard_in(take, x, rooms.SMALL, 0.14)


@sound(variants=3, loudness=-24.0, what="a door closed with care", judgement="good")
def close_wood(take):
    x = shapes.lay((0.0, _knock(take, 92.0, 0.3), 1.0), (take.between(0.015, 0.04), _latch_click(take), 0.45),
                   (take.between(0.05, 0.08), _knock(take, 96.0, 0.2), 0.18))
    return rooms.heard_in(take, x, rooms.SMALL, 0.2)


def _gust(take, seconds):
    """The air that a door pushes before it."""
    x = noise.band(take.rng, seconds, 60, 700, 1) * shapes.smooth_curve(seconds, [(0, 0), (seconds, 1.0)]) ** 3
    return shapes.faded(x, 0.01, 0.01)


@sound(variants=3, loudness=-18.0, what="a door thrown shut",
       judgement="good: crack, leaf, lock; the room has to come from the engine")
def slam_wood(take):
    """Air, the leaf on the rebate along its whole edge, the frame, plaster dust, and the lock that shivers on."""
    leaf = modal.body(take, "board", take.near(76.0, 0.1), count=44, tilt=0.0, damping=0.8)
    force = shapes.lay(*[(take.between(0.0, 0.012), modal.blow(0.02, take.between(0.35, 0.75)), take.between(0.4, 1.0))
                         for _ in range(5)])
    crack = filters.highpass(modal.contact(take, 0.8), 500.0)
    shiver = grains.cloud(take, 0.35, 70.0 * shapes.decay(0.35, 0.6), lambda k: _latch_click(k, 0.7)[:3000], 0.5)
    dust = grains.cloud(take, 0.7, 120.0 * shapes.decay(0.7, 1.2, 0.1), lambda k: grains.crumb(k, 3000.0))
    wall = filters.resonator(modal.blow(0.5, 0.0), take.near(58.0), 0.25)
    x = shapes.lay((0.0, _gust(take, 0.09), 0.05), (0.085, shapes.unit(modal.ring(force, leaf, 0.5)), 1.0),
                   (0.085, shapes.unit(crack), 0.9), (0.088, _knock(take, 170.0, 0.75), 0.8),
                   (0.087, shapes.unit(wall), 0.25), (0.1, shapes.unit(shiver), 0.2), (0.2, shapes.unit(dust), 0.02))
    return rooms.heard_in(take, filters.highpass(shapes.saturated(x, 0.8), 45.0), rooms.SMALL, 0.45)


@sound(variants=3, loudness=-16.0, what="an iron door that falls to",
       judgement="good: dense ringing, the bolts rattle after it")
def slam_iron(take):
    sheet = modal.body(take, "sheet", take.near(84.0, 0.1), count=60, tilt=-0.1, damping=1.0)
    frame = modal.body(take, "iron", take.near(210.0, 0.1), count=12, tilt=0.3, damping=4.0)
    force = shapes.lay(*[(take.between(0.0, 0.02), modal.blow(0.02, take.between(0.6, 0.95)), take.between(0.3, 1.0))
                         for _ in range(6)])
    bolt = modal.body(take, "iron", take.near(640.0, 0.2), count=10, damping=10.0)
    rattle, at, gain = [], 0.08, 0.5
    for _ in range(7):
        rattle.append((at, shapes.unit(modal.struck(take, bolt, 0.85, 0, 0.12, 0.7)), gain * take.between(0.3, 0.6)))
        at, gain = at + take.between(0.03, 0.07), gain * 0.75
    x = shapes.lay((0.0, shapes.unit(modal.ring(force, sheet, 1.6)), 1.0),
                   (0.0, shapes.unit(modal.struck(take, frame, 0.9, 0, 0.5, 0.6)), 0.7),
                   (0.0, shapes.unit(filters.resonator(modal.blow(0.4, 0.0), 60.0, 0.25)), 0.25), *rattle)
    x = filters.low_shelf(filters.highpass(shapes.saturated(x, 0.9), 50.0), 180.0, -8.0)
    return rooms.heard_in(take, x, rooms.SMALL, 0.35)


@sound(variants=3, loudness=-24.0, what="a locked door that is tried", judgement="good")
def locked(take):
    """Handle down, and the leaf thrown two or three times against its bolt."""
    bolt = modal.body(take, "iron", take.near(380.0, 0.15), count=10, tilt=0.3, damping=12.0)
    x, at = [(0.0, _latch_click(take), 0.4)], take.between(0.14, 0.2)
    for _ in range(take.pick((2, 3, 3))):
        force = take.between(0.6, 1.0)
        x += [(at, _knock(take, 120.0, 0.4), 0.8 * force),
              (at + 0.004, shapes.unit(modal.struck(take, bolt, 0.8, 2, 0.1, 0.7)), 0.5 * force),
              (at + take.between(0.06, 0.09), _knock(take, 135.0, 0.3), 0.4 * force),
              (at + take.between(0.06, 0.09), _latch_click(take), 0.22 * force)]
        at += take.between(0.15, 0.22)
    x.append((at + 0.05, _latch_click(take, 0.7), 0.3))
    return rooms.heard_in(take, shapes.lay(*x), rooms.SMALL, 0.18)


@sound(loop=True, loudness=-25.0, what="a heavy door that runs along its rail",
       judgement="good: rumble, a flat spot, a cry now and then")
def slide(take):
    """Iron wheels on a worn rail: rumble, a flat spot that comes round, dry wood on top."""
    seconds = 5.0
    leaf = modal.body(take, "board", take.near(72.0), count=30, tilt=0.4)
    speed = noise.wander(take.rng, seconds, 2.0, 0.32, 0.5)
    wheel = friction.rubbed(take, speed, 420.0, 55.0)
    turns = numpy.cumsum(speed) / shapes.RATE / 0.31
    flat = numpy.zeros(len(speed))
    flat[numpy.flatnonzero(numpy.diff(numpy.floor(turns * 2)))] = 1.0
    flat = flat * take.rng.uniform(0.5, 1.0, len(flat))
    flat = numpy.convolve(flat, modal.blow(0.006, 0.4))[:len(flat)]
    rail = modal.body(take, "iron", take.near(310.0), count=24, tilt=0.1, damping=7.0)
    cry = friction.slips(take, _hops(take, seconds, 380.0, 820.0, 0.5), 0.12, 0.2)
    cry = shapes.cut(modal.ring(cry, rail, 0.1), seconds) * noise.wander(take.rng, seconds, 2.0, -1.5, 1.0).clip(0.0)
    x = shapes.lay((0.0, shapes.level(modal.ring(wheel, leaf, 0.1)), 1.0), (0.0, shapes.level(cry), 0.22),
                   (0.0, shapes.level(modal.ring(wheel, rail, 0.1)), 0.4),
                   (0.0, shapes.unit(modal.ring(flat, leaf, 0.1)), 2.2),
                   (0.0, shapes.level(filters.bandpass(wheel, 1500.0, 6000.0, 1)), 0.12))
    return loops.seamless(shapes.cut(x, seconds), 0.5)


@sound(variants=3, loudness=-19.0, what="the sliding door against its end stop", judgement="good")
def slide_stop(take):
    stop = modal.body(take, "iron", take.near(260.0), count=12, tilt=0.3, damping=8.0)
    x = shapes.lay((0.0, _knock(take, 66.0, 0.35), 1.0),
                   (0.0, shapes.unit(modal.struck(take, stop, 0.75, 1, 0.3)), 0.5),
                   (take.between(0.09, 0.14), _knock(take, 70.0, 0.25), 0.25))
    return rooms.heard_in(take, x, rooms.SMALL, 0.25)
