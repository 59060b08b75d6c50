#include "ai/perception/PerceptionComponent.h"

#include "ai/perception/PerceptionManager.h"
#include "ai/perception/Sightline.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"
#include "object/python/ScriptCall.h"
#include "object/reflection/SavedArguments.h"
#include "physics/acoustics/SoundWays.h"
#include "physics/volumes/FiniteProperty.h"

#include "foundation/Finite.h"
#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float SAME_PLACE = 0.01f;      ///< metres that a line of sight may move and still be the same
constexpr Seconds OLDEST_LINE = 0.25;    ///< seconds, after which what stands between may have moved
constexpr float FAR_SIGHT = 0.15f;       ///< clarity at the end of the range of what is clear close by
constexpr float CLOSE_SIGHT = 0.25f;     ///< part of the range in which nothing is lost
constexpr float LAMP_SIGHT = 0.7f;       ///< clarity of the brightest lamp
constexpr float SEEN_VAGUENESS = 0.3f;   ///< metres
constexpr float LAMP_VAGUENESS = 1.5f;   ///< metres
constexpr float HEARD_VAGUENESS = 0.12f; ///< metres for each metre of the way
constexpr float HIDDEN_VAGUENESS = 1.5f; ///< metres more around a corner or behind a door
constexpr float LOUDEST_HEARD = 24.f;    ///< decibels above the threshold that tell as much as any sound can
constexpr float LONGEST_BEAM = 20.f;     ///< metres from a lamp to where its light is looked for
constexpr float HALF_TURN = PI;

/// Where a value lies on the way from one bound to another, 0 to 1.
float share(float value, float none, float whole)
{
    return whole != none ? std::clamp((value - none) / (whole - none), 0.f, 1.f) : static_cast<float>(value >= whole);
}

Vec4 between(const Vec4 &from, const Vec4 &to)
{
    Vec4 way = to - from;
    way.w = 0.f;
    return way;
}

float distanceOf(const Vec4 &one, const Vec4 &other)
{
    return between(one, other).magnitude();
}

bool isNear(const Vec4 &one, const Vec4 &other)
{
    return distanceOf(one, other) < SAME_PLACE;
}

} // namespace

PerceptionManager *PerceptionComponent::findManager() const
{
    return handle_cast<PerceptionManager>(getManager()).lookup().ptr;
}

void PerceptionComponent::onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent)
{
    surroundings = Surroundings();
    SimpleComponent::onHierarchyChange(reparentedObject, newParent);
}

const PerceptionComponent::Surroundings &PerceptionComponent::findSurroundings()
{
    if (surroundings.isSettled && surroundings.transform.isValid() && surroundings.map.isValid())
        return surroundings;
    const Handle<Entity> entity = handle_cast<Entity>(getParent());
    const auto *const transform = componentOf<TransformComponent>(entity, ComponentKeys::transform);
    surroundings.transform = transform ? getHandle(transform) : Handle<TransformComponent>();
    surroundings.map = mapAround(entity);
    surroundings.isSettled = isAtOrBelow(entity, surroundings.map);
    return surroundings;
}

void PerceptionComponent::doFrame()
{
    PerceptionManager *const manager = findManager();
    if (!manager)
        return;
    const float seconds = manager->getFrameSeconds();
    if (untilLook < 0.f)
        untilLook = manager->nextPhase() * lookInterval;
    age += static_cast<Seconds>(seconds);
    untilLook -= seconds;
    if (untilLook <= 0.f)
    {
        look(*manager);
        untilLook = std::max(untilLook + lookInterval, 0.f);
    }
    tellChange(belief.pass(seconds, temper));
}

Handle<Entity> PerceptionComponent::getTarget()
{
    if (target.isValid())
        return target;
    PerceptionManager *const manager = findManager();
    return manager ? manager->findPlayer(findSurroundings().map) : Handle<Entity>();
}

void PerceptionComponent::setTarget(Handle<Entity> val)
{
    if (val != target)
        belief.loseSight();
    target = val;
}

