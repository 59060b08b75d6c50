"""What the game starts with, and what a run was asked to do: the one place that reads the environment.

`./play` turns its words into these variables; a run without any of them is an ordinary game.
"""

import os
import time


def _number(variable, default):
    """The whole number in an environment variable; a text that is none is an error that names the variable."""
    text = os.environ.get(variable, '')
    if not text:
        return default
    try:
        return int(text)
    except ValueError:
        raise ValueError('%s is %r, which is no whole number' % (variable, text)) from None


def _size(variable, default):
    """Two whole numbers in an environment variable, as in 640x360."""
    text = os.environ.get(variable, '')
    if not text:
        return default
    try:
        width, height = (int(number) for number in text.lower().split('x'))
    except ValueError:
        raise ValueError('%s is %r, which is no size like 640x360' % (variable, text)) from None
    return width, height


#: Level that the game loads first.
initialLevel = os.environ.get('KAVEL_LEVEL') or 'FirstRoom'

#: Fixed time a frame and a fixed window, so that two runs give the same log and the same picture.
headless = os.environ.get('KAVEL_HEADLESS', '') not in ('', '0')

#: File that the last frame is written to; empty for none. A level with views writes one file a view, out-NAME.png.
screenshot = os.environ.get('KAVEL_SCREENSHOT', '')

#: Frames after which the game ends by itself; 0 plays on. A picture needs a last frame.
frames = _number('KAVEL_FRAMES', 60 if screenshot else 0)

#: Names of the views that such a level is to show, with commas between them; empty for all.
views = [name for name in os.environ.get('KAVEL_VIEWS', '').split(',') if name]

#: Start of the engine's random numbers; another one in every ordinary game.
seed = _number('KAVEL_SEED', 1 if headless else int(time.time()))

#: Recording of input that is played in place of the devices; empty for none.
replay = os.environ.get('KAVEL_REPLAY', '')

#: File that the run's input is recorded in; empty for none.
record = os.environ.get('KAVEL_RECORD', '')

#: Frames a second of the fixed time.
fixedFrameRate = 60

#: Window of a headless run, pixels.
headlessSize = _size('KAVEL_SIZE', (1280, 720))
