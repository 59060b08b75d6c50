"""Sample: three rooms built from patterns alone, to begin a level from.

One wakes in the bedroom, takes the lamp, reads the note, finds the key of the store in the hall, past somebody who
walks up and down, and in the store the key of the front door. All of it is arguments: nothing here is code.

               north                                   walls: 0 south, 1 east, 2 north, 3 west,
    +-------------+-----------------------------+      4 and 5 within
    |             4         h a l l             |  z = 4
    |  bedroom   door  <- warden ->            door ->  out
    |             +-----------door------5-------+  z = 0
    |  lamp       |           store             |
    |  note       |  battery       front key    |
    +-------------+-----------------------------+  z = -4
  x = -7         -2                             7
"""

import GameConfig
import kaVel
import objects.GameObjects as place
from kaVel import Coordinator, MapRootEntity

NORTH, EAST, SOUTH, WEST = 0, 90, 180, -90  # which way an object faces


def build(coordinator: Coordinator):
    kaVel.configure(coordinator.getManager('graphics2'), sceneAmbient=0.045)
    coordinator.getManager('reverb').surroundings = 'woodRoom'
    coordinator.loadMap('house')
    place.Player(coordinator, at=(-6.0, 0, -3.0), turn=20)
    place.Hud(coordinator)


def house(map: MapRootEntity):
    place.hear(map)
    place.Room(map, 'rooms', size=(14, 8), partitions=[[(-2, -4), (-2, 4)], [(-2, 0), (7, 0)]],
               openings=[{'kind': 'door', 'wall': 4, 'along': 6, 'leaf': 'bedroomDoor'},
                         {'kind': 'door', 'wall': 5, 'along': 3, 'leaf': 'storeDoor', 'key': 'storeKey'},
                         {'kind': 'door', 'wall': 1, 'along': 6, 'leaf': 'frontDoor', 'key': 'frontKey'},
                         {'kind': 'window', 'wall': 3, 'along': 4, 'width': 1.4},
                         {'kind': 'window', 'wall': 2, 'along': 3}, {'kind': 'window', 'wall': 2, 'along': 6}],
               rooms=[((2, -2), 'brick')], floors=[((2, -2), 'flagstones'), ((2, 2), 'tiles')])
    place.FloorArea(map, 'doorstep', outline=[(7, 0.5), (10, 0.5), (10, 3.5), (7, 3.5)], surface='stone')
    place.Walls(map, 'yard', plan=[[(7.2, 0.5), (10, 0.5), (10, 3.5), (7.2, 3.5)]], height=2.2, inside='brick')
    bedroom(map)
    hall(map)
    store(map)
    place.makeSolid(map)
    place.Exit(map, 'wayOut', at=(8.4, 0, 2), size=(1.2, 2.4), show='The night air. You are out.')


def bedroom(map: MapRootEntity):
    """Where one wakes: a lamp, and a note beside the candles."""
    place.SafePlace(map, 'awake', at=(-6, 0, -3), turn=20)
    place.Desk(map, 'desk', at=(-5.2, 0, 3.3), turn=SOUTH)
    place.Chair(map, 'deskChair', at=(-5.4, 0, 2.35), turn=NORTH + 15)
    place.LitCandelabrum(map, 'candles', at=(-5.8, 0.77, 3.45), turn=30, reach=3.4)
    place.Note(map, 'letter', at=(-5.35, 0.775, 3.15), turn=8, title='To whoever wakes',
               text='The store is locked. Its key lies where it always lay, at the far end of the hall; the one of '
                    'the front door lies in the store.\n\nHe neither sees nor hears. Only never be in his way.')
    place.Rug(map, 'rug', at=(-4.6, 0.003, -0.4), turn=NORTH)
    place.SideTable(map, 'bedsideTable', at=(-6.3, 0, -1.4))
    place.Flashlight(map, 'lamp', at=(-6.3, 0.68, -1.4), turn=172)
    place.Armchair(map, 'armchair', at=(-2.9, 0, -3.1), turn=-40)
    place.FullBookcase(map, 'books', at=(-5.0, 0, -3.65), turn=NORTH)
    place.Sound(map, 'wind', at=(-6.9, 1.7, 0), event='WindAtWindow')
    place.SphereLight(map, 'moonlight', at=(-6.4, 1.7, 0), color=place.MOONLIGHT, strength=0.16, reach=2.6)


def hall(map: MapRootEntity):
    """Where somebody walks up and down; with ears and eyes, `hears` and `sees`, he would come after one."""
    place.HangingLamp(map, 'hallLamp', at=(3.4, 3.0, 2), strength=1.3, flicker=place.burning(3, depth=0.06))
    place.SideTable(map, 'hallTable', at=(6.35, 0, 3.4))
    place.Key(map, 'storeKey', at=(6.3, 0.655, 3.35), turn=30, label='the key of the store')
    place.Portrait(map, 'portrait', at=(2.5, 1.9, 3.895), turn=SOUTH)
    place.Radiator(map, 'radiator', at=(5.0, 0, 3.84), turn=SOUTH)
    place.PatrolRoute(map, 'round', points=[(3.6, 0, 3.2), (-1.0, 0, 3.2)])
    place.Walker(map, 'warden', at=(3.6, 0, 3.2), turn=WEST, route='round', speed=0.7, sees=False, hears=False)
    place.NowAndThen(map, 'boards', at=((-4, 3.0, 0), (3, 3.0, -2)), event='Floorboard', every=(25, 70), first=18)


def store(map: MapRootEntity):
    """Cold stone, a battery, and the key to get out; the light in the hall goes when one is there."""
    place.Lantern(map, 'lantern', at=(3.0, 3.0, -2.2), glass='amber', strength=0.5, reach=3.3)
    place.Rack(map, 'rack', at=(-0.6, 0, -3.55), turn=NORTH)
    place.SpareBattery(map, 'battery', at=(-0.4, 0.86, -3.5), turn=70)
    place.Jar(map, 'jar', at=(-1.0, 0.83, -3.55), turn=20)
    place.DiningTable(map, 'bench', at=(5.6, 0, -3.4))
    place.Key(map, 'frontKey', at=(5.4, 0.77, -3.2), turn=70, label='the key of the front door')
    place.Barrel(map, 'barrel', at=(6.3, 0, -0.7), turn=40)
    place.CargoCrate(map, 'crate', at=(2.4, 0, -3.3), turn=12)
    place.TriggerArea(map, 'atBench', at=(5.2, 0, -2.4), size=(2.4, 1.6), do=[
        ('play', 'Settle', 'hallLamp'), ('darken', 'hallLamp'), ('wait', 1.2),
        ('show', 'The light in the hall has gone out.')])
    place.ReverbZone(map, 'coldStore', at=(2.5, 0, -2), size=(9, 3, 4), room='cellar')


def views():
    """What a headless run takes pictures of, where it asks for views."""
    def lookFrom(x: float, z: float, turn: float):
        visitor = place.visitorOf(kaVel.getSystem('GameLoopSystem').currentlyActiveCoordinator)
        visitor.goTo((x, 0, z), turn, pitch=4)

    places = {'bedroom': (-6.3, -3.3, 30.0), 'desk': (-5.8, 0.6, 10.0), 'hall': (-1.4, 2.6, 100.0),
              'key': (4.2, 1.6, 50.0), 'store': (-1.2, -0.6, 125.0), 'bench': (3.4, -1.4, 130.0),
              'outside': (9.6, 1.0, -80.0)}
    return [(name, lambda at=at: lookFrom(*at)) for name, at in places.items()] if GameConfig.views else ()
