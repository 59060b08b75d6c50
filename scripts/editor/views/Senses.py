"""What a creature would perceive of the player, if it stood somewhere else."""

from __future__ import annotations

import math
from typing import Any

import kaVel
from editor.Views import views
from editor.lint.Sounds import events
from editor.views.Kit import Color, Floors, Scale, isFloor, mapsOf, onScale, playerOf

#: What a player does, and the event that is heard of it; its loudness is that of the project of sounds.
NOISES = (('a step that creeps', 'StepWoodCrouch'), ('a step', 'StepWoodWalk'), ('a step that runs', 'StepWoodRun'),
          ('a slammed door', 'DoorSlam'))


@views.add
class Senses(Floors):
    """From where a creature sees the player if it looks at him, and what it makes out at the place pointed at."""

    name = 'Senses'
    help = 'From where a creature would see the player, and what it would perceive where one points.'
    order = 30
    scale: Scale = (
        (0.0, (0.16, 0.20, 0.30), 'nothing: it sees nothing of him'),
        (0.001, (0.25, 0.45, 0.75), 'a trace'),
        (0.1, (0.85, 0.78, 0.25), 'a tenth'),
        (0.3, (0.95, 0.50, 0.15), 'a third'),
        (0.6, (0.95, 0.15, 0.12), 'clearly: he stands before it'),
    )

    def begin(self) -> None:
        self.senses = self._choose()
        super().begin()

    def _choose(self) -> Any:
        """The senses of the creature that is selected, or of the first one in the level."""
        chosen = list(self.component.selected) + [each for map in mapsOf(self.level) for each in kaVel.descendants(map)]
        for each in chosen:
            if each._getType().isSubclassOf(kaVel.Reflection.Entity):
                senses = each.getComponent('perception')
                if senses and senses._getType().isSubclassOf(kaVel.Reflection.PerceptionComponent):
                    return senses
        return None

    def changed(self) -> None:
        self.senses = self._choose()
        super().changed()

    def summary(self) -> str:
        if not self.senses:
            return 'no creature in this level has senses'
        return 'by the senses of %s%s' % (self.senses.parent.getName(), '' if playerOf(self.level) else
                                          ', but there is no player to perceive')

    def colorOf(self, survey: kaVel.FloorSurvey, spot: int) -> Color | None:
        if not self.senses or not isFloor(survey, spot):
            return None
        return onScale(self.scale, clarityAt(self.senses, survey.getSpot(spot)))

    def tell(self, at: kaVel.Vec4) -> str:
        player = playerOf(self.level)
        return perceived(self.senses, player, at) if self.senses and player else self.summary()


#: How high the middle of a creature without a volume is above the floor, metres.
MIDDLE = 0.9


def eyeAt(senses: kaVel.PerceptionComponent, floor: kaVel.Vec4) -> kaVel.Vec4:
    """Where a creature's eyes would be if it stood on a floor, as high as they are where it stands."""
    box = senses.parent.getComponent('boundingVolume')
    half = box.hitBox.y / 2 if box else MIDDLE
    return kaVel.Vec4(floor.x, floor.y + half + senses.eyeOffset.y, floor.z, 1)


def clarityAt(senses: kaVel.PerceptionComponent, floor: kaVel.Vec4) -> float:
    """How clearly it would see its target from a floor, if it looked at him, 0 to 1."""
    target = senses.target
    if not target:
        return 0.0
    eye, at = eyeAt(senses, floor), target.getComponent('transform').position
    return senses.clarityFrom(eye, kaVel.Vec4(at.x - eye.x, at.y - eye.y, at.z - eye.z, 0))


def perceived(senses: kaVel.PerceptionComponent, player: Any, floor: kaVel.Vec4) -> str:
    """What a creature would perceive of the player from a floor, in lines: the sum, then what it is made of."""
    eye, at = eyeAt(senses, floor), player.getComponent('transform').position
    map = senses.parent.getAncestorOfType(kaVel.Reflection.MapRootEntity)
    distance = math.dist((eye.x, eye.y, eye.z), (at.x, at.y, at.z))
    ahead = senses.parent.getComponent('transform').orientation
    facing = ahead * kaVel.Quaternion(0, 0, 0, 1) * ahead.inverse()
    cosine = ((at.x - eye.x) * facing.i + (at.y - eye.y) * facing.j + (at.z - eye.z) * facing.k) / max(distance, 1e-3)
    angle = math.degrees(math.acos(max(-1.0, min(1.0, cosine))))
    light = kaVel.Reflection.lightAt(map, at)
    isFree = kaVel.Reflection.isLineFree(map, eye, kaVel.Vec4(at.x, at.y, at.z, 1))
    lines = ['sees %.0f %% of him' % (100 * clarityAt(senses, floor)),
             'light on him %.3f, of %.3f to %.3f' % (light, senses.darkest, senses.brightest),
             'he is %.1f m away, of %.0f m' % (distance, senses.sightRange),
             '%.0f degrees off the way it looks now, of %.0f' % (angle, math.degrees(senses.peripheralAngle)),
             'the line to him is %s' % ('free' if isFree else 'cut')]
    ways = map.getComponent('soundWays')
    known = events()
    for name, event in NOISES if ways and senses.hasEars else ():
        loudness = 10 ** (known[event].loudness / 20)
        left = ways.loudnessAt(kaVel.Vec4(at.x, at.y, at.z, 1), loudness, eye)
        lines.append('%s: %s' % (name, 'heard, %.0f dB above what it needs' % (
            20 * math.log10(left / senses.hearingThreshold)) if left >= senses.hearingThreshold else 'not heard'))
    return '\n'.join(lines)
