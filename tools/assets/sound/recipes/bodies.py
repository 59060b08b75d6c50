"""Bodies: things that fall, are pushed, roll and break, by what they are made of and how fast."""

from dataclasses import dataclass

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


@dataclass(frozen=True)
class Blow:
    """How hard the contact is, how often the thing jumps after it, and how much of it gives way."""

    hard: float
    bounces: int
    weight: float


SOFT = Blow(0.3, 0, 0.35)
MEDIUM = Blow(0.55, 1, 0.6)
HARD = Blow(0.82, 3, 1.0)


def _floor(take, blow):
    """What lies below the thing: it takes the weight."""
    boards = modal.body(take, "board", take.near(78.0, 0.15), count=18, tilt=0.7, damping=1.3)
    return shapes.unit(modal.struck(take, boards, 0.15 + 0.25 * blow.hard, 0, 0.25))


def _jumps(take, blow, make, gap=0.1):
    """The first blow and those after it, each lighter, softer and sooner; `make(hardness)` makes one."""
    x, at, gain, hard = [(0.0, shapes.unit(make(blow.hard)), 1.0)], 0.0, 1.0, blow.hard
    gap = take.near(gap * (0.6 + 0.6 * blow.hard), 0.25)
    for _ in range(blow.bounces + take.pick((0, 0, 1))):
        at, gain, hard, gap = at + gap, gain * take.between(0.3, 0.6), hard * 0.85, gap * take.between(0.5, 0.8)
        x.append((at, shapes.unit(make(hard)), gain))
    return shapes.lay(*x)


def _wood(take, blow):
    """A chest or a chair: boards, a joint that knocks, something loose inside when it falls hard."""
    side = modal.body(take, "board", take.near(150.0, 0.25), count=28, tilt=0.35)
    leg = modal.body(take, "wood", take.near(360.0, 0.3), count=16, tilt=0.35)

    def knock(hard):
        return shapes.lay((0.0, shapes.unit(modal.struck(take, side, hard)), 1.0),
                          (0.001, shapes.unit(modal.struck(take, leg, min(1.0, hard + 0.15))), 0.6))
    x = shapes.lay((0.0, _jumps(take, blow, knock), 1.0), (0.001, _floor(take, blow), blow.weight * 0.7))
    if blow.hard > 0.7:
        loose = grains.cloud(take, 0.25, 40.0, lambda k: _tick(k, "wood", 700.0), 0.5)
        x = shapes.lay(x, (0.03, shapes.unit(loose), 0.14))
    return x


def _tick(take, material, hz):
    """A small hard piece that touches down once."""
    piece = modal.body(take, material, take.near(hz, 0.4), count=8, tilt=0.3, damping=1.5)
    return shapes.unit(modal.struck(take, piece, take.between(0.6, 0.95), 0, min(0.2, piece.t60.max())))


def _metal(take, blow):
    """A bucket or a tool: a sheet that booms, a rim that rings, grit where it lands."""
    wall = modal.body(take, "sheet", take.near(210.0, 0.3), count=60, tilt=-0.15, damping=1.8)
    rim = modal.body(take, "iron", take.near(540.0, 0.3), count=16, tilt=-0.2, damping=2.2)

    def clang(hard):
        return shapes.lay((0.0, shapes.unit(modal.struck(take, wall, hard + 0.1, 0, 0.7, 0.5)), 1.0),
                          (0.0, shapes.unit(modal.struck(take, rim, min(1.0, hard + 0.15), 0, 0.8)), 0.45))
    return shapes.lay((0.0, _jumps(take, blow, clang, 0.085), 1.0), (0.001, _floor(take, blow), blow.weight * 0.6))


