"""Files that change are taken anew while the game runs: scripts, texts, effects, textures, models, sounds.

    import reloading

    reloading.known(file)              # written by the game itself just now: nothing is to be taken anew for it
    reloading.beforeLevel.add(f)       # f(level, files); one that raises Refused('why') keeps the level as it is
    reloading.afterLevel.add(f)        # f(level, files), of the new level
    reloading.taken.add(f)             # f(kind, files), of all kinds but scripts: 'textures', 'sounds', ...
    reloading.watch(folder)            # a further folder with textures, models, scripts of its own

What fails leaves the old in its place, and stands on the screen until it is mended (`Faults`). `Kinds` has what is done
for which file, `Levels` builds the level anew, in which the player stays where he is, with what he carries. A file is
known by its stamp (`Stamps`): the engine's `FolderWatchSystem` only tells that it is time to look.

What the mods that are on consist of is watched, too: data is taken anew, while their scripts, and files that come new,
count from the next start on.

It is on in ordinary games that are played from a source tree, which the makers of the game do, and off elsewhere. The
setting `reloadFiles` says otherwise for all games of a player, KAVEL_RELOAD (./play --reload) for one run, a headless
one, too.
"""

from __future__ import annotations

import os
from typing import Any, Callable

import GameConfig
import kaVel
import mods
import settings
from listeners import Listeners
from reloading import Faults, Kinds, Levels, Stamps
from reloading.Levels import Refused

__all__ = ['Faults', 'Refused', 'afterLevel', 'attend', 'beforeLevel', 'isOn', 'known', 'taken', 'watch']

#: What is watched, as the running game finds it.
FOLDERS = ['../scripts', '../assets']

beforeLevel = Levels.before
afterLevel = Levels.after
taken: Listeners[[str, list[str]]] = Kinds.taken

_stamps: Stamps.Stamps | None = None  # while files are watched


def attend() -> None:
    """Begins to watch, where it is wanted; for the start of the game."""
    for mod in mods.loaded():
        watch(mod.folder)
    settings.onChange(_follow)
    _switch()


def isOn() -> bool:
    """Whether files that change are taken anew."""
    return _stamps is not None


def watch(folder: str) -> None:
    """Watches one more folder with all below it."""
    if folder in FOLDERS:
        return
    FOLDERS.append(folder)
    if _stamps:
        _stamps.add(folder)
        kaVel.getSystem('FolderWatchSystem').watch(folder)


def known(path: str) -> None:
    """Takes what a file says now as read: for who has just written it."""
    if _stamps:
        _stamps.know(path)


def _follow(name: str) -> None:
    if name == 'reloadFiles':
        _switch()


def _switch() -> None:
    global _stamps
    wanted = _isWanted()
    if wanted == isOn():
        return
    _stamps = Stamps.Stamps(FOLDERS) if wanted else None
    system: Any = kaVel.getSystem('FolderWatchSystem')
    callback: Callable[[], None] | None = _look if wanted else None
    system.callback = callback
    for folder in FOLDERS if wanted else ():
        system.watch(folder)


def _isWanted() -> bool:
    if GameConfig.reload is not None:
        return GameConfig.reload
    chosen = settings.get('reloadFiles')
    if GameConfig.headless or GameConfig.played or chosen == 'off':
        return False
    return chosen == 'on' or _inSourceTree()


def _inSourceTree() -> bool:
    """Whether the scripts are those that the game is made of, by somebody who may change them."""
    scripts = os.path.realpath('../scripts')
    return os.path.isfile(os.path.join(os.path.dirname(scripts), 'CMakeLists.txt')) and os.access(scripts, os.W_OK)


def _look() -> None:
    """Takes anew what has changed since the last look."""
    if _stamps:
        Kinds.take(_stamps.changes())
