// PlayerComponent: the flashlight and its batteries.
#include "gameplay/player/PlayerComponent.h"

#include "gameplay/player/PlayerMessages.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformOffsetComponent.h"
#include "object/python/PythonCalls.h"
#include "object/reflection/SavedArguments.h"
#include "physics/bodies/PhysicsComponent.h"
#include "physics/volumes/BoundingVolume.h"
#include "platform/input/EngineMessage.h"
#include "platform/sound/SoundComponent.h"
#include "rendering/drawn/LightComponent.h"
#include "rendering/drawn/TextComponent2.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>

namespace
{

const Vec4 IN_THE_HAND(0.15f, -0.1f, 0.25f, 0.f); ///< metres to the right, up and ahead of the eyes

/// Has the level's script explain what a battery is for.
void explainBatteries(const Handle<Object> &player)
{
    Variant ignored;
    if (isPythonRunning() && !pythonCall("objects.Triggers", "tutorialFourCreate", SavedArguments::of(player), ignored))
        KV_ERROR(getCurrentPythonTraceback());
}

/// Makes a thing that is held one that nothing touches and nobody points at.
void letGoOfTheWorld(const Handle<Entity> &thing)
{
    if (auto *const volume = componentOf<BoundingVolume>(thing, ComponentKeys::boundingVolume))
    {
        volume->setVolumeType(BoundingVolume::BV_NONE);
        volume->setInteract(false);
        volume->setTrigger(false);
    }
}

} // namespace

/// Drains the battery in use, or fills the one that is being put in.
void PlayerComponent::spendBattery(Seconds frameTime)
{
    if (charging)
    {
        if (batteryLifetime > currBatteryLife)
            currBatteryLife += (1.0 / batteryRechargeTime) * frameTime * batteryLifetime;
        else
        {
            charging = false;
            currBatteryLife = batteryLifetime;
        }
        return;
    }
    if (!flashlightOn)
        return;
    if (currBatteryLife > 0.0)
    {
        currBatteryLife -= frameTime;
        return;
    }
    currBatteryLife = 0.0;
    flashlightOn = false; // nobody is told: the light watches for it
    if (batteries > 0)
        useBattery();
}

void PlayerComponent::drainBattery(double seconds)
{
    if (seconds > 0.0 && !charging)
        currBatteryLife = currBatteryLife > seconds ? currBatteryLife - seconds : 0.0;
}

/// Puts a spare battery in, if there is one and the hands are free, and shows the hud in any case.
void PlayerComponent::useBattery()
{
    static const String charge = SCS("FlashLightCharge");
    if (batteries > 0 && !charging && hasFlashlight)
    {
        if (SoundComponent *const voice = sound())
            voice->playSoundEffect(charge);
        --batteries;
        charging = true;
        showBatteries();
        if (!flashlightOn)
        {
            flashlightOn = true;
            sendEngineMessage(FlashlightOn, true);
        }
    }
    sendEngineMessage(DisplayHUDMessage);
}

void PlayerComponent::addBattery()
{
    if (!pickedUpBattery)
        explainBatteries(getHandle());
    ++batteries;
    showBatteries();
    sendEngineMessage(DisplayHUDMessage);
}

void PlayerComponent::setBatteries(unsigned count)
{
    batteries = count;
    if (findPart(BATTERY_COUNT)
            .isValid()) // a level that is being built may have none yet, and it then begins with them
        showBatteries();
}

void PlayerComponent::setCurrBatteryTimeLeft(double seconds)
{
    if (!std::isnan(seconds))
        currBatteryLife = std::clamp(seconds, 0.0, batteryLifetime);
}

void PlayerComponent::showBatteries()
{
    if (auto *const count = part<TextComponent2>(BATTERY_COUNT))
        count->setText(String::format("x %u", batteries));
}

void PlayerComponent::pickupFlashlight(Handle<PhysicsComponent> flashlight)
{
    const auto thing = flashlight.lookup();
    const auto entity = thing ? handle_cast<Entity>(thing->getParent()).lookup() : Handle<Entity>::Result{};
    if (hasFlashlight || !entity)
        return;
    hasFlashlight = flashlightOn = true;
    hangFlashlight(*entity);
    thing->murder();
    letGoOfTheWorld(getHandle(entity.ptr));
    currBatteryLife = batteryLifetime;
    sendEngineMessage(DisplayHUDMessage);
}

/// Takes a flashlight out of the level for good, and hangs it to the camera with its shadows on.
void PlayerComponent::hangFlashlight(Entity &flashlight)
{
    static const String murder = SCS("murder"), name = SCS("flashlight"), camera = SCS("camera");
    if (flashlight.getAncestorOfType<MapRootEntity>().isValid()) // what no map builds comes from elsewhere
        flashlight.addToPersistentStateNoArgs(murder);
    flashlight.setName(name);
    if (auto *const follower =
            componentOf<TransformOffsetComponent>(flashlight.getHandle(), ComponentKeys::parentFollower))
    {
        follower->setPositionOffset(IN_THE_HAND);
        follower->setOrientationOffset(Quaternion()); // however it lay, it points ahead
    }
    const auto player = getParent().lookup();
    const Handle<Object> hand = player ? player->getChild(camera) : Handle<Object>();
    if (hand.isValid())
        flashlight.setParent(hand).ignoreError();
    else
        tellMissing(CAMERA);
    if (auto *const light = componentOf<LightComponent>(flashlight.getChild(name), ComponentKeys::graphics2))
        light->setCastShadows(true);
}
