"""What stands in the rooms. Everything that one could walk into is solid."""

from __future__ import annotations

from typing import Callable

import objects.GameObjects as place
from kaVel import Entity
from nightfall.Made import bed, coatStand, runner, sheets, tub, washstand
from nightfall.Plan import EAST, NORTH, ROOMS, SOUTH, UP, WEST

Desk = place.solid(place.Desk, 'desk')
Cabinet = place.solid(place.Cabinet, 'cabinet')
Chair = place.solid(place.Chair, 'chair')
Armchair = place.solid(place.Armchair, 'armchair')
SideTable = place.solid(place.SideTable, 'sideTable')
DiningTable = place.solid(place.DiningTable, 'diningTable')
Bookcase = place.solid(place.FullBookcase, 'bookshelf')
Clock = place.solid(place.LongcaseClock, 'clockCase')
Radiator = place.solid(place.Radiator, 'radiator')
Crate = place.solid(place.Crate, 'crate')
Barrel = place.solid(place.Barrel, 'barrel')
Rack = place.solid(place.Rack, 'rack', 'rackBoards')


def corridor(room: Entity):
    for number, x in enumerate((2.0, 5.2, 8.4, 11.6)):
        runner(room, 'runner%d' % number, at=(x, UP, 0.85), turn=EAST)
    SideTable(room, 'table', at=(6.3, UP, 1.36))
    place.Jar(room, 'jar', at=(6.3, UP + 0.65, 1.36), turn=30)
    place.Landscape(room, 'picture', at=(7.4, UP + 1.55, 0.001), turn=NORTH)
    place.Portrait(room, 'portrait', at=(11.4, UP + 1.5, 0.001), turn=NORTH)
    place.Landscape(room, 'farPicture', at=(11.6, UP + 1.5, 1.699), turn=SOUTH)
    Radiator(room, 'radiator', at=(3.3, UP, 1.7), turn=SOUTH)
    Chair(room, 'chair', at=(12.6, UP, 1.35), turn=SOUTH + 8)


def passage(room: Entity):
    for number, z in enumerate((3.9, 7.1, 10.3)):
        runner(room, 'runner%d' % number, at=(15.15, UP, z))
    place.Portrait(room, 'portrait', at=(14.301, UP + 1.5, 5.4), turn=EAST)
    place.Landscape(room, 'picture', at=(15.999, UP + 1.5, 6.4), turn=WEST)
    Radiator(room, 'radiator', at=(14.3, UP, 9.2), turn=EAST)
    place.Pipe(room, 'pipe', at=(14.3, UP, 9.75), turn=EAST, scale=(1, 2.5 / 3.2, 1))
    SideTable(room, 'table', at=(15.66, UP, 11.0))


def eight(room: Entity):
    """Where one wakes: a bed at the window, the coat still on its hook."""
    bed(room, 'bed', at=(0.62, UP, -3.4))
    washstand(room, at=(3.45, UP, -3.6), turn=WEST)
    Cabinet(room, 'wardrobe', at=(0.34, UP, -0.95), turn=EAST)
    Chair(room, 'chair', at=(1.5, UP, -4.1), turn=20)
    SideTable(room, 'bedside', at=(1.5, UP, -2.55))
    place.Cup(room, 'cup', at=(1.38, UP + 0.65, -2.5), turn=40)
    place.Rug(room, 'rug', at=(2.3, UP + 0.002, -2.3), turn=3, scale=(0.7, 1, 0.7))
    place.Radiator(room, 'radiator', at=(3.8, UP, -2.2), turn=WEST)
    place.Landscape(room, 'picture', at=(3.799, UP + 1.5, -1.2), turn=WEST)
    coatStand(room, 'coatStand', at=(1.4, UP, -0.5))


def seven(room: Entity):
    """The last one to leave had packed; a lamp lies on the floor, and burns."""
    bed(room, 'bed', at=(7.1, UP, -3.4))
    Cabinet(room, 'wardrobe', at=(4.34, UP, -3.2), turn=EAST)
    SideTable(room, 'table', at=(4.6, UP, -1.6))
    Chair(room, 'chair', at=(5.15, UP, -1.75), turn=-100)
    place.Crate(room, 'trunk', at=(6.3, UP, -1.5), turn=12)
    place.Block(room, 'trunkBlock', at=(6.3, UP, -1.5), size=(0.68, 0.54, 0.56), turn=12)
    place.BookStack(room, 'books', at=(6.35, UP + 0.536, -1.5), turn=60)
    place.Radiator(room, 'radiator', at=(5.9, UP, -4.5), turn=NORTH)
    for x, z, turn in ((5.6, -2.6, 20), (5.1, -3.3, 110), (6.0, -3.0, 250)):
        place.Paper(room, 'list', at=(x, UP + 0.004, z), turn=turn)
    place.Curtain(room, 'curtain', at=(5.15, UP - 0.72, -4.48), turn=NORTH, scale=(0.8, 1, 1))


