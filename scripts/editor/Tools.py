"""The tools of the editor: what the mouse does in the picture.

A tool is a class in a module of `editor.tools` or `editor.drawing`; the toolbar has a button for each:

    from editor.Tools import Tool, tools

    @tools.add
    class Pebbles(Tool):
        name = 'Pebbles'
        help = 'Click to drop a pebble.'

        def pointer(self, kind, x, y, button):
            if kind != 'down' or button != 0:
                return False
            place = self.editor.component.placeUnder(x, y)
            self.editor.add('Pebble', at=(place.x, place.y, place.z))
            return True

One tool is in hand at a time. What it does not take falls to the tool "Select", keys to those of the whole editor.
"""

from __future__ import annotations

from typing import TYPE_CHECKING

from editor.Registry import Registered, Registry

if TYPE_CHECKING:
    from _kaVel import ScriptBar
    from editor.Editor import Editor


class Tool(Registered):
    """One way of working with the mouse; made when it is first taken up, and kept while the editor is there."""

    #: On its button and in `Editor.take`.
    name = ''
    #: What one does with it, in a line.
    help = ''
    #: Name of the key that takes it up, as in `bindings.KEYS`; empty for none.
    key = ''
    #: Buttons stand by ascending number, then by name.
    order = 100

    def __init__(self, editor: Editor):
        self.editor = editor

    def begin(self) -> None:
        """It is taken up."""

    def end(self) -> None:
        """It is put down, or the editor closes: what it has drawn and not finished goes."""

    def controls(self, bar: ScriptBar) -> None:
        """Adds what can be set of it to the bar "Tool", which is put together when it is taken up."""

    def pointer(self, kind: str, x: int, y: int, button: int) -> bool:
        """The mouse over the picture, not over a bar: 'down', 'up', 'move', 'wheel' or 'double', window pixels.

        Whether it was meant for this tool.
        """
        return False

    def pressed(self, key: str) -> bool:
        """A key went down, by its name as in `bindings.KEYS`, with 'Ctrl+', 'Shift+', 'Alt+' before it in this order.

        Whether it was meant for this tool. 'Escape' comes here first, so that a tool can leave what it began.
        """
        return False

    def released(self, key: str) -> None:
        """A key went up, by its bare name."""

    def selectionChanged(self) -> None:
        """Something else is selected, or what is selected was built anew."""

    def doFrame(self) -> None:
        """Once a frame while it is in hand."""


tools: Registry[Tool] = Registry('tool', 'editor.tools', 'editor.drawing')
