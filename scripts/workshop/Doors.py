"""The cellar's doors: one of iron that swings, one of planks that slides, and one that stays locked."""

import kaVel
import objects.GameObjects as place
from objects.Placing import addVolume, placed
from workshop.Shell import ARCH_X, DOOR_Z, EAST, NORTH, SOUTH, WEST

LEAF = (1.12, 2.16, 0.07)          # of the model ironDoor, metres
SLIDING_LEAF = (1.70, 2.40, 0.08)  # of the model slidingDoor
SLIDING_SPEED = 1.1                # metres a second


@kaVel.pattern
def IronDoor(parent, name='', at=(0, 0, 0), turn=0.0, locked=False):
    """An iron leaf that is hinged on its left; `at` is the middle of its threshold."""
    leaf = placed(parent, name, at=(at[0], at[1] + 0.01 + LEAF[1] / 2, at[2]), turn=turn)
    _leaf(leaf, LEAF, 'DoorPhysics', pivotPosition=kaVel.Vec4(-LEAF[0] / 2, 0, 0, 0), locked=locked)
    place.look(leaf, 'ironDoor', 'iron')
    return leaf


@kaVel.pattern
def SlidingDoor(parent, name='', at=(0, 0, 0), turn=0.0):
    """A leaf of planks on wheels that slides to its own right; `at` is the middle below it when it is shut."""
    leaf = placed(parent, name, at=(at[0], at[1] + 0.02 + SLIDING_LEAF[1] / 2, at[2]), turn=turn)
    _leaf(leaf, SLIDING_LEAF, 'SlidingDoorPhysics', openVelocity=kaVel.Vec4(SLIDING_SPEED, 0, 0, 0), direction='Right')
    place.look(leaf, 'slidingDoor', 'wood')
    iron = placed(leaf, 'iron')
    addVolume(iron, SLIDING_LEAF, 'BV_NONE')
    kaVel.addComponent(iron, 'parentFollower', 'ParentFollowerComponent')
    place.look(iron, 'slidingDoorIron', 'iron')
    return leaf


def _leaf(leaf, size, className, **properties):
    volume = addVolume(leaf, size, 'BV_DOOR')
    door = kaVel.addComponent(leaf, 'physics', className, **properties)
    volume.setInteractFunc(door.interact)


def build(map, pointer):
    """The three doors, each with its frame or rail; returns the leaves by name."""
    leaves = {
        'storeDoor': IronDoor(map, 'storeDoor', at=(4.3, 0, DOOR_Z), turn=EAST),
        'cisternDoor': SlidingDoor(map, 'cisternDoor', at=(ARCH_X, 0, 3.90), turn=NORTH),
        'lockedDoor': IronDoor(map, 'lockedDoor', at=(-4.3, 0, DOOR_Z), turn=EAST, locked=True),
    }
    place.IronDoorFrame(map, 'storeFrame', at=(4, 0, DOOR_Z), turn=WEST)
    place.IronDoorFrame(map, 'lockedFrame', at=(-4, 0, DOOR_Z), turn=EAST)
    place.DoorRail(map, 'rail', at=(ARCH_X + 0.85, 2.445, 3.90), turn=SOUTH)

    def use(leaf):
        door = leaf.getComponent('physics')
        return lambda: 'close the door' if door.open else 'open the door'

    pointer.name(leaves['storeDoor'], 'an iron door', use(leaves['storeDoor']))
    pointer.name(leaves['cisternDoor'], 'a sliding door', use(leaves['cisternDoor']))
    pointer.name(leaves['lockedDoor'], 'an iron door, locked', 'try the door')
    return leaves
