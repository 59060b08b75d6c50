// ShelfSystem: objects that were taken out of a level and may be put back as they were.
#pragma once

#include "engine/systems/System.h"

#include <map>
#include <set>

class Coordinator;

/// Keeps subtrees alive that stand in no tree: not drawn, not touched, not updated, found by no path.
///
/// What is put back is what was taken, to the last field, in a fraction of the time that building it takes. Only
/// subtrees of things that do nothing by themselves and that nobody registers are taken: furniture, walls, lamps, loose
/// bodies. What belongs to a level is murdered when that is gone. Started by the first that takes something.
class ShelfSystem : public System
{
    KV_REFLECTED(ShelfSystem)
public:
    ShelfSystem() = default;

    /// Whether an object and all below it can be taken out of its level and put back.
    bool canTake(Handle<Object> root) const;
    /// Takes an object with all below it out of its level.
    /// @return whether it could be; otherwise nothing has happened
    bool take(Handle<Object> root);
    /// Hangs what was taken below a parent again, in the level that it was taken from: before a sibling, or behind all.
    /// @return whether it was here and the parent stands in that level; otherwise nothing has happened
    bool giveBack(Handle<Object> root, Handle<Object> parent, Handle<Object> sibling);
    /// Whether this object was taken and is still here.
    bool holds(Handle<Object> root) const;
    /// Murders what was taken; nothing happens to anything else.
    void discard(Handle<Object> root);
    /// Count of what was taken and is still here.
    int getCount() const;

    /// Murders what was taken from levels that are gone. Frame step.
    void update();

protected:
    void systemStartup() override {}
    /// Murders all that is still here.
    void systemShutdown() override;
    DependencyList systemDependencies() override;
    UpdaterList getUpdaters() override;

private:
    using Roots = std::set<Handle<Object>>;

    static void murderAll(const Roots &roots);

    std::map<Handle<Coordinator>, Roots> shelves; ///< by the level that it was taken from
};
