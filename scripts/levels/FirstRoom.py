"""FirstRoom: the study of an old villa, at night, and the corridor that leads away from it.

A level is a module with a function `build(coordinator)`. It loads maps, and every map is a function of this module
that hangs objects under the map's root. An object is placed by calling its pattern from `objects.GameObjects`:

    place.Armchair(study, 'readingChair', at=(-2.1, 0, 2.4), turn=115)

`at` is in metres: x to the right, y up, z ahead (north on the plan). `turn` is in degrees: an object faces north at 0,
east at 90, south at 180, west at -90. Change a number, start the game again, and see.

             north                          plan, seen from above
        +--fire------door--+   z = 4
        | books     clock  |
     w  | window    cabinet|  e
     e  |   rug, desk      |  a             x = -3 .. 3
     s  | books     pipe   |  s
     t  | table     crates |  t
        +------------------+   z = -4
             south
"""

import objects.GameObjects as place
from kaVel import Coordinator, MapRootEntity

NORTH, EAST, SOUTH, WEST = 0, 90, 180, -90  # which way an object faces


def build(coordinator: Coordinator):
    coordinator.getManager('graphics2').sceneAmbient = 0.06
    coordinator.getManager('reverb').surroundings = 'woodRoom'
    coordinator.loadMap('villa')
    place.Player(coordinator, at=(1.95, 0, -3.35), turn=-21)
    place.visitorOf(coordinator).goTo((1.95, 0, -3.35), turn=-21, pitch=7)


def villa(study: MapRootEntity):
    place.PartitioningGrid(study, at=(0, 0, 2), size=(12, 0, 16))
    shell(study)
    fireside(study)
    writingPlace(study)
    alongTheWalls(study)
    behindTheDoor(study)
    corridor(study)
    lights(study)
    sounds(study)
    solids(study)


def shell(study: MapRootEntity):
    """Floor, walls, ceiling: pieces of 2 m. A wall faces into the room."""
    for x in (-2, 0, 2):
        for z in (-3, -1, 1, 3):
            place.FloorBoards(study, 'floor', at=(x, 0, z))
            place.PlasterCeiling(study, 'ceiling', at=(x, 0, z))

    for x in (-2, 0, 2):
        north = place.WallDoorway if x == 2 else place.WallPlain
        north(study, 'northWall', at=(x, 0, 4), turn=SOUTH)
        place.WallPlain(study, 'southWall', at=(x, 0, -4), turn=NORTH)
        place.Wainscot(study, 'southPanels', at=(x, 0, -4), turn=NORTH)
        place.Cornice(study, 'northCornice', at=(x, 0, 4), turn=SOUTH)
        place.Cornice(study, 'southCornice', at=(x, 0, -4), turn=NORTH)
    for x in (-2, 0):
        place.Wainscot(study, 'northPanels', at=(x, 0, 4), turn=SOUTH)
    for x in (1.2, 2.8):  # beside the door
        place.WainscotNarrow(study, 'doorPanels', at=(x, 0, 4), turn=SOUTH)

    for z in (-3, -1, 1, 3):
        west = place.WallWindow if z == 1 else place.WallPlain
        west(study, 'westWall', at=(-3, 0, z), turn=EAST)
        place.WallPlain(study, 'eastWall', at=(3, 0, z), turn=WEST)
        for x, turn in ((-3, EAST), (3, WEST)):
            place.Wainscot(study, 'panels', at=(x, 0, z), turn=turn)
            place.Cornice(study, 'cornice', at=(x, 0, z), turn=turn)

    for z in (-2, 0.2, 2.4):
        place.CeilingBeam(study, 'beam', at=(0, 0, z))
    place.DeadChandelier(study, 'chandelier', at=(-0.2, 3.0, 0.2), turn=20)


def fireside(study: MapRootEntity):
    """A dying fire, somebody's chair, and the portrait that watches it."""
    place.Fireplace(study, 'fireplace', at=(-1, 0, 4), turn=SOUTH)
    place.Portrait(study, 'portrait', at=(-1, 2.12, 3.655), turn=SOUTH)
    place.LitCandelabrum(study, 'candelabrum', at=(-1.85, 1.335, 3.70), turn=170)
    place.Jar(study, 'urn', at=(-0.13, 1.335, 3.70), turn=40)
    place.Bottle(study, 'mantelBottle', at=(-0.52, 1.335, 3.64))
    place.BookStack(study, 'mantelBooks', at=(-1.3, 1.335, 3.55), turn=170)

    place.Armchair(study, 'readingChair', at=(-2.05, 0, 2.62), turn=118)
    place.SideTable(study, 'readingTable', at=(-2.25, 0, 1.68))
    place.LitChamberstick(study, 'readingCandle', at=(-2.34, 0.65, 1.80), turn=60)
    place.Book(study, 'readingBook', at=(-2.12, 0.65, 1.60), turn=205)
    place.Cup(study, 'readingCup', at=(-2.33, 0.65, 1.53), turn=100)
    place.BookStack(study, 'floorBooks', at=(-1.42, 0, 1.86), turn=130)


