"""The gate at the head of the stairs: a lattice that a crank winds aside, which has been taken off and is heard."""

from __future__ import annotations

from typing import Callable

import kaVel
import objects.GameObjects as place
import words
from kaVel import Entity, MapRootEntity
from nightfall.Made import boxes
from nightfall.Plan import STAIRS_HEAD, STAIRS_WIDTH, STAIRS_X, UP, WEST
from objects.Placing import Triple, addVolume, onFrame, placed, turned
from objects.player.Hands import Hands, handsOf
from objects.player.Pockets import pocketsOf, taken
from objects.screen.Marks import marked
from objects.things.Bodies import addWall

WINDS, SINKS = 11.0, 30.0  # seconds that it takes to open, and to close again by its weight once it is let go
WAY = STAIRS_WIDTH + 0.04  # metres that it goes aside, behind the railing
HIGH, BEFORE = 2.0, 0.13   # metres: its height, and how far it stands before the railing
CRANK: Triple = (20.56, UP + 1.1, 16.1)
TURNS = 5.0                # of the crank, from shut to open
CLICK = 1 / 24             # share of the way from click to click of its pawl
HANDLE = 'gateHandle'      # what the pockets hold who has the crank
LIES: Triple = (11.12, UP + 0.015, 15.75)  # the crank, at the foot of the clock


class StairGate:
    """Shut at first. Who has put the crank on and holds it winds it open, bit by bit; wide open it stays so."""

    def __init__(self, map: MapRootEntity, room: Entity, moved: Callable[[float, float], object],
                 tell: Callable[[words.Told], object]):
        self.moved, self.tell, self.share, self.isOpen, self.isHeld = moved, tell, 0.0, False, False
        self.shutAt = kaVel.Vec4(STAIRS_X, UP + 0.02 + HIGH / 2, STAIRS_HEAD - BEFORE, 1)
        self.gate = _lattice(map, (self.shutAt.x, self.shutAt.y, self.shutAt.z))
        self.place = self.gate.getComponent('transform')
        crank = _crank(room)
        self.arm, self.armIsSeen = crank.getComponent('transform'), crank.getComponent('graphics2')
        self.armIsSeen.visible = False
        _handle(map)
        self.clock = place.LevelClock(self.gate)
        self.voice = place.sounds(self.gate, 'DoorSlide', 'DoorSlideStop')
        self.pawl = place.sounds(placed(map, 'crankVoice', at=CRANK), 'Button', 'Lever')
        self.handle = placed(map, 'crank', at=CRANK)
        addVolume(self.handle, (0.3, 0.6, 0.6), 'BV_NONE').setInteractFunc(lambda player: self.press())
        marked(self.handle, lambda: 'hold' if self.isWhole() else 'use')
        onFrame(self.gate, self.sink)

    def isWhole(self) -> bool:
        """Whether the crank is on, or can be put on."""
        return self.isOpen or pocketsOf(self.gate).has(HANDLE)

    def press(self):
        hands = handsOf(self.gate)
        if not self.isWhole():
            self.tell(words.said('nightfall.gateBare'))
        elif hands and not self.isOpen:
            self.armIsSeen.visible = True
            hands.press(self)

    # What a hand asks of it

    def tap(self, hands: Hands):
        self.pawl.playSoundEffect('Button')

    def begin(self, hands: Hands) -> bool:
        self.isHeld = not self.isOpen
        if self.isHeld:
            self.voice.playSoundEffect('DoorSlide')
        return self.isHeld

    def point(self) -> Triple:
        return CRANK

    def follow(self, hand: Triple, seconds: float) -> bool:
        self.move(self.share + seconds / WINDS)
        if self.share >= 1.0:
            self.latch()
        return self.isHeld

    def end(self, hands: Hands):
        self.isHeld = False
        if self.share <= 0.0 or self.isOpen:
            self.voice.stopSoundEffect('DoorSlide')

    # How it moves

    def sink(self):
        """Closes slowly while nobody holds it."""
        if self.isHeld or self.isOpen or self.share <= 0.0:
            return
        self.move(self.share - self.clock.frameSeconds() / SINKS)
        if self.share <= 0.0:
            self.voice.stopSoundEffect('DoorSlide')
            self.voice.playSoundEffect('DoorSlideStop')

    def move(self, share: float):
        before, self.share = self.share, min(1.0, max(0.0, share))
        self.place.position = self.shutAt + kaVel.Vec4(-WAY * self.share, 0, 0, 0)
        self.arm.orientation = turned(WEST, roll=360.0 * TURNS * self.share)
        if int(before / CLICK) != int(self.share / CLICK):
            self.pawl.playSoundEffect('Button')
        self.moved(before, self.share)

    def latch(self):
        self.isOpen, self.isHeld = True, False
        self.pawl.playSoundEffect('Lever')
        self.voice.stopSoundEffect('DoorSlide')

    def stand(self):
        """Has it be open, as it was left."""
        self.share, self.isOpen = 1.0, True
        self.armIsSeen.visible = True
        self.place.position = self.shutAt + kaVel.Vec4(-WAY, 0, 0, 0)


def _lattice(map: MapRootEntity, at: Triple) -> Entity:
    gate = placed(map, 'stairGate', at=at)
    addWall(gate, (STAIRS_WIDTH, HIGH, 0.06))
    half, high = STAIRS_WIDTH / 2, HIGH / 2
    bars = 11
    mesh = boxes(*(((x - 0.011, -high, -0.011), (x + 0.011, high, 0.011))
                   for x in (-half + 0.02 + (2 * half - 0.04) * number / (bars - 1) for number in range(bars))),
                 *(((-half, y - 0.02, -0.018), (half, y + 0.02, 0.018)) for y in (0.02 - high, -0.1, high - 0.02)))
    asset = kaVel.make('DynamicMeshAsset', parent=gate, name='mesh')
    asset.setMeshData(mesh)
    kaVel.addComponent(gate, 'graphics2', 'ModelGraphicsComponent2', layer='WORLD', mesh=asset, castShadows=True,
                       **place.mapsOf('iron'))
    return gate


def _crank(room: Entity) -> Entity:
    """A plate on the wall with a square end, and the arm that turns on it, which is returned."""
    x, y, z = CRANK
    place.Built(room, 'crankPlate', mesh=boxes(((-0.14, -0.2, 0.0), (0.14, 0.2, 0.03)),
                                               ((-0.05, -0.05, 0.03), (0.05, 0.05, 0.07))),
                at=(x + 0.04, y, z), turn=WEST, surface='iron')
    return place.Built(room, 'crankArm', mesh=_arm(), at=(x - 0.03, y, z), turn=WEST, surface='brass')


def _arm() -> kaVel.MeshBuilder:
    return boxes(((-0.022, -0.03, 0.0), (0.022, 0.26, 0.024)), ((-0.02, 0.22, 0.024), (0.02, 0.26, 0.13)))


def _handle(map: MapRootEntity):
    """The crank where it lies until the player takes it."""
    handle = place.Built(map, HANDLE, mesh=_arm(), at=LIES, turn=35, surface='brass')
    volume = addVolume(placed(handle, 'reach', at=LIES), (0.35, 0.2, 0.35), 'BV_NONE')
    called = words.said('nightfall.gateHandle')
    taken(handle, volume, lambda pockets: pockets.add(HANDLE, called),
          lambda: pocketsOf(handle).tell(words.said('keys.taken', what=called)), 'PickUp')
    marked(volume.parent, 'take')
