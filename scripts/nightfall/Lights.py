"""Yellow lamps, blue windows: nothing else shines in the house."""

from __future__ import annotations

import objects.GameObjects as place
from kaVel import Entity
from nightfall import Moon
from nightfall.Plan import EAST, SOUTH, UP, WEST
from objects.Placing import Triple

SNOW = (0.40, 0.55, 0.85)  # what the snow outside throws back


def build(rooms: dict[str, Entity]):
    _moon(rooms)
    _snow(rooms)
    _lamps(rooms)


def _moon(rooms: dict[str, Entity]):
    """Where it comes in, the bars of the windows lie on the floor."""
    Moon.shine(rooms['corridor'], (4.8, UP + 1.5, 1.8), away=10.6, strength=2.6, reach=19, angle=25, core=0.9)
    Moon.shine(rooms['eight'], (-0.1, UP + 1.5, -2.4), away=7.5, strength=2.4, reach=13, angle=15, core=0.85)
    Moon.shine(rooms['hall'], (14.7, 2.8, 25.1), away=12.0, strength=3.0, reach=24, angle=21, core=0.9)
    place.Dust(rooms['hall'], 'motes', at=(15.2, 1.6, 21.5), size=(5, 2.8, 5), count=500, mote=0.004, drift=0.012)
    place.Dust(rooms['corridor'], 'motes', at=(5.5, UP + 1.1, 0.9), size=(9, 1.8, 1.4), count=350, mote=0.003,
               drift=0.012)


def _snow(rooms: dict[str, Entity]):
    """What comes in at the other windows: enough to tell where the walls are."""
    for name, x, height, z, reach in (
            ('corridor', 1.8, 1.6, 1.3, 2.4), ('corridor', 4.8, 1.6, 1.3, 2.4), ('corridor', 7.8, 1.6, 1.3, 2.4),
            ('eight', 0.7, 1.6, -2.4, 3.6), ('seven', 5.9, 1.6, -4.0, 3.0), ('six', 9.9, 1.6, -4.0, 3.0),
            ('five', 14.0, 1.6, -4.0, 3.0), ('four', 10.3, 1.6, 3.8, 3.2), ('three', 10.3, 1.6, 7.8, 3.2),
            ('two', 10.3, 1.6, 11.9, 3.2), ('sewing', 20.1, 1.6, 4.6, 3.6), ('bath', 20.1, 1.6, 12.4, 3.0)):
        place.SphereLight(rooms[name], 'snowLight', at=(x, UP + height, z), color=SNOW, strength=0.16, reach=reach)
    for x in (13.0, 16.4):
        place.SphereLight(rooms['hall'], 'snowLight', at=(x, 2.6, 24.0), color=SNOW, strength=0.16, reach=5.5)
    place.SphereLight(rooms['landing'], 'snowLight', at=(14.5, UP + 1.6, 16.8), color=SNOW, strength=0.06, reach=5.0)


def _lamps(rooms: dict[str, Entity]):
    bracket(rooms['corridor'], 'cornerLamp', at=(15.999, UP + 1.75, 0.85), turn=WEST, flicker=place.failing(3))
    for name, x, z, turn, seed in (('southLamp', 14.301, 7.95, EAST, 2), ('northLamp', 15.999, 12.2, WEST, 5)):
        bracket(rooms['passage'], name, at=(x, UP + 1.75, z), turn=turn, flicker=place.burning(seed, depth=0.06))
    place.LitLamp(rooms['landing'], 'tableLamp', at=(16.9, UP + 0.65, 14.55), strength=0.32, reach=4.2)
    place.LitChamberstick(rooms['five'], 'candle', at=(13.95, UP + 0.765, -2.7), turn=30, reach=3.4)
    place.LitChamberstick(rooms['two'], 'candle', at=(12.75, UP + 0.65, 13.72), turn=-40, reach=3.6)
    _candlelight(rooms['three'], (11.75, UP + 0.16, 9.62), 0.30, 1.2)
    _candlelight(rooms['passage'], (14.4, UP + 0.07, 12.6), 0.45, 0.8)
    place.LitLamp(rooms['six'], 'deskLamp', at=(10.55, UP + 0.77, -3.95), strength=0.28, reach=3.6)
    bracket(rooms['service'], 'lamp', at=(8.0, 1.85, 22.199), turn=SOUTH, flicker=place.burning(7, depth=0.05))


def _candlelight(room: Entity, at: Triple, strength: float, reach: float):
    """What the candle of number two lets be seen of itself outside: through the hatch, and under the door."""
    place.SphereLight(room, 'candlelight', at=at, color=place.CANDLELIGHT, strength=strength, reach=reach,
                      flicker=place.burning(4, depth=0.18))


def bracket(room: Entity, name: str, at: Triple, turn: float, strength: float = 1.0,
            flicker: place.Flicker | None = None):
    """A lamp on an arm at a wall, `at` the wall: a cone downwards with shadows, and a little light around it."""
    arm = place.Box(room, name, at=place.around(at, turn, 0, -0.2, 0.09), size=(0.03, 0.03, 0.18), turn=turn,
                    surface='brass')
    place.Lamp(arm, 'lamp', at=place.around(at, turn, 0, -0.17, 0.16), turn=turn)
    bulb = place.around(at, turn, 0, 0.13, 0.17)
    place.ShadowSpot(arm, 'cone', at=bulb, turn=turn, pitch=68, color=place.LAMPLIGHT, strength=0.95 * strength,
                     reach=6.5, angle=62, core=0.3, edge=3, nearClip=0.3, flicker=flicker)
    place.SphereLight(arm, 'glow', at=bulb, color=place.LAMPLIGHT, strength=0.22 * strength, reach=2.4,
                      flicker=flicker)
    return arm
