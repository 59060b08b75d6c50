"""A text file of a player's own, with lines `name = value`, of which a game changes one at a time.

What a game does not know stands as it is. A new file is written beside the old one, brought to the disk and put in its
place, so that there is a whole one at every moment; two games on one folder take turns, and each changes its own line
alone. What cannot be read or written is told in the log and costs nothing but what it would have kept.
"""

from __future__ import annotations

import contextlib
import fcntl
import os
import stat
import tempfile
from typing import Callable, Iterator, NamedTuple

import kaVel
import userFolders

#: A file larger than this is not ours.
_MOST_BYTES = 1 << 16


class Line(NamedTuple):
    """One line that says something: where it stands, and what."""

    number: int
    name: str
    text: str


class KeptLines:
    """The file of one name in the player's folder; `header` is what a new one begins with."""

    def __init__(self, fileName: str, header: Callable[[], list[str]]):
        self.fileName, self.header = fileName, header
        #: What went wrong lately and a player should know; empty when all is well.
        self.trouble = ''

    def path(self) -> str:
        return os.path.join(userFolders.of('config'), self.fileName)

    def read(self) -> list[Line]:
        """All lines that say something, from the first to the last."""
        found = []
        for number, line in enumerate(self._lines(), 1):
            name, text = _split(line)
            if name:
                found.append(Line(number, name, text))
        return found

    def write(self, name: str, text: str | None) -> None:
        """Puts one line into the file, anew or in its place, or takes it out; the others stay as they are by then."""
        try:
            with self._alone():
                self._replace([line + '\n' for line in self._changed(name, text)])
        except OSError as problem:
            self._tell('%s cannot be written: %s. %s holds for this game only.'
                       % (self.path(), problem.strerror, name))

    def arrange(self, names: list[str]) -> None:
        """Has the lines of these names stand in their order, at the places that such lines have."""
        try:
            with self._alone():
                lines = self._lines()
                places = [number for number, line in enumerate(lines) if _split(line)[0] in names]
                moved = sorted((lines[number] for number in places), key=lambda line: names.index(_split(line)[0]))
                for number, line in zip(places, moved):
                    lines[number] = line
                self._replace([line + '\n' for line in lines])
        except OSError as problem:
            self._tell('%s cannot be written: %s.' % (self.path(), problem.strerror))

    def _changed(self, name: str, text: str | None) -> list[str]:
        lines = self._lines() or self.header()
        places = [number for number, old in enumerate(lines) if _split(old)[0] == name]
        if text is None:
            return [line for number, line in enumerate(lines) if number not in places]
        line = '%s = %s' % (name, text)
        if places:
            lines[places[-1]] = line  # the last one is the one that counts
            return lines
        return [*lines, line]

    def _lines(self) -> list[str]:
        """The lines of the file; none if it cannot be read. A file that is no text is set aside."""
        try:
            # A pipe in its place would be waited for.
            if not stat.S_ISREG(os.stat(self.path()).st_mode):
                raise ValueError
            with open(self.path(), 'rb') as file:
                content = file.read(_MOST_BYTES + 1)
            if len(content) > _MOST_BYTES or b'\0' in content:
                raise ValueError
            return content.decode('utf-8').splitlines()
        except FileNotFoundError:
            return []
        except OSError as problem:
            self._tell('%s cannot be read: %s. The defaults are taken.' % (self.path(), problem.strerror))
        except ValueError:
            self._setAside()
        return []

    def _setAside(self) -> None:
        try:
            os.replace(self.path(), self.path() + '.broken')
            self._tell('%s is no settings file and stands aside as %s.broken. The defaults are taken.'
                       % (self.path(), self.path()))
        except OSError as problem:
            self._tell('%s is no settings file, and cannot be set aside: %s.' % (self.path(), problem.strerror))

    def _tell(self, trouble: str) -> None:
        if trouble != self.trouble:
            kaVel.log(trouble)
        self.trouble = trouble

    @contextlib.contextmanager
    def _alone(self) -> Iterator[None]:
        """Keeps other games out of the folder between `with` and its end; they wait while a file is written."""
        target = os.path.dirname(os.path.realpath(self.path()))
        if not userFolders.of('config'):
            raise OSError(0, 'there is no home folder')
        os.makedirs(target, exist_ok=True)
        handle = os.open(target, os.O_RDONLY | os.O_DIRECTORY)
        try:
            with contextlib.suppress(OSError):  # folders on other machines may know no locks
                fcntl.flock(handle, fcntl.LOCK_EX)
            yield
        finally:
            os.close(handle)

    def _replace(self, lines: list[str]) -> None:
        """Writes a new file and puts it in the place of the old one, which is whole until then."""
        target = os.path.realpath(self.path())
        handle, name = tempfile.mkstemp(dir=os.path.dirname(target), prefix=self.fileName + '.')
        try:
            with os.fdopen(handle, 'w', encoding='utf-8') as file:
                file.writelines(lines)
                file.flush()
                os.fsync(file.fileno())
            os.replace(name, target)
        except OSError:
            os.unlink(name)
            raise


def _split(line: str) -> tuple[str, str]:
    """Name and text of a line; no name for a comment or anything else that says nothing."""
    name, equals, text = line.partition('=')
    return (name.strip(), text.strip()) if equals and not line.lstrip().startswith('#') else ('', '')
