"""The Caller: a small thing with a lantern that comes to whoever stands still, and waits an arm's length away."""

import math

import kaVel
from mod_night_caller import Shape
from objects.creatures.Creatures import shaped
from objects.Placing import LevelClock, Triple, addVolume, onFrame, placed
from objects.sound.Sounds import sounding
from objects.things.Lights import SphereLight

SPEED, NEAR, FLOATS = 0.7, 1.6, 0.9  # metres a second; metres from the player; metres above the floor


@kaVel.pattern
def Caller(parent: kaVel.MapRootEntity, name: str = '', at: Triple = (0, 0, 0), speed: float = SPEED):
    """Comes to the player as long as he stands still, and stops where he moves."""
    caller = placed(parent, name or 'caller', at=(at[0], at[1] + FLOATS, at[2]), scale=(0.3, 0.3, 0.3))
    addVolume(caller, (0.6, 0.6, 0.6), 'BV_NONE')
    shaped(caller, Shape.wisp, 'paper')
    light = SphereLight(caller, 'lantern', at=(at[0], at[1] + FLOATS, at[2]), color=(0.6, 0.8, 1.0), strength=0.25,
                        reach=3.0)
    sounding(caller, 'LanternHum')
    onFrame(caller, _Way(caller, light, speed).doFrame)
    return caller


class _Way:
    def __init__(self, caller: kaVel.Entity, light: kaVel.Entity, speed: float):
        self.places = [each.getComponent('transform') for each in (caller, light)]
        self.level, self.speed = caller.getAncestorOfType(kaVel.Reflection.Coordinator), speed
        self.clock, self.last = LevelClock(caller), None

    def doFrame(self):
        player = self.level.getChild('Player')
        if not player:
            return
        there, here = player.getComponent('transform').position, self.places[0].position
        stood = self.last is None or math.hypot(there.x - self.last[0], there.z - self.last[1]) < 0.001
        self.last = there.x, there.z
        x, z = there.x - here.x, there.z - here.z
        far = math.hypot(x, z)
        step = min(self.speed * self.clock.frameSeconds(), far - NEAR) if stood else 0.0
        bob = 0.02 * math.sin(self.clock.seconds() * 2)
        if step > 0:
            for place in self.places:
                place.position = kaVel.Vec4(here.x + x / far * step, FLOATS + bob, here.z + z / far * step, 1)
