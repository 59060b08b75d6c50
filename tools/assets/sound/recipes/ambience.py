"""Ambience: the places of the night when nothing happens in them."""

import numpy

import air
import filters
import friction
import grains
import modal
import mouth
import noise
import rooms
import shapes
import water
from bed import Bed
from recipes import creatures, house, machines, weather
from take import sound


def _outside(dull, calm=0.25, rate=0.2):
    """Wind, heard through walls that pass what is below `dull` Hz."""
    def make(take, seconds):
        return filters.lowpass(air.wind(take, air.gusts(take, seconds, calm, rate)), dull, 2)
    return make


def _hum(*tones):
    """A hum of (Hz, gain) that beats and sags a little."""
    def make(take, seconds):
        t = shapes.times(seconds)
        out = 0.02 * noise.pink(take.rng, seconds)
        for hz, gain in tones:
            sag = noise.wander_loop(take.rng, seconds, 0.4, 0.4, 1.0)
            out = out + gain * sag * numpy.sin(2 * numpy.pi * hz * t + take.between(0, 6))
        return out
    return make


def _steam(take, seconds):
    return noise.band(take.rng, seconds, 2500.0, 9000.0) * noise.wander_loop(take.rng, seconds, 0.3) ** 4


def _flakes(take, seconds):
    """Snow that ticks on snow."""
    ticks = grains.cloud(take, seconds, 60.0, lambda t: grains.crumb(t, 5200.0), 0.9)
    return shapes.cut(ticks, seconds) + 1e-3 * noise.white(take.rng, seconds)


def _twig(take):
    """A thin branch against another."""
    return shapes.unit(modal.struck(take, modal.body(take, "wood", take.near(700.0, 0.4), 12, damping=1.5), 0.7))


def _twigs(take, seconds):
    stirred = 3.0 * noise.wander_loop(take.rng, seconds, 0.25) ** 3
    knocks = grains.cloud(take, seconds, stirred, _twig, 0.8)
    return shapes.cut(knocks, seconds) + 1e-4 * noise.white(take.rng, seconds)


def _pew(take):
    """A bench ticks, or somebody on it shifts."""
    x = modal.struck(take, modal.body(take, "board", take.near(230.0, 0.3), 24, 0.4), take.between(0.6, 0.95))
    if take.chance(0.5):
        rate = shapes.smooth_curve(0.4, ((0, 60), (0.2, take.between(90, 180)), (0.4, 50)))
        load = shapes.curve(0.4, ((0, 0), (0.2, 1), (0.4, 0)))
        creak = modal.ring(friction.slips(take, rate, 0.1) * load, modal.body(take, "board", 260.0, 20), 0.1)
        x = shapes.lay(shapes.unit(x), (0.1, shapes.unit(creak), 0.5))
    return x


def _gate(take):
    """An iron gate swings a hand's breadth on dry hinges and comes back."""
    seconds = 2.6
    swing = numpy.abs(numpy.sin(numpy.pi * shapes.times(seconds) / 1.3))
    swing = swing * shapes.curve(seconds, ((0, 1), (seconds, 0.4)))
    unrest = noise.wander(take.rng, seconds, 6.0, 0.93, 1.07)[: len(swing)]
    pitch = take.near(420.0, 0.2) * (0.7 + 0.5 * swing) * unrest
    hinge = modal.body(take, "metal", 410.0, 14, damping=3.0)
    return modal.ring(friction.slips(take, pitch * (swing > 0.05), 0.03, 0.5) * swing, hinge, 0.3)


def _iron(lowest, hardness, bounces=0):
    """A small iron thing that ticks or touches another, about as high as `lowest` Hz."""
    return lambda take: modal.struck(take, modal.body(take, "metal", take.near(lowest, 0.4), 10, damping=4.0), hardness,
                                     bounces)


def _moan(hz, sharpness):
    """A draught that finds a note, over a breath of air that never ends."""
    def make(take, seconds):
        strength = air.gusts(take, seconds, 0.3, 0.22)
        return air.whistle(take, strength, hz, sharpness) + 1e-3 * noise.pink(take.rng, seconds)
    return make


def _blown(peaks):
    """A hollow that wind makes sound: a flue, a shaft; `peaks` as `filters.formants` takes them."""
    def make(take, seconds):
        return filters.formants(noise.pink(take.rng, seconds) * air.gusts(take, seconds, 0.2), peaks)
    return make


