"""What helps the eye while one builds, and is no part of the level: a grid on the ground, a light to work by."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

import editing
import kaVel

if TYPE_CHECKING:
    from editor.Editor import Editor

#: Layer of the grid; metres from its middle to its edges; its colours, for every metre and for every fifth.
LAYER, HALF = 'grid', 20
FINE, COARSE = kaVel.Vec4(0.5, 0.55, 0.6, 0.22), kaVel.Vec4(0.6, 0.65, 0.7, 0.45)
#: How bright the light to work by is everywhere.
WORK_LIGHT = 0.55
#: The world is drawn at this part of the window's size at least, however slow that is.
SHARP = 0.6


class Aids:
    """Switches of one editor, kept from level to level; off while it is closed."""

    def __init__(self, editor: Editor):
        self._editor = editor
        self._kept: dict[str, Any] = editing.remembered.setdefault('aids', {'grid': True, 'light': False})
        self._ambient: float | None = None  # of the level, while the light to work by is on
        self._scale: float | None = None    # of the picture, while that does not follow the time of frames

    @property
    def grid(self) -> bool:
        """Whether the grid is shown."""
        return self._kept['grid']

    @property
    def light(self) -> bool:
        """Whether there is light to work by."""
        return self._kept['light']

    def begin(self) -> None:
        """The editor opens."""
        self._showGrid(self.grid)
        self._shine(self.light)
        self._sharpen()

    def end(self) -> None:
        """The editor closes: the level looks as it is."""
        self._showGrid(False)
        self._shine(False)
        self.letScaleFollow()

    def switchGrid(self) -> None:
        """Shows the grid, or hides it."""
        self._kept['grid'] = not self.grid
        self._showGrid(self.grid)

    def switchLight(self) -> None:
        """Light to work by, or the level as dark as it is."""
        self._kept['light'] = not self.light
        self._shine(self.light)

    def _sharpen(self) -> None:
        """Has a picture that follows the time of frames stay sharp enough to build by."""
        pacing, graphics = kaVel.getSystem('FramePacingSystem'), kaVel.getSystem('GraphicsSystem2')
        if pacing.automaticScale:
            self._scale, pacing.automaticScale = graphics.renderScale, False
            graphics.renderScale = max(SHARP, self._scale)

    def letScaleFollow(self) -> None:
        """Has the picture follow the time of frames again, where it did before; for a level that is left, too."""
        if self._scale is not None:
            kaVel.getSystem('GraphicsSystem2').renderScale, self._scale = self._scale, None
            kaVel.getSystem('FramePacingSystem').automaticScale = True

    def _showGrid(self, on: bool) -> None:
        component = self._editor.component
        component.clearShapes(LAYER)
        if not on:
            return
        for number in range(-HALF, HALF + 1):
            color = FINE if number % 5 else COARSE
            for begin, end in (((number, -HALF), (number, HALF)), ((-HALF, number), (HALF, number))):
                component.addShapeLine(LAYER, kaVel.Vec4(begin[0], 0.003, begin[1], 1),
                                       kaVel.Vec4(end[0], 0.003, end[1], 1), color)
        component.setShapesBehind(LAYER, True)

    def _shine(self, on: bool) -> None:
        graphics = self._editor.level.getManager('graphics2')
        if on and self._ambient is None:
            self._ambient = graphics.sceneAmbient
            graphics.sceneAmbient = max(WORK_LIGHT, graphics.sceneAmbient)
        elif not on and self._ambient is not None:
            graphics.sceneAmbient, self._ambient = self._ambient, None
