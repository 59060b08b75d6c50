"""The bodies of those who live in the menagerie: a ball to go on, what they look like, and how they steer."""

from __future__ import annotations

from typing import Any, Callable

import kaVel
import objects.GameObjects as place
from kaVel import MapRootEntity
from menagerie import Shapes
from objects.Placing import Triple, addVolume, placed

#: Diameter of the ball that a creature goes on, metres: it gets through a doorway with somebody coming.
GIRTH = 0.5
MASS = 60.0  # kilograms


def creature(map: MapRootEntity, name: str, at: Triple, build: Callable[[], kaVel.MeshBuilder], surface: str,
             turn: float = 0.0, height: float = 1.8, girth: float = GIRTH, maxSpeed: float = 0.9, **steering: Any):
    """A body that steers; it stands on `at`. Further properties are those of its `SteeringComponent`."""
    body = placed(map, name, at=(at[0], at[1] + Shapes.MIDDLE, at[2]), turn=turn)
    # A ball by its x; what is pointed at is the box, which reaches from the floor to the head.
    volume = addVolume(body, (girth, 2 * (height - Shapes.MIDDLE), girth), 'BV_SPHERE')
    volume.interact = True
    kaVel.addComponent(body, 'physics', 'RigidBody', inverseMass=1.0 / MASS, damping=0.05)
    kaVel.addComponent(body, 'steering', 'SteeringComponent', **{**dict(
        maxSpeed=maxSpeed, maxAccel=6.0, timeToTarget=0.25, arriveTargetRadius=0.3, arriveSlowRadius=1.0,
        sepThreshold=1.1, sepWeight=1.5, maxPrediction=1.0, wanderOffset=1.5, wanderRadius=1.0, wanderRate=1.2,
        lookAhead=1.2, alignMaxRotSpeed=2.5, alignTargetRadius=0.02, alignSlowRadius=0.7), **steering})
    place.shaped(body, build, surface)
    return body


def strollers(map: MapRootEntity):
    """Those who wander from room to room, faceless and polite."""
    places = ((-4.5, 1.2, 90), (-1.0, -1.6, 0), (2.0, 1.0, 200), (4.6, -1.0, -60))
    return [creature(map, 'stroller%d' % number, (x, 0, z), Shapes.stroller, 'plaster', turn=turn, maxSpeed=0.8)
            for number, (x, z, turn) in enumerate(places, 1)]


def hound(map: MapRootEntity):
    """The one that hunts what is thrown or heard."""
    return creature(map, 'hound', (-4.6, 0, 7.6), Shapes.hound, 'iron', turn=160, height=0.9, girth=0.6, maxSpeed=2.1,
                    maxAccel=9.0, alignMaxRotSpeed=3.5)


def shade(map: MapRootEntity):
    """The one that keeps to the dark."""
    return creature(map, 'shade', (-4.0, 0, -7.0), Shapes.shade, 'hollow', height=2.1, girth=0.4, maxSpeed=1.1)


def warden(map: MapRootEntity):
    """The patrol, with a lantern of its own."""
    body = creature(map, 'warden', (9.6, 0, -1.0), Shapes.warden, 'bark', height=1.9, maxSpeed=1.0)
    inHand = kaVel.Vec4(0.31, 0.98 - Shapes.MIDDLE, 0.44, 0)
    glass = placed(body, 'glass', scale=(0.11, 0.16, 0.11))
    addVolume(glass, (0.2, 0.2, 0.2), 'BV_NONE')
    place.look(glass, 'ball', 'glassAmber', castShadows=False)
    light = place.SphereLight(body, 'light', color=place.LAMPLIGHT, strength=0.35, reach=3.2,
                              flicker=place.burning(4, depth=0.15))
    for part in (glass, light):
        kaVel.addComponent(part, 'parentFollower', 'TransformOffsetComponent', positionOffset=inHand)
    return body


def child(map: MapRootEntity, number: int, at: Triple):
    """One of the crowd."""
    return creature(map, 'child%d' % number, at, Shapes.child, 'wax', height=0.95, girth=0.46, maxAccel=0.0)
