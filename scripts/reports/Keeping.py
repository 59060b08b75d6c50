"""What is kept of every run so that a report of it can be written, and the writing.

Beside the run's log, under its name, lie the input of all frames (.input, which the engine writes frame by frame) and
the user's files as the run found them (.begin). Both are there however a run ends: the next start makes a report of
what a crash has left behind. They go when their log goes.
"""

from __future__ import annotations

import json
import os
import zipfile
import zlib
from typing import Any

import kaVel
import mods
import userFolders
from perLevel import PerLevel
from reports import Archive

#: In the user's folders, what no run begins from, or what is nobody else's business.
LEFT_OUT = ('logs', 'reports', 'consoleHistory', 'unsaved')
MOST_OF_A_FILE = 16 << 20
MOST_OF_BEGIN = 64 << 20
MOST_OF_LOG = 4 << 20

_notes: list[str] = []  # of the report that is asked for; a run that ends badly has them in its log
_asked = False
_notices: PerLevel[Any] = PerLevel()


def inputFile() -> str:
    """Where this run's input goes; empty where nothing is kept."""
    import GameConfig
    return '' if GameConfig.played else _beside('.input')


def _beside(extension: str) -> str:
    log = kaVel.Reflection.getLogFile()
    return log and os.path.splitext(log)[0] + extension


def _stamp() -> str:
    return os.path.splitext(os.path.basename(kaVel.Reflection.getLogFile()))[0]


def begin() -> None:
    """Keeps what the run begins from, before anything changes it; for the start of the game."""
    import GameConfig
    target = _beside('.begin')
    if GameConfig.played or not target:
        return
    try:
        with zipfile.ZipFile(target, 'w') as archive:
            archive.writestr('about.json', json.dumps(_about(), indent=1))
            for name, file in _usersFiles():
                archive.write(file, name)
    except (OSError, ValueError) as problem:  # ValueError: a date before 1980
        kaVel.log('What the run begins from is not kept, and a report of it may play otherwise: %s' % problem)
    if not GameConfig.headless:
        _gatherCrashes()


def _about() -> dict[str, Any]:
    import GameConfig
    with open(kaVel.Reflection.getLogFile(), encoding='utf-8', errors='replace') as log:
        game = log.readline().strip()
    return {'report': Archive.VERSION, 'game': game, 'scripts': scriptsSum(), 'level': GameConfig.initialLevel,
            'mods': os.environ.get('KAVEL_MOD', ''), 'modsOn': {mod.name: mod.version for mod in mods.loaded()},
            'seed': GameConfig.seed, 'headless': GameConfig.headless,
            'unattended': GameConfig.headless or GameConfig.frames > 0,
            'language': {name: os.environ[name] for name in Archive.LANGUAGE if name in os.environ},
            'place': Archive.withoutHome(Archive.reportFolder()), 'run': _stamp()}


def scriptsSum() -> str:
    """A sum over all scripts: runs of other ones go another way."""
    import levelScripts
    total = 0
    for folder, folders, files in os.walk(levelScripts.FOLDER):
        folders[:] = sorted(name for name in folders if name != '__pycache__')
        for name in sorted(files):
            if name.endswith('.py') and os.path.isfile(os.path.join(folder, name)):  # a pipe would be waited for
                with open(os.path.join(folder, name), 'rb') as file:
                    total = zlib.crc32(file.read(), zlib.crc32(name.encode(), total))
    return '%08x' % total


def _usersFiles():
    """The user's files: the name in the archive, and the path."""
    room = MOST_OF_BEGIN
    for kind in userFolders.KINDS:
        home = userFolders.of(kind) if kind != 'cache' else ''  # what can be made again
        for folder, folders, files in os.walk(home) if home else ():
            if folder == home:
                folders[:] = [name for name in folders if name not in LEFT_OUT]
            for name in files:
                path = os.path.join(folder, name)
                if name in LEFT_OUT or not os.path.isfile(path) or os.path.getsize(path) > min(room, MOST_OF_A_FILE):
                    continue
                room -= os.path.getsize(path)
                yield '/'.join(('begin', kind, 'mornal', *os.path.relpath(path, home).split(os.sep))), path


