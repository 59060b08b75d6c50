"""The grids of a map: what can be walked on, where flows lead, where paths crowd."""

from __future__ import annotations

import math
from typing import Any, Iterator

import kaVel
from editor.Views import views
from editor.views.Kit import ABOVE, Color, Scale, Shown, mapsOf, onScale, vec

#: Cells that are looked at in a frame.
CELLS = 700
#: Frames after which a grid is drawn anew, while something in it changes.
EVERY = 45


class GridView(Shown):
    """A view of one grid of each map, drawn anew when it has changed."""

    path = ''

    def begin(self) -> None:
        super().begin()
        self.steps: Iterator[int] | None = None
        self.drawn: dict[kaVel.SquareGrid, int] = {}  # grid -> the count of its changes
        self.count = 0
        self.isDue = True

    def changed(self) -> None:
        self.isDue = True

    def doFrame(self) -> None:
        super().doFrame()
        if self.steps is None and (self.isDue or self.frame % EVERY == 0 and self._hasChanged()):
            self.isDue = False
            self.steps = self._draw()
        if self.steps is not None and next(self.steps, None) is None:
            self.steps = None

    def _grids(self) -> Iterator[tuple[Any, kaVel.SquareGrid]]:
        for map in mapsOf(self.level):
            grid = map.getDescendantByPath(self.path)
            if grid:
                yield map, grid

    def _hasChanged(self) -> bool:
        return any(self.drawn.get(grid) != grid.changeCount for _, grid in self._grids())

    def _draw(self) -> Iterator[int]:
        self.count = 0
        shapes: list[tuple[Any, ...]] = []
        for map, grid in self._grids():
            self.drawn[grid] = grid.changeCount
            for number in range(grid.gridRows * grid.gridCols):
                if number % CELLS == CELLS - 1:
                    yield number
                shapes += self.shapesOf(map, grid, number % grid.gridCols, number // grid.gridCols)
        self.component.clearShapes(self.layer)
        self.component.setShapesBehind(self.layer, True)
        self.count = len(shapes)
        for kind, *shape in shapes:
            (self.component.addShapeArea if kind == 'area' else self.component.addShapeLine)(self.layer, *shape)
        yield 0

    def shapesOf(self, map: Any, grid: kaVel.SquareGrid, x: int, z: int) -> list[tuple[Any, ...]]:
        """What is drawn of a cell."""
        return []


def square(grid: kaVel.SquareGrid, x: int, z: int, color: Color, part: float = 0.94) -> tuple[Any, ...]:
    """The area of a cell."""
    at, half = grid.getCellWorldCoords(x, z), grid.cellSize / 2 * part
    return ('area', kaVel.Vec4(at.x - half, at.y + ABOVE, at.z - half, 1),
            kaVel.Vec4(at.x + half, at.y + ABOVE, at.z + half, 1), vec(color, 0.5))


@views.add
class Ways(GridView):
    """What can be walked on, by the room that there is for the bodies of creatures."""

    name = 'Path grid'
    help = 'Which cells creatures can walk on, and what keeps them off the others.'
    order = 40
    path = '.MapData_mainPathGrid/grid'
    #: Radius of a body that is as broad as most, metres.
    BROAD = 0.35
    scale: Scale = (
        (0.0, (0.20, 0.65, 0.30), 'room for all'),
        (0.25, (0.80, 0.75, 0.20), 'slim: room for the slim alone'),
        (0.5, (0.95, 0.50, 0.15), 'things: stand in the way'),
        (1.0, (0.85, 0.15, 0.15), 'blocked: by the level'),
    )

    def valueOf(self, map: Any, grid: kaVel.SquareGrid, x: int, z: int) -> float:
        """Where a cell stands on the scale."""
        value = grid.getCellValue(x, z).x
        ways = map.getComponent('walkways')
        if not value and ways and not ways.hasRoom(grid.getCell(x, z), self.BROAD):
            return 0.25
        return min(value, 1.0)

    def shapesOf(self, map: Any, grid: kaVel.SquareGrid, x: int, z: int) -> list[tuple[Any, ...]]:
        return [square(grid, x, z, onScale(self.scale, self.valueOf(map, grid, x, z)))]

    def state(self) -> str:
        return '%d cells' % self.count if self.count else 'no map of this level has a path grid'

    def tell(self, at: kaVel.Vec4) -> str:
        for _, grid in self._grids():
            cell = grid.getCellFromPoint(at, 0)
            if cell.isValid():
                return 'cell %d, %d: %g' % (cell.x, cell.z, cell.getFloatValue(0))
        return 'off the grid'


@views.add
class Saturation(GridView):
    """How crowded paths are."""

    name = 'Saturation'
    help = 'Where paths crowd: later ones keep away from these cells.'
    order = 42
    path = '.MapData_pathSaturationGrid/grid'
    scale: Scale = (
        (0.0, (0.20, 0.35, 0.60), 'some'),
        (0.25, (0.30, 0.70, 0.60), 'a quarter: of what a path leaves'),
        (0.5, (0.90, 0.80, 0.25), 'half'),
        (0.75, (0.95, 0.30, 0.15), 'crowded: later paths go around'),
    )

    def begin(self) -> None:
        super().begin()
        self.most = self.level.getManager('path').maxSatMapVal

    def shapesOf(self, map: Any, grid: kaVel.SquareGrid, x: int, z: int) -> list[tuple[Any, ...]]:
        value = grid.getCellValue(x, z).x
        return [square(grid, x, z, onScale(self.scale, value / self.most))] if value > 0.01 * self.most else []

    def state(self) -> str:
        return '%d cells that paths have left a trace in' % self.count

    def tell(self, at: kaVel.Vec4) -> str:
        for _, grid in self._grids():
            cell = grid.getCellFromPoint(at, 0)
            if cell.isValid():
                return '%.1f of %.0f' % (cell.getFloatValue(0), self.most)
        return 'off the grid'


@views.add
class Flow(GridView):
    """Where flows lead."""

    name = 'Flows'
    help = 'Where flows lead what they carry: crowds, smoke, swarms.'
    order = 41
    path = '.MapData_flowGrid/grid'

    def shapesOf(self, map: Any, grid: kaVel.SquareGrid, x: int, z: int) -> list[tuple[Any, ...]]:
        value, at = grid.getCellValue(x, z), grid.getCellWorldCoords(x, z)
        speed = math.hypot(value.x, value.z)
        if speed < 1e-3:
            return []
        long = 0.42 * grid.cellSize / speed * min(speed, 1.0)
        tip = kaVel.Vec4(at.x + value.x * long, at.y + ABOVE, at.z + value.z * long, 1)
        tail = kaVel.Vec4(at.x - value.x * long, at.y + ABOVE, at.z - value.z * long, 1)
        color = vec((0.35, 0.80, 0.95), 0.95)
        head = [('line', tip, kaVel.Vec4(tip.x - (value.x + side * value.z) * long * 0.5, tip.y,
                                         tip.z - (value.z - side * value.x) * long * 0.5, 1), color)
                for side in (-0.7, 0.7)]
        return [('line', tail, tip, color), *head]

    def state(self) -> str:
        return '%d cells flow' % (self.count // 3) if self.count else 'nothing flows in this level'

    def tell(self, at: kaVel.Vec4) -> str:
        for _, grid in self._grids():
            cell = grid.getCellFromPoint(at, 0)
            if cell.isValid():
                value = cell.getValue()
                return 'towards %.2f, %.2f' % (value.x, value.z)
        return 'off the grid'


@views.add
class Contacts(Shown):
    """What touches what."""

    name = 'Contacts'
    help = 'What touches what in this frame: bodies in green, triggers in violet.'
    order = 50
    scale: Scale = ((0.0, (0.30, 0.90, 0.40), 'bodies: they touch'),
                    (1.0, (0.75, 0.45, 0.95), 'triggers: they are touched'))
    #: Frames from one drawing to the next: what touches does so for longer.
    EVERY = 3

    def begin(self) -> None:
        super().begin()
        self.count = 0
        self.volumes: list[Any] = []

    def doFrame(self) -> None:
        super().doFrame()
        if self.frame % 120 == 1:
            self.volumes = [each for map in mapsOf(self.level) for each in kaVel.descendants(map)
                            if each._getType().isSubclassOf(kaVel.Reflection.BoundingVolume)]
            player = playerVolume(self.level)
            self.volumes += [player] if player else []
        if self.frame % self.EVERY == 1:
            self._draw()

    def _draw(self) -> None:
        self.component.clearShapes(self.layer)
        pairs = {frozenset((volume, other)): (volume, other)
                 for volume in self.volumes if volume for other in volume.colliders if other}
        self.count = len(pairs)
        for volume, other in pairs.values():
            color = vec(self.scale[int(volume.trigger or other.trigger)][1], 1.0)
            one, two = (each.parent.getComponent('transform').position for each in (volume, other))
            self.component.addShapeLine(self.layer, one, two, color)
            for each, at in ((volume, one), (other, two)):
                half = each.hitBox
                if max(half.x, half.y, half.z) < 4.0:
                    off = kaVel.Vec4(half.x / 2, half.y / 2, half.z / 2, 0)
                    self.component.addShapeBox(self.layer, at - off, at + off, color)

    def state(self) -> str:
        return '%d pairs touch' % self.count


def playerVolume(level: kaVel.Coordinator) -> Any:
    """The volume of the player; None where nobody plays."""
    player = level.getChild('Player')
    return player.getComponent('boundingVolume') if player else None
