"""The player of a level as its scripts meet him: where he stands and looks, and how he is led elsewhere."""

from __future__ import annotations

import math

import kaVel
import settings
import standing
from objects.Placing import Triple, placed, turned
from objects.player.FreeCamera import FreeCameraControl
from objects.player.Hands import handsOf
from objects.player.Holding import Holding, codesOf
from perLevel import PerLevel
from screens import Screens

_visitors: PerLevel[Visitor] = PerLevel()


def visitorOf(coordinator: kaVel.Coordinator) -> Visitor:
    """Who walks about in a level; KeyError where there is no `Player`."""
    return _visitors[coordinator]


class Visitor:
    """Who walks about in a level, with the keys that are no business of his body: leaning, flying, the pause."""

    def __init__(self, player: kaVel.Entity):
        self.player = player
        self.body = player.getComponent('physics')
        self.component = player.getComponent('player')
        self.transform = player.getComponent('transform')
        self.camera = player.getChild('camera')
        self.eye = self.camera.getComponent('transform')
        self.neck = self.camera.getComponent('parentFollower')
        self.flight: _Flight | None = None
        coordinator = player.getAncestorOfType(kaVel.Reflection.Coordinator)
        _visitors[coordinator] = self
        standing.follow(coordinator, self)
        Holding(coordinator, self.component)
        _listenToLeaning(coordinator)
        kaVel.onKey(coordinator, 'quit', self.pause)
        kaVel.onKey(coordinator, 'fly', self.fly)

    def goTo(self, at: Triple, turn: float = 0.0, pitch: float = 0.0):
        """Puts the feet somewhere else, at rest, and turns the view; angles in degrees, a positive pitch looks down."""
        height = self.player.getComponent('boundingVolume').hitBox.y
        self.transform.position = kaVel.Vec4(at[0], at[1] + height / 2, at[2], 1)
        self.body.velocity = kaVel.Vec4(0, 0, 0, 0)
        self.look(turn, pitch)

    def look(self, turn: float, pitch: float):
        """Turns the view, degrees; a positive pitch looks down."""
        self.transform.orientation = turned(turn)
        self.component.rotationLimiter = math.radians(pitch)
        self.neck.doFrame()  # so that the eye is where it belongs at once

    def standing(self) -> standing.Standing:
        """What leads back here by `goTo`."""
        position = self.transform.position
        height = self.player.getComponent('boundingVolume').hitBox.y
        return (position.x, position.y - height / 2, position.z), *self.looking()

    def looking(self) -> tuple[float, float]:
        """Turn and pitch of the view, degrees."""
        return math.degrees(self.yaw), math.degrees(self.pitch)

    @property
    def yaw(self) -> float:
        """Turn of the view, radians."""
        turn = self.transform.orientation
        return 2.0 * math.atan2(turn.j, turn.r) % math.tau

    @property
    def pitch(self) -> float:
        """Pitch of the view, radians; down is positive."""
        return self.component.rotationLimiter

    def ahead(self) -> Triple:
        """Where he looks, a direction of length 1."""
        yaw, pitch = self.yaw, self.pitch
        return math.sin(yaw) * math.cos(pitch), -math.sin(pitch), math.cos(yaw) * math.cos(pitch)

    def pause(self):
        """Opens the pause screen, unless the key for it closes what is being read, or another screen has it."""
        hands = handsOf(self.player)
        level = self.player.getAncestorOfType(kaVel.Reflection.Coordinator)
        if not (hands and hands.isReading() or Screens.isOpen(level)):
            Screens.open(level, 'Pause')

    def fly(self):
        """Leaves the body for a camera that flies, or comes back into it."""
        self.flight = self.flight or _Flight(self)
        self.flight.switch()


class _Flight:
    """The flying camera of those who make levels: it begins where the player looks, and he stands still meanwhile."""

    def __init__(self, visitor: Visitor):
        self.visitor = visitor
        coordinator = visitor.player.getAncestorOfType(kaVel.Reflection.Coordinator)
        self.graphics = coordinator.getManager('graphics2')
        self.camera = placed(coordinator, 'flyingCamera')
        viewer = visitor.camera.getComponent('viewer')
        kaVel.addComponent(self.camera, 'viewer', 'ViewerComponent', nearClipDistance=viewer.nearClipDistance,
                           verticalFieldOfViewAngle=viewer.verticalFieldOfViewAngle,
                           farClipDistance=viewer.farClipDistance)
        self.control = FreeCameraControl(self.camera)
        standing.follow(coordinator, visitor)
        kaVel.finishLoad(self.camera)
        self.flies = False

    def switch(self):
        self.flies = not self.flies
        self.control.active = self.flies
        self.visitor.component.useInput = not self.flies
        if not self.flies:
            self.graphics.popCamera()
            return
        eye, (turn, pitch) = self.visitor.eye.position, self.visitor.looking()
        self.control.goTo((eye.x, eye.y, eye.z), turn, pitch)
        self.graphics.pushCamera(self.camera)


def _listenToLeaning(coordinator: kaVel.Coordinator):
    """Has a level's player lean to a side for as long as a key of that side is held, or until it is pressed again."""
    sides = {'leanLeft': 'LeanLeftMessage', 'leanRight': 'LeanRightMessage'}
    held: list[str] = []  # the last one counts

    def tell():
        kaVel.send(sides[held[-1]] if held else 'LeanReturnMessage')

    def down(message: kaVel.IReflectedThing, key: int):
        for side in sides:
            if key not in codesOf(side):
                continue
            if side not in held:
                held.append(side)
                tell()
            elif settings.get('leanMode') == 'toggle':
                held.remove(side)
                tell()

    def up(message: kaVel.IReflectedThing, key: int):
        for side in sides:
            if key in codesOf(side) and side in held and settings.get('leanMode') == 'hold':
                held.remove(side)
                tell()

    office = kaVel.officeOf(coordinator)
    kaVel.subscribe('KeyDownMessage', down, office)
    kaVel.subscribe('KeyUpMessage', up, office)