def ask(note: str = '') -> None:
    """Has a report written of the present frame, and the player told where it is; while one is under way it waits."""
    global _asked
    if note:
        _notes.append(note)
    if _asked:
        return
    _asked = True
    loop = kaVel.getSystem('GameLoopSystem')
    before = loop.frameCallback
    loop.frameCallback = lambda: _takeDown(loop, before)


def _takeDown(loop: kaVel.GameLoopSystem, before: Any) -> None:
    """Has the picture and the state of this frame written, and the report put together behind it."""
    import GameConfig
    frame, playing = loop.frameNumber, bool(GameConfig.played)
    state, picture = _beside('.state'), _beside('.png')
    digest = kaVel.getSystem('StateDigest')
    if not playing and state:
        digest.dumpFile, digest.dumpFrame = state, frame
        kaVel.getSystem('GraphicsSystem2').captureScreen(picture)
    loop.frameCallback = lambda: _finish(loop, before, frame)
    if before:
        before()


def _finish(loop: kaVel.GameLoopSystem, before: Any, frame: int) -> None:
    """Writes the report of the frame that has just ended; a report that is played only tells of it."""
    global _asked
    import GameConfig
    _asked, note = False, '\n'.join(_notes)
    _notes.clear()
    loop.frameCallback = before
    if GameConfig.played:
        told = _kept(GameConfig.played.about.get('run', ''), frame)
    else:
        told = _write(frame, note)
    tell(loop.currentlyActiveCoordinator, told)
    if before:
        before()


def _kept(run: str, frame: int) -> str:
    import words
    return words.text('report.kept', name='%s-%d%s' % (run, frame, Archive.EXTENSION))


def _write(frame: int, note: str) -> str:
    """Writes a report; what to tell the player of it."""
    import words
    folder, state, picture = Archive.reportFolder(), _beside('.state'), _beside('.png')
    path = os.path.join(folder, '%s-%d%s' % (_stamp(), frame, Archive.EXTENSION))
    try:
        if not folder or not state:
            raise OSError(0, words.text('report.noPlace'))
        with zipfile.ZipFile(_beside('.begin')) as begin:
            about = dict(json.loads(begin.read('about.json')), frame=frame, note=note)
            members = _runsMembers(begin, about, _beside('.log'), _inputUpTo(_beside('.input'), frame))
        members['state.txt'] = _textOf(state)
        Archive.write(path, members, {'picture.png': picture})
    except (OSError, zipfile.BadZipFile, KeyError) as problem:
        reason = getattr(problem, 'strerror', None) or str(problem)
        kaVel.log('Error: the report %s cannot be written: %s' % (Archive.withoutHome(path), reason))
        return words.text('report.failed', reason=reason)
    finally:
        for file in (state, picture):
            if file and os.path.exists(file):
                os.unlink(file)
    kaVel.log('The report of frame %d is %s' % (frame, path))
    return _kept(_stamp(), frame)


def writeForAgain() -> str:
    """Writes a report of the run up to now, without picture and state, beside its log.

    ValueError where it cannot be.
    """
    path, frame = _beside('.report'), kaVel.getSystem('GameLoopSystem').frameNumber
    try:
        with zipfile.ZipFile(_beside('.begin')) as begin:
            about = dict(json.loads(begin.read('about.json')), frame=frame, note='')
            Archive.write(path, _runsMembers(begin, about, _beside('.log'), _inputUpTo(_beside('.input'), frame)), {},
                          sweep=False)
    except (OSError, zipfile.BadZipFile, KeyError) as problem:
        raise ValueError('what the run did is not kept: %s' % (getattr(problem, 'strerror', None) or problem)) from None
    return path


