"""Behaviour trees of creatures, built by the factories of the library of trees.

Each module builds one tree, which has the module's name: a creature acts by it that is given it by that name.

    kaVel.addComponent(creature, 'behaviors', 'BTComponent', behaviors=['Pursue'], defaultBehavior='Pursue')

Creatures need a transform, a body, 'pathFollower' and 'perception' beside it. A module of your own, with a function
`buildX(btLib)` beside it, is added to CREATURES; a level may as well call such a function itself. What a creature does,
and why, `kaVel.why(creature)` tells.
"""

import importlib

import kaVel

#: The modules whose trees the library builds when it starts; Wander is built first, since others stand on it.
CREATURES = ('Search', 'Pursue', 'Flee', 'Patrol', 'Guard', 'Haunt', 'Damp', 'Guest')


def buildCreatures(btLib: kaVel.BTLib):
    """Adds the trees of all modules of CREATURES; the library calls it when it starts."""
    for name in CREATURES:
        getattr(importlib.import_module('BehaviorLib.' + name), 'build' + name)(btLib)
