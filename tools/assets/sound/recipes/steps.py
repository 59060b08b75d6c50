"""Steps: a clerk's leather shoes on seven floors, walking, running and crouching.

A step is a heel, a sole that rolls after it, and what the sole drags along. The heel is a stacked leather block of its
own short sound; the floor answers by what it is made of and how it is held.
"""

from dataclasses import dataclass

import numpy

import filters
import friction
import grains
import modal
import noise
import rooms
import shapes
from take import sound


@dataclass(frozen=True)
class Gait:
    """`hard` of the heel and of the toe, seconds between them, and how loud toe and scuff are beside the heel."""

    heel: float
    toe: float
    gap: float
    toe_gain: float
    scuff: float
    scuff_s: float


WALK = Gait(0.62, 0.42, 0.115, 0.5, 0.16, 0.14)
RUN = Gait(0.78, 0.66, 0.042, 0.85, 0.22, 0.08)
CROUCH = Gait(0.36, 0.3, 0.19, 0.75, 0.4, 0.24)


def _shoe(take, hard, weight=0.7):
    """The heel block and the foot in it: a dull knock with a leather click on top."""
    block = modal.body(take, "wood", take.near(480.0, 0.2), count=9, tilt=0.4, damping=1.6)
    leather = modal.contact(take, hard * 0.9)
    leg = filters.resonator(modal.blow(0.25, 0.05), take.near(72.0, 0.12), 0.09)
    return shapes.lay((0.0, shapes.unit(modal.struck(take, block, hard, tail=0.08)), 0.5 + 0.4 * hard),
                      (0.0, leather, 0.2 + 0.4 * hard), (0.0, shapes.unit(leg), weight))


def _wood_contact(take, hard):
    """Boards on joists: the board knocks, the hollow below it answers, now and then a nail gives."""
    board = modal.body(take, "board", take.near(105.0, 0.18), count=26, tilt=0.45)
    plank = modal.body(take, "wood", take.near(230.0, 0.25), count=14, tilt=0.6)
    hollow = filters.formants(modal.blow(0.25, 0.2), [(take.near(88.0), 30.0, 1.0), (take.near(170.0), 45.0, 0.5)])
    x = shapes.lay((0.0, _shoe(take, hard), 0.55), (0.0004, shapes.unit(modal.struck(take, board, hard * 0.75)), 0.9),
                   (0.0002, shapes.unit(modal.struck(take, plank, hard)), 0.5), (0.003, shapes.unit(hollow), 0.6))
    return shapes.lay(x, (take.between(0.012, 0.03), _shoe(take, hard * 0.8), 0.12))


def _stone_contact(take, hard):
    """Flags on earth do not answer: the shoe itself, and the sand between."""
    flag = modal.body(take, "stone", take.near(640.0, 0.3), count=12, tilt=0.35)
    sand = grains.cloud(take, 0.05, 900.0, lambda t: grains.pebble(t, 4200.0)) * 1.0
    sand = sand * shapes.cut(shapes.decay(0.05, 0.08), len(sand) / shapes.RATE)
    return shapes.lay((0.0, _shoe(take, min(hard + 0.18, 1.0), 0.4), 1.0),
                      (0.0, shapes.unit(modal.struck(take, flag, min(hard + 0.2, 1.0), dirt=0.7)), 0.55),
                      (0.001, shapes.unit(sand), 0.12))


def _tile_contact(take, hard):
    """Glazed tiles on mortar: a crisp click, and where one is loose its own small note."""
    tile = modal.body(take, "tile", take.near(1250.0, 0.25), count=14, tilt=0.3)
    bed = modal.body(take, "stone", take.near(330.0, 0.25), count=8)
    return shapes.lay((0.0, _shoe(take, min(hard + 0.22, 1.0), 0.2), 0.7),
                      (0.0, shapes.unit(modal.struck(take, tile, min(hard + 0.3, 1.0), dirt=0.5)), 0.85),
                      (0.0006, shapes.unit(modal.struck(take, bed, hard)), 0.45),
                      (take.between(0.009, 0.02), shapes.unit(modal.struck(take, tile, hard, tail=0.1)), 0.12))


