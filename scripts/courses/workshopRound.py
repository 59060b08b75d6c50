"""A short round through the workshop: along the bench, a crate pushed, the light switched off and on, a bolt thrown."""

from __future__ import annotations

from typing import TYPE_CHECKING

if TYPE_CHECKING:
    from courseDriver import Driver, Steps

LEVEL = 'Workshop'
SEED = 11


def play(driver: Driver) -> Steps:
    yield from driver.wait(0.5)
    yield from driver.walk((2.6, -1.2), (1.2, -1.6))
    yield from driver.use(1.0, 1.35, -4.0)
    yield from driver.wait(0.5)
    yield from driver.use(1.0, 1.35, -4.0)
    yield from driver.throw(0.1, 1.0, -3.6)
    yield from driver.walkTo(0.0, 0.8, run=True)
    yield from driver.wait(1.0)
