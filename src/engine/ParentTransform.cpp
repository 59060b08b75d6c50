#include "engine/ParentTransform.h"

#include "engine/Entity.h"

namespace
{
String transformKey()
{
    static const String key = SCS("transform");
    return key;
}

Handle<Entity>::Result parentEntity(const AbstractComponent &component)
{
    auto entity = component.getParent().lookup();
    return entity ? handle_cast<Entity>(entity->getParent()).lookup() : Handle<Entity>::Result();
}
} // namespace

TransformComponent *ownTransform(AbstractComponent &component)
{
    return checked_handle_cast<TransformComponent>(component.getSibling(transformKey())).lookup().ptr;
}

TransformComponent *parentTransform(const AbstractComponent &component)
{
    auto parent = parentEntity(component);
    return parent ? checked_handle_cast<TransformComponent>(parent->getComponent(transformKey())).lookup().ptr
                  : nullptr;
}

ParentTransform updatedParentTransform(AbstractComponent &follower)
{
    static const String followerKey = SCS("parentFollower");
    auto parent = parentEntity(follower);
    if (!parent)
        return {};
    if (auto above = handle_cast<SimpleComponent>(parent->getComponent(followerKey)).lookup())
        above->doFrame();
    return {ownTransform(follower), parentTransform(follower)};
}
