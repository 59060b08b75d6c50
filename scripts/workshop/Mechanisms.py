"""What works in the cellar: the chute and its button, the updraught, the bell, a fuse."""

from __future__ import annotations

from typing import Mapping

import kaVel
import objects.GameObjects as place
import words
from kaVel import Entity, MapRootEntity, Object
from objects.Placing import LevelClock, addVolume, axisTurn, onFrame, placed
from workshop.Furnishing import COLD
from workshop.Shell import ARCH_X, HEIGHT, SOUTH

UPDRAUGHT = (-4.2, 8.3)       # x and z of its shaft's middle
UPDRAUGHT_FORCE = 240.0       # newtons: more than a crate of 12 kg weighs, less than a man
CHUTE = (2.9, 2.9)            # x and z


class Chute:
    """A red button, and the chute that drops a crate at its press: an object spawner, armed by the button."""

    CRATES = 6  # that it holds

    def __init__(self, room: Entity, pointer: place.Pointer, notice: place.Notice):
        x, z = CHUTE
        self.pointer, self.notice = pointer, notice
        place.Chute(room, 'chute', at=(x, 2.45, z))
        at = (x - 1.5, 0, z + 0.3)
        post = place.ButtonOnPost(room, 'buttonPost', at=at, turn=SOUTH)
        spawner = placed(room, 'chuteSpawner', at=(x, 2.3, z))
        self.spawner = kaVel.addComponent(spawner, 'trigger', 'ObjectSpawner', objectType='CargoCrate',
                                          position=kaVel.Vec4(x, 2.0, z, 1), active=False)
        self.left = self.CRATES
        self.button = place.sounds(post, 'Button')
        self.slide = place.sounds(spawner, 'CoalChute')
        pointer.use(post.getChild('block'), words.said('workshop.redButton'), words.said('workshop.pressButton'),
                    self.press)

    def press(self, player: Object | None):
        self.button.playSoundEffect('Button')
        if not self.left:
            self.notice.show(words.said('workshop.chuteEmpty'))
            return
        self.left -= 1
        self.slide.playSoundEffect('CoalChute')
        self.spawner.active = True
        self.pointer.name(self.spawner.spawnObject(kaVel.Handle()), words.said('workshop.crate', mass='30'))


class Updraught:
    """A fan below a grating: what is light enough rises over it, and dust shows how far."""

    def __init__(self, room: Entity, map: MapRootEntity):
        x, z = UPDRAUGHT
        place.ShaftGrate(room, 'grate', at=(x, 0, z))
        self.fan = place.FanBlades(room, 'fan', at=(x, 0.045, z))
        place.sounding(self.fan, 'Dynamo', volume=0.6)
        self.transform = self.fan.getComponent('transform')
        place.Dust(room, 'risingDust', at=(x, 1.4, z), size=(1.3, 2.6, 1.3), count=900, mote=0.006, drift=0.35,
                   strength=1.3)
        place.SphereLight(room, 'shaftLight', at=(x, 0.5, z), color=COLD, strength=0.65, reach=3.6)
        place.ShadowSpot(room, 'shaftBeam', at=(x, 0.16, z), pitch=-90, color=COLD, strength=1.9, reach=5, angle=34,
                         core=0.5, edge=4, nearClip=0.1)
        force = placed(map, 'updraught', at=(x, 1.5, z))
        addVolume(force, (1.6, 3.0, 1.6), 'BV_NONE').isPartitioningDummy = True
        kaVel.addComponent(force, 'dummy', 'ForceVolumeComponent', forceMagnitude=UPDRAUGHT_FORCE,
                           forceDirection=kaVel.Vec4(0, 1, 0, 0), dampingMultiplier=0.4)
        self.clock = LevelClock(room)
        onFrame(self.fan, self.doFrame)

    def doFrame(self):
        self.transform.orientation = axisTurn(1, 700.0 * self.clock.seconds() % 360)


