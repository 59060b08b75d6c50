"""One who walks: WASD and mouse, Shift runs, Space jumps, Escape ends the game. Walls stop him, crates give way."""

import math

from typing import Sequence

import kaVel
import standing
from objects.Bodies import PULL
from objects.Control import Control
from objects.Placing import LevelClock, Triple, addVolume, placed
from objects.Sounds import Area, Footsteps

#: Action -> direction in the walker's own axes: right, ahead.
MOVES = {'forward': (0, 1), 'back': (0, -1), 'left': (-1, 0), 'right': (1, 0)}

SIZE = (0.5, 1.75, 0.5)  # metres; the box stays along the axes when the walker turns, only the camera does
EYE = 1.62               # above the feet, metres
MASS = 75.0              # kilograms

WALKING, RUNNING = 1.9, 3.8  # metres a second
START = 12.0    # how fast he gets going, m/s2; he stands at once
PUSH = 8.0      # how much faster, each second, he presses against what gives way: weight slows him, m/s2
FALL = 15.0     # m/s2
JUMP = 3.9      # metres a second: half a metre high
LONGEST_STEP = 0.2  # metres a frame, however slow the frames are: less than half of him and a thin door

STRIDE = 1.5      # metres of two steps
LANDING = 1.0     # metres a second downwards that are heard when he lands
BOB = 0.018       # metres up and down at a step

#: Metres a second over the floor: east, north.
Velocity = tuple[float, float]


@kaVel.pattern
def WalkerBody(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0)):
    """The body of one who walks: a box that slides along what it touches. Stands on `at`, in a map."""
    player = placed(parent, name or 'Player', at=(at[0], at[1] + SIZE[1] / 2, at[2]))
    addVolume(player, SIZE, 'BV_PLAYER')
    kaVel.addComponent(player, 'physics', 'RigidBody', inverseMass=1.0 / MASS,
                       acceleration=kaVel.Vec4(0, PULL / MASS - FALL, 0, 0))
    return player


