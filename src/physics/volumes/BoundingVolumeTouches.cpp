// BoundingVolume: whom it touches, and what a touch or a use by the player sets off.
#include "physics/volumes/BoundingVolume.h"

#include "physics/volumes/Collision.h"
#include "physics/volumes/VolumeTraits.h"
#include "physics/bodies/PhysicsComponent.h"

#include "engine/entities/Entity.h"
#include "object/python/ScriptCall.h"
#include "object/reflection/PartialFunctionApplication.h"

#include <algorithm>

namespace
{

/// The last of some arguments, or all of them where there are not more.
SavedArguments lastArguments(const SavedArguments &all, std::size_t count)
{
    if (all.getArgCount() <= count)
        return all;
    SavedArguments last(count);
    for (std::size_t i = 0; i < count; ++i)
        last[i] = all[all.getArgCount() - count + i];
    return last;
}

} // namespace

bool BoundingVolume::alreadyCollided(const Handle<BoundingVolume> &other) const
{
    return std::find(collisions.begin(), collisions.end(), other) != collisions.end();
}

bool BoundingVolume::colliding(Handle<BoundingVolume> other, std::vector<Collision *> &found)
{
    if (alreadyCollided(other))
        return false;
    const auto volume = other.lookup();
    if (!volume)
        return false;
    const std::size_t before = found.size();
    if (!collisionTable[volume->volumeType](*this, *volume, found))
        return false;
    collisions.push_back(other);
    volume->collisions.push_back(getHandle(this));
    if (!VolumeTraits::of(volumeType).isPlayer && !VolumeTraits::of(*volume).isPlayer)
        return true;
    if (trigger)
        setOffTrigger(*volume, found, before);
    if (volume->trigger)
        volume->setOffTrigger(*this, found, before);
    return true;
}

/// Calls this trigger's function for a contact; the contact itself has no physical effect.
/// @param before  count of contacts before this pair was tested
void BoundingVolume::setOffTrigger(BoundingVolume &other, std::vector<Collision *> &found, std::size_t before)
{
    PhysicsComponent *const own = findPhysics(), *const others = other.findPhysics();
    if (!own || !others)
        return;
    if (found.size() > before)
    {
        if (VolumeTraits::of(other).isPlayer)
            others->takeContact(*found.back(), *this);
        Collision::dropLast(found);
    }
    callTriggerFunc(SavedArguments::of(handle_cast<Entity>(getParent()), getHandle(others)), 2);
}

void BoundingVolume::setTriggerFunc(ReflectorPtr func)
{
    triggerFunc = func;
    trigger = static_cast<bool>(func);
}

void BoundingVolume::setInteractFunc(ReflectorPtr func)
{
    triggerFunc = func;
    interact = static_cast<bool>(func);
}

void BoundingVolume::setPickupFunc(ReflectorPtr func)
{
    setInteractFunc(func);
    trigger = false;
}

void BoundingVolume::interactWithPlayer(Handle<Object> player)
{
    callTriggerFunc(SavedArguments::of(handle_cast<Entity>(getParent()), player), 1);
}

/// Calls the function with the last arguments; a call that fails is logged, and the function is not called again.
///
/// The methods that are meant for triggers take both, the toucher alone, or nothing: a bound method gets what it has
/// room for.
/// @param offered  how many any other function gets
void BoundingVolume::callTriggerFunc(const SavedArguments &entityAndToucher, std::size_t offered)
{
    const ReflectorPtr func = triggerFunc; // the function may replace itself
    if (!func)
        return;
    const bool isBound = dynamic_cast<const PartialFunctionApplication *>(func.get()) != nullptr;
    SavedArguments fitting = lastArguments(entityAndToucher, isBound ? func->getArgCount() : offered);
    if (!callOrReport(func, fitting, *this, "trigger function") && triggerFunc == func)
        triggerFunc = ReflectorPtr();
}
