"""The Guest: somebody in a wet coat, never seen whole, who walks his points and comes to light.

    place.Guest(map, 'guest', points=[(0, 0, 2), (0, 0, 9), (4, 0, 9)])

He perceives light alone: lit places that somebody stands in, the flashlight's lamp and where its beam falls. In the
dark he walks on from point to point, through doors, and whoever waits there without a light is passed. Lamps near him
dim. He leaves wet prints that fade, and can be heard: breath, a hem on the floor. Whom he reaches in light he hurts.
"""

from __future__ import annotations

import math
import random
from typing import NamedTuple, Sequence

import GameConfig
import kaVel
from objects.Creatures import shaped
from objects.Lights import dim
from objects.Nerves import dreaded
from objects.Placing import Triple, addVolume, onFrame, placed
from objects.Prey import Prey
from objects.Prints import Prints
from objects.Sounds import sounds

HEIGHT = 0.25     # metres: of the ball's middle that he goes on
TOUCH = 0.85      # metres from his middle to the player's
TOLL = 19.0       # life a second that his touch takes in light
CHILL = 3.0       # percent of the mind a second, light or dark
#: Light over the ambient at which he begins to perceive, and that he perceives best; also from which on he hurts.
FAINT, BRIGHT = 0.03, 0.35
#: Metres within which lamps dim, and the share of their light that is left at his side.
DIMS, DIMMED = 3.6, 0.16


@kaVel.pattern
def Guest(parent: kaVel.MapRootEntity, name: str = '', points: Sequence[Triple] = ((0, 0, 0),),
          at: Triple | None = None, speed: float = 0.8):
    """The one in the wet coat, who walks from point to point over and over; he begins at `at`, or at the first one."""
    start = at or points[0]
    guest = placed(parent, name or 'guest', at=(start[0], start[1] + HEIGHT, start[2]))
    addVolume(guest, (0.5, 0.5, 0.5), 'BV_NONE')
    kaVel.addComponent(guest, 'physics', 'RigidBody', inverseMass=0.0)
    senses = kaVel.addComponent(guest, 'perception', 'PerceptionComponent', hasEars=False, seesLightOnly=True,
                                sightRange=14.0, nearRange=0.0, sightGain=0.75, noticeLevel=0.35, memoryTime=7.0,
                                drainRate=0.12, eyeOffset=kaVel.Vec4(0, 1.2, 0, 0))
    kaVel.addComponent(guest, 'pathFollower', 'PathFollower', opensDoors=True, closesDoors=True, speed=speed,
                       arriveRadius=0.35)
    dummy = kaVel.addComponent(guest, 'dummy', 'DummyObjectComponent', followPoints=True, walkSpeed=speed,
                               footstepLength=0.62, footstepFadeTime=24.0)
    dummy.setSavedPoints([(x, y + HEIGHT, z) for x, y, z in points])
    kaVel.addComponent(guest, 'behaviors', 'BTComponent', behaviors=['Guest'], defaultBehavior='Guest')
    voice = sounds(guest, 'GuestBreath', 'GuestHem')
    voice.addSoundEffectAs('Footstep', 'GuestPrint')
    dreaded(guest, dread=3.0, range=10.0)
    coat = placed(guest, 'coat', at=start)
    addVolume(coat, (0.8, 3.0, 0.8), 'BV_NONE')
    kaVel.addComponent(coat, 'parentFollower', 'TransformOffsetComponent', positionOffset=kaVel.Vec4(0, -HEIGHT, 0, 0))
    shaped(coat, _coat, 'wetCloth')
    driver = _Guest(guest, senses, dummy)
    onFrame(guest, driver.doFrame)
    dummy.stepFunc = driver.leavePrint
    return guest


def _strip(mesh: kaVel.MeshBuilder, angle: float, width: float, top: float, dice: random.Random):
    """A shred of the coat from the hem up to where it ends; seen from both sides."""
    rows: list[tuple[kaVel.Vec4, kaVel.Vec4]] = []
    heights = [0.03 + dice.uniform(0, 0.05), 0.22, 0.5, 0.8, 1.05, 1.25, 1.38]
    heights = [height for height in heights if height < top - 0.06] + [top]
    for number, height in enumerate(heights):
        hem = max(0.0, 1 - height / 1.05)
        radius = 0.20 + 0.15 * hem ** 1.4 - 0.03 * max(0.0, height - 1.1) + 0.035 * math.cos(7 * angle) * hem
        narrow = 1.0 if number < len(heights) - 1 else 0.12
        edges = [angle - width * narrow, angle + width * narrow]
        rows.append(tuple(kaVel.Vec4(radius * math.sin(edge), height, 0.78 * radius * math.cos(edge), 1)
                          for edge in edges))  # type: ignore[arg-type]
    for (a, b), (c, d) in zip(rows, rows[1:]):
        mesh.addQuad(c, d, b, a)
        mesh.addQuad(d, c, a, b)


