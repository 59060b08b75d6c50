#include "ai/nodes/BTRandomSelector.h"

StatusCode BTRandomSelector::run()
{
    if (shuffled.shouldReshuffle)
    {
        shuffled.shouldReshuffle = false;
        reshuffleChildren();
    }
    BTTask *const child = resolve(shuffled.shuffledChildren, activeTask());
    if (!child)
        return reportMissingChild(activeTask());

    switch (child->tick())
    {
    case SC_Success:
        shuffled.shouldReshuffle = true;
        return SC_Success;
    case SC_Failure:
        if (++activeTask() < shuffled.shuffledChildren.size())
            return SC_NeedMoreTime;
        shuffled.shouldReshuffle = true;
        return SC_Failure;
    default:
        return SC_NeedMoreTime;
    }
}

void BTRandomSelector::terminate()
{
    BTTask::terminate();
    shuffled.shouldReshuffle = true;
}

void BTRandomSelector::reshuffleChildren()
{
    shuffled.shuffle(children);
    activeTask() = 0;
}
