"""Patterns of everything that stands in a level: `Desk(map, 'desk', at=(1, 0, 2), turn=90)`.

`at` is the place in metres, x to the right, y up, z forward; `turn` is in degrees about the y axis, and 90 takes an
object's front from +z to +x. Furniture stands on its `at`; walls and panels stand on the plane that they face from.
"""

import math

import kaVel
from objects.FreeCamera import FreeCameraControl


def turned(degrees, pitch=0.0):
    """Orientation after a turn about y and, before it, a pitch about x; a positive pitch looks down."""
    cy, sy = math.cos(math.radians(degrees) / 2), math.sin(math.radians(degrees) / 2)
    cp, sp = math.cos(math.radians(pitch) / 2), math.sin(math.radians(pitch) / 2)
    return kaVel.Quaternion(cy * cp, cy * sp, sy * cp, -sy * sp)


def placed(parent, name, at=(0, 0, 0), turn=0.0, pitch=0.0, scale=(1, 1, 1)):
    """An entity with a transform, the start of every pattern."""
    entity = kaVel.make('Entity', parent=parent, name=name)
    kaVel.addComponent(entity, 'transform', 'TransformComponent', position=kaVel.Vec4(*at, 1),
                       orientation=turned(turn, pitch), scale=kaVel.Vec4(*scale, 0))
    return entity


# Models and the surfaces that they wear

#: Surface -> the maps it has besides the diffuse one, whose files are <surface><Map>.dds.
SURFACES = {
    'boards': ('Normal', 'Specular'),
    'books': ('Normal', 'Specular'),
    'bottleGlass': ('Normal', 'Specular'),
    'brass': ('Normal', 'Specular'),
    'brick': ('Normal',),
    'ceramic': ('Normal', 'Specular'),
    'clockFace': ('Normal', 'Specular'),
    'cloth': ('Normal',),
    'embers': ('Normal', 'Emissive'),
    'firebox': ('Normal', 'Emissive'),
    'flame': ('Emissive',),
    'iron': ('Normal', 'Specular'),
    'lampShade': ('Normal', 'Emissive'),
    'landscape': ('Normal', 'Specular'),
    'leather': ('Normal', 'Specular'),
    'nightWindow': ('Normal', 'Specular', 'Emissive'),
    'paper': ('Normal',),
    'plaster': ('Normal',),
    'portrait': ('Normal', 'Specular'),
    'rug': ('Normal',),
    'rust': ('Normal', 'Specular'),
    'tiles': ('Normal', 'Specular'),
    'wallpaper': ('Normal', 'Specular'),
    'wax': ('Normal', 'Specular', 'Emissive'),
    'wood': ('Normal', 'Specular'),
}


def model(entity, meshName, surface):
    """Gives an entity the look of a model file with a surface of SURFACES."""
    maps = {kind.lower() + 'TextureName': surface + kind + '.dds' for kind in SURFACES[surface]}
    return kaVel.addComponent(entity, 'graphics2', 'ModelGraphicsComponent2', meshName=meshName,
                              textureName=surface + 'Diffuse.dds', layer='WORLD_UNCONDITIONAL', **maps)


def thing(**parts):
    """Pattern of an object whose parts, `model='surface'`, share one place; the others hang below the first."""

    @kaVel.pattern
    def build(parent, name='', **place):
        root = None
        for meshName, surface in parts.items():
            entity = placed(root or parent, name if root is None else meshName, **place)
            model(entity, meshName, surface)
            root = root or entity
        return root

    return build


# Building kit: pieces 2 m wide, storeys 3.2 m high

WallPlain = thing(wallPlain='wallpaper')
WallDoorway = thing(wallDoorway='wallpaper', doorFrame='wood')
WallWindow = thing(wallWindow='wallpaper', windowFrame='wood', windowPane='nightWindow')
PlasterWall = thing(wallPlain='plaster')
PlasterDoorway = thing(wallDoorway='plaster')
Wainscot = thing(wainscot='wood')
WainscotNarrow = thing(wainscotNarrow='wood')
Cornice = thing(cornice='plaster')
Skirting = thing(skirting='wood')
Floor = thing(floor='boards')
FloorTiles = thing(floorTiles='tiles')
Ceiling = thing(ceiling='plaster')
CeilingBeam = thing(ceilingBeam='wood')
Door = thing(door='wood', doorHandle='brass')
Fireplace = thing(fireplace='brick', firebox='firebox', mantel='wood', hearth='tiles', grate='iron',
                  fireLogs='embers')

# Furniture

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

# Things to put on them