def _carpet_contact(take, hard):
    """The pile swallows the click; what is left is weight on the boards below, and fibres."""
    board = modal.body(take, "board", take.near(92.0, 0.35), count=18, tilt=0.6, damping=1.8)
    thud = filters.lowpass(modal.struck(take, board, 0.12 + 0.2 * hard, dirt=0.2), 420.0 + 500.0 * hard)
    t = 0.11
    pile = grains.rustle(take, t, shapes.decay(t, 0.16, 0.012), 350.0, 3200.0, 500.0)
    foot = filters.lowpass(_shoe(take, 0.1), 500.0)
    return shapes.lay((0.0, shapes.unit(thud), 1.0), (0.002, shapes.unit(foot), take.between(0.35, 0.9)),
                      (0.0, shapes.unit(pile), take.near(0.16 + 0.1 * hard, 0.4)))


def _earth_contact(take, hard):
    """Trodden soil gives way: a short thud, clots, a few small stones."""
    t = 0.14
    press = filters.lowpass(noise.brown(take.rng, t), 300.0 + 300.0 * hard) * shapes.decay(t, 0.12, 0.006)
    thud = filters.resonator(modal.blow(0.2, 0.05), take.near(64.0, 0.15), 0.08)
    clots = grains.cloud(take, t, 700.0 * shapes.decay(t, 0.2, 0.01), lambda k: grains.crumb(k, 900.0))
    stones = grains.cloud(take, t, 90.0 * shapes.decay(t, 0.25, 0.01), lambda k: grains.pebble(k, 2300.0))
    return shapes.lay((0.0, shapes.unit(press), 0.9), (0.0, shapes.unit(thud), 0.9),
                      (0.004, shapes.unit(clots), 0.35 + 0.2 * hard), (0.006, shapes.unit(stones), 0.1 + 0.12 * hard))


def _snow_contact(take, hard):
    """Dry snow is pressed together: grains break in a crowd, and creak at the end where they bind."""
    t = take.near(0.2 - 0.09 * hard, 0.15)
    press = shapes.smooth_curve(t, [(0.0, 0.15), (t * 0.35, 1.0), (t * 0.8, 0.6), (t, 0.0)])
    flakes = grains.cloud(take, t, 2600.0 * press, lambda k: grains.crumb(k, 2400.0), 0.9)
    packing = filters.bandpass(friction.slips(take, 60.0 + 190.0 * press, 0.7, 0.5) * press, 350.0, 1700.0, 1)
    sink = filters.lowpass(noise.brown(take.rng, t), 240.0) * shapes.decay(t, 0.14, 0.02)
    return shapes.lay((0.0, shapes.unit(flakes), 1.0), (t * 0.15, shapes.unit(packing), 0.45),
                      (0.0, shapes.unit(sink), 0.35 + 0.3 * hard))


def _metal_contact(take, hard):
    """A chequer plate on a frame: the sheet sings, its edge rattles on the frame."""
    sheet = modal.body(take, "sheet", take.near(128.0, 0.2), count=40, tilt=0.3, damping=2.6)
    frame = modal.body(take, "iron", take.near(410.0, 0.2), count=8, damping=9.0)
    at, rattle = 0.018, []
    for _ in range(take.pick((2, 3, 4))):
        rattle.append((at, shapes.unit(modal.struck(take, frame, 0.8, tail=0.12)), 0.16 * take.between(0.3, 1.0)))
        at += take.between(0.014, 0.034)
    return shapes.lay((0.0, _shoe(take, min(hard + 0.2, 1.0)), 0.6),
                      (0.0, shapes.unit(modal.struck(take, sheet, hard, tail=0.5, dirt=0.4)), 1.0), *rattle)


