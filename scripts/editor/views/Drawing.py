"""What it costs to draw what one sees from each place: draw calls, and how often each pixel is drawn."""

from __future__ import annotations

import math
from typing import Any, Iterator

import kaVel
from editor.Views import views
from editor.views.Kit import ABOVE, SQUARES, Scale, Shown, feetOf, mapsOf, onScale, playerOf, vec
from objects.Placing import placed, turned

#: Metres from a place that is measured to the next, and from the floor to the eye.
RASTER, EYE = 1.5, 1.6
#: Directions that are looked into from each place, degrees; the dearest of them counts.
HEADINGS = (0, 90, 180, 270)
#: Frames from one measurement to the next, each of which draws the world once more.
EVERY = 2


class Measured(Shown):
    """A view that has a camera look around from place to place and counts what the real passes draw."""

    #: What of `viewCost` is shown.
    unit = ''

    def begin(self) -> None:
        super().begin()
        self.graphics = self.level.getManager('graphics2')
        self.probe: Any = placed(self.component.parent, 'probe')
        kaVel.addComponent(self.probe, 'viewer', 'ViewerComponent', verticalFieldOfViewAngle=math.radians(55),
                           nearClipDistance=0.05, farClipDistance=50.0)
        kaVel.finishLoad(self.probe)
        self.costs: dict[tuple[float, float, float], float] = {}
        self.steps: Iterator[str] | None = self._measure()
        self.progress = ''

    def end(self) -> None:
        super().end()
        self.probe.murder()

    def changed(self) -> None:
        self.steps = self._measure()

    def doFrame(self) -> None:
        super().doFrame()
        if self.steps and self.frame % EVERY == 0:
            self.progress = next(self.steps, '')
            self.steps = self.steps if self.progress else None

    def costOf(self, cost: kaVel.Vec4) -> float:
        """What counts here of what a view costs."""
        return cost.x

    def measureFrom(self, at: kaVel.Vec4, turn: float) -> None:
        """Has the next frame measure the view from above a floor."""
        transform = self.probe.getComponent('transform')
        transform.position = kaVel.Vec4(at.x, at.y + EYE, at.z, 1)
        transform.orientation = turned(turn)
        self.graphics.measureView(self.probe)

    def _measure(self) -> Iterator[str]:
        self.costs = {}
        self.component.clearShapes(self.layer)
        self.component.setShapesBehind(self.layer, True)
        places = yield from self._places()
        for number, at in enumerate(places):
            dearest = 0.0
            for turn in HEADINGS:
                self.measureFrom(at, turn)
                yield 'looking around: %d of %d places' % (number, len(places))
                dearest = max(dearest, self.costOf(self.graphics.viewCost))
            self.costs[at.x, at.y, at.z] = dearest
            self._paint(at, dearest)

    def _places(self) -> Iterator[Any]:
        """The places of the raster at which somebody can stand."""
        found: dict[tuple[int, int, int], kaVel.Vec4] = {}
        for map in mapsOf(self.level):
            survey = kaVel.make('FloorSurvey', parent=self.component.parent, name='survey')
            survey.begin(map, 0.5)
            while survey.work(SQUARES):
                yield 'looking for floors'
            player = playerOf(self.level)
            if player:
                survey.flood(feetOf(player))
            for spot in range(survey.spotCount):
                if survey.getWay(spot) >= 0 or not player and survey.isShown(spot):
                    at = survey.getSpot(spot)
                    found.setdefault((round(at.x / RASTER), round(at.y), round(at.z / RASTER)), at)
            survey.murder()
        return list(found.values())

    def _paint(self, at: kaVel.Vec4, cost: float) -> None:
        half = RASTER * 0.42
        self.component.addShapeArea(self.layer, kaVel.Vec4(at.x - half, at.y + ABOVE, at.z - half, 1),
                                    kaVel.Vec4(at.x + half, at.y + ABOVE, at.z + half, 1),
                                    vec(onScale(self.scale, cost)))

    def _nearest(self, at: kaVel.Vec4) -> float | None:
        near = [(math.dist(place, (at.x, at.y, at.z)), cost) for place, cost in self.costs.items()]
        distance, cost = min(near, default=(math.inf, 0.0))
        return cost if distance < RASTER else None

    def tell(self, at: kaVel.Vec4) -> str:
        cost = self._nearest(at)
        return '' if cost is None else '%.4g %s' % (cost, self.unit)

    def state(self) -> str:
        if self.steps:
            return self.progress
        most = max(self.costs.values(), default=0.0)
        return '%d places, %.4g %s at most' % (len(self.costs), most, self.unit)


@views.add
class Draws(Measured):
    """Draw calls of the world, its lights and their shadows, by where one stands."""

    name = 'Draw calls'
    help = 'How many draw calls the world takes from each place, in the dearest direction.'
    order = 60
    unit = 'draw calls'
    scale: Scale = (
        (0.0, (0.20, 0.55, 0.35), 'below 100'),
        (100.0, (0.55, 0.75, 0.25), '100'),
        (200.0, (0.95, 0.80, 0.20), '200'),
        (400.0, (0.95, 0.45, 0.15), '400'),
        (800.0, (0.92, 0.12, 0.12), '800 and more'),
    )

    def state(self) -> str:
        drawn = kaVel.getSystem('GraphicsSystem2').drawCallCount
        return '%s; the whole frame before: %d' % (super().state(), drawn)


@views.add
class Overdraw(Measured):
    """How often a pixel is drawn by the world and by its lights, on average, by where one stands."""

    name = 'Overdraw'
    help = 'How often each pixel is drawn from each place, by surfaces and by lights, in the dearest direction.'
    order = 61
    unit = 'times a pixel'
    scale: Scale = (
        (0.0, (0.20, 0.55, 0.35), 'below 2'),
        (2.0, (0.55, 0.75, 0.25), 'twice'),
        (4.0, (0.95, 0.80, 0.20), '4 times'),
        (8.0, (0.95, 0.45, 0.15), '8 times'),
        (16.0, (0.92, 0.12, 0.12), '16 times and more'),
    )

    def costOf(self, cost: kaVel.Vec4) -> float:
        return cost.z + cost.w
