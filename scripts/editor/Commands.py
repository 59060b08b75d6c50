"""What the editor does with what is selected: each command is one step that undo takes back."""

from __future__ import annotations

import math
from typing import TYPE_CHECKING, Any, Callable, Iterable

import editing
import kaVel
from editor import Catalogue, Places
from editor.edits.Refused import Refused
from editor.source.Pieces import Piece
from objects.Placing import Triple

if TYPE_CHECKING:
    from editor.Editor import Editor

#: The most pieces that one command makes: more of them belong into a loop of the level's script.
MOST_COPIES = 2000
#: Axes by name.
AXES = {'x': 0, 'y': 1, 'z': 2}
#: How things are aligned along an axis.
ALIGNMENTS = ('least', 'middle', 'greatest', 'last selected', 'even gaps')


class Commands:
    """The verbs of one editor. Those on what is selected say so where nothing is."""

    def __init__(self, editor: Editor):
        self._editor = editor

    # Making

    def place(self, patternName: str, name: str = '', parent: kaVel.Object | None = None, **arguments: Any) -> Piece:
        """Builds a pattern in the map, under a free name unless one is given; raises where it cannot be built."""
        Catalogue.named(patternName)
        name = self.freeName(name or Catalogue.readableName(patternName))
        with self._editor.edits.step('Place %s' % name):
            return self._editor.edits.add(parent or self._editor.map, patternName, name, **arguments)

    def freeName(self, wanted: str) -> str:
        """A name that no piece has yet: the wanted one, or that with a number behind it."""
        taken = {each.name for each in self._editor.pieces.all()}
        stem, number = wanted.rstrip('0123456789') or wanted, 2
        name = wanted
        while name in taken:
            name, number = '%s%d' % (stem, number), number + 1
        return name

    def duplicate(self) -> None:
        """Copies what is selected a step of the grid aside, and selects the copies."""
        step = self._editor.snapping.get('snapStep')
        self._copy('Duplicate', [(step, 0, step)])

    def array(self, count: int, step: Triple, turn: float = 0.0) -> None:
        """Copies what is selected some times, each a step and a turn further than the one before."""
        most = MOST_COPIES // max(len(self._needed()), 1)
        if not 1 <= count <= most:
            raise Refused('%d copies cannot be made at once: from 1 to %d can' % (count, most))
        self._copy('Array', [tuple(each * number for each in step) for number in range(1, count + 1)], turn)

    def _copy(self, what: str, offsets: list[Any], turn: float = 0.0) -> None:
        pieces, made = self._needed(), []
        with self._editor.edits.step('%s %s' % (what, _listed(pieces))):
            for number, offset in enumerate(offsets, 1):
                for piece in pieces:
                    arguments = dict(piece.given)
                    if Places.placeOf(piece.arguments) is not None:
                        arguments.update(Places.moved(piece.arguments, offset))
                        arguments.update(Places.onTheSpot(piece.arguments, turn * number))
                    made.append(self._editor.edits.add(piece.parent, piece.patternName, self.freeName(piece.name),
                                                       **arguments))
        self._editor.select(made)

    def copy(self) -> None:
        """Keeps what is selected for `paste`, in other levels too."""
        editing.remembered['copied'] = [(each.patternName, each.name, dict(each.given), Places.placeOf(each.arguments))
                                        for each in self._needed()]
        self._editor.message('Copied: %s' % _listed(self._needed()))

    def cut(self) -> None:
        """Keeps what is selected for `paste`, and deletes it."""
        self.copy()
        self.delete()

    def paste(self) -> None:
        """Builds what was copied again where the mouse points, and selects it."""
        copied = editing.remembered.get('copied')
        if not copied:
            raise Refused('Nothing was copied yet')
        places = [place for *_, place in copied if place]
        by: Triple = (0, 0, 0)
        if places:
            target = self._editor.snapped(self._editor.placeAtMouse())
            middle = Places.middle(places)
            by = (target.x - middle[0], target.y - min(place[1] for place in places), target.z - middle[2])
        made: list[Piece] = []
        with self._editor.edits.step('Paste %d' % len(copied)):
            for patternName, name, given, place in copied:
                arguments = dict(given, **Places.moved(given, by)) if place and Places.placeOf(given) else given
                made.append(self._editor.edits.add(self._editor.map, patternName, self.freeName(name), **arguments))
        self._editor.select(made)

    # Changing

    def delete(self) -> None:
        """Deletes what is selected and not locked, with what hangs below."""
        pieces = self.movable()
        self._editor.select([])
        with self._editor.edits.step('Delete %s' % _listed(pieces)):
            self._editor.edits.remove(pieces)

    def rename(self, piece: Piece, name: str) -> None:
        """Gives a piece another name, which no other piece may have."""
        name = name.strip()
        if name == piece.name:
            return
        if any(each.name == name for each in self._editor.pieces.all() if each is not piece):
            raise Refused('There is a %r already: names are given once' % name)
        self._editor.edits.rename(piece, name)

    def change(self, pieces: Iterable[Piece], what: str, change: Callable[[Piece], dict[str, Any]]) -> None:
        """Gives each piece the arguments that a function tells, in one step named by `what` and the pieces."""
        wanted = [(piece, change(piece)) for piece in pieces]
        with self._editor.edits.step('%s %s' % (what, _listed([piece for piece, _ in wanted]))):
            for piece, arguments in wanted:
                if arguments:
                    self._editor.edits.change(piece, **arguments)

    def move(self, by: Triple) -> None:
        """Moves what is selected."""
        self.change(self.topmost(self.movable()), 'Move',
                    lambda piece: _named(piece, lambda: Places.moved(piece.arguments, by)))

    def turn(self, degrees: float, pivot: Triple, axis: Triple = (0, 1, 0)) -> None:
        """Turns what is selected about an axis through a place."""
        self.change(self.topmost(self.movable()), 'Turn',
                    lambda piece: _named(piece, lambda: Places.turned(piece.arguments, degrees, pivot, axis)))

    def scale(self, factors: Triple) -> None:
        """Makes what is selected larger along its axes."""
        self.change(self.topmost(self.movable()), 'Scale',
                    lambda piece: _named(piece, lambda: Places.scaled(piece.arguments, factors)))

    def nudge(self, right: int, up: int, ahead: int) -> None:
        """Moves what is selected a step of the grid along the axes that are nearest to the camera's own."""
        step = self._editor.snapping.get('snapStep')
        quarter = round(self._editor.camera.standing()[1] / 90) * math.pi / 2
        c, s = round(math.cos(quarter)), round(math.sin(quarter))
        self.move(((right * c + ahead * s) * step, up * step, (ahead * c - right * s) * step))

    def drop(self) -> None:
        """Lets what is selected down onto what lies below it."""
        def onFloor(piece: Piece) -> dict[str, Any]:
            at = Places.placeOf(piece.arguments)
            below = at and self._editor.camera.floorBelow(at, piece.root)
            return {} if at is None or below is None else Places.moved(piece.arguments, (0, below - at[1], 0))

        self.change(self.movable(), 'Drop', onFloor)

    def align(self, axis: str, how: str) -> None:
        """Brings the places of what is selected into line along an axis, in a way of ALIGNMENTS."""
        pieces = [each for each in self.movable() if Places.placeOf(each.arguments)]
        number = AXES[axis]
        along = {each: (Places.placeOf(each.arguments) or (0, 0, 0))[number] for each in pieces}
        targets = _aligned(pieces, along, how)

        def to(piece: Piece) -> dict[str, Any]:
            by = [0.0, 0.0, 0.0]
            by[number] = targets[piece] - along[piece]
            return Places.moved(piece.arguments, (by[0], by[1], by[2]))

        self.change(pieces, 'Align', to)

    # Grouping, hiding, hanging

    def group(self) -> None:
        """Makes a group of what is selected: a click on one of it selects all."""
        pieces = self._needed()
        taken = {each.group for each in self._editor.pieces.all()}
        name = next(name for number in range(1, len(taken) + 2) if (name := 'group%d' % number) not in taken)
        self._editor.edits.group(pieces, name)

    def ungroup(self) -> None:
        """Dissolves the groups of what is selected."""
        self._editor.edits.group(self._needed(), '')

    def hide(self) -> None:
        """Hides what is selected from the eye and the mouse, until it is shown again; levels are saved without that."""
        pieces = self._needed()
        self._editor.select([])
        self._editor.edits.hide(pieces)

    def showAll(self) -> None:
        """Shows what was hidden."""
        self._editor.edits.hide(self._editor.pieces.all(), False)

    def lock(self) -> None:
        """Keeps what is selected from the mouse, and from being moved or deleted."""
        self._editor.edits.lock(self._needed())

    def unlockAll(self) -> None:
        """Unlocks what was locked."""
        self._editor.edits.lock(self._editor.pieces.all(), False)

    def parent(self) -> None:
        """Hangs what is selected below the one that was selected last."""
        *pieces, above = self.movable()
        if not pieces:
            raise Refused('Select what is to hang below, and last what it hangs from')
        with self._editor.edits.step('Hang %s below %s' % (_listed(pieces), above.name)):
            for piece in pieces:
                self._editor.edits.reparent(piece, above)

    def unparent(self) -> None:
        """Hangs what is selected below the map itself."""
        pieces = self.movable()
        with self._editor.edits.step('Hang %s below the map' % _listed(pieces)):
            for piece in pieces:
                self._editor.edits.reparent(piece, None)

    # Selecting and looking

    def selectAll(self) -> None:
        """Selects what is neither hidden nor locked."""
        self._editor.select([each for each in self._editor.pieces.all() if not each.hidden and not each.locked])

    def selectByName(self, text: str) -> int:
        """Selects the pieces whose name, or path, has a text in it, and returns how many there are."""
        wanted = text.lower().strip()
        found = [each for each in self._editor.pieces.all()
                 if wanted and wanted in each.path.lower()]
        self._editor.select(found)
        return len(found)

    def frame(self) -> None:
        """Flies to what is selected so that it fills the picture; where nothing is, to all."""
        self._editor.camera.frame()

    def takeUp(self, patternName: str) -> None:
        """Takes a pattern of the catalogue into the hand, to be placed."""
        from editor.tools.Placing import Place
        Catalogue.named(patternName)
        if not isinstance(self._editor.tool, Place):
            self._editor.take(Place.name)
        tool = self._editor.tool
        if isinstance(tool, Place):
            tool.choose(patternName)
        self._editor.panels.toolTaken()

    def leaveTool(self) -> None:
        """Puts the tool down; where none is in hand, deselects all."""
        if self._editor.tool and self._editor.tool.name != 'Select':
            self._editor.take('Select')
        else:
            self._editor.select([])

    def undo(self) -> None:
        """Takes the last step back."""
        if not self._editor.edits.undo():
            self._editor.message('There is nothing to undo')

    def redo(self) -> None:
        """Takes the last step that was undone again."""
        if not self._editor.edits.redo():
            self._editor.message('There is nothing to redo')

    def topmost(self, pieces: list[Piece]) -> list[Piece]:
        """Those of some pieces that hang below none of the others: what hangs below comes along."""
        chosen = set(pieces)
        return [each for each in pieces if not _hangsBelow(each, chosen)]

    def _needed(self) -> list[Piece]:
        pieces = self._editor.selected()
        if not pieces:
            raise Refused('Nothing is selected')
        return pieces

    def movable(self) -> list[Piece]:
        """What is selected and not locked; Refused where that is nothing."""
        pieces = [each for each in self._needed() if not each.locked]
        if not pieces:
            raise Refused('What is selected is locked: Alt+L unlocks all')
        return pieces


def _hangsBelow(piece: Piece, chosen: set[Piece]) -> bool:
    above = piece.above
    while above and above not in chosen:
        above = above.above
    return bool(above)


def _named(piece: Piece, function: Callable[[], dict[str, Any]]) -> dict[str, Any]:
    try:
        return function()
    except ValueError as refusal:
        raise Refused('%s %s' % (piece.name, refusal)) from None


def _listed(pieces: list[Piece]) -> str:
    return pieces[0].name if len(pieces) == 1 else '%d things' % len(pieces)


def _aligned(pieces: list[Piece], along: dict[Piece, float], how: str) -> dict[Piece, float]:
    least, greatest = min(along.values()), max(along.values())
    if how == 'even gaps':
        ordered = sorted(pieces, key=lambda each: along[each])
        gap = (greatest - least) / max(len(ordered) - 1, 1)
        return {each: least + gap * number for number, each in enumerate(ordered)}
    to = {'least': least, 'middle': (least + greatest) / 2, 'greatest': greatest, 'last selected': along[pieces[-1]]}
    return dict.fromkeys(pieces, to[how])
