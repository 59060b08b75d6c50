#include "physics/doors/DoorPhysics.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/FiniteProperty.h"
#include "physics/doors/LeafNeighbours.h"
#include "physics/bodies/SoundRequest.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Logger.h"
#include "object/reflection/Variant.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float QUARTER_TURN = 1.5707964f; ///< 90 degrees: the stop
/// A push that opens a room's door in a good second, and lets it swing out softly.
constexpr LeafDrive::Manner OPENING = {2.2f, 0.35f, 0.6f};
constexpr float CLOSING_START = 0.35f; ///< seconds: as heavy as in opening
constexpr float CLOSING_EASE = 0.15f;  ///< radians: a latch, and no soft end
constexpr float SLAM_VELOCITY = 8.f;   ///< radians a second: shut from wide open in a fifth of a second
constexpr float CREEP = 0.01f;         ///< radians a second below which the hinge holds a leaf that nothing turns

bool sameSide(float angle, float other)
{
    return angle * other > 0.f;
}

const TransformComponent *transformOf(const Handle<Object> &playerOrComponent)
{
    if (const auto *own = componentOf<TransformComponent>(playerOrComponent, ComponentKeys::transform))
        return own;
    const auto component = playerOrComponent.lookup();
    return component ? componentOf<TransformComponent>(component->getParent(), ComponentKeys::transform) : nullptr;
}

} // namespace

void DoorPhysics::onLoadComplete()
{
    const bool firstTime = !getTransformComponent().isValid();
    RigidBody::onLoadComplete();
    reportUnmovedLeaf(*this);
    setInverseMass(0.f); // a mass that a pattern gave it for its weight would let contacts push it off the hinge
    if (pivot.y == 0.f)
        KV_LOGF(Logger_::I_ERROR,
                "%s of %s: a door turns about the vertical alone, and its pivot has none; set it to "
                "(0, 1, 0, 0) or (0, -1, 0, 0).",
                getName().toCString(), getParent().toString().toCString());
    const TransformComponent *const transform = findTransform();
    if (!transform)
        return;
    rememberPlacement(*transform);
    if (firstTime && !angleGiven)
        prevAngle = clamp(0.f - closedAngle, -QUARTER_TURN, QUARTER_TURN); // it stands as it was placed
    if (firstTime && opening)
        prevAngle = openAngle();
    stand();
}

void DoorPhysics::doFrame(Seconds frameTime)
{
    if (!findTransform())
        return;
    const float seconds = static_cast<float>(frameTime);
    if (!(seconds > 0.f)) // the timer stands
        return clearAccumulator();
    followMove();
    const bool driven = !swinging && (getNetTorque().y != 0.f || std::fabs(getAngularVelocity().dot(pivot)) >= CREEP);
    if (!swinging && !driven)
    {
        setAngularVelocity(Vec4());
        return clearAccumulator();
    }

    calculateMatrices();
    if (swinging)
        addTorque(swingTorque(seconds));
    turnByTorques(seconds);
    const float wanted = prevAngle + getAngularVelocity().dot(pivot) * seconds;
    const float angle = clearOfNeighbours(stopped(wanted, driven));
    if (angle == prevAngle)
        setAngularVelocity(Vec4());
    prevAngle = angle;
    stand();
    if (swinging && angle == targetAngle)
        endSwing();
    clearAccumulator();
}

void DoorPhysics::openDoor(Handle<Object> other)
{
    static const String openSound = SCS("DoorOpen"), lockedSound = SCS("DoorLocked");
    if (locked)
        return requestSound(*this, lockedSound);
    if (opening)
        return;
    requestSound(*this, openSound);
    opening = true;
    startSwing(awayFrom(other) * QUARTER_TURN);
}

void DoorPhysics::closeDoor(Handle<Object>)
{
    static const String openSound = SCS("DoorOpen");
    requestSound(*this, openSound);
    opening = slamming = false;
    closeDirection = prevAngle > 0.f ? -1.f : 1.f;
    startSwing(0.f);
}

void DoorPhysics::slamDoor(Handle<Object> other)
{
    closeDoor(other);
    slamming = true;
}

void DoorPhysics::interact(Handle<Object> player)
{
    if (opening)
        closeDoor(player);
    else
        openDoor(player);
}

void DoorPhysics::setOpen(bool val)
{
    opening = val;
    if (findTransform())
        standAt(val ? openAngle() : 0.f);
}

