"""The last minutes of a level: what was is shown as it was, and the run goes on as if nobody had looked back."""
import pathlib
import re
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import game
from display import Display, Game

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
        kaVel.log('ago: %.2f' % Timeline.ago())
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


#: What swings, seen by who stands there; tells where the bar's controls are, in pixels of the window.
SEEN = """
import math
import kaVel
import objects.GameObjects as place
def build(coordinator):
    coordinator.loadMap('hall')
    place.Player(coordinator, 'Player', at=(0, 0, -3))
def hall(map):
    place.PartitioningGrid(map, size=(16, 0, 16))
    place.Block(map, 'floor', at=(0, -1, 0), size=(16, 1, 16))
    swing, frames = place.Crate(map, 'swing', at=(2, 0, 2)), [0]
    def doFrame():
        frames[0] += 1
        swing.getComponent('transform').position = kaVel.Vec4(frames[0] / 1000, 0, 2, 1)
        if frames[0] == 20:
            kaVel.getSystem('TweakSystem').showObject('hall/swing')
            kaVel.log('it swings')
        if frames[0] % 20 == 0 and kaVel.getSystem('TimelineSystem').recording:
            bar = kaVel.getSystem('TweakSystem').makeBar('Timeline')
            for name in ('moved', 'take', 'back'):
                spot = bar.whereIs(name)
                kaVel.log('at %s %d %d %d' % (name, spot.x, (spot.y + spot.w) / 2, spot.z))
        kaVel.log('frame %d' % kaVel.getSystem('GameLoopSystem').frameNumber)
    kaVel.addComponent(swing, 'director', 'ScriptComponent', frameCallback=doFrame)
"""


def point(play, name, share):
    """Puts the mouse at a part of the width of a control of the bar."""
    left, y, right = map(int, re.findall(rf" at {name} (\d+) (\d+) (\d+)", play.log())[-1])
    play.display.tool("mousemove", "--window", play.window, round(left + share * (right - left)), y)


def last_frame(play):
    return int(re.findall(r" frame (\d+)$", play.log(), re.MULTILINE)[-1])


def test_the_mouse_scrubs_on_a_curve_and_the_run_is_played_on_from_there(world):
    world.write("scripts/levels/Seen.py", SEEN)
    with Display("1280x720") as display, Game(world, display, "Seen",
                                              XDG_STATE_HOME=str(world.folder / "state")) as play:
        play.focus()
        play.until_logged("it swings")
        play.press("F10")
        play.until(lambda: len(re.findall(" at take [1-9]", play.log())) > 3, "the bar, for a while")
        point(play, "moved", 0.9)
        display.tool("mousedown", "1")
        for share in (0.8, 0.6, 0.4):
            point(play, "moved", share)
            time.sleep(0.2)
        display.tool("mouseup", "1")
        time.sleep(0.5)
        stopped = last_frame(play)
        time.sleep(0.5)
        assert last_frame(play) == stopped, "the level stands still while somebody looks back"
        point(play, "take", 0.5)
        display.tool("click", "1")
        play.until_logged("Played on from frame ")
        goal = int(re.search(r"is played to frame (\d+)", play.log())[1])
        assert 20 < goal < stopped
        play.until(lambda: last_frame(play) > goal + 20, "the run to go on")
        assert f"Played on from frame {goal} of the report" in play.log()
        assert "Error" not in play.log() and "Traceback" not in play.log(), play.log()[-3000:]


def test_a_report_waits_at_any_frame_goes_on_by_frames_and_still_ends_as_it_was(world):
    world.write("scripts/levels/Seen.py", SEEN)
    state = {"XDG_STATE_HOME": str(world.folder / "state")}
    with Display("1280x720") as display:
        with Game(world, display, "Seen", **state) as play:
            play.focus()
            play.until_logged("it swings")
            display.tool("keydown", "w")
            play.until(lambda: last_frame(play) > 80, "some frames")
            play.press("F12")
            play.until_logged("The report of frame ")
            play.quit()
        report = next((world.folder / "state" / "mornal" / "reports").glob("*.report"))
        end = int(report.stem.rpartition("-")[2])
        with Game(world, display, "", KAVEL_REPORT=str(report), KAVEL_HOLD="50", **state) as play:
            look_at_it(play, end)


def look_at_it(play, end):
    """Looks at a report that waits behind frame 50, frame by frame, and lets it go on to its end."""
    play.until_logged("The report waits behind frame 50")
    play.focus()
    time.sleep(0.5)
    assert last_frame(play) == 50
    for frame in (51, 52):
        play.press("Right")
        play.until_logged(f"The report waits behind frame {frame}")
    play.press("w")  # nobody hears it
    play.press("space")
    play.until_logged("The end is as in the report")
    assert last_frame(play) == end, "it stands still at its end"
    play.press("F10")
    time.sleep(1)
    assert play.process.poll() is None and "Traceback" not in play.log(), play.log()[-3000:]


if __name__ == "__main__":
    game.main(dict(globals()))
