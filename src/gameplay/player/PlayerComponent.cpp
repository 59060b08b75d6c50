#include "gameplay/player/PlayerComponent.h"

#include "gameplay/player/LevelHandlers.h"

#include "ai/perception/Sightline.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"
#include "engine/transforms/TransformOffsetComponent.h"
#include "physics/bodies/PlayerPhysics.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/volumes/BoundingVolume.h"
#include "platform/input/InputMessages.h"
#include "platform/sound/SoundComponent.h"
#include "rendering/drawn/QuadComponent2.h"

#include "foundation/Assertions.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float SIDEWAYS = 0.6f;      ///< part of the force of a step that a step sideways has
constexpr float EXHAUSTED = 0.6f;     ///< part of the sprint's factor that is left without breath
constexpr float STEEPEST = PI / 2;    ///< pitch of the view, radians
constexpr float PITCH_MARGIN = 1e-6f; ///< radians that a step to the limit falls short by
constexpr double FARTHEST_PITCH = static_cast<double>(STEEPEST);
constexpr float NO_FORCE = 1e-6f;    ///< newtons
constexpr float REACH = 2.f;         ///< metres from the front of the body
constexpr float SLOWEST_STEP = 0.2f; ///< metres a second over the floor: less is no walk

} // namespace

PlayerComponent::PlayerComponent() : movementKeys(MT_NumDirections, false)
{
    for (int key = 0; key < KEYS; ++key)
        keyMeanings[key] = static_cast<unsigned char>(key);
}

void PlayerComponent::onLoadComplete()
{
    static const String keys = SCS("handleKeyMessage"), motion = SCS("handleMouseMessage"),
                        clicks = SCS("handleMouseClick"), sticks = SCS("handleStickMessage");
    static const String breath = SCS("Sprint"), whispers = SCS("WhisperSanity"), volume = SCS("volume");
    hearInLevel(*this, KeyDownMessage, keys);
    hearInLevel(*this, KeyUpMessage, keys);
    hearInLevel(*this, MouseMove, motion);
    hearInLevel(*this, MouseDownMessage, clicks);
    hearInLevel(*this, LeftJoyPos, sticks);
    hearInLevel(*this, RightJoyPos, sticks);
    SoundComponent *const voice = sound();
    if (!voice)
        return;
    voice->playSoundEffect(breath);
    voice->setParam(whispers, volume, 0.f);
    voice->playSoundEffect(whispers);
}

void PlayerComponent::doFrame()
{
    TransformComponent *const place = transform();
    RigidBody *const physics = body();
    const auto level = getAncestorOfType<Coordinator>().lookup();
    const Seconds frameTime = level ? level->getTimer(TimerNames::master).getFrameTimeSeconds() : 0.0;
    forgetOldSticks();
    if (physics && place)
        watchFeet(*physics, *place, frameTime);
    if (useInput && physics && place)
    {
        updateMovement(*physics, *place, frameTime);
        updateMouseLook(*physics, *place, frameTime);
    }
    if (hasFlashlight)
    {
        updateSanity(frameTime);
        spendBattery(frameTime);
    }
    litThisFrame = false;
    if (auto *const players = dynamic_cast<PlayerPhysics *>(physics))
        players->setFlashlightStatus(hasFlashlight && flashlightOn);
    findInteractor();
}

/// Sees how far the body has come since the last frame, if its feet are what moves it.
void PlayerComponent::watchFeet(const RigidBody &physics, const TransformComponent &place, Seconds frameTime)
{
    const Vec4 way = place.getPosition() - lastPlace;
    lastPlace = place.getPosition();
    const auto *const walker = dynamic_cast<const PlayerPhysics *>(&physics);
    const float least = SLOWEST_STEP * static_cast<float>(frameTime);
    feetMove =
        !walker || !walker->getSurefooted() || (walker->isOnGround() && way.x * way.x + way.z * way.z > least * least);
}

bool PlayerComponent::isMoving() const
{
    return movementKeys[MT_Down] || movementKeys[MT_Up] || movementKeys[MT_StrafeRight] ||
           movementKeys[MT_StrafeLeft] || walkStick.magnitudeSquared() > 0.f;
}

bool PlayerComponent::isSprinting() const
{
    return isMoving() && movementKeys[MT_Sprint];
}

bool PlayerComponent::checkMovement(MovementType type) const
{
    const auto index = static_cast<std::size_t>(static_cast<unsigned>(type));
    if (index < movementKeys.size())
        return movementKeys[index] || doesStickAsk(type);
    KV_ERROR("Invalid movement type requested!");
    return false;
}

bool PlayerComponent::isFatigued() const
{
    return sprintLength > fatigue;
}

/// Lets the keys push the body: over the ground, however the player looks up or down.
void PlayerComponent::updateMovement(RigidBody &physics, TransformComponent &place, Seconds frameTime)
{
    Vec4 force = walkingForce();
    tellBreath();
    force *= sprint(frameTime);

    Quaternion orientation = place.getOrientation();
    orientation.update(Vec4(), spinRate);
    place.setOrientation(orientation);
    force = orientation.generateRotation() * force;
    const float strength = force.magnitude();
    force.y = 0.f;
    force.normalize();
    force *= strength;
    physics.addForce(force);

    const bool stands = std::abs(force.x) <= NO_FORCE && std::abs(force.z) <= NO_FORCE;
    physics.setDamping(stands ? stationaryDamping : mobileDamping);
}

