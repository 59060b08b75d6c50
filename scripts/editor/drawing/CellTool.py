"""Painting the cells that no creature plans its way through."""

from __future__ import annotations

import math
from typing import TYPE_CHECKING, Any, Iterable, NamedTuple

import editing
import kaVel
from editor import Keys, Places
from editor.Tools import tools
from editor.drawing.Ground import HERE, LEFT, WRONG, Drawing
from editor.source.Pieces import Piece

if TYPE_CHECKING:
    from editor.Editor import Editor

PATTERN = 'BlockedCells'
#: Column and row of a cell.
Cell = tuple[int, int]
#: Least x and z, greatest x and z, metres.
Rectangle = tuple[float, float, float, float]


class Lattice(NamedTuple):
    """How cells lie in the world: the edge of one, and the corner of the one of column and row 0, metres."""

    edge: float
    x: float
    z: float

    def cellAt(self, x: float, z: float) -> Cell:
        return math.floor((x - self.x) / self.edge), math.floor((z - self.z) / self.edge)

    def corner(self, column: int, row: int) -> tuple[float, float]:
        return Places.tidy(self.x + column * self.edge), Places.tidy(self.z + row * self.edge)


@tools.add
class PaintCells(Drawing):
    """Those of the map's path grid."""

    name = 'Blocked cells'
    help = 'Paint where no creature is to go; with Ctrl held, paint it free again. One stroke is one step to undo.'
    key = 'K'
    order = 24
    layer = 'cells'

    def __init__(self, editor: Editor):
        super().__init__(editor)
        self._kept: dict[str, Any] = editing.remembered.setdefault('cells', {'brush': 1})
        self._cells: set[Cell] = set()
        self._before: set[Cell] | None = None  # at the begin of the stroke under way
        self._last: Cell | None = None

    def controls(self, bar: Any) -> None:
        self.groundControls(bar)
        bar.addValue('brush', 'Brush, cells', lambda: int(self._kept['brush']),
                     lambda value: self._kept.update(brush=min(max(int(value), 1), 20)))
        bar.addText('count', 'Blocked cells', lambda: str(len(self._cells)))

    def begin(self) -> None:
        self.selectionChanged()

    def selectionChanged(self) -> None:
        super().selectionChanged()
        if self._before is None:
            piece = self._piece()
            self._cells = cellsOf(piece.arguments['areas'], self._lattice()) if piece else set()
            self._draw()

    def pointer(self, kind: str, x: int, y: int, button: int) -> bool:
        if self.takesHeight(kind, x, y, button):
            return True
        spot = self.ground.pointed(x, y)
        cell = self._lattice().cellAt(*spot) if spot else None
        if kind == 'down' and button == LEFT:
            self._before, self._last = set(self._cells), cell
        elif kind == 'up' and button == LEFT and self._before is not None:
            before, self._before = self._before, None
            if before != self._cells:
                self.editor.attempt(self._store)
            self.selectionChanged()
            return True
        if self._before is not None and cell:
            self._paint(cell)
        self._last = cell
        self._draw()
        return kind in ('down', 'move', 'double') and button in (LEFT, -1)

    def pressed(self, key: str) -> bool:
        if key == 'Escape' and self._before is not None:
            self._cells, self._before = self._before, None
            self._draw()
            return True
        return False

    def _lattice(self) -> Lattice:
        """How the cells of the map's path grid lie."""
        child: Any = self.editor.map.getChild('.MapData_mainPathGrid')
        grid = child.getComponent('grid') if child else None
        if not grid or not grid.gridCols:
            return Lattice(0.5, 0.0, 0.0)
        middle, edge = grid.getCellWorldCoords(0, 0), grid.cellSize
        return Lattice(edge, (middle.x - edge / 2) % edge, (middle.z - edge / 2) % edge)

    def _paint(self, cell: Cell) -> None:
        """Paints from where the mouse was, so that a quick stroke has no gaps."""
        (x0, z0), (x1, z1) = self._last or cell, cell
        steps = max(abs(x1 - x0), abs(z1 - z0), 1)
        brush = self._kept['brush']
        for step in range(steps + 1):
            x, z = round(x0 + (x1 - x0) * step / steps), round(z0 + (z1 - z0) * step / steps)
            under = {(x + a - brush // 2, z + b - brush // 2) for a in range(brush) for b in range(brush)}
            self._cells = self._cells - under if Keys.held('Ctrl') else self._cells | under

    def _piece(self) -> Piece | None:
        """The piece that is painted on: the selected one, or the first that there is."""
        pieces = [piece for piece in (*self.editor.selected(), *self.editor.pieces.all())
                  if piece.patternName == PATTERN and not piece.locked]
        return pieces[0] if pieces else None

    def _store(self) -> None:
        piece, areas = self._piece(), rectanglesOf(self._cells, self._lattice())
        with self.editor.edits.step('Paint blocked cells'):
            if not piece:
                self.editor.commands.place(PATTERN, areas=areas)
            elif areas:
                self.editor.edits.change(piece, areas=areas)
            else:
                self.editor.edits.remove(piece)

    def _draw(self) -> None:
        self.erase()
        for left, near, right, far in rectanglesOf(self._cells, self._lattice()):
            self.editor.component.addShapeArea(self.layer, self.ground.lifted((left, near)),
                                               self.ground.lifted((right, far)), kaVel.Vec4(1, 0.2, 0.1, 0.4))
            for one, other in (((left, near), (right, near)), ((right, near), (right, far)),
                               ((right, far), (left, far)), ((left, far), (left, near))):
                self.line(one, other, WRONG)
        if self._last:
            lattice, (column, row) = self._lattice(), self._last
            self.editor.component.addShapeArea(self.layer, self.ground.lifted(lattice.corner(column, row), 0.03),
                                               self.ground.lifted(lattice.corner(column + 1, row + 1), 0.03), HERE)


def cellsOf(areas: Iterable[Rectangle], lattice: Lattice) -> set[Cell]:
    """The cells whose middle lies within some rectangles."""
    half = lattice.edge / 2
    found: set[Cell] = set()
    for left, near, right, far in areas:
        first, lowest = lattice.cellAt(left + half, near + half)
        last, highest = lattice.cellAt(right + half, far + half)
        found |= {(column, row) for column in range(first, last) for row in range(lowest, highest)}
    return found


def rectanglesOf(cells: set[Cell], lattice: Lattice) -> tuple[Rectangle, ...]:
    """As few rectangles as easily come of some cells: rows of them, joined where they are alike."""
    left = set(cells)
    found: list[Rectangle] = []
    while left:
        column, row = min(left, key=lambda cell: (cell[1], cell[0]))
        wide = high = 1
        while (column + wide, row) in left:
            wide += 1
        while all((column + step, row + high) in left for step in range(wide)):
            high += 1
        left -= {(column + a, row + b) for a in range(wide) for b in range(high)}
        found.append((*lattice.corner(column, row), *lattice.corner(column + wide, row + high)))
    return tuple(found)
