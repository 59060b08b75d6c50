"""Switches: small things that a hand throws over."""

import numpy

import filters
import modal
import noise
import rooms
import shapes
from take import sound


def _spring(take, lowest, seconds):
    """The twang of a small leaf spring that has just let go."""
    modes = modal.body(take, "metal", lowest, count=7, tilt=0.4, damping=6.0)
    return modal.struck(take, modes, 0.8, tail=seconds)


def _snap(take, hardness, lowest):
    """A contact that closes: a hard tick on a small body and one quick bounce."""
    modes = modal.body(take, "iron", lowest, count=16, tilt=0.0, damping=7.0)
    return modal.struck(take, modes, hardness, bounces=take.pick((1, 2)), tail=0.06)


@sound(variants=3, loudness=-27.0, what="a porcelain lamp switch thrown over", judgement="good")
def lamp_switch(take):
    """Finger on the knob, the spring bent, the snap, and the plate on the wall that answers."""
    touch = noise.band(take.rng, 0.03, 600, 4000) * shapes.decay(0.03, 0.03, 0.004)
    plate = modal.struck(take, modal.body(take, "pot", take.near(620.0), count=12, damping=2.5), 0.55, tail=0.12)
    wall = modal.struck(take, modal.body(take, "board", take.near(170.0), count=14), 0.3, tail=0.12)
    snap = _snap(take, 0.95, take.near(2300.0))
    at = take.between(0.03, 0.05)
    x = shapes.lay((0.0, touch, 0.02), (at, shapes.unit(snap), 0.8), (at + 0.001, shapes.unit(plate), 0.5),
                   (at + 0.002, shapes.unit(wall), 0.35), (at, shapes.unit(_spring(take, 850.0, 0.1)), 0.08))
    return shapes.faded(rooms.heard_in(take, x, rooms.SMALL, 0.12), 0.001, 0.15)[:shapes.samples(0.5)]


@sound(variants=2, loudness=-21.0, what="a heavy iron lever pulled over in its quadrant", judgement="good")
def lever(take):
    """The catch lets go, the rod grinds along its quadrant, and the arm lands in the other notch."""
    catch = _snap(take, 0.9, take.near(900.0))
    t = take.between(0.3, 0.42)
    travel = numpy.sin(numpy.pi * numpy.linspace(0, 1, shapes.samples(t))) ** 0.7 * 0.45
    arm = modal.body(take, "iron", take.near(140.0), count=30, tilt=0.0, damping=4.0)
    force = filters.bandpass(noise.white(take.rng, t) * travel, 300, 5000)
    notches = numpy.arange(0.05, t - 0.03, 0.035)
    teeth = shapes.lay(*[(at, modal.blow(0.01, 0.8), take.between(0.3, 1.0)) for at in notches])
    grind = modal.ring(0.05 * force + shapes.cut(teeth, t) * 0.25, arm, 0.2)
    thud = modal.struck(take, arm, 0.6, bounces=2, tail=0.5)
    frame = modal.struck(take, modal.body(take, "board", take.near(90.0), count=16), 0.25, tail=0.3)
    x = shapes.lay((0.0, shapes.unit(catch), 0.4), (0.03, shapes.unit(grind), 0.5), (0.03 + t, shapes.unit(thud), 1.0),
                   (0.031 + t, shapes.unit(frame), 0.8))
    return shapes.faded(rooms.heard_in(take, x, rooms.SMALL, 0.2), 0.001, 0.3)


@sound(variants=2, loudness=-26.0, what="a brass button pressed in and let go", judgement="good")
def button(take):
    """Down: a dull stop behind a spring. Up: the lighter click of the rim."""
    down = _snap(take, 0.7, take.near(1300.0))
    stop = modal.struck(take, modal.body(take, "wood", take.near(320.0), count=10), 0.4, tail=0.1)
    up = _snap(take, 0.9, take.near(2600.0))
    gap = take.between(0.12, 0.17)
    x = shapes.lay((0.0, shapes.unit(down), 0.6), (0.002, shapes.unit(stop), 0.9),
                   (0.0, shapes.unit(_spring(take, 640.0, 0.15)), 0.06), (gap, shapes.unit(up), 0.35))
    return shapes.faded(rooms.heard_in(take, x, rooms.SMALL, 0.12), 0.001, 0.15)[:shapes.samples(0.55)]
