// AbstractComponent: a piece of behaviour or data that belongs to one entity and one manager.
#pragma once

#include "object/tree/Object.h"

class AbstractManager;

/// Base of all components.
///
/// A child of its entity, named after its manager's key. At construction it has neither name, parent nor siblings:
/// what needs those belongs in `onLoadComplete`.
class AbstractComponent : public Object
{
    KV_REFLECTED(AbstractComponent)
public:
    AbstractComponent() = default;

    /// Called by the loading script when the component stands in the tree, before its properties are set.
    virtual void onLoadBegin() {}

    /// Takes the component out of its manager, however it came to die. An overrider must call this base.
    void onMurder() override;

    /// The component of the same entity under another manager's key; invalid if there is none or no entity.
    Handle<AbstractComponent> getSibling(const String &key);

    /// Stores the manager that made the component.
    void setManager(Handle<AbstractManager> manager);
    /// The manager that made the component; invalid before it has one.
    Handle<AbstractManager> getManager() const { return manager; }

private:
    Handle<AbstractManager> manager;
};
