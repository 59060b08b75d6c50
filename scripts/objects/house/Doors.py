"""Doors that are opened and shut, and take part in what bodies do: they push and are stopped.

Those with a `key` are locked until the player uses them with it. A door that swings also follows the player's hand: see
`objects.player.Hands`.
"""

from __future__ import annotations

import math
from typing import Any, Literal

import kaVel
from objects.Placing import Triple, addVolume, layerFor, placed, turned
from objects.player.Hands import Hands, along, handsOf
from objects.screen.Marks import marked
from objects.sound.Sounds import SHUT, LeafVoice, sounds
from objects.things.Bodies import look
from objects.things.Keys import Lock
from objects.things.Models import mapsOf
from saves.Kept import keep

LEAF = (1.12, 2.16, 0.07)          # of the model ironDoor, metres
SLIDING_LEAF = (1.70, 2.40, 0.08)  # of the model slidingDoor
SLIDING_SPEED = 1.1                # metres a second
ROOM_LEAF = (0.92, 2.10, 0.044)    # of the model roomDoor
OPENING = (1.0, 2.13)              # of a wall, width and height, that a room's door is meant for

HANDLE = (ROOM_LEAF[0] / 2 - 0.062, -0.05)  # of the model roomDoorHandle: across and up from the leaf's middle
PULL, FASTEST = 7.0, 1.3  # speed of a leaf for a metre that the hand is off, and at most; radians a second
LATCH = 0.10   # metres that the hand has to be off to open what the hand has shut
GENTLY = 0.3   # how loud a leaf is that a hand leads, of what it is when it swings by itself


@kaVel.pattern
def IronDoor(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, locked: bool = False,
             key: str | None = None):
    """An iron leaf that is hinged on its left; `at` is the middle of its threshold."""
    leaf = placed(parent, name, at=(at[0], at[1] + 0.01 + LEAF[1] / 2, at[2]), turn=turn)
    door = _leaf(leaf, LEAF, 'DoorPhysics', key, pivotPosition=kaVel.Vec4(-LEAF[0] / 2, 0, 0, 0),
                 locked=locked or key is not None)
    look(leaf, 'ironDoor', 'iron')
    LeafVoice(leaf, (at[0], at[1] + LEAF[1] / 2, at[2]), turn, lambda: door.prevAngle, 'DoorCreak',
              shut='DoorLatch', slam='DoorSlamIron')
    return leaf


@kaVel.pattern
def HingedDoor(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0,
               key: str | None = None, locked: bool = False, frame: float | None = 0.18, leftHanded: bool = True):
    """A room's wooden door, 0.92 m wide, for an opening of 0.9 to 1 m; `at` is the middle of its threshold.

    A tap of use swings it; use that is held leads it by the hand, slowly and quietly. It is hinged on its left or its
    right. With a `key` it is locked until the player comes with that key; `locked` without one waits for a script. The
    `frame` is as deep as the wall is thick, metres, and None for an opening that has one.
    """
    leaf = placed(parent, name, at=(at[0], at[1] + 0.01 + ROOM_LEAF[1] / 2, at[2]),
                  turn=turn if leftHanded else turn + 180)
    door = _leaf(leaf, ROOM_LEAF, 'DoorPhysics', key, pivotPosition=kaVel.Vec4(-ROOM_LEAF[0] / 2, 0, 0, 0),
                 locked=locked or key is not None)
    look(leaf, 'roomDoor', 'wood')
    voice = LeafVoice(leaf, (at[0], at[1] + ROOM_LEAF[1] / 2, at[2]), turn, lambda: door.prevAngle, 'DoorCreak',
                      shut='DoorClose', slam='DoorSlam')
    knobs = placed(leaf, 'knobs')
    addVolume(knobs, ROOM_LEAF, 'BV_NONE')
    kaVel.addComponent(knobs, 'parentFollower', 'ParentFollowerComponent')
    look(knobs, 'roomDoorHandle', 'brass')
    if frame is not None:
        DoorFrame(leaf, 'frame', at=at, turn=turn, deep=frame)
    _byHand(leaf, door, voice, key)
    return leaf


