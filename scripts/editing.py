"""The way into the editor, and what it remembers while levels come and go.

The editor itself is loaded when it is first opened: `editor.Editor`.
"""

from __future__ import annotations

import os
import time
import traceback
from typing import Any, Callable

import kaVel
import userFolders
from perLevel import PerLevel

#: What the editor keeps by name from level to level: whether it is open, how it snaps.
remembered: dict[str, Any] = {}

#: Where edits are kept that a level was left with, below the user's data.
UNSAVED = 'unsaved'

_overlooked: PerLevel[bool] = PerLevel()
_onOverlook: PerLevel[list[Callable[[], object]]] = PerLevel()


def isOverlooked(level: kaVel.Coordinator) -> bool:
    """Whether a level is looked at from anywhere: all of it is to be drawn, not what its player sees alone."""
    return _overlooked.get(level, False)


def onOverlook(level: kaVel.Coordinator, changed: Callable[[], object]) -> None:
    """Calls a function whenever that begins or ends."""
    if level not in _onOverlook:
        _onOverlook[level] = []
    _onOverlook[level].append(changed)


def overlook(level: kaVel.Coordinator, on: bool) -> None:
    """Says whether a level is looked at from anywhere."""
    _overlooked[level] = on
    for changed in _onOverlook.get(level, []):
        changed()


def switch(level: kaVel.Coordinator) -> None:
    """Opens the editor in a level or closes it; where it cannot be, the log says why."""
    try:
        from editor.Editor import Editor
        Editor.of(level).switch()
    except Exception:
        kaVel.log('The editor cannot be opened:\n%s' % traceback.format_exc())


def arrive(level: kaVel.Coordinator) -> None:
    """Opens the editor in a level that was just loaded, if it was open in the one before."""
    if remembered.get('open'):
        remembered['open'] = False
        switch(level)


def leave(level: kaVel.Coordinator | None, levelName: str, go: Callable[[], object]) -> None:
    """Calls `go`, which leads to a level from another one; where that has unsaved edits, when its designer has agreed.

    A level that is only loaded anew keeps its edits.
    """
    editor = _editorOf(level)
    if editor and not editor.isSaved and editor.level.levelName != levelName:
        editor.askBefore(go)
    else:
        go()


def depart(level: kaVel.Coordinator | None, levelName: str) -> None:
    """Takes the bars of a level off the screen that another one may take the place of.

    Unsaved edits of one that is left for another level without a question are kept as a patch among the user's files.
    """
    editor = _editorOf(level)
    if not editor:
        return
    editor.panels.putAway()
    editor.recording.end()
    editor.aids.letScaleFollow()
    if levelName != editor.level.levelName and not editor.isSaved and not editor.isForsaken:
        try:
            _keep(editor.level.levelName, editor.diff())
        except Exception:
            kaVel.log('The unsaved edits of the level could not be kept:\n%s' % traceback.format_exc())


def edited(thing: Any, name: str, before: Any, after: Any) -> None:
    """Notes what a bar has set of an object while no editor is open, and offers to write it back."""
    level = thing.getAncestorOfType(kaVel.Reflection.Coordinator) if thing else None
    if level:
        from editor import WritingBack
        WritingBack.note(level, thing, name, before, after)


def _editorOf(level: kaVel.Coordinator | None) -> Any:
    import sys
    module: Any = sys.modules.get('editor.Editor')
    return module.Editor.openedIn(level) if module and level else None


def _keep(levelName: str, diff: str) -> None:
    folder = userFolders.file('data', UNSAVED)
    if not folder or not diff:
        return
    os.makedirs(folder, exist_ok=True)
    file = os.path.join(folder, '%s-%s.diff' % (levelName, time.strftime('%Y%m%d-%H%M%S')))
    with open(file, 'w', encoding='utf-8') as target:
        target.write(diff)
    kaVel.log('The level was left with unsaved edits; they lie in %s' % file)
