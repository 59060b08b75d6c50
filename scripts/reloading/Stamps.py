"""What the files of the game are like, so that a look tells which have changed."""

from __future__ import annotations

import os
import stat
from typing import Iterable, Iterator, NamedTuple

#: Kinds of files that anything is done for, by how their names end.
ENDS = ('.py', '.fx', '.fxh', '.dds', '.png', '.kaVelModel', '.fev', '.ogg', '.toml')


class Stamp(NamedTuple):
    """What tells one state of a file from another, without reading it."""

    written: int  # ns
    size: int
    number: int   # of the file in its file system
    mode: int

    def isOrdinary(self) -> bool:
        """Whether it can be read without waiting: no pipe, device or folder."""
        return stat.S_ISREG(self.mode)


class Stamps:
    """The stamps of all files of some folders as of the last look."""

    def __init__(self, folders: Iterable[str]):
        self.folders = list(folders)
        self.known = dict(_filesIn(self.folders))

    def add(self, folder: str) -> None:
        """Counts one more folder in, as it is now."""
        self.folders.append(folder)
        self.known.update(_filesIn([folder]))

    def know(self, path: str) -> None:
        """Takes the present state of a file as seen, however its path is told."""
        wanted = os.path.realpath(path)
        for each in {path, *(known for known in self.known if os.path.basename(known) == os.path.basename(path))}:
            if os.path.realpath(each) == wanted:
                with_ = _stampOf(each)
                if with_:
                    self.known[each] = with_

    def changes(self) -> dict[str, Stamp | None]:
        """The files that have changed or come since the last look, and those that have gone, which have no stamp."""
        now = dict(_filesIn(self.folders))
        found: dict[str, Stamp | None] = {path: stamp for path, stamp in now.items() if self.known.get(path) != stamp}
        found.update((path, None) for path in self.known if path not in now)
        self.known = now
        return dict(sorted(found.items()))


def _stampOf(path: str) -> Stamp | None:
    try:
        told = os.stat(path)
    except OSError:
        return None
    return Stamp(told.st_mtime_ns, told.st_size, told.st_ino, told.st_mode)


def _filesIn(folders: Iterable[str]) -> Iterator[tuple[str, Stamp]]:
    seen: set[tuple[int, int]] = set()  # rings of links are gone round once
    for folder in folders:
        yield from _filesBelow(folder, seen)


def _filesBelow(folder: str, seen: set[tuple[int, int]]) -> Iterator[tuple[str, Stamp]]:
    try:
        told = os.stat(folder)
        entries = list(os.scandir(folder))
    except OSError:
        return
    if (told.st_dev, told.st_ino) in seen:
        return
    seen.add((told.st_dev, told.st_ino))
    for entry in entries:
        if entry.name.endswith(ENDS):
            stamp = _stampOf(entry.path)
            if stamp and not stat.S_ISDIR(stamp.mode):
                yield entry.path, stamp
        elif entry.is_dir() and entry.name != '__pycache__' and not entry.name.startswith('.'):
            yield from _filesBelow(entry.path, seen)
