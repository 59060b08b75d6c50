"""The Fittings: wooden figures that dressed shop windows. They stand, and are nearer when one looks again.

    place.Fitting(map, 'tailor', at=(2, 0, 3), turn=180, pose='reaching')

None of them moves while it is seen: in the picture, in light, and with nothing before it. Their heads turn first. They
come nearer in the dark and behind the player's back, by a step at a time or, behind his back, all at once; they go
where they stand in nobody's way, and keep to within `roams` metres of where they first stood. Who has one of them
right behind him and does not turn is laid hold of.
"""

from __future__ import annotations

import math
import random
from typing import Callable

import GameConfig
import kaVel
import words
from objects.creatures.Creatures import shaped
from objects.creatures.Prey import Prey
from objects.Placing import Triple, addVolume, placed
from objects.player.Nerves import dreaded
from objects.sound.Sounds import sounds
from objects.things.Lathe import bone, drape, spindle
from perLevel import PerLevel
from saves.Kept import keepPart

SIZE = (0.44, 1.74, 0.44)  # metres
NECK = 1.50                # height of the peg that the head turns on, metres
#: Light over the ambient from which on they are seen.
SEEN = 0.008
#: Seconds unseen after which they move, and between two moves.
PATIENCE, PAUSE = 0.9, (1.3, 3.6)
#: Metres: how near they come, within which they lay hold, and how far away the player may be for them to care.
NEAREST, GRASP, NOTICE = 0.86, 1.05, 13.0
#: Life, and percent of the mind, that it costs to be laid hold of, and the seconds that they take to do it.
BLOW, FRIGHT, WINDUP = 24.0, 14.0, 1.5

#: Metres from the player within which none stands when a save is loaded.
CLEAR = 3.0

_companies: PerLevel[_Company] = PerLevel()

Joints = dict[str, Triple]

#: Where joints are in a pose, metres from the floor between the feet; +z is ahead. What is not said stands as here.
_UPRIGHT: Joints = {
    'pelvis': (0, 0.93, 0), 'neck': (0, NECK, 0.0),
    'shoulderL': (-0.19, 1.40, 0), 'elbowL': (-0.25, 1.11, -0.02), 'handL': (-0.25, 0.85, 0.06),
    'shoulderR': (0.19, 1.40, 0), 'elbowR': (0.25, 1.11, -0.02), 'handR': (0.25, 0.85, 0.06),
    'hipL': (-0.10, 0.90, 0), 'kneeL': (-0.11, 0.49, 0.02), 'footL': (-0.12, 0.06, -0.02),
    'hipR': (0.10, 0.90, 0), 'kneeR': (0.11, 0.49, 0.02), 'footR': (0.13, 0.06, 0.0),
}
POSES: dict[str, Joints] = {
    'standing': {},
    'reaching': {'neck': (0, 1.49, 0.05), 'elbowR': (0.26, 1.30, 0.25), 'handR': (0.16, 1.33, 0.55),
                 'elbowL': (-0.27, 1.13, -0.06), 'handL': (-0.22, 0.92, 0.10), 'footL': (-0.12, 0.06, 0.16),
                 'kneeL': (-0.11, 0.50, 0.13)},
    'begging': {'neck': (0, 1.47, 0.07), 'elbowR': (0.24, 1.14, 0.10), 'handR': (0.10, 1.18, 0.40),
                'elbowL': (-0.24, 1.14, 0.10), 'handL': (-0.10, 1.18, 0.40)},
    'pointing': {'elbowR': (0.42, 1.34, 0.12), 'handR': (0.55, 1.40, 0.34), 'handL': (-0.20, 0.88, 0.08)},
    'shielding': {'elbowR': (0.30, 1.42, 0.22), 'handR': (0.10, 1.60, 0.28), 'elbowL': (-0.30, 1.20, 0.16),
                  'handL': (-0.12, 1.38, 0.30), 'neck': (0, 1.48, 0.04)},
    'shrouded': {'elbowR': (0.23, 1.13, 0.06), 'handR': (0.17, 0.95, 0.20), 'elbowL': (-0.23, 1.13, 0.06),
                 'handL': (-0.17, 0.95, 0.20)},
}
#: What each wears.
_DRESS = {'standing': 'skirt', 'reaching': 'apron', 'begging': 'skirt', 'pointing': 'apron', 'shielding': 'skirt',
          'shrouded': 'sheet'}