def _stone(take, blow):
    """A brick or a flag: it hardly rings; weight, a crack, and grains that spring off."""
    block = modal.body(take, "stone", take.near(430.0, 0.3), count=26, tilt=0.05, damping=0.8)

    def thud(hard):
        t = 0.1
        press = filters.bandpass(noise.brown(take.rng, t), 70.0, 260.0, 1) * shapes.decay(t, 0.09, 0.002)
        return shapes.lay((0.0, shapes.unit(modal.struck(take, block, min(1.0, hard + 0.2), 0, None, 0.8)), 1.0),
                          (0.0, shapes.unit(press), 0.4))
    t = 0.15 + 0.35 * blow.hard
    chips = grains.cloud(take, t, 160.0 * blow.hard * shapes.decay(t, t, 0.004), lambda k: grains.pebble(k, 2900.0))
    return shapes.lay((0.0, _jumps(take, blow, thud, 0.12), 1.0), (0.01, shapes.unit(chips), 0.1 + 0.14 * blow.hard),
                      (0.0, _floor(take, blow), blow.weight * 0.4))


def _glass(take, blow):
    """A bottle that holds: the wall rings in pairs, the hollow sounds once, it jumps on its rim."""
    wall = modal.body(take, "glass", take.near(1250.0, 0.3), count=18, tilt=-0.25, damping=1.4)
    foot = modal.body(take, "glass", take.near(880.0, 0.25), count=14, tilt=-0.35, damping=3.5)
    hollow = take.near(310.0, 0.3)

    def clink(hard):
        boom = filters.resonator(modal.blow(0.1, 0.4), hollow, 0.09)
        return shapes.lay((0.0, shapes.unit(modal.struck(take, wall, min(1.0, hard + 0.2), 0, 0.4, 0.5)), 1.0),
                          (0.0, shapes.unit(modal.struck(take, foot, min(1.0, hard + 0.2), 0, 0.2)), 0.7),
                          (0.0, shapes.unit(boom), 0.35))
    return shapes.lay((0.0, _jumps(take, blow, clink, 0.075), 1.0), (0.001, _floor(take, blow), blow.weight * 0.3))


def _crumple(take, seconds, strength):
    """Board that buckles: clicks of a stiff skin over a hollow."""
    clicks = noise.sparks(take.rng, seconds, 160.0 * strength, 0.6)
    return filters.formants(clicks, [(420.0, 160.0, 0.6), (1150.0, 400.0, 1.0), (2600.0, 900.0, 0.7)])


def _box(take, blow):
    """Cardboard: a slack drum with flaps."""
    drum = modal.body(take, "box", take.near(125.0, 0.25), count=20, tilt=0.6)

    def thump(hard):
        return filters.lowpass(modal.struck(take, drum, hard * 0.6, 0, None, 0.5), 1500.0 + 3500.0 * hard, 1)
    t = 0.14
    flap = grains.rustle(take, t, shapes.decay(t, 0.2, 0.006), 500.0, 4200.0, 320.0)
    dent = _crumple(take, 0.2, 2.0 * blow.hard * shapes.decay(0.2, 0.3, 0.004))
    return shapes.lay((0.0, _jumps(take, blow, thump, 0.09), 1.0), (0.004, shapes.unit(flap), 0.14 + 0.1 * blow.hard),
                      (0.003, shapes.unit(dent), 0.4 * blow.hard ** 2),
                      (0.0, _floor(take, blow), blow.weight * 0.35))


def _cloth(take, blow):
    """A sack or a fallen body: no edge at all, only weight and weave; what falls hard lands part by part."""
    x, at, gain = [], 0.0, 1.0
    for _ in range(1 + blow.bounces):
        t = take.near(0.2, 0.2)
        press = filters.lowpass(noise.brown(take.rng, t), 180.0 + 350.0 * blow.hard) * shapes.decay(t, 0.16, 0.012)
        weave = grains.rustle(take, t, shapes.decay(t, 0.24, 0.015), 450.0, 4000.0, 260.0)
        x += [(at, shapes.unit(press), 0.8 * gain), (at, shapes.unit(weave), 0.3 * gain),
              (at + 0.002, filters.lowpass(_floor(take, blow), 300.0), (0.3 + blow.weight) * gain)]
        at, gain = at + take.between(0.07, 0.15), gain * take.between(0.3, 0.6)
    return shapes.lay(*x)


