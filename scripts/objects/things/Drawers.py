"""Drawers that are drawn by the hand, and the chest that they are in.

    chest = place.Chest(map, 'chest', at=(2.7, 0, 1), turn=270)
    drawer = chest.getChild('drawer2')
    place.Key(drawer, 'deskKey', at=place.inDrawer(drawer), opens='deskKey')

What hangs below a drawer's entity lies in it: it goes with the drawer and can be taken while that stands open.
"""

from __future__ import annotations

import kaVel
from objects.Placing import LevelClock, Triple, addVolume, around, layerFor, placed, turned
from objects.player.Hands import Hands, along, handsOf
from objects.screen.Marks import marked
from objects.sound.Sounds import LeafVoice, sounds
from objects.things.Bodies import Block
from objects.things.Drawn import Built
from objects.things.Keys import Lock
from objects.things.Models import mapsOf

SIZE = (0.62, 0.17, 0.40)  # of a drawer: width, height and depth, metres
WAY = 0.32                 # metres that a drawer comes out
OPEN = 0.10                # metres from which on one can reach into it
BOARD, FRONT = 0.012, 0.02  # thickness of its sides and its front, metres
PULL, FASTEST = 9.0, 0.6   # speed of a drawer for a metre that the hand is off, and at most; metres a second
TAPPED = 1.1               # metres a second of one that is drawn with a jerk
GENTLY = 0.35              # how loud it is in the hand, of what it is then
FRONT_NAME = 'front'
BODY = 0.34                # metres from a player's middle to a drawer's front that it stops before


class Sliding:
    """A drawer, in the hand or out of it: where it is put it stays, and a map that is loaded again finds it there."""

    def __init__(self, entity: kaVel.Entity, at: Triple, turn: float, size: Triple, key: str | None):
        self.entity, self.size, self.at, self.turn = entity, size, at, turn
        self.transform = entity.getComponent('transform')
        self.axis = around((0, 0, 0), turn, 0, 0, 1)
        self.offset, self.goal = 0.0, None
        self.shown = 0.0  # offset of what is drawn
        self.clock = LevelClock(entity)
        self.bolt = kaVel.make('Entity', parent=entity, name='lock') if key is not None else None
        self.voice = LeafVoice(entity, around(at, turn, 0, 0, size[2] / 2), turn, lambda: self.offset, 'ScrapeWood',
                               shut='ImpactWood')
        rattle = sounds(entity, 'DoorLocked', 'DoorLatch')
        self.lock = Lock(entity, key, self._isLocked, lambda: self._unlock(rattle),
                         lambda: rattle.playSoundEffect('DoorLocked'))
        kaVel.addComponent(entity, 'form', 'ScriptComponent', frameCallback=self.doFrame, loadCallback=self._takeUp)

    def _isLocked(self) -> bool:
        return self.bolt is not None and bool(self.bolt) and not self.bolt.isDying()

    def _unlock(self, voice: kaVel.SoundComponent):
        if self.bolt:
            kaVel.persist(self.bolt, 'murder')
            self.bolt.murder()
        voice.playSoundEffect('DoorLatch')

    # In the hand

    def tap(self, hands: Hands):
        if not self.entity or self.lock.holds():
            return
        self.goal = 0.0 if self.offset > WAY / 2 else WAY

    def begin(self, hands: Hands) -> bool:
        if not self.entity or self.lock.holds():
            return False
        self.goal = None
        self.voice.soften(GENTLY)
        return True

    def point(self) -> Triple:
        return around(self.at, self.turn, 0, 0, self.size[2] / 2 + self.offset)

    def follow(self, hand: Triple, seconds: float) -> bool:
        if not self.entity:
            return False
        point = self.point()
        way = (hand[0] - point[0]) * self.axis[0] + (hand[2] - point[2]) * self.axis[2]
        self._slide(max(-FASTEST, min(FASTEST, PULL * way)) * seconds, hands=handsOf(self.entity))
        return True

    def end(self, hands: Hands):
        self.voice.soften(1.0)
        self._keep()

    # A frame

    def doFrame(self):
        if self.goal is not None:
            left, most = self.goal - self.offset, TAPPED * self.clock.frameSeconds()
            before = self.offset
            self._slide(max(-most, min(most, left)), handsOf(self.entity))
            if self.offset in (self.goal, before):
                self.goal = None
                self._keep()
        if self.shown != self.offset:
            self._show()

    def _slide(self, way: float, hands: Hands | None):
        wanted = max(0.0, min(WAY, self.offset + way))
        if way > 0 and hands and self._stands(hands, wanted):
            return
        self.offset = wanted

    def _stands(self, hands: Hands, offset: float) -> bool:
        """Whether the player's body is in the way of a drawer that comes out so far."""
        eye = hands.place(0, 0, 0)
        right, ahead = self._seen(eye)
        return abs(right) < self.size[0] / 2 + BODY / 2 and 0 < ahead - offset < BODY

    def _seen(self, place: Triple) -> tuple[float, float]:
        """Where a place lies from the shut front, over the floor: to the right and ahead."""
        x, _, z = around(self.at, self.turn, 0, 0, self.size[2] / 2)
        away = kaVel.Vec4(place[0] - x, 0, place[2] - z, 0)
        right, _, ahead = along(turned(-self.turn), away.x, 0, away.z)
        return right, ahead

    def _takeUp(self):
        """Takes the place that a map which was loaded again has given it."""
        at = self.transform.position
        out = (at.x - self.at[0]) * self.axis[0] + (at.z - self.at[2]) * self.axis[2]
        self.offset = min(WAY, out) if out > 1e-3 else 0.0
        self.voice.last = self.offset
        self.transform.position = kaVel.Vec4(*self.at, 1)
        self._show()

    def _show(self):
        """Takes the drawer and all that lies in it to where it is."""
        moved = self.offset - self.shown
        for thing in kaVel.descendants(self.entity):
            if thing._getType().isSubclassOf(kaVel.Reflection.TransformComponent):
                at = thing.position
                thing.position = kaVel.Vec4(at.x + moved * self.axis[0], at.y, at.z + moved * self.axis[2], 1)
        self.shown = self.offset
        self._reachInto()

    def _reachInto(self):
        """Lets what lies in it be taken while it stands open."""
        for thing in kaVel.descendants(self.entity):
            isVolume = thing._getType().isSubclassOf(kaVel.Reflection.BoundingVolume)
            if isVolume and thing.triggerFunc and thing.parent.name != FRONT_NAME:
                thing.interact = self.offset > OPEN

    def _keep(self):
        kaVel.persist(self.transform, 'setPosition', kaVel.Vec4(*around(self.at, self.turn, 0, 0, self.offset), 1))


