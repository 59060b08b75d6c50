"""Nightfall as far as the stairs, where one stops to listen; and once more from the landing, down the chute."""

from __future__ import annotations

from typing import TYPE_CHECKING

from nightfall import Course

if TYPE_CHECKING:
    from courseDriver import Driver, Steps

LEVEL = 'Nightfall'
SEED = 1


def play(driver: Driver) -> Steps:
    yield from Course.toTheStairs(driver)
    yield from Course.beCaught(driver)
    yield from Course.descendAgain(driver)
    yield from Course.flee(driver)
    yield from Course.takeChute(driver)
