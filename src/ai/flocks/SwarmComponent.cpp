#include "ai/flocks/SwarmComponent.h"

#include "physics/bodies/PhysicsComponent.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/FiniteProperty.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/levels/ObjectFromPattern.h"
#include "engine/time/TimeKeeper.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"
#include "rendering/drawn/LightComponent.h"

#include "foundation/Finite.h"
#include "foundation/Logger.h"
#include "foundation/Random.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace
{

constexpr float LONGEST_FRAME = 0.25f;     ///< seconds; a longer hitch is not made up for
constexpr float LONGEST_STEP = 1.f / 60;   ///< seconds
constexpr float REACH_WITHOUT_LIGHT = 3.f; ///< metres
constexpr float FARTHEST_REACH = 1000.f;   ///< metres
constexpr float LIT_SHARE = 0.8f;          ///< of a light's reach in which moths can still be seen
constexpr float LOST = 1.f;                ///< metres beyond the reach at which a member is lost
constexpr float FADE_SECONDS = 2.f;        ///< in which a swarm notices that its light has gone out
constexpr float DRIFT_SECONDS = 0.15f;     ///< in which they come to go along with an anchor that sets out
constexpr float HARDEST_PUSH = 3.f;        ///< cruise speeds, by those who are nearest
constexpr float NO_LENGTH = 1e-5f;
constexpr float TURN = 2 * std::numbers::pi_v<float>;

Vec4 directionOf(const Vec4 &v)
{
    const float length = v.magnitude();
    return length > NO_LENGTH ? v / length : Vec4();
}

Vec4 withLength(const Vec4 &v, float most)
{
    const float length = v.magnitude();
    return length > most ? v * (most / length) : v;
}

/// The first wall, or leaf of a door, on a segment that does not begin in it; others fly around what moves by itself.
RayCollision findWall(PartitioningGrid &grid, const Vec4 &from, const Vec4 &way)
{
    const SegmentHit hit = grid.checkSegment(from, way, true);
    const auto volume = hit.volume.lookup();
    const PhysicsComponent *const body = volume ? volume->findPhysics() : nullptr;
    return body && body->getInverseMass() == 0.f && hit.collision.normal != Vec4() ? hit.collision : RayCollision();
}

/// A direction that any number from 0 to 1 has to itself, evenly over all of them.
Vec4 directionBy(float phase, float seed)
{
    const float up = 2 * std::fmod(phase * 7.f + seed * 0.618f, 1.f) - 1;
    const float angle = TURN * std::fmod(phase + seed, 1.f);
    const float flat = std::sqrt(std::max(1 - up * up, 0.f));
    return Vec4(flat * std::cos(angle), up, flat * std::sin(angle));
}

} // namespace

void SwarmComponent::onLoadComplete()
{
    populate();
}

void SwarmComponent::populate()
{
    if (population > MOST_MEMBERS)
        KV_LOGF(Logger_::I_ERROR, "%s of %s: a population of %u is more than a swarm bears; it gets %zu members.",
                getName().toCString(), getParent().toString().toCString(), population, MOST_MEMBERS);
    const std::size_t count = std::min<std::size_t>(population, MOST_MEMBERS);
    for (std::size_t i = members.size(); i < count; ++i)
        if (!buildMember(i))
            return; // the log knows why, and the next one fails alike
}

bool SwarmComponent::buildMember(std::size_t number)
{
    const String name = String::format("%s%zu", memberPattern.toCString(), number);
    const std::size_t before = members.size();
    if (before < MOST_MEMBERS)
        addMember(handle_cast<Entity>(buildFromPattern(SCS("objects.GameObjects"), memberPattern, getParent(), name)));
    return members.size() > before;
}

void SwarmComponent::addMember(Handle<Entity> entity)
{
    const auto *const transform = componentOf<TransformComponent>(entity, ComponentKeys::transform);
    const bool isIn =
        std::any_of(members.begin(), members.end(), [&](const Member &member) { return member.entity == entity; });
    if (!transform || isIn || members.size() >= MOST_MEMBERS)
        return;
    const Surroundings around = look();
    Member member;
    member.entity = entity;
    member.scale = transform->getScale();
    member.phase = frand();
    const float share = 0.3f + 0.6f * frand();
    member.place = around.anchor + directionBy(member.phase, frand()) * (share * around.reach);
    keepWithin(member, around);
    place(member);
    members.push_back(member);
}

