"""Mods in the game: what they bring, in which order, which are left out and why, and which programs may run."""
import os
import pathlib
import re
import sys
import time
import zipfile

sys.path[:0] = [str(pathlib.Path(__file__).resolve().parents[1] / "support"), str(pathlib.Path(__file__).parent)]
import game
import mods_world as mods
from display import Display, Game

ASSETS = game.ROOT / "assets"
CELLAR = game.ROOT / "examples" / "lantern-cellar"

FACTS = """
import objects.GameObjects as place
import words
from objects.things.Models import boundsOf
kaVel.log('TEXTS %s, %s' % (words.text('menu.back'), words.text('mine.greeting', who='Ada')))
kaVel.log('LANGUAGES %s' % words.languages())
kaVel.log('MODEL %s' % (boundsOf('chair') == boundsOf('armchair')))
kaVel.log('CAPTION %s, %s' % tuple(kaVel.getSystem('SoundSystem').getCaption(name) for name in ('Knell', 'Fire')))
texture = kaVel.getSystem('AssetSystem').startLoad(kaVel.Reflection.TextureAssetLoader, 'rugDiffuse', None, 0)
kaVel.log('TEXTURE %s' % texture.fileName)
stool = place.Stool(coordinator, 'stool', at=(1, 0, 2), turn=90, height=0.5)
kaVel.log('PATTERN %s %s' % (stool.getChild('seat').getComponent('transform').position, place.Stool.__doc__))
place.Chair(coordinator, 'chair')
kaVel.log('CHAIR %s' % [each.name for each in coordinator.getChild('chair').children])
place.FreeCamera(coordinator, 'camera')
"""
SOUNDS = """
project kaVel 1
category sfx 1
group sfx
event Knell
    category sfx
    caption "A bell, far off"
    layer one
        sample {sample}
event Fire
    category sfx
    caption "Another fire"
    mode loop
    layer one
        sample lantern/hum.ogg
"""
STOOL = """
doc = "A stool."
parameters = { height = 1.0 }
[[place]]
pattern = "Box"
name = "seat"
at = [1, 0.25, 0]
size = [0.4, 0.5, 0.4]
"""
CHAIR = """
[[place]]
pattern = "Chair"
name = "theOldOne"
[[place]]
pattern = "Book"
name = "onTop"
at = [0, 0.5, 0]
"""
ROOM = """
[player]
at = [0, 0, -1]
[[place]]
pattern = "FloorBoards"
name = "onlyInTheMod"
along = { x = [-2, 0, 2], z = [-1, 1] }
"""
SOLID = """
[[place]]
pattern = "Block"
name = "ground"
at = [0, -1, 0]
size = [8, 1, 8]
"""
COURSE = """
import kaVel
import saves


def play(driver):
    yield from driver.wait(0.3)
    kaVel.log('SAVED %s' % saves.save().done)
"""


def test_a_mod_overrides_and_adds_something_of_each_kind_and_a_later_one_wins(world):
    hum = (CELLAR / "sounds/lantern/hum.ogg").read_bytes()
    picture = (CELLAR / "textures/mossBrickDiffuse.png").read_bytes()
    mods.write(world, "abbey", files={
        "textures/rugDiffuse.png": picture,
        "models/chair.kaVelModel": (ASSETS / "models/armchair.kaVelModel").read_bytes(),
        "sounds/kaVel.fev": SOUNDS.format(sample="lantern/hum.ogg"), "sounds/lantern/hum.ogg": hum,
        "words/english.toml": 'menu.back = "Whence you came"\nmine.greeting = "Good evening, {who}"\n',
        "words/latin.toml": (CELLAR / "words/latin.toml").read_bytes(),
        "patterns/Stool.toml": STOOL, "patterns/Chair.toml": CHAIR, "levels/FirstRoom.toml": ROOM})
    mods.write(world, "zoo", files={"words/english.toml": '"menu.back" = "Home"\n', "textures/rugDiffuse.png": picture})
    world.write_level("Facts", FACTS)
    outcome = mods.run(world, "zoo", "abbey", level="Facts")
    outcome.expect_code(0)
    outcome.expect("TEXTS Home, Good evening, Ada")
    outcome.expect("'la': 'Lingua Latina'")
    outcome.expect("MODEL True")
    outcome.expect("CAPTION A bell, far off, Another fire")
    outcome.expect("TEXTURE " + str(mods.folder(world, "zoo") / "textures/rugDiffuse.png"))
    outcome.expect("PATTERN Vec4(1, 0.5, 1, 1) A stool.")  # a step to its right, which is back by its turn
    outcome.expect("CHAIR ['transform', 'theOldOne', 'onTop']")
    outcome.expect("Mods: 1. abbey 1.0, data only")
    outcome.expect("Mods: the text 'english menu.back' of zoo is used in place of that of abbey")
    outcome.expect("Mods: the texture 'rugDiffuse' of zoo is used in place of that of abbey")
    room = mods.run(world, "abbey", level="FirstRoom", KAVEL_DUMP=str(world.folder / "dump.txt"))
    room.expect_code(0)
    assert (world.folder / "dump.txt").read_text(encoding="utf-8").count("onlyInTheMod") >= 6


