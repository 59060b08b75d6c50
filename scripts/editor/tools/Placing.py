"""Placing what was chosen from the catalogue: a ghost follows the mouse, a click leaves a piece there."""

from __future__ import annotations

import inspect
import math
from typing import Any

import kaVel
from editor import Catalogue, Places
from editor.edits.Refused import Refused
from editor.Tools import Tool, tools

#: Name of the ghost; the dot keeps it out of what is picked and listed.
GHOST = '.ghost'
#: Steeper surfaces than this are walls, which things face away from: the normal's height.
WALL = 0.5
LEFT, LAYER = 0, 'placing'
#: Kinds of patterns that have a ghost; of others a mark with the name shows where they will stand.
SHOWN = ('Building', 'Furniture', 'Lights')
MARK = kaVel.Vec4(1, 0.75, 0.2, 1)


@tools.add
class Place(Tool):
    """Keeps on placing the same until another tool is taken."""

    name = 'Place'
    help = ('Choose in the catalogue, click where it is to stand. Comma and period, or Shift and the wheel, turn it; '
            'Escape ends.')
    key = 'T'
    order = 4

    #: What is placed; none until something was chosen.
    entry: Catalogue.Entry | None = None
    _turn = 0.0
    _showed = False  # whether it was this that brought the catalogue up
    _ghost: kaVel.Entity | None = None
    _ghostStands: tuple[kaVel.Vec4, float] = kaVel.Vec4(0, 0, 0, 1), 0.0

    def choose(self, name: str) -> None:
        """Takes a pattern into the hand."""
        self._dropGhost()
        self.entry = Catalogue.named(name)
        self._makeGhost()

    def begin(self) -> None:
        if self.entry:
            self._makeGhost()
        catalogue = self.editor.panels.catalogue
        self._showed = not catalogue.isShown
        if self._showed:
            catalogue.show()

    def end(self) -> None:
        self._dropGhost()
        if self._showed:
            self.editor.panels.catalogue.hide()

    def controls(self, bar: Any) -> None:
        bar.addText('pattern', '', lambda: self.entry.name if self.entry else 'Nothing chosen from the catalogue')
        bar.addText('sentence', '', lambda: self.entry.help if self.entry else '')
        bar.addValue('angle', 'Turn, degrees', lambda: self._turn, self._setTurn)

    def pointer(self, kind: str, x: int, y: int, button: int) -> bool:
        if not self.entry:
            return False
        if kind == 'move':
            self._showAt(x, y)
            return True
        if kind == 'wheel':
            self._setTurn(self._turn + math.copysign(self._step(), button))
            self._showAt(x, y)
            return True
        if kind == 'down' and button == LEFT:
            self._place(x, y)
            return True
        return kind in ('up', 'double') and button == LEFT

    def pressed(self, key: str) -> bool:
        if key in ('Comma', 'Period') and self.entry:
            self._setTurn(self._turn + self._step() * (1 if key == 'Period' else -1))
            self._showAt(*self.editor.mouse)
            return True
        return False

    def _step(self) -> float:
        return self.editor.snapping.get('snapAngle')

    def _setTurn(self, turn: float) -> None:
        self._turn = Places.degrees(turn)

    def _place(self, x: int, y: int) -> None:
        entry = self.entry
        assert entry
        place, turn = self._where(x, y)
        arguments: dict[str, Any] = {}
        if entry.takes('at'):
            arguments['at'] = Places.metres((place.x, place.y, place.z))
        if entry.takes('turn') and turn:
            arguments['turn'] = turn
        self._dropGhost()
        self.editor.add(entry.name, parent=_parentFor(self.editor, entry), **arguments)
        self._makeGhost()

    def _where(self, x: int, y: int) -> tuple[kaVel.Vec4, float]:
        """The place under the mouse and the turn there: what is put onto a wall faces away from it."""
        component = self.editor.component
        place = component.placeUnder(float(x), float(y))
        normal = component.normalUnder
        if abs(normal.y) < WALL and (normal.x or normal.z):
            facing = Places.degrees(round(math.degrees(math.atan2(normal.x, normal.z)), 1))
            return place, Places.degrees(facing + self._turn)
        return self.editor.snapped(place), self._turn

    # The ghost

    def _makeGhost(self) -> None:
        """Builds the pattern as a ghost; one that cannot be built by itself has a mark in its place."""
        self._dropGhost()
        entry = self.entry
        if not entry or not entry.takes('at') or not _isHarmless(entry):
            return
        try:
            ghost: kaVel.Entity = entry.pattern(self.editor.map, GHOST)
            kaVel.finishLoad(ghost)
            self._ghost, self._ghostStands = ghost, (kaVel.Vec4(0, 0, 0, 1), 0.0)
            self.editor.component.setPickable(ghost, False)
        except Exception as error:
            kaVel.log('%s has no ghost: %s' % (entry.name, error))
            self._ghost = None

    def _dropGhost(self) -> None:
        ghost, self._ghost = self._ghost, None
        if ghost:
            ghost.setName('.gone')
            ghost.murder()
        self.editor.component.clearShapes(LAYER)

    def _showAt(self, x: int, y: int) -> None:
        place, turn = self._where(x, y)
        component = self.editor.component
        component.clearShapes(LAYER)
        ahead = kaVel.Vec4(place.x + 0.6 * math.sin(math.radians(turn)), place.y,
                           place.z + 0.6 * math.cos(math.radians(turn)), 1)
        component.addShapeLine(LAYER, place, ahead, MARK)
        if self._ghost:
            stood, faced = self._ghostStands
            component.moveRigidly(self._ghost, place - stood, turn - faced, stood)
            self._ghostStands = place, turn
        elif self.entry:
            component.addShapeCircle(LAYER, place, 0.3, MARK)
            component.addShapeText(LAYER, kaVel.Vec4(place.x, place.y + 0.3, place.z, 1), self.entry.name, MARK)


def _isHarmless(entry: Catalogue.Entry) -> bool:
    """Whether a pattern can be built in passing: it only shows something, and nothing goes on in it."""
    return entry.kind in SHOWN and not _hangsBelowLevel(entry)


def _hangsBelowLevel(entry: Catalogue.Entry) -> bool:
    return 'Coordinator' in str(inspect.signature(entry.pattern).parameters['parent'].annotation)


def _parentFor(editor: Any, entry: Catalogue.Entry) -> Any:
    """What a new piece of a pattern hangs below: the level where the pattern says so, else the map."""
    if not _hangsBelowLevel(entry):
        return editor.map
    if entry.name == 'Player' and editor.level.getChild('Player'):
        raise Refused('There is a player already')
    return editor.level
