"""The folder of the saves: which there are, and how one is written so that none is ever lost.

    folder = Folder(path)
    name = folder.write('game1', b'...')     # Name('game1', 8): the file game1.8.save
    folder.read(name)

A slot is one game; each of its saves is a file of its own with the next number, and the last three stay. One is written
into a new file beside it, which is brought to the disk and then renamed, so that whoever is killed on the way leaves
all saves as they were. Two games on one folder never write the same file: who has made the new file owns its number,
and holds a lock on it for as long as he lives. Knows nothing of what is written.
"""

from __future__ import annotations

import errno
import fcntl
import os
import re
import stat
from typing import NamedTuple

#: Saves of a slot that stay.
GENERATIONS = 3
#: A file that is larger is none of ours.
MOST_BYTES = 1 << 20
#: Numbers that are tried where others write into the same slot at once.
MOST_TRIES = 1000

_NAME = re.compile(r'(?P<slot>[^\W_][\w -]{0,39})\.(?P<serial>[0-9]{1,9})')


class Name(NamedTuple):
    """Slot and number of a save."""

    slot: str
    serial: int

    def __str__(self) -> str:
        return '%s.%d' % self


def nameOf(text: str) -> Name | None:
    """The name that a text is, as 'game1.8'; None for what is none."""
    found = _NAME.fullmatch(text)
    return Name(found['slot'], int(found['serial'])) if found else None


def isSlot(text: str) -> bool:
    """Whether a slot may have this name: letters, digits, blanks, '-' and '_', forty at most."""
    return nameOf(text + '.1') is not None


class Folder:
    """One folder of saves, which is made by the first one."""

    def __init__(self, path: str):
        self.path = path
        self._given: dict[str, int] = {}  # highest number by slot: what is deleted leaves its number to nobody

    def isOpen(self) -> bool:
        """Whether something can be written into it, once it is made where it is not there yet."""
        try:
            os.makedirs(self.path, exist_ok=True)
        except OSError:
            return False
        return os.access(self.path, os.W_OK)

    def file(self, name: Name) -> str:
        return os.path.join(self.path, '%s.save' % (name,))

    def picture(self, name: Name) -> str:
        """Where the picture of a save lies, if there is one."""
        return os.path.join(self.path, '%s.png' % (name,))

    def moment(self) -> str:
        """Where a picture lies that no save has yet."""
        return os.path.join(self.path, 'moment.png')

    def names(self, slot: str | None = None) -> list[Name]:
        """The saves that there are, of all slots or one, the highest number first."""
        try:
            files = os.listdir(self.path)
        except OSError:
            return []
        found = [nameOf(file[:-len('.save')]) for file in files if file.endswith('.save')]
        names = [name for name in found if name and slot in (None, name.slot)]
        return sorted(names, key=lambda name: (-name.serial, name.slot))

    def read(self, name: Name) -> bytes:
        """What a save has in it; OSError where it is no file that can be read, or a larger one than any of ours."""
        # A pipe would have us wait for its other end.
        handle = os.open(self.file(name), os.O_RDONLY | os.O_NONBLOCK | os.O_CLOEXEC)
        with os.fdopen(handle, 'rb') as file:
            what = os.fstat(handle)
            if not stat.S_ISREG(what.st_mode):
                raise OSError(errno.EINVAL, 'it is no file')
            if what.st_size > MOST_BYTES:
                raise OSError(errno.EFBIG, os.strerror(errno.EFBIG))
            return file.read(MOST_BYTES)

    def write(self, slot: str, content: bytes) -> Name:
        """Adds a save to a slot; OSError where that is not possible, and all is as before."""
        os.makedirs(self.path, exist_ok=True)
        self._sweep()
        name, handle = self._begin(slot)
        fresh = self._fresh(name)
        try:
            with os.fdopen(handle, 'wb') as file:
                file.write(content)
                file.flush()
                os.fsync(handle)
                os.rename(fresh, self.file(name))
        except OSError:
            _remove(fresh)
            raise
        _syncFolder(self.path)
        for old in self.names(slot)[GENERATIONS:]:
            self.delete(old)
        return name

    def delete(self, name: Name) -> bool:
        """Deletes a save and its picture; whether it is gone."""
        _remove(self.picture(name))
        _remove(self.file(name))
        return not os.path.lexists(self.file(name))

    def nextSlot(self, stem: str) -> str:
        """The first slot of a stem and a number that has no save, as 'game3'."""
        taken = {name.slot for name in self.names()} | set(self._given)
        number = 1
        while stem + str(number) in taken:
            number += 1
        return stem + str(number)

    def _fresh(self, name: Name) -> str:
        return self.file(name) + '.new'

    def _begin(self, slot: str) -> tuple[Name, int]:
        """The next number that nobody else writes, and its new file, which is locked until it is closed."""
        serial = max([name.serial for name in self.names(slot)[:1]] + [self._given.get(slot, 0)])
        for _ in range(MOST_TRIES):
            serial += 1
            name = Name(slot, serial)
            try:
                handle = os.open(self._fresh(name), os.O_WRONLY | os.O_CREAT | os.O_EXCL | os.O_CLOEXEC, 0o644)
            except FileExistsError:
                continue
            if not _isOurs(handle, self._fresh(name)):
                os.close(handle)
                continue
            if not os.path.lexists(self.file(name)):  # another one may have come first, and be done
                self._given[slot] = serial
                return name, handle
            os.close(handle)
            _remove(self._fresh(name))
        raise OSError(errno.EBUSY, os.strerror(errno.EBUSY))

    def _sweep(self):
        """Takes away the new files of those who were killed."""
        for file in os.listdir(self.path):
            if file.endswith('.save.new'):
                _removeAbandoned(os.path.join(self.path, file))


def _isOurs(handle: int, path: str) -> bool:
    """Locks a file; false where another one has it, or it does not lie there any more."""
    try:
        fcntl.flock(handle, fcntl.LOCK_EX | fcntl.LOCK_NB)
        return os.stat(path).st_ino == os.fstat(handle).st_ino
    except OSError:
        return False


def _removeAbandoned(path: str):
    """Takes away a file that nobody holds the lock on, and holds it itself until the file is gone.

    Who lets go before would take away the file of one who has made it a moment ago, and locks it in between.
    """
    try:
        handle = os.open(path, os.O_RDONLY | os.O_NONBLOCK | os.O_CLOEXEC)
    except OSError:
        return
    try:
        if stat.S_ISREG(os.fstat(handle).st_mode) and _isOurs(handle, path):
            _remove(path)
    finally:
        os.close(handle)


def _remove(path: str):
    try:
        os.unlink(path)
    except OSError:
        pass  # gone already, or nothing that can be taken away


def _syncFolder(path: str):
    """Brings the names in a folder to the disk, where the file system can."""
    handle = os.open(path, os.O_RDONLY | os.O_DIRECTORY | os.O_CLOEXEC)
    try:
        os.fsync(handle)
    except OSError:
        pass
    finally:
        os.close(handle)
