// SoundSystem: owns the audio library.
#pragma once

#include "engine/systems/System.h"

/// The audio library of the whole run. Silent yet.
class SoundSystem : public System
{
    KV_REFLECTED(SoundSystem)
public:
    SoundSystem() = default;

protected:
    void systemStartup() override {}
    void systemShutdown() override {}
    DependencyList systemDependencies() override;
};
