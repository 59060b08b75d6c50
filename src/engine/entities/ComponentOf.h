// componentOf: a component of an entity by its key, as the class that it must be.
#pragma once

#include "engine/entities/Entity.h"

/// The component that an entity has under a key.
/// @return null where the handle is no live entity, or the component is missing or of another class
template <class Component>
Component *componentOf(const Handle<Object> &hEntity, const String &key)
{
    const auto entity = handle_cast<Entity>(hEntity).lookup();
    return entity ? handle_cast<Component>(entity->getComponent(key)).lookup().ptr : nullptr;
}
