"""A bar of the editor: what stands on it, and where."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any, Callable

import kaVel

if TYPE_CHECKING:
    from editor.Editor import Editor

#: Left, top, width and height, in steps of which LETTERS are as many as the letters are high.
Rectangle = tuple[int, int, int, int]
LETTERS = 15

#: How much of the window the bars take that are always there, in those steps.
TOP, BOTTOM, LEFT, RIGHT = 60, 54, 232, 268


class Panel:
    """One bar. It is put together by `fill`, and anew by `refresh` where other things stand on it."""

    name = ''
    help = ''
    #: Whether it comes up with the editor, or when it is asked for.
    isAlways = True
    #: Whether it belongs to the frame about the world: without a title, and fixed.
    isFrame = False

    def __init__(self, editor: Editor):
        self.editor = editor
        self.bar: Any = None

    def placeIn(self, width: int, height: int) -> Rectangle:
        """Where it stands in a window of this size."""
        return 0, 0, 0, 0

    @property
    def isShown(self) -> bool:
        """Whether it is on the screen."""
        return bool(self.bar) and self.bar.shown

    def show(self) -> None:
        """Puts the bar onto the screen, in its place."""
        if not self.bar:
            self.bar = kaVel.getSystem('TweakSystem').makeBar('Editor ' + self.name)  # one for all levels
        kaVel.configure(self.bar, label=self.name, help=self.help, always=True, shown=True, plain=self.isFrame)
        self.put()
        self.refresh()

    def put(self) -> None:
        """Puts the bar where it belongs in the present window."""
        window, step = kaVel.getSystem('WindowSystem2'), kaVel.getSystem('TweakSystem').letters / LETTERS
        place = self.placeIn(int(window.width / step), int(window.height / step))
        self.bar.setPlace(*(round(each * step) for each in place))

    def putIfShown(self) -> None:
        """Puts the bar where it belongs, if it is on the screen."""
        if self.isShown:
            self.put()

    def hide(self) -> None:
        """Takes the bar off the screen."""
        if self.bar:
            self.bar.shown = False

    def switch(self) -> None:
        """Shows the bar, or takes it off the screen."""
        if self.isShown:
            self.hide()
        else:
            self.show()

    def refresh(self) -> None:
        """Puts the bar together anew, if it is shown."""
        if self.isShown:
            self.bar.clear()
            self.editor.attempt(self.fill)

    def fill(self) -> None:
        """Adds what stands on the bar."""

    def selected(self) -> None:
        """Something else is selected."""

    def edited(self) -> None:
        """Something was edited, undone or redone."""

    def toolTaken(self) -> None:
        """Another tool is in hand."""

    def doFrame(self) -> None:
        """Once a frame while it is on the screen."""

    # What stands on it

    def button(self, name: str, pressed: Callable[[], object], tip: str = '', beside: bool = True) -> None:
        """Adds a button that does something, or tells why not; it stands beside the last control."""
        if beside:
            self.bar.sameLine()
        self.bar.addButton(name, name, lambda: self.editor.attempt(pressed))
        if tip:
            self.bar.setTip(name, tip)

    def value(self, name: str, get: Callable[[], Any], set: Callable[[Any], object] | None, tip: str = '',
              words: str = '') -> None:
        """Adds a value; what is typed in and refused costs a line of message."""
        attempt = self.editor.attempt
        self.bar.addValue(name, words or name, get, (lambda value: attempt(lambda: set(value))) if set else None)
        if tip:
            self.bar.setTip(name, tip)

    def choice(self, name: str, choices: list[str], get: Callable[[], str], set: Callable[[str], object],
               tip: str = '') -> None:
        """Adds a choice among texts."""
        def index() -> int:
            return choices.index(get()) if get() in choices else 0

        self.value(name, index, lambda number: set(choices[int(number)]), tip)
        self.bar.setChoices(name, '\n'.join(choices))