def _between(a: Triple, b: Triple, share: float) -> Triple:
    return (a[0] + share * (b[0] - a[0]), a[1] + share * (b[1] - a[1]), a[2] + share * (b[2] - a[2]))


def _hand(mesh: kaVel.MeshBuilder, wrist: Triple, elbow: Triple):
    """A flat hand that goes on where the forearm ends, its fingers a little apart."""
    way = [w - e for w, e in zip(wrist, elbow)]
    length = math.hypot(*way)
    along = [part / length for part in way]
    # Sideways over the ground; for a hanging hand along x.
    side = (along[2], 0.0, -along[0]) if math.hypot(along[0], along[2]) > 0.3 else (0.0, 0.0, 1.0)
    size = math.hypot(*side)

    def at(ahead: float, across: float) -> Triple:
        x, y, z = (w + ahead * a + across * s / size for w, a, s in zip(wrist, along, side))
        return x, y, z

    spindle(mesh, ((0.0, 0.016), (0.4, 0.034), (1.0, 0.036)), wrist, at(0.085, 0), 8, flat=0.45)
    for number, (across, reach) in enumerate(((-0.030, 0.150), (-0.010, 0.172), (0.010, 0.168), (0.030, 0.145))):
        spindle(mesh, ((0.0, 0.009), (0.5, 0.0085), (0.97, 0.006), (1.0, 0.0)), at(0.080, across),
                at(reach, 1.45 * across + 0.002 * number), 6)
    spindle(mesh, ((0.0, 0.011), (0.6, 0.009), (1.0, 0.0)), at(0.025, -0.03), at(0.085, -0.075), 6)


def _figure(joints: Joints) -> kaVel.MeshBuilder:
    """The wooden parts without the head, about the middle of the figure."""
    mesh = kaVel.MeshBuilder()
    spot = {**_UPRIGHT, **joints}
    for side in 'LR':
        for thickness, first, second in ((0.058, 'shoulder', 'elbow'), (0.046, 'elbow', 'hand'), (0.085, 'hip', 'knee'),
                                         (0.062, 'knee', 'foot')):
            bone(mesh, thickness, spot[first + side], spot[second + side])
        for joint, radius in (('shoulder', 0.060), ('elbow', 0.040), ('hand', 0.026), ('hip', 0.080), ('knee', 0.054),
                              ('foot', 0.042)):
            mesh.addSphere(radius, 10, 7, at=kaVel.Vec4(*spot[joint + side], 1))
        _hand(mesh, spot['hand' + side], spot['elbow' + side])
        x, y, z = spot['foot' + side]
        spindle(mesh, ((0.0, 0.02), (0.2, 0.042), (0.7, 0.04), (1.0, 0.0)), (x, 0.035, z - 0.05),
                (x, 0.03, z + 0.19), 8)
    chest, pelvis = _between(spot['pelvis'], spot['neck'], 0.98), spot['pelvis']
    spindle(mesh, ((-0.06, 0.06), (0.0, 0.145), (0.12, 0.150), (0.34, 0.115), (0.62, 0.165), (0.82, 0.170),
                   (0.92, 0.10), (0.96, 0.052), (1.0, 0.046)), pelvis, chest, 16, flat=0.66)
    mesh.transform(at=kaVel.Vec4(0, -SIZE[1] / 2, 0, 1))
    return mesh