def six(room: Entity):
    """The office of whoever kept the books of the floor: a desk, shelves, a lamp that has been left on."""
    Desk(room, 'desk', at=(10.2, UP, -3.95), turn=NORTH)
    Chair(room, 'chair', at=(10.0, UP, -3.1), turn=SOUTH + 15)
    Bookcase(room, 'northBooks', at=(8.25, UP, -2.8), turn=EAST)
    Bookcase(room, 'southBooks', at=(8.25, UP, -3.85), turn=EAST)
    Armchair(room, 'armchair', at=(11.2, UP, -1.0), turn=-140)
    place.BookStack(room, 'floorBooks', at=(9.0, UP, -4.2), turn=30)
    place.Rug(room, 'rug', at=(9.9, UP + 0.002, -2.0), turn=92, scale=(0.8, 1, 0.8))
    place.Portrait(room, 'portrait', at=(11.799, UP + 1.6, -2.4), turn=WEST)
    place.CurtainRod(room, 'rod', at=(9.9, UP - 0.7, -4.5), turn=NORTH, scale=(0.8, 1, 1))


def five(room: Entity):
    """Two who dined in their room, and did not finish."""
    DiningTable(room, 'table', at=(14.0, UP, -2.95), turn=5)
    Chair(room, 'chair', at=(13.25, UP, -2.3), turn=SOUTH - 10)
    place.Chair(room, 'fallenChair', at=(15.2, UP + 0.22, -0.9), turn=35, roll=90)
    place.Block(room, 'fallenBlock', at=(15.2, UP, -0.9), size=(0.9, 0.4, 0.5), turn=35)
    for x, z in ((13.5, -2.85), (14.4, -3.15)):
        place.Plate(room, 'plate', at=(x, UP + 0.765, z))
        place.Cup(room, 'cup', at=(x + 0.2, UP + 0.765, z + 0.1), turn=x * 50)
    bed(room, 'bed', at=(15.3, UP, -3.4))
    Cabinet(room, 'wardrobe', at=(12.35, UP, -3.4), turn=EAST)
    place.Landscape(room, 'picture', at=(15.99, UP + 1.5, -1.0), turn=WEST)


def four(room: Entity):
    """Empty but for what would not go through the door."""
    bed(room, 'bed', at=(10.5, UP, 4.6))
    Cabinet(room, 'wardrobe', at=(12.6, UP, 2.2), turn=NORTH)
    SideTable(room, 'table', at=(11.7, UP, 5.2))
    Crate(room, 'crate', at=(13.4, UP, 5.2), turn=15)
    Crate(room, 'otherCrate', at=(10.3, UP, 2.4), turn=-30)
    place.Rug(room, 'rug', at=(12.0, UP + 0.002, 3.8), turn=85, scale=(0.8, 1, 0.8))


def three(room: Entity):
    """Somebody has stood at this window for a long time."""
    bed(room, 'bed', at=(10.5, UP, 6.9), turn=SOUTH)
    Armchair(room, 'armchair', at=(10.9, UP, 8.6), turn=WEST - 30)
    Bookcase(room, 'books', at=(13.2, UP, 9.45), turn=SOUTH)
    SideTable(room, 'table', at=(12.9, UP, 6.25))
    place.Portrait(room, 'portrait', at=(12.2, UP + 1.5, 5.901), turn=NORTH)
    place.CurtainRod(room, 'rod', at=(9.8, UP - 0.7, 7.8), turn=EAST, scale=(0.8, 1, 1))


def two(room: Entity):
    """Where the girl sleeps, among what was cleared out of other rooms; something gnaws."""
    Crate(room, 'crate', at=(10.4, UP, 13.4), turn=10)
    Crate(room, 'crate2', at=(11.2, UP, 13.5), turn=-8)
    place.Crate(room, 'upperCrate', at=(10.45, UP + 0.536, 13.4), turn=22)
    Barrel(room, 'barrel', at=(10.3, UP, 10.5))
    Rack(room, 'rack', at=(13.2, UP, 10.25), turn=NORTH)
    place.Jar(room, 'jar', at=(12.9, UP + 0.83, 10.25))
    place.Bottle(room, 'bottle', at=(13.6, UP + 0.83, 10.25))
    SideTable(room, 'table', at=(12.6, UP, 13.65))
    bed(room, 'bed', at=(10.5, UP, 12.0))


def sewing(room: Entity):
    """Where the house's linen was mended, and its guests' clothes: a long table, and those who wore them."""
    DiningTable(room, 'table', at=(18.5, UP, 4.4), turn=90)
    place.BookStack(room, 'patterns', at=(18.5, UP + 0.765, 4.9), turn=80)
    Cabinet(room, 'cabinet', at=(20.3, UP, 2.6), turn=WEST)
    SideTable(room, 'pins', at=(17.0, UP, 2.3))
    place.Rug(room, 'rug', at=(18.4, UP + 0.002, 4.6), turn=0, scale=(0.9, 1, 0.9))