void SwarmComponent::doFrame()
{
    dropDead();
    const auto level = getAncestorOfType<Coordinator>().lookup();
    if (members.empty() || !level)
        return;
    const Surroundings around = look();
    const float seconds =
        std::clamp(static_cast<float>(level->getTimer(TimerNames::master).getFrameTimeSeconds()), 0.f, LONGEST_FRAME);
    liveliness = std::clamp(liveliness + (around.isDark ? -seconds : seconds) / FADE_SECONDS, 0.f, 1.f);
    Vec4 anchorStep = lastAnchor.w == 0.f ? Vec4() : around.anchor - lastAnchor;
    anchorStep.w = 0.f;
    lastAnchor = around.anchor;
    if (anchorStep.magnitude() > around.reach) // it did not move, it is elsewhere: so are they
    {
        for (Member &member : members)
            member.place += anchorStep;
        anchorStep = anchorDrift = Vec4();
    }
    if (seconds > 0.f)
        anchorDrift += (anchorStep / seconds - anchorDrift) * (1.f - std::exp(-seconds / DRIFT_SECONDS));
    const int steps = std::max(static_cast<int>(std::ceil(seconds / LONGEST_STEP)), 1);
    const auto part = 1.f / static_cast<float>(steps);
    Surroundings now = around;
    for (int i = steps - 1; i >= 0; --i)
    {
        now.anchor = around.anchor - anchorStep * (part * static_cast<float>(i));
        step(seconds * part, now);
    }
    for (Member &member : members)
        place(member);
}

void SwarmComponent::dropDead()
{
    std::erase_if(members,
                  [](const Member &member)
                  {
                      const auto entity = member.entity.lookup();
                      return !entity || entity->isDying();
                  });
}

/// The transform that they swarm around; null where the swarm itself has none.
TransformComponent *SwarmComponent::findAnchor()
{
    if (TransformComponent *const anchor = componentOf<TransformComponent>(hAnchor, ComponentKeys::transform))
        return anchor;
    return handle_cast<TransformComponent>(getSibling(ComponentKeys::transform)).lookup().ptr;
}

/// The light of what they swarm around: its own, or that of its child "light"; null for none.
const LightComponent *SwarmComponent::findLight()
{
    static const String lightName = SCS("light");
    const auto anchor = hAnchor.lookup();
    if (!anchor)
        return nullptr;
    if (const LightComponent *const own = componentOf<LightComponent>(hAnchor, ComponentKeys::graphics2))
        return own;
    return componentOf<LightComponent>(anchor->getChild(lightName), ComponentKeys::graphics2);
}

SwarmComponent::Surroundings SwarmComponent::look()
{
    Surroundings around;
    around.anchor = lastAnchor;
    around.reach = reach;
    const TransformComponent *const anchor = findAnchor();
    if (anchor && isFinite(anchor->getPosition()))
        around.anchor = anchor->getPosition();
    around.anchor.w = 1.f;
    const LightComponent *const light = findLight();
    if (reach == 0.f)
        around.reach = light ? light->getLightFalloffEnd() * LIT_SHARE : REACH_WITHOUT_LIGHT;
    if (!std::isfinite(around.reach))
        around.reach = REACH_WITHOUT_LIGHT;
    around.reach = std::clamp(around.reach, std::min(innerRadius, FARTHEST_REACH), FARTHEST_REACH);
    around.isDark = light && !light->getVisible();
    if (const auto *const feared = componentOf<TransformComponent>(hFeared, ComponentKeys::transform))
    {
        around.feared = feared->getPosition();
        around.fears = isFinite(around.feared);
    }
    return around;
}

void SwarmComponent::step(float seconds, const Surroundings &around)
{
    time += static_cast<double>(seconds);
    for (Member &member : members)
        wish(member, around);
    mindNeighbors();
    const float part = 1.f - std::exp(-agility * seconds);
    for (Member &member : members)
    {
        member.from = member.place;
        if (isOnFloor())
            member.wish.y = 0.f;
        member.velocity += (withLength(member.wish, 2 * cruiseSpeed) - member.velocity) * part;
        member.place += member.velocity * seconds + carried(member, around) * seconds;
    }
    keepApart();
    for (Member &member : members)
    {
        keepWithin(member, around);
        if (heldByWalls)
            keepFromWalls(member);
        if (wayFromAnchor(member, around).magnitude() > around.reach + LOST || !isFinite(member.place))
            bringBack(member, around);
    }
}

/// From the anchor to a member; level for what keeps to the floor.
Vec4 SwarmComponent::wayFromAnchor(const Member &member, const Surroundings &around) const
{
    Vec4 way = member.place - around.anchor;
    way.w = 0.f;
    way.y = isOnFloor() ? 0.f : way.y;
    return way;
}

