"""While the lift climbs: what has lost the player hears it too, and works at the door whose bolt has to be held."""

from __future__ import annotations

from typing import Callable

import kaVel
import objects.GameObjects as place
from kaVel import Entity, MapRootEntity
from nightfall.Made import boxes
from nightfall.Plan import WEST
from objects import Sequences
from objects.Placing import Triple, addVolume, placed
from objects.screen.Marks import marked

DOOR: Triple = (10.4, 0.0, 20.4)
BOLT: Triple = (10.245, 1.22, 20.84)  # where it lies when it is home
DRAWN = 0.19              # metres that it is drawn back while the door may stand open
SLIPS, HOLDS = 0.055, 3   # metres that a blow moves it, and blows that it stands
FIRST, EVERY = 7.0, 6.5   # seconds until it has come to the door, and from blow to blow
AT_DOOR = 3.4             # metres from the door within which it can strike


class Siege:
    """The door of the service passage against the Damp, blow by blow; who pushes the bolt home has it whole again."""

    def __init__(self, map: MapRootEntity, room: Entity, isThere: Callable[[Triple, float], bool],
                 call: Callable[[kaVel.Vec4], object], gives: Callable[[], object]):
        self.isThere, self.callIt, self.gives = isThere, call, gives
        self.isOn = self.wasPushed = False
        self.slipped = self.round = 0
        bolt = place.Built(room, 'bolt', mesh=_bolt(), at=BOLT, turn=WEST, surface='brass')
        place.Built(room, 'boltPlate', mesh=_plate(), at=BOLT, turn=WEST, surface='iron')
        self.bolt, self.mesh = bolt.getComponent('transform'), bolt.getChild('mesh')
        self.mesh.setMeshData(_bolt(DRAWN))
        self.door = placed(map, 'siege', at=(DOOR[0], 1.1, DOOR[2]))
        self.voice = place.sounds(self.door, 'Thud', 'DoorLocked', 'DoorLatch', 'BlobNear')
        reach = placed(room, 'boltReach', at=BOLT)
        addVolume(reach, (0.3, 0.3, 0.6), 'BV_NONE').setInteractFunc(lambda player: self.push())
        marked(reach, 'use')

    def shut(self):
        """Has the bolt before the door, which stands shut from now on."""
        self.mesh.setMeshData(_bolt())

    def begin(self, seconds: float):
        """Lasts for so many seconds; it has heard where the noise is made."""
        self.isOn, self.round = True, self.round + 1
        steps: list[Sequences.Step] = [lambda: self.callIt(kaVel.Vec4(DOOR[0] + 0.8, 0.3, DOOR[2], 1)), FIRST]
        for _ in range(int((seconds - FIRST) / EVERY)):
            steps += [lambda number=self.round: self.strike(number), EVERY]
        Sequences.play(self.door, *steps, self.end)

    def end(self):
        self.isOn = False

    def reset(self):
        """Has the bolt home, and nobody at the door."""
        self.isOn, self.round = False, self.round + 1
        self.slide(0)

    def strike(self, number: int):
        """One blow, if it is at the door."""
        if not self.isOn or number != self.round:
            return
        self.callIt(kaVel.Vec4(DOOR[0] + 0.8, 0.3, DOOR[2], 1))
        if not self.isThere(DOOR, AT_DOOR):
            return
        for sound in ('Thud', 'DoorLocked'):
            self.voice.playSoundEffect(sound)
        place.shakeLight(self.door, 0.25)
        self.slide(self.slipped + 1)
        if self.slipped >= HOLDS:
            self.isOn = False
            self.gives()

    def push(self):
        if self.slipped and self.slipped < HOLDS:
            self.wasPushed = True
            self.voice.playSoundEffect('DoorLatch')
            self.slide(0)

    def slide(self, slipped: int):
        self.slipped = slipped
        x, y, z = BOLT
        kaVel.interpolate(self.bolt, 'position', kaVel.Vec4(x, y, z + SLIPS * slipped, 1), 0.12)


def _bolt(drawn: float = 0.0) -> kaVel.MeshBuilder:
    """A bar with a knob, that lies across the gap between the leaf and its frame, or is drawn back by so much."""
    return boxes(((drawn - 0.16, -0.014, 0.0), (drawn + 0.16, 0.014, 0.026)),
                 ((drawn + 0.03, -0.012, 0.026), (drawn + 0.054, 0.012, 0.07)),
                 ((drawn + 0.02, -0.02, 0.07), (drawn + 0.064, 0.02, 0.1)))


def _plate() -> kaVel.MeshBuilder:
    """The strap on the frame that it runs in."""
    return boxes(((0.08, -0.035, -0.012), (0.12, 0.035, -0.001)),
                 *(((0.08, y - 0.006, -0.002), (0.12, y + 0.006, 0.034)) for y in (-0.026, 0.026)))
