"""Creatures that look into what they heard or saw."""

import kaVel
from BehaviorLib.Growing import Growing


def buildSearch(btLib: kaVel.BTLib):
    """Adds the tree 'Search': goes to where it suspects somebody and looks around there; strolls while it does not."""
    grow = Growing(btLib)
    grow.plant('Search', grow.selector(
        grow.sequence(grow.ask(kaVel.Reflection.RemembersTarget),
                      grow.act(kaVel.make('ActPursue', actionName='looks into it', speed=1.2, heeds=False)),
                      grow.act(kaVel.make('ActSearch'))),
        grow.tree('Wander')))