/// The place of the eyes and where they look, in the space of the map; false where it has no place.
bool PerceptionComponent::findEye(Vec4 &eye, Vec4 &ahead)
{
    const Surroundings &around = findSurroundings();
    const auto transform = around.transform.lookup();
    if (!transform || !around.map.isValid() || !isFinite(transform->getPosition()) ||
        !isFinite(transform->getOrientation()))
        return false;
    const Matrix4 pose = poseInMap(*transform);
    eye = pose * Vec4(eyeOffset.x, eyeOffset.y, eyeOffset.z, 1.f);
    ahead = pose.getColumn(2);
    return isFinite(eye) && isFinite(ahead);
}

void PerceptionComponent::look(PerceptionManager &manager)
{
    belief.loseSight();
    const Handle<Entity> seen = hasEyes ? getTarget() : Handle<Entity>();
    SeenBody *const body = seen.isValid() && seen != getParent() ? manager.seenBody(seen) : nullptr;
    Vec4 eye, ahead;
    if (!body || body->getMap() != findSurroundings().map || !findEye(eye, ahead))
        return;
    Gaze gaze{manager, *body, eye, ahead};
    lookAtBody(gaze);
    if (seesLightOnly || noticesLamps)
        lookAtLamps(gaze);
    if (gaze.clarity > 0.f)
        belief.see(gaze.place, isNear(gaze.place, body->getPlace()) ? SEEN_VAGUENESS : LAMP_VAGUENESS,
                   std::min(gaze.clarity, 1.f));
}

float PerceptionComponent::clarityFrom(Vec4 eye, Vec4 ahead)
{
    PerceptionManager *const manager = findManager();
    const Handle<Entity> seen = hasEyes ? getTarget() : Handle<Entity>();
    SeenBody *const body = manager && seen.isValid() && seen != getParent() ? manager->seenBody(seen) : nullptr;
    eye.w = 1.f;
    ahead.w = 0.f;
    const float length = ahead.magnitude();
    if (!body || body->getMap() != findSurroundings().map || !isFinite(eye) || !(length > 0.f) ||
        !std::isfinite(length))
        return 0.f;
    const auto known = lines;
    lines.fill(SightLine());
    Gaze gaze{*manager, *body, eye, ahead * (1.f / length)};
    lookAtBody(gaze);
    if (seesLightOnly || noticesLamps)
        lookAtLamps(gaze);
    lines = known;
    return std::min(gaze.clarity, 1.f);
}

void PerceptionComponent::lookAtBody(Gaze &gaze)
{
    SeenBody &body = gaze.body;
    const float distance = distanceOf(body.getPlace(), gaze.eye) - body.getRadius();
    const bool isFelt = distance < nearRange && !seesLightOnly;
    if (distance > sightRange && !isFelt)
        return;
    for (int i = 0; i < body.getPointCount(); ++i)
    {
        const Vec4 point = body.getPoint(i);
        float part = isFelt ? 1.f : clarityOf(between(gaze.eye, point), gaze.ahead, 1.f);
        if (part > 0.f && !isFelt && !seesInDark)
            part *= lightShare(body.lightOnPoint(i));
        if (part > 0.f && isLineFree(gaze, i, point))
            gaze.clarity += part * body.weightOf(i);
    }
    gaze.place = body.getPlace();
}

/// Looks for lamps that shine, and for where their beams end.
void PerceptionComponent::lookAtLamps(Gaze &gaze)
{
    if (distanceOf(gaze.body.getPlace(), gaze.eye) > sightRange + LONGEST_BEAM)
        return;
    for (int i = 0; i < gaze.body.getLampCount(); ++i)
    {
        const SeenBody::Lamp &lamp = gaze.body.getLamp(i);
        const int line = SeenBody::MOST_POINTS + 2 * i;
        lookAtLight(gaze, line, lamp.place, lamp.luminance, gaze.body.getPlace());
        lookAtLight(gaze, line + 1, lamp.lit, lamp.luminance, lamp.lit);
    }
}

