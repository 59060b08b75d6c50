"""Settings of the player: the table of them, with defaults and ranges, and the file that keeps them.

    import settings

    settings.get('frameLimit')             # 0
    settings.set('frameLimit', 60)         # checked, in force at once, and kept for the next game
    settings.set('windowSize', '1600x900') # what was typed will do
    settings.reset('frameLimit')           # as if nobody had ever set it
    settings.tryOut('windowMode', 'fullScreen')  # comes back by itself, see `Trial`

A bad name or value raises ValueError that says what is allowed; `SETTINGS` is what a console or a menu can show.

The file lies in the player's own folder, see `path`. It is text with one setting a line; what is not known there is
left as it stands. Headless runs neither read nor write it.
"""

from settings.Kinds import Kind, textOf
from settings.Store import (find, get, giveTo, giveToPlayer, keep, onChange, path, reset, resetAll, set, show, trouble)
from settings.Table import SETTINGS, Setting
from settings.Trial import Trial, doFrame, trial, tryOut

__all__ = ['Kind', 'SETTINGS', 'Setting', 'Trial', 'doFrame', 'find', 'get', 'giveTo', 'giveToPlayer', 'keep',
           'onChange', 'path', 'reset', 'resetAll', 'set', 'show', 'textOf', 'trial', 'trouble', 'tryOut']