def _flowing(low, high, fullness, dull):
    """Water that runs out of sight."""
    def make(take, seconds):
        return filters.lowpass(water.running(take, seconds, low, high, fullness), dull)
    return make


def _scurry(take):
    """A rat or two for a second and a half."""
    return creatures.rats_run(take)[: shapes.samples(1.6)] * shapes.curve(1.6, ((0, 0), (0.2, 1), (1.3, 1), (1.6, 0)))


def _turned(loop, seconds):
    """A loop of the catalogue, run round for so long."""
    return numpy.tile(loop, int(seconds * shapes.RATE / len(loop)) + 1)[: shapes.samples(seconds)]


def _organ(take, seconds):
    """Two pipes whose wind leaks: tones of mere air."""
    out = shapes.silence(seconds)
    for hz in (130.6, 196.4):
        pipe = ((hz, 1.6, 1.0), (hz * 2, 3.0, 0.4), (hz * 3, 5.0, 0.2))
        out += filters.formants(noise.white(take.rng, seconds), pipe) * noise.wander_loop(take.rng, seconds, 0.25) ** 2
    return out


CLOSED_MOUTH = ((480.0, 90.0, 1.0), (820.0, 120.0, 0.5), (2500.0, 300.0, 0.1))


def _choir(take, seconds):
    """Three closed mouths, so far below hearing that one is not sure."""
    out = shapes.silence(seconds)
    for hz in (98.0, 146.6, 195.0):
        pitch = hz * noise.wander(take.rng, seconds, 3.0, 0.99, 1.01)[: len(out)]
        swell = noise.wander_loop(take.rng, seconds, 0.2) ** 3
        out += filters.formants(mouth.throat(take, pitch, 0.15), CLOSED_MOUTH) * swell
    return out


@sound(loop=True, stereo=True, quality=3, loudness=-38,
       what="the guest floor: a corridor of closed doors, wind beyond them, a clock below",
       judgement="good: nearly nothing, with depth; a board overhead and a far thud once a minute")
def guest_floor(take):
    bed = Bed(take, 48.0, rooms.HALL)
    bed.air(1.0, 30.0, 260.0)
    bed.air(0.012, 400.0, 4000.0, 2.0)
    bed.ears(0.5, _outside(420.0))
    bed.happens(0.0, lambda t: numpy.tile(house.clock_tick(t), 3), 0.22, -0.5, dull=900.0)
    bed.happens(7.3, house.floorboard, 0.5, 0.6, 2, dull=700.0)
    bed.happens(19.8, house.settle, 0.8, -0.3, 3, dull=1800.0)
    bed.happens(31.0, house.thud, 0.9, 0.2, 2, dull=300.0)
    bed.happens(41.5, house.plaster, 0.16, 0.8, 2, dull=3500.0)
    bed.happens(45.2, house.pipe_knock, 0.5, -0.8, 2, dull=500.0)
    return bed.made()


@sound(loop=True, stereo=True, quality=3, loudness=-37, what="the stairs: a tall well of air that draws upward",
       judgement="good: the draught's low tone wanders; the clock is nearer than on the guest floor")
def stairs(take):
    bed = Bed(take, 48.0, rooms.HALL)
    bed.air(1.0, 30.0, 300.0, 5.0, 0.4)
    bed.ears(0.4, _outside(700.0, 0.3, 0.25))
    bed.lasting(0.22, 0.1, _moan(176.0, 22.0), 0.8)
    bed.happens(0.0, lambda t: numpy.tile(house.clock_tick(t), 3), 0.5, -0.3, dull=2200.0)
    bed.happens(9.1, house.floorboard, 0.7, 0.4, 1, dull=1800.0)
    bed.happens(23.0, house.settle, 0.8, -0.5, 2, dull=2500.0)
    bed.happens(28.4, house.curtain, 0.2, 0.7, 3, dull=2500.0)
    bed.happens(38.7, house.thud, 0.7, 0.0, 1, dull=350.0)
    bed.happens(44.0, weather.gust, 0.3, 0.0, 3, dull=500.0)
    return bed.made()


@sound(loop=True, stereo=True, quality=3, loudness=-36,
       what="the kitchen: stone floor, a tap that drips into the sink, the range as it cools",
       judgement="good: the drip has no rhythm to count; the flue moans above it")