void DoorPhysics::setPivot(Vec4 val)
{
    if (!isUsable(*this, "pivot", val))
        return;
    followMove();
    pivot = Vec4(0.f, val.y == 0.f ? 0.f : std::copysign(1.f, val.y), 0.f, 0.f);
    placeLeaf();
}

void DoorPhysics::setPivotPosition(Vec4 val)
{
    val.w = 0.f;
    if (!isUsable(*this, "pivotPosition", val))
        return;
    followMove();
    pivotPosition = val;
    placeLeaf();
}

void DoorPhysics::setPrevAngle(float val)
{
    if (!isUsable(*this, "prevAngle", val))
        return;
    angleGiven = true;
    standAt(val);
}

void DoorPhysics::setClosedAngle(float val)
{
    if (!isUsable(*this, "closedAngle", val))
        return;
    const float angle = prevAngle - (val - closedAngle);
    closedAngle = val;
    if (findTransform())
        standAt(angle);
}

void DoorPhysics::setClosingVelocity(float val)
{
    if (!isUsable(*this, "closingVelocity", val))
        return;
    if (val > 0.f)
        closingVelocity = val;
    else
        KV_LOGF(Logger_::I_ERROR, "%s of %s: a closing velocity of %g shuts no door; give it radians a second above 0.",
                getName().toCString(), getParent().toString().toCString(), static_cast<double>(val));
}

/// Takes the hinge along where somebody else has moved the transform since the door stood the leaf there.
void DoorPhysics::followMove()
{
    const TransformComponent *const transform = findTransform();
    if (!transform ||
        (transform->getPosition() == stands.position && transform->getOrientation() == stands.orientation))
        return;
    rememberPlacement(*transform);
    calculateMatrices();
}

/// Takes the transform as it stands for the leaf at the present turn.
void DoorPhysics::rememberPlacement(const TransformComponent &transform)
{
    stands = placed = Pose{transform.getPosition(), transform.getOrientation()};
    if (offsetAngle != 0.f)
        placed = poseAt(-offsetAngle);
}

/// The leaf, turned about its hinge from where it was placed.
DoorPhysics::Pose DoorPhysics::poseAt(float turn) const
{
    if (turn == 0.f)
        return placed; // to the last bit
    const Quaternion turned = Quaternion::fromAxisAngle(Vec4(0.f, 1.f, 0.f, 0.f), turn * pivot.y);
    const Vec4 toHinge = placed.orientation.generateRotation() * pivotPosition;
    return Pose{placed.position + toHinge - turned.generateRotation() * toHinge, turned * placed.orientation};
}

float DoorPhysics::getOpenness() const
{
    return std::min(std::fabs(prevAngle) / QUARTER_TURN, 1.f);
}

Vec4 DoorPhysics::getClosedMiddle() const
{
    return closedPose().position;
}

Quaternion DoorPhysics::getClosedTurn() const
{
    return closedPose().orientation;
}

/// The leaf, turned shut from where it stands now.
DoorPhysics::Pose DoorPhysics::closedPose() const
{
    const TransformComponent *const transform = findTransform();
    if (!transform)
        return Pose();
    const Quaternion turned =
        Quaternion::fromAxisAngle(Vec4(0.f, 1.f, 0.f, 0.f), (closedAngle - offsetAngle) * pivot.y);
    const Vec4 toHinge = transform->getOrientation().generateRotation() * pivotPosition;
    return Pose{transform->getPosition() + toHinge - turned.generateRotation() * toHinge,
                turned * transform->getOrientation()};
}

/// Puts the transform where the angle has the leaf.
void DoorPhysics::stand()
{
    const float turn = closedAngle + prevAngle;
    if (!findTransform() || turn == offsetAngle)
        return;
    offsetAngle = turn;
    placeLeaf();
}

void DoorPhysics::placeLeaf()
{
    TransformComponent *const transform = findTransform();
    if (!transform)
        return;
    stands = poseAt(offsetAngle);
    transform->setPosition(stands.position);
    transform->setOrientation(stands.orientation);
    calculateMatrices();
}

/// Puts the leaf to an angle and ends whatever turned it.
void DoorPhysics::standAt(float angle)
{
    prevAngle = clamp(angle, -QUARTER_TURN, QUARTER_TURN);
    endSwing();
    stand();
}

/// Wide open on the side on which the leaf is ajar.
float DoorPhysics::openAngle() const
{
    return prevAngle < 0.f ? -QUARTER_TURN : QUARTER_TURN;
}

