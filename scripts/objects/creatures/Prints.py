"""Marks that creatures leave on floors and glass, which fade: a few decals, used again in turn."""

from __future__ import annotations

import kaVel
from objects.Placing import LevelClock, Pair, Triple, turned
from objects.things.Drawn import Decal


class Prints:
    """So many marks of one picture; the oldest is taken for the next one."""

    def __init__(self, map: kaVel.MapRootEntity, name: str, picture: str, size: Pair, number: int, lasting: float,
                 strength: float = 1.0, depth: float = 0.25):
        self.decals = [Decal(map, '%s%d' % (name, each), picture=picture, pitch=90, size=size, depth=depth, alpha=0.0)
                       for each in range(number)]
        self.made = [-1e9] * number
        self.next = 0
        self.lasting, self.strength = lasting, strength
        self.clock = LevelClock(map)

    def leave(self, at: Triple, turn: float = 0.0, mirrored: bool = False, pitch: float = 90.0):
        """Leaves a mark at a place, turned by degrees: on the floor, or with a pitch of 0 on what stands upright."""
        decal, self.made[self.next] = self.decals[self.next], self.clock.seconds()
        transform = decal.getComponent('transform')
        transform.position = kaVel.Vec4(*at, 1)
        transform.orientation = turned(turn, pitch=pitch)
        if mirrored != (transform.scale.x < 0):
            transform.scale = kaVel.Vec4(-transform.scale.x, transform.scale.y, transform.scale.z, 0)
        self.next = (self.next + 1) % len(self.decals)

    def fade(self):
        """Lets all marks fade by their age."""
        now = self.clock.seconds()
        for decal, made in zip(self.decals, self.made):
            left = 1 - (now - made) / self.lasting
            component = decal.getComponent('graphics2')
            alpha = self.strength * min(1.0, 2.0 * left) if left > 0 else 0.0
            if alpha or component.alpha:
                component.alpha = alpha
                component.visible = alpha > 0

    def showing(self):
        """How many marks can be seen."""
        now = self.clock.seconds()
        return sum(now - made < self.lasting for made in self.made)
