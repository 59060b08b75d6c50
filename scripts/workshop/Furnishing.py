"""What stands and burns in the three rooms, as long as nobody touches it."""

import objects.GameObjects as place
import words
from kaVel import Entity
from workshop.Shell import HEIGHT, NORTH, SOUTH, WEST

FIRELIGHT = (1.0, 0.34, 0.09)
COLD = (0.55, 0.75, 0.80)

Workbench = place.solid(place.Workbench, 'workbench')
Rack = place.solid(place.Rack, 'rack', 'rackBoards')
DrillPress = place.solid(place.DrillPress, 'drillPress')
Barrel = place.solid(place.Barrel, 'barrel')
Radiator = place.solid(place.Radiator, 'radiator')


def workshop(room: Entity, pointer: place.Pointer):
    boiler(room, pointer)
    bench = Workbench(room, 'bench', at=(2.4, 0, -3.6), turn=NORTH)
    pointer.name(bench.getChild('block'), words.said('workshop.workbench'))
    bench = Workbench(room, 'trestle', at=(0.1, 0, -3.6), turn=NORTH)
    pointer.name(bench.getChild('block'), words.said('workshop.bench'))
    press = DrillPress(room, 'drillPress', at=(3.55, 0, -2.6), turn=WEST)
    pointer.name(press.getChild('block'), words.said('workshop.drillPress'))
    barrel = Barrel(room, 'barrel', at=(-3.4, 0, -3.4), turn=20)
    pointer.name(barrel.getChild('block'), words.said('workshop.oilBarrel'))
    place.HangingLamp(room, 'benchLamp', at=(1.0, HEIGHT, -2.7), strength=1.2)
    place.Lantern(room, 'doorLantern', at=(3.55, HEIGHT, 0.2), glass='amber', strength=0.45, reach=3.8)
    place.Sound(room, 'lampSound', at=(1.0, 2.4, -2.7), event='LampHum', volume=0.5)
    place.NowAndThen(room, 'pipeKnocks', at=((3.0, 3.0, 0.2), (-1.0, 3.0, 0.2)), event='PipeKnock', every=(14, 40))
    place.Decal(room, 'oil', picture='bloodPool', at=(0.6, 0, -1.0), pitch=90, roll=40, size=(1.6, 1.6), alpha=0.6)
    place.Decal(room, 'grime', picture='grime', at=(-4, 0.7, 1.0), turn=WEST, size=(1.9, 1.5))
    place.Decal(room, 'soot', picture='scorch', at=(-2.7, 0, 1.2), pitch=90, size=(1.8, 1.4))


def boiler(room: Entity, pointer: place.Pointer):
    """The boiler in the north-west corner, its fire towards the room."""
    place.Boiler(room, 'boiler', at=(-3.0, 0, 2.75), turn=SOUTH)
    place.Sound(room, 'boilerSound', at=(-3.0, 0.9, 2.2), event='Boiler')
    place.Sound(room, 'fireSound', at=(-3.0, 0.6, 1.7), event='Fire', volume=0.6)
    block = place.Block(room, 'boilerBlock', at=(-3.0, 0, 2.85), size=(1.5, 1.8, 2.1))
    pointer.name(block, words.said('workshop.boiler'))
    place.SphereLight(room, 'fire', at=(-3.0, 0.85, 1.35), color=FIRELIGHT, strength=0.75, reach=4.6,
                      flicker=place.burning(5, depth=0.3))


def store(room: Entity, pointer: place.Pointer):
    for x, name in ((8.0, 'rackWest'), (9.9, 'rackEast')):
        rack = Rack(room, name, at=(x, 0, 1.7), turn=SOUTH)
        pointer.name(rack.getChild('block'), words.said('workshop.shelves'))
    for x, y, pattern in ((7.5, 0.83, place.Jar), (7.9, 0.83, place.Jar), (8.4, 1.41, place.Bottle),
                          (8.1, 1.41, place.Jar), (9.5, 0.83, place.BookStack), (10.2, 1.41, place.Jar),
                          (9.9, 0.25, place.Crate), (7.7, 1.41, place.Bottle), (7.9, 0.25, place.BookStack)):
        pattern(room, 'stored', at=(x, y, 1.7), turn=x * 70)
    for x, z in ((10.15, -3.5), (9.45, -3.6), (10.2, -2.75)):
        barrel = Barrel(room, 'barrel', at=(x, 0, z), turn=x * 50)
        pointer.name(barrel.getChild('block'), words.said('workshop.barrel'))
    place.HangingLamp(room, 'storeLamp', at=(7.2, HEIGHT, -1.6), strength=1.5, angle=66, glow=0.16,
                      flicker=place.burning(2, depth=0.05))
    place.LitChamberstick(room, 'candle', at=(8.6, 0.83, 1.62), reach=2.6)
    place.Pipe(room, 'pipe', at=(10.6, 0, 0.3), turn=WEST)
    place.NowAndThen(room, 'rats', at=((9.9, 0.1, -3.4), (8.0, 0.3, 1.6)), event='RatsRun', every=(35, 90),
                     lasting=5)


def cistern(room: Entity, pointer: place.Pointer):
    for x in (-5.6, 3.6):
        place.Pipe(room, 'pipe', at=(x, 0, 10.6), turn=SOUTH)
    place.NowAndThen(room, 'drips', at=((-3.4, 0.1, 9.6), (2.6, 0.1, 5.6), (-1.0, 0.1, 10.0)), event='Drip',
                     every=(2, 7))
    place.NowAndThen(room, 'pipeGroans', at=((-5.6, 2.0, 10.5), (3.6, 2.0, 10.5)), event='PipeGroan', every=(25, 70))
    place.HangingLamp(room, 'basinLamp', at=(1.9, HEIGHT, 8.0), strength=1.2)
    place.Decal(room, 'grime', picture='grime', at=(-1.0, 0.7, 10.6), turn=NORTH, size=(2.2, 1.6))
    place.Decal(room, 'crack', picture='crack', at=(-3.2, 1.6, 10.6), turn=NORTH, size=(2.4, 3.0))
