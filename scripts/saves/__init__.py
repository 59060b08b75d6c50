"""Saves that last: the game is kept at safe places and when the player leaves it.

    import saves

    saves.save()                 # the game that is played, into its own slot; a name makes another slot
    saves.load('game1')          # the newest save of a slot that is whole, or one by its number: 'game1.7'
    saves.newest()               # what to continue from; None where there is nothing
    saves.listed()               # all saves, damaged ones too, the newest first
    saves.delete('game1.7')
    saves.isUnsaved()            # whether something would be lost by leaving now
    saves.leave()                # saves, for one who leaves
    saves.keepPicture()          # of the present moment, for one who may leave from behind a screen
    saves.begin('Nightfall')     # a new game

They lie in `mornal/saves` in $XDG_DATA_HOME or ~/.local/share, or where KAVEL_SAVES says; headless runs have none
without that. Nothing here raises what a player could not help: an `Outcome` says in his words what went wrong. Rooms:
`Folder` writes files, `Document` is what stands in one, `Migrations` what older ones become, `Kept` what a level wants
to be kept, `Moments` when a game may be saved, `Game` what goes in and out of a level.
"""

from __future__ import annotations

import datetime
import errno
import os
from typing import Any, NamedTuple

import GameConfig
import kaVel
import mods
import userFolders
import words
from saves import Document, Moments
from saves.Folder import Folder, Name, isSlot, nameOf

#: Slots of games, with a number.
STEM = 'game'

_SENTENCES = {errno.ENOSPC: 'saves.fail.full', errno.EDQUOT: 'saves.fail.full', errno.EACCES: 'saves.fail.denied',
              errno.EPERM: 'saves.fail.denied', errno.EROFS: 'saves.fail.denied'}

_folders: dict[str, Folder] = {}
_slot = ''  # of the game that is played; empty until it is saved
_wanted: Document.Document | None = None  # what the level that is loaded next is to become
_saved: Any = None  # the progress that the last save of this game has
_pictured: Any = None  # the level that `keepPicture` has last kept a picture of


class Outcome(NamedTuple):
    """What became of a request: whether it is done, or waits for a better moment, and what is to be told."""

    done: bool
    said: str = ''
    name: str = ''       # of the save
    waits: bool = False
    before: str = ''     # of the save that is whole, before one that is damaged


class Entry(NamedTuple):
    """A save as a list shows it. One with a `fault` cannot be loaded; `before` is the one of its slot that can."""

    name: str
    slot: str
    level: str = ''
    place: str = ''      # key of its name
    made: str = ''       # UTC, as 2026-11-22T20:15:03.120000Z
    played: float = 0.0  # seconds
    why: str = ''        # 'safe', 'leaving' or 'asked'
    picture: str = ''    # file; empty for none
    fault: str = ''
    before: str = ''
    lacks: str = ''      # mods that it needs and that are not on


def path() -> str:
    """The folder of the saves; empty where there is no place for them."""
    if GameConfig.saves or GameConfig.headless:
        return GameConfig.saves
    return userFolders.file('data', 'saves')


def folder() -> Folder | None:
    """The folder of the saves; None where there is no place for them."""
    where = path()
    if where and where not in _folders:
        _folders[where] = Folder(where)
    return _folders.get(where)


# Saving

def save(slot: str = '', why: str = 'asked') -> Outcome:
    """Saves the game that is played, or says why not; in a moment that passes, as soon as it has passed."""
    level = _level()
    verdict = _verdict(level)
    if slot and not isSlot(slot):
        return Outcome(False, words.text('saves.no.slot', name=slot))
    if not folder():
        return Outcome(False, words.text('saves.no.folder'))
    if verdict.when in ('never', 'leaving'):
        return Outcome(False, words.text(verdict.why))
    if verdict.when == 'later':
        clock = _game().clockOf(level)
        if not clock:
            return Outcome(False, words.text('saves.no.nobody'))
        clock.waiting = lambda: _tell(save(slot, why))
        return Outcome(False, words.text(verdict.why), waits=True)
    return _write(level, slot, why)


def atSafePlace() -> None:
    """Saves the game for one who has come to a safe place."""
    if folder():
        _tell(save(why='safe'))