def test_fonts_and_effects_stand_in_for_the_games_unless_they_are_none(world):
    face = (ASSETS / "fonts/Andika-Regular.ttf").read_bytes()
    mods.write(world, "letters", files={"fonts/Inconsolata.otf": face, "fonts/LindenHill.otf": b"no font"})
    mods.write(world, "lights", files={"effects/lights.fx": "// nothing yet\nnonsense here;\n",
                                       "effects/test.fx": '#include "../../../../etc/passwd"\n'})
    world.write_level("Facts", """
import objects.GameObjects as place
for name in ('Inconsolata.otf', 'LindenHill.otf'):
    font = kaVel.getSystem('AssetSystem').startLoad(kaVel.Reflection.FontAssetLoader, name, None, 0)
    kaVel.log('FONT %s' % font.fileName)
place.FreeCamera(coordinator, 'camera')
""")
    outcome = mods.run(world, "letters", "lights", level="Facts")
    outcome.expect_code(0)
    outcome.expect("FONT " + str(mods.folder(world, "letters") / "fonts/Inconsolata.otf"))
    outcome.expect("letters/fonts/LindenHill.otf is left out: ")
    outcome.expect("FONT ..\\assets\\fonts\\LindenHill.otf")
    outcome.expect("lights/effects/lights.fx is left out, and the game's own is used:")
    outcome.expect("lights/effects/lights.fx(2")
    outcome.expect("expected a file beside the effect or below it")


def test_the_player_says_which_mods_are_loaded_later_as_far_as_needs_let_him(world):
    for name in ("apple", "birch"):
        mods.write(world, name, files={"words/english.toml": f'menu.back = "{name}"\n'})
    mods.write(world, "cedar", needs={"birch": "1"})
    world.write("config/mornal/mods.txt", "birch = on\ncedar = on\napple = on\n")
    world.write_level("Moves", """
import mods
import objects.GameObjects as place
place.FreeCamera(coordinator, 'camera')
def told(what, done):
    kaVel.log('%s %s %s %s' % (what, done, [mod.name for mod in mods.planned()],
                               [each.winner for each in mods.plannedConflicts()]))
told('AT FIRST', [mod.name for mod in mods.loaded()])
told('EARLIER', mods.move('apple', -1))
told('FIRST', mods.move('apple', -1))
told('NO FURTHER', mods.move('apple', -1))
told('NEEDED', mods.move('cedar', -1))
""")
    with Display("640x480") as display, Game(world, display, "Moves", KAVEL_FRAMES="3") as play:
        play.process.wait(60)
        log = play.log()
    for line in ("AT FIRST ['birch', 'cedar', 'apple'] ['birch', 'cedar', 'apple'] ['apple']",
                 "EARLIER True ['birch', 'apple', 'cedar'] ['apple']",
                 "FIRST True ['apple', 'birch', 'cedar'] ['birch']",
                 "NO FURTHER False ['apple', 'birch', 'cedar'] ['birch']", "NEEDED False ['apple', 'birch', 'cedar']"):
        assert line in log, (line, log[-3000:])
    assert (world.folder / "config/mornal/mods.txt").read_text().split() == "apple = on birch = on cedar = on".split()


def test_what_a_mod_needs_comes_along_and_before_it(world):
    mods.write(world, "attic", needs={"yard": "1.2, <2"})
    mods.write(world, "yard", version="1.4", needs={"beams": ">=0.9"})
    mods.write(world, "beams", version="0.10")
    mods.write(world, "aside")
    outcome = mods.run(world, "attic", "aside")
    outcome.expect_code(0)
    order = re.findall(r"Mods: \d\. (\S+)", outcome.log)
    assert order == ["aside", "beams", "yard", "attic"], order


