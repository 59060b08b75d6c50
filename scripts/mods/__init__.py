"""Mods: folders that others have made, whose levels, patterns, models, textures, sounds and texts the game takes in.

    import mods

    mods.loaded()        # those that are on, in the order of loading
    mods.installed()     # all that there are, with what is wrong with some
    mods.conflicts()     # what several of them bring
    mods.turn('lantern-cellar', on=True)     # from the next start on
    mods.move('lantern-cellar', -1)          # before the one that it was loaded after
    mods.planned()                           # what the next start loads, in that order

They lie in `mods` of the user's data folder, or beside the game. What is on is known before anything else of a run
begins, since a run with mods gives up what no mod needs (`Holding`). A mod of the kind "data" runs nothing; one of the
kind "script" is a program, which the player allows once, and again when anything in it has changed (`Consent`). Rooms:
`Manifest`, `Tomls` and `Files` read a folder, `Contents` says what it brings, `Order` in which order, `Levels` builds
levels and patterns that are data, `Modules` has the scripts. docs/mods.md is for those who make mods.
"""

from __future__ import annotations

import os
import sys
from typing import Any

import kaVel
import userFolders
from keptLines import KeptLines
from mods import Consent, Files, Holding, Levels, Manifest, Order
from mods.Contents import Conflict, Contents, conflictsOf
from mods.Modules import Finder
from mods.Tomls import Fault, Toml

#: Beside the folder of the executable, for mods that come with the game.
BESIDE = os.path.join('..', 'mods')
#: Where the player's own are, even in a run that plays a report in folders of its own.
OWN = userFolders.file('data', 'mods')
#: Folders of mods that are looked into.
MOST_MODS = 500

#: Where the game has what mods bring in rooms of other names.
_FOLDERS = {'font': 'fonts/', 'effect': 'shaders/'}

_HEADER = ['# Mods of Mornal that are on: NAME = on. They are loaded in the order of these lines, each behind what it',
           '# needs; of two that bring the same the later one is used. The screen "Mods" changes it, from the next',
           '# start on.', '']
_kept = KeptLines('mods.txt', lambda: _HEADER)


class Mod:
    """A folder of the place for mods. One with a `fault` is left out; `total` is the sum over its files, if it is read.

    `waits` is one that is wanted and has not been allowed to run.
    """

    def __init__(self, folder: str):
        self.folder = os.path.realpath(folder)
        self.name = os.path.basename(folder)
        self.manifest: Manifest.Manifest | None = None
        self.contents: Contents | None = None
        self.files: list[Files.File] = []
        self.fault, self.total = '', ''
        self.isOn = self.waits = False

    @property
    def isScript(self) -> bool:
        return bool(self.manifest and self.manifest.kind == 'script')

    @property
    def title(self) -> str:
        return self.manifest.title if self.manifest else self.name

    @property
    def version(self) -> str:
        return self.manifest.version if self.manifest else ''

    @property
    def isNeededBySaves(self) -> bool:
        """Whether the game goes another way with it: one of pictures, sounds and texts alone changes none."""
        return self.isScript or any(kind in ('level', 'change', 'pattern', 'model') for kind, _ in self.brings)

    @property
    def brings(self) -> dict[tuple[str, str], str]:
        return self.contents.brings if self.contents else {}

    def readManifest(self) -> None:
        try:
            self.manifest = Manifest.read(self.folder)
            self.name = self.manifest.name
        except Fault as fault:
            self.fault = str(fault)

    def readFiles(self) -> None:
        """Reads what there is in the folder; of a script mod all of it, for the sum."""
        sources: dict[str, bytes] = {}
        try:
            self.files = Files.listed(self.folder)
            if self.isScript:
                self.total, sources = Files.summed(self.files, os.path.basename(self.folder))
            self.contents = Contents(self.name, self.folder, self.files, self.isScript, sources)
            for name, toml in self.contents.levels.items():
                Levels.Level(toml)
            for name, toml in self.contents.patterns.items():
                Levels.Pattern(name, toml)
        except (Fault, OSError, ValueError) as fault:
            self.fault = str(fault)


