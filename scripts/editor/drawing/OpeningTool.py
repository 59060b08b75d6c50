"""Doors, windows, arches and holes: they are put into a wall by pointing at it, slid along it, and taken out."""

from __future__ import annotations

import importlib
from typing import TYPE_CHECKING, Any, NamedTuple

import editing
import kaVel
from editor import Places
from editor.drawing import Walled
from editor.drawing.Ground import COLOR, HERE, LEFT, WRONG, Drawing, choice
from editor.Tools import tools

if TYPE_CHECKING:
    from editor.Editor import Editor
    from objects.house.Plans import Opening

#: What can be cut; the first one is an opening with a door's leaf.
KINDS = ('door with a leaf', 'door', 'window', 'arch', 'hole')
#: How far from a wall's face the mouse may be, and how far before it lines are drawn, metres.
NEAR, BEFORE = 0.12, 0.015


class Held(NamedTuple):
    """An opening that is being slid: its number in the piece, and how far from its middle it was taken."""

    walled: Walled.Walled
    number: int
    off: float


@tools.add
class CutOpenings(Drawing):
    """Into walls that stand."""

    name = 'Openings'
    help = ('Point at a wall and click to cut a door, a window, an arch or a hole. Drag one along its wall; Delete, '
            'while pointing at it, closes it.')
    key = 'N'
    order = 21
    layer = 'openings'

    def __init__(self, editor: Editor):
        super().__init__(editor)
        self._kept: dict[str, Any] = editing.remembered.setdefault(
            'openings', {'kind': KINDS[0], 'width': 0.0, 'height': 0.0, 'sill': 0.0, 'key': ''})
        self._spot: Walled.Spot | None = None
        self._held: Held | None = None

    # The bar

    def controls(self, bar: Any) -> None:
        choice(bar, 'kind', 'Cuts', KINDS, lambda: self._kept['kind'], self._setKind)
        for name, label in (('width', 'Width, m (0: usual)'), ('height', 'Height, m (0: usual)'),
                            ('sill', 'Sill, m (0: usual)')):
            bar.addValue(name, label, lambda name=name: float(self._kept[name]),
                         lambda value, name=name: self._keep(name, Places.tidy(max(0.0, value))))
        bar.addValue('key', 'Key of a leaf, or none', lambda: self._kept['key'],
                     lambda value: self._keep('key', value.strip()))

    def _keep(self, name: str, value: Any) -> None:
        self._kept[name] = value

    def _setKind(self, kind: str) -> None:
        self._kept.update(kind=kind, width=0.0, height=0.0, sill=0.0)

    # The mouse

    def begin(self) -> None:
        super().begin()
        self._spot = self._held = None

    def selectionChanged(self) -> None:
        super().selectionChanged()
        self._spot = self._held = None
        self.erase()

    def pointer(self, kind: str, x: int, y: int, button: int) -> bool:
        if kind == 'move':
            if not self._held:
                self._spot = self._at(x, y)
            elif spot := self._at(x, y):
                if spot.walled.piece is self._held.walled.piece:
                    self._spot = spot
            self._draw()
            return True
        if kind == 'down' and button == LEFT:
            self._spot = self._at(x, y)
            self.editor.attempt(self._press)
            return True
        if kind == 'up' and button == LEFT:
            self.editor.attempt(self._release)
            return True
        return kind == 'double' and button == LEFT

    def pressed(self, key: str) -> bool:
        if key == 'Escape' and self._held:
            self._held = None
            self._draw()
            return True
        if key in ('Delete', 'Backspace') and self._spot:
            self.editor.attempt(self._close)
            return True
        return False

    def _at(self, x: int, y: int) -> Walled.Spot | None:
        """The place at a wall that a pixel shows."""
        component = self.editor.component
        place = component.placeUnder(float(x), float(y))
        entity = component.entityUnder
        piece = self.editor.pieces.pieceOf(entity) if place.w and entity else None
        walled = next((each for each in self.ground.walls if each.piece is piece), None) if piece else None
        if not walled or walled.piece.locked:
            return None
        return walled.nearest(place.x, place.z, walled.plan.half + NEAR)

    def _under(self, spot: Walled.Spot) -> int:
        """The number of the opening at a place; -1 for none."""
        for number, each in enumerate(spot.walled.openings):
            opening = self._opening(each)
            isThere = abs(opening.along - spot.along) < opening.width / 2
            if isThere and spot.walled.numbers.get(spot.wall) == opening.wall:
                return number
        return -1

    @staticmethod
    def _opening(hole: dict[str, Any]) -> Opening:
        return importlib.import_module('objects.house.Walls').opening(0, hole)

    def _press(self) -> None:
        if not self._spot:
            self.editor.message('Point at a wall that was drawn: openings are cut into Walls and Room')
            return
        number = self._under(self._spot)
        if number >= 0:
            middle = self._opening(self._spot.walled.openings[number]).along
            self._held = Held(self._spot.walled, number, self._spot.along - middle)
            self._draw()
            return
        walled, hole = self._spot.walled, self._wanted(self._spot)
        self._change(walled, [*walled.openings, hole], 'Cut a %s' % hole['kind'])

    def _release(self) -> None:
        held, spot, self._held = self._held, self._spot, None
        if held and spot:
            holes = held.walled.openings
            before = holes[held.number]
            after = self._moved(held, spot)
            if after != before:
                holes[held.number] = after
                self._change(held.walled, holes, 'Slide a %s' % before.get('kind', 'door'))
        self._draw()

    def _close(self) -> None:
        assert self._spot
        walled, number = self._spot.walled, self._under(self._spot)
        if number < 0:
            self.editor.message('There is no opening under the mouse to close')
            return
        holes = walled.openings
        gone = holes.pop(number)
        self._spot = None
        self._change(walled, holes, 'Close a %s' % gone.get('kind', 'door'))
        self.erase()

    def _change(self, walled: Walled.Walled, holes: list[dict[str, Any]], label: str) -> None:
        with self.editor.edits.step('%s in %s' % (label, walled.piece.name)):
            self.editor.edits.change(walled.piece, openings=tuple(holes))

    # What is cut

    def _wanted(self, spot: Walled.Spot) -> dict[str, Any]:
        """The opening that a click at a place cuts."""
        kind = 'door' if self._kept['kind'] == KINDS[0] else self._kept['kind']
        hole: dict[str, Any] = {'kind': kind, 'wall': spot.walled.numbers[spot.wall]}
        hole.update({name: self._kept[name] for name in ('width', 'height', 'sill') if self._kept[name]})
        if self._kept['kind'] == KINDS[0]:
            hole['leaf'] = self._freeLeaf()
            hole.update({'key': self._kept['key']} if self._kept['key'] else {})
        return self._placed(hole, spot, 0.0, -1)

    def _freeLeaf(self) -> str:
        taken = {hole.get('leaf') for each in self.ground.walls for hole in each.openings}
        taken.update(piece.name for piece in self.editor.pieces.all())
        return next(name for number in range(1, 100000) if (name := 'door%d' % number) not in taken)

    def _moved(self, held: Held, spot: Walled.Spot) -> dict[str, Any]:
        hole = dict(held.walled.openings[held.number], wall=held.walled.numbers[spot.wall])
        return self._placed(hole, spot, held.off, held.number)

    def _placed(self, hole: dict[str, Any], spot: Walled.Spot, off: float, number: int) -> dict[str, Any]:
        """An opening with its place: on the grid along its wall, and where the wall has room for it."""
        half = self._opening({**hole, 'along': 0.0}).width / 2
        wanted = spot.along - off
        if self.editor.snapping.get('snapToGrid'):
            step = self.editor.snapping.get('snapStep')
            wanted = round(wanted / step) * step
        rooms = [(low + half, high - half) for low, high in self._free(spot, number) if high - low >= 2 * half]
        if rooms:
            wanted = min((min(max(wanted, low), high) for low, high in rooms), key=lambda each: abs(each - wanted))
        ordered = {key: value for key, value in hole.items() if key in ('kind', 'wall')}
        return {**ordered, 'along': Places.tidy(wanted), **{key: value for key, value in hole.items()
                                                            if key not in ('kind', 'wall', 'along')}}

    def _free(self, spot: Walled.Spot, number: int) -> list[tuple[float, float]]:
        """Stretches of a wall without corners, joints and other openings."""
        plans = importlib.import_module('objects.house.Plans')
        stretches = spot.walled.plan.clear(spot.wall)
        for other, hole in enumerate(spot.walled.openings):
            if other == number or hole['wall'] != spot.walled.numbers[spot.wall]:
                continue
            opening = self._opening(hole)
            left = opening.along - opening.width / 2 - plans.CLEAR
            right = opening.along + opening.width / 2 + plans.CLEAR
            stretches = [part for low, high in stretches for part in ((low, min(high, left)), (max(low, right), high))
                         if part[1] - part[0] > plans.CLEAR]
        return stretches

    # What is shown

    def _draw(self) -> None:
        self.erase()
        if not self._spot:
            return
        if self._held:
            hole = self._moved(self._held, self._spot)
            self._outline(self._spot, hole, COLOR)
            return
        number = self._under(self._spot)
        if number >= 0:
            self._outline(self._spot, self._spot.walled.openings[number], COLOR)
            return
        hole = self._wanted(self._spot)
        opening = self._opening(hole)
        half = opening.width / 2
        fits = any(low <= opening.along - half + 1e-3 and opening.along + half <= high + 1e-3
                   for low, high in self._free(self._spot, -1))
        self._outline(self._spot, hole, HERE if fits else WRONG)

    def _outline(self, spot: Walled.Spot, hole: dict[str, Any], color: kaVel.Vec4) -> None:
        """Draws an opening's edge on both faces of its wall, and how far it is from the wall's ends."""
        walled, opening, component = spot.walled, self._opening(hole), self.editor.component
        wall = walled.plan.walls[spot.wall]
        path = opening.path(0.0)
        for side in (1, -1):
            places = [walled.inWorld(wall.at(along, side * (walled.plan.half + BEFORE)), height)
                      for along, height in path]
            for one, other in zip(places, [*places[1:], places[0]]):
                component.addShapeLine(self.layer, one, other, color)
        left, right = opening.along - opening.width / 2, wall.length - opening.along - opening.width / 2
        top = walled.inWorld(wall.at(opening.along), opening.sill + opening.height + 0.12)
        component.addShapeText(self.layer, top, '%.2f m | %.2f m | %.2f m' % (left, opening.width, right), color)
