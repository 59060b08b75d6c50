"""The page of the options on which every action gets its keys, its buttons of the mouse and its button of the pad."""

from __future__ import annotations

from typing import Callable

import bindings
import kaVel
import words
from screens import Kit as kit

#: Heading -> its actions, in order.
GROUPS = {
    'walking': ('forward', 'back', 'left', 'right', 'run', 'crouch', 'leanLeft', 'leanRight'),
    'hands': ('use', 'throw', 'flashlight', 'battery', 'lamp', 'notebook'),
    'game': ('quit', 'restart', 'fullScreen', 'console'),
    'camera': ('rise', 'sink', *('place%d' % number for number in range(1, 10))),
    'makers': ('tweakBars', 'profiler', 'outlines', 'reload', 'levelBefore', 'fly', 'editor', 'timeline'),
}

#: Columns of inputs, and how wide they are.
SLOTS = {'first': 215, 'second': 215, 'pad': 190}

#: What ends the wait for an input and changes nothing, and what leaves an action without one.
ESCAPE, DELETE = 0x1B, 0x2E


_page: _Page | None = None


def fill(parent: kaVel.Entity, tell: Callable[[str], object]):
    """Builds the page; `tell` shows the sentence of a key."""
    global _page
    _page = _Page(parent, tell)


class _Page:
    def __init__(self, parent: kaVel.Entity, tell: Callable[[str], object]):
        self.parent, self.tell = parent, tell
        self.buttons: dict[tuple[str, str], kaVel.Entity] = {}
        self.labels: dict[str, kaVel.Entity] = {}
        self.waits: tuple[str, str] | None = None
        for group, actions in GROUPS.items():
            kit.Label(parent, group, words='bindings.' + group, size='small', color='brass', margin=(0, 14, 0, 0))
            for action in actions:
                self._row(action)
        kit.Button(parent, 'reset', words='bindings.resetAll', row=True, pressed=bindings.resetAll)
        self.refresh()

    def _row(self, action: str):
        row = kit.Row(self.parent, action, gap=8)
        self.labels[action] = kit.Label(row, 'name', words='action.' + action, width=300)
        for slot, width in SLOTS.items():
            button = kit.Button(row, slot, literal=' ', size='small', align='center', width=width, row=True,
                                pressed=lambda slot=slot: self.wait(action, slot),
                                focused=lambda: self.tell('bindings.help'))
            self.buttons[action, slot] = button
        kit.Button(row, 'usual', words='bindings.reset', size='small', width=110, row=True,
                   pressed=lambda: bindings.reset(action), focused=lambda: self.tell('bindings.reset.help'))

    def refresh(self):
        """Shows what is bound to what, and marks what several actions share."""
        for action, label in self.labels.items():
            shared = bindings.conflicts(action)
            inputs = (*bindings.inputsOf(action), '', '')[:2]
            for slot, name in zip(('first', 'second', 'pad'), (*inputs, bindings.padOf(action))):
                nameOf = words.padName if slot == 'pad' else words.keyName
                called = nameOf(name) if name else words.text('bindings.none')
                kit.say(self.buttons[action, slot], literal=('! ' if name in shared else '') + called)
            color = 'warning' if shared else 'paper'
            kit.component(label).color = kaVel.Vec4(*kit.COLORS[color])
            others = sorted({other for all in shared.values() for other in all})
            text = words.text('action.' + action)
            if others:
                text = words.text('bindings.shared', action=text,
                                  others=', '.join(words.text('action.' + other) for other in others))
            kit.say(label, literal=text)

    def wait(self, action: str, slot: str):
        """Takes what is pressed next for a slot of an action."""
        self.waits = action, slot
        kit.say(self.buttons[action, slot], words='bindings.press')
        self.tell('bindings.wait.pad' if slot == 'pad' else 'bindings.wait')
        kit.capture(self.parent, self._taken)

    def _taken(self, kind: str, code: int):
        if not self.waits:
            return
        action, slot = self.waits
        name = _named(kind, code)
        isEscape = kind == 'key' and code == ESCAPE and (action != 'quit' or slot == 'pad')
        isGivenUp = isEscape or kind == 'pad' and slot != 'pad'  # who has but a pad has no key to give
        if not isGivenUp and name is None:
            return self.tell('bindings.unknown')
        if not isGivenUp and (kind == 'pad') != (slot == 'pad') and name != '':
            return  # a key for the pad's column, or the other way round
        self.waits = None
        kit.capture(self.parent, None)
        self.tell('bindings.help')
        if isGivenUp:
            self.refresh()
        else:
            _bind(action, slot, name or '')


def _named(kind: str, code: int) -> str | None:
    """Name of what was pressed; empty where it takes an input away, None for what has none."""
    if kind == 'pad':
        return next((name for name, bit in bindings.PAD_BUTTONS.items() if bit == code), None)
    if kind == 'button':
        return next((name for name, number in bindings.BUTTONS.items() if number == code), None)
    return '' if code == DELETE else bindings.keyNamed(code) or None


def _onChange():
    if _page and _page.parent and not _page.parent.isDying():
        _page.refresh()


bindings.onChange(_onChange)


def _bind(action: str, slot: str, name: str):
    if slot == 'pad':
        return bindings.bindPad(action, name)
    inputs = [*bindings.inputsOf(action), '', '']
    number = 0 if slot == 'first' else 1
    kept = [each for place, each in enumerate(inputs) if each and place != number and each != name]
    kept.insert(number, name)
    bindings.bind(action, [each for each in kept if each])
