#include "gameplay/creatures/DummyObjectComponent.h"

#include "ai/paths/PathFollower.h"
#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/PersistentStateComponent.h"
#include "engine/systems/SystemSystem.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"
#include "object/python/ScriptCall.h"
#include "object/reflection/SavedArguments.h"
#include "physics/volumes/FiniteProperty.h"
#include "platform/sound/SoundComponent.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float HALF_STANCE = 0.11f; ///< metres from the middle to each foot
constexpr float REACHED = 0.35f;     ///< metres from a point at which the next one is made for
const Vec4 POINT_COLOR(0.4f, 0.8f, 1.f, 1.f);

float flatDistance(const Vec4 &a, const Vec4 &b)
{
    return std::hypot(a.x - b.x, a.z - b.z);
}

void drawCross(DebugCollectorComponent &collector, const Vec4 &at, float size, const Vec4 &color)
{
    const Vec4 x(size, 0, 0, 0), z(0, 0, size, 0);
    collector.addLine3D(at - x, at + x, color);
    collector.addLine3D(at - z, at + z, color);
}

} // namespace

TransformComponent *DummyObjectComponent::transform() const
{
    return componentOf<TransformComponent>(getParent(), ComponentKeys::transform);
}

void DummyObjectComponent::onLoadComplete()
{
    footsteps.reserve(MOST_FOOTSTEPS);
    if (const TransformComponent *const place = transform())
        prevFootstepPos = place->getPosition();
    updateStationaryFootPositions();
}

void DummyObjectComponent::doFrame()
{
    const auto level = getAncestorOfType<Coordinator>().lookup();
    TransformComponent *const place = transform();
    if (!level || !place)
        return;
    const Seconds frameTime = level->getTimer(TimerNames::master).getFrameTimeSeconds();
    fadeFootsteps(frameTime);
    if (followPoints && !dummyPoints.empty())
        walk(*place, static_cast<float>(frameTime));
    if (!(flatDistance(place->getPosition(), prevFootstepPos) < footstepLength))
        placeFootstep();
}

void DummyObjectComponent::walk(TransformComponent &place, float seconds)
{
    currFollowIndex %= getNumDummyPoints();
    if (walkTo(place, dummyPoints[currFollowIndex], seconds))
        currFollowIndex = (currFollowIndex + 1) % getNumDummyPoints();
}

/// Whether it has got there, or as near as it gets.
bool DummyObjectComponent::walkTo(TransformComponent &place, const Vec4 &point, float seconds)
{
    if (flatDistance(place.getPosition(), point) <= REACHED)
        return true;
    if (auto *const legs = componentOf<PathFollower>(getParent(), ComponentKeys::pathFollower))
    {
        const bool wasThere = flatDistance(legs->getGoal(), point) < 1e-3f && (legs->getArrived() || legs->getFailed());
        legs->goTo(point);
        return wasThere;
    }
    Vec4 way = point - place.getPosition();
    way.y = way.w = 0.f;
    const float left = way.magnitude();
    way.normalize();
    place.setPosition(place.getPosition() + way * std::min(walkSpeed * seconds, left));
    place.setOrientation(Quaternion(way));
    return false;
}

void DummyObjectComponent::stopWalking()
{
    followPoints = false;
    if (auto *const legs = componentOf<PathFollower>(getParent(), ComponentKeys::pathFollower))
        legs->stop();
    updateStationaryFootPositions();
}

void DummyObjectComponent::fadeFootsteps(Seconds frameTime)
{
    for (Footstep &print : footsteps)
        print.time += frameTime;
    const auto faded = [this](const Footstep &print) { return !(print.time < footstepFadeTime); };
    footsteps.erase(std::remove_if(footsteps.begin(), footsteps.end(), faded), footsteps.end());
}

void DummyObjectComponent::placeFootstep()
{
    const TransformComponent *const place = transform();
    if (!place)
        return;
    if (footsteps.size() >= MOST_FOOTSTEPS)
        footsteps.erase(footsteps.begin());
    footsteps.push_back({place->getPosition(), 0.0});
    prevFootstepPos = place->getPosition();
    updateStationaryFootPositions();
    playFootstepSound();
    tellStep();
    currFootfall = currFootfall == LEFT_FOOT ? RIGHT_FOOT : LEFT_FOOT;
}

