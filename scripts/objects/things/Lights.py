"""Lights: bare ones, and the lamps and candles that carry them. Colours are linear, angles in degrees."""

from __future__ import annotations

import math
from typing import Any, Callable

import kaVel
from objects.Placing import LevelClock, Triple, addVolume, around, onFrame, placed
from objects.things import Furniture
from perLevel import PerLevel

CANDLELIGHT = (1.0, 0.55, 0.22)
LAMPLIGHT = (1.0, 0.70, 0.38)
BULB = (1.0, 0.74, 0.42)
MOONLIGHT = (0.42, 0.56, 0.85)

#: How far below its hook a work lamp shines from, metres.
BULB_BELOW_HOOK = 0.70

#: Factor of a light's strength after so many seconds.
Flicker = Callable[[float], float]


def _lightColors(color: Triple, strength: float, glint: float) -> dict[str, Any]:
    """Diffuse and specular colour of a light; `glint` is how much stronger its highlights are."""
    return {'diffuseColor': kaVel.Vec4(*(c * strength for c in color), 0),
            'specularColor': kaVel.Vec4(*(c * strength * glint for c in color), 0)}


@kaVel.pattern
def LightPartitioningDummy(parent: kaVel.Object, name: str = ''):
    """The box by which the grid finds a light: the engine builds it under each light and keeps it as large."""
    dummy = placed(parent, name)
    kaVel.addComponent(dummy, 'parentFollower', 'ParentFollowerComponent')
    addVolume(dummy, (1, 1, 1), 'BV_PARTITIONING_DUMMY').isPartitioningDummy = True
    return dummy


@kaVel.pattern
def SphereLight(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), color: Triple = LAMPLIGHT,
                strength: float = 0.3, reach: float = 5.0, glint: float = 1.0, flicker: Flicker | None = None):
    """A light that shines everywhere up to `reach` metres, through walls too: keep it within its room.

    `flicker` is a function of the time in seconds that gives a factor of the strength.
    """
    light = placed(parent, name, at=at)
    component = kaVel.addComponent(light, 'graphics2', 'LightComponent', layer='LIGHT', isSpot=False,
                                   lightFalloffEnd=reach, **_lightColors(color, strength, glint))
    if flicker:
        _Flicker(light, component, color, strength, glint, flicker)
    return light


def _spot(parent: kaVel.Object, name: str, at: Triple, turn: float, pitch: float, color: Triple, strength: float,
          reach: float, angle: float, core: float, edge: float, glint: float, flicker: Flicker | None):
    light = placed(parent, name, at=at, turn=turn, pitch=pitch)
    # A volume of its own, since the one that follows a light keeps to one side of it however the light is turned;
    # the cone's mesh is then as large as the scale says.
    radius = reach * math.tan(math.radians(angle))
    light.getComponent('transform').scale = kaVel.Vec4(radius, radius, reach, 0)
    addVolume(light, (reach, reach, reach), 'BV_PARTITIONING_DUMMY')
    component = kaVel.addComponent(light, 'graphics2', 'LightComponent', layer='LIGHT', lightFalloffEnd=reach,
                                   spotOuterAngle=math.radians(angle), spotInnerAngle=math.radians(angle * core),
                                   spotFalloff=edge, **_lightColors(color, strength, glint))
    if flicker:
        _Flicker(light, component, color, strength, glint, flicker)
    return light, component


@kaVel.pattern
def SpotLight(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, pitch: float = 0.0,
              color: Triple = LAMPLIGHT, strength: float = 0.6, reach: float = 8.0, angle: float = 30.0,
              core: float = 0.4, edge: float = 10.0, glint: float = 1.0, flicker: Flicker | None = None):
    """A cone of light without shadows; `angle` is its half angle, `core` the share of it that is full bright."""
    return _spot(parent, name, at, turn, pitch, color, strength, reach, angle, core, edge, glint, flicker)[0]


