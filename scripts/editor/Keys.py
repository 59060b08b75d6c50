"""The keys of the editor, as they are usual among editors: what each does stands in one table.

Tools have keys of their own besides, by which they are taken up. While the right button is held the camera flies by
the keys that it flies by elsewhere, and none of these count.
"""

from __future__ import annotations

from typing import TYPE_CHECKING, Callable

import bindings
import kaVel
from editor.Tools import tools

if TYPE_CHECKING:
    from editor.Editor import Editor

#: Held keys that stand before another one's name, in this order.
MODIFIERS = ('Ctrl', 'Shift', 'Alt')

#: Key -> what it does in a few words, and how.
TABLE: dict[str, tuple[str, Callable[[Editor], object]]] = {
    'Ctrl+Z': ('undo', lambda editor: editor.commands.undo()),
    'Ctrl+Y': ('redo', lambda editor: editor.commands.redo()),
    'Ctrl+Shift+Z': ('redo', lambda editor: editor.commands.redo()),
    'Ctrl+S': ('save', lambda editor: editor.panels.askToSave()),
    'Ctrl+N': ('new level', lambda editor: editor.panels.askForLevel()),
    'Ctrl+A': ('select all', lambda editor: editor.commands.selectAll()),
    'Ctrl+D': ('duplicate', lambda editor: editor.commands.duplicate()),
    'Ctrl+C': ('copy', lambda editor: editor.commands.copy()),
    'Ctrl+X': ('cut', lambda editor: editor.commands.cut()),
    'Ctrl+V': ('paste', lambda editor: editor.commands.paste()),
    'Ctrl+G': ('group', lambda editor: editor.commands.group()),
    'Ctrl+Shift+G': ('ungroup', lambda editor: editor.commands.ungroup()),
    'Ctrl+P': ('hang below the last one', lambda editor: editor.commands.parent()),
    'Ctrl+Shift+P': ('hang below the map', lambda editor: editor.commands.unparent()),
    'Delete': ('delete', lambda editor: editor.commands.delete()),
    'Backspace': ('delete', lambda editor: editor.commands.delete()),
    'H': ('hide', lambda editor: editor.commands.hide()),
    'Alt+H': ('show all', lambda editor: editor.commands.showAll()),
    'L': ('lock', lambda editor: editor.commands.lock()),
    'Alt+L': ('unlock all', lambda editor: editor.commands.unlockAll()),
    'F': ('go to what is selected', lambda editor: editor.commands.frame()),
    'End': ('drop to the floor', lambda editor: editor.commands.drop()),
    'X': ('axes of the world or the thing', lambda editor: editor.snapping.switchSpace()),
    'V': ('snap to the grid', lambda editor: editor.snapping.switchGrid()),
    'C': ('ceilings from above', lambda editor: editor.ceilings.switch()),
    'Ctrl+Page up': ('into the storey above', lambda editor: editor.ceilings.toStorey(1)),
    'Ctrl+Page down': ('into the storey below', lambda editor: editor.ceilings.toStorey(-1)),
    'I': ('light to work by', lambda editor: editor.aids.switchLight()),
    'Left': ('nudge', lambda editor: editor.commands.nudge(-1, 0, 0)),
    'Right': ('nudge', lambda editor: editor.commands.nudge(1, 0, 0)),
    'Up': ('nudge', lambda editor: editor.commands.nudge(0, 0, 1)),
    'Down': ('nudge', lambda editor: editor.commands.nudge(0, 0, -1)),
    'Page up': ('nudge up', lambda editor: editor.commands.nudge(0, 1, 0)),
    'Page down': ('nudge down', lambda editor: editor.commands.nudge(0, -1, 0)),
    'Space': ('stop or go on', lambda editor: editor.playing.switch()),
    'Period': ('step a frame', lambda editor: editor.playing.step()),
    'P': ('play from here', lambda editor: editor.playing.playFromHere()),
    'Escape': ('leave the tool', lambda editor: editor.commands.leaveTool()),
}

#: What the mouse does besides, by what is held or turned.
MOUSE = {'Right button': 'look around', 'Right button, W A S D E Q': 'fly; Shift faster, Ctrl slower',
         'Right button, wheel': 'faster or slower', 'Wheel': 'nearer or away', 'Middle button': 'shift the view',
         'Alt, left button': 'go round what is selected'}


def named(code: int) -> str:
    """The name of a key by its code; empty for one that only stands before others."""
    name = bindings.keyNamed(code)
    return '' if name in MODIFIERS else name


_held: set[str] = set()


def held(modifier: str) -> bool:
    """Whether a key of MODIFIERS was down when that happened which is just being told."""
    return modifier in _held


def note(code: int, down: bool) -> None:
    """Notes a key in the order in which it came: on a slow machine it may be up again by the time it is told."""
    name = bindings.keyNamed(code)
    if name in MODIFIERS and down:
        _held.add(name)
    else:
        _held.discard(name)


def follow() -> None:
    """Brings MODIFIERS to what is really held, once a frame: some keys go down and up while the camera flies."""
    devices = kaVel.getSystem('InputSystem')
    _held.clear()
    _held.update(each for each in MODIFIERS if devices.isKeyDown(bindings.KEYS[each]))


def withModifiers(name: str) -> str:
    """The name of a key with those before it that are held."""
    return '+'.join([*filter(held, MODIFIERS), name])


def do(editor: Editor, pressed: str) -> bool:
    """Does what a key stands for, or takes up the tool that it is of; whether it stands for anything."""
    entry = TABLE.get(pressed)
    if entry:
        entry[1](editor)
        return True
    tool = next((each for each in tools.all() if each.key == pressed), None)
    if tool:
        editor.take(tool.name)
    return bool(tool)


def help() -> list[str]:
    """What keys and mouse do, a line each: tools, the editor's own, the camera's."""
    taken = {each.key: each.name for each in tools.all() if each.key}
    told = {**taken, **{key: words for key, (words, _) in TABLE.items()}, **MOUSE}
    return ['%s:  %s' % each for each in told.items()]
