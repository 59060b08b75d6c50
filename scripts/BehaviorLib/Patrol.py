"""Creatures that walk their round."""

from typing import Iterable

import kaVel
from BehaviorLib.Growing import Growing


def buildPatrol(btLib: kaVel.BTLib):
    """Adds the tree 'Patrol': walks from place to place of its round, and looks into what it notices on the way.

    The round is what `giveRound` gave the creature.
    """
    grow = Growing(btLib)
    grow.plant('Patrol', grow.selector(
        grow.sequence(grow.ask(kaVel.Reflection.KnowsOfTarget), grow.act(kaVel.make('ActPursue', speed=2.0)),
                      grow.act(kaVel.make('ActSearch', spots=2))),
        grow.sequence(grow.act(kaVel.make('ActPatrol')), grow.act(kaVel.make('ActLookAbout', duration=1.5)))))


def giveRound(creature: kaVel.Entity, places: Iterable[kaVel.Vec4]):
    """Gives a creature the round that it walks: places in the space of its map, the first again after the last."""
    route = kaVel.make('Entity', parent=creature, name='route')
    for number, place in enumerate(places):
        stop = kaVel.make('Entity', parent=route, name='place%d' % number)
        kaVel.addComponent(stop, 'transform', 'TransformComponent', position=place)
