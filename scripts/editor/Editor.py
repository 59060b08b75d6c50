"""The editor of a level: where its tools, views and bars meet.

    editor = Editor.of(level)
    editor.open()
    editor.take('Move')
    editor.select(editor.pieces.all()[:3])
    editor.commands.duplicate()
"""

from __future__ import annotations

import traceback
from typing import Any, Callable, Iterable, TypeVar

import editing
import kaVel
import loader
import troubleScreen
from editor import Commands, Keys
from editor.Aids import Aids
from editor.Camera import Camera
from editor.Ceilings import Ceilings
from editor.edits import Edits
from editor.edits.Refused import Refused
from editor.Inspected import Inspected
from editor.panels import Panels
from editor.Playing import Playing
from editor.Recording import Recording
from editor.Selection import Selection
from editor.Snapping import Snapping
from editor.source import Pieces, Writing
from editor.source.Pieces import Piece
from editor.Tools import Tool, tools
from editor.Views import View, views
from perLevel import PerLevel
from screens import Screens

#: The entity that bears the editor's component, below the level.
ENTITY = '.Editor'
#: What is in hand where nothing else is.
SELECT = 'Select'

_editors: PerLevel[Editor] = PerLevel()
_T = TypeVar('_T')


class Editor:
    """One a level, made when it is first opened. While it is open, mouse and keys are its own and the level stands.

    Pieces are changed through `edits` alone, so that everything can be undone; a call that fails costs a line of
    message and nothing else: see `attempt`.
    """

    @staticmethod
    def of(level: kaVel.Coordinator) -> Editor:
        """The editor of a level; Refused for one that there is nothing to edit in."""
        editor = _editors.get(level)
        if editor is None:
            _refuseUneditable(level)
            editor = _editors[level] = Editor(level)
        return editor

    @staticmethod
    def openedIn(level: kaVel.Coordinator) -> Editor | None:
        """The editor of a level in which it has been opened; None for any other."""
        return _editors.get(level)

    def __init__(self, level: kaVel.Coordinator):
        self.level = level
        self.troubles = tools.gather() + views.gather()
        self.component = _makeComponent(level)
        self.pieces, self.edits = Pieces.of(level), Edits.of(level)
        self.camera, self.ceilings = Camera(self), Ceilings(self)
        self.selection = Selection(self)
        self.snapping = Snapping(self)
        self.playing, self.aids, self.inspected = Playing(self), Aids(self), Inspected(self)
        self.recording = Recording(self)
        self.commands = Commands.Commands(self)
        self.panels = Panels.Panels(self)
        self.isOpen, self.isForsaken = False, False
        self._target: str | None = None  # where it is saved, once that was chosen
        self.tool: Tool | None = None
        self.messages: list[str] = []
        self.mouse = (0, 0)  # over the picture, window pixels
        self._step = (self.edits.position, len(self.edits.history()))  # the one that was told last
        self._tools: dict[str, Tool] = {}
        self._views: dict[str, View] = {}
        self.edits.onChange(self._edited)
        self.selection.onChange(self._selectionChanged)
        self._listen()

    # Opening and closing

    def switch(self) -> None:
        """Opens the editor, or closes it."""
        if self.isOpen:
            self.close()
        else:
            self.open()

    def open(self) -> None:
        """Stops the level and shows handles and bars; nothing is built anew."""
        if self.isOpen:
            return
        self.isOpen = True
        editing.remembered['open'] = True
        Screens.layAside(self.level)
        self.playing.begin()
        editing.overlook(self.level, True)
        self.component.active = True
        self.aids.begin()
        self.inspected.begin()
        self.recording.begin()
        self.panels.open()
        self.selection.refresh()
        self.take(SELECT)
        self.message('%s is edited; F8 plays on. Right button: look around, with W A S D: fly' % self.level.levelName)
        for trouble in self.troubles:
            self.message(trouble)

    def close(self) -> None:
        """Takes handles and bars away and plays on; what was edited stays as it is."""
        if not self.isOpen:
            return
        self.isOpen = False
        editing.remembered['open'] = False
        self._putDown()
        for view in self.shownViews():
            view.end()
        self._views.clear()
        self.panels.close()
        self.ceilings.end()
        self.recording.end()
        self.inspected.end()
        self.aids.end()
        self.component.active = False
        editing.overlook(self.level, False)
        self.playing.end()
        Screens.takeUpAgain(self.level)

    # Tools and views

    def take(self, name: str) -> None:
        """Takes a tool up in place of the one in hand; KeyError for an unknown one."""
        cls = tools.named(name)
        self._putDown()
        if name not in self._tools:
            self._tools[name] = cls(self)
        self.tool = self._tools[name]
        self.attempt(self.tool.begin)
        self.panels.toolTaken()

    def _putDown(self) -> None:
        tool, self.tool = self.tool, None
        if tool:
            self.attempt(tool.end)

    def show(self, name: str, on: bool) -> None:
        """Switches a view on or off."""
        view = self._views.pop(name, None)
        if view:
            self.attempt(view.end)
        if on:
            view = views.named(name)(self)
            self._views[name] = view
            self.attempt(view.begin)
        self.panels.viewsChanged()

    def shownViews(self) -> list[View]:
        """The views that are on."""
        return list(self._views.values())

    # What is edited

    @property
    def map(self) -> kaVel.MapRootEntity:
        """The map that new pieces go under: that of what was selected last, or the first one; Refused without any."""
        for piece in reversed(self.selection.pieces):
            above: Any = piece.root.getAncestorOfType(kaVel.Reflection.MapRootEntity)
            if above:
                return above
        maps: list[Any] = [each for each in self.level.children
                           if each._getType().isSubclassOf(kaVel.Reflection.MapRootEntity)]
        if not maps:
            raise Refused('This level has no map to place things in: "New level" makes one that has')
        return maps[0]

    def select(self, pieces: Iterable[Piece]) -> None:
        """Selects these pieces and nothing else."""
        self.selection.set(pieces)

    def selected(self) -> list[Piece]:
        """The selected pieces."""
        return self.selection.pieces

    def add(self, patternName: str, name: str = '', parent: kaVel.Object | None = None, **arguments: Any):
        """Places a piece and selects it: a step of its own; None where that was refused."""
        piece = self.attempt(lambda: self.commands.place(patternName, name, parent, **arguments))
        if piece:
            self.select([piece])
        return piece

    def snapped(self, place: kaVel.Vec4) -> kaVel.Vec4:
        """A place on the grid, while snapping to it is on."""
        return self.snapping.onGrid(place)

    def placeAtMouse(self) -> kaVel.Vec4:
        """What lies under the mouse; some metres before the camera where that is nothing."""
        return self.component.placeUnder(float(self.mouse[0]), float(self.mouse[1]))

    # Saving

    @property
    def isSaved(self) -> bool:
        """Whether the files of the level say all that was edited."""
        return self.edits.isSaved

    @property
    def saveTarget(self) -> str:
        """Where the level is saved, of `Writing.targets`; Refused while there are several and none was chosen."""
        targets = Writing.targets(self.level)
        if self._target in targets or len(targets) == 1:
            return self._target if self._target in targets else targets[0]
        raise Refused('Choose where this is saved: into the level itself, or into a mod')

    @saveTarget.setter
    def saveTarget(self, target: str) -> None:
        self._target = target

    def isSaveTarget(self, target: str) -> bool:
        """Whether that is where the level is saved."""
        return self._target == target

    def diff(self) -> str:
        """What saving would change in files, as a unified diff."""
        return Writing.diff(self.level, self.saveTarget)

    def save(self) -> bool:
        """Writes what was edited into the files; False, with a message, where that cannot be."""
        files = self.attempt(lambda: Writing.save(self.level, self.saveTarget))
        if files is not None:
            self.message('Saved: %s' % (', '.join(files) or 'there was nothing to save'))
        return files is not None

    def askBefore(self, go: Callable[[], object]) -> None:
        """Asks what is to become of unsaved edits, and calls `go` unless the level is to stay."""
        self.open()
        self.panels.ask(go)

    def forsake(self) -> None:
        """Lets a level be left without its unsaved edits."""
        self.isForsaken = True

    # What the user is told

    def message(self, text: object) -> None:
        """Shows a line to the user, and logs it."""
        line = ' '.join(str(text).split())
        self.messages.append(line)
        kaVel.log('Editor: %s' % line)

    def refuse(self, error: BaseException) -> None:
        """Tells why something was not done; what no script of the editor has foreseen, with its traceback."""
        if isinstance(error, Refused):
            self.message(error)
        elif isinstance(error, (KeyError, OSError)):
            self.message(error.args[0] if isinstance(error, KeyError) and error.args else error)
        else:
            kaVel.log('The editor could not do that:\n%s' % traceback.format_exc())
            self.message('%s: %s (see the log)' % (type(error).__name__, error))

    def attempt(self, function: Callable[[], _T]) -> _T | None:
        """Calls a function; where that fails, tells so and returns None."""
        try:
            return function()
        except Exception as error:
            self.refuse(error)
            return None

    # Within

    def _listen(self) -> None:
        self.component.setPointerCalled(self._pointer)
        self.component.setKeyCalled(self._key)
        entity = kaVel.make('Entity', parent=self.component.parent, name='frames')
        kaVel.addComponent(entity, 'menu', 'ScriptComponent', frameCallback=self._doFrame)
        kaVel.finishLoad(entity)

    def _pointer(self, kind: str, x: float, y: float, button: int) -> None:
        self.mouse = int(x), int(y)
        tool = self.tool
        if not tool or self.attempt(lambda: tool.pointer(kind, *self.mouse, button)) or tool.name == SELECT:
            return
        self.attempt(lambda: self._tools[SELECT].pointer(kind, *self.mouse, button))

    def _key(self, code: int, down: bool) -> None:
        Keys.note(code, down)
        name, tool = Keys.named(code), self.tool
        if not name or not tool:
            return
        if not down:
            self.attempt(lambda: tool.released(name))
            return
        pressed = Keys.withModifiers(name)
        if not self.attempt(lambda: tool.pressed(pressed)):
            self.attempt(lambda: Keys.do(self, pressed))

    def _doFrame(self) -> None:
        if not self.isOpen:
            return
        self.recording.note()
        Keys.follow()
        self.playing.doFrame()
        self.ceilings.doFrame()
        for each in (self.tool, *self.shownViews()):
            if each:
                self.attempt(each.doFrame)
        self.panels.doFrame()

    def _selectionChanged(self) -> None:
        if self.isOpen:
            self.panels.selected()
            if self.tool:
                self.attempt(self.tool.selectionChanged)

    def _edited(self) -> None:
        if not self.level or not self.isOpen:
            return  # the edits of a level outlive it, and with them what listens
        self.isForsaken = False
        self._tellStep()
        self.selection.refresh()
        if self.tool:
            self.attempt(self.tool.selectionChanged)
        for view in self.shownViews():
            self.attempt(view.changed)
        self.panels.edited()

    def _tellStep(self) -> None:
        """Tells which step the level is at, after one was done, undone or done again."""
        steps, position = self.edits.history(), self.edits.position
        if (position, len(steps)) != self._step:
            isBack = self._step[1] == len(steps) and position < self._step[0]
            self._step = position, len(steps)
            self.message('Undone: %s' % steps[position] if isBack else steps[position - 1])


def _refuseUneditable(level: kaVel.Coordinator) -> None:
    if level.levelName == loader.LOADING_SCREEN:
        raise Refused('The loading screen passes by itself: there is nothing to edit')
    if troubleScreen.of(level):
        raise Refused('The level %r could not be loaded: mend its script first' % level.levelName)


def _makeComponent(level: kaVel.Coordinator) -> kaVel.EditorComponent:
    entity = kaVel.make('Entity', parent=level, name=ENTITY)
    component = kaVel.addComponent(entity, 'editor', 'EditorComponent')
    kaVel.finishLoad(entity)
    return component


__all__ = ['Editor', 'Refused']
