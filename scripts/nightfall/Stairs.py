"""The stairs from the landing to the hall, and the railings that keep one from falling."""

from __future__ import annotations

import math

import objects.GameObjects as place
from kaVel import Entity, MapRootEntity
from nightfall.Made import balustrade
from nightfall.Plan import STAIRS_FOOT, STAIRS_HEAD, STAIRS_WIDTH, STAIRS_X, UP
from objects.Bodies import addWall
from objects.Placing import placed

STEPS = 16


def build(map: MapRootEntity, room: Entity):
    length = STAIRS_FOOT - STAIRS_HEAD
    rise, tread = UP / STEPS, length / STEPS
    for number in range(STEPS - 1):
        z = STAIRS_HEAD + (number + 0.5) * tread
        place.Box(room, 'step', at=(STAIRS_X, 0, z), size=(STAIRS_WIDTH, UP - (number + 1) * rise, tread),
                  surface='wood', repeats=1.0)
    _slope(map, length)
    side = STAIRS_X - STAIRS_WIDTH / 2
    balustrade(room, 'landingRail', (10.5, UP, STAIRS_HEAD - 0.05), (side, UP, STAIRS_HEAD - 0.05))
    balustrade(room, 'stairsRail', (side, UP, STAIRS_HEAD + 0.05), (side, 0.15, STAIRS_FOOT - 0.1))


def _slope(map: MapRootEntity, length: float):
    """What the feet go on: a plank under the edges of the steps."""
    pitch = math.degrees(math.atan2(UP, length))
    along, thick = math.hypot(UP, length), 0.4
    down = math.radians(pitch)
    z, y = (STAIRS_HEAD + STAIRS_FOOT) / 2, UP / 2
    slope = placed(map, 'stairsSlope', at=(STAIRS_X, y - thick / 2 * math.cos(down), z - thick / 2 * math.sin(down)),
                   pitch=pitch)
    addWall(slope, (STAIRS_WIDTH, thick, along))
    place.Block(map, 'underStairs', at=(STAIRS_X - STAIRS_WIDTH / 2 - 0.06, 0, STAIRS_HEAD + 1.6),
                size=(0.1, 1.9, 3.2))
