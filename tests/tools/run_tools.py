"""The developer's tools in the running game: bars for whatever the first room holds, the profiler's table."""
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

ONE_OF_EACH_CLASS = """
import kaVel
from levels.FirstRoom import build as furnish, villa
def build(coordinator):
    furnish(coordinator)
    bars = kaVel.getSystem('TweakSystem')
    oneOfEach = {}
    for h in kaVel.descendants(coordinator) + kaVel.descendants(bars.parent):
        oneOfEach.setdefault(h._getType().name, h)
    for h in oneOfEach.values():
        bars.addBar(h)
    kaVel.log('bars: %d of %d' % (bars.barCount, len(oneOfEach)))
    bars.showObject('s:/GraphicsSystem2')
    bars.captureScreen('../bars.png')
"""


def test_every_kind_of_object_has_a_bar(world):
    world.write("scripts/levels/Bars.py", ONE_OF_EACH_CLASS)
    run = world.run(level="Bars", frames=3)
    run.expect_code(0)
    opened, classes = re.search(r"bars: (\d+) of (\d+)", run.log).groups()
    assert opened == classes and int(classes) > 20, (opened, classes)
    assert not run.has("Error:") and not run.has("assertion failed"), run.log[-3000:]
    assert (world.folder / "bars.png").stat().st_size > 50000


if __name__ == "__main__":
    game.main(dict(globals()))
