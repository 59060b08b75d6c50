// TweakSystem: bars that watch and change properties of the running game.
#pragma once

#include "engine/System.h"

/// The tweak bars of the whole run. Shows none yet.
class TweakSystem : public System
{
    KV_REFLECTED(TweakSystem)
public:
    TweakSystem() = default;

protected:
    void systemStartup() override {}
    void systemShutdown() override {}
    DependencyList systemDependencies() override;
};
