#!/usr/bin/env python3
"""What is wrong in the levels: each is run for some frames, undrawn, and asked as it stands.

    tools/lint/lint.py [LEVEL...] [--game FOLDER] [--excepted]

Without a LEVEL all of the game's are looked at, and all texts. A finding names script and line, level, kind, object and
place, what is wrong and what helps. What is meant a level says in its LINT, see scripts/editor/lint; --excepted shows
that, too. Ends with 1 where something is left.
"""
import argparse
import importlib.util
import json
import os
import pathlib
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
FRAMES = 3  # things have come to stand where they are held, and scripts have done what they do at the start
TIMEOUT_S = 300
WHOLE = ("german", "hindi")


def levels(game):
    return sorted(path.stem for path in (game / "scripts" / "levels").glob("*.py") if path.stem != "__init__")


def asked(game, level, folder):
    """The findings of a level that was run, as the game writes them; SystemExit where it does not run."""
    file = pathlib.Path(folder) / f"{level}.json"
    environment = {key: value for key, value in os.environ.items()
                   if not key.startswith("KAVEL_") and key not in ("DISPLAY", "WAYLAND_DISPLAY")}
    environment.update(KAVEL_HEADLESS="1", KAVEL_UNDRAWN="1", KAVEL_FRAMES=str(FRAMES), KAVEL_LEVEL=level,
                       KAVEL_LINT=str(file), HOME=folder, XDG_CONFIG_HOME=folder, XDG_STATE_HOME=folder,
                       XDG_DATA_HOME=folder)
    run = subprocess.run([str(game / "bin" / "kaVel")], cwd=game / "bin", env=environment, stdout=subprocess.PIPE,
                         stderr=subprocess.STDOUT, timeout=TIMEOUT_S, check=False)
    if run.returncode or not file.is_file():
        sys.exit(f"{level} could not be looked at (exit code {run.returncode}); its log ends:\n"
                 + run.stdout.decode("utf-8", "replace")[-3000:])
    return json.loads(file.read_text(encoding="utf-8"))["findings"]


def told(level, finding):
    line = f":{finding['line']}" if finding["line"] else ""
    at = " at (%.1f, %.1f, %.1f)" % tuple(finding["at"]) if finding["at"] else ""
    return (f"scripts/{finding['file']}{line}: {level}: {finding['kind']}: {finding['path']}{at}: {finding['what']}; "
            + (f"meant: {finding['reason']}" if finding["reason"] else finding["remedy"]))


def texts(game):
    """What the check of the tables of words finds."""
    spec = importlib.util.spec_from_file_location("check", ROOT / "tools" / "words" / "check.py")
    check = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(check)
    return [f"{line.partition(': ')[0]}: text: {line.partition(': ')[2]}; write it in every table of scripts/words"
            for line in check.findings(game, WHOLE)[0]]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("levels", nargs="*", metavar="LEVEL")
    parser.add_argument("--game", type=pathlib.Path, default=ROOT / "build" / "release" / "game",
                        help="folder with bin, scripts and assets")
    parser.add_argument("--excepted", action="store_true", help="show what levels except, too")
    options = parser.parse_args()
    game = options.game.absolute()
    unknown = sorted(set(options.levels) - set(levels(game)))
    if unknown:
        sys.exit(f"no level {', '.join(unknown)}; there are: {', '.join(levels(game))}")
    wrong = 0
    with tempfile.TemporaryDirectory() as folder:
        for level in options.levels or levels(game):
            for finding in asked(game, level, folder):
                wrong += not finding["reason"]
                if options.excepted or not finding["reason"]:
                    print(told(level, finding))
    lines = texts(game)
    print("".join(f"{line}\n" for line in lines), end="")
    print(f"{wrong + len(lines)} wrong in {len(options.levels or levels(game))} levels")
    return 1 if wrong or lines else 0


if __name__ == "__main__":
    sys.exit(main())
