"""Interface: what a hand does with paper, pen and wood on a desk at night."""

import numpy

import filters
import friction
import grains
import modal
import noise
import rooms
import shapes
from take import sound


def _desk(take, lowest, hard, gain=1.0):
    """A fingertip or a pen on a desk."""
    top = modal.body(take, "wood", take.near(lowest, 0.1), count=18, tilt=0.5)
    return shapes.unit(modal.struck(take, top, hard, 0, 0.15)) * gain


def _sheet(take, seconds, points, low=1500.0, high=9000.0):
    return shapes.unit(grains.rustle(take, seconds, shapes.smooth_curve(seconds, points), low, high, 380.0))


def _wide(take, x, place=0.0, wet=0.2):
    """Before the listener on the desk, with the room on both sides."""
    return rooms.heard_in(take, shapes.panned(x, place), rooms.SMALL, wet, stereo=True)


@sound(variants=3, stereo=True, loudness=-42.0, what="the pointer comes over a line: a fingertip on paper",
       judgement="good")
def hover(take):
    t = 0.09
    x = _sheet(take, t, [(0, 0), (0.02, 1.0), (t, 0)], 1200.0, 6000.0)
    return _wide(take, shapes.lay((0.0, x, 1.0), (0.012, _desk(take, 300.0, 0.2), 0.5)))


@sound(variants=3, stereo=True, loudness=-32.0, what="a line is chosen: a pen set on the desk", judgement="good")
def click(take):
    pen = modal.body(take, "wood", take.near(1150.0, 0.1), count=8, tilt=0.3, damping=1.3)
    tap = shapes.unit(modal.struck(take, pen, 0.8, 1, 0.08))
    return _wide(take, shapes.lay((0.0, tap, 0.6), (0.0, _desk(take, 240.0, 0.5))))


@sound(variants=2, stereo=True, loudness=-34.0, what="one goes back: a notebook laid down", judgement="good")
def back(take):
    t = 0.16
    x = _sheet(take, t, [(0, 0.2), (0.06, 1.0), (t, 0)], 700.0, 5000.0)
    book = shapes.lay((0.0, _desk(take, 130.0, 0.2)), (0.003, _desk(take, 210.0, 0.3), 0.4))
    return _wide(take, shapes.lay((0.0, x, 0.35), (0.05, book)))


@sound(stereo=True, loudness=-32.0, what="a menu opens: a drawer drawn out a hand's breadth", judgement="good")
def open(take):
    t = 0.34
    speed = shapes.smooth_curve(t, [(0, 0), (t * 0.35, 0.5), (t, 0.05)])
    box = modal.body(take, "board", 190.0, count=24, tilt=0.4)
    slide = modal.ring(friction.rubbed(take, speed, 700.0, 60.0), box, 0.1)
    handle = modal.body(take, "metal", 1500.0, count=7, damping=12.0)
    x = shapes.lay((0.0, shapes.unit(modal.struck(take, handle, 0.7, 1, 0.1)), 0.25), (0.03, shapes.unit(slide), 0.6),
                   (t * 0.95, _desk(take, 160.0, 0.35), 0.9))
    return _wide(take, x)


@sound(variants=4, stereo=True, loudness=-31.0, what="a page turned", judgement="good")
def page(take):
    """The corner is lifted, the sheet swings over from right to left, and settles."""
    t = take.between(0.5, 0.65)
    lift = _sheet(take, 0.12, [(0, 0), (0.04, 0.7), (0.12, 0)], 2200.0, 9500.0)
    swing = _sheet(take, t, [(0, 0), (t * 0.45, 1.0), (t * 0.7, 0.35), (t * 0.85, 0.6), (t, 0)], 900.0, 8000.0)
    air = filters.lowpass(noise.pink(take.rng, t), 500.0) * shapes.smooth_curve(t, [(0, 0), (t * 0.5, 1.0), (t, 0)])
    over = shapes.lay((0.0, swing, 1.0), (0.0, shapes.unit(air), 0.15))
    over = shapes.panned(over, numpy.linspace(0.5, -0.5, len(over)))
    x = shapes.lay((0.0, shapes.panned(lift, 0.5), 0.5), (0.1, over, 1.0),
                   (0.1 + t * 0.82, shapes.panned(_desk(take, 170.0, 0.15), -0.3), 0.3))
    return rooms.heard_in(take, x, rooms.SMALL, 0.15)


@sound(stereo=True, loudness=-32.0, silence=0.3, what="the game is kept: a line written, the book closed",
       judgement="good")
def save(take):
    """Strokes of a steel nib, then the cover."""
    nib = modal.body(take, "metal", 3100.0, count=5, tilt=0.2, damping=25.0)
    x, at = [], 0.0
    for _ in range(5):
        t = take.pick((0.05, 0.08, 0.12, 0.2)) * take.near(1.0, 0.2)
        speed = numpy.sin(numpy.pi * numpy.linspace(0, 1, shapes.samples(t))) * take.between(0.1, 0.32)
        rub = friction.rubbed(take, speed, 5200.0, 400.0)
        x += [(at, shapes.unit(filters.bandpass(rub, 1800.0, 8000.0)), 0.35),
              (at, shapes.unit(modal.ring(rub, nib, 0.02)), 0.1), (at, _desk(take, 420.0, 0.4), 0.06)]
        at += t + take.between(0.02, 0.07)
    cover = _sheet(take, 0.2, [(0, 0.1), (0.12, 1.0), (0.2, 0)], 600.0, 4500.0)
    x += [(at + 0.15, cover, 0.3), (at + 0.3, _desk(take, 125.0, 0.25), 1.0),
          (at + 0.302, _desk(take, 240.0, 0.3), 0.5)]
    return _wide(take, shapes.lay(*x))
