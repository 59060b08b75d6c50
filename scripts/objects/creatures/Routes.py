"""Where creatures go and where they do not: waypoints, rounds, blocked cells; and a creature that walks them.

    place.PatrolRoute(house, 'round', points=[(1, 0, 1), (7, 0, 1), (7, 0, 4)])
    place.Walker(house, 'warden', at=(1, 0, 1), route='round')
"""

from __future__ import annotations

from typing import Any, Callable, Literal, NamedTuple, Sequence

import kaVel
import words
from BehaviorLib import CREATURES
from BehaviorLib.Patrol import giveRound
from objects.creatures.Creatures import shaped
from objects.creatures.Prey import Prey
from objects.Happenings import named, startable
from objects.house.MapSize import mapOf, settled
from objects.Placing import Triple, addVolume, onFrame, placed
from objects.player.Nerves import dreaded
from objects.sound.Sounds import sounds
from objects.things.Lathe import lathe, limb
from perLevel import levelOf
from saves.Moments import hunts

#: What a cell is given that nobody finds his way through; sound does not mind it.
BLOCKED = 0.9


@kaVel.pattern
def Waypoint(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0):
    """A named place on the floor, which a `Walker` may have on its round; nothing is seen of it."""
    return placed(parent, name, at=at, turn=turn)


@kaVel.pattern
def PatrolRoute(parent: kaVel.Object, name: str = '', points: Sequence[Triple] = ((0, 0, 0), (2, 0, 0))):
    """A round of places on the floor, the first again after the last; a `Walker` takes it by its name."""
    if len(points) < 2:
        raise ValueError('points has %d places: a round needs two, (x, y, z) in metres' % len(points))
    route = placed(parent, name, at=points[0])
    for number, point in enumerate(points):
        placed(route, 'place%d' % number, at=point)
    return route


# -- cells

#: Least x and z, greatest x and z, metres.
Rectangle = tuple[float, float, float, float]


@kaVel.pattern
def BlockedCells(parent: kaVel.Object, name: str = '', areas: Sequence[Rectangle] = ()):
    """Areas of the floor that no creature plans its way through; the player goes where he wants.

    Each of `areas` is least x, least z, greatest x, greatest z in metres; cells whose middle lies within are blocked.
    """
    wrong = [area for area in areas if len(area) != 4 or not (area[0] < area[2] and area[1] < area[3])]
    if wrong:
        raise ValueError('areas has %r: an area is (least x, least z, greatest x, greatest z)' % (wrong[0],))
    owner = placed(parent, name)
    onFrame(owner, _Cells(owner, areas).doFrame)
    return owner


class _Cells:
    """Keeps cells blocked, also when the map's grid has become another one."""

    #: Those that are at work, by their owners.
    atWork: dict[kaVel.Entity, _Cells] = {}

    def __init__(self, owner: kaVel.Entity, areas: Sequence[Rectangle]):
        self.owner, self.areas = owner, areas
        self.map = mapOf(owner)
        self.layout: tuple[object, ...] = ()
        self.written: list[tuple[int, int]] = []

    def doFrame(self):
        _freeGone()
        child = self.map.getChild('.MapData_mainPathGrid') if self.map else None
        grid = child.getComponent('grid') if child else None
        if not child or not grid:
            return
        at = child.getComponent('transform').position
        layout = at.x, at.z, grid.gridCols, grid.gridRows, grid.cellSize
        if layout != self.layout:
            self.atWork[self.owner] = self
            _blockAnew(self.map, grid, layout)

    def block(self, grid: kaVel.SquareGrid):
        for left, near, right, far in self.areas:
            low, high = (grid.getCellFromPoint(kaVel.Vec4(x, 0, z, 1), 0) for x, z in ((left, near), (right, far)))
            for z in range(low.z, high.z + 1):
                for x in range(low.x, high.x + 1):
                    middle = grid.getCellWorldCoords(x, z)
                    isWithin = left <= middle.x <= right and near <= middle.z <= far
                    if isWithin and grid.getCellFloatValue(x, z, 0) < BLOCKED:
                        grid.setCellFloatValue(x, z, BLOCKED)
                        self.written.append((x, z))

    def free(self):
        child = self.map.getChild('.MapData_mainPathGrid') if self.map else None
        grid = child.getComponent('grid') if child else None
        if grid:
            for x, z in self.written:
                grid.setCellFloatValue(x, z, 0.0)
        self.written.clear()


