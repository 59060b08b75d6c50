"""Selecting with the mouse: a click takes the piece that is pointed at, a drag those in a box."""

from __future__ import annotations

import kaVel
from editor import Keys
from editor.Tools import Tool, tools
from editor.source.Pieces import Piece

#: Layer of what this tool draws, and how far the mouse goes before a click is a drag, pixels.
LAYER, SLACK = 'select', 5
LEFT = 0
COLOR = kaVel.Vec4(1, 0.85, 0.4, 1)


@tools.add
class Select(Tool):
    """Takes what no other tool takes."""

    name = 'Select'
    help = 'Click to select, drag for a box. Ctrl adds or takes away, Alt a single one out of a group.'
    key = 'Q'
    order = 0

    _from: tuple[int, int] | None = None

    def pointer(self, kind: str, x: int, y: int, button: int) -> bool:
        if kind == 'down' and button == LEFT:
            self._from = x, y
            return True
        if kind == 'move' and self._from:
            self._draw(x, y)
            return True
        if kind == 'up' and button == LEFT and self._from:
            begin, self._from = self._from, None
            self._erase()
            self._choose(self._inBox(begin, (x, y)) if _isDrag(begin, (x, y)) else self._at(x, y))
            return True
        return False

    def end(self) -> None:
        self._from = None
        self._erase()

    def _at(self, x: int, y: int) -> list[Piece]:
        piece = self._piece(self.editor.component.pick(float(x), float(y)))
        if not piece or not piece.group or Keys.held('Alt'):
            return [piece] if piece else []
        return [each for each in self.editor.pieces.all() if each.group == piece.group]

    def _inBox(self, begin: tuple[int, int], end: tuple[int, int]) -> list[Piece]:
        found = self.editor.component.pickBox(float(begin[0]), float(begin[1]), float(end[0]), float(end[1]))
        return [piece for piece in dict.fromkeys(map(self._piece, found)) if piece]

    def _piece(self, entity: kaVel.Entity) -> Piece | None:
        piece = self.editor.pieces.pieceOf(entity) if entity else None
        return piece if piece and not piece.locked and not piece.hidden else None

    def _choose(self, pieces: list[Piece]) -> None:
        if Keys.held('Ctrl'):
            self.editor.selection.toggle(pieces)
        elif Keys.held('Shift'):
            self.editor.selection.add(pieces)
        else:
            self.editor.select(pieces)

    def _draw(self, x: int, y: int) -> None:
        assert self._from
        if _isDrag(self._from, (x, y)):
            component = self.editor.component
            component.clearShapes(LAYER)
            (x0, y0), eye = self._from, component.cameraPlace
            corners = [eye + component.directionAt(float(a), float(b))
                       for a, b in ((x0, y0), (x, y0), (x, y), (x0, y))]
            for begin, end in zip(corners, [*corners[1:], corners[0]]):
                component.addShapeLine(LAYER, begin, end, COLOR)

    def _erase(self) -> None:
        self.editor.component.clearShapes(LAYER)


def _isDrag(begin: tuple[int, int], end: tuple[int, int]) -> bool:
    return max(abs(begin[0] - end[0]), abs(begin[1] - end[1])) > SLACK