def _leather_scuff(take, seconds, low, high):
    """The sole drawn over a hard floor."""
    speed = numpy.sin(numpy.pi * numpy.linspace(0.02, 0.98, shapes.samples(seconds))) ** 1.5 * take.between(0.25, 0.5)
    return filters.bandpass(friction.rubbed(take, speed, 1600.0, 90.0), low, high, 1)


def _grit_scuff(take, seconds, low, high):
    """A hard sole on sand and small stones."""
    shape = numpy.sin(numpy.pi * numpy.linspace(0.0, 1.0, shapes.samples(seconds)))
    stones = grains.cloud(take, seconds, 600.0 * shape, lambda k: grains.pebble(k, 3600.0))
    sole = _leather_scuff(take, seconds, low, high)
    return shapes.lay((0.0, shapes.unit(sole), 0.6), (0.0, shapes.unit(stones), 0.8))


def _pile_scuff(take, seconds, low, high):
    shape = numpy.sin(numpy.pi * numpy.linspace(0.0, 1.0, shapes.samples(seconds)))
    return grains.rustle(take, seconds, shape, low, high, 600.0)


def _soil_scuff(take, seconds, low, high):
    shape = numpy.sin(numpy.pi * numpy.linspace(0.0, 1.0, shapes.samples(seconds)))
    clots = grains.cloud(take, seconds, 900.0 * shape, lambda k: grains.crumb(k, 1300.0))
    return shapes.lay((0.0, shapes.unit(clots), 1.0), (0.0, shapes.unit(_pile_scuff(take, seconds, low, high)), 0.4))


@dataclass(frozen=True)
class Floor:
    """What a floor does with a blow and with a scuff, that scuff's band, and the Hz below which the floor is dumb."""

    contact: object
    scuff: object
    band: tuple
    lowest: float


WOOD = Floor(_wood_contact, _leather_scuff, (350.0, 4200.0), 45.0)
STONE = Floor(_stone_contact, _grit_scuff, (900.0, 8000.0), 85.0)
TILE = Floor(_tile_contact, _leather_scuff, (1200.0, 7000.0), 90.0)
CARPET = Floor(_carpet_contact, _pile_scuff, (350.0, 3500.0), 45.0)
EARTH = Floor(_earth_contact, _soil_scuff, (250.0, 3800.0), 55.0)
SNOW = Floor(_snow_contact, _soil_scuff, (500.0, 6000.0), 60.0)
METAL = Floor(_metal_contact, _grit_scuff, (700.0, 6500.0), 70.0)


def _step(take, floor, gait):
    """Heel, sole and scuff in time; where the foot comes down first differs from step to step."""
    gap = take.near(gait.gap, 0.2)
    heel = shapes.unit(floor.contact(take, min(1.0, take.near(gait.heel, 0.12))))
    toe = shapes.unit(floor.contact(take, min(1.0, take.near(gait.toe, 0.15))))
    toe = filters.high_shelf(filters.highpass(toe, 70.0, 1), 2500.0, -3.0)
    scuff = shapes.unit(floor.scuff(take, take.near(gait.scuff_s, 0.25), *floor.band))
    trail = shapes.unit(floor.scuff(take, take.near(gait.scuff_s * 0.7, 0.25), *floor.band))
    x = shapes.lay((0.03, heel, 1.0), (0.03 + gap, toe, take.near(gait.toe_gain, 0.25)),
                   (max(0.0, 0.03 - gait.scuff * 0.08), scuff, take.near(gait.scuff, 0.5)),
                   (0.03 + gap + take.between(0.02, 0.06), trail, take.near(gait.scuff * 0.6, 0.6)))
    swing = shapes.smooth_curve(0.3, [(0.0, 0.0), (0.12, 0.7), (0.3, 0.0)])
    cloth = grains.rustle(take, 0.3, swing, 700.0, 4500.0, 120.0)
    x = shapes.lay(x, (0.0, shapes.unit(cloth), 0.02))
    return rooms.heard_in(take, filters.highpass(x, floor.lowest), rooms.CLOSET, 0.16)


