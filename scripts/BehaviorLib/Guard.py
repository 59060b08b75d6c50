"""Creatures that keep a place."""

import kaVel
from BehaviorLib.Growing import Growing


def buildGuard(btLib: kaVel.BTLib):
    """Adds the tree 'Guard': stands where it first stood; goes after whom it notices, and comes back."""
    grow = Growing(btLib)
    grow.plant('Guard', grow.selector(
        grow.sequence(grow.ask(kaVel.Reflection.KnowsOfTarget), grow.act(kaVel.make('ActPursue', speed=2.2)),
                      grow.act(kaVel.make('ActSearch', spots=1))),
        grow.act(kaVel.make('ActGuard'))))