def leave() -> Outcome:
    """Saves the game for one who leaves it; in a moment that passes, or dead, he comes back to where he was last safe.

    The world is not drawn again: its picture is that of `keepPicture`, if the level has stood still since.
    """
    level = _level()
    verdict = _verdict(level)
    if not folder():
        return Outcome(False, words.text('saves.no.folder'))
    if verdict.when == 'never':
        return Outcome(False, words.text(verdict.why))
    return _write(level, '', 'leaving', isAwkward=verdict.when != 'now')


def keepPicture() -> None:
    """Keeps a picture of the world as the next frame shows it, for a save that is made on leaving."""
    global _pictured
    where, level = folder(), _level()
    if where and where.isOpen() and not GameConfig.undrawn and Moments.verdict(level).when != 'never':
        _pictured = level
        kaVel.getSystem('GraphicsSystem2').captureWorld(where.moment())


def isUnsaved() -> bool:
    """Whether something would be lost by leaving now without saving."""
    level = _level()
    if not level or _verdict(level).when == 'never':
        return False
    return _game().progress(level) != _saved


def _write(level: Any, slot: str, why: str, isAwkward: bool = False) -> Outcome:
    global _slot, _saved
    into = folder()
    assert into
    try:
        name = into.write(slot or _slot or into.nextSlot(STEM), Document.write(_game().document(level, why, isAwkward)))
    except Document.Fault as fault:
        return Outcome(False, words.text('saves.fail.other', cause=words.text(fault.key, **fault.values)))
    except OSError as error:
        kaVel.log('The game cannot be saved in %s: %s' % (into.path, error))
        cause = words.text('saves.fault.unreadable', cause=error.strerror)
        return Outcome(False, words.text(_SENTENCES.get(error.errno or 0, 'saves.fail.other'), cause=cause,
                                         folder=into.path))
    _slot, _saved = name.slot, _game().progress(level)
    if why == 'leaving':
        _usePicture(level, into, name)
    elif not GameConfig.undrawn:
        kaVel.getSystem('GraphicsSystem2').captureWorld(into.picture(name))
    return Outcome(True, words.text('saves.done'), str(name))


def _usePicture(level: Any, into: Folder, name: Name):
    if level == _pictured and level.loopState == kaVel.Coordinator.LoopControlState.LOOP_STOP:
        try:
            os.replace(into.moment(), into.picture(name))
        except OSError as error:
            kaVel.log('The save %s has no picture: %s' % (name, error))


def _tell(outcome: Outcome):
    """Tells a player of a save that he did not ask for just now, if it has failed."""
    if outcome.done or outcome.waits:
        return
    from objects.player.Pockets import pocketsOf
    kaVel.log(outcome.said)
    pocketsOf(_level()).tell(outcome.said)


# Loading

def load(name: str) -> Outcome:
    """Goes to the level of a save in the next frame, which then becomes what the save says."""
    global _wanted
    entry = find(name)
    if not entry:
        return Outcome(False, words.text('saves.no.such', name=name))
    if entry.fault:
        return Outcome(False, entry.fault, before=entry.before)
    if entry.lacks:
        return Outcome(False, words.text('saves.no.mods', mods=entry.lacks))
    if _isBuilding():
        return Outcome(False, words.text('saves.no.loading'))
    if not _hasLevel(entry.level):
        return Outcome(False, words.text('saves.fault', name=entry.name,
                                         cause=words.text('saves.fault.level', where=entry.level)))
    _wanted = _read(entry.name)
    _wanted['slot'] = entry.slot
    kaVel.getSystem('GameLoopSystem').queueLoadLevel(entry.level)
    return Outcome(True, name=entry.name)


def begin(levelName: str):
    """Begins a new game in a level; its saves go into a slot of their own."""
    global _slot, _saved, _wanted
    _slot, _saved, _wanted = '', None, None
    kaVel.forgetPersistentState()
    kaVel.getSystem('GameLoopSystem').queueLoadLevel(levelName)


def delete(name: str) -> bool:
    """Deletes a save by its name and number; whether it is gone."""
    where, which = folder(), nameOf(name)
    return bool(where and which and which in where.names() and where.delete(which))


