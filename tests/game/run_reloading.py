"""Files that change while the game runs, in a window: each kind is taken anew, and what fails leaves the old in place.

The game does what it is asked through a file: a script of the test's own runs it between two frames.
"""
import os
import pathlib
import re
import shutil
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
import png
from display import Display, Game

#: Belongs to the game: runs what lies in ../ask.py, and writes what it says to ../said.
WATCHER = """
import os
import kaVel
def look():
    if os.path.exists('../ask.py'):
        said = []
        exec(open('../ask.py').read(), {'kaVel': kaVel, 'say': lambda what: said.append(str(what)),
             'level': kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator})
        open('../said', 'w').write('\\n'.join(said))
        os.remove('../ask.py')
def attend():
    loop = kaVel.getSystem('GameLoopSystem')
    before = loop.frameCallback
    loop.frameCallback = lambda: (look(), before and before())
"""

HALL = """
import kaVel
import objects.GameObjects as place
from cellars import Shelves
def build(coordinator):
    place.FreeCamera(coordinator, 'camera', at=(0, 1.7, -3))
    coordinator.loadMap('ground')
def ground(map):
    kaVel.configure(map.getComponent('transform'), position=kaVel.Vec4(0, 2, 0, 1), scale=kaVel.Vec4(20, 4, 20, 0))
    place.Box(map, 'box', at=(0, 0, 2), size=(2, 2, Shelves.DEPTH), surface='wood')
    place.Crate(map, 'crate', at=(2, 0, 2))
    place.SphereLight(map, 'light', at=(0, 2.5, -1), reach=9, strength=2)
"""

FAULTS = "import reloading; say([(f, x.line, x.cause) for f, x in reloading.Faults.all().items()])"
SHOWN = ("say([each.text for each in kaVel.descendants(level) if each._getType().isSubclassOf("
         "kaVel.Reflection.TextComponent2) and '/reloadFaults/' in kaVel.pathOf(each)])")


class Play:
    """A hall that is seen in a small window, in a world whose files change."""

    def __init__(self, world, **environment):
        self.world, self.environment = world, environment
        loader = world.folder / "scripts" / "loader.py"
        world.write("scripts/watcher.py", WATCHER)
        loader.write_text(loader.read_text(encoding="utf-8") + "\nimport watcher\nwatcher.attend()\n",
                          encoding="utf-8")
        world.write("scripts/levels/Hall.py", HALL)
        world.write("scripts/cellars/__init__.py", "")
        world.write("scripts/cellars/Shelves.py", "DEPTH = 1\n")
        world.write("config/mornal/settings.txt", "windowSize = 320x180\npauseWithoutFocus = off\nframeLimit = 30\n")

    def __enter__(self):
        self.display = Display("400x300")
        self.display.__enter__()
        self.game = Game(self.world, self.display, "Hall", **dict({"KAVEL_RELOAD": "1"}, **self.environment))
        self.game.__enter__()
        self.ask("pass")
        return self

    def __exit__(self, *_):
        self.game.__exit__()
        self.display.__exit__()

    def ask(self, code):
        """What the game says to some lines of Python."""
        folder = self.world.folder
        (folder / "ask.new").write_text(code, encoding="utf-8")
        os.replace(folder / "ask.new", folder / "ask.py")
        self.game.until(lambda: not (folder / "ask.py").exists(), "an answer")
        return (folder / "said").read_text(encoding="utf-8")

    def until(self, code, text, what=""):
        """Waits until the game says a text to some lines."""
        return self.game.until(lambda: text in (said := self.ask(code)) and said, what or f"{text!r} from {code!r}")

    def mean(self):
        """Mean of the picture's red, green and blue, without what is told at its top."""
        picture = self.world.folder / "picture.png"
        picture.unlink(missing_ok=True)
        self.ask("kaVel.getSystem('GraphicsSystem2').captureScreen('../picture.png')")
        self.game.until(picture.exists, "a picture")
        self.ask("pass")  # in a later frame: it is written to its end
        found = png.read(picture)
        rows, step = found.rows[90:], found.step
        return [sum(sum(row[colour::step]) for row in rows) / len(rows) / len(rows[0][::step]) for colour in range(3)]

    def frame(self):
        return int(self.ask("say(kaVel.getSystem('GameLoopSystem').frameNumber)"))

    def write(self, path, content):
        self.world.write(path, content)

    def read(self, path):
        return (self.world.folder / path).read_bytes()

    def breaks(self, path, content, cause):
        """Breaks a file, sees that told with its cause on the screen, and mends it, which is seen there, too."""
        whole = self.read(path)
        self.write(path, content)
        self.until(FAULTS, path)
        shown = self.ask(SHOWN)
        assert path in shown and cause in self.ask(FAULTS), (path, cause, shown, self.ask(FAULTS))
        self.game.until_logged(f"Reload: {path}")
        state = self.ask("say(level.getDescendantByPath('ground/box')); say(level)"), self.mean()
        self.write(path, whole)
        self.game.until(lambda: self.ask(FAULTS) == "[]", "no fault any more")
        assert self.ask(SHOWN) == "[]"
        return state