def _skirt() -> kaVel.MeshBuilder:
    """A long skirt from the waist down, and a tucker over the breast."""
    mesh = kaVel.MeshBuilder()
    drape(mesh, ((0.37, 0.05), (0.34, 0.25), (0.28, 0.55), (0.20, 0.85), (0.145, 1.02), (0.130, 1.06)), 13, 0.045,
          flat=0.8)
    drape(mesh, ((0.132, 1.04), (0.150, 1.14), (0.182, 1.28), (0.180, 1.36), (0.115, 1.43)), 7, 0.006, flat=0.72)
    mesh.transform(at=kaVel.Vec4(0, -SIZE[1] / 2, 0, 1))
    return mesh


def _apron() -> kaVel.MeshBuilder:
    """A workman's long apron that is tied at the waist."""
    mesh = kaVel.MeshBuilder()
    drape(mesh, ((0.25, 0.32), (0.24, 0.55), (0.20, 0.85), (0.15, 1.02), (0.165, 1.22), (0.176, 1.36)), 9, 0.03,
          flat=0.8, lean=0.012)
    mesh.transform(at=kaVel.Vec4(0, -SIZE[1] / 2, 0, 1))
    return mesh


def _sheet() -> kaVel.MeshBuilder:
    """A dust sheet over the shoulders, down to the shins."""
    mesh = kaVel.MeshBuilder()
    drape(mesh, ((0.40, 0.16), (0.37, 0.50), (0.34, 0.90), (0.30, 1.20), (0.25, 1.38), (0.16, 1.47), (0.075, 1.51)), 11,
          0.06, flat=0.82, segments=56)
    mesh.transform(at=kaVel.Vec4(0, -SIZE[1] / 2, 0, 1))
    return mesh


def _head() -> kaVel.MeshBuilder:
    """A plain egg on its peg: a chin, a brow, no face."""
    mesh = kaVel.MeshBuilder()
    spindle(mesh, ((0.0, 0.030), (1.0, 0.028)), (0, -0.05, 0), (0, 0.06, 0.0), 10)
    spindle(mesh, ((0.0, 0.0), (0.04, 0.030), (0.16, 0.062), (0.36, 0.083), (0.62, 0.092), (0.82, 0.080), (0.95, 0.046),
                   (1.0, 0.0)), (0, 0.02, 0.022), (0, 0.255, -0.012), 16, flat=1.12)
    return mesh


def _hood() -> kaVel.MeshBuilder:
    """A head under a cloth that is tied at the neck."""
    mesh = kaVel.MeshBuilder()
    drape(mesh, ((0.075, -0.04), (0.055, 0.02), (0.088, 0.06), (0.106, 0.13), (0.104, 0.19), (0.075, 0.25),
                 (0.03, 0.278), (0.001, 0.282)), 8, 0.012, flat=1.1)
    return mesh


_CLOTHES: dict[str, Callable[[], kaVel.MeshBuilder]] = {'skirt': _skirt, 'apron': _apron, 'sheet': _sheet}


def _named(function: Callable[[], kaVel.MeshBuilder], name: str):
    function.__name__ = name
    return function


#: What builds the wood of a pose, one function for each, so that all figures of a pose share a mesh.
_WOOD = {pose: _named(lambda joints=joints: _figure(joints), 'fitting ' + pose) for pose, joints in POSES.items()}


