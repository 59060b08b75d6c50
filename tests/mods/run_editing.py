"""Levels are edited with mods on: what was changed lies in the mod, and stands there in runs with it alone."""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
import mods_world

#: Opens the editor in a level, does something with it, and tells what stands there.
COURSE = """
import kaVel

LEVEL, SEED = '{level}', 1


def play(driver):
    yield
    from editor.Editor import Editor
    level = kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator
    editor = Editor.of(level)
    editor.open()
    yield
{body}
    yield
    for piece in editor.pieces.all():
        if piece.name in ('chair', 'crate', 'seat'):
            at = piece.root.getComponent('transform').position
            kaVel.log('stands: %s %.2f %.2f' % (piece.name, at.x, at.z))
    kaVel.log('saved: %s' % editor.isSaved)
    editor.close()
    yield
"""
HALL = """
import objects.GameObjects as place


def build(coordinator):
    coordinator.loadMap('house')
    place.Player(coordinator, at=(0, 0, -2))


def house(map):
    place.Room(map, 'room', size=(6, 6))
    place.Chair(map, 'chair', at=(1, 0, 1))
    place.CargoCrate(map, 'crate', at=(-1, 0, 1))
"""
CELLAR = """
[player]
at = [0, 0, -2]

[[place]]
pattern = "Room"
name = "room"

[[place]]
pattern = "Chair"
name = "chair"
at = [1, 0, 1]

[[place]]
pattern = "CargoCrate"
name = "crate"
at = [-1, 0, 1]
"""
EDIT = """
    editor.edits.change(editor.pieces.named('chair'), at=(2, 0, 1.5))
    editor.edits.remove([editor.pieces.named('crate')])
    editor.add('Armchair', 'seat', at=(0.5, 0, 2))
"""
SAVE = "    editor.save()\n"
BEFORE = ["chair 1.00 1.00", "crate -1.00 1.00"]
AFTER = ["chair 2.00 1.50", "seat 0.50 2.00"]


def stands(world, level, body="", *names, code=0, **environment):
    world.write("scripts/courses/edited.py", COURSE.format(level=level, body=body))
    outcome = mods_world.run(world, *names, level=level, KAVEL_COURSE="edited", KAVEL_UNDRAWN="1", frames=30,
                             **environment)
    outcome.expect_code(code)
    assert "Traceback" not in outcome.log, outcome.log[-3000:]
    return sorted(line.split("stands: ")[1] for line in outcome.log.splitlines() if "stands: " in line), outcome


def test_a_level_of_the_game_is_changed_by_the_mod_that_is_chosen_and_stays_itself(world):
    world.write("scripts/levels/Hall.py", HALL)
    mods_world.write(world, "keep", files={"words/english.toml": ""})
    _, outcome = stands(world, "Hall", EDIT + SAVE, "keep", KAVEL_SAVEMODS="1")
    outcome.expect("Choose where this is saved")
    changes = mods_world.folder(world, "keep") / "levels" / "Hall.changes"
    assert not changes.exists()

    _, outcome = stands(world, "Hall", EDIT + "    editor.saveTarget = 'keep'\n" + SAVE, "keep")
    outcome.expect("--savemods")
    assert not changes.exists()

    found, outcome = stands(world, "Hall", EDIT + "    editor.saveTarget = 'keep'\n" + SAVE, "keep",
                            KAVEL_SAVEMODS="1")
    assert found == AFTER and outcome.has("saved: True"), outcome.log[-3000:]
    assert (world.folder / "scripts/levels/Hall.py").read_text(encoding="utf-8") == HALL
    text = changes.read_text(encoding="utf-8")
    assert stands(world, "Hall", "", "keep")[0] == AFTER, text
    assert stands(world, "Hall")[0] == BEFORE

    again = "    editor.edits.change(editor.pieces.named('seat'), at=(0, 0, 1))\n" + SAVE
    stands(world, "Hall", again, "keep", KAVEL_SAVEMODS="1")
    assert stands(world, "Hall", "", "keep")[0] == ["chair 2.00 1.50", "seat 0.00 1.00"], text


def test_a_level_of_a_mod_is_saved_in_that_mod_be_it_data_or_a_program(world):
    mods_world.write(world, "cellar", files={"levels/Cellar.toml": CELLAR})
    found, outcome = stands(world, "Cellar", EDIT + SAVE, "cellar", KAVEL_SAVEMODS="1")
    assert found == AFTER and outcome.has("saved: True"), outcome.log[-3000:]
    assert stands(world, "Cellar", "", "cellar")[0] == AFTER

    mods_world.write(world, "tower", "script", files={"levels/Tower.py": HALL})
    found, outcome = stands(world, "Tower", EDIT + SAVE, "tower", KAVEL_SAVEMODS="1", answer="yes")
    assert found == AFTER and outcome.has("saved: True"), outcome.log[-3000:]
    script = (mods_world.folder(world, "tower") / "levels" / "Tower.py").read_text(encoding="utf-8")
    assert "place.Chair(map, 'chair', at=(2, 0, 1.5))" in script and "crate" not in script, script
    assert stands(world, "Tower", "", "tower", answer="yes")[0] == AFTER


if __name__ == "__main__":
    game.main(dict(globals()))
