"""How one gets through Nightfall, stretch by stretch: what courses through the level are put together from."""

from __future__ import annotations

from typing import TYPE_CHECKING

from nightfall.Plan import DOORS, ROOMS, UP, roomAt

if TYPE_CHECKING:
    from courseDriver import Driver, Steps

HANDLE = 1.05  # metres above the floor at which one looks at a door


def room(driver: Driver) -> str:
    x, _, z = driver.eye()
    return roomAt(x, z)


def house(driver: Driver):
    return driver.coordinator.getChild('house')


def openness(driver: Driver, door: str) -> float:
    return abs(house(driver).getChild(door).getComponent('physics').prevAngle)


def openDoor(driver: Driver, door: str) -> Steps:
    """Uses a door that one stands before, and waits until it stands open."""
    x, z, _, one, _ = DOORS[door]
    yield from driver.use(x, ROOMS[one].floor + HANDLE, z)
    yield from driver.waitUntil(lambda: openness(driver, door) > 1.2, door + ' is open', 6)


def shutDoor(driver: Driver, door: str, x: float, y: float, z: float) -> Steps:
    """Uses an open door's leaf, which is at a place, and waits until it is shut."""
    yield from driver.use(x, y, z)
    yield from driver.waitUntil(lambda: openness(driver, door) < 0.05, door + ' is shut', 6)


def read(driver: Driver, x: float, y: float, z: float, seconds: float = 4.0) -> Steps:
    """Takes a note, reads it, and puts it away."""
    yield from driver.use(x, y, z)
    yield from driver.wait(seconds)
    yield from driver.tap('use')


def wake(driver: Driver) -> Steps:
    """From the first room to the corridor."""
    yield from driver.wait(4.0)
    yield from driver.turnTo(-60, 5)
    yield from driver.wait(1.5)
    yield from driver.walk((2.4, -1.9), (2.95, -0.9), (2.95, 0.8))


def takeLamp(driver: Driver) -> Steps:
    """Into number seven, after the light under its door, and back with the lamp."""
    yield from driver.lookAt(5.4, UP, 0.2)
    yield from driver.wait(1.0)
    yield from driver.walk((5.3, 0.7))
    yield from openDoor(driver, 'doorSeven')
    yield from driver.walk((5.4, -0.8), (5.35, -1.5))
    yield from driver.use(5.7, UP + 0.03, -2.2)
    yield from driver.waitUntil(lambda: player(driver).hasFlashlight, 'the lamp is taken', 2)
    yield from driver.wait(1.0)
    yield from read(driver, 4.55, UP + 0.66, -1.55)
    yield from driver.tap('flashlight')
    yield from driver.wait(0.6)
    yield from driver.tap('flashlight')
    yield from driver.walk((5.4, -0.9), (5.4, 0.55))


def takePassageKey(driver: Driver) -> Steps:
    """To the desk in number six, and to the locked door at the corridor's end."""
    yield from driver.walk((6.3, 0.5), (9.2, 0.6))
    yield from openDoor(driver, 'doorSix')
    yield from driver.walk((9.2, -1.0), (9.6, -2.3), (10.4, -2.4))
    yield from driver.use(11.34, UP + 0.75, -2.4)
    yield from driver.wait(1.5)
    yield from driver.use(11.26, UP + 0.69, -2.32)
    yield from driver.waitUntil(lambda: has(driver, 'passageKey'), 'the key is taken', 3)
    yield from driver.wait(1.0)
    yield from driver.walk((9.7, -2.1), (9.2, -0.9), (9.2, 0.6))


def takeBattery(driver: Driver) -> Steps:
    """From the table in number five, by candlelight."""
    yield from driver.walk((12.6, 0.6), (13.2, 0.6))
    yield from openDoor(driver, 'doorFive')
    yield from driver.walk((13.15, -0.9), (13.15, -1.5), (14.0, -1.7))
    yield from driver.use(14.4, UP + 0.785, -2.62)
    yield from driver.wait(0.8)
    yield from driver.walk((13.15, -1.5), (13.15, -0.6), (13.2, 0.6))


def enterPassage(driver: Driver) -> Steps:
    yield from driver.walk((15.15, 0.8))
    yield from driver.use(15.15, UP + HANDLE, 1.8)  # unlocks
    yield from driver.wait(1.2)
    yield from openDoor(driver, 'passageDoor')
    yield from driver.walk((15.15, 2.6))


def tryStairs(driver: Driver) -> Steps:
    """Up the passage to the door that is locked, and the note beside it that tells of the key."""
    yield from driver.walk((14.95, 7.0), (14.95, 11.4))
    yield from read(driver, 15.66, UP + 0.66, 12.0)
    yield from driver.walk((14.95, 12.9))
    yield from driver.use(15.15, UP + HANDLE, 14.1)
    yield from driver.wait(1.5)


