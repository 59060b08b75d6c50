"""Every screen in every language and shape of window: no text is cut, overlaps another or is a key, and the focus comes
everywhere."""
import pathlib
import shutil
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

LOOKS = '''
import importlib

import kaVel
import words
from screens import Screens

SIZES = tuple((round(lines * wide), lines) for wide in (4 / 3, 16 / 9, 32 / 9) for lines in (720, 1080, 2160))


def play(driver):
    window = kaVel.getSystem('WindowSystem2')
    for name in Screens.known():
        level = driver.coordinator
        module = importlib.import_module('screens.' + name)
        arguments = module.sample(level) if hasattr(module, 'sample') else {}
        if not Screens.open(level, name, **arguments):
            kaVel.log('FINDING %s: is not opened' % name)
            continue
        for code in words.languages():
            words.setLanguage(code)
            Screens.rebuild(level)
            for size in SIZES:
                window.setWindowedSize(*size)
                for _ in range(4):
                    yield
                yield from look(level, '%s at %dx%d' % (code, *size))
        words.setLanguage('en')
        Screens.closeAll(level)
        yield
    kaVel.log('All screens were looked at: %d' % len(Screens.known()))


def look(level, where):
    menu = Screens.top(level)
    if not menu:
        return kaVel.log('FINDING a screen has closed itself, %s' % where)
    for page in range(max(pages(menu), 1)):
        for line in Screens.findings(level):
            kaVel.log('FINDING %s, %s, page %d' % (line, where, page))
        menu.getComponent('menu').turnPage(1)
        yield


def pages(menu):
    forms = [each for each in kaVel.descendants(menu) if each._getType().name == 'FormComponent']
    return max((each.widgetCount for each in forms if each.kind == kaVel.FormKind.FK_PAGES), default=0)
'''


def test_no_text_of_any_screen_is_cut_or_overlaps_and_the_focus_comes_everywhere(world):
    world.write("scripts/courses/looks.py", LOOKS)
    shutil.copytree(game.ROOT / "examples", world.folder / ".local/share/mornal/mods")
    run = world.run(level="FirstRoom", frames=6000, KAVEL_COURSE="looks", KAVEL_UNDRAWN="1")
    found = sorted({line.split("FINDING ", 1)[1] for line in run.log.splitlines() if "FINDING " in line})
    assert not found, "\n".join(found)
    run.expect("All screens were looked at")
    assert "Traceback" not in run.log, run.log[-3000:]


BREAKS = '''
import kaVel
from screens import Screens


def play(driver):
    level = driver.coordinator
    Screens.open(level, 'Credits')
    Screens.open(level, 'Breaks')
    yield
    Screens.rebuild(level)
    yield
    Screens.rebuild(level)
    kaVel.log('left: %s' % Screens.names(level))
    Screens.closeAll(level)
    kaVel.log('runs: %s' % (level.loopState == kaVel.Coordinator.LoopControlState.LOOP_RUN))
'''

ONCE = """
built = []


def build(menu):
    built.append(1)
    if len(built) > 1:
        raise ValueError('a second time')
"""


def test_a_screen_that_cannot_be_built_anew_is_closed_and_the_others_go_on(world):
    world.write("scripts/courses/breaks.py", BREAKS)
    world.write("scripts/screens/Breaks.py", ONCE)
    run = world.run(level="FirstRoom", frames=30, KAVEL_COURSE="breaks", KAVEL_UNDRAWN="1")
    run.expect("left: ['Credits']")
    run.expect("runs: True")
    assert run.log.count("ValueError: a second time") == 1, run.log[-3000:]


if __name__ == "__main__":
    game.main(globals())
