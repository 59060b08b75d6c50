#include "port/fmod/output/EffectCalls.h"

namespace port
{

namespace
{

template <class Function>
void take(Function &function, const char *name)
{
    function = reinterpret_cast<Function>(alGetProcAddress(name));
}

} // namespace

EffectCalls EffectCalls::load(ALCdevice *device)
{
    EffectCalls calls;
    if (alIsExtensionPresent("AL_SOFT_deferred_updates"))
    {
        take(calls.deferUpdates, "alDeferUpdatesSOFT");
        take(calls.processUpdates, "alProcessUpdatesSOFT");
    }
    if (!alcIsExtensionPresent(device, "ALC_EXT_EFX"))
        return calls;
    take(calls.genFilters, "alGenFilters");
    take(calls.deleteFilters, "alDeleteFilters");
    take(calls.filteri, "alFilteri");
    take(calls.filterf, "alFilterf");
    take(calls.genEffects, "alGenEffects");
    take(calls.deleteEffects, "alDeleteEffects");
    take(calls.effecti, "alEffecti");
    take(calls.effectf, "alEffectf");
    take(calls.effectfv, "alEffectfv");
    take(calls.genSlots, "alGenAuxiliaryEffectSlots");
    take(calls.deleteSlots, "alDeleteAuxiliaryEffectSlots");
    take(calls.sloti, "alAuxiliaryEffectSloti");
    take(calls.slotf, "alAuxiliaryEffectSlotf");
    return calls;
}

} // namespace port
