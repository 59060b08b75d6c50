"""Settings of the player: the one table of them, with defaults and ranges, and the file that keeps them.

    import settings

    settings.get('frameLimit')             # 0
    settings.set('frameLimit', 60)         # checked, in force at once, and kept for the next game
    settings.set('windowSize', '1600x900') # what was typed will do

A bad name or value raises ValueError that says what is allowed; `SETTINGS` is what a console or a menu can show.

The file lies in the player's own folder, see `path`. It is text with one setting a line; what is not known there is
left as it stands. Headless runs neither read nor write it.
"""

from __future__ import annotations

import difflib
import os
import tempfile
from typing import Any, Callable, NamedTuple

import GameConfig
import kaVel
import words


class Kind(NamedTuple):
    """What values a setting has: `read` makes one of a text or raises ValueError, `allowed` tells the texts."""

    read: Callable[[str], Any]
    allowed: str


class Setting(NamedTuple):
    """One setting: where its value goes is a system and a function that gives it to that system."""

    name: str
    default: Any
    kind: Kind
    meaning: str
    system: str
    give: Callable[[Any, Any], None]


def _word(*words: str) -> Kind:
    def read(text: str) -> str:
        for word in words:
            if text.lower() == word.lower():
                return word
        raise ValueError
    return Kind(read, ' or '.join(words))


def _switch() -> Kind:
    return Kind(lambda text: _word('on', 'off').read(text) == 'on', 'on or off')


def _number(least: float, most: float, type: Callable[[str], Any] = float) -> Kind:
    def read(text: str) -> Any:
        value = type(text)
        if not least <= value <= most:
            raise ValueError
        return value
    return Kind(read, '%s from %g to %g' % ('a whole number' if type is int else 'a number', least, most))


def _size(least: tuple[int, int], most: tuple[int, int]) -> Kind:
    def read(text: str) -> tuple[int, int]:
        width, height = (int(number) for number in text.lower().split('x'))
        if not (least[0] <= width <= most[0] and least[1] <= height <= most[1]):
            raise ValueError
        return width, height
    return Kind(read, 'a size like 1280x720, from %dx%d to %dx%d' % (*least, *most))


def _either(word: str, other: Kind) -> Kind:
    return Kind(lambda text: word if text.lower() == word else other.read(text), '%s, or %s' % (word, other.allowed))


def _language() -> Kind:
    def read(text: str) -> str:
        if text not in (words.AUTOMATIC, *words.languages()):
            raise ValueError
        return text
    return Kind(read, "automatic, for the system's language, or the code of a table of scripts/words, as de")


def _property(name: str) -> Callable[[Any, Any], None]:
    return lambda system, value: setattr(system, name, value)


def _giveScale(pacing: Any, value: Any) -> None:
    pacing.automaticScale = value == 'automatic'
    if value != 'automatic':
        kaVel.getSystem('GraphicsSystem2').renderScale = value


def _look(player: Any) -> None:
    player.lookSideways = get('mouseSensitivityX') * _LOOK * (-1 if get('invertMouseX') else 1)
    player.lookUpright = get('mouseSensitivityY') * _LOOK


class _ForPlayer:
    """Gives a value to a part of the player of the level that runs, by its path below him; to nobody without one."""

    def __init__(self, part: str, give: Callable[[Any, Any], None]):
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


def giveToPlayer(player: Any) -> None:
    """Gives a player who has just been built all that is set for him."""
    for setting in SETTINGS:
        if isinstance(setting.give, _ForPlayer):
            setting.give.giveTo(player, get(setting.name))


#: Radians of a turn for a motion across the window, by the factor 1: `mouseSensitivity` of the player is 12.
_LOOK = 3.0 / 12.0


