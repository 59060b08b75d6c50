"""Where the scripts of levels call something: what an object's pattern remembers of the lines that asked for it."""

from __future__ import annotations

import os
from types import CodeType, FrameType

#: Places of calls, the innermost first: a piece of code, and the number of its instruction.
Calls = tuple[tuple[CodeType, int], ...]

_FOLDER = os.path.dirname(__file__) + os.sep
#: Folders of scripts that serve all levels: what they call, they call for somebody.
_SERVING = frozenset((
    'BehaviorLib', 'bindings', 'console', 'editor', 'mods', 'objects', 'reloading', 'reports', 'saves', 'screens',
    'settings', 'words'))
_OTHER, _OWN, _LOADER, _ENGINE = range(4)

_kinds: dict[str, int] = {}


def above(frame: FrameType | None) -> tuple[Calls, bool]:
    """The calls by levels' own scripts that a frame stands in, and whether the loader of levels made them."""
    calls: list[tuple[CodeType, int]] = []
    while frame is not None:
        code = frame.f_code
        kind = _kinds.get(code.co_filename)
        if kind is None:
            kind = _kinds[code.co_filename] = _kindOf(code.co_filename)
        if kind == _OWN:
            calls.append((code, frame.f_lasti))
        elif kind == _LOADER:
            return tuple(calls), True
        elif kind == _ENGINE and not calls:
            return (), False  # what the engine has built for itself, though a level's call was the occasion
        frame = frame.f_back
    return tuple(calls), False


def _kindOf(file: str) -> int:
    if not file.startswith(_FOLDER):
        return _OWN if _isOfAMod(file) else _OTHER
    folder, separator, _ = file[len(_FOLDER):].partition(os.sep)
    if not separator:
        return {'loader.py': _LOADER, 'kaVel.py': _ENGINE}.get(folder, _OTHER)
    return _OTHER if folder in _SERVING else _OWN


def _isOfAMod(file: str) -> bool:
    """Whether a script outside the game's folder is a mod's level rather than a pattern or the library."""
    folders = file.split(os.sep)
    return file.endswith('.py') and 'levels' in folders and 'objects' not in folders


def positionOf(call: tuple[CodeType, int]) -> tuple[int, int, int, int]:
    """First line, its column in bytes, last line and the column behind the call; zeros where that is not known."""
    code, instruction = call
    for number, (line, endLine, column, endColumn) in enumerate(code.co_positions()):
        if number == instruction // 2:
            return line or 0, column or 0, endLine or 0, endColumn or 0
    return 0, 0, 0, 0