/// What the held keys ask for, along the body's own axes.
Vec4 PlayerComponent::walkingForce() const
{
    const float speed = crouched ? movementSpeed * 0.5f : movementSpeed;
    Vec4 force;
    force.z += movementKeys[MT_Up] ? speed : 0.f;
    force.z -= movementKeys[MT_Down] ? speed : 0.f;
    force.x += movementKeys[MT_StrafeRight] ? SIDEWAYS * speed : 0.f;
    force.x -= movementKeys[MT_StrafeLeft] ? SIDEWAYS * speed : 0.f;
    force.z = std::clamp(force.z + walkStick.y * speed, -std::abs(speed), std::abs(speed));
    force.x =
        std::clamp(force.x + walkStick.x * SIDEWAYS * speed, -SIDEWAYS * std::abs(speed), SIDEWAYS * std::abs(speed));
    return force;
}

/// Uses breath up or recovers it; the factor of this frame's force.
float PlayerComponent::sprint(Seconds frameTime)
{
    if (isSprinting())
    {
        if (!(sprintLength > fatigue))
            return EXHAUSTED * sprintMultiplier;
        fatigue += frameTime;
        return sprintMultiplier;
    }
    if (fatigue > 0.0)
        fatigue -= (1.0 / sprintRecoveryTime) * frameTime * sprintLength;
    else
        fatigue = 0.0;
    return 1.f;
}

/// Turns the body by the mouse's way to the side and the camera by its way up and down. The way is that of the frame
/// already: its time plays no part.
void PlayerComponent::updateMouseLook(RigidBody &physics, TransformComponent &place, Seconds frameTime)
{
    const auto *const players = dynamic_cast<const PlayerPhysics *>(&physics);
    const float sign = players ? players->getVerticalSign() : 1.f, turned = stickTurn(frameTime);
    const float up = mouseMoveY * lookUpright * sign - lookStick.y * stickUpright * turned;
    const float side = mouseMoveX * lookSideways + lookStick.x * turned;
    mouseMoveX = mouseMoveY = 0.f;
    if (!std::isfinite(up * mouseSensitivity) || !std::isfinite(side * mouseSensitivity))
        return;
    const float half = up * mouseSensitivity * 0.5f;
    lookRotQuaternion = Quaternion(std::cos(half), std::sin(half), 0.f, 0.f);
    limitViewRotation(mouseSensitivity * up, frameTime);

    if (side == 0.f)
        physics.setAngularVelocity(Vec4());
    Quaternion orientation = place.getOrientation();
    orientation.update(Vec4(0.f, side, 0.f, 0.f), mouseSensitivity);
    place.setOrientation(orientation);
    physics.addTorque(Vec4(0.f, side, 0.f, 0.f));

    if (auto *const neck = part<TransformOffsetComponent>(CAMERA_FOLLOWER))
        neck->setOrientationOffset(neck->getOrientationOffset() * lookRotQuaternion);
}

/// Cuts the pitch of this frame so that the view stops straight up and straight down.
void PlayerComponent::limitViewRotation(float delta, Seconds)
{
    rotationLimiter += delta;
    if (std::abs(rotationLimiter) <= STEEPEST)
        return;
    const float limit = std::copysign(STEEPEST, rotationLimiter);
    const float over = rotationLimiter - limit + std::copysign(PITCH_MARGIN, rotationLimiter);
    rotationLimiter = limit;
    const float half = (delta - over) * 0.5f;
    lookRotQuaternion.r = std::cos(half);
    lookRotQuaternion.i = std::sin(half);
}

void PlayerComponent::setRotationLimiter(float val)
{
    auto *const neck = part<TransformOffsetComponent>(CAMERA_FOLLOWER);
    if (!neck || !isWithin("rotationLimiter", static_cast<double>(val), -FARTHEST_PITCH, FARTHEST_PITCH))
        return;
    const float half = (val - rotationLimiter) * 0.5f;
    rotationLimiter = val;
    neck->setOrientationOffset(neck->getOrientationOffset() * Quaternion(std::cos(half), std::sin(half), 0.f, 0.f));
}

/// Finds what the player points at, and shows by the reticle whether it can be used.
void PlayerComponent::findInteractor()
{
    static const String idle = SCS("reticle.dds"), onObject = SCS("reticleObject.dds");
    TransformComponent *const camera = part<TransformComponent>(CAMERA);
    interactor = camera ? pointedAt(*camera) : Handle<BoundingVolume>();
    auto *const reticle = part<QuadComponent2>(RETICLE);
    const String &wanted = interactor.isValid() ? onObject : idle;
    if (reticle && reticle->getTextureName() != wanted)
        reticle->setTextureName(wanted);
}

/// What can be used in the direction of the view; where the player does not reach through, with nothing solid before it.
Handle<BoundingVolume> PlayerComponent::pointedAt(TransformComponent &camera)
{
    const auto grid = PartitioningGrid::ofMap(camera.findMap()).lookup();
    auto *const own = part<BoundingVolume>(VOLUME);
    if (!grid || !own)
        return Handle<BoundingVolume>();
    const Vec4 forward = camera.getOrientation().generateRotation().getColumn(2);
    const Vec4 begin = camera.getPosition() + forward * (own->getHitBox().z * 0.5f);
    const SegmentHit hit = grid->checkSegment(begin, forward * REACH, true);
    if (reachesThrough)
        return hit.volume;
    const auto found = hit.volume.lookup();
    const SightFilter solid(getParent(), found ? found->getParent() : Handle<Object>());
    return found && isFreeBetween(grid.ptr, solid, begin, hit.collision.point) ? hit.volume : Handle<BoundingVolume>();
}