def _coat() -> kaVel.MeshBuilder:
    """What is seen of him: a long coat that ends in shreds where its collar would be, with nobody in it."""
    mesh = kaVel.MeshBuilder()
    dice = random.Random('the coat')
    number = 34
    for strip in range(number):
        angle = math.tau * strip / number
        shoulder = 0.22 * abs(math.sin(angle)) ** 3  # shoulders stand higher than breast and back
        _strip(mesh, angle, 0.72 * math.tau / number, 1.02 + shoulder + dice.uniform(-0.12, 0.22), dice)
    mesh.smoothNormals(0.9)
    mesh.generateTangents()
    return mesh


class _Lamp(NamedTuple):
    light: kaVel.LightComponent
    color: kaVel.Vec4
    glint: kaVel.Vec4


class _Guest:
    """His prints, his sounds, the lamps that dim beside him, and whom he touches."""

    def __init__(self, guest: kaVel.Entity, senses: kaVel.PerceptionComponent, dummy: kaVel.DummyObjectComponent):
        self.guest, self.senses, self.dummy = guest, senses, dummy
        self.transform, self.sound = guest.getComponent('transform'), guest.getComponent('sound')
        self.prey = Prey(guest)
        self.prints = Prints(self.prey.map, guest.name + ' print', 'wetPrint', (0.30, 0.30), 24, 24.0)
        self.lamps: list[_Lamp] | None = None
        self.dimmed: set[kaVel.LightComponent] = set()
        self.dice = random.Random('%s %d' % (guest.name, GameConfig.seed))
        self.frame, self.breathAt, self.isLit = 0, self.dice.uniform(1, 4), False

    def doFrame(self):
        self.frame += 1
        now, place = self.prey.clock.seconds(), self.transform.position
        near = self.prey.distance(place)
        if self.frame % 8 == 0:
            self.adapt()
            self.dimLamps(place)
            self.prints.fade()
            self.isLit = near < 2.0 and self.standsInLight()
        if near < TOUCH:
            seconds = self.prey.clock.frameSeconds()
            self.prey.wear(CHILL * seconds)
            if self.isLit:
                self.prey.touched(TOLL * seconds, 'the Guest found you by your light')
        if now > self.breathAt:
            self.breathAt = now + self.dice.uniform(3.5, 7.5)
            if near < 14:
                self.sound.playSoundEffect('GuestBreath')

    def adapt(self):
        """Tells light from what is there without any lamp."""
        ambient = self.prey.level.getManager('graphics2').sceneAmbient
        if abs(self.senses.darkest - ambient - FAINT) > 1e-4:
            self.senses.darkest, self.senses.brightest = ambient + FAINT, ambient + BRIGHT

    def standsInLight(self) -> bool:
        """Whether the player beside him burns a light, or stands in one."""
        player = self.prey.place()
        if player is None:
            return False
        return bool(self.prey.torch()) or kaVel.Reflection.lightAt(self.prey.map, player) > self.senses.darkest

    def leavePrint(self, _: kaVel.Entity):
        """Leaves a wet print beside his way, left and right in turn."""
        place, ahead = self.transform.position, self.transform.getDirection()
        side = -1 if self.dummy.currFootfall == kaVel.DummyObjectComponent.Footfall.LEFT_FOOT else 1
        at = (place.x + 0.11 * side * ahead.z, place.y - HEIGHT, place.z - 0.11 * side * ahead.x)
        self.prints.leave(at, math.degrees(math.atan2(ahead.x, ahead.z)), mirrored=side < 0)
        if self.dice.random() < 0.4:
            self.sound.playSoundEffect('GuestHem')

    def dimLamps(self, place: kaVel.Vec4):
        """Takes the light of the lamps beside him, and gives it back when he has gone by."""
        if self.lamps is None:
            self.lamps = [_Lamp(each, each.diffuseColor, each.specularColor)
                          for each in kaVel.descendants(self.prey.map)
                          if each._getType().isSubclassOf(kaVel.Reflection.LightComponent) and
                          each.parent.name != 'flashlight']
        for lamp in self.lamps:
            if not lamp.light:
                continue
            away = (lamp.light.place - place).magnitude()
            if away < DIMS or lamp.light in self.dimmed:
                share = min(1.0, max(0.0, (away - 0.8) / (DIMS - 0.8)))
                dim(lamp.light, DIMMED + (1 - DIMMED) * share * share, lamp.color, lamp.glint)
                (self.dimmed.add if away < DIMS else self.dimmed.discard)(lamp.light)
