"""Patterns of places that notice who enters them."""

import kaVel
from objects.GameObjects import placed
from objects.Placing import Triple


@kaVel.pattern
def Place(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), size: Triple = (1, 1, 1)):
    """A named box in the world: its transform's position is the middle, its scale the extent in metres."""
    return placed(parent, name, at=at, scale=size)
