"""The views that there are, a switch each, with what can be set of those that are on."""

from __future__ import annotations

from editor.Views import views
from editor.panels.Panel import BOTTOM, LEFT, TOP, Panel

#: Room for what can be set of a view, or read, lines.
LINES = 11


class ViewsBar(Panel):
    """Comes up when it is asked for."""

    name = 'Views'
    isAlways = False

    def placeIn(self, width: int, height: int):
        lines = len(views.all()) + LINES * len(self.editor.shownViews())
        return LEFT, TOP, 300, min(40 + 21 * lines, height - TOP - BOTTOM)

    def fill(self) -> None:
        shown = {view.name: view for view in self.editor.shownViews()}
        for cls in views.all():
            self.value(cls.name, lambda name=cls.name: self._isOn(name),
                       lambda on, name=cls.name: self.editor.show(name, bool(on)), cls.help)
            if cls.name in shown:
                shown[cls.name].controls(self.bar)

    def _isOn(self, name: str) -> bool:
        return any(view.name == name for view in self.editor.shownViews())
