"""The cellar's doors: one of iron that swings, one of planks that slides, and one that stays locked."""

import objects.GameObjects as place
import words
from kaVel import Entity, MapRootEntity
from workshop.Shell import ARCH_X, DOOR_Z, EAST, NORTH, SOUTH, WEST


def build(map: MapRootEntity, pointer: place.Pointer):
    """The three doors, each with its frame or rail; returns the leaves by name."""
    leaves = {
        'storeDoor': place.IronDoor(map, 'storeDoor', at=(4.3, 0, DOOR_Z), turn=EAST),
        'cisternDoor': place.SlidingDoor(map, 'cisternDoor', at=(ARCH_X, 0, 3.90), turn=NORTH),
        'lockedDoor': place.IronDoor(map, 'lockedDoor', at=(-4.3, 0, DOOR_Z), turn=EAST, locked=True),
    }
    place.IronDoorFrame(map, 'storeFrame', at=(4, 0, DOOR_Z), turn=WEST)
    place.IronDoorFrame(map, 'lockedFrame', at=(-4, 0, DOOR_Z), turn=EAST)
    place.DoorRail(map, 'rail', at=(ARCH_X + 0.85, 2.445, 3.90), turn=SOUTH)

    def use(leaf: Entity):
        door = leaf.getComponent('physics')
        return lambda: words.said('workshop.closeDoor' if door.open else 'workshop.openDoor')

    pointer.name(leaves['storeDoor'], words.said('workshop.ironDoor'), use(leaves['storeDoor']))
    pointer.name(leaves['cisternDoor'], words.said('workshop.slidingDoor'), use(leaves['cisternDoor']))
    pointer.name(leaves['lockedDoor'], words.said('workshop.lockedDoor'), words.said('workshop.tryDoor'))
    return leaves
