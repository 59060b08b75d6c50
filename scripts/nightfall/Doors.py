"""The doors of the house: all of wood, two of them locked."""

from __future__ import annotations

import kaVel
import objects.GameObjects as place
from kaVel import Entity, MapRootEntity
from nightfall.Plan import DOORS, ROOMS
from objects.Placing import addVolume, placed
from objects.Sounds import LeafVoice

#: Door -> the key that opens it.
LOCKS = {'passageDoor': 'passageKey', 'landingDoor': 'landingKey'}
#: Stood open when one came.
OPEN = {'doorEight': 50, 'doorFour': 24}

LEAF = (0.86, 2.02, 0.05)


def build(map: MapRootEntity) -> dict[str, Entity]:
    """All leaves by name."""
    leaves = {}
    for name, (x, z, turn, one, other) in DOORS.items():
        floor = ROOMS[one].floor
        leaves[name] = _leaf(map, name, (x, floor, z), turn)
        leaves[name].getComponent('physics').locked = name in LOCKS
    return leaves


def _panels() -> kaVel.MeshBuilder:
    mesh = kaVel.MeshBuilder()
    mesh.addBox(kaVel.Vec4(LEAF[0] / 2, LEAF[1] / 2, LEAF[2] / 2, 0))
    mesh.applyWorldTextureCoordinates(1.0)
    mesh.generateTangents()
    return mesh


def _leaf(map: MapRootEntity, name: str, at: place.Triple, turn: float):
    leaf = placed(map, name, at=(at[0], at[1] + 0.01 + LEAF[1] / 2, at[2]), turn=turn)
    volume = addVolume(leaf, LEAF, 'BV_DOOR')
    door = kaVel.addComponent(leaf, 'physics', 'DoorPhysics', pivotPosition=kaVel.Vec4(-LEAF[0] / 2, 0, 0, 0))
    volume.setInteractFunc(door.interact)
    place.shaped(leaf, _panels, 'wood')
    LeafVoice(leaf, (at[0], at[1] + 1.0, at[2]), turn, lambda: door.prevAngle, 'DoorCreak', shut='DoorLatch',
              slam='DoorSlam')
    return leaf
