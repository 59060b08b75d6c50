"""Patterns of places that notice who enters them."""

import kaVel
from objects.GameObjects import placed


@kaVel.pattern
def Place(parent, name='', at=(0, 0, 0), size=(1, 1, 1)):
    """A named box in the world: its transform's position is the middle, its scale the extent in metres."""
    return placed(parent, name, at=at, scale=size)
