"""The bar along the bottom: what was refused or done last, and what the tool in hand does."""

from __future__ import annotations

from editor.panels.Panel import BOTTOM, Panel


class Status(Panel):
    """Two lines."""

    name = 'Help'
    isFrame = True

    def placeIn(self, width: int, height: int):
        return 0, height - BOTTOM, width, BOTTOM

    def fill(self) -> None:
        self.bar.addText('message', '', self._message)
        self.bar.addText('tool', '', lambda: self._tool())

    def _message(self) -> str:
        return self.editor.messages[-1] if self.editor.messages else ''

    def _tool(self) -> str:
        tool = self.editor.tool
        return '%s: %s' % (tool.name, tool.help) if tool else ''