_all: list[Mod] = []
_order: list[Mod] = []
_finder = Finder()
_asked: list[str] = []  # names of mods that the run was asked for
_asking = False  # whether this run has no mods, since it asks about some


def loaded() -> list[Mod]:
    """The mods that are on in this run, in the order of loading."""
    return list(_order)


def installed() -> list[Mod]:
    """All mods that there are by name, faulty ones too; those that are on are read, others by their manifests alone."""
    return sorted(_all, key=lambda mod: mod.name)


def folder() -> str:
    """Where the player puts mods."""
    return userFolders.file('data', 'mods')


def look(mod: Mod) -> None:
    """Reads the files of a mod that is not on, so that it can be told what is in it."""
    if mod.manifest and not mod.contents and not mod.fault:
        mod.readFiles()


def isAsking() -> bool:
    """Whether this run has no mods since the player is asked about one."""
    return _asking


def find(name: str) -> Mod | None:
    """The mod of a name."""
    return next((mod for mod in _all if mod.name == name), None)


def waiting() -> list[Mod]:
    """Mods that are wanted and wait for the player to allow them."""
    return [mod for mod in _all if mod.waits]


def conflicts() -> list[Conflict]:
    """What several of the mods bring that are on."""
    return _conflictsOf(_order)


def _conflictsOf(order: list[Mod]) -> list[Conflict]:
    return conflictsOf([(mod.name, mod.contents) for mod in order if mod.contents])


def planned() -> list[Mod]:
    """The mods that the next start loads, in order, as far as the player allows those that are programs."""
    chosen: dict[str, Mod] = {}
    wanted = [*_asked, *_wanted()]
    while wanted:
        name = wanted.pop()
        mod = find(name)
        if mod and mod.manifest and name not in chosen:
            look(mod)
            if not mod.fault:
                chosen[name] = mod
                wanted += mod.manifest.needs
    order, _ = Order.arrange({name: mod.manifest for name, mod in chosen.items() if mod.manifest}, _wanted())
    return [chosen[name] for name in order]


def plannedConflicts() -> list[Conflict]:
    """What several of the mods bring that the next start loads."""
    return _conflictsOf(planned())


def move(name: str, by: int) -> bool:
    """Has a mod be loaded one place earlier (-1) or later (1) from the next start on; whether that can be.

    It cannot where one of the two needs the other, or the player has not turned on both.
    """
    before = [mod.name for mod in planned()]
    wanted = [each for each in before if isWanted(each)]
    target = wanted.index(name) + by if name in wanted else -1
    if not 0 <= target < len(wanted):
        return False
    kept = list(wanted)
    wanted.insert(target, wanted.pop(wanted.index(name)))
    _kept.arrange(wanted)
    if [mod.name for mod in planned()] != before:
        return True
    _kept.arrange(kept)
    return False


def isWanted(name: str) -> bool:
    """Whether a mod is to be on from the next start on."""
    return name in _wanted()


def turn(name: str, on: bool) -> bool:
    """Has a mod be on or off from the next start on; whether that could be kept."""
    _kept.write(name, 'on' if on else None)
    return isWanted(name) == on


def mayAllow() -> bool:
    """Whether mods can be allowed in this run: not in one in which others' programs run."""
    return not any(mod.isScript for mod in _order)


def _wanted() -> list[str]:
    return [line.name for line in _kept.read() if line.text == 'on']


# The start