def test_a_faulty_mod_is_named_with_file_and_line_and_left_out(world):
    good = 'name = "x"\nversion = "1"\ntitle = "X"\nlicence = "CC0-1.0"\nkind = "data"\n'
    wrong = {
        "no-toml": ("name = \n", "mod.toml:1: Invalid value"),
        "no-kind": (good.replace('kind = "data"\n', ""), "mod.toml: the field 'kind' is missing"),
        "other-kind": (good.replace("data", "magic"), "mod.toml:5: 'magic' is no kind"),
        "no-name": (good.replace('"x"', '"../x"'), "mod.toml:1: '../x' is no name"),
        "no-version": (good.replace('"1"', '"new"'), "mod.toml:2: 'new' is no version"),
        "typed": (good + 'lisence = "x"\n', "mod.toml:6: there is no field 'lisence'; did you mean 'licence'?"),
        "number": (good.replace('"X"', "7"), "mod.toml:3: 'title' has to be a text"),
        "needs": (good + '[needs]\nyard = "soon"\n', "mod.toml:7: 'yard' needs a version"),
        "latin1": (good.encode() + b'description = "\xe9"\n', "mod.toml:6: it is no text in UTF-8")}
    for name, (text, _) in wrong.items():
        mods.write(world, name, files={"mod.toml": text})
    mods.write(world, "good")
    outcome = mods.run(world, "good")
    outcome.expect_code(0)
    for name, (_, told) in wrong.items():
        outcome.expect(f"is left out: {name}/{told}")
    refused = mods.run(world, "typed")
    refused.expect_code(1)
    refused.expect("typed/mod.toml:6: there is no field 'lisence'")
    unknown = mods.run(world, "godo")
    unknown.expect_code(1)
    unknown.expect("there is no mod 'godo'; did you mean 'good'?")


def test_rings_and_needs_that_are_not_there_are_told_at_their_lines(world):
    mods.write(world, "own", needs={"own": "1"})
    mods.write(world, "a", needs={"b": "1"})
    mods.write(world, "b", needs={"c": "1"})
    mods.write(world, "c", needs={"a": "1"})
    mods.write(world, "old", needs={"good": "2"})
    mods.write(world, "far", needs={"old": "1"})
    mods.write(world, "good")
    for name, told in (("own", "own/mod.toml:7: it needs itself"),
                       ("b", "b/mod.toml:7: it needs itself by way of others: b -> c -> a -> b"),
                       ("far", "far/mod.toml:7: it needs the mod 'old', which cannot be loaded"),
                       ("old", "old/mod.toml:7: it needs the mod 'good', version 2, and there is 1.0")):
        outcome = mods.run(world, name)
        outcome.expect_code(1)
        outcome.expect(told)


def test_files_that_are_none_of_a_mods_own_make_it_faulty(world):
    text = 'menu.back = "x"\n'
    for name in ("link", "upward", "pipe", "many", "level", "words", "twins", "good"):
        mods.write(world, name, files={"words/english.toml": text})
    os.symlink("/etc", mods.folder(world, "link") / "textures")
    mods.write(world, "upward", files={"sounds/kaVel.fev": SOUNDS.format(sample="../../../../etc/passwd")})
    os.mkfifo(mods.folder(world, "pipe") / "words" / "german.toml")
    crowd = mods.folder(world, "many") / "textures"
    crowd.mkdir()
    for number in range(10001):
        (crowd / f"{number}.png").touch()
    mods.write(world, "level", files={"levels/Bad.toml": '[[place]]\npattern = "Box"\n\n[[place]]\nname = "x"\n'})
    mods.write(world, "words", files={"words/german.toml": 'menu.back = 3\n'})
    mods.write(world, "twins-again", files={"mod.toml": mods.MANIFEST.format(name="twins", version="2", kind="data")})
    for name, told in (("link", "link/textures: it is a link; all files of a mod have to lie in its folder"),
                       ("pipe", "pipe/words/german.toml: it is neither a file nor a folder"),
                       ("many", "many: it has more than 10000 files"),
                       ("level", "level/levels/Bad.toml:4: each \"place\" has to have a \"pattern\""),
                       ("words", "words/words/german.toml:1: 'menu.back' has to be a text")):
        outcome = mods.run(world, name)
        outcome.expect_code(1)
        outcome.expect(told)
    good = mods.run(world, "good", "upward", KAVEL_SOUND=str(world.folder / "heard.wav"))
    good.expect_code(0)
    good.expect("upward/sounds/kaVel.fev:9: 'sample': '../../../../etc/passwd' is no path below the project's folder")
    good.expect("twins-again/mod.toml: there is another mod of the name 'twins'")