class Walker(Control):
    """Moves a `WalkerBody` and the camera that looks out of its eyes, by keyboard and mouse."""

    def __init__(self, player: kaVel.Entity, camera: kaVel.Entity, turn: float = 0.0, pitch: float = 0.0,
                 floor: Sequence[Area] = ()):
        coordinator = player.getAncestorOfType(kaVel.Reflection.Coordinator)
        super().__init__(coordinator, turn, pitch)
        self.player = player
        self.body = player.getComponent('physics')
        self.transform = player.getComponent('transform')
        self.eye = camera.getComponent('transform')
        self.steps = Footsteps(player, floor)
        self.clock = LevelClock(player)
        kaVel.addComponent(player, 'player', 'ScriptComponent', frameCallback=self.steer)
        # After the bodies have moved and their contacts are resolved, and before anything is drawn.
        kaVel.addComponent(camera, 'form', 'ScriptComponent', frameCallback=self.moveEye)
        standing.follow(coordinator, self)
        self.standStill()

    def goTo(self, at: Triple, turn: float = 0.0, pitch: float = 0.0):
        """Puts the walker's feet somewhere else, at rest; angles in degrees."""
        self.transform.position = kaVel.Vec4(at[0], at[1] + SIZE[1] / 2, at[2], 1)
        self.body.velocity = kaVel.Vec4(0, 0, 0, 0)
        self.look(turn, pitch)
        self.standStill()
        self.moveEye()

    def standing(self) -> standing.Standing:
        """What leads back here by `goTo`."""
        position = self.transform.position
        return (position.x, position.y - SIZE[1] / 2, position.z), *self.looking()

    def standStill(self):
        self.position = self.place()
        self.given = (0.0, 0.0)  # velocity over the floor that the last frame was given
        self.speed = 0.0
        self.lastSeconds = 0.0
        self.stoodBefore = False
        self.way = self.bob = 0.0
        self.fell = 0.0  # metres a second, while he is in the air
        self.height = self.transform.position.y

    def place(self):
        position = self.transform.position
        return position.x, position.z

    def steer(self):
        """Gives the body the velocity of this frame: what falls goes on falling, the rest is as the keys want it."""
        seconds = self.clock.frameSeconds()
        if seconds <= 0.0:
            return
        wanted = self.wantedVelocity(seconds)
        x, z = self.withoutForce(wanted, self.velocityHad(), seconds)
        self.given = (x, z)
        up = self.body.velocity.y
        stands = abs(up) < 0.01
        if self.isHeld('jump') and stands and self.stoodBefore:
            up = JUMP
        self.stoodBefore = stands
        self.body.velocity = kaVel.Vec4(x, up, z, 0)
        self.position = self.place()
        self.lastSeconds = seconds

    def velocityHad(self) -> Velocity:
        """How fast he really went over the floor in the last frame."""
        if not self.lastSeconds:
            return 0.0, 0.0
        (x, z), (x0, z0) = self.place(), self.position
        return (x - x0) / self.lastSeconds, (z - z0) / self.lastSeconds

    def wantedVelocity(self, seconds: float) -> Velocity:
        """What the held keys ask for, over the floor; the speed rises over a step and ends at once."""
        right, ahead = self.heldMoves(MOVES)
        length = math.hypot(right, ahead)
        if not length:
            self.speed = 0.0
            return 0.0, 0.0
        most = min(RUNNING if self.isHeld('run') else WALKING, LONGEST_STEP / seconds)
        self.speed = min(most, self.speed + START * seconds)
        s, c = math.sin(self.yaw), math.cos(self.yaw)
        speed = self.speed / length
        return speed * (right * c + ahead * s), speed * (ahead * c - right * s)

    def withoutForce(self, wanted: Velocity, had: Velocity, seconds: float) -> Velocity:
        """Less of a velocity where something stood in the way of the last one: against it, he only leans.

        He goes on from the speed that it left him, and so what is heavy is pushed slowly; along it he is free.
        """
        lost = self.given[0] - had[0], self.given[1] - had[1]
        length = math.hypot(*lost)
        if length < 0.02:
            return wanted
        against = lost[0] / length, lost[1] / length
        excess = _dot(wanted, against) - max(_dot(had, against), 0.0) - PUSH * seconds
        return wanted if excess <= 0 else (wanted[0] - excess * against[0], wanted[1] - excess * against[1])

    def moveEye(self):
        """Puts the camera where the eyes are: over the body, and up and down with the steps."""
        seconds = self.clock.frameSeconds()
        had = self.velocityHad()
        speed = math.hypot(*had) if self.stoodBefore else 0.0
        self.putFeetDown(min(speed, RUNNING) * seconds / STRIDE, speed)
        self.bob += (min(1.0, speed / WALKING) - self.bob) * (1.0 - math.exp(-8.0 * seconds))
        position = self.transform.position
        # Steps and landings are softened; what is higher than a step is a jump or a fall and shows at once.
        self.height += (position.y - self.height) * (1.0 - math.exp(-25.0 * seconds))
        self.height = min(position.y + 0.25, max(position.y - 0.25, self.height))
        up = EYE - SIZE[1] / 2 + BOB * self.bob * math.cos(2 * math.tau * self.way)
        self.eye.position = kaVel.Vec4(position.x, self.height + up, position.z, 1)
        self.eye.orientation = self.orientation()

    def putFeetDown(self, strides: float, speed: float):
        """Takes the walk on by a part of two steps, and lets each of them be heard, and a fall's end."""
        position = self.transform.position
        feet = position.x, position.y - SIZE[1] / 2, position.z
        before, self.way = self.way, (self.way + strides) % 1.0
        if (before < 0.5) != (self.way < 0.5):
            self.steps.step(*feet, speed)
        up = self.body.velocity.y
        if self.stoodBefore and self.fell > LANDING:
            self.steps.step(*feet, RUNNING)
        self.fell = 0.0 if self.stoodBefore else max(self.fell, -up)

    def ahead(self):
        """Where he looks, a direction of length 1."""
        return (math.sin(self.yaw) * math.cos(self.pitch), -math.sin(self.pitch),
                math.cos(self.yaw) * math.cos(self.pitch))


def _dot(a: Velocity, b: Velocity):
    return a[0] * b[0] + a[1] * b[1]
