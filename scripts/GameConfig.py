"""What the game starts with, and what a run was asked to do: the one place that reads the environment.

`./play` turns its words into these variables; a run without any of them is an ordinary game. A word that cannot be
meant ends the start with its name, its value and what may stand there.
"""

import difflib
import os
import re
import time

import kaVel
import mods
from reports import Keeping
from reports.Playing import Played

#: Largest window and longest run that a word may ask for.
LARGEST_SIDE = 16384
MOST_FRAMES = 2 ** 31 - 1

#: The variables that this module knows; reading one enters it. The executable reads KAVEL_VERBOSE before any script.
_known: set[str] = set()


def _text(variable: str) -> str:
    """The text of an environment variable, empty where it is not set."""
    _known.add(variable)
    text = os.environ.get(variable, '')
    try:
        text.encode()
    except UnicodeEncodeError:
        raise _refusal(variable, text, 'a text in UTF-8') from None
    return text


def _refusal(variable: str, text: str, allowed: str) -> ValueError:
    shown = text if len(text) <= 80 else text[:80] + '...'
    return ValueError('%s is %r, where %s may stand' % (variable, shown, allowed))


def _switch(variable: str) -> bool:
    text = _text(variable)
    if text not in ('', '0', '1'):
        raise _refusal(variable, text, '0 or 1')
    return text == '1'


def _choice(variable: str) -> bool | None:
    """Yes, no, or what is usual."""
    return _switch(variable) if _text(variable) else None


def _number(variable: str, default: int, most: int) -> int:
    """The whole number in an environment variable, from 0 to `most`."""
    text = _text(variable)
    if not text:
        return default
    if not re.fullmatch('[0-9]{1,20}', text) or int(text) > most:
        raise _refusal(variable, text, 'a whole number from 0 to %d' % most)
    return int(text)


def _size(variable: str, default: tuple[int, int]) -> tuple[int, int]:
    """Two whole numbers in an environment variable, as in 640x360."""
    text = _text(variable)
    if not text:
        return default
    sides = re.fullmatch('([0-9]{1,6})[xX]([0-9]{1,6})', text)
    if not sides or not all(1 <= int(side) <= LARGEST_SIDE for side in sides.groups()):
        raise _refusal(variable, text, 'a size like 640x360, of sides from 1 to %d,' % LARGEST_SIDE)
    return int(sides[1]), int(sides[2])


def _numbers(variable: str) -> list[int]:
    """The whole numbers in an environment variable, with commas between them."""
    text = _text(variable)
    if text and not re.fullmatch('[0-9]{1,9}(,[0-9]{1,9})*', text):
        raise _refusal(variable, text, 'whole numbers with commas between them, like 60,120,')
    return [int(number) for number in text.split(',') if number]


def _file(variable: str) -> str:
    """The file that an environment variable names; a relative path counts from the folder the game was started in."""
    text = _text(variable)
    return text and os.path.join(kaVel.Reflection.getUserFolder(), text)


def _refuseUnknown() -> None:
    """Refuses a variable that looks like one of these and is none, which would otherwise ask for nothing in silence."""
    for variable in sorted(os.environ):
        if variable.startswith('KAVEL_') and variable not in _known:
            near = difflib.get_close_matches(variable, _known, 1)
            raise ValueError('%s is no variable of the game%s; it knows: %s'
                             % (variable, '; did you mean %s' % near[0] if near else '', ', '.join(sorted(_known))))


#: Report that this run plays again, which answers most of the words below; None for an ordinary run.
played = Played(_file('KAVEL_REPORT'), _number('KAVEL_HOLD', 0, MOST_FRAMES), _number('KAVEL_FROM', 0, MOST_FRAMES)
                ) if _text('KAVEL_REPORT') else None
for _asked in ('KAVEL_HOLD', 'KAVEL_FROM'):
    if _text(_asked) and not played:
        raise ValueError('%s is %r, where nothing may stand: it is for a report that is played'
                         % (_asked, _text(_asked)))

#: Level that the game loads first: the title, unless a run is asked for a level. Headless runs begin there, too.
initialLevel = _text('KAVEL_LEVEL') or 'Title'

#: Fixed time a frame and a fixed window, so that two runs give the same log and the same picture.
headless = _switch('KAVEL_HEADLESS')

