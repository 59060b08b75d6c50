#include "ai/nodes/BTRandomSequence.h"

StatusCode BTRandomSequence::run()
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
    case SC_NeedMoreTime:
        return SC_NeedMoreTime;
    case SC_Failure:
        shuffled.shouldReshuffle = true;
        return SC_Failure;
    default:
        if (++activeTask() < shuffled.shuffledChildren.size())
            return SC_NeedMoreTime;
        shuffled.shouldReshuffle = true;
        return SC_Success;
    }
}

void BTRandomSequence::terminate()
{
    BTTask::terminate();
    shuffled.shouldReshuffle = true;
}

void BTRandomSequence::reshuffleChildren()
{
    shuffled.shuffle(children);
    activeTask() = 0;
}