def _blockAnew(map: kaVel.MapRootEntity | None, grid: kaVel.SquareGrid, layout: tuple[object, ...]):
    """Blocks all cells of a map that are to be, once all that were are free: areas may share cells."""
    of = [each for each in _Cells.atWork.values() if each.map == map]
    for each in of:
        each.free()
    for each in of:
        each.layout = layout
        each.block(grid)


def _freeGone():
    """Frees the cells whose owners are gone; those of others among them are blocked again in their next frame."""
    for gone in [each for each in _Cells.atWork.values() if not each.owner or each.owner.isDying()]:
        gone.free()
        del _Cells.atWork[gone.owner]
        for each in _Cells.atWork.values():
            each.layout = ()


settled.append(_freeGone)

# -- who walks

MIDDLE = 0.25    # metres above the feet: of the ball that a walker goes on
TOUCH = 0.95     # metres from its middle to the player's at which it has hold of him
MASS = 60.0      # kilograms


def robed() -> kaVel.MeshBuilder:
    """A bent robe 1.75 m high, its sleeves hanging and nothing under the hood."""
    mesh = kaVel.MeshBuilder()
    lathe(mesh, ((0.31, 0.0), (0.28, 0.10), (0.23, 0.55), (0.20, 0.95), (0.24, 1.28), (0.22, 1.40), (0.13, 1.48),
                 (0.15, 1.54), (0.165, 1.64), (0.12, 1.74), (0.0, 1.78)), depth=0.82)
    for side in (-1.0, 1.0):
        limb(mesh, 0.062, (0.22 * side, 1.34, 0.0), (0.27 * side, 0.94, 0.08))
        limb(mesh, 0.05, (0.27 * side, 0.94, 0.08), (0.22 * side, 0.66, 0.20))
    mesh.transform(at=kaVel.Vec4(0, -MIDDLE, 0, 1))
    return mesh


def crawler() -> kaVel.MeshBuilder:
    """A low heap that leans forward on arms too long for it."""
    mesh = kaVel.MeshBuilder()
    lathe(mesh, ((0.34, 0.0), (0.40, 0.10), (0.38, 0.28), (0.28, 0.50), (0.15, 0.66), (0.0, 0.70)), (0, 0, -0.10))
    mesh.addSphere(0.14, 12, 8, at=kaVel.Vec4(0.02, 0.62, 0.30, 1))
    for side in (-1.0, 1.0):
        limb(mesh, 0.06, (0.22 * side, 0.56, 0.10), (0.46 * side, 0.44, 0.34))
        limb(mesh, 0.05, (0.46 * side, 0.44, 0.34), (0.34 * side, 0.03, 0.54))
    mesh.transform(at=kaVel.Vec4(0, -MIDDLE, 0, 1))
    return mesh


class _Look(NamedTuple):
    build: Callable[[], kaVel.MeshBuilder]
    surface: str
    height: float
    girth: float


LOOKS = {'robed': _Look(robed, 'wetCloth', 1.75, 0.5), 'crawler': _Look(crawler, 'leather', 0.8, 0.6)}
Manner = Literal['Patrol', 'Guard', 'Haunt', 'Pursue', 'Search', 'Flee', 'Wander']
MANNERS = ('Wander', *(each for each in CREATURES if each not in ('Damp', 'Guest')))


