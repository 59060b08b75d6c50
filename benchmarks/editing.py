"""W18 in the game itself: undoing changes of 5,000 pieces, loading what was saved, taking a changed script anew.

A script of the measure's own runs between two frames of an undrawn game in a folder of its own. Time of edits and loads
is processor time of the game's thread; a reload counts from the write on the clock of the wall, as a designer sees it.
"""
import pathlib
import random
import re
import statistics
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tests" / "support"))
import game  # noqa: E402

PIECES = 5000
#: What rows are to come to at most, by the beginnings of their names; of a saved level it is the ratio.
GOALS = {"undo-": "100 ms", "redo-": "100 ms", "load-Saved": "a ratio of 1.2", "reload-of-": "300 ms"}

LEVEL = '''"""%s: many crates."""

import kaVel
import objects.GameObjects as place
from kaVel import Coordinator, MapRootEntity


def build(coordinator: Coordinator):
    coordinator.loadMap('yard')


def yard(map: MapRootEntity):
    """The map."""
    kaVel.configure(map.getComponent('transform'), position=kaVel.Vec4(0, 2, 0, 1), scale=kaVel.Vec4(160, 4, 160, 0))
'''

#: What all drivers begin with: functions of the level by frame, and a line of the log for each figure.
DRIVER = """
import os
import time

import headless
import kaVel


def tell(name, value, check=True):
    kaVel.log('W18 %s %.6f %d' % (name, value, check))


def timed(function):
    begin = time.thread_time()
    function()
    return 1000 * (time.thread_time() - begin)


def attend(steps):
    doFrame = headless._doFrame
    headless.watch = lambda level, views=(), watch=headless.watch: watch(level)

    def step():
        loop = kaVel.getSystem('GameLoopSystem')
        work = steps(loop.frameNumber)
        if work:
            work(loop.currentlyActiveCoordinator)
        doFrame()

    headless._doFrame = step


"""

#: Each kind of change is done, and undone and done again several times; what stands there must be what stood there.
UNDO = """
from headless import treeDigest

ROUNDS = 5


def each(change):
    def do(edits, pieces):
        with edits.step('All'):
            for piece in pieces.all():
                change(edits, piece)
    return do


def move(edits, piece):
    x, y, z = piece.arguments['at']
    edits.change(piece, at=(x + 0.25, y, z))


def add(edits, pieces):
    with edits.step('All'):
        for number in range(len(pieces)):
            edits.add(pieces.maps()[0], 'Crate', name='more%d' % number, at=(number % 71, 0, number // 71))


CHANGES = {'move': each(move), 'add': add, 'remove': lambda edits, pieces: edits.remove(pieces.all()),
           'change': each(lambda edits, piece: edits.change(piece, scale=(1, 1.5, 1)))}


state = {}


def of(level):
    from editor.edits import Edits
    from editor.source import Pieces
    return Edits.of(level), Pieces.of(level)


def begin(name):
    def work(level):
        edits, pieces = of(level)
        state['before'] = treeDigest(pieces.maps()[0])
        tell('do-' + name, timed(lambda: CHANGES[name](edits, pieces)))
    return work


def goOn(name):
    def work(level):
        edits, pieces = of(level)
        map = pieces.maps()[0]
        after = treeDigest(map)
        for _ in range(ROUNDS):
            tell('undo-' + name, timed(edits.undo), treeDigest(map) == state['before'])
            tell('redo-' + name, timed(edits.redo), treeDigest(map) == after)
        edits.undo()
    return work


FRAMES = {}
for number, name in enumerate(CHANGES):
    FRAMES.update({2 + 4 * number: begin(name), 4 + 4 * number: goOn(name)})
attend(FRAMES.get)
"""

SAVE = """
def save(level):
    from editor.edits import Edits
    from editor.source import Pieces, Writing
    pieces, edits = Pieces.of(level), Edits.of(level)
    with edits.step('All'):
        for number, (x, z) in enumerate(PLACES, 1):
            edits.add(pieces.maps()[0], 'Crate', name='crate%d' % number, at=(x, 0, z))
    Writing.save(level)


attend({2: save}.get)
"""

