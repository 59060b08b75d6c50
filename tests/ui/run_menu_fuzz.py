"""Random input for ten simulated minutes through all screens: Escape, or B, leads back from anywhere, and no script
fails."""
import os
import pathlib
import shutil
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

#: Another one tries other inputs.
SEED = int(os.environ.get("FUZZ_SEED", "13"))
FRAMES = 36000
LEAST_INPUTS = 5000

FUZZ = '''
import importlib
import random

import kaVel
from screens import Screens, Ways

Ways.FIRST = 'FirstRoom'  # a new game is to begin in little time

KEYS = [0x25, 0x26, 0x27, 0x28] * 6 + [0x0D] * 8 + [0x20, 0x09, 0x09, 0x10, 0x08, 0x21, 0x22] + list(range(0x41, 0x5B))
KEYS += list(range(0x31, 0x3A))
PAD = [0x1, 0x2, 0x4, 0x8, 0x100, 0x200, 0x1000, 0x1000, 0x1000, 0x2000, 0x4000, 0x8000]
ESCAPE, PAD_B = 0x1B, 0x2000
# Those that one does not leave but by choosing.
ENDS = ('Main', 'Death')
MOST_BACK = 12

chance = random.Random(%d)
realSystem = kaVel.getSystem
inputs = quits = 0
seen = set()


class Staying:
    """The game loop, but for leaving the game."""

    def __init__(self, loop):
        self.__dict__['loop'] = loop

    def __getattr__(self, name):
        return getattr(self.loop, name)

    def __setattr__(self, name, value):
        setattr(self.loop, name, value)

    def quit(self, code):
        global quits
        quits += 1


def system(name):
    return Staying(realSystem(name)) if name == 'GameLoopSystem' else realSystem(name)


kaVel.getSystem = system


def play(driver):
    names = [name for name in Screens.known() if name not in ('Ask', 'Main')]
    while True:
        level = driver.coordinator
        if not level.getChild('Player'):
            yield
        elif not Screens.isOpen(level):
            name = chance.choice(names)
            module = importlib.import_module('screens.' + name)
            Screens.open(level, name, **(module.sample(level) if hasattr(module, 'sample') else {}))
        for _ in range(chance.randrange(10, 60)):
            seen.update(Screens.names(driver.coordinator))
            yield from one()
        kaVel.getSystem('FramePacingSystem').frameLimit = 0  # what the options may have set; nobody waits for frames
        yield from goBack(driver)
        kaVel.log('FUZZ %d inputs, %d times out of the game, screens: %s' % (inputs, quits, ' '.join(sorted(seen))))


def one():
    global inputs
    inputs += 1
    keyboard = kaVel.getSystem('InputSystem')
    kind = chance.randrange(10)
    if kind < 5:
        key = chance.choice(KEYS)
        keyboard.postKey(key, True)
        for _ in range(chance.choice((1,) * 9 + (40,))):
            yield
        keyboard.postKey(key, False)
    elif kind < 7:
        bit = chance.choice(PAD)
        for _ in range(chance.choice((1,) * 6 + (30,))):
            kaVel.send('ButtonPressed', bit, 0)
            yield
    else:
        x, y = chance.random(), chance.random() * 0.5625
        kaVel.send('MousePos', 5, x, y)
        yield
        button = chance.choice((0, 0, 0, 0, 1, 3))
        kaVel.send('MouseDownMessage', button, x, y)
        kaVel.send('MousePos', 0, x + chance.uniform(-0.02, 0.02), y)
        yield
        kaVel.send('MouseUpMessage', button, x, y)
        kaVel.send('MouseWheelMessage', chance.choice((-120, 120)), x, y)
    yield


def goBack(driver):
    """By Escape, or by B of the pad, to the game or the main menu."""
    byPad = chance.random() < 0.4
    way = []
    for _ in range(MOST_BACK):
        level = driver.coordinator
        names = Screens.names(level)
        if not names or (len(names) == 1 and names[0] in ENDS):
            return
        way.append(names)
        if byPad:
            kaVel.send('ButtonPressed', PAD_B, 0)
        else:
            kaVel.getSystem('InputSystem').postKey(ESCAPE, True)
            yield
            kaVel.getSystem('InputSystem').postKey(ESCAPE, False)
        for _ in range(4):
            yield
    kaVel.log('DEAD END by %s: %s' % ('pad' if byPad else 'Escape', way))
    Screens.closeAll(driver.coordinator)
'''


def fuzz(world, level, frames):
    """Runs a part of the ten minutes; returns how many inputs it took."""
    world.write("scripts/courses/fuzz.py", FUZZ.replace("Random(%d)", f"Random({SEED})"))
    shutil.copytree(game.ROOT / "examples", world.folder / ".local/share/mornal/mods", dirs_exist_ok=True)
    run = world.run(level=level, frames=frames, KAVEL_COURSE="fuzz", KAVEL_UNDRAWN="1", KAVEL_SAVES=str(world.folder))
    assert "DEAD END" not in run.log, [line for line in run.log.splitlines() if "DEAD END" in line][:5]
    assert "Traceback" not in run.log, run.log[max(run.log.index("Traceback") - 500, 0):][:3000]
    last = [line for line in run.log.splitlines() if "FUZZ" in line][-1]
    print(level, last.split("FUZZ ")[1])
    return int(last.split("FUZZ ")[1].split()[0])


def test_ten_minutes_of_random_input_end_in_no_dead_end_and_raise_nothing(world):
    assert sum(fuzz(world, level, FRAMES // 2) for level in ("FirstRoom", "Title")) > LEAST_INPUTS


if __name__ == "__main__":
    game.main(globals())
