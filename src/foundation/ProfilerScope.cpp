// ProfilerScope: the sink in force.
#include "foundation/ProfilerScope.h"

constinit IProfilerSink *profilerSink = nullptr;
