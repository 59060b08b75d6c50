// BTLib: owns the master copies of the behaviour trees.
#pragma once

#include "engine/systems/System.h"

/// Library of behaviour trees by name. Empty yet.
class BTLib : public System
{
    KV_REFLECTED(BTLib)
public:
    BTLib() = default;

protected:
    void systemStartup() override {}
    void systemShutdown() override {}
    DependencyList systemDependencies() override;
};
