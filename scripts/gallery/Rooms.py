"""The nine rooms, one function each. A room shows one thing that the engine draws.

A function builds its room and returns what has to be told when the visitor comes and goes, if anything: an object with
`enter()` and `leave()`.
"""

import kaVel
import objects.GameObjects as place
from gallery.Effects import FailingMind, ScreenPage
from gallery.Moving import Swinging
from gallery.Shell import EAST, NORTH, SOUTH, WEST, Room, bunker, corners, crypt, doorwayBacks, parlour, tiled, walls
from objects.Placing import Triple


def spot(room: Room):
    """A stage lamp throws the shadow of a turning cage onto the wall."""
    crypt(room, ribs=(-2.0, 2.2))
    room.put(place.StageLamp, 'lamp', at=(-1.7, 0, -1.9), turn=26, pitch=-5, head=1.55, strength=1.5, reach=12,
             angle=38, core=0.5, edge=14, color=(1.0, 0.78, 0.50))
    cage = room.put(place.Gibbet, 'cage', at=(-0.25, 3.2, 0.85))
    Swinging(cage, degreesPerSecond=14, sway=2.5, start=25)
    room.put(place.Sound, 'lampHum', at=(-1.7, 1.55, -1.9), event='LampHum')
    room.put(place.Crate, 'crate', at=(2.3, 0, 2.9), turn=12)
    room.put(place.Barrel, 'barrel', at=(-2.45, 0, 3.4))
    room.put(place.Chair, 'chair', at=(1.0, 0, 0.2), turn=215)
    room.put(place.SphereLight, 'bounce', at=(0.9, 1.6, 2.9), strength=0.05, reach=5.0, color=(1.0, 0.80, 0.55))
    room.put(place.SphereLight, 'spill', at=(-1.5, 1.4, -2.5), strength=0.045, reach=4.0, color=(1.0, 0.80, 0.55))


def candles(room: Room):
    """Sixty-odd lights: votive candles on steps, lanterns of coloured glass between columns."""
    crypt(room, ribs=(0.4,))
    for step in range(3):
        height = 0.30 * step
        for x in (-1.2, 1.2):
            for block in range(step + 1):
                room.put(place.StoneStep, 'step', at=(x, 0.30 * block, 2.55 + 0.36 * step), turn=0)
        for number in range(15):
            x = -2.25 + 4.5 * number / 14 + 0.05 * ((number * 7 + step * 3) % 5 - 2)
            z = 2.55 + 0.36 * step + 0.04 * ((number * 5 + step) % 5 - 2)
            pattern = place.DeadCandle if (number * 3 + step * 5) % 8 == 0 else place.LitCandle
            lit = {} if pattern is place.DeadCandle else {'strength': 0.05 if step == 2 else 0.09, 'reach': 1.5}
            room.put(pattern, 'votive', at=(x, height + 0.30, z), turn=number * 40, **lit)
    room.put(place.Block, 'stepsSolid', at=(0, 0, 3.2), size=(4.8, 0.9, 1.6))
    room.put(place.Pedestal, 'pedestal', at=(0, 0, 3.62))
    room.put(place.Mourner, 'mourner', at=(0, 0.85, 3.62), turn=SOUTH)
    room.put(place.Sound, 'flames', at=(0, 1.0, 3.0), event='Fire', volume=0.35)
    for x, strength in ((-0.85, 0.40), (0.80, 0.03)):
        room.put(place.LitCandelabrum, 'altarCandles', at=(x, 0.90, 3.42), strength=strength, reach=2.3)
    for x in (-2.2, 2.2):
        for z in (-1.4, 1.3):
            room.put(place.Column, 'column', at=(x, 0, z))
    glasses = ('red', 'amber', 'blue', 'green', 'amber', 'red', 'blue', 'amber')
    spots = ((-1.3, -0.6), (0.0, -1.2), (1.3, -0.6), (-1.2, 0.9), (1.2, 0.9), (-2.5, 0.0), (2.5, 0.0), (0.9, 2.1))
    for glass, (x, z) in zip(glasses, spots):
        room.put(place.Lantern, 'lantern', at=(x, 3.2, z), glass=glass, strength=0.36, reach=3.1)
    for x, z in ((-1.2, -2.1), (1.4, -2.0), (-0.4, 0.1), (0.9, 1.6), (-1.7, 1.9), (2.5, 2.2)):
        room.put(place.LitChamberstick, 'floorCandle', at=(x, 0, z), turn=x * 90, strength=0.14, reach=1.9)


