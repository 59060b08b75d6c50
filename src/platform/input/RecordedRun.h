// RecordedRun: what a run must be for recorded input to mean in it what it meant when it was recorded.
#pragma once

#include "foundation/KVString.h"

#include <cstdint>

/// The circumstances of a run's input.
struct RecordedRun
{
    String level;           ///< in charge when the recording began
    unsigned seed = 0;      ///< that the engine's random numbers began with
    int width = 0;          ///< of the window, pixels
    int height = 0;         ///< of the window, pixels
    std::int64_t clock = 0; ///< rate of the time source, ticks a second; 0 where the recording does not tell
};

/// The circumstances of the run that goes on now.
RecordedRun presentRun();
