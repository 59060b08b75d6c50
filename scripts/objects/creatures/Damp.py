"""The Damp: a wet black thing that pours through doorways and hears.

    damp = place.Damp(map, 'damp', at=(0, 0, 6), territory=5.0, pipes=[(1, 2, 3), (4, 2, 8)])

It has no eyes. What it hears it takes for a place that grows vaguer, and goes there: steps, doors, what falls, whoever
made it. A closed door holds it for `DOOR_DELAY` seconds, in which it presses itself through the gaps until the latch
gives; a locked one holds it for good. The flashlight's hot spot burns it, so that it draws back, while the battery is
spent `BATTERY_PRICE` times as fast. Where it touches the player it takes life and mind. The pipes groan before it
comes.
"""

from __future__ import annotations

import random
from typing import Sequence

import GameConfig
import kaVel
import words
from objects.creatures.Prey import Prey
from objects.creatures.Prints import Prints
from objects.Placing import Triple, addVolume, layerFor, onFrame, placed
from objects.player.Nerves import dreaded
from objects.sound.Sounds import sounds
from objects.things.Models import mapsOf
from perLevel import PerLevel
from saves.Moments import hunts

GIRTH = 0.5     # metres: diameter of the ball that it goes on
HEIGHT = 0.25   # metres: of the ball's middle
TOUCH = 0.95    # metres from its middle to the player's within which it touches him
DOOR_DELAY = 8.0
#: Life and percent of the mind a second that touching takes; the mind by the player's own rule for the blob.
BITE = 17.0
#: Share of the beam from which on it burns, and how fast the battery then drains.
BURNING, BATTERY_PRICE = 0.34, 5.0
#: Seconds that it goes on boiling after the light has left it.
SMART = 1.6

_damps: PerLevel[list[kaVel.Entity]] = PerLevel()


def dampsIn(level: kaVel.Coordinator) -> list[kaVel.Entity]:
    """All of them in a level that live."""
    return [damp for damp in _damps.get(level, []) if damp]


@kaVel.pattern
def Damp(parent: kaVel.MapRootEntity, name: str = '', at: Triple = (0, 0, 0), territory: float = 6.0,
         pipes: Sequence[Triple] = ()):
    """The wet black thing, at home at `at`; with nothing on its mind it strays `territory` metres from there.

    `pipes` are places in which it is heard before it comes.
    """
    damp = placed(parent, name or 'damp', at=(at[0], at[1] + HEIGHT, at[2]))
    addVolume(damp, (GIRTH, GIRTH, GIRTH), 'BV_SPHERE')
    kaVel.addComponent(damp, 'physics', 'RigidBody', inverseMass=1.0 / 60.0, damping=0.05)
    kaVel.addComponent(damp, 'steering', 'SteeringComponent', maxSpeed=3.2, maxAccel=9.0, timeToTarget=0.25,
                       arriveTargetRadius=0.25, arriveSlowRadius=0.8, alignMaxRotSpeed=3.5, alignTargetRadius=0.02,
                       alignSlowRadius=0.7)
    kaVel.addComponent(damp, 'perception', 'PerceptionComponent', hasEyes=False, nearRange=0.0, hearingThreshold=0.0022,
                       hearingGain=0.55, noticeLevel=0.4, memoryTime=11.0, drainRate=0.07, ownNoiseRange=1.2,
                       eyeOffset=kaVel.Vec4(0, 0.3, 0, 0))
    kaVel.addComponent(damp, 'pathFollower', 'PathFollower', opensDoors=True, doorDelay=DOOR_DELAY, arriveRadius=0.35)
    kaVel.addComponent(damp, 'behaviors', 'BTComponent', behaviors=['Damp', 'DampBurning'],
                       defaultBehavior='Damp')
    home = placed(damp, 'home', at=(at[0], at[1] + HEIGHT, at[2]), scale=(territory, 1, 1))
    assert home
    mesh = kaVel.make('DynamicMeshAsset', parent=damp, name='mesh')
    kaVel.addComponent(damp, 'graphics2', 'ModelGraphicsComponent2', layer=layerFor(damp), mesh=mesh,
                       castShadows=True, **mapsOf('damp'))
    kaVel.addComponent(damp, 'form', 'DampBody', mesh=mesh, groundBelow=HEIGHT)
    dreaded(damp, dread=4.0, range=12.0)
    sounds(damp, 'BlobNear', 'BlobHunt', 'BlobBurn', 'BlobTouch')
    voice = placed(damp, 'voice', at=at)
    sounds(voice, 'BlobIdle', 'PipeGroan', 'PipeKnock')
    kaVel.addComponent(voice, 'behaviors', 'BTComponent', behaviors=['BlobTree'], defaultBehavior='BlobTree')
    driver = _Damp(damp, voice, at, pipes)
    onFrame(damp, driver.doFrame)
    level = damp.getAncestorOfType(kaVel.Reflection.Coordinator)
    hunts(level, lambda: bool(damp) and driver.senses.knows)
    _damps[level] = [*dampsIn(level), damp]
    return damp


