"""A tool that draws a line of corners, click by click: what walls, areas and rounds have in common."""

from __future__ import annotations

import math
from typing import TYPE_CHECKING

from editor.drawing.Ground import HERE, LEFT, RIGHT, WRONG, Drawing

if TYPE_CHECKING:
    from editor.Editor import Editor
    from objects.house.Plans import Point


class Lines(Drawing):
    """Clicks set corners; Enter, or a double click, ends the line, Escape drops it, Backspace takes a corner back.

    A click on the first corner closes the line.
    """

    #: How many corners a line needs, and a closed one; 0 for a line that cannot be closed.
    least, leastClosed = 2, 3

    def __init__(self, editor: Editor):
        super().__init__(editor)
        self.corners: list[Point] = []
        self.here: Point | None = None

    def finish(self, closed: bool) -> None:
        """Makes something of the corners."""
        raise NotImplementedError

    def trouble(self, corners: list[Point], closed: bool) -> str:
        """Why nothing can be made of these corners; empty for none."""
        return ''

    def end(self) -> None:
        self.drop()

    def drop(self) -> None:
        """Leaves off what was begun."""
        self.corners, self.here = [], None
        self.erase()

    def pointer(self, kind: str, x: int, y: int, button: int) -> bool:
        if self.takesHeight(kind, x, y, button):
            return True
        if kind == 'move':
            self._point(x, y)
            return True
        if kind == 'down' and button == LEFT:
            self._point(x, y)
            self._click()
            return True
        if kind == 'down' and button == RIGHT and self.corners:
            self.pressed('Backspace')
            return True
        if kind == 'double' and button == LEFT:
            self._end(False)
            return True
        return kind == 'up' and button == LEFT

    def pressed(self, key: str) -> bool:
        if not self.corners:
            return False
        if key == 'Enter':
            self._end(False)
        elif key == 'Escape':
            self.drop()
        elif key == 'Backspace':
            self.corners.pop()
            self.draw()
        else:
            return False
        return True

    def _point(self, x: int, y: int) -> None:
        spot = self.ground.pointed(x, y)
        after = self.corners[-1] if self.corners else None
        self.here = self.ground.snapped(spot, self.corners[:1], after) if spot else None
        self.draw()

    def _click(self) -> None:
        if self.here is None:
            self.editor.message('There is no floor under the mouse: point below the horizon')
        elif self.corners and self.here == self.corners[0] and self.leastClosed:
            self._end(True)
        elif not self.corners or math.dist(self.here, self.corners[-1]) > 0.01:
            self.corners.append(self.here)
            self.draw()

    def _end(self, closed: bool) -> None:
        corners = self.corners
        if len(corners) < (self.leastClosed if closed else self.least):
            return
        trouble = self.trouble(corners, closed)
        if trouble:
            self.editor.message(trouble)  # and the corners stay, for one to be taken back
            return
        self.finish(closed)
        self.drop()

    def draw(self) -> None:
        """Shows what stands so far, and what the next click would add."""
        self.erase()
        for one, other in zip(self.corners, self.corners[1:]):
            self.line(one, other)
        for corner in self.corners:
            self.mark(corner)
        if self.here is None:
            return
        self.mark(self.here, HERE)
        if self.corners:
            closes = bool(self.leastClosed) and self.here == self.corners[0] and len(self.corners) > 1
            wrong = self.trouble(self.corners if closes else [*self.corners, self.here], closes)
            self.measured(self.corners[-1], self.here, WRONG if wrong else HERE)
            if wrong:
                below = self.here[0], self.here[1] - 2 * self.ground.reach(self.here)
                self.write(below, wrong.partition(':')[0], WRONG)
