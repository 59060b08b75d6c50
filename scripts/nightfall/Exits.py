"""The two ways out of the service passage: the lift, which is heard, and the coal chute, which costs the lamp."""

from __future__ import annotations

from typing import Callable

import kaVel
import objects.GameObjects as place
from kaVel import Entity, MapRootEntity
from nightfall.Made import boxes
from nightfall.Plan import EAST, SOUTH
from objects import Sequences
from objects.Placing import addVolume, placed
from objects.things.Bodies import addWall

RIDE = 30.0    # seconds that the lift climbs, and those from the lever on
COMES = 3.4 + RIDE
GATE_Z, GATE_X = 20.2, 5.74
CHUTE_X, CHUTE_Z = 7.6, 22.26
UPWARDS = kaVel.Vec4(CHUTE_X, 1.9, CHUTE_Z - 0.1, 1)  # where its flap is when it is open


class Lift:
    """A lever calls it; it comes by and by, loud, and its gate folds away."""

    def __init__(self, map: MapRootEntity, rooms: dict[str, Entity], board: Callable[[], object],
                 called: Callable[[], object]):
        self.called, self.isCalled, self.isHere = called, False, False
        room = rooms['service']
        self.gate = _gate(map)
        box = place.SwitchBox(room, 'liftBox', at=(5.8, 1.3, 21.3), turn=EAST)
        lever = place.SwitchLever(box, 'liftLever', at=(5.88, 1.3, 21.3), turn=EAST)
        self.lever = lever.getComponent('transform')
        handle = placed(room, 'liftHandle', at=(5.9, 1.3, 21.3), turn=EAST)
        addVolume(handle, (0.35, 0.5, 0.35), 'BV_NONE').setInteractFunc(lambda player: self.call())
        self.voice = place.sounds(placed(map, 'liftVoice', at=(5.0, 1.4, GATE_Z)), 'Lever', 'LiftStart', 'Lift',
                                  'LiftStop', 'DoorSlide')
        light = place.SphereLight(rooms['lift'], 'cageLight', at=(4.9, 2.0, GATE_Z), strength=0.0, reach=3.6)
        self.light = light.getComponent('graphics2')
        sign = place.SphereLight(room, 'callLight', at=(5.92, 1.62, 21.3), reach=1.0)
        # It swells and fades as long as the current holds.
        kaVel.addComponent(sign, 'behaviors', 'ActPulsingLight', pulseTime=1.4,
                           lightColor=kaVel.Vec4(0.25, 0.09, 0.025, 0))
        place.Trigger(map, 'inLift', at=(4.8, 0, GATE_Z), size=(1.0, 1.3), enter=board)

    def call(self):
        if self.isCalled:
            return
        self.isCalled = True
        self.voice.playSoundEffect('Lever')
        kaVel.interpolate(self.lever, 'orientation', place.turned(EAST, 38), 0.3)
        self.called()
        Sequences.play(self.gate, 0.8, lambda: self.voice.playSoundEffect('LiftStart'), 2.6,
                       lambda: self.voice.playSoundEffect('Lift'), RIDE, self.arrive)

    def arrive(self):
        self.voice.stopSoundEffect('Lift')
        self.voice.playSoundEffect('LiftStop')
        self.shine()
        Sequences.play(self.gate, 1.5, self.open)

    def shine(self):
        self.light.diffuseColor = kaVel.Vec4(*(0.4 * part for part in place.LAMPLIGHT), 0)

    def stand(self):
        """Has it be here, with its gate open, as it was left."""
        self.isCalled = self.isHere = True
        self.lever.orientation = place.turned(EAST, 38)
        self.shine()
        self.gate.getComponent('transform').position = self.aside()

    def aside(self):
        """Where the gate is when it stands open."""
        return kaVel.Vec4(GATE_X, 1.08, GATE_Z + 1.15, 1)

    def open(self):
        self.isHere = True
        self.voice.playSoundEffect('DoorSlide')
        kaVel.interpolate(self.gate.getComponent('transform'), 'position', self.aside(), 1.6)
        Sequences.play(self.gate, 1.6, lambda: self.voice.stopSoundEffect('DoorSlide'))


def _gate(map: MapRootEntity):
    gate = placed(map, 'liftGate', at=(GATE_X, 1.08, GATE_Z))
    addWall(gate, (0.06, 2.16, 1.2))
    mesh = boxes(*(((-0.012, -1.06, z - 0.012), (0.012, 1.06, z + 0.012)) for z in
                   (-0.55, -0.41, -0.27, -0.14, 0.0, 0.14, 0.27, 0.41, 0.55)),
                 *(((-0.02, y - 0.025, -0.58), (0.02, y + 0.025, 0.58)) for y in (-1.0, 0.0, 1.0)))
    asset = kaVel.make('DynamicMeshAsset', parent=gate, name='mesh')
    asset.setMeshData(mesh)
    kaVel.addComponent(gate, 'graphics2', 'ModelGraphicsComponent2', layer='WORLD', mesh=asset, castShadows=True,
                       **place.mapsOf('iron'))
    return gate


class Chute:
    """An iron flap before a slope that nobody climbs up again."""

    def __init__(self, map: MapRootEntity, board: Callable[[], object], opened: Callable[[], object]):
        self.opened, self.isOpen = opened, False
        self.flap = flap = placed(map, 'chuteFlap', at=(CHUTE_X, 0.62, CHUTE_Z), turn=SOUTH)
        addWall(flap, (1.0, 1.24, 0.06))
        mesh = boxes(((-0.5, -0.62, -0.02), (0.5, 0.62, 0.02)), ((-0.46, -0.5, 0.02), (0.46, -0.44, 0.04)),
                     ((-0.46, 0.44, 0.02), (0.46, 0.5, 0.04)), ((-0.12, 0.12, 0.02), (0.12, 0.16, 0.07)))
        asset = kaVel.make('DynamicMeshAsset', parent=flap, name='mesh')
        asset.setMeshData(mesh)
        kaVel.addComponent(flap, 'graphics2', 'ModelGraphicsComponent2', layer='WORLD', mesh=asset, castShadows=True,
                           **place.mapsOf('rust'))
        self.voice = place.sounds(flap, 'DoorCreak', 'DoorLatch')
        flap.getComponent('boundingVolume').setInteractFunc(lambda player: self.open())
        place.Trigger(map, 'inChute', at=(CHUTE_X, 0, 23.2), size=(1.0, 0.8), enter=board)

    def open(self):
        if self.isOpen:
            return
        self.isOpen = True
        self.voice.playSoundEffect('DoorLatch')
        kaVel.interpolate(self.flap.getComponent('transform'), 'position', UPWARDS, 1.4)
        self.opened()

    def stand(self):
        """Has its flap be up, as it was left."""
        self.isOpen = True
        self.flap.getComponent('transform').position = UPWARDS
