"""Holds that both compilers make the same game: runs of both builds give the same log and the same pictures."""
import pathlib
import subprocess
import sys
import tempfile

# Bodies and doors; minds and their ways. The log ends with the digest of all objects.
RUNS = (("Workshop", 90), ("Menagerie", 240))
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
    for level, frames in RUNS:
        ours, theirs = run_game(root, build, level, frames), run_game(root, other, level, frames)
        for what, one, two in zip(("log", "pictures"), ours, theirs):
            if one != two:
                yield f"{level}, {frames} frames: the {what} of {build.name} differ from those of {other.name}"


def run_game(root, build, level, frames):
    """The log of a headless run, and the bytes of its pictures by their names."""
    sys.path.insert(0, str(root / "tests" / "support"))
    import golden
    from game import World
    with tempfile.TemporaryDirectory() as folder:
        world = World(build, pathlib.Path(folder) / "game")
        golden.small(world)
        outcome = world.run(level, frames, "last.png")
        outcome.expect_code(0)
        pictures = {path.name: path.read_bytes() for path in world.folder.glob("last*.png")}
        return outcome.log.replace(folder, "").splitlines(), pictures