def test_a_level_that_is_data_tells_what_is_wrong_with_it_by_its_line(world):
    for number, (line, told) in enumerate((
            ('pattern = "Armchiar"', "no pattern 'Armchiar'; did you mean 'Armchair'?"),
            ('pattern = "visitorOf"', "no pattern 'visitorOf'"),
            ('pattern = "Box"\nsurface = "pudding"', "Box: \"no surface 'pudding'"),
            ('pattern = "Box"\ncolour = 3', "unexpected keyword argument 'colour'"))):
        mods.write(world, "worn", files={"levels/Worn.toml": f"# a level\n[[place]]\n{line}\n"})
        outcome = mods.run(world, "worn", level="Worn")
        outcome.expect_code(1)
        outcome.expect("worn/levels/Worn.toml:3: ")
        outcome.expect(told)


def test_nothing_in_a_mod_of_data_is_ever_run(world):
    evil = "import kaVel\nkaVel.log('EVIL')\nTEXTS = {}\n"
    mods.write(world, "sheep", files={"levels/Wolf.py": evil, "patterns/Wolf.py": evil, "scripts/__init__.py": evil,
                                      "words/english.py": evil, "start.py": evil, "sitecustomize.py": evil,
                                      "levels/Sheep.toml": ROOM})
    world.write_level("Looks", """
import importlib, sys
for name in ('mod_sheep', 'Wolf', 'levels.Wolf', 'mod_sheep.patterns.Wolf', 'sitecustomize'):
    try:
        importlib.import_module(name)
        kaVel.log('FOUND ' + name)
    except ImportError:
        pass
kaVel.log('PATH %s' % any('sheep' in path for path in sys.path))
""")
    outcome = mods.run(world, "sheep", level="Looks")
    outcome.expect_code(0)
    outcome.expect("Mods: 1. sheep 1.0, data only; 6 scripts in it are not run")
    outcome.expect("PATH False")
    assert not outcome.has("EVIL") and not outcome.has("FOUND"), outcome.log[-2000:]
    by_folder = mods.run(world, f"{mods.folder(world, 'sheep')}/", level="Sheep")
    by_folder.expect("Mods: 1. sheep")
    assert not by_folder.has("left out")
    mods.run(world, "sheep", level="Wolf").expect("there is no level 'Wolf'")
    mods.run(world, "sheep", level="Sheep").expect_code(0)


def test_a_program_runs_once_it_is_allowed_and_asks_again_when_anything_in_it_has_changed(world):
    mods.example(world, "lantern-cellar")
    mods.example(world, "night-caller")
    refused = mods.run(world, "night-caller", level="NightCall")
    refused.expect_code(1)
    refused.expect("the mod night-caller is a program that has not been allowed to run as it is now (sum ")
    mods.run(world, "night-caller", level="NightCall", answer="no").expect_code(1)
    asked = mods.run(world, "night-caller", level="NightCall", answer="yes")
    asked.expect_code(0)
    asked.expect("patterns/Caller.py")
    asked.expect("Mods: 2. night-caller 1.0, a program")
    mods.run(world, "night-caller", level="NightCall").expect_code(0)
    (mods.folder(world, "night-caller") / "NOTES").write_text("not even a script")
    mods.run(world, "night-caller", level="NightCall").expect("has not been allowed to run as it is now")


def test_saves_name_their_mods_and_are_not_loaded_without_them(world):
    mods.write(world, "cellar", version="1.5", files={"levels/Cellar.toml": ROOM + SOLID})
    mods.write(world, "faces", files={"words/english.toml": 'menu.back = "x"\n'})
    world.write("scripts/courses/saveNow.py", COURSE)
    made = mods.run(world, "cellar", "faces", level="Cellar", frames=40, KAVEL_COURSE="saveNow",
                    KAVEL_SAVES=str(world.folder / "saves"))
    made.expect_code(0)
    made.expect("SAVED True")
    kept = next((world.folder / "saves").glob("*.save")).read_text(encoding="utf-8")
    assert '"mods": {\n  "cellar": "1.5"\n }' in kept, kept[:600]
    world.write_level("Loads", """
import saves
import objects.GameObjects as place
place.FreeCamera(coordinator, 'camera')
kaVel.log('LACKS %r %r' % (saves.newest().lacks, saves.load('game1')))
""")
    without = world.run("Loads", KAVEL_SAVES=str(world.folder / "saves"))
    without.expect("LACKS 'cellar 1.5' Outcome(done=False, said='It was made with cellar 1.5: switch that on")


