"""The script that a new level begins with."""

from __future__ import annotations

import importlib
import keyword
import os
import re

from editor.edits.Refused import Refused

TEXT = '''"""{name}: a room to begin with, 8 m by 8 m.

WASD and mouse, Shift runs, E uses what the mark points at. Every map is a function of this module that hangs objects
under the map's root; `at` is in metres: x to the right, y up, z ahead (north on the plan), `turn` in degrees.

             north
        +--------------+   z = 4
        |              |
   west |    lamp      |  east      x = -4 .. 4
        |              |
        |    player    |
        +--------------+   z = -4
             south
"""

import kaVel
import objects.GameObjects as place
from kaVel import Coordinator, MapRootEntity

NORTH, EAST, SOUTH, WEST = 0, 90, 180, -90  # which way an object faces

#: Middle and extents of the map, metres: what stands outside is not drawn.
MIDDLE, EXTENT = (0, 1.4, 0), (24, 2.8, 24)


def build(coordinator: Coordinator):
    coordinator.getManager('graphics2').sceneAmbient = 0.06
    coordinator.getManager('reverb').surroundings = 'woodRoom'
    coordinator.loadMap('house')
    place.Player(coordinator, at=(0, 0, -2.5), turn=NORTH)
    place.Hud(coordinator)


def house(map: MapRootEntity):
    """The map, and everything in it."""
    kaVel.configure(map.getComponent('transform'), position=kaVel.Vec4(*MIDDLE, 1), scale=kaVel.Vec4(*EXTENT, 0))
    place.hear(map)
    shell(map)
    lights(map)


def shell(map: MapRootEntity):
    """Floor, ceiling and four walls; the blocks are what one cannot walk through."""
    place.Box(map, 'floor', at=(0, -0.1, 0), size=(8, 0.1, 8), surface='boards')
    place.Box(map, 'ceiling', at=(0, 2.8, 0), size=(8, 0.1, 8), surface='plaster')
    for name, x, z, wide, deep in (('northWall', 0, 4.1, 8.4, 0.2), ('southWall', 0, -4.1, 8.4, 0.2),
                                   ('eastWall', 4.1, 0, 0.2, 8), ('westWall', -4.1, 0, 0.2, 8)):
        place.Box(map, name, at=(x, 0, z), size=(wide, 2.8, deep), surface='wallpaper')
        place.Block(map, name + 'Block', at=(x, 0, z), size=(wide, 2.8, deep))


def lights(map: MapRootEntity):
    place.SphereLight(map, 'lamp', at=(0, 2.3, 0.5), strength=0.7, reach=7)
'''


def file(name: str) -> str:
    """The file of a level that is to be; Refused for a name that no level can have, or that one has."""
    if not re.fullmatch('[A-Z][A-Za-z0-9]{1,39}', name) or keyword.iskeyword(name):
        raise Refused('%r is no name for a level: letters and digits, the first one a capital' % name)
    folder = next(iter(importlib.import_module('levels').__path__))
    path = os.path.join(folder, name + '.py')
    if any(other.lower() == name.lower() + '.py' for other in os.listdir(folder)):
        raise Refused('there is a level %r already' % name)
    return path


def text(name: str) -> str:
    """The script of a new level."""
    return TEXT.replace('{name}', name)
