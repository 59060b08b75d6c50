#include "gameplay/player/LevelHandlers.h"

#include "engine/levels/BranchPostOffice.h"
#include "engine/levels/Coordinator.h"
#include "object/messages/PostOffice.h"
#include "object/tree/WellKnownPaths.h"

void hearInLevel(Object &object, const ReflectorPtr &messageType, const String &method)
{
    const auto level = object.getAncestorOfType<Coordinator>().lookup();
    const auto branch =
        level ? handle_cast<BranchPostOffice>(level->getDescendantByPath(WellKnownPaths::branchPostOffice)).lookup()
              : Handle<BranchPostOffice>::Result{};
    if (branch)
        branch->registerMessageHandler(messageType, object.bind(method));
    else
        PostOffice().registerMessageHandler(messageType, object.bind(method));
}
