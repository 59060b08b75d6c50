"""Bestiary: three rooms and everything that lives in the house, to be looked at and met.

WASD and mouse, Shift runs, F switches the flashlight.
"""

from __future__ import annotations

from typing import Callable

import kaVel
import objects.GameObjects as place
from kaVel import Coordinator, MapRootEntity

HEIGHT = 2.6
#: Walls: middle, and extent along x and z, metres. A doorway leads from the hall to each of the other rooms.
WALLS = (((0, -7), (10, 0.2)), ((0, 7), (10, 0.2)), ((-5, 0), (0.2, 14)), ((5, -4.2), (0.2, 5.6)),
         ((5, 3.8), (0.2, 6.4)), ((-2.9, 1), (4.2, 0.2)), ((2.9, 1), (4.2, 0.2)), ((9, -7), (8, 0.2)),
         ((9, 7), (8, 0.2)), ((13, 0), (0.2, 14)))

_map: MapRootEntity


def build(coordinator: Coordinator):
    coordinator.getManager('graphics2').sceneAmbient = 0.02
    coordinator.loadMap('house')
    place.Player(coordinator, at=(0, 0, -5.6))
    place.Hud(coordinator)


def house(map: MapRootEntity):
    global _map
    _map = map
    map.getComponent('transform').scale = kaVel.Vec4(30, 0, 20, 0)  # about the origin: the player stands in no map
    map.getComponent('mapData').gridCellSize = 0.3
    place.PartitioningGrid(map, size=(30, 0, 20))
    place.Box(map, 'floor', at=(4, -0.3, 0), size=(18, 0.3, 14), surface='boards')
    place.Block(map, 'ground', at=(4, -0.5, 0), size=(18, 0.5, 14))
    place.Box(map, 'ceiling', at=(4, HEIGHT, 0), size=(18, 0.2, 14), surface='plaster')
    for (x, z), (wide, deep) in WALLS:
        place.Box(map, 'wall', at=(x, 0, z), size=(wide, HEIGHT, deep), surface='wallpaper')
        place.Block(map, 'stop', at=(x, 0, z), size=(wide, HEIGHT, deep))
    place.SphereLight(map, 'hallLight', at=(0, 2.2, -3), strength=0.5, reach=5.5)
    place.SphereLight(map, 'eastLight', at=(9, 2.1, 4), strength=0.25, reach=4.5, flicker=place.burning(2))
    place.Flashlight(map, at=(0.3, 0.9, -4.9))
    place.Damp(map, 'damp', at=(-2.0, 0, 4.5), territory=3.0, pipes=[(-4.8, 2.3, 0), (4.8, 2.3, 5)])
    for number, (pose, x, z, turn) in enumerate((('standing', 7.0, -3.0, 250), ('reaching', 8.2, -1.4, 240),
                                                 ('begging', 7.4, -5.2, 290), ('pointing', 9.6, -3.2, 265),
                                                 ('shielding', 9.0, -5.8, 300), ('shrouded', 10.4, -1.2, 230))):
        place.Fitting(map, 'fitting%d' % number, at=(x, 0, z), turn=turn, pose=pose)
    place.Guest(map, 'guest', points=[(7, 0, 2.4), (11.5, 0, 2.4), (11.5, 0, 6), (7, 0, 6)])
    place.Rats(map, 'rats', at=(2.4, 0, 2.6), number=6, hole=(4.7, 0, 1.3))
    place.Moths(map, 'moths', at=(0, 2.1, -3), number=9)


def _look(at: place.Triple, turn: float, pitch: float, lit: bool = True, **poses: tuple[place.Triple, float]):
    """Stands the player somewhere, with or without his light, and creatures where a picture wants them."""
    def show():
        level = _map.getAncestorOfType(kaVel.Reflection.Coordinator)
        player = level.getChild('Player')
        component = player.getComponent('player')
        if not component.hasFlashlight:
            component.pickupFlashlight(_map.getDescendantByPath('flashlight/physics'))
        component.setFlashlightOn(lit)
        player.getComponent('transform').position = kaVel.Vec4(at[0], 0.875, at[2], 1)
        player.getComponent('transform').orientation = place.turned(turn)
        player.getChild('camera').getComponent('parentFollower').orientationOffset = place.turned(0, pitch=pitch)
        for name, ((x, y, z), angle) in poses.items():
            transform = _map.getChild(name).getComponent('transform')
            transform.position = kaVel.Vec4(x, transform.position.y, z, 1)
            transform.orientation = place.turned(angle)
    return show


def views() -> list[tuple[str, Callable[[], object]]]:
    """What a headless run takes pictures of."""
    return [('fittings', _look((5.7, 0, -3.4), 95, 4)), ('fittingsDark', _look((5.7, 0, -3.4), 95, 4, lit=False)),
            ('fittingNear', _look((7.2, 0, -2.0), 62, 2)), ('fittingHead', _look((6.4, 0, -3.4), 55, -4)),
            ('damp', _look((-2.0, 0, 1.8), 0, 14, damp=((-2.0, 0, 4.4), 180))),
            ('dampDoor', _look((0.1, 0, -2.0), 0, 12, damp=((0, 0, 1.0), 180))),
            ('dampDark', _look((0.1, 0, -2.0), 0, 12, lit=False, damp=((0, 0, 1.0), 180))),
            ('guest', _look((6.2, 0, 2.2), 75, 6, lit=False, guest=((9, 0, 3.2), 250))),
            ('guestLit', _look((6.2, 0, 2.2), 75, 6, guest=((9, 0, 3.2), 250))),
            ('guestNear', _look((7.6, 0, 3.2), 92, 12, guest=((9, 0, 3.2), 250)))]