#: Loads both levels in turn, each time as for the first time: a file that was touched is compiled anew.
LOAD = """
from headless import treeDigest

LEVELS = ('Written', 'Saved')


def load(level):
    import loader
    if not hasattr(loader, 'measured'):
        loader.measured = loader.loadLevel
        loader.loadLevel = loadLevel
    name = LEVELS[level.levelName == LEVELS[0]]
    os.utime('../scripts/levels/%s.py' % name)
    kaVel.getSystem('GameLoopSystem').queueLoadLevel(name)


def loadLevel(name):
    import loader
    levels = []
    taken = timed(lambda: levels.append(loader.measured(name)))
    if name in LEVELS:
        digest = treeDigest(levels[0].getChild('yard')).partition(', ')[2]
        tell('load-' + name, taken, int(digest, 16) % 1000000)
    return levels[0]


attend(lambda frame: load if frame % 3 == 2 else None)
"""

RELOAD = """
state = {}


def write(level):
    path = '../scripts/levels/%s.py' % level.levelName
    text = open(path, encoding='utf-8').read()
    state.update(level=level, begin=time.perf_counter(), used=time.process_time())
    with open(path, 'w', encoding='utf-8') as file:
        file.write(text + '\\n# changed\\n')


def look(level):
    if state and level and level != state['level']:
        tell('reload-of-' + level.levelName, 1000 * (time.perf_counter() - state['begin']))
        tell('reload-work-' + level.levelName, 1000 * (time.process_time() - state['used']))
        state.clear()
    elif state:
        time.sleep(0.002)


attend(lambda frame: write if frame % 100 == 10 and not state else look)
"""


class Editing:
    """The game of a build in a folder of its own, with levels of many crates."""

    def __init__(self, build, folder):
        self.world = game.World(build, pathlib.Path(folder) / "game")
        dice = random.Random(18)
        places = [(round(dice.uniform(-75, 75), 3), round(dice.uniform(-75, 75), 3)) for _ in range(PIECES)]
        self.table = "PLACES = (\n" + "".join(f"    {place},\n" for place in places) + ")\n"
        written = (LEVEL % "Written").replace("\n\ndef build", "\n" + self.table + "\n\ndef build", 1)
        self.world.write("scripts/levels/Written.py", written + "    for number, (x, z) in enumerate(PLACES, 1):\n"
                         "        place.Crate(map, 'crate%d' % number, at=(x, 0, z))\n")
        self.world.write("scripts/levels/Saved.py", LEVEL % "Saved")
        self.config = (ROOT / "scripts" / "GameConfig.py").read_text(encoding="utf-8") + "\nimport trial\n"
        self.world.write("scripts/GameConfig.py", self.config)

    def run(self, level, script, frames, **environment):
        """What a run told, by name: the values of each figure and their checks."""
        self.world.write("scripts/trial.py", DRIVER + script)
        outcome = self.world.run(level=level, frames=frames, KAVEL_SIZE="64x36", KAVEL_SEED="1", KAVEL_UNDRAWN="1",
                                 **environment)
        if outcome.code:
            raise SystemExit(f"bench: W18 in {level} ended with {outcome.code}:\n{outcome.log[-3000:]}")
        told = {}
        for name, value, check in re.findall(r"W18 (\S+) ([\d.]+) (\d+)", outcome.log):
            told.setdefault(name, []).append((float(value), int(check)))
        return told


def row(name, values, unit="ms"):
    """The middle of what one figure was; void where what stood there was not what should."""
    told = {"workload": f"W18 {name}", "subject": "engine", "median": statistics.median(each for each, _ in values),
            "unit": unit, "ratio": None, "check": values[0][1],
            "goal": next((goal for begin, goal in GOALS.items() if name.startswith(begin)), None)}
    if not all(check for _, check in values):
        told["void"] = "the level was not what it had been"
    return told


def rows(build, quick):
    """What was measured of edits, of loads and of reloads; the ratio of a saved level is to the one written by hand."""
    with tempfile.TemporaryDirectory(dir=build) as folder:
        editing = Editing(build, folder)
        found = [row(*told) for told in editing.run("Written", UNDO, frames=20).items()]
        editing.run("Saved", editing.table + SAVE, frames=4)
        found += load_rows(editing.run("Written", LOAD, frames=16 if quick else 31))
        for level in ("FirstRoom", "Written", "Nightfall"):
            told = editing.run(level, RELOAD, frames=350 if quick else 750, KAVEL_RELOAD="1")
            found += [row(name, values, "ms from the write" if name.startswith("reload-of") else "ms")
                      for name, values in told.items()]
    return found


def load_rows(told):
    found = {name: row(name, values) for name, values in told.items()}
    saved = found["load-Saved"]
    saved["ratio"] = saved["median"] / found["load-Written"]["median"]
    if saved["check"] != found["load-Written"]["check"]:
        saved["void"] = "what was saved is not what was written by hand"
    return list(found.values())
