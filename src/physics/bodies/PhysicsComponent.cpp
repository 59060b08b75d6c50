#include "physics/bodies/PhysicsComponent.h"

#include "physics/volumes/BoundingVolume.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/levels/Coordinator.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Finite.h"
#include "foundation/Logger.h"

#include <bit>
#include <cmath>
#include <limits>

namespace
{

/// Powers by the time of a step, remembered: the bodies of a level share a few dampings, and a frame is one step.
class KeptParts
{
public:
    float after(float keptPerSecond, Seconds time)
    {
        Answer &answer = answers[std::bit_cast<std::uint32_t>(keptPerSecond) * SPREAD >> (32 - ANSWER_BITS)];
        if (answer.keptPerSecond != keptPerSecond || answer.time != time)
            answer = {keptPerSecond, time, static_cast<float>(std::pow(static_cast<double>(keptPerSecond), time))};
        return answer.kept;
    }

private:
    struct Answer
    {
        float keptPerSecond = 1.f;
        Seconds time = 0.0;
        float kept = 1.f;
    };
    static constexpr int ANSWER_BITS = 4;
    static constexpr std::uint32_t SPREAD = 2654435769u; ///< 2^32 by the golden ratio: near numbers fall far apart

    Answer answers[1 << ANSWER_BITS];
};

} // namespace

void PhysicsComponent::onLoadComplete()
{
    setTransformComponent();
}

void PhysicsComponent::setTransformComponent()
{
    transComp = handle_cast<TransformComponent>(getSibling(ComponentKeys::transform));
}

void PhysicsComponent::doFrame()
{
    if (const auto coordinator = getAncestorOfType<Coordinator>().lookup())
        doFrame(coordinator->getTimer(TimerNames::master).getFrameTimeSeconds());
}

void PhysicsComponent::doFrame(Seconds frameTime)
{
    TransformComponent *const transform = findTransform();
    if (!transform)
        return;
    const float seconds = static_cast<float>(frameTime);
    const float kept = keptOver(damping, frameTime);
    Vec4 position = transform->getPosition() + velocity * seconds;
    position.y = position.y < 0.f ? 0.f : position.y;
    const Vec4 gained = totalAcceleration() * seconds;
    accLastFrame = gained * kept;
    velocity = (velocity + gained) * kept;
    clearAccumulator();
    if (isFinite(position) && isFinite(velocity))
        transform->setPosition(position);
    else
        stop();
}

void PhysicsComponent::stop()
{
    if (!stopTold)
        KV_LOGF(Logger_::I_ERROR,
                "%s of %s is stopped: its place or its speed is no number any more. Look for a division by 0 in what "
                "sets its velocity, its acceleration, its forces or its transform.",
                getName().toCString(), getParent().toString().toCString());
    stopTold = true;
    velocity = accLastFrame = Vec4();
    if (!isFinite(acceleration))
        acceleration = Vec4();
    clearAccumulator();
}

bool PhysicsComponent::isWithin(const char *property, float val, float least, float most) const
{
    if (val >= least && val <= most)
        return true;
    KV_LOGF(Logger_::I_ERROR, "%s of %s: %g is no %s and is not taken; it goes from %g to %g.", getName().toCString(),
            getParent().toString().toCString(), static_cast<double>(val), property, static_cast<double>(least),
            static_cast<double>(most));
    return false;
}

void PhysicsComponent::setInverseMass(float val)
{
    if (isWithin("inverseMass", val, 0.f, std::numeric_limits<float>::max()))
        inverseMass = val;
}

void PhysicsComponent::setMass(float m)
{
    const float inverse = 1.f / m;
    if (m > 0.f && std::isfinite(inverse))
        inverseMass = inverse;
    else
        KV_LOGF(Logger_::I_ERROR,
                "%s of %s: a body with a mass of %g cannot be moved by forces; masses are greater than 0. Set "
                "inverseMass to 0 for a body that nothing moves.",
                getName().toCString(), getParent().toString().toCString(), static_cast<double>(m));
}

void PhysicsComponent::setDamping(float val)
{
    if (isWithin("damping", val, 0.f, 1.f))
        damping = val;
}

void PhysicsComponent::setRestitution(float val)
{
    if (isWithin("restitution", val, 0.f, 1.f))
        restitution = val;
}

float PhysicsComponent::keptOver(float keptPerSecond, Seconds time)
{
    static KeptParts lastAnswers;
    return keptPerSecond == 1.f ? 1.f : lastAnswers.after(keptPerSecond, time);
}

TransformComponent *PhysicsComponent::findTransform() const
{
    return transComp.lookup().ptr;
}

void PhysicsComponent::onHierarchyChange(Handle<Object>, Handle<Object>)
{
    objectChanges = 0;
}

void PhysicsComponent::lookUpVolume()
{
    volume = handle_cast<BoundingVolume>(getSibling(ComponentKeys::boundingVolume)).lookup().ptr;
    objectChanges = ObjectMap().getChangeCount();
}
