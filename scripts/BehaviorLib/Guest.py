"""The one who walks his points, and comes to light."""

import kaVel
from BehaviorLib.Growing import Growing
from kaVel import ActionStatus
from objects.creatures.Prey import Prey

#: Metres a second at which it comes to light.
HURRY = 1.3


def buildGuest(btLib: kaVel.BTLib):
    """Adds the tree 'Guest': goes to light that it perceives, waits where it was, and walks its points otherwise.

    Its creature has a `DummyObjectComponent` under 'dummy'.
    """
    grow = Growing(btLib)
    grow.plant('Guest', grow.selector(
        grow.sequence(grow.ask(kaVel.Reflection.KnowsOfTarget), grow.step(leavesItsPoints, 'leaves its way'),
                      grow.step(goesToTheLight, 'goes to the light'),
                      grow.act(kaVel.make('ActLookAbout', actionName='waits where the light was', heeds=False))),
        grow.step(walksItsPoints, 'walks its round')))


def leavesItsPoints(entity: kaVel.Entity) -> ActionStatus:
    """Turns from its points to something else."""
    entity.getComponent('dummy').stopWalking()
    return ActionStatus.AS_Complete


def goesToTheLight(entity: kaVel.Entity) -> ActionStatus:
    """Goes where it perceives light, and to the lamp itself once it sees that."""
    senses, follower = entity.getComponent('perception'), entity.getComponent('pathFollower')
    if not senses.remembers:
        follower.stop()
        return ActionStatus.AS_Failed
    prey, eye = Prey(entity), entity.getComponent('transform').position + senses.eyeOffset
    player = prey.place() if senses.seen and prey.shinesOn(eye, senses.sightRange) else None
    follower.speed = HURRY
    follower.goTo(senses.place if player is None else player)
    if follower.underWay or player is not None:
        return ActionStatus.AS_InProgress
    return ActionStatus.AS_Complete if follower.arrived else ActionStatus.AS_Failed


def walksItsPoints(entity: kaVel.Entity) -> ActionStatus:
    """Walks from point to point until it perceives light."""
    if entity.getComponent('perception').knows:
        return ActionStatus.AS_Failed
    dummy = entity.getComponent('dummy')
    if not dummy.followPoints:
        entity.getComponent('pathFollower').speed = dummy.walkSpeed
        dummy.followPoints = True
    return ActionStatus.AS_InProgress
