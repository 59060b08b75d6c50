"""The files of scripts, as the level that runs was made from them."""

from __future__ import annotations

import os

import levelScripts


def moduleOf(file: str) -> str:
    """The name of the module that a script is; '' for what is none."""
    if not file.startswith(levelScripts.FOLDER + os.sep) or not file.endswith('.py'):
        return ''
    return os.path.relpath(file, levelScripts.FOLDER)[:-3].replace(os.sep, '.')
