#include "physics/doors/SlidingDoorPhysics.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/FiniteProperty.h"
#include "physics/doors/LeafNeighbours.h"
#include "physics/bodies/SoundRequest.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/transforms/ParentFollowerComponent.h"
#include "engine/transforms/ParentTransform.h"
#include "engine/transforms/TransformOffsetComponent.h"

#include "foundation/Logger.h"
#include "object/reflection/Variant.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float START_TIME = 0.4f; ///< seconds until a leaf on rollers is at its speed
constexpr float EASING = 0.3f;     ///< metres in which it stops

template <class Follower>
Follower *followerBeside(const SlidingDoorPhysics &door)
{
    return componentOf<Follower>(door.getParent(), ComponentKeys::parentFollower);
}

} // namespace

void SlidingDoorPhysics::onLoadComplete()
{
    const bool firstTime = !getTransformComponent().isValid();
    RigidBody::onLoadComplete();
    reportUnmovedLeaf(*this);
    setInverseMass(0.f); // a mass that a pattern gave it would let contacts push it off its rail
    if (line() == Vec4())
        KV_LOGF(Logger_::I_ERROR,
                "%s of %s: an openVelocity of length 0 slides nowhere; give it metres a second along "
                "the leaf's own axes, as (1.2, 0, 0, 0).",
                getName().toCString(), getParent().toString().toCString());
    if (!firstTime || !findTransform())
        return;
    closedPlace = standsAt = getPlace();
    if (open)
        currentOffset = travel();
    stand();
}

void SlidingDoorPhysics::doFrame(Seconds frameTime)
{
    clearAccumulator();
    const float seconds = static_cast<float>(frameTime);
    if (!findTransform() || !(seconds > 0.f))
        return;
    if (const Vec4 place = getPlace(); place != standsAt) // somebody moved the door
    {
        closedPlace = place - slideTo(currentOffset);
        standsAt = place;
    }
    if (findTransform()->getOrientation() != standsTurned) // by a follower in its first frame, or with its parent
        stand();
    if (!sliding)
        return;
    const float end = open ? travel() : 0.f;
    currentOffset = clearOfNeighbours(nextOffset(end, seconds));
    stand();
    if (currentOffset == end)
    {
        sliding = false;
        drive.stop();
    }
    calculateMatrices();
}

void SlidingDoorPhysics::openDoor(Handle<Object>, bool bottomHalf)
{
    static const String openSound = SCS("DoorOpen"), lockedSound = SCS("DoorLocked");
    if (locked)
        return requestSound(*this, lockedSound);
    if (open)
        return;
    requestSound(*this, openSound);
    if (currentOffset == 0.f)
        bottom = bottomHalf;
    open = true;
    startSlide();
}

void SlidingDoorPhysics::closeDoor(Handle<Object>, bool)
{
    static const String openSound = SCS("DoorOpen");
    requestSound(*this, openSound);
    open = false;
    startSlide();
}

void SlidingDoorPhysics::interact(Handle<Object> player)
{
    if (open)
        closeDoor(player, bottom);
    else
        openDoor(player, bottom);
}

void SlidingDoorPhysics::setOpen(bool val)
{
    open = val;
    setCurrentOffset(val ? travel() : 0.f);
}

void SlidingDoorPhysics::setDirection(DIRECTION val)
{
    direction = val;
    stand();
}

void SlidingDoorPhysics::setOpenVelocity(Vec4 vel)
{
    vel.w = 0.f;
    if (!isUsable(*this, "openVelocity", vel))
        return;
    openVelocity = vel;
    stand();
}

void SlidingDoorPhysics::setCurrentOffset(float val)
{
    if (!isUsable(*this, "currentOffset", val))
        return;
    currentOffset = std::max(val, 0.f);
    sliding = false;
    drive.stop();
    stand();
}

void SlidingDoorPhysics::setBottom(bool val)
{
    bottom = val;
    stand();
}

/// Where a frame takes the leaf on its way to an end: to the end itself, when it arrives there.
float SlidingDoorPhysics::nextOffset(float end, float seconds)
{
    const float farthest = std::max(travel(), currentOffset);
    const LeafDrive::Manner manner = {openVelocity.magnitude(), START_TIME, EASING};
    const float offset = currentOffset + drive.advance(end - currentOffset, manner, seconds);
    if (std::fabs(end - offset) < LeafDrive::ARRIVED)
        return end;
    if (offset >= 0.f && offset <= farthest)
        return offset;
    drive.stop(); // it was called back as it still ran towards its other end
    return offset < 0.f ? 0.f : farthest;
}

