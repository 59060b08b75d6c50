"""Playthroughs: what is recorded is replayed to the last bit, and what goes otherwise is named."""
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tests" / "support"), str(ROOT / "tools" / "playthrough")]
import game
import judging
import recordings
import sketches
from replays import Player, RunFailed

COURSE = '''
LEVEL, SEED = 'Workshop', 11


def play(driver):
    yield from driver.wait(0.5)
    yield from driver.walk((2.6, -1.2), (1.2, -1.6))
    yield from driver.use(1.0, 1.35, -4.0)
    yield from driver.throw(0.1, 1.0, -3.6)
    yield from driver.walkTo(0.0, 0.8, run=True)
'''

# Appended to the level: what it does in one frame.
NUDGE = '''

_furnish = Visit.furnish


def _nudged(self):
    _furnish(self)
    gameLoop = kaVel.getSystem('GameLoopSystem')

    def nudge():
        if gameLoop.frameNumber == {frame}:
            {deed}

    watch = place.Entity(self.map, 'watch')
    kaVel.addComponent(watch, 'player', 'ScriptComponent', frameCallback=nudge)


Visit.furnish = _nudged
'''
FRAME = 150
NOTHING = "pass"


def prepared(world, deed=NOTHING):
    """The world's executable, with a level that does something in one frame."""
    level = world.folder / "scripts" / "levels" / "Workshop.py"
    text = (ROOT / "scripts" / "levels" / "Workshop.py").read_text(encoding="utf-8")
    level.write_text(text + NUDGE.format(frame=FRAME, deed=deed), encoding="utf-8")
    world.write("scripts/courses/round.py", COURSE)
    return Player(world.executable)


def recorded(world, player):
    text, digest = player.record("round", "Workshop", 11, "320x180")
    return recordings.Recording("round", "Workshop", 11, "320x180", "", text, digest)


def test_a_course_and_its_replays_are_the_same_with_and_without_drawing(world):
    player = prepared(world)
    recording = recorded(world, player)
    assert sketches.frames(recording.digest) > 200
    assert len(set(sketches.sums(recording.digest, frame)[0] for frame in range(1, 200))) > 190, "nothing goes on"
    assert not judging.check(player, recording, "round")
    assert not judging.check(Player(world.executable, drawn=True), recording, "round", frames=120)
    kept = world.folder / "round.playthrough"
    recording.write(kept)
    assert recordings.read(kept) == recording and kept.stat().st_size < 20 * sketches.frames(recording.digest)


def test_the_first_field_that_differs_is_named_with_its_object(world):
    player = prepared(world)
    recording = recorded(world, player)
    prepared(world, "self.map.setMapName('elsewhere')")
    lines = judging.check(player, recording, "round")
    assert f"frame {FRAME} " in lines[0] and "this field alone" in lines[0], lines
    assert "Workshop/cellar  MapRootEntity::mapName  is now \"elsewhere\"" in lines[1], lines


def test_an_entity_is_named_where_several_of_its_fields_differ(world):
    player = prepared(world)
    recording = recorded(world, player)
    prepared(world, "kaVel.configure(self.map.getDescendantByPath('workshop/benchLamp').getComponent('transform'), "
                    "position=kaVel.Vec4(0, 1, 0, 1), scale=kaVel.Vec4(2, 2, 2, 0))")
    lines = judging.check(player, recording, "round", frames=FRAME + 20)
    assert f"frame {FRAME} " in lines[0] and "fields of this entity alone" in lines[0], lines
    assert all("Workshop/cellar/workshop/benchLamp" in line for line in lines[1:5]), lines


def test_two_builds_are_compared_field_by_field(world):
    player = prepared(world)
    recording = recorded(world, player)
    other = game.World(world.build, world.folder / "other")
    nudged = prepared(other, "kaVel.Reflection.engineRand(), "
                             "self.map.getChild('lightCrate').getComponent('physics').setVelocity(kaVel.Vec4(0, 1))")
    lines = judging.compare(player, nudged, recording, "round")
    assert lines[0] == f"round: the builds differ from frame {FRAME} on", lines
    assert lines[1] == "  (chance)  engineRandState" and lines[2] != lines[3], lines
    pushed = lines.index("  Workshop/cellar/lightCrate/physics  PhysicsComponent::velocity")
    assert lines[pushed + 1] == "    old 0 0 0 0 " and lines[pushed + 2].startswith("    new 0 0.7"), lines
    assert not judging.compare(player, player, recording, "round")


def test_a_course_that_gets_nowhere_ends_its_run(world):
    prepared(world)
    world.write("scripts/courses/round.py", COURSE + "    yield from driver.walkTo(0.0, 40.0, seconds=1)\n")
    try:
        Player(world.executable).record("round", "Workshop", 11, "320x180")
        raise AssertionError("the course went through a wall")
    except RunFailed as failure:
        assert "towards 0.00, 40.00 in vain, in frame" in str(failure), failure


def test_the_kept_playthroughs_go_as_they_were_recorded(world):
    frames = 600 if world.is_sanitized() else None
    for name in recordings.names(ROOT):
        lines = judging.check(Player(world.executable), recordings.read(recordings.path_of(ROOT, name)), name, frames)
        assert not lines, "\n".join(lines)


if __name__ == "__main__":
    game.main(dict(globals()))
