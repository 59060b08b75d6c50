"""Sheets of all screens, to be looked at: one for each shape of the window and language.

    python3 tests/ui/pictures.py --build build/release --out /tmp/sheets [--lines 720] [Options Pause ...]

Needs ImageMagick's `montage`. What can be measured, `run_screens.py` does.
"""
import argparse
import pathlib
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

SHAPES = {"4to3": 4 / 3, "16to9": 16 / 9, "32to9": 32 / 9}
LANGUAGES = ("en", "de", "hi")
FRAMES_AFTER_A_CHANGE = 4

COURSE = '''
import importlib

import kaVel
import words
from screens import Screens

NAMES, SIZES, CODES, FOLDER, WAIT = %r


def play(driver):
    kaVel.getSystem('GraphicsSystem2').renderScale = 0.25
    for name in NAMES or Screens.known():
        level = driver.coordinator
        module = importlib.import_module('screens.' + name)
        Screens.open(level, name, **(module.sample(level) if hasattr(module, 'sample') else {}))
        for _ in range(30):  # until it has faded in
            yield
        for code in CODES:
            words.setLanguage(code)
            Screens.rebuild(level)
            for shape, size in SIZES.items():
                kaVel.getSystem('WindowSystem2').setWindowedSize(*size)
                for page in range(max(pages(Screens.top(level)), 1)):
                    for _ in range(WAIT):
                        yield
                    kaVel.getSystem('GraphicsSystem2').captureScreen(
                        '%%s/%%s-%%s-%%s%%d.png' %% (FOLDER, shape, code, name, page))
                    yield
                    Screens.top(level).getComponent('menu').turnPage(1)
        Screens.closeAll(level)
        yield
    kaVel.getSystem('GameLoopSystem').quit(0)


def pages(menu):
    forms = [each for each in kaVel.descendants(menu) if each._getType().name == 'FormComponent']
    return max((each.widgetCount for each in forms if each.kind == kaVel.FormKind.FK_PAGES), default=0)
'''


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--out", type=pathlib.Path, required=True)
    parser.add_argument("--lines", type=int, default=720)
    parser.add_argument("names", nargs="*")
    options = parser.parse_args()
    options.out.mkdir(parents=True, exist_ok=True)
    sizes = {shape: (round(options.lines * wide), options.lines) for shape, wide in SHAPES.items()}
    with tempfile.TemporaryDirectory() as folder:
        world = game.World(options.build.resolve(), pathlib.Path(folder) / "game")
        pictures = pathlib.Path(folder) / "pictures"
        pictures.mkdir()
        shutil.copytree(game.ROOT / "examples", world.folder / ".local/share/mornal/mods")
        world.write("scripts/courses/pictured.py", COURSE % ((
            options.names, sizes, LANGUAGES, str(pictures), FRAMES_AFTER_A_CHANGE),))
        world.run(level="FirstRoom", frames=100000, KAVEL_COURSE="pictured").expect_code(0)
        for shape in SHAPES:
            for code in LANGUAGES:
                files = sorted(map(str, pictures.glob(f"{shape}-{code}-*.png")))
                subprocess.run(["montage", *files, "-resize", "x360", "-geometry", "+4+4", "-tile", "3x",
                                str(options.out / f"{shape}-{code}.png")], check=True)
                print(f"{options.out / f'{shape}-{code}.png'}: {len(files)} pictures")


if __name__ == "__main__":
    main()
