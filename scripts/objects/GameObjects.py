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
from objects.Acoustics import *
from objects.Bodies import *
from objects.Breath import Glass, Pane
from objects.Building import *
from objects.Cameras import *
from objects.Carrying import Bolt, LooseBottle, LooseCrate
from objects.Counters import Counter
from objects.Creatures import Boid, Crow, Moth, Rat, Swarm, shaped
from objects.Damp import Damp
from objects.Doors import DoorFrame, HingedDoor, IronDoor, SlidingDoor
from objects.Drawers import Chest, Drawer, inDrawer
from objects.Drawn import *
from objects.Fittings import Fitting
from objects.Furniture import *
from objects.Guest import Guest
from objects.Happenings import ButtonThatDoes, Exit, SafePlace, TriggerArea, UsePlace
from objects.Keys import Key
from objects.Lights import *
from objects.MapShell import Ceiling, Floor
from objects.Models import *
from objects.Nerves import dreaded, nervesOf, shakeLight
from objects.Notes import Note
from objects.Notice import Notice
from objects.Pad import shakePad
from objects.Placing import *
from objects.Player import BatteryMeter, Flashlight, Hud, Player, SpareBattery
from objects.Pockets import pocketsOf
from objects.Pointing import Pointer
from objects.Rooms import CeilingArea, FloorArea, Room
from objects.Routes import BlockedCells, PatrolRoute, Walker, Waypoint
from objects.Sight import Opening, Sight
from objects.Sounds import NowAndThen, Sound, hear, heard, heardAs, sounding, sounds
from objects.Spawners import Spawner
from objects.Stairs import Slope, Stairs
from objects.Switches import *
from objects.Throwing import Bolts
from objects.Triggers import Place, Trigger
from objects.Visitor import Visitor, visitorOf
from objects.Volumes import ForceVolume
from objects.Walls import Walls, Window
from objects.Warnings import Crows, Moths, Rats


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
