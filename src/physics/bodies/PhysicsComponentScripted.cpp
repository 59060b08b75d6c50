// PhysicsComponent: the functions that a level's scripts set on triggers.
#include "physics/bodies/PhysicsComponent.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/doors/DoorCalls.h"
#include "physics/volumes/ScriptFaults.h"
#include "physics/volumes/VolumeTraits.h"
#include "physics/bodies/SoundRequest.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/levels/GameLoop.h"
#include "object/python/PythonCalls.h"
#include "object/reflection/SavedArguments.h"

#include "foundation/Logger.h"

namespace
{

/// Ends the calls of a trigger that the player still stands in. What is used, not touched, stays as it is.
void disarm(BoundingVolume *volume)
{
    if (volume && volume->getTrigger())
        volume->setTriggerFuncNoTrigger(ReflectorPtr());
}

/// The body that a function was called with, or that stands beside a component it was called with.
Handle<PhysicsComponent> bodyOf(const Handle<Object> &who)
{
    if (const auto body = handle_cast<PhysicsComponent>(who); body.isValid())
        return body;
    const auto component = handle_cast<AbstractComponent>(who).lookup();
    return component ? handle_cast<PhysicsComponent>(component->getSibling(ComponentKeys::physics))
                     : Handle<PhysicsComponent>();
}

/// Whether the scripts have a level of this name.
bool hasLevel(const String &name)
{
    Variant found;
    if (isPythonRunning() && pythonCall("loader", "hasLevel", SavedArguments::of(name), found))
        return found.get<bool>().value;
    if (isPythonRunning())
        KV_LOGF(Logger_::I_ERROR, "loader.hasLevel('%s') failed: %s", name.toCString(),
                getCurrentPythonTraceback().toCString());
    return false;
}

} // namespace

void PhysicsComponent::useObjectSpawner(Handle<Object> phys)
{
    static const String function = SCS("spawnObject");
    const Handle<AbstractComponent> hSpawner = getSibling(ComponentKeys::trigger);
    const auto spawner = hSpawner.lookup();
    const ReflectorPtr spawn = spawner ? spawner->getType()->getMember(function) : ReflectorPtr();
    if (spawn)
        spawn->call(hSpawner, bodyOf(phys)).code.ignoreError();
    else if (isNewFault(getHandle(), "useObjectSpawner"))
        KV_LOGF(Logger_::I_ERROR, "useObjectSpawner of %s: there is no ObjectSpawner under \"trigger\" beside it.",
                getParent().toString().toCString());
}

void PhysicsComponent::openParentDoor(Handle<Object> phys)
{
    callParentDoor(getParent(), phys, DoorCall::OPEN, "openParentDoor");
}

void PhysicsComponent::closeParentDoor(Handle<Object> phys)
{
    callParentDoor(getParent(), phys, DoorCall::CLOSE, "closeParentDoor");
}

void PhysicsComponent::playSound(Handle<Object> phys)
{
    const auto entity = getParent().lookup();
    if (!entity)
        return;
    requestSound(*this, entity->getName());
    disarm(findVolume());
}

void PhysicsComponent::hitCreditsTrigger(Handle<Object> phys)
{
    const auto body = bodyOf(phys).lookup();
    const BoundingVolume *const volume = body ? body->findVolume() : nullptr;
    if (!volume || !VolumeTraits::of(*volume).isPlayer)
        return;
    disarm(findVolume());
    splashCredits();
}

void PhysicsComponent::splashCredits()
{
    static const String credits = SCS("Credits");
    if (hasLevel(credits))
        getSystemDeref<GameLoopSystem>().queueLoadLevel(credits);
    else
        KV_LOGF(Logger_::I_WARNING, "The credits are due, but there is no level %s among the scripts.",
                credits.toCString());
}
