#include "gameplay/creatures/ActBlobSounds.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "physics/bodies/RigidBody.h"
#include "platform/sound/SoundComponent.h"

ActionStatus ActBlobSounds::update(Seconds frameTime)
{
    static const String idle = SCS("BlobIdle");
    if (elapsedTime != 0.0)
        return AS_InProgress;
    auto *const voice = componentOf<SoundComponent>(getParent(), ComponentKeys::sound);
    if (!voice)
        return AS_InvalidHandle;
    if (auto *const body = componentOf<RigidBody>(getParent(), ComponentKeys::physics))
        hPhysics = getHandle(body);
    voice->setPlayerAsListener();
    voice->playSoundEffect(idle);
    incrementTime(frameTime);
    return AS_InProgress;
}