@kaVel.pattern
def ShadowSpot(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, pitch: float = 0.0,
               color: Triple = LAMPLIGHT, strength: float = 0.6, reach: float = 8.0, angle: float = 30.0,
               core: float = 0.4, edge: float = 10.0, glint: float = 1.0, flicker: Flicker | None = None,
               nearClip: float = 0.1):
    """A cone of light whose shadow map is drawn in every frame in which the light may be seen: dear, so use few."""
    light, component = _spot(parent, name, at, turn, pitch, color, strength, reach, angle, core, edge, glint, flicker)
    kaVel.addComponent(light, 'viewer', 'ViewerComponent', nearClipDistance=nearClip, farClipDistance=reach)
    component.castShadows = True
    return light


_flickers: PerLevel[dict[kaVel.LightComponent, _Flicker]] = PerLevel()


def dim(light: kaVel.LightComponent, factor: float, color: kaVel.Vec4, glint: kaVel.Vec4):
    """Has a light of some diffuse and specular colour shine by a factor of its strength; one that flickers, too."""
    flicker = _flickers.get(light.getAncestorOfType(kaVel.Reflection.Coordinator), {}).get(light)
    if flicker:
        flicker.dimming = factor
    else:
        kaVel.configure(light, diffuseColor=color * factor, specularColor=glint * factor)


class _Flicker:
    """Varies a light's strength by a function of the level's time."""

    def __init__(self, entity: kaVel.Entity, light: kaVel.LightComponent, color: Triple, strength: float, glint: float,
                 curve: Flicker):
        self.light, self.color, self.strength, self.glint, self.curve = light, color, strength, glint, curve
        self.clock, self.dimming = LevelClock(entity), 1.0
        level = entity.getAncestorOfType(kaVel.Reflection.Coordinator)
        if level not in _flickers:
            _flickers[level] = {}
        _flickers[level][light] = self
        onFrame(entity, self.doFrame)

    def doFrame(self):
        factor = self.curve(self.clock.seconds()) * self.dimming
        kaVel.configure(self.light, **_lightColors(self.color, self.strength * factor, self.glint))


def burning(seed: float, depth: float = 0.25):
    """Flicker of an open flame: slow draught and quick licks that never repeat in step with another seed's."""

    def curve(time: float):
        t = time + 17.3 * seed
        draught = math.sin(1.7 * t + math.sin(0.61 * t + seed))
        lick = math.sin(9.1 * t + 2.3 * math.sin(3.3 * t)) * math.sin(5.3 * t + seed)
        return 1.0 + depth * (0.55 * draught + 0.45 * lick)

    return curve


def failing(seed: float):
    """Flicker of a lamp with a bad contact: steady, then stuttering, then nearly out."""

    def curve(time: float):
        t = time + 0.37 * seed
        phase = t % 4.3
        if phase < 2.1:
            return 1.0 + 0.04 * math.sin(31.0 * t)
        if phase < 3.2:
            beat = math.sin(41.0 * t) + math.sin(27.0 * t + 1.3) + math.sin(67.0 * t)
            return 0.92 if beat > -0.3 else 0.18
        return 0.10 + 0.05 * math.sin(19.0 * t) if phase < 3.6 else 0.70 + 0.30 * (phase - 3.6) / 0.7

    return curve


# Things that burn

@kaVel.pattern
def LitCandle(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, strength: float = 0.16,
              reach: float = 2.4, seed: float | None = None):
    """A burning candle with its light."""
    candle = Furniture.Candle(parent, name, at=at, turn=turn)
    SphereLight(candle, 'light', at=(at[0], at[1] + 0.16, at[2]), color=CANDLELIGHT, strength=strength, reach=reach,
                flicker=burning(at[0] * 3.1 + at[2] * 7.7 if seed is None else seed))
    return candle


@kaVel.pattern
def LitChamberstick(parent: kaVel.Object, name: str = '',
                    at: Triple = (0, 0, 0), turn: float = 0.0, strength: float = 0.16, reach: float = 3.0):
    """A chamberstick with a burning candle."""
    stick = Furniture.Chamberstick(parent, name, at=at, turn=turn)
    LitCandle(stick, 'candle', at=(at[0], at[1] + 0.047, at[2]), turn=turn, strength=strength, reach=reach)
    return stick


