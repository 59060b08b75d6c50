// PlayerComponent: the parts that belong to a player, and the settings that it takes.
#include "gameplay/player/PlayerComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/Entity.h"
#include "engine/levels/Coordinator.h"
#include "engine/transforms/TransformComponent.h"
#include "physics/bodies/RigidBody.h"
#include "platform/sound/SoundComponent.h"

#include "foundation/Logger.h"

#include <cmath>
#include <limits>

namespace
{

/// Where a part of the player stands, and what is left out without it.
struct PartPlace
{
    String holder; ///< child of the player's entity; empty for the entity itself
    String key;
    const char *className;
    const char *without;
};

const PartPlace &placeOf(int which)
{
    static const String self, camera = SCS("camera"), reticle = SCS("reticle"), count = SCS("BatteryCount");
    static const PartPlace places[] = {
        {self, ComponentKeys::transform, "TransformComponent", "the player does not move"},
        {self, ComponentKeys::physics, "PlayerPhysics", "the player does not move"},
        {self, ComponentKeys::boundingVolume, "BoundingVolume", "nothing can be pointed at"},
        {self, ComponentKeys::sound, "SoundComponent", "breath and whispers are not heard"},
        {camera, ComponentKeys::transform, "TransformComponent", "nothing can be pointed at"},
        {camera, ComponentKeys::parentFollower, "TransformOffsetComponent", "the view does not pitch"},
        {camera, ComponentKeys::viewer, "ViewerComponent", "the view does not narrow"},
        {reticle, ComponentKeys::graphics2, "QuadComponent2", "what can be used is not marked"},
        {count, ComponentKeys::graphics2, "TextComponent2", "the batteries are not counted on the screen"},
    };
    return places[which];
}

constexpr float FAR = 1e6f; ///< beyond any sensible setting, and far from where numbers run out

} // namespace

Handle<AbstractComponent> PlayerComponent::findPart(Part which)
{
    static const String hud = SCS("Hud");
    if (static_cast<unsigned>(which) >= NUM_PARTS)
        return Handle<AbstractComponent>();
    const PartPlace &place = placeOf(which);
    Handle<Object> holder = getParent();
    if (which == BATTERY_COUNT)
    {
        const auto level = getAncestorOfType<Coordinator>().lookup();
        holder = level ? level->getChild(hud) : Handle<Object>();
    }
    if (const auto above = holder.lookup(); above && !place.holder.empty())
        holder = above->getChild(place.holder);
    const auto entity = handle_cast<Entity>(holder).lookup();
    return entity ? entity->getComponent(place.key) : Handle<AbstractComponent>();
}

void PlayerComponent::tellMissing(Part which)
{
    if (static_cast<unsigned>(which) >= NUM_PARTS || (missingPartsTold & (1u << which)))
        return;
    missingPartsTold |= 1u << which;
    const PartPlace &place = placeOf(which);
    const auto entity = getParent().lookup();
    KV_LOGF(Logger_::I_ERROR, "%s has no %s at \"%s%s%s%s\": %s. The pattern Player of objects.GameObjects builds it.",
            (entity ? entity->getName() : getName()).toCString(), place.className,
            which == BATTERY_COUNT ? "../Hud/" : "", place.holder.toCString(), place.holder.empty() ? "" : "/",
            place.key.toCString(), place.without);
}

TransformComponent *PlayerComponent::transform()
{
    return part<TransformComponent>(TRANSFORM);
}

RigidBody *PlayerComponent::body()
{
    return part<RigidBody>(PHYSICS);
}

SoundComponent *PlayerComponent::sound()
{
    return part<SoundComponent>(SOUND);
}

bool PlayerComponent::isWithin(const char *property, double val, double least, double most) const
{
    if (val >= least && val <= most)
        return true;
    KV_LOGF(Logger_::I_ERROR, "%s of %s: %g is no %s and is not taken; it goes from %g to %g.", getName().toCString(),
            getParent().toString().toCString(), val, property, least, most);
    return false;
}

