"""The player's hand: what is gripped and moves with it, what is carried before the eyes, what is read.

Use that is let go at once is a tap, which each thing takes in its own way; use that is held grips what can be gripped:
a door or a drawer then follows the hand, slowly and quietly, as the mouse moves and the feet go. One thing is held at a
time. While it is, the hand itself is what the player points at, so that the next use lets go and touches nothing else.

While a note is read the world goes on and the player stands still: reading costs what waiting costs.
"""

from __future__ import annotations

import math
from typing import Any, Callable, Protocol

import bindings
import kaVel
from objects.Placing import LevelClock, Pair, Triple, addVolume, cube, onFrame, placed
from objects.player.Pockets import Page, Pockets, pocketsOf
from objects.screen.Marks import Mark, Marks, markOf
from objects.screen.Reading import Sheet
from objects.sound.Sounds import sounds
from perLevel import PerLevel
from screens import Screens

TAP = 0.2           # seconds; use that lasts longer grips
TAP_MOTION = 0.02   # way of the mouse, parts of the window, that makes a grip of it at once
HAND_WAY = 2.2      # metres that the hand goes for a way of the mouse by the longer side of the window
STICK_WAY = 1.1     # metres a second that the hand goes by the whole of a pad's stick
STICK_RESTS = 0.2   # share of its way at which a stick counts as let go
LEAD = 0.25         # metres that the hand is ahead of what it leads, at most
ARM = 2.7           # metres from the eyes at which a thing slips out of the hand
LOOK_WHILE_HELD = 0.06  # part of the mouse that still turns the view
PALM = 0.06         # edge of the volume that catches the use of who holds something, metres


class Grip(Protocol):
    """What a hand can hold as long as use is held."""

    def tap(self, hands: Hands) -> None:
        """It was used, shortly."""
        ...

    def begin(self, hands: Hands) -> bool:
        """Takes hold; false for what cannot be held just now."""
        ...

    def point(self) -> Triple:
        """Where the hand holds it, metres."""
        ...

    def follow(self, hand: Triple, seconds: float) -> bool:
        """Follows the hand for a frame; false when it has slipped out of it."""
        ...

    def end(self, hands: Hands) -> None:
        """Lets go."""
        ...


class Load(Protocol):
    """What is carried before the eyes."""

    def carry(self, hands: Hands, seconds: float) -> bool:
        """Comes along for a frame; false when it is lost."""
        ...

    def drop(self, hands: Hands) -> None: ...

    def throw(self, hands: Hands) -> None: ...


class Flyer(Protocol):
    """What has left the hand and is on its way."""

    def fly(self, player: kaVel.Entity, seconds: float) -> bool:
        """A frame of its flight; false when it has ended."""
        ...


