"""The stairs from the landing to the hall, and the railings that keep one from falling."""

from __future__ import annotations

import objects.GameObjects as place
from kaVel import Entity, MapRootEntity
from nightfall.Made import balustrade
from nightfall.Plan import RISE, SOUTH, STAIRS_FOOT, STAIRS_HEAD, STAIRS_WIDTH, STAIRS_X, STEPS, TREAD, UP


def build(map: MapRootEntity, room: Entity):
    place.Stairs(map, 'stairs', at=(STAIRS_X, 0, STAIRS_FOOT), turn=SOUTH, steps=STEPS, rise=RISE, going=TREAD,
                 width=STAIRS_WIDTH)
    side = STAIRS_X - STAIRS_WIDTH / 2
    balustrade(room, 'landingRail', (10.5, UP, STAIRS_HEAD - 0.05), (side, UP, STAIRS_HEAD - 0.05))
    balustrade(room, 'stairsRail', (side, UP, STAIRS_HEAD + 0.05), (side, RISE, STAIRS_FOOT - 0.1))
