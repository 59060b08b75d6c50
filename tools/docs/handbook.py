#!/usr/bin/env python3
"""handbook.py --build BUILD [--output FOLDER]: writes the handbook as HTML, with a search, into FOLDER/html.

BUILD is a folder that the game was built in, as build/release: its reference of classes goes in, and pictures of the
patterns, which that game takes and BUILD/catalogue keeps. FOLDER is build/handbook without the word. Ends with 1 where
a link leads nowhere.
"""

import argparse
import pathlib
import re
import shutil
import subprocess
import sys

import listings
import patterns
import pictures

ROOT = pathlib.Path(__file__).resolve().parents[2]
HERE = pathlib.Path(__file__).resolve().parent
#: What leaves the handbook, for the file on disk that it is about.
OUTSIDE = re.compile(r"\]\(\.\./([^)#]+)\)")


def gather(build, pages):
    """All pages under one folder, as they link to each other."""
    shutil.rmtree(pages, ignore_errors=True)
    (pages / "catalogue").mkdir(parents=True)
    for path in (ROOT / "docs").rglob("*.md"):
        if path != ROOT / "docs" / "README.md":
            copy(path, pages / path.relative_to(ROOT / "docs"))
    shutil.copytree(build / "docs", pages / "reference")
    for path in (pages / "reference").glob("*.md"):
        if path.stem != "index":  # hundreds, which the margin of every page would list else
            path.write_text("---\norphan: true\n---\n\n" + path.read_text(encoding="utf-8"), encoding="utf-8")
    if not pictures.take(build, ROOT / "scripts" / "objects", build / "catalogue"):
        print(f"the catalogue has no new pictures: {build} has no game that takes them", file=sys.stderr)
    shots = pages / "catalogue" / "pictures"
    shots.mkdir()
    for picture in (build / "catalogue").glob("*.png"):
        shutil.copy(picture, shots)
    patterns.write(ROOT, pages / "catalogue", shots)
    listings.write(ROOT, pages / "catalogue")
    others = sorted(str(path.relative_to(pages).with_suffix("")) for path in pages.glob("*.md") if path.stem != "index")
    guide = ["guide/first-level", "guide/first-creature", "guide/first-mod", "guide/answers"]
    guide = [page for page in guide if (pages / f"{page}.md").is_file()]
    append(pages / "index.md", patterns.toctree([*guide, "catalogue/index", *others, "reference/index"]))


def copy(path, target):
    """A page; its links to files outside the handbook become their names."""
    target.parent.mkdir(parents=True, exist_ok=True)
    text = path.read_text(encoding="utf-8")
    if path.parent == ROOT / "docs":
        text = OUTSIDE.sub(lambda match: "](https://invalid/" + match[1] + ")", text)
        text = re.sub(r"\[([^\]]*)\]\(https://invalid/[^)]*\)", r"`\1`", text)
    target.write_text(text, encoding="utf-8")


def append(path, text):
    path.write_text(path.read_text(encoding="utf-8") + text, encoding="utf-8")


def version():
    text = (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
    return re.search(r"project\(Mornal VERSION ([0-9.]+)", text)[1]


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--output", type=pathlib.Path, default=ROOT / "build" / "handbook")
    options = parser.parse_args()
    output = options.output.resolve()
    gather(options.build.resolve(), output / "pages")
    command = ["/usr/bin/python3", "-m", "sphinx", "-q", "-W", "--keep-going", "-b", "html", "-c", HERE / "theme",
               "-d", output / "trees", "-D", f"release={version()}", output / "pages", output / "html"]
    made = subprocess.run(command)
    if made.returncode == 0:
        print(f"{output / 'html' / 'index.html'}")
    return made.returncode


if __name__ == "__main__":
    sys.exit(main())
