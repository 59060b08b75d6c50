"""A level in the editor whose mouse and keys do one step of a test in each frame."""
import re

#: Stands at the begin of a level that has a map "room", and whose `build` calls `watch`; below it a test adds steps.
DRIVER = '''
import bindings
import kaVel
import objects.GameObjects as place
from headless import treeDigest

level = None
steps = []


def watch(coordinator):
    global level
    level = coordinator
    coordinator.loadMap('room')
    driver = kaVel.make('Entity', parent=coordinator, name='driver')
    kaVel.addComponent(driver, 'menu', 'ScriptComponent', frameCallback=lambda: steps and steps.pop(0)())


def editor():
    from editor.Editor import Editor
    return Editor.of(level)


def named(name):
    return editor().pieces.named(name)


def press(name, *modifiers):
    """Steps that press a key together with others, and let go of them."""
    codes = [*(bindings.KEYS[each] for each in modifiers), bindings.keyCode(name)]
    devices = kaVel.getSystem('InputSystem')
    steps.extend([lambda: [devices.keyDown(code) for code in codes],
                  lambda: [devices.keyUp(code) for code in reversed(codes)]])


def mouse(message, button, where):
    """Has the mouse say something from a place of the world, as `InputSystem` would."""
    window, seen = kaVel.getSystem('WindowSystem2'), editor().component.toScreen(kaVel.Vec4(*where, 1))
    side = max(window.width, window.height)
    kaVel.send(message, button, seen.x / side, (window.height - seen.y) / side)


def drag(begin, end):
    """Steps that press the button at one place of the world and let go at another."""
    steps.extend([lambda: mouse('MousePos', 0, begin), lambda: mouse('MouseDownMessage', 0, begin),
                  lambda: mouse('MousePos', 0, end), lambda: None, lambda: mouse('MouseUpMessage', 0, end),
                  lambda: None])


def click(where):
    drag(where, where)


def then(function):
    steps.append(function)


def say(what, tell):
    steps.append(lambda: kaVel.log('%s: %s' % (what, tell())))


def tree():
    """Count and hash of what stands in the room."""
    return treeDigest(level.getChild('room'))
'''


def run(world, level, frames):
    """Runs such a level, undrawn and in a window of 1280 by 720, to the end of its steps."""
    world.write("scripts/levels/Driven.py", DRIVER + level + "\nsay('steps', lambda: 'done')\n")
    outcome = world.run(level="Driven", frames=frames, KAVEL_SIZE="1280x720", KAVEL_UNDRAWN="1")
    outcome.expect_code(0)
    assert not outcome.has("could not do that"), outcome.log[-4000:]
    assert said(outcome, "steps") == ["done"], f"{frames} frames are too few\n{outcome.log[-3000:]}"
    return outcome


def said(outcome, what):
    """All that a run has said of something, in order."""
    return re.findall(rf"Information: {re.escape(what)}: (.*)", outcome.log)