class Bell:
    """Who comes into the cistern for the first time sets off a bell, and a lamp over the shaft that stays lit."""

    def __init__(self, room: Entity, map: MapRootEntity, notice: place.Notice):
        self.notice, self.clock = notice, LevelClock(room)
        lamp = place.HangingLamp(room, 'bellLamp', at=(-2.6, HEIGHT, 6.6), strength=0.8, color=(1.0, 0.30, 0.16))
        _light(lamp, False)
        self.sounds = place.sounds(placed(room, 'bellTower', at=(ARCH_X, 9.0, 7.0)), 'BellStruck')
        # So high that it meets a walker, but not the crate that he may push before him.
        sensor = placed(map, 'bell', at=(ARCH_X, 1.55, 5.0))
        volume = addVolume(sensor, (2.4, 0.3, 0.6))
        volume.trigger = True
        kaVel.addComponent(sensor, 'physics', 'WallPhysics')
        self.trigger = kaVel.addComponent(sensor, 'scriptedSequence', 'EventTriggerVolume', eventFunc=self.ring,
                                          eventEntityNames='cistern/bellLamp')

    def ring(self, lamp: Entity):
        self.trigger.eventFunc = None
        _light(lamp, True)
        if self.clock.seconds() > 0:  # at the level's beginning it is what has come back from an earlier visit
            self.sounds.playSoundEffect('BellStruck')
            self.notice.show(words.said('workshop.bell'))
            kaVel.log('The bell strikes.')


def _light(lamp: Entity, on: bool):
    for part in ('cone', 'glow'):
        lamp.getChild(part).getComponent('graphics2').visible = on


class FuseBox:
    """A box that lacks one fuse, the fuse in the store, and the lamp at the chute that burns once it is put in."""

    def __init__(self, rooms: Mapping[str, Entity], pointer: place.Pointer, notice: place.Notice):
        self.notice = notice
        room = rooms['workshop']
        at = (1.6, 1.5, 4.0)
        box = place.FuseBox(room, 'fuseBox', at=at, turn=SOUTH)
        for x, y in ((-0.12, 0.14), (0.0, 0.14), (0.12, 0.14), (-0.12, -0.14), (0.12, -0.14)):
            place.Fuse(box, 'oldFuse', at=place.around(at, SOUTH, x, y, 0.06), turn=SOUTH)
        self.sounds = place.sounds(box, 'BatteryIn', 'PickUp')
        self.inPlace = place.Fuse(room, 'fuseInBox', at=place.around(at, SOUTH, 0.0, -0.14, 0.06), turn=SOUTH)
        lamp = place.HangingLamp(room, 'chuteLamp', at=(2.0, HEIGHT, 2.4), strength=0.9)
        self.lit = [entity.getComponent('graphics2') for entity in
                    (self.inPlace, self.inPlace.getChild('fuseCaps'), lamp.getChild('cone'), lamp.getChild('glow'))]
        for drawn in self.lit:
            drawn.visible = False
        handle = placed(room, 'fuseHandle', at=place.around(at, SOUTH, 0, 0, 0.1))
        addVolume(handle, (0.5, 0.7, 0.3), 'BV_NONE')
        pointer.use(handle, words.said('workshop.fuseBox'), self.hint, self.putIn)
        self.fuse = place.Fuse(rooms['store'], 'fuse', at=(9.4, 0.86, 1.62), turn=30, roll=90)
        self.fuse.getComponent('boundingVolume').hitBox = kaVel.Vec4(0.3, 0.3, 0.6, 0)  # out of the shelves' block
        pointer.use(self.fuse, words.said('workshop.fuse'), words.said('workshop.takeFuse'), self.take)

    def isTaken(self):
        return not self.fuse or self.fuse.isDying()

    def hint(self):
        return None if self.lit[0].visible else words.said(
            'workshop.putFuseIn' if self.isTaken() else 'workshop.lookForFuse')

    def take(self, player: Object):
        kaVel.persist(self.fuse, 'murder')
        self.fuse.murder()
        self.sounds.placeEvent('PickUp', self.fuse.getComponent('transform').position)
        self.sounds.playSoundEffect('PickUp')
        self.notice.show(words.said('workshop.fuseTaken'))

    def putIn(self, player: Object):
        if self.lit[0].visible:
            return
        if not self.isTaken():
            self.notice.show(words.said('workshop.fuseMissing'))
            return
        self.light()
        self.sounds.playSoundEffect('BatteryIn')
        for drawn in self.lit:
            kaVel.persist(drawn, 'setVisible', True)

    def light(self):
        for drawn in self.lit:
            drawn.visible = True
