"""The room of the title, by night and at dawn: a window on the heath, a lamp beside it, a chair before it.

             north, the window                plan, seen from above
        +-----[ window ]-----+   z = 3
        | clock        lamp  |
     w  |        chair       |  e             x = -3 .. 3
        |            armchair|
        |  (camera)          |
        +--------------------+   z = -1
"""

from __future__ import annotations

import objects.GameObjects as place
from kaVel import Coordinator, Entity, MapRootEntity
from objects.Placing import Pattern

EAST, SOUTH, WEST = 90, 180, -90

#: Where the lamp stands, and its light above that.
LAMP, BULB = (1.55, 0.65, 2.42), 0.40
#: Turn and pitch of the camera, degrees.
LOOKING = 8.0, 2.0


#: A window behind which it grows light.
DawnWindow = place.thing(wallWindow='wallpaper', wallWindowShell='plaster', windowFrame='wood', windowPane='lens')


def night(map: MapRootEntity):
    """All that stands still; the lamp, the chair and the camera are `Lamp`'s and `Eye`'s."""
    place.PartitioningGrid(map, at=(0, 0, 1), size=(10, 0, 10))
    shell(map, place.WallWindow)
    furniture(map)
    moon(map)
    sounds(map)


def dawn(map: MapRootEntity):
    """The same room when it is over: the lamp is out, and the chair is turned to who comes in."""
    place.PartitioningGrid(map, at=(0, 0, 1), size=(10, 0, 10))
    shell(map, DawnWindow)
    furniture(map)
    sun(map)
    base = place.Lamp(map, 'lamp', at=LAMP)
    base.getChild('lampShade').getComponent('graphics2').emissiveTextureName = 'black'
    place.Chair(map, 'chair', at=(0.3, 0, 1.5), turn=190)
    place.Sound(map, 'wind', at=(0, 1.7, 2.9), event='WindAtWindow', volume=0.5)


def shell(map: MapRootEntity, window: Pattern):
    """Two pieces deep, three wide: no more than the camera sees."""
    for x in (-2, 0, 2):
        for z in (0, 2):
            place.FloorBoards(map, 'floor', at=(x, 0, z))
            place.PlasterCeiling(map, 'ceiling', at=(x, 0, z))
        north = window if x == 0 else place.WallPlain
        north(map, 'northWall', at=(x, 0, 3), turn=SOUTH)
        place.Wainscot(map, 'northPanels', at=(x, 0, 3), turn=SOUTH)
        place.Cornice(map, 'northCornice', at=(x, 0, 3), turn=SOUTH)
    for z in (0, 2):
        for x, turn in ((-3, EAST), (3, WEST)):
            place.WallPlain(map, 'wall', at=(x, 0, z), turn=turn)
            place.Wainscot(map, 'panels', at=(x, 0, z), turn=turn)
            place.Cornice(map, 'cornice', at=(x, 0, z), turn=turn)


def furniture(map: MapRootEntity):
    place.CurtainRod(map, 'curtainRod', at=(0, 0, 3), turn=SOUTH)
    place.Curtain(map, 'leftCurtain', at=(-0.72, 0, 2.98), turn=SOUTH)
    place.Curtain(map, 'rightCurtain', at=(0.74, 0, 2.98), turn=SOUTH)
    place.Radiator(map, 'radiator', at=(0, 0, 2.94), turn=SOUTH)
    place.LongcaseClock(map, 'clock', at=(-2.1, 0, 2.8), turn=SOUTH)
    place.Landscape(map, 'picture', at=(2.2, 1.85, 2.995), turn=SOUTH)
    place.Rug(map, 'rug', at=(0.5, 0.002, 1.1), turn=82)
    place.SideTable(map, 'lampTable', at=(1.5, 0, 2.4))
    place.OpenBook(map, 'guestBook', at=(1.36, 0.655, 2.22), turn=SOUTH + 35)
    place.Armchair(map, 'armchair', at=(2.15, 0, 1.35), turn=-128)


def moon(map: MapRootEntity):
    """The window's bars lie on the floor, and dust hangs where the light comes in."""
    place.ShadowSpot(map, 'moon', at=(0.9, 5.6, 7.4), turn=SOUTH + 10, pitch=38, color=place.MOONLIGHT, strength=3.0,
                     reach=12, angle=10.5, core=0.85, nearClip=2.0)
    place.SphereLight(map, 'windowGlow', at=(0, 1.8, 2.5), color=place.MOONLIGHT, strength=0.13, reach=2.6)
    place.Dust(map, 'dust', at=(0.1, 1.1, 1.75), turn=SOUTH + 10, pitch=38, size=(1.1, 1.1, 2.9), count=500, mote=0.003,
               drift=0.02)


def sun(map: MapRootEntity):
    """Low, and from further east than the moon stood."""
    place.ShadowSpot(map, 'sun', at=(3.4, 3.3, 8.6), turn=SOUTH + 31, pitch=14, color=(1.0, 0.72, 0.48), strength=2.6,
                     reach=13, angle=10.0, core=0.85, nearClip=2.0)
    place.SphereLight(map, 'windowGlow', at=(0, 1.8, 2.4), color=(0.85, 0.75, 0.72), strength=0.4, reach=4.2)
    place.Dust(map, 'dust', at=(-0.6, 1.2, 1.6), turn=SOUTH + 31, pitch=14, size=(1.2, 1.2, 3.0), count=600, mote=0.003,
               drift=0.02)


def sounds(map: MapRootEntity):
    place.Sound(map, 'clockTick', at=(-2.1, 1.5, 2.7), event='ClockTick', volume=0.7)
    place.Sound(map, 'wind', at=(0, 1.7, 2.9), event='WindAtWindow', volume=0.8)
    place.NowAndThen(map, 'boards', at=((-2.0, 0, -0.5), (1.5, 3.2, 0.5)), event='Floorboard', every=(25, 80), first=14)


def camera(level: Coordinator) -> Entity:
    return place.Camera(level, 'camera', at=(-0.85, 1.42, -1.05), turn=LOOKING[0], pitch=LOOKING[1], fieldOfView=44)
