#include "port/fmod/output/ReverbSlots.h"

#include <algorithm>
#include <cmath>

namespace port
{

namespace
{

bool isSame(const FMOD_REVERB_PROPERTIES &a, const FMOD_REVERB_PROPERTIES &b)
{
    return a.Room == b.Room && a.RoomHF == b.RoomHF && a.DecayTime == b.DecayTime && a.DecayHFRatio == b.DecayHFRatio &&
           a.Reflections == b.Reflections && a.ReflectionsDelay == b.ReflectionsDelay && a.Reverb == b.Reverb &&
           a.ReverbDelay == b.ReverbDelay && a.Diffusion == b.Diffusion && a.Density == b.Density;
}

constexpr ALfloat AHEAD[] = {0, 0, 1}; ///< as long as this, nothing comes from elsewhere
constexpr int SILENT_ROOM = -10000;    ///< hundredths of a decibel

/// Hundredths of a decibel as a linear gain.
float gainOf(int hundredths, float most)
{
    return std::min(most, std::pow(10.0F, static_cast<float>(hundredths) / 2000));
}

/// Within the bounds; what is no number becomes the least.
float within(float value, float least, float most)
{
    return value > least ? std::min(value, most) : least;
}

} // namespace

void ReverbSlots::setRoom(Slot &slot, const FMOD_REVERB_PROPERTIES &room)
{
    slot.roomChanged = slot.roomChanged || !isSame(slot.room, room);
    slot.room = room;
}

void ReverbSlots::setMono(bool on)
{
    for (Slot &slot : slots)
        slot.roomChanged = slot.roomChanged || mono != on;
    mono = on;
}

void ReverbSlots::setShare(Slot &slot, float share)
{
    slot.shareChanged = slot.shareChanged || slot.share != share;
    slot.share = share;
}

void ReverbSlots::setZones(const FMOD_REVERB_PROPERTIES &first, const FMOD_REVERB_PROPERTIES &second, float share)
{
    const float secondShare = within(share, 0, 1);
    const bool swapped = (isSame(slots[1].room, first) && !isSame(slots[0].room, first)) ||
                         (isSame(slots[0].room, second) && !isSame(slots[1].room, second));
    Slot &one = slots[swapped ? 1 : 0], &other = slots[swapped ? 0 : 1];
    setRoom(one, first);
    setRoom(other, second);
    setShare(one, 1 - secondShare);
    setShare(other, secondShare);
}

ALuint ReverbSlots::getTarget(std::size_t index) const
{
    const Slot &slot = slots[index];
    return slot.share > 0 && slot.room.Room > SILENT_ROOM ? slot.name : 0;
}

void ReverbSlots::open(const EffectCalls &calls)
{
    forget();
    if (!calls.areThere())
        return;
    effects = &calls;
    calls.genEffects(1, &effect);
    for (Slot &slot : slots)
        calls.genSlots(1, &slot.name);
}

void ReverbSlots::apply()
{
    if (!effects)
        return;
    for (Slot &slot : slots)
    {
        if (slot.roomChanged)
            applyRoom(slot);
        if (slot.shareChanged)
            effects->slotf(slot.name, AL_EFFECTSLOT_GAIN, slot.share);
        slot.roomChanged = slot.shareChanged = false;
    }
}

void ReverbSlots::applyRoom(const Slot &slot)
{
    const FMOD_REVERB_PROPERTIES &room = slot.room;
    struct Value
    {
        ALenum plain, directed; // names of the same, in the effect without directions and in that with them
        float value;
    };
    const Value values[] = {
        {AL_REVERB_DENSITY, AL_EAXREVERB_DENSITY, within(room.Density / 100, 0, 1)},
        {AL_REVERB_DIFFUSION, AL_EAXREVERB_DIFFUSION, within(room.Diffusion / 100, 0, 1)},
        {AL_REVERB_GAIN, AL_EAXREVERB_GAIN, gainOf(room.Room, 1)},
        {AL_REVERB_GAINHF, AL_EAXREVERB_GAINHF, gainOf(room.RoomHF, 1)},
        {AL_REVERB_DECAY_TIME, AL_EAXREVERB_DECAY_TIME, within(room.DecayTime, 0.1F, 20)},
        {AL_REVERB_DECAY_HFRATIO, AL_EAXREVERB_DECAY_HFRATIO, within(room.DecayHFRatio, 0.1F, 2)},
        {AL_REVERB_REFLECTIONS_GAIN, AL_EAXREVERB_REFLECTIONS_GAIN, gainOf(room.Reflections, 3.16F)},
        {AL_REVERB_REFLECTIONS_DELAY, AL_EAXREVERB_REFLECTIONS_DELAY, within(room.ReflectionsDelay, 0, 0.3F)},
        {AL_REVERB_LATE_REVERB_GAIN, AL_EAXREVERB_LATE_REVERB_GAIN, gainOf(room.Reverb, 10)},
        {AL_REVERB_LATE_REVERB_DELAY, AL_EAXREVERB_LATE_REVERB_DELAY, within(room.ReverbDelay, 0, 0.1F)},
    };
    effects->effecti(effect, AL_EFFECT_TYPE, mono ? AL_EFFECT_EAXREVERB : AL_EFFECT_REVERB);
    for (const Value &each : values)
        effects->effectf(effect, mono ? each.directed : each.plain, each.value);
    if (mono)
        for (const ALenum pan : {AL_EAXREVERB_REFLECTIONS_PAN, AL_EAXREVERB_LATE_REVERB_PAN})
            effects->effectfv(effect, pan, AHEAD);
    effects->sloti(slot.name, AL_EFFECTSLOT_EFFECT, static_cast<ALint>(effect));
}

void ReverbSlots::forget()
{
    effects = nullptr;
    effect = 0;
    for (Slot &slot : slots)
    {
        slot.name = 0;
        slot.roomChanged = slot.shareChanged = true;
    }
}

} // namespace port
