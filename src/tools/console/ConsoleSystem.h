// ConsoleSystem: the in-game command line, as far as it outlives levels.
#pragma once

#include "engine/systems/System.h"

/// Input line, history and global commands of the console. Empty yet.
class ConsoleSystem : public System
{
    KV_REFLECTED(ConsoleSystem)
public:
    ConsoleSystem() = default;

protected:
    void systemStartup() override {}
    void systemShutdown() override {}
    DependencyList systemDependencies() override;
};
