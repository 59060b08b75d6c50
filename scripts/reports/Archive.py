"""The file of a report: what it holds, how it is written, and how it is read when it may be anybody's.

It is a zip archive:

    about.json    the run: level, seed, frame and time of the report, language, what the player or developer noted
    log.txt       the run's log, to its last lines where it is long
    settings.txt  the player's settings as they were
    picture.png   what was to be seen
    state.txt     every field of every object, a line each
    input.txt     the input from the run's first frame on, with the length of every frame
    begin/        the user's files as the run found them: config/, data/ and state/

The folder of the user's home is called ~ in all that is text. Some members may be missing: a run that ended badly left
no picture and no state.
"""

from __future__ import annotations

import json
import os
import stat
import tempfile
import zipfile
from typing import Any

import userFolders

#: Of the files that are written; a report of a later one cannot be played.
VERSION = 1
KEPT = 5
EXTENSION = '.report'

MOST_ABOUT = 1 << 16
MOST_MEMBER = 256 << 20
MOST_FILES = 1000

#: What every report says of its run, and what that has to be.
ABOUT: dict[str, type] = {'level': str, 'seed': int, 'frame': int, 'headless': bool, 'unattended': bool}

#: What the language of a run hangs on.
LANGUAGE = ('LANG', 'LANGUAGE', 'LC_ALL', 'LC_MESSAGES', 'KAVEL_LANGUAGE')


def reportFolder() -> str:
    """Where reports are kept; empty where there is no place for them."""
    return userFolders.file('state', 'reports')


def withoutHome(text: str) -> str:
    """A text in which the folder of the user's home is called ~."""
    home = os.environ.get('HOME', '').rstrip('/')
    return text.replace(home, '~') if len(home) > 1 else text


def write(path: str, members: dict[str, bytes | str], files: dict[str, str], sweep: bool = True) -> None:
    """Writes a report whole or not at all: members by their contents, and others by the files that hold them.

    Of all beside it that are reports, too, only the last few stay, unless it is not to `sweep`.
    """
    os.makedirs(os.path.dirname(path), exist_ok=True)
    handle, name = tempfile.mkstemp(dir=os.path.dirname(path), prefix='.report')
    try:
        with os.fdopen(handle, 'wb') as file:
            with zipfile.ZipFile(file, 'w', zipfile.ZIP_DEFLATED, compresslevel=4) as archive:
                for member, content in members.items():
                    archive.writestr(member, withoutHome(content) if isinstance(content, str) else content)
                for member, source in files.items():
                    if os.path.isfile(source):
                        archive.write(source, member)
            file.flush()
            os.fsync(file.fileno())
        os.replace(name, path)
    except BaseException:
        os.unlink(name)
        raise
    if sweep:
        _deleteOldest(os.path.dirname(path))


def _deleteOldest(folder: str) -> None:
    found = [os.path.join(folder, name) for name in os.listdir(folder) if name.endswith(EXTENSION)]
    for path in sorted(found, key=os.path.getmtime)[:-KEPT]:
        os.unlink(path)


class Report:
    """A report as it was read: `about`, and its other members by name. ValueError says what is wrong with the file."""

    def __init__(self, path: str):
        self.path = path
        try:
            if not stat.S_ISREG(os.stat(path).st_mode):
                raise self._wrong('it is no ordinary file', 'name the file itself')
            self.archive = zipfile.ZipFile(path)
            self.about = self._readAbout()
        except OSError as problem:
            raise self._wrong(problem.strerror or str(problem), 'is the name right, and may you read it?') from None
        except (zipfile.BadZipFile, NotImplementedError, EOFError, RuntimeError) as problem:
            raise self._damaged(str(problem)) from None

    def read(self, member: str, most: int = MOST_MEMBER) -> bytes:
        """The contents of a member; empty where there is none."""
        if member not in self.archive.namelist():
            return b''
        try:
            with self.archive.open(member) as file:
                content = file.read(most + 1)
        except Exception as problem:  # a damaged archive raises whatever its decoder meets
            raise self._damaged('%s: %s' % (member, problem)) from None
        if len(content) > most:
            raise self._wrong('%s is larger than %d bytes' % (member, most), 'such a file the game has not written')
        return content

    def unpackBegin(self, folder: str) -> None:
        """Puts the user's files below a folder as the run found them."""
        names = [name for name in self.archive.namelist() if name.startswith('begin/') and not name.endswith('/')]
        if len(names) > MOST_FILES:
            raise self._wrong('it has more than %d files' % MOST_FILES, 'such a file the game has not written')
        for name in names:
            steps = name.split('/')[1:]
            if steps[0] not in userFolders.KINDS or '..' in steps or '' in steps or '\\' in name:
                raise self._wrong('it has the file %r' % name, 'such a file the game has not written')
            target = os.path.join(folder, *steps)
            os.makedirs(os.path.dirname(target), exist_ok=True)
            with open(target, 'wb') as file:
                file.write(self.read(name))

    def _readAbout(self) -> dict[str, Any]:
        text = self.read('about.json', MOST_ABOUT)
        if not text:
            raise self._wrong('it has no about.json', 'only files that the game wrote as reports can be played')
        try:
            about = json.loads(text)
            version = about['report']
        except (ValueError, KeyError, TypeError):
            raise self._damaged('about.json cannot be read') from None
        if version != VERSION:
            raise self._wrong('it is of version %r, and this game plays version %d' % (version, VERSION),
                              'play it with the game that wrote it: %s' % about.get('game', 'unknown'))
        for name, kind in ABOUT.items():
            if type(about.get(name)) is not kind:
                raise self._damaged('about.json says %r of %s' % (about.get(name), name))
        return about

    def _damaged(self, why: str) -> ValueError:
        return self._wrong('it is damaged or no report (%s)' % why, 'fetch it again from where it came')

    def _wrong(self, what: str, remedy: str) -> ValueError:
        return ValueError('the report %s cannot be played: %s; %s' % (self.path, what, remedy))
