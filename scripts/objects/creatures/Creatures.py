"""Small creatures that go in numbers, and what leads them: moths, rats, crows, and the boids of a flock.

Each pattern is one member; `Swarm` gathers them around something. They are looked at and stop nobody.
"""

from __future__ import annotations

from typing import Any, Callable

import kaVel
from objects.Placing import Triple, addVolume, isInMap, layerFor, placed, turned
from objects.things.Models import mapsOf
from perLevel import PerLevel

#: Meshes by their maker, one for all members in a level, so that they are drawn at once.
_meshes: PerLevel[dict[Callable[[], kaVel.MeshBuilder], kaVel.DynamicMeshAsset]] = PerLevel()


def _meshOf(entity: kaVel.Entity, build: Callable[[], kaVel.MeshBuilder]) -> kaVel.DynamicMeshAsset:
    """What a function builds, as the asset of an entity's level; built once."""
    level = entity.getAncestorOfType(kaVel.Reflection.Coordinator)
    if level not in _meshes:
        _meshes[level] = {}
    if build not in _meshes[level]:
        asset = kaVel.make('DynamicMeshAsset', parent=level, name='mesh of ' + build.__name__)
        asset.setMeshData(build())
        _meshes[level][build] = asset
    return _meshes[level][build]


def shaped(entity: kaVel.Entity, build: Callable[[], kaVel.MeshBuilder], surface: str, castShadows: bool = True):
    """Gives an entity the look of what a function builds; all entities of a level share it."""
    return kaVel.addComponent(entity, 'graphics2', 'ModelGraphicsComponent2', layer=layerFor(entity),
                              mesh=_meshOf(entity, build), castShadows=castShadows, **mapsOf(surface))


def _member(parent: kaVel.Object, name: str, at: Triple, size: float, build: Callable[[], kaVel.MeshBuilder],
            surface: str, castShadows: bool = False):
    """What is looked at and stops nobody."""
    member = placed(parent, name, at=at, scale=(size, size, size))
    if isInMap(member):
        addVolume(member, (2 * size, 2 * size, 2 * size), 'BV_NONE')
    shaped(member, build, surface, castShadows)
    return member


def _wing(mesh: kaVel.MeshBuilder, side: float, corners: list[Triple]):
    """A flat wing of four corners, seen from above and below."""
    a, b, c, d = (kaVel.Vec4(side * x, y, z, 1) for x, y, z in corners)
    mesh.addQuad(a, b, c, d)
    mesh.addQuad(d, c, b, a)


def moth() -> kaVel.MeshBuilder:
    """A moth of 2 m wingspan with its head to +z: scale it down."""
    mesh = kaVel.MeshBuilder()
    for side in (-1.0, 1.0):
        _wing(mesh, side, [(0.05, 0.0, 0.35), (1.0, 0.25, 0.65), (0.9, 0.2, -0.1), (0.05, 0.0, -0.1)])
        _wing(mesh, side, [(0.05, 0.0, -0.05), (0.8, 0.15, -0.1), (0.6, 0.1, -0.75), (0.05, 0.0, -0.35)])
    mesh.addCylinder(0.09, 0.9, 6, turn=turned(0, pitch=90))
    return mesh


def crow() -> kaVel.MeshBuilder:
    """A crow of 2 m wingspan with its head to +z: scale it down."""
    mesh = kaVel.MeshBuilder()
    for side in (-1.0, 1.0):
        _wing(mesh, side, [(0.06, 0.02, 0.28), (0.55, 0.16, 0.32), (0.6, 0.14, -0.12), (0.06, 0.0, -0.22)])
        _wing(mesh, side, [(0.55, 0.16, 0.32), (1.0, 0.08, 0.05), (0.98, 0.06, -0.2), (0.6, 0.14, -0.12)])
    _wing(mesh, 1.0, [(-0.05, 0.0, -0.3), (0.05, 0.0, -0.3), (0.14, 0.0, -0.72), (-0.14, 0.0, -0.72)])
    mesh.addSphere(0.13, 8, 6, at=kaVel.Vec4(0, 0, 0.1, 1))
    mesh.addSphere(0.09, 8, 6, at=kaVel.Vec4(0, 0.05, 0.34, 1))
    mesh.addCylinder(0.1, 0.6, 8, at=kaVel.Vec4(0, 0, -0.05, 1), turn=turned(0, pitch=90))
    return mesh


