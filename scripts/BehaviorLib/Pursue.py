"""Hunters."""

import kaVel
from BehaviorLib.Growing import Growing


def buildPursue(btLib: kaVel.BTLib):
    """Adds the tree 'Pursue': runs after whom it knows of, searches where it lost him, looks into what it suspects."""
    grow = Growing(btLib)
    grow.plant('Pursue', grow.selector(
        grow.sequence(grow.ask(kaVel.Reflection.KnowsOfTarget), grow.act(kaVel.make('ActPursue', speed=2.6)),
                      grow.act(kaVel.make('ActSearch'))),
        grow.sequence(grow.ask(kaVel.Reflection.RemembersTarget),
                      grow.act(kaVel.make('ActPursue', actionName='looks into it', speed=1.2, heeds=True)),
                      grow.act(kaVel.make('ActSearch'))),
        grow.tree('Wander')))
