"""The views of the editor: what is otherwise felt or heard, drawn into the picture.

A view is a class in a module of `editor.views`; the toolbar has a switch for each, and several may be on at once:

    from editor.Views import View, views

    @views.add
    class Pebbles(View):
        name = 'Pebbles'
        help = 'Where pebbles lie.'

        def begin(self):
            ...
"""

from __future__ import annotations

from typing import TYPE_CHECKING

from editor.Registry import Registered, Registry

if TYPE_CHECKING:
    from _kaVel import ScriptBar
    from editor.Editor import Editor


class View(Registered):
    """One thing that is shown; made when it is first switched on, and kept while the editor is there."""

    name = ''
    help = ''
    #: Switches stand by ascending number, then by name.
    order = 100

    def __init__(self, editor: Editor):
        self.editor = editor

    def begin(self) -> None:
        """It is switched on."""

    def end(self) -> None:
        """It is switched off, or the editor closes: what it has drawn goes."""

    def controls(self, bar: ScriptBar) -> None:
        """Adds what can be set of it, or read, to the bar "Views", below its switch."""

    def changed(self) -> None:
        """Something in the level was edited, undone or redone while it is on."""

    def doFrame(self) -> None:
        """Once a frame while it is on."""


views: Registry[View] = Registry('view', 'editor.views')
