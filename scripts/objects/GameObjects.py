"""Patterns of everything that stands in a level: `Desk(map, 'desk', at=(1, 0, 2), turn=90)`.

`at` is the place in metres, x to the right, y up, z forward; `turn` is in degrees about the y axis, and 90 takes an
object's front from +z to +x. `Visitor`, `Pointer`, `Notice`, `Counter` and `LightSwitch` are no patterns but what a
level has besides: who walks in it, what he points at, what he is told, what is counted, what he switches; `Sight` says
which rooms are drawn.

The patterns stand in modules by kind; here is all of it under one name, which is also where the engine looks for the
patterns that it needs itself: `ScreenViewer`, `LightPartitioningDummy`, the `Floor` and `Ceiling` of a map, the `Boid`
of a flock and the members of swarms.
"""

import kaVel
import mods
from objects.creatures.Creatures import Boid, Crow, Moth, Rat, Swarm, shaped
from objects.creatures.Damp import Damp
from objects.creatures.Fittings import Fitting
from objects.creatures.Guest import Guest
from objects.creatures.Routes import BlockedCells, PatrolRoute, Walker, Waypoint
from objects.creatures.Spawners import Spawner
from objects.creatures.Warnings import Crows, Moths, Rats
from objects.Happenings import ButtonThatDoes, Exit, SafePlace, TriggerArea, UsePlace
from objects.house.Building import *
from objects.house.Doors import DoorFrame, HingedDoor, IronDoor, SlidingDoor
from objects.house.MapShell import Ceiling, Floor
from objects.house.Rooms import CeilingArea, FloorArea, Room
from objects.house.Sight import Opening, Sight
from objects.house.Stairs import Slope, Stairs
from objects.house.Walls import Walls, Window
from objects.Placing import *
from objects.player.Carrying import Bolt, LooseBottle, LooseCrate
from objects.player.Nerves import dreaded, nervesOf, shakeLight
from objects.player.Pad import shakePad
from objects.player.Player import BatteryMeter, Flashlight, Hud, Player, SpareBattery
from objects.player.Pockets import pocketsOf
from objects.player.Pointing import Pointer
from objects.player.Throwing import Bolts
from objects.player.Visitor import Visitor, visitorOf
from objects.screen.Counters import Counter
from objects.screen.Notice import Notice
from objects.sound.Acoustics import *
from objects.sound.Sounds import NowAndThen, Sound, hear, heard, heardAs, sounding, sounds
from objects.things.Bodies import *
from objects.things.Breath import Glass, Pane
from objects.things.Cameras import *
from objects.things.Drawers import Chest, Drawer, inDrawer
from objects.things.Drawn import *
from objects.things.Furniture import *
from objects.things.Keys import Key
from objects.things.Lights import *
from objects.things.Models import *
from objects.things.Notes import Note
from objects.things.Switches import *
from objects.things.Volumes import ForceVolume
from objects.Triggers import Place, Trigger


@kaVel.pattern
def Entity(parent: kaVel.Object, name: str = ''):
    """A bare entity, without a place."""
    return kaVel.make('Entity', parent=parent, name=name)


@kaVel.pattern
def PartitioningGrid(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), size: Triple = (64, 0, 64),
                     cellSize: float = 2.0):
    """The grid of a map, which finds what is seen, lit and hit: what stands outside of it is not drawn."""
    grid = placed(parent, name or '.MapData_partitioningGrid')
    kaVel.addComponent(grid, 'partitioning', 'PartitioningGrid', position=kaVel.Vec4(*at, 1),
                       size=kaVel.Vec4(*size, 0), cellSize=cellSize)
    return grid


mods.addPatterns(globals())
