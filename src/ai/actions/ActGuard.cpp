#include "ai/actions/ActGuard.h"

#include "engine/transforms/TransformComponent.h"

#include <cmath>

ActGuard::ActGuard()
{
    actionName = SCS("keeps its place");
    reach = 1.f;
}

void ActGuard::setPost(Vec4 val)
{
    post = val;
    posted = true;
}

ActionStatus ActGuard::update(Seconds frameTime)
{
    if (!parts().canWalk())
        return AS_InvalidHandle;
    if (!posted)
    {
        setPost(place());
        ahead = parts().transform->getOrientation().generateRotation().getColumn(2);
    }
    if (isCalledOff())
    {
        stop();
        return AS_Complete;
    }
    incrementTime(frameTime);
    const bool isOff = std::hypot(post.x - place().x, post.z - place().z) > reach;
    if (isOff && !(begun && legs() == STUCK))
    {
        begun = true;
        goTo(post);
    }
    else if (legs() != ON_THE_WAY)
        lookAround(ahead, frameTime);
    return AS_InProgress;
}
