"""Where the game keeps a user's files: the platform's folders for settings, for what was made, for what nobody set, and
for what can be made again.

    userFolders.of('config')    # ~/.config/mornal; empty where the user has no home

Nothing is made here: whoever writes makes the folder.
"""

import os

#: Kind -> variable of the platform's convention, and where below the home the folder is without it.
KINDS = {'config': ('XDG_CONFIG_HOME', '.config'), 'data': ('XDG_DATA_HOME', os.path.join('.local', 'share')),
         'state': ('XDG_STATE_HOME', os.path.join('.local', 'state')), 'cache': ('XDG_CACHE_HOME', '.cache')}


def of(kind: str) -> str:
    """The game's folder of a kind of KINDS; empty where the user has no place for it."""
    variable, usual = KINDS[kind]
    base, home = os.environ.get(variable, ''), os.environ.get('HOME', '')
    if not os.path.isabs(base):  # by convention that counts as none
        base = os.path.join(home, usual) if os.path.isabs(home) else ''
    return base and os.path.join(base, 'mornal')


def file(kind: str, name: str) -> str:
    """A file in the game's folder of a kind; empty where there is none."""
    folder = of(kind)
    return folder and os.path.join(folder, name)