void PlayerComponent::take(const char *property, float &setting, float val, float least, float most) const
{
    if (isWithin(property, static_cast<double>(val), static_cast<double>(least), static_cast<double>(most)))
        setting = val;
}

/// Takes a time, which others are divided by.
void PlayerComponent::take(const char *property, double &setting, double val) const
{
    constexpr double shortest = 1e-6, longest = 1e9; // seconds
    if (isWithin(property, val, shortest, longest))
        setting = val;
}

void PlayerComponent::setBatteryLifetime(double val)
{
    take("batteryLifetime", batteryLifetime, val);
}

void PlayerComponent::setBatteryRechargeTime(double val)
{
    take("batteryRechargeTime", batteryRechargeTime, val);
}

void PlayerComponent::setSprintLength(double val)
{
    take("sprintLength", sprintLength, val);
}

void PlayerComponent::setSprintRecoveryTime(double val)
{
    take("sprintRecoveryTime", sprintRecoveryTime, val);
}

void PlayerComponent::setLightSanityInfluence(float inf)
{
    take("lightSanityInfluence", lightSanityInfluence, inf, -FAR, FAR);
}

void PlayerComponent::setSanity(float val)
{
    take("sanity", sanity, val, 0.f, 100.f);
}

void PlayerComponent::setAudioSanity(float val)
{
    take("audioSanity", audioSanity, val, 0.f, 100.f);
}

void PlayerComponent::setMovementSpeed(float val)
{
    take("movementSpeed", movementSpeed, val, -FAR, FAR);
}

void PlayerComponent::setSprintMultiplier(float val)
{
    take("sprintMultiplier", sprintMultiplier, val, -FAR, FAR);
}

void PlayerComponent::setStationaryDamping(float val)
{
    take("stationaryDamping", stationaryDamping, val, 0.f, 1.f);
}

void PlayerComponent::setMobileDamping(float val)
{
    take("mobileDamping", mobileDamping, val, 0.f, 1.f);
}

void PlayerComponent::setMouseSensitivity(float val)
{
    take("mouseSensitivity", mouseSensitivity, val, -FAR, FAR);
}

void PlayerComponent::setHeadbobRate(float val)
{
    take("headbobRate", headbobRate, val, -FAR, FAR);
}

void PlayerComponent::setLookSideways(float val)
{
    take("lookSideways", lookSideways, val, -FAR, FAR);
}

void PlayerComponent::setLookUpright(float val)
{
    take("lookUpright", lookUpright, val, -FAR, FAR);
}

void PlayerComponent::setStride(float part)
{
    take("stride", stride, part, -1.f, FAR);
}

void PlayerComponent::setBobAmount(float val)
{
    take("bobAmount", bobAmount, val, 0.f, 1.f);
}

void PlayerComponent::setSpinTorqueForce(float val)
{
    take("spinTorqueForce", spinTorqueForce, val, -FAR, FAR);
}

void PlayerComponent::setSpinRate(float val)
{
    take("spinRate", spinRate, val, -FAR, FAR);
}

void PlayerComponent::setFatigue(float fat)
{
    if (!isWithin("fatigue", static_cast<double>(fat), static_cast<double>(-FAR), static_cast<double>(FAR)))
        return;
    fatigue = static_cast<double>(fat);
    tellBreath();
}

/// Lets the breath be heard as it is.
void PlayerComponent::tellBreath()
{
    static const String breath = SCS("Sprint"), parameter = SCS("fatigue");
    if (SoundComponent *const voice = sound())
        voice->setParam(breath, parameter, static_cast<float>(fatigue / sprintLength));
}

void PlayerComponent::setUseInput(bool useIn)
{
    useInput = useIn;
    mouseMoveX = mouseMoveY = 0.f;
    if (RigidBody *const physics = body())
    {
        physics->setVelocity(Vec4());
        physics->setAngularVelocity(Vec4());
    }
}
