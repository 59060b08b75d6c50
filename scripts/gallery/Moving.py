"""What moves by itself in the gallery."""

import math

from kaVel import Entity
from objects.Placing import LevelClock, axisTurn, onFrame


class Swinging:
    """Turns an object and its parts about the upright axis through their common origin, and lets them sway."""

    def __init__(self, root: Entity, degreesPerSecond: float, sway: float = 0.0, start: float = 0.0):
        self.transforms = [part.getComponent('transform') for part in (root, *root.children)
                           if part._getType().name == 'Entity']
        self.speed, self.sway, self.start = degreesPerSecond, sway, start
        self.clock = LevelClock(root)
        onFrame(root, self.doFrame)

    def doFrame(self):
        time = self.clock.seconds()
        turn = self.start + self.speed * time + 6.0 * math.sin(0.9 * time)
        lean = axisTurn(2, self.sway * math.sin(1.15 * time)) * axisTurn(0, 0.6 * self.sway * math.sin(1.4 * time + 1))
        orientation = lean * axisTurn(1, turn)
        for transform in self.transforms:
            transform.orientation = orientation
