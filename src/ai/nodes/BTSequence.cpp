#include "ai/nodes/BTSequence.h"

void BTSequence::terminate()
{
    BTTask::terminate();
    setActiveTask(0);
}
