"""The last minutes of a level: what was is shown as it was, and the run goes on as if nobody had looked back."""
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game

#: A crate that falls and one that a script swings; `look(frame)` is called in every frame, at its begin.
LEVEL = """
import math
import kaVel
import objects.GameObjects as place
from reports import Timeline
def build(coordinator):
    place.FreeCamera(coordinator, 'camera', at=(0, 1.7, -5))
    coordinator.loadMap('ground')
def ground(map):
    kaVel.configure(map.getComponent('transform'), position=kaVel.Vec4(0, 2, 0, 1), scale=kaVel.Vec4(20, 4, 20, 0))
    place.CargoCrate(map, 'falling', at=(0, 3, 2))
    swing = place.Crate(map, 'swing', at=(2, 0, 2))
    level, frames = map.getAncestorOfType(kaVel.Reflection.Coordinator), [0]
    loop = kaVel.getSystem('GameLoopSystem')
    def doFrame():
        frames[0] += 1
        swing.getComponent('transform').position = kaVel.Vec4(math.sin(frames[0] / 10), 0, 2, 1)
        if frames[0] == 1:
            before = loop.frameCallback
            loop.frameCallback = lambda: (look(level, frames[0], swing), before())
    kaVel.addComponent(swing, 'director', 'ScriptComponent', frameCallback=doFrame)
def tell(level, name):
    from headless import treeDigest
    kaVel.log('%s: %s' % (name, treeDigest(level)))
"""

PLAIN = """
told = []
def look(level, frame, swing):
    if frame == 100 and not told:
        told.append(1)
        tell(level, 'end')
"""

SCRUBBED = """
told, steps, seen = [], [0], []
def x(swing):
    return swing.getComponent('transform').position.x
def look(level, frame, swing):
    system = kaVel.getSystem('TimelineSystem')
    if frame == 5 and not system.recording:
        Timeline.watch(swing, 'transform.position.x')
        Timeline.record(True)
    elif frame == 60 and steps[0] < 20:
        if not steps[0]:
            tell(level, 'before')
        steps[0] += 1
        Timeline.showMoment(system.oldest + 2 * steps[0])
        seen.append((x(swing), list(Timeline.values().values())[-1]))
        if steps[0] == 20:
            kaVel.log('seen: %r' % seen)
            Timeline.goOn()
            tell(level, 'after')
            Timeline.show(-0.2)
            Timeline.open()
    elif steps[0] == 20:
        steps[0] += 1
        kaVel.log('ago: %.2f' % Timeline._ago())
        import stillness
        stillness.goOn(level)
    if frame == 100 and not told:
        told.append(1)
        tell(level, 'end')
        kaVel.log('kept: %d to %d, %d bytes' % (system.oldest, system.newest, system.bytes))
"""


def run(world, steps):
    world.write("scripts/levels/Played.py", LEVEL + steps)
    outcome = world.run(level="Played", frames=140, KAVEL_SIZE="320x180")
    outcome.expect_code(0)
    return outcome.log, dict(re.findall(r"Information: (before|after|end): (.*)", outcome.log))


def test_a_run_that_was_scrubbed_ends_as_one_that_was_not(world):
    _, plain = run(world, PLAIN)
    log, scrubbed = run(world, SCRUBBED)
    assert "raise" not in log and "Traceback" not in log, log[-3000:]
    assert scrubbed["before"] == scrubbed["after"], "the present comes back to the last bit"
    assert scrubbed["end"] == plain["end"], (scrubbed, plain)
    pairs = eval(re.search(r"seen: (.*)", log)[1])
    assert len(pairs) == 20 and len({x for x, _ in pairs}) == 20, "each moment was another"
    assert all(abs(x - noted) < 1e-6 for x, noted in pairs), "what is shown is what was watched then"
    ago = float(re.search(r" ago: (.*)", log)[1])
    assert abs(ago + 0.2) < 0.02, ago
    first, last, size = map(int, re.search(r"kept: (\d+) to (\d+), (\d+) bytes", log).groups())
    assert first == 0 and 90 < last < 97 and 0 < size < 200000, "moments hold what has moved, and no more"


if __name__ == "__main__":
    game.main(dict(globals()))
