"""What the options show: the settings of each page in order, and the widget of each."""

from __future__ import annotations

from typing import Any, Callable, NamedTuple, Sequence

import kaVel
import settings
import words
from screens import Screens
from screens import Kit as kit
from settings import Presets

Choices = Sequence[tuple[Any, str]]


class Row(NamedTuple):
    """One setting on a page: what differs from what its kind suggests."""

    name: str
    #: What can be chosen, where that is not the same on every machine.
    choices: Callable[[], Choices] | None = None
    step: float = 0.0
    shown: Callable[[float], str] = lambda value: words.number(value, 2)
    most: float = 0.0
    #: Whether it can be used now.
    enabled: Callable[[], bool] = lambda: True
    #: An event of the sound project that tells how loud it is.
    sample: str = ''
    #: Whether the player may be unable to take it back.
    risky: bool = False


def _percent(value: float) -> str:
    return words.percent(value)


def _part(name: str, sample: str = '') -> Row:
    return Row(name, step=0.05, shown=_percent, sample=sample)


def _factor(name: str, most: float = 4.0) -> Row:
    return Row(name, step=0.05, most=most,
               shown=lambda value: words.text('options.times', number=words.number(value, 2)))


def _sizes() -> Choices:
    """Sizes of the window that the monitor has room for, the present one among them."""
    adapter = kaVel.getSystem('GraphicsAdapterSystem')
    largest = adapter.getDisplayModeWidth(0), adapter.getDisplayModeHeight(0)
    usual = [(640, 360), (960, 540), (1024, 768), (1280, 720), (1280, 960), (1600, 900), (1920, 1080), (2560, 1080),
             (2560, 1440), (3440, 1440), (3840, 2160)]
    fitting = {size for size in usual if size[0] <= largest[0] and size[1] <= largest[1]}
    return [(size, '%d × %d' % size) for size in sorted({*fitting, settings.get('windowSize')})]


def _modes() -> Choices:
    adapter = kaVel.getSystem('GraphicsAdapterSystem')
    return [(mode, '%d × %d, %d Hz' % (adapter.getDisplayModeWidth(mode), adapter.getDisplayModeHeight(mode),
                                       adapter.getDisplayModeRefreshRate(mode)))
            for mode in range(adapter.getNumDisplayModes())]


def _monitors() -> Choices:
    count = kaVel.getSystem('WindowSystem2').numMonitors
    return [(number, str(number + 1)) for number in range(max(count, settings.get('monitor') + 1))]


def _scales() -> Choices:
    steps = {0.25, 0.35, 0.5, 0.6, 0.75, 0.9, 1.0, 1.5, 2.0}
    chosen = settings.get('renderScale')
    return [('automatic', 'options.automatic'),
            *((step, words.percent(step)) for step in sorted(steps | ({chosen} if chosen != 'automatic' else set())))]


def _rates(*usual: float, none: str = '') -> Callable[[], Choices]:
    def choices() -> Choices:
        name = 'frameLimit' if none else 'targetFrameRate'
        known = sorted({*usual, settings.get(name)})
        return [(rate, none if none and rate == 0 else words.text('options.rate', number=words.number(rate, 0)))
                for rate in known]
    return choices


def _devices() -> Choices:
    sound = kaVel.getSystem('SoundSystem')
    names = [sound.getDeviceName(number) for number in range(sound.numDevices)]
    chosen = settings.get('soundDevice')
    return [('', 'options.usualDevice'), *((name, name) for name in names),
            *([(chosen, words.text('options.goneDevice', name=chosen))] if chosen and chosen not in names else [])]


def _languages() -> Choices:
    return [(words.AUTOMATIC, 'options.automatic'), *words.languages().items()]


def _view(value: float) -> str:
    return words.text('options.degrees', number=words.number(value, 0))


