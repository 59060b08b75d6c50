"""Edits of levels written back into their scripts: every level loads as it was left, and reads as somebody wrote it."""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

#: Runs `steps` of a driver, functions (level, pieces, edits) by frame, and logs what a tree is like.
DRIVER = """
import hashlib

import headless
import kaVel
import session

KEEPS_OUT = ('/Console', '/Player', '.Editor', '/Screen', '/cursor', 'walkways', '/mesh of ', 'Manager')
MOVING = ('TransformComponent',)


def of(level):
    from editor.edits import Edits
    from editor.source import Pieces
    return Pieces.of(level), Edits.of(level)


def named(pieces, name, number=0):
    return [piece for piece in pieces.all() if piece.name == name][number]


def rows(level):
    # What stands in a level: paths, classes and properties in an order of their own, places of what stays where it is.
    found, still = [], standing(level)
    for handle in kaVel.descendants(level):
        path = kaVel.pathOf(handle)
        if handle.isDying() or 'unnamed__' in path or any(each in path for each in KEEPS_OUT):
            continue
        found.append('%s %s %s' % (path, handle._getType().name, ' '.join(properties(handle, still))))
    return sorted(found)


def standing(level):
    pieces = [each for each in of(level)[0].all() if each.stand.isRigid and not movesByItself(each)]
    return {transform for each in pieces for transform, _, _ in each.stand.places}


def movesByItself(piece):
    return any(each._getType().name == 'RigidBody' for each in kaVel.descendants(piece.root))


def properties(handle, still):
    kind = handle._getType().name
    if kind in MOVING and handle not in still:
        return []
    names = {'TransformComponent': ('position', 'orientation', 'scale'), 'BoundingVolume': ('hitBox', 'volumeType'),
             'ModelGraphicsComponent2': ('meshName', 'textureName', 'castShadows'),
             'LightComponent': ('color', 'attenuationEnd'), 'SoundComponent': ('soundList',)}.get(kind, ())
    return ['%s=%s' % (name, getattr(handle, name)) for name in names if hasattr(handle, name)]


def tell(title, level):
    session.editing.setdefault('.told', {})[title] = rows(level)
    kaVel.log('%s: %d objects' % (title, len(rows(level))))


def compare(one, other):
    told = session.editing['.told']
    gone, new = set(told[one]) - set(told[other]), set(told[other]) - set(told[one])
    same = sorted(told[one]) == sorted(told[other])
    kaVel.log('%s and %s are %s' % (one, other, 'the same' if same else 'different'))
    for sign, each in [('-', each) for each in sorted(gone)[:12]] + [('+', each) for each in sorted(new)[:12]]:
        kaVel.log('%s %s' % (sign, each))


def attend(steps):
    watch = headless.watch
    headless.watch = lambda level, views=(): watch(level)
    doFrame = headless._doFrame

    def step():
        loop = kaVel.getSystem('GameLoopSystem')
        work = steps.get(loop.frameNumber)
        if work:
            work(loop.currentlyActiveCoordinator)
        doFrame()

    headless._doFrame = step


def reload(level):
    kaVel.getSystem('GameLoopSystem').queueLoadLevel(level.levelName)
"""


def run(world, level, steps, frames=12, clean=True, **more):
    """Runs a level with the steps that a text defines: a dictionary STEPS of functions (level) by frame."""
    config = (game.ROOT / "scripts" / "GameConfig.py").read_text(encoding="utf-8")
    world.write("scripts/GameConfig.py", config + "\nimport trial\n")
    world.write("scripts/trial.py", DRIVER + steps + "\n\nattend(STEPS)\n")
    outcome = world.run(level=level, frames=frames, KAVEL_SIZE="64x36", KAVEL_SEED="1", **more)
    outcome.expect_code(0)
    for trouble in ("Traceback", "Error:", "is left out") if clean else ():
        assert not outcome.has(trouble), outcome.log[-4000:]
    return outcome