def begin(asked: list[str], players: bool, mayAsk: bool, folders: list[str], files: list[str],
          isWritten: bool = False) -> None:
    """Finds out which mods are on in this run, and gives up what none of them needs; for the start of the game.

    `asked` are names, or folders where there is a slash in one; `players` says whether those count that the player
    has turned on, `mayAsk` whether he can be asked about one here. The run may write into the folders and files
    besides its user's own, with `isWritten` into the mods that are asked for. ValueError where one that is asked
    for cannot be on, and nobody can be asked.
    """
    global _asking
    if not asked and not players:
        return
    _all[:] = _found(asked)
    names = [_nameAt(each) if '/' in each else each for each in asked]
    _asked[:] = names
    own = _wanted() if players else []
    _arrange(list(dict.fromkeys([*names, *own])), own)
    _settleConsent(mayAsk)
    if waiting() and mayAsk and players:
        _asking = True
        _leaveOut(list(_order))
    _tell()
    for name in names:
        _refuseWithout(name)
    if _order:
        more = [] if any(mod.isScript for mod in _order) else [Consent.FOLDER]
        own = [mod.folder for mod in _order if isWritten and mod.name in names]
        Holding.confine([*Holding.usersFolders(), *folders, *own, *more], files)
    if any(mod.isScript for mod in _order):
        Holding.watch(ownerOf)


def _nameAt(folder: str) -> str:
    """The name of the mod in a folder; that of the folder where it has none."""
    real = os.path.realpath(folder)
    return next((mod.name for mod in _all if mod.folder == real), os.path.basename(real))


def _found(asked: list[str]) -> list[Mod]:
    """The mods of all places, those of a name once: what is asked for by its folder first, then the user's own."""
    folders = [each for each in asked if '/' in each]
    for place in dict.fromkeys((folder(), OWN, BESIDE)):
        folders += _foldersIn(place)
    mods: dict[str, Mod] = {}
    found = []
    for path in folders:
        mod = Mod(path)
        if any(each.folder == mod.folder for each in found):
            continue
        mod.readManifest()
        if mod.manifest and mod.name in mods and path.startswith(OWN + os.sep) and folder() != OWN:
            continue  # the report brings it as it was
        if mod.manifest and mod.name in mods:
            mod.fault = '%s/%s: there is another mod of the name %r, in %s' % (
                os.path.basename(path), Manifest.FILE, mod.name, mods[mod.name].folder)
        elif mod.manifest:
            mods[mod.name] = mod
        found.append(mod)
    return found


def _foldersIn(place: str) -> list[str]:
    if not os.path.isdir(place):
        return []
    try:
        with os.scandir(place) as entries:
            return sorted(entry.path for entry, _ in zip(entries, range(MOST_MODS))
                          if entry.is_dir() and not entry.name.startswith('.'))
    except OSError as error:
        kaVel.log('Mods: %s cannot be read: %s' % (place, error.strerror))
        return []


def _arrange(wanted: list[str], wished: list[str]) -> None:
    """Reads what is wanted and what that needs, and puts it in order, the player's where there is one.

    What cannot be loaded has a fault afterwards.
    """
    chosen: dict[str, Mod] = {}
    while wanted:
        name = wanted.pop()
        mod = next((each for each in _all if each.name == name and not each.fault), None)
        if mod and mod.manifest and name not in chosen:
            mod.readFiles()
            if not mod.fault:
                chosen[name] = mod
                wanted += mod.manifest.needs
    while True:
        manifests = {name: mod.manifest for name, mod in chosen.items() if mod.manifest}
        order, wrong = Order.arrange(manifests, wished)
        for name, (need, why) in wrong.items():
            chosen[name].fault = str(_faultOfNeed(chosen[name], need, why))
        if not wrong:
            break
        chosen = {name: mod for name, mod in chosen.items() if name not in wrong}
    _order[:] = [chosen[name] for name in order]
    for mod in _order:
        mod.isOn = True


def _faultOfNeed(mod: Mod, need: str, why: str) -> Fault:
    shown = '%s/%s' % (os.path.basename(mod.folder), Manifest.FILE)
    return Toml(os.path.join(mod.folder, Manifest.FILE), shown).fault(why, need, 'needs')