@kaVel.pattern
def Fitting(parent: kaVel.MapRootEntity, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0,
            pose: str = 'standing', roams: float = 7.0, awake: bool = True):
    """A wooden figure that stands on `at`; pose: standing, reaching, begging, pointing, shielding or shrouded.

    It keeps to within `roams` metres of `at`; one that is not `awake` stands until `wake` is called.
    """
    if pose not in POSES:
        raise KeyError('no pose %r%s' % (pose, kaVel.nearestHint(pose, POSES)))
    figure = placed(parent, name or 'fitting', at=(at[0], at[1] + SIZE[1] / 2, at[2]), turn=turn)
    addVolume(figure, SIZE, 'BV_BOX')
    # What keeps it from walkers is a body; what keeps it from moving is that nothing moves it but itself.
    kaVel.addComponent(figure, 'physics', 'RigidBody', inverseMass=0.0)
    kaVel.addComponent(figure, 'objectGroup', 'ObjectGroupComponent', group='PLAYER_FOLLOW')
    senses = kaVel.addComponent(figure, 'perception', 'PerceptionComponent', hasEyes=False, hasEars=False)
    follow = kaVel.addComponent(figure, 'behaviors', 'ActFollowPlayer', unseenOnly=True, coolDownTime=6.0)
    sounds(figure, 'MannequinStep', 'MannequinCreak', 'MannequinHead', 'MannequinJump')
    shaped(figure, _WOOD[pose], 'fittingWood')
    dreaded(figure, dread=1.2, range=8.0)
    clothes = placed(figure, 'clothes', at=(at[0], at[1] + SIZE[1] / 2, at[2]), turn=turn)
    addVolume(clothes, (0.9, SIZE[1], 0.9), 'BV_NONE')
    kaVel.addComponent(clothes, 'parentFollower', 'TransformOffsetComponent')
    shaped(clothes, _CLOTHES[_DRESS[pose]], 'fittingCloth')
    _addHead(figure, {**_UPRIGHT, **POSES[pose]}['neck'], at, turn, _DRESS[pose] == 'sheet')
    level = figure.getAncestorOfType(kaVel.Reflection.Coordinator)
    if level not in _companies:
        _companies[level] = _Company(figure)
    _companies[level].members.append(_Member(figure, senses, follow, roams, awake))
    return figure


def _addHead(figure: kaVel.Entity, neck: Triple, at: Triple, turn: float, isHooded: bool):
    """The head turns by itself. It is named so that the figure's jumps, which turn a 'MannequinHead' in full view, let
    it alone."""
    head = placed(figure, 'head', at=(at[0], at[1] + neck[1], at[2]), turn=turn)
    addVolume(head, (0.3, 0.6, 0.3), 'BV_NONE')
    kaVel.addComponent(head, 'parentFollower', 'TransformOffsetComponent',
                       positionOffset=kaVel.Vec4(neck[0], neck[1] - SIZE[1] / 2, neck[2], 0))
    kaVel.addComponent(head, 'physics', 'RigidBody', inverseMass=0.0)
    kaVel.addComponent(head, 'steering', 'SteeringComponent', alignMaxRotSpeed=2.2, alignTargetRadius=0.02,
                       alignSlowRadius=0.5, lookAhead=NOTICE)
    kaVel.addComponent(head, 'behaviors', 'BTComponent', behaviors=['MannequinTree'], defaultBehavior='MannequinTree')
    shaped(head, _hood if isHooded else _head, 'fittingCloth' if isHooded else 'fittingWood')


def wake(level: kaVel.Coordinator, isAwake: bool = True):
    """Lets all of a level's Fittings move from now on, or has them stand."""
    if level in _companies:
        for member in _companies[level].members:
            member.isAwake = isAwake


class _Member:
    """One figure, and how long it has not been seen."""

    def __init__(self, figure: kaVel.Entity, senses: kaVel.PerceptionComponent, follow: kaVel.ActFollowPlayer,
                 roams: float, isAwake: bool):
        self.figure, self.senses, self.follow, self.roams, self.isAwake = figure, senses, follow, roams, isAwake
        self.transform, self.sound = figure.getComponent('transform'), figure.getComponent('sound')
        self.home = self.transform.position
        self.unseenSince = self.nextMove = 0.0
        self.windup = math.inf


