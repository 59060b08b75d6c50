// AbstractManager: maker and keeper of all components of one kind in a level.
#pragma once

#include "engine/entities/AbstractComponent.h"

#include "foundation/KVString.h"
#include "foundation/TimeTypes.h"

class Entity;

/// Base of all managers.
///
/// Child of its coordinator, named after its key with "Manager" behind it, made when the key is first asked for. The
/// key joins the three: a manager "physics" makes components named "physics", which their entity finds under "physics".
class AbstractManager : public Object
{
    KV_REFLECTED(AbstractManager)
public:
    AbstractManager() = default;

    /// The manager's frame step.
    virtual void doFrame() = 0;
    /// Called once, when the manager stands under its coordinator.
    virtual void onAddToCoordinator() {}
    /// Makes a component of this class; invalid, with an error logged, if the class does not serve this manager.
    virtual Handle<AbstractComponent> constructComponent(const ReflectorPtr &type) = 0;
    /// Takes a component into the manager's care.
    virtual void addComponentToManager(Handle<AbstractComponent> component, Handle<Entity> entity) = 0;
    /// Drops a component from the manager's care; nothing happens if it was not there.
    virtual void removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity> entity) = 0;
    /// Ends a component's life in the manner of this manager.
    virtual void destroyComponent(Handle<AbstractComponent> component) = 0;
    /// The one class of this manager's components; null where a component's class has to be named.
    virtual ReflectorPtr getComponentClass() const { return nullptr; }

    /// Makes a component of this class and gives it to the entity under this manager's key.
    ///
    /// A component that the entity already has under the key stays alive as a child but is no longer found by the key.
    /// A class that does not serve this manager, or a dead entity, is logged as an error and gives an invalid handle.
    Handle<AbstractComponent> addComponentToEntity(const ReflectorPtr &type, Handle<Entity> entity);
    /// Gives the entity a component of the one class that this manager makes; see the other form.
    ///
    /// A manager of components of many classes logs an error and gives an invalid handle.
    Handle<AbstractComponent> addComponentToEntity(Handle<Entity> entity);
    /// Takes this manager's component from its entity and murders it.
    ///
    /// The entity keeps its entry for the key: it stops resolving once the component is cremated.
    void removeComponentFromEntity(Handle<AbstractComponent> component);

    /// Key under which the coordinator knows this manager and entities know its components.
    String getKey() const { return key; }
    /// Ticks that the last frame step took, where the manager measures itself.
    TimerTicks getFrameTime() const { return frameTime; }
    /// Milliseconds that the last frame step took, where the manager measures itself.
    double getFrameTimeMS() const;

protected:
    friend class Coordinator;

    /// Makes a component of this class if it derives from `base`; otherwise an error is logged, naming this manager,
    /// the class and what would serve, and the handle is invalid.
    Handle<AbstractComponent> constructDerived(const ReflectorPtr &type, const ReflectorPtr &base) const;

    String key;
    TimerTicks frameTime = 0;
};
