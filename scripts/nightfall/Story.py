"""What happens in the night, in its order: waking, the lamp, two locked doors, who passes, the stairs, the way out."""

from __future__ import annotations

import math
from typing import TYPE_CHECKING, Callable

import kaVel
import objects.GameObjects as place
import words
from nightfall.Exits import COMES, Chute, Lift
from nightfall.Plan import DOORS, STAIRS_HEAD, STAIRS_X, UP, roomAt
from nightfall.Siege import Siege
from nightfall.Sounds import CLOCK, PIPES
from nightfall.StairGate import StairGate
from objects import Sequences
from objects.Placing import Triple, onFrame, placed
from objects.player.Hands import handsOf
from objects.screen import Tutorials
from objects.screen.Tutorials import Prompt
from objects.Sequences import Until
from saves import Moments
from saves.Kept import keepPart

if TYPE_CHECKING:
    from levels.Nightfall import Night

#: What of `nightfall.Sounds` ends with the chase.
FALL_SILENT = ('settling', 'boards', 'knocks', 'groans', 'thuds', 'crows')

#: Lessons: the ends of their texts' keys, and the actions that they are about.
LOOK, WALK, USE, LIGHT = ('look', ''), ('walk', 'forward'), ('use', 'use'), ('light', 'flashlight')
BATTERY, CROUCH, RUN, LEAN = ('battery', 'battery'), ('crouch', 'crouch'), ('run', 'run'), ('lean', 'leanLeft')
THROW, SHUT, WIND, BOLT = ('throw', 'throw'), ('shut', 'use'), ('wind', 'use'), ('bolt', 'use')

#: Shares of the gate's way at which the house answers who winds it.
ANSWERS = 0.22, 0.5, 0.78

WAKING: tuple[Triple, float] = (1.75, UP, -3.2), 20.0


