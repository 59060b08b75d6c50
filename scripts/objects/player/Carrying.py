"""What is picked up, carried before the eyes, dropped and thrown: crates, bottles, bolts.

    place.LooseCrate(map, 'smallCrate', at=(2, 0, 1))
    place.LooseBottle(map, 'bottle', at=(1, 0.77, 3))
    place.Bolt(map, 'bolt1', at=(1.2, 0.77, 3))

Use takes a crate or a bottle before the eyes, where it follows with some lag and keeps out of walls; the next use drops
it, the action 'throw' throws it. Bolts go into the pockets, and 'throw' with empty hands throws one. Where a thing
lands it is heard, as a body of its map (see `hear`). What is heavier, as a `CargoCrate`, is only pushed.
"""

from __future__ import annotations

import math
from typing import Callable, NamedTuple, Sequence

import kaVel
import words
from objects.creatures.Creatures import shaped
from objects.Placing import Triple, addVolume, cube, layerFor, placed, turned
from objects.player.Hands import Hands, along, handsOf
from objects.player.Pockets import Pockets, pocketsOf, taken
from objects.screen.Marks import marked
from objects.sound.Sounds import BODIES, heardAs, sounds
from objects.things.Bodies import addBody
from objects.things.Models import mapsOf
from saves.Kept import keep, keepPart

HOLD = (0.13, -0.12, 0.52)  # where near side and top of a carried thing are, of the eyes: right, up, ahead; metres
NEAREST = 0.34              # metres from the eyes over the floor to the near side of what is carried
LOWEST = 1.35               # metres below the eyes, at most
LAG = 15.0                  # part of the way to the hand that a thing makes good in a second, of one without weight
CAUGHT = 0.3                # seconds with something solid before a thing after which the hand loses it
CLEAR = 0.015               # metres between a carried thing and a wall

STRONGEST = 60.0    # of a throw, kilograms times metres a second
FASTEST = 11.0      # metres a second
UPWARDS = 0.12      # of a throw's direction
BOUNCE, RUB = 0.25, 0.65  # parts of the speed against and along a wall that a flying thing keeps
AT_REST = 0.25      # metres a second, and
RESTING = 0.4       # seconds, after which a flight has ended
TUMBLE = 7.0        # radians a second
LEVELS = 9.0        # as `LAG`, of how a thing that has landed lies down

BOLT = 'bolt'       # the bolts in the pockets
THROWN = 'thrownBolt'  # and those that were thrown, with a number


class Kind(NamedTuple):
    """What a thing is like: full extents in metres, kilograms, what it is heard as, and what breaks it."""

    size: Triple
    mass: float
    volumeType: kaVel.BoundingVolume.VolumeTypeName
    impact: str
    motion: str
    breaksAt: float = math.inf  # speed against what it meets, metres a second
    lies: float = 0.0           # roll in which it comes to rest, degrees
    slides: float = 0.03        # part of its speed that is left after a second


