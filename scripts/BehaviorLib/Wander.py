"""Creatures that stroll about with nothing on their mind."""

import kaVel
from BehaviorLib.Growing import Growing


def buildWander(btLib: kaVel.BTLib):
    """Adds the tree 'Wander': strolls to a place near by, looks about there, and so on.

    It ends as soon as the creature knows of its target, so that a tree around it can turn to something else.
    """
    grow = Growing(btLib)
    grow.plant('Wander', grow.sequence(grow.act(kaVel.make('ActWander')), grow.act(kaVel.make('ActLookAbout'))))
