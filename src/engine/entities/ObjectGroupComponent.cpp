#include "engine/entities/ObjectGroupComponent.h"

#include "engine/entities/ObjectGroupManager.h"

void ObjectGroupComponent::setGroup(Group val)
{
    if (val == group)
        return;
    const Group oldGroup = group;
    group = val;
    if (const auto manager = handle_cast<ObjectGroupManager>(getManager()).lookup())
        manager->changeGroups(::getHandle(this), oldGroup, val);
}
