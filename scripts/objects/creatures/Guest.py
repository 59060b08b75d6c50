"""The Guest: somebody in a wet coat, never seen whole, who walks his points and comes to light.

    place.Guest(map, 'guest', points=[(0, 0, 2), (0, 0, 9), (4, 0, 9)])

He perceives light alone: lit places that somebody stands in, the flashlight's lamp and where its beam falls. In the
dark he walks on from point to point, through doors, and whoever waits there without a light is passed. Lamps near him
dim. He leaves wet prints that fade, and can be heard: breath, a hem on the floor. Whom he reaches in light he hurts.
"""

from __future__ import annotations

import math
import random
from typing import Any, Callable, NamedTuple, Sequence

import GameConfig
import kaVel
import words
from objects.creatures.Creatures import shaped
from objects.creatures.Prey import Prey
from objects.creatures.Prints import Prints
from objects.Placing import Triple, addVolume, onFrame, placed
from objects.player.Nerves import dreaded
from objects.sound.Sounds import sounds
from objects.things.Lathe import drape, lathe, spindle
from objects.things.Lights import dim
from perLevel import PerLevel
from saves.Moments import hunts

HEIGHT = 0.25     # metres: of the ball's middle that he goes on
TOUCH = 0.85      # metres from his middle to the player's
TOLL = 19.0       # life a second that his touch takes in light
CHILL = 3.0       # percent of the mind a second, light or dark
#: Light over the ambient at which he begins to perceive, and that he perceives best; also from which on he hurts.
FAINT, BRIGHT = 0.03, 0.35
#: Metres within which lamps dim, and the share of their light that is left at his side.
DIMS, DIMMED = 3.6, 0.16
#: Metres that he sees light from, and the dread of him, percent of the mind a second.
SEES, DREAD = 14.0, 3.0

_guests: PerLevel[list[_Guest]] = PerLevel()


@kaVel.pattern
def Guest(parent: kaVel.MapRootEntity, name: str = '', points: Sequence[Triple] = ((0, 0, 0),),
          at: Triple | None = None, speed: float = 0.8, abroad: bool = True):
    """The one in the wet coat, who walks from point to point over and over; he begins at `at`, or at the first one.

    Who is not `abroad` is nowhere to be met until `bring` is called: what he is made of takes time, which a level has
    while it loads.
    """
    start = at or points[0]
    guest = placed(parent, name or 'guest', at=(start[0], start[1] + HEIGHT, start[2]))
    addVolume(guest, (0.5, 0.5, 0.5), 'BV_NONE')
    kaVel.addComponent(guest, 'physics', 'RigidBody', inverseMass=0.0)
    senses = kaVel.addComponent(guest, 'perception', 'PerceptionComponent', hasEars=False, seesLightOnly=True,
                                sightRange=SEES, nearRange=0.0, sightGain=0.75, noticeLevel=0.35, memoryTime=7.0,
                                drainRate=0.12, eyeOffset=kaVel.Vec4(0, 1.2, 0, 0))
    kaVel.addComponent(guest, 'pathFollower', 'PathFollower', opensDoors=True, closesDoors=True, speed=speed,
                       arriveRadius=0.35)
    dummy = kaVel.addComponent(guest, 'dummy', 'DummyObjectComponent', followPoints=abroad, walkSpeed=speed,
                               footstepLength=0.62, footstepFadeTime=24.0)
    lead(guest, points)
    kaVel.addComponent(guest, 'behaviors', 'BTComponent', behaviors=['Guest'],
                       defaultBehavior='Guest' if abroad else '')
    voice = sounds(guest, 'GuestBreath', 'GuestHem')
    voice.addSoundEffectAs('Footstep', 'GuestPrint')
    dreaded(guest, dread=DREAD, range=10.0)
    kaVel.addComponent(guest, 'form', 'OnGround', groundBelow=HEIGHT)
    driver = _Guest(guest, senses, dummy, _part(guest, 'coat', start, _coat), _part(guest, 'hem', start, _hem))
    driver.setAbroad(abroad)
    level = parent.getAncestorOfType(kaVel.Reflection.Coordinator)
    _guests.setdefault(level, []).append(driver)
    onFrame(guest, driver.doFrame)
    dummy.stepFunc = driver.leavePrint
    hunts(parent, lambda: bool(guest) and driver.senses.knows)
    return guest


def guestsAbroad(level: kaVel.Coordinator) -> list[kaVel.Entity]:
    """All of them in a level that are about, or on their way."""
    return [each.guest for each in _guests.get(level, []) if each.guest and (each.isAbroad or each.isExpected)]


