#include "gameplay/player/ActPlaySounds.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "platform/sound/SoundComponent.h"

ActionStatus ActPlaySounds::update(Seconds frameTime)
{
    static const String ambience = SCS("Ambience");
    if (elapsedTime != 0.0)
        return AS_InProgress;
    auto *const voice = componentOf<SoundComponent>(getParent(), ComponentKeys::sound);
    if (!voice)
        return AS_InvalidHandle;
    if (!played)
        voice->playSoundEffect(ambience);
    played = true;
    incrementTime(frameTime);
    return AS_InProgress;
}