/// Takes what shines in place of what was made out so far where it is clearer.
/// @param means  the place that it makes one think of
void PerceptionComponent::lookAtLight(Gaze &gaze, int line, const Vec4 &shining, float luminance, const Vec4 &means)
{
    const float light = share(luminance, darkest, brightest);
    const float clarity = LAMP_SIGHT * clarityOf(between(gaze.eye, shining), gaze.ahead, light);
    if (clarity <= gaze.clarity || !isLineFree(gaze, line, shining))
        return;
    gaze.clarity = clarity;
    gaze.place = means;
}

/// How clearly something shows by its distance, its angle and its light, 0 to 1, if nothing stands between.
float PerceptionComponent::clarityOf(const Vec4 &way, const Vec4 &ahead, float light) const
{
    const float distance = way.magnitude();
    if (!(distance <= sightRange) || !(light > 0.f))
        return 0.f;
    const float near = FAR_SIGHT + (1.f - FAR_SIGHT) * share(distance, sightRange, sightRange * CLOSE_SIGHT);
    if (seesLightOnly || peripheralAngle >= HALF_TURN)
        return near * light;
    const float cosine = ahead.dot(way) / std::max(distance, 1e-4f);
    return near * light * share(cosine, std::cos(peripheralAngle), std::cos(std::min(sightAngle, peripheralAngle)));
}

float PerceptionComponent::lightShare(float luminance) const
{
    return seesInDark ? 1.f : share(luminance, darkest, brightest);
}

bool PerceptionComponent::isLineFree(Gaze &gaze, int number, const Vec4 &to)
{
    SightLine &line = lines[static_cast<std::size_t>(number)];
    if (line.isKnown && age - line.foundAt < OLDEST_LINE && isNear(line.from, gaze.eye) && isNear(line.to, to))
        return line.isFree;
    gaze.manager.countSightLine();
    PartitioningGrid *const grid = PartitioningGrid::ofMap(gaze.body.getMap()).lookup().ptr;
    const SightFilter filter(getParent(), gaze.body.getEntity());
    line = SightLine{gaze.eye, to, age, true, isFreeBetween(grid, filter, gaze.eye, to)};
    return line.isFree;
}

/// Whether a sound may be the target's: not its own, nor that of others of its kind.
bool PerceptionComponent::isOfInterest(const Vec4 &place, const Handle<Object> &maker, const Vec4 &ear)
{
    if (isAtOrBelow(maker, getParent()))
        return false;
    if (maker.isValid() && isAtOrBelow(maker, getTarget()))
        return true;
    return distanceOf(place, ear) >= ownNoiseRange &&
           (hearsCreatures || !componentOf<PerceptionComponent>(maker, ComponentKeys::perception));
}

/// @param level  linear, at the ear
void PerceptionComponent::takeIn(const HeardWay &way, float level, const Vec4 &place, const String &name)
{
    const float decibels = hearingThreshold > 0.f ? 20.f * std::log10(level / hearingThreshold) : LOUDEST_HEARD;
    const float vagueness = SEEN_VAGUENESS + HEARD_VAGUENESS * way.distance + (way.inSight ? 0.f : HIDDEN_VAGUENESS);
    belief.hear(place, vagueness, std::clamp(decibels / LOUDEST_HEARD, 0.f, 1.f), name, temper);
}

void PerceptionComponent::tellChange(Belief::Change change)
{
    if (change == Belief::UNCHANGED)
        return;
    ReflectorPtr &func = change == Belief::NOTICED ? noticedFunc : lostFunc;
    const ReflectorPtr called = func; // the function may replace itself
    if (!called)
        return;
    SavedArguments entity = SavedArguments::of(getParent());
    if (!callOrReport(called, entity, *this, change == Belief::NOTICED ? "noticed function" : "lost function") &&
        func == called)
        func = ReflectorPtr();
}

bool PerceptionComponent::getWatched()
{
    PerceptionManager *const manager = findManager();
    if (!manager)
        return false;
    if (watchedFrame != manager->getFrame())
    {
        watchedFrame = manager->getFrame();
        watched = manager->isWatched(handle_cast<Entity>(getParent()), watchedLight);
    }
    return watched;
}

