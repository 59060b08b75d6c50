"""The scripts that belong to levels: all but those that the game itself started with.

Each load of a level reads them anew from their files, so that a change shows without a start of the game.
"""

import contextlib
import importlib
import importlib.machinery
import os
import sys
import traceback
import types

import mods
from mods.Tomls import Fault

#: Folder of all scripts.
FOLDER = os.path.dirname(__file__)

#: Packages that outlive the levels which asked for them first: what they keep is not a level's.
LASTING = ('editor',)

_ofTheGame: set[str] = set()


class _Loader(importlib.machinery.SourceFileLoader):
    """Reads scripts, and compiles each state of a file once: of hundreds that are read anew few have changed."""

    compiled: dict[str, tuple[tuple[int, int, int], types.CodeType]] = {}

    def get_code(self, fullname: str) -> 'types.CodeType | None':
        path = self.get_filename(fullname)
        told = os.stat(path)
        state = told.st_mtime_ns, told.st_size, told.st_ino
        before = self.compiled.get(path)
        if before and before[0] == state:
            return before[1]
        code = super().get_code(fullname)
        if code:
            self.compiled[path] = state, code
        return code


def _findScripts(folder: str):
    """The finder of modules in a folder of scripts; ImportError for any other."""
    if folder != FOLDER and not folder.startswith(FOLDER + os.sep):  # mods have finders of their own
        raise ImportError
    return importlib.machinery.FileFinder(folder, (_Loader, ['.py']))


def begin():
    """Counts what is imported by now to the game itself; to be called before the first level is loaded."""
    _ofTheGame.update(sys.modules)
    sys.path_hooks.insert(0, _findScripts)
    sys.path_importer_cache.clear()


@contextlib.contextmanager
def readAnew(only: str | None = None):
    """Within it, scripts of levels are read anew when they are imported, or only the module of this name.

    Where it fails, those that stood there before stand again: what still runs goes on with them.
    """
    before = _takeOut(only)
    importlib.invalidate_caches()
    try:
        yield
    except BaseException:
        _takeOut(only)
        sys.modules.update(before)
        raise


def _takeOut(only: str | None):
    names = [name for name, module in sys.modules.items()
             if name not in _ofTheGame and name.partition('.')[0] not in LASTING and isScript(module)
             and only in (None, name)]
    return {name: sys.modules.pop(name) for name in names}


def isScript(module: types.ModuleType) -> bool:
    """Whether a module is one of the scripts."""
    return _isScriptFile(getattr(module, '__file__', None) or '')


def isOfTheGame(name: str) -> bool:
    """Whether the module of this name outlives levels, as those that the game began with."""
    return name in _ofTheGame or name.partition('.')[0] in LASTING


def stamp():
    """What the files of all scripts are like; a save of any of them changes it."""
    stamps = []
    for folder, _, _ in os.walk(FOLDER):
        with contextlib.suppress(OSError):
            stamps += [(each.path, each.stat().st_mtime_ns, each.stat().st_size)
                       for each in os.scandir(folder) if each.name.endswith('.py')]
    return sorted(stamps)


def placeOf(error: BaseException) -> tuple[str, int] | None:
    """File, as in scripts/levels/Hall.py, and line of the script of a level that an exception came from.

    None where no such script took part.
    """
    if isinstance(error, Fault):
        return error.file, error.line
    if isinstance(error, SyntaxError) and error.filename:
        return _shown(error.filename), error.lineno or 0
    for frame, line in reversed(list(traceback.walk_tb(error.__traceback__))):
        if frame.f_globals.get('__name__') not in _ofTheGame and _isScriptFile(frame.f_code.co_filename):
            return _shown(frame.f_code.co_filename), line
    return None


def lineIn(error: BaseException, file: str) -> int:
    """The line of one script that an exception came from; 0 where it took no part."""
    if isinstance(error, SyntaxError):
        return error.lineno or 0
    lines = [line for frame, line in traceback.walk_tb(error.__traceback__)
             if os.path.realpath(frame.f_code.co_filename) == os.path.realpath(file)]
    return lines[-1] if lines else 0


def _isScriptFile(file: str):
    return file.startswith(FOLDER + os.sep) or mods.ownerOf(file) is not None


def _shown(file: str) -> str:
    owner = mods.ownerOf(file)
    if owner:
        return owner[1]
    return os.path.join('scripts', os.path.relpath(file, FOLDER)) if _isScriptFile(file) else file
