"""What can be set of the tool in hand, and what moved things snap to."""

from __future__ import annotations

from editor import Snapping
from editor.Tools import Tool
from editor.panels.Panel import RIGHT, TOP, Panel

#: Of the bar, for tools that nothing can be set of and for others.
BARE, WITH_CONTROLS = 204, 304


class ToolControls(Panel):
    """The controls of the tool, then those of snapping."""

    name = 'Tool'

    def placeIn(self, width: int, height: int):
        return width - RIGHT, TOP, RIGHT, self.height

    @property
    def height(self) -> int:
        """Of the bar, for the tool in hand."""
        tool = self.editor.tool
        return WITH_CONTROLS if tool and type(tool).controls is not Tool.controls else BARE

    def fill(self) -> None:
        tool, snapping = self.editor.tool, self.editor.snapping
        if tool:
            self.bar.label = 'Tool: %s' % tool.name
            tool.controls(self.bar)
        self.bar.group('Snapping')
        for name, words in (('snapToGrid', 'To the grid (V)'), ('snapToSurfaces', 'To surfaces'),
                            ('snapToNeighbours', 'To neighbours')):
            self.value(name, lambda name=name: bool(snapping.get(name)),
                       lambda on, name=name: snapping.set(name, bool(on)), words=words)
        self.value('snapStep', lambda: float(snapping.get('snapStep')), lambda step: snapping.set('snapStep', step),
                   words='Step, m')
        self.value('snapAngle', lambda: float(snapping.get('snapAngle')), lambda step: snapping.set('snapAngle', step),
                   words='Angle, degrees')
        self.value('space', lambda: snapping.get('space') == 'local', lambda on: snapping.switchSpace(),
                   words="The thing's own axes (X)")
        self.bar.setRange('snapStep', *Snapping.STEPS)
        self.bar.group('')

    def toolTaken(self) -> None:
        self.put()
        self.refresh()