@sound(variants=6, loudness=-25.0, what="a walker's step on boards",
       judgement="good: heel, toe and scuff apart; boards answer between 100 and 400 Hz")
def wood_walk(take):
    return _step(take, WOOD, WALK)


@sound(variants=6, loudness=-20.5, what="a runner's step on boards", judgement="good")
def wood_run(take):
    return _step(take, WOOD, RUN)


@sound(variants=6, loudness=-33.0, what="a stooping step on boards", judgement="good")
def wood_crouch(take):
    return _step(take, WOOD, CROUCH)


@sound(variants=6, loudness=-26.0, what="a walker's step on flags", judgement="good: sand is heard under the sole")
def stone_walk(take):
    return _step(take, STONE, WALK)


@sound(variants=6, loudness=-22.0, what="a runner's step on flags", judgement="good")
def stone_run(take):
    return _step(take, STONE, RUN)


@sound(variants=6, loudness=-34.0, what="a stooping step on flags", judgement="good")
def stone_crouch(take):
    return _step(take, STONE, CROUCH)


@sound(variants=6, loudness=-25.0, what="a walker's step on tiles", judgement="good")
def tile_walk(take):
    return _step(take, TILE, WALK)


@sound(variants=6, loudness=-21.0, what="a runner's step on tiles", judgement="good")
def tile_run(take):
    return _step(take, TILE, RUN)


@sound(variants=6, loudness=-33.0, what="a stooping step on tiles", judgement="good")
def tile_crouch(take):
    return _step(take, TILE, CROUCH)


@sound(variants=6, loudness=-32.0, what="a walker's step on carpet", judgement="good")
def carpet_walk(take):
    return _step(take, CARPET, WALK)


@sound(variants=6, loudness=-27.0, what="a runner's step on carpet", judgement="good")
def carpet_run(take):
    return _step(take, CARPET, RUN)


@sound(variants=6, loudness=-39.0, what="a stooping step on carpet", judgement="good")
def carpet_crouch(take):
    return _step(take, CARPET, CROUCH)


@sound(variants=6, loudness=-29.0, what="a walker's step on soil",
       judgement="fair: dry soil only")
def earth_walk(take):
    return _step(take, EARTH, WALK)


@sound(variants=6, loudness=-24.0, what="a runner's step on soil", judgement="fair: dry soil only")
def earth_run(take):
    return _step(take, EARTH, RUN)


@sound(variants=6, loudness=-36.0, what="a stooping step on soil", judgement="fair: dry soil only")
def earth_crouch(take):
    return _step(take, EARTH, CROUCH)


@sound(variants=6, loudness=-23.0, what="a walker's step on an iron plate",
       judgement="good: the plate sings, its edge rattles")
def metal_walk(take):
    return _step(take, METAL, WALK)


@sound(variants=6, loudness=-18.5, what="a runner's step on an iron plate", judgement="good")
def metal_run(take):
    return _step(take, METAL, RUN)


@sound(variants=6, loudness=-31.0, what="a stooping step on an iron plate", judgement="good")
def metal_crouch(take):
    return _step(take, METAL, CROUCH)


@sound(variants=6, loudness=-28.0, what="a walker's step in snow", judgement="good: grains break, then bind")
def snow_walk(take):
    return _step(take, SNOW, WALK)


@sound(variants=6, loudness=-24.0, what="a runner's step in snow", judgement="good")
def snow_run(take):
    return _step(take, SNOW, RUN)


@sound(variants=6, loudness=-35.0, what="a stooping step in snow", judgement="good")
def snow_crouch(take):
    return _step(take, SNOW, CROUCH)