@kaVel.pattern
def Drawer(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, size: Triple = SIZE,
           key: str | None = None, knobs: int = 2):
    """A drawer whose middle is at `at` when it is shut, and which comes out to where `turn` faces.

    It needs a hole of its `size` in what it is in. With a `key` it is locked.
    """
    wide, high, deep = size
    inner, bottom, rim = wide / 2 - 0.01, 0.01 - high / 2, high / 2 - 0.03
    drawer = placed(parent, name, at=at, turn=turn)
    addVolume(drawer, (wide, high, 0.05), 'BV_NONE')
    mesh = kaVel.MeshBuilder()
    for x0, x1, y0, y1, z0, z1 in (
            (-wide / 2, wide / 2, -high / 2, high / 2, deep / 2 - FRONT, deep / 2),
            (-inner, inner, bottom, bottom + BOARD, -deep / 2, deep / 2 - FRONT),
            (-inner, inner, bottom, rim, -deep / 2, -deep / 2 + BOARD),
            (-inner, BOARD - inner, bottom, rim, -deep / 2, deep / 2 - FRONT),
            (inner - BOARD, inner, bottom, rim, -deep / 2, deep / 2 - FRONT)):
        _board(mesh, (x0, y0, z0), (x1, y1, z1))
    mesh.generateTangents()
    _dress(drawer, mesh, 'wood')
    brass = kaVel.MeshBuilder()
    for number in range(knobs):
        x = wide * ((number + 0.5) / knobs - 0.5)
        for radius, length, z in ((0.009, 0.022, 0.008), (0.017, 0.010, 0.024)):
            brass.addCylinder(radius, length, 14, at=kaVel.Vec4(x, 0, deep / 2 + z, 1), turn=turned(0, pitch=90))
    fittings = placed(drawer, 'knobs', at=at, turn=turn)
    addVolume(fittings, (wide, high, 2 * deep), 'BV_NONE')
    brass.generateTangents()
    _dress(fittings, brass, 'brass')
    sliding = Sliding(drawer, at, turn, size, key)
    _front(drawer, sliding)
    return drawer


def _front(drawer: kaVel.Entity, sliding: Sliding):
    """The front of a drawer, by which it is gripped."""
    front = placed(drawer, FRONT_NAME, at=sliding.point(), turn=sliding.turn)
    volume = addVolume(front, (sliding.size[0], sliding.size[1], 0.05), 'BV_NONE')

    def use(player: kaVel.AnyObject):
        hands = handsOf(drawer)
        if hands:
            hands.press(sliding)

    volume.setInteractFunc(use)
    marked(front, lambda: 'locked' if sliding.lock.isLocked() else 'hold')


