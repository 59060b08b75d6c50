"""How the values of settings reach what they are for: functions of a system and a value."""

from __future__ import annotations

import math
from typing import Any, Callable

import kaVel
import settings
from perLevel import PerLevel

Give = Callable[[Any, Any], None]

#: Radians of a turn for a motion across the window, by the factor 1: `mouseSensitivity` of the player is 12.
_LOOK = 3.0 / 12.0

#: Radians a second of a pad's stick by the factor 1, and the part of it that counts up and down.
_STICK, _STICK_UPRIGHT = 2.8, 0.75

#: Vertical degrees of a view by which a level's own angle is what its maker gave it.
USUAL_VIEW = 45.0

#: What a level's maker gave its player's view, radians.
_authoredView: PerLevel[float] = PerLevel()

#: Colours of texts on screens for those who do not tell hues apart, by their names in `screens.Kit`.
SAFE_COLORS: dict[str, tuple[float, float, float, float]] = {
    'paper': (0.8, 0.8, 0.8, 1), 'faded': (0.55, 0.55, 0.55, 1), 'candle': (1, 1, 1, 1),
    'brass': (0.65, 0.65, 0.65, 1), 'warning': (1, 1, 1, 1)}
_usualColors: dict[str, tuple[float, float, float, float]] = {}

#: Texels of a shadow map's side, and whether lamps that nobody carries draw shadows, by the quality of shadows.
SHADOWS = {'low': (256, False), 'medium': (512, True), 'high': (768, True), 'veryHigh': (1536, True)}


def nothing(system: Any, value: Any) -> None:
    """For a setting that is asked for where it counts."""


def property(name: str) -> Give:
    return lambda system, value: setattr(system, name, value)


def windowMode(window: Any, value: str) -> None:
    window.borderless = value == 'borderless'
    if window.fullScreen != (value == 'fullScreen'):
        window.fullScreen = value == 'fullScreen'


def renderScale(pacing: Any, value: Any) -> None:
    pacing.automaticScale = value == 'automatic'
    if value != 'automatic':
        kaVel.getSystem('GraphicsSystem2').renderScale = value


def shadows(graphics: Any, value: str) -> None:
    graphics.shadowMapSize, graphics.lampShadows = SHADOWS[value]


def volume(name: str) -> Give:
    """Of all effects or all music; what it comes to hangs on the volume of everything, too."""
    return lambda sound, value: setattr(sound, name, settings.get(name) * settings.get('masterVolume'))


def soundDevice(sound: Any, value: str) -> None:
    """Once programs of others run another device cannot be reached, and the present one is better than none."""
    from mods import Holding
    if Holding.hasSockets():
        sound.device = value


def interfaceVolume(sound: Any, value: Any) -> None:
    """Of what menus sound like, which is neither an effect nor music."""
    sound.setPlayersVolume('interface', settings.get('interfaceVolume') * settings.get('masterVolume'))


def volumes(sound: Any, value: Any) -> None:
    for name in ('soundEffectVolume', 'musicVolume'):
        volume(name)(sound, value)
    interfaceVolume(sound, value)


def category(*names: str) -> Give:
    """Of categories of the sound project, as a part of what its author gave them."""
    def give(sound: Any, value: float) -> None:
        for name in names:
            sound.setPlayersVolume(name, value)
    return give


def colourSafe(loop: Any, value: bool) -> None:
    """Has texts on screens differ by how bright they are alone; what they mean is told by words and marks anyway."""
    global _usualColors
    if not value and not _usualColors:
        return
    import words
    from screens import Kit  # which needs the settings
    _usualColors = _usualColors or dict(Kit.COLORS)
    Kit.COLORS.update(SAFE_COLORS if value else _usualColors)
    if loop.currentlyActiveCoordinator:
        words.readAgain()  # so that what stands there is built anew


class ForPlayer:
    """Gives a value to a part of the player of the level that runs, by its path below him; to nobody without one."""

    def __init__(self, part: str, give: Give):
        self.part, self.give = part, give

    def __call__(self, loop: Any, value: Any) -> None:
        level = loop.currentlyActiveCoordinator
        player = level.getChild('Player') if level else None
        if player:
            self.giveTo(player, value)

    def giveTo(self, player: Any, value: Any) -> None:
        part = player.getDescendantByPath(self.part)
        if part:
            self.give(part, value)


def look(player: Any, value: Any) -> None:
    """All of how mouse and stick turn the view, since the parts of it hang on each other."""
    get = settings.get
    player.lookSideways = get('mouseSensitivityX') * _LOOK * (-1 if get('invertMouseX') else 1)
    player.lookUpright = get('mouseSensitivityY') * _LOOK
    side = get('padSensitivityX') * (-1 if get('invertPadX') else 1)
    player.stickTurnRate = _STICK * side
    # The way up and down is told as a part of the way to the side.
    player.stickUpright = _STICK_UPRIGHT * get('padSensitivityY') / side * (-1 if get('invertPadY') else 1)


def invertMouseY(body: Any, value: bool) -> None:
    body.setInvert('true' if value else 'false')


def fieldOfView(viewer: Any, value: float) -> None:
    """Widens a view from what its level's maker gave it by as much as the usual one is widened."""
    level = viewer.getAncestorOfType(kaVel.Reflection.Coordinator)
    if level not in _authoredView:
        _authoredView[level] = viewer.verticalFieldOfViewAngle
    angle = _authoredView[level]
    if value != USUAL_VIEW:
        wider = math.tan(math.radians(value) / 2) / math.tan(math.radians(USUAL_VIEW) / 2)
        angle = 2 * math.atan(math.tan(angle / 2) * wider)
    viewer.verticalFieldOfViewAngle = angle