def doorway(room: Room):
    """A lamp with a bad contact beyond a doorway throws the door's light and a chair's shadow across a dark room."""
    parlour(room)
    for x in (-2, 2):
        room.put(place.WallPlain, 'partition', at=(x, 0, 1.4), turn=SOUTH)
        room.put(place.Wainscot, 'partitionPanels', at=(x, 0, 1.4), turn=SOUTH)
    room.put(place.WallDoorway, 'partition', at=(0, 0, 1.4), turn=SOUTH)
    for x in (-0.8, 0.8):
        room.put(place.WainscotNarrow, 'partitionPanels', at=(x, 0, 1.4), turn=SOUTH)
    for x, back in ((-2, place.PlasterWall), (0, place.PlasterDoorway), (2, place.PlasterWall)):
        room.put(back, 'partitionBack', at=(x, 0, 1.58), turn=NORTH)
        room.put(place.Cornice, 'partitionCornice', at=(x, 0, 1.4), turn=SOUTH)
    room.put(place.Door, 'door', at=(0.475, 0, 1.56), turn=-88)
    for x, width in ((-1.7375, 2.525), (1.7375, 2.525)):
        room.put(place.Block, 'partitionSolid', at=(x, 0, 1.49), size=(width, 3.2, 0.18))
    room.put(place.Block, 'partitionAbove', at=(0, 2.1, 1.49), size=(0.95, 1.1, 0.18))
    room.put(place.Block, 'doorSolid', at=(0.5, 0, 2.0), size=(0.05, 2.1, 0.84))
    flicker = place.failing(3)
    room.put(place.ShadowSpot, 'lamp', at=(-0.1, 2.45, 3.7), turn=SOUTH - 2, pitch=26, strength=1.3, reach=10, angle=52,
             core=0.7, color=(0.92, 0.96, 0.80), flicker=flicker)
    room.put(place.SphereLight, 'lampGlow', at=(-0.1, 2.40, 3.3), strength=0.35, reach=2.3, color=(0.92, 0.96, 0.80),
             flicker=flicker)
    room.put(place.LanternAmber, 'bulb', at=(-0.1, 3.2, 3.5))
    room.put(place.Sound, 'lampHum', at=(-0.1, 2.4, 3.7), event='LampHum')
    room.put(place.Sound, 'clockTick', at=(2.2, 1.5, 1.1), event='ClockTick')
    room.put(place.Chair, 'chair', at=(-0.15, 0, 0.45), turn=150)
    room.put(place.Radiator, 'radiator', at=(1.9, 0, 3.98), turn=SOUTH)
    room.put(place.BookStack, 'books', at=(-1.2, 0, 2.6), turn=30)
    room.put(place.Portrait, 'portrait', at=(-2.0, 1.9, 1.395), turn=SOUTH)
    room.put(place.LongcaseClock, 'clock', at=(2.2, 0, 1.2), turn=SOUTH)
    room.put(place.Armchair, 'armchair', at=(-2.2, 0, 0.3), turn=130)
    room.put(place.SphereLight, 'night', at=(-1.0, 2.4, -1.2), strength=0.022, reach=5.5, color=(0.55, 0.70, 1.0))
    for x, z, turn in ((0.6, -0.9, 30), (-0.4, -1.3, 110), (0.9, 0.1, 250)):
        room.put(place.Paper, 'paper', at=(x, 0.004, z), turn=turn)