@kaVel.pattern
def LitCandelabrum(parent: kaVel.Object, name: str = '',
                   at: Triple = (0, 0, 0), turn: float = 0.0, strength: float = 0.22, reach: float = 3.4):
    """A candelabrum whose middle candle has gone out; one light stands for the two that burn."""
    stand = Furniture.Candelabrum(parent, name, at=at, turn=turn)
    arms = ((-0.13, 0.295, Furniture.Candle), (0.0, 0.335, Furniture.DeadCandle), (0.13, 0.295, Furniture.Candle))
    for number, (x, height, candle) in enumerate(arms):
        candle(stand, 'candle%d' % number, at=around(at, turn, x, height, 0), turn=turn + 70 * number)
    SphereLight(stand, 'light', at=(at[0], at[1] + 0.50, at[2]), color=CANDLELIGHT, strength=strength, reach=reach,
                flicker=burning(at[0] * 5.3 + at[2], depth=0.18))
    return stand


@kaVel.pattern
def LitLamp(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, strength: float = 0.30,
            reach: float = 4.0):
    """A table lamp that is on."""
    lamp = Furniture.Lamp(parent, name, at=at, turn=turn)
    SphereLight(lamp, 'light', at=(at[0], at[1] + 0.40, at[2]), color=LAMPLIGHT, strength=strength, reach=reach)
    return lamp


_LANTERNS = {
    'amber': (Furniture.LanternAmber, (1.0, 0.52, 0.14)),
    'red': (Furniture.LanternRed, (1.0, 0.10, 0.05)),
    'blue': (Furniture.LanternBlue, (0.12, 0.30, 1.0)),
    'green': (Furniture.LanternGreen, (0.16, 0.85, 0.24)),
}


@kaVel.pattern
def Lantern(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, glass: str = 'amber',
            strength: float = 0.35, reach: float = 3.2):
    """A lantern with coloured glass on its chain; `at` is the hook. Glass: amber, red, blue or green."""
    build, color = _LANTERNS[glass]
    lantern = build(parent, name, at=at, turn=turn)
    SphereLight(lantern, 'light', at=(at[0], at[1] - 0.74, at[2]), color=color, strength=strength, reach=reach,
                flicker=burning(at[0] + 3 * at[2], depth=0.10))
    return lantern


@kaVel.pattern
def StageLamp(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0, pitch: float = 0.0,
              head: float = 1.35, **light: Any):
    """A lamp on a tripod whose light casts shadows; `at` is the floor, `head` the height of the lamp above it."""
    stand = Furniture.Tripod(parent, name, at=at, turn=turn)
    pivot = (at[0], at[1] + head, at[2])
    Furniture.LampHead(stand, 'head', at=pivot, turn=turn, pitch=pitch)
    ShadowSpot(stand, 'light', at=pivot, turn=turn, pitch=pitch, nearClip=0.2, **light)
    return stand


@kaVel.pattern
def HangingLamp(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), strength: float = 1.1, reach: float = 6.5,
                angle: float = 58.0, glow: float = 0.10, color: Triple = BULB, flicker: Flicker | None = None):
    """A tin lamp whose cone casts shadows, and a little light around it; `at` is where it hangs from."""
    lamp = Furniture.WorkLamp(parent, name, at=at)
    bulb = (at[0], at[1] - BULB_BELOW_HOOK, at[2])
    ShadowSpot(lamp, 'cone', at=bulb, pitch=90, strength=strength, reach=reach, angle=angle, core=0.35, edge=3,
               color=color, nearClip=0.12, flicker=flicker)
    SphereLight(lamp, 'glow', at=(bulb[0], bulb[1] - 0.15, bulb[2]), strength=glow, reach=3.4, color=color,
                flicker=flicker)
    return lamp
