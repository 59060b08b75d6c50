"""What is selected in the editor: pieces, in the order in which they were selected."""

from __future__ import annotations

from typing import TYPE_CHECKING, Callable, Iterable

from editor.source.Pieces import Piece

if TYPE_CHECKING:
    from editor.Editor import Editor


class Selection:
    """The selected pieces of a level; the editor's component shows their roots as selected.

    It keeps pieces and not roots, since a root dies whenever its piece is built anew. What is gone falls out.
    """

    def __init__(self, editor: Editor):
        self._editor = editor
        self._pieces: list[Piece] = []
        self._listeners: list[Callable[[], object]] = []

    def onChange(self, function: Callable[[], object]) -> None:
        """Calls a function whenever something else is selected."""
        self._listeners.append(function)

    @property
    def pieces(self) -> list[Piece]:
        """What is selected and still there."""
        return [each for each in self._pieces if each.root]

    def set(self, pieces: Iterable[Piece]) -> None:
        """Selects these and nothing else."""
        wanted = list(dict.fromkeys(pieces))
        if wanted != self._pieces:
            self._pieces = wanted
            self._tell()
        self.refresh()

    def toggle(self, pieces: Iterable[Piece]) -> None:
        """Selects what is not selected of these, and deselects the rest of them."""
        for each in pieces:
            if each in self._pieces:
                self._pieces.remove(each)
            else:
                self._pieces.append(each)
        self._tell()
        self.refresh()

    def add(self, pieces: Iterable[Piece]) -> None:
        """Selects these, too."""
        self.set([*self._pieces, *pieces])

    def refresh(self) -> None:
        """Shows the roots as they are now as selected, after pieces were built anew."""
        component = self._editor.component
        component.clearSelection()
        for piece in self.pieces:
            component.select(piece.root)

    def _tell(self) -> None:
        for function in self._listeners:
            function()
