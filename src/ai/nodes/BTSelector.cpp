#include "ai/nodes/BTSelector.h"

void BTSelector::terminate()
{
    BTTask::terminate();
    setActiveTask(0);
}
