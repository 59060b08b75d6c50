"""The scripts of mods as modules: they run as they were when the player allowed them, whatever their files are by now.

What `patterns/` and `scripts/` of the mod "night-caller" have is in the package `mod_night_caller`; its levels are
levels like the game's. Data-only mods have no modules, whatever lies in their folders. A level that is data becomes a
module, too, which nothing is run for.
"""

from __future__ import annotations

import importlib.abc
import importlib.machinery
import os
import sys
import types
from typing import Callable, Sequence

#: Gives a module its names.
Fill = Callable[[types.ModuleType], None]


class Finder(importlib.abc.MetaPathFinder):
    """Finds the modules that mods bring, before those of the game."""

    def __init__(self) -> None:
        self.fills: dict[str, tuple[str, Fill]] = {}  # by name: the file, and what makes the module

    def addScript(self, name: str, file: str, source: bytes, before: Callable[[], None]) -> None:
        """Brings a module by what its script says; `before` is called ahead of it."""
        def run(module: types.ModuleType) -> None:
            before()
            exec(compile(source, file, 'exec', dont_inherit=True), module.__dict__)
        self.add(name, file, run)

    def add(self, name: str, file: str, fill: Fill) -> None:
        """Brings a module that a function fills."""
        self.fills[name] = file, fill
        package = name.rpartition('.')[0]
        if package and package != 'levels' and package not in self.fills:
            self.add(package, os.path.dirname(file), lambda module: None)

    def find_spec(self, fullname: str, path: Sequence[str] | None = None,
                  target: types.ModuleType | None = None) -> importlib.machinery.ModuleSpec | None:
        if fullname not in self.fills:
            return None
        file, fill = self.fills[fullname]
        isPackage = any(name.startswith(fullname + '.') for name in self.fills)
        spec = importlib.machinery.ModuleSpec(fullname, _Loader(fill), origin=file, is_package=isPackage)
        spec.has_location = True
        return spec

    def begin(self) -> None:
        if self not in sys.meta_path:
            sys.meta_path.insert(0, self)


class _Loader(importlib.abc.Loader):
    def __init__(self, fill: Fill):
        self.fill = fill

    def create_module(self, spec: importlib.machinery.ModuleSpec) -> None:
        return None

    def exec_module(self, module: types.ModuleType) -> None:
        self.fill(module)
