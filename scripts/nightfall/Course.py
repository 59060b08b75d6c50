"""How one gets through Nightfall, stretch by stretch: what courses through the level are put together from."""

from __future__ import annotations

from typing import TYPE_CHECKING, Callable

import words
from nightfall.Exits import GATE_Z
from nightfall.Plan import DOORS, ROOMS, STAIRS_X, UP, roomAt
from nightfall.Siege import BOLT as BOLT_LIES
from nightfall.Siege import SLIPS
from nightfall.StairGate import CRANK, LIES, WAY
from nightfall.StairGate import HANDLE as GATE_HANDLE
from nightfall.Things import NOTES

if TYPE_CHECKING:
    from courseDriver import Driver, Steps

Stretch = Callable[['Driver'], 'Steps']

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


def read(driver: Driver, note: str) -> Steps:
    """Takes a note, reads it, and puts it away."""
    place, _, writer = NOTES[note]
    yield from driver.use(*place)
    yield from driver.readFor(str(words.said('nightfall.note.%s.text' % writer)))
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
    yield from read(driver, 'porterNote')
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
    yield from driver.walk((14.95, 7.0), (14.95, 10.4))
    yield from read(driver, 'housekeeperNote')
    yield from driver.walk((14.95, 12.9))
    yield from driver.use(15.15, UP + HANDLE, 14.1)
    yield from driver.wait(1.5)


def askTheGirl(driver: Driver) -> Steps:
    """From number three through the wall into number two, for the key that lies by the candle."""
    yield from driver.walk((15.15, 8.4), (15.0, 7.0))
    yield from openDoor(driver, 'doorThree')
    yield from driver.walk((13.4, 7.0))
    yield from read(driver, 'girlNote')
    yield from driver.walk((11.9, 7.8), (11.75, 8.9))
    yield from driver.tap('crouch')
    yield from driver.wait(0.6)
    yield from driver.walk((11.75, 10.9))
    yield from driver.tap('crouch')
    yield from driver.wait(0.6)
    yield from driver.walk((12.4, 12.7))
    yield from driver.use(12.45, UP + 0.66, 13.6)
    yield from driver.waitUntil(lambda: has(driver, 'sewingKey'), 'the key is taken', 3)


def leaveNumberTwo(driver: Driver) -> Steps:
    """Waits behind the door until somebody has gone by and round the corner, since the passage is lit."""
    if player(driver).isFlashlightOn():
        yield from driver.tap('flashlight')
    yield from driver.waitUntil(lambda: guestAt(driver)[2] > 12.0, 'the Guest comes', 12)
    yield from driver.waitUntil(lambda: guestAt(driver)[0] < 13.6, 'the Guest has gone', 40)
    yield from driver.walk((13.5, 12.5))
    yield from openDoor(driver, 'doorTwo')
    yield from driver.walk((15.5, 12.5))
    yield from driver.tap('flashlight')


def guestAt(driver: Driver):
    """Where the Guest is, or was last."""
    at = house(driver).getChild('guest').getComponent('transform').position
    return at.x, at.y, at.z


def lookIntoFour(driver: Driver) -> Steps:
    """A room that nobody needs: a battery, and a note that tells of who goes by."""
    yield from driver.walk((14.95, 4.2), (15.1, 3.8))
    yield from openDoor(driver, 'doorFour')
    yield from driver.walk((13.3, 3.8), (12.3, 4.2))
    yield from read(driver, 'lodgerNote')
    yield from driver.use(11.8, UP + 0.67, 5.3)
    yield from driver.walk((13.4, 3.8), (14.95, 4.2))


def tryDoor(driver: Driver, door: str) -> Steps:
    """Goes before a door of the passage that is not to be opened, and tries it."""
    x, z, _, _, _ = DOORS[door]
    yield from driver.walk((15.15, z))
    yield from driver.use(x, UP + HANDLE, z)


def tryDoors(driver: Driver) -> Steps:
    """All of them that are shut, on the way back from the stairs' door."""
    for door in ('doorTwo', 'linenDoor', 'sewingDoor'):
        yield from tryDoor(driver, door)
    yield from driver.walk((14.95, 6.8))


def tryGate(driver: Driver) -> Steps:
    """Down the gallery to the gate, and to the crank that is not there."""
    yield from driver.walk((16.0, 15.6), (19.0, 15.8), (19.8, 16.1))
    yield from driver.use(*CRANK)
    yield from driver.walk((17.5, 15.6))


def enterSewing(driver: Driver) -> Steps:
    """Down the passage and through the door that the girl's key opens."""
    yield from driver.walk((15.5, 11.7), (14.95, 10.0), (14.95, 3.6), (15.0, 3.4))
    yield from driver.use(16.1, UP + HANDLE, 3.4)  # unlocks
    yield from driver.wait(1.2)
    yield from openDoor(driver, 'sewingDoor')
    yield from driver.walk((16.8, 3.4), (17.2, 3.4))


def readSeamstress(driver: Driver) -> Steps:
    """Who has been among them has left a note."""
    yield from driver.walk((17.3, 3.0))
    yield from read(driver, 'seamstressNote')


