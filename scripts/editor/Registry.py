"""What the editor is made of by kind: classes that tell their name, found in the modules of some packages."""

from __future__ import annotations

import importlib
import pkgutil
import traceback
from typing import Generic, TypeVar

import kaVel

_C = TypeVar('_C', bound='Registered')
_Cls = TypeVar('_Cls', bound='type[Registered]')


class Registered:
    """What a registry keeps classes of: a name to call it by, a sentence of help."""

    name = ''
    help = ''


class Registry(Generic[_C]):
    """Classes by name, in the order of their `order` and then of their names."""

    def __init__(self, kind: str, *packages: str):
        self.kind, self._packages = kind, packages
        self._classes: dict[str, type[_C]] = {}

    def add(self, cls: _Cls) -> _Cls:
        """Enters a class, for use as its decorator; ValueError for one without a name or with another one's."""
        other = self._classes.get(cls.name)
        if not cls.name:
            raise ValueError('%s in %s: a %s needs a `name`' % (cls.__name__, cls.__module__, self.kind))
        if other and (other.__module__, other.__qualname__) != (cls.__module__, cls.__qualname__):
            raise ValueError('two %ss are called %r: %s and %s' % (self.kind, cls.name, other.__module__,
                                                                   cls.__module__))
        self._classes[cls.name] = cls  # type: ignore
        return cls

    def gather(self) -> list[str]:
        """Imports all modules of the packages, so that they enter what they have; says what could not be imported."""
        troubles: list[str] = []
        for name in self._modules(troubles):
            try:
                importlib.import_module(name)
            except Exception as error:
                kaVel.log('The %ss of %s are left out:\n%s' % (self.kind, name, traceback.format_exc()))
                troubles.append('%s is left out: %s' % (name, error))
        return troubles

    def all(self) -> list[type[_C]]:
        """All classes, in order."""
        return sorted(self._classes.values(), key=lambda cls: (getattr(cls, 'order', 100), cls.name))

    def named(self, name: str) -> type[_C]:
        """The class of this name; KeyError that names the nearest one."""
        try:
            return self._classes[name]
        except KeyError:
            raise KeyError('no %s %r%s' % (self.kind, name, kaVel.nearestHint(name, self._classes))) from None

    def _modules(self, troubles: list[str]) -> list[str]:
        names: list[str] = []
        for package in self._packages:
            try:
                folder = importlib.import_module(package).__path__
            except ModuleNotFoundError as error:
                if error.name != package:
                    troubles.append('%s is left out: %s' % (package, error))
                continue
            names += ['%s.%s' % (package, each.name) for each in pkgutil.iter_modules(folder)]
        return sorted(names)
