"""Weather: a winter night around a house, seen from inside and out."""

import numpy

import air
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


def _both_ears(take, make):
    """Two takes of one weather, near enough to be one place."""
    left, right, middle = make(take), make(take), make(take)
    return numpy.stack([middle + 0.6 * left, middle + 0.6 * right], axis=1)


@sound(loop=True, stereo=True, quality=3, loudness=-33, what="wind around the house, from outside",
       judgement="good: gusts come and go on both sides, never the same twice in its half minute")
def wind(take):
    seconds = 36.0
    strength = air.gusts(take, seconds)
    rush = _both_ears(take, lambda t: air.wind(t, strength))
    leaves = noise.wander_loop(take.rng, seconds, 6.0, 0.5, 1.0)
    trees = noise.band(take.rng, seconds, 900.0, 5000.0, 1) * strength ** 3 * leaves
    side = noise.wander_loop(take.rng, seconds, 0.2, -0.6, 0.6)
    x = shapes.lay(shapes.level(rush), (0.0, shapes.panned(trees, side), 0.12))
    return loops.begun_quietly(loops.seamless(x, 4.0))


@sound(variants=3, stereo=True, quality=3, loudness=-27, what="a gust takes hold of the house",
       judgement="good: a push, what it shakes, and the letting go")
def gust(take):
    seconds = (4.5, 6.0, 3.4)[take.variant - 1]
    push = shapes.smooth_curve(
        seconds, ((0, 0.08), (seconds * 0.35, 0.9), (seconds * 0.5, 0.7), (seconds * 0.6, 1.0), (seconds, 0.02)))
    push = push * noise.wander(take.rng, seconds, 4.0, 0.8, 1.0)[: len(push)]
    rush = _both_ears(take, lambda t: air.wind(t, push, 80.0, 1300.0)) * push[:, None] ** 0.5
    frame = modal.body(take, "board", 120.0, 14)
    shake = grains.cloud(take, seconds, 14.0 * push**3, lambda t: modal.struck(t, frame, 0.3), 0.5)[: len(push)]
    howl = air.whistle(take, push, take.near(330.0), 14.0)
    x = shapes.lay(shapes.level(rush), (0.0, shapes.panned(shapes.unit(shake), 0.2), 0.5),
                   (0.0, shapes.panned(howl, -0.3), 0.1))
    return shapes.faded(x, 0.08, 0.6)


@sound(loop=True, loudness=-35, what="wind at a window that does not quite close",
       judgement="good: the whistle starts with the gust and breaks into its octave; the sash ticks in its frame")
def wind_window(take):
    seconds = 28.0
    strength = air.gusts(take, seconds, 0.2, 0.3)
    rush = filters.lowpass(air.wind(take, strength, 70.0, 600.0), 1400.0, 1)
    thin = air.whistle(take, strength, 640.0, 32.0) + 0.5 * air.whistle(take, strength**1.5, 915.0, 40.0)
    sash = modal.body(take, "board", 210.0, 14, damping=1.6)
    pane = modal.body(take, "glass", 540.0, 10, damping=3.0)
    ticks = grains.cloud(take, seconds, 7.0 * strength ** 4, lambda t: modal.struck(t, sash, 0.55), 0.6)
    ticks = ticks[: len(strength)]
    buzz = grains.cloud(take, seconds, 12.0 * strength**5, lambda t: modal.struck(t, pane, 0.6), 0.5)[: len(strength)]
    x = shapes.level(rush) + 0.7 * thin + 0.9 * shapes.unit(ticks) + 0.25 * shapes.unit(buzz)
    return loops.seamless(rooms.heard_in(take, x, rooms.SMALL, 0.15)[: len(x)], 3.0)


@sound(loop=True, loudness=-34, what="rain on a window pane",
       judgement="good: single drops on glass before the mass of the rain, and runnels; the pane colours both")
def rain_window(take):
    seconds = 26.0
    shower = noise.wander_loop(take.rng, seconds, 0.35, 0.35, 1.0)
    pane = modal.body(take, "glass", 410.0, 14, 0.5, damping=6.0)

    def tap(t):
        tick = noise.band(t.rng, 0.006, 1800.0, 8000.0) * shapes.decay(0.006, 0.005, 0.0003)
        return shapes.lay(shapes.unit(modal.struck(t, pane, t.between(0.6, 0.95))), (0.0, shapes.unit(tick), 0.35))

    drops = grains.cloud(take, seconds, 38.0 * shower**1.5, tap, 0.9)
    fine = shapes.cut(grains.cloud(take, seconds, 420.0 * shower, lambda t: grains.crumb(t, 4200.0), 0.7), seconds)
    mass = filters.high_shelf(noise.pink(take.rng, seconds), 5000.0, -8.0) * shower
    runnels = water.bubbling(take, seconds, 14.0 * shower, 900.0, 3200.0, 0.1)
    x = 0.5 * shapes.level(shapes.cut(drops, seconds)) + 0.25 * shapes.level(fine)
    x = x + 0.22 * filters.highpass(mass, 250.0) + 0.08 * shapes.level(runnels)
    gutter = water.running(take, seconds, 300.0, 1200.0, 0.3)
    x = x + 0.06 * shapes.level(gutter)
    return loops.seamless(rooms.heard_in(take, x, rooms.SMALL, 0.15)[: len(x)], 2.0)


@sound(variants=2, loudness=-27, what="snow slides off a roof and lands",
       judgement="fair: the slide and the soft fall are right, the crumbling in between is a little even")
def snow_slide(take):
    seconds = (2.0, 3.0)[take.variant - 1]
    speed = shapes.smooth_curve(seconds, ((0, 0.06), (seconds * 0.4, 0.35), (seconds * 0.85, 1.6), (seconds, 0.0)))
    slide = filters.moving_lowpass(friction.rubbed(take, speed, 500.0, 22.0), 350.0 + 2500.0 * speed / 1.6)
    roof = modal.ring(slide, modal.body(take, "board", 95.0, 16), 0.1)
    fall = filters.lowpass(modal.struck(take, modal.body(take, "box", 46.0, 10), 0.0), 300.0)
    clumps = grains.cloud(take, 0.9, shapes.curve(0.9, ((0, 260), (0.25, 90), (0.9, 0))),
                          lambda t: grains.crumb(t, 420.0), 0.8)
    powder = noise.band(take.rng, 1.2, 900.0, 6000.0, 1) * shapes.decay(1.2, 1.1, 0.05)
    late = grains.cloud(take, 1.2, shapes.curve(1.2, ((0, 30), (1.2, 0))), lambda t: grains.crumb(t, 900.0), 0.8)
    at = seconds + take.between(0.28, 0.4)
    x = shapes.lay((0.0, shapes.level(slide), 0.16), (0.0, shapes.level(roof), 0.18), (at, shapes.unit(fall), 0.9),
                   (at, shapes.unit(clumps), 0.55), (at, powder, 0.05), (at + 0.3, shapes.unit(late), 0.2))
    return shapes.faded(rooms.heard_in(take, x, rooms.OUTDOORS, 0.2), 0.01, 0.2)