def kitchen(take):
    bed = Bed(take, 48.0, rooms.SMALL)
    bed.air(1.0, 35.0, 300.0)
    bed.lasting(0.3, -0.6, _blown(((95.0, 22.0, 1.0), (191.0, 30.0, 0.6), (287.0, 40.0, 0.3))), 0.5)
    bed.lasting(0.1, 0.7, _flowing(300.0, 1500.0, 0.3, 700.0), 0.6)
    at = 1.0
    for i in range(17):
        bed.happens(at, house.drip, take.between(0.3, 0.55), 0.35, (1, 2, 4)[i % 3], dull=5000.0, far=0.4)
        at += take.between(1.9, 3.6)
    for at in (4.4, 5.0, 13.3, 21.9, 22.4, 36.2, 40.8):
        bed.happens(at, _iron(780.0, 0.85), take.between(0.2, 0.5), -0.5, far=0.5)
    bed.happens(17.0, house.pipe_knock, 0.5, 0.8, 1, dull=900.0)
    bed.happens(33.0, house.settle, 0.4, 0.0, 1, dull=1500.0)
    return bed.made()


@sound(loop=True, stereo=True, quality=6, loudness=-36,
       what="the cellar: wet stone, pressure in the ears, drops that echo",
       judgement="good: deep and close; one scurry behind the wall, a groan in the pipes")
def cellar(take):
    bed = Bed(take, 54.0, rooms.CELLAR)
    bed.air(1.0, 24.0, 120.0, 5.0, 0.3)
    bed.air(0.12, 150.0, 1400.0, 4.0)
    bed.ears(0.25, _hum((49.0, 1.0), (73.6, 0.5), (98.3, 0.25)))
    at = 0.6
    for i in range(13):
        bed.happens(at, house.drip, take.between(0.15, 0.6), take.between(-0.9, 0.9), 1 + i % 6,
                    dull=take.between(1500.0, 6000.0))
        at += take.between(1.6, 6.6)
    bed.happens(14.2, house.pipe_groan, 0.18, -0.7, 2, dull=600.0)
    bed.happens(29.0, _scurry, 0.1, 0.8, dull=2500.0)
    bed.happens(43.5, house.pipe_knock, 0.25, 0.4, 3, dull=700.0)
    bed.happens(50.0, house.thud, 0.8, 0.0, 1, dull=200.0)
    return bed.made()


@sound(loop=True, stereo=True, quality=3, loudness=-33, what="the boiler room with the fire low",
       judgement="good: warmth by its low end; ticking iron keeps it from being a drone")
def boiler_room(take):
    bed = Bed(take, 44.0, rooms.CELLAR)
    bed.air(1.0, 28.0, 240.0, 5.0, 0.35)
    bed.lasting(0.7, 0.3, lambda t, s: _turned(machines.boiler_low(t), s), 0.5)
    bed.lasting(0.14, -0.6, _flowing(200.0, 1200.0, 0.5, 900.0), 0.7)
    bed.lasting(0.05, 0.5, _steam, 0.3)
    for at, variant in ((5.5, 1), (16.8, 2), (27.1, 4), (38.0, 3)):
        bed.happens(at, house.pipe_knock, take.between(0.12, 0.25), take.between(-0.9, 0.9), variant, dull=1600.0)
    bed.happens(21.0, house.pipe_groan, 0.2, -0.5, 1, dull=1100.0)
    return bed.made()


@sound(loop=True, stereo=True, quality=5, loudness=-35,
       what="the well: a shaft that hums when the wind crosses it, and water a long way down",
       judgement="good: the shaft's tone swells and fails; drops come up with their echo")
def well(take):
    bed = Bed(take, 52.0, rooms.CHAPEL)
    shaft = ((41.0, 5.0, 1.0), (82.5, 7.0, 0.8), (124.0, 9.0, 0.5), (166.0, 12.0, 0.3), (250.0, 18.0, 0.12))
    bed.ears(0.8, _blown(shaft))
    bed.air(0.5, 25.0, 160.0, 5.0)
    bed.ears(0.12, _flowing(180.0, 900.0, 0.25, 600.0))
    at = 1.2
    for i in range(11):
        bed.happens(at, house.drip, take.between(0.2, 0.7), take.between(-0.4, 0.4), 1 + i % 6, dull=2600.0, far=0.9)
        at += take.between(2.2, 6.8)
    bed.happens(24.0, house.pipe_groan, 0.12, 0.0, 2, dull=250.0, far=0.95)
    return bed.made()


@sound(loop=True, stereo=True, quality=5, loudness=-36,
       what="the workshop: a dynamo next door, wind under the door, tools that touch",
       judgement="good: dry and wooden; the hum sags with the current")
