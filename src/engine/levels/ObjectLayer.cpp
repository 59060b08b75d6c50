#include "engine/levels/ObjectLayer.h"

#include "engine/levels/BranchPostOffice.h"
#include "engine/levels/GameLoop.h"
#include "engine/levels/PersistentStateComponent.h"
#include "engine/systems/SystemSystem.h"
#include "object/messages/PostOffice.h"
#include "object/tree/WellKnownPaths.h"

namespace
{
Handle<Object> systemsRoot()
{
    return SystemSystem::getInstance();
}

Handle<Object> currentLevelRoot()
{
    auto loop = getSystem<GameLoopSystem>().lookup();
    return loop ? loop->getCurrentlyActiveCoordinator() : Handle<Coordinator>();
}

void recordPersistentCall(const Handle<Object> &store, const Handle<Object> &object, const String &funcName,
                          const SavedArguments &arguments)
{
    if (const auto state = handle_cast<PersistentStateComponent>(store).lookup())
        state->addFunction(object, funcName, arguments);
}
} // namespace

void connectObjectLayer()
{
    registerPathPrefix(WellKnownPaths::currentLevel, currentLevelRoot);
    registerPathPrefix(WellKnownPaths::systems, systemsRoot);
    PostOffice().setBranchDelivery(deliverToCurrentBranch);
    setPersistentCallRecorder(recordPersistentCall);
}