def linen(room: Entity):
    """Shelves to the ceiling on both sides of a narrow way, and no window."""
    Rack(room, 'rackNorth', at=(18.9, UP, 10.32), turn=SOUTH)
    Rack(room, 'rackNorthEast', at=(20.0, UP, 9.7), turn=WEST)
    Rack(room, 'rackSouth', at=(17.6, UP, 8.1), turn=NORTH)
    for x, y, z in ((18.4, 0.83, 10.3), (19.2, 1.41, 10.3), (17.2, 0.83, 8.1), (17.9, 1.41, 8.1), (19.0, 0.25, 10.3),
                    (19.3, 0.83, 10.3), (17.9, 0.83, 8.1), (17.3, 0.25, 8.1)):
        sheets(room, 'sheets', at=(x, UP + y, z), turn=4 * (x + z) % 9 - 4, count=4 + round(x * 10) % 3)
    Crate(room, 'crate', at=(16.6, UP, 8.2), turn=6)


def bath(room: Entity):
    tub(room, 'tub', at=(19.9, UP, 12.4))
    washstand(room, at=(16.6, UP, 11.4), turn=EAST)
    for x in (17.0, 20.2):
        place.Pipe(room, 'pipe', at=(x, UP, 10.8), turn=NORTH, scale=(1, 2.5 / 3.2, 1))
    Radiator(room, 'radiator', at=(18.6, UP, 10.8), turn=NORTH)


def landing(room: Entity):
    Clock(room, 'clock', at=(10.75, UP, 15.6), turn=EAST)
    SideTable(room, 'table', at=(16.9, UP, 14.55))
    Armchair(room, 'armchair', at=(12.4, UP, 14.8), turn=20)
    place.Rug(room, 'rug', at=(14.4, UP + 0.002, 15.6), turn=90)
    place.Portrait(room, 'portrait', at=(13.4, UP + 1.55, 14.201), turn=NORTH)
    place.Landscape(room, 'picture', at=(19.6, UP + 1.55, 14.201), turn=NORTH)


def hall(room: Entity):
    """High and cold; what is left of the furniture waits for the carrier under the window."""
    SideTable(room, 'reception', at=(17.6, 0, 17.5))
    Desk(room, 'desk', at=(16.0, 0, 18.2), turn=NORTH)
    place.OpenBook(room, 'guestBook', at=(16.1, 0.776, 18.1), turn=NORTH)
    Cabinet(room, 'keys', at=(14.4, 0, 17.35), turn=NORTH)
    for x, z, turn in ((12.0, 24.2, 5), (12.9, 24.3, -12), (12.2, 23.4, 40)):
        Crate(room, 'crate', at=(x, 0, z), turn=turn)
    place.Crate(room, 'upperCrate', at=(12.4, 0.536, 24.2), turn=12)
    Barrel(room, 'barrel', at=(13.8, 0, 24.4))
    Armchair(room, 'armchair', at=(17.6, 0, 23.6), turn=-130)
    Armchair(room, 'otherArmchair', at=(15.6, 0, 24.0), turn=150)
    place.Rug(room, 'rug', at=(15.4, 0.002, 21.2), turn=90)
    place.Portrait(room, 'portrait', at=(10.501, 1.7, 23.4), turn=EAST)


def service(room: Entity):
    Rack(room, 'rack', at=(8.4, 0, 17.95), turn=NORTH)
    Barrel(room, 'barrel', at=(9.8, 0, 18.1))
    for x, y in ((7.9, 0.83), (8.7, 0.83), (8.3, 1.41)):
        place.Bottle(room, 'bottle', at=(x, y, 17.95))
    place.Pipe(room, 'pipe', at=(10.3, 0, 19.2), turn=WEST, scale=(1, 2.6 / 3.2, 1))


def lift(room: Entity):
    for z in (19.75, 20.65):
        place.Box(room, 'rail', at=(4.26, 0, z), size=(0.06, 2.4, 0.06), surface='iron')


def chute(room: Entity):
    for x, z, turn in ((7.3, 23.2, 20), (7.9, 23.4, 50), (7.6, 23.6, 5)):
        place.Box(room, 'coal', at=(x, 0, z), size=(0.28, 0.14, 0.24), turn=turn, surface='bark')


FURNISH: dict[str, Callable[[Entity], None]] = {
    'corridor': corridor, 'passage': passage, 'eight': eight, 'seven': seven, 'six': six, 'five': five, 'four': four,
    'three': three, 'two': two, 'sewing': sewing, 'linen': linen, 'bath': bath, 'landing': landing, 'hall': hall,
    'service': service,
    'lift': lift, 'chute': chute}
assert FURNISH.keys() == ROOMS.keys()