BookRowA = thing(bookRowA='books')
BookRowB = thing(bookRowB='books')
BookRowC = thing(bookRowC='books')
BookStack = thing(bookStack='books')
Book = thing(bookSingle='books')
OpenBook = thing(openBook='paper')
Paper = thing(paperSheet='paper')
Lamp = thing(lampBase='brass', lampShade='lampShade')
Chamberstick = thing(candleHolder='brass')
Candelabrum = thing(candelabrum='brass')
Candle = thing(candle='wax', candleFlame='flame')
DeadCandle = thing(candle='ceramic')
Chandelier = thing(chandelier='iron')
Bottle = thing(bottle='bottleGlass')
Cup = thing(cup='ceramic')
Plate = thing(plate='ceramic')
Jar = thing(jar='ceramic')
Bookcase = thing(bookshelf='wood')

# Store-room

Crate = thing(crate='wood')
Barrel = thing(barrel='wood', barrelHoops='iron')
Radiator = thing(radiator='rust')
Pipe = thing(pipe='rust')

#: Heights of a bookcase's shelves above its foot, metres.
SHELF_HEIGHTS = (0.10, 0.50, 0.88, 1.24, 1.58, 1.90)


@kaVel.pattern
def FullBookcase(parent, name='', at=(0, 0, 0), turn=0.0):
    """A bookcase with books on every shelf but the top one."""
    case = Bookcase(parent, name, at=at, turn=turn)
    rows = (BookRowB, BookRowA, BookRowB, BookRowA, BookRowC)
    for number, (height, row) in enumerate(zip(SHELF_HEIGHTS, rows)):
        row(case, 'books%d' % number, at=(at[0], at[1] + height, at[2]), turn=turn)
    return case


@kaVel.pattern
def LitChamberstick(parent, name='', at=(0, 0, 0), turn=0.0):
    """A chamberstick with a burning candle."""
    stick = Chamberstick(parent, name, at=at, turn=turn)
    Candle(stick, 'candle', at=(at[0], at[1] + 0.047, at[2]), turn=turn)
    return stick


def around(at, turn, right, up, ahead):
    """A place given from an object that stands at `at`, in the object's own directions."""
    c, s = math.cos(math.radians(turn)), math.sin(math.radians(turn))
    return (at[0] + right * c + ahead * s, at[1] + up, at[2] + ahead * c - right * s)


@kaVel.pattern
def LitCandelabrum(parent, name='', at=(0, 0, 0), turn=0.0):
    """A candelabrum whose middle candle has gone out."""
    stand = Candelabrum(parent, name, at=at, turn=turn)
    arms = ((-0.13, 0.295, Candle), (0.0, 0.335, DeadCandle), (0.13, 0.295, Candle))
    for number, (x, height, candle) in enumerate(arms):
        candle(stand, 'candle%d' % number, at=around(at, turn, x, height, 0), turn=turn + 70 * number)
    return stand


@kaVel.pattern
def DeadChandelier(parent, name='', at=(0, 0, 0), turn=0.0):
    """A chandelier of six candles that burn no longer; `at` is where it hangs from."""
    wheel = Chandelier(parent, name, at=at, turn=turn)
    for number in range(6):
        angle = math.tau * number / 6
        place = around(at, turn, 0.42 * math.sin(angle), -0.90, 0.42 * math.cos(angle))
        DeadCandle(wheel, 'candle%d' % number, at=place, turn=50 * number)
    return wheel


# Cameras

@kaVel.pattern
def Entity(parent, name=''):
    """A bare entity, without a place."""
    return kaVel.make('Entity', parent=parent, name=name)


@kaVel.pattern
def ScreenViewer(parent, name=''):
    """The viewer of the screen-space layers: the renderer asks for it when a level begins to draw."""
    viewer = placed(parent, name)
    kaVel.addComponent(viewer, 'viewer', 'ViewerComponent', projectionType='PARALLEL')
    return viewer


@kaVel.pattern
def FreeCamera(parent, name='', at=(0, 1.7, 0), turn=0.0, pitch=0.0, fieldOfView=45.0):
    """A camera that flies by keyboard and mouse, and the level's current camera from now on."""
    camera = placed(parent, name, at=at, turn=turn, pitch=pitch)
    kaVel.addComponent(camera, 'viewer', 'ViewerComponent', verticalFieldOfViewAngle=math.radians(fieldOfView),
                       nearClipDistance=0.05)
    FreeCameraControl(camera, turn, pitch)
    camera.getAncestorOfType(kaVel.Reflection.Coordinator).getManager('graphics2').pushCamera(camera)
    return camera
