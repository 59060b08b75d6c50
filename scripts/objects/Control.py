"""What the keyboard and the mouse ask of one who looks around and moves about."""

import math

import kaVel

SHIFT, ESCAPE = 0x10, 0x1B

LOOK_SPEED = 2.4                  # radians for a mouse move across the whole window
STEEPEST_PITCH = math.radians(85)


class Control:
    """The held keys, and where the mouse has turned the view; Escape ends the game. Lives as long as its level."""

    def __init__(self, coordinator, turn=0.0, pitch=0.0):
        self.heldKeys = set()
        self.look(turn, pitch)
        office = coordinator.getDescendantByPath('BranchPostOffice/postOffice')
        kaVel.subscribe('KeyDownMessage', self.handleKeyDown, office)
        kaVel.subscribe('KeyUpMessage', self.handleKeyUp, office)
        kaVel.subscribe('MouseMove', self.handleMouseMove, office)

    def look(self, turn, pitch):
        """Turns the view, degrees; a positive pitch looks down."""
        self.yaw, self.pitch = math.radians(turn), math.radians(pitch)

    def handleKeyDown(self, message, key):
        self.heldKeys.add(key)
        if key == ESCAPE:
            kaVel.getSystem('GameLoopSystem').quit(0)

    def handleKeyUp(self, message, key):
        self.heldKeys.discard(key)

    def handleMouseMove(self, message, x, y):
        self.yaw = (self.yaw + x * LOOK_SPEED) % math.tau
        self.pitch = min(STEEPEST_PITCH, max(-STEEPEST_PITCH, self.pitch + y * LOOK_SPEED))

    def orientation(self):
        """Of the view: the turn about y after the pitch about x."""
        cy, sy = math.cos(self.yaw / 2), math.sin(self.yaw / 2)
        cp, sp = math.cos(self.pitch / 2), math.sin(self.pitch / 2)
        return kaVel.Quaternion(cy * cp, cy * sp, sy * cp, -sy * sp)
