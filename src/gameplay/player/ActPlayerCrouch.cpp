#include "gameplay/player/ActPlayerCrouch.h"

#include "gameplay/player/LevelHandlers.h"
#include "gameplay/player/PlayerComponent.h"
#include "gameplay/player/PlayerLookup.h"
#include "gameplay/player/PlayerMessages.h"

#include "ai/perception/Sightline.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/volumes/BoundingVolume.h"
#include "platform/sound/SoundComponent.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float DEPTH = 0.62f;    ///< metres that the eyes go down
constexpr float LOW_PART = 0.66f; ///< of the height of one who stands
constexpr float GIVES = 0.035f;   ///< metres at the bottom
constexpr float A_SECOND = 3.2f;  ///< how much of the way a second takes
constexpr float GIVEN = 1.5f;     ///< where the bottom has been felt
constexpr float HEADROOM = 0.02f; ///< metres

float heightAt(float crouchVal)
{
    const float way = std::min(crouchVal, 1.f);
    const float give = crouchVal > 1.f ? GIVES * std::sin(PI * (crouchVal - 1.f) / (GIVEN - 1.f)) : 0.f;
    return -DEPTH * way * way * (3.f - 2.f * way) - give;
}

} // namespace

ActionStatus ActPlayerCrouch::update(Seconds frameTime)
{
    const auto *const player = componentOf<PlayerComponent>(getParent(), ComponentKeys::player);
    if (!player || !neckOf(getParent()).isValid())
        return AS_InvalidHandle;
    if (elapsedTime == 0.0)
        begin(frameTime);
    if (player->isCrouched())
        updateCrouchDown(frameTime);
    else
        updateCrouchUp(frameTime);
    return AS_InProgress;
}

void ActPlayerCrouch::begin(Seconds frameTime)
{
    static const String handler = SCS("handleCrouchMessage");
    incrementTime(frameTime);
    hearInLevel(*this, PlayerCrouchMessage, handler);
    if (const auto neck = neckOf(getParent()).lookup())
        originalHeight = neck->getPositionOffset().y - movedBy;
}

void ActPlayerCrouch::handleCrouchMessage(const ReflectorPtr &, bool crouched)
{
    stateChanged = true;
    soundPlayed = false;
    bounce = crouched;
}

void ActPlayerCrouch::updateCrouchDown(Seconds frameTime)
{
    static const String sound = SCS("Crouch");
    playOnce(sound);
    setLow(true);
    crouchVal = std::min(crouchVal + A_SECOND * stepLength(frameTime), bounce || crouchVal > 1.f ? GIVEN : 1.f);
    if (crouchVal >= GIVEN)
        bounce = false;
    moveEyes();
}

void ActPlayerCrouch::updateCrouchUp(Seconds frameTime)
{
    static const String sound = SCS("StandUp");
    setLow(false);
    if (isLow)
        return moveEyes();
    playOnce(sound);
    crouchVal = std::max(std::min(crouchVal, 1.f) - A_SECOND * stepLength(frameTime), 0.f);
    moveEyes();
}

void ActPlayerCrouch::playOnce(const String &sound)
{
    if (!stateChanged || soundPlayed)
        return;
    soundPlayed = true;
    stateChanged = false;
    if (auto *const voice = componentOf<SoundComponent>(getParent(), ComponentKeys::sound))
        voice->playSoundEffect(sound);
}

/// Sets the eyes by what they have still to be moved, so that bob and lean go on beside it.
void ActPlayerCrouch::moveEyes()
{
    const auto neck = neckOf(getParent()).lookup();
    if (!neck)
        return;
    // A lower volume has its middle lower by half of what it has lost; the eyes hang from the middle.
    const float middleFell = isLow ? standingHeight * (1.f - LOW_PART) * 0.5f : 0.f;
    const float wanted = heightAt(crouchVal) + middleFell;
    neck->setPositionOffset(neck->getPositionOffset() + Vec4(0.f, wanted - movedBy, 0.f, 0.f));
    movedBy = wanted;
}

/// Makes the volume low or high again, with the feet where they are.
void ActPlayerCrouch::setLow(bool low)
{
    auto *const volume = componentOf<BoundingVolume>(getParent(), ComponentKeys::boundingVolume);
    auto *const place = componentOf<TransformComponent>(getParent(), ComponentKeys::transform);
    if (low == isLow || !volume || !place)
        return;
    Vec4 hitBox = volume->getHitBox();
    if (low)
        standingHeight = hitBox.y;
    else if (!hasRoomAbove(*volume, *place))
        return;
    const float height = low ? standingHeight * LOW_PART : standingHeight;
    place->setPosition(place->getPosition() + Vec4(0.f, 0.5f * (height - hitBox.y), 0.f, 0.f));
    hitBox.y = height;
    volume->setHitBox(hitBox);
    isLow = low;
}

/// Whether nothing solid is above the middle and the four upper corners of the low volume.
bool ActPlayerCrouch::hasRoomAbove(BoundingVolume &volume, TransformComponent &place) const
{
    const auto grid = PartitioningGrid::ofMap(place.findMap()).lookup();
    const Vec4 box = volume.getHitBox(), top = place.getPosition() + Vec4(0.f, 0.5f * box.y - HEADROOM, 0.f, 0.f);
    const Vec4 up(0.f, standingHeight - box.y + HEADROOM, 0.f, 0.f);
    const float side = 0.45f; // part of the width, a little within it: who stands at a wall has room
    const SightFilter solid(getParent(), Handle<Object>());
    for (const auto &[x, z] : {std::pair{0.f, 0.f}, {side, side}, {side, -side}, {-side, side}, {-side, -side}})
    {
        const Vec4 from = top + Vec4(x * box.x, 0.f, z * box.z, 0.f);
        if (!isFreeBetween(grid.ptr, solid, from, from + up))
            return false;
    }
    return true;
}
