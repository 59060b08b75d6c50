"""Floor and ceiling that the engine derives from a map's size.

Nothing to look at: they keep bodies inside the map. The engine makes one of each for a map whose transform says how
large it is, fits its box to the map's width and depth, and lays it below or above; see `MapDataComponent`.
"""

import kaVel
from objects.Placing import placed
from objects.things.Bodies import addWall

#: More than anything falls in a frame, metres.
THICKNESS = 1.0


def _slab(parent: kaVel.Object, name: str):
    slab = placed(parent, name)
    kaVel.addComponent(slab, 'parentFollower', 'ParentFollowerComponent')
    addWall(slab, (1, THICKNESS, 1))
    return slab


@kaVel.pattern
def Floor(parent: kaVel.Object, name: str = ''):
    """What nothing falls through, below a map."""
    return _slab(parent, name)


@kaVel.pattern
def Ceiling(parent: kaVel.Object, name: str = ''):
    """What nothing flies through, above a map."""
    return _slab(parent, name)
