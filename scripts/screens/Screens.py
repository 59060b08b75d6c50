"""The screens of a level: a stack of which the topmost one takes what the player does.

    from screens import Screens

    Screens.open(level, 'Options')
    Screens.ask(level, words='quit.question', yes=leave)

A screen is a module of this package:

    def build(menu, **arguments)   puts it together below `menu` with the patterns of `Kit`
    PAUSES = True                  whether the level stands still while it is open
    COVERS = True                  whether those below it are not seen meanwhile
    VEIL = 0.8                     how far it hides the world
    def back(level)                in the place of closing it, when the player goes back
    def closing()                  is called when it has been closed

One that raises while it is built is told in the log and not opened.
"""

from __future__ import annotations

import importlib
import os
import traceback
from typing import Any, Callable

import kaVel
import stillness
import words
from perLevel import PerLevel
from screens import Kit as kit

#: Events of the sound project, by the number of a `MenuEvent`.
SOUNDS = ('InterfaceHover', 'InterfaceClick', 'InterfaceHover', 'InterfaceBack', 'InterfaceRefused')
#: The screen that every level with a player has ready.
PAUSE = 'Pause'
PAUSE_ENTITY = 'PauseMenu'
DEFAULT_VEIL = 0.8


class Screen:
    """One that is open: its module, the entity that bears it, and what it was opened with."""

    def __init__(self, name: str, module: Any, menu: kaVel.Entity, arguments: dict[str, Any]):
        self.name, self.module, self.menu, self.arguments = name, module, menu, arguments

    def has(self, name: str, default: Any) -> Any:
        return getattr(self.module, name, default)

    @property
    def component(self) -> kaVel.MenuComponent:
        return self.menu.getComponent('menu')


class Stack:
    """The open screens of a level, the topmost one at the end."""

    def __init__(self, level: kaVel.Coordinator):
        self.level = level
        self.screens: list[Screen] = []
        self.running: Any = None    # loopState before the level was stopped; None while it is not
        self.cursor = _makeCursor(level, self.doFrame)
        self.wordsSeen = words.changes
        self.unheard: tuple[Screen, int] | None = None  # the one that was opened last, and the frame

    def doFrame(self):
        # A frame later: what sounds already while the level is stopped is held with it.
        if self.unheard and self.unheard[1] != _frame():
            _sound(self.unheard[0], 'InterfaceOpen')
            self.unheard = None
        self.followWords()

    def followWords(self):
        if self.screens and self.wordsSeen != words.changes:
            rebuild(self.level)

    def settle(self):
        """Brings level and screens to what the stack has become."""
        self.wordsSeen = words.changes
        isAside = _aside.get(self.level, False)
        seen = not isAside
        for number, screen in reversed(list(enumerate(self.screens))):
            screen.component.order = number
            screen.component.visible = seen
            seen = seen and not screen.has('COVERS', True)
        if self.screens and not isAside:
            self.cursor.setTop(self.screens[-1].component)
        else:
            self.cursor.clearTop()
        self._settleLevel(any(screen.has('PAUSES', True) for screen in self.screens))

    def _settleLevel(self, stopped: bool):
        if stopped and self.running is None:
            self.running = self.level.loopState
            stillness.stop(self.level)
        elif not stopped and self.running is not None:
            stillness.goOn(self.level)
            self.running = None


_stacks: PerLevel[Stack] = PerLevel()
_aside: PerLevel[bool] = PerLevel()  # whether the screens of a level are hidden and without input


def open(level: kaVel.Coordinator, name: str, **arguments: Any) -> kaVel.Entity | None:
    """Puts a screen on top of those of a level; None, with the reason in the log, if it cannot be built."""
    screen = _open(level, name, arguments)
    if not screen:
        return None
    _stackOf(level).unheard = screen, _frame()
    return screen.menu