def writingPlace(study: MapRootEntity):
    """The desk as its owner left it: lamp on, chair pushed back."""
    place.Rug(study, 'rug', at=(-0.25, 0.002, 0.75), turn=4)
    place.Desk(study, 'desk', at=(0.05, 0, 0.75), turn=SOUTH - 14)
    place.Chair(study, 'deskChair', at=(0.62, 0, -0.35), turn=-48)
    place.LitLamp(study, 'deskLamp', at=(-0.56, 0.77, 0.80), turn=10, strength=0.36, reach=4.2)
    place.OpenBook(study, 'diary', at=(0.02, 0.776, 0.56), turn=SOUTH - 20)
    place.BookStack(study, 'deskBooks', at=(0.62, 0.77, 0.98), turn=150)
    place.Bottle(study, 'inkBottle', at=(-0.26, 0.77, 0.93))
    place.Cup(study, 'deskCup', at=(0.36, 0.776, 0.68), turn=200)
    place.Candelabrum(study, 'deskCandelabrum', at=(0.30, 0.77, 1.02), turn=150)
    sheets = ((-0.47, 0.771, 0.50, 150), (-0.40, 0.773, 0.57, 184), (0.60, 0.771, 0.74, 214))
    for x, y, z, turn in sheets:
        place.Paper(study, 'letter', at=(x, y, z), turn=turn)
    for x, z, turn in ((0.95, 0.22, 33), (0.20, -0.62, 250), (-0.75, -0.15, 120), (1.25, -0.85, 310)):
        place.Paper(study, 'fallenLetter', at=(x, 0.024, z), turn=turn)


def alongTheWalls(study: MapRootEntity):
    place.FullBookcase(study, 'northBookcase', at=(-2.76, 0, 3.30), turn=EAST)
    for z, number in ((-0.75, 1), (-2.05, 2)):
        place.FullBookcase(study, 'westBookcase%d' % number, at=(-2.76, 0, z), turn=EAST)
    place.CurtainRod(study, 'curtainRod', at=(-3, 0, 1), turn=EAST)
    place.Curtain(study, 'leftCurtain', at=(-2.98, 0, 0.28), turn=EAST)
    place.Curtain(study, 'rightCurtain', at=(-2.98, 0, 1.74), turn=EAST)

    place.LongcaseClock(study, 'clock', at=(0.72, 0, 3.80), turn=SOUTH)
    place.Cabinet(study, 'cabinet', at=(2.70, 0, 2.35), turn=WEST)
    place.Jar(study, 'cabinetJar', at=(2.74, 1.88, 2.05), turn=15)
    place.BookStack(study, 'cabinetBooks', at=(2.70, 1.88, 2.55), turn=-70)
    place.Landscape(study, 'landscape', at=(2.995, 1.90, 0.85), turn=WEST)
    place.Radiator(study, 'radiator', at=(2.94, 0, 0.85), turn=WEST)
    place.Pipe(study, 'pipe', at=(2.94, 0, 0.05), turn=WEST)


def behindTheDoor(study: MapRootEntity):
    """The south end, out of sight at first: a table for a meal nobody finished, and what was being packed."""
    place.DiningTable(study, 'table', at=(-1.55, 0, -3.1))
    place.Chair(study, 'tableChair', at=(-1.9, 0, -2.35), turn=SOUTH + 12)
    place.Chair(study, 'fallenChair', at=(-0.35, 0, -2.9), turn=-75)
    for x, z in ((-1.95, -2.92), (-1.0, -3.3)):
        place.Plate(study, 'plate', at=(x, 0.765, z))
        place.Cup(study, 'cup', at=(x + 0.22, 0.765, z + 0.08), turn=70)
    place.Landscape(study, 'southLandscape', at=(0.9, 1.9, -3.995), turn=NORTH)
    place.LitCandelabrum(study, 'tableCandles', at=(-1.5, 0.765, -3.2), turn=20, reach=2.9)
    place.Bottle(study, 'wine', at=(-1.22, 0.765, -3.0))
    place.Crate(study, 'crate', at=(2.6, 0, -2.3), turn=-82)
    place.Crate(study, 'upperCrate', at=(2.62, 0.536, -2.35), turn=-95)
    place.BookStack(study, 'packedBooks', at=(2.6, 1.072, -2.3), turn=-60)