class Story:
    """The scripted moments of one night."""

    def __init__(self, night: Night):
        self.night, self.map, self.level = night, night.map, night.level
        self.player, self.mind = night.player, night.player.getComponent('player')
        self.leaves, self.safety = night.leaves, night.safety
        self.music = night.music
        self.voice = place.sounds(placed(self.map, 'storyVoice', at=CLOCK), 'ClockWarn', 'ClockStrike')
        self.pipes = place.sounds(placed(self.map, 'storyPipes', at=PIPES[0]), 'PipeGroan')
        self.pockets = place.pocketsOf(self.level)
        self.chased = self.chaseIsOver = self.lampIsTaken = self.guestHasGone = self.guestHasPassed = False
        self.doorGave, self.frame = False, 0
        self.safePlaces()
        self.waking()
        self.lessons()
        self.lamp()
        self.numberTwo()
        self.linen()
        self.landing()
        self.ways()
        self.safety.onReturn(self.again)
        onFrame(placed(self.map, 'story'), self.watch)
        keepPart(self.level, 'nightfall', self.told, self.become)
        Moments.namePlaces(self.level, lambda at: 'nightfall.room.' + roomAt(at[0], at[2]))
        Moments.hunts(self.level, lambda: self.chased and not self.chaseIsOver or self.siege.isOn)

    def told(self) -> dict[str, bool]:
        """What has happened of all this."""
        return {'lampIsTaken': self.lampIsTaken, 'guestHasPassed': self.guestHasPassed,
                'guestHasGone': self.guestHasGone, 'gateIsOpen': self.gate.isOpen,
                'chaseIsOver': self.chaseIsOver, 'liftIsHere': self.lift.isHere, 'chuteIsOpen': self.chute.isOpen}

    def become(self, told: dict[str, bool]):
        """Leaves out what has happened; a chase that had begun is still to come, and nobody hunts."""
        self.again()
        self.lampIsTaken, self.guestHasGone = told['lampIsTaken'], told['guestHasGone']
        self.guestHasPassed = told['guestHasPassed']
        if told['gateIsOpen']:
            self.gate.stand()
        if told['chaseIsOver']:
            self.chased = self.chaseIsOver = True
            self.siege.shut()
            self.stillHouse()
        if told['liftIsHere']:
            self.lift.stand()
        if told['chuteIsOpen']:
            self.chute.stand()

    def layGrid(self):
        """The map's grid knows the walls of one floor, that of those who walk by themselves: the guest floor, and the
        hall's once the Damp is down there with the player.
        """
        isDown = self.chased and self.feet()[1] < 0.3 and self.night.creatures.dampIsBelow(0.4)
        grid = self.map.getChild('.MapData_mainPathGrid').getComponent('transform')
        at, height = grid.position, 0.0 if isDown else UP
        if at.y != height:
            grid.position = kaVel.Vec4(at.x, height, at.z, 1)

    def feet(self) -> Triple:
        return self.night.visitor.standing()[0]

    def room(self):
        x, _, z = self.feet()
        return roomAt(x, z)

    def isOpen(self, door: str):
        leaf = self.leaves[door].getComponent('physics')
        return leaf.open or abs(leaf.prevAngle) > 0.02

    # Places that one comes back to

    def safePlaces(self):
        for name, at, size, turn in (
                ('safeCorridor', (3.0, UP, 0.8), (1.4, 1.4), 90.0), ('safeSeven', (5.4, UP, -0.9), (1.4, 1.2), 180.0),
                ('safeSix', (9.2, UP, -0.9), (1.4, 1.2), 180.0), ('safePassage', (15.15, UP, 2.6), (1.6, 1.2), 0.0),
                ('safeTwo', (11.75, UP, 10.7), (1.2, 1.2), 0.0),
                ('safeSewing', (16.9, UP, 3.4), (1.2, 1.6), 90.0), ('safeLinen', (19.6, UP, 8.6), (1.4, 1.4), -90.0),
                ('safeLanding', (15.15, UP, 14.9), (1.6, 1.4), 60.0),
                ('safeService', (9.6, 0.0, 20.4), (1.2, 1.6), -90.0)):
            self.safety.place(self.map, name, at=at, size=size, turn=turn)

    # The beginning

    def waking(self):
        picture, body = self.level.getManager('graphics2'), self.player.getComponent('physics')
        picture.dissolveAmount = 1.0
        Sequences.play(self.level, 1.2, lambda: kaVel.configure(body, opening=True))

    def lessons(self):
        mind = self.mind
        start, turned = self.feet(), self.player.getComponent('transform').orientation

        def hasLooked():
            now = self.player.getComponent('transform').orientation
            return abs(now.r * turned.r + now.i * turned.i + now.j * turned.j + now.k * turned.k) < 0.995

        self.teach(LOOK, hasLooked)
        self.teach(WALK, lambda: math.dist(self.feet(), start) > 0.6, after=9)
        self.teach(USE, lambda: mind.getHasFlashlight() or self.isOpen('doorSeven'), after=25,
                   needed=lambda: mind.interactor)
        self.teach(BATTERY, mind.isCharging, after=20,
                   needed=lambda: mind.getHasFlashlight() and mind.batteries and mind.currBatteryTimeLeft < 20)
        for name, x, z in (('lessonCrouch', 11.75, 8.9), ('lessonCrouchAgain', 19.6, 6.6)):
            place.Trigger(self.map, name, at=(x, UP, z), size=(1.4, 1.6), enter=lambda: self.teach(
                CROUCH, lambda: mind.isCrouched() or self.room() in ('two', 'linen'), after=6))
        place.Trigger(self.map, 'lessonLean', at=(15.15, UP, 11.2), size=(1.7, 1.0), enter=lambda: self.teach(
            LEAN, lambda: not self.isNear('landingDoor', 6), after=8))

    def teach(self, lesson: tuple[str, str], learnt: Callable[[], object], after: float = 8.0,
              needed: Callable[[], object] = lambda: True):
        name, action = lesson
        told = words.said('teach.' + name, left=Prompt('left'), right=Prompt('right'), back=Prompt('back'),
                          leanRight=Prompt('leanRight'))
        Tutorials.teach(self.level, told, action, learnt, after, needed)

    def atGate(self):
        x, _, z = self.feet()
        return math.hypot(x - STAIRS_X, z - STAIRS_HEAD) < 1.6

    def isNear(self, door: str, metres: float):
        x, _, z = self.feet()
        return math.hypot(x - DOORS[door][0], z - DOORS[door][1]) < metres

    def lamp(self):
        """Its light lies on the carpet before the door, until it is taken."""
        gap = place.SphereLight(self.night.rooms['corridor'], 'lightUnderDoor', at=(5.4, UP + 0.07, 0.10), strength=0.9,
                                reach=0.8, color=place.LAMPLIGHT)
        glow = gap.getComponent('graphics2')

        def taken():
            glow.diffuseColor = glow.specularColor = kaVel.Vec4(0, 0, 0, 0)
            if self.lampIsTaken:
                return  # before the game was saved
            self.lampIsTaken = True
            self.music.sting('StingDiscovery')
            self.teach(LIGHT, lambda: not self.mind.isFlashlightOn(), after=14)

        Sequences.play(self.level, Until(lambda: self.mind.getHasFlashlight()), taken)

    # The keys behind bolts, and who passes

    def bolt(self, leaf: str, at: Triple):
        """Has a door's bolt drawn by who comes to it from inside."""
        door = self.leaves[leaf].getComponent('physics')
        latch = place.sounds(self.leaves[leaf], 'DoorLatch')

        def draw():
            door.locked = False
            kaVel.persist(door, 'setLocked', False)
            latch.playSoundEffect('DoorLatch')
            self.night.notice.show(words.said('nightfall.bolt'))

        place.Trigger(self.map, leaf + 'Bolt', at=at, size=(0.8, 1.2), enter=draw,
                      again=lambda: kaVel.configure(door, locked=False))

    def numberTwo(self):
        self.bolt('doorTwo', (13.65, UP, 12.6))
        Sequences.play(self.level, Until(lambda: self.pockets.has('sewingKey')), self.guestPasses)

    def guestPasses(self):
        """Somebody goes by outside when the girl's key is taken: crows fall silent, lamps dim, prints stay."""
        if self.guestHasPassed:
            return
        self.guestHasPassed = True
        creatures = self.night.creatures

        def isInside():
            return self.room() in ('two', 'three')

        def come():
            if not isInside():
                return creatures.dismissGuest()  # who has left in the meantime would see him come
            creatures.sendGuestPast()
            self.music.play('Tension', 0.2)
            Sequences.play(self.level, Until(lambda: creatures.guestIsAway() and self.room() != 'corridor'),
                           creatures.dismissGuest, lambda: self.music.play(''))

        Sequences.play(self.level, 0.5, creatures.announceGuest, 2.5,
                       Until(lambda: not (isInside() and self.isOpen('doorTwo'))), come)

    def linen(self):
        self.bolt('linenDoor', (16.75, UP, 9.6))
        Sequences.play(self.level, Until(lambda: self.pockets.has('stairKey')), self.guestBegins)

    def guestBegins(self):
        """He comes along the passage when the key is taken, and goes for good once nobody could see it."""
        if self.guestHasGone:
            return
        creatures = self.night.creatures
        Sequences.play(self.level, 1.5, creatures.announceGuest, 4.0, creatures.bringGuest,
                       lambda: self.music.sting('StingDread'), lambda: self.music.play('Tension', 0.3),
                       Until(lambda: self.room() in ('landing', 'hall') and not self.isOpen('landingDoor')
                             or self.room() == 'hall'), self.guestGoes, lambda: self.music.play(''))

    def guestGoes(self):
        self.guestHasGone = True
        self.night.creatures.dismissGuest()

    # The landing, the stairs and the chase

    def landing(self):
        self.gate = StairGate(self.map, self.night.rooms['landing'], self.answer, self.night.notice.show)
        place.Trigger(self.map, 'atGate', at=(STAIRS_X, UP, 16.2), size=(1.4, 1.4), enter=lambda: self.teach(
            WIND, lambda: self.gate.share > 0.25, after=4.0, needed=lambda: self.gate.isWhole() and self.atGate()))
        place.Trigger(self.map, 'onLanding', at=(15.15, UP, 15.0), size=(2.0, 1.2), enter=self.strike)
        # So high that what follows him down the steps goes under it.
        place.Trigger(self.map, 'onStairs', at=(STAIRS_X, 1.95, 18.9), size=(1.3, 0.8), enter=self.chase, once=False)

    def answer(self, before: float, share: float):
        """What is behind the bath's door has heard the gate."""
        groan, turn, groanAgain = ANSWERS
        if before < groan <= share or before < groanAgain <= share:
            self.pipes.playSoundEffect('PipeGroan')
        elif before < turn <= share:
            place.sounds(self.leaves['bathDoor'], 'DoorLocked').playSoundEffect('DoorLocked')

    def strike(self):
        """Three o'clock."""
        clock = self.voice.playSoundEffect
        steps: list[Sequences.Step] = [2.0, lambda: clock('ClockWarn')]
        for _ in range(3):
            steps += [2.3, lambda: clock('ClockStrike')]
        Sequences.play(self.level, *steps)
        self.teach(THROW, lambda: False, after=5.0, needed=self.carries)
        self.teach(SHUT, lambda: not self.isOpen('landingDoor'), after=3.0,
                   needed=lambda: self.night.creatures.isGuestAbroad and self.room() == 'landing')

    def carries(self):
        """Whether the player holds something that he could throw."""
        hands = handsOf(self.player)
        return bool(hands and hands.load)

    def chase(self):
        """It has heard the stairs; what it comes out of is behind the player."""
        if self.chased:
            return
        self.chased, self.chaseIsOver = True, False
        self.stillHouse()
        feet = self.player.getComponent('transform').position
        Sequences.play(self.level, lambda: self.pipes.playSoundEffect('PipeGroan'), 0.7, self.openBath,
                       lambda: self.music.play('Chase'), 0.4, lambda: self.night.creatures.rouse(feet),
                       Until(lambda: not self.chased or self.isShutOut()), self.quiet)
        self.teach(RUN, self.mind.isSprinting, after=0.8)
        self.teach(SHUT, self.isShutOut, after=4.0, needed=lambda: self.room() == 'service')

    def stillHouse(self):
        """The timber and the pipes keep silent from now on: nothing is louder than the player."""
        for name in FALL_SILENT:
            source = self.map.getChild(name)
            if source:
                source.murder()

    def openBath(self):
        kaVel.configure(self.leaves['bathDoor'].getComponent('physics'), locked=False, open=True)

    def isShutOut(self):
        """Whether the player has the last door between himself and what hunts him."""
        return self.room() == 'service' and not self.isOpen('serviceDoor')

    def quiet(self):
        """The bolt falls, and after it nothing happens for a while but the house."""
        if not self.chased:
            return
        self.chaseIsOver = True
        self.siege.shut()
        self.leaves['serviceDoor'].getComponent('physics').locked = True
        place.sounds(self.leaves['serviceDoor'], 'DoorLatch').playSoundEffect('DoorLatch')
        self.music.play('')
        self.music.sting('StingNearMiss')

    def again(self):
        """Puts back what hunted the player who comes back: he meets it again."""
        self.chased = False
        self.night.creatures.calm()
        kaVel.configure(self.leaves['bathDoor'].getComponent('physics'), open=False, prevAngle=0.0, locked=True)
        self.siege.reset()
        if self.doorGave:
            self.doorGave, self.chaseIsOver = False, True
            kaVel.configure(self.leaves['serviceDoor'].getComponent('physics'), open=False, prevAngle=0.0, locked=True)

    def watch(self):
        """The figures of the sewing room mind those alone who are in it; the grid is that of the floor that counts."""
        self.frame += 1
        if self.frame % 12 == 0:
            self.night.creatures.wakeFittings(self.room() == 'sewing')
        elif self.frame % 12 == 6:
            self.layGrid()

    # The two ways out

    def ways(self):
        creatures = self.night.creatures
        self.siege = Siege(self.map, self.night.rooms['service'], creatures.dampIsNear, creatures.rouse, self.doorGives)
        self.lift = Lift(self.map, self.night.rooms, lambda: self.win('lift'), self.liftIsCalled)
        self.chute = Chute(self.map, lambda: self.win('chute'),
                           lambda: self.night.notice.show(words.said('nightfall.chuteStuck')))

    def liftIsCalled(self):
        """It is heard, and not by the player alone."""
        self.night.notice.show(words.said('nightfall.liftComes'))
        self.siege.begin(COMES)
        self.teach(BOLT, lambda: self.siege.wasPushed, after=1.0, needed=lambda: self.siege.slipped)

    def doorGives(self):
        """The bolt has slipped out: it is hunted on."""
        self.chaseIsOver, self.doorGave = False, True
        door = self.leaves['serviceDoor']
        kaVel.configure(door.getComponent('physics'), locked=False, open=True)
        place.sounds(door, 'DoorSlam').playSoundEffect('DoorSlam')
        self.music.play('Chase')
        self.night.creatures.rouse(self.player.getComponent('transform').position)

    def win(self, way: str):
        self.music.play('')
        if way == 'chute':
            self.mind.setFlashlightOn(False)
        lines = [words.said('nightfall.end.%s.%d' % (way, number)) for number in (1, 2, 3)]
        self.safety.end(lines, words.said('nightfall.end.again', key=Prompt('use')))
