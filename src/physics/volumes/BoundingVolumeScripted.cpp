// BoundingVolume: the functions that a level's scripts set on triggers and on what the player uses.
#include "physics/volumes/BoundingVolume.h"

#include "physics/doors/DoorCalls.h"
#include "physics/triggers/LightPulse.h"
#include "physics/volumes/ScriptFaults.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/entities/ObjectGroupManager.h"
#include "object/reflection/SavedArguments.h"
#include "object/tree/WellKnownPaths.h"

#include "foundation/Logger.h"

namespace
{

/// Calls a function with the entity of each member of a group, oldest first; what it returns tells whether the member
/// is of the kind that the group is for.
template <class Function>
void forEachInGroup(BoundingVolume &volume, ObjectGroupComponent::Group group, const char *caller, const char *needs,
                    Function function)
{
    const auto coordinator = volume.getAncestorOfType<Coordinator>().lookup();
    if (!coordinator)
        return;
    const auto manager = handle_cast<ObjectGroupManager>(coordinator->getManager(ComponentKeys::objectGroup)).lookup();
    if (!manager)
        return;
    const ObjectGroupManager::ComponentGroup &members = manager->getGroup(group);
    // What happens to one member may take others out of the group.
    for (auto next = members.begin(); next != members.end();)
    {
        const Handle<ObjectGroupComponent> h = *next;
        const auto member = h.lookup();
        if (member && !function(member->getParent()) && isNewFault(member->getParent(), caller))
            KV_LOGF(Logger_::I_ERROR, "%s: %s is in the group and has no %s; give it one, or another group.", caller,
                    member->getParent().toString().toCString(), needs);
        next = members.upper_bound(h);
    }
}

/// Calls a function of this name without arguments, where the entity's behaviour has one.
bool callBehavior(const Handle<Object> &hEntity, const String &function)
{
    const AbstractComponent *const behavior = componentOf<AbstractComponent>(hEntity, ComponentKeys::behaviors);
    const ReflectorPtr member = behavior ? behavior->getType()->getMember(function) : ReflectorPtr();
    return member && member->call(Handle<Object>(behavior->getHandle())).succeeded();
}

/// Adds one to a number that an object has under a name, if it has one.
void countUp(const Handle<AbstractComponent> &hCounter, const String &property)
{
    const auto counter = hCounter.lookup();
    if (!counter)
        return;
    const ErrorReturn<Variant> count = counter->getPropertyValue(property);
    if (count.succeeded())
        counter->setPropertyValue(property, Variant(count.value.get<std::int64_t>().value + 1)).ignoreError();
}

} // namespace

void BoundingVolume::slamDoors(ObjectGroupComponent::Group group, Handle<Object> player)
{
    forEachInGroup(*this, group, "slamDoors", "DoorPhysics or SlidingDoorPhysics",
                   [&](const Handle<Object> &hEntity) { return callDoor(hEntity, player, DoorCall::SLAM); });
}

void BoundingVolume::pulseLights(ObjectGroupComponent::Group group, float pulse)
{
    forEachInGroup(*this, group, "pulseLights", "light under \"graphics2\"",
                   [&](const Handle<Object> &hEntity)
                   {
                       LightPulse *const light = LightPulse::of(hEntity);
                       if (light)
                           light->beat(pulse);
                       return light != nullptr;
                   });
}

void BoundingVolume::followPlayer(ObjectGroupComponent::Group group)
{
    static const String function = SCS("followPlayer");
    forEachInGroup(*this, group, "followPlayer", "followPlayer under \"behaviors\"",
                   [&](const Handle<Object> &hEntity) { return callBehavior(hEntity, function); });
}

void BoundingVolume::lightSwitchInteract()
{
    static const String visible = SCS("visible");
    const auto entity = getParent().lookup();
    if (!entity)
        return;
    const auto light = entity->getDescendantByPath(WellKnownPaths::lightOfSwitch).lookup();
    const ErrorReturn<Variant> isOn =
        light ? light->getPropertyValue(visible) : ErrorReturn<Variant>(ErrorCode::NO_SUCH_PROPERTY);
    if (isOn.succeeded())
        light->setPropertyValue(visible, Variant(!isOn.value.get<bool>().value)).ignoreError();
    else if (isNewFault(getParent(), "lightSwitchInteract"))
        KV_LOGF(Logger_::I_ERROR,
                "lightSwitchInteract of %s: there is no light at \"%s\" below it. Hang the light's entity below the "
                "switch's under that name.",
                getParent().toString().toCString(), WellKnownPaths::lightOfSwitch.toCString());
    countUp(getSibling(ComponentKeys::interactCounter), ComponentKeys::interactCounter);
}

void BoundingVolume::openParentDoor(Handle<Object> phys, Handle<Object> hEntity)
{
    const bool swapped = handle_cast<Entity>(phys).isValid();
    callParentDoor(swapped ? phys : hEntity, swapped ? hEntity : phys, DoorCall::OPEN, "openParentDoor");
}

void BoundingVolume::closeParentDoor(Handle<Object> phys, Handle<Object> hEntity)
{
    const bool swapped = handle_cast<Entity>(phys).isValid();
    callParentDoor(swapped ? phys : hEntity, swapped ? hEntity : phys, DoorCall::CLOSE, "closeParentDoor");
}
