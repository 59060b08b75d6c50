// TextBuffSystem: turns key codes into editing tokens.
#pragma once

#include "engine/systems/System.h"

/// Text typed since it was last read. Empty yet.
class TextBuffSystem : public System
{
    KV_REFLECTED(TextBuffSystem)
public:
    TextBuffSystem() = default;

protected:
    void systemStartup() override {}
    void systemShutdown() override {}
    DependencyList systemDependencies() override;
};
