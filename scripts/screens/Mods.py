"""The mods that there are: which are on, in which order, what they bring twice; and whether a program may run."""

from __future__ import annotations

from typing import Any

import kaVel
import mods
import saves
import userFolders
import words
from mods import Consent, Holding
from screens import Kit as kit
from screens import Screens

SIDE = 760
#: Files that are named; the sum is over all.
MOST_FILES = 200

_chosen = ''  # name of the mod that is shown beside the list


def build(menu: kaVel.Entity):
    level: Any = menu.getAncestorOfType(kaVel.Reflection.Coordinator)
    page = kit.Column(menu, 'page', anchor='centerFill', width=1560, gap=12)
    kit.Label(page, 'title', words='mods.title', size='title')
    for number, (text, color) in enumerate(_tidings()):
        kit.Label(page, 'tiding%d' % number, literal=text, size='small', color=color)
    found = _ordered()
    if found:
        _Pages(level, page, found)
    else:
        kit.Label(page, 'none', words='mods.none', values={'folder': mods.folder()}, color='faded', grow=1)
    kit.Button(page, 'back', words='menu.back', pressed=lambda: Screens.close(level))


def _tidings() -> list[tuple[str, str]]:
    """What concerns all of them, with its colour."""
    told = []
    if mods.waiting():
        names = ', '.join(mod.title for mod in mods.waiting())
        told.append((words.text('mods.asking' if mods.isAsking() else 'mods.waiting', mods=names), 'candle'))
    if Holding.lacking is not None:
        told.append((words.text('mods.heldNot' if Holding.lacking else 'mods.held'),
                     'warning' if Holding.lacking else 'faded'))
    told += [(words.text('mods.attempt', mod=each.mod, file=each.file, line=each.line), 'warning')
             for each in Holding.attempts[:3]]
    return told


def _ordered() -> list[mods.Mod]:
    """Those that the next start loads, in its order, then the others."""
    coming = mods.planned()
    return coming + [mod for mod in mods.installed() if mod not in coming]


