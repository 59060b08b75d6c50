"""Rounds and waypoints, point by point; the points of rounds that stand are dragged, added and taken out."""

from __future__ import annotations

import math
from typing import TYPE_CHECKING, Any, NamedTuple

import editing
import kaVel
from editor import Places
from editor.Tools import tools
from editor.drawing.Ground import COLOR, HERE, LEFT, NEAR, choice
from editor.drawing.Lines import Lines
from editor.source.Pieces import Piece

if TYPE_CHECKING:
    from editor.Editor import Editor

ROUND, WAYPOINT = 'a round', 'a waypoint'


class Held(NamedTuple):
    """A point of a round by its number."""

    piece: Piece
    number: int


@tools.add
class DrawRoutes(Lines):
    """Where creatures go."""

    name = 'Paths'
    help = ('Click points of a round and end it with Enter, or click a waypoint. Points of rounds are dragged; Delete, '
            'while pointing at one, takes it out, and Insert adds one behind it.')
    key = 'J'
    order = 23
    layer = 'routes'
    leastClosed = 0

    def __init__(self, editor: Editor):
        super().__init__(editor)
        self._kept: dict[str, Any] = editing.remembered.setdefault('routes', {'draws': ROUND})
        self._held: Held | None = None
        self._over: Held | None = None

    def controls(self, bar: Any) -> None:
        self.groundControls(bar)
        choice(bar, 'draws', 'Draws', (ROUND, WAYPOINT), lambda: self._kept['draws'],
               lambda value: self._kept.update(draws=value))

    def begin(self) -> None:
        super().begin()
        self.draw()

    def selectionChanged(self) -> None:
        super().selectionChanged()
        self._held = self._over = None
        self.draw()

    def pointer(self, kind: str, x: int, y: int, button: int) -> bool:
        if not self.corners and kind in ('down', 'move') and not self._held:
            self._over = self._pointAt(x, y)
        if kind == 'down' and button == LEFT and not self.corners and self._over:
            self._held = self._over
            return True
        if self._held:
            return self._drag(kind, x, y, button)
        if kind == 'up' and button == LEFT and self._kept['draws'] == WAYPOINT and self.corners:
            self.editor.attempt(self._standWaypoint)
            return True
        return super().pointer(kind, x, y, button)

    def _drag(self, kind: str, x: int, y: int, button: int) -> bool:
        if kind == 'move':
            self._point(x, y)
        elif kind == 'up' and button == LEFT:
            held, self._held = self._held, None
            if held and self.here is not None:
                points = list(held.piece.arguments['points'])
                points[held.number] = (self.here[0], points[held.number][1], self.here[1])
                self.editor.attempt(lambda: self._change(held.piece, points, 'Move a point of'))
        return True

    def pressed(self, key: str) -> bool:
        if key == 'Escape' and self._held:
            self._held = None
            self.draw()
            return True
        if key in ('Delete', 'Insert') and self._over and not self.corners:
            over = self._over
            self.editor.attempt(lambda: self._takeOut(over) if key == 'Delete' else self._insert(over))
            return True
        return super().pressed(key)

    def _takeOut(self, over: Held) -> None:
        points = list(over.piece.arguments['points'])
        del points[over.number]
        self._change(over.piece, points, 'Take a point out of')

    def _insert(self, over: Held) -> None:
        points = list(over.piece.arguments['points'])
        here, after = points[over.number], points[(over.number + 1) % len(points)]
        points.insert(over.number + 1, Places.metres((a + b) / 2 for a, b in zip(here, after)))
        self._change(over.piece, points, 'Add a point to')

    def _change(self, piece: Piece, points: list[Any], label: str) -> None:
        with self.editor.edits.step('%s %s' % (label, piece.name)):
            self.editor.edits.change(piece, points=tuple(points))

    def finish(self, closed: bool) -> None:
        height = self.ground.height
        points = tuple((x, height, z) for x, z in self.corners)
        self.editor.attempt(lambda: self.editor.add('PatrolRoute', points=points))

    def _standWaypoint(self) -> None:
        x, z = self.corners[0]
        self.drop()
        self.editor.add('Waypoint', at=(x, self.ground.height, z))

    # What stands

    def _routes(self) -> list[Piece]:
        return [piece for piece in self.editor.pieces.all()
                if piece.patternName == 'PatrolRoute' and not piece.hidden]

    def _pointAt(self, x: int, y: int) -> Held | None:
        """The point of a round under the mouse."""
        for piece in self._routes():
            for number, point in enumerate(piece.arguments['points']):
                seen = self.editor.component.toScreen(kaVel.Vec4(*point, 1))
                if seen.w and math.hypot(seen.x - x, seen.y - y) < NEAR and not piece.locked:
                    return Held(piece, number)
        return None

    def draw(self) -> None:
        super().draw()
        component = self.editor.component
        for piece in self._routes():
            places = [kaVel.Vec4(x, y + 0.03, z, 1) for x, y, z in piece.arguments['points']]
            if self._held and self._held.piece is piece and self.here is not None:
                places[self._held.number] = self.ground.lifted(self.here)
            for one, other in zip(places, [*places[1:], places[0]]):
                component.addShapeLine(self.layer, one, other, COLOR)
            for number, place in enumerate(places):
                isOver = self._over == Held(piece, number)
                component.addShapeCircle(self.layer, place, 0.12, HERE if isOver else COLOR)
                component.addShapeText(self.layer, place + kaVel.Vec4(0, 0.2, 0, 0),
                                       piece.name if number == 0 else str(number), COLOR)
