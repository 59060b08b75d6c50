"""Shy creatures."""

import kaVel
from BehaviorLib.Growing import Growing


def buildFlee(btLib: kaVel.BTLib):
    """Adds the tree 'Flee': runs into the dark, away from whom it knows of, and waits there; strolls otherwise."""
    grow = Growing(btLib)
    grow.plant('Flee', grow.selector(
        grow.sequence(grow.ask(kaVel.Reflection.KnowsOfTarget), grow.act(kaVel.make('ActFlee', speed=3.0)),
                      grow.act(kaVel.make('ActLookAbout', actionName='listens in the dark', heeds=False))),
        grow.tree('Wander')))
