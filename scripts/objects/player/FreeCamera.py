"""The flying camera: WASD and mouse, Space and E up, Ctrl and Q down, Shift faster, Escape ends the game."""

import math

import kaVel
import standing
from objects.Placing import Triple
from objects.player.Control import Control

#: Action -> direction in the camera's own axes: right, up, forward.
MOVES = {'forward': (0, 0, 1), 'back': (0, 0, -1), 'left': (-1, 0, 0), 'right': (1, 0, 0), 'rise': (0, 1, 0),
         'sink': (0, -1, 0)}

WALKING_SPEED = 1.8      # metres a second
RUNNING_FACTOR = 3.0
RESPONSE = 12.0          # how fast the speed follows the keys, 1/s


class FreeCameraControl(Control):
    """Moves one entity with a transform; lives as long as the entity's level keeps its handlers."""

    def __init__(self, camera: kaVel.Entity, turn: float = 0.0, pitch: float = 0.0):
        coordinator = camera.getAncestorOfType(kaVel.Reflection.Coordinator)
        super().__init__(coordinator, turn, pitch)
        self.transform = camera.getComponent('transform')
        self.velocity = (0.0, 0.0, 0.0)
        self.active = True  # or it stays where it is
        self.clock = coordinator.getTimerHandle('master')
        kaVel.addComponent(camera, 'director', 'ScriptComponent', frameCallback=self.doFrame)
        standing.follow(coordinator, self)

    def goTo(self, at: Triple, turn: float = 0.0, pitch: float = 0.0):
        """Puts the camera somewhere else, at rest; angles in degrees."""
        self.transform.position = kaVel.Vec4(*at, 1)
        self.look(turn, pitch)
        self.velocity = (0.0, 0.0, 0.0)
        self.transform.orientation = self.orientation()

    def standing(self) -> standing.Standing:
        """What leads back here by `goTo`."""
        position = self.transform.position
        return (position.x, position.y, position.z), *self.looking()

    def doFrame(self):
        if not self.active:
            return
        seconds = self.clock.getFrameTimeSeconds()
        wanted = self.wantedVelocity()
        # Speed closes in on the wanted one exponentially; this is the exact way of one step, whatever its length.
        left = math.exp(-RESPONSE * seconds)
        x, y, z = (w * seconds + (v - w) * (1.0 - left) / RESPONSE for v, w in zip(self.velocity, wanted))
        self.velocity = tuple(w + (v - w) * left for v, w in zip(self.velocity, wanted))
        position = self.transform.position
        self.transform.position = kaVel.Vec4(position.x + x, position.y + y, position.z + z, 1)
        self.transform.orientation = self.orientation()

    def wantedVelocity(self):
        """World velocity that the held keys ask for: forward and right stay level, up and down are vertical."""
        right, up, forward = self.heldMoves(MOVES)
        length = math.sqrt(right * right + up * up + forward * forward)
        if not length:
            return (0.0, 0.0, 0.0)
        speed = WALKING_SPEED * (RUNNING_FACTOR if self.isHeld('run') else 1.0) / length
        s, c = math.sin(self.yaw), math.cos(self.yaw)
        return ((right * c + forward * s) * speed, up * speed, (forward * c - right * s) * speed)
