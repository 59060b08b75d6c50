"""The crowd: children of wax that stream through a doorway, wait, and stream back, carried by a field of flows."""

from __future__ import annotations

import math

import kaVel
import objects.GameObjects as place
from kaVel import MapRootEntity
from menagerie import Creatures
from objects.Placing import LevelClock, axisTurn, onFrame, placed

COUNT = 9
#: Where they gather, in turn: x and z, in the court and in the yard.
GATHERINGS = ((1.8, 7.6), (10.6, 6.6))
#: So near to the middle of a gathering they stand, metres.
GATHERED = 1.1
WAIT = 6.0  # seconds that they stand together before they set out again
LONGEST = 45.0  # seconds after which they set out whether or not all are there


class Crowd:
    """The children, and the guide whose flows they follow."""

    def __init__(self, map: MapRootEntity):
        x, z = GATHERINGS[0]
        self.children = [Creatures.child(map, number, (x + 0.55 * (number % 3 - 1), 0, z + 0.55 * (number // 3 - 1)))
                         for number in range(COUNT)]
        for child in self.children:
            kaVel.addComponent(child, 'flowMovement', 'FlowFieldMovementComponent', flowSpeed=0.75, sampleRadius=0.6)
        self.bodies = [(child.getComponent('transform'), child.getComponent('physics'), child.getComponent('steering'))
                       for child in self.children]
        root = placed(map, 'crowdGuide', at=(x, 0, z))
        self.guide = kaVel.addComponent(root, 'flowInfluence', 'FlowFieldGuideComponent', targetRadius=GATHERED,
                                        reach=60.0, interval=0.5)
        self.clock = LevelClock(root)
        self.smoke(map)
        self.goal, self.since, self.together = 0, 0.0, 0.0
        self.passages = 0  # how often they have come through
        self.setOut(1)
        onFrame(root, self.doFrame)

    def smoke(self, map: MapRootEntity):
        """Motes over the doorway, which go with the crowd."""
        place.Dust(map, 'crowdDust', at=(6.3, 1.2, 6.6), size=(3.0, 2.2, 1.4), count=350, mote=0.004, drift=0.12,
                   strength=0.8)

    def setOut(self, goal: int):
        self.goal, self.since, self.together = goal, 0.0, 0.0
        x, z = GATHERINGS[goal]
        self.guide.target = kaVel.Vec4(x, 0, z, 1)

    def string(self):
        """Strings them out through the doorway, for a picture."""
        self.setOut(1)
        for number, (transform, _, _) in enumerate(self.bodies):
            x, z = 3.9 + 0.62 * number, 6.6 + 0.28 * (-1) ** number * (abs(3.9 + 0.62 * number - 6.3) > 0.8)
            transform.position = kaVel.Vec4(x, transform.position.y, z, 1)
            transform.orientation = axisTurn(1, 90)

    def doFrame(self):
        seconds = self.clock.frameSeconds()
        x, z = GATHERINGS[self.goal]
        there = 0
        for transform, body, steering in self.bodies:
            at, velocity = transform.position, body.velocity
            there += math.hypot(at.x - x, at.z - z) < GATHERED + 1.0
            if math.hypot(velocity.x, velocity.z) > 0.15:
                steering.updateAlignWithVector(kaVel.Vec4(velocity.x, 0, velocity.z, 0), seconds)
        self.since += seconds
        self.together = self.together + seconds if there == len(self.bodies) else 0.0
        if self.together > WAIT or self.since > LONGEST:
            self.passages += self.together > WAIT
            self.setOut(1 - self.goal)

    def tell(self):
        """What they do, for the board."""
        return 'children: stand together' if self.together else 'children: stream %s the doorway' % (
            'out through' if self.goal else 'back through')