def rat() -> kaVel.MeshBuilder:
    """A rat 1 m long without its tail, on its feet, with its head to +z: scale it down."""
    mesh = kaVel.MeshBuilder()
    for radius, height, z in ((0.24, 0.22, -0.22), (0.21, 0.22, 0.08), (0.15, 0.22, 0.34), (0.08, 0.18, 0.48)):
        mesh.addSphere(radius, 8, 6, at=kaVel.Vec4(0, height, z, 1))
    for side in (-1.0, 1.0):
        mesh.addSphere(0.07, 6, 4, at=kaVel.Vec4(0.12 * side, 0.36, 0.3, 1))
    mesh.addCylinder(0.03, 0.75, 5, at=kaVel.Vec4(0, 0.1, -0.75, 1), turn=turned(0, pitch=84))
    return mesh


@kaVel.pattern
def Moth(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), size: float = 0.035):
    """A pale moth; `size` is half of its wingspan, metres."""
    return _member(parent, name, at, size, moth, 'paper')


@kaVel.pattern
def Crow(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), size: float = 0.42):
    """A crow on the wing; `size` is half of its wingspan, metres."""
    return _member(parent, name, at, size, crow, 'iron', castShadows=True)


@kaVel.pattern
def Rat(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), size: float = 0.2):
    """A rat on its feet; `size` is its length without the tail, metres."""
    return _member(parent, name, at, size, rat, 'bark', castShadows=True)


@kaVel.pattern
def Boid(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), size: float = 0.42):
    """A crow that steers by itself: the engine builds the members of a `FlockingComponent` by this pattern."""
    boid = placed(parent, name, at=at, scale=(size, size, size))
    addVolume(boid, (size, size, size), 'BV_NONE')
    kaVel.addComponent(boid, 'physics', 'RigidBody', inverseMass=0.0, damping=0.6)
    kaVel.addComponent(boid, 'steering', 'SteeringComponent', maxSpeed=6.0, maxAccel=9.0, maxPrediction=1.5,
                       timeToTarget=0.5, arriveTargetRadius=1.0, arriveSlowRadius=4.0, sepThreshold=1.5, sepWeight=1.0)
    shaped(boid, crow, 'iron')
    return boid


#: What sets one kind of swarm apart: properties of `SwarmComponent`.
KINDS: dict[str, dict[str, Any]] = {
    'Moth': dict(cruiseSpeed=0.8, spacing=0.22, bodySize=0.08, innerRadius=0.16, swirl=0.8, restlessness=0.9,
                 flutter=9.0, agility=5.0, alignment=0.1, cohesion=0.05),
    'Rat': dict(cruiseSpeed=0.9, spacing=0.45, bodySize=0.22, innerRadius=0.3, swirl=0.25, restlessness=0.9,
                agility=4.0, alignment=0.5, cohesion=0.5, neighborhoodSize=1.2, lowest=0.0, highest=0.0),
    'Crow': dict(cruiseSpeed=4.0, spacing=1.6, bodySize=0.9, innerRadius=2.5, swirl=1.0, restlessness=0.35, flutter=2.2,
                 agility=1.2, alignment=0.5, cohesion=0.15, neighborhoodSize=4.0, lowest=3.0, highest=12.0),
}


@kaVel.pattern
def Swarm(parent: kaVel.Object, name: str = '', kind: str = 'Moth', count: int = 20, at: Triple = (0, 0, 0),
          anchor: kaVel.Entity | None = None, **properties: Any):
    """So many moths, rats or crows, around an anchor that may be carried about, or around `at`.

    `kind` is the pattern of a member; further properties are those of `SwarmComponent`.
    """
    swarm = placed(parent, name or kind + 's', at=at)
    if anchor:
        properties['anchor'] = anchor
    kaVel.addComponent(swarm, 'flocking', 'SwarmComponent', memberPattern=kind, population=count,
                       **{**KINDS.get(kind, {}), **properties})
    return swarm
