"""The player's nerves: what darkness, sights and frights do to his mind, and what he sees at the edge of sight.

    nerves = nervesOf(coordinator)
    nerves.frighten(12, 'a door slammed')      # 5 is a start, 15 a fright, 30 a blow
    volume = 1 - nerves.dulling                # of a sound that warns
    dreaded(mannequin, dread=3)                # its sight costs 3 percent of the mind a second
    shakeLight(coordinator, 0.6)               # a hit that shakes the flashlight

How the mind wears is told at `kaVel.NervesComponent`; the player turns what he sees and hears of it down by the
settings mindDrain, mindGrain, mindPulse, mindDistortion, mindFlashes, mindWhispers and mindFigures.
"""

from __future__ import annotations

import math
import random

import GameConfig
import kaVel
import settings
from objects.Placing import LevelClock, around, cube, onFrame, placed
from objects.sound.Sounds import sounds
from objects.things.Models import boundsOf


def nerves(player: kaVel.Entity) -> kaVel.NervesComponent:
    """Gives a player nerves, a heart that is heard, and things at the edge of sight."""
    sounds(player, 'Heartbeat', 'WhisperSanity')
    component = kaVel.addComponent(player, 'nerves', 'NervesComponent')
    _Figure(player, component)
    return component


def nervesOf(level: kaVel.Object) -> kaVel.NervesComponent | None:
    """The nerves of the player of the level that something stands in; none where nobody walks."""
    coordinator = level if level._getType().isSubclassOf(kaVel.Reflection.Coordinator) else \
        level.getAncestorOfType(kaVel.Reflection.Coordinator)
    player = coordinator.getChild('Player') if coordinator else None
    return player.getComponent('nerves') if player else None


def dreaded(entity: kaVel.Entity, dread: float = 4.0, range: float = 14.0) -> kaVel.DreadComponent:
    """Makes the sight of an entity cost so many percent of the mind a second, from up to so many metres."""
    return kaVel.addComponent(entity, 'dread', 'DreadComponent', dread=dread, range=range)


def shakeLight(level: kaVel.Object, amount: float):
    """Shakes the flashlight in the player's hand: 0.2 is a start, 1 a hit that all but knocks it out."""
    coordinator = level.getAncestorOfType(kaVel.Reflection.Coordinator) or level
    torch = coordinator.getDescendantByPath('Player/camera/flashlight')
    hand = torch.getComponent('hand') if torch else None
    if hand:
        hand.shake(amount)


#: Sanity below which somebody stands at the edge of sight, and the seconds between two of them there and at the worst.
FIGURES_BELOW, SELDOM, OFTEN = 60.0, (25.0, 60.0), (6.0, 14.0)
#: How far away he stands, metres; how long at most, seconds.
NEAREST, FARTHEST, LONGEST = 3.0, 8.0, 4.0
#: Where a passage leaves him no such place he is close by, thin against its wall. Metres, nearest last.
CLOSE_BY = (2.4, 1.9, 1.55, 1.3, 1.1)
#: Where he comes, as shares of the half view, and from which share inwards he is gone.
EDGE, LOOKED_AT = (0.66, 0.95), 0.5
#: Luminance that he does not come into, and from which on he is gone.
DARK, LIT = 0.03, 0.06
HEIGHT = 1.75  # metres