class Thing:
    """A body that can be carried. In the hand it has no body: nothing pushes it, and it pushes nobody."""

    def __init__(self, entity: kaVel.Entity, kind: Kind,
                 whenBroken: Callable[[kaVel.Entity, Triple], object] | None = None, velocity: Triple = (0, 0, 0)):
        self.entity, self.kind, self.whenBroken = entity, kind, whenBroken
        self.transform = entity.getComponent('transform')
        self.volume = addVolume(entity, kind.size, kind.volumeType)
        self.half = min(kind.size) / 2
        self.reach = max(kind.size[0], kind.size[2]) / 2
        self.caught = self.still = self.speed = 0.0
        self.levelling = False
        self._embody(velocity)

    def _embody(self, velocity: Triple):
        # The air takes nothing of a throw, the floor does; heard from now on, it is not struck by the hand itself.
        damping = 1.0 if any(velocity) else self.kind.slides
        addBody(self.entity, self.kind.mass, damping=damping, velocity=kaVel.Vec4(*velocity, 0))
        heardAs(self.entity, self.kind.impact, self.kind.motion)

    def place(self) -> Triple:
        at = self.transform.position
        return at.x, at.y, at.z

    # In the hand

    def begin(self):
        self.volume.volumeType = 'BV_NONE'
        self.volume.interact = False
        self.entity.getComponent('physics').murder()
        self.caught = 0.0

    def carry(self, hands: Hands, seconds: float) -> bool:
        """Comes along for a frame; false when it was lost on the way."""
        if not self.entity or self.entity.isDying():
            return False
        part = 1.0 - math.exp(-LAG / (1.0 + 0.05 * self.kind.mass) * seconds)
        target = self._clear(hands, self._target(hands))
        at = self.place()
        self._put(self._clear(hands, _along(at, [b - a for a, b in zip(at, target)], part)))
        self._turn(_heading(hands), part)
        blocked = _solid(self.entity, hands.place(0, 0, 0), self.place(), hands.player)
        self.caught = self.caught + seconds if blocked.collided else 0.0
        if self.caught > CAUGHT:
            self.drop(hands)
            return False
        return True

    def _target(self, hands: Hands) -> Triple:
        """Where the hand wants it: ahead of the eyes, beside the body and over the floor."""
        eye = hands.place(0, 0, 0)
        x, y, z = hands.place(HOLD[0], HOLD[1] - self.kind.size[1] / 2, HOLD[2] + self.reach)
        s, c = hands.heading()
        lacking = NEAREST + self.reach - ((x - eye[0]) * s + (z - eye[2]) * c)
        if lacking > 0:
            x, z = x + lacking * s, z + lacking * c
        return x, max(y, eye[1] - LOWEST), z

    def _clear(self, hands: Hands, at: Triple) -> Triple:
        """A place on the way there from the eyes at which it stands in no wall."""
        eye = hands.place(0, 0, 0)
        way = [b - a for a, b in zip(eye, at)]
        length = math.hypot(*way)
        if length < 1e-3:
            return at
        room = (self.half + CLEAR) / length
        hit = _solid(self.entity, eye, _along(at, way, room), hands.player)
        if hit.collided:
            at = _along((hit.point.x, hit.point.y, hit.point.z), way, -room)
        for side in _SIDES:  # a corner of it may still stand in something beside it
            reach = self.kind.size[1] / 2 if side[1] else self.reach
            hit = _solid(self.entity, at, _along(at, side, reach), hands.player)
            if hit.collided:
                at = _along(at, side, reach * (hit.t - 1.0))
        return at

    def _put(self, at: Triple):
        self.transform.position = kaVel.Vec4(*at, 1)

    def _turn(self, degrees: float, part: float, roll: float = 0.0):
        self.transform.orientation = _between(self.transform.orientation, turned(degrees, roll=roll), part)

    # Out of it

    def drop(self, hands: Hands):
        self._release(hands, (0, 0, 0))

    def throw(self, hands: Hands):
        speed = min(FASTEST, STRONGEST / self.kind.mass)
        self._release(hands, _throwing(hands, speed))

    def _release(self, hands: Hands, velocity: Triple):
        if not self.entity or self.entity.isDying():
            return
        self.volume.volumeType = self.kind.volumeType
        self.volume.interact = True
        self._embody(velocity)
        kaVel.finishLoad(self.entity.getComponent('physics'))
        self.launch(hands, any(velocity))

    def launch(self, hands: Hands, tumbles: bool):
        """Watches over its flight: what is fast would pass through what is thin."""
        body = self.entity.getComponent('physics')
        if tumbles:
            x, y, z = (TUMBLE * part for part in along(self.transform.orientation, 1.0, 0.0, 0.35))
            body.angularVelocity = kaVel.Vec4(x, y, z, 0)
        self.still = self.speed = 0.0
        self.levelling = False
        hands.flying.append(self)

    def fly(self, player: kaVel.Entity, seconds: float) -> bool:
        """A frame of its flight; false when it has ended."""
        body = self.entity.getComponent('physics') if self.entity and not self.entity.isDying() else None
        if not body:
            return False
        velocity = body.velocity
        speed = math.hypot(velocity.x, velocity.y, velocity.z)
        lost, self.speed = self.speed - speed, speed
        met = self._meet(body, player, seconds) if speed > 1.0 else 0.0
        struck = max(met, lost)
        if struck > self.kind.breaksAt:
            self._break()
            return False
        if struck > 1.0 or speed < AT_REST:
            self.levelling = True
            body.damping = self.kind.slides
        if self.levelling:
            body.angularVelocity = kaVel.Vec4(0, 0, 0, 0)
            self._turn(_yaw(self.transform.orientation), 1.0 - math.exp(-LEVELS * seconds), self.kind.lies)
        self.still = self.still + seconds if speed < AT_REST else 0.0
        return self.still < RESTING

    def _meet(self, body: kaVel.RigidBody, player: kaVel.Entity, seconds: float) -> float:
        """Has it bounce off what it would reach in this frame; the speed at which it meets that."""
        v, at = body.velocity, self.place()
        length = math.hypot(v.x, v.y, v.z)
        ahead = seconds + self.half / length
        hit = _solid(self.entity, at, (at[0] + v.x * ahead, at[1] + v.y * ahead, at[2] + v.z * ahead), player)
        n = hit.normal if hit.collided else None
        closing = -(v.x * n.x + v.y * n.y + v.z * n.z) if n else 0.0
        if not n or closing <= 0.0:
            return 0.0
        away = [RUB * (part + closing * normal) + BOUNCE * closing * normal
                for part, normal in ((v.x, n.x), (v.y, n.y), (v.z, n.z))]
        body.velocity = kaVel.Vec4(*away, 0)
        self.speed = math.hypot(*away)
        self._put((hit.point.x + n.x * self.half, hit.point.y + n.y * self.half, hit.point.z + n.z * self.half))
        return closing

    def _break(self):
        if self.whenBroken:
            self.whenBroken(self.entity, self.place())
            kaVel.persist(self.entity, 'murder')
        self.entity.murder()


