#include "platform/input/RecordedRun.h"

#include "engine/levels/GameLoop.h"
#include "engine/screen/ScreenMetrics.h"
#include "engine/systems/SystemSystem.h"
#include "engine/time/TimeSystem.h"

#include "foundation/Random.h"

RecordedRun presentRun()
{
    RecordedRun run;
    if (const auto level = getSystemDeref<GameLoopSystem>().getCurrentlyActiveCoordinator().lookup())
        run.level = level->getLevelName();
    run.seed = engineSeed();
    run.width = getScreenMetrics().width;
    run.height = getScreenMetrics().height;
    run.clock = getSystemDeref<TimeSystem>().getTicksPerSecond();
    return run;
}
