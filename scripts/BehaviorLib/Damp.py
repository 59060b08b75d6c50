"""The wet black thing: it hears and feels the light burn, and knows nothing else."""

import kaVel
from BehaviorLib.Growing import Growing
from kaVel import ActionStatus, StatusCode

#: Metres from its home within which it is there.
AT_HOME = 1.2


def buildDamp(btLib: kaVel.BTLib):
    """Adds the trees 'Damp', which hunts what it hears, searches, looks into what it suspects and goes home, and
    'DampBurning', which draws back from the light and then turns to 'Damp' again.

    Their creature has a child 'home' with a place, whose scale's x is how far from there it strays.
    """
    grow = Growing(btLib)
    grow.plant('Damp', grow.selector(
        grow.sequence(grow.ask(kaVel.Reflection.KnowsOfTarget),
                      grow.act(kaVel.make('ActPursue', actionName='hunts', speed=2.45, reach=0.35)),
                      grow.act(kaVel.make('ActSearch', actionName='feels around for it', speed=1.5, spots=3))),
        grow.sequence(grow.ask(kaVel.Reflection.RemembersTarget),
                      grow.act(kaVel.make('ActPursue', actionName='pours towards what it heard', speed=1.1,
                                          heeds=True)),
                      grow.act(kaVel.make('ActSearch', actionName='feels around for it', speed=1.1, spots=2))),
        grow.sequence(grow.ask(isAstray), grow.step(goHome, 'goes home')),
        grow.sequence(grow.act(kaVel.make('ActWander', actionName='pours about', speed=0.7, reach=4.0)),
                      grow.act(kaVel.make('ActLookAbout', actionName='lies and listens')))))
    grow.plant('DampBurning', grow.sequence(
        grow.selector(
            grow.act(kaVel.make('ActFlee', actionName='draws back from the light', speed=3.2, reach=7.0)),
            grow.act(kaVel.make('ActLookAbout', actionName='cowers in the light', heeds=False))),
        grow.act(kaVel.make('ActLookAbout', actionName='draws itself together', duration=2.0, heeds=False)),
        grow.act(kaVel.make('ActGoToBehavior', behaviorLookup='Damp'))))


def _wayHome(entity: kaVel.Entity) -> tuple[kaVel.Vec4, float, float]:
    """Where its home is, how far off, and how far it strays."""
    home, place = entity.getChild('home').getComponent('transform'), entity.getComponent('transform').position
    way = home.position - place
    return home.position, (way.x ** 2 + way.z ** 2) ** 0.5, home.scale.x


def isAstray(entity: kaVel.Entity) -> StatusCode:
    """Whether it is farther from home than it strays with nothing on its mind."""
    _, distance, strays = _wayHome(entity)
    return StatusCode.SC_Success if distance > strays else StatusCode.SC_Failure


def goHome(entity: kaVel.Entity) -> ActionStatus:
    """Goes home until it hears or feels something."""
    home, distance, _ = _wayHome(entity)
    follower = entity.getComponent('pathFollower')
    if entity.getComponent('perception').remembers:
        return ActionStatus.AS_Failed
    if distance < AT_HOME:
        follower.stop()
        return ActionStatus.AS_Complete
    follower.speed = 0.9
    follower.goTo(home)
    return ActionStatus.AS_Failed if follower.failed else ActionStatus.AS_InProgress
