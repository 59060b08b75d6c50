"""Holds that both compilers make the same game: one run of each build gives the same log and the same picture."""
import pathlib
import subprocess
import sys
import tempfile

LEVEL = "Workshop"
FRAMES = 90
# What a build's game is compared with: that of the other compiler, as it is shipped.
OTHERS = {"release": "clang", "clang": "release", "clang-sanitize": "release"}


def other_build(build):
    return build.parent / OTHERS[build.name]


def has_both(build):
    """Whether the game of this build and that of the other compiler are of the present sources."""
    return build.name in OTHERS and is_current(build) and is_current(other_build(build))


def is_current(build):
    if not (build / "build.ninja").exists():
        return False
    left = subprocess.run(["ninja", "-C", str(build), "-n", "kaVel", "kv_content"], capture_output=True, text=True,
                          check=False)
    return "no work to do" in left.stdout


def findings(root, build):
    """One line a difference between the runs of both builds."""
    other = other_build(build)
    ours, theirs = run_game(root, build), run_game(root, other)
    for what, one, two in zip(("log", "picture"), ours, theirs):
        if one != two:
            yield f"{LEVEL}, {FRAMES} frames: the {what} of {build.name} differs from the one of {other.name}"


def run_game(root, build):
    """The log and the bytes of the last picture of a headless run."""
    sys.path.insert(0, str(root / "tests" / "support"))
    from game import World
    with tempfile.TemporaryDirectory() as folder:
        world = World(build, pathlib.Path(folder) / "game")
        outcome = world.run(LEVEL, FRAMES, "last.png")
        outcome.expect_code(0)
        return outcome.log.replace(folder, "").splitlines(), (world.folder / "last.png").read_bytes()
