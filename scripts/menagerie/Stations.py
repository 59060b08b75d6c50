"""Where the number keys lead, and what is under way there when a picture is taken."""

from __future__ import annotations

from typing import TYPE_CHECKING, Callable, NamedTuple

from objects.Placing import Triple

if TYPE_CHECKING:
    from levels.Menagerie import Visit


class Station(NamedTuple):
    name: str
    at: Triple      # the walker's feet, metres
    turn: float     # degrees
    pitch: float    # degrees, down
    begin: Callable[[Visit], object] = lambda visit: None  # sets something going, for a picture


def _openKennel(visit: Visit):
    visit.leaves['kennelDoor'].getComponent('physics').openDoor(visit.walker.player)


def _openDark(visit: Visit):
    visit.leaves['darkDoor'].getComponent('physics').openDoor(visit.walker.player)


def _openGallery(visit: Visit):
    visit.leaves['galleryDoor'].getComponent('physics').openDoor(visit.walker.player, False)


def _throw(visit: Visit):
    _openKennel(visit)
    visit.goTo(6)
    visit.bolts.throw()


STATIONS = (
    Station('hall', (5.2, 0, 1.6), -108, 6),
    Station('board', (-3.3, 0, 0.0), -90, 2),
    Station('moths', (3.0, 0, -5.2), 172, 10),
    Station('doorway', (3.4, 0, 8.6), 122, 10),
    Station('patrol', (12.0, 0, -2.2), -52, 6),
    Station('hound', (-2.4, 0, 1.4), -12, 8, _throw),
    Station('shade', (-3.0, 0, -2.0), 180, 4, _openDark),
    Station('rats', (10.8, 0, -0.4), 140, 24),
)