/// Which way the leaf opens, along its own axes, with length 1; 0 where it has no way to go.
Vec4 SlidingDoorPhysics::line() const
{
    Vec4 along = openVelocity;
    const float length = along.magnitude();
    if (!(length > EPSILON))
        return Vec4();
    return along * ((direction == Right) != bottom ? 1.f / length : -1.f / length);
}

/// How far the leaf goes, metres: its own width along its way.
float SlidingDoorPhysics::travel()
{
    const BoundingVolume *const volume = findVolume();
    if (!volume)
        return 0.f;
    const Vec4 along = line(), box = volume->getHitBox();
    const float width = std::fabs(along.x * box.x) + std::fabs(along.y * box.y) + std::fabs(along.z * box.z);
    return std::isfinite(width) ? width : 0.f;
}

float SlidingDoorPhysics::getOpenness()
{
    const float way = travel();
    return way > 0.f ? std::min(currentOffset / way, 1.f) : 0.f;
}

Vec4 SlidingDoorPhysics::getClosedMiddle() const
{
    const TransformComponent *const transform = findTransform();
    if (!transform)
        return Vec4();
    return transform->getPosition() - transform->getOrientation().generateRotation() * (line() * currentOffset);
}

/// From closed to an offset, in the space of the leaf's place.
Vec4 SlidingDoorPhysics::slideTo(float offset) const
{
    const TransformComponent *const transform = findTransform();
    if (!transform)
        return Vec4();
    const Vec4 native = transform->getOrientation().generateRotation() * (line() * offset);
    const TransformComponent *const turning = findTurningFollower() ? parentTransform(*this) : nullptr;
    // Such a follower turns its offset with the parent; a row vector's product takes that turn back.
    return turning ? native * turning->getOrientation().generateRotation() : native;
}

ParentFollowerComponent *SlidingDoorPhysics::findFollower() const
{
    return followerBeside<ParentFollowerComponent>(*this);
}

TransformOffsetComponent *SlidingDoorPhysics::findTurningFollower() const
{
    return followerBeside<TransformOffsetComponent>(*this);
}

/// What the door moves: the offset of what places the leaf, or its own transform's position.
Vec4 SlidingDoorPhysics::getPlace() const
{
    if (const auto *follower = findFollower())
        return follower->getPositionOffset();
    if (const auto *follower = findTurningFollower())
        return follower->getPositionOffset();
    const TransformComponent *const transform = findTransform();
    return transform ? transform->getPosition() : Vec4();
}

void SlidingDoorPhysics::setPlace(const Vec4 &place)
{
    TransformComponent *const transform = findTransform();
    if (!transform)
        return;
    if (auto *follower = findFollower())
        follower->setPositionOffset(place);
    else if (auto *turning = findTurningFollower())
        turning->setPositionOffset(place);
    else
        transform->setPosition(place);
    standsAt = place;
    standsTurned = transform->getOrientation();
}

void SlidingDoorPhysics::startSlide()
{
    sliding = true;
    recordState();
}

/// Puts the leaf where its offset has it; before the load is complete it stands where it was placed.
void SlidingDoorPhysics::stand()
{
    if (findTransform())
        setPlace(closedPlace + slideTo(currentOffset));
}

/// As far towards an offset as neither a player nor a body that has nowhere to go stands in the leaf's way.
float SlidingDoorPhysics::clearOfNeighbours(float offset)
{
    TransformComponent *const transform = findTransform();
    const BoundingVolume *const volume = findVolume();
    if (!transform || !volume || offset == currentOffset)
        return offset;
    const Matrix4 turned = transform->getOrientation().generateRotation();
    const Vec4 along = turned * line();
    const LeafNeighbours neighbours(*volume, *transform,
                                    std::fabs(offset - currentOffset) + volume->getHitBox().magnitude());
    const auto boxAt = [&](float place)
    { return leafBox(*volume, transform->getPosition() + along * (place - currentOffset), turned); };
    const float clear = neighbours.freeUpTo(currentOffset, offset, open ? travel() : 0.f, boxAt);
    if (clear != offset)
        drive.stop();
    return clear;
}

/// A map that is loaded again finds the leaf at the end it was sent to.
void SlidingDoorPhysics::recordState()
{
    addToPersistentStateOneArg(SCS("setBottom"), bottom);
    addToPersistentStateOneArg(SCS("setOpen"), open);
}
