"""The level "Sample", which is made of patterns' arguments alone: somebody gets through it with keys and mouse."""
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
import golden

COURSE = '''
import kaVel
from courseDriver import Driver

LEVEL, SEED = 'Sample', 3


def play(driver):
    level = driver.coordinator
    player = level.getChild('Player').getComponent('player')
    house = level.getChild('house')

    def door(name):
        return house.getDescendantByPath('rooms/walls/' + name).getComponent('physics')

    def has(key):
        return bool(level.getChild('Player').getDescendantByPath('pockets/' + key))

    def take(key, x, y, z):
        yield from driver.wait(0.5)  # until he stands
        for _ in range(6):  # the view goes on a little, and a key is small
            yield from driver.use(x, y, z)
            yield from driver.wait(0.3)
            if has(key):
                return
        raise RuntimeError('%s cannot be taken' % key)

    def opens(name, x, z):
        yield from driver.use(x, 1.05, z)
        yield from driver.waitUntil(lambda: abs(door(name).prevAngle) > 1.2, name + ' is open', 6)

    yield from driver.wait(0.5)
    yield from driver.walk((-5.6, -1.4))
    yield from driver.use(-6.3, 0.68, -1.4)
    yield from driver.waitUntil(lambda: player.hasFlashlight, 'the lamp is taken', 2)
    yield from driver.walk((-6.0, 1.4), (-6.1, 2.3))
    yield from driver.wait(0.5)
    yield from driver.lookAt(-5.35, 0.78, 3.15, within=3.0)
    yield from driver.tap('use')
    yield from driver.wait(1.5)
    yield from driver.tap('use')
    yield from driver.wait(0.5)
    yield from driver.walk((-5.8, 1.4), (-3.2, 1.6), (-2.9, 2.0))
    warden = house.getChild('warden')
    kaVel.log('note: the warden goes: %s' % kaVel.why(warden))
    yield from opens('bedroomDoor', -2, 2)
    yield from driver.waitUntil(lambda: warden.getComponent('transform').position.x < 0.5, 'he walks his round', 60)
    yield from driver.waitUntil(lambda: warden.getComponent('transform').position.x > 2.5, 'he walks back', 60)
    yield from driver.walk((-0.6, 2.0), (0.4, 0.9), (4.6, 0.8), (5.6, 2.6))
    yield from take('storeKey', 6.3, 0.66, 3.35)
    yield from driver.walk((4.6, 0.9), (1.0, 0.8))
    yield from driver.use(1.0, 1.05, 0)
    yield from driver.waitUntil(lambda: not door('storeDoor').locked, 'the store is unlocked', 3)
    yield from opens('storeDoor', 1.0, 0)
    kaVel.log('note: the lamp burns: %s' % house.getDescendantByPath('hallLamp/cone/graphics2').visible)
    yield from driver.walk((1.0, -0.9), (3.6, -1.8), (4.9, -2.5))
    yield from take('frontKey', 5.4, 0.775, -3.2)
    yield from driver.wait(0.3)
    kaVel.log('note: the lamp burns: %s' % house.getDescendantByPath('hallLamp/cone/graphics2').visible)
    yield from driver.walk((3.6, -1.8), (1.0, -1.0), (1.0, 0.9), (5.9, 2.0))
    yield from driver.use(7, 1.05, 2)
    yield from driver.waitUntil(lambda: not door('frontDoor').locked, 'the front door is unlocked', 3)
    yield from opens('frontDoor', 7, 2)
    yield from driver.walkTo(8.4, 2)
    yield from driver.waitUntil(lambda: driver.coordinator.levelName != 'Sample', 'it leads on', 12)
    kaVel.log('note: out, to %s' % driver.coordinator.levelName)
'''


def test_the_sample_is_played_from_waking_to_the_open_door(world):
    golden.small(world, (640, 360))  # at fewer pixels the mouse turns the view in large steps
    world.write("scripts/courses/sampleRound.py", COURSE)
    run = world.run(level="Sample", frames=20000, KAVEL_COURSE="sampleRound", KAVEL_UNDRAWN="1", KAVEL_VERBOSE="1")
    run.expect_code(0)
    run.expect("The course is through")
    notes = re.findall(r"note: (.*)", run.log)
    assert "walks its round" in notes[0], notes
    assert [note for note in notes if "burns" in note] == ["the lamp burns: True", "the lamp burns: False"], notes
    assert notes[-1] == "out, to Title", notes
    bad = [line for line in run.log.splitlines() if re.search(r"(Warning|Error): |Traceback", line)]
    assert not bad, "\n".join(bad)


if __name__ == "__main__":
    game.main(dict(globals()))
