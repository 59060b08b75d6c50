"""Writes what was edited back into the scripts of a level.

    print(Writing.diff(level))          # what would change, as a unified diff
    files = Writing.save(level)         # the files that were written
"""

from __future__ import annotations

import kaVel
from editor.source.Refused import Refused


def diff(level: kaVel.Coordinator) -> str:
    """What `save` would change in all files, as a unified diff; '' for nothing."""
    raise Refused('nothing can be written yet')


def save(level: kaVel.Coordinator) -> list[str]:
    """Writes all edits into the files that they concern, which it returns; Refused writes nothing."""
    raise Refused('nothing can be written yet')


def newLevel(name: str) -> str:
    """Writes the script of a new level, a lit map to begin with, and returns its file."""
    raise Refused('nothing can be written yet')
