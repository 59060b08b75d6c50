"""What views are made of: the place that one points at, floors that are painted square by square, and legends."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any, Callable, Iterator, Sequence

import kaVel
from editor.Views import View
from objects.Placing import Triple

if TYPE_CHECKING:
    from _kaVel import ScriptBar

#: Edge of the squares of floors, metres, and how far above them they are painted.
EDGE, ABOVE = 0.25, 0.025
#: Squares of a map that are looked at in a frame, and spots that are lit or painted: about a millisecond each.
SQUARES, SPOTS = 1500, 250
#: Frames from one look at the place that is pointed at to the next.
POINTED_EVERY = 4
INK = kaVel.Vec4(1.0, 0.97, 0.86, 1)

Color = tuple[float, float, float]
#: Colours by what they stand for, ascending: the least value and the words of the legend.
Scale = Sequence[tuple[float, Color, str]]


def isFloor(survey: kaVel.FloorSurvey, spot: int) -> bool:
    """Whether a spot is one of those that a player reaches, or of a floor that somebody has made and none reaches."""
    return survey.getWay(spot) >= 0 or survey.isShown(spot) and survey.isInner(spot)


def vec(color: Color, alpha: float = 0.62) -> kaVel.Vec4:
    """A colour to paint with."""
    return kaVel.Vec4(*color, alpha)


def onScale(scale: Scale, value: float) -> Color:
    """The colour of a value on a scale."""
    found = scale[0][1]
    for least, color, _ in scale:
        if value >= least:
            found = color
    return found


def mapsOf(level: kaVel.Coordinator) -> list[kaVel.MapRootEntity]:
    """The maps of a level."""
    return [each for each in level.children if each._getType().isSubclassOf(kaVel.Reflection.MapRootEntity)]


def playerOf(level: kaVel.Coordinator) -> Any:
    """The player of a level; None where nobody plays."""
    return level.getChild('Player')


def feetOf(player: Any) -> kaVel.Vec4:
    """Where a player stands."""
    at, box = player.getComponent('transform').position, player.getComponent('boundingVolume').hitBox
    return kaVel.Vec4(at.x, at.y - box.y / 2, at.z, 1)


def triple(at: kaVel.Vec4) -> Triple:
    return at.x, at.y, at.z


class Shown(View):
    """A view with a legend, a layer of its own, and a place that is pointed at."""

    #: Colours of the legend; what stands behind a colon comes up over its row.
    scale: Scale = ()

    def __init__(self, editor: Any):
        super().__init__(editor)
        self.component: kaVel.EditorComponent = editor.component
        self.level: kaVel.Coordinator = editor.level
        self.layer = 'view ' + self.name
        self.frame = 0
        self.pointed: kaVel.Vec4 | None = None
        self.told = ''  # what is said of the place that is pointed at

    def begin(self) -> None:
        self.frame, self.told = 0, ''

    def end(self) -> None:
        for layer in (self.layer, self.layer + ' pointed'):
            self.component.clearShapes(layer)

    def controls(self, bar: ScriptBar) -> None:
        bar.group(self.name)
        bar.addText(self.name + ' state', '', self.state)
        bar.addText(self.name + ' told', 'Here', lambda: self.told or 'point at a floor')
        for number, (_, color, words) in enumerate(self.scale):
            row = '%s scale %d' % (self.name, number)
            short, _, more = words.partition(': ')
            bar.addColor(row, short, lambda color=color: kaVel.Vec4(*color, 1), None)
            bar.setTip(row, more or words)
        bar.group('')

    def state(self) -> str:
        """How far it is, in a line of its legend."""
        return self.help

    def doFrame(self) -> None:
        self.frame += 1
        if self.frame % POINTED_EVERY == 1:
            self._point()

    def _point(self) -> None:
        x, y = self._pixel()
        at = self.component.placeUnder(x, y)
        self.pointed = at if at.w else None
        self.component.clearShapes(self.layer + ' pointed')
        if not self.pointed:
            self.told = ''
            return
        self.told = self.tell(self.pointed)
        if self.told:
            words = kaVel.Vec4(at.x, at.y + 0.12, at.z, 1)
            self.component.addShapeText(self.layer + ' pointed', words, self.told.split('\n')[0], INK)
            self.component.addShapeCircle(self.layer + ' pointed', at, 0.08, INK)

    def _pixel(self) -> tuple[float, float]:
        """What is pointed at: by the pointer while the editor is open, else by the middle of the picture."""
        pointer = self.component.pointer
        if self.component.active and pointer.w:
            return pointer.x, pointer.y
        window = kaVel.getSystem('WindowSystem2')
        return window.width / 2, window.height / 2

    def tell(self, at: kaVel.Vec4) -> str:
        """What is to be said of a place, the first line beside it."""
        return ''


class Floors(Shown):
    """A view that paints floors, a few squares in a frame; what was painted stays until it is all there anew."""

    #: Whether it asks for the light of all spots.
    isLit = False

    def begin(self) -> None:
        super().begin()
        self.surveys: list[kaVel.FloorSurvey] = []
        self.progress = 'begins'
        self.steps = self._steps()

    def end(self) -> None:
        super().end()
        for survey in self.surveys:
            survey.murder()
        self.surveys = []

    def changed(self) -> None:
        self.steps = self._steps()

    def doFrame(self) -> None:
        super().doFrame()
        if self.steps:
            self.progress = next(self.steps, '')
            if not self.progress:
                self.steps = None

    def state(self) -> str:
        return self.progress if self.steps else self.summary()

    def summary(self) -> str:
        """What is said of the whole, once it is worked out."""
        return self.help

    def _steps(self) -> Iterator[str]:
        """Works all out anew, from frame to frame; each step says how far it is."""
        for survey in self.surveys:
            survey.murder()
        self.surveys = []
        for map in mapsOf(self.level):
            survey = kaVel.make('FloorSurvey', parent=self.component.parent, name='survey')
            self.surveys.append(survey)
            survey.begin(map, EDGE)
            while survey.work(SQUARES):
                yield 'looking for floors: %d spots' % survey.spotCount
            player = playerOf(self.level)
            if player:
                survey.flood(feetOf(player))
            lit = 0
            while self.isLit and survey.shine(SPOTS):
                lit += SPOTS
                yield 'asking for the light: %d of %d spots' % (lit, survey.spotCount)
        self.worked()
        self.component.clearShapes(self.layer)
        self.component.setShapesBehind(self.layer, True)
        for survey in self.surveys:
            yield from self._paint(survey)

    def worked(self) -> None:
        """All is known and nothing painted yet."""

    def colorOf(self, survey: kaVel.FloorSurvey, spot: int) -> Color | None:
        """The colour of a spot; None for one that is not painted."""
        return None

    def _paint(self, survey: kaVel.FloorSurvey) -> Iterator[str]:
        """Paints spots that lie side by side and are of one colour as one area."""
        half = survey.edge / 2
        run: tuple[kaVel.Vec4, kaVel.Vec4, Color] | None = None
        for spot in range(survey.spotCount):
            if spot % (SPOTS * 2) == SPOTS:
                yield 'painting: %d of %d spots' % (spot, survey.spotCount)
            color = self.colorOf(survey, spot)
            at = survey.getSpot(spot)
            if run and color == run[2] and _isNext(run[1], at, survey.edge):
                run = run[0], at, run[2]
                continue
            self._paintRun(run, half)
            run = (at, at, color) if color else None
        self._paintRun(run, half)

    def _paintRun(self, run: tuple[kaVel.Vec4, kaVel.Vec4, Color] | None, half: float) -> None:
        if run:
            first, last, color = run
            self.component.addShapeArea(self.layer, kaVel.Vec4(first.x - half, first.y + ABOVE, first.z - half, 1),
                                        kaVel.Vec4(last.x + half, last.y + ABOVE, last.z + half, 1), vec(color))


def _isNext(last: kaVel.Vec4, at: kaVel.Vec4, edge: float) -> bool:
    return at.z == last.z and abs(at.y - last.y) < 0.02 and 0 < at.x - last.x < 1.5 * edge


def cellsOf(grid: kaVel.SquareGrid, perFrame: int, see: Callable[[int, int], None]) -> Iterator[int]:
    """Calls a function with all cells of a grid, column and row, some in each step, which gives how many are done."""
    done = 0
    for z in range(grid.gridRows):
        for x in range(grid.gridCols):
            see(x, z)
            done += 1
            if done % perFrame == 0:
                yield done