def decals(room: Room):
    """Blood, cracks, grime and a warning, projected onto walls and floor."""
    tiled(room, place.PlasterCeiling, 'ceiling')
    tiled(room, place.TiledFloor, 'floor')
    walls(room, place.PlasterWall, place.PlasterDoorway)
    doorwayBacks(room)
    room.put(place.Decal, 'pool', picture='bloodPool', at=(-0.7, 0, 1.5), pitch=90, roll=20, size=(1.9, 1.9))
    room.put(place.Decal, 'drag', picture='bloodDrag', at=(0.75, 0, 1.0), pitch=90, roll=-18, size=(2.3, 1.3))
    room.put(place.Decal, 'sign', picture='paintedSign', at=(-1.55, 1.75, 4), size=(1.9, 1.5))
    room.put(place.Decal, 'hands', picture='handprints', at=(0.75, 1.35, 4), size=(1.15, 1.15))
    room.put(place.Decal, 'crack', picture='crack', at=(2.2, 1.6, 4), size=(2.4, 3.0))
    room.put(place.Decal, 'sideCrack', picture='crack', at=(-3, 1.7, 1.4), turn=WEST, size=(2.0, 2.8))
    for x, z, turn in ((-2.2, 4, 0), (2.0, 4, 0), (3, 2.9, 90), (-3, 2.9, WEST)):
        room.put(place.Decal, 'grime', picture='grime', at=(x, 0.70, z), turn=turn, size=(1.9, 1.5), alpha=0.9)
    room.put(place.Decal, 'scorch', picture='scorch', at=(2.1, 0, 2.6), pitch=90, size=(1.4, 1.4))
    room.put(place.Chair, 'chair', at=(-1.9, 0, 2.9), turn=-60)
    room.put(place.Radiator, 'radiator', at=(-2.94, 0, 0.2), turn=EAST)
    room.put(place.Pipe, 'pipe', at=(2.94, 0, 1.2), turn=WEST)
    room.put(place.StageLamp, 'lamp', at=(2.2, 0, -1.4), turn=-24, pitch=6, strength=1.15, reach=10, angle=34,
             core=0.45, color=(1.0, 0.86, 0.64))
    room.put(place.SphereLight, 'spill', at=(0.2, 2.3, 0.8), strength=0.09, reach=5.2, color=(1.0, 0.86, 0.64))


def dust(room: Room):
    """Moonlight falls through a barred opening, full of dust."""
    crypt(room, north=place.StoneGrille, ribs=(-1.6,))
    corners(room)
    room.put(place.ShadowSpot, 'moon', at=(-1.0, 4.7, 9.5), turn=SOUTH - 10.3, pitch=22, strength=6.5, reach=24,
             angle=10, core=0.8, edge=6, color=place.MOONLIGHT, nearClip=2.0)
    room.put(place.Dust, 'dust', at=(0.54, 1.22, 1.04), size=(1.25, 0.9, 6.4), turn=SOUTH - 10.3, pitch=22,
             count=6500, mote=0.004, drift=0.02, strength=1.5)
    room.put(place.Pedestal, 'pedestal', at=(0.33, 0, 2.2), turn=10, scale=(1, 0.4, 1))
    room.put(place.Mourner, 'mourner', at=(0.33, 0.34, 2.2), turn=-75)
    room.put(place.Sound, 'wind', at=(0, 2.4, 3.9), event='WindAtWindow')
    room.put(place.Column, 'westColumn', at=(-2.2, 0, 2.6))
    room.put(place.Column, 'eastColumn', at=(2.3, 0, 1.6))
    room.put(place.Crate, 'crate', at=(2.4, 0, 3.2), turn=20)
    room.put(place.SphereLight, 'bounce', at=(1.0, 0.6, -1.6), strength=0.15, reach=5.6, color=place.MOONLIGHT)
    room.put(place.SphereLight, 'opening', at=(0.0, 2.45, 3.5), strength=0.30, reach=2.2, color=place.MOONLIGHT)


