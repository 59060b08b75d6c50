"""Moving, turning and scaling what is selected by handles."""

from __future__ import annotations

import kaVel
from editor import Places
from editor.edits.Refused import Refused
from editor.source.Pieces import Piece
from editor.Tools import Tool, tools
from objects.Placing import Triple


class _Handles(Tool):
    """Shows handles at what is selected.

    While a hand drags, the component moves the pieces as they stand; then their arguments are changed once. Where that
    is refused, they stand as before.
    """

    gizmo = ''

    def begin(self) -> None:
        component = self.editor.component
        self._way: tuple[kaVel.Vec4, float, kaVel.Vec4] | None = None
        self._pieces: list[Piece] = []
        component.setDragBegan(lambda: self.editor.attempt(self._began))
        component.setDragged(self._dragged)
        component.setDragEnded(lambda kept: self.editor.attempt(lambda: self._ended(kept)))
        self.selectionChanged()

    def end(self) -> None:
        if self.editor.component.dragging:
            self.editor.component.cancelDrag()
        self.editor.component.gizmo = 'none'

    def selectionChanged(self) -> None:
        component = self.editor.component
        if component.dragging:
            return
        places = [place for each in self.editor.selected() if (place := Places.placeOf(each.arguments))]
        component.gizmo = self.gizmo if places else 'none'
        if places:
            component.gizmoPlace = kaVel.Vec4(*Places.middle(places), 1)

    def pressed(self, key: str) -> bool:
        if key == 'Escape' and self.editor.component.dragging:
            self.editor.component.cancelDrag()
            return True
        return False

    def canBegin(self, pieces: list[Piece]) -> None:
        """Raises Refused where the pieces cannot be dragged that way."""

    def apply(self, moved: kaVel.Vec4, turned: float, scaled: kaVel.Vec4) -> None:
        """Makes of what was dragged the arguments of what is selected."""
        raise NotImplementedError

    def _began(self) -> None:
        self._way = None
        try:
            self._pieces = self.editor.commands.movable()
            if len(self._pieces) < len(self.editor.selected()):
                raise Refused('Some of it is locked: Alt+L unlocks all')
            self.canBegin(self._pieces)
        except Refused:
            self.editor.component.cancelDrag()
            raise

    def _dragged(self, moved: kaVel.Vec4, turned: float, scaled: kaVel.Vec4) -> None:
        self._way = moved, turned, scaled

    def _ended(self, kept: bool) -> None:
        if kept and self._way:
            try:
                self.apply(*self._way)
            except Exception:
                for piece in self._pieces:
                    piece.stand.restore()
                raise
        self.selectionChanged()


@tools.add
class Move(_Handles):
    """Along axes and planes."""

    name = 'Move'
    help = 'Drag an arrow, a plane or the middle. Ctrl turns snapping round, Escape takes the drag back.'
    key = 'W'
    order = 1
    gizmo = 'move'

    def apply(self, moved: kaVel.Vec4, turned: float, scaled: kaVel.Vec4) -> None:
        self.editor.commands.move((moved.x, moved.y, moved.z))


@tools.add
class Turn(_Handles):
    """About an axis."""

    name = 'Turn'
    help = 'Drag a ring: the level one turns, the others tilt what can be tilted. Escape takes the drag back.'
    key = 'E'
    order = 2
    gizmo = 'turn'

    def apply(self, moved: kaVel.Vec4, turned: float, scaled: kaVel.Vec4) -> None:
        component = self.editor.component
        axis, pivot = component.dragAxis, component.dragPivot
        self.editor.commands.turn(turned, (pivot.x, pivot.y, pivot.z), (axis.x, axis.y, axis.z))


@tools.add
class Scale(_Handles):
    """Along axes."""

    name = 'Scale'
    help = 'Drag a cube, the middle one for all axes. Escape takes the drag back.'
    key = 'R'
    order = 3
    gizmo = 'scale'

    def canBegin(self, pieces: list[Piece]) -> None:
        for piece in pieces:
            if not Places.isScalable(piece.arguments):
                raise Refused('%s has a size that its pattern gives' % piece.name)

    def apply(self, moved: kaVel.Vec4, turned: float, scaled: kaVel.Vec4) -> None:
        factors: Triple = (scaled.x, scaled.y, scaled.z)
        self.editor.commands.scale(factors)