def announce(guest: kaVel.Entity):
    """Has those know of a Guest who know first, some seconds before he is brought."""
    _driverOf(guest).isExpected = True


def bring(guest: kaVel.Entity, at: Triple):
    """Has a Guest begin his round at a place, of all that he knew before nothing."""
    _driverOf(guest).begin(at)


def lead(guest: kaVel.Entity, points: Sequence[Triple]):
    """Gives a Guest other points to walk."""
    dummy = guest.getComponent('dummy')
    dummy.setSavedPoints([(x, y + HEIGHT, z) for x, y, z in points])


def dismiss(guest: kaVel.Entity):
    """Has a Guest gone until he is brought again; the lamps beside him burn as before."""
    _driverOf(guest).leave()


def _driverOf(guest: kaVel.Entity) -> _Guest:
    level = guest.getAncestorOfType(kaVel.Reflection.Coordinator)
    return next(each for each in _guests[level] if each.guest == guest)


def _part(guest: kaVel.Entity, name: str, at: Triple, build: Callable[[], kaVel.MeshBuilder]):
    """Something of him that is seen; its drawn component."""
    part = placed(guest, name, at=at)
    addVolume(part, (0.8, 3.9, 0.8), 'BV_NONE')
    kaVel.addComponent(part, 'parentFollower', 'TransformOffsetComponent',
                       positionOffset=kaVel.Vec4(0, -HEIGHT, 0, 0))
    return shaped(part, build, 'wetCloth')


def _coat() -> kaVel.MeshBuilder:
    """What he is in the dark: a long coat with its collar up, and a hat above it, with nobody in either."""
    mesh = kaVel.MeshBuilder()
    drape(mesh, ((0.335, 0.22), (0.30, 0.5), (0.245, 0.85), (0.20, 1.06), (0.215, 1.24), (0.245, 1.38), (0.235, 1.46),
                 (0.16, 1.53), (0.095, 1.57), (0.105, 1.62), (0.135, 1.68)), 11, 0.035, flat=0.70)
    for side in (-1.0, 1.0):
        spindle(mesh, ((0.0, 0.06), (0.08, 0.085), (0.5, 0.078), (0.9, 0.066), (1.0, 0.072)), (0.20 * side, 1.49, 0.0),
                (0.30 * side, 0.80, 0.05), 12)
    lathe(mesh, ((0.0, 1.745), (0.20, 1.755), (0.205, 1.765), (0.12, 1.785), (0.115, 1.87), (0.085, 1.91),
                 (0.0, 1.915)), segments=20, depth=1.1)
    return mesh


def _shred(mesh: kaVel.MeshBuilder, angle: float, width: float, top: float):
    """A shred of cloth from the floor up to where it ends; seen from both sides."""
    for side in (1.0, -1.0):
        before: tuple[int, int] | None = None
        for height in (0.015, 0.12, 0.25, 0.8 * top, top):
            radius = 0.335 - 0.11 * (height / 0.9) + 0.028 * math.cos(11 * angle) - 0.003 * (side < 0)
            narrow = width * (1.0 if height < 0.5 * top else 0.8 if height < top else 0.25)
            row = [mesh.addVertex(kaVel.Vec4(radius * math.sin(edge), height, 0.7 * radius * math.cos(edge), 1),
                                  kaVel.Vec4(side * math.sin(edge), 0.1, side * math.cos(edge), 0), 2 * edge, -height)
                   for edge in (angle - narrow, angle + narrow)]
            if before:
                quad = (row[0], row[1], before[1], before[0])
                mesh.addQuad(*(quad[::-1] if side > 0 else quad))
            before = row[0], row[1]


def _hem() -> kaVel.MeshBuilder:
    """What light shows of him: the hem of the coat, which is gone above the knees."""
    mesh = kaVel.MeshBuilder()
    dice, number = random.Random('the hem'), 26
    for shred in range(number):
        _shred(mesh, math.tau * shred / number, 0.6 * math.tau / number, dice.uniform(0.30, 0.47))
    return mesh


class _Lamp(NamedTuple):
    light: kaVel.LightComponent
    color: kaVel.Vec4
    glint: kaVel.Vec4


