"""What is changed in the inspector's bars: steps like all others of an editor, to be undone and saved.

Where a piece stands is a matter of its arguments, even if a bar has moved its transform; all else is a property that is
set behind the piece's call.
"""

from __future__ import annotations

import math
from typing import TYPE_CHECKING, Any

import editing
import kaVel
from editor import Places
from editor.edits import Edits
from editor.source import Pieces
from editor.source.Pieces import Piece

if TYPE_CHECKING:
    from editor.Editor import Editor


class Inspected:
    """Listens to the bars for the editor of one level, while that is open."""

    def __init__(self, editor: Editor):
        self.editor = editor

    def begin(self) -> None:
        kaVel.getSystem('TweakSystem').edited = self._edited

    def end(self) -> None:
        kaVel.getSystem('TweakSystem').edited = editing.edited

    def _edited(self, thing: Any, name: str, before: Any, after: Any) -> None:
        """Notes an edit that a bar has made already; what is not of this level, as a system, is nobody's source."""
        if thing and thing.getAncestorOfType(kaVel.Reflection.Coordinator) == self.editor.level:
            self.editor.recording.leave(thing, name)
            self.editor.attempt(lambda: note(self.editor.level, thing, name, before, after))


def note(level: kaVel.Coordinator, thing: Any, name: str, before: Any, after: Any) -> None:
    """Notes what a bar has set of an object of a level as an edit; Refused where it cannot be one."""
    pieces, edits = Pieces.of(level), Edits.of(level)
    piece = _standingBy(pieces, thing)
    arguments = _placed(piece, name, before, after) if piece else None
    if piece and arguments is not None:
        edits.change(piece, **arguments)
    else:
        edits.setProperty(thing, name, after, before)


def _standingBy(pieces: Pieces.LevelPieces, thing: Any) -> Piece | None:
    """The piece that stands where a transform says."""
    if not thing._getType().isSubclassOf(kaVel.Reflection.TransformComponent):
        return None
    piece = pieces.pieceOf(thing)
    return piece if piece and piece.root == thing.parent else None


def _placed(piece: Piece, name: str, before: Any, after: Any) -> dict[str, Any] | None:
    """The arguments by which a piece stands as its transform was set; None where it takes none of that kind."""
    given = piece.arguments
    try:
        if name == 'position':
            return Places.moved(given, (after.x - before.x, after.y - before.y, after.z - before.z))
        if name == 'orientation':
            return Places.onTheSpot(given, *_turnOf(after * before.inverse())) or None
    except ValueError:
        return None
    if name == 'scale' and isinstance(given.get('scale'), tuple):
        return {'scale': Places.metres((after.x, after.y, after.z))}
    return None


def _turnOf(turn: kaVel.Quaternion) -> tuple[float, tuple[float, float, float]]:
    """Angle, degrees, and axis of a turn."""
    length = math.sqrt(turn.i * turn.i + turn.j * turn.j + turn.k * turn.k)
    if length < 1e-6:
        return 0.0, (0.0, 1.0, 0.0)
    return math.degrees(2 * math.atan2(length, turn.r)), (turn.i / length, turn.j / length, turn.k / length)
