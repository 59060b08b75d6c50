"""Tables of the game itself that can be taken anew while it runs: what stands in them is put in the old ones' place."""

from __future__ import annotations

import importlib.util
import sys
from typing import Any, Callable

import bindings.Bound
import bindings.Table
import kaVel  # noqa: F401 (tables need it)
import levelScripts
import settings.Store
import settings.Table


def _takeSettings() -> None:
    before = {setting.name: setting.default for setting in settings.Table.SETTINGS}
    _replace('settings.Table')
    settings.Store.followTable(before)


def _takeBindings() -> None:
    _replace('bindings.Table')
    bindings.Bound.followTable()


#: Module -> how it is taken anew; raises what is wrong with it, and leaves the old one then.
TAKEN: dict[str, Callable[[], None]] = {'settings.Table': _takeSettings, 'bindings.Table': _takeBindings}


def _replace(name: str) -> None:
    """Runs a table's script anew, and gives all who have its names the new values."""
    old: Any = sys.modules[name]
    spec = importlib.util.spec_from_file_location(name, old.__file__)
    assert spec and spec.loader
    new: Any = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(new)
    for key, value in list(vars(new).items()):
        if key.startswith('_') or not hasattr(old, key):
            setattr(old, key, value)
            continue
        present = getattr(old, key)
        if isinstance(present, dict) and isinstance(value, dict):
            present.clear()
            present.update(value)
        elif present is not value:
            _replaceWith(key, present, value)


def _replaceWith(key: str, present: object, value: object) -> None:
    for module in list(sys.modules.values()):
        if levelScripts.isScript(module) and vars(module).get(key) is present:
            setattr(module, key, value)