def _landed(take, x, wet=0.2):
    return rooms.heard_in(take, x, rooms.SMALL, wet)


@sound(variants=3, loudness=-30.0, what="wood set down", judgement="good")
def impact_wood_soft(take):
    return _landed(take, _wood(take, SOFT), 0.12)


@sound(variants=3, loudness=-24.0, what="wood dropped", judgement="good")
def impact_wood_medium(take):
    return _landed(take, _wood(take, MEDIUM), 0.16)


@sound(variants=4, loudness=-18.0, what="wood that falls hard", judgement="good")
def impact_wood_hard(take):
    return _landed(take, _wood(take, HARD))


@sound(variants=3, loudness=-29.0, what="metal set down", judgement="good")
def impact_metal_soft(take):
    return _landed(take, _metal(take, SOFT), 0.12)


@sound(variants=3, loudness=-22.5, what="metal dropped", judgement="good")
def impact_metal_medium(take):
    return _landed(take, _metal(take, MEDIUM), 0.16)


@sound(variants=4, loudness=-16.5, what="metal that falls hard", judgement="good")
def impact_metal_hard(take):
    return _landed(take, _metal(take, HARD))


@sound(variants=3, loudness=-30.0, what="stone set down", judgement="good")
def impact_stone_soft(take):
    return _landed(take, _stone(take, SOFT), 0.12)


@sound(variants=3, loudness=-24.0, what="stone dropped", judgement="good")
def impact_stone_medium(take):
    return _landed(take, _stone(take, MEDIUM), 0.16)


@sound(variants=4, loudness=-19.0, what="stone that falls hard", judgement="good")
def impact_stone_hard(take):
    return _landed(take, _stone(take, HARD))


@sound(variants=3, loudness=-31.0, what="a bottle set down", judgement="good")
def impact_glass_soft(take):
    return _landed(take, _glass(take, SOFT), 0.12)


@sound(variants=3, loudness=-25.0, what="a bottle dropped", judgement="good")
def impact_glass_medium(take):
    return _landed(take, _glass(take, MEDIUM), 0.16)


@sound(variants=4, loudness=-20.5, what="a bottle that falls hard and holds", judgement="good")
def impact_glass_hard(take):
    return _landed(take, _glass(take, HARD))


@sound(variants=3, loudness=-34.0, what="a cardboard box set down", judgement="good")
def impact_box_soft(take):
    return _landed(take, _box(take, SOFT), 0.12)


@sound(variants=3, loudness=-28.0, what="a cardboard box dropped", judgement="good")
def impact_box_medium(take):
    return _landed(take, _box(take, MEDIUM), 0.16)


@sound(variants=3, loudness=-23.0, what="a cardboard box that falls hard",
       judgement="good")
def impact_box_hard(take):
    return _landed(take, _box(take, HARD))


@sound(variants=3, loudness=-37.0, what="cloth let fall", judgement="good")
def impact_cloth_soft(take):
    return _landed(take, _cloth(take, SOFT), 0.12)


@sound(variants=3, loudness=-31.0, what="a sack let fall", judgement="good")
def impact_cloth_medium(take):
    return _landed(take, _cloth(take, MEDIUM), 0.16)


@sound(variants=3, loudness=-24.0, what="something heavy in cloth that falls",
       judgement="good")
def impact_cloth_hard(take):
    return _landed(take, _cloth(take, HARD))


