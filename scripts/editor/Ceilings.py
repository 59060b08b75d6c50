"""Rooms seen from above: what lies above the floor that one looks at is not drawn from above its ceiling.

Nothing of the level is changed; light and shadows are those of the closed rooms.
"""

from __future__ import annotations

import math
from typing import TYPE_CHECKING, Any

import editing
import kaVel
from editor.views.Kit import feetOf, playerOf

if TYPE_CHECKING:
    from editor.Editor import Editor

#: How high above its floor a storey is cut: above what stands on it, below most ceilings and lintels; and how far below
#: a lower ceiling, metres.
CUT, BELOW_CEILING = 2.3, 0.05
#: How far above a place a ceiling is looked for, and how far below the camera the floor that it stands above, metres.
HIGHEST, STOREY = 30.0, 4.0
#: Above the floor, where a ceiling is looked for: over what stands there, metres.
OVER_THINGS = 1.9
#: How far ahead a place is looked at, metres.
FARTHEST = 60.0
#: Places of the picture, each way, below which floors are looked for; the most at one, and how thick one is, metres.
RASTER, MOST, THICKEST = 6, 12, 0.3
#: Frames from one look at where the camera is to the next.
EVERY = 4


class Ceilings:
    """Opens the storey of one editor from above, by itself while `hidden` is on."""

    def __init__(self, editor: Editor):
        self._editor = editor
        self._kept: dict[str, Any] = editing.remembered.setdefault('ceilings', {'hidden': True})
        self._floor: float | None = None  # of the storey that is looked into, metres
        self._seen: Any = None
        self._frame = 0

    @property
    def hidden(self) -> bool:
        """Whether ceilings are hidden from who is above them."""
        return self._kept['hidden']

    @property
    def isOpen(self) -> bool:
        """Whether the view is cut off at this moment."""
        return not math.isinf(self._editor.component.cutHeight)

    def switch(self) -> None:
        """Hides ceilings from who is above them, or shows all that there is."""
        self._kept['hidden'] = not self.hidden
        self._seen = None
        self.doFrame(now=True)
        self._editor.message('Ceilings are hidden from above: C shows them' if self.hidden
                             else 'Ceilings are shown: C hides them from above')

    def toStorey(self, by: int) -> None:
        """Looks into the next storey above (1) or below (-1) the one that is looked into."""
        floors = self._floors()
        present = self._storey()
        others = [each for each in floors if (each - present) * by > 0.5]
        if not others:
            self._editor.message('There is no floor %s' % ('above' if by > 0 else 'below'))
            return
        self._floor = min(others, key=lambda each: abs(each - present))
        self._editor.message('The floor at %.2f m is looked into' % self._floor)
        self._seen = None
        self.doFrame(now=True)

    def doFrame(self, now: bool = False) -> None:
        """Follows the camera, once a frame."""
        self._frame += 1
        if not now and self._frame % EVERY:
            return
        standing = self._editor.camera.standing()
        if standing != self._seen:
            self._seen = standing
            self._follow(standing)

    def end(self) -> None:
        """Draws all again."""
        self._editor.component.cutHeight = math.inf
        self._seen = None

    def _follow(self, standing: Any) -> None:
        (x, y, z), _, _ = standing
        was = self.isOpen
        if not self.hidden:
            self._editor.component.cutHeight = math.inf
            return
        floor = self._storey()
        ceiling = self._ceilingAbove(self._lookedAt(floor), floor)
        if ceiling is not None and y > ceiling:
            self._editor.component.cutHeight = min(floor + CUT, ceiling - BELOW_CEILING)
        elif y <= floor + CUT or ceiling is not None:
            self._editor.component.cutHeight = math.inf
            self._stand(self._editor.camera.floorBelow((x, y, z)), floor, y)
        if self.isOpen and not was:
            self._editor.message('Ceilings are hidden while you are above them: C shows them, '
                                 'Ctrl+Page up and Page down go by storeys')

    def _stand(self, below: float | None, floor: float, eye: float) -> None:
        """Goes by the floor below the camera, unless that is a table of the present one."""
        if below is not None and eye - below < STOREY and not floor <= below < floor + OVER_THINGS:
            self._floor = below

    def _storey(self) -> float:
        """Height of the floor that is looked into: the last one that the camera was in, or the player's."""
        if self._floor is None:
            player = playerOf(self._editor.level)
            self._floor = feetOf(player).y if player else 0.0
        return self._floor

    def _lookedAt(self, floor: float) -> tuple[float, float]:
        """Where the middle of the picture meets the floor; below the camera, where it does not."""
        window, component = kaVel.getSystem('WindowSystem2'), self._editor.component
        eye = component.cameraPlace
        at = component.placeOnPlane(window.width / 2, window.height / 2, floor)
        if at.w and math.hypot(at.x - eye.x, at.z - eye.z) < FARTHEST:
            return at.x, at.z
        return eye.x, eye.z

    def _ceilingAbove(self, spot: tuple[float, float], floor: float) -> float | None:
        component = self._editor.component
        met = component.meet(kaVel.Vec4(spot[0], floor + OVER_THINGS, spot[1], 1), kaVel.Vec4(0, 1, 0, 0),
                             component.parent)
        return met.y if met.w and met.y - floor < HIGHEST else None

    def _floors(self) -> list[float]:
        """The floors in the picture and above and below these, from below; a table or step is none."""
        component, window, storey = self._editor.component, kaVel.getSystem('WindowSystem2'), self._storey()
        found = {storey}
        for x in range(1, RASTER):
            for y in range(1, RASTER):
                at = component.placeOnPlane(window.width * x / RASTER, window.height * y / RASTER, storey)
                if at.w and math.dist((at.x, at.z), self._lookedAt(storey)) < FARTHEST:
                    found.update(self._floorsAt((at.x, at.z)))
        floors: list[float] = []
        for each in sorted(found):
            if not floors or each - floors[-1] > OVER_THINGS:
                floors.append(each)
        return floors

    def _floorsAt(self, spot: tuple[float, float]) -> list[float]:
        found, top = [], self._storey() + HIGHEST
        while (below := self._editor.camera.floorBelow((spot[0], top, spot[1]))) is not None and len(found) < MOST:
            if self._ceilingAbove(spot, below) is not None:
                found.append(below)
            top = below - THICKEST
        return found
