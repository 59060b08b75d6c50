// Entity: an object that holds components, one for each manager key.
#pragma once

#include "engine/entities/AbstractComponent.h"
#include "object/tree/Object.h"

#include "foundation/KVString.h"

#include <map>

/// Anything in a level that has components: they are its children and are found by their manager's key.
class Entity : public Object
{
    KV_REFLECTED(Entity)
public:
    using ComponentList = std::map<String, Handle<AbstractComponent>>;

    Entity() = default;

    /// The component under a manager's key; invalid if the entity never had one.
    Handle<AbstractComponent> getComponent(const String &managerName);

    /// Makes a component of the class of this name under a manager's key.
    ///
    /// The coordinator makes the manager at first use. An unknown class or key, or an entity outside a coordinator's
    /// tree, is logged as an error with the nearest name and gives an invalid handle.
    Handle<AbstractComponent> addComponent(const String &managerName, const String &componentClassName);
    /// Makes a component of this class under a manager's key; see the form with a name.
    Handle<AbstractComponent> addComponent(const String &managerName, const ReflectorPtr &componentType);
    /// Makes a component of this class under a manager's key: `addComponent` under a name that scripts can tell apart.
    Handle<AbstractComponent> addComponentRP(const String &managerName, const ReflectorPtr &componentType);
    /// Makes a component of the one class that the manager of this key makes; see the form with a name.
    Handle<AbstractComponent> addComponent(const String &managerName);

private:
    friend class AbstractManager;

    void addComponent(const String &name, Handle<AbstractComponent> h);

    ComponentList components;
};
