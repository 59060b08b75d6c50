"""Chains of edits by chance: undone, done again, saved and loaded, a level is what it was at each of these times.

KAVEL_CHAINS=200 tries so many chains in place of the few that always run, KAVEL_CHAINS=40-60 those of these numbers;
KAVEL_CHAINS_KIND=hang tries none but hangings.
"""
import os
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
from run_edits import CELLAR
from run_source import run

#: The cellar with what else levels are written with: a helper that is called in a loop, equal names, a part that is
#: hung below what a helper gives back.
HOUSE = CELLAR.replace("    stove(map)\n", """\
    stove(map)
    for x in (1, 3):
        two(map, x)
    shelf = bed(map, 'shelf', at=(-8, 0, 4))
    place.Book(shelf, 'bible', at=(-8, 0.6, 4))
    for corner in (table, shelf):
        place.Plate(corner, 'dish', at=(-7, 0.6, 4))
""") + """

def two(map: MapRootEntity, x: float):
    place.Crate(map, 'box', at=(x, 0, 5))
    place.Crate(map, 'box', at=(x + 1, 0, 5))
"""

CHAINS = """
import os
import random
import traceback

import levelChanges
from editor.Editor import Editor
from editor.edits.Refused import Refused
from editor.source import Writing

PATIENCE = 100  # frames that a level may take to be loaded
FILES = None
LINES = []


def note(text):
    LINES.append(text)


def files(level):
    changes = levelChanges.fileOf(level.levelName)
    return [open(file).read() if os.path.exists(file) else None
            for file in (changes.replace('.changes', '.py'), changes)]


def restore(level):
    changes = levelChanges.fileOf(level.levelName)
    for file, text in zip((changes.replace('.changes', '.py'), changes), FILES):
        if text is not None:
            open(file, 'w').write(text)
        elif os.path.exists(file):
            os.remove(file)


def tree(level):
    # What stands in the house, in its order.
    found = []
    for handle in kaVel.descendants(level.getChild('yard')):
        path, kind = kaVel.pathOf(handle), handle._getType().name
        if handle.isDying() or any(each in path for each in (*KEEPS_OUT, '.gone', 'unnamed__', '.partition')):
            continue
        found.append('%s %s %s' % (path, kind, place(handle) if kind in MOVING else ' '.join(properties(handle, ()))))
    return found


def place(transform):
    # Where it stands, as far as the digits of a level tell; what falls by itself stands anywhere.
    if any(each._getType().name == 'RigidBody' for each in transform.parent.children):
        return ''
    position, turn, scale = transform.position, transform.orientation, transform.scale
    numbers = position.x, position.y, position.z, turn.r, turn.i, turn.j, turn.k, scale.x, scale.y, scale.z
    return ' '.join('%.2f' % (each + 0.00137) for each in numbers)


def check(seed, what, one, other, inOrder=True):
    if one == other or not inOrder and sorted(one) == sorted(other):
        return True
    note('chain %d: WRONG, %s' % (seed, what))
    if sorted(one) == sorted(other):
        place = next(number for number, (a, b) in enumerate(zip(one, other)) if a != b)
        note('    only in another order: %s before %s' % (one[place], other[place]))
        return False
    gone, new = [each for each in one if each not in other], [each for each in other if each not in one]
    for sign, rows in (('-', gone), ('+', new)):
        for each in rows[:6]:
            note('    %s %s' % (sign, each))
    return False


def one(level, dice):
    # One edit; returns what it was.
    pieces, edits = of(level)
    commands, editor = Editor.of(level).commands, Editor.of(level)
    there = pieces.all()
    piece, other = dice.choice(there), dice.choice(there)
    kind = KIND or dice.choice(('place', 'move', 'move', 'turn', 'scale', 'array', 'copy', 'group', 'hang', 'hang',
                                'hang', 'unhang', 'remove', 'rename', 'property', 'hide', 'shadow'))
    told = '%s %s' % (kind, piece.path)
    if kind == 'place':
        above = dice.choice([pieces.maps()[0], pieces.maps()[0], piece])
        told = '%s below %s' % (told, above)
        edits.add(above, dice.choice(('Crate', 'LitLamp', 'Book', 'Barrel', 'DiningTable')),
                  at=(dice.randrange(-9, 9), 0, dice.randrange(-9, 9)))
    elif kind == 'move' and 'at' in piece.arguments:
        editor.select([piece, other])
        commands.move((dice.randrange(-2, 3), 0, 0.25))
    elif kind == 'turn' and 'turn' in piece.arguments:
        edits.change(piece, turn=dice.randrange(-180, 180))
    elif kind == 'scale' and 'scale' in piece.arguments:
        edits.change(piece, scale=(1, dice.choice((1, 1.25, 1.5)), 1))
    elif kind == 'shadow' and 'castShadows' in piece.arguments:
        edits.change(piece, castShadows=dice.random() < 0.5)
    elif kind == 'array' and len(there) < 60:
        editor.select([piece])
        commands.array(dice.randrange(1, 5), (1, 0, 0), dice.choice((0, 30)))
    elif kind == 'copy' and len(there) < 60:
        editor.select([piece, other])
        commands.duplicate()
    elif kind == 'group':
        edits.group([piece, other], dice.choice(('', 'few')))
    elif kind == 'hang':
        told = '%s below %s' % (told, other.path)
        edits.reparent(piece, other)
    elif kind == 'unhang':
        edits.reparent(piece, None)
    elif kind == 'remove' and len(there) > 8:
        told = '%s and %s' % (told, other.path)
        edits.remove(dict.fromkeys([piece, other]))
    elif kind == 'rename':
        name = dice.choice(('name%d' % dice.randrange(6), other.name))
        told = '%s to %s' % (told, name)
        edits.rename(piece, name)
    elif kind == 'property' and piece.root.getChild('graphics2'):
        told = 'no shadow: ' + told
        edits.setProperty(piece.root.getChild('graphics2'), 'castShadows', dice.random() < 0.5)
    elif kind == 'hide':
        edits.hide([piece], dice.random() < 0.5)
    else:
        return ''
    return told


def several(seed, level, dice, count):
    edits = of(level)[1]
    loadedAt = edits.position
    for _ in range(count):
        before, position = tree(level), edits.position
        try:
            told = one(level, dice)
        except Refused as refused:
            note('    refused: %s' % refused)
            check(seed, 'a refused edit changed something', before, tree(level))
            continue
        if not told or edits.position == position:
            continue
        note('    %s' % told)
        after = tree(level)
        edits.undo()
        check(seed, 'undone at once', before, tree(level))
        edits.redo()
        check(seed, 'done again at once', after, tree(level))
        if dice.random() < 0.15:
            back = min(dice.randrange(1, 5), edits.position)
            for _ in range(back):
                edits.undo()
            if dice.random() < 0.7:
                for _ in range(back):
                    edits.redo()
                # What was undone past the load stands behind its siblings, as what a script adds does.
                check(seed, 'done again', after, tree(level), inOrder=edits.position - back >= loadedAt)
            else:
                note('    %d undone' % back)


def save(level):
    note(Writing.diff(level))
    Writing.save(level)
    reload(level)


def stopped(level):
    level.loopState = kaVel.Coordinator.LoopControlState.LOOP_STOP
    return level


def chain(seed, level):
    # Yields after which the level has been loaded anew.
    dice = random.Random(seed)
    restore(level)
    session.editing.clear()
    reload(level)
    level = stopped((yield))
    first = files(level)
    begin = tree(level)
    for turn in range(ROUNDS):
        note('    round %d' % turn)
        several(seed, level, dice, dice.randrange(2, 11))
        edited = tree(level)
        save(level)
        level = stopped((yield))
        check(seed, 'loaded as edited', edited, tree(level), inOrder=False)
        check(seed, 'nothing unsaved', '', Writing.diff(level))
    loaded = tree(level)
    edits = of(level)[1]
    count = edits.position
    edits.goTo(0)
    check(seed, 'all undone', begin, tree(level), inOrder=False)
    edits.goTo(count)
    check(seed, 'all done again', loaded, tree(level), inOrder=False)
    edits.goTo(0)
    save(level)
    level = stopped((yield))
    check(seed, 'loaded as undone', begin, tree(level))
    for name, one, other in zip(('script', 'changes'), first, files(level)):
        check(seed, 'the %s as it was' % name, (one or '').splitlines(), (other or '').splitlines())


class Chains:
    def __init__(self):
        self.seeds = list(SEEDS)
        self.now, self.wait, self.seed, self.old = None, 2, 0, None
        self.patience = PATIENCE

    def __call__(self, level):
        global FILES
        FILES = FILES or files(level)
        if level == self.old:
            return
        if not level.getChild('yard'):
            self.patience -= 1
            if not self.patience:
                note('chain %d: WRONG, what was saved cannot be loaded' % self.seed)
                self.end()
                restore(level)
                reload(level)
                self.patience = PATIENCE
            return
        self.patience = PATIENCE
        self.wait -= 1
        if self.wait > 0:
            return
        self.wait = 2
        try:
            if self.now is None:
                if not self.seeds:
                    kaVel.getSystem('GameLoopSystem').quit(0)
                    return
                self.seed = self.seeds.pop(0)
                LINES.clear()
                self.now = chain(self.seed, level)
                next(self.now)
            else:
                self.now.send(level)
            self.old = level
            return
        except StopIteration:
            pass
        except Exception:
            note('chain %d: WRONG, raised' % self.seed)
            note(traceback.format_exc())
        self.end()

    def end(self):
        self.now = None
        isWrong = any('WRONG' in each for each in LINES)
        kaVel.log('chain %d is %s' % (self.seed, 'bad' if isWrong else 'good'))
        if isWrong:
            for each in LINES:
                kaVel.log(each)


class Every(dict):
    def get(self, key, default=None):
        return WORK


WORK = Chains()
STEPS = Every()
"""


