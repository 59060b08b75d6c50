"""Pictures of patterns for the catalogue: taken in the background by a run of the game itself, and kept.

They lie in the user's cache, a file a pattern. One whose pattern's script has changed since is taken anew. Where no
second run can be started, or in a headless one, there are only those that lie there.
"""

from __future__ import annotations

import os
import shutil
import subprocess
import traceback
from typing import Iterable

import GameConfig
import kaVel
import userFolders

#: The level that shows one pattern after the other, and the width and height of a picture, pixels.
LEVEL, SIZE = 'Stand', (144, 144)
#: How many are taken in one run: few enough that the first ones are soon there.
BATCH = 24


def folder() -> str:
    """Where the pictures lie; empty where the user has no place for them."""
    return userFolders.file('cache', 'catalogue')


def fileOf(name: str) -> str:
    """The file for the picture of a pattern, whether or not it is there."""
    return os.path.join(folder(), name + '.png')


class Pictures:
    """Hands out the files of pictures, and has those taken that are missing."""

    def __init__(self) -> None:
        self._wanted: dict[str, None] = {}
        self._tried: set[str] = set()
        self._there: dict[str, str] = {}
        self._run: subprocess.Popen[bytes] | None = None

    def of(self, name: str, source: str = '') -> str:
        """The file of a pattern's picture; empty while it is not there, and then it will be taken.

        `source` is the script of the pattern, after which the picture has to be.
        """
        if name in self._there:
            return self._there[name]
        if name not in self._tried:
            if _isFresh(fileOf(name), source):
                self._there[name] = fileOf(name)
                return self._there[name]
            self._wanted[name] = None
        return ''

    def doFrame(self) -> None:
        """Begins with the next batch once the last one is done."""
        if self._run and self._run.poll() is None:
            return
        if self._run:
            self._take()
        if self._wanted and not GameConfig.headless and folder():
            self._begin(list(self._wanted)[:BATCH])

    def end(self) -> None:
        """Ends a run that is still at it."""
        if self._run and self._run.poll() is None:
            self._run.kill()
            self._run.wait()
        self._run = None

    def _begin(self, names: list[str]) -> None:
        for name in names:
            del self._wanted[name]
        self._tried.update(names)
        try:
            self._run = begin(names, os.path.join(folder(), 'new'))
        except OSError:
            kaVel.log('The catalogue has no pictures of its own:\n%s' % traceback.format_exc())
            self._wanted.clear()

    def _take(self) -> None:
        self._run = None
        take(os.path.join(folder(), 'new'), folder())
        for name in self._tried:
            if os.path.isfile(fileOf(name)):
                self._there[name] = fileOf(name)


def begin(names: Iterable[str], target: str) -> subprocess.Popen[bytes]:
    """Starts a run of the game that takes pictures of patterns into an empty folder; OSError where it cannot."""
    shutil.rmtree(target, ignore_errors=True)
    os.makedirs(target)
    variables = {key: value for key, value in os.environ.items() if not key.startswith('KAVEL_')}
    variables.update({key: value for key, value in os.environ.items() if key.startswith('KAVEL_MOD')})
    variables.update(KAVEL_LEVEL=LEVEL, KAVEL_HEADLESS='1', KAVEL_VIEWS=','.join(names), KAVEL_FRAMES='2',
                     KAVEL_SIZE='%dx%d' % SIZE, KAVEL_SCREENSHOT=os.path.join(target, 'of.png'),
                     XDG_STATE_HOME=os.path.join(target, 'state'))
    return subprocess.Popen(['nice', os.path.realpath('/proc/self/exe')], env=variables, stdin=subprocess.DEVNULL,
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)


def take(source: str, target: str) -> list[str]:
    """Moves finished pictures to where they are kept, and returns the names of their patterns."""
    names = [file[3:-4] for file in os.listdir(source) if file.startswith('of-') and file.endswith('.png')]
    for name in names:
        os.replace(os.path.join(source, 'of-%s.png' % name), os.path.join(target, name + '.png'))
    shutil.rmtree(source, ignore_errors=True)
    return sorted(names)


def _isFresh(file: str, source: str) -> bool:
    try:
        return not source or os.path.getmtime(file) >= os.path.getmtime(source)
    except OSError:
        return os.path.isfile(file) and not os.path.isfile(source)