def far(one, other):
    return max(abs(a - b) for a, b in zip(one, other)) > 2


def test_scripts_are_taken_anew_around_a_player_who_stays(world):
    with Play(world) as play:
        play.ask("import standing; standing.viewerIn(level).goTo((0.5, 1.7, -2), turn=20, pitch=4)")
        place = "import standing; say(standing.of(level))"
        depth = "say(level.getDescendantByPath('ground/box').getComponent('transform').scale.z)"
        stood, before = play.ask(place), play.mean()
        for path, text, now in (("scripts/cellars/Shelves.py", "DEPTH = 3\n", "3.0"),
                                ("scripts/levels/Hall.py", HALL.replace("Shelves.DEPTH", "5"), "5.0")):
            play.write(path, text)
            play.until(depth, now)
            assert play.ask(place) == stood
        assert far(before, play.mean())
        assert len(re.findall(r"built anew for .*, \d+ ms", play.game.log())) >= 2, "how long it took is told"

        picture = play.mean()
        for text, line, cause in (("DEPTH = (\n", 1, "SyntaxError"), ("A = 1\nDEPTH = A / 0\n", 2, "division by zero"),
                                  ("raise SystemExit\n", 1, "SystemExit"), (b"\0\xff", 0, "")):
            play.write("scripts/cellars/Shelves.py", text)
            play.until(FAULTS, f"('../scripts/cellars/Shelves.py', {line}" if line else "Shelves.py")
            assert cause in play.ask(FAULTS) and "Shelves.py" in play.ask(SHOWN), play.ask(SHOWN)
            assert play.ask(depth) == "5.0" and play.ask(place) == stood and not far(picture, play.mean())
        play.write("scripts/cellars/Shelves.py", "DEPTH = 2\n")
        play.game.until(lambda: play.ask(FAULTS) == "[]", "no fault any more")
        assert play.ask(SHOWN) == "[]"


def test_what_is_drawn_is_taken_anew_in_its_place(world):
    assets = world.folder / "assets"
    with Play(world) as play:
        before = play.mean()
        box = play.ask("say(repr(level.getDescendantByPath('ground/box')))")
        wood = "assets/textures/woodDiffuse.dds"
        junk = play.breaks(wood, b"junk", "woodDiffuse.dds")
        assert not far(before, junk[1])
        play.write(wood, (assets / "textures" / "glassRedDiffuse.dds").read_bytes())
        play.game.until(lambda: far(before, play.mean()), "another picture")

        crate = "assets/models/crate.kaVelModel"
        reach = ("assets = kaVel.getSystem('AssetSystem'); "
                 "say(assets.startLoad(kaVel.Reflection.MeshAssetLoader, 'crate', None, 0).boundsMax.y)")
        high = play.ask(reach)
        play.breaks(crate, play.read(crate)[:2000], "cut short")
        play.breaks(crate, b"junk", "magic")
        assert play.ask(reach) == high
        play.write(crate, (assets / "models" / "barrel.kaVelModel").read_bytes())
        play.game.until(lambda: play.ask(reach) != high, "the other model")

        lit = play.mean()
        effect = "assets/shaders/test.fx"
        whole = play.read(effect).decode()
        play.breaks(effect, whole.replace("float hash(vec2 p)", "float hash(vec2 p"), "test.fx")
        include = "assets/shaders/gbuffer.fxh"
        source = play.read(include)
        play.write(include, source + b"\nnonsense")
        play.until(FAULTS, "gbuffer.fxh")
        assert not far(lit, play.mean())
        play.write(include, source)
        play.game.until(lambda: play.ask(FAULTS) == "[]", "no fault any more")
        play.write(effect, whole.replace("float4 sceneAmbient =", "float4 unused =").replace(
            "sceneAmbient", "vec4(0.5, 0.9, 0.5, 0.5)").replace("float4 unused =", "float4 sceneAmbient ="))
        play.game.until(lambda: far(lit, play.mean()), "another light")
        assert play.ask("say(repr(level.getDescendantByPath('ground/box')))") == box, "nothing was built anew for it"


