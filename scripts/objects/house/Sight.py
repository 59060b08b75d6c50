"""Which rooms are drawn: the one that the camera stands in, and those seen from there through open doors.

The map's grid knows nothing of walls, and a lamp draws its shadows as long as it lies in the view's direction.
"""

import math
from typing import Callable, Mapping, NamedTuple, Sequence

import editing
import kaVel
from objects.Placing import Pair
from objects.player.Visitor import Visitor
from perLevel import levelOf

#: Half of what the camera sees, and an opening beside it, radians.
HALF_VIEW = math.radians(62)
#: An opening so near, metres, is seen from the side too.
NEAR = 2.0


class Opening(NamedTuple):
    """What two rooms see each other through: a place over the floor, x and z, and whether it is open."""

    one: str
    other: str
    at: Pair
    isOpen: Callable[[], bool] = lambda: True


class _Room:
    """All that is drawn of one room; what was switched off before it was hidden stays off."""

    def __init__(self, root: kaVel.Object):
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
    """Shows and hides rooms after where a player is and looks; `roomAt` names the one at an x and z."""

    def __init__(self, rooms: Mapping[str, kaVel.Entity], roomAt: Callable[[float, float], str],
                 openings: Sequence[Opening], visitor: Visitor):
        self.visitor, self.roomAt, self.openings = visitor, roomAt, openings
        self.rooms = {name: _Room(root) for name, root in rooms.items()}
        self.level = levelOf(visitor.player)
        kaVel.addComponent(visitor.player, 'hud', 'ScriptComponent', frameCallback=self.update)
        editing.onOverlook(self.level, self.update)

    def update(self):
        seen = list(self.rooms) if editing.isOverlooked(self.level) else self.roomsInView()
        for name, room in self.rooms.items():
            room.show(name in seen)

    def roomsInView(self) -> list[str]:
        """The room that the player is in, and those that he sees from there."""
        eye = self.visitor.eye.position
        seen = [self.roomAt(eye.x, eye.z)]
        for name in seen:
            for one, other, at, isOpen in self.openings:
                beyond = other if name == one else one if name == other else None
                if beyond and beyond not in seen and isOpen() and self.looksAt(at[0] - eye.x, at[1] - eye.z):
                    seen.append(beyond)
        return seen

    def looksAt(self, x: float, z: float):
        """Whether something so far away, east and north, may be in view."""
        bearing = (math.atan2(x, z) - self.visitor.yaw + math.pi) % math.tau - math.pi
        return abs(bearing) < HALF_VIEW or math.hypot(x, z) < NEAR
