"""The game itself, which is killed while it saves: it goes on with the last save that it told of or with a later one,
and never with half of one. KILLS in the environment says how often."""
import os
import pathlib
import random
import re
import signal
import sys
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tests" / "support"), str(ROOT / "tools" / "saves")]
import game
from rooms import Document
from rooms import Folder as Files
from run_saves import HOOK

KILLS = int(os.environ.get("KILLS", "8"))
LONGEST_WAIT_S = 0.25  # from the first save of a run to its end: some dozen saves

#: The first level: goes on with what there is, as the menu's "Continue" does.
BEGIN = """
import saves

def goOn(frames):
    newest = saves.newest()
    told = saves.load(newest.name) if newest else saves.begin('Nightfall')
    frames.frameCallback = None

def build(coordinator):
    entity = kaVel.make('Entity', parent=coordinator, name='first')
    frames = kaVel.addComponent(entity, 'cursor', 'ScriptComponent')
    frames.frameCallback = lambda: goOn(frames)
"""

#: Counts its saves in what it saves, and tells of each that is made.
STEPS = """
import kaVel
import saves
from saves.Kept import keepPart

FILLING = 'x' * 40000
counts = []


def become(told):
    counts.append(told['count'])
    kaVel.log('BACK %d of %d.' % (told['count'], len(told['filling'])))


def attend(night):
    keepPart(night.map, 'counted', lambda: {'count': counts[-1] if counts else 0, 'filling': FILLING}, become)


def doFrame(night):
    for _ in range(20):  # a frame takes longer than a save
        counts.append((counts[-1] if counts else 0) + 1)
        outcome = saves.save()
        if not outcome.done:
            return counts.pop()
        kaVel.log('TOLD %d as %s.' % (counts[-1], outcome.name))
"""


def prepared(world):
    level = (ROOT / "scripts" / "levels" / "Nightfall.py").read_text(encoding="utf-8")
    attended = HOOK.replace("import steps\n", "import steps\n    steps.attend(_night)\n")
    world.write("scripts/levels/Nightfall.py", level + attended)
    world.write("scripts/levels/Begin.py", "import kaVel\n" + BEGIN)
    world.write("scripts/steps.py", STEPS)
    return world.folder / "saves"


class Saving:
    """A game that saves in every frame, and the lines that it has written."""

    def __init__(self, world, folder):
        self.process = world.begin("Begin", 10 ** 6, KAVEL_SAVES=str(folder), KAVEL_UNDRAWN="1")
        self.text = ""
        self.reader = threading.Thread(target=self.read)
        self.reader.start()

    def read(self):
        for line in self.process.stdout:
            self.text += line.decode("utf-8", "replace")

    def untilSaved(self):
        while "TOLD" not in self.text:
            assert self.reader.is_alive(), self.text[-3000:]
            time.sleep(0.005)

    def kill(self):
        self.process.send_signal(signal.SIGKILL)
        self.process.wait()
        self.reader.join()

    def numbers(self, pattern):
        return [int(number) for number in re.findall(pattern, self.text)]


def whole(folder):
    """The name of each save, the newest first, and its number; all can be read."""
    there = Files.Folder(str(folder))
    return {name: Document.read(there.read(name))["parts"]["counted"]["count"] for name in there.names()}


def test_a_game_that_is_killed_while_it_saves_goes_on_with_what_it_has_told(world):
    folder = prepared(world)
    dice, last, cut, saved = random.Random(7), 0, 0, 0
    for number in range(KILLS):
        game_ = Saving(world, folder)
        game_.untilSaved()
        time.sleep(dice.uniform(0, LONGEST_WAIT_S))
        game_.kill()
        cut += any(folder.glob("*.save.new"))
        assert game_.numbers(r"BACK (\d+) of 40000") == ([last] if number else []), game_.text[-2000:]
        told = game_.numbers(r"TOLD (\d+) as")
        found = whole(folder)
        serials = [name.serial for name in found]
        newest = next(iter(found.values()))
        assert newest >= told[-1], (told[-3:], found)  # what it told last may not have been read any more
        assert serials == list(range(serials[0], serials[-1] - 1, -1)) and 1 <= len(serials) <= 4, found
        saved += len(told)
        last = newest
    print(f"{KILLS} kills, {cut} of them within a file; {saved} saves were told of, none was lost")


def test_two_games_in_one_folder_save_at_once_and_neither_takes_a_save_from_the_other(world):
    folder = prepared(world)
    both = [Saving(world, folder), Saving(world, folder)]
    for each in both:
        each.untilSaved()
    time.sleep(2)
    for each in both:
        each.kill()
    names = [name for each in both for name in re.findall(r"TOLD \d+ as (\S+)\.\n", each.text)]
    assert len(names) == len(set(names)) > 4, names
    found = whole(folder)
    slots = [name.slot for name in found]
    assert all(slots.count(slot) in (3, 4) for slot in slots), found


if __name__ == "__main__":
    game.main(dict(globals()))
