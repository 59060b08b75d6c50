"""What is heard of screens: each thing that one does there, over a world that is silent meanwhile, and as loud as the
player has the menus."""
import pathlib
import sys

TESTS = pathlib.Path(__file__).resolve().parents[1]
sys.path[:0] = [str(TESTS / "support"), str(TESTS / "game")]
import game
from run_sound import Heard

#: A quiet level with somebody in it, and what is done at which frame.
QUIET = """
import kaVel
import settings
from screens import Kit as kit
from screens import Screens

UP, DOWN, LEFT, RIGHT, RETURN, ESCAPE = 0x26, 0x28, 0x25, 0x27, 0x0D, 0x1B


def build(coordinator):
    kaVel.make('Entity', parent=coordinator, name='Player')
    coordinator.getManager('sound')
    settings.set('interfaceVolume', %s)
    loop = kaVel.getSystem('GameLoopSystem')
    def doFrame():
        step = STEPS.get(loop.frameNumber)
        if step:
            step(coordinator)
    clock = kaVel.make('Entity', parent=coordinator, name='clock')
    kaVel.addComponent(clock, 'cursor', 'ScriptComponent', frameCallback=doFrame)


def press(key):
    def step(level):
        kaVel.getSystem('InputSystem').postKey(key, True)
        kaVel.getSystem('InputSystem').postKey(key, False)
    return step


STEPS = {60: lambda level: Screens.open(level, 'Samples'), 120: press(DOWN), 180: press(RIGHT), 240: press(RIGHT),
         300: press(DOWN), 360: press(RETURN), 420: press(ESCAPE)}
"""
SAMPLES = """
from screens import Kit as kit


def build(menu):
    column = kit.Column(menu, 'column', gap=6)
    kit.CheckBox(column, 'first', literal='First', value=False, changed=print)
    kit.Slider(column, 'slider', literal='Slider', least=0, most=1, step=1, value=0, changed=print, shown=str)
    kit.Button(column, 'last', literal='Last', pressed=lambda: None)
"""
DONE = ("opened", "focus", "slider", "refused", "focus again", "press", "back")


def heard_of_screens(world, volume):
    """Decibels of the sound right after each thing that was done."""
    world.write("scripts/levels/Quiet.py", QUIET % volume)
    world.write("scripts/screens/Samples.py", SAMPLES)
    file = world.folder / "screens.wav"
    run = world.run(level="Quiet", frames=480, KAVEL_SOUND=str(file), KAVEL_SIZE="64x36", KAVEL_UNDRAWN="1")
    run.expect_code(0)
    sound = Heard(file)
    return {done: sound.level(60 + 60 * number, 75 + 60 * number) for number, done in enumerate(DONE)}, sound


def test_all_that_is_done_on_a_screen_is_heard_at_the_volume_of_menus(world):
    loud, sound = heard_of_screens(world, 1.0)
    assert sound.level(0, 58) < -90, "before there is a screen"
    assert all(level > -50 for level in loud.values()), loud
    soft, _ = heard_of_screens(world, 0.25)
    assert all(8 < loud[done] - soft[done] < 16 for done in DONE), (loud, soft)
    silent, _ = heard_of_screens(world, 0.0)
    assert all(level < -90 for level in silent.values()), silent


if __name__ == "__main__":
    game.main(globals())
