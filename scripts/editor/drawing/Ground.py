"""The plane that plans are drawn on: where the mouse points to on it, and what that snaps to."""

from __future__ import annotations

import math
from typing import TYPE_CHECKING, Any, Sequence

import editing
import kaVel
from editor import Keys, Places
from editor.drawing import Walled
from editor.Tools import Tool

if TYPE_CHECKING:
    from editor.Editor import Editor
    from objects.house.Plans import Point

#: How near the mouse has to come to a corner or a wall to snap to it, pixels.
NEAR = 12
#: Of what is being drawn, of what will not do, of what the mouse is at, and of what is written beside it.
COLOR, WRONG = kaVel.Vec4(1, 0.8, 0.25, 1), kaVel.Vec4(1, 0.25, 0.15, 1)
HERE, WORDS = kaVel.Vec4(0.5, 0.95, 1, 1), kaVel.Vec4(1, 1, 0.9, 1)
#: How far above the floor lines are drawn, so that the floor does not swallow them, metres.
ABOVE = 0.02
LEFT, RIGHT = 0, 1


class Ground:
    """The plane of one editor, on the floor that is built on; all tools that draw share it."""

    def __init__(self, editor: Editor):
        self.editor = editor
        self._kept: dict[str, Any] = editing.remembered.setdefault('ground', {'height': 0})
        self._walls: list[Walled.Walled] | None = None

    @property
    def walls(self) -> list[Walled.Walled]:
        """The walls of the level, as they stood when something was edited last."""
        if self._walls is None:
            self._walls = Walled.allOf(self.editor)
        return self._walls

    def forget(self) -> None:
        """Has the walls looked for anew."""
        self._walls = None

    @property
    def height(self) -> float:
        """Of the plane, metres."""
        return self._kept['height']

    @height.setter
    def height(self, value: float):
        self._kept['height'] = Places.tidy(max(-1000.0, min(1000.0, value)))

    def pointed(self, x: int, y: int) -> Point | None:
        """Where a pixel lies on the plane; None above the horizon."""
        place = self.editor.component.placeOnPlane(float(x), float(y), self.height)
        return (place.x, place.z) if place.w else None

    def reach(self, spot: Point) -> float:
        """How many metres are `NEAR` at a place."""
        return NEAR * self.editor.component.metresPerPixel(self.lifted(spot, 0.0))

    def snapped(self, spot: Point, corners: Sequence[Point] = (), after: Point | None = None) -> Point:
        """A place moved to the nearest of some corners and those of the walls, to a wall, or to the grid.

        With Shift held it keeps a whole angle from the place that it comes `after`.
        """
        if after and Keys.held('Shift'):
            return self._atAngle(spot, after)
        near = self.reach(spot)
        walls = [each for each in self.walls if abs(each.floor - self.height) < 0.1]
        ends = [*corners, *(self._flat(each, node) for each in walls for node in each.plan.nodes)]
        end = min(ends, key=lambda corner: math.dist(corner, spot), default=None)
        if end and math.dist(end, spot) < near:
            return end
        for each in walls:
            found = each.nearest(*spot, max(near, each.plan.half))
            if found:
                return self._flat(each, each.plan.walls[found.wall].at(self._step(found.along)))
        place = self.editor.snapped(self.lifted(spot, 0.0))
        return Places.tidy(place.x), Places.tidy(place.z)

    def _atAngle(self, spot: Point, after: Point) -> Point:
        x, z = spot[0] - after[0], spot[1] - after[1]
        step = self.editor.snapping.get('snapAngle')
        angle = math.radians(round(math.degrees(math.atan2(x, z)) / step) * step)
        length = self._step(math.hypot(x, z))
        return Places.tidy(after[0] + length * math.sin(angle)), Places.tidy(after[1] + length * math.cos(angle))

    def _step(self, length: float) -> float:
        step = self.editor.snapping.get('snapStep')
        return round(length / step) * step if self.editor.snapping.get('snapToGrid') else length

    @staticmethod
    def _flat(walled: Walled.Walled, spot: Point) -> Point:
        place = walled.inWorld(spot)
        return Places.tidy(place.x, 4), Places.tidy(place.z, 4)

    def lifted(self, spot: Point, above: float = ABOVE) -> kaVel.Vec4:
        """A place of the plane in the world."""
        return kaVel.Vec4(spot[0], self.height + above, spot[1], 1)


class Drawing(Tool):
    """A tool that draws on the ground, in a layer of its own."""

    layer = 'drawing'

    def __init__(self, editor: Editor):
        super().__init__(editor)
        self.ground = Ground(editor)

    def begin(self) -> None:
        self.ground.forget()

    def selectionChanged(self) -> None:
        self.ground.forget()

    def end(self) -> None:
        self.erase()

    def groundControls(self, bar: Any) -> None:
        """Adds the height of the plane to the tool's bar."""
        def set(value: float):
            self.ground.height = value

        bar.addValue('ground', 'Height of the floor, m', lambda: float(self.ground.height), set)
        bar.setTip('ground', 'What is drawn lies on this level. Alt and a click take it from what is clicked on.')

    def takesHeight(self, kind: str, x: int, y: int, button: int) -> bool:
        """Whether a click with Alt has set the height of the plane."""
        if kind != 'down' or button != LEFT or not Keys.held('Alt'):
            return False
        place = self.editor.component.placeUnder(float(x), float(y))
        if place.w:
            self.ground.height = place.y
            self.editor.message('Drawing at a height of %.2f m' % self.ground.height)
        return True

    # What is drawn

    def erase(self) -> None:
        self.editor.component.clearShapes(self.layer)

    def line(self, one: Point, other: Point, color: kaVel.Vec4 = COLOR) -> None:
        self.editor.component.addShapeLine(self.layer, self.ground.lifted(one), self.ground.lifted(other), color)

    def mark(self, spot: Point, color: kaVel.Vec4 = COLOR) -> None:
        """A small ring about a place, of the same size on the screen wherever it is."""
        place = self.ground.lifted(spot)
        self.editor.component.addShapeCircle(self.layer, place, 0.5 * self.ground.reach(spot), color)

    def write(self, spot: Point, text: str, color: kaVel.Vec4 = WORDS) -> None:
        self.editor.component.addShapeText(self.layer, self.ground.lifted(spot, 0.15), text, color)

    def measured(self, one: Point, other: Point, color: kaVel.Vec4 = COLOR) -> None:
        """A line with its length and the angle that it goes at, 0 for north and 90 for east."""
        self.line(one, other, color)
        x, z = other[0] - one[0], other[1] - one[1]
        length = math.hypot(x, z)
        if length > 0.01:
            middle = (one[0] + other[0]) / 2, (one[1] + other[1]) / 2
            aside = 1.6 * self.ground.reach(middle) / length  # so that the line does not run through it
            self.write((middle[0] + aside * z, middle[1] - aside * x),
                       '%.2f m  %.0f°' % (length, math.degrees(math.atan2(x, z)) % 360))


def choice(bar: Any, name: str, label: str, options: Sequence[str], get: Any, set: Any) -> None:
    """Adds a choice by words to a bar; `get` and `set` take the word."""
    bar.addValue(name, label, lambda: options.index(get()) if get() in options else 0,
                 lambda number: set(options[int(number)]))
    bar.setChoices(name, '\n'.join(options))
