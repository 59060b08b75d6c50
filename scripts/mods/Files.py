"""The files of a mod: all that lie in its folder, none that lies elsewhere, and the sum of them."""

from __future__ import annotations

import hashlib
import os
import stat
from typing import Iterator, NamedTuple

from mods.Tomls import Fault

#: What a folder may have in it at most, so that a wrong one costs a moment and no more.
MOST_FILES, MOST_BYTES, DEEPEST = 10000, 2 << 30, 12
#: A larger script is none that a person has written.
MOST_OF_SCRIPT = 4 << 20


class File(NamedTuple):
    """A file by its name below the mod's folder, with slashes; its path; its bytes."""

    name: str
    path: str
    size: int


def listed(folder: str) -> list[File]:
    """All files of a folder by their names; Fault at one that a mod may not have, or where there are too many."""
    files: list[File] = []
    total = 0
    for file in _walk(folder, os.path.basename(folder)):
        files.append(file)
        total += file.size
        if len(files) > MOST_FILES:
            raise Fault(os.path.basename(folder), 0, 'it has more than %d files' % MOST_FILES)
        if total > MOST_BYTES:
            raise Fault(os.path.basename(folder), 0, 'its files have more than %d bytes' % MOST_BYTES)
    return sorted(files)


def _walk(folder: str, shown: str) -> Iterator[File]:
    waiting = [('', folder)]
    seen = 0
    while waiting:
        below, path = waiting.pop()
        try:
            entries = os.scandir(path)
        except OSError as error:
            raise Fault('%s/%s' % (shown, below), 0, 'it cannot be read: %s' % error.strerror) from None
        with entries:
            for entry in entries:
                seen += 1
                name = below + entry.name
                what = _statOf(entry, '%s/%s' % (shown, name))
                if stat.S_ISREG(what.st_mode):
                    yield File(name, entry.path, what.st_size)
                elif name.count('/') >= DEEPEST or seen > 2 * MOST_FILES:
                    raise Fault('%s/%s' % (shown, name), 0, 'there are too many folders')
                else:
                    waiting.append((name + '/', entry.path))


def _statOf(entry: os.DirEntry[str], shown: str) -> os.stat_result:
    """What a file or folder is; Fault where it is anything else, as a link, which may lead out of the mod."""
    if not entry.name.isprintable() or '\\' in entry.name:
        raise Fault(ascii(shown), 0, 'its name has letters that a name may not have')
    try:
        what = entry.stat(follow_symlinks=False)
    except OSError as error:
        raise Fault(shown, 0, 'it cannot be read: %s' % error.strerror) from None
    if stat.S_ISLNK(what.st_mode):
        raise Fault(shown, 0, 'it is a link; all files of a mod have to lie in its folder')
    if not stat.S_ISREG(what.st_mode) and not stat.S_ISDIR(what.st_mode):
        raise Fault(shown, 0, 'it is neither a file nor a folder')
    return what


def summed(files: list[File], shown: str) -> tuple[str, dict[str, bytes]]:
    """The sum over names and contents of all files, and the scripts among them as they were read for it.

    What runs is what was summed: the scripts are not read again.
    """
    total, sources = hashlib.sha256(), {}
    for file in files:
        content = hashlib.sha256()
        try:
            handle = os.open(file.path, os.O_RDONLY | os.O_NOFOLLOW | os.O_NONBLOCK | os.O_CLOEXEC)
            with os.fdopen(handle, 'rb') as source:
                if file.name.endswith('.py'):
                    sources[file.name] = source.read(MOST_OF_SCRIPT)
                    content.update(sources[file.name])
                for piece in iter(lambda: source.read(1 << 20), b''):
                    content.update(piece)
        except OSError as error:
            raise Fault('%s/%s' % (shown, file.name), 0, 'it cannot be read: %s' % error.strerror) from None
        total.update(b'%s\0%s\n' % (file.name.encode('utf-8', 'surrogateescape'), content.hexdigest().encode()))
    return total.hexdigest(), sources
