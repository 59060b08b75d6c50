"""What moved things snap to: a grid, steps of an angle, surfaces, neighbours. Kept from level to level."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

import editing
import kaVel
from editor import Places

if TYPE_CHECKING:
    from editor.Editor import Editor

#: What is set at first: metres, degrees, and what is on.
USUAL: dict[str, Any] = {'snapStep': 0.25, 'snapAngle': 15.0, 'snapToGrid': True, 'snapToSurfaces': True,
                         'snapToNeighbours': False, 'space': 'world'}
#: Bounds of a step, metres, and of an angle, degrees.
STEPS, ANGLES = (0.001, 10.0), (0.1, 180.0)


class Snapping:
    """The switches of one editor; its component's handles follow them."""

    def __init__(self, editor: Editor):
        self._editor = editor
        self._kept: dict[str, Any] = editing.remembered.setdefault('snapping', dict(USUAL))
        self._give()

    def get(self, name: str) -> Any:
        """A switch or a number by its name in USUAL."""
        return self._kept[name]

    def set(self, name: str, value: Any) -> None:
        """Sets a switch or a number; steps are kept within their bounds."""
        if name == 'snapStep':
            value = min(max(float(value), STEPS[0]), STEPS[1])
        if name == 'snapAngle':
            value = min(max(float(value), ANGLES[0]), ANGLES[1])
        self._kept[name] = value
        self._give()

    def switchSpace(self) -> None:
        """Handles along the axes of the world, or of what is selected."""
        self.set('space', 'local' if self.get('space') == 'world' else 'world')

    def switchGrid(self) -> None:
        """Snapping to the grid on or off."""
        self.set('snapToGrid', not self.get('snapToGrid'))

    def onGrid(self, place: kaVel.Vec4) -> kaVel.Vec4:
        """A place moved to the nearest point of the grid in the plane, while that is on."""
        step = self.get('snapStep')
        if not self.get('snapToGrid'):
            return place
        x, z = (Places.tidy(round(each / step) * step) for each in (place.x, place.z))
        return kaVel.Vec4(x, place.y, z, 1)

    def angle(self, degrees: float) -> float:
        """An angle in whole steps, while snapping to the grid is on."""
        step = self.get('snapAngle')
        return round(degrees / step) * step if self.get('snapToGrid') else degrees

    def _give(self) -> None:
        component = self._editor.component
        for name in ('snapStep', 'snapAngle', 'snapToGrid', 'snapToSurfaces', 'snapToNeighbours'):
            setattr(component, name, self._kept[name])
        component.gizmoSpace = self._kept['space']