_SIDES: tuple[Triple, ...] = ((1, 0, 0), (-1, 0, 0), (0, 0, 1), (0, 0, -1), (0, -1, 0))


def _along(at: Triple, way: Sequence[float], part: float) -> Triple:
    """A place a part of a way from another one."""
    return at[0] + part * way[0], at[1] + part * way[1], at[2] + part * way[2]


def _solid(thing: kaVel.Entity, start: Triple, end: Triple, player: kaVel.Entity) -> kaVel.SegmentHit:
    """The first solid thing between two places that is neither the player nor what he holds."""
    map = thing.getAncestorOfType(kaVel.Reflection.MapRootEntity)
    return kaVel.Reflection.findSolidBetween(map, kaVel.Vec4(*start, 1), kaVel.Vec4(*end, 1), thing, player)


def _heading(hands: Hands) -> float:
    s, c = hands.heading()
    return math.degrees(math.atan2(s, c))


def _yaw(orientation: kaVel.Quaternion) -> float:
    x, _, z = along(orientation, 0, 0, 1)
    return math.degrees(math.atan2(x, z))


def _between(a: kaVel.Quaternion, b: kaVel.Quaternion, part: float) -> kaVel.Quaternion:
    """An orientation on the shorter way from one to another."""
    sign = 1.0 if a.r * b.r + a.i * b.i + a.j * b.j + a.k * b.k >= 0 else -1.0
    mixed = kaVel.Quaternion(*(one + (sign * other - one) * part
                               for one, other in ((a.r, b.r), (a.i, b.i), (a.j, b.j), (a.k, b.k))))
    mixed.normalize()
    return mixed


