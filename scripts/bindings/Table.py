"""Which keys and buttons stand for which action, unless the player wants it otherwise: the one table of them.

An action may have several inputs, and an input several actions, as long as nobody listens to both in one level.
"""

#: Action -> its inputs: letters, digits, the keys of KEYS and the buttons of BUTTONS.
ACTIONS: dict[str, tuple[str, ...]] = {
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
    'editor': ('F8',),
    'timeline': ('F10',),
    'console': ('Left of 1',),
    'report': ('F12',),
}

#: Action -> its button of a pad. The sticks walk and look by themselves.
PAD: dict[str, str] = {
    'use': 'A', 'crouch': 'B', 'battery': 'X', 'flashlight': 'Y', 'leanLeft': 'Left shoulder',
    'leanRight': 'Right shoulder', 'run': 'Left trigger', 'throw': 'Right trigger', 'quit': 'Start', 'lamp': 'Up',
    'restart': 'Back', 'notebook': 'Down',
}

#: Where actions are listened to at once: within one of these an input should have one action. What stands in none, as
#: the keys of those who make the game, is heard everywhere.
CONTEXTS: dict[str, tuple[str, ...]] = {
    'player': ('forward', 'back', 'left', 'right', 'run', 'crouch', 'use', 'leanLeft', 'leanRight', 'flashlight',
               'battery', 'throw', 'notebook', 'lamp', 'quit', 'restart'),
    'camera': ('forward', 'back', 'left', 'right', 'run', 'rise', 'sink', 'quit', 'restart',
               *('place%d' % number for number in range(1, 10))),
}

#: Actions that count only together with another one that is held.
TOGETHER = ('fullScreenWithAlt',)

#: Bits of a pad's buttons; the triggers count as buttons beyond them.
PAD_BUTTONS = {'Up': 0x1, 'Down': 0x2, 'Left': 0x4, 'Right': 0x8, 'Start': 0x10, 'Back': 0x20, 'Left stick': 0x40,
               'Right stick': 0x80, 'Left shoulder': 0x100, 'Right shoulder': 0x200, 'A': 0x1000, 'B': 0x2000,
               'X': 0x4000, 'Y': 0x8000, 'Left trigger': 0x10000, 'Right trigger': 0x20000}

#: Virtual-key codes of a pad's buttons, which no keyboard has.
PAD_KEYS = {'A': 0xC3, 'B': 0xC4, 'X': 0xC5, 'Y': 0xC6, 'Right shoulder': 0xC7, 'Left shoulder': 0xC8,
            'Left trigger': 0xC9, 'Right trigger': 0xCA, 'Up': 0xCB, 'Down': 0xCC, 'Left': 0xCD, 'Right': 0xCE,
            'Start': 0xCF, 'Back': 0xD0, 'Left stick': 0xD1, 'Right stick': 0xD2}

#: Virtual-key codes of the keys that are no letter and no digit, by their place on a keyboard for English.
KEYS = {'Left of 1': 0xC0, 'Enter': 0x0D, 'Shift': 0x10, 'Ctrl': 0x11, 'Alt': 0x12, 'Escape': 0x1B, 'Space': 0x20,
        'Left': 0x25, 'Up': 0x26, 'Right': 0x27, 'Down': 0x28,
        **{'F%d' % number: 0x6F + number for number in range(1, 25)},
        'Backspace': 0x08, 'Tab': 0x09, 'Caps lock': 0x14, 'Page up': 0x21, 'Page down': 0x22, 'End': 0x23,
        'Home': 0x24, 'Insert': 0x2D, 'Delete': 0x2E, 'Pause': 0x13, 'Print': 0x2C, 'Scroll lock': 0x91,
        'Number lock': 0x90, 'Menu': 0x5D,
        'Minus': 0xBD, 'Equals': 0xBB, 'Left bracket': 0xDB, 'Right bracket': 0xDD, 'Backslash': 0xDC,
        'Semicolon': 0xBA, 'Quote': 0xDE, 'Comma': 0xBC, 'Period': 0xBE, 'Slash': 0xBF,
        # Keys that keyboards of some countries have besides
        'Left of Z': 0xE2, 'Right of Slash': 0xC1, 'Left of Backspace': 0xDF, 'Kana': 0x15, 'Hanja': 0x19,
        'Convert': 0x1C, 'Do not convert': 0x1D,
        **{'Pad %d' % number: 0x60 + number for number in range(10)},
        'Pad times': 0x6A, 'Pad plus': 0x6B, 'Pad minus': 0x6D, 'Pad point': 0x6E, 'Pad divide': 0x6F,
        'Pad separator': 0xC2, 'Pad equals': 0x92}

#: Numbers of the mouse's buttons in `MouseDownMessage`.
BUTTONS = {'Left button': 0, 'Right button': 1, 'Middle button': 2, 'Button 4': 3, 'Button 5': 4}

#: Virtual-key codes of the mouse's buttons, for those who know keys alone.
BUTTON_KEYS = {'Left button': 0x01, 'Right button': 0x02, 'Middle button': 0x04, 'Button 4': 0x05, 'Button 5': 0x06}