def openAgain(old: kaVel.Coordinator, new: kaVel.Coordinator):
    """Opens the screens of a level over one that was built anew, without a sound: up to one that asks something."""
    stack = _stacks.get(old)
    for screen in stack.screens if stack else ():
        if screen.arguments or not _open(new, screen.name, {}):
            return


def _open(level: kaVel.Coordinator, name: str, arguments: dict[str, Any]) -> Screen | None:
    stack = _stackOf(level)
    try:
        module = importlib.import_module('screens.' + name)
        screen = Screen(name, module, _makeMenu(level, name), arguments)
        _build(stack, screen)
    except Exception:
        kaVel.log('The screen %r cannot be opened:\n%s' % (name, traceback.format_exc()))
        return None
    stack.screens.append(screen)
    stack.settle()
    return screen


def close(level: kaVel.Coordinator):
    """Takes the topmost screen of a level away."""
    stack = _stacks.get(level)
    if not stack or not stack.screens:
        return
    screen = stack.screens.pop()
    _remove(screen)
    stack.settle()
    if screen.has('closing', None):
        screen.module.closing()


def closeAll(level: kaVel.Coordinator):
    """Takes all screens of a level away, the topmost one first."""
    while isOpen(level):
        close(level)


def isOpen(level: kaVel.Coordinator, name: str = '', **arguments: Any) -> bool:
    """Whether a level has an open screen, or one of this name that was opened with these arguments."""
    stack = _stacks.get(level)
    return bool(stack) and any(not name or (screen.name == name and arguments.items() <= screen.arguments.items())
                               for screen in stack.screens)


def names(level: kaVel.Coordinator) -> list[str]:
    """Names of the open screens of a level, the topmost one at the end."""
    stack = _stacks.get(level)
    return [screen.name for screen in stack.screens] if stack else []


def top(level: kaVel.Coordinator) -> kaVel.Entity | None:
    """The entity of the topmost screen of a level."""
    stack = _stacks.get(level)
    return stack.screens[-1].menu if stack and stack.screens else None


def ask(level: kaVel.Coordinator, words: str, yes: Callable[[], object], no: Callable[[], object] | None = None,
        **values: object):
    """Asks a question over all other screens; the focus is on No."""
    open(level, 'Ask', question=words, yes=yes, no=no, values=values)


def layAside(level: kaVel.Coordinator):
    """Hides the screens of a level and leaves them no input, until they are taken up again."""
    _setAside(level, True)


def takeUpAgain(level: kaVel.Coordinator):
    """Shows the screens again that were laid aside; those that pause the level have it stand still."""
    _setAside(level, False)
    stack = _stacks.get(level)
    if stack and stack.running is not None:
        stillness.stop(level)


def rebuild(level: kaVel.Coordinator):
    """Puts all open screens of a level together anew, as after a change of language; the focus stays."""
    stack = _stacks.get(level)
    if not stack:
        return
    for screen in list(stack.screens):
        focus = _focusPath(screen)
        kit.clear(screen.menu)
        try:
            _build(stack, screen)
        except Exception:
            kaVel.log('The screen %r cannot be built anew, and is closed:\n%s' % (screen.name, traceback.format_exc()))
            stack.screens.remove(screen)
            continue
        widget = _livingAt(screen.menu, focus)
        if widget:
            kit.focus(widget)
    stack.settle()


def attend(level: kaVel.Coordinator):
    """Gives a level with a player its pause screen, which opens later; the loader does so."""
    if level.getChild('Player') and not level.getChild(PAUSE_ENTITY):
        _menuEntity(level, PAUSE_ENTITY)


def known() -> list[str]:
    """Names of all screens that there are."""
    found: set[str] = set()
    for folder in importlib.import_module('screens').__path__:
        for file in os.listdir(folder):
            text = os.path.join(folder, file)
            if file.endswith('.py') and file not in ('__init__.py', 'Kit.py', 'Screens.py'):
                with _read(text) as source:
                    if '\ndef build(menu' in source.read():
                        found.add(file[:-3])
    return sorted(found)