#: Chains that always run: those that once went wrong, each in another way.
ALWAYS = (5, 8, 30, 34, 78, 133)
ROUNDS = 3


def seeds():
    text = os.environ.get("KAVEL_CHAINS", "")
    if not text:
        return list(ALWAYS)
    begin, dash, end = text.partition("-")
    return list(range(int(begin), int(end) + 1)) if dash else list(range(1, int(text) + 1))


def test_whatever_is_edited_is_undone_done_again_saved_and_loaded(world):
    world.write("scripts/levels/Yard.py", HOUSE)
    wanted = seeds()
    head = "SEEDS, KIND, ROUNDS = %r, %r, %d\n" % (wanted, os.environ.get("KAVEL_CHAINS_KIND", ""), ROUNDS)
    outcome = run(world, "Yard", head + CHAINS, frames=100 + len(wanted) * 40 * (ROUNDS + 3), clean=False)
    bad = re.findall(r"chain (\d+) is bad", outcome.log)
    good = re.findall(r"chain (\d+) is good", outcome.log)
    if bad and "KAVEL_CHAINS_LOG" in os.environ:
        pathlib.Path(os.environ["KAVEL_CHAINS_LOG"]).write_text(outcome.log, encoding="utf-8")
    assert not bad, f"{len(bad)} of {len(wanted)} chains went wrong: {' '.join(bad)}\n{outcome.log[-4000:]}"
    assert len(good) == len(wanted), outcome.log[-3000:]
    for trouble in ("Traceback", "is left out", "found no more", "is not set", "what is no more"):
        assert trouble not in outcome.log, outcome.log[-4000:]


if __name__ == "__main__":
    game.main(globals())