bool PerceptionComponent::wouldBeWatched(Vec4 where)
{
    PerceptionManager *const manager = findManager();
    return manager && isFinite(where) && manager->isWatched(handle_cast<Entity>(getParent()), watchedLight, &where);
}

Vec4 PerceptionComponent::getPlace() const
{
    const TransformComponent *const own = componentOf<TransformComponent>(getParent(), ComponentKeys::transform);
    return belief.hasPlace() || !own ? belief.getPlace() : own->getPosition();
}

float PerceptionComponent::getVagueness() const
{
    return belief.hasPlace() ? belief.vaguenessBy(temper) : temper.mostVagueness;
}

void PerceptionComponent::alarm(Vec4 where, float howVague)
{
    where.w = 1.f;
    if (isUsable(*this, "the place of an alarm", where) && isUsable(*this, "the vagueness of an alarm", howVague))
        belief.alarm(where, std::max(howVague, 0.f));
}

void PerceptionComponent::setSuspicion(float val)
{
    if (isUsable(*this, "suspicion", val))
        belief.setSuspicion(std::clamp(val, 0.f, 1.f));
}

void PerceptionComponent::setEyeOffset(Vec4 val)
{
    if (isUsable(*this, "eyeOffset", val))
        eyeOffset = val;
}

void PerceptionComponent::setMeasure(float &field, const char *property, float val)
{
    if (!isUsable(*this, property, val))
        return;
    if (val < 0.f)
        return KV_LOGF(Logger_::I_ERROR, "%s of %s: %s cannot be %g and keeps its value; give it 0 or more.",
                       getName().toCString(), getParent().toString().toCString(), property, static_cast<double>(val));
    field = val;
}

void PerceptionComponent::setSightRange(float val)
{
    setMeasure(sightRange, "sightRange", val);
}

void PerceptionComponent::setSightAngle(float val)
{
    setMeasure(sightAngle, "sightAngle", val);
}

void PerceptionComponent::setPeripheralAngle(float val)
{
    setMeasure(peripheralAngle, "peripheralAngle", val);
}

void PerceptionComponent::setNearRange(float val)
{
    setMeasure(nearRange, "nearRange", val);
}

void PerceptionComponent::setDarkest(float val)
{
    setMeasure(darkest, "darkest", val);
}

void PerceptionComponent::setBrightest(float val)
{
    setMeasure(brightest, "brightest", val);
}

void PerceptionComponent::setWatchedLight(float val)
{
    setMeasure(watchedLight, "watchedLight", val);
}

void PerceptionComponent::setHearingThreshold(float val)
{
    setMeasure(hearingThreshold, "hearingThreshold", val);
}

void PerceptionComponent::setOwnNoiseRange(float val)
{
    setMeasure(ownNoiseRange, "ownNoiseRange", val);
}

void PerceptionComponent::setLookInterval(float val)
{
    setMeasure(lookInterval, "lookInterval", val);
}

void PerceptionComponent::setSightGain(float val)
{
    setMeasure(temper.sightGain, "sightGain", val);
}

void PerceptionComponent::setHearingGain(float val)
{
    setMeasure(temper.hearingGain, "hearingGain", val);
}

void PerceptionComponent::setDrainRate(float val)
{
    setMeasure(temper.drainRate, "drainRate", val);
}

void PerceptionComponent::setPatience(float val)
{
    setMeasure(temper.patience, "patience", val);
}

void PerceptionComponent::setNoticeLevel(float val)
{
    setMeasure(temper.noticeLevel, "noticeLevel", val);
}

void PerceptionComponent::setMemoryTime(float val)
{
    setMeasure(temper.memoryTime, "memoryTime", val);
}

void PerceptionComponent::setVaguenessGrowth(float val)
{
    setMeasure(temper.vaguenessGrowth, "vaguenessGrowth", val);
}

void PerceptionComponent::setMostVagueness(float val)
{
    setMeasure(temper.mostVagueness, "mostVagueness", val);
}
