// SoundNote: stands in for what plays sounds.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/KVString.h"

#include <string>
#include <vector>

/// Notes which sounds it is asked for.
class SoundNote : public SimpleComponent
{
    KV_REFLECTED(SoundNote)
public:
    SoundNote() = default;

    void doFrame() override {}
    void playSoundEffect(String sound) { sounds.push_back(sound.toCString()); }

    std::vector<std::string> sounds;
};