def throughSewing(driver: Driver) -> Steps:
    """Past the Fittings, on hands and knees into the linen room, with the key from its nail to the bolted door."""
    yield from driver.walk((14.95, 10.0), (14.95, 3.6), (15.0, 3.4))
    yield from openDoor(driver, 'sewingDoor')
    yield from driver.walk((16.8, 3.4), (17.2, 3.4))
    yield from driver.walk((17.4, 6.0), (18.4, 6.9), (19.6, 7.0))
    yield from driver.tap('crouch')
    yield from driver.wait(0.6)
    yield from driver.walk((19.6, 8.8), (18.9, 9.2), (17.3, 9.1))
    yield from driver.tap('crouch')
    yield from driver.wait(0.6)
    yield from driver.use(16.66, UP + 0.54, 8.3)
    yield from driver.waitUntil(lambda: has(driver, 'stairKey'), 'the key is taken', 3)


def letHimPass(driver: Driver) -> Steps:
    """Waits in the dark linen room until the Guest has gone by, and goes after him to the stairs' door."""
    yield from driver.walkTo(16.9, 9.6)
    if player(driver).isFlashlightOn():
        yield from driver.tap('flashlight')
    yield from driver.wait(3.0)
    yield from openDoor(driver, 'linenDoor')

    def hasPassed():
        guest = house(driver).getChild('guest')
        return guest and guest.getComponent('transform').position.z > 11.0

    yield from driver.waitUntil(hasPassed, 'the Guest has passed', 60)
    yield from driver.waitUntil(lambda: not hasPassed(), 'the Guest comes back', 60)
    yield from driver.waitUntil(lambda: house(driver).getChild('guest').getComponent('transform').position.z < 6.5,
                                'the Guest is gone', 60)
    yield from driver.walk((14.95, 10.4), (14.95, 13.0))
    yield from driver.use(15.15, UP + HANDLE, 14.1)  # unlocks
    yield from driver.wait(1.2)
    yield from openDoor(driver, 'landingDoor')
    yield from driver.walk((15.15, 14.9))


def descend(driver: Driver) -> Steps:
    """Over the landing and down the stairs, where the chase begins."""
    yield from driver.tap('flashlight')
    yield from read(driver, 16.7, UP + 0.66, 14.6)
    yield from driver.walk((16.0, 15.6), (19.0, 15.8), (19.9, 16.6), (19.9, 18.6))


def flee(driver: Driver) -> Steps:
    """Across the hall into the service passage, and shuts the door."""
    yield from driver.walk((19.9, 22.4), (16.0, 21.6), (11.4, 20.4), (9.3, 20.4), run=True)
    yield from driver.walkTo(9.0, 20.4)
    yield from shutDoor(driver, 'serviceDoor', 9.6, 1.05, 19.94)
    yield from driver.wait(12.0)


def has(driver: Driver, thing: str) -> bool:
    return bool(driver.coordinator.getChild('Player').getDescendantByPath('pockets/' + thing))


def player(driver: Driver):
    return driver.coordinator.getChild('Player').getComponent('player')


def toTheStairs(driver: Driver) -> Steps:
    """All of it from waking to the chase."""
    for stretch in (wake, takeLamp, takePassageKey, takeBattery, enterPassage, tryStairs, throughSewing, letHimPass,
                    descend):
        yield from stretch(driver)


def takeLift(driver: Driver) -> Steps:
    """Pulls the lever, waits for the cage, and gets in."""
    yield from driver.walkTo(9.2, 19.1)
    yield from read(driver, 9.8, 0.91, 18.1)
    yield from driver.walk((8.4, 20.6), (6.7, 21.2))
    yield from driver.use(5.9, 1.3, 21.3)
    yield from driver.walk((7.4, 20.2))
    yield from driver.turnTo(-90)
    yield from driver.wait(23.0)
    yield from driver.walk((6.4, 20.2), (5.5, 20.2))
    yield from driver.wait(20.0)


def takeChute(driver: Driver) -> Steps:
    """Opens the flap and goes in on hands and knees."""
    yield from driver.walk((7.6, 21.2))
    yield from driver.use(7.6, 0.8, 22.2)
    yield from driver.wait(2.0)
    yield from driver.tap('crouch')
    yield from driver.wait(0.6)
    yield from driver.turnTo(0)
    yield from driver.tap('forward', 2.5)
    yield from driver.wait(20.0)


def beCaught(driver: Driver) -> Steps:
    """Goes down and up on his knees until it has heard it, and waits for the way back; who is still is not found."""
    def died():
        return driver.coordinator.getChild('fate').getComponent('graphics2').color.w > 0.5

    for _ in range(60):
        if died():
            break
        yield from driver.tap('crouch')
        yield from driver.wait(0.7)
    yield from driver.waitUntil(died, 'it has hold of him', 20)
    yield from driver.waitUntil(lambda: player(driver).useInput, 'he is back', 20)
    yield from driver.wait(2.0)


def descendAgain(driver: Driver) -> Steps:
    yield from driver.walk((16.0, 15.6), (19.0, 15.8), (19.9, 16.6), (19.9, 18.6))