@kaVel.pattern
def DoorFrame(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, deep: float = 0.18):
    """The lining and architraves of a room's door in a wall that is `deep` metres thick; `at` is as the door's."""
    wide, high = OPENING
    mesh = kaVel.MeshBuilder()
    inner, lining, architrave, proud = ROOM_LEAF[0] / 2 + 0.008, 0.03, 0.09, 0.018
    for side in (-1.0, 1.0):
        _plank(mesh, high, (lining, deep + 0.008), at=(side * (inner + lining / 2), high / 2, 0), upright=True)
        for face in (-1.0, 1.0):
            _plank(mesh, high + architrave, (architrave, proud), upright=True,
                   at=(side * (inner + 0.012 + architrave / 2), (high + architrave) / 2, face * (deep / 2 + proud / 2)))
    _plank(mesh, 2 * inner, (lining, deep + 0.008), at=(0, high + lining / 2, 0))
    for face in (-1.0, 1.0):
        _plank(mesh, 2 * inner + 0.024, (architrave, proud),
               at=(0, high + architrave / 2, face * (deep / 2 + proud / 2)))
    mesh.generateTangents()
    frame = placed(parent, name, at=at, turn=turn)
    addVolume(frame, (wide + 0.3, 2 * (high + 0.1), deep + 0.1), 'BV_NONE')
    asset = kaVel.make('DynamicMeshAsset', parent=frame, name='mesh')
    asset.setMeshData(mesh)
    kaVel.addComponent(frame, 'graphics2', 'ModelGraphicsComponent2', layer=layerFor(frame), mesh=asset,
                       castShadows=True, **mapsOf('wood'))
    return frame


def _plank(mesh: kaVel.MeshBuilder, length: float, section: tuple[float, float], at: Triple, upright: bool = False):
    """A board whose grain runs along it, lying along x or standing; `section` is its breadth and its depth."""
    board = kaVel.MeshBuilder()
    board.addBox(kaVel.Vec4(length / 2, section[0] / 2, section[1] / 2, 0))
    board.applyWorldTextureCoordinates(1.0, at=kaVel.Vec4(at[0] * 3.7, at[2] * 2.3, 0, 1))
    mesh.merge(board, at=kaVel.Vec4(*at, 1), turn=turned(0, roll=90) if upright else turned(0))


@kaVel.pattern
def SlidingDoor(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0,
                key: str | None = None):
    """A leaf of planks on wheels that slides to its own right; `at` is the middle below it when it is shut."""
    leaf = placed(parent, name, at=(at[0], at[1] + 0.02 + SLIDING_LEAF[1] / 2, at[2]), turn=turn)
    door = _leaf(leaf, SLIDING_LEAF, 'SlidingDoorPhysics', key, openVelocity=kaVel.Vec4(SLIDING_SPEED, 0, 0, 0),
                 direction='Right', locked=key is not None)
    look(leaf, 'slidingDoor', 'wood')
    LeafVoice(leaf, (at[0], at[1] + SLIDING_LEAF[1] / 2, at[2]), turn, lambda: door.currentOffset, 'DoorSlide',
              shut='DoorSlideStop', stop='DoorSlideStop')
    iron = placed(leaf, 'iron')
    addVolume(iron, SLIDING_LEAF, 'BV_NONE')
    kaVel.addComponent(iron, 'parentFollower', 'ParentFollowerComponent')
    look(iron, 'slidingDoorIron', 'iron')
    return leaf


def _leaf(leaf: kaVel.Entity, size: Triple, className: Literal['DoorPhysics', 'SlidingDoorPhysics'],
          key: str | None, **properties: Any) -> Any:
    """Gives a leaf its volume and the body that moves it, which is returned."""
    volume = addVolume(leaf, size, 'BV_DOOR')
    door = kaVel.addComponent(leaf, 'physics', className, **properties)
    if key is None:
        volume.setInteractFunc(door.interact)
    else:
        lock = _lockOf(leaf, door, key)
        volume.setInteractFunc(lambda player: lock.holds() or door.interact(player))
    marked(leaf, lambda: 'locked' if door.locked else 'use')
    keep(door, 'locked')
    return door


