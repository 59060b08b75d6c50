#include "engine/levels/ObjectSpawner.h"

#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/levels/ObjectFromPattern.h"

namespace
{
/// What new objects hang below: the spawner's map, or else its level.
Handle<Object> parentFor(ObjectSpawner &spawner)
{
    const Handle<Object> map = spawner.getAncestorOfType<MapRootEntity>();
    return map.isValid() ? map : Handle<Object>(spawner.getAncestorOfType<Coordinator>());
}
} // namespace

Handle<Object> ObjectSpawner::spawnObject(Handle<Object>)
{
    const auto entity = getParent().lookup();
    if (!active || !entity)
        return Handle<Object>();
    active = false; // before the script runs, which may touch the trigger again
    const String name = String::format("%s%s%d", entity->getName().toCString(), objectType.toCString(), ++spawnCount);
    const String module = level.empty() ? SCS("objects.GameObjects") : SCS("levels.") + level;
    return buildFromPattern(module, objectType, parentFor(*this), name, &position);
}
