"""The doors of the house: all of wood, some of them locked."""

from __future__ import annotations

import math

import kaVel
import objects.GameObjects as place
from kaVel import Entity, MapRootEntity
from nightfall.Plan import DOORS, ROOMS, THICK

#: Door -> the key that opens it.
KEYS = {'passageDoor': 'passageKey', 'sewingDoor': 'sewingKey', 'landingDoor': 'stairKey'}
#: Doors that no key opens.
BOLTED = ('linenDoor', 'bathDoor', 'doorTwo')
#: Doors that stand open, and to which side, as the sign of the angle.
OPEN = {'doorEight': -1.0, 'serviceDoor': -1.0}


def build(map: MapRootEntity) -> dict[str, Entity]:
    """All leaves by name."""
    leaves: dict[str, Entity] = {}
    for name, (x, z, turn, one, _) in DOORS.items():
        leaves[name] = place.HingedDoor(map, name, at=(x, ROOMS[one].floor, z), turn=turn, key=KEYS.get(name),
                                        locked=name in BOLTED, frame=THICK)
        if name in OPEN:
            kaVel.configure(leaves[name].getComponent('physics'), open=True, prevAngle=OPEN[name] * math.radians(85))
    return leaves