void DummyObjectComponent::tellStep()
{
    const ReflectorPtr called = stepFunc; // the function may replace itself
    if (!called)
        return;
    SavedArguments entity = SavedArguments::of(getParent());
    if (!callOrReport(called, entity, *this, "step function") && stepFunc == called)
        stepFunc = ReflectorPtr();
}

void DummyObjectComponent::playFootstepSound()
{
    static const String footstep = SCS("Footstep");
    if (auto *const voice = componentOf<SoundComponent>(getParent(), ComponentKeys::sound))
        voice->playSoundEffect(footstep);
}

void DummyObjectComponent::updateStationaryFootPositions()
{
    const TransformComponent *const place = transform();
    if (!place)
        return;
    const Vec4 aside = place->getOrientation().generateRotation().getColumn(0) * HALF_STANCE;
    leftStationaryFoot = place->getPosition() - aside;
    rightStationaryFoot = place->getPosition() + aside;
}

void DummyObjectComponent::markPointsForSaving()
{
    static const String setter = SCS("setSavedPoints");
    if (const auto kept = PersistentStateComponent::ofLevel(getAncestorOfType<Coordinator>()).lookup())
        kept->addFunction(::getHandle(this), setter, SavedArguments::of(getSavedPoints()));
    else
        KV_LOGF(Logger_::I_WARNING, "%s: the points are not kept, since the level keeps no state.",
                getParent().toString().toCString());
}

void DummyObjectComponent::setCurrDummyPointIndex(unsigned val)
{
    currDummyPointIndex = dummyPoints.empty() ? 0 : std::min(val, getNumDummyPoints() - 1);
}

Vec4 DummyObjectComponent::getCurrDummyPoint() const
{
    return currDummyPointIndex < dummyPoints.size() ? dummyPoints[currDummyPointIndex] : Vec4(0, 0, 0, 1);
}

void DummyObjectComponent::setCurrDummyPoint(Vec4 val)
{
    if (currDummyPointIndex < dummyPoints.size() && isUsable(*this, "currDummyPoint", val))
        dummyPoints[currDummyPointIndex] = val;
}

void DummyObjectComponent::setNumDummyPoints(unsigned val)
{
    if (val > MOST_POINTS)
        return KV_LOGF(Logger_::I_ERROR, "%s: %u points are too many; give it %u at most.",
                       getParent().toString().toCString(), val, MOST_POINTS);
    const TransformComponent *const place = transform();
    dummyPoints.resize(val, place ? place->getPosition() : Vec4(0, 0, 0, 1));
    setCurrDummyPointIndex(currDummyPointIndex);
}

void DummyObjectComponent::setFootstepLength(float val)
{
    if (isUsable(*this, "footstepLength", val))
        footstepLength = std::max(val, 0.05f);
}

void DummyObjectComponent::setFootstepFadeTime(double val)
{
    if (isUsable(*this, "footstepFadeTime", static_cast<float>(val)))
        footstepFadeTime = val;
}

void DummyObjectComponent::setWalkSpeed(float val)
{
    if (isUsable(*this, "walkSpeed", val))
        walkSpeed = std::max(val, 0.f);
}

float DummyObjectComponent::getFootstepStrength(unsigned number) const
{
    if (number >= footsteps.size())
        return 0.f;
    return std::max(0.f, static_cast<float>(1.0 - footsteps[number].time / footstepFadeTime));
}

String DummyObjectComponent::tell()
{
    if (!followPoints || dummyPoints.empty())
        return String();
    return String::format("walks to the %uth of its %u points", currFollowIndex % getNumDummyPoints() + 1,
                          getNumDummyPoints());
}

void DummyObjectComponent::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const auto collector = dcc.lookup();
    if (!collector || !getSystemDeref<GlobalConfigSystem>().getDebugDrawPathInfoEnabled())
        return;
    for (const Vec4 &point : dummyPoints)
        drawCross(*collector, point, 0.3f, POINT_COLOR);
    for (unsigned number = 0; number < getFootstepCount(); ++number)
    {
        const float strength = getFootstepStrength(number);
        drawCross(*collector, footsteps[number].position, 0.1f, Vec4(strength, strength, strength, 1.f));
    }
}
