"""What could not be taken anew, by file: it stands on the screen of every level until it is mended, and in the log."""

from __future__ import annotations

import time
from typing import Any, NamedTuple

import kaVel
import mods
from perLevel import PerLevel

#: Name of the entity that bears the lines in a level.
ENTITY = 'reloadFaults'

MOST_FAULTS, MOST_LINES, MOST_LETTERS = 4, 5, 150  # on the screen; the log has all of it
SIZE, LINE = 0.0135, 0.0175                        # of the window's longer side
HEAD, BODY, BAND = (1.0, 0.72, 0.42, 1), (0.93, 0.91, 0.86, 1), 'shade80'
LEFT, TOP = 0.012, 0.985


class Fault(NamedTuple):
    """What is wrong with a file; `until` is when a note that nobody can mend goes by itself, wall seconds."""

    line: int
    cause: str
    until: float = 0.0


_faults: dict[str, Fault] = {}
_shown: PerLevel[tuple[Any, dict[str, Fault]]] = PerLevel()


def tell(path: str, cause: str, line: int = 0, seconds: float = 0.0) -> None:
    """Shows what is wrong with a file, in place of what was before; a note with `seconds` goes by itself."""
    fault = Fault(line, cause.strip(), time.monotonic() + seconds if seconds else 0.0)
    if seconds or _faults.get(path) != fault:
        kaVel.log('Reload: %s' % '\n'.join(_linesOf(path, fault)))
    _faults[path] = fault
    show()


def mend(path: str) -> None:
    """Takes back what was wrong with a file."""
    if _faults.pop(path, None):
        kaVel.log('Reload: %s is mended' % shownPath(path))
        show()


def all() -> dict[str, Fault]:
    """All faults by file."""
    return dict(_faults)


def shownPath(path: str) -> str:
    """A file as it is told, from the folder of the game on, or from that of its mod."""
    owner = mods.ownerOf(path)
    return owner[1] if owner else path.removeprefix('../')


def show() -> None:
    """Brings the screen of the level in charge to what is wrong now."""
    level = kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator
    if level:
        showIn(level)


def showIn(level: kaVel.Coordinator) -> None:
    """Brings the screen of a level to what is wrong now."""
    root, faults = _shown.get(level, (None, {}))
    if faults == _faults:
        return
    if root:
        root.murder()
    _shown[level] = (_build(level) if _faults else None), dict(_faults)


def _build(level: kaVel.Coordinator) -> Any:
    from objects.things.Drawn import Picture, Text  # of the scripts of the level, which are read anew with it
    rows = [row for path, fault in list(_faults.items())[:MOST_FAULTS] for row in enumerate(_linesOf(path, fault))]
    if len(_faults) > MOST_FAULTS:
        rows.append((1, '... and %d more files' % (len(_faults) - MOST_FAULTS)))
    root: Any = kaVel.make('Entity', parent=level, name=ENTITY)
    window: Any = kaVel.getSystem('WindowSystem2')
    down = LINE * max(window.width, window.height) / max(1, window.height)  # in shares of the height
    height = LINE * (len(rows) + 0.6)
    Picture(root, 'band', picture=BAND, at=(0, 1), size=(1.01, height), anchor=('H_LEFT', 'V_TOP'), depth=0.4)
    for number, (row, text) in enumerate(rows):
        Text(root, 'line%d' % number, text=text[:MOST_LETTERS], at=(LEFT + (0.015 if row else 0), TOP - number * down),
             size=SIZE, color=BODY if row else HEAD, font='Andika-Regular.ttf', depth=0.3)
    if any(fault.until for fault in _faults.values()):
        kaVel.addComponent(root, 'menu', 'ScriptComponent', frameCallback=_letGo)
    kaVel.finishLoad(root)
    return root


def _letGo() -> None:
    """Takes away the notes whose time is over."""
    now = time.monotonic()
    over = [path for path, fault in _faults.items() if fault.until and fault.until < now]
    for path in over:
        del _faults[path]
    if over:
        show()


def _linesOf(path: str, fault: Fault) -> list[str]:
    head = shownPath(path) + (', line %d' % fault.line if fault.line else '')
    return [head, *[line.rstrip() for line in fault.cause.splitlines() if line.strip()][:MOST_LINES]]
