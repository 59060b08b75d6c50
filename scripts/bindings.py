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
    'report': ('F12',),
}

#: Action -> the button of a pad that presses its first key. The sticks walk and look by themselves.
PAD = {
    'use': 'A', 'crouch': 'B', 'battery': 'X', 'flashlight': 'Y', 'leanLeft': 'Left shoulder',
    'leanRight': 'Right shoulder', 'run': 'Left trigger', 'throw': 'Right trigger', 'quit': 'Start', 'lamp': 'Up',
    'restart': 'Back', 'notebook': 'Down',
}

#: Bits of a pad's buttons; the triggers count as buttons beyond them.
PAD_BUTTONS = {'Up': 0x1, 'Down': 0x2, 'Left': 0x4, 'Right': 0x8, 'Start': 0x10, 'Back': 0x20, 'Left stick': 0x40,
               'Right stick': 0x80, 'Left shoulder': 0x100, 'Right shoulder': 0x200, 'A': 0x1000, 'B': 0x2000,
               'X': 0x4000, 'Y': 0x8000, 'Left trigger': 0x10000, 'Right trigger': 0x20000}

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


@functools.cache
def padKeys() -> dict[int, int]:
    """Bit of a pad's button -> virtual-key code that it presses; ValueError for a button that no pad has."""
    wrong = [button for button in PAD.values() if button not in PAD_BUTTONS]
    if wrong:
        raise ValueError('bindings.PAD has %r, which is no button of a pad; those are: %s'
                         % (wrong[0], ', '.join(PAD_BUTTONS)))
    first = {action: next(each for each in _inputs(action) if each not in BUTTONS) for action in PAD}
    return {PAD_BUTTONS[button]: keyCode(first[action], action) for action, button in PAD.items()}


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