def _settleConsent(mayAsk: bool) -> None:
    """Takes those out that have not been allowed, with what needs them; at a terminal its user is asked."""
    for mod in list(_order):
        if mod.isScript and not Consent.isGiven(mod.name, mod.total):
            if mayAsk or not _allowsAtTerminal(mod):
                mod.waits = True
    while True:
        out = [mod for mod in _order if mod.waits or mod.manifest and any(
            need not in [each.name for each in _order] for need in mod.manifest.needs)]
        if not out:
            break
        _leaveOut(out)


def _leaveOut(out: list[Mod]) -> None:
    for mod in out:
        mod.isOn = False
        _order.remove(mod)


def _allowsAtTerminal(mod: Mod) -> bool:
    """Asks whoever sits at the terminal whether a mod may run; nobody does in most runs that are not watched."""
    if not sys.stdin or not sys.stdin.isatty():
        return False
    print('\n'.join(['', 'The mod %s %s is a program. It can read all that you can read.' % (mod.name, mod.version),
                     *('  %9d  %s' % (file.size, file.name) for file in mod.files), 'Sum of its files: ' + mod.total,
                     'Type yes to allow it as it is now: ']), end='', flush=True)
    return sys.stdin.readline().strip() == 'yes' and Consent.give(mod.name, mod.total)


def _refuseWithout(name: str) -> None:
    """Ends the start where a mod that was asked for is not on, unless the player is about to be asked for it."""
    if any(mod.name == name for mod in _order):
        return
    mod = find(name) or next((each for each in _all if os.path.basename(each.folder) == name), None)
    if not mod:
        raise ValueError('there is no mod %r%s; they lie in %s' % (name, kaVel.nearestHint(
            name, [each.name for each in _all]), folder()))
    if _asking and not mod.fault:
        return
    if mod.waits:
        raise ValueError('the mod %s is a program that has not been allowed to run as it is now (sum %s): allow it on '
                         'the screen "Mods", or in a terminal' % (name, mod.total))
    raise ValueError('the mod %s cannot be loaded: %s' % (name, mod.fault or 'it needs one that waits to be allowed'))


def _tell() -> None:
    for mod in _all:
        if mod.fault:
            kaVel.log('Mods: %s is left out: %s' % (mod.name, mod.fault))
        elif mod.waits:
            kaVel.log('Mods: %s is left out: it is a program, and waits to be allowed.' % mod.name)
    for number, mod in enumerate(_order, 1):
        unread = mod.contents.unread if mod.contents else 0
        kind = 'a program' if mod.isScript else 'data only'
        kaVel.log('Mods: %d. %s %s, %s%s' % (number, mod.name, mod.version, kind,
                                             '; %d scripts in it are not run' % unread if unread else ''))
    for conflict in conflicts():
        kaVel.log('Mods: ' + str(conflict))


# What the game takes in

def furnish() -> None:
    """Has the game find what the mods bring; before the first level is built."""
    from words import Tables
    textures: dict[str, str] = {}
    for mod in _order:
        assert mod.contents
        for (kind, name), file in mod.brings.items():
            path = os.path.join(mod.folder, file)
            if kind == 'texture':
                if name in textures:  # of another extension, perhaps
                    kaVel.Reflection.overrideContent(textures[name], '')
                textures[name] = file
            if kind in ('texture', 'model'):
                kaVel.Reflection.overrideContent(file, path)
            if kind in ('font', 'effect'):
                kaVel.Reflection.overrideContent(_FOLDERS[kind] + name, path)
        Tables.layers += [(language, table.toml.shown, table.texts, table.lineOf)
                          for language, table in mod.contents.words.items()]
        for name, toml in mod.contents.levels.items():
            # Data may be read anew with each load of a level: it is no program that was allowed as it was.
            _finder.add('levels.' + name, toml.path, lambda module, toml=toml: Levels.Level(toml.anew()).fill(module))
        for name, file in mod.contents.modules.items():
            _finder.addScript(name, os.path.join(mod.folder, file), mod.contents.sources[file], Holding.giveUpSockets)
    _finder.begin()