#: Some of everything, at random, in any level.
ANYTHING = """
import random


def edit(level):
    pieces, edits = of(level)
    dice = random.Random(SEED)
    still = [each for each in pieces.all() if each.stand.isRigid and each.source and each.stand.places
             and not each.stand.isKept]
    tell('begin', level)
    for piece in dice.sample(still, min(len(still), 16)):
        x, y, z = piece.arguments['at'] if len(piece.arguments.get('at', ())) == 3 else (0, 0, 0)
        if 'at' in piece.arguments:
            edits.change(piece, at=(x + 0.25, y, z - 0.125))
        if 'turn' in piece.arguments:
            edits.change(piece, turn=dice.choice((33.5, 90, 181)))
    for piece in dice.sample(still, min(len(still), 4)):
        if 'scale' in piece.arguments:
            edits.change(piece, scale=(1, 1.5, 1))
    leaves = [each for each in still if not pieces.below(each)]
    edits.remove(dice.sample(leaves, min(len(leaves), 5)))
    for piece in [each for each in dice.sample(leaves, min(len(leaves), 4)) if not each.removed]:
        drawn = piece.root.getChild('graphics2')
        if drawn:
            edits.setProperty(drawn, 'castShadows', False)
    for map in pieces.maps():
        crates = [edits.add(map, 'Crate', at=(0.5 * number, 0, 1)) for number in range(4)]
        edits.add(crates[-1], 'Cup', at=(1.5, 0.6, 1))
    for piece in [each for each in leaves if not each.removed][:1]:
        edits.rename(piece, 'another')


def save(level):
    from editor.source import Writing
    tell('edited', level)
    kaVel.log('saved %d files' % len(Writing.save(level)))
    reload(level)


def undo(level):
    from editor.source import Writing
    tell('loaded', level)
    compare('edited', 'loaded')
    kaVel.log('unsaved: %r' % Writing.diff(level))
    pieces, edits = of(level)
    while edits.undo():
        pass


def again(level):
    tell('undone', level)
    compare('begin', 'undone')


STEPS = {2: edit, 3: save, 5: undo, 6: again}
"""


def test_any_level_loads_as_it_was_edited_and_stands_as_before_when_all_is_undone(world):
    for number, level in enumerate(levels()):
        print(level, flush=True)
        outcome = run(world, level, "SEED = %d\n" % number + ANYTHING)
        outcome.expect("edited and loaded are the same")
        outcome.expect("unsaved: ''")
        outcome.expect("begin and undone are the same")
        for script in (world.folder / "scripts" / "levels").glob("*.changes"):
            script.unlink()


#: Edits, saved and loaded, of which some are undone before there are more; at last all of them are.
SEQUENCE = ANYTHING.replace("    tell('begin', level)\n", "") + """
def files(level):
    import os, levelChanges
    changes = levelChanges.fileOf(level.levelName)
    return os.path.exists(changes), open(changes.replace('.changes', '.py')).read()


def first(level):
    tell('begin', level)
    session.editing['.files'] = files(level)
    edit(level)
    save(level)


def some(level):
    global SEED
    tell('loaded', level)
    compare('edited', 'loaded')
    edits = of(level)[1]
    edits.goTo(edits.position * 2 // 3)
    SEED += 1000
    edit(level)
    save(level)


def none(level):
    tell('loaded', level)
    compare('edited', 'loaded')
    of(level)[1].goTo(0)
    save(level)


def last(level):
    tell('loaded', level)
    compare('begin', 'loaded')
    kaVel.log('files as they were: %s' % (files(level) == session.editing['.files']))


STEPS = {2: first, 4: some, 6: some, 8: none, 10: last}
"""


def test_what_is_undone_over_saves_and_loads_leaves_the_files_as_they_were(world):
    for level, seed in (("Sample", 2000), ("Workshop", 2000)):
        outcome = run(world, level, "SEED = %d\n" % seed + SEQUENCE, frames=14)
        assert outcome.log.count("edited and loaded are the same") == 3, outcome.log[-4000:]
        outcome.expect("begin and loaded are the same")
        outcome.expect("files as they were: True")


def test_a_table_of_which_one_row_is_left_is_a_table(world):
    outcome = run(world, "FirstRoom", "SEED = 202\n" + ANYTHING)  # takes one of two bookcases, and much besides
    assert "for z, number in ((-2.175, 2),):" in (world.folder / "scripts/levels/FirstRoom.py").read_text()
    outcome.expect("edited and loaded are the same")
    outcome.expect("begin and undone are the same")


def levels():
    """All levels in which something stands that could be moved."""
    return [file.stem for file in sorted((game.ROOT / "scripts" / "levels").glob("*.py"))
            if "loadMap" in file.read_text(encoding="utf-8")]


if __name__ == "__main__":
    game.main(globals())
