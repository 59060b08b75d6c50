// ReverbSlots: how rooms answer, two at a time.
#pragma once

#include "port/fmod/fmod.h"
#include "port/fmod/output/EffectCalls.h"

#include <array>

namespace port
{

/// Two rooms that all sources are sent to, each with a share. What is set holds over a change of the device.
class ReverbSlots
{
public:
    static constexpr std::size_t COUNT = 2;

    /// A room that keeps its place keeps its sound: the second one becoming the first is no change that is heard.
    void setZones(const FMOD_REVERB_PROPERTIES &first, const FMOD_REVERB_PROPERTIES &second, float share);
    /// Makes the slots of a new device, whose context is current; `effects` outlives them.
    void open(const EffectCalls &effects);
    /// Brings what was set to the device; costs something only where it changed.
    void apply();
    /// Lets go of the slots, which went with their device.
    void forget();
    /// Has what rooms return come from straight ahead, the same to both ears, or from around again.
    void setMono(bool on);
    /// Slot of the library to send to; 0 without effects and where nothing would come back.
    ALuint getTarget(std::size_t index) const;

private:
    struct Slot
    {
        FMOD_REVERB_PROPERTIES room;
        float share = 0;
        ALuint name = 0;
        bool roomChanged = true, shareChanged = true;
    };
    void setRoom(Slot &slot, const FMOD_REVERB_PROPERTIES &room);
    void setShare(Slot &slot, float share);
    void applyRoom(const Slot &slot);

    std::array<Slot, COUNT> slots;
    const EffectCalls *effects = nullptr;
    ALuint effect = 0;
    bool mono = false;
};

} // namespace port
