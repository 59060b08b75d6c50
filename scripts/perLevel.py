"""Which level something belongs to, and what modules that outlive levels remember of them."""

from typing import Any, TypeVar

import kaVel

_T = TypeVar('_T')


class PerLevel(dict[kaVel.Coordinator, _T]):
    """Values by the coordinator of a level; what belongs to levels that are gone falls out."""

    def __setitem__(self, level: kaVel.Coordinator, value: _T):
        for gone in [each for each in self if not each]:
            del self[gone]
        super().__setitem__(level, value)


def levelOf(anything: kaVel.Object) -> kaVel.Coordinator:
    """The level that an object stands in, or that it is."""
    above: Any = anything
    isLevel = anything._getType().isSubclassOf(kaVel.Reflection.Coordinator)
    return above if isLevel else above.getAncestorOfType(kaVel.Reflection.Coordinator)
