"""What things are heard like: sources of sound, what happens now and then, steps, bodies, by the names of events.

The events stand in `assets/sound/fmod/kaVel.fev`. One that it lacks is told in the log, and nothing sounds.
"""

from __future__ import annotations

import math
import random
from typing import Callable, Sequence

import GameConfig
import kaVel
from objects.Placing import LevelClock, Triple, around, onFrame, placed

#: Surface -> what steps on it sound like, the middle of the names of the events "StepWoodWalk".
STEPS = {
    'boards': 'Wood', 'wood': 'Wood', 'bark': 'Wood',
    'stone': 'Stone', 'flagstones': 'Stone', 'concrete': 'Stone', 'brick': 'Stone', 'marble': 'Stone',
    'plaster': 'Stone', 'tiles': 'Tile', 'ceramic': 'Tile', 'rug': 'Carpet', 'cloth': 'Carpet', 'leather': 'Carpet',
    'earth': 'Earth', 'iron': 'Metal', 'rust': 'Metal', 'brass': 'Metal',
}

#: Surface -> events of what lands with it, and of what moves on over the ground.
BODIES = {
    'wood': ('ImpactWood', 'ScrapeWood'), 'iron': ('ImpactMetal', 'ScrapeMetal'), 'rust': ('ImpactMetal', 'RollMetal'),
    'brass': ('ImpactMetal', 'RollMetal'), 'stone': ('ImpactStone', 'ScrapeStone'),
    'ceramic': ('ImpactGlass', 'RollGlass'), 'glass': ('ImpactGlass', 'RollGlass'),
    'leather': ('ImpactCloth', 'RollBall'), 'cloth': ('ImpactCloth', 'ScrapeCloth'),
}

#: A door is shut when it is less open than this, radians or metres, and slams when it shuts faster than that, a second.
SHUT, SLAM = 0.02, 3.5
#: How far before a leaf its sounds come from, metres.
FACE = 0.45


def sounds(entity: kaVel.Entity, *names: str) -> kaVel.SoundComponent:
    """The sound component of an entity, made if there is none, with the sound effects of these names."""
    component = entity.getComponent('sound') or kaVel.addComponent(entity, 'sound', 'SoundComponent')
    component.setSoundList(names)
    return component


def sounding(entity: kaVel.Entity, *loops: str, volume: float = 1.0) -> kaVel.SoundComponent:
    """Has an entity sound on and on, from now until somebody stops it."""
    component = sounds(entity, *loops)
    for name in loops:
        component.setEventVolume(name, volume)
        component.playSoundEffect(name)
    return component


@kaVel.pattern
def Sound(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), event: str = '', volume: float = 1.0):
    """A place that a looped event sounds from."""
    source = placed(parent, name or event, at=at)
    sounding(source, event, volume=volume)
    return source


@kaVel.pattern
def NowAndThen(parent: kaVel.Object, name: str = '', at: Sequence[Triple] = ((0, 0, 0),), event: str = '',
               every: tuple[float, float] = (20.0, 60.0), first: float | None = None, lasting: float = math.inf):
    """An event that sounds now and then from one of some places, after so many seconds of the level's time each.

    One that plays on until it is stopped is ended after `lasting` seconds.
    """
    source = placed(parent, name or event, at=at[0])
    component, transform, clock = sounds(source, event), source.getComponent('transform'), LevelClock(source)
    # Dice of its own: what sounds has no part in the chance of what happens, and a run of the same seed repeats both.
    dice = random.Random('%s %d' % (source.name, GameConfig.seed))
    due, end = dice.uniform(0, every[1]) if first is None else first, math.inf

    def doFrame():
        nonlocal due, end
        now = clock.seconds()
        if now >= end:
            end = math.inf
            component.stopSoundEffect(event)
        if now < due:
            return
        due, end = now + dice.uniform(*every), now + lasting
        transform.position = kaVel.Vec4(*dice.choice(at), 1)
        component.playSoundEffect(event)

    onFrame(source, doFrame)
    return source


def hear(level: kaVel.Entity):
    """Has a map listen to what falls, slides and rolls in it, for `heard`; called before its bodies are built."""
    kaVel.addComponent(level, 'sound', 'BodySounds')


def heard(entity: kaVel.Entity, surface: str):
    """Lets a body be heard as a thing of a surface, where its map listens; one without sounds of its own is still."""
    if surface in BODIES:
        heardAs(entity, *BODIES[surface])


def heardAs(entity: kaVel.Entity, impact: str, motion: str):
    """Lets a body be heard by events of its own, where its map listens; an empty name is for none."""
    map = entity.getAncestorOfType(kaVel.Reflection.MapRootEntity)
    listener = map.getComponent('sound') if map else None
    if listener and listener._getType().isSubclassOf(kaVel.Reflection.BodySounds):
        listener.addBody(entity.getComponent('physics'), impact, motion)


class LeafVoice:
    """What a door's leaf is heard like as it moves, beside what it says by itself when it is opened and shut.

    `at` is the middle of the doorway and `turn` that of the shut leaf; `position` gives where the leaf is, in radians
    or metres, 0 when it is shut. The sounds come from the face that is turned to the ears: within the leaf they would
    be heard through it.
    """

    def __init__(self, leaf: kaVel.Entity, at: Triple, turn: float, position: Callable[[], float], motion: str,
                 shut: str, slam: str = '', stop: str = ''):
        self.events = ['DoorOpen', 'DoorLocked', *filter(None, (motion, shut, slam, stop))]
        self.component = sounds(leaf, *self.events)
        self.ears = leaf.getAncestorOfType(kaVel.Reflection.Coordinator).getManager('sound')
        self.at, self.turn, self.side = at, turn, 0
        self.position, self.motion, self.shut, self.slam, self.stop = position, motion, shut, slam, stop
        self.clock = LevelClock(leaf)
        self.last, self.speed = position(), 0.0
        self.impact = 0.0  # speed that a stop is heard by: that of the frames before it, in which a leaf eases
        onFrame(leaf, self.doFrame)

    def soften(self, volume: float):
        """How loud the leaf is from now on, of what it is as a rule: for a leaf that a hand leads."""
        for event in self.events:
            self.component.setEventVolume(event, volume)

    def faceTheEars(self):
        x, _, z = around((0, 0, 0), self.turn, 0, 0, 1)
        ears = self.ears.globalListener.position
        side = 1 if (ears.x - self.at[0]) * x + (ears.z - self.at[2]) * z > 0 else -1
        if side != self.side:
            self.side = side
            place = kaVel.Vec4(*around(self.at, self.turn, 0, 0, FACE * side), 1)
            for event in self.events:
                self.component.placeEvent(event, place)

    def doFrame(self):
        self.faceTheEars()
        seconds = self.clock.frameSeconds()
        if seconds <= 0:
            return
        now, before, speedBefore = self.position(), self.last, self.speed
        self.last, self.speed = now, abs(now - before) / seconds
        self.impact = max(self.speed, 0.9 * self.impact)
        if self.speed > 0:
            self.component.setParam(self.motion, 'speed', self.speed)
            if not speedBefore:
                self.component.playSoundEffect(self.motion)
        elif speedBefore:
            self.component.stopSoundEffect(self.motion)
            self.comeToRest(abs(now), self.impact)

    def comeToRest(self, opening: float, speed: float):
        """Lets the end of a motion be heard: shut gently, with a bang, or against the stop."""
        event = self.stop if opening > SHUT else self.slam if self.slam and speed > SLAM else self.shut
        if event:
            self.component.setParam(event, 'speed', speed)
            self.component.playSoundEffect(event)
