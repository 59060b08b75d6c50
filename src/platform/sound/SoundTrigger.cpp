#include "platform/sound/SoundTrigger.h"

#include "platform/sound/SoundComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "object/tree/PathBelow.h"
#include "physics/bodies/PhysicsComponent.h"

#include "foundation/Finite.h"
#include "foundation/Logger.h"

void SoundTrigger::setPosition(Vec4 val)
{
    if (isFinite(val))
        position = val;
    else
        KV_LOGF(Logger_::I_ERROR, "%s: position is to be a place, and %s is none.",
                pathBelow(nullptr, *this).toCString(), val.toString().toCString());
}

void SoundTrigger::playSound(Handle<PhysicsComponent> phys)
{
    play(phys, !sfx);
}

void SoundTrigger::playMusic(Handle<PhysicsComponent> phys)
{
    play(phys, true);
}

void SoundTrigger::stopSound(Handle<PhysicsComponent> phys)
{
    stop(phys, !sfx);
}

void SoundTrigger::stopMusic(Handle<PhysicsComponent> phys)
{
    stop(phys, true);
}

void SoundTrigger::play(const Handle<PhysicsComponent> &phys, bool asMusic)
{
    SoundComponent *const player = findPlayer(phys);
    if (!player)
        return;
    if (asMusic)
        player->addMusic(sound);
    else
        player->addSoundEffect(sound);
    if (positional)
        player->placeEvent(sound, position);
    else
        player->unplaceEvent(sound);
    if (asMusic)
        player->playMusic(sound);
    else
        player->playSoundEffect(sound);
}

void SoundTrigger::stop(const Handle<PhysicsComponent> &phys, bool asMusic)
{
    SoundComponent *const player = findPlayer(phys);
    if (!player)
        return;
    if (asMusic)
        player->stopMusic(sound);
    else
        player->stopSoundEffect(sound);
}

/// The "sound" component of the entity that fired, or else of the nearest one above this trigger; null, told once, where
/// there is none.
SoundComponent *SoundTrigger::findPlayer(const Handle<PhysicsComponent> &phys)
{
    const auto body = phys.lookup();
    const Handle<Object> fired = body ? body->getParent() : Handle<Object>();
    if (SoundComponent *const own = componentOf<SoundComponent>(fired, ComponentKeys::sound))
        return own;
    for (auto above = getParent().lookup(); above; above = above->getParent().lookup())
        if (SoundComponent *const found = componentOf<SoundComponent>(above->getHandle(), ComponentKeys::sound))
            return found;
    if (!told)
        KV_LOGF(Logger_::I_ERROR,
                "%s: nothing plays \"%s\". Give what sets the trigger off, or what the trigger hangs under, a "
                "SoundComponent under the key \"sound\".",
                pathBelow(nullptr, *this).toCString(), sound.toCString());
    told = true;
    return nullptr;
}
