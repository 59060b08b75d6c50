"""What a hand sets: the lever that switches a lamp, the button on a post."""

import kaVel
import words
from objects.Placing import Triple, addVolume, around, onFrame, placed, turned
from objects.player.Pointing import Pointer
from objects.sound.Sounds import sounds
from objects.things import Furniture
from objects.things.Bodies import solid
from objects.things.Lights import BULB_BELOW_HOOK, LAMPLIGHT, ShadowSpot


class LightSwitch:
    """A lever on the wall and the hanging lamp that it switches, which is lit at first.

    `at` is the lever's place, `lamp` the hook that the lamp hangs from. The lamp's state outlives the level.
    """

    def __init__(self, room: kaVel.Object, pointer: Pointer, at: Triple, lamp: Triple, turn: float = 0.0):
        box = Furniture.SwitchBox(room, 'lightSwitch', at=at, turn=turn)
        self.turn = turn
        self.lever = Furniture.SwitchLever(box, 'lever', at=around(at, turn, 0, 0, 0.08), turn=turn)
        handle = placed(room, 'switchLever', at=around(at, turn, 0, 0, 0.1), turn=turn)
        volume = addVolume(handle, (0.3, 0.4, 0.3), 'BV_NONE')
        Furniture.WorkLamp(room, 'switchedLamp', at=lamp)
        light = ShadowSpot(handle, 'lightSwitchLight', at=(lamp[0], lamp[1] - BULB_BELOW_HOOK, lamp[2]), pitch=90,
                           strength=2.1, reach=8.0, angle=66, core=0.3, edge=3, color=LAMPLIGHT, nearClip=0.12)
        self.light = light.getComponent('graphics2')
        self.sounds = sounds(self.lever, 'LampSwitch')
        self.volume = volume
        pointer.use(handle, words.said('workshop.lightSwitch'), self.hint, self.switch)
        onFrame(self.lever, self.doFrame)

    def switch(self, player: kaVel.Object):
        self.sounds.playSoundEffect('LampSwitch')
        self.volume.lightSwitchInteract()

    def hint(self):
        return words.said('workshop.lampOff' if self.light.visible else 'workshop.lampOn')

    def doFrame(self):
        pitch = 38 if self.light.visible else -38
        self.lever.getComponent('transform').orientation = turned(self.turn, pitch)


@kaVel.pattern
def ButtonOnPost(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0):
    """A red button on a post that stands on `at`; what is pressed is the post's child `block`."""
    post = solid(Furniture.ButtonPost, 'buttonPost')(parent, name, at=at, turn=turn)
    Furniture.PushButton(post, 'button', at=at, turn=turn)
    return post
