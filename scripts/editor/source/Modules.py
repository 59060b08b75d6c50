"""Which module a file of scripts is."""

from __future__ import annotations

import os
import sys

import levelScripts

_names: dict[str, str] = {}


def moduleOf(file: str) -> str:
    """The name of the module that a script is; '' for what is none."""
    name = _names.get(file)
    if name is None or getattr(sys.modules.get(name), '__file__', None) != file:
        name = _names[file] = _sought(file)
    return name


def _sought(file: str) -> str:
    for name, module in list(sys.modules.items()):
        if getattr(module, '__file__', None) == file:
            return name
    if not file.startswith(levelScripts.FOLDER + os.sep) or not file.endswith('.py'):
        return ''
    return os.path.relpath(file, levelScripts.FOLDER)[:-3].replace(os.sep, '.')
