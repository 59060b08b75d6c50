"""Handles: the members of an object's class as attributes."""

import copy
import gc
import pickle

import _kaVel
import kaVel
from checks import kill, raises


def probe(**properties):
    return kaVel.make('Probe', name='probe', **properties)


def test_callReachesTheMember():
    p = probe()
    assert p.addValue(1.5) is None
    p.addValue(2)
    assert p.getValue() == 3.5 and p.value == 3.5


def test_propertyReadsAndWritesThroughItsPair():
    p = probe(speed=2.5)
    assert p.speed == 2.5 and p.getSpeed() == 2.5
