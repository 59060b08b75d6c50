"""What is done for a file that has changed: which kind it is of, and how that is taken anew."""

from __future__ import annotations

import os
import sys
from typing import Any, Callable, Iterable

import kaVel
import levelScripts
import mods
import words
from listeners import Listeners
from mods.Tomls import Fault
from reloading import Faults, Levels, Tables
from reloading.Stamps import Stamp
from words import Tables as WordTables

Changes = dict[str, Stamp | None]

taken: Listeners[[str, list[str]]] = Listeners('files that are taken anew')

SCRIPTS, TEXTURES, SHADERS = '../scripts/', '../assets/textures/', '../assets/shaders/'
NOTE_SECONDS = 8.0  # that a note stays which nobody can mend


def take(changes: Changes) -> None:
    """Takes anew what has changed; what has gone and is used is told."""
    kinds: dict[str, Changes] = {}
    for path, stamp in changes.items():
        kinds.setdefault(_kindOf(path), {})[path] = stamp
    for kind, function in _TAKEN.items():
        if kind in kinds:
            function(kinds[kind])


def _kindOf(path: str) -> str:
    end = os.path.splitext(path)[1]
    if mods.ownerOf(path):
        if end == '.py' or not mods.brought(path):
            return 'later'
        if end == '.toml':
            return 'texts' if mods.brought(path) == 'text' else 'scripts'
    elif end == '.py':
        name = os.path.relpath(path, SCRIPTS)
        isTable = os.path.dirname(name) == 'words' and name[len('words/'):][:1].islower()
        return 'texts' if isTable else 'scripts'
    return {'.fx': 'effects', '.fxh': 'effects', '.kaVelModel': 'models', '.fev': 'sounds', '.ogg': 'sounds'}.get(
        end, 'textures')


def _troubleOf(path: str, stamp: Stamp | None) -> str:
    """Why a file cannot be read at all; empty for one that can."""
    if not stamp:
        return 'It is gone; what was read from it stays.'
    if not stamp.isOrdinary():
        return 'It is no ordinary file.'
    return '' if os.access(path, os.R_OK) else 'It may not be read.'


def _readable(changes: Changes, isUsed: Callable[[str], bool]) -> list[str]:
    """The files that can be read; the others are told where they are used."""
    readable = []
    for path, stamp in changes.items():
        trouble = _troubleOf(path, stamp)
        if not trouble:
            readable.append(path)
        elif isUsed(path):
            Faults.tell(path, trouble)
        else:
            Faults.mend(path)
    return readable


def _done(kind: str, files: list[str]) -> None:
    if files:
        kaVel.log('Reload: %s taken anew: %s' % (kind, ', '.join(map(Faults.shownPath, files))))
        taken.call(kind, files)


# Scripts

def moduleOf(path: str) -> str:
    """Name of the module that a script is imported by."""
    name = os.path.splitext(os.path.relpath(path, SCRIPTS))[0].replace(os.sep, '.')
    return name.removesuffix('.__init__')


def _takeScripts(changes: Changes) -> None:
    level: Any = kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator
    present = 'levels.%s' % level.levelName
    ofLevel: Changes = {}
    for path, stamp in changes.items():
        name = moduleOf(path)
        if mods.ownerOf(path):
            if mods.isBuiltFrom(path, level.levelName):
                ofLevel[path] = stamp
        elif levelScripts.isOfTheGame(name):
            _takeOfTheGame(path, name, stamp)
        elif name in sys.modules or name == present or path in Faults.all() or _levelWaits():
            ofLevel[path] = stamp
    files = [path for path, stamp in ofLevel.items()
             if not Levels.isLeftAlone(path, stamp.written if stamp else 0)]
    if files and not _hasBroken(ofLevel):
        Levels.renew(files)


def _levelWaits() -> bool:
    """Whether the level could not be built, so that any script may mend it."""
    return any(map(Levels.isOfLevel, Faults.all()))


def _hasBroken(changes: Changes) -> bool:
    """Whether scripts cannot be read at all; each is told, those that were told before among them."""
    before = [path for path in Faults.all() if path.startswith(SCRIPTS) and path not in changes]
    broken = False
    for path in (path for path in [*changes, *before] if path.endswith('.py')):
        if path in before and not os.path.exists(path):
            continue  # whether it is missed shows when the level is built
        trouble, line = _faultOf(path)
        if trouble:
            Faults.tell(path, trouble, line)
        broken = broken or bool(trouble)
    return broken


def _faultOf(path: str) -> tuple[str, int]:
    """What keeps a script from being imported, and its line; a script that is gone shows when it is missed."""
    if not os.path.exists(path):
        return '', 0
    if not os.path.isfile(path):
        return 'It is no ordinary file.', 0
    try:
        with open(path, 'rb') as file:
            compile(file.read(), path, 'exec', dont_inherit=True)
    except SyntaxError as error:
        return '%s: %s\n%s' % (type(error).__name__, error.msg, (error.text or '').strip()), error.lineno or 0
    except (OSError, ValueError) as error:
        return getattr(error, 'strerror', None) or str(error), 0
    return '', 0


