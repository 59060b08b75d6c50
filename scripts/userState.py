"""Where the game keeps from run to run what nobody set: the platform's folder for such, beside the logs."""

import os


def path(name: str) -> str:
    """The file of this name; empty where the user has no place for it."""
    state = os.environ.get('XDG_STATE_HOME', '')
    home = os.environ.get('HOME', '')
    if not os.path.isabs(state):  # by convention that counts as none
        state = home and os.path.join(home, '.local', 'state')
    return state and os.path.join(state, 'mornal', name)