def boxes(room: Room):
    """Blocks of one stuff: the texture runs on from box to box, round corners and up the steps."""
    bunker(room)
    for step in range(6):
        room.put(place.Box, 'step', at=(-2.25, 0, 0.4 + 0.5 * step), size=(1.5, 0.24 * (step + 1), 0.5))
    room.put(place.Slope, 'slope', at=(-2.25, 0, 0.15), steps=6, rise=0.24, going=0.5, width=1.5)
    room.put(place.Block, 'stairsFoot', at=(-2.25, 0, 1.9), size=(1.5, 0.9, 1.0))
    room.put(place.Block, 'stairsHead', at=(-2.25, 0, 3.325), size=(1.5, 1.44, 1.35))
    _stone(room, 'landing', (-0.25, 0, 3.3), (2.5, 1.44, 1.4), surface='concrete')
    _stone(room, 'parapet', (1.15, 0, 3.3), (0.3, 2.2, 1.4), surface='concrete')
    for x in (0.35, 2.15):
        _stone(room, 'post', (x, 0, 1.0), (0.45, 2.1, 0.45))
    _stone(room, 'lintel', (1.25, 2.1, 1.0), (2.75, 0.42, 0.55))
    _stone(room, 'cap', (1.25, 2.52, 1.0), (1.2, 0.28, 0.45))
    _stone(room, 'altar', (1.25, 0, 1.9), (1.1, 0.85, 0.6))
    for x, y, z, side, turn in ((2.35, 0, -0.6, 0.7, 24), (2.3, 0.7, -0.65, 0.5, 51), (1.55, 0, -0.4, 0.45, 8)):
        _stone(room, 'block', (x, y, z), (side, side, side), turn=turn, surface='concrete')
    room.put(place.ShadowSpot, 'lamp', at=(-2.4, 3.05, -1.5), turn=38, pitch=34, strength=0.80, reach=11, angle=44,
             core=0.4, edge=14, color=(1.0, 0.84, 0.62))
    room.put(place.LitChamberstick, 'candle', at=(1.25, 0.85, 1.85), strength=0.16, reach=2.6)
    room.put(place.Lantern, 'lantern', at=(2.4, 3.2, 3.2), glass='red', strength=0.30, reach=2.8)


def _stone(room: Room, name: str, at: Triple, size: Triple, turn: float = 0.0, surface: str = 'stone'):
    """A box to look at and to stop at."""
    room.put(place.Box, name, at=at, size=size, turn=turn, surface=surface)
    room.put(place.Block, name + 'Solid', at=at, size=size, turn=turn)


def graveyard(room: Room):
    """Ground from an image of heights, under the moon."""
    walls(room, place.StoneWall, place.StoneArch)
    corners(room)
    place.solidGround(room.put(place.Terrain, 'ground', heights='graveyardHeights.dds', at=(0, -0.02, 0),
                               size=(6.0, 1.15, 8.0), repeat=3.5))
    room.put(place.NightSky, 'sky')
    room.put(place.Sound, 'wind', at=(-2.1, 3.5, 2.9), event='WindAtWindow', volume=0.6)
    graves = ((-1.7, 0.30, 0.55, 8, 'T'), (0.0, 0.32, 0.9, -5, 'C'), (1.7, 0.30, 0.45, -12, 'T'),
              (-1.2, 0.48, 2.3, 14, 'T'), (1.1, 0.50, 2.5, -9, 'C'))
    for number, (x, y, z, turn, kind) in enumerate(graves):
        pattern = place.TombCross if kind == 'C' else place.Tombstone
        room.put(pattern, 'grave%d' % number, at=(x, y, z), turn=SOUTH + turn, pitch=4 * (number % 3 - 1),
                 roll=5 * ((number * 2) % 3 - 1))
    room.put(place.DeadTree, 'tree', at=(-2.1, 0.50, 2.9), turn=70)
    room.put(place.ShadowSpot, 'moon', at=(5.5, 9.5, 7.5), turn=SOUTH + 42, pitch=46, strength=1.15, reach=24, angle=24,
             core=0.75, color=place.MOONLIGHT, nearClip=4.0)
    room.put(place.SphereLight, 'skyLight', at=(0, 4.6, 0.5), strength=0.05, reach=7.5, color=(0.5, 0.62, 0.85))
    room.put(place.LitChamberstick, 'graveLight', at=(0.25, 0.33, 0.35), strength=0.12, reach=2.2)