def findings(level: kaVel.Coordinator) -> list[str]:
    """What is wrong with the topmost screen of a level as it stands: see `MenuComponent.findings`."""
    stack = _stacks.get(level)
    if not stack or not stack.screens:
        return []
    screen = stack.screens[-1]
    return ['%s: %s' % (screen.name, line) for line in screen.component.findings().splitlines()]


# Within

def _frame() -> int:
    return kaVel.getSystem('GameLoopSystem').frameNumber


def _setAside(level: kaVel.Coordinator, aside: bool):
    _aside[level] = aside
    stack = _stacks.get(level)
    if stack:
        stack.settle()


def _read(file: str):
    import builtins
    return builtins.open(file, encoding='utf-8')


def _stackOf(level: kaVel.Coordinator) -> Stack:
    stack = _stacks.get(level)
    if stack is None:
        stack = _stacks[level] = Stack(level)
    return stack


def _makeCursor(level: kaVel.Coordinator, follow: Callable[[], None]) -> kaVel.CursorComponent:
    entity = kaVel.make('Entity', parent=level, name='Cursor')
    cursor = kaVel.addComponent(entity, 'cursor', 'CursorComponent')
    kaVel.addComponent(entity, 'menu', 'ScriptComponent', frameCallback=follow)
    if _runs(level):
        kaVel.finishLoad(entity)
    return cursor


def _runs(level: kaVel.Coordinator) -> bool:
    """Whether a level has been loaded: in one that is being built the loader completes the load."""
    return kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator == level


def _makeMenu(level: kaVel.Coordinator, name: str) -> kaVel.Entity:
    if name == PAUSE and level.getChild(PAUSE_ENTITY):
        return level.getChild(PAUSE_ENTITY)
    return _menuEntity(level, 'Screen' + name)


def _menuEntity(level: kaVel.Coordinator, name: str) -> kaVel.Entity:
    entity = kaVel.make('Entity', parent=level, name=name)
    kaVel.addComponent(entity, 'menu', 'MenuComponent')
    return entity


def _build(stack: Stack, screen: Screen):
    menu, component = screen.menu, screen.component
    kaVel.configure(component, veil=float(screen.has('VEIL', DEFAULT_VEIL)), fontName=words.font(),
                    textScale=words.fontSize(1.0))
    component.setBackCalled(lambda: _goBack(stack.level, screen))
    component.setEventHeard(lambda event: _sound(screen, SOUNDS[event]))
    component.setPageTurned(None)
    component.setInputTaken(None)
    try:
        screen.module.build(menu, **screen.arguments)
    except Exception:
        _remove(screen)
        raise


def _goBack(level: kaVel.Coordinator, screen: Screen):
    if screen.has('back', None):
        screen.module.back(level)
    else:
        close(level)


def _remove(screen: Screen):
    screen.component.visible = False
    kit.forget(screen.menu.name)
    if screen.menu.name == PAUSE_ENTITY:
        kit.clear(screen.menu)
    else:
        screen.menu.murder()


def _focusPath(screen: Screen) -> str:
    focus = screen.component.focus
    names: list[str] = []
    above: Any = focus.parent if focus else None
    while above and above != screen.menu:
        names.append(above.name)
        above = above.parent
    return '/'.join(reversed(names))


def _livingAt(menu: kaVel.Entity, path: str) -> kaVel.Entity | None:
    """The widget of a path below a screen: what was just cleared away still stands beside it, by the same names."""
    found: Any = menu
    for name in path.split('/'):
        found = next((each for each in found.children if each.name == name and not each.isDying()), None)
        if not found:
            return None
    return found


def _sound(screen: Screen, event: str):
    """Has an event of the sound project heard, where there is one."""
    from objects.sound.Sounds import sounds
    if screen.menu and not screen.menu.isDying():
        sounds(screen.menu, event).playSoundEffect(event)
