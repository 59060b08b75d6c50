#include "engine/transforms/ParentTransform.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/Entity.h"
#include "engine/transforms/ParentFollowerComponent.h"
#include "engine/transforms/TransformOffsetComponent.h"

#include <vector>

namespace
{
Handle<Entity>::Result parentEntity(const AbstractComponent &component)
{
    auto entity = component.getParent().lookup();
    return entity ? handle_cast<Entity>(entity->getParent()).lookup() : Handle<Entity>::Result();
}
} // namespace

TransformComponent *ownTransform(AbstractComponent &component)
{
    return checked_handle_cast<TransformComponent>(component.getSibling(ComponentKeys::transform)).lookup().ptr;
}

TransformComponent *parentTransform(const AbstractComponent &component)
{
    auto parent = parentEntity(component);
    return parent ? checked_handle_cast<TransformComponent>(parent->getComponent(ComponentKeys::transform)).lookup().ptr
                  : nullptr;
}

namespace
{
/// The follower that a chain from the top is placing now; those above it have been placed.
const AbstractComponent *placing = nullptr;

/// The follower of the parent of a component's entity; null where there is none.
SimpleComponent *followerAbove(const AbstractComponent &component)
{
    auto parent = parentEntity(component);
    return parent ? handle_cast<SimpleComponent>(parent->getComponent(ComponentKeys::parentFollower)).lookup().ptr
                  : nullptr;
}

/// Whether a follower places those above it before itself; one of a script's own need not.
bool placesThoseAbove(const SimpleComponent &follower)
{
    return follower.getType()->isSubclassOf(ParentFollowerComponent::staticType) ||
           follower.getType()->isSubclassOf(TransformOffsetComponent::staticType);
}

/// Runs the followers above one from the top down. A list rather than a call within a call, since a script may build a
/// chain that the processor's stack does not hold.
void placeThoseAbove(const AbstractComponent &follower)
{
    static auto &chain = *new std::vector<SimpleComponent *>;
    const std::size_t before = chain.size(); // of a chain whose top is a script's component, which has led to this call
    for (SimpleComponent *above = followerAbove(follower); above; above = followerAbove(*above))
    {
        chain.push_back(above);
        if (!placesThoseAbove(*above))
            break;
    }
    const AbstractComponent *const outer = placing;
    while (chain.size() > before)
    {
        SimpleComponent *const highest = chain.back();
        chain.pop_back();
        placing = highest;
        highest->doFrame();
    }
    placing = outer;
}
} // namespace

ParentTransform updatedParentTransform(AbstractComponent &follower)
{
    if (!parentEntity(follower))
        return {};
    if (&follower != placing)
        placeThoseAbove(follower);
    return {ownTransform(follower), parentTransform(follower)};
}
