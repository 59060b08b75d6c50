"""Nightfall from waking to the lift."""

from __future__ import annotations

from typing import TYPE_CHECKING

from nightfall import Course

if TYPE_CHECKING:
    from courseDriver import Driver, Steps

LEVEL = 'Nightfall'
SEED = 1


def play(driver: Driver) -> Steps:
    yield from Course.toTheStairs(driver)
    yield from Course.flee(driver)
    yield from Course.takeLift(driver)
