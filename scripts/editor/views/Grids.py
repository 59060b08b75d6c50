"""The grids of a map: what can be walked on, where flows lead, where paths crowd."""

from __future__ import annotations

import math
from typing import Any, Iterator

import kaVel
from editor.Views import views
from editor.views.Kit import ABOVE, Color, Scale, Shown, feetOf, mapsOf, onScale, playerOf, vec

#: Cells that are looked at in a frame.
CELLS = 700
#: Metres from which on a volume is a wall or a floor: its box is not drawn, and it is touched where that is nearest.
LARGE = 4.0
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
            self.prepare(grid)
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

    def prepare(self, grid: kaVel.SquareGrid) -> None:
        """A grid is about to be drawn."""

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
        (0.0, (0.20, 0.65, 0.30), 'room for all: for bodies up to 0.7 m across'),
        (0.25, (0.80, 0.75, 0.20), 'slim: room for slimmer bodies alone'),
        (0.4, (0.35, 0.38, 0.45), 'cut off: free, and nobody gets there from where the player is'),
        (0.5, (0.95, 0.50, 0.15), 'solid: a wall or a thing stands there'),
        (1.0, (0.85, 0.15, 0.15), 'blocked: by cells that the level has blocked'),
    )

    def begin(self) -> None:
        super().begin()
        self.reached: dict[kaVel.SquareGrid, set[int] | None] = {}

    def prepare(self, grid: kaVel.SquareGrid) -> None:
        self.reached[grid] = self._reachedIn(grid)

    def _reachedIn(self, grid: kaVel.SquareGrid) -> set[int] | None:
        """Numbers of the cells that one gets to from the player; None where no player stands on the grid."""
        player = playerOf(self.level)
        begin = grid.getCellFromPoint(feetOf(player), 0) if player else None
        if not begin or not begin.isValid():
            return None
        columns, rows = grid.gridCols, grid.gridRows
        found = {begin.z * columns + begin.x}
        waiting = list(found)
        for number in waiting:
            x, z = number % columns, number // columns
            for besideX, besideZ in ((x - 1, z), (x + 1, z), (x, z - 1), (x, z + 1)):
                beside = besideZ * columns + besideX
                if 0 <= besideX < columns and 0 <= besideZ < rows and beside not in found \
                        and not grid.getCellValue(besideX, besideZ).x:
                    found.add(beside)
                    waiting.append(beside)
        return found

    def valueOf(self, map: Any, grid: kaVel.SquareGrid, x: int, z: int) -> float:
        """Where a cell stands on the scale."""
        value = grid.getCellValue(x, z).x
        reached = self.reached.get(grid)
        if not value and reached is not None and z * grid.gridCols + x not in reached:
            return 0.4
        ways = map.getComponent('walkways')
        if not value and ways and not ways.hasRoom(grid.getCell(x, z), self.BROAD):
            return 0.25
        return min(value, 1.0)

    def shapesOf(self, map: Any, grid: kaVel.SquareGrid, x: int, z: int) -> list[tuple[Any, ...]]:
        return [square(grid, x, z, onScale(self.scale, self.valueOf(map, grid, x, z)))]

    def state(self) -> str:
        return '%d cells' % self.count if self.count else 'no map of this level has a path grid'

    def tell(self, at: kaVel.Vec4) -> str:
        for map, grid in self._grids():
            cell = grid.getCellFromPoint(at, 0)
            if cell.isValid():
                value = self.valueOf(map, grid, cell.x, cell.z)
                words = next(words for least, _, words in reversed(self.scale) if value >= least)
                return 'cell %d, %d: %s' % (cell.x, cell.z, words.partition(':')[0])
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
        return ('%d cells that paths have left a trace in' % self.count if self.count else
                'no path has left a trace: those do that are asked for with `saturation`')

    def tell(self, at: kaVel.Vec4) -> str:
        for _, grid in self._grids():
            cell = grid.getCellFromPoint(at, 0)
            if cell.isValid():
                return '%.1f of the %.0f that a path leaves' % (cell.getFloatValue(0), self.most)
        return 'off the grid'


def compass(x: float, z: float) -> str:
    """The name of a direction over the ground, to an eighth of a turn."""
    names = ('north', 'north-east', 'east', 'south-east', 'south', 'south-west', 'west', 'north-west')
    return names[round(math.degrees(math.atan2(x, z)) / 45) % 8]


@views.add
class Flow(GridView):
    """Where flows lead."""

    name = 'Flows'
    help = 'Where flows lead what they carry: crowds, smoke, swarms.'
    order = 41
    path = '.MapData_flowGrid/grid'
    scale: Scale = ((0.0, (0.35, 0.80, 0.95), 'the longer: the faster; full speed is as long as a cell'),)

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
                speed = math.hypot(value.x, value.z)
                way = 'towards %s, %.2f of full speed' % (compass(value.x, value.z), speed)
                return way if speed > 1e-3 else 'still'
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
            boxes = [_boxOf(volume), _boxOf(other)]
            self.component.addShapeLine(self.layer, _nearestIn(boxes[0], _middle(boxes[1])),
                                        _nearestIn(boxes[1], _middle(boxes[0])), color)
            for low, high in boxes:
                if max(high.x - low.x, high.y - low.y, high.z - low.z) < LARGE:
                    self.component.addShapeBox(self.layer, low, high, color)

    def state(self) -> str:
        return '%d pairs touch' % self.count


def _boxOf(volume: Any) -> tuple[kaVel.Vec4, kaVel.Vec4]:
    at, box = volume.parent.getComponent('transform').position, volume.hitBox
    off = kaVel.Vec4(box.x / 2, box.y / 2, box.z / 2, 0)
    return at - off, at + off


def _middle(box: tuple[kaVel.Vec4, kaVel.Vec4]) -> kaVel.Vec4:
    return (box[0] + box[1]) * 0.5


def _nearestIn(box: tuple[kaVel.Vec4, kaVel.Vec4], to: kaVel.Vec4) -> kaVel.Vec4:
    """The place of a large box that is nearest to another one's middle; the middle of one that is drawn itself."""
    low, high = box
    if max(high.x - low.x, high.y - low.y, high.z - low.z) < LARGE:
        return _middle(box)
    return kaVel.Vec4(min(max(to.x, low.x), high.x), min(max(to.y, low.y), high.y), min(max(to.z, low.z), high.z), 1)


def playerVolume(level: kaVel.Coordinator) -> Any:
    """The volume of the player; None where nobody plays."""
    player = level.getChild('Player')
    return player.getComponent('boundingVolume') if player else None