def _cask(take, hard, bounces):
    """An empty barrel: staves, the air inside, and hoops that are never quite tight."""
    staves = modal.body(take, "board", take.near(118.0, 0.1), count=30, tilt=0.35, damping=0.7)
    hoop = modal.body(take, "iron", take.near(480.0, 0.15), count=10, tilt=0.3, damping=10.0)

    def boom(force):
        air = filters.formants(modal.blow(0.4, 0.3), [(take.near(96.0, 0.05), 14.0, 1.0), (205.0, 30.0, 0.4)])
        return shapes.lay((0.0, shapes.unit(modal.struck(take, staves, force)), 1.0), (0.002, shapes.unit(air), 0.8),
                          (0.003, shapes.unit(modal.struck(take, hoop, 0.8, 1, 0.15, 0.6)), 0.14))
    return _jumps(take, Blow(hard, bounces, 1.0), boom, 0.16)


@sound(variants=3, loudness=-23.0, what="a barrel set down or pushed over", judgement="good")
def barrel_soft(take):
    return _landed(take, _cask(take, 0.35, 0))


@sound(variants=3, loudness=-17.0, what="a barrel that falls", judgement="good: the hollow booms, hoops rattle")
def barrel_hard(take):
    return _landed(take, _cask(take, 0.65, 2), 0.25)


def _bolt(take, ground):
    """An iron bolt as long as a finger, thrown: it lands, jumps, and spins on its head until it lies."""
    iron = modal.body(take, "iron", take.near(1750.0, 0.12), count=16, tilt=-0.3, damping=4.0)

    def land(hard):
        return shapes.lay((0.0, shapes.unit(modal.struck(take, iron, min(1.0, hard + 0.3), 0, 0.25, 0.5)), 1.0),
                          (0.0, shapes.unit(ground(hard)), 0.8))
    x, at, gain = [], 0.0, 1.0
    gap = take.between(0.13, 0.24)
    for _ in range(take.pick((4, 5, 6))):
        x.append((at, land(0.4 + 0.4 * gain), gain))
        at, gain, gap = at + gap, gain * take.between(0.4, 0.65), gap * take.between(0.5, 0.75)
    spin = shapes.smooth_curve(0.45, [(0.0, 0.0), (0.08, 0.25), (0.45, 0.0)])
    roll = modal.ring(friction.rubbed(take, spin, 700.0, 140.0), iron, 0.1)
    return _landed(take, shapes.lay(*x, (at * 0.8, shapes.unit(roll), 0.06)), 0.18)


@sound(variants=4, loudness=-25.0, what="an iron bolt thrown on boards", judgement="good")
def bolt_wood(take):
    board = modal.body(take, "board", take.near(190.0, 0.2), count=18, tilt=0.5)
    return _bolt(take, lambda hard: modal.struck(take, board, hard, 0, 0.12))


@sound(variants=4, loudness=-24.0, what="an iron bolt thrown on stone", judgement="good")
def bolt_stone(take):
    flag = modal.body(take, "stone", take.near(900.0, 0.2), count=10, tilt=0.3)
    return _bolt(take, lambda hard: modal.struck(take, flag, min(1.0, hard + 0.2), 0, 0.05, 0.8))


def _dragged(take, seconds, speed, grain, bumps, layers, bright):
    """A body drawn over a floor: `layers` are (body, gain); `bright` is the share of naked hiss above 2 kHz."""
    path = noise.wander(take.rng, seconds, 2.5, speed * 0.75, speed * 1.25)
    force = friction.rubbed(take, path, grain, bumps)
    x = [(0.0, shapes.level(shapes.cut(modal.ring(force, body, 0.1), seconds)), gain) for body, gain in layers]
    x.append((0.0, shapes.level(filters.highpass(force, 2000.0, 1)), bright))
    return loops.seamless(shapes.lay(*x), 0.5)


