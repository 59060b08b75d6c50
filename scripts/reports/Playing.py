"""A report that is played again: from the run's first frame on, unseen and as fast as it goes, then its last minute as
it was; at its end the state is held against the report's, field by field. Meanwhile F10 or the space key has it wait at
any frame, with all of it to be looked at (`Timeline`).

The run is the same to the last bit where the game is the same: it begins with the user's files as they were, in a
folder of its own, and has the recorded input, lengths of frames and sizes of the window. What it keeps is gone
afterwards.
"""

from __future__ import annotations

import os
import shutil
import tempfile
from typing import Any, Iterator

import kaVel
import mods
import stillness
import userFolders
from reports import Archive, Keeping, Timeline

#: What is shown at its own pace, seconds.
SHOWN = 60.0

#: Of the folders that played runs have, in the one for temporary files.
PREFIX = 'mornal-report.'

#: Words of a run that a report has an answer to itself.
ANSWERED = ('LEVEL', 'SEED', 'SIZE', 'FRAMES', 'REPLAY', 'RECORD', 'COURSE', 'LANGUAGE', 'UNDRAWN', 'VIEWS', 'MOD')

#: What a run that is played has otherwise by its nature: the console shows the log, and no file changes.
OTHERWISE = ('Console', 'reloadFaults', 'reportNotice', 'reportNoticeShade')