def screen(room: Room):
    """A reading place, and before it what lies on the screen: pictures, and a text that is wrapped."""
    parlour(room)
    room.put(place.Desk, 'desk', at=(0.9, 0, 1.9), turn=SOUTH + 8)
    room.put(place.LitLamp, 'lamp', at=(1.4, 0.77, 2.0), strength=0.55, reach=4.2)
    room.put(place.OpenBook, 'book', at=(0.85, 0.776, 1.8), turn=SOUTH + 10)
    room.put(place.BookStack, 'books', at=(0.35, 0.77, 2.1), turn=40)
    room.put(place.Chair, 'chair', at=(0.75, 0, 1.0), turn=-15)
    room.put(place.FullBookcase, 'bookcase', at=(2.0, 0, 3.76), turn=SOUTH)
    room.put(place.FullBookcase, 'bookcase', at=(0.7, 0, 3.76), turn=SOUTH)
    room.put(place.Landscape, 'landscape', at=(-1.4, 1.9, 3.995), turn=SOUTH)
    room.put(place.SphereLight, 'fill', at=(-1.2, 2.2, 1.5), strength=0.10, reach=3.6)
    return ScreenPage(room.parent.getAncestorOfType(kaVel.Reflection.Coordinator))


def mind(room: Room):
    """The mind fails, and the picture with it."""
    parlour(room)
    room.put(place.Armchair, 'armchair', at=(0, 0, 2.7), turn=SOUTH)
    room.put(place.Rug, 'rug', at=(0, 0.002, 0.6))
    for x, turn in ((-2.995, EAST), (2.995, WEST)):
        for z in (-0.9, 0.9, 2.7):
            room.put(place.Portrait, 'portrait', at=(x, 1.9, z), turn=turn)
    room.put(place.LongcaseClock, 'clock', at=(-1.5, 0, 3.8), turn=SOUTH)
    room.put(place.Sound, 'clockTick', at=(-1.5, 1.5, 3.7), event='ClockTick')
    room.put(place.Portrait, 'portrait', at=(0, 1.95, 3.995), turn=SOUTH)
    for x in (-1.2, 1.2):
        room.put(place.SideTable, 'table', at=(x, 0, 2.5))
        room.put(place.LitCandelabrum, 'candles', at=(x, 0.65, 2.5), turn=x * 20, strength=0.60, reach=4.4)
    room.put(place.DeadChandelier, 'chandelier', at=(0, 3.2, 0.2), turn=10)
    room.put(place.Bookcase, 'bookcase', at=(1.6, 0, 3.78), turn=SOUTH)
    return FailingMind(room.parent.getAncestorOfType(kaVel.Reflection.Coordinator))


#: Rooms whose doorways have wooden frames and are narrower.
FRAMED = (doorway, decals, screen, mind)

#: Name, whose text stands below "gallery", builder, and where the visitor's feet stand and how he looks: place, turn,
#: pitch.
ROOMS = (
    ('spot', spot, (0.9, 0, -3.7), -10, -1),
    ('spheres', candles, (-0.4, 0, -3.6), 3, 2),
    ('doorway', doorway, (-1.7, 0, -3.4), 19, 7),
    ('decals', decals, (0.9, 0, -2.6), -8, 7),
    ('dust', dust, (-2.6, 0, -2.2), 46, 0),
    ('boxes', boxes, (0.3, 0, -3.5), -1, 7),
    ('terrain', graveyard, (1.2, 0, -3.4), -12, 2),
    ('screen', screen, (-0.6, 0, -2.6), 8, 5),
    ('mind', mind, (0.0, 0, -3.4), 1, 3),
)