@sound(loop=True, loudness=-26.0, what="a wooden chest pushed over boards", judgement="good: slides and stutters")
def scrape_wood(take):
    """The legs stutter on the boards as much as they slide."""
    seconds = 4.5
    chest = modal.body(take, "board", 135.0, count=30, tilt=0.3)
    leg = modal.body(take, "wood", 340.0, count=18, tilt=0.3)
    slide = _dragged(take, seconds, 0.45, 900.0, 45.0, [(chest, 1.0), (leg, 0.5)], 0.14)
    rate = noise.wander(take.rng, seconds, 3.0, 20.0, 75.0)
    stutter = shapes.cut(modal.ring(friction.slips(take, rate, 0.5, 0.5), chest, 0.1), seconds)
    stutter = stutter * noise.wander(take.rng, seconds, 4.0, -0.6, 1.0).clip(0.0)
    return shapes.lay((0.0, shapes.level(slide), 1.0), (0.0, shapes.level(loops.seamless(stutter, 0.5)), 0.55))


@sound(loop=True, loudness=-24.0, what="an iron thing dragged over stone",
       judgement="good: hiss with a cry now and then")
def scrape_metal(take):
    sheet = modal.body(take, "sheet", 260.0, count=40, tilt=0.1, damping=3.5)
    rim = modal.body(take, "iron", 640.0, count=16, tilt=0.0, damping=5.0)
    seconds = 4.5
    slide = _dragged(take, seconds, 0.5, 1300.0, 60.0, [(sheet, 1.0), (rim, 0.3)], 0.3)
    cry = friction.slips(take, noise.wander(take.rng, seconds, 4.0, 310.0, 760.0), 0.12, 0.2)
    cry = shapes.cut(modal.ring(cry, rim, 0.1), seconds) * noise.wander(take.rng, seconds, 2.5, -1.0, 1.0).clip(0.0)
    return shapes.lay((0.0, shapes.level(slide), 1.0), (0.0, shapes.level(loops.seamless(cry, 0.5)), 0.4))


@sound(loop=True, loudness=-25.0, what="a stone slab pushed over stone", judgement="good")
def scrape_stone(take):
    seconds = 5.0
    slab = modal.body(take, "stone", 210.0, count=24, tilt=0.4, damping=0.6)
    grit = shapes.cut(grains.cloud(take, seconds, 240.0, lambda k: grains.pebble(k, 2600.0)), seconds)
    low = filters.bandpass(noise.brown(take.rng, seconds), 45.0, 160.0) * noise.wander(take.rng, seconds, 5.0, 0.4, 1.0)
    slide = _dragged(take, seconds, 0.35, 520.0, 70.0, [(slab, 1.0)], 0.3)
    return shapes.lay((0.0, shapes.level(slide), 1.0), (0.0, shapes.level(loops.seamless(grit, 0.5)), 0.3),
                      (0.0, shapes.level(loops.seamless(low, 0.5)), 0.6))


@sound(loop=True, loudness=-31.0, what="a bottle dragged over a table", judgement="good")
def scrape_glass(take):
    wall = modal.body(take, "glass", 1350.0, count=16, tilt=-0.5, damping=2.5)
    table = modal.body(take, "wood", 280.0, count=16, tilt=0.5)
    return _dragged(take, 4.0, 0.3, 1700.0, 50.0, [(wall, 1.0), (table, 0.4)], 0.45)


@sound(loop=True, loudness=-31.0, what="a cardboard box pushed over boards", judgement="good: slides and buckles")
def scrape_box(take):
    drum = modal.body(take, "box", 150.0, count=24, tilt=0.3)
    slide = _dragged(take, 4.0, 0.4, 1100.0, 30.0, [(drum, 1.0)], 0.4)
    buckles = shapes.cut(_crumple(take, 4.0, noise.wander(take.rng, 4.0, 3.0)), 4.0)
    return shapes.lay((0.0, shapes.level(slide), 1.0), (0.0, shapes.level(loops.seamless(buckles, 0.5)), 0.3))


