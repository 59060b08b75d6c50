"""Furniture, and what lies on it, hangs above it and stands beside it. Furniture stands on its `at`."""

import math

import kaVel
from objects.Placing import Triple, around
from objects.things.Models import thing

Desk = thing(desk='wood', deskFittings='brass', deskPad='leather')
"""A writing desk, 1.7 m wide; the sitter is at its front."""
DiningTable = thing(diningTable='wood')
"""A plank table, 1.8 m wide."""
SideTable = thing(sideTable='wood')
"""A round table, 0.65 m high."""
Chair = thing(chair='wood', chairSeat='leather')
"""A slat-back chair with a leather seat; the sitter looks to its front."""
Armchair = thing(armchair='leather', armchairFeet='wood')
"""A deep leather armchair; the sitter looks to its front."""
Cabinet = thing(cabinet='wood', cabinetFittings='brass')
"""A cupboard with two doors, 1.9 m high."""
LongcaseClock = thing(clockCase='wood', clockDial='clockFace')
"""A longcase clock, 2.15 m high, which stands still."""
Rug = thing(rug='rug')
"""A carpet, 2.2 by 3.2 m; lay it 2 mm above the floor."""
Curtain = thing(curtain='cloth')
"""One heavy drape, half of a window's pair."""
CurtainRod = thing(curtainRod='brass')
"""The brass rod over a window."""
Portrait = thing(pictureFrame='brass', pictureCanvas='portrait')
"""A framed portrait; it hangs on the plane that it faces from."""
Landscape = thing(pictureFrame='brass', pictureCanvas='landscape')
"""A framed landscape; it hangs on the plane that it faces from."""
Bookcase = thing(bookshelf='wood')
"""An empty bookcase, 2.3 m high; `FullBookcase` has books."""

# Things to put on them

BookRowA = thing(bookRowA='books')
"""A row of books for a shelf."""
BookRowB = thing(bookRowB='books')
"""Another row of books for a shelf."""
BookRowC = thing(bookRowC='books')
"""A third row of books for a shelf."""
BookStack = thing(bookStack='books')
"""Six books that lie on each other."""
Book = thing(bookSingle='books')
"""A closed book."""
OpenBook = thing(openBook='paper')
"""A book that lies open."""
Paper = thing(paperSheet='paper')
"""A written sheet."""
Bottle = thing(bottle='bottleGlass')
"""A bottle of dark glass."""
Cup = thing(cup='ceramic')
"""A cup."""
Plate = thing(plate='ceramic')
"""A plate."""
Jar = thing(jar='ceramic')
"""A stoneware jar with a lid."""
Chamberstick = thing(candleHolder='brass')
"""A candle holder with a handle, empty; `LitChamberstick` burns."""
Candelabrum = thing(candelabrum='brass')
"""A candlestick with three arms, empty; `LitCandelabrum` burns."""
#: A candle shades nothing: its light stands inside it.
Candle = thing(castShadows=False, candle='wax', candleFlame='flame')
"""A candle's wax and flame without its light: `LitCandle` shines."""
DeadCandle = thing(candle='ceramic')
"""A candle that has gone out."""
Lamp = thing(castShadows=False, lampBase='brass', lampShade='lampShade')
"""A table lamp without its light: `LitLamp` shines."""
Chandelier = thing(chandelier='iron')
"""An iron wheel for six candles; `at` is where it hangs from."""

# Store-room

Crate = thing(crate='wood')
"""A plank crate that only stands there, 0.7 m wide; `CargoCrate` is pushed."""
Barrel = thing(barrel='wood', barrelHoops='iron')
"""An oak barrel, 0.9 m high."""
Radiator = thing(radiator='rust')
"""A cast-iron radiator; `at` is on the wall behind it."""
Pipe = thing(pipe='rust')
"""A heating pipe up a wall, from floor to ceiling."""

# Workshop

Workbench = thing(workbench='wood', workbenchIron='iron')
"""A bench of thick planks with a vice and tools, 2 m wide and 0.9 m high."""
Rack = thing(rack='iron', rackBoards='wood')
"""Shelves on iron posts, 1.8 m wide and 2 m high."""
Boiler = thing(boiler='rust', boilerFire='embers')
"""A lying boiler, 2.3 m long, with its fire door to the front; it sheds no light."""
DrillPress = thing(drillPress='iron')
"""A standing drill with a belt wheel, 1.9 m high."""
WorkLamp = thing(castShadows=False, workLamp='iron', workLampBulb='lens')
"""A tin lamp on a rod without its light: `HangingLamp` shines. `at` is where it hangs from."""
SwitchBox = thing(switchBox='iron')
"""The box of a `LightSwitch`, on a wall."""
SwitchLever = thing(moving=True, switchLever='ceramic')
"""The lever of a `LightSwitch`, around its pivot."""
FuseBox = thing(fuseBox='rust')
"""An open box for fuses, on a wall."""
Fuse = thing(moving=True, fuse='ceramic', fuseCaps='brass')
"""A porcelain fuse around its middle."""
ButtonPost = thing(buttonPost='iron')
"""A post for a button, 1.1 m high; `ButtonOnPost` has one."""
PushButton = thing(moving=True, pushButton='glassRed')
"""The red button on a `ButtonPost` at the same place."""
Chute = thing(chute='rust')
"""A square funnel from the ceiling; `at` is the middle of its mouth."""
ShaftGrate = thing(shaftGrate='rust')
"""A curb with bars across a shaft, 1.9 m wide."""
FanBlades = thing(moving=True, fanBlades='iron')
"""The blades of a fan that lies in a shaft."""
PipeRun = thing(pipeRun='rust')
"""Two pipes under a ceiling, 2 m long; `at` is on the ceiling."""

# Crypt and graveyard

Mourner = thing(mourner='marble', mournerHollow='hollow')
"""A hooded figure of marble, 1.8 m high; the hood is empty."""
Tombstone = thing(tombstone='marble')
"""A round-topped headstone."""
TombCross = thing(tombCross='marble')
"""A ringed cross of stone, 1.55 m high."""
DeadTree = thing(deadTree='bark')
"""A bare tree, about 4.2 m high."""
NightSky = thing(castShadows=False, skyNorth='nightSky', skySides='nightCloud')
"""The sky all round a yard, with the moon in the north."""
Gibbet = thing(moving=True, gibbet='iron', gibbetBones='plaster')
"""An iron cage on a chain and what is left in it; `at` is its hook."""
Tripod = thing(castShadows=False, tripod='iron')
"""The stand of a stage lamp, 1.35 m high; `StageLamp` is the whole."""
LampHead = thing(castShadows=False, lampHead='iron', lampLens='lens')
"""The drum of a stage lamp around its pivot, without its light; `StageLamp` is the whole."""
LanternAmber = thing(castShadows=False, lantern='iron', lanternGlass='glassAmber')
"""A lantern of amber glass without its light: `Lantern` shines. `at` is its hook."""
LanternRed = thing(castShadows=False, lantern='iron', lanternGlass='glassRed')
"""A lantern of red glass without its light: `Lantern` shines. `at` is its hook."""
LanternBlue = thing(castShadows=False, lantern='iron', lanternGlass='glassBlue')
"""A lantern of blue glass without its light: `Lantern` shines. `at` is its hook."""
LanternGreen = thing(castShadows=False, lantern='iron', lanternGlass='glassGreen')
"""A lantern of green glass without its light: `Lantern` shines. `at` is its hook."""

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
