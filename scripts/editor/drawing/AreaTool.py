"""Areas and volumes, drawn as rectangles by dragging or as outlines corner by corner."""

from __future__ import annotations

import importlib
from typing import TYPE_CHECKING, Any, NamedTuple, Sequence

import editing
import kaVel
from editor import Keys, Places
from editor.drawing.Ground import HERE, LEFT, choice
from editor.drawing.Lines import Lines
from editor.Tools import tools

if TYPE_CHECKING:
    from editor.Editor import Editor
    from objects.house.Plans import Point

#: A rectangle is at least so large, metres: less is a click.
LEAST = 0.1


class Kind(NamedTuple):
    """What is drawn: how its pattern takes an area, and how high it is at first, metres; 0 for what is flat."""

    takes: str  # 'outline', 'floor' for a size of x and z, or 'box' for one of x, y and z
    height: float = 0.0


#: By the names of patterns.
KINDS = {'FloorArea': Kind('outline'), 'CeilingArea': Kind('outline', 3.0), 'TriggerArea': Kind('floor'),
         'SafePlace': Kind('floor'), 'Exit': Kind('floor'), 'ReverbZone': Kind('box', 3.0),
         'ForceVolume': Kind('box', 3.0), 'Block': Kind('box', 1.0)}


@tools.add
class DrawAreas(Lines):
    """Floors, ceilings, triggers, winds and rooms for the ear."""

    name = 'Areas'
    help = ('Drag a rectangle for a floor, a ceiling, a trigger, a wind or a room for the ear. With a click floors '
            'and ceilings are drawn corner by corner; Enter ends them, Escape drops them.')
    key = 'M'
    order = 22
    layer = 'areas'
    least = 3

    def __init__(self, editor: Editor):
        super().__init__(editor)
        self._kept: dict[str, Any] = editing.remembered.setdefault('areas', {'pattern': 'FloorArea', 'height': 3.0})
        self._from: Point | None = None

    @property
    def _kind(self) -> Kind:
        return KINDS[self._kept['pattern']]

    def controls(self, bar: Any) -> None:
        self.groundControls(bar)
        choice(bar, 'pattern', 'Draws', tuple(KINDS), lambda: self._kept['pattern'], self._setPattern)
        bar.addValue('height', 'Height, m', lambda: float(self._kept['height']), self._setHeight)
        bar.setTip('height', 'Of a ceiling above the floor, and of a volume; what is flat has none.')

    def _setPattern(self, pattern: str) -> None:
        self.drop()
        self._kept.update(pattern=pattern, height=KINDS[pattern].height or self._kept['height'])

    def _setHeight(self, height: float) -> None:
        self._kept['height'] = Places.tidy(min(max(height, 0.05), 100.0))

    def drop(self) -> None:
        self._from = None
        super().drop()

    def pointer(self, kind: str, x: int, y: int, button: int) -> bool:
        if self.corners or Keys.held('Alt'):
            return super().pointer(kind, x, y, button)
        if kind == 'down' and button == LEFT:
            self._point(x, y)
            self._from = self.here
            return True
        if kind == 'up' and button == LEFT and self._from:
            self._point(x, y)
            self.editor.attempt(self._let)
            return True
        return super().pointer(kind, x, y, button)

    def pressed(self, key: str) -> bool:
        if key == 'Escape' and self._from:
            self.drop()
            return True
        return super().pressed(key)

    def _let(self) -> None:
        """Ends a rectangle, or begins an outline where the mouse has not moved."""
        begin, end, self._from = self._from, self.here, None
        if begin is None or end is None:
            return
        if min(abs(begin[0] - end[0]), abs(begin[1] - end[1])) >= LEAST:
            self._make(_rectangle(begin, end))
            self.drop()
        elif self._kind.takes == 'outline':
            self.corners = [begin]
            self.draw()
        else:
            self.editor.message('Drag a rectangle: a %s is one' % self._kept['pattern'])

    def trouble(self, corners: list[Point], closed: bool) -> str:
        if len(corners) < 3:
            return ''
        try:
            importlib.import_module('objects.house.Plans').checkedOutline(corners, 'the outline')
        except ValueError as error:
            return str(error)
        return ''

    def finish(self, closed: bool) -> None:
        self.editor.attempt(lambda: self._make(self.corners))

    def _make(self, corners: Sequence[Point]) -> None:
        outline = importlib.import_module('objects.house.Plans').checkedOutline(corners, 'the outline')
        (x0, z0), (x1, z1) = ([pick(corner[axis] for corner in outline) for axis in (0, 1)] for pick in (min, max))
        kind, pattern, floor = self._kind, self._kept['pattern'], self.ground.height
        x, z = Places.tidy((x0 + x1) / 2), Places.tidy((z0 + z1) / 2)
        wide, deep = Places.tidy(x1 - x0), Places.tidy(z1 - z0)
        if kind.takes == 'outline':
            around = tuple((Places.tidy(a - x), Places.tidy(b - z)) for a, b in outline)
            height = floor + self._kept['height'] if kind.height else floor
            self.editor.add(pattern, outline=around, at=(x, Places.tidy(height), z))
        else:
            size = (wide, deep) if kind.takes == 'floor' else (wide, self._kept['height'], deep)
            self.editor.add(pattern, size=size, at=(x, floor, z))

    def draw(self) -> None:
        super().draw()
        if not self._from or self.here is None:
            return
        corners = _rectangle(self._from, self.here)
        for one, other in zip(corners, [*corners[1:], corners[0]]):
            self.measured(one, other, HERE)
        if self._kind.height:
            low, high = self.ground.lifted(corners[0], 0.0), self.ground.lifted(corners[2], self._kept['height'])
            self.editor.component.addShapeBox(self.layer, low, high, HERE)
        self.editor.component.addShapeArea(self.layer, self.ground.lifted(corners[0]), self.ground.lifted(corners[2]),
                                           kaVel.Vec4(0.5, 0.95, 1, 0.15))


def _rectangle(one: Point, other: Point) -> list[Point]:
    (x0, x1), (z0, z1) = sorted((one[0], other[0])), sorted((one[1], other[1]))
    return [(x0, z0), (x1, z0), (x1, z1), (x0, z1)]
