// SteeringComponent: the frame step, and what it gives to the body.
#include "ai/steering/SteeringComponent.h"

#include "physics/bodies/RigidBody.h"
#include "physics/volumes/FiniteProperty.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Logger.h"

#include <cmath>
#include <limits>

namespace
{

constexpr Vec4 NOTHING;

/// Whether a vector is exactly zero; `==` takes small numbers for none.
bool isZero(const Vec4 &v)
{
    return v.x == 0.f && v.y == 0.f && v.z == 0.f && v.w == 0.f;
}

void clip(Vec4 &v, float most)
{
    if (v.magnitude() <= most)
        return;
    v.normalize();
    v *= most;
}

} // namespace

void SteeringComponent::doFrame()
{
    if (!turned)
        turnVelocity = NOTHING;
    turned = false;
    applySteering(finalOutput);
    finalOutput.reset();
}

void SteeringComponent::applySteering(SteeringOutput &sOutput)
{
    const Moved &mine = findMoved();
    if (!mine)
        return;
    if (!isFiniteRequest(sOutput))
        passOver(sOutput);
    // A request without a heading is none: with the pitch alone, what looks up would come to look straight up.
    const bool hasHeading = sOutput.orientation.x != 0.f || sOutput.orientation.z != 0.f;
    sOutput.orientation.y = mine.transform->getOrientation().generateRotation().data[1][2];
    if (hasHeading)
        mine.transform->setOrientation(Quaternion(sOutput.orientation));
    if (!isZero(sOutput.accel))
    {
        sOutput.vel += mine.body->getVelocity();
        sOutput.accel += mine.body->getAcceleration();
        clipAcceleration(sOutput);
        clipVelocity(sOutput);
        if (!isFiniteRequest(sOutput)) // the body's own numbers were none, or the sum has no end
            passOver(sOutput);
        mine.body->setVelocity(sOutput.vel);
        finalVel = sOutput.vel;
    }
    mine.body->setAcceleration(sOutput.accel.x, sOutput.accel.y, sOutput.accel.z);
    finalAccel = sOutput.accel;
    finalOrientation = hasHeading ? sOutput.orientation : NOTHING;
}

void SteeringComponent::clipAcceleration(SteeringOutput &sOutput) const
{
    clip(sOutput.accel, maxAccel);
}

void SteeringComponent::clipVelocity(SteeringOutput &sOutput) const
{
    clip(sOutput.vel, maxSpeed);
}

bool SteeringComponent::hasArrived(Vec4 pos)
{
    const Moved &mine = findMoved();
    if (!mine.transform)
        return false;
    const Vec4 way = pos - mine.transform->getPosition();
    return std::hypot(way.x, way.z) < arriveTargetRadius;
}

void SteeringComponent::setFinalOutput(const SteeringOutput &val)
{
    if (isUsable(*this, "finalOutput", val.accel) && isUsable(*this, "finalOutput", val.vel) &&
        isUsable(*this, "finalOutput", val.orientation))
        finalOutput = val;
}

void SteeringComponent::setWanderTime(double val)
{
    if (isUsable(*this, "wanderTime", std::isfinite(val) ? 0.f : std::numeric_limits<float>::quiet_NaN()))
        wanderTime = val;
}

void SteeringComponent::setPart(float &part, const char *name, float val)
{
    if (isUsable(*this, name, val))
        part = val;
}

void SteeringComponent::setPart(Vec4 &part, const char *name, const Vec4 &val)
{
    if (isUsable(*this, name, val))
        part = val;
}

/// Adds a request to the frame's sum, unless that would be no number.
void SteeringComponent::request(const SteeringOutput &output, float weight)
{
    const SteeringOutput sum = finalOutput + output * weight;
    if (isFiniteRequest(sum))
        finalOutput = sum;
    else
        tellOfNoNumber();
}

/// Makes a request that is no number one for nothing.
void SteeringComponent::passOver(SteeringOutput &sOutput)
{
    tellOfNoNumber();
    sOutput.reset();
}

void SteeringComponent::tellOfNoNumber()
{
    if (noNumberTold)
        return;
    noNumberTold = true;
    KV_LOGF(Logger_::I_ERROR,
            "%s of %s: a request that is no number was passed over; give behaviours targets, velocities and weights "
            "that are finite numbers.",
            getName().toCString(), getParent().toString().toCString());
}

/// The components that are steered; looked up again when any object was born or died, or this one moved in the tree.
const SteeringComponent::Moved &SteeringComponent::findMoved()
{
    if (moved.objectChanges != ObjectMap().getChangeCount())
    {
        moved.transform = handle_cast<TransformComponent>(getSibling(ComponentKeys::transform)).lookup().ptr;
        moved.body = handle_cast<RigidBody>(getSibling(ComponentKeys::physics)).lookup().ptr;
        moved.objectChanges = ObjectMap().getChangeCount();
    }
    return moved;
}

void SteeringComponent::onHierarchyChange(Handle<Object>, Handle<Object>)
{
    moved = Moved();
}
