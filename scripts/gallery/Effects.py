"""What comes over the screen in the gallery's last two rooms."""

import math

import kaVel
import objects.GameObjects as place
from kaVel import Coordinator
from objects.Placing import LevelClock, onFrame

TEXT = ('Über der Tür stand, mit müder Hand gemalt: »Hört ihr die Schritte?« Früher füllten Gäste diese '
        'Räume; nun schlägt nur die Uhr – und niemand zählt die Stunden. Größe war hier einst zu Hause, heute '
        'wohnen Staub, Kälte und ein Flüstern hinter den Wänden, das jeden Abend näher rückt.')

PAPER = (0.82, 0.76, 0.63, 1)
BRASS = (0.78, 0.66, 0.40, 1)


class ScreenPage:
    """A page of pictures and text over the scene, shown while the visitor is in the room."""

    def __init__(self, coordinator: Coordinator):
        panel = place.Picture(coordinator, 'page', picture='panel', at=(0.06, 0.52), size=(0.40, 0.42),
                              anchor=('H_LEFT', 'V_CENTER'), depth=2.0)
        self.parts = [
            place.ScreenFrame(coordinator, 'pageVignette'),
            panel,
            place.Picture(panel, 'emblem', picture='emblem', at=(0.20, -0.125), size=(0.13, 0.13), depth=-0.5),
            place.Text(panel, 'title', text='Das Gästebuch', at=(0.20, 0.18), size=0.034, color=BRASS, depth=-1.0,
                       anchor=('H_CENTER', 'V_TOP')),
            place.Text(panel, 'text', text=TEXT, at=(0.03, 0.125), size=0.0195, wrapWidth=0.34, color=PAPER,
                       depth=-1.0),
            place.Picture(coordinator, 'candleLeft', picture='iconCandle', at=(0.945, 0.075), size=(0.045, 0.045)),
            place.Picture(coordinator, 'mindLeft', picture='iconMind', at=(0.900, 0.075), size=(0.045, 0.045)),
        ]
        self.leave()

    def enter(self):
        self._show(True)

    def leave(self):
        self._show(False)

    def _show(self, visible: bool):
        for part in self.parts:
            part.getComponent('graphics2').visible = visible


class FailingMind:
    """Takes the visitor's sanity and then the picture itself, lets both come back, and begins again."""

    PERIOD = 20.0  # seconds

    def __init__(self, coordinator: Coordinator):
        self.graphics = coordinator.getManager('graphics2')
        self.level = coordinator
        clockwork = place.Entity(coordinator, 'failingMind')
        self.clock = LevelClock(clockwork)
        self.since = None
        onFrame(clockwork, self.doFrame)

    def enter(self):
        self.since = self.clock.seconds()

    def enterInTheMiddle(self):
        """As `enter`, but with the picture already going."""
        self.since = self.clock.seconds() - 8.5

    def leave(self):
        self.since = None
        self._apply(0.0, 0.0)

    def doFrame(self):
        if self.since is not None:
            self._apply(*self.amounts(self.clock.seconds() - self.since))

    def amounts(self, seconds: float):
        """Insanity and dissolve, 0 to 1, so many seconds after the visitor came."""
        t = seconds % self.PERIOD
        insanity = _swell(t, 0.0, 5.0, 13.0, 18.0)
        dissolve = _swell(t, 6.5, 9.5, 10.5, 13.5)
        return 0.85 * insanity * (0.92 + 0.08 * math.sin(2.1 * t)), 0.6 * dissolve

    def _apply(self, insanity: float, dissolve: float):
        place.visitorOf(self.level).component.sanity = 100.0 * (1.0 - insanity)
        kaVel.configure(self.graphics, dissolveAmount=dissolve, dissolveColor=kaVel.Vec4(0.055, 0.004, 0.004, 1))


def _swell(t: float, begin: float, full: float, ebb: float, end: float):
    """0 before `begin`, 1 from `full` to `ebb`, 0 after `end`, smooth between."""
    rise = min(1.0, max(0.0, (t - begin) / (full - begin)))
    fall = min(1.0, max(0.0, (end - t) / (end - ebb)))
    x = min(rise, fall)
    return x * x * (3.0 - 2.0 * x)