def listed() -> list[Entry]:
    """All saves, the newest first; those that are damaged say so."""
    where = folder()
    entries = [_entry(where, name) for name in where.names()] if where else []
    entries = [each._replace(before=_before(each, entries)) if each.fault else each for each in entries]
    return sorted(entries, key=lambda each: each.made, reverse=True)


def newest() -> Entry | None:
    """The newest save that can be loaded; None where there is none."""
    return next((each for each in listed() if not each.fault), None)


def find(name: str) -> Entry | None:
    """A save by its name and number, or the newest one of a slot that can be loaded."""
    entries = listed()
    exact = next((each for each in entries if each.name == name), None)
    inSlot = [each for each in entries if each.slot == name]
    return exact or next((each for each in inSlot if not each.fault), inSlot[0] if inSlot else None)


def placeOf(entry: Entry) -> str:
    """What the place of a save is called; its level where that has no names for places."""
    return words.text(entry.place) if entry.place and words.has(entry.place) else entry.level


def _entry(where: Folder, name: Name) -> Entry:
    picture = where.picture(name) if os.path.isfile(where.picture(name)) else ''
    try:
        told = Document.read(where.read(name))
    except Document.Fault as fault:
        said = words.text(fault.key, **fault.values)
    except OSError as error:
        said = words.text('saves.fault.unreadable', cause=error.strerror)
    else:
        return Entry(str(name), name.slot, told['level'], told['place'], told['made'], told['played'], told['why'],
                     picture, lacks=', '.join(mods.lacking(told['mods'])))
    return Entry(str(name), name.slot, made=_timeOf(where.file(name)), picture=picture,
                 fault=words.text('saves.fault', name=name, cause=said))


def _timeOf(file: str) -> str:
    """When a file was last written, as `made` says it."""
    try:
        written = os.lstat(file).st_mtime
    except OSError:
        written = 0.0
    return datetime.datetime.fromtimestamp(written, datetime.timezone.utc).strftime('%Y-%m-%dT%H:%M:%S.%fZ')


def _before(damaged: Entry, entries: list[Entry]) -> str:
    """The newest save of the same slot that can be loaded, the ones before it first."""
    serial = int(damaged.name.rpartition('.')[2])
    others = [each for each in entries if each.slot == damaged.slot and not each.fault]
    others.sort(key=lambda each: int(each.name.rpartition('.')[2]), reverse=True)
    earlier = [each for each in others if int(each.name.rpartition('.')[2]) < serial]
    return (earlier or others)[0].name if earlier or others else ''


def _read(name: str) -> Document.Document:
    where, which = folder(), nameOf(name)
    assert where and which
    return Document.read(where.read(which))


# What the loader asks

def prepare(level: kaVel.Coordinator) -> None:
    """Gives a level that is about to be built what has become of its objects, where a save is being loaded."""
    if _wanted and _wanted['level'] == level.levelName:
        _game().prepare(level, _wanted)


def arrive(level: kaVel.Coordinator) -> None:
    """Makes a level that was just loaded what the save says that is being loaded, or what the player brings along."""
    global _wanted, _slot, _saved
    wanted, _wanted = _wanted, None
    if wanted and wanted['level'] == level.levelName:
        _game().arrive(level, wanted)
        _slot, _saved = wanted['slot'], _game().progress(level)
        kaVel.log('The save of %s in slot %s goes on.' % (wanted['made'], _slot))
    elif not _game().travelTo(level):
        _slot, _saved = '', None


def giveUp() -> None:
    """Forgets the save that was being loaded, whose level could not be built."""
    global _wanted
    _wanted = None


def depart(level: Any) -> None:
    """Notes what goes with the player of a level that is being left."""
    if not _wanted:
        _game().travelFrom(level)


def _level() -> Any:
    return kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator


def _isBuilding() -> bool:
    import loader
    return loader.isBuilding()


def _hasLevel(name: str) -> bool:
    import loader
    return loader.hasLevel(name)


def _verdict(level: Any) -> Moments.Verdict:
    if _wanted or _isBuilding():
        return Moments.Verdict('never', 'saves.no.loading')
    return Moments.verdict(level)


def _game() -> Any:
    """What goes in and out of levels; read late, since patterns of objects read this package."""
    from saves import Game
    return Game