def _lockOf(leaf: kaVel.Entity, door: Any, key: str | None) -> Lock:
    """The lock of a door's leaf, which is the door's own."""
    voice = sounds(leaf, 'DoorLocked', 'DoorHandle', 'DoorLatch')

    def unlock():
        door.locked = False
        kaVel.persist(door, 'setLocked', False)
        for event in ('DoorHandle', 'DoorLatch'):
            voice.playSoundEffect(event)

    return Lock(leaf, key, lambda: door.locked, unlock, lambda: voice.playSoundEffect('DoorLocked'))


def _byHand(leaf: kaVel.Entity, door: kaVel.DoorPhysics, voice: LeafVoice, key: str | None):
    """Has a leaf that swings follow the hand; in a level without hands each use is a tap."""
    grip = Swing(leaf, door, voice, _lockOf(leaf, door, key))

    def use(player: kaVel.AnyObject):
        hands = handsOf(leaf)
        if hands:
            hands.press(grip)
        elif not grip.lock.holds():
            door.interact(player)

    leaf.getComponent('boundingVolume').setInteractFunc(use)
    marked(leaf, lambda: 'locked' if door.locked else 'hold')


class Swing:
    """A leaf on its hinge, in the hand or out of it.

    The hand leads the handle by where it would be if it were not for the hinge, so that pushing, pulling and walking
    all move the leaf; what stands in its way stops it as ever. Led shut, it stays shut until the hand means it.
    """

    def __init__(self, leaf: kaVel.Entity, door: kaVel.DoorPhysics, voice: LeafVoice, lock: Lock):
        self.leaf, self.door, self.voice, self.lock = leaf, door, voice, lock
        self.transform = leaf.getComponent('transform')
        self.side = 0.0  # on which the leaf stands open, as the sign of its angles

    def tap(self, hands: Hands):
        if not self.leaf or self.lock.holds():
            return
        self.door.interact(hands.player)

    def begin(self, hands: Hands) -> bool:
        if not self.leaf or self.lock.holds():
            return False
        self.door.prevAngle = self.door.prevAngle  # its own swing ends
        self.side = _sign(self.door.prevAngle)
        self.voice.soften(GENTLY)
        return True

    def point(self) -> Triple:
        return self._at(*HANDLE)

    def follow(self, hand: Triple, seconds: float) -> bool:
        if not self.leaf:
            return False
        handle = self.point()
        off = hand[0] - handle[0], hand[2] - handle[2]
        hinge = self._at(self.door.pivotPosition.x, HANDLE[1])
        x, z = handle[0] - hinge[0], handle[2] - hinge[2]
        arm = math.hypot(x, z)
        # How far the hand is off along the way that the handle goes when the angle grows, metres.
        way = self.door.pivot.y * (off[0] * z - off[1] * x) / arm
        speed = self._speed(way, seconds)
        self.door.angularVelocity = kaVel.Vec4(0, speed * self.door.pivot.y, 0, 0)
        return True

    def _speed(self, way: float, seconds: float) -> float:
        """Radians a second for a hand that is `way` metres off."""
        angle = self.door.prevAngle
        if abs(angle) < SHUT:
            if abs(way) < LATCH:
                return -angle / seconds
            self.side = _sign(way)
        speed = max(-FASTEST, min(FASTEST, PULL * way))
        return -angle / seconds if (angle + speed * seconds) * self.side < 0 else speed

    def end(self, hands: Hands):
        """Leaves the leaf where it is, open or shut as it stands."""
        if not self.leaf:
            return
        self.voice.soften(1.0)
        angle = self.door.prevAngle
        isOpen = abs(angle) > SHUT
        self.door.open = isOpen
        self.door.prevAngle = angle if isOpen else 0.0
        kaVel.persist(self.door, 'setOpen', isOpen)
        kaVel.persist(self.door, 'setPrevAngle', self.door.prevAngle)

    def _at(self, across: float, up: float) -> Triple:
        place = self.transform.position
        x, y, z = along(self.transform.orientation, across, up, 0.0)
        return place.x + x, place.y + y, place.z + z


def _sign(value: float) -> float:
    return math.copysign(1.0, value) if value else 0.0
