"""Recorded playthroughs: whole runs of a level that are held, frame by frame, to what they were.

  playthrough.py record NAME...               play the courses scripts/courses/NAME.py and keep them
  playthrough.py check [NAME...]              replay the recordings, all without a name, and tell the first difference
  playthrough.py compare OLD NEW NAME         replay one with two builds and tell the first difference, value by value
  playthrough.py meter [NAME...]              replay without hashing and tell what frames cost
  playthrough.py pictures NAME FOLDER         replay one and write pictures of it: twelve, or those of --frames a,b,c
  playthrough.py bisect GOOD BAD NAME         find the commit behind GOOD, up to BAD, that changed what is played

What is recorded lies in tests/playthrough: the input, and a hash of every field of every object after every frame.
Recording and checking need build/release, or the folder that --build names; bisecting builds what it needs below
build/bisect.
"""

import argparse
import ast
import pathlib
import subprocess
import sys

import judging
import recordings
import sketches
from replays import Player, RunFailed

ROOT = pathlib.Path(__file__).resolve().parents[2]
SIZE = "1280x720"  # of the window, in parts of which the mouse moves


def arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build" / "release", help="folder of the build")
    parser.add_argument("--drawn", action="store_true", help="draw the frames too, which changes nothing but the time")
    commands = parser.add_subparsers(dest="command", required=True)
    commands.add_parser("record").add_argument("names", nargs="+", metavar="NAME")
    commands.add_parser("check").add_argument("names", nargs="*", metavar="NAME")
    commands.add_parser("meter").add_argument("names", nargs="*", metavar="NAME")
    pictures = commands.add_parser("pictures")
    pictures.add_argument("name")
    pictures.add_argument("folder", type=pathlib.Path)
    pictures.add_argument("--frames", metavar="A,B,C", help="instead of twelve over the whole of it")
    compare = commands.add_parser("compare")
    compare.add_argument("old", type=pathlib.Path)
    compare.add_argument("new", type=pathlib.Path)
    compare.add_argument("name")
    bisect = commands.add_parser("bisect")
    bisect.add_argument("good")
    bisect.add_argument("bad")
    bisect.add_argument("name")
    return parser.parse_args()


def told_by(name):
    """What a course says of its run: the values of its module's constants."""
    path = ROOT / "scripts" / "courses" / f"{name}.py"
    if not path.is_file():
        known = sorted(p.stem for p in path.parent.glob("*.py") if p.stem != "__init__")
        sys.exit(f"there is no course {name}; scripts/courses has: {', '.join(known)}")
    tree = ast.parse(path.read_text(encoding="utf-8"))
    return {line.targets[0].id: ast.literal_eval(line.value) for line in tree.body
            if isinstance(line, ast.Assign) and line.targets[0].id in ("LEVEL", "SEED")}


def record(options, name):
    told = told_by(name)
    level, seed = told["LEVEL"], told["SEED"]
    player = Player.of_build(options.build, options.drawn)
    text, digest = player.record(name, level, seed, SIZE)
    made = recordings.Recording(name, level, seed, SIZE, head(), text, digest)
    again = player.replay(made)
    if again != digest:
        frame = sketches.first_difference(digest, again)
        sys.exit(f"{name}: its replay goes another way from frame {frame} on; nothing was kept. What it does hangs on "
                 "something beside input, seed and the time of frames.")
    target = recordings.path_of(ROOT, name)
    made.write(target)
    print(f"{name}: {sketches.frames(digest)} frames, {target.stat().st_size / 1024:.0f} KiB")


def head():
    return commit_of("HEAD")


def git(*words):
    done = subprocess.run(["git", "-C", str(ROOT), *words], check=False, capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f"git {' '.join(words)}: {done.stderr.strip()}")
    return done.stdout


def commit_of(name):
    """The commit that a branch, a tag or a short hash stands for."""
    return git("rev-parse", "--verify", name + "^{commit}").strip()


