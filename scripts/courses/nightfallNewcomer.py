"""Nightfall as somebody goes through it who has never been there, to the lift: how long that takes."""

from __future__ import annotations

from typing import TYPE_CHECKING

from nightfall import Course
from nightfall.Newcomer import Newcomer

if TYPE_CHECKING:
    from courseDriver import Driver, Steps

LEVEL = 'Nightfall'
SEED = 1


def play(driver: Driver) -> Steps:
    newcomer = Newcomer()
    yield from Course.toTheStairs(newcomer, isCurious=True)
    yield from Course.flee(newcomer)
    yield from Course.takeLift(newcomer)