class _Guest:
    """His prints, his sounds, the lamps that dim beside him, and whom he touches."""

    def __init__(self, guest: kaVel.Entity, senses: kaVel.PerceptionComponent, dummy: kaVel.DummyObjectComponent,
                 coat: Any, hem: Any):
        self.guest, self.senses, self.dummy, self.coat, self.hem = guest, senses, dummy, coat, hem
        self.transform, self.sound = guest.getComponent('transform'), guest.getComponent('sound')
        self.prey = Prey(guest)
        self.prints = Prints(self.prey.map, guest.name + ' print', 'wetPrint', (0.30, 0.30), 24, 24.0)
        self.lamps: list[_Lamp] | None = None
        self.dimmed: set[kaVel.LightComponent] = set()
        self.dice = random.Random('%s %d' % (guest.name, GameConfig.seed))
        self.adapt()
        self.frame, self.breathAt, self.isLit = 0, self.dice.uniform(1, 4), False
        self.isAbroad, self.isExpected = True, False

    def setAbroad(self, isAbroad: bool):
        """Has him there to be seen, heard and met, or nowhere."""
        self.isAbroad = self.hem.visible = isAbroad
        self.isExpected = False
        self.coat.visible = False
        self.senses.sightRange = SEES if isAbroad else 0.0
        self.guest.getComponent('dread').dread = DREAD if isAbroad else 0.0

    def begin(self, at: Triple):
        """Begins his round at a place."""
        self.setAbroad(True)
        self.transform.position = kaVel.Vec4(at[0], at[1] + HEIGHT, at[2], 1)
        self.senses.forget()
        self.breathAt = self.prey.clock.seconds() + self.dice.uniform(1, 4)
        self.guest.getComponent('behaviors').activeBehavior = 'Guest'

    def leave(self):
        """Ends his round, and is gone."""
        self.setAbroad(False)
        self.senses.forget()
        self.dummy.stopWalking()
        self.guest.getComponent('pathFollower').stop()
        self.guest.getComponent('behaviors').activeBehavior = ''
        for lamp in self.lamps or ():
            if lamp.light in self.dimmed:
                dim(lamp.light, 1.0, lamp.color, lamp.glint)
        self.dimmed.clear()

    def doFrame(self):
        self.frame += 1
        if self.lamps is None:
            self.lamps = self.findLamps()
        if not self.isAbroad:
            if self.frame % 8 == 0:
                self.prints.fade()
            return
        now, place = self.prey.clock.seconds(), self.transform.position
        near = self.prey.distance(place)
        if self.frame % 3 == 0:
            self.fadeInLight(place)
        if self.frame % 8 == 0:
            self.adapt()
            self.dimLamps(place)
            self.prints.fade()
            self.isLit = near < 2.0 and self.standsInLight()
        if near < TOUCH:
            seconds = self.prey.clock.frameSeconds()
            self.prey.wear(CHILL * seconds)
            if self.isLit:
                self.prey.touched(TOLL * seconds, words.said('death.guest'))
        if now > self.breathAt:
            self.breathAt = now + self.dice.uniform(3.5, 7.5)
            if near < 14:
                self.sound.playSoundEffect('GuestBreath')

    def adapt(self):
        """Tells light from what is there without any lamp."""
        ambient = self.prey.level.getManager('graphics2').sceneAmbient
        if abs(self.senses.darkest - ambient - FAINT) > 1e-4:
            self.senses.darkest, self.senses.brightest = ambient + FAINT, ambient + BRIGHT

    def fadeInLight(self, place: kaVel.Vec4):
        """Light shows no more of him than the hem."""
        light = kaVel.Reflection.lightAt(self.prey.map, place + kaVel.Vec4(0, 1.0, 0, 0))
        shown = light < self.senses.darkest + (0.02 if self.coat.visible else 0.0)
        if self.coat.visible != shown:
            self.coat.visible = shown

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

    def findLamps(self) -> list[_Lamp]:
        """All lamps of the map as they burn while he is not near."""
        return [_Lamp(each, each.diffuseColor, each.specularColor) for each in kaVel.descendants(self.prey.map)
                if each._getType().isSubclassOf(kaVel.Reflection.LightComponent) and each.parent.name != 'flashlight']

    def dimLamps(self, place: kaVel.Vec4):
        """Takes the light of the lamps beside him, and gives it back when he has gone by."""
        for lamp in self.lamps or ():
            if not lamp.light:
                continue
            away = (lamp.light.place - place).magnitude()
            if away < DIMS or lamp.light in self.dimmed:
                share = min(1.0, max(0.0, (away - 0.8) / (DIMS - 0.8)))
                dim(lamp.light, DIMMED + (1 - DIMMED) * share * share, lamp.color, lamp.glint)
                (self.dimmed.add if away < DIMS else self.dimmed.discard)(lamp.light)
