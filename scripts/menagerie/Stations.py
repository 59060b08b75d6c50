"""Where the number keys lead, and what is under way there when a picture is taken."""

from __future__ import annotations

from typing import TYPE_CHECKING, Callable, NamedTuple

import kaVel
from menagerie.Minds import Mind, Warden
from objects.Placing import Triple, axisTurn

if TYPE_CHECKING:
    from levels.Menagerie import Visit


class Station(NamedTuple):
    name: str
    at: Triple      # the visitor's feet, metres
    turn: float     # degrees
    pitch: float    # degrees, down
    begin: Callable[[Visit], object] = lambda visit: None  # sets something going, for a picture


def _stand(mind: Mind | Warden, at: tuple[float, float], turn: float):
    """Puts a creature somewhere, at rest."""
    transform = mind.transform
    transform.position = kaVel.Vec4(at[0], transform.position.y, at[1], 1)
    transform.orientation = axisTurn(1, turn)


def _hunt(visit: Visit):
    """The hound comes through its door, after what has fallen into the hall."""
    visit.leaves['kennelDoor'].getComponent('physics').prevAngle = 1.45
    _stand(visit.hound, (-2.9, 4.0), 172)
    visit.hound.senses.alarm(kaVel.Vec4(-2.4, 0, 1.2, 1), 0.5)


def _lurk(visit: Visit):
    visit.leaves['darkDoor'].getComponent('physics').prevAngle = -1.45
    _stand(visit.shade, (-3.3, -6.2), 20)


def _pass(visit: Visit):
    _stand(visit.warden, (9.9, 0.4), 30)


STATIONS = (
    Station('hall', (5.2, 0, 1.6), -108, 6),
    Station('board', (-3.3, 0, 0.0), -90, 2),
    Station('moths', (3.0, 0, -5.2), 172, 10),
    Station('doorway', (3.6, 0, 8.4), 118, 12, lambda visit: visit.crowd.string()),
    Station('patrol', (12.0, 0, -2.2), -52, 6, _pass),
    Station('hound', (-2.4, 0, 1.4), -12, 8, _hunt),
    Station('shade', (-3.0, 0, -2.0), 180, 4, _lurk),
    Station('rats', (10.8, 0, -0.4), 140, 24),
)
