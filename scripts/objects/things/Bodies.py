"""What stands in the way, and what falls, is pushed and rolls: volumes that have a body beside them.

A volume lies around the place of its own transform, so bodies have that in their middle; a model that stands on its
origin stops nobody by itself, and gets a `Block` where somebody could walk into it.
"""

import math
from typing import Any, Literal

import kaVel
from objects.Placing import Pattern, Triple, addVolume, around, cube, layerFor, placed
from objects.sound.Sounds import heard
from objects.things.Models import boundsOf, mapsOf

#: What PhysicsManager pulls every body down with, newtons, whatever its mass.
PULL = 20.0
#: How fast all bodies are to gain speed as they fall, m/s2. More than the earth's: what brakes a body on the floor
#: brakes it in the air as well, and so it takes as long to fall from a shelf as one expects.
FALL = 13.0
#: Part of the speed that is left after a second: wood that is let go comes to rest within two thirds of a metre.
SLIDING = 0.03


def addBody(entity: kaVel.Entity, mass: float, damping: float = SLIDING, restitution: float = 0.0,
            className: Literal['RigidBody', 'BulletPhysics'] = 'RigidBody', **properties: Any):
    """Gives an entity a body of a mass in kilograms that falls as all others do."""
    return kaVel.addComponent(entity, 'physics', className, inverseMass=1.0 / mass, damping=damping,
                              restitution=restitution, acceleration=kaVel.Vec4(0, PULL / mass - FALL, 0, 0),
                              **properties)


def addWall(entity: kaVel.Entity, size: Triple):
    """Makes an entity a wall of these extents, about its place."""
    addVolume(entity, size)
    kaVel.addComponent(entity, 'physics', 'WallPhysics')


@kaVel.pattern
def Block(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), size: Triple = (1, 1, 1), turn: float = 0.0):
    """Invisible, and nothing gets through it; it stands on `at`."""
    block = placed(parent, name, at=(at[0], at[1] + size[1] / 2, at[2]), turn=turn)
    addWall(block, size)
    return block


def solid(pattern: Pattern, *parts: str):
    """A pattern that builds `pattern` and a block around the parts of it that are named, the model files."""

    @kaVel.pattern
    def build(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, **options: Any):
        root = pattern(parent, name, at=at, turn=turn, **options)
        lows, highs = zip(*(boundsOf(part) for part in parts))
        low, high = [min(values) for values in zip(*lows)], [max(values) for values in zip(*highs)]
        Block(root, 'block', at=around(at, turn, (low[0] + high[0]) / 2, low[1], (low[2] + high[2]) / 2), turn=turn,
              size=(high[0] - low[0], high[1] - low[1], high[2] - low[2]))
        return root

    return build


#: Models that stand in a walker's way, by the first of their parts.
IN_THE_WAY = frozenset((
    'desk', 'diningTable', 'sideTable', 'chair', 'armchair', 'cabinet', 'clockCase', 'bookshelf', 'crate', 'barrel',
    'radiator', 'fireplace', 'column', 'pedestal', 'tombstone', 'tombCross', 'deadTree', 'tripod', 'workbench', 'rack',
    'boiler', 'drillPress', 'mourner'))

#: Name of what stands in the way.
BLOCK = 'block'


def isInTheWay(entity: Any) -> bool:
    """Whether `makeSolid` would give a block to an object."""
    drawn = entity.getComponent('graphics2') if entity._getType().name == 'Entity' else None
    return bool(drawn) and getattr(drawn, 'meshName', '') in IN_THE_WAY and not any(
        each.getName() == BLOCK and each.pattern is None for each in entity.children)


def makeSolid(root: kaVel.Object):
    """Gives a block to all that is drawn below an object and stands in a walker's way, see `IN_THE_WAY`.

    What has one already keeps that.
    """
    for entity in kaVel.descendants(root):
        if isInTheWay(entity):
            _fence(entity, entity.getComponent('graphics2').meshName)


def _fence(entity: kaVel.Entity, meshName: str):
    """A wall around a model, where it stands and as it is turned and scaled."""
    transform, (low, high) = entity.getComponent('transform'), boundsOf(meshName)
    scale = transform.scale.x, transform.scale.y, transform.scale.z
    middle = [(a + b) / 2 * factor for a, b, factor in zip(low, high, scale)]
    fence = placed(entity, BLOCK)
    place = fence.getComponent('transform')
    turn = transform.orientation
    way = turn * kaVel.Quaternion(0, *middle) * turn.inverse()
    place.position = transform.position + kaVel.Vec4(way.i, way.j, way.k, 0)
    place.orientation = turn
    width, height, depth = ((b - a) * factor for a, b, factor in zip(low, high, scale))
    addWall(fence, (width, height, depth))


def solidGround(ground: kaVel.Entity, cell: float = 0.5):
    """Makes ground of heights something to stand on: a tilted block for each of its cells, of some metres."""
    heights, transform = ground.getComponent('graphics2'), ground.getComponent('transform')
    middle, size = transform.position, transform.scale
    heights.onLoadComplete()  # its heights are known from then on
    for row in range(round(size.z / cell)):
        for column in range(round(size.x / cell)):
            x, z = ((number + 0.5) * cell - extent / 2 for number, extent in ((column, size.x), (row, size.z)))
            _clod(ground, heights, (middle.x + x, middle.z + z), cell)


def _clod(ground: kaVel.Entity, heights: kaVel.HeightMapGraphics, at: tuple[float, float], cell: float):
    """One cell of solid ground, as steep as its heights to all sides say."""
    (x, z), half, thick = at, cell / 2, 0.4
    up, east, north = heights.getHeight(x, z), *(
        (heights.getHeight(x + half * a, z + half * b) - heights.getHeight(x - half * a, z - half * b)) / cell
        for a, b in ((1, 0), (0, 1)))
    clod = placed(ground, 'clod', at=(x, up - thick / 2, z), pitch=-math.degrees(math.atan(north)),
                  roll=math.degrees(math.atan(east)))
    addWall(clod, (cell * 1.15, thick, cell * 1.15))


def look(entity: kaVel.Entity, meshName: str, surface: str, castShadows: bool = True):
    """Gives an entity that has its volume already, or needs none, the look of a model file."""
    return kaVel.addComponent(entity, 'graphics2', 'ModelGraphicsComponent2', meshName=meshName,
                              layer=layerFor(entity), castShadows=castShadows, **mapsOf(surface))


@kaVel.pattern
def CargoCrate(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, edge: float = 0.6,
               mass: float = 30.0):
    """A wooden crate that is pushed and falls; it stands on `at`."""
    crate = placed(parent, name, at=(at[0], at[1] + edge / 2, at[2]), turn=turn, scale=cube(edge / 0.6))
    addVolume(crate, cube(edge), 'BV_BOX')
    addBody(crate, mass)
    look(crate, 'cargoCrate', 'wood')
    heard(crate, 'wood')
    return crate


@kaVel.pattern
def Ball(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, diameter: float = 0.2,
         mass: float = 1.0, surface: str = 'leather', damping: float = 0.05, restitution: float = 0.25):
    """A ball around `at`."""
    ball = placed(parent, name, at=at, turn=turn, scale=cube(diameter))
    addVolume(ball, cube(diameter), 'BV_SPHERE')
    addBody(ball, mass, damping=damping, restitution=restitution)
    look(ball, 'ball', surface)
    heard(ball, surface)
    return ball