#: Whether the terminal shows the log's lines of the importance "Debug", too.
verbose = _switch('KAVEL_VERBOSE')

#: File that the last frame is written to; empty for none. A level with views writes one file a view, out-NAME.png.
screenshot = _file('KAVEL_SCREENSHOT')

#: Frames that are written in place of the last one, out-FRAME.png each; empty for that one.
shots = _numbers('KAVEL_SHOTS')

#: WAV that the sound of a headless run is written to; empty for none.
sound = _file('KAVEL_SOUND')
if sound and not headless:
    raise ValueError('KAVEL_SOUND is %r, where nothing may stand: only a run with KAVEL_HEADLESS=1 has its sound '
                     'written, any other one plays it' % _text('KAVEL_SOUND'))

#: Frames after which the game ends by itself; 0 plays on. A picture needs a last frame, a sound some seconds.
frames = _number('KAVEL_FRAMES', 600 if sound else 60 if screenshot else 0, MOST_FRAMES)

#: Names of the views that such a level is to show, with commas between them; empty for all.
views = [name for name in _text('KAVEL_VIEWS').split(',') if name]

#: Code of the language that is read where the player chose none, as 'de'; empty for the system's, English if headless.
language = _text('KAVEL_LANGUAGE')

#: Start of the engine's random numbers; another one in every ordinary game.
seed = _number('KAVEL_SEED', 1 if headless else int(time.time()), 2 ** 32 - 1)

#: Recording of input that is played in place of the devices; empty for none.
replay = _file('KAVEL_REPLAY')

#: File that the run's input is recorded in; empty for none.
record = _file('KAVEL_RECORD')

#: Whether frames are run and not drawn, for a run of which only the play counts, or none but the `shots`.
undrawn = _switch('KAVEL_UNDRAWN')
if undrawn and (screenshot and not shots or not headless):
    raise ValueError("KAVEL_UNDRAWN is '1', where nothing may stand: only a run with KAVEL_HEADLESS=1 and without "
                     "KAVEL_SCREENSHOT, unless that is of KAVEL_SHOTS, can do without pictures")

#: File that a hash of the whole state goes to after every frame; empty for none.
digest = _file('KAVEL_DIGEST')

#: File that every field of every object is written to after the last frame; empty for none.
dump = _file('KAVEL_DUMP')

#: File that what is wrong in the level is written to at the end of the run; empty for none.
lint = _file('KAVEL_LINT')

#: File that the cost of each frame is written to; empty for none.
meter = _file('KAVEL_METER')

#: Folder of the saves; empty for the user's own, which headless runs leave alone.
saves = _file('KAVEL_SAVES')

#: Course that plays the level in place of a player, a module of `courses`; empty for none.
course = _text('KAVEL_COURSE')

#: Mods that the run is asked for besides those that the player has turned on: names, or folders with a slash in them.
askedMods = [os.path.join(kaVel.Reflection.getUserFolder(), name) if '/' in name else name
             for name in _text('KAVEL_MOD').split(',') if name]

#: Whether the run may write into these, so that the editor saves into them.
saveMods = _switch('KAVEL_SAVEMODS')

#: Frames a second of the fixed time.
fixedFrameRate = 60

#: Window of a headless run, pixels.
headlessSize = _size('KAVEL_SIZE', (1280, 720))

#: Whether files that change are taken anew while the game runs; None for what the setting `reloadFiles` says, which
#: headless runs do not ask: two of them do the same.
reload = _choice('KAVEL_RELOAD')


def _written() -> list[str]:
    """The files that the run is asked to write."""
    stem, extension = os.path.splitext(screenshot)
    suffixes = ['-%d' % shot for shot in shots] or ['-' + view for view in views] or ['']
    pictures = [stem + suffix + extension for suffix in suffixes if screenshot]
    return [file for file in (record, digest, dump, meter, sound, *pictures) if file]


_refuseUnknown()
try:
    mods.begin(askedMods, players=not headless, mayAsk=not (headless or frames or played),
               folders=[saves, played.folder if played else ''], files=_written(), isWritten=saveMods)
except ValueError as problem:
    raise ValueError('%s%s' % (problem, played.lacking(': ') if played else '')) from None
Keeping.begin()
if mods.isAsking():
    initialLevel = 'Title'  # where the screen is that asks
