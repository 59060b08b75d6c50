"""Recordings of play: the input of a run, and what the state came to after every frame of it."""

import json
import zipfile
from dataclasses import dataclass
from pathlib import Path

SUFFIX = ".playthrough"
# Archives of equal content are equal files.
LONG_AGO = (1980, 1, 1, 0, 0, 0)


@dataclass
class Recording:
    """What one file in `tests/playthrough` holds."""

    course: str  # module of scripts/courses that made it
    level: str
    seed: int
    size: str  # of the window, as in 640x360
    commit: str  # of the sources that it was made with
    input: str
    digest: bytes

    def write(self, path):
        about = {"course": self.course, "level": self.level, "seed": self.seed, "size": self.size,
                 "commit": self.commit}
        path.parent.mkdir(parents=True, exist_ok=True)
        with zipfile.ZipFile(path, "w", zipfile.ZIP_LZMA) as archive:
            for name, content in (("about.json", json.dumps(about, indent=1)), ("input.txt", self.input),
                                  ("digest.bin", self.digest)):
                archive.writestr(zipfile.ZipInfo(name, LONG_AGO), content, zipfile.ZIP_LZMA)


def read(path):
    with zipfile.ZipFile(path) as archive:
        about = json.loads(archive.read("about.json"))
        return Recording(**about, input=archive.read("input.txt").decode(), digest=archive.read("digest.bin"))


def path_of(root, name):
    """The file of a recording."""
    return Path(root) / "tests" / "playthrough" / (name + SUFFIX)


def names(root):
    return sorted(path.stem for path in (Path(root) / "tests" / "playthrough").glob("*" + SUFFIX))
