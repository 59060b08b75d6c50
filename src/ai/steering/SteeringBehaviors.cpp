// SteeringComponent: the behaviours.
#include "ai/steering/SteeringComponent.h"

#include "ai/steering/HeadTurn.h"

#include "physics/bodies/RigidBody.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/WellKnownPaths.h"

#include "foundation/Logger.h"
#include "foundation/Random.h"

#include <cmath>
#include <limits>

namespace
{

constexpr Seconds WANDER_INTERVAL = 0.5;
constexpr float WHISKER_ANGLE = 0.5235988f; ///< 30 degrees
constexpr Vec4 UP(0.f, 1.f, 0.f);

Vec4 scaledTo(Vec4 direction, float length)
{
    direction.normalize();
    return direction * length;
}

/// The turn from one orientation to another on the shorter way, with r 0 or more.
Quaternion turnBetween(const Quaternion &from, const Quaternion &to)
{
    Quaternion turn = to * from.inverse();
    turn.normalize();
    return turn.r < 0 ? Quaternion(-turn.r, -turn.i, -turn.j, -turn.k) : turn;
}

} // namespace

void SteeringComponent::updateSeek(Vec4 targetPos, float weight, Vec4 lookAt, bool leave)
{
    if (const Moved &mine = findMoved())
        request(seek(*mine.transform, targetPos, lookAt, leave), weight);
}

/// What `updateSeek` asks for.
SteeringOutput SteeringComponent::seek(const TransformComponent &transform, const Vec4 &targetPos, const Vec4 &lookAt,
                                       bool leave) const
{
    Vec4 dir = targetPos - transform.getPosition();
    if (leave)
        dir.negate();
    SteeringOutput output;
    output.accel = scaledTo(dir, maxAccel);
    output.orientation = lookAt == Vec4() ? dir : lookAt;
    return output;
}

void SteeringComponent::updatePursue(Vec4 targetPos, Vec4 targetVel, float weight)
{
    const Moved &mine = findMoved();
    if (!mine)
        return;
    const float distance = (targetPos - mine.transform->getPosition()).magnitude();
    const float speed = mine.body->getVelocity().magnitude();
    const float prediction = speed <= distance / maxPrediction ? maxPrediction : distance / speed;
    updateSeek(targetPos + targetVel * prediction, weight);
}

void SteeringComponent::updateArrive(Vec4 targetPos, float weight)
{
    const Moved &mine = findMoved();
    if (!mine)
        return;
    Vec4 dir = targetPos - mine.transform->getPosition();
    dir.w = targetPos.w - 1.f;
    const float distance = dir.magnitude();
    arrived = arriveTargetRadius > distance;
    if (arrived)
        return;
    const bool isNear = distance <= arriveSlowRadius;
    const float speed = isNear ? maxSpeed * distance / arriveSlowRadius : maxSpeed;
    SteeringOutput output;
    output.accel = (scaledTo(dir, speed) - mine.body->getVelocity()) / timeToTarget;
    mine.transform->setOrientation(Quaternion(finalVel));
    timeToTarget == 0.f ? tellOfNoTime() : request(output, weight);
}

void SteeringComponent::updateVelocityMatch(Vec4 targetVelocity, float weight)
{
    const Moved &mine = findMoved();
    if (!mine)
        return;
    SteeringOutput output;
    output.accel = (targetVelocity - mine.body->getVelocity()) / timeToTarget;
    timeToTarget == 0.f ? tellOfNoTime() : request(output, weight);
}

void SteeringComponent::tellOfNoTime()
{
    if (noTimeTold)
        return;
    noTimeTold = true;
    KV_LOGF(Logger_::I_ERROR,
            "%s of %s: timeToTarget is 0, so that arriving and matching velocities have no end and are passed over; "
            "set it to the seconds in which the body comes to its velocity, 0.25 say.",
            getName().toCString(), getParent().toString().toCString());
}

void SteeringComponent::updateWander(Seconds frameTime, float weight)
{
    const Moved &mine = findMoved();
    if (!mine)
        return;
    wanderTime += frameTime;
    if (wanderTime > WANDER_INTERVAL)
    {
        Vec4 offset = mine.transform->getOrientation().generateRotation().getColumn(2) * wanderOffset;
        wanderOrientation = randomBinormal() * wanderRate;
        offset.x += wanderRadius * std::sin(wanderOrientation);
        offset.z += wanderRadius * std::cos(wanderOrientation);
        wanderTarget = mine.transform->getPosition() + offset;
        wanderTime = 0;
    }
    if (wanderTarget != Vec4())
        updateSeek(wanderTarget, weight);
}

void SteeringComponent::updateAlign(Handle<Entity> hTarget, Seconds frameTime)
{
    if (const auto *const target = componentOf<TransformComponent>(hTarget, ComponentKeys::transform))
        turnTowards(target->getOrientation(), frameTime);
}

void SteeringComponent::updateAlignWithVector(Vec4 targetOrientationVec, Seconds frameTime)
{
    targetOrientationVec.w = 0.f;
    if (targetOrientationVec.x != 0.f || targetOrientationVec.z != 0.f)
        turnTowards(Quaternion(targetOrientationVec), frameTime);
}

/// Turns the transform for a time, along the shortest way.
void SteeringComponent::turnTowards(const Quaternion &target, Seconds frameTime)
{
    const Moved &mine = findMoved();
    if (!mine || !(alignMaxRotSpeed > 0.f) || !(frameTime > 0))
        return;
    const Quaternion before = mine.transform->getOrientation();
    const Quaternion turn = turnBetween(before, target);
    Vec4 axis(turn.i, turn.j, turn.k);
    const double angle = 2 * std::atan2(static_cast<double>(axis.magnitude()), static_cast<double>(turn.r));
    axis.normalize();
    const double rest = std::max(static_cast<double>(alignTargetRadius), 0.0);
    const double fastest = static_cast<double>(alignMaxRotSpeed);
    const double slowing = static_cast<double>(alignSlowRadius);
    HeadTurn head{std::max(angle - rest, 0.0), static_cast<double>(turnVelocity.dot(axis))};
    const double left = head.left;
    head.advance(frameTime, fastest,
                 slowing > 0 ? fastest * fastest / (2 * slowing) : std::numeric_limits<double>::infinity());

    Quaternion after = Quaternion::fromAxisAngle(axis, static_cast<float>(left - head.left)) * before;
    after.normalize();
    const Vec4 velocity = axis * static_cast<float>(head.speed);
    if (!isFinite(after) || !isFinite(velocity))
        return tellOfNoNumber();
    mine.transform->setOrientation(after);
    turnVelocity = velocity;
    turned = true;
}

void SteeringComponent::updateObstacleAvoidance(float weight)
{
    const Moved &mine = findMoved();
    if (!mine)
        return;
    for (AvoidRay *ray : {&centralRay, &whisker1, &whisker2})
        ray->collision.collided = false;
    Vec4 ahead = mine.body->getVelocity();
    if (ahead.magnitude() > maxSpeed)
        ahead = scaledTo(ahead, maxSpeed);
    ahead.normalize();
    centralRay.ray = ahead * lookAhead;
    whisker1.ray = whisker2.ray = ahead;
    whisker1.ray.rotate(UP, WHISKER_ANGLE);
    whisker2.ray.rotate(UP, -WHISKER_ANGLE);
    whisker1.ray *= lookAhead * 0.5f;
    whisker2.ray *= lookAhead * 0.5f;
    const auto map = mine.transform->findMap().lookup();
    if (map && map->getChild(WellKnownPaths::player).isValid())
        request(SteeringOutput(), weight);
}
