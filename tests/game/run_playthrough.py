"""Playthroughs: what is recorded is replayed to the last bit, and what goes otherwise is named."""
import argparse
import contextlib
import io
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tests" / "support"), str(ROOT / "tools" / "playthrough")]
import game
import judging
import playthrough
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


class Told:
    """A build that plays what a commit's file says, frame by frame, or fails where that is too little."""

    def __init__(self, text):
        self.text = text

    def replay(self, recording, frames=None):
        if len(self.text) < 12:
            raise RunFailed("the game ended with exit code 1")
        return self.text.encode()[:24]

    def dump(self, recording, frame):
        value = self.text[12 * frame - 1]
        return [sketches.Field("Level/clock", "Clock::hour", 1, 2, 3, value, value)]


def test_the_commit_that_changed_play_is_found(world):
    repository = world.folder / "history"
    repository.mkdir()

    def git(*words):
        subprocess.run(["git", "-C", repository, "-c", "user.name=n", "-c", "user.email=e", *words], check=True,
                       stdout=subprocess.DEVNULL)

    def bisected(*plays):
        """What is said of a history in which the game plays first one of these, then the next."""
        git("checkout", "-q", "--orphan", "line%d" % len(list((repository / ".git/refs/heads").glob("*"))))
        for number, text in enumerate(plays):
            (repository / "play").write_text(text)
            git("add", "play")
            git("commit", "-q", "--allow-empty", "-m", f"step {number}")
            git("tag", "-f", "-a", f"step{number}", "-m", "a tag is no commit")
        said = io.StringIO()
        with contextlib.redirect_stdout(said):
            changed = playthrough.bisect(argparse.Namespace(good="step0", bad=f"step{len(plays) - 1}", name="round"))
        return changed, said.getvalue().splitlines()

    kept = playthrough.ROOT, playthrough.build_of, playthrough.named
    playthrough.ROOT = repository
    playthrough.build_of = lambda commit: Told(playthrough.git("show", commit + ":play"))
    playthrough.named = lambda name: recordings.Recording("", "", 1, "", "", "", b"")
    git("init", "-q")
    try:
        a, b, c = "abcdefghijklmnopqrstuvwx", "abcdefghijklmnopqrstuvwy", "abcdefghijklmnopqrstuvwz"
        for plays, step in (((a, a, b, b), 2), ((a, b), 1), ((a, a, a, a, a, b), 5), ((a, b, c, b, c), 1)):
            changed, lines = bisected(*plays)
            assert changed and lines[0].endswith(f": step {step}"), (plays, lines)
            assert "round: the builds differ from frame 2 on" in lines and "    old x" in lines, lines
        assert bisected(a, a, a) == (False, ["round: step0 and step2 do the same"])
        changed, lines = bisected(a, a, "gone", "gone")
        assert lines[0].endswith(": step 2") and lines[1] == "the game ended with exit code 1", lines
    finally:
        playthrough.ROOT, playthrough.build_of, playthrough.named = kept


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