#: Page -> the settings on it, in order.
PAGES: dict[str, tuple[Row, ...]] = {
    'picture': (
        Row('windowMode', risky=True),
        Row('windowSize', _sizes, risky=True, enabled=lambda: settings.get('windowMode') == 'window'),
        Row('displayMode', _modes, risky=True, enabled=lambda: settings.get('windowMode') == 'fullScreen'),
        Row('monitor', _monitors, risky=True, enabled=lambda: len(_monitors()) > 1),
        Row('vsync'),
        Row('frameLimit', _rates(0, 30, 60, 90, 120, 144, 240, none='options.unlimited')),
        Row('renderScale', _scales),
        Row('targetFrameRate', _rates(25, 30, 45, 60, 90, 120),
            enabled=lambda: settings.get('renderScale') == 'automatic'),
        Row('fieldOfView', step=1, shown=_view),
        Row('brightness', step=0.05, shown=_percent),
        Row('gamma', step=0.1, shown=lambda value: words.number(value, 1)),
        Row('antialiasing'), Row('shadowQuality'), Row('effectQuality')),
    'sound': (
        _part('masterVolume', 'InterfaceClick'), _part('musicVolume', 'StingDiscovery'),
        _part('soundEffectVolume', 'PickUp'), _part('ambienceVolume', 'Settle'),
        _part('creatureVolume', 'RatSqueak'), _part('playerVolume', 'StepWoodWalk'),
        _part('mindWhispers', 'WhisperSanity'), _part('interfaceVolume', 'InterfaceClick'),
        Row('headphones'), Row('mono'), Row('soundDevice', _devices), Row('soundWithoutFocus')),
    'controls': (
        _factor('mouseSensitivityX'), _factor('mouseSensitivityY'), Row('invertMouseX'), Row('invertMouseY'),
        _factor('padSensitivityX'), _factor('padSensitivityY'), Row('invertPadX'), Row('invertPadY'),
        _part('walkDeadZone'), _part('lookDeadZone'), _part('rumble'),
        Row('sprintMode'), Row('crouchMode'), Row('leanMode')),
    'reading': (
        _part('viewBob'), _part('viewShake'), _part('mindFlashes'), _part('mindDistortion'), _part('mindGrain'),
        _part('mindPulse'), _part('mindDrain'), _part('mindFigures'),
        Row('captions'), _factor('captionSize', 2.0), _part('captionBackground'), Row('captionDirection'),
        Row('readableFont'), Row('colourSafe'), Row('pauseWithoutFocus')),
    'language': (Row('language', _languages),),
}

#: Settings after which others can be used or show something else, and those that come back by themselves.
_OTHERS_HANG_ON = ('windowMode', 'windowSize', 'displayMode', 'monitor', 'renderScale', 'shadowQuality',
                   'effectQuality', 'antialiasing')


class Page:
    """The rows of one page as widgets."""

    def __init__(self, parent: kaVel.Entity, name: str, focused: Callable[[str], object]):
        self.parent, self.rows, self.focused = parent, PAGES[name], focused
        self.widgets = {row.name: self._build(row) for row in self.rows}
        self.refresh()

    def refresh(self) -> None:
        """Shows the values that hold now, and what can be used."""
        for row in self.rows:
            component = kit.component(self.widgets[row.name])
            component.enabled = row.enabled()
            _showValue(row, component)

    def _build(self, row: Row) -> kaVel.Entity:
        setting = settings.find(row.name)
        kind, value = setting.kind, settings.get(row.name)
        common: dict[str, Any] = dict(words='options.' + row.name, focused=lambda: self.focused(row.name))
        change = lambda now: self.change(row, now)
        if kind.choices == (True, False):
            return kit.CheckBox(self.parent, row.name, value=value, changed=change, **common)
        if row.choices or kind.choices:
            return kit.Choice(self.parent, row.name, choices=choicesOf(row), value=value, changed=change, **common)
        most = row.most or kind.most
        return kit.Slider(self.parent, row.name, least=kind.least, most=most, step=row.step,
                          value=min(max(value, kind.least), most), shown=row.shown, changed=change, **common)

    def change(self, row: Row, value: Any) -> None:
        self.focused(row.name)
        if value == settings.get(row.name):
            return
        if row.risky:
            settings.tryOut(row.name, value)
            level = self.parent.getAncestorOfType(kaVel.Reflection.Coordinator)
            if level and not Screens.isOpen(level, 'KeepMode'):
                Screens.open(level, 'KeepMode')
        else:
            settings.set(row.name, value)
        if row.sample:
            _play(self.parent, row)


def choicesOf(row: Row) -> Choices:
    if row.choices:
        return row.choices()
    return [(value, 'options.%s.%s' % (row.name, value)) for value in settings.find(row.name).kind.choices]


def hangsOn(name: str) -> bool:
    """Whether other rows show something else when a setting has changed."""
    return name in _OTHERS_HANG_ON


def presetChoices() -> Choices:
    return [*((name, 'options.shadowQuality.' + name) for name in reversed(Presets.PRESETS)),
            (Presets.OWN, 'options.preset.own')]


def _showValue(row: Row, component: Any) -> None:
    value, kind = settings.get(row.name), settings.find(row.name).kind
    if kind.choices == (True, False):
        component.value = value
    elif row.choices or kind.choices:
        values = [each for each, _ in choicesOf(row)]
        component.chosen = values.index(value) if value in values else 0
    else:
        component.value = value
        component.valueText = row.shown(component.value)


def _play(part: kaVel.Entity, row: Row) -> None:
    """Has heard how loud a category is now, unless its sample sounds already."""
    from objects.sound.Sounds import sounds
    menu = kit.menuOf(part).parent
    if row.name == 'musicVolume':
        component = sounds(menu)
        component.setMusicList([row.sample])
        if not component.isPlaying(row.sample):
            component.playMusic(row.sample)
        return
    component = sounds(menu, row.sample)
    if not component.isPlaying(row.sample):
        component.playSoundEffect(row.sample)
