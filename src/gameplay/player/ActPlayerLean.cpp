#include "gameplay/player/ActPlayerLean.h"

#include "gameplay/player/LevelHandlers.h"
#include "gameplay/player/PlayerLookup.h"
#include "gameplay/player/PlayerMessages.h"

#include "ai/perception/Sightline.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"
#include "physics/grid/PartitioningGrid.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float FARTHEST = 0.35f; ///< radians
constexpr float HIPS = 0.85f;     ///< metres below the eyes
constexpr float HEAD = 0.18f;     ///< metres that the middle of the head stays off what is solid
constexpr float RATE = 9.f;       ///< a second: a lean takes a third of one
constexpr float THERE = 1e-4f;    ///< radians

/// Where a lean takes the eyes, along the body's axes, metres.
Vec4 leaned(float angle)
{
    return Vec4(-HIPS * std::sin(angle), HIPS * (std::cos(angle) - 1.f), 0.f, 0.f);
}

} // namespace

ActionStatus ActPlayerLean::update(Seconds frameTime)
{
    if (!neckOf(getParent()).isValid())
        return AS_InvalidHandle;
    if (elapsedTime == 0.0)
        begin(frameTime);
    if (leanDir == LD_Left)
        updateLeanLeft(frameTime);
    else if (leanDir == LD_Right)
        updateLeanRight(frameTime);
    else if (leanDir == LD_Return)
        updateLeanReturn(frameTime);
    return AS_InProgress;
}

void ActPlayerLean::begin(Seconds frameTime)
{
    static const String handler = SCS("handleLeanMessage");
    incrementTime(frameTime);
    for (const ReflectorPtr &message : {LeanLeftMessage, LeanRightMessage, LeanReturnMessage, StopLeaningMessage})
        hearInLevel(*this, message, handler);
}

void ActPlayerLean::handleLeanMessage(const ReflectorPtr &messageType)
{
    if (messageType == LeanLeftMessage)
        leanDir = LD_Left;
    else if (messageType == LeanRightMessage)
        leanDir = LD_Right;
    else if (messageType == LeanReturnMessage)
        leanDir = LD_Return;
    else if (messageType == StopLeaningMessage)
        leanDir = LD_None;
}

void ActPlayerLean::updateLeanLeft(Seconds frameTime)
{
    leanTowards(freeAngle(FARTHEST), frameTime);
}

void ActPlayerLean::updateLeanRight(Seconds frameTime)
{
    leanTowards(freeAngle(-FARTHEST), frameTime);
}

void ActPlayerLean::updateLeanReturn(Seconds frameTime)
{
    leanTowards(0.f, frameTime);
    if (currAngle == 0.f)
        leanDir = LD_None;
}

/// Rolls and moves the head by what is still missing, in the body's frame: pitch stands behind it and is left alone.
void ActPlayerLean::leanTowards(float angle, Seconds frameTime)
{
    const auto neck = neckOf(getParent()).lookup();
    if (!neck || !std::isfinite(angle))
        return;
    float next = currAngle + (angle - currAngle) * easedPart(RATE, stepLength(frameTime));
    if (std::abs(next - angle) < THERE)
        next = angle;
    const float half = (next - currAngle) * 0.5f;
    neck->setPositionOffset(neck->getPositionOffset() + leaned(next) - leaned(currAngle));
    neck->setOrientationOffset(Quaternion(std::cos(half), 0.f, 0.f, std::sin(half)) * neck->getOrientationOffset());
    currAngle = next;
}

/// As much of a lean as solid things beside the head leave room for.
float ActPlayerLean::freeAngle(float angle) const
{
    const auto neck = neckOf(getParent()).lookup();
    auto *const place = componentOf<TransformComponent>(getParent(), ComponentKeys::transform);
    const auto grid = place ? PartitioningGrid::ofMap(place->findMap()).lookup() : Handle<PartitioningGrid>::Result{};
    if (!grid || !neck)
        return angle;
    const Matrix4 axes = place->getOrientation().generateRotation();
    const Vec4 middle = place->getPosition() + axes * (neck->getPositionOffset() - leaned(currAngle));
    const float side = angle > 0.f ? -1.f : 1.f, wanted = HIPS * std::sin(std::abs(angle));
    const Vec4 way = axes * Vec4(side * (wanted + HEAD), 0.f, 0.f, 0.f);
    const SegmentHit hit = grid->checkSegmentFor(SightFilter(getParent(), Handle<Object>()), middle, way);
    if (!hit.collision.collided)
        return angle;
    const float free = std::max(hit.collision.t * (wanted + HEAD) - HEAD, 0.f);
    return std::copysign(std::asin(std::min(free, wanted) / HIPS), angle);
}