class Hands:
    """The hands of one player. What he lacks of his parts, they do without: then nothing is held."""

    def __init__(self, player: kaVel.Entity):
        self.player = player
        self.level = player.getAncestorOfType(kaVel.Reflection.Coordinator)
        self.pockets: Pockets = pocketsOf(player)
        self.entity = kaVel.make('Entity', parent=player, name='hands')
        self.clock = LevelClock(self.entity)
        self.marks = Marks(player)
        self.sheet = Sheet(player)
        self.sounds = sounds(player, 'PickUp', 'Paper', 'PageTurn', 'Throw')
        self.palm = self._buildPalm()
        self.grip: Grip | None = None
        self.load: Load | None = None
        self.flying: list[Flyer] = []
        self.thrownBolts = 0
        self.throwFromPockets: Callable[[Hands], object] = lambda hands: None
        self.down: set[object] = set()  # what is held of all that uses something
        self._letGoOfPresses()
        self.heldFor = 0.0
        self.gripping = False  # the grip has become more than a tap
        self.start: Pair = (0.0, 0.0)  # where the hand gripped: to the right and ahead of the eyes, metres
        self.pushed = [0.0, 0.0]  # by the mouse since then: to the right and ahead, metres
        self.stick = (0.0, 0.0)  # of a pad, in this frame: to the right and up
        self.sensitivity: float | None = None  # of the mouse, while it is damped
        self._listen()
        onFrame(self.entity, self.doFrame)

    def _buildPalm(self) -> kaVel.BoundingVolume:
        palm = placed(self.player, 'palm')
        volume = addVolume(palm, cube(PALM), 'BV_NONE')
        volume.setInteractFunc(self._usePalm)
        volume.interact = False
        kaVel.addComponent(palm, 'form', 'ScriptComponent', frameCallback=self._placePalm)
        return volume

    def _listen(self):
        office = kaVel.officeOf(self.level)
        kaVel.subscribe('KeyDownMessage', self._keyDown, office)
        kaVel.subscribe('KeyUpMessage', self._keyUp, office)
        kaVel.subscribe('MouseDownMessage', self._buttonDown, office)
        kaVel.subscribe('MouseUpMessage', self._buttonUp, office)
        kaVel.subscribe('MouseMove', self._mouseMoved, office)
        kaVel.subscribe('RightJoyPos', self._stickMoved, office)
        kaVel.onKey(self.level, 'throw', self._pressThrow)
        kaVel.onKey(self.level, 'quit', self._pressQuit)
        kaVel.onKey(self.level, 'notebook', self._pressNotebook)

    # What things and scripts ask

    def isFree(self) -> bool:
        return not (self.grip or self.load or self.sheet.isOpen)

    def isReading(self) -> bool:
        """Whether a note lies before the eyes: then the key that ends a game closes the note, and nothing else."""
        return self.sheet.isOpen

    def press(self, grip: Grip):
        """Use has met something that can be gripped."""
        if self.isFree():
            self.grip, self.heldFor, self.gripping = grip, 0.0, False
            self.pushed = [0.0, 0.0]

    def take(self, load: Load):
        """Begins to carry something."""
        if self.isFree():
            self.load = load
            self.play('PickUp')

    def read(self, page: Page):
        """Lays a note before the eyes; the player stands still until he uses or quits it."""
        component = self._component()
        if self.isFree() and component:
            self.sheet.open(page)
            component.setUseInput(False)
            self.play('Paper')

    def letGo(self):
        """Drops what is carried, lets go of what is gripped, closes what is read."""
        if self.load:
            self.load.drop(self)
            self.load = None
        self._endGrip()
        self._closeSheet(True)

    def holdUse(self, input: object, isDown: bool):
        """Tells that an input which uses things went down or up: as long as any is down, a grip lasts."""
        if isDown:
            self.down.add(input)
        else:
            self.down.discard(input)

    def play(self, event: str):
        if self.sounds:
            self.sounds.playSoundEffect(event)

    def eye(self) -> kaVel.TransformComponent | None:
        """Where the player looks from."""
        camera = self.player.getChild('camera') if self.player else None
        return camera.getComponent('transform') if camera else None

    def place(self, right: float, up: float, ahead: float) -> Triple:
        """A place given from the eyes."""
        eye = self.eye()
        if not eye:
            return 0.0, 0.0, 0.0
        at = eye.position
        x, y, z = along(eye.orientation, right, up, ahead)
        return at.x + x, at.y + y, at.z + z

    def heading(self) -> Pair:
        """Where the eyes look, over the floor: a direction along x and z, of length 1."""
        eye = self.eye()
        if not eye:
            return 0.0, 1.0
        x, _, z = along(eye.orientation, 1, 0, 0)  # to the right: it lies flat however steep the look
        length = math.hypot(x, z) or 1.0
        return -z / length, x / length

    def beside(self, place: Triple) -> Pair:
        """Where a place lies over the floor from the eyes: to the right and ahead, metres."""
        x, _, z = self.place(0, 0, 0)
        away, (s, c) = (place[0] - x, place[2] - z), self.heading()
        return away[0] * c - away[1] * s, away[0] * s + away[1] * c

    # A frame

    def doFrame(self):
        seconds = self.clock.frameSeconds()
        if not self._isWhole() or seconds <= 0.0:
            self._letGoOfPresses()
            return
        self.sheet.move(seconds)
        self.flying = [each for each in self.flying if each.fly(self.player, seconds)]
        if self._isDead():
            self._closeSheet(False)
            self.letGo()
        elif self.sheet.isOpen:
            if self.used or self.quitPressed or self.leafed:
                self._closeSheet(True)
        elif self.load:
            self._carry(self.load, seconds)
        elif self.grip:
            self._hold(self.grip, seconds)
        elif self.leafed:
            Screens.open(self.level, 'Notebook')
        elif self.thrown:
            self.throwFromPockets(self)
        self._letGoOfPresses()
        if self.palm:
            self.palm.interact = bool(self.load or self.sheet.isOpen)
        self.marks.show(self._mark(), bool(self.down))

    def _letGoOfPresses(self):
        self.used = self.thrown = self.quitPressed = self.leafed = False
        self.stick = (0.0, 0.0)

    def _carry(self, load: Load, seconds: float):
        if self.thrown:
            load.throw(self)
            self.play('Throw')
            self.load = None
        elif self.used:
            load.drop(self)
            self.load = None
        elif not load.carry(self, seconds):
            self.load = None

    def _hold(self, grip: Grip, seconds: float):
        """A tap, or the grip that it grows into."""
        self.heldFor += seconds
        self.pushed = [pushed + part * STICK_WAY * seconds for pushed, part in zip(self.pushed, self.stick)]
        if not self.down:
            if not self.gripping:
                self.grip = None
                grip.tap(self)
            self._endGrip()
        elif not self.gripping:
            if self.heldFor > TAP or math.hypot(*self.pushed) > TAP_MOTION * HAND_WAY:
                self._beginGrip(grip)
        elif math.dist(self.place(0, 0, 0), grip.point()) > ARM or not grip.follow(self._handAt(grip), seconds):
            self._endGrip()

    def _beginGrip(self, grip: Grip):
        self.gripping = grip.begin(self)
        if not self.gripping:
            self.grip = None
            return
        self.start = self.beside(grip.point())
        self.pushed = [0.0, 0.0]
        component = self._component()
        sensitivity: float = component.mouseSensitivity
        component.mouseSensitivity = sensitivity * LOOK_WHILE_HELD
        self.sensitivity = sensitivity

    def _handAt(self, grip: Grip) -> Triple:
        """Where the hand is: it goes with the eyes and the mouse, and stays near what it leads."""
        point = grip.point()
        off = [start + pushed - at for start, pushed, at in zip(self.start, self.pushed, self.beside(point))]
        excess = max(0.0, 1.0 - LEAD / max(math.hypot(*off), LEAD))
        self.pushed = [part - excess * away for part, away in zip(self.pushed, off)]
        right, ahead = (part * (1.0 - excess) for part in off)
        s, c = self.heading()
        return point[0] + right * c + ahead * s, point[1], point[2] + ahead * c - right * s

    def _endGrip(self):
        grip, self.grip = self.grip, None
        if grip and self.gripping:
            grip.end(self)
        self.gripping = False
        component = self._component()
        if self.sensitivity is not None and component:
            component.mouseSensitivity = self.sensitivity
        self.sensitivity = None

    def _closeSheet(self, awake: bool):
        component = self._component()
        if self.sheet.isOpen and component and awake:
            component.setUseInput(True)
            self.play('PageTurn')
        self.sheet.close()

    def _mark(self) -> Mark | None:
        if self.sheet.isOpen:
            return None
        if self.load or self.gripping:
            return 'held'
        component = self._component()
        volume = component.interactor if component else None
        return markOf(volume) if volume != self.palm else None

    # What the player is made of

    def _component(self) -> Any:
        return self.player.getComponent('player') if self.player else None

    def _isWhole(self) -> bool:
        return bool(self._component() and self.eye() and self.player.getComponent('physics'))

    def _isDead(self) -> bool:
        return getattr(self.player.getComponent('physics'), 'dead', False)

    # What keys and mouse tell

    def _usePalm(self, player: kaVel.AnyObject):
        self.used = True

    def _pressThrow(self):
        component = self._component()
        # The same button may have used something by now: then nothing flies.
        self.thrown = bool(self.load) or not (component and markOf(component.interactor))

    def _pressNotebook(self):
        self.leafed = not Screens.isOpen(self.level)

    def _pressQuit(self):
        self.quitPressed = True

    def _keyDown(self, message: kaVel.IReflectedThing, key: int):
        if key in bindings.keysOf('use'):
            self.holdUse(('key', key), True)

    def _keyUp(self, message: kaVel.IReflectedThing, key: int):
        self.holdUse(('key', key), False)

    def _buttonDown(self, message: kaVel.IReflectedThing, button: int, x: float, y: float):
        if button in bindings.buttonsOf('use'):
            self.holdUse(('button', button), True)

    def _buttonUp(self, message: kaVel.IReflectedThing, button: int, x: float, y: float):
        self.holdUse(('button', button), False)

    def _mouseMoved(self, message: kaVel.IReflectedThing, x: float, y: float):
        if self.grip and math.isfinite(x) and math.isfinite(y):
            self.pushed[0] += x * HAND_WAY
            self.pushed[1] -= y * HAND_WAY

    def _stickMoved(self, message: kaVel.IReflectedThing, x: float, y: float, pad: int):
        if pad == 0 and math.hypot(x, y) > STICK_RESTS:
            self.stick = x, y

    def _placePalm(self):
        """Keeps the palm where the ray begins with which the player points."""
        own = self.player.getComponent('boundingVolume') if self.player else None
        if self.palm and own and self.palm.interact:
            at = kaVel.Vec4(*self.place(0, 0, own.hitBox.z / 2 + PALM / 3), 1)
            self.palm.parent.getComponent('transform').position = at


