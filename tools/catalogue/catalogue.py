#!/usr/bin/env python3
"""Takes the pictures of all patterns, or of some, into a folder, a file a pattern.

    tools/catalogue/catalogue.py [--build build/release] [--size 320x240] FOLDER [PATTERN ...]

The level `Stand` shows the patterns. What the editor shows lies in the user's cache, and is taken by the editor itself.
"""
import argparse
import os
import pathlib
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build" / "release")
    parser.add_argument("--size", default="320x240")
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("patterns", nargs="*")
    options = parser.parse_args()
    options.folder.mkdir(parents=True, exist_ok=True)
    bin = options.build.resolve() / "game" / "bin"
    with tempfile.TemporaryDirectory() as target:
        variables = {key: value for key, value in os.environ.items() if not key.startswith("KAVEL_")}
        variables.update(KAVEL_LEVEL="Stand", KAVEL_HEADLESS="1", KAVEL_FRAMES="2", KAVEL_SIZE=options.size,
                         KAVEL_SCREENSHOT=os.path.join(target, "of.png"), XDG_STATE_HOME=target)
        if options.patterns:
            variables["KAVEL_VIEWS"] = ",".join(options.patterns)
        run = subprocess.run([str(bin / "kaVel")], cwd=bin, env=variables, stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT, check=False)
        pictures = sorted(pathlib.Path(target).glob("of-*.png"))
        for picture in pictures:
            (options.folder / picture.name[3:]).write_bytes(picture.read_bytes())
    print(f"{len(pictures)} pictures in {options.folder}")
    if run.returncode:
        sys.exit(run.stdout.decode("utf-8", "replace")[-2000:])


if __name__ == "__main__":
    main()
