"""What a player sets, in pages; the game's picture stands beside it and shows at once what comes of it."""

from __future__ import annotations

from typing import Any

import bindings
import kaVel
import settings
import words
from screens import Kit as kit
from screens import OptionBindings, Screens
from screens.OptionRows import Page, hangsOn, presetChoices
from settings import Presets

VEIL = 0.2

_open: _Options | None = None


def build(menu: kaVel.Entity):
    global _open
    _open = _Options(menu)


def closing():
    global _open
    _open = None


class _Options:
    def __init__(self, menu: kaVel.Entity):
        self.level: Any = menu.getAncestorOfType(kaVel.Reflection.Coordinator)
        self.pages: dict[str, Page] = {}
        self.row = ''
        self.help: kaVel.Entity | None = None
        sheet = kit.Column(menu, 'sheet', anchor='leftFill', width=1120, gap=10, look='ink', padding=30)
        above = kit.Row(sheet, 'above', gap=16)
        kit.Label(above, 'title', words='menu.options', size='large', width=200)
        self.one = kit.Button(above, 'one', words='options.resetNone', size='small', enabled=False, grow=1,
                              pressed=self.resetOne)
        kit.Button(above, 'all', words='options.resetAll', size='small', pressed=self.askForAll)
        kit.Button(above, 'back', words='menu.back', size='small', pressed=lambda: Screens.close(self.level))
        for name, text in (('settings', settings.trouble()), ('bindings', bindings.trouble())):
            if text:
                kit.Label(sheet, 'trouble' + name, literal=text, size='small', color='warning')
        kit.Tabs(sheet, 'pages', grow=1, focused=self.leave, pages=[
            ('options.picture', self.picture), ('options.sound', self.page('sound')),
            ('options.controls', self.page('controls')), ('options.bindings', self.bindings),
            ('options.reading', self.page('reading')), ('options.language', self.page('language'))])
        self.help = kit.Label(sheet, 'help', words='options.help', size='small', color='faded', height=66)
        kit.focus(self.preset if 'picture' in self.pages else sheet.getDescendantByPath('pages/names/tab0'))

    def page(self, name: str):
        def build(parent: kaVel.Entity):
            self.pages[name] = Page(parent, name, self.focused)
        return build

    def picture(self, parent: kaVel.Entity):
        self.preset = kit.Choice(parent, 'preset', words='options.preset', choices=presetChoices(),
                                 value=Presets.current(), changed=self.choosePreset,
                                 focused=lambda: self.tell('options.preset.help'))
        kit.Button(parent, 'measure', words='options.measure', row=True,
                   focused=lambda: self.tell('options.measure.help'),
                   pressed=lambda: Screens.open(self.level, 'Measure'))
        kit.Button(parent, 'calibrate', words='options.calibrate', row=True,
                   focused=lambda: self.tell('options.calibrate.help'),
                   pressed=lambda: Screens.open(self.level, 'Calibration'))
        self.page('picture')(parent)

    def bindings(self, parent: kaVel.Entity):
        OptionBindings.fill(parent, self.tell)

    def choosePreset(self, preset: str):
        if preset in Presets.PRESETS:
            Presets.choose(preset)
        self.refresh()

    def focused(self, row: str):
        """Tells of the row that the player has come to, and offers its usual value."""
        self.row = row
        self.tell('options.%s.help' % row)
        kit.say(self.one, words='options.resetOne', what=words.text('options.' + row))
        kit.component(self.one).enabled = settings.get(row) != settings.find(row).default

    def leave(self):
        """The player is at no row: there is nothing to tell of one, nor to reset."""
        self.row = ''
        self.tell('options.help')
        kit.say(self.one, words='options.resetNone')
        kit.component(self.one).enabled = False

    def tell(self, key: str):
        if self.help:
            kit.say(self.help, words=key)

    def resetOne(self):
        if self.row:
            settings.reset(self.row)
            self.refresh()

    def askForAll(self):
        Screens.ask(self.level, 'options.resetAll.ask', yes=self.resetAll)

    def resetAll(self):
        settings.resetAll()
        bindings.resetAll()
        Screens.rebuild(self.level)

    def refresh(self):
        """Shows all values as they hold now."""
        for page in self.pages.values():
            page.refresh()
        if 'picture' in self.pages:
            names = [name for name, _ in presetChoices()]
            kit.component(self.preset).chosen = names.index(Presets.current())
        if self.row:
            kit.component(self.one).enabled = settings.get(self.row) != settings.find(self.row).default


def _onSetting(name: str):
    if _open and _open.help and not _open.help.isDying():
        if hangsOn(name) or settings.trial():
            _open.refresh()
        elif name == _open.row:
            kit.component(_open.one).enabled = settings.get(name) != settings.find(name).default


settings.onChange(_onSetting)
