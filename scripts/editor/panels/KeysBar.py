"""What each key of the editor does."""

from __future__ import annotations

from editor import Keys
from editor.panels.Panel import BOTTOM, RIGHT, TOP, Panel


class KeysBar(Panel):
    """Comes up when it is asked for, beside the bars at the right."""

    name = 'Keys'
    isAlways = False

    def placeIn(self, width: int, height: int):
        return width - RIGHT - 310, TOP + 10, 300, height - TOP - BOTTOM - 20

    def fill(self) -> None:
        lines = Keys.help()
        self.bar.addList('keys', lambda: len(lines), lambda number: lines[number], None)
