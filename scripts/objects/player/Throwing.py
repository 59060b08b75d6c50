"""What a player throws."""

import kaVel
from objects.Placing import addVolume, placed
from objects.player.Visitor import Visitor
from objects.sound.Sounds import heardAs, sounds
from objects.things.Bodies import addBody, look

BOLT_SPEED = 13.0    # metres a second
BOLT_LIFETIME = 1.5  # seconds


class Bolts:
    """Bolts that a player throws where he looks: G, or the right button of the mouse."""

    def __init__(self, map: kaVel.MapRootEntity, visitor: Visitor):
        self.map, self.visitor = map, visitor
        self.number = 0
        self.sounds = sounds(visitor.player, 'Throw')
        kaVel.onKey(map, 'throw', self.throw)

    def throw(self):
        eye, ahead = self.visitor.eye.position, self.visitor.ahead()
        self.number += 1
        at = eye.x + 0.5 * ahead[0], eye.y - 0.12 + 0.5 * ahead[1], eye.z + 0.5 * ahead[2]
        bolt = placed(self.map, 'bolt%d' % self.number, at=at)
        bolt.getComponent('transform').orientation = self.visitor.eye.orientation
        addVolume(bolt, (0.05, 0.05, 0.3), 'BV_BULLET')
        addBody(bolt, 2.0, damping=0.8, className='BulletPhysics', lifetime=BOLT_LIFETIME,
                velocity=kaVel.Vec4(*(BOLT_SPEED * part for part in ahead), 0))
        look(bolt, 'bolt', 'iron')
        heardAs(bolt, 'BoltOnStone', '')
        self.sounds.playSoundEffect('Throw')
        kaVel.finishLoad(bolt)
