"""What objects that no pattern has built are like, so that they can be built again.

    photo = Photo.take(root)
    root = photo.build(parent)

Classes, names and all properties that can be set and that differ from those of an object that was just made.
"""

from __future__ import annotations

from typing import Any

import kaVel

#: What is told otherwise, or goes with the place in the tree.
_LEFT = frozenset(('name', 'parent', 'pattern', 'mapName'))


class Photo:
    """An object with all below it."""

    def __init__(self, root: Any):
        self.name: str = root.getName()
        self._type = root._getType()
        self._isComponent = self._type.isSubclassOf(kaVel.Reflection.AbstractComponent)
        self._pattern = root.pattern
        self._values = {name: getattr(root, name) for name in _settable(root)}
        # What a component makes for itself it will make again.
        self._below = [] if self._isComponent else [Photo(each) for each in root.children if not each.isDying()]

    def build(self, parent: Any) -> Any:
        """Builds it below a parent and completes its load; Refused by nobody, what cannot be set is told."""
        root = self._make(parent)
        kaVel.finishLoad(root)
        return root

    def _make(self, parent: Any) -> Any:
        if self._isComponent:
            root: Any = kaVel.addComponent(parent, self.name, self._type)
        else:
            root = kaVel.make(self._type.name, parent=parent, name=self.name)
        root.setPattern(self._pattern)
        for name, value in self._values.items():
            try:
                if getattr(root, name) != value:
                    setattr(root, name, value)
            except Exception as error:
                kaVel.log('%s of %s is not what it was: %s' % (name, self.name, error))
        for each in self._below:
            each._make(root)
        return root


def take(root: Any) -> Photo:
    """What an object and all below it are now."""
    return Photo(root)


def _settable(handle: Any) -> list[str]:
    """The properties that can be read and set."""
    names = {name for kind in type(handle).__mro__ for name, member in vars(kind).items()
             if type(member).__name__ == 'reflected_property' and name not in _LEFT
             and hasattr(handle, 'set' + name[:1].upper() + name[1:])}
    return sorted(name for name in names if _canRead(handle, name))


def _canRead(handle: Any, name: str) -> bool:
    try:
        return not isinstance(getattr(handle, name), kaVel.Handle)
    except Exception:
        return False
