"""The look over levels: ours are clean, and a level with one of each mistake is told all of them."""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "support"))
import game

BAD = """
import kaVel
import objects.GameObjects as place
import words

LINT = {'floats': {'cellar/meant': 'it hangs on a thread', 'cellar/gone': 'it was there once'}}


def build(coordinator):
    kaVel.configure(coordinator.getManager('graphics2'), sceneAmbient=0.0)
    coordinator.loadMap('cellar')
    player = place.Player(coordinator, at=(-4, 0, 0))
    player.getComponent('player').batteryLifetime = 3.0  # 5.4 m
    words.said('bad.level')


def cellar(map):
    place.PartitioningGrid(map, at=(0, 0, 0), size=(24, 0, 24))
    place.Box(map, 'floor', at=(0, -0.1, 0), size=(20, 0.1, 12))
    for name, x, z, wide, deep in (('north', 0, 5, 20, 2), ('south', 0, -5, 20, 2), ('west', -9, 0, 2, 12),
                                   ('east', 9, 0, 2, 12), ('screen', -6, -1, 0.2, 6),
                                   ('a', 4, -3, 0.2, 1), ('b', 4, -1, 0.2, 1), ('c', 4, 1, 0.2, 1),
                                   ('d', 4, 3, 0.2, 1)):
        place.Block(map, name, at=(x, 0, z), size=(wide, 3, deep))
    place.HingedDoor(map, 'bolted', at=(4, 0, -2), turn=90, locked=True)
    place.HingedDoor(map, 'lost', at=(4, 0, 0), turn=90, key='lostKey')
    place.HingedDoor(map, 'shutIn', at=(4, 0, 2), turn=90, key='backKey')
    place.Key(map, 'backKey', at=(6, 0.0, 0))
    place.Trigger(map, 'trap', at=(6, 0, 2), size=(1, 1))
    place.Stairs(map, 'stairs', at=(0, 0, 0), steps=8)
    place.SphereLight(map, 'lamp', at=(-7.2, 1.5, -2), strength=2.0, reach=4.0)
    place.Jar(map, 'jar', at=(-2, 1.5, 0))
    place.Jar(map, 'meant', at=(-2, 1.5, 1))
    place.Chair(map, 'chair', at=(-3, 0.5, 5))
    place.Plate(map, 'plate', at=(-2, 0, -2))
    place.Plate(map, 'plate', at=(-2, 0, -3))
    place.Sound(map, 'drip', at=(1, 1, -2), event='Drip')
    ghost = place.Place(map, 'ghost', at=(0, 6, 2))
    kaVel.addComponent(ghost, 'pathFollower', 'PathFollower')


"""

#: Kind, object, script and line that is named, and what is said of it.
EXPECTED = [
    ("dark", "cellar:", "", "a battery lasts for 5 m; set a light"),
    ("unreachable", "cellar:", "", "square metres of floor"),
    ("locked", "cellar/bolted", "place.HingedDoor(map, 'bolted'", "no key opens it"),
    ("locked", "cellar/lost", "place.HingedDoor(map, 'lost'", "'lostKey' lies nowhere"),
    ("locked", "cellar/shutIn", "place.HingedDoor(map, 'shutIn'", "'backKey' lies where the player cannot come"),
    ("trigger", "cellar/trap", "place.Trigger", "nobody touches"),
    ("stairs", "cellar/stairs/slope", "place.Stairs", "in the dark"),
    ("leaks", "cellar/lamp", "place.SphereLight", "behind cellar/screen"),
    ("floats", "cellar/jar", "place.Jar(map, 'jar'", "touches nothing"),
    ("inWall", "cellar/chair", "place.Chair", "within cellar/north"),
    ("twice", "cellar/plate", "place.Plate", "2 of this name"),
    ("caption", "cellar/drip", "place.Sound", "'Drip' has no words"),
    ("creature", "cellar/ghost", "place.Place", "no floor under it"),
    ("exception", "cellar/gone", "", "take it out of LINT"),
]


def lint(*words):
    result = subprocess.run([sys.executable, str(ROOT / "tools" / "lint" / "lint.py"), *words], stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, text=True, check=False)
    return result.returncode, result.stdout


def test_our_levels_have_nothing_wrong_that_is_not_meant(world):
    code, text = lint("--game", str(world.build / "game"))
    assert code == 0, text
    assert re.search(r"^0 wrong in [1-9]\d* levels$", text, re.M), text


def test_each_mistake_of_a_level_is_told_with_its_line_and_what_helps(world):
    world.write("scripts/levels/Bad.py", BAD)
    english = world.folder / "scripts" / "words" / "english.py"
    lines = english.read_text(encoding="utf-8").splitlines(keepends=True)
    english.write_text("".join(line for line in lines if "'caption.Drip'" not in line), encoding="utf-8")
    code, text = lint("Bad", "--game", str(world.folder))
    assert code == 1, text
    source = BAD.splitlines()
    for kind, path, call, said in EXPECTED:
        found = [line for line in text.splitlines() if f": Bad: {kind}: {path}" in line and said in line]
        assert found, f"{kind} of {path}: {said}\n{text}"
        if call:
            number = int(re.match(r"scripts/levels/Bad\.py:(\d+): ", found[0])[1])
            assert call in source[number - 1], f"{found[0]}\n{source[number - 1]}"
    assert "Bad.py:14: text: 'bad.level' has no text" in text, text
    assert "cellar/meant" not in text, text


def test_a_level_that_cannot_be_built_is_no_clean_one(world):
    world.write("scripts/levels/Broken.py", "def build(coordinator):\n    raise ValueError('no walls today')\n")
    code, text = lint("Broken", "--game", str(world.folder))
    assert code == 1 and "no walls today" in text, text


if __name__ == "__main__":
    game.main(dict(globals()))