class _Figure:
    """Somebody at the edge of sight, in the dark, who is not there when he is looked at.

    He has no body: he stops nothing, casts no shadow, is neither heard nor seen by anybody but the player. Tries one
    place at a time, so that a frame costs next to nothing.
    """

    def __init__(self, player: kaVel.Entity, component: kaVel.NervesComponent):
        self.player, self.nerves = player, component
        self.mind, self.camera = player.getComponent('player'), player.getChild('camera')
        self.level = player.getAncestorOfType(kaVel.Reflection.Coordinator)
        low, high = boundsOf('mourner')
        self.figure = placed(self.level, 'atTheEdgeOfSight', scale=cube(HEIGHT / (high[1] - low[1])))
        # Pale, so that he can be made out by what light there is in the dark.
        self.look = kaVel.addComponent(self.figure, 'graphics2', 'ModelGraphicsComponent2', layer='WORLD_UNCONDITIONAL',
                                       meshName='mourner', castShadows=False, textureName='white')
        self.look.visible = False
        self.clock = LevelClock(self.figure)
        # Dice of their own: what is not there has no part in the chance of what happens.
        self.dice = random.Random('figure %d' % GameConfig.seed)
        self.due, self.gone, self.least = 0.0, 0.0, 0.0
        onFrame(self.figure, self.doFrame)

    def doFrame(self):
        if not self.mind or not self.camera:
            return
        self.nerves.whispers = settings.get('mindWhispers')
        share, sanity = settings.get('mindFigures'), self.mind.sanity
        if self.look.visible:
            if share <= 0 or sanity >= FIGURES_BELOW or self.clock.seconds() > self.gone or self.isFoundOut():
                self.leave(sanity, share)
        elif share > 0 and sanity < FIGURES_BELOW and self.clock.seconds() > self.due:
            self.come()

    def leave(self, sanity: float, share: float):
        self.look.visible = False
        worse = 1 - sanity / FIGURES_BELOW
        least, most = (seldom + (often - seldom) * worse for seldom, often in zip(SELDOM, OFTEN))
        self.due = self.clock.seconds() + self.dice.uniform(least, most) / max(share, 0.05)

    def come(self):
        """Tries one place; where it will not do, the next one is tried soon."""
        self.due = self.clock.seconds() + 0.4
        side, share = self.dice.choice((-1, 1)), self.dice.uniform(*EDGE)
        eye, heading = self.eye()
        turn = heading + math.degrees(side * share * self.halfView())
        map = self.map()
        if not map:
            return
        for distance in (self.dice.uniform(NEAREST, FARTHEST), *CLOSE_BY):
            feet = self.placeAt(map, eye, turn, distance)
            if feet:
                self.stand(feet, turn, distance)
                return

    def placeAt(self, map: kaVel.MapRootEntity, eye: kaVel.Vec4, turn: float, distance: float) -> kaVel.Vec4 | None:
        """The place of his feet in a direction, if he can be there: not in a wall, in light, or behind something."""
        feet = self.player.getComponent('transform').position.y - HEIGHT / 2
        x, _, z = around((eye.x, 0, eye.z), turn, 0, 0, distance)
        breast = kaVel.Vec4(x, feet + 1.3, z, 1)
        wide = 0.5 if distance >= NEAREST else 0.25
        aside = [kaVel.Vec4(*around((x, feet + 0.5, z), turn, across, 0, ahead), 1)
                 for across, ahead in ((-wide, 0), (wide, 0), (0, wide))]
        # The eye itself is within the body.
        before = kaVel.Vec4(*around((eye.x, eye.y, eye.z), turn, 0, 0, min(0.5, distance / 3)), 1)
        isFree = kaVel.Reflection.isLineFree
        if kaVel.Reflection.lightAt(map, breast) > DARK or \
                not all(isFree(map, end, place) for place in aside for end in (before, breast)):
            return None
        return kaVel.Vec4(x, feet, z, 1)

    def stand(self, feet: kaVel.Vec4, turn: float, distance: float):
        kaVel.configure(self.figure.getComponent('transform'), position=feet,
                        orientation=kaVel.Quaternion.fromAxisAngle(kaVel.Vec4(0, 1, 0, 0), math.radians(turn + 180)))
        self.look.visible = True
        self.least = 0.6 * distance
        self.gone = self.clock.seconds() + self.dice.uniform(0.4, 1.0) * LONGEST

    def isFoundOut(self):
        """Whether the player looks at him, comes near, or shines on him."""
        eye, heading = self.eye()
        place = self.figure.getComponent('transform').position
        right, ahead = place.x - eye.x, place.z - eye.z
        off = abs((math.degrees(math.atan2(right, ahead)) - heading + 180) % 360 - 180)
        map = self.map()
        return not map or off < math.degrees(LOOKED_AT * self.halfView()) or \
            math.hypot(right, ahead) < self.least or \
            kaVel.Reflection.lightAt(map, kaVel.Vec4(place.x, place.y + 1.3, place.z, 1)) > LIT

    def map(self) -> kaVel.MapRootEntity | None:
        """The map that the player is in; none in a level without maps."""
        maps = (child._getType().isSubclassOf(kaVel.Reflection.MapRootEntity) for child in self.level.children)
        return self.camera.getComponent('transform').findMap() if any(maps) else None

    def eye(self):
        """Where the player's eyes are, and their heading in degrees."""
        transform = self.camera.getComponent('transform')
        turn = transform.orientation
        right, ahead = 2 * (turn.i * turn.k + turn.r * turn.j), 1 - 2 * (turn.i ** 2 + turn.j ** 2)
        return transform.position, math.degrees(math.atan2(right, ahead))

    def halfView(self):
        """Half of what is seen from left to right, radians."""
        window = kaVel.getSystem('WindowSystem2')
        upright = math.tan(self.camera.getComponent('viewer').verticalFieldOfViewAngle / 2)
        return math.atan(upright * window.width / max(window.height, 1))