@sound(loop=True, loudness=-35.0, what="a sack dragged over a floor", judgement="good")
def scrape_cloth(take):
    t = 4.0
    strength = noise.wander(take.rng, t, 3.0, 0.35, 0.8)
    low = filters.lowpass(noise.brown(take.rng, t), 300.0) * strength
    weave = shapes.cut(grains.rustle(take, t, strength, 400.0, 3800.0, 300.0), t)
    return loops.seamless(shapes.lay((0.0, shapes.level(weave), 1.0), (0.0, shapes.level(low), 0.5)), 0.5)


def _rolling(take, turns, per_second, lumps, hard, body, hollow=()):
    """A round thing that rolls at an even pace: each turn brings the same lumps round, the floor brings others. Wraps.

    `lumps` places a turn stand out, and meet the floor as `hard` as a blow; `hollow` are formants of what is inside.
    """
    turn = 1.0 / per_second
    seconds = turn * (turns + 1)
    angle = shapes.times(seconds) / turn + 0.02 * noise.wander(take.rng, seconds, 3.0)
    wear = take.rng.uniform(0.2, 1.0, lumps)
    step = numpy.floor(angle * lumps).astype(int)
    at = numpy.flatnonzero(numpy.diff(step, prepend=step[0]))
    own = numpy.zeros(len(angle))
    own[at] = wear[step[at] % lumps] * take.rng.uniform(0.7, 1.3, len(at))
    floor = noise.sparks(take.rng, seconds, 90.0, 1.0) * 0.4
    swell = 0.65 + 0.5 * numpy.sin(2 * numpy.pi * angle) + 0.2 * numpy.sin(4 * numpy.pi * angle + 1.0)
    grain = filters.lowpass(noise.pink(take.rng, seconds), 700.0 * 12.0 ** hard, 1) * swell.clip(0.05)
    force = numpy.convolve((own + floor) * (0.4 + 0.6 * swell), modal.blow(0.006, hard))[:len(own)]
    x = shapes.level(shapes.cut(modal.ring(force, body, 0.1), seconds))
    x = shapes.lay((0.0, x, 1.0), (0.0, shapes.level(shapes.cut(modal.ring(grain * 0.1, body, 0.1), seconds)), 0.7),
                   (0.0, shapes.level(grain), 0.1 + 0.1 * hard))
    if hollow:
        x = shapes.lay((0.0, x, 0.8), (0.0, shapes.level(filters.formants(force + 0.02 * grain, hollow)), 0.8))
    return loops.seamless(x, turn)


@sound(loop=True, loudness=-28.0, what="a wooden ball that rolls over boards", judgement="good: each turn is heard")
def roll_ball(take):
    return _rolling(take, 9, 2.2, 5, 0.6, modal.body(take, "board", 170.0, count=26, tilt=0.5))


@sound(loop=True, loudness=-22.0, what="an empty barrel that rolls over stone", judgement="good")
def roll_barrel(take):
    staves = modal.body(take, "board", 112.0, count=30, tilt=0.3, damping=0.8)
    return _rolling(take, 6, 1.1, 16, 0.55, staves, [(94.0, 16.0, 1.0), (190.0, 30.0, 0.5), (330.0, 50.0, 0.25)])


@sound(loop=True, loudness=-25.0, what="an iron pipe that rolls over stone", judgement="good")
def roll_metal(take):
    pipe = modal.body(take, "iron", 380.0, count=24, tilt=-0.1, damping=5.0)
    return _rolling(take, 10, 2.6, 7, 0.85, pipe, [(260.0, 30.0, 0.5), (530.0, 40.0, 0.3)])


@sound(loop=True, loudness=-30.0, what="a bottle that rolls over boards",
       judgement="good")
def roll_glass(take):
    wall = modal.body(take, "glass", 1180.0, count=12, tilt=0.2, damping=2.4)
    return _rolling(take, 9, 2.3, 4, 0.65, wall, [(300.0, 30.0, 1.0), (210.0, 60.0, 0.6)])


