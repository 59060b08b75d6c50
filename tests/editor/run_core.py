"""What stands below the editor's tools, in a window with a mouse: what is picked, the handles, the camera."""
import math
import pathlib
import re
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
from display import Display, Game

#: A crate before a camera; the editor is open, and what it hears and does is logged when it changes.
LEVEL = '''
import kaVel
import objects.GameObjects as place

def build(coordinator):
    coordinator.loadMap('room')

def room(root):
    level = root.getAncestorOfType(kaVel.Reflection.Coordinator)
    kaVel.configure(root.getComponent('transform'), scale=kaVel.Vec4(20, 12, 20, 0))
    crate = place.CargoCrate(root, 'crate', at=(0, 0, 4))
    place.SphereLight(root, 'lamp', at=(0, 2, 2), strength=1.0, reach=8)
    place.Camera(root, 'eye', at=(0, 0.3, 0))
    level.loopState = kaVel.Coordinator.LoopControlState.LOOP_STOP
    at = crate.getComponent('transform')
    entity = kaVel.make('Entity', parent=level, name='.Editor')
    editor = kaVel.addComponent(entity, 'editor', 'EditorComponent')
    seen = {}

    def tell(name, value):
        if seen.get(name) != value:
            seen[name] = value
            kaVel.log('%s is %s #' % (name, value))

    def pointer(kind, x, y, button):
        if kind != 'move':
            kaVel.log('%s of %d at %d,%d on %s #' % (kind, button, x, y, editor.pick(x, y) and editor.pick(x, y).name))

    def frame():
        if not seen:
            kaVel.finishLoad(entity)
            editor.snapToGrid = False
            editor.gizmo = 'move'
            editor.select(crate)
            editor.setPointerCalled(pointer)
            editor.setKeyCalled(lambda code, down: kaVel.log('key %d %s #' % (code, down)))
            editor.setDragEnded(lambda kept: kaVel.log('kept %s #' % kept))
            editor.open()
        tell('crate', '%.2f %.2f %.2f' % (at.position.x, at.position.y, at.position.z))
        tell('camera', '%.2f %.2f %.2f' % (editor.cameraPlace.x, editor.cameraPlace.y, editor.cameraPlace.z))
        tell('turn', '%.1f' % editor.cameraTurn)
        side = editor.toScreen(at.position + kaVel.Vec4(-0.2, -0.15, -0.3, 0))
        tell('side', '%d %d' % (side.x, side.y))
        middle = editor.toScreen(at.position)
        tell('middle', '%d %d' % (middle.x, middle.y))
        arm = editor.toScreen(editor.gizmoPlace + kaVel.Vec4(editor.metresPerPixel(editor.gizmoPlace) * 60, 0, 0, 0))
        tell('pointer', '%d %d' % (editor.pointer.x, editor.pointer.y))
        tell('dragging', int(editor.dragging))
        tell('arm', '%d %d' % (arm.x, arm.y))

    watcher = kaVel.make('Entity', parent=root, name='watcher')
    kaVel.addComponent(watcher, 'cursor', 'ScriptComponent', frameCallback=frame)
'''


class Desk:
    """A display with the level in a window, and a hand on the mouse."""

    def __init__(self, world):
        world.write("scripts/levels/Core.py", LEVEL)
        self.display = Display("800x600")
        self.world = world

    def __enter__(self):
        self.display.__enter__()
        self.play = Game(self.world, self.display, "Core")
        self.play.__enter__()
        self.play.until_logged("arm is")
        self.play.focus()
        return self

    def __exit__(self, *what):
        self.play.__exit__(*what)
        self.display.__exit__(*what)

    def last(self, name):
        """The numbers that were logged last of something."""
        found = re.findall(rf"\b{name} is ([-0-9. ]+) #", self.play.log())
        return [float(part) for part in found[-1].split()]

    def until(self, condition, what):
        self.play.until(condition, what)

    def mouse(self, *words):
        self.display.tool(*words)

    def to(self, x, y):
        """Takes the pointer to a place, and waits until the game has seen it there."""
        place = [round(x), round(y)]

        def arrives():
            # Put somewhere, a pointer tells nothing; the last step is a motion.
            self.mouse("mousemove", "--window", self.play.window, place[0] - 1, place[1])
            self.by(1, 0)
            time.sleep(0.1)
            return self.last("pointer") == place

        self.until(arrives, f"the pointer at {place}")

    def grab(self, x, y):
        """Takes hold of a handle."""
        self.to(x, y)
        self.mouse("mousedown", 1)
        self.until(lambda: self.last("dragging") == [1], "a drag")

    def by(self, x, y):
        self.mouse("mousemove_relative", "--sync", "--", x, y)

    def nudge(self):
        """Moves the mouse a little to the right; what comes with the button in one frame turns nothing yet."""
        self.by(10, 0)
        time.sleep(0.2)

    def distance(self):
        """Metres from the camera to the crate."""
        return math.dist(self.last("camera"), self.last("crate"))


def test_a_handle_is_dragged_and_kept_or_put_back(world):
    with Desk(world) as desk:
        x, y = desk.last("arm")
        desk.grab(x, y)
        desk.to(x + 30, y)
        desk.to(x + 60, y)
        desk.until(lambda: desk.last("crate")[0] > 0.3, "a crate that comes along")
        assert desk.last("crate")[1:] == [0.3, 4.0], "along one axis alone"
        desk.play.press("Escape")
        desk.play.until_logged("kept False")
        desk.until(lambda: desk.last("crate") == [0.0, 0.3, 4.0], "the crate where it was")
        desk.mouse("mouseup", 1)
        desk.grab(x, y)
        desk.to(x + 60, y)
        desk.until(lambda: desk.last("crate")[0] > 0.3, "a crate that comes along")
        desk.mouse("mouseup", 1)
        desk.play.until_logged("kept True")
        assert desk.last("crate")[0] > 0.3
        assert "key 27" not in desk.play.log().split("kept False")[0], "what ends a drag is no key of a tool's"


def test_the_mouse_clicks_and_flies(world):
    with Desk(world) as desk:
        centre = desk.last("middle")  # of the picture: the camera looks at the crate
        x, y = map(int, desk.last("side"))
        desk.to(x, y)
        desk.mouse("click", 1)
        desk.play.until_logged(f"down of 0 at {x},{y} on crate")
        desk.mouse("click", "--repeat", 2, "--delay", 30, 1)
        desk.play.until_logged("double of 0")
        desk.mouse("click", 3)
        desk.play.until_logged(f"down of 1 at {x},{y}")

        desk.mouse("mousedown", 3)
        desk.until(lambda: desk.nudge() or desk.last("turn")[0] > 5, "a camera that turns to the right")
        desk.mouse("keydown", "w")
        desk.until(lambda: desk.last("camera")[2] > 0.3 and desk.last("camera")[0] > 0, "a camera that flies ahead")
        desk.mouse("keyup", "w")
        desk.mouse("mouseup", 3)
        assert "key 87" not in desk.play.log(), "keys that fly are no keys of a tool's"

        desk.play.press("f")
        desk.play.until_logged("key 70 True")
        desk.until(lambda: math.dist(desk.last("middle"), centre) < 8, "a camera that looks at the crate")
        before = desk.distance()
        desk.to(390, 270)
        desk.mouse("click", "--repeat", 3, 4)
        desk.until(lambda: desk.distance() < 0.8 * before, "a camera that comes nearer")


if __name__ == "__main__":
    game.main(dict(globals()))