/// The sign of the angles that lead the leaf, as it stands, away from a player; 1 where there is nothing to tell.
float DoorPhysics::awayFrom(const Handle<Object> &player) const
{
    const TransformComponent *const from = transformOf(player), *const transform = findTransform();
    if (!from || !transform)
        return 1.f;
    const Matrix4 leaf = transform->getOrientation().generateRotation();
    Vec4 fromHinge = leaf * -pivotPosition;
    if (!(fromHinge.x * fromHinge.x + fromHinge.z * fromHinge.z > EPSILON))
        fromHinge = leaf.getColumn(0);
    const Vec4 outwards = pivot.cross(fromHinge); // where the leaf goes when its angle grows
    return outwards.dot(transform->getPosition() - from->getPosition()) < 0.f ? -1.f : 1.f;
}

void DoorPhysics::startSwing(float angle)
{
    if (!swinging)
        drive.setSpeed(getAngularVelocity().dot(pivot));
    else if (targetAngle == angle)
        return;
    targetAngle = angle;
    swinging = true;
    recordState();
}

void DoorPhysics::endSwing()
{
    targetAngle = prevAngle;
    swinging = slamming = false;
    drive.stop();
    setAngularVelocity(Vec4());
}

/// A map that is loaded again finds the door as it was left, however often that changed: both calls, each time.
void DoorPhysics::recordState()
{
    addToPersistentStateOneArg(SCS("setOpen"), opening);
    addToPersistentStateOneArg(SCS("setPrevAngle"), targetAngle);
}

/// The torque that gives the leaf the speed of its swing in this frame, whatever its inertia.
Vec4 DoorPhysics::swingTorque(float seconds)
{
    const float closingSpeed = slamming ? std::max(closingVelocity, SLAM_VELOCITY) : closingVelocity;
    const LeafDrive::Manner manner = opening ? OPENING : LeafDrive::Manner{closingSpeed, CLOSING_START, CLOSING_EASE};
    const float way = drive.advance(targetAngle - prevAngle, manner, seconds);
    const float gained = way / seconds * pivot.y - getAngularVelocity().y;
    return Vec4(0.f, gained / (seconds * getInverseInertiaWorld()[1][1]), 0.f, 0.f);
}

void DoorPhysics::turnByTorques(float seconds)
{
    const Vec4 angular = getAngularVelocity() + getInverseInertiaWorld() * getNetTorque() * seconds;
    // Who swings the leaf works against the damping too: whatever that is, 0 also, the swing keeps its speed.
    const float kept = swinging ? 1.f : keptOver(getAngularDamping(), seconds);
    setAngularVelocity(Vec4(0.f, angular.y * kept, 0.f, 0.f));
}

/// The angle that a turn ends at: its own target, or where the leaf stood when that lies beyond a limit.
float DoorPhysics::stopped(float angle, bool driven)
{
    if (swinging && reaches(angle))
        return targetAngle;
    const bool closing = !opening && !driven;
    const bool beyond = std::fabs(angle) > QUARTER_TURN || (closing && sameSide(angle, closeDirection));
    if (!beyond && std::isfinite(angle))
        return angle;
    drive.stop();
    return prevAngle;
}

bool DoorPhysics::reaches(float angle) const
{
    const float left = targetAngle - angle;
    return std::fabs(left) < LeafDrive::ARRIVED || sameSide(angle - targetAngle, targetAngle - prevAngle);
}

/// As far towards an angle as neither a player nor a body that has nowhere to go stands in the leaf's way.
float DoorPhysics::clearOfNeighbours(float angle)
{
    TransformComponent *const transform = findTransform();
    const BoundingVolume *const volume = findVolume();
    if (!transform || !volume || angle == prevAngle)
        return angle;
    const LeafNeighbours neighbours(*volume, *transform,
                                    2.f * pivotPosition.magnitude() + volume->getHitBox().magnitude());
    const float farthest = swinging ? targetAngle : std::copysign(QUARTER_TURN, angle - prevAngle);
    const float clear =
        neighbours.freeUpTo(prevAngle, angle, farthest,
                            [&](float place)
                            {
                                const Pose pose = poseAt(closedAngle + place);
                                return leafBox(*volume, pose.position, pose.orientation.generateRotation());
                            });
    if (clear != angle)
        drive.stop();
    return clear;
}
