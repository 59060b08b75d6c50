"""Stand: one pattern after the other before a neutral backdrop in even light, for the pictures of the catalogue.

Each pattern is a view of the level. What cannot be built without being told more, or shows nothing, is a card that says
so.
"""

import functools
import math
import traceback
from typing import Any

import kaVel
import objects.GameObjects as place
from editor import Catalogue
from objects.Placing import Triple, turned

#: Where the camera looks from, seen from what stands there: turn and pitch, degrees; and half of its view's angle.
TURN, PITCH, HALF_VIEW = 28.0, 18.0, math.radians(15)
#: What is drawn as large as its transform says.
IN_ITS_BOX = ('WorldBasedTCBoxGraphicsComponent', 'HeightMapGraphics')
#: Lights of the stand in directions from its middle, as turn and pitch in degrees, with strength.
LAMPS = ((-18.0, 42.0, 0.85), (62.0, 24.0, 0.4), (200.0, 50.0, 0.35))
#: What is meant here, with its reason.
LINT = {'twice': {'stand/shown': 'the one before is murdered at the end of the frame'}}


def build(coordinator: kaVel.Coordinator):
    coordinator.getManager('graphics2').sceneAmbient = 0.42
    coordinator.loadMap('stand')
    _Shown(coordinator)


def stand(stage: kaVel.MapRootEntity):
    place.PartitioningGrid(stage, size=(64, 0, 64))
    place.Entity(stage, 'lamps')


def views():
    return [(each.name, functools.partial(_show, each)) for each in Catalogue.entries()]


def _show(entry: Catalogue.Entry):
    _Shown.one.show(entry)


class _Shown:
    """What stands there at present, with its lamps, its backdrop and the camera before it."""

    one: Any = None

    def __init__(self, level: kaVel.Coordinator):
        _Shown.one = self
        self.level = level
        self.stage: Any = level.getChild('stand')
        self.camera = place.Camera(level, 'camera', fieldOfView=math.degrees(2 * HALF_VIEW), farClip=400)
        self.parts: list[kaVel.Entity] = []

    def show(self, entry: Catalogue.Entry):
        """Puts one pattern in the place of the last one."""
        for part in self.parts:
            part.murder()
        self.parts = []
        try:
            root = entry.pattern(self.stage, 'shown')
            kaVel.finishLoad(root)
            self.parts.append(root)
            low, high = boundsOf(root)
        except Exception:
            kaVel.log('%s has no picture:\n%s' % (entry.name, traceback.format_exc()))
            self.card(entry)
            return
        self.frame(low, high)
        self.level.getManager('graphics2').pushCamera(self.camera)

    def frame(self, low: Triple, high: Triple):
        """Lights a box that stands there, puts the backdrop behind it and the camera where it fills the picture."""
        middle = (low[0] + high[0]) / 2, (low[1] + high[1]) / 2, (low[2] + high[2]) / 2
        radius = max(math.dist(low, high) / 2, 0.02)
        away = radius / math.sin(HALF_VIEW) * 1.02
        self.camera.getComponent('transform').position = kaVel.Vec4(*_from(middle, TURN, PITCH, away), 1)
        self.camera.getComponent('transform').orientation = turned(TURN - 180, PITCH)
        for number, (turn, pitch, strength) in enumerate(LAMPS):
            at = _from(middle, turn, pitch, 3 * radius)
            self.parts.append(place.SphereLight(self.stage, 'lamp%d' % number, at=at, color=(1, 0.97, 0.92),
                                                strength=strength, reach=12 * radius))
        self.parts.append(self._backdrop(low[1], middle, radius))
        for part in self.parts[1:]:
            kaVel.finishLoad(part)

    def _backdrop(self, floor: float, middle: Triple, radius: float):
        mesh = kaVel.MeshBuilder()
        mesh.addPlane(30 * radius, 30 * radius)
        return place.Built(self.stage, 'backdrop', mesh=mesh, at=(middle[0], floor - 0.002, middle[2]),
                           surface='concrete', castShadows=False)

    def card(self, entry: Catalogue.Entry):
        """Shows the name alone."""
        text = place.Text(self.level, 'card', text=entry.name, at=(0.5, 0.5), size=0.09, wrapWidth=0.9,
                          align='TA_CENTER', anchor=('H_CENTER', 'V_CENTER'))
        kaVel.finishLoad(text)
        self.parts.append(text)


def boundsOf(root: kaVel.Entity) -> tuple[Triple, Triple]:
    """Least and greatest corner of what is drawn below an object; ValueError where it shows nothing."""
    corners: list[Triple] = []
    for each in kaVel.descendants(root):
        if each._getType().isSubclassOf(kaVel.Reflection.ModelGraphicsComponent2) and each.mesh:
            corners += _corners(each.parent.getComponent('transform'), each.mesh.boundsMin, each.mesh.boundsMax)
        elif each.name == 'graphics2' and each._getType().name in IN_ITS_BOX:
            half = each.parent.getComponent('transform').scale * 0.5
            corners += _around(each.parent.getComponent('transform').position, half)
    if not corners:
        raise ValueError('%s shows nothing' % kaVel.pathOf(root))
    low: Triple = tuple(min(axis) for axis in zip(*corners))
    high: Triple = tuple(max(axis) for axis in zip(*corners))
    return low, high


def _corners(transform: kaVel.TransformComponent, low: kaVel.Vec4, high: kaVel.Vec4):
    for x in (low.x, high.x):
        for y in (low.y, high.y):
            for z in (low.z, high.z):
                scale, turn, at = transform.scale, transform.orientation, transform.position
                corner = turn * kaVel.Quaternion(0, x * scale.x, y * scale.y, z * scale.z) * turn.inverse()
                yield corner.i + at.x, corner.j + at.y, corner.k + at.z


def _around(middle: kaVel.Vec4, half: kaVel.Vec4) -> list[Triple]:
    return [(middle.x + sign * half.x, middle.y + sign * half.y, middle.z + sign * half.z) for sign in (-1, 1)]


def _from(middle: Triple, turn: float, pitch: float, away: float) -> Triple:
    """The place a distance away from a middle, in a direction of turn and pitch, degrees."""
    yaw, down = math.radians(turn), math.radians(pitch)
    return (middle[0] + away * math.sin(yaw) * math.cos(down), middle[1] + away * math.sin(down),
            middle[2] + away * math.cos(yaw) * math.cos(down))
