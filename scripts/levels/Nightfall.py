"""Nightfall: the guest floor of a closed house on a winter night, its stairs, and two ways out of its hall.

The plan, seen from above; one wakes in `eight`, the lamp lies in `seven`, the drawer with the first key is in `six`.

                     x = 10.4                        20.7
        +--service--+-------------- hall ------------+   z = 25.1
        | lift      |                                |
        | chute     /  (5.5 m high)             stairs
        +-----------+                            |  ||   z = 17: the balustrade; below it all lies at 0, above at 3
                    |         landing            v  ||
                    +---------/---+------/-----------+   z = 14.1
                    |  two    : p |      bath        |
                    +---------+ a +------------------+
                    |  three  : s :      linen       |
                    +---------+ s +------[hatch]-----+
                    |  four   : a :      sewing      |
    +--[w]--[w]--[w]+---------+ge/+------------------+   z = 1.8
    |   c o r r i d o r                              |
    +---:-----:--------:-------:---------------------+   z = -0.1
    | eight | seven  |  six   |   five   |
    +-------+--------+--------+----------+               z = -4.6

`nightfall/Plan.py` has the numbers, `nightfall/Story.py` what happens, and in which order.
"""

from __future__ import annotations

import GameConfig
import kaVel
import objects.GameObjects as place
from kaVel import Coordinator, MapRootEntity
from nightfall import Chart, Doors, Furnishing, Joinery, Lights, Moon, Portals, Shell, Sounds, Stairs, Things, Views
from nightfall.Creatures import Creatures
from nightfall.Story import WAKING, Story
from objects.player.Safety import Safety
from objects.sound.Music import Music

#: What `tools/lint` finds here and is meant: kind -> object -> why.
LINT = {
    'locked': {'house/linenDoor': 'its bolt is drawn from inside, by the hatch: Story.bolts',
               'house/doorTwo': 'so is this one, from number three',
               'house/bathDoor': 'what hunts comes out of it: Story.openBath'},
    'unreachable': {'house:17,3,11': 'the bath, into which one looks when it has been left',
                    'house:11,0,18': 'the hall, behind the gate that is wound aside: StairGate'},
    'trigger': {'house/inLift': 'the gate lets one in when the lift has come: Exits.Lift',
                'house/inChute': 'the lid lets one in when it is pried open: Exits.Chute',
                'house/onStairs': 'the stairs, behind the same gate',
                'house/safeService': 'and what lies behind them'},
    'stairs': {'house/stairs/slope': 'one goes down by the lamp, into a hall whose windows are all the light'},
}

_night: Night


def build(coordinator: Coordinator):
    kaVel.configure(coordinator.getManager('graphics2'), sceneAmbient=0.045)
    coordinator.loadMap('house')


def house(map: MapRootEntity):
    """The map, and everything in it."""
    global _night
    _night = Night(map)


def views():
    """What a headless run takes pictures of, where it asks for views; any other one is played."""
    return Views.all(_night.visitor, _night.beAwake) if GameConfig.views else ()


class Night:
    """All of one night: the house, who walks in it, and what happens there."""

    def __init__(self, map: MapRootEntity):
        self.map = map
        self.level = map.getAncestorOfType(kaVel.Reflection.Coordinator)
        kaVel.configure(map.getComponent('transform'), position=kaVel.Vec4(*Shell.MIDDLE, 1),
                        scale=kaVel.Vec4(*Shell.EXTENT, 0))
        map.getComponent('mapData').gridCellSize = Shell.CELL
        place.hear(map)
        at, turn = WAKING
        self.player = place.Player(self.level, at=at, turn=turn)
        self.visitor = place.visitorOf(self.level)
        place.Hud(self.level)
        self.notice = place.Notice(self.level)
        self.music = Music(self.level)
        self.safety = Safety(self.level, self.player, self.music)
        self.rooms = Shell.build(map)
        Stairs.build(map, self.rooms['landing'])
        self.leaves = Doors.build(map)
        for name, furnish in Furnishing.FURNISH.items():
            furnish(self.rooms[name])
        Lights.build(self.rooms)
        Sounds.build(map, self.level)
        Things.build(map)
        place.Glass(map, 'glass', panes=Joinery.panes())
        Moon.Disc(map, self.visitor)
        self.sight = Portals.build(self.rooms, self.leaves, self.visitor)
        self.creatures = Creatures(map)
        self.story = Story(self)
        Chart.build(self.level, self.story.room)

    def beAwake(self):
        """Has nothing of the waking left, for a picture."""
        self.level.getManager('graphics2').dissolveAmount = 0.0
        self.player.getComponent('physics').opening = False
        self.sight.update()