#: All settings, in the order in which a menu would show them.
SETTINGS = (
    Setting('windowMode', 'window', _word('window', 'fullScreen'), 'A window, or the whole display',
            'WindowSystem2', lambda system, value: system.setFullScreen(value == 'fullScreen')),
    Setting('windowSize', (1280, 720), _size((320, 180), (7680, 4320)),
            'Size of the window, as far as the desktop has room', 'WindowSystem2',
            lambda system, value: system.setWindowedSize(*value)),
    Setting('displayMode', 0, _number(0, 999, int),
            "Which of the display's modes full screen takes; 0 is the desktop's", 'WindowSystem2',
            _property('displayMode')),
    Setting('renderScale', 'automatic', _either('automatic', _number(0.25, 2)),
            "Size of the world's picture as a part of the window's; automatic follows the time that frames take",
            'FramePacingSystem', _giveScale),
    Setting('targetFrameRate', 30.0, _number(10, 240), 'Frames a second that the automatic scale aims at',
            'FramePacingSystem', _property('targetFrameRate')),
    Setting('frameLimit', 0.0, _number(0, 1000), 'Most frames a second; 0 for as many as there can be',
            'FramePacingSystem', _property('frameLimit')),
    Setting('vsync', False, _switch(), "Whether frames wait for the display's refresh", 'GraphicsSystem2',
            _property('vsync')),
    Setting('antialiasing', True, _switch(), 'Whether the stair-steps along outlines are smoothed', 'GraphicsSystem2',
            _property('antialiasing')),
    Setting('gamma', 2.2, _number(1, 4), 'Exponent of the brightness; more shows more in the dark', 'GraphicsSystem2',
            _property('gamma')),
    Setting('mindDrain', 1.0, _number(0, 1), 'How far colours drain away as the mind fails', 'MindPictureSystem',
            _property('drain')),
    Setting('mindGrain', 1.0, _number(0, 1), 'How strong the grain is that crawls in the dark then',
            'MindPictureSystem', _property('grain')),
    Setting('mindPulse', 1.0, _number(0, 1), 'How far the dark closes in and beats with the heart',
            'MindPictureSystem', _property('pulse')),
    Setting('mindDistortion', 1.0, _number(0, 1), "How far the picture's edges bend", 'MindPictureSystem',
            _property('distortion')),
    Setting('mindFlashes', 1.0, _number(0, 1), 'How bright the picture starts at a fright', 'MindPictureSystem',
            _property('flashes')),
    Setting('mindWhispers', 1.0, _number(0, 1), 'How loud the voices of a failing mind are', '',
            lambda system, value: None),
    Setting('mindFigures', 1.0, _number(0, 1), 'How often somebody stands at the edge of sight then; 0 for never', '',
            lambda system, value: None),
    Setting('soundEffectVolume', 0.9, _number(0, 1), 'Loudness of all sounds but music', 'SoundSystem',
            _property('soundEffectVolume')),
    Setting('musicVolume', 0.9, _number(0, 1), 'Loudness of the music', 'SoundSystem', _property('musicVolume')),
    Setting('headphones', False, _switch(), 'Directions as headphones need them', 'SoundSystem',
            _property('headphones')),
    Setting('mouseSensitivityX', 1.0, _number(0.05, 20), 'How far the mouse turns the view to the side',
            'GameLoopSystem', _ForPlayer('player', lambda player, value: _look(player))),
    Setting('mouseSensitivityY', 1.0, _number(0.05, 20), 'How far the mouse turns the view up and down',
            'GameLoopSystem', _ForPlayer('player', lambda player, value: _look(player))),
    Setting('invertMouseX', False, _switch(), 'Whether the mouse turns the view to the other side', 'GameLoopSystem',
            _ForPlayer('player', lambda player, value: _look(player))),
    Setting('invertMouseY', False, _switch(), 'Whether the mouse turns the view down when it goes up',
            'GameLoopSystem', _ForPlayer('physics', lambda body, value: body.setInvert('true' if value else 'false'))),
    Setting('padSensitivity', 1.0, _number(0.1, 5), "How fast a pad's stick turns the view", 'GameLoopSystem',
            _ForPlayer('player', lambda player, value: setattr(player, 'stickTurnRate', 2.8 * value))),
    Setting('invertPadY', False, _switch(), "Whether a pad's stick turns the view down when it goes up",
            'GameLoopSystem',
            _ForPlayer('player', lambda player, value: setattr(player, 'stickUpright', -0.75 if value else 0.75))),
    Setting('rumble', True, _switch(), 'Whether a pad shakes', '', lambda system, value: None),
    Setting('viewBob', 0.4, _number(0, 1), 'How much the view goes up and down with the steps', 'GameLoopSystem',
            _ForPlayer('player', _property('bobAmount'))),
    Setting('soundWithoutFocus', False, _switch(), 'Whether the game is heard while another window is in front', '',
            lambda system, value: None),
    Setting('pauseWithoutFocus', True, _switch(), 'Whether the game stops while another window is in front', '',
            lambda system, value: None),
    Setting('captions', False, _switch(), 'Whether it is written what is heard', '', lambda system, value: None),
    Setting('captionSize', 1.0, _number(0.75, 2), 'Size of captions, as a factor', '', lambda system, value: None),
    Setting('captionBackground', 0.6, _number(0, 1), 'How dark it is behind captions', '',
            lambda system, value: None),
    Setting('captionDirection', True, _switch(), 'Whether captions tell where it is heard', '',
            lambda system, value: None),
    Setting('readableFont', False, _switch(), 'Whether all texts are in plain letters', 'GameLoopSystem',
            lambda loop, value: words.setReadable(value)),
    Setting('language', words.AUTOMATIC, _language(), 'The language of all texts', 'GameLoopSystem',
            lambda loop, value: words.setLanguage(value)),
)

_BY_NAME = {setting.name: setting for setting in SETTINGS}

#: A file larger than this is not ours.
_MOST_BYTES = 1 << 16

_values: dict[str, Any] = {}
_wasRead = False


def find(name: str) -> Setting:
    """The setting of this name; ValueError that names the nearest one if there is none."""
    try:
        return _BY_NAME[name]
    except KeyError:
        near = difflib.get_close_matches(name, _BY_NAME, n=1)
        hint = '; did you mean %r?' % near[0] if near else ''
        raise ValueError('no setting %r%s' % (name, hint)) from None


