"""Furniture, and what lies on it, hangs above it and stands beside it. Furniture stands on its `at`."""

import math

import kaVel
from objects.Models import thing
from objects.Placing import Triple, around

Desk = thing(desk='wood', deskFittings='brass', deskPad='leather')
DiningTable = thing(diningTable='wood')
SideTable = thing(sideTable='wood')
Chair = thing(chair='wood', chairSeat='leather')
Armchair = thing(armchair='leather', armchairFeet='wood')
Cabinet = thing(cabinet='wood', cabinetFittings='brass')
LongcaseClock = thing(clockCase='wood', clockDial='clockFace')
Rug = thing(rug='rug')
Curtain = thing(curtain='cloth')
CurtainRod = thing(curtainRod='brass')
Portrait = thing(pictureFrame='brass', pictureCanvas='portrait')
Landscape = thing(pictureFrame='brass', pictureCanvas='landscape')
Bookcase = thing(bookshelf='wood')

# Things to put on them

BookRowA = thing(bookRowA='books')
BookRowB = thing(bookRowB='books')
BookRowC = thing(bookRowC='books')
BookStack = thing(bookStack='books')
Book = thing(bookSingle='books')
OpenBook = thing(openBook='paper')
Paper = thing(paperSheet='paper')
Bottle = thing(bottle='bottleGlass')
Cup = thing(cup='ceramic')
Plate = thing(plate='ceramic')
Jar = thing(jar='ceramic')
Chamberstick = thing(candleHolder='brass')
Candelabrum = thing(candelabrum='brass')
#: A candle shades nothing: its light stands inside it.
Candle = thing(castShadows=False, candle='wax', candleFlame='flame')
DeadCandle = thing(candle='ceramic')
Lamp = thing(castShadows=False, lampBase='brass', lampShade='lampShade')
Chandelier = thing(chandelier='iron')

# Store-room

Crate = thing(crate='wood')
Barrel = thing(barrel='wood', barrelHoops='iron')
Radiator = thing(radiator='rust')
Pipe = thing(pipe='rust')

# Workshop

Workbench = thing(workbench='wood', workbenchIron='iron')
Rack = thing(rack='iron', rackBoards='wood')
Boiler = thing(boiler='rust', boilerFire='embers')
DrillPress = thing(drillPress='iron')
WorkLamp = thing(castShadows=False, workLamp='iron', workLampBulb='lens')
SwitchBox = thing(switchBox='iron')
SwitchLever = thing(moving=True, switchLever='ceramic')
FuseBox = thing(fuseBox='rust')
Fuse = thing(moving=True, fuse='ceramic', fuseCaps='brass')
ButtonPost = thing(buttonPost='iron')
PushButton = thing(moving=True, pushButton='glassRed')
Chute = thing(chute='rust')
ShaftGrate = thing(shaftGrate='rust')
FanBlades = thing(moving=True, fanBlades='iron')
PipeRun = thing(pipeRun='rust')

# Crypt and graveyard

Mourner = thing(mourner='marble', mournerHollow='hollow')
Tombstone = thing(tombstone='marble')
TombCross = thing(tombCross='marble')
DeadTree = thing(deadTree='bark')
NightSky = thing(castShadows=False, skyNorth='nightSky', skySides='nightCloud')
Gibbet = thing(moving=True, gibbet='iron', gibbetBones='plaster')
Tripod = thing(castShadows=False, tripod='iron')
LampHead = thing(castShadows=False, lampHead='iron', lampLens='lens')
LanternAmber = thing(castShadows=False, lantern='iron', lanternGlass='glassAmber')
LanternRed = thing(castShadows=False, lantern='iron', lanternGlass='glassRed')
LanternBlue = thing(castShadows=False, lantern='iron', lanternGlass='glassBlue')
LanternGreen = thing(castShadows=False, lantern='iron', lanternGlass='glassGreen')

#: Heights of a bookcase's shelves above its foot, metres.
SHELF_HEIGHTS = (0.10, 0.50, 0.88, 1.24, 1.58, 1.90)


@kaVel.pattern
def FullBookcase(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0):
    """A bookcase with books on every shelf but the top one."""
    case = Bookcase(parent, name, at=at, turn=turn)
    rows = (BookRowB, BookRowA, BookRowB, BookRowA, BookRowC)
    for number, (height, row) in enumerate(zip(SHELF_HEIGHTS, rows)):
        row(case, 'books%d' % number, at=(at[0], at[1] + height, at[2]), turn=turn)
    return case


@kaVel.pattern
def DeadChandelier(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0):
    """A chandelier of six candles that burn no longer; `at` is where it hangs from."""
    wheel = Chandelier(parent, name, at=at, turn=turn)
    for number in range(6):
        angle = math.tau * number / 6
        place = around(at, turn, 0.42 * math.sin(angle), -0.90, 0.42 * math.cos(angle))
        DeadCandle(wheel, 'candle%d' % number, at=place, turn=50 * number)
    return wheel
