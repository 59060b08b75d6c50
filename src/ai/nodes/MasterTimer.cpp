#include "ai/nodes/MasterTimer.h"

#include "engine/levels/Coordinator.h"
#include "engine/time/TimerNames.h"

const TimeKeeper *MasterTimer::search(Object &below)
{
    const auto level = below.getAncestorOfType<Coordinator>().lookup();
    if (!level)
        return nullptr;
    timer = level->getTimerHandle(TimerNames::master);
    return timer.lookup().ptr;
}