def named(name):
    path = recordings.path_of(ROOT, name)
    if not path.is_file():
        sys.exit(f"there is no recording {name}; tests/playthrough has: {', '.join(recordings.names(ROOT)) or 'none'}")
    return recordings.read(path)


def check(options):
    failed = False
    for name in options.names or recordings.names(ROOT):
        lines = judging.check(Player.of_build(options.build, options.drawn), named(name), name)
        print("\n".join(lines) or f"{name}: as recorded")
        failed = failed or bool(lines)
    return failed


def compare(options):
    old, new = (Player.of_build(build, options.drawn) for build in (options.old, options.new))
    lines = judging.compare(old, new, named(options.name), options.name)
    print("\n".join(lines) or f"{options.name}: both builds do the same")
    return bool(lines)


def meter(options):
    for name in options.names or recordings.names(ROOT):
        print(f"{name}:\n{Player.of_build(options.build, options.drawn).meter(named(name)).text()}")
    return False


def pictures(options):
    recording = named(options.name)
    count = sketches.frames(recording.digest)
    asked = options.frames.split(",") if options.frames else [str(count * part // 13) for part in range(1, 13)]
    if not all(frame.isdigit() and 0 < int(frame) < count for frame in asked):
        sys.exit(f"--frames {options.frames}: frames from 1 to {count - 1} of {options.name}, with commas between them")
    options.folder.mkdir(parents=True, exist_ok=True)
    frames = [int(frame) for frame in asked]
    for file in Player.of_build(options.build).pictures(recording, frames, options.folder):
        print(file)
    return False


def bisect(options):
    recording = named(options.name)
    good, bad = commit_of(options.good), commit_of(options.bad)
    commits = [good, *git("rev-list", "--first-parent", "--reverse", f"{good}..{bad}").split()]
    if len(commits) == 1:
        sys.exit(f"there is no commit behind {options.good} up to {options.bad}")
    wanted = build_of(good).replay(recording)
    low, high = 0, len(commits) - 1  # as GOOD at low; not at high, if at any
    if told_of(commits[high], recording) == wanted:
        print(f"{options.name}: {options.good} and {options.bad} do the same")
        return False
    while high - low > 1:
        middle = (low + high) // 2
        low, high = (middle, high) if told_of(commits[middle], recording) == wanted else (low, middle)
    print(git("log", "-1", "--format=%h %an, %ad: %s", commits[high]).strip())
    found = told_of(commits[high], recording)
    print(found if isinstance(found, str) else "\n".join(
        judging.compare(build_of(commits[low]), build_of(commits[high]), recording, options.name)))
    return True


def told_of(commit, recording):
    """What a recording's input comes to at a commit: its digest, or how the game failed."""
    try:
        return build_of(commit).replay(recording)
    except RunFailed as failure:
        return str(failure)


def build_of(commit):
    """The game of a commit, built below build/bisect unless it stands there."""
    folder = ROOT / "build" / "bisect" / commit[:12]
    if not folder.is_dir():
        git("worktree", "add", "--force", "--detach", str(folder), commit)  # or one that was deleted stands in the way
    build = folder / "build" / "release"
    if not (build / "game" / "bin" / "kaVel").is_file():
        print(f"building {commit[:12]}", flush=True)
        for words in (["cmake", "-S", str(folder), "-B", str(build), "-G", "Ninja",
                       "-DCMAKE_BUILD_TYPE=RelWithDebInfo"], ["ninja", "-C", str(build), "kaVel", "kv_content"]):
            done = subprocess.run(words, check=False, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
            if done.returncode != 0:
                sys.exit(f"{commit[:12]} does not build:\n{done.stdout[-3000:]}")
    return Player.of_build(build)


def main():
    options = arguments()
    try:
        if options.command == "record":
            for name in options.names:
                record(options, name)
            return 0
        done = {"check": check, "compare": compare, "bisect": bisect, "meter": meter, "pictures": pictures}
        return done[options.command](options)
    except RunFailed as failure:
        return str(failure)


if __name__ == "__main__":
    sys.exit(main())
