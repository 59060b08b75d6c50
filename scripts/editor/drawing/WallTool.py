"""Drawing walls as a plan: a line that closes makes a room, one that leads on from walls becomes a part of them."""

from __future__ import annotations

import importlib
from typing import TYPE_CHECKING, Any, Sequence

import editing
import kaVel
from editor import Places
from editor.drawing import Walled
from editor.drawing.Ground import choice
from editor.drawing.Lines import Lines
from editor.Tools import tools

if TYPE_CHECKING:
    from editor.Editor import Editor
    from objects.house.Plans import Point

#: Of the faces of a wall that is being drawn.
FACE = kaVel.Vec4(0.9, 0.9, 0.85, 0.8)
#: What a closed line makes.
ROOM, WALLS = 'a room', 'walls alone'
#: What can be set of walls, in the order of the bar: parameter, label, and what it is at first.
SETTINGS: tuple[tuple[str, str, Any], ...] = (
    ('height', 'Height, m', 3.0), ('thick', 'Thickness, m', 0.2), ('inside', 'Inside', 'wallpaper'),
    ('outside', 'Outside', 'brick'))


@tools.add
class DrawWalls(Lines):
    """Corner by corner."""

    name = 'Walls'
    help = ('Click corners, the first one again for a room; Enter ends an open wall, Backspace takes a corner back. '
            'Shift keeps whole angles. A wall that leads on from others becomes a part of them.')
    key = 'B'
    order = 20

    def __init__(self, editor: Editor):
        super().__init__(editor)
        self._kept: dict[str, Any] = editing.remembered.setdefault(
            'walls', {'closing': ROOM, **{name: value for name, _, value in SETTINGS}})

    def controls(self, bar: Any) -> None:
        self.groundControls(bar)
        choice(bar, 'closing', 'A closed line makes', (ROOM, WALLS), lambda: self._kept['closing'],
               lambda value: self._keep('closing', value))
        for name, label, _ in SETTINGS:
            bar.addValue(name, label, lambda name=name: self._kept[name],
                         lambda value, name=name: self._keep(name, value))
        bar.setRange('height', 0.2, 20.0)
        bar.setRange('thick', 0.02, 2.0)

    def _keep(self, name: str, value: Any) -> None:
        self._kept[name] = Places.tidy(value) if isinstance(value, float) else value

    def trouble(self, corners: list[Point], closed: bool) -> str:
        plans = importlib.import_module('objects.house.Plans')
        try:
            plans.Plan([[*corners, corners[0]] if closed else corners], self._kept['height'], self._kept['thick'])
        except ValueError as error:
            return str(error)
        return ''

    def draw(self) -> None:
        """Shows both faces of the walls, too."""
        super().draw()
        corners = [*self.corners, *([self.here] if self.here is not None else [])]
        closes = len(corners) > 3 and corners[0] == corners[-1]
        if len(corners) < 2 or self.trouble(corners[:-1] if closes else corners, closes):
            return
        plans = importlib.import_module('objects.house.Plans')
        plan = plans.Plan([corners], self._kept['height'], self._kept['thick'])
        for number in range(len(plan.edges)):
            for one, other in plan.ends(number):
                self.line(one, other, FACE)

    def finish(self, closed: bool) -> None:
        self.editor.attempt(lambda: self._close() if closed else self._lead())

    def _arguments(self) -> dict[str, Any]:
        """What differs from what is usual."""
        return {name: self._kept[name] for name, _, usual in SETTINGS if self._kept[name] != usual}

    def _close(self) -> None:
        plans = importlib.import_module('objects.house.Plans')
        corners = plans.checkedOutline(self.corners, 'the line')
        middle = _middle(corners)
        at = (*middle[:1], self.ground.height, *middle[1:])
        around = _around(corners, middle)
        if self._kept['closing'] == WALLS:
            self.editor.add('Walls', plan=((*around, around[0]),), at=at, **self._arguments())
        elif _isRectangle(around):
            size = (Places.tidy(max(x for x, _ in around) * 2), Places.tidy(max(z for _, z in around) * 2))
            self.editor.add('Room', size=size, at=at, **self._arguments())
        else:
            self.editor.add('Room', outline=tuple(around), at=at, **self._arguments())

    def _lead(self) -> None:
        """Adds an open line to the walls that it ends on, or makes walls of it."""
        for each in self.ground.walls:
            line = tuple((Places.tidy(x), Places.tidy(z)) for x, z in (each.inPlan(*spot) for spot in self.corners))
            if abs(each.floor - self.ground.height) > 0.1 or not (each.touches(line[0]) or each.touches(line[-1])):
                continue
            if each.piece.patternName == 'Room' and not all(map(each.holds, line)):
                continue
            name = Walled.LINES[each.piece.patternName]
            with self.editor.edits.step('Draw walls into %s' % each.piece.name):
                self.editor.edits.change(each.piece, **{name: (*each.arguments[name], line)})
            self.editor.select([each.piece])
            return
        x, z = self.corners[0]
        self.editor.add('Walls', plan=(_around(self.corners, (x, z)),), at=(x, self.ground.height, z),
                        **self._arguments())


def _middle(corners: Sequence[Point]) -> Point:
    (x0, z0), (x1, z1) = ([pick(corner[axis] for corner in corners) for axis in (0, 1)] for pick in (min, max))
    return Places.tidy((x0 + x1) / 2), Places.tidy((z0 + z1) / 2)


def _around(corners: Sequence[Point], middle: Point) -> tuple[Point, ...]:
    return tuple((Places.tidy(x - middle[0]), Places.tidy(z - middle[1])) for x, z in corners)


def _isRectangle(around: Sequence[Point]) -> bool:
    """Whether corners about their middle are those of a rectangle along the axes."""
    return len(around) == 4 and all(abs(abs(x) - abs(around[0][0])) < 0.002 and abs(abs(z) - abs(around[0][1])) < 0.002
                                    for x, z in around) and len({(x > 0, z > 0) for x, z in around}) == 4