def throughSewing(driver: Driver) -> Steps:
    """Past the Fittings, on hands and knees into the linen room, with the key from its nail to the bolted door."""
    yield from driver.walk((17.4, 6.0), (18.4, 6.9), (19.6, 7.0))
    yield from driver.tap('crouch')
    yield from driver.wait(0.6)
    yield from driver.walk((19.6, 8.8), (18.9, 9.2), (17.3, 9.1))
    yield from driver.tap('crouch')
    yield from driver.wait(0.6)
    yield from driver.use(16.66, UP + 0.54, 8.3)
    yield from driver.waitUntil(lambda: has(driver, 'stairKey'), 'the key is taken', 3)


def letHimPass(driver: Driver) -> Steps:
    """Waits in the dark linen room until the Guest has gone by, and goes through the stairs' door, which he shuts."""
    yield from driver.walkTo(16.9, 9.6)
    if player(driver).isFlashlightOn():
        yield from driver.tap('flashlight')
    yield from driver.wait(3.0)
    yield from openDoor(driver, 'linenDoor')

    def hasPassed():
        return guestAt(driver)[2] > 11.0

    yield from driver.waitUntil(hasPassed, 'the Guest has passed', 60)
    yield from driver.waitUntil(lambda: not hasPassed(), 'the Guest comes back', 60)
    yield from driver.waitUntil(lambda: guestAt(driver)[2] < 6.5, 'the Guest is gone', 60)
    yield from driver.walk((14.95, 10.4), (15.1, 11.5), (15.5, 12.2), (15.15, 13.0))
    yield from driver.use(15.15, UP + HANDLE, 14.1)  # unlocks
    yield from driver.wait(1.2)
    yield from openDoor(driver, 'landingDoor')
    yield from driver.walk((15.15, 14.9), (15.7, 15.3))
    yield from shutDoor(driver, 'landingDoor', 14.69, UP + HANDLE, 14.7)


def descend(driver: Driver) -> Steps:
    """Over the landing and down the stairs, where the chase begins."""
    yield from driver.tap('flashlight')
    yield from read(driver, 'plumberNote')
    yield from driver.walk((16.0, 15.6), (12.6, 15.8), (11.9, 15.8))
    yield from driver.use(LIES[0], LIES[1] + 0.03, LIES[2])
    yield from driver.waitUntil(lambda: has(driver, GATE_HANDLE), 'the handle is taken', 3)
    yield from driver.walk((16.0, 15.6), (19.0, 15.8), (19.8, 16.1))
    yield from windGate(driver)
    yield from driver.walk((19.9, 16.6), (19.9, 18.6))


def windGate(driver: Driver) -> Steps:
    """Holds the crank until the gate is wide open."""
    yield from driver.lookAt(*CRANK)
    yield from driver.press('use')
    gate = house(driver).getChild('stairGate').getComponent('transform')
    yield from driver.waitUntil(lambda: gate.position.x < STAIRS_X - WAY + 0.01, 'the gate is open', 20)
    yield from driver.wait(0.3)
    yield from driver.release('use')


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


#: All of it from waking to the chase, and where one who looks into every room does so.
TO_THE_STAIRS: tuple[Stretch, ...] = (wake, takeLamp, takePassageKey, takeBattery, enterPassage, tryStairs, askTheGirl,
                                      leaveNumberTwo, enterSewing, throughSewing, letHimPass, descend)
LOOKING_ROUND: dict[Stretch, Stretch] = {enterPassage: lookIntoFour, tryStairs: tryDoors, enterSewing: readSeamstress,
                                         letHimPass: tryGate}


def toTheStairs(driver: Driver, isCurious: bool = False) -> Steps:
    for stretch in TO_THE_STAIRS:
        yield from stretch(driver)
        if isCurious and stretch in LOOKING_ROUND:
            yield from LOOKING_ROUND[stretch](driver)


def holdBolt(driver: Driver) -> Steps:
    """Pushes the bolt home whenever a blow more would be too much, until the lift's gate is open."""
    yield from driver.walk((8.4, 20.6), (9.5, 20.7))
    bolt = house(driver).getDescendantByPath('service/bolt').getComponent('transform')
    gate = house(driver).getChild('liftGate').getComponent('transform')
    for _ in range(45 * 60):
        if gate.position.z > GATE_Z + 1.1:
            return
        if bolt.position.z > BOLT_LIES[2] + 1.5 * SLIPS:
            yield from driver.use(*BOLT_LIES)
        yield from driver.wait(0.2)


def takeLift(driver: Driver) -> Steps:
    """Pulls the lever, waits for the cage, and gets in."""
    yield from driver.walkTo(9.2, 19.1)
    yield from read(driver, 'carrierNote')
    yield from driver.walk((8.4, 20.6), (6.7, 21.2))
    yield from driver.use(5.9, 1.3, 21.3)
    yield from holdBolt(driver)
    yield from driver.walk((7.4, 20.2))
    yield from driver.turnTo(-90)
    yield from driver.wait(0.5)
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
        return not player(driver).useInput

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
