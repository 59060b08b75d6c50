// SoundNote: stands in for what plays sounds.
#pragma once

#include "engine/entities/SimpleComponent.h"
#include "physics/bodies/SoundRequest.h"

#include <string>
#include <vector>

/// Notes which sounds it is asked for.
class SoundNote : public SimpleComponent, public ISoundPlayer
{
    KV_REFLECTED(SoundNote)
public:
    SoundNote() = default;

    void doFrame() override {}
    bool playRequestedSound(const String &sound) override
    {
        sounds.push_back(sound.toCString());
        return true;
    }

    std::vector<std::string> sounds;
};