def _runsMembers(begin: zipfile.ZipFile, about: dict[str, Any], log: str, recorded: bytes) -> dict[str, bytes | str]:
    """The members of a report that come of a run's own files."""
    members: dict[str, bytes | str] = {'about.json': json.dumps(about, indent=1), 'log.txt': _textOf(log, MOST_OF_LOG)}
    config = userFolders.of('config')
    for name in sorted(os.listdir(config)) if os.path.isdir(config) else ():
        if name.endswith('.txt'):
            members['settings/' + name] = _textOf(os.path.join(config, name))
    if recorded:
        members['input.txt'] = recorded
    members.update((name, begin.read(name)) for name in begin.namelist() if name.startswith('begin/'))
    return members


def _textOf(file: str, most: int = Archive.MOST_MEMBER) -> str:
    """The end of a file as text; empty where it cannot be read."""
    try:
        with open(file, 'rb') as source:
            source.seek(max(0, os.path.getsize(file) - most))
            return source.read(most).decode('utf-8', 'replace')
    except OSError:
        return ''


def _inputUpTo(file: str, frame: int | None) -> bytes:
    """A run's recorded input up to a frame, or all that there is of it; empty where the run has none."""
    try:
        with open(file, 'rb') as source:
            lines = source.read().split(b'\n')[:-1]  # what follows the last line feed is cut off
    except OSError:
        return b''
    events = 5
    if len(lines) < events:
        return b''
    while frame is not None and len(lines) > events and int(lines[-1].split()[0]) > frame:
        lines.pop()
    if frame is None:
        frame = int(lines[-1].split()[0]) if len(lines) > events else 1
    return b'\n'.join(lines) + b'\n%d end\n' % frame


def _gatherCrashes() -> None:
    """Makes reports of runs that ended without their last line of input, unless they still go on."""
    folder = os.path.dirname(kaVel.Reflection.getLogFile())
    for name in sorted(os.listdir(folder)):
        run, extension = os.path.splitext(name)
        if extension != '.input' or run == _stamp() or goesOn(run.rpartition('-')[2]):
            continue
        file = os.path.join(folder, run)
        try:
            _gather(file, run)
            os.unlink(file + '.input')
            os.unlink(file + '.begin')
        except (OSError, ValueError, zipfile.BadZipFile, KeyError, IndexError) as problem:
            kaVel.log('What is left of the run %s makes no report: %s' % (run, problem))


def _gather(file: str, run: str) -> None:
    recorded = _inputUpTo(file + '.input', None)
    if not recorded or recorded.rstrip(b'\n').split(b'\n')[-2].endswith(b' end'):
        return
    with zipfile.ZipFile(file + '.begin') as begin:
        about = dict(json.loads(begin.read('about.json')), note='the run ended badly',
                     frame=int(recorded.rstrip(b'\n').split(b'\n')[-1].split()[0]))
        path = os.path.join(Archive.reportFolder(), '%s-end%s' % (run, Archive.EXTENSION))
        Archive.write(path, _runsMembers(begin, about, file + '.log', recorded), {})
    kaVel.log('A run ended badly; its report is %s' % path)


def goesOn(process: str) -> bool:
    """Whether a process of this number is still there; not where it is no number."""
    try:
        os.kill(int(process), 0)
    except PermissionError:
        return True
    except (OSError, ValueError, OverflowError):
        return False
    return True


def tell(level: kaVel.Coordinator, text: str) -> None:
    """Shows a text in a level for some seconds; in one that stands still, for as long as it does."""
    from objects.screen.Notice import Notice
    if not level:
        return
    if level not in _notices:
        _notices[level] = Notice(level, 'reportNotice')
        for end in ('', 'Shade'):
            kaVel.finishLoad(level.getChild('reportNotice' + end))
    _notices[level].show(text)
    _notices[level].doFrame()