class Played:
    """The report that this run plays. Made before the settings and saves are read: it puts the report's in place."""

    def __init__(self, path: str, hold: int = 0, takeOver: int = 0):
        #: What the run was started with, to start it so again.
        self.environment = dict(os.environ, KAVEL_REPORT=os.path.abspath(path))
        for word in ANSWERED:
            if os.environ.get('KAVEL_' + word):
                raise ValueError('KAVEL_%s is %r, where nothing may stand: the report %s says what it was'
                                 % (word, os.environ['KAVEL_' + word], path))
        report = Archive.Report(path)
        self.path, self.about = path, report.about
        #: Whether nobody looks on: nothing is drawn, and the game ends with the report.
        self.unseen = os.environ.get('KAVEL_HEADLESS') == '1'
        self.frames: int = report.about['frame']
        #: Frames behind which it waits, or is handed over; 0 for its end.
        self.hold, self.takeOver = self._frame(hold), self._frame(takeOver)
        recorded = report.read('input.txt')
        self.clock, self.size = _headOf(recorded, path)
        self.minute = _beginOfEnd(recorded, self.clock, self.hold or self.takeOver or self.frames)
        self.state = report.read('state.txt').decode('utf-8', 'replace')
        self.folder = tempfile.mkdtemp(prefix=PREFIX)
        _sweep(self.folder)
        report.unpackBegin(self.folder)
        self.input = os.path.join(self.folder, 'input.txt')
        with open(self.input, 'wb') as file:
            file.write(recorded)
        self._putInPlace()

    def _frame(self, asked: int) -> int:
        if asked and (self.unseen or self.about['headless']):
            raise ValueError('what is played off-screen goes to its end: nobody is there at frame %d' % asked)
        if asked > self.frames:
            raise ValueError('the report %s has no frame %d: it ends with %d' % (self.path, asked, self.frames))
        return asked

    def lacking(self, before: str = '') -> str:
        """The mods that the report was made with and this run has not, behind a text; empty where nothing lacks."""
        needed = self.about.get('modsOn')
        on = {mod.name: mod.version for mod in mods.loaded()}
        lacking = ['%s %s%s' % (name, version, ' (here %s)' % on[name] if name in on else '')
                   for name, version in sorted(needed.items()) if on.get(name) != version
                   ] if isinstance(needed, dict) else []
        if not lacking:
            return ''
        return '%sthe report was made with mods that are not on here: %s' % (before, ', '.join(lacking))

    def _putInPlace(self) -> None:
        """Has the run find what the report's found: its words, its language, its user's folders."""
        for name in Archive.LANGUAGE:
            os.environ.pop(name, None)
        language = self.about.get('language')
        if isinstance(language, dict):
            os.environ.update({name: str(language[name]) for name in Archive.LANGUAGE if name in language})
        os.environ.update({variable: os.path.join(self.folder, kind)
                           for kind, (variable, _) in userFolders.KINDS.items()})
        os.environ.update(KAVEL_LEVEL=self.about['level'], KAVEL_SEED=str(self.about['seed']),
                          KAVEL_MOD=str(self.about.get('mods', '')),
                          KAVEL_HEADLESS='1' if self.about['headless'] else '0')
        if self.unseen:
            for display in ('DISPLAY', 'WAYLAND_DISPLAY', 'SDL_VIDEODRIVER'):
                os.environ.pop(display, None)

    def attend(self) -> None:
        """Follows the run from its first frame on."""
        if self.about.get('scripts') != Keeping.scriptsSum():
            kaVel.log('Warning: the scripts are not those of the report (%s): it may go another way'
                      % self.about.get('game', 'of an unknown game'))
        if self.lacking():
            kaVel.log('Warning: %s; it may go another way' % self.lacking())
        kaVel.getSystem('GameLoopSystem').frameCallback = self._doFrame
        if not self.unseen:
            kaVel.getSystem('InputSystem').onlooker = self._look
        kaVel.log('The report is of frame %d; it is seen from frame %d on' % (self.frames, self._firstSeen()))

    def _doFrame(self) -> None:
        loop = kaVel.getSystem('GameLoopSystem')
        frame = loop.frameNumber
        if frame == 1 and not kaVel.getSystem('InputSystem').replaying:
            kaVel.log('Error: the report %s cannot be played: its input does not fit this game' % self.path)
            loop.quit(1)
        if frame == self.minute and not self.unseen:
            Timeline.record(True)
        if frame == self._firstSeen() and not self.unseen:
            self._show()
        if frame == self.takeOver:
            self.end()
            return
        if frame == self.hold:
            Timeline.pause()
        if frame == self.frames:
            digest = kaVel.getSystem('StateDigest')
            digest.dumpFile, digest.dumpFrame = os.path.join(self.folder, 'state.txt'), frame
        if frame == self.frames + 1:
            loop.frameCallback = None
            self._end(loop)
        elif frame % max(1, self.frames // 10) == 0:
            kaVel.log('Played: frame %d of %d' % (frame, self.frames))

    def _firstSeen(self) -> int:
        return self.hold or self.takeOver or self.minute

    def isSeen(self, frame: int) -> bool:
        """Whether a frame is drawn, and takes its time, unless somebody asks for it before."""
        return not self.unseen and frame >= self._firstSeen()

    def _show(self) -> None:
        """Has the run be seen from now on, at its own pace, and kept."""
        kaVel.getSystem('GraphicsSystem2').withoutDrawing = False
        kaVel.getSystem('TimeSystem').getSource().paced = True
        Timeline.record(True)

    def _look(self, key: int) -> None:
        """What somebody who looks on presses, while the run plays."""
        import bindings
        waits = kaVel.getSystem('TimelineSystem').waiting
        if key in bindings.keysOf('timeline') or key == bindings.keyCode('Space'):
            self._show()
            Timeline.resume() if waits else Timeline.pause()
        elif waits and key in (bindings.keyCode('Left'), bindings.keyCode('Right')):
            Timeline.step(1 if key == bindings.keyCode('Right') else -1)

    def end(self) -> None:
        """Hands the run over to whoever sits before it: from here on it is theirs, and goes another way."""
        kaVel.getSystem('GameLoopSystem').frameCallback = None
        self._show()
        _handOver()
        kaVel.log('Played on from frame %d of the report; nothing of it is kept' % kaVel.getSystem(
            'GameLoopSystem').frameNumber)
        Keeping.tell(kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator,
                     'Yours from here on. Nothing of it is kept.')

    def _end(self, loop: kaVel.GameLoopSystem) -> None:
        told, same = self._judgement()
        kaVel.log(told + self.lacking('; '))
        if self.unseen:
            loop.quit(0 if same else 1)
            return
        level = loop.currentlyActiveCoordinator
        stillness.stop(level)
        _handOver()
        import words
        Keeping.tell(level, words.text('report.same' if same else 'report.different') + self.lacking('\n'))
        Timeline.open()

    def _judgement(self) -> tuple[str, bool]:
        """What is to be said of the end, and whether it is as reported."""
        if not self.state:
            return 'The report has no state to compare with: %s' % self.about.get('note', ''), True
        with open(os.path.join(self.folder, 'state.txt'), encoding='utf-8', errors='replace') as file:
            now = Archive.withoutHome(file.read())
        different = list(differences(self.state, now))
        if not different:
            return 'The end is as in the report: %d fields' % self.state.count('\n'), True
        path, field, there, here = different[0]
        return ('The end is not as in the report. %d fields differ; the first is %s  %s: here %s, in the report %s'
                % (len(different), path, field, here, there)), False


def differences(there: str, here: str) -> Iterator[tuple[str, str, str, str]]:
    """Path, field and both values of what differs between two states, in the order of the second one."""
    left: dict[tuple[str, str], list[tuple[str, str]]] = {}
    for path, field, key, value in _fields(there):
        left.setdefault((path, field), []).append((key, value))
    for path, field, key, value in _fields(here):
        others = left.get((path, field))
        before = others.pop(0) if others else None
        if before is None:
            yield path, field, 'nothing', value
        elif before[0] != key:
            yield path, field, before[1], value
    for (path, field), others in left.items():
        for _, value in others:
            yield path, field, value, 'nothing'


def _fields(state: str) -> Iterator[tuple[str, str, str, str]]:
    for line in state.splitlines():
        parts = line.split('\t')
        if len(parts) >= 7 and not any(name in OTHERWISE for name in parts[0].split('/')):
            yield parts[0], parts[1], parts[5], parts[6]


def _sweep(mine: str) -> None:
    """Takes away what runs before have left, whose end no script lives to see."""
    with open(os.path.join(mine, 'process'), 'w', encoding='ascii') as file:
        file.write(str(os.getpid()))
    for name in os.listdir(tempfile.gettempdir()):
        folder = os.path.join(tempfile.gettempdir(), name)
        isOurs = name.startswith(PREFIX) and folder != mine and os.path.isdir(folder)
        if isOurs and not Keeping.goesOn(_process(folder)):
            shutil.rmtree(folder, True)


def _process(folder: str) -> str:
    try:
        with open(os.path.join(folder, 'process'), encoding='ascii', errors='replace') as file:
            return file.read(20)
    except OSError:
        return ''


def _handOver() -> None:
    """Gives clock, window and devices to whoever sits before the screen."""
    time = kaVel.getSystem('TimeSystem')
    clock = kaVel.make('QPCTimeSource', parent=time)
    clock.newFrame()  # the first one counts from the clock's origin
    time.setSource(clock)
    kaVel.getSystem('WindowSystem2').setPlayedSize(0, 0)
    kaVel.getSystem('InputSystem').replayFile = ''


def _headOf(recorded: bytes, path: str) -> tuple[int, tuple[int, int]]:
    """The rate of the clock, and the window's size."""
    words = [line.split() for line in recorded[:4096].split(b'\n')[:5]]
    try:
        (_, version), _, _, (_, width, height), (_, clock) = words
        if int(version) == 2 and int(clock) > 0:
            return int(clock), (int(width), int(height))
    except ValueError:
        pass
    why = 'its input is damaged' if recorded else 'it has no input, which could not be kept in that run'
    raise ValueError('the report %s cannot be played: %s; what else it holds can be read with any program for zip files'
                     % (path, why))


def _beginOfEnd(recorded: bytes, clock: int, last: int) -> int:
    """The frame with which the last minute begins."""
    times: list[tuple[int, int]] = []
    for line in recorded.split(b'\n'):
        words = line.split()
        if len(words) == 3 and words[1] == b'time' and words[0].isdigit() and words[2].isdigit():
            times.append((int(words[0]), int(words[2])))
    left, behind = SHOWN * clock, last + 1
    for first, ticks in reversed(times):
        if first < behind and (behind - first) * ticks >= left:
            return max(1, behind - int(left / ticks))
        left -= max(0, behind - first) * ticks
        behind = min(behind, first)
    return 1


def configured(className: str, played: Played) -> dict[str, Any]:
    """What a system has otherwise while a report is played: its properties by name."""
    return {'SoundSystem': {'offline': True},
            'GraphicsSystem2': {'withoutDrawing': not played.isSeen(1)},
            'GameLoopSystem': {'unattended': played.about['unattended']}}.get(className, {})