/// What a member wants by itself; its neighbours come on top of it.
void SwarmComponent::wish(Member &member, const Surroundings &around) const
{
    member.wish =
        circling(member, around) + straying(member) * (restlessness * cruiseSpeed * (0.4f + 0.6f * liveliness));
    member.wish += fleeing(member, around);
}

/// Around the anchor, each about an axis and at a distance of its own that change slowly.
Vec4 SwarmComponent::circling(const Member &member, const Surroundings &around) const
{
    Vec4 out = wayFromAnchor(member, around);
    const float distance = out.magnitude();
    out = directionOf(out);
    const float now = static_cast<float>(std::fmod(time * 0.05 + static_cast<double>(member.phase), 1.0));
    const float share = 0.5f + 0.5f * std::sin(TURN * (3 * now + 5 * member.phase));
    const float wanted = innerRadius + share * std::max(around.reach * 0.75f - innerRadius, 0.f);
    const Vec4 axis(0.6f * std::sin(TURN * (2 * now + 11 * member.phase)), 1.f,
                    0.6f * std::cos(TURN * (now + 17 * member.phase)));
    const float pull = std::clamp((wanted - distance) / std::max(around.reach, NO_LENGTH), -1.f, 1.f);
    return axis.cross(out) * (swirl * cruiseSpeed * liveliness) + out * (2 * cruiseSpeed * pull * liveliness);
}

/// Smoothly here and there.
Vec4 SwarmComponent::straying(const Member &member) const
{
    const auto wave = [&](double rate, float seed)
    {
        return static_cast<float>(std::sin(time * rate * static_cast<double>(0.8f + 0.4f * member.phase) +
                                           static_cast<double>(TURN * (member.phase * 13 + seed))));
    };
    return Vec4(wave(2.3, 0.f) + 0.6f * wave(5.1, 0.3f), 0.7f * wave(2.9, 0.5f) + 0.5f * wave(6.3, 0.1f),
                wave(2.1, 0.7f) + 0.6f * wave(5.7, 0.9f)) *
           0.6f;
}

Vec4 SwarmComponent::fleeing(const Member &member, const Surroundings &around) const
{
    Vec4 way = member.place - around.feared;
    way.w = 0.f;
    const float distance = way.magnitude();
    if (!around.fears || distance >= fearRadius)
        return Vec4();
    return directionOf(way) * (4 * cruiseSpeed * (1 - distance / fearRadius));
}

/// Adds to what members want what they owe their neighbours: distance, direction, company.
void SwarmComponent::mindNeighbors()
{
    for (Member &one : members)
    {
        Vec4 push, middle, course;
        float count = 0;
        for (const Member &other : members)
        {
            const Vec4 way = one.place - other.place;
            const float distance = way.magnitude();
            if (&one == &other || distance > std::max(neighborhoodSize, spacing))
                continue;
            if (distance < spacing && distance > NO_LENGTH)
                push += way * (std::min(spacing / distance - 1, HARDEST_PUSH) / distance);
            middle += other.place;
            course += other.velocity;
            ++count;
        }
        if (count == 0)
            continue;
        Vec4 company = middle / count - one.place;
        company.w = 0.f;
        one.wish += push * cruiseSpeed + company * cohesion + (course / count - one.velocity) * alignment;
    }
}

/// The velocity by which the anchor takes a member along: the farther it is the more, and at the end of its reach all.
Vec4 SwarmComponent::carried(const Member &member, const Surroundings &around) const
{
    const float distance = wayFromAnchor(member, around).magnitude();
    const float share = std::clamp((distance / std::max(around.reach, NO_LENGTH) - 0.2f) / 0.7f, 0.f, 1.f);
    return anchorDrift * (share * share * (3 - 2 * share));
}

