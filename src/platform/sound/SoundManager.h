// SoundManager: moves the listener and applies volume and pause to a level's sounds.
#pragma once

#include "engine/entities/SimpleManager.h"

/// Manager of the key "sound". Runs its components; there is no listener to move yet.
class SoundManager : public SimpleManager
{
    KV_REFLECTED(SoundManager)
public:
    SoundManager() = default;
};