def test_what_is_heard_read_and_set_is_taken_anew(world):
    sounds = world.folder / "assets" / "sound"
    source = pathlib.Path(os.path.realpath(sounds))
    sounds.unlink()
    shutil.copytree(source, sounds)
    with Play(world) as play:
        fev = "assets/sound/fmod/kaVel.fev"
        whole = play.read(fev).decode()
        caption = "say(kaVel.getSystem('SoundSystem').getCaption('BarrelImpact'))"
        assert play.ask(caption) == "A barrel thuds"
        play.ask("kaVel.addComponent(kaVel.make('Entity', parent=level, name='air'), 'sound', 'SoundComponent', "
                 "soundList=['AmbienceWell']).playSoundEffect('AmbienceWell')")
        play.write(fev, whole.replace("A barrel thuds", "A barrel booms"))
        play.until(caption, "A barrel booms")
        playing = "say(level.getDescendantByPath('air/sound').isPlaying('AmbienceWell'))"
        play.until(playing, "True", "what played on and on goes on")
        play.breaks(fev, whole.replace("priority 40", "priority many", 1), "kaVel.fev:")
        sample = "assets/sound/fmod/bodies/bolt_wood_1.ogg"
        good = play.read(sample)
        play.write(sample, b"junk")
        play.until(FAULTS, "bolt_wood_1.ogg")
        play.write(sample, good)
        play.game.until(lambda: play.ask(FAULTS) == "[]", "no fault any more")

        table = "scripts/words/english.py"
        text = play.read(table).decode()
        resume = "import words; say(words.text('menu.resume'))"
        play.write(table, text.replace("'menu.resume': 'Resume'", "'menu.resume': 'Onwards'"))
        play.until(resume, "Onwards")
        play.breaks(table, "TEXTS = {'menu.resume': ", "english.py:1")
        assert play.ask(resume) == "Onwards"

        table = "scripts/settings/Table.py"
        text = play.read(table).decode()
        play.write(table, text.replace("Setting('captionSize', 1.0", "Setting('captionSize', 1.5"))
        play.until("import settings; say(settings.get('captionSize'))", "1.5")
        play.breaks(table, text.replace("Setting('captionSize', 1.0", "Setting('captionSize', nowhere"), "NameError")
        play.write("scripts/stillness.py", play.read("scripts/stillness.py") + b"\n")
        play.until(FAULTS, "the next start")


MANIFEST = "name = 'attic'\nversion = '1'\ntitle = 'Attic'\nlicence = 'CC0-1.0'\nkind = 'data'\n"
SHELF = "[[place]]\npattern = 'Box'\nname = 'board'\nsize = [2, 2, %d]\nsurface = 'wood'\n"