/// Parts those who stand in each other, each by its half.
void SwarmComponent::keepApart()
{
    for (std::size_t i = 0; i < members.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
        {
            Vec4 way = members[i].place - members[j].place;
            const float distance = way.magnitude();
            if (distance >= bodySize)
                continue;
            way = distance > NO_LENGTH ? way / distance : directionBy(members[i].phase, members[j].phase);
            if (isOnFloor() && (way.y = 0.f, way.magnitude() < NO_LENGTH))
                way = Vec4(1.f, 0.f, 0.f);
            members[i].place += way * ((bodySize - distance) / 2);
            members[j].place -= way * ((bodySize - distance) / 2);
        }
}

/// Keeps a member at its heights and within the reach, and takes from its velocity what would lead out.
void SwarmComponent::keepWithin(Member &member, const Surroundings &around) const
{
    const Vec4 out = wayFromAnchor(member, around);
    const float distance = out.magnitude();
    const bool isLost = distance > around.reach + LOST;
    if (distance > around.reach && !isLost)
    {
        const Vec4 outward = out / distance;
        member.place -= outward * (distance - around.reach);
        member.velocity -= outward * std::max(outward.dot(member.velocity), 0.f);
    }
    const float height = std::clamp(member.place.y, lowest, std::max(highest, lowest));
    if (height != member.place.y)
        member.velocity.y = 0.f;
    member.place.y = height;
    member.place.w = 1.f;
    member.velocity.w = 0.f;
}

/// The grid of the map that they swarm in; null without one.
PartitioningGrid *SwarmComponent::findGrid()
{
    TransformComponent *const anchor = findAnchor();
    return anchor ? PartitioningGrid::ofMap(anchor->findMap()).lookup().ptr : nullptr;
}

/// Stops a member before a wall on its way, and lets it go on along that.
void SwarmComponent::keepFromWalls(Member &member)
{
    PartitioningGrid *const grid = findGrid();
    Vec4 way = member.place - member.from;
    way.w = 0.f;
    const float length = way.magnitude();
    if (!grid || length < NO_LENGTH)
        return;
    const Vec4 ahead = way / length;
    const RayCollision hit = findWall(*grid, member.from, ahead * (length + bodySize));
    if (!hit.collided)
        return;
    member.place = member.from;
    member.velocity -= hit.normal * (1.5f * std::min(hit.normal.dot(member.velocity), 0.f));
}

/// Puts a member that was lost within the reach again, where nothing stands between it and the anchor.
void SwarmComponent::bringBack(Member &member, const Surroundings &around)
{
    PartitioningGrid *const grid = findGrid();
    const float now = static_cast<float>(std::fmod(time, 1.0));
    Vec4 way = directionBy(member.phase, now) * (around.reach * 0.95f);
    if (grid && heldByWalls)
    {
        const RayCollision hit = findWall(*grid, around.anchor, way);
        way *= hit.collided ? hit.t * 0.9f : 1.f;
    }
    member.place = around.anchor + way;
    member.velocity = Vec4();
    keepWithin(member, around);
}

/// Gives a member's transform its place, turned as it flies.
void SwarmComponent::place(Member &member)
{
    TransformComponent *const transform = componentOf<TransformComponent>(member.entity, ComponentKeys::transform);
    if (!transform || !isFinite(member.place))
        return;
    transform->setPosition(member.place);
    const Vec4 ahead = directionOf(member.velocity);
    // Straight up or down there is no heading; nor is there one at rest.
    if (std::hypot(ahead.x, ahead.z) > 0.05f)
        transform->setOrientation(Quaternion(Vec4(ahead.x, -ahead.y, ahead.z)));
    if (flutter <= 0.f)
        return;
    const double beat =
        std::sin(time * static_cast<double>(flutter) * std::numbers::pi + static_cast<double>(member.phase * TURN));
    Vec4 scale = member.scale;
    scale.x *= 0.35f + 0.65f * std::fabs(static_cast<float>(beat));
    transform->setScale(scale);
}

void SwarmComponent::scatter(Vec4 from)
{
    if (!isUsable(*this, "scatter", from))
        return;
    for (Member &member : members)
    {
        Vec4 way = member.place - from;
        way.w = 0.f;
        if (fearRadius <= 0.f || way.magnitude() < fearRadius)
            member.velocity = directionOf(way) * (2 * cruiseSpeed);
    }
}

String SwarmComponent::tell()
{
    if (members.empty())
        return String();
    const auto anchor = hAnchor.lookup();
    const String where = anchor ? anchor->getName() : SCS("their place");
    const char *const how = liveliness < 0.5f ? "have lost the light of" : isOnFloor() ? "scurry around" : "circle";
    return String::format("%zu %s %s", members.size(), how, where.toCString());
}

SwarmComponent::MemberHandles SwarmComponent::getMembers() const
{
    MemberHandles found;
    for (const Member &member : members)
        if (member.entity.isValid())
            found.push_back(member.entity);
    return found;
}

float SwarmComponent::getLeastDistance() const
{
    float least = std::numeric_limits<float>::infinity();
    for (std::size_t i = 0; i < members.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            least = std::min(least, (members[i].place - members[j].place).magnitude());
    return least;
}

float SwarmComponent::getGreatestDistance()
{
    const TransformComponent *const anchor = findAnchor();
    float greatest = 0;
    for (const Member &member : members)
        greatest = std::max(greatest, anchor ? (member.place - anchor->getPosition()).magnitude() : 0.f);
    return greatest;
}

void SwarmComponent::setPart(float &part, const char *name, float val, float least)
{
    if (isUsable(*this, name, val))
        part = std::clamp(val, least, 1e6f);
}
