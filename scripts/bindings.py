"""Which keys and mouse buttons stand for which action: the one table of them.

Scripts name an action and never a key: `kaVel.onKey(coordinator, 'use', function)` calls a function when one of the
action's inputs goes down, `objects.Control` knows which actions are held. An action may have several inputs, and an
input several actions, as long as nobody listens to both in one level.
"""

import difflib
import functools

#: Action -> its inputs: letters, digits, the keys of KEYS and the buttons of BUTTONS.
ACTIONS = {
    # Whoever moves through a level
    'forward': ('W',),
    'back': ('S',),
    'left': ('A',),
    'right': ('D',),
    'run': ('Shift',),
    'quit': ('Escape',),
    # One who walks
    'crouch': ('Ctrl',),
    'use': ('E', 'Space', 'Left button'),
    'leanLeft': ('Q',),
    'leanRight': ('C',),
    'flashlight': ('F',),
    'battery': ('R',),
    'throw': ('G', 'Right button'),
    'notebook': ('N',),
    'lamp': ('L',),
    # The flying camera
    'rise': ('Space', 'E'),
    'sink': ('Ctrl', 'Q'),
    # Levels that have places to go to: number 1 to 9
    **{'place%d' % number: (str(number),) for number in range(1, 10)},
    'restart': ('F9',),
    # The window; `fullScreenWithAlt` counts while `alternative` is held
    'fullScreen': ('F11',),
    'fullScreenWithAlt': ('Enter',),
    'alternative': ('Alt',),
    # Those who make the game
    'tweakBars': ('F2',),
    'profiler': ('F3',),
    'outlines': ('F4',),
    'reload': ('F5',),
    'levelBefore': ('F6',),
    'fly': ('F7',),
    'console': ('Left of 1',),
}

#: Virtual-key codes of the keys that are no letter and no digit.
KEYS = {'Left of 1': 0xC0, 'Enter': 0x0D, 'Shift': 0x10, 'Ctrl': 0x11, 'Alt': 0x12, 'Escape': 0x1B, 'Space': 0x20,
        'Left': 0x25, 'Up': 0x26, 'Right': 0x27, 'Down': 0x28,
        **{'F%d' % number: 0x6F + number for number in range(1, 13)}}

#: Numbers of the mouse's buttons in `MouseDownMessage`.
BUTTONS = {'Left button': 0, 'Right button': 1, 'Middle button': 2}


@functools.cache
def keysOf(action: str):
    """Virtual-key codes of an action; KeyError that names the nearest action if there is none of this name."""
    return frozenset(keyCode(each, action) for each in _inputs(action) if each not in BUTTONS)


@functools.cache
def buttonsOf(action: str):
    """Numbers of an action's mouse buttons; KeyError as `keysOf`."""
    return frozenset(BUTTONS[each] for each in _inputs(action) if each in BUTTONS)


def _inputs(action: str):
    try:
        return ACTIONS[action]
    except KeyError:
        near = difflib.get_close_matches(action, ACTIONS, n=1)
        hint = '; did you mean %r?' % near[0] if near else ''
        raise KeyError('no action %r in bindings.ACTIONS%s' % (action, hint)) from None


def keyCode(name: str, action: str = ''):
    """Virtual-key code of a letter, a digit or a key of `KEYS`; ValueError for anything else."""
    if name in KEYS:
        return KEYS[name]
    if len(name) == 1 and (name.isdigit() or 'A' <= name <= 'Z'):
        return ord(name)
    raise ValueError('bindings.ACTIONS[%r] has %r, which is no key; a letter or digit, or one of: %s'
                     % (action, name, ', '.join((*KEYS, *BUTTONS))))
