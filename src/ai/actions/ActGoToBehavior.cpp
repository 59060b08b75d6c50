#include "ai/actions/ActGoToBehavior.h"

#include "ai/trees/BTComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"

ActionStatus ActGoToBehavior::update(Seconds)
{
    auto *const component = componentOf<BTComponent>(getParent(), ComponentKeys::behaviors);
    if (!component)
        return AS_InvalidHandle;
    // A copy: the switch terminates this action.
    const String target = behavior;
    component->setBehavior(target);
    return AS_Complete;
}

Handle<Action> ActGoToBehavior::clone()
{
    const Handle<Action> copy = cloneAction();
    if (auto action = unchecked_handle_cast<ActGoToBehavior>(copy).lookup())
        action->setBehaviorLookup(behavior);
    return copy;
}
