"""Numbers: where what is selected stands, and the parameters of its pattern; copies in rows; lining up."""

from __future__ import annotations

import ast
import os
from typing import Any

import kaVel
from editor import Commands, Places
from editor.edits.Refused import Refused
from editor.panels.History import HEIGHT as HISTORY
from editor.panels.Panel import BOTTOM, RIGHT, TOP, Panel
from editor.source.Parameters import Parameter, parametersOf
from editor.source.Pieces import Piece

AXES = ('x', 'y', 'z')
#: Frames that a number rests before it is given to the piece, which is built once that way and not while it is dragged.
RESTS = 8


class PieceBar(Panel):
    """Of one piece all that its pattern takes, of several their common place."""

    name = 'Piece'
    isAlways = False

    def __init__(self, editor: Any):
        super().__init__(editor)
        self._count, self._step, self._turn = 3, {'x': 1.0, 'y': 0.0, 'z': 0.0}, 0.0
        self._axis, self._how = 'x', Commands.ALIGNMENTS[0]
        self._pending: tuple[Piece, dict[str, Any]] | None = None
        self._rested = 0

    def placeIn(self, width: int, height: int):
        panels = self.editor.panels
        top = TOP + panels.toolControls.height
        return width - RIGHT, top, RIGHT, max(height - top - BOTTOM - (HISTORY if panels.history.isShown else 0), 60)

    def fill(self) -> None:
        pieces = self.editor.selected()
        if len(pieces) == 1:
            self._one(pieces[0])
        else:
            self._several(pieces)
        self._copies()

    def hide(self) -> None:
        self._give()
        super().hide()

    def selected(self) -> None:
        self._give()
        self.refresh()

    def toolTaken(self) -> None:
        self.putIfShown()

    def follow(self) -> None:
        """Is on the screen while something is selected."""
        isWanted = bool(self.editor.selected())
        if isWanted and not self.isShown:
            self.show()
        elif self.isShown and not isWanted:
            self.hide()

    def doFrame(self) -> None:
        self._rested += 1
        if self._rested >= RESTS:
            self._give()

    def edited(self) -> None:
        shown = [each for each in self.editor.selected()]
        if shown != self._shown:
            self.refresh()

    @property
    def _shown(self) -> list[Piece]:
        return self.__dict__.get('_of', [])

    def _one(self, piece: Piece) -> None:
        self._of = [piece]
        self.bar.label = piece.patternName
        self.value('name', lambda: piece.name, lambda name: self.editor.commands.rename(piece, name))
        self.bar.addText('origin', '', lambda: _originOf(piece))
        for parameter in parametersOf(piece.pattern):
            self._parameter(piece, parameter)
        self.button('In the pattern, for all', self._offerForAll,
                    'Shows what was changed last as a change of the pattern, which all of it follow', beside=False)

    def _offerForAll(self) -> None:
        self._give()
        self.editor.panels.forAll.show()

    def _parameter(self, piece: Piece, parameter: Parameter) -> None:
        name, value = parameter.name, piece.arguments.get(parameter.name)
        if parameter.kind in ('place', 'triple') and _isNumbers(value, 3):
            self._triple(piece, parameter)
        elif parameter.kind == 'color' and _isNumbers(value, 3):
            self.bar.addColor(name, name, lambda: kaVel.Vec4(*self._now(piece, name), 1),
                              lambda color: self._change(piece, name, (color.x, color.y, color.z)))
        elif isinstance(value, (bool, int, float, str)):
            wanted = float if parameter.kind in ('float', 'angle') else type(value)
            self.value(name, lambda: wanted(self._now(piece, name, value)),
                       lambda new: self._change(piece, name, new))
        elif callable(value) or value is None and parameter.kind == 'other':
            self.bar.addText(name, name, lambda: _shown(piece.arguments.get(name)))
        else:
            self.value(name, lambda: _shown(self._now(piece, name)),
                       lambda text: self._change(piece, name, _parsed(text)))
        if parameter.doc:
            self.bar.setTip(name, parameter.doc)

    def _triple(self, piece: Piece, parameter: Parameter) -> None:
        name = parameter.name
        self.bar.group('%s%s' % (name, ', metres' if parameter.kind == 'place' else ''))
        for number, axis in enumerate(AXES):
            self.value('%s %s' % (name, axis), lambda number=number: float(self._now(piece, name)[number]),
                       lambda new, number=number: self._changePart(piece, name, number, new), parameter.doc, axis)
        self.bar.group('')

    def _changePart(self, piece: Piece, name: str, number: int, new: float) -> None:
        parts = list(self._now(piece, name))
        parts[number] = new
        self._change(piece, name, tuple(parts))

    def _change(self, piece: Piece, name: str, value: Any) -> None:
        if self._pending and self._pending[0] is not piece:
            self._give()
        self._pending = piece, {**(self._pending[1] if self._pending else {}), name: value}
        self._rested = 0

    def _now(self, piece: Piece, name: str, default: Any = None) -> Any:
        """An argument as it stands on the bar, which may be ahead of the piece."""
        if self._pending and self._pending[0] is piece and name in self._pending[1]:
            return self._pending[1][name]
        return piece.arguments.get(name, default)

    def _give(self) -> None:
        """Gives the piece what was changed on the bar."""
        pending, self._pending = self._pending, None
        if pending:
            self.editor.attempt(lambda: self.editor.edits.change(pending[0], **pending[1]))

    def _several(self, pieces: list[Piece]) -> None:
        self._of = pieces
        self.bar.label = '%d things' % len(pieces)
        for number, axis in enumerate(AXES):
            self.value(axis, lambda number=number: self._middle()[number],
                       lambda new, number=number: self._moveTo(number, new), 'The middle of their places, metres')
        self.value('turn by', lambda: 0.0, lambda turn: self.editor.commands.turn(turn, self._middle()),
                   'About their middle, degrees')
        self.bar.group('In line')
        self.choice('axis', list(AXES), lambda: self._axis, lambda axis: self._set('_axis', axis))
        self.choice('how', list(Commands.ALIGNMENTS), lambda: self._how, lambda how: self._set('_how', how))
        self.button('Align', lambda: self.editor.commands.align(self._axis, self._how), beside=False)
        self.bar.group('')

    def _middle(self):
        places = [place for each in self.editor.selected() if (place := Places.placeOf(each.arguments))]
        return Places.middle(places) if places else (0.0, 0.0, 0.0)

    def _moveTo(self, axis: int, new: float) -> None:
        by = [0.0, 0.0, 0.0]
        by[axis] = new - self._middle()[axis]
        self.editor.commands.move((by[0], by[1], by[2]))

    def _copies(self) -> None:
        self.bar.group('Copies in a row')
        self.value('count', lambda: self._count, lambda count: self._set('_count', int(count)))
        for axis in AXES:
            self.value('step ' + axis, lambda axis=axis: self._step[axis],
                       lambda new, axis=axis: self._step.update({axis: float(new)}), 'Metres')
        self.value('turn each', lambda: self._turn, lambda turn: self._set('_turn', float(turn)), 'Degrees')
        self.button('Array', self._array, 'Makes so many copies, each a step further', beside=False)
        self.bar.group('')

    def _array(self) -> None:
        step = self._step
        self.editor.commands.array(self._count, (step['x'], step['y'], step['z']), self._turn)

    def _set(self, name: str, value: Any) -> None:
        setattr(self, name, value)


def _originOf(piece: Piece) -> str:
    origin = piece.origin
    return '%s:%d' % (os.path.basename(origin[0]), origin[1]) if origin else 'not saved yet'


def _isNumbers(value: Any, count: int) -> bool:
    return (isinstance(value, (tuple, list)) and len(value) == count
            and all(isinstance(each, (int, float)) for each in value))


def _shown(value: Any) -> str:
    return getattr(value, '__qualname__', '') or repr(value)


def _parsed(text: str) -> Any:
    try:
        return ast.literal_eval(text)
    except (ValueError, SyntaxError):
        raise Refused('%r is no value: numbers, texts in quotes, and these in brackets are' % text) from None