def sendHome(damp: kaVel.Entity):
    """Puts it back where it began, knowing nothing."""
    transform, home = damp.getComponent('transform'), damp.getChild('home').getComponent('transform')
    damp.getComponent('perception').forget()
    damp.getComponent('pathFollower').stop()
    damp.getComponent('physics').velocity = kaVel.Vec4(0, 0, 0, 0)
    damp.getComponent('form').boiling = 0.0
    damp.getComponent('behaviors').setBehavior('Damp')
    transform.position = home.position


class _Damp:
    """What no tree does: its looks and sounds, what burns it and whom it touches."""

    def __init__(self, damp: kaVel.Entity, voice: kaVel.Entity, at: Triple, pipes: Sequence[Triple]):
        self.transform, self.body, self.form = (damp.getComponent(key) for key in ('transform', 'physics', 'form'))
        self.senses, self.follower, self.sound = (damp.getComponent(key)
                                                  for key in ('perception', 'pathFollower', 'sound'))
        self.mind = damp.getComponent('behaviors')
        self.voice, self.mouth = voice.getComponent('sound'), voice.getComponent('transform')
        self.prey = Prey(damp)
        self.floor, self.pipes = at[1], list(pipes)
        self.sheen = Prints(self.prey.map, damp.name + ' sheen', 'dampSheen', (0.95, 0.95), 14, 26.0, 0.85)
        self.dice = random.Random('%s %d' % (damp.name, GameConfig.seed))
        self.lastSheen = self.transform.position
        self.frame = self.dice.randrange(4)
        self.burntAt = self.bitAt = self.announcedAt = -1e9
        self.loops = {'BlobNear': False, 'BlobHunt': False}
        self.touching = False

    def doFrame(self):
        self.frame += 1
        now, place = self.prey.clock.seconds(), self.transform.position
        near = self.prey.distance(place)
        if self.frame % 4 == 0:
            self.burn(now, place, near)
        self.touch(now, near)
        if self.frame % 6 == 0:
            self.rear(near)
            self.sounds(now, near)
            self.sheen.fade()
        if (place - self.lastSheen).magnitude() > 0.55:
            self.lastSheen = place
            self.sheen.leave((place.x, place.y - HEIGHT, place.z), self.dice.uniform(0, 360))

    def burn(self, now: float, place: kaVel.Vec4, near: float):
        """Boils in the flashlight's hot spot, at the price of the battery, and learns from where it comes."""
        share = self.prey.beamOn(place + kaVel.Vec4(0, 0.35, 0, 0)) if near < 9 else 0.0
        if share > BURNING:
            if now > self.burntAt + SMART:
                self.sound.playSoundEffect('BlobBurn')
                self.mind.setBehavior('DampBurning')
            self.burntAt = now
            torch, player = self.prey.torch(), self.prey.component
            if torch and player:
                player.drainBattery((BATTERY_PRICE - 1) * 4 * self.prey.clock.frameSeconds())
                self.senses.alarm(torch.place, 1.5)
        boiling = max(0.0, 1 - (now - self.burntAt) / SMART)
        if boiling or self.form.boiling:
            self.form.boiling = boiling

    def touch(self, now: float, near: float):
        """Takes life and mind of whom it has hold of."""
        touching = near < TOUCH and not self.form.boiling
        player = self.prey.component
        if player and touching != self.touching:
            player.blobColliding = touching
        self.touching = touching
        if not touching:
            return
        if now > self.bitAt + 1.3:
            self.bitAt = now
            self.sound.playSoundEffect('BlobTouch')
        self.prey.touched(BITE * self.prey.clock.frameSeconds(), words.said('death.damp'))

    def rear(self, near: float):
        """Lies flat while it listens, and stands up where it hunts."""
        if self.form.boiling:
            rearing = 0.22
        elif self.senses.knows:
            rearing = 1.0 if near < 2.5 else 0.72
        elif self.follower.atDoor:
            rearing = 0.85
        else:
            rearing = 0.45 if self.senses.remembers else 0.14
        self.form.rearing = rearing

    def sounds(self, now: float, near: float):
        """Is heard as it moves; in the pipes while it lies, and before it comes."""
        speed = self.body.velocity.magnitude()
        self.play('BlobNear', speed > 0.15 and not self.senses.knows)
        self.play('BlobHunt', speed > 0.15 and self.senses.knows)
        if self.senses.remembers and now > self.announcedAt + 14:
            self.announcedAt = now
            self.mouth.position = self.pipe(self.senses.place)
            self.voice.playSoundEffect('PipeGroan' if self.senses.knows else 'PipeKnock')
        elif now > self.announcedAt + 5:
            self.mouth.position = self.pipe(self.transform.position)

    def pipe(self, place: kaVel.Vec4) -> kaVel.Vec4:
        """The pipe nearest to a place, or where it is itself."""
        if not self.pipes:
            return self.transform.position + kaVel.Vec4(0, 1.5, 0, 0)
        x, y, z = min(self.pipes, key=lambda each: (each[0] - place.x) ** 2 + (each[2] - place.z) ** 2)
        return kaVel.Vec4(x, y, z, 1)

    def play(self, loop: str, wanted: bool):
        if self.loops[loop] != wanted:
            self.loops[loop] = wanted
            if wanted:
                self.sound.playSoundEffect(loop)
            else:
                self.sound.stopSoundEffect(loop)
