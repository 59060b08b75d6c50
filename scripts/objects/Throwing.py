"""What a walker throws."""

import kaVel
from objects.Bodies import addBody, look
from objects.Placing import addVolume, placed
from objects.Sounds import heardAs, sounds
from objects.Walker import Walker

BOLT_SPEED = 13.0    # metres a second
BOLT_LIFETIME = 1.5  # seconds


class Bolts:
    """Bolts that a walker throws where he looks: F, or the right button of the mouse."""

    def __init__(self, map: kaVel.MapRootEntity, walker: Walker):
        self.map, self.walker = map, walker
        self.number = 0
        self.sounds = sounds(walker.player, 'Throw')
        kaVel.onKey(map, 'throw', self.throw)

    def throw(self):
        eye, ahead = self.walker.eye.position, self.walker.ahead()
        self.number += 1
        at = eye.x + 0.5 * ahead[0], eye.y - 0.12 + 0.5 * ahead[1], eye.z + 0.5 * ahead[2]
        bolt = placed(self.map, 'bolt%d' % self.number, at=at)
        bolt.getComponent('transform').orientation = self.walker.orientation()
        addVolume(bolt, (0.05, 0.05, 0.3), 'BV_BULLET')
        addBody(bolt, 2.0, damping=0.8, className='BulletPhysics', lifetime=BOLT_LIFETIME,
                velocity=kaVel.Vec4(*(BOLT_SPEED * part for part in ahead), 0))
        look(bolt, 'bolt', 'iron')
        heardAs(bolt, 'BoltOnStone', '')
        self.sounds.playSoundEffect('Throw')
        kaVel.finishLoad(bolt)
