// BTComponent: the behaviour trees of a creature, of which one acts.
#pragma once

#include "ai/nodes/BTTask.h"

#include "engine/entities/SimpleComponent.h"

#include <unordered_map>

/// Has an entity act by behaviour trees. Component key: "behaviors".
///
/// Holds a copy of its own of each tree that it was given by name, and ticks exactly one of them a frame: what that
/// gives as a whole goes nowhere, a finished tree begins again in the next frame. The copies stand below the entity and
/// die with it. A name that the library does not know is passed over.
class BTComponent : public SimpleComponent
{
    KV_REFLECTED(BTComponent)
public:
    using BTMap = std::unordered_map<String, Handle<BTTask>>;
    using BTMapIt = BTMap::iterator;

    BTComponent() = default;

    /// Ticks the active tree.
    void doFrame() override;
    /// Begins with the default behaviour.
    void onLoadComplete() override;
    /// Writes above the creature what it does and why, with the switch of minds.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;

    /// Adds several behaviours by their names, in order; ValueError for anything but a list of texts.
    void setBehaviors(const PythonObject &behaviorList);
    /// The names of the behaviours, as a list.
    PythonObject getBehaviors() const;
    /// Adds a behaviour by its name, with a copy of the library's tree; one that is there already stays.
    void addBehavior(String behaviorName);
    /// Sets which behaviour the creature begins with when it is loaded.
    void setDefaultBehavior(String behavior);
    /// Which behaviour the creature begins with.
    String getDefaultBehavior() const { return defaultBehavior; }
    /// Turns to another behaviour, after the tree at work was terminated.
    ///
    /// Nothing happens for a name that was not added, nor while the active behaviour has no tree.
    void setBehavior(String behaviorName);

    /// Name of the behaviour whose tree is ticked.
    String getActiveBehavior() const { return activeBehavior; }
    /// Sets which behaviour's tree is ticked, without terminating any.
    void setActiveBehavior(String val);
    /// The tree of a behaviour; invalid for a name that was not added.
    Handle<BTTask> getTree(String behaviorName) const;

    /// All trees as text, the active one first, with the last results.
    String drawTree() const;
    /// The leaf at which the active tree stands, and how; "" without a tree.
    String tell() const;
    /// What the creature does and why, in one sentence.
    String getWhy() const;

    const BTMap &getTrees() const { return behaviors; }

private:
    /// The root of the active tree, which is right as long as no object is born or dies.
    struct ActiveRoot
    {
        static constexpr std::uint64_t NEVER = ~std::uint64_t(0);

        BTTask *task = nullptr;
        const String *name = nullptr;        ///< the behaviour's, in the map
        std::uint64_t objectChanges = NEVER; ///< births and deaths that the root takes account of
    };

    void findActiveRoot();

    ActiveRoot activeRoot;
    BTMap behaviors;
    String activeBehavior;
    String defaultBehavior;
};
