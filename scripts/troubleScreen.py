"""What stands in the place of a level that cannot be loaded: where its scripts are wrong, and the ways on.

It tries again on a key and as soon as a script is saved; another key leads back to the level before.
"""

import functools
import linecache
import traceback

import bindings
import kaVel
import levelScripts
import standing
import words
from perLevel import PerLevel

#: Frames between two looks at the scripts' files.
LOOK_EVERY = 20

PAPER, FADED, CANDLE = (0.86, 0.80, 0.66, 1), (0.62, 0.57, 0.48, 1), (0.95, 0.62, 0.30, 1)
LONGEST_MESSAGE = 700  # characters


class Trouble:
    """Why a level cannot be loaded.

    `before` is the name of the level that was left for it, None if there is none, and `stood` where one stood there;
    `files` is what the scripts' files were like when it was tried.
    """

    def __init__(self, levelName: str, error: BaseException, files: list, before: str | None = None,
                 stood: standing.Standing | None = None):
        self.levelName, self.files, self.before, self.stood = levelName, files, before, stood
        self.place = levelScripts.placeOf(error)
        self.line = _lineAt(error, self.place)
        self.message = _messageOf(error)[:LONGEST_MESSAGE]


_troubles: PerLevel[Trouble] = PerLevel()


def of(level: kaVel.Coordinator) -> Trouble | None:
    """The trouble that a level stands for; None for one that was loaded."""
    return _troubles.get(level)


def build(coordinator: kaVel.Coordinator, trouble: Trouble):
    """Builds the screen. Its F5 is that of every level: it stands under the name of the level that is missing."""
    import objects.GameObjects as place  # of the scripts that ran last: the new ones may be what is wrong

    _troubles[coordinator] = trouble
    text = functools.partial(place.Text, coordinator, wrapWidth=0.86)
    text('title', text=words.text('trouble.title', level=trouble.levelName), at=(0.07, 0.88), size=0.030, color=PAPER)
    if trouble.place:
        text('place', text=words.text('trouble.place', file=trouble.place[0], line=trouble.place[1]), at=(0.07, 0.77),
             color=CANDLE)
        text('line', text=trouble.line, at=(0.10, 0.71), color=FADED)
    text('message', text=trouble.message, at=(0.07, 0.61), color=PAPER)
    text('ways', text='\n'.join(_waysOn(trouble)), at=(0.07, 0.07), size=0.018, color=FADED,
         anchor=('H_LEFT', 'V_BOTTOM'))
    _listen(coordinator, trouble)


def _waysOn(trouble: Trouble):
    keys = {action: bindings.promptName(action) for action in ('reload', 'levelBefore', 'quit')}
    yield words.text('trouble.again', key=keys['reload'])
    if trouble.before:
        yield words.text('trouble.before', key=keys['levelBefore'], level=trouble.before)
    yield words.text('trouble.quit', key=keys['quit'])


def _listen(coordinator: kaVel.Coordinator, trouble: Trouble):
    gameLoop = kaVel.getSystem('GameLoopSystem')

    def look():
        if gameLoop.frameNumber % LOOK_EVERY == 0 and levelScripts.stamp() != trouble.files:
            standing.reload(coordinator)

    watch = kaVel.make('Entity', parent=coordinator, name='watch')
    kaVel.addComponent(watch, 'menu', 'ScriptComponent', frameCallback=look)
    kaVel.onKey(coordinator, 'quit', lambda: gameLoop.quit(0))
    before = trouble.before
    if before:
        kaVel.onKey(coordinator, 'levelBefore', lambda: standing.returnTo(before, trouble.stood))


def _lineAt(error: BaseException, place: tuple[str, int] | None) -> str:
    """The line of source that is wrong, without its indentation."""
    if isinstance(error, SyntaxError):
        return (error.text or '').strip()
    linecache.checkcache()
    return linecache.getline('../%s' % place[0], place[1]).strip() if place else ''


def _messageOf(error: BaseException) -> str:
    if isinstance(error, SyntaxError):
        return '%s: %s' % (type(error).__name__, error.msg)
    return ''.join(traceback.format_exception_only(error)).strip()
