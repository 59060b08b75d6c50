#include "engine/levels/BranchPostOffice.h"

#include "engine/levels/GameLoop.h"
#include "engine/systems/SystemSystem.h"
#include "object/tree/WellKnownPaths.h"

namespace
{
/// The branch of the level that was asked for last: a path is walked once a level and not once a message.
struct KnownBranch
{
    Handle<Coordinator> level;
    Handle<BranchPostOffice> office;
};

bool stillStands(const KnownBranch &known, const Handle<Coordinator> &level)
{
    if (known.level != level)
        return false;
    auto office = known.office.lookup();
    auto entity = office ? office->getParent().lookup() : Handle<Object>::Result();
    return entity && entity->getParent() == level;
}

Handle<BranchPostOffice> findBranch(const Handle<Coordinator> &level)
{
    auto root = level.lookup();
    return root ? handle_cast<BranchPostOffice>(root->getDescendantByPath(WellKnownPaths::branchPostOffice))
                : Handle<BranchPostOffice>();
}
} // namespace

void BranchPostOffice::registerMessageHandler(ReflectorPtr messageType, ReflectorPtr handler)
{
    listeners.add(messageType, std::move(handler));
}

void BranchPostOffice::submitMessage(ReflectorPtr messageType, SavedArguments &sa)
{
    listeners.deliver(messageType, sa);
}

void deliverToCurrentBranch(const ReflectorPtr &messageType, SavedArguments &sa)
{
    static KnownBranch known;
    if (!SystemSystem::getInstance().isValid())
        return;
    auto loop = getSystem<GameLoopSystem>().lookup();
    if (!loop)
        return;
    const Handle<Coordinator> level = loop->getCurrentlyActiveCoordinator();
    if (!stillStands(known, level))
        known = KnownBranch{level, findBranch(level)};
    if (auto office = known.office.lookup())
        office->submitMessage(messageType, sa);
}
