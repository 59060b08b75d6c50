"""The committed sounds: files, recipes and events that fit together, and what is said of those that do not."""
import pathlib
import shutil
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tools" / "assets" / "sound"), str(ROOT / "tests" / "support")]
import cases
import committed

RECIPES = '''
@sound(variants=2, loudness=-20.0, what="", judgement="")
def knock(take):
    pass


@sound(stereo=True, loudness=-40.0, what="", judgement="")
def hum(take):
    pass


def helper(take):
    pass
'''
EVENTS = """group sfx
event Knock
    layer knock
        sample toys/knock_1.ogg 2   # the better one
        sample toys/knock_2.ogg
group music
event Hum
    segment low toys/hum.ogg next low
"""


def tree(folder):
    """A project of three sounds that fit together, made of committed files."""
    made, recipes = folder / "assets/sound/fmod/toys", folder / "tools/assets/sound/recipes"
    made.mkdir(parents=True)
    recipes.mkdir(parents=True)
    (recipes / "toys.py").write_text(RECIPES, encoding="utf-8")
    (made.parent / "kaVel.fev").write_text(EVENTS, encoding="utf-8")
    own = ROOT / "assets/sound/fmod"
    for name, source in (("knock_1", "switches/button_1"), ("knock_2", "switches/button_2"), ("hum", "interface/save")):
        shutil.copy(own / f"{source}.ogg", made / f"{name}.ogg")
    assert list(committed.findings(folder)) == []
    return made


def test_the_committed_sounds_have_recipes_and_events(_):
    assert list(committed.findings(ROOT)) == []


def only_finding(folder):
    found = list(committed.findings(folder))
    assert len(found) == 1, found
    return found[0]


def test_a_file_that_its_recipe_would_make_is_missed_by_its_event_too(folder):
    (tree(folder) / "knock_2.ogg").unlink()
    missing, named = committed.findings(folder)
    assert missing == "toys/knock_2.ogg is missing: tools/assets/sound/make_sounds.py toys/knock", missing
    assert named == "kaVel.fev:5: there is no toys/knock_2.ogg", named


def test_a_file_without_a_recipe_or_an_event_is_told(folder):
    made = tree(folder)
    shutil.copy(made / "knock_1.ogg", made / "knock_3.ogg")
    recipe, event = committed.findings(folder)
    assert recipe.startswith("toys/knock_3.ogg has no recipe") and event.startswith("toys/knock_3.ogg is played by no")


def test_a_stereo_file_in_the_place_of_a_mono_one_is_told(folder):
    made = tree(folder)
    shutil.copy(made / "hum.ogg", made / "knock_1.ogg")
    assert only_finding(folder) == "toys/knock_1.ogg has 2 channels, its recipe says 1; make it again"


def test_an_event_in_the_world_says_how_loud_its_samples_are(folder):
    project = tree(folder).parent / "kaVel.fev"
    placed = "category sfx 0.5\n" + EVENTS.replace("event Knock\n", "event Knock\n    category sfx\n%s").replace(
        "group music", "    parameter distance 0 10\ngroup music")
    project.write_text(placed % "", encoding="utf-8")
    silent = "says no loudness, its samples give -26: tools/assets/sound/event_loudness.py"
    assert only_finding(folder) == f"event Knock of kaVel.fev {silent}"
    project.write_text(placed % "    loudness -26\n", encoding="utf-8")
    assert not list(committed.findings(folder))


def test_files_that_end_too_soon_or_are_something_else_are_told(folder):
    made = tree(folder)
    whole = (made / "knock_1.ogg").read_bytes()
    for bad, word in ((whole[:-100], "cut off"), (whole[:len(whole) // 3], "missing"), (b"RIFF" + whole, "beginning"),
                      (b"", "beginning")):
        (made / "knock_1.ogg").write_bytes(bad)
        assert word in only_finding(folder), only_finding(folder)


if __name__ == "__main__":
    sys.exit(cases.run(dict(globals()), sys.argv[3:]))