def soundFolders() -> str:
    """The folders of sounds of the mods, one a line."""
    return '\n'.join(os.path.join(mod.folder, 'sounds') for mod in _order
                     if any(kind in ('sound', 'sample') for kind, _ in mod.brings))


def textures() -> list[str]:
    """Names of the files of pictures that mods bring."""
    return [os.path.basename(file) for mod in _order for (kind, _), file in mod.brings.items() if kind == 'texture']


def levelsOf(mod: Mod) -> list[str]:
    """Names of the levels of a mod that is on."""
    return [name for kind, name in mod.brings if kind == 'level'] if mod.isOn else []


def ownerOfLevel(levelName: str) -> Mod | None:
    """The mod that a level is of; None for one of the game's own."""
    return next((mod for mod in reversed(_order) if ('level', levelName) in mod.brings), None)


def behindLevel(levelName: str) -> list[Mod]:
    """The mods that may change a level which is not theirs: those that are loaded behind the one that it is of."""
    owner = ownerOfLevel(levelName)
    return _order[_order.index(owner) + 1:] if owner else list(_order)


def isLevelData(levelName: str) -> bool:
    """Whether a level is data of a mod, which no script builds."""
    owner = ownerOfLevel(levelName)
    return bool(owner and owner.contents and levelName in owner.contents.levels)


def levelNames() -> list[str]:
    """Names of the levels that mods bring."""
    return [name for mod in _order for name in levelsOf(mod)]


def addPatterns(patterns: dict[str, Any]) -> None:
    """Adds the patterns of the mods to those of the game, or puts them in their place."""
    import importlib
    for mod in _order:
        assert mod.contents
        for name, toml in mod.contents.patterns.items():
            patterns[name] = Levels.Pattern(name, toml.anew()).made(patterns)
        for module in mod.contents.modules:
            if module.startswith(mod.contents.package + '.patterns.'):
                found = vars(importlib.import_module(module))
                patterns.update({name: thing for name, thing in found.items()
                                 if ('pattern', name) in mod.brings and Levels.isPattern(thing)})


def ownerOf(file: str) -> tuple[str, str] | None:
    """The mod that a file belongs to, and its name in that; None for one of the game."""
    for mod in _order:
        if file.startswith(mod.folder + os.sep):
            return mod.name, os.path.relpath(file, os.path.dirname(mod.folder))
    return None


# Files that change while the game runs

def brought(path: str) -> str:
    """The kind of what a file of the mods that are on brings; empty for one that brings nothing."""
    for mod in _order:
        if path.startswith(mod.folder + os.sep):
            file = os.path.relpath(path, mod.folder)
            return next((kind for (kind, _), each in mod.brings.items() if each == file), '')
    return ''


def isBuiltFrom(path: str, levelName: str) -> bool:
    """Whether a level is built from a file of data of a mod: the level's own, or any pattern."""
    kind = brought(path)
    return kind == 'pattern' or kind == 'level' and os.path.splitext(os.path.basename(path))[0] == levelName


def readWords(path: str) -> None:
    """Takes the texts anew that are in a file of a mod; Fault, and the old ones stay, where it is none.

    A file that is no table of a mod that is on is left alone.
    """
    for mod in _order:
        for table in mod.contents.words.values() if mod.contents else ():
            if table.toml.path == path:
                table.readAnew()


# Saves

def named() -> dict[str, str]:
    """Names and versions of the mods that a save of this run needs."""
    return {mod.name: mod.version for mod in _order if mod.isNeededBySaves}


def lacking(needed: dict[str, str]) -> list[str]:
    """Which of the mods that a save names are not on, with their versions."""
    on = {mod.name for mod in _order}
    return ['%s %s' % (name, version) for name, version in sorted(needed.items()) if name not in on]
