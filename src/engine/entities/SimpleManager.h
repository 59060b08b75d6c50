// SimpleManager: runs each of its components once a frame, oldest first.
#pragma once

#include "engine/entities/AbstractManager.h"
#include "engine/entities/SimpleComponent.h"

#include <cstdint>
#include <set>
#include <vector>

/// Manager of components that need nothing but their own frame step.
///
/// Runs them in ascending handle number, which is the order of creation. A component added during the walk is reached
/// in the same walk if it sorts behind the one at work; removal happens in cremation, between walks.
class SimpleManager : public AbstractManager
{
    KV_REFLECTED(SimpleManager)
public:
    using ComponentSet = std::set<Handle<SimpleComponent>>;

    SimpleManager() = default;

    /// Runs the frame step of every component that still exists, oldest first.
    void doFrame() override;
    Handle<AbstractComponent> constructComponent(const ReflectorPtr &type) override;
    void addComponentToManager(Handle<AbstractComponent> component, Handle<Entity> entity) override;
    void removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity> entity) override;
    /// Murders the component unless it is dying already.
    void destroyComponent(Handle<AbstractComponent> component) override;

    /// The components in the order they run.
    const ComponentSet &getComponents() const { return components; }

private:
    /// The set as flat arrays, right as long as the set stands and no object is born or dies.
    struct WalkOrder
    {
        std::vector<Handle<SimpleComponent>> handles;
        std::vector<SimpleComponent *> objects;
        std::uint64_t objectChanges = 0; ///< births and deaths that the objects take account of
        std::uint32_t setChanges = 0;    ///< changes of the set that the handles take account of
    };

    void refreshWalkOrder();
    void runBehind(Handle<SimpleComponent> last);

    ComponentSet components;
    std::uint32_t setChanges = 0; ///< how often the set has changed
    WalkOrder walkOrder;
    bool walking = false;
};
