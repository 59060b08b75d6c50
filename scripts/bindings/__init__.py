"""Which keys, mouse buttons and buttons of a pad stand for which action.

Scripts name an action and never a key: `kaVel.onKey(coordinator, 'use', function)` calls a function when one of the
action's inputs goes down, `objects.player.Control` knows which actions are held, and a prompt says `promptName('use')`.

    bindings.bind('forward', ['W', 'Up'])   # kept for the games to come
    bindings.bindPad('use', 'A')
    bindings.conflicts('forward')           # {'Up': ['lamp']}
    bindings.reset('forward')

What is usual stands in `Table`. What the player wants otherwise lies beside his settings, in `bindings.txt`.
"""

from bindings.Bound import (bind, bindPad, buttonsOf, conflicts, inputsOf, isUsual, keyCode, keyNamed, keysOf, onChange,
                            padKeys, padOf, reset, resetAll, trouble)
from bindings.Devices import attend, device, onDeviceChange, promptName, promptOf
from bindings.Table import (ACTIONS, BUTTON_KEYS, BUTTONS, CONTEXTS, KEYS, PAD, PAD_BUTTONS, PAD_KEYS)

__all__ = ['ACTIONS', 'BUTTONS', 'BUTTON_KEYS', 'CONTEXTS', 'KEYS', 'PAD', 'PAD_BUTTONS', 'PAD_KEYS', 'attend', 'bind',
           'bindPad', 'buttonsOf', 'conflicts', 'device', 'inputsOf', 'isUsual', 'keyCode', 'keyNamed', 'keysOf',
           'onChange', 'onDeviceChange', 'padKeys', 'padOf', 'promptName', 'promptOf', 'reset', 'resetAll', 'trouble']
