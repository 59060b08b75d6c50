"""Doors that are opened and shut, and take part in what bodies do: they push and are stopped."""

from typing import Any, Literal

import kaVel
from objects.Bodies import look
from objects.Placing import Triple, addVolume, placed
from objects.Sounds import LeafVoice

LEAF = (1.12, 2.16, 0.07)          # of the model ironDoor, metres
SLIDING_LEAF = (1.70, 2.40, 0.08)  # of the model slidingDoor
SLIDING_SPEED = 1.1                # metres a second


@kaVel.pattern
def IronDoor(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, locked: bool = False):
    """An iron leaf that is hinged on its left; `at` is the middle of its threshold."""
    leaf = placed(parent, name, at=(at[0], at[1] + 0.01 + LEAF[1] / 2, at[2]), turn=turn)
    door = _leaf(leaf, LEAF, 'DoorPhysics', pivotPosition=kaVel.Vec4(-LEAF[0] / 2, 0, 0, 0), locked=locked)
    look(leaf, 'ironDoor', 'iron')
    LeafVoice(leaf, (at[0], at[1] + LEAF[1] / 2, at[2]), turn, lambda: door.prevAngle, 'DoorCreak',
              shut='DoorLatch', slam='DoorSlamIron')
    return leaf


@kaVel.pattern
def SlidingDoor(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0):
    """A leaf of planks on wheels that slides to its own right; `at` is the middle below it when it is shut."""
    leaf = placed(parent, name, at=(at[0], at[1] + 0.02 + SLIDING_LEAF[1] / 2, at[2]), turn=turn)
    door = _leaf(leaf, SLIDING_LEAF, 'SlidingDoorPhysics', openVelocity=kaVel.Vec4(SLIDING_SPEED, 0, 0, 0),
                 direction='Right')
    look(leaf, 'slidingDoor', 'wood')
    LeafVoice(leaf, (at[0], at[1] + SLIDING_LEAF[1] / 2, at[2]), turn, lambda: door.currentOffset, 'DoorSlide',
              shut='DoorSlideStop', stop='DoorSlideStop')
    iron = placed(leaf, 'iron')
    addVolume(iron, SLIDING_LEAF, 'BV_NONE')
    kaVel.addComponent(iron, 'parentFollower', 'ParentFollowerComponent')
    look(iron, 'slidingDoorIron', 'iron')
    return leaf


def _leaf(leaf: kaVel.Entity, size: Triple, className: Literal['DoorPhysics', 'SlidingDoorPhysics'],
          **properties: Any) -> Any:
    """Gives a leaf its volume and the body that moves it, which is returned."""
    volume = addVolume(leaf, size, 'BV_DOOR')
    door = kaVel.addComponent(leaf, 'physics', className, **properties)
    volume.setInteractFunc(door.interact)
    return door
