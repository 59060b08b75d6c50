"""The lamp that the player carries, and the moths that come to it."""

from __future__ import annotations

import math

import kaVel
import objects.GameObjects as place
from kaVel import MapRootEntity
from objects.Placing import LevelClock, addVolume, axisTurn, placed

#: Where the hand is: to the right of the eye, below it, before it, metres.
HAND = (0.30, -0.34, 0.62)
MOTHS = 14


class Lamp:
    """Hangs from the player's hand; L covers it and uncovers it."""

    def __init__(self, map: MapRootEntity, visitor: place.Visitor):
        self.visitor = visitor
        self.swing = 0.0  # how far it swings, of the widest
        self.lamp = place.SphereLight(map, 'lamp', color=place.LAMPLIGHT, strength=0.55, reach=4.6,
                                      flicker=place.burning(1, depth=0.08))
        self.light = self.lamp.getComponent('graphics2')
        self.transform = self.lamp.getComponent('transform')
        self.parts = [self.part('glass', 'ball', 'glassAmber', (0.075, 0.10, 0.075), 0.0),
                      self.part('cap', 'ball', 'brass', (0.085, 0.03, 0.085), 0.055),
                      self.part('foot', 'ball', 'brass', (0.08, 0.03, 0.08), -0.055)]
        self.moths = place.Swarm(map, 'moths', kind='Moth', count=MOTHS, anchor=self.lamp,
                                 reach=1.3).getComponent('flocking')
        self.clock = LevelClock(self.lamp)
        kaVel.onKey(map, 'lamp', self.cover)
        # After the eye has found its place, which moves at the same key, oldest first.
        kaVel.addComponent(self.lamp, 'form', 'ScriptComponent', frameCallback=self.follow)
        self.follow()

    def part(self, name: str, mesh: str, surface: str, scale: place.Triple, height: float):
        entity = placed(self.lamp, name, scale=scale)
        addVolume(entity, (0.2, 0.2, 0.2), 'BV_NONE')
        place.look(entity, mesh, surface, castShadows=False)
        kaVel.addComponent(entity, 'parentFollower', 'ParentFollowerComponent',
                           positionOffset=kaVel.Vec4(0, height, 0, 0))
        return entity.getComponent('graphics2')

    def follow(self):
        """Puts the lamp where the hand is; it swings with the steps."""
        eye, (turn, _) = self.visitor.eye.position, self.visitor.looking()
        player = self.visitor.component
        self.swing += (player.isWalking() - self.swing) * (1 - math.exp(-8 * self.clock.frameSeconds()))
        sway = 0.02 * self.swing * math.sin(math.pi * (player.stepCount + player.stride))
        x, y, z = place.around((eye.x, eye.y, eye.z), turn, HAND[0] + sway, HAND[1], HAND[2])
        self.transform.position = kaVel.Vec4(x, y, z, 1)
        self.transform.orientation = axisTurn(1, turn)

    def cover(self):
        shown = not self.light.visible
        self.light.visible = shown
        self.parts[0].visible = shown
