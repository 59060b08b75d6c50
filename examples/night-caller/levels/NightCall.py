"""NightCall: a passage of concrete, and the Caller at its end."""

import objects.GameObjects as place
from kaVel import Coordinator, MapRootEntity


def build(coordinator: Coordinator):
    coordinator.getManager('graphics2').sceneAmbient = 0.02
    coordinator.loadMap('passage')
    place.Player(coordinator, at=(0, 0, -3))
    place.Hud(coordinator)


def passage(map: MapRootEntity):
    place.PartitioningGrid(map, size=(8, 0, 16))
    for z in (-3, -1, 1, 3, 5):
        place.ConcreteFloor(map, 'floor', at=(0, 0, z))
        place.ConcreteCeiling(map, 'ceiling', at=(0, 0, z))
        for x, turn in ((-1, 90), (1, -90)):
            place.ConcreteWall(map, 'wall', at=(x, 0, z), turn=turn)
    place.ConcreteWall(map, 'end', at=(0, 0, 6), turn=180)
    place.ConcreteWall(map, 'end', at=(0, 0, -4))
    place.Block(map, 'ground', at=(0, -1, 1), size=(4, 1, 12))
    for x in (-1.5, 1.5):
        place.Block(map, 'sides', at=(x, 0, 1), size=(1, 3, 12))
    for z in (-4.5, 6.5):
        place.Block(map, 'ends', at=(0, 0, z), size=(2, 3, 1))
    place.CellarLantern(map, 'lantern', at=(0.6, 0, 3.4))
    place.Caller(map, 'caller', at=(0, 0, 5))
