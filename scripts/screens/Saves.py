"""The list of saves: each with its picture, its place and its time; to go on from, or to delete."""

from __future__ import annotations

import datetime
from typing import Any

import kaVel
import saves
import words
from screens import Kit as kit
from screens import Screens

PICTURE = 576, 324  # as a save's own, half as large again
SIDE = 576

_chosen = ''  # name of the save that is shown beside the list


def build(menu: kaVel.Entity):
    level: Any = menu.getAncestorOfType(kaVel.Reflection.Coordinator)
    page = kit.Column(menu, 'page', anchor='centerFill', width=1500, gap=18)
    kit.Label(page, 'title', words='saves.title', size='title')
    entries = saves.listed()
    if entries:
        _Pages(level, page, entries)
    else:
        kit.Label(page, 'none', words='saves.none', color='faded', grow=1)
    kit.Button(page, 'back', words='menu.back', pressed=lambda: Screens.close(level))


def goOn(level: kaVel.Coordinator):
    """Continues with the newest save; where that one is damaged, says so and offers the one before."""
    entries = saves.listed()
    if entries and entries[0].fault and entries[0].before:
        before = entries[0].before
        Screens.ask(level, 'saves.ask.before', lambda: _load(level, before), fault=entries[0].fault, before=before)
        return
    newest = saves.newest()
    if newest and newest.lacks:
        Screens.ask(level, 'saves.ask.mods', lambda: Screens.open(level, 'Mods'), mods=newest.lacks)
    elif newest:
        _load(level, newest.name)


def timeOf(entry: saves.Entry) -> str:
    """When a save was made, as the player writes it."""
    try:
        made = datetime.datetime.strptime(entry.made, '%Y-%m-%dT%H:%M:%S.%f%z').astimezone()
    except (ValueError, OverflowError):
        return entry.made
    return words.text('saves.at', date=words.date(made.year, made.month, made.day),
                      time=words.time(made.hour, made.minute))


class _Pages:
    """The list on the left, and on the right the save that is chosen in it."""

    def __init__(self, level: kaVel.Coordinator, page: kaVel.Entity, entries: list[saves.Entry]):
        self.level, self.entries = level, entries
        row = kit.Row(page, 'row', gap=48, grow=1)
        self.list = kit.Scroll(row, 'list', grow=1, look='ruled')
        self.side = kit.Column(row, 'side', width=SIDE, gap=6)
        self.shown = ''
        for number, entry in enumerate(entries):
            kit.Button(self.list, 'save%d' % number, literal=_line(entry), row=True,
                       pressed=lambda entry=entry: self.take(entry), focused=lambda entry=entry: self.show(entry))
        self.show(next((each for each in entries if each.name == _chosen), entries[0]))

    def take(self, entry: saves.Entry):
        """Goes over to what can be done with a save."""
        self.show(entry)
        kit.focus(self.side.getChild('load' if not entry.fault else 'before' if entry.before else 'delete'))

    def show(self, entry: saves.Entry):
        global _chosen
        if entry.name == self.shown:
            return
        _chosen = self.shown = entry.name
        kit.clear(self.side)
        side = self.side
        if entry.picture and not entry.fault:
            kit.Picture(side, 'picture', picture=entry.picture, size=PICTURE, margin=(0, 0, 0, 12))
        kit.Label(side, 'place', literal=_title(entry), size='large')
        if entry.fault:
            kit.Label(side, 'fault', literal=entry.fault, color='warning')
        else:
            kit.Label(side, 'played', words='saves.played', values={'time': words.duration(entry.played)},
                      color='faded')
            kit.Label(side, 'why', words='saves.why.' + entry.why, color='faded')
        if entry.lacks:
            kit.Label(side, 'lacks', words='saves.no.mods', values={'mods': entry.lacks}, color='warning')
        kit.Label(side, 'made', literal=timeOf(entry), color='faded')
        kit.Space(side, 'space', size=12)
        if not entry.fault:
            kit.Button(side, 'load', words='menu.load', pressed=lambda: self.load(entry.name))
        elif entry.before:
            kit.Button(side, 'before', words='saves.before', values={'before': entry.before},
                       pressed=lambda: self.load(entry.before))
        kit.Button(side, 'delete', words='menu.delete', pressed=lambda: self.askToDelete(entry))
        kit.Label(side, 'said', literal='', color='warning')

    def load(self, name: str):
        if saves.isUnsaved():
            Screens.ask(self.level, 'saves.ask.load', lambda: self.loadNow(name))
        else:
            self.loadNow(name)

    def loadNow(self, name: str):
        said = _load(self.level, name)
        if said:
            kit.say(self.side.getChild('said'), literal=said)

    def askToDelete(self, entry: saves.Entry):
        Screens.ask(self.level, 'saves.ask.delete', lambda: self.delete(entry),
                    place='%s, %s' % (_title(entry), timeOf(entry)))

    def delete(self, entry: saves.Entry):
        saves.delete(entry.name)
        Screens.rebuild(self.level)


def _load(level: kaVel.Coordinator, name: str) -> str:
    """Loads a save; what is to be told where that is not possible."""
    outcome = saves.load(name)
    if outcome.done:
        Screens.closeAll(level)
    return outcome.said


def _title(entry: saves.Entry) -> str:
    return words.text('saves.damaged') if entry.fault else saves.placeOf(entry)


def _line(entry: saves.Entry) -> str:
    return '%s     %s' % (_title(entry), timeOf(entry))
