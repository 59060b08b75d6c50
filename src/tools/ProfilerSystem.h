// ProfilerSystem: the record of where the time of the last frames went.
#pragma once

#include "engine/System.h"

/// Profiler of the whole run. Records nothing yet.
class ProfilerSystem : public System
{
    KV_REFLECTED(ProfilerSystem)
public:
    ProfilerSystem() = default;

    /// Told by the game loop that a frame begins.
    void newFrame() {}

protected:
    void systemStartup() override {}
    void systemShutdown() override {}
    DependencyList systemDependencies() override { return {}; }
};
