"""What a run gives up before mods come in, and what is told of a mod that wants it all the same.

The kernel is what holds a mod back (`confine`, which says what of it this system does not have). Beside it, what the
interpreter is about to do is looked at to tell which mod wanted it, and where; that is no barrier.
"""

from __future__ import annotations

import errno
import os
import socket
import sys
from typing import Any, Callable, NamedTuple

import kaVel
import userFolders

_WRITES = os.O_WRONLY | os.O_RDWR | os.O_CREAT | os.O_TRUNC | os.O_APPEND
#: Attempts that are told; one that repeats itself would fill the log.
MOST_TOLD = 50


class Attempt(NamedTuple):
    """What a mod wanted to do: its name, file and line, and what it was, as "write ~/.profile"."""

    mod: str
    file: str
    line: int
    what: str

    def __str__(self) -> str:
        return 'The mod %s wanted to %s, which no mod may (%s:%d).' % (self.mod, self.what, self.file, self.line)


#: What this system's kernel does not hold back, as sentences; None as long as nothing is given up.
lacking: list[str] | None = None
attempts: list[Attempt] = []

_places: list[str] = []
_hasSockets = True


def confine(folders: list[str], files: list[str]) -> None:
    """Gives up all that mods do not need; the run may still write into some folders, which are made, and files."""
    global lacking
    for folder in filter(None, folders):
        try:
            os.makedirs(folder, exist_ok=True)
        except OSError:
            continue
        _places.append(os.path.realpath(folder) + os.sep)
    for file in files:
        try:
            os.close(os.open(file, os.O_WRONLY | os.O_CREAT | os.O_CLOEXEC | os.O_NONBLOCK, 0o666))
        except OSError:
            continue  # whoever writes it tells so
        _places.append(os.path.realpath(file))
    said = kaVel.Reflection.confine('\n'.join(each for each in _places if each.endswith(os.sep)),
                                    '\n'.join(each for each in _places if not each.endswith(os.sep)))
    lacking = said.splitlines()
    for sentence in lacking:
        kaVel.log('Mods: Warning: %s' % sentence)
    if not lacking:
        kaVel.log('Mods: this run writes only into its user\'s folders (%s), starts no programs and has no network.'
                  % ', '.join(_places))


def giveUpSockets() -> None:
    """Gives up sockets of any kind before the first script of a mod runs; what needs some has opened them by then."""
    global _hasSockets
    if not _hasSockets or lacking is None:
        return
    _hasSockets = False
    for system in ('WindowSystem2', 'GraphicsSystem2', 'InputSystem', 'SoundSystem'):
        kaVel.getSystem(system)
    import GameConfig
    if not GameConfig.headless:
        kaVel.getSystem('SoundSystem').updateFMOD()  # which opens the device
    if not kaVel.Reflection.confineSockets() and not lacking:
        lacking.append('other programs of this machine can still be reached through their sockets.')
        kaVel.log('Mods: Warning: %s' % lacking[-1])


def hasSockets() -> bool:
    """Whether this run still reaches other programs of this machine, as a sound server for another device."""
    return _hasSockets


def usersFolders() -> list[str]:
    """The folders of a user that a run with mods may write into: neither the mods nor what is allowed to run."""
    return [userFolders.of('config'), userFolders.of('state'), userFolders.file('data', 'saves')]


def mayWrite(path: str) -> bool:
    """Whether this run can write a file, for all that it has given up."""
    return lacking is None or not _isOutside(path)


def watch(ownerOf: Callable[[str], tuple[str, str] | None]) -> None:
    """Tells from now on what mods want that they may not; `ownerOf` has the mod and the name in it of a file."""
    def look(event: str, arguments: tuple[Any, ...]) -> None:
        judge = _JUDGES.get(event)
        what = judge(*arguments) if judge else ''
        if not what:
            return
        caller = _callerIn(ownerOf)
        if caller:
            _tell(Attempt(*caller, what))
            raise PermissionError(errno.EACCES, 'a mod may not ' + what)

    sys.addaudithook(look)


def _callerIn(ownerOf: Callable[[str], tuple[str, str] | None]) -> tuple[str, str, int] | None:
    """Mod, file and line of the innermost call of a mod; None where none takes part."""
    frame = sys._getframe(2)
    while frame:
        owner = ownerOf(frame.f_code.co_filename)
        if owner:
            return owner[0], owner[1], frame.f_lineno
        frame = frame.f_back
    return None


def _tell(attempt: Attempt) -> None:
    if len(attempts) >= MOST_TOLD or attempt in attempts:
        return
    attempts.append(attempt)
    kaVel.log('Mods: ' + str(attempt))
    level = kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator
    if level:
        import words
        from reports import Keeping
        Keeping.tell(level, words.text('mods.attempt', mod=attempt.mod, file=attempt.file, line=attempt.line))


def _isOutside(path: Any) -> bool:
    if isinstance(path, int):
        return False
    real = os.path.realpath(os.fsdecode(path))
    return not any(real == place or place.endswith(os.sep) and (real + os.sep).startswith(place) for place in _places)


def _write(path: Any, *_: Any) -> str:
    return 'write %s' % os.fsdecode(path) if not isinstance(path, int) and path and _isOutside(path) else ''


def _open(path: Any, mode: Any, flags: Any) -> str:
    return _write(path) if isinstance(flags, int) and flags & _WRITES else ''


def _move(source: Any, target: Any, *_: Any) -> str:
    return _write(source) or _write(target)


def _socket(_: Any, family: int, *__: Any) -> str:
    return 'reach other programs' if family in (socket.AF_UNIX, -1) else 'use the network'


def _connect(_: Any, address: Any) -> str:
    return 'use the network' if isinstance(address, tuple) else 'reach other programs'


def _signal(process: int, *_: Any) -> str:
    return '' if process == os.getpid() else 'send a signal to another program'


def _start(program: Any, *_: Any) -> str:
    return 'start the program %s' % (program if isinstance(program, str) else os.fsdecode(program))


#: Event of the interpreter -> what it would do that no mod may; empty where it may.
_JUDGES: dict[str, Callable[..., str]] = {
    'open': _open, 'os.remove': _write, 'os.rmdir': _write, 'os.mkdir': _write, 'os.truncate': _write,
    'os.chmod': _write, 'os.chown': _write, 'os.utime': _write, 'os.setxattr': _write,
    'os.rename': _move, 'os.link': _move, 'os.symlink': lambda source, target, *_: _write(target),
    'socket.__new__': _socket, 'socket.connect': _connect, 'socket.getaddrinfo': lambda *_: 'use the network',
    'os.kill': _signal, 'os.killpg': _signal,
    'subprocess.Popen': _start, 'os.exec': _start, 'os.posix_spawn': _start, 'os.system': _start,
    'os.fork': lambda: 'start a process of its own', 'os.forkpty': lambda: 'start a process of its own',
}