def _takeOfTheGame(path: str, name: str, stamp: Stamp | None) -> None:
    """Scripts that the game began with hold what lasts; only its tables can be taken anew."""
    trouble, line = (_troubleOf(path, stamp), 0) if not stamp else _faultOf(path)
    if trouble:
        Faults.tell(path, trouble, line)
    elif name in Tables.TAKEN:
        try:
            Tables.TAKEN[name]()
        except Exception as error:
            place = levelScripts.lineIn(error, path)
            Faults.tell(path, '%s: %s' % (type(error).__name__, error), place)
            return
        Faults.mend(path)
        _done('tables', [path])
    else:
        Faults.mend(path)
        Faults.tell(path, 'The game began with this script: the change is seen at the next start.',
                    seconds=NOTE_SECONDS)


# Texts

def _takeTexts(changes: Changes) -> None:
    """Has all texts read anew, unless a table that changed has a fault."""
    good = True
    for path in _readable(changes, lambda each: words.isRead(WordTables.nameOf(each))):
        faults = _faultsOfTexts(path)
        if faults:
            Faults.tell(path, '\n'.join(faults))
            good = False
        else:
            Faults.mend(path)
    waiting = [path for path in Faults.all() if _kindOf(path) == 'texts' and path != Levels.LEVEL]
    if good and not waiting:
        words.readAgain()
        words.prepare()
        _done('texts', list(changes))


def _faultsOfTexts(path: str) -> list[str]:
    """What is wrong with a table; one of a mod need not have all texts."""
    try:
        mods.readWords(path)
    except Fault as fault:
        return [str(fault)]
    owner = mods.ownerOf(path)
    return [fault for fault in words.faultsOf(WordTables.nameOf(path)) if not owner or fault.startswith(owner[1])]


# What the graphics device has

def _takeEffects(changes: Changes) -> None:
    """Compiles all effects anew: any of them may include what has changed."""
    graphics: Any = kaVel.getSystem('GraphicsSystem2')
    _readable(changes, lambda each: True)
    if any(path in Faults.all() and _troubleOf(path, stamp) for path, stamp in changes.items()):
        return
    good = True
    for name in sorted(file for file in os.listdir(SHADERS) if file.endswith('.fx')):
        trouble = graphics.reloadEffect(name)
        if trouble:
            Faults.tell(SHADERS + name, _eachOnce(trouble))
            good = False
        else:
            Faults.mend(SHADERS + name)
    if good:
        for path in changes:
            Faults.mend(path)
        _done('effects', list(changes))


def _eachOnce(trouble: str) -> str:
    """A compiler's lines without those that tell the same of another technique."""
    lines = {(line.partition(':')[0], line.partition('error:')[2]): line.replace('../', '')
             for line in reversed(trouble.splitlines())}
    return '\n'.join(reversed(lines.values()))


def _takeAssets(kind: str, changes: Changes) -> None:
    assets: Any = kaVel.getSystem('AssetSystem')
    good = []
    for path in _readable(changes, assets.usesFile):
        if not assets.usesFile(path):
            Faults.mend(path)
            continue
        trouble = assets.reloadFile(path)
        if trouble:
            Faults.tell(path, trouble)
        else:
            Faults.mend(path)
            good.append(path)
    _done(kind, good)


def _takeTextures(changes: Changes) -> None:
    _takeAssets('textures', changes)


def _takeModels(changes: Changes) -> None:
    _takeAssets('models', changes)


def _takeSounds(changes: Changes) -> None:
    """Reads the project anew with all samples; a fault of any of them leaves all as it was."""
    project = next((path for path in changes if path.endswith('.fev')), '../assets/sound/fmod/kaVel.fev')
    trouble = kaVel.getSystem('SoundSystem').reloadProject()
    if trouble:
        Faults.tell(project, trouble)
        return
    for path in _soundsIn(Faults.all()):
        Faults.mend(path)
    _done('sounds', list(changes))


def _soundsIn(paths: Iterable[str]) -> list[str]:
    return [path for path in paths if path.endswith(('.fev', '.ogg'))]


# What counts from the next start on

def _tellOfNextStart(changes: Changes) -> None:
    """Scripts of mods run as the player allowed them, and which files there are was found out at the start."""
    for path in changes:
        Faults.tell(path, 'The game began with the mod as it was: the change is seen at the next start.',
                    seconds=NOTE_SECONDS)


_TAKEN: dict[str, Callable[[Changes], None]] = {
    'texts': _takeTexts, 'effects': _takeEffects, 'textures': _takeTextures, 'models': _takeModels,
    'sounds': _takeSounds, 'scripts': _takeScripts, 'later': _tellOfNextStart}