CHEST_BOARD, CHEST_GAP = 0.022, 0.006  # metres
CHEST_FOOT = 0.07


def chestHeight(drawers: int) -> float:
    """Height of a chest's top above its foot, metres."""
    return CHEST_FOOT + CHEST_BOARD + drawers * (SIZE[1] + CHEST_BOARD)


@kaVel.pattern
def Chest(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, drawers: int = 4,
          keys: dict[int, str] | None = None):
    """A chest of drawers, 0.7 m wide, which stands on `at` with its back 0.22 m behind; the drawers are its children
    'drawer1', at the top, and so on. `keys` has the keys of those that are locked, by their numbers."""
    wide, deep, high = SIZE[0] + 2 * CHEST_GAP, SIZE[2], chestHeight(drawers)
    outer, back, front = wide / 2 + CHEST_BOARD, -deep / 2 - 0.02, deep / 2 - FRONT
    mesh = kaVel.MeshBuilder()
    for side in (-1.0, 1.0):
        x0, x1 = sorted((side * wide / 2, side * outer))
        _board(mesh, (x0, 0, back), (x1, high, front + 0.012), upright=True)
    _board(mesh, (-wide / 2, CHEST_FOOT, back), (wide / 2, high, back + 0.01))
    _board(mesh, (-outer - 0.015, high - 0.002, back - 0.005), (outer + 0.015, high + 0.022, front + 0.032))
    _board(mesh, (-wide / 2, 0.012, front - 0.03), (wide / 2, CHEST_FOOT, front))
    for number in range(drawers + 1):
        y = CHEST_FOOT + number * (SIZE[1] + CHEST_BOARD)
        _board(mesh, (-wide / 2, y, back), (wide / 2, y + CHEST_BOARD, front + 0.004))
    mesh.generateTangents()
    chest = Built(parent, name, mesh=mesh, at=at, turn=turn, surface='wood')
    for number in range(1, drawers + 1):
        Drawer(chest, 'drawer%d' % number, at=around(at, turn, 0, _middle(drawers, number), 0), turn=turn,
               size=(SIZE[0], SIZE[1] - CHEST_GAP, SIZE[2]), key=(keys or {}).get(number))
    # Short of the fronts, so that they are what one points at.
    Block(chest, 'block', at=around(at, turn, 0, 0, (back + front) / 2 - 0.01), turn=turn,
          size=(2 * outer, high + 0.02, front - back - 0.02))
    return chest


def _middle(drawers: int, number: int) -> float:
    """Height of the middle of a chest's drawer, counted from the top."""
    return CHEST_FOOT + CHEST_BOARD + (drawers - number) * (SIZE[1] + CHEST_BOARD) + SIZE[1] / 2


def inDrawer(drawer: kaVel.Entity, right: float = 0.0, ahead: float = -0.05) -> Triple:
    """A place on the bottom of a drawer that was just built, from its middle; metres."""
    transform = drawer.getComponent('transform')
    x, y, z = along(transform.orientation, right, 0.012 + BOARD - SIZE[1] / 2, ahead)
    at = transform.position
    return at.x + x, at.y + y, at.z + z


def _board(mesh: kaVel.MeshBuilder, low: Triple, high: Triple, upright: bool = False):
    """A board between two corners, whose grain runs along x, or up."""
    sides = [b - a for a, b in zip(low, high)]
    if upright:
        sides[0], sides[1] = sides[1], sides[0]
    board = kaVel.MeshBuilder()
    board.addBox(kaVel.Vec4(*(side / 2 for side in sides), 0))
    board.applyWorldTextureCoordinates(1.0, at=kaVel.Vec4(low[1] * 3.1, low[2] * 2.3 + low[1] * 1.7, low[0], 1))
    middle = (kaVel.Vec4(*((a + b) / 2 for a, b in zip(low, high)), 1))
    mesh.merge(board, at=middle, turn=turned(0, roll=90) if upright else turned(0))


def _dress(entity: kaVel.Entity, mesh: kaVel.MeshBuilder, surface: str):
    asset = kaVel.make('DynamicMeshAsset', parent=entity, name='mesh')
    asset.setMeshData(mesh)
    kaVel.addComponent(entity, 'graphics2', 'ModelGraphicsComponent2', layer=layerFor(entity), mesh=asset,
                       castShadows=True, **mapsOf(surface))