def get(name: str) -> Any:
    """The value of a setting: what the player chose, or the default."""
    setting = find(name)
    _readOnce()
    return _values.get(name, setting.default)


def set(name: str, value: Any) -> None:
    """Gives a setting a value or its text: checked, in force at once, and kept. ValueError if it is not allowed."""
    setting = find(name)
    keep(name, value)
    if setting.system:
        setting.give(kaVel.Reflection.getSystemN(setting.system), get(name))


def keep(name: str, value: Any) -> None:
    """Keeps a value that is in force already; checked as by `set`."""
    setting = find(name)
    _readOnce()
    _values[name] = _checked(setting, value if isinstance(value, str) else textOf(value))
    if not GameConfig.headless:
        _write(setting)


def giveTo(system: Any, className: str) -> None:
    """Gives a system that is about to start all that the player set for it."""
    for setting in SETTINGS:
        if setting.system == className:
            setting.give(system, get(setting.name))


def textOf(value: Any) -> str:
    """A value as the file has it and as `set` takes it."""
    if isinstance(value, bool):
        return 'on' if value else 'off'
    if isinstance(value, tuple):
        return 'x'.join(str(number) for number in value)
    return '%g' % value if isinstance(value, float) else str(value)


def path() -> str:
    """Where the settings lie: `mornal/settings.txt` in $XDG_CONFIG_HOME or ~/.config."""
    folder = os.environ.get('XDG_CONFIG_HOME') or os.path.expanduser('~/.config')
    return os.path.join(folder, 'mornal', 'settings.txt')


def _checked(setting: Setting, text: str) -> Any:
    try:
        return setting.kind.read(text.strip())
    except ValueError:
        raise ValueError('%s is %r, but has to be %s' % (setting.name, text, setting.kind.allowed)) from None


def _readOnce() -> None:
    global _wasRead
    if _wasRead or GameConfig.headless:
        return
    _wasRead = True
    for number, line in enumerate(_lines(), 1):
        name, text = _split(line)
        if name not in _BY_NAME:
            continue
        try:
            _values[name] = _checked(_BY_NAME[name], text)
        except ValueError as problem:
            kaVel.log('%s:%d: %s. The default is taken.' % (path(), number, problem))


def _split(line: str) -> tuple[str, str]:
    """Name and text of a line; no name for a comment or anything else that is no setting."""
    name, equals, text = line.partition('=')
    return (name.strip(), text.strip()) if equals and not line.lstrip().startswith('#') else ('', '')


def _lines() -> list[str]:
    """The lines of the file; none if it cannot be read. A file that is no text is set aside."""
    try:
        with open(path(), 'rb') as file:
            content = file.read(_MOST_BYTES + 1)
    except FileNotFoundError:
        return []
    except OSError as problem:
        kaVel.log('%s cannot be read: %s. The defaults are taken.' % (path(), problem.strerror))
        return []
    try:
        if len(content) > _MOST_BYTES or b'\0' in content:
            raise ValueError
        return content.decode('utf-8').splitlines()
    except ValueError:
        _setAside()
        return []


def _setAside() -> None:
    try:
        os.replace(path(), path() + '.broken')
        kaVel.log('%s is no settings file and stands aside as %s.broken. The defaults are taken.' % (path(), path()))
    except OSError as problem:
        kaVel.log('%s is no settings file, and cannot be set aside: %s.' % (path(), problem.strerror))


def _write(setting: Setting) -> None:
    """Puts one setting into the file, anew or in its line; all others stay as they stand there now."""
    lines = _lines() or _newFile()
    line = '%s = %s' % (setting.name, textOf(_values[setting.name]))
    places = [number for number, old in enumerate(lines) if _split(old)[0] == setting.name]
    if places:
        lines[places[-1]] = line
    else:
        lines.append(line)
    try:
        _replaceFile(''.join(each + '\n' for each in lines))
    except OSError as problem:
        kaVel.log('%s cannot be written: %s. %s holds for this game only.' % (path(), problem.strerror, setting.name))


def _newFile() -> list[str]:
    """What a new file says: every setting with its default, as a comment."""
    lines = ['# Settings of Mornal. Take the # from the front of a line and change it; a missing one is as told here.']
    for setting in SETTINGS:
        lines += ['', '# %s: %s.' % (setting.meaning, setting.kind.allowed),
                  '#%s = %s' % (setting.name, textOf(setting.default))]
    return lines + ['']


def _replaceFile(content: str) -> None:
    """Writes a new file and puts it in the place of the old one, which is whole until then."""
    target = os.path.realpath(path())
    os.makedirs(os.path.dirname(target), exist_ok=True)
    handle, name = tempfile.mkstemp(dir=os.path.dirname(target), prefix='settings.')
    try:
        with os.fdopen(handle, 'w', encoding='utf-8') as file:
            file.write(content)
            file.flush()
            os.fsync(file.fileno())
        os.replace(name, target)
    except OSError:
        os.unlink(name)
        raise
