"""The one table of all settings: name, default, values, meaning, and where a value goes."""

from __future__ import annotations

from typing import Any, NamedTuple

import words
from settings import Given
from settings.Given import ForPlayer, Give, nothing, property
from settings.Kinds import Kind, either, line, number, size, switch, word


class Setting(NamedTuple):
    """One setting: where its value goes is a system and a function that gives it to that system."""

    name: str
    default: Any
    kind: Kind
    meaning: str
    system: str = ''
    give: Give = nothing


def _language() -> Kind:
    def read(text: str) -> str:
        if text not in (words.AUTOMATIC, *words.languages()):
            raise ValueError
        return text
    return Kind(read, "automatic, for the system's language, or the code of a table of scripts/words, as de")


_look = ForPlayer('player', Given.look)
_part = number(0, 1)
_factor = number(0.05, 20)

#: All settings, in the order in which the file of a new player tells of them.
SETTINGS = (
    # The picture
    Setting('windowMode', 'window', word('window', 'borderless', 'fullScreen'),
            'A window, one without a frame that covers the monitor, or the whole display', 'WindowSystem2',
            Given.windowMode),
    Setting('windowSize', (1280, 720), size((320, 180), (7680, 4320)),
            'Size of the window, as far as the desktop has room', 'WindowSystem2',
            lambda system, value: system.setWindowedSize(*value)),
    Setting('displayMode', 0, number(0, 999, int),
            "Which of the display's modes full screen takes; 0 is the desktop's", 'WindowSystem2',
            property('displayMode')),
    Setting('monitor', 0, number(0, 15, int), 'Which monitor shows the game, from 0; where it is missing, the first',
            'WindowSystem2', property('monitor')),
    Setting('renderScale', 'automatic', either('automatic', number(0.25, 2)),
            "Size of the world's picture as a part of the window's; automatic follows the time that frames take",
            'FramePacingSystem', Given.renderScale),
    Setting('targetFrameRate', 30.0, number(10, 240), 'Frames a second that the automatic scale aims at',
            'FramePacingSystem', property('targetFrameRate')),
    Setting('frameLimit', 0.0, number(0, 1000), 'Most frames a second; 0 for as many as there can be',
            'FramePacingSystem', property('frameLimit')),
    Setting('vsync', False, switch(), "Whether frames wait for the display's refresh", 'GraphicsSystem2',
            property('vsync')),
    Setting('antialiasing', True, switch(), 'Whether the stair-steps along outlines are smoothed', 'GraphicsSystem2',
            property('antialiasing')),
    Setting('shadowQuality', 'high', word(*Given.SHADOWS),
            'How fine shadows are; with low ones only carried lights cast any', 'GraphicsSystem2', Given.shadows),
    Setting('effectQuality', 'high', word('low', 'high'), 'Whether corners are darker than open surfaces',
            'GraphicsSystem2', lambda system, value: setattr(system, 'occlusion', value == 'high')),
    Setting('fieldOfView', Given.USUAL_VIEW, number(35, 80), 'How much is seen from below to above, degrees',
            'GameLoopSystem', ForPlayer('camera/viewer', Given.fieldOfView)),
    Setting('brightness', 1.0, number(0.5, 2), "Factor of the world's light", 'GraphicsSystem2',
            property('brightness')),
    Setting('gamma', 2.2, number(1, 4), 'Exponent of the brightness; more shows more in the dark', 'GraphicsSystem2',
            property('gamma')),
    # What a failing mind does
    Setting('mindDrain', 1.0, _part, 'How far colours drain away as the mind fails', 'MindPictureSystem',
            property('drain')),
    Setting('mindGrain', 1.0, _part, 'How strong the spots and the grain are that crawl in the dark then',
            'MindPictureSystem', property('grain')),
    Setting('mindPulse', 1.0, _part, 'How far the dark closes in and beats with the heart', 'MindPictureSystem',
            property('pulse')),
    Setting('mindDistortion', 1.0, _part, "How far the picture's edges bend", 'MindPictureSystem',
            property('distortion')),
    Setting('mindFlashes', 1.0, _part, 'How bright the picture starts at a fright', 'MindPictureSystem',
            property('flashes')),
    Setting('mindWhispers', 1.0, _part, 'How loud the voices of a failing mind are'),
    Setting('mindFigures', 1.0, _part, 'How often somebody stands at the edge of sight then; 0 for never'),
    # The sound
    Setting('masterVolume', 1.0, _part, 'Loudness of everything', 'SoundSystem', Given.volumes),
    Setting('soundEffectVolume', 0.9, _part, 'Loudness of all sounds but music', 'SoundSystem',
            Given.volume('soundEffectVolume')),
    Setting('musicVolume', 0.9, _part, 'Loudness of the music', 'SoundSystem', Given.volume('musicVolume')),
    Setting('ambienceVolume', 1.0, _part, 'Loudness of house and weather', 'SoundSystem',
            Given.category('sfx/ambience', 'sfx/house', 'sfx/weather')),
    Setting('creatureVolume', 1.0, _part, 'Loudness of what lives there besides', 'SoundSystem',
            Given.category('sfx/creatures')),
    Setting('playerVolume', 1.0, _part, "Loudness of one's own steps, breath and heart", 'SoundSystem',
            Given.category('sfx/player', 'sfx/steps')),
    Setting('interfaceVolume', 1.0, _part, 'Loudness of menus', 'SoundSystem', Given.interfaceVolume),
    Setting('headphones', False, switch(), 'Directions as headphones need them', 'SoundSystem',
            property('headphones')),
    Setting('mono', False, switch(), 'Whether both ears hear the same', 'SoundSystem', property('mono')),
    Setting('soundDevice', '', line(200), "Name of the device that is heard; nothing for the computer's usual one",
            'SoundSystem', Given.soundDevice),
    # Mouse and pad
    Setting('mouseSensitivityX', 1.0, _factor, 'How far the mouse turns the view to the side', 'GameLoopSystem', _look),
    Setting('mouseSensitivityY', 1.0, _factor, 'How far the mouse turns the view up and down', 'GameLoopSystem',
            _look),
    Setting('invertMouseX', False, switch(), 'Whether the mouse turns the view to the other side', 'GameLoopSystem',
            _look),
    Setting('invertMouseY', False, switch(), 'Whether the mouse turns the view down when it goes up',
            'GameLoopSystem', ForPlayer('physics', Given.invertMouseY)),
    Setting('padSensitivityX', 1.0, number(0.1, 5), "How fast a pad's stick turns the view to the side",
            'GameLoopSystem', _look),
    Setting('padSensitivityY', 1.0, number(0.1, 5), "How fast a pad's stick turns the view up and down",
            'GameLoopSystem', _look),
    Setting('invertPadX', False, switch(), "Whether a pad's stick turns the view to the other side",
            'GameLoopSystem', _look),
    Setting('invertPadY', False, switch(), "Whether a pad's stick turns the view down when it goes up",
            'GameLoopSystem', _look),
    Setting('walkDeadZone', 0.24, number(0, 0.9), "Part of the left stick's way that counts for nothing",
            'InputSystem', property('walkDeadZone')),
    Setting('lookDeadZone', 0.265, number(0, 0.9), "Part of the right stick's way that counts for nothing",
            'InputSystem', property('lookDeadZone')),
    Setting('rumble', 1.0, _part, 'How hard a pad shakes'),
    # How one plays
    Setting('sprintMode', 'hold', word('hold', 'toggle'), 'Whether the key to run is held, or pressed once'),
    Setting('crouchMode', 'toggle', word('hold', 'toggle'), 'Whether the key to crouch is held, or pressed once'),
    Setting('leanMode', 'hold', word('hold', 'toggle'), 'Whether the keys to lean are held, or pressed once'),
    Setting('viewBob', 0.4, _part, 'How much the view goes up and down with the steps', 'GameLoopSystem',
            ForPlayer('player', property('bobAmount'))),
    Setting('viewShake', 1.0, _part, 'How much a landing shakes the view', 'GameLoopSystem',
            ForPlayer('camera/form', property('shakeAmount'))),
    Setting('soundWithoutFocus', False, switch(), 'Whether the game is heard while another window is in front'),
    Setting('pauseWithoutFocus', True, switch(), 'Whether the game stops while another window is in front'),
    # How one reads
    Setting('captions', False, switch(), 'Whether it is written what is heard'),
    Setting('captionSize', 1.0, number(0.75, 2), 'Size of captions, as a factor'),
    Setting('captionBackground', 0.6, _part, 'How dark it is behind captions'),
    Setting('captionDirection', True, switch(), 'Whether captions tell where it is heard'),
    Setting('readableFont', False, switch(), 'Whether all texts are in plain letters', 'GameLoopSystem',
            lambda loop, value: words.setReadable(value)),
    Setting('colourSafe', False, switch(), 'Whether nothing on the screen hangs on telling colours apart',
            'GameLoopSystem', Given.colourSafe),
    Setting('language', words.AUTOMATIC, _language(), 'The language of all texts', 'GameLoopSystem',
            lambda loop, value: words.setLanguage(value)),
    # For those who make the game
    Setting('reloadFiles', 'automatic', word('automatic', 'on', 'off'),
            'Whether files that change are taken anew while the game runs; automatic does so in a source tree'),
)

BY_NAME = {setting.name: setting for setting in SETTINGS}