class _Pages:
    """The list on the left, and on the right the mod that is chosen in it."""

    def __init__(self, level: kaVel.Coordinator, page: kaVel.Entity, found: list[mods.Mod]):
        self.level = level
        row = kit.Row(page, 'row', gap=40, grow=1, margin=(0, 12, 0, 0))
        self.rows = kit.Scroll(row, 'list', grow=1, look='ruled')
        self.side = kit.Scroll(row, 'side', width=SIDE, gap=6)
        self.hint = kit.Label(page, 'hint', literal='', size='small', color='candle')
        self.shown = ''
        self.fill()
        first = next((mod for mod in found if mod.waits), found[0])
        chosen = next((mod for mod in found if mod.name == _chosen), first)
        kit.focus(self.rows.getChild('mod%d' % found.index(chosen)))
        self.show(chosen)

    def fill(self):
        """Puts all mods on the list, as the next start loads them."""
        kit.clear(self.rows)
        coming = mods.planned()
        for number, mod in enumerate(_ordered()):
            kit.Button(self.rows, 'mod%d' % number, literal=_line(mod, coming), row=True,
                       pressed=lambda mod=mod: self.take(mod), focused=lambda mod=mod: self.show(mod))

    def take(self, mod: mods.Mod):
        """Goes over to what can be done with a mod."""
        self.show(mod)
        kit.focus(self.side.getChild('on'))

    def turn(self, mod: mods.Mod, on: bool):
        kept = mods.turn(mod.name, on)
        kit.say(self.hint, words='mods.restart' if kept else 'mods.notKept', folder=userFolders.of('config'))
        self.fill()
        self.show(mod, again=True)
        kit.focus(self.side.getChild('on'))

    def move(self, mod: mods.Mod, by: int):
        """Has a mod be loaded earlier or later, and shows anew what overrides what."""
        done = mods.move(mod.name, by)
        kit.say(self.hint, words='mods.restart' if done else 'mods.notMoved')
        self.fill()
        self.show(mod, again=True)
        kit.focus(self.side.getChild('earlier' if by < 0 else 'later'))

    def show(self, mod: mods.Mod, again: bool = False):
        global _chosen
        if mod.folder == self.shown and not again:
            return
        _chosen, self.shown = mod.name, mod.folder
        kit.clear(self.side)
        side = self.side
        kit.Label(side, 'name', literal=mod.title, size='large')
        kit.CheckBox(side, 'on', words='mods.on', value=mods.isWanted(mod.name),
                     changed=lambda on: self.turn(mod, on))
        if mods.isWanted(mod.name) and not mod.fault and not mod.waits:
            kit.Button(side, 'earlier', words='mods.earlier', pressed=lambda: self.move(mod, -1))
            kit.Button(side, 'later', words='mods.later', pressed=lambda: self.move(mod, 1))
        if mod.manifest:
            kit.Label(side, 'version', words='mods.version', values={
                'name': mod.name, 'version': mod.version, 'licence': mod.manifest.licence}, size='small', color='faded')
            kit.Label(side, 'text', literal=mod.manifest.description, margin=(0, 4, 0, 8))
            kit.Label(side, 'kind', words='mods.kind.' + mod.manifest.kind, color='candle' if mod.isScript else 'faded')
            if mod.manifest.needs:
                kit.Label(side, 'needs', words='mods.needs', color='faded', values={
                    'mods': ', '.join('%s %s' % each for each in sorted(mod.manifest.needs.items()))})
        for name in mods.levelsOf(mod):
            kit.Button(side, 'begin' + name, words='mods.begin', values={'level': name},
                       pressed=lambda name=name: self.begin(name))
        if mod.isScript:
            mods.look(mod)
        if mod.fault:
            kit.Label(side, 'fault', words='mods.fault', values={'fault': mod.fault}, color='warning')
        elif mod.isScript:
            self.showProgram(mod)
        self.showConflicts(mod)

    def begin(self, name: str):
        """Begins a game in a level of a mod; where something would be lost by that, asks."""
        if saves.isUnsaved():
            Screens.ask(self.level, 'saves.ask.load', lambda: saves.begin(name))
        else:
            saves.begin(name)

    def showProgram(self, mod: mods.Mod):
        """What there is of a program, and whether the player allows it."""
        side = self.side
        isGiven = Consent.isGiven(mod.name, mod.total)
        kit.Label(side, 'allowed', words='mods.allowed' if isGiven else 'mods.notAllowed',
                  color='faded' if isGiven else 'warning')
        if mods.mayAllow():
            kit.Button(side, 'allow', words='mods.withdraw' if isGiven else 'mods.allow',
                       pressed=lambda: self.allow(mod, not isGiven))
        elif not isGiven:
            kit.Label(side, 'later', words='mods.allowLater', size='small', color='faded')
        kit.Label(side, 'sum', words='mods.sum', values={'sum': ' '.join(
            mod.total[start:start + 16] for start in range(0, 64, 16))}, size='small', color='faded')
        for number, file in enumerate(mod.files[:MOST_FILES]):
            kit.Label(side, 'file%d' % number, words='mods.file', size='small', color='faded', values={
                'file': file.name, 'bytes': words.number(file.size)})
        if len(mod.files) > MOST_FILES:
            kit.Label(side, 'more', words='mods.more', values={'number': words.number(len(mod.files) - MOST_FILES)},
                      size='small', color='faded')

    def allow(self, mod: mods.Mod, allowed: bool):
        done = Consent.give(mod.name, mod.total) if allowed else Consent.takeBack(mod.name)
        kit.say(self.hint, words='mods.restart' if done else 'mods.notKept', folder=Consent.FOLDER)
        self.show(mod, again=True)
        button = self.side.getChild('allow')
        if button:
            kit.focus(button)

    def showConflicts(self, mod: mods.Mod):
        for number, each in enumerate(mods.plannedConflicts()):
            if mod.name in (each.winner, each.loser):
                kit.Label(self.side, 'conflict%d' % number, words='mods.conflict', size='small', color='candle',
                          values={'what': words.text('mods.what.' + each.kind), 'name': each.name,
                                  'winner': each.winner, 'loser': each.loser})


def _line(mod: mods.Mod, coming: list[mods.Mod]) -> str:
    title = words.text('mods.leftOut' if mod.fault else 'mods.waits', mod=mod.title) if mod.fault or mod.waits \
        else mod.title
    return '%d.  %s' % (coming.index(mod) + 1, title) if mod in coming else title
