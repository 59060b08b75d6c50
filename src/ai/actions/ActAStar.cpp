#include "ai/actions/ActAStar.h"

#include "ai/paths/PathComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"

ActionStatus ActAStar::update(Seconds frameTime)
{
    auto *const paths = componentOf<PathComponent>(getParent(), ComponentKeys::path);
    if (!paths)
        return AS_InvalidHandle;
    const GridCell target = paths->getPathTarget();
    if (elapsedTime == 0.0 && target.isValid() && target.getFloatValue() == 0.f)
    {
        paths->submitPathRequest(PathRequest(handle_cast<Entity>(getParent()), target));
        incrementTime(frameTime);
    }
    const PathStatus status = paths->requestStatus();
    paths->setRequestStatus(PS_Unknown);
    switch (status)
    {
    case PS_Succeeded:
        return AS_Complete;
    case PS_Failed:
        return AS_Failed;
    default:
        return AS_InProgress;
    }
}