def corridor(study: MapRootEntity):
    """Two pieces long, tiled, and dark but for one candle at its end."""
    place.PlasterDoorway(study, 'corridorDoorway', at=(2, 0, 4.18), turn=NORTH)
    place.PlasterWall(study, 'corridorEnd', at=(2, 0, 8.18), turn=SOUTH)
    for z in (5.18, 7.18):
        place.PlasterCeiling(study, 'corridorCeiling', at=(2, 0, z))
        for x, turn in ((1, EAST), (3, WEST)):
            place.PlasterWall(study, 'corridorWall', at=(x, 0, z), turn=turn)
            place.Skirting(study, 'corridorSkirting', at=(x, 0, z), turn=turn)
    for z in (5.2, 7.6):
        place.FloorTiles(study, 'corridorFloor', at=(2, 0, z))
    place.Door(study, 'door', at=(2.475, 0, 4.16), turn=-112)
    place.Pipe(study, 'corridorPipe', at=(1, 0, 6.2), turn=EAST)
    place.Radiator(study, 'corridorRadiator', at=(1, 0, 5.4), turn=EAST)
    place.Barrel(study, 'barrel', at=(1.45, 0, 7.7), turn=25)
    place.Crate(study, 'corridorCrate', at=(2.35, 0, 7.75), turn=SOUTH + 8)
    place.LitChamberstick(study, 'corridorCandle', at=(2.3, 0.536, 7.7), turn=200, reach=2.7)


def solids(study: MapRootEntity):
    """What stops those who walk: the floor, one block a wall with a gap for the door, and the furniture."""
    def between(name: str, x0: float, x1: float, z0: float, z1: float, y0: float = 0.0, y1: float = 3.2):
        place.Block(study, name, at=((x0 + x1) / 2, y0, (z0 + z1) / 2), size=(x1 - x0, y1 - y0, z1 - z0))

    between('ground', -5, 5, -6, 10, -1, 0)
    between('west', -4, -3, -5, 5)
    between('east', 3, 4, -5, 9.2)
    between('south', -3, 3, -5, -4)
    between('northWest', -3, 1.525, 4, 4.18)
    between('northEast', 2.475, 3, 4, 4.18)
    between('overDoor', 1.525, 2.475, 4, 4.18, 2.1)
    between('corridorWest', 0, 1, 4.18, 9.2)
    between('corridorNorth', 1, 3, 8.18, 9.2)
    place.makeSolid(study)
    between('openDoor', 2.475, 2.53, 4.2, 5.0, 0, 2.1)


def lights(study: MapRootEntity):
    """What shines without a lamp of its own: the coals, and the moon that throws the window's bars into the room."""
    place.SphereLight(study, 'coals', at=(-1, 0.34, 3.62), color=(1.0, 0.32, 0.08), strength=0.55, reach=3.4,
                      flicker=place.burning(4, depth=0.35))
    place.ShadowSpot(study, 'moon', at=(-7.1, 5.42, 1.5), turn=96.5, pitch=40.2, color=place.MOONLIGHT, strength=3.0,
                     reach=12, angle=10.5, core=0.85, nearClip=2.0)
    place.SphereLight(study, 'windowGlow', at=(-2.5, 1.9, 1.0), color=place.MOONLIGHT, strength=0.12, reach=2.0)
    place.Dust(study, 'moonDust', at=(-1.87, 0.98, 0.87), turn=96.5, pitch=40.2, size=(1.0, 1.1, 2.9), count=700,
               mote=0.003, drift=0.015)


def sounds(study: MapRootEntity):
    """The fire, the clock, the wind at the window; and a house that settles, somewhere else each time."""
    place.Sound(study, 'fireSound', at=(-1, 0.4, 3.7), event='Fire')
    place.Sound(study, 'clockTick', at=(0.72, 1.5, 3.7), event='ClockTick')
    place.NowAndThen(study, 'clockStrike', at=((0.72, 1.9, 3.7),), event='ClockStrike', every=(300, 300), first=90)
    place.Sound(study, 'wind', at=(-2.9, 1.7, 1), event='WindAtWindow')
    place.Sound(study, 'candles', at=(2.3, 0.6, 7.7), event='Fire', volume=0.1)
    place.NowAndThen(study, 'settling', at=((-2.5, 3.1, -3.5), (2.6, 3.1, -1.0), (0.0, 3.1, 2.4), (2.0, 3.1, 7.0)),
                     event='Settle', every=(9, 35), first=5)
    place.NowAndThen(study, 'boards', at=((2.0, 0, 6.0), (2.2, 3.2, -2.0)), event='Floorboard', every=(40, 120),
                     first=28)
    place.NowAndThen(study, 'pipes', at=((2.94, 0.8, 0.85), (1.0, 0.8, 5.4)), event='PipeKnock', every=(50, 140),
                     first=60)
    place.sounding(place.Entity(study, 'house'), 'Ambience')
