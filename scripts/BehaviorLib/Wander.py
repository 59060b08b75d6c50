"""Creatures that stroll about with nothing on their mind."""

import kaVel


def buildWander(btLib: kaVel.BTLib):
    """Adds the tree 'Wander': strolls for as long as it is let.

    The library calls it when it starts.
    """
    root = btLib.BTCreateSequence()
    btLib.BTAddChild(root, btLib.BTCreateAction(kaVel.make('ActWander')))
    btLib.addBehaviorTree('Wander', root)
