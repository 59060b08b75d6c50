"""The camera of the editor, as scripts meet it: where it is, what it looks at, how it moves."""

from __future__ import annotations

from typing import TYPE_CHECKING

import kaVel
from objects.Placing import Triple

if TYPE_CHECKING:
    import standing as places
    from editor.Editor import Editor

#: How far down a floor is looked for, and how far above a place that begins, metres.
DEEPEST, ABOVE = 100.0, 0.05


class Camera:
    """A thin hand on the component, in metres and degrees."""

    def __init__(self, editor: Editor):
        self._component = editor.component

    def standing(self) -> places.Standing:
        """Where it is, its turn and its pitch, as `goTo` takes them."""
        at = self._component.cameraPlace
        return (at.x, at.y, at.z), self._component.cameraTurn, self._component.cameraPitch

    def goTo(self, at: Triple, turn: float = 0.0, pitch: float = 0.0) -> None:
        """Puts it somewhere, at rest; a positive pitch looks down."""
        self._component.goTo(kaVel.Vec4(*at, 1), turn, pitch)

    @property
    def mode(self) -> str:
        """'fly', or 'walk' at the height of an eye above what lies below."""
        return self._component.cameraMode

    def setMode(self, mode: str) -> None:
        """Has it fly or walk."""
        self._component.cameraMode = mode

    def frame(self) -> None:
        """Goes to where what is selected fills the picture; where nothing is, all that is drawn."""
        self._component.frameSelection()

    def floorBelow(self, at: Triple, ignored: kaVel.Entity | None = None) -> float | None:
        """Height of what is drawn below a place, metres; None for nothing."""
        component = self._component
        met = component.meet(kaVel.Vec4(at[0], at[1] + ABOVE, at[2], 1), kaVel.Vec4(0, -1, 0, 0),
                             ignored or component.parent)
        return met.y if met.w and at[1] - met.y < DEEPEST else None
