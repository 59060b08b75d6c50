"""How light it is on the floor, and where it is dark for long."""

from __future__ import annotations

import kaVel
from editor.Views import views
from editor.lint.Ways import DARKEST, batteryWay
from editor.views.Kit import INK, Color, Floors, Scale, isFloor, mapsOf, onScale, playerOf, vec

#: Dark stretches that are written in the picture.
MOST_WRITTEN = 8


@views.add
class Light(Floors):
    """A heat map of the floor, by the one function that creatures and nerves ask."""

    name = 'Light'
    help = 'How light the floor is, as creatures and nerves take it.'
    order = 10
    isLit = True
    scale: Scale = (
        (0.0, (0.10, 0.05, 0.22), 'less: nothing to see'),
        (0.004, (0.22, 0.12, 0.55), '0.004'),
        (DARKEST, (0.16, 0.36, 0.80), '0.008 seen: creatures begin to see what stands here'),
        (0.02, (0.10, 0.60, 0.66), '0.02'),
        (0.04, (0.20, 0.72, 0.34), '0.04 calm: the mind no longer suffers'),
        (0.08, (0.66, 0.80, 0.20), '0.08'),
        (0.12, (0.98, 0.82, 0.22), '0.12 clear: creatures see as well as they can'),
        (0.2, (1.0, 0.56, 0.16), '0.2 lamplight: light gives the mind all it can'),
        (0.5, (1.0, 0.94, 0.80), '0.5 bright: under a work lamp'),
    )

    def colorOf(self, survey: kaVel.FloorSurvey, spot: int) -> Color | None:
        if not isFloor(survey, spot):
            return None
        return onScale(self.scale, survey.getLight(spot))

    def summary(self) -> str:
        known = sum(survey.spotCount for survey in self.surveys)
        return '%d spots; flickering lights as they were in that moment' % known

    def tell(self, at: kaVel.Vec4) -> str:
        return '%.3f' % lightOnFloor(self.level, at)


def lightOnFloor(level: kaVel.Coordinator, at: kaVel.Vec4) -> float:
    """The light on a floor as the map has it: `lightAt` just above."""
    above = kaVel.Vec4(at.x, at.y + 0.05, at.z, 1)
    return max((kaVel.Reflection.lightAt(map, above) for map in mapsOf(level)), default=0.0)


@views.add
class Dark(Floors):
    """The stretches that one walks in the dark, by how much of a battery they take."""

    name = 'Dark stretches'
    help = 'Where one walks in the dark, by the part of a battery that it takes.'
    order = 11
    isLit = True
    scale: Scale = (
        (0.0, (0.25, 0.40, 0.75), 'short: less than a quarter of a battery'),
        (0.25, (0.85, 0.75, 0.25), '1/4 battery: and more'),
        (0.5, (0.95, 0.50, 0.15), '1/2 battery: and more'),
        (1.0, (0.95, 0.12, 0.12), 'too long: longer than a battery lasts'),
    )

    def begin(self) -> None:
        self.shares: dict[kaVel.FloorSurvey, list[float]] = {}
        self.longest = 0.0
        super().begin()

    def worked(self) -> None:
        player = playerOf(self.level)
        self.lasting = batteryWay(player) if player else None
        layer = self.layer + ' words'
        self.component.clearShapes(layer)
        self.shares = {}
        self.longest = 0.0
        for survey in self.surveys:
            lengths = [survey.getAreaSize(number) for number in range(survey.findStretches(DARKEST))]
            self.shares[survey] = [length / (self.lasting or 215.0) for length in lengths]
            self.longest = max([self.longest, *lengths])
            for number, length in enumerate(lengths[:MOST_WRITTEN]):
                if length > 2.0:
                    self._write(survey, number, length, layer)

    def _write(self, survey: kaVel.FloorSurvey, number: int, length: float, layer: str) -> None:
        begin, end = survey.getSpot(survey.getAreaBegin(number)), survey.getSpot(survey.getAreaEnd(number))
        above = kaVel.Vec4(begin.x, begin.y + 0.3, begin.z, 1)
        self.component.addShapeText(layer, above, '%.0f m in the dark' % length, INK)
        for place in (begin, end):
            self.component.addShapeCircle(layer, place, 0.2, vec((1.0, 0.97, 0.86), 1.0))

    def end(self) -> None:
        super().end()
        self.component.clearShapes(self.layer + ' words')

    def colorOf(self, survey: kaVel.FloorSurvey, spot: int) -> Color | None:
        area = survey.getAreaOf(spot)
        return onScale(self.scale, self.shares[survey][area]) if area >= 0 else None

    def summary(self) -> str:
        lasting = 'a battery lasts for %.0f m' % self.lasting if self.lasting else 'there is no player with a battery'
        return 'the longest is %.0f m, and %s' % (self.longest, lasting)

    def tell(self, at: kaVel.Vec4) -> str:
        for survey in self.surveys:
            area = survey.getAreaOf(survey.findSpot(at))
            if area >= 0 and not self.steps:
                return '%.0f m in the dark' % survey.getAreaSize(area)
        return 'light' if not self.steps else ''