def test_data_of_mods_is_taken_anew_and_the_rest_of_them_waits(world):
    mod = ".local/share/mornal/mods/attic"
    shelf, texts, wood = f"{mod}/patterns/Shelf.toml", f"{mod}/words/english.toml", f"{mod}/textures/woodDiffuse.dds"
    picture = (world.folder / "assets/textures/woodDiffuse.dds").read_bytes()
    for path, content in {
            f"{mod}/mod.toml": MANIFEST, shelf: SHELF % 1, texts: "menu.resume = 'Onwards'\n", wood: picture,
            f"{mod}/levels/Hall.toml": "map = 'ground'\n[[place]]\npattern = 'Shelf'\nname = 'box'\n"}.items():
        world.write(path, content)
    with Play(world, KAVEL_MOD="attic", KAVEL_SAVES=str(world.folder)) as play:
        depth = "say(level.getDescendantByPath('ground/box/board').getComponent('transform').scale.z)"
        resume = "import words; say(words.text('menu.resume'))"
        play.until(depth, "1.0")
        play.write(shelf, SHELF % 3)
        play.until(depth, "3.0")
        play.write(texts, "menu.resume = 'Further'\n")
        play.until(resume, "Further")
        for path, broken, cause in ((shelf, SHELF.replace("Box", "Bax") % 2, "no pattern 'Bax'"),
                                    (texts, "menu.", "toml:1")):
            whole = play.read(path)
            play.write(path, broken)
            assert cause in play.until(FAULTS, cause) and "attic/" in play.ask(SHOWN)
            assert play.ask(depth) == "3.0" and play.ask(resume) == "Further"
            play.write(path, whole)
            play.game.until(lambda: play.ask(FAULTS) == "[]", "no fault any more")
        play.write(wood, picture[:-1] + b"\1")
        play.game.until_logged("Reload: textures taken anew: attic/textures/woodDiffuse.dds")
        play.write(f"{mod}/textures/newDiffuse.dds", picture)
        play.until(SHOWN, "at the next start")


def test_bad_files_cost_nothing_but_a_line_on_the_screen(world):
    scripts = world.folder / "scripts"
    with Play(world) as play:
        def goes_on():
            first = play.frame()
            play.game.until(lambda: play.frame() > first + 3, "further frames")

        for path in ("levels/Hall.py", "cellars"):
            (scripts / path).rename(scripts / "away")
            play.game.until(lambda: play.ask(FAULTS) != "[]", f"{path} to be missed")
            goes_on()
            (scripts / "away").rename(scripts / path)
            play.game.until(lambda: play.ask(FAULTS) == "[]", f"{path} to be back")
        os.mkfifo(scripts / "levels" / "Pipe.py")
        shelves = scripts / "cellars" / "Shelves.py"
        shelves.unlink()
        os.mkfifo(shelves)
        play.until(FAULTS, "no ordinary file")
        goes_on()
        shelves.unlink()
        play.write("scripts/cellars/Shelves.py", "DEPTH = 4\n")
        play.game.until(lambda: play.ask(FAULTS) == "[]", "no fault any more")

        loads = play.game.log().count("Reload: the level")
        for number in range(1000):
            play.write(f"scripts/cellars/Storm{number}.py", "")
            play.write("scripts/cellars/Shelves.py", f"DEPTH = {number}\n")
        play.until("say(level.getDescendantByPath('ground/box').getComponent('transform').scale.z)", "999.0")
        assert play.game.log().count("Reload: the level") < loads + 100, "a storm is few loads"

        play.write("scripts/cellars/Shelves.py", "DEPTH = 1\nopen(__file__, 'a').write('# more\\n')\n")
        play.until(FAULTS, "changes whenever it is read")
        time.sleep(1)
        loads = play.game.log().count("Reload: the level")
        goes_on()
        time.sleep(1)
        assert play.game.log().count("Reload: the level") == loads, "it is left alone"
        assert play.game.process.poll() is None


def test_it_is_off_where_nobody_asks_for_it_and_can_be_switched(world):
    with Play(world, KAVEL_RELOAD="") as play:
        say = "import reloading; say(reloading.isOn())"
        assert play.ask(say) == "False", "a copy of the game is no source tree"
        play.ask("import settings; settings.set('reloadFiles', 'on')")
        assert play.ask(say) == "True"
        play.write("scripts/cellars/Shelves.py", "DEPTH = 6\n")
        play.until("say(level.getDescendantByPath('ground/box').getComponent('transform').scale.z)", "6.0")
        play.ask("import reloading; open('../scripts/cellars/Shelves.py', 'w').write('DEPTH = 7');"
                 "reloading.known('../scripts/cellars/Shelves.py')")
        play.ask("import reloading; reloading.beforeLevel.add(lambda level, files: (_ for _ in ()).throw("
                 "reloading.Refused('edits are not saved')))")
        play.write("scripts/levels/Hall.py", HALL + "\n")
        play.until(SHOWN, "edits are not saved")
        assert play.ask("say(level.getDescendantByPath('ground/box').getComponent('transform').scale.z)") == "6.0"
        play.ask("import settings; settings.set('reloadFiles', 'off')")
        assert play.ask(say) == "False"


if __name__ == "__main__":
    game.main(dict(globals()))
