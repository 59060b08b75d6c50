"""Playing while one edits: the level stands still, goes on, goes a frame, goes slowly; and one stands in it oneself."""

from __future__ import annotations

from typing import TYPE_CHECKING

import kaVel
import standing
import stillness

if TYPE_CHECKING:
    from editor.Editor import Editor

#: Height of the eye of one who walks, metres.
EYE = 1.62
#: How slow a level may be made to go.
SPEEDS = (1.0, 0.5, 0.25, 0.1)


class Playing:
    """What a level does while its editor is open."""

    def __init__(self, editor: Editor):
        self._editor = editor
        self.speed = 1.0
        self._stood: standing.Standing | None = None

    @property
    def runs(self) -> bool:
        """Whether the level goes on while it is edited."""
        return self._editor.level.loopState == kaVel.Coordinator.LoopControlState.LOOP_RUN

    def begin(self) -> None:
        """The editor opens: all stands still, and where one stood is kept."""
        self._stood = standing.of(self._editor.level)
        self.stop()

    def end(self) -> None:
        """The editor closes: one stands where one stood, unless it was told otherwise, and the level goes on."""
        viewer = standing.viewerIn(self._editor.level)
        if viewer and self._stood:
            viewer.goTo(*self._stood)
        stillness.scale(self._editor.level, self.speed)
        stillness.goOn(self._editor.level)

    def stop(self) -> None:
        """Has the level stand still."""
        stillness.stop(self._editor.level)

    def goOn(self) -> None:
        """Has the level go on behind the bars, at its speed."""
        stillness.goOn(self._editor.level)

    def switch(self) -> None:
        """Stops the level, or lets it go on."""
        if self.runs:
            self.stop()
        else:
            self.goOn()

    def step(self) -> None:
        """Runs one frame of a level that stands still."""
        level = self._editor.level
        stillness.goOn(level)
        level.loopState = kaVel.Coordinator.LoopControlState.LOOP_STEP

    def doFrame(self) -> None:
        """Stops the clock behind a frame that was stepped."""
        if self._editor.level.loopState == kaVel.Coordinator.LoopControlState.LOOP_STOP:
            stillness.stop(self._editor.level)

    def setSpeed(self, speed: float) -> None:
        """Has the level go slower, as a share of its own speed, or at that."""
        self.speed = speed
        stillness.scale(self._editor.level, speed)

    def playOn(self) -> None:
        """Closes the editor: the one who plays goes on from where he was."""
        self._editor.close()

    def playFromHere(self) -> None:
        """Closes the editor and plays on from where its camera is: with the feet on what lies below it."""
        at, turn, pitch = self._editor.camera.standing()
        if not standing.viewerIn(self._editor.level):
            self._editor.message('Nobody walks in this level: place a Player')
            return
        self._stood = (self._feet(at), turn, pitch)
        self._editor.close()

    def _feet(self, eye: tuple[float, float, float]) -> tuple[float, float, float]:
        if not self._editor.level.getChild('Player'):
            return eye
        below = self._editor.camera.floorBelow(eye)
        return (eye[0], below if below is not None else eye[1] - EYE, eye[2])