def _throwing(hands: Hands, speed: float) -> Triple:
    """Velocity of what a player throws: where he looks and a little upwards, and on with him."""
    eye, body = hands.eye(), hands.player.getComponent('physics')
    if not eye or not body:
        return 0.0, 0.0, 0.0
    x, y, z = along(eye.orientation, 0, UPWARDS, 1)
    own = body.velocity
    return own.x + speed * x, speed * y, own.z + speed * z


def _carriable(entity: kaVel.Entity, thing: Thing):
    def take(player: kaVel.AnyObject):
        hands = handsOf(entity)
        if hands and hands.isFree():
            thing.begin()
            hands.take(thing)

    thing.volume.setInteractFunc(take)
    marked(entity, 'hold')
    keep(thing.transform, 'position', 'orientation')


@kaVel.pattern
def LooseCrate(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, edge: float = 0.32,
               mass: float = 6.0):
    """A small wooden crate that is carried and thrown; it stands on `at`."""
    crate = placed(parent, name, at=(at[0], at[1] + edge / 2, at[2]), turn=turn, scale=cube(edge / 0.6))
    thing = Thing(crate, Kind(cube(edge), mass, 'BV_BOX', *BODIES['wood']))
    kaVel.addComponent(crate, 'graphics2', 'ModelGraphicsComponent2', meshName='cargoCrate', layer=layerFor(crate),
                       castShadows=True, **mapsOf('wood'))
    _carriable(crate, thing)
    return crate


BOTTLE_HIGH = 0.30


def _bottle() -> kaVel.MeshBuilder:
    """A bottle around its middle."""
    mesh = kaVel.MeshBuilder()
    for radius, low, high in ((0.038, 0.0, 0.19), (0.028, 0.19, 0.21), (0.020, 0.205, 0.225), (0.014, 0.22, 0.29),
                              (0.018, 0.28, 0.30)):
        mesh.addCylinder(radius, high - low, 14, at=kaVel.Vec4(0, (low + high) / 2 - BOTTLE_HIGH / 2, 0, 1))
    return mesh


def _shards() -> kaVel.MeshBuilder:
    """What is left of a bottle, flat on the ground."""
    mesh = kaVel.MeshBuilder()
    for number in range(13):
        angle, away, size = number * 2.4, 0.03 + 0.021 * number, 0.018 + 0.004 * (number * 5 % 7)
        x, z = away * math.cos(angle), away * math.sin(angle)
        mesh.addBox(kaVel.Vec4(size, 0.0025, size * 0.55, 0), at=kaVel.Vec4(x, 0.005 + 0.002 * (number % 3), z, 1),
                    turn=turned(57.0 * number, roll=6.0 * (number % 4)))
    return mesh


def _shatter(bottle: kaVel.Entity, at: Triple):
    """Leaves shards below where a bottle has broken, with the sound of it."""
    map = bottle.getAncestorOfType(kaVel.Reflection.MapRootEntity)
    below = _solid(bottle, at, (at[0], at[1] - 4.0, at[2]), bottle)
    floor = below.point.y if below.collided else at[1]
    shards = placed(map, 'shardsOf' + bottle.name, at=(at[0], floor + 0.002, at[2]))
    addVolume(shards, (0.7, 0.1, 0.7), 'BV_NONE')
    shaped(shards, _shards, 'bottleGlass')
    voice = sounds(shards, 'BreakGlass')
    kaVel.finishLoad(shards)
    voice.placeEvent('BreakGlass', kaVel.Vec4(*at, 1))
    voice.playSoundEffect('BreakGlass')


@kaVel.pattern
def LooseBottle(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0):
    """A bottle that is carried and thrown, and breaks where it lands hard; it stands on `at`."""
    bottle = placed(parent, name or 'bottle', at=(at[0], at[1] + BOTTLE_HIGH / 2, at[2]), turn=turn)
    thing = Thing(bottle, Kind((0.08, BOTTLE_HIGH, 0.08), 0.9, 'BV_BOX', *BODIES['glass'], breaksAt=4.0), _shatter)
    shaped(bottle, _bottle, 'bottleGlass')
    _carriable(bottle, thing)
    return bottle


