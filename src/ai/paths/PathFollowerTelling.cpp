// PathFollower: what it says of itself, in words and in lines.
#include "ai/paths/PathFollower.h"

#include "ai/paths/DoorState.h"
#include "ai/paths/Walkways.h"
#include "physics/bodies/PhysicsComponent.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"

namespace
{
constexpr float LIFT = 0.1f; ///< metres above the floor, over what the path itself draws
const Vec4 WAY_COLOR(1.f, 0.6f, 0.1f, 1.f);
const Vec4 AIM_COLOR(1.f, 1.f, 1.f, 1.f);
} // namespace

String PathFollower::tell()
{
    const String because = reason.empty() ? String() : SCS(", since ") + reason;
    const int x = static_cast<int>(goal.x), z = static_cast<int>(goal.z);
    switch (state)
    {
    case FS_ASKING:
        return String::format("looks for a way to (%d, %d)%s", x, z, because.toCString());
    case FS_WALKING:
        return String::format("on its way to (%d, %d)%s%s", x, z, way.empty() ? ", straight ahead" : "",
                              because.toCString());
    case FS_WAITING:
        if (atClosedDoor)
            return String::format("presses against the door %s", tellDoor().toCString());
        return String::format("waits for the door %s to open", tellDoor().toCString());
    case FS_ARRIVED:
        return String::format("has come to (%d, %d)", x, z);
    case FS_FAILED:
        return String::format("does not get to (%d, %d), since %s", x, z, reason.toCString());
    default:
        return String();
    }
}

/// Name of the door that it waits for.
String PathFollower::tellDoor() const
{
    const auto leaf = door.lookup();
    const auto entity = leaf ? leaf->getParent().lookup() : Handle<Object>::Result();
    return entity ? entity->getName() : String();
}

void PathFollower::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    const TransformComponent *const transform = componentOf<TransformComponent>(getParent(), ComponentKeys::transform);
    if (!collector || !config.getDebugDrawEnabled() || !config.getDebugDrawPathInfoEnabled() || !transform ||
        !getUnderWay())
        return;
    const Body body = findBody();
    if (!body)
        return;
    const Vec4 lift(0.f, LIFT, 0.f, 0.f);
    Vec4 from = transform->getPosition();
    const float floor = body.ways->getStation(goalCell).y;
    from.y = floor;
    collector->addLine3D(from + lift, stationAt(body, next) + lift, AIM_COLOR);
    for (std::size_t i = next; i < way.size(); ++i)
        collector->addLine3D(stationAt(body, i) + lift, stationAt(body, i + 1) + lift, WAY_COLOR);
    const Vec4 end(goal.x, floor, goal.z, 1.f);
    collector->addLine3D(end, end + Vec4(0.f, 1.f, 0.f, 0.f), WAY_COLOR);
}
