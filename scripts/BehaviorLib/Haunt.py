"""What keeps to the dark near somebody."""

import kaVel
from BehaviorLib.Growing import Growing


def buildHaunt(btLib: kaVel.BTLib):
    """Adds the tree 'Haunt': lurks in the dark near its target, out of his sight, and moves on when there is light."""
    grow = Growing(btLib)
    grow.plant('Haunt', grow.sequence(grow.act(kaVel.make('ActHaunt', speed=2.4))))
