// EffectCalls: the functions of the sound library's extensions.
#pragma once

#include <AL/al.h>
#include <AL/alc.h>
#include <AL/alext.h>
#include <AL/efx.h>

namespace port
{

/// Filters, effects and the holding back of changes; all null where the library has no effects.
struct EffectCalls
{
    /// Those of the current context.
    static EffectCalls load(ALCdevice *device);
    bool areThere() const { return genFilters != nullptr; }

    LPALGENFILTERS genFilters = nullptr;
    LPALDELETEFILTERS deleteFilters = nullptr;
    LPALFILTERI filteri = nullptr;
    LPALFILTERF filterf = nullptr;
    LPALGENEFFECTS genEffects = nullptr;
    LPALDELETEEFFECTS deleteEffects = nullptr;
    LPALEFFECTI effecti = nullptr;
    LPALEFFECTF effectf = nullptr;
    LPALEFFECTFV effectfv = nullptr;
    LPALGENAUXILIARYEFFECTSLOTS genSlots = nullptr;
    LPALDELETEAUXILIARYEFFECTSLOTS deleteSlots = nullptr;
    LPALAUXILIARYEFFECTSLOTI sloti = nullptr;
    LPALAUXILIARYEFFECTSLOTF slotf = nullptr;
    LPALDEFERUPDATESSOFT deferUpdates = nullptr;
    LPALPROCESSUPDATESSOFT processUpdates = nullptr;
};

} // namespace port
