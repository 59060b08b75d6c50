"""Through which openings one room is seen from another, so that no more is drawn than is seen."""

from __future__ import annotations

from typing import Mapping

import objects.GameObjects as place
from kaVel import Entity
from nightfall.Plan import DOORS, STAIRS_HEAD, STAIRS_X, roomAt
from objects.house.Sight import Opening
from objects.player.Visitor import Visitor


def build(rooms: Mapping[str, Entity], leaves: Mapping[str, Entity], visitor: Visitor):
    openings = [Opening(one, other, (x, z), _ajar(leaves[name])) for name, (x, z, _, one, other) in DOORS.items()]
    openings += [Opening('landing', 'hall', (x, STAIRS_HEAD)) for x in (11.0, 13.0, 15.0, 17.0, STAIRS_X)]
    openings += [Opening('sewing', 'linen', (19.6, 7.7)), Opening('three', 'two', (11.75, 9.8)),
                 Opening('service', 'lift', (5.7, 20.2)),
                 Opening('service', 'chute', (7.6, 22.3))]
    return place.Sight(rooms, roomAt, openings, visitor)


def _ajar(leaf: Entity):
    door = leaf.getComponent('physics')
    return lambda: door.open or abs(door.prevAngle) > 0.005
