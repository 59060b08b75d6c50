"""What modules that outlive levels remember of them."""

from typing import TypeVar

import kaVel

_T = TypeVar('_T')


class PerLevel(dict[kaVel.Coordinator, _T]):
    """Values by the coordinator of a level; what belongs to levels that are gone falls out."""

    def __setitem__(self, level: kaVel.Coordinator, value: _T):
        for gone in [each for each in self if not each]:
            del self[gone]
        super().__setitem__(level, value)