def _bolt() -> kaVel.MeshBuilder:
    """An iron bolt 9 cm long that lies along z."""
    mesh = kaVel.MeshBuilder()
    along_ = turned(0, pitch=90)
    mesh.addCylinder(0.0075, 0.075, 9, at=kaVel.Vec4(0, 0, 0.008, 1), turn=along_)
    mesh.addCylinder(0.0150, 0.014, 6, at=kaVel.Vec4(0, 0, -0.035, 1), turn=along_)
    mesh.addCylinder(0.0135, 0.012, 6, at=kaVel.Vec4(0, 0, 0.032, 1), turn=along_)
    mesh.flattenNormals()
    return mesh


BOLT_KIND = Kind((0.05, 0.05, 0.09), 0.3, 'BV_BOX', 'BoltOnStone', '', slides=0.01)


@kaVel.pattern
def Bolt(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0):
    """An iron bolt that lies on `at`; it goes into the pocket, and 'throw' with empty hands throws it."""
    return _lyingBolt(parent, name, (at[0], at[1] + 0.026, at[2]), turn, True).entity


def _lyingBolt(parent: kaVel.Object, name: str, at: Triple, turn: float, isKept: bool,
               velocity: Triple = (0, 0, 0)) -> Thing:
    bolt = placed(parent, name, at=at, turn=turn)
    thing = Thing(bolt, BOLT_KIND, velocity=velocity)
    shaped(bolt, _bolt, 'iron')

    def told():
        pockets = pocketsOf(bolt)
        pockets.tell(words.said('carrying.bolts', count=pockets.count(BOLT)))

    around = placed(bolt, 'around', at=at)  # larger than the bolt, which is hard to point at
    volume = addVolume(around, cube(0.16), 'BV_NONE')
    kaVel.addComponent(around, 'parentFollower', 'ParentFollowerComponent')
    taken(bolt, volume, lambda pockets: pockets.add(BOLT, words.said('carrying.bolt')), told, 'PickUp', isKept)
    marked(around, 'take')
    return thing


def keepThrownBolts(player: kaVel.Entity):
    """Has the bolts that a player has thrown lie in his saves where they lie."""
    def map() -> kaVel.MapRootEntity | None:
        level, transform = player.getAncestorOfType(kaVel.Reflection.Coordinator), player.getComponent('transform')
        hasMap = any(each._getType().isSubclassOf(kaVel.Reflection.MapRootEntity) for each in level.children)
        return transform.findMap() if hasMap and transform else None

    def told() -> list[list[float]]:
        here = map()
        bolts = [each for each in here.children if each.name.startswith(THROWN)] if here else []
        places = [bolt.getComponent('transform').position for bolt in bolts if not bolt.isDying()]
        return [[at.x, at.y, at.z] for at in places]

    def become(places: list[list[float]]):
        here, hands = map(), handsOf(player)
        if not here or not hands:
            return
        for x, y, z in places:
            hands.thrownBolts += 1
            kaVel.finishLoad(_lyingBolt(here, THROWN + str(hands.thrownBolts), (x, y, z), 0.0, False).entity)

    keepPart(player, 'thrownBolts', told, become)


def throwBolt(hands: Hands):
    """Throws a bolt out of the pocket, if there is one."""
    eye = hands.eye()
    map = eye.findMap() if eye else None
    pockets: Pockets = hands.pockets
    if not map or not pockets.take(BOLT):
        return
    hands.thrownBolts += 1
    hands.play('Throw')
    thing = _lyingBolt(map, THROWN + str(hands.thrownBolts), hands.place(0.08, -0.1, 0.3), _heading(hands), False,
                       _throwing(hands, FASTEST))
    kaVel.finishLoad(thing.entity)
    thing.launch(hands, True)