def test_the_player_is_asked_on_the_screen_before_a_program_runs(world):
    mods.example(world, "lantern-cellar")
    mods.example(world, "night-caller")
    world.write("config/mornal/mods.txt", "night-caller = on\n")
    settled = {"XDG_STATE_HOME": str(world.folder / "state")}
    with Display("1280x720") as display:
        with Game(world, display, "FirstRoom", **settled) as play:
            play.until_logged("night-caller is left out: it is a program, and waits to be allowed.")
            assert "starts no programs" not in play.log() and "Mods: 1." not in play.log()
            consent = world.folder / "config" / "mornal-consent" / "mods.txt"
            play.focus()
            play.until_logged("The main menu stands")
            time.sleep(2)  # the title comes up under the screen
            for key in ("Return", "Down", "Return"):  # over to the mod, past its switch, and allow it
                play.press(key)
                time.sleep(0.5)
            play.until(consent.exists, "the consent")
            play.quit()
        with Game(world, display, "NightCall", **settled) as play:
            play.until_logged("Mods: 2. night-caller 1.0, a program")
            play.until_logged("starts no programs")
            play.quit()


def test_a_report_brings_the_mods_along_that_it_was_made_with_or_names_those_that_lack(world):
    mods.write(world, "cellar", version="1.5", files={"levels/Cellar.toml": ROOM + SOLID})
    mods.write(world, "faces", files={"words/english.toml": 'menu.back = "x"\n'})
    world.write("keys.txt", "input 1\nlevel Cellar\nseed 1\nwindow 320 180\n10 key 123 down\n11 key 123 up\n15 end\n")
    mods.run(world, "cellar", "faces", level="Cellar", frames=15,
             KAVEL_REPLAY=str(world.folder / "keys.txt")).expect_code(0)
    report = next((world.folder / "state" / "mornal" / "reports").glob("*.report"))
    bare = world.folder / "bare.report"
    with zipfile.ZipFile(report) as whole, zipfile.ZipFile(bare, "w") as without:
        for name in whole.namelist():
            if "/mods/cellar/" not in name:
                without.writestr(name, whole.read(name))
    variables = {**world.variables(), "HOME": str(world.folder / "elsewhere"), "XDG_CONFIG_HOME": "",
                 "XDG_STATE_HOME": "", "ASAN_OPTIONS": "detect_leaks=0"}
    for asked in ("KAVEL_LEVEL", "KAVEL_FRAMES"):
        variables.pop(asked)
    played = world.start({**variables, "KAVEL_REPORT": str(report)})
    played.expect_code(0)
    played.expect("The end is as in the report")
    refused = world.start({**variables, "KAVEL_REPORT": str(bare)})
    refused.expect_code(1)
    refused.expect("there is no mod 'cellar'")
    refused.expect("the report was made with mods that are not on here: cellar 1.5")


def test_the_guide_leads_to_a_mod_of_data_and_to_a_program(world):
    guide = (game.ROOT / "docs" / "guide" / "first-mod.md").read_text(encoding="utf-8")
    for first, text in re.findall(r"^```(?:toml|python)\n# (\S+)\n(.*?)^```$", guide, re.MULTILINE | re.DOTALL):
        name, _, file = first.partition("/")
        world.write(mods.folder(world, name).relative_to(world.folder) / file, text)
    data = mods.run(world, "salt-vault", level="SaltVault", KAVEL_DUMP=str(world.folder / "dump.txt"))
    program = mods.run(world, "salt-walker", level="SaltWalk", answer="yes")
    for outcome in (data, program):
        outcome.expect_code(0)
        outcome.expect("Mods: 1. salt-vault 1.0, data only")
        assert not re.search("Error:|Warning:|left out", outcome.log), outcome.log
    dump = (world.folder / "dump.txt").read_text(encoding="utf-8")
    assert dump.count("barrels") >= 3 and "saltNote" in dump


if __name__ == "__main__":
    game.main(dict(globals()))