def _shards(take, material, seconds, density, hz):
    """Pieces that fly, land, and land again; the later the fewer and the smaller."""
    fall = shapes.smooth_curve(seconds, [(0.0, 0.35), (0.12, 1.0), (seconds, 0.0)]) ** 2
    small = grains.cloud(take, seconds, density * fall, lambda k: _tick(k, material, hz * 1.8), 0.7)
    large = grains.cloud(take, seconds * 0.7, density * 0.16 * fall[:shapes.samples(seconds * 0.7)],
                         lambda k: _tick(k, material, hz * 0.8), 0.5)
    return shapes.lay((0.0, shapes.unit(small), 0.8), (0.05, shapes.unit(large), 0.9))


@sound(variants=4, loudness=-18.0, what="glass that breaks on a floor", judgement="good: crack, shards, second landing")
def break_glass(take):
    """The wall gives in one crack that is all edges, then shards."""
    wall = modal.body(take, "glass", take.near(1500.0, 0.2), count=22, tilt=-0.3, damping=1.3)
    crack = noise.sparks(take.rng, 0.05, 4000.0 * shapes.decay(0.05, 0.06), 0.6)
    burst = filters.highpass(modal.ring(crack, wall, 0.3), 900.0)
    shards = _shards(take, "glass", take.between(0.9, 1.3), 260.0, 2600.0)
    x = shapes.lay((0.0, shapes.unit(burst), 1.0), (0.0, shapes.unit(modal.contact(take, 1.0)), 0.5),
                   (0.0, _floor(take, MEDIUM), 0.3), (0.02, shards, 0.6))
    return _landed(take, x)


@sound(variants=3, loudness=-19.0, what="an earthen pot that breaks", judgement="good")
def break_pot(take):
    wall = modal.body(take, "pot", take.near(680.0, 0.2), count=18, tilt=0.1, damping=1.3)
    crack = noise.sparks(take.rng, 0.04, 2500.0 * shapes.decay(0.04, 0.05), 0.6)
    shards = _shards(take, "pot", take.between(0.7, 1.0), 130.0, 1300.0)
    x = shapes.lay((0.0, shapes.unit(modal.ring(crack, wall, 0.2)), 1.0),
                   (0.0, shapes.unit(modal.contact(take, 0.8)), 0.5), (0.0, _floor(take, MEDIUM), 0.6),
                   (0.02, shards, 0.6))
    return _landed(take, x)


@sound(variants=4, loudness=-17.5, what="wood that splits and falls apart",
       judgement="good: fibres tear before it gives")
def break_wood(take):
    """Fibres tear one after another, then all at once; boards land, splinters last."""
    board = modal.body(take, "wood", take.near(260.0, 0.2), count=30, tilt=0.1)
    t = take.between(0.16, 0.3)
    tearing = shapes.curve(t, [(0.0, 40.0), (t * 0.7, 260.0), (t, 1500.0)])
    fibres = noise.sparks(take.rng, t, tearing, 0.9) * shapes.curve(t, [(0.0, 0.3), (t, 1.0)])
    snaps = modal.ring(shapes.lay(fibres, (t, modal.contact(take, 0.9), 4.0), (t, modal.blow(0.01, 0.7), 1.5)), board)
    splinters = grains.cloud(take, 0.7, 110.0 * shapes.decay(0.7, 1.0, 0.05), lambda k: _tick(k, "wood", 1100.0), 0.7)
    x = shapes.lay((0.0, shapes.unit(snaps), 1.0), (t, shapes.unit(modal.contact(take, 0.9)), 0.45),
                   (t + take.between(0.08, 0.14), shapes.unit(_wood(take, MEDIUM)), 0.6),
                   (t + take.between(0.22, 0.34), shapes.unit(_wood(take, MEDIUM)), 0.4),
                   (t, shapes.unit(splinters), 0.25))
    return _landed(take, x)
