#include "gameplay/player/BobAction.h"

#include "gameplay/player/PlayerComponent.h"
#include "gameplay/player/PlayerLookup.h"

#include "physics/volumes/FiniteProperty.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double FIRST_STEP = 0.2; ///< seconds from the first key to the bob
constexpr float WIDTH = 0.1f;      ///< metres of a bob with the multiplier 1
constexpr float AT_REST = 1e-5f;   ///< metres
constexpr float SOON = 18.f;       ///< a second

// What steps of each kind are taken with.
constexpr float AHEAD = 1.2f, BACK = 1.f, SIDEWAYS = 0.9f, CROUCHED = 0.9f, SPRINT = 1.35f;

/// What is left of an offset after some part of the way to rest, never past it.
float settled(float offset, float part)
{
    const float left = offset - offset * std::clamp(part, 0.f, 1.f);
    return std::abs(left) < AT_REST ? 0.f : left;
}

} // namespace

ActionStatus BobAction::update(Seconds frameTime)
{
    if (!getHandles())
        return AS_InvalidHandle;
    const auto player = hPlayerComp.lookup();
    if (!initialized)
        originalOffset = hParentFollower.lookup()->getPositionOffset();
    initialized = true;
    const bool moving = player->isWalking();
    if (moving && elapsedTime < FIRST_STEP)
        incrementTime(frameTime);
    multiplier = multiplierOf(*player);
    updateBob(frameTime, moving);
    updateSway(frameTime, moving);
    return AS_InProgress;
}

float BobAction::multiplierOf(const PlayerComponent &player) const
{
    if (!player.isMoving())
        return 0.f;
    const float sprint = player.isSprinting() ? SPRINT : 1.f;
    if (player.isCrouched())
        return CROUCHED * sprint;
    if (player.checkMovement(PlayerComponent::MT_Up))
        return AHEAD * sprint;
    return (player.checkMovement(PlayerComponent::MT_Down) ? BACK : SIDEWAYS) * sprint;
}

/// Takes a phase on by a frame, radians: by the feet where they are counted, or else by the time that a step takes.
/// @param turn  radians in which the phase repeats itself
float BobAction::stepOn(float phase, float turn, const PlayerComponent &player, Seconds frameTime) const
{
    const float stride = player.getStride();
    if (stride < 0.f)
        return phase + player.getHeadbobRate() * multiplier * stepLength(frameTime);
    return std::fmod(PI * (static_cast<float>(player.getStepCount() % 2) + std::min(stride, 1.f)), turn);
}

/// What a wave comes to in a frame: itself where a step's time makes it, or else soon, since feet may be anywhere in
/// their step when they begin.
float BobAction::towards(float wave, float offset, const PlayerComponent &player, Seconds frameTime) const
{
    const float part = player.getStride() < 0.f ? 1.f : easedPart(SOON, stepLength(frameTime));
    return offset + (wave * player.getBobAmount() - offset) * part;
}

void BobAction::updateBob(Seconds frameTime, bool playerMoving)
{
    const auto player = hPlayerComp.lookup();
    if (!player || (!playerMoving && totalBobOffset == 0.f))
        return;
    if (bobVal > PI || bobVal < 0.f)
        bobVal = 0.f;
    float wanted = totalBobOffset;
    if (!playerMoving)
    {
        bobVal = 0.f;
        wanted = settled(totalBobOffset, stepLength(frameTime) * player->getHeadbobRate());
    }
    else if (elapsedTime >= FIRST_STEP)
    {
        bobVal = stepOn(bobVal, PI, *player.ptr, frameTime);
        wanted = towards(multiplier * WIDTH * std::sin(bobVal), totalBobOffset, *player.ptr, frameTime);
    }
    move(0.f, wanted - totalBobOffset);
    totalBobOffset = wanted;
}

void BobAction::updateSway(Seconds frameTime, bool playerMoving)
{
    const auto player = hPlayerComp.lookup();
    if (!playerMoving || !player)
        return centerSway(frameTime);
    if (!(elapsedTime >= FIRST_STEP))
        return;
    swayVal = std::fmod(stepOn(swayVal, 2.f * PI, *player.ptr, frameTime), 2.f * PI);
    const float wave = multiplier * WIDTH * swayPercentage * std::sin(swayVal);
    const float wanted = towards(wave, totalSway, *player.ptr, frameTime);
    move(wanted - totalSway, 0.f);
    totalSway = wanted;
}

void BobAction::centerSway(Seconds frameTime)
{
    const auto player = hPlayerComp.lookup();
    const float rate = player ? player->getHeadbobRate() : 0.f;
    const float wanted = settled(totalSway, easedPart(std::max(rate, 0.f), stepLength(frameTime)));
    move(wanted - totalSway, 0.f);
    totalSway = wanted;
    swayVal = 0.f;
}

void BobAction::move(float right, float up)
{
    if (const auto follower = hParentFollower.lookup())
        follower->setPositionOffset(follower->getPositionOffset() + Vec4(right, up, 0.f, 0.f));
}

void BobAction::setSwayPercentage(float val)
{
    if (isUsable(*this, "swayPercentage", val))
        swayPercentage = val;
}
