"""What the house says: clock, pipes, wind, timber; and what breathes in the pipes long before it is met."""

from __future__ import annotations

import kaVel
import objects.GameObjects as place
from kaVel import Coordinator, MapRootEntity
from nightfall.Plan import ROOMS, STAIRS_FOOT, STAIRS_HEAD, STAIRS_X, UP
from objects.Placing import Triple

#: Where the pipes can be heard: along the bath's north wall and up the passage.
PIPES: tuple[Triple, ...] = ((17.0, UP + 1.2, 11.0), (20.2, UP + 1.0, 11.0), (14.4, UP + 0.8, 9.7))
CLOCK: Triple = (10.9, UP + 1.5, 15.6)
TOP_BEAM = UP + 2.4


def build(map: MapRootEntity, coordinator: Coordinator):
    coordinator.getManager('reverb').surroundings = 'woodRoom'
    _zone(map, 'bath', 'smallRoom')
    _zone(map, 'linen', 'smallRoom')
    _zone(map, 'hall', 'hall')
    _zone(map, 'service', 'tunnel')
    ways = map.getComponent('soundWays')
    ways.addFloor(UP)
    for x in (12.0, 15.5, STAIRS_X):
        ways.addPassage(_at(x, UP + 1.4, STAIRS_HEAD - 0.5), _at(x, 1.5, STAIRS_HEAD + 1.2), 0.9)
    ways.addPassage(_at(STAIRS_X, UP + 0.5, STAIRS_HEAD), _at(STAIRS_X, 0.8, STAIRS_FOOT + 0.4), 1.0)
    _house(map)


def _at(x: float, y: float, z: float):
    return kaVel.Vec4(x, y, z, 1)


def _zone(map: MapRootEntity, name: str, kind: place.RoomKind):
    room = ROOMS[name]
    x, z = room.middle()
    place.ReverbZone(map, name + 'Echo', at=(x, room.floor, z), room=kind,
                     size=(room.east - room.west, room.ceiling - room.floor, room.north - room.south))


def _house(map: MapRootEntity):
    place.Sound(map, 'clockTick', at=CLOCK, event='ClockTick')
    for number, (x, y, z) in enumerate(((4.8, UP + 1.5, 1.7), (0.1, UP + 1.5, -2.4), (14.7, 2.8, 24.8))):
        place.Sound(map, 'wind%d' % number, at=(x, y, z), event='WindAtWindow', volume=0.7)
    place.Sound(map, 'lampHum', at=(15.8, UP + 1.8, 0.85), event='LampHum')
    place.Sound(map, 'bathPipes', at=PIPES[0], event='PipeWater', volume=0.7)
    place.Sound(map, 'breathInPipes', at=PIPES[1], event='BlobIdle', volume=0.55)
    place.NowAndThen(map, 'settling', at=((2.0, TOP_BEAM, -2.0), (8.0, TOP_BEAM, 0.8), (12.0, TOP_BEAM, 8.0),
                                          (18.0, TOP_BEAM, 5.0), (15.0, 5.2, 21.0)), event='Settle', every=(14, 45),
                     first=6)
    place.NowAndThen(map, 'boards', at=((9.5, UP, 0.8), (15.1, UP, 8.0), (12.0, UP, 15.6)), event='Floorboard',
                     every=(45, 110), first=24)
    place.NowAndThen(map, 'knocks', at=PIPES, event='PipeKnock', every=(35, 80), first=33)
    place.NowAndThen(map, 'groans', at=PIPES, event='PipeGroan', every=(60, 130), first=52)
    place.NowAndThen(map, 'gusts', at=((4.8, UP + 1.5, 2.2),), event='Gust', every=(40, 100), first=15)
    place.NowAndThen(map, 'thuds', at=((12.0, 0.3, 20.0),), event='Thud', every=(80, 160), first=47)
    place.NowAndThen(map, 'gnawing', at=((11.0, UP, 13.6),), event='RatSqueak', every=(9, 26), first=20)
    place.NowAndThen(map, 'snow', at=((5.0, UP + 3, 3.5),), event='SnowSlide', every=(150, 260), first=110)
