"""Which rooms are drawn: the one that the camera stands in, and those seen from there through open doors.

The map's grid knows nothing of walls, and a lamp draws its shadows as long as it lies in the view's direction.
"""

import math
from typing import Mapping

import kaVel
from kaVel import Entity, Object
from objects.Walker import Walker
from workshop.Shell import ARCH_X, DOOR_Z

#: Half of what the camera sees, and an opening beside it, radians.
HALF_VIEW = math.radians(62)
#: An opening so near, metres, is seen from the side too.
NEAR = 2.0


class _Room:
    """All that is drawn of one room; what was switched off before it was hidden stays off."""

    def __init__(self, root: Object):
        self.drawn = [handle for handle in kaVel.descendants(root) if handle.name == 'graphics2']
        self.hidden = None

    def show(self, shown: bool):
        if shown == (self.hidden is None):
            return
        changed = self.hidden if shown else [component for component in self.drawn if component and component.visible]
        for component in filter(None, changed):  # what was taken is gone
            component.visible = shown
        self.hidden = None if shown else changed


class Sight:
    """Shows and hides the cellar's rooms after where a walker is and looks."""

    def __init__(self, rooms: Mapping[str, Entity], leaves: Mapping[str, Entity], walker: Walker):
        self.walker = walker
        self.rooms = {name: _Room(root) for name, root in rooms.items()}
        hinged, sliding = (leaves[name].getComponent('physics') for name in ('storeDoor', 'cisternDoor'))
        self.openings = (('workshop', 'store', (4.3, DOOR_Z), lambda: abs(hinged.prevAngle) > 0.005),
                         ('workshop', 'cistern', (ARCH_X, 4.3), lambda: abs(sliding.currentOffset) > 0.005))
        kaVel.addComponent(walker.player, 'hud', 'ScriptComponent', frameCallback=self.update)

    def update(self):
        eye = self.walker.eye.position
        seen = ['store' if eye.x > 4.3 else 'cistern' if eye.z > 4.3 else 'workshop']
        for name in seen:
            for one, other, place, isOpen in self.openings:
                beyond = other if name == one else one if name == other else None
                if beyond and beyond not in seen and isOpen() and self.looksAt(place[0] - eye.x, place[1] - eye.z):
                    seen.append(beyond)
        for name, room in self.rooms.items():
            room.show(name in seen)

    def looksAt(self, x: float, z: float):
        """Whether something so far away, east and north, may be in view."""
        bearing = (math.atan2(x, z) - self.walker.yaw + math.pi) % math.tau - math.pi
        return abs(bearing) < HALF_VIEW or math.hypot(x, z) < NEAR
