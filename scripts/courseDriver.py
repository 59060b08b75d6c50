"""Plays a level in place of a player, by the messages that keys and mouse make.

A course is a module of `courses` with a generator `play(driver)`, of which every step is one of the driver's:

    def play(driver: Driver):
        yield from driver.walkTo(2.0, -1.5)
        yield from driver.lookAt(2.0, 1.1, 0.0)
        yield from driver.tap('use')
        yield from driver.waitUntil(lambda: door.openness > 0.9, 'the door is open')

What is sent is input like any other: a recording takes it, and a replay of that needs no course. The driver looks at
the level and never changes it; it hangs on no object, so that the play is the same with a course and with its
recording. A step that gets nowhere ends the run with exit code 1 and tells where it stood.
"""

import importlib
import math
from typing import Callable, Iterator

import bindings
import kaVel

Steps = Iterator[None]

#: Degrees off the way at which he still goes ahead while he turns.
AHEAD = 30.0
#: Frames for which the view has to be right: what the mouse was moved by before it was may come a little later.
SETTLED = 2
#: Pixels of the first move of the mouse, by which it is measured how far one turns the view.
PROBE = 8


class Driver:
    """Hands and eyes of one who plays by a course."""

    #: Most pixels that the mouse moves in a frame.
    fastest = 120
    #: Seconds for which what is read lies before the eyes.
    glances = 4.0

    def __init__(self):
        self.held: set[str] = set()
        self.yawOfPixel = self.pitchOfPixel = 0.0  # degrees; 0 until it was measured

    # -- what he sees

    @property
    def coordinator(self) -> kaVel.Coordinator:
        """The level in charge."""
        return kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator

    @property
    def frame(self) -> int:
        """Number of the frame that begins."""
        return kaVel.getSystem('GameLoopSystem').frameNumber

    def eye(self) -> tuple[float, float, float]:
        """Where the eyes are, metres."""
        at = self._camera().getPosition()
        return at.x, at.y, at.z

    def looking(self) -> tuple[float, float]:
        """Heading, clockwise from +z, and pitch, downwards, of the view; degrees."""
        q = self._camera().getOrientation()
        x, y, z = 2 * (q.i * q.k + q.r * q.j), 2 * (q.j * q.k - q.r * q.i), 1 - 2 * (q.i * q.i + q.j * q.j)
        return math.degrees(math.atan2(x, z)), math.degrees(-math.asin(max(-1.0, min(1.0, y))))

    def distance(self, x: float, z: float) -> float:
        """How far away a place is over the floor, metres."""
        eye = self.eye()
        return math.hypot(x - eye[0], z - eye[2])

    def _camera(self):
        camera = self.coordinator.getManager('graphics2').getCurrentCamera()
        return camera.getComponent('transform')

    # -- steps with the hands

    def press(self, action: str) -> Steps:
        """Holds an action's first key or button down."""
        if action not in self.held:
            self.held.add(action)
            self._send(action, True)
        yield

    def release(self, action: str) -> Steps:
        """Lets an action's key or button go."""
        if action in self.held:
            self.held.remove(action)
            self._send(action, False)
        yield

    def tap(self, action: str, seconds: float = 0.1) -> Steps:
        """Presses an action's key or button for a moment."""
        yield from self.press(action)
        yield from self.wait(seconds)
        yield from self.release(action)

    def _send(self, action: str, down: bool):
        system = kaVel.getSystem('InputSystem')
        name = bindings.inputsOf(action)[0]
        if name in bindings.BUTTONS:
            system.postMouse(0, 0, 1 << (2 * bindings.BUTTONS[name] + (not down)), 0)
        else:
            system.postKey(bindings.KEYS.get(name) or ord(name), down)

    # -- steps in time

    def wait(self, seconds: float) -> Steps:
        """Does nothing, and goes on with whatever is held."""
        for _ in range(max(1, round(seconds * self._rate()))):
            yield

    def waitUntil(self, condition: Callable[[], object], what: str, seconds: float = 30.0) -> Steps:
        """Waits for something; the time is the longest that it may take."""
        for _ in range(round(seconds * self._rate())):
            if condition():
                return
            yield
        self._fail('waited %g s in vain until %s' % (seconds, what))

    @staticmethod
    def _rate() -> int:
        import GameConfig
        return GameConfig.fixedFrameRate

    # -- steps of the eyes

    def lookAt(self, x: float, y: float, z: float, within: float = 1.5, seconds: float = 8.0) -> Steps:
        """Turns the view to a place, metres, until it is off by so many degrees at most."""
        def error():
            eye = self.eye()
            dx, dy, dz = x - eye[0], y - eye[1], z - eye[2]
            return self._errorTo(math.degrees(math.atan2(dx, dz)), -math.degrees(math.atan2(dy, math.hypot(dx, dz))))
        yield from self._turnBy(error, within, seconds, 'looked for %.2f, %.2f, %.2f' % (x, y, z))

    def turnTo(self, heading: float, pitch: float = 0.0, within: float = 1.5, seconds: float = 8.0) -> Steps:
        """Turns the view to a heading and a pitch, degrees."""
        yield from self._turnBy(lambda: self._errorTo(heading, pitch), within, seconds,
                                'turned to %.0f, %.0f' % (heading, pitch))

    def _errorTo(self, heading: float, pitch: float) -> tuple[float, float]:
        yaw, down = self.looking()
        return (heading - yaw + 180.0) % 360.0 - 180.0, pitch - down

    def _turnBy(self, error: Callable[[], tuple[float, float]], within: float, seconds: float, what: str) -> Steps:
        yield from self._measureMouse()
        resting = 0
        for _ in range(round(seconds * self._rate())):
            yaw, pitch = error()
            resting = resting + 1 if math.hypot(yaw, pitch) <= within else 0
            if resting > SETTLED:
                return
            if not resting:
                self._turn(yaw, pitch)
            yield
        self._fail('%s for %g s in vain' % (what, seconds))

    def _turn(self, yaw: float, pitch: float):
        """Moves the mouse by a part of what is missing; the view may follow a frame later."""
        x, y = yaw / self.yawOfPixel * 0.4, pitch / self.pitchOfPixel * 0.4
        longest = max(abs(x), abs(y), 1e-6)
        scale = min(1.0, self.fastest / longest)
        pixels = [math.copysign(max(1, round(abs(v * scale))), v) if abs(d) > 0.4 else 0
                  for v, d in ((x, yaw), (y, pitch))]
        if any(pixels):
            kaVel.getSystem('InputSystem').postMouse(int(pixels[0]), int(pixels[1]), 0, 0)

    def _measureMouse(self) -> Steps:
        if self.yawOfPixel:
            return
        yaw, pitch = self.looking()
        sign = -1 if pitch > 0 else 1
        kaVel.getSystem('InputSystem').postMouse(PROBE, PROBE * sign, 0, 0)
        yield from self.wait(0.25)
        turned, tilted = self._errorTo(yaw, pitch)
        if abs(turned) < 1e-3 or abs(tilted) < 1e-3:
            self._fail('the mouse does not turn the view')
        self.yawOfPixel, self.pitchOfPixel = -turned / PROBE, -tilted / (PROBE * sign)

    # -- steps of the feet

    def walkTo(self, x: float, z: float, near: float = 0.3, seconds: float = 25.0, run: bool = False,
               crouch: bool = False) -> Steps:
        """Walks straight to a place, metres, and stands still as soon as it is near."""
        yield from self._measureMouse()
        held = [action for action, wanted in (('run', run), ('crouch', crouch)) if wanted]
        for action in held:
            yield from self.press(action)
        for _ in range(round(seconds * self._rate())):
            if self.distance(x, z) <= near:
                break
            eye = self.eye()
            yaw, pitch = self._errorTo(math.degrees(math.atan2(x - eye[0], z - eye[2])), 0.0)
            self._turn(yaw, pitch)
            yield from self.press('forward') if abs(yaw) < AHEAD else self.release('forward')
        else:
            self._fail('went for %g s towards %.2f, %.2f in vain' % (seconds, x, z))
        for action in ('forward', *held):
            yield from self.release(action)

    def walk(self, *places: tuple[float, float], near: float = 0.3, run: bool = False) -> Steps:
        """Walks from place to place."""
        for x, z in places:
            yield from self.walkTo(x, z, near=near, run=run)

    def use(self, x: float, y: float, z: float) -> Steps:
        """Looks at something and uses it."""
        yield from self.lookAt(x, y, z)
        yield from self.wait(0.1)
        yield from self.tap('use')

    def readFor(self, text: str) -> Steps:
        """Waits as long as he needs for a text that lies before his eyes."""
        yield from self.wait(self.glances)

    def throw(self, x: float, y: float, z: float) -> Steps:
        """Looks at something and throws what there is to throw."""
        yield from self.lookAt(x, y, z)
        yield from self.tap('throw')

    def _fail(self, problem: str):
        at = self.eye()
        raise RuntimeError('the course %s, in frame %d at %.2f, %.2f, %.2f, looking %.0f, %.0f'
                           % (problem, self.frame, *at, *self.looking()))


class _Course:
    """The course under way."""

    def __init__(self, name: str):
        module = importlib.import_module('courses.' + name)
        self.steps: Steps = module.play(Driver())

    def doFrame(self):
        """The steps of one frame; behind the last one the game ends."""
        try:
            next(self.steps)
        except StopIteration:
            gameLoop = kaVel.getSystem('GameLoopSystem')
            kaVel.log('The course is through after %d frames.' % gameLoop.frameNumber)
            gameLoop.quit(0)


_course: list[_Course] = []


def doFrame(name: str):
    """Goes on with the course of this name, from its beginning in the first frame."""
    if not _course:
        _course.append(_Course(name))
    _course[0].doFrame()