class _Company:
    """All figures of a level: one of them thinks in each frame, so that no two move at once."""

    def __init__(self, figure: kaVel.Entity):
        self.prey = Prey(figure)
        self.map = self.prey.map
        self.members: list[_Member] = []
        self.next, self.lastJump = 0, -1e9
        self.dice = random.Random('fittings %d' % GameConfig.seed)
        self.seenFrom = 0.0
        # After perception has taken over what the picture before showed, and before anything moves.
        company = kaVel.make('Entity', parent=self.map, name='company of fittings')
        kaVel.addComponent(company, 'dummy', 'ScriptComponent', frameCallback=self.doFrame)
        keepPart(figure, 'fittings', self.told, self.become)

    def told(self) -> dict[str, list[float]]:
        """Where each stands."""
        places = {member.figure.name: member.transform.position for member in self.members if member.figure}
        return {name: [at.x, at.y, at.z] for name, at in places.items()}

    def become(self, told: dict[str, list[float]]):
        """Has them stand where they have stood; those at home that would stand beside the player."""
        for member in self.members:
            at = kaVel.Vec4(*told.get(member.figure.name, ()), 1) if member.figure.name in told else member.home
            if self.prey.distance(at) > CLEAR and _apart(at, member.home) <= member.roams:
                member.transform.position = at

    def doFrame(self):
        self.members = [member for member in self.members if member.figure]
        if not self.members:
            return
        self.next = (self.next + 1) % len(self.members)
        if self.next == 0:
            self.seenFrom = self.prey.level.getManager('graphics2').sceneAmbient + SEEN
        member = self.members[self.next]
        member.senses.watchedLight = self.seenFrom
        self.think(member, self.prey.clock.seconds())

    def think(self, member: _Member, now: float):
        """Counts how long a figure has not been seen, and moves it when that was long enough."""
        player, place = self.prey.place(), member.transform.position
        if not member.isAwake or player is None or member.senses.watched:
            member.unseenSince, member.windup = now, math.inf
            return
        distance = self.prey.distance(place)
        if distance > NOTICE or now - member.unseenSince < PATIENCE or now < member.nextMove:
            return
        if distance < GRASP:
            self.layHold(member, now)
        elif (self.jump(member, distance, now) or self.step(member, place, player, distance)):
            member.nextMove = now + self.dice.uniform(*PAUSE)
            member.sound.playSoundEffect('MannequinStep' if distance > 2.5 else 'MannequinCreak')

    def layHold(self, member: _Member, now: float):
        """Takes the player by the shoulder, after a sound that he may turn at."""
        if member.windup == math.inf:
            member.windup = now
            member.sound.playSoundEffect('MannequinHead')
        elif now - member.windup > WINDUP:
            member.windup, member.nextMove = math.inf, now + 4.0
            member.sound.playSoundEffect('MannequinJump')
            self.prey.frighten(FRIGHT, 'a Fitting laid hold of you')
            self.prey.touched(BLOW, words.said('death.fittings'))

    def jump(self, member: _Member, distance: float, now: float) -> bool:
        """Now and then one of them is behind the player all at once."""
        if distance < 3.0 or now < self.lastJump + 9.0 or self.dice.random() > 0.3:
            return False
        before = member.transform.position
        member.follow.positionOffset = kaVel.Vec4(self.dice.uniform(-0.7, 0.7), 0, -self.dice.uniform(1.6, 2.6), 0)
        member.follow.followPlayer()
        after = member.transform.position
        if (after - before).magnitude() < 0.05:
            return False
        if not self.mayStand(member, after) or self.prey.distance(after) > distance:
            member.transform.position = before  # still unseen, since nothing was drawn between
            return False
        self.lastJump = now
        return True

    def step(self, member: _Member, place: kaVel.Vec4, player: kaVel.Vec4, distance: float) -> bool:
        """Comes nearer by a step or two, where there is room."""
        length = min(self.dice.uniform(0.7, 1.5), distance - NEAREST)
        ahead = math.atan2(player.x - place.x, player.z - place.z)
        for aside in (0.0, 0.5, -0.5):
            angle = ahead + aside + self.dice.uniform(-0.2, 0.2)
            there = place + kaVel.Vec4(length * math.sin(angle), 0, length * math.cos(angle), 0)
            if self.mayStand(member, there) and member.follow.stepTo(there):
                return True
        return False

    def mayStand(self, member: _Member, there: kaVel.Vec4) -> bool:
        """Whether a place is near enough to its own, and far enough from the others'."""
        return _apart(there, member.home) <= member.roams and all(
            other is member or _apart(there, other.transform.position) > 0.75 for other in self.members)


def _apart(a: kaVel.Vec4, b: kaVel.Vec4) -> float:
    return math.hypot(a.x - b.x, a.z - b.z)