@kaVel.pattern
def Walker(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0,
           look: Literal['robed', 'crawler'] = 'robed', manner: Manner = 'Patrol', route: str = '', speed: float = 1.0,
           sees: bool = True, hears: bool = True, hurts: float = 22.0, dread: float = 2.0, opensDoors: bool = True,
           walks: bool = True):
    """A creature of the library of behaviours, which stands on `at`.

    Its `manner` is what it does by itself; on patrol it walks the `route`: the name of a `PatrolRoute`, or of waypoints
    with commas between them. It takes `hurts` of the player's life a second when it has hold of him, 0 for a harmless
    one, and `dread` percent of his mind while he sees it. One that does not walk waits for a happening to start it.
    """
    for parameter, value, known in (('look', look, LOOKS), ('manner', manner, MANNERS)):
        if value not in known:
            raise ValueError('%s is %r: there are %s%s' % (parameter, value, ', '.join(known),
                                                           kaVel.nearestHint(value, known)))
    if not 0.05 <= speed <= 10:
        raise ValueError('speed is %r: give metres a second, 0.05 to 10' % speed)
    shape = LOOKS[look]
    body = placed(parent, name, at=(at[0], at[1] + MIDDLE, at[2]), turn=turn)
    addVolume(body, (shape.girth, 2 * (shape.height - MIDDLE), shape.girth), 'BV_SPHERE')
    kaVel.addComponent(body, 'physics', 'RigidBody', inverseMass=1.0 / MASS, damping=0.05)
    kaVel.addComponent(body, 'steering', 'SteeringComponent', maxSpeed=max(speed, 2.4), maxAccel=6.0, timeToTarget=0.25,
                       arriveTargetRadius=0.3, arriveSlowRadius=1.0, sepThreshold=1.1, sepWeight=1.5, maxPrediction=1.0,
                       lookAhead=1.2, alignMaxRotSpeed=2.5, alignTargetRadius=0.02, alignSlowRadius=0.7)
    kaVel.addComponent(body, 'pathFollower', 'PathFollower', opensDoors=opensDoors, closesDoors=False, speed=speed,
                       arriveRadius=0.35)
    senses = kaVel.addComponent(body, 'perception', 'PerceptionComponent', hasEyes=sees, hasEars=hears,
                                eyeOffset=kaVel.Vec4(0, shape.height - MIDDLE - 0.15, 0, 0))
    kaVel.addComponent(body, 'behaviors', 'BTComponent', behaviors=[manner],
                       defaultBehavior=manner if walks else '')
    shaped(body, shape.build, shape.surface)
    sounds(body, 'GuestHem', 'GuestBreath')
    if dread:
        dreaded(body, dread=dread, range=9.0)
    _Grasp(body, hurts)
    hunts(body, lambda: bool(body) and senses.knows)
    startable(body, lambda goes: _rouse(body, manner if goes else ''))
    if route:
        kaVel.addComponent(body, 'form', 'ScriptComponent', loadCallback=lambda: _takeRoute(body, route))
    return body


def _rouse(body: kaVel.Entity, manner: str):
    body.getComponent('behaviors').activeBehavior = manner
    if not manner:
        body.getComponent('pathFollower').stop()


def _takeRoute(body: kaVel.Entity, route: str):
    """Gives a walker the round of some names; tells of those that the level has not."""
    level, stops = levelOf(body), []
    for each in (part.strip() for part in route.split(',')):
        found: Any = named(level, each)
        if not found:
            kaVel.log('Warning: %s is to walk by %r, and nothing in the level has that name'
                      % (kaVel.pathOf(body), each))
            continue
        places = [child for child in found.children if child.name.startswith('place')] or [found]
        stops += [place.getComponent('transform').position for place in places]
    if stops:
        giveRound(body, stops)


class _Grasp:
    """Takes life of whom a walker has hold of, and has it be heard."""

    def __init__(self, body: kaVel.Entity, hurts: float):
        self.body, self.hurts = body, hurts
        self.prey = Prey(body)
        self.transform, self.voice = body.getComponent('transform'), body.getComponent('sound')
        self.due = 0.0
        onFrame(body, self.doFrame)

    def doFrame(self):
        near, now = self.prey.distance(self.transform.position), self.prey.clock.seconds()
        if near < 14 and now > self.due:
            self.due = now + 3.4
            self.voice.playSoundEffect('GuestBreath')
        if self.hurts > 0 and near < TOUCH and self.body.getComponent('behaviors').activeBehavior:
            self.prey.touched(self.hurts * self.prey.clock.frameSeconds(), words.said('death.walker'))