def along(orientation: kaVel.Quaternion, right: float, up: float, ahead: float) -> Triple:
    """A direction given in the axes that an orientation turns to."""
    q = orientation
    # v + 2 r (u x v) + 2 u x (u x v), with u the imaginary part
    x = 2.0 * (q.j * ahead - q.k * up)
    y = 2.0 * (q.k * right - q.i * ahead)
    z = 2.0 * (q.i * up - q.j * right)
    return (right + q.r * x + q.j * z - q.k * y, up + q.r * y + q.k * x - q.i * z,
            ahead + q.r * z + q.i * y - q.j * x)


_hands: PerLevel[Hands] = PerLevel()


def handsOf(inLevel: kaVel.Object) -> Hands | None:
    """The hands of the player of a level, which is told by any object in it; None for a level without a player."""
    return _hands.get(inLevel.getAncestorOfType(kaVel.Reflection.Coordinator))


def hands(player: kaVel.Entity, throwFromPockets: Callable[[Hands], object]):
    """Gives a player hands, and what they do to throw something when they are empty.

    A second player of a level has none of his own.
    """
    level = player.getAncestorOfType(kaVel.Reflection.Coordinator)
    if level not in _hands:
        _hands[level] = Hands(player)
        _hands[level].throwFromPockets = throwFromPockets
