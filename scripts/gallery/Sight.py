"""Which rooms of the row the visitor may see into; the others are not drawn.

The map's grid knows nothing of walls: left alone, the lights of all rooms in the view's direction would be drawn, with
their shadows. From outside, a room is seen through doorways alone, and those of the row stand in one line.
"""

import math
from typing import Sequence

import editing
import kaVel
from gallery.Shell import DOOR_Z, PITCH, WIDTH
from kaVel import Entity, Object
from objects.player.Visitor import Visitor
from perLevel import levelOf

#: Half the width of the widest doorway, metres.
DOOR_HALF = 0.75
#: What is left over at the view's edges, radians.
MARGIN = math.radians(4)


class _Part:
    """All that is drawn of one room or passage."""

    def __init__(self, root: Object):
        self.drawn = [handle for handle in kaVel.descendants(root) if handle.name == 'graphics2']
        self.shown = True

    def show(self, shown: bool):
        if shown == self.shown:
            return
        self.shown = shown
        for component in self.drawn:
            component.visible = shown


class Sight:
    """Shows the rooms that the camera may see, with the passages at both their ends, and hides the others."""

    def __init__(self, rooms: Sequence[Entity], passages: Sequence[Entity], visitor: Visitor):
        self.rooms = [_Part(room) for room in rooms]
        self.passages = [_Part(passage) for passage in passages]
        self.visitor = visitor
        self.viewer = visitor.camera.getComponent('viewer')
        self.window = kaVel.getSystem('WindowSystem2')
        self.level = levelOf(visitor.player)
        editing.onOverlook(self.level, self.update)

    def update(self):
        at = self.visitor.eye.position
        for index, room in enumerate(self.rooms):
            room.show(editing.isOverlooked(self.level) or self.seesInto(PITCH * index, at.x, at.z))
        for passage, west, east in zip(self.passages, self.rooms, self.rooms[1:]):
            passage.show(west.shown or east.shown)

    def seesInto(self, middle: float, x: float, z: float):
        """Whether a room around this x may be seen from a place, the way the camera looks."""
        if abs(x - middle) <= WIDTH / 2 + PITCH - WIDTH:
            return True
        side = 1.0 if middle > x else -1.0
        least, most = -math.inf, math.inf  # slopes of the rays that pass all doorways on the way, z over x
        for ahead in self.doorways(abs(middle - x)):
            least = max(least, (DOOR_Z - DOOR_HALF - z) / ahead)
            most = min(most, (DOOR_Z + DOOR_HALF - z) / ahead)
        return least <= most and self.looksInto(side, least, most)

    @staticmethod
    def doorways(distance: float):
        """Distances of the wall planes between the camera and a room whose middle is so far away, along x."""
        face = distance - WIDTH / 2
        while face > 0.01:
            yield face
            if face - (PITCH - WIDTH) > 0.01:
                yield face - (PITCH - WIDTH)
            face -= PITCH

    def looksInto(self, side: float, least: float, most: float):
        """Whether any ray of these slopes lies within the view's width."""
        half = math.atan(math.tan(self.viewer.verticalFieldOfViewAngle / 2) * self.window.width / self.window.height)
        half += MARGIN + abs(self.visitor.pitch)
        bearings = [math.atan2(side, slope) - self.visitor.yaw for slope in (least, most)]
        low, high = sorted((b + math.pi) % math.tau - math.pi for b in bearings)
        if high - low > math.pi:  # the rays enclose the direction behind the camera
            return high < half or -low < half
        return low <= half and high >= -half