def workshop(take):
    bed = Bed(take, 46.0, rooms.SMALL)
    bed.air(0.8, 35.0, 300.0)
    bed.lasting(0.3, -0.7, lambda t, s: filters.lowpass(_turned(machines.dynamo(t), s), 260.0, 2), 0.6)
    bed.lasting(0.3, 0.6, lambda t, s: filters.bell(_outside(1500.0, 0.2, 0.3)(t, s), 700.0, 1.5, 5.0), 0.3)
    bed.ears(0.08, _hum((100.0, 1.0), (200.0, 0.4), (300.0, 0.3)))
    for at in (3.0, 11.7, 12.1, 24.9, 37.3, 37.5):
        bed.happens(at, _iron(1500.0, 0.5, 1), take.between(0.06, 0.2), take.between(-0.8, 0.8), far=0.4)
    bed.happens(8.2, house.settle, 0.5, -0.2, 5, dull=3000.0)
    bed.happens(19.0, house.plaster, 0.15, 0.5, 1, dull=4000.0)
    bed.happens(30.5, house.floorboard, 0.5, 0.2, 4, dull=1500.0)
    return bed.made()


@sound(loop=True, stereo=True, quality=3, loudness=-37, what="the garden under snow: everything is near or very far",
       judgement="good: no echo, dull ground, bare twigs; a load of snow comes down once")
def garden(take):
    bed = Bed(take, 56.0, rooms.OUTDOORS)
    bed.ears(1.0, _outside(900.0, 0.15, 0.16))
    bed.air(0.3, 30.0, 130.0, 5.0)
    bed.ears(0.035, _flakes)
    bed.lasting(0.1, 0.4, _twigs, 0.2)
    bed.happens(17.5, weather.snow_slide, 0.5, -0.6, 1, dull=1500.0, far=0.4)
    bed.happens(33.0, house.settle, 0.25, 0.7, 2, dull=1500.0)
    bed.happens(42.0, creatures.crow, 0.08, 0.5, 1, dull=1400.0)
    bed.happens(49.0, weather.gust, 0.25, -0.3, 1, dull=900.0)
    return bed.made()


@sound(loop=True, stereo=True, quality=3, loudness=-35,
       what="the churchyard: wind over stones, a gate on its hinges, crows that do not sleep",
       judgement="good: open and hollow; the gate answers the gusts only by chance")
def churchyard(take):
    bed = Bed(take, 54.0, rooms.OUTDOORS)
    bed.ears(1.0, _outside(1600.0, 0.2, 0.22))
    bed.lasting(0.2, -0.4, _moan(262.0, 16.0), 0.5)
    bed.ears(0.14, lambda t, s: noise.band(t.rng, s, 1800.0, 7000.0, 1) * air.gusts(t, s, 0.05, 0.25) ** 2)
    bed.happens(6.0, _gate, 0.2, 0.7, dull=2600.0, far=0.5)
    bed.happens(34.0, _gate, 0.15, 0.7, dull=2600.0, far=0.5)
    for at, variant, place in ((13.0, 1, -0.6), (14.4, 2, -0.4), (28.0, 3, 0.3), (47.0, 1, 0.8)):
        bed.happens(at, creatures.crow, take.between(0.06, 0.16), place, variant, dull=2000.0)
    bed.happens(20.0, creatures.wings, 0.2, -0.5, 1, dull=2500.0, far=0.4)
    bed.happens(42.0, machines.bell, 0.06, 0.1, 3, dull=900.0, far=0.95)
    return bed.made()


@sound(loop=True, stereo=True, quality=6, loudness=-36,
       what="the chapel: a room that holds its breath, and benches that are not empty",
       judgement="good: long tail, wind in the roof, a pipe of the organ that leaks; the small sounds of wood add up")
def chapel(take):
    bed = Bed(take, 56.0, rooms.CHAPEL)
    bed.air(1.0, 28.0, 220.0, 6.0, 0.3)
    bed.ears(0.35, _outside(800.0, 0.2, 0.18))
    bed.ears(0.1, _organ)
    bed.ears(0.05, _choir)
    for i in range(26):
        bed.happens(take.between(0.0, 56.0), _pew,
                    take.between(0.08, 0.4) ** 1.3, take.between(-0.95, 0.95), dull=take.between(1500.0, 5000.0),
                    far=0.75)
    bed.happens(15.0, house.settle, 0.5, 0.3, 3, dull=2500.0, far=0.9)
    bed.happens(40.0, creatures.mannequin_creak, 0.25, -0.6, 2, dull=3500.0, far=0.9)
    return bed.made()
