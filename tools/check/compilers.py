"""Holds that both compilers make the same game: runs of both builds give the same log and, to a few pixels, the
same pictures."""
import pathlib
import re
import subprocess
import sys
import tempfile

# Bodies and doors; minds and their ways. The log ends with the digest of all objects.
RUNS = (("Workshop", 90), ("Menagerie", 240))
# Steps of 255: matrices of views differ in their last bits, and with them a few pixels on edges.
WORST_BLOCK, WHOLE_PICTURE = 6.0, 0.05
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
    sys.path.insert(0, str(root / "tests" / "support"))
    import golden
    other = other_build(build)
    for level, frames in RUNS:
        place = f"{level}, {frames} frames: {{}} of {build.name} and {other.name} differ"
        (log, pictures), (otherLog, otherPictures) = (run_game(root, made, level, frames) for made in (build, other))
        if log != otherLog:
            yield place.format("the logs")
        for name in sorted(pictures.keys() | otherPictures.keys()):
            if name not in pictures or name not in otherPictures:
                yield place.format(f"the pictures ({name})")
            elif problem := golden.compare(pictures[name], otherPictures[name], WORST_BLOCK, WHOLE_PICTURE):
                yield f"{place.format(name)}: {problem}"


def run_game(root, build, level, frames):
    """The log of a headless run, and its pictures by their names."""
    sys.path.insert(0, str(root / "tests" / "support"))
    import golden
    import png
    from game import World
    with tempfile.TemporaryDirectory() as folder:
        world = World(build, pathlib.Path(folder) / "game")
        golden.small(world)
        outcome = world.run(level, frames, "last.png")
        outcome.expect_code(0)
        # The compilers number a call over several lines by its first or by its last one.
        log = re.sub(r"(?m)^(\S+)\(\d+\): ", r"\1: ", outcome.log.replace(folder, ""))
        return log.splitlines(), {path.name: png.read(path) for path in world.folder.glob("last*.png")}
