// The managers that a level may have: the frame order of the whole engine.
#include "engine/levels/Coordinator.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/NullManager.h"
#include "engine/entities/SimpleManager.h"
#include "object/reflection/Reflection.h"

namespace
{
constexpr bool RUN_ON_STOP = true;

// The managers of the folders above this one are known here by name only.
ReflectorPtr managerClass(const char *name)
{
    return Reflection().getType(SCS(name));
}
} // namespace

void Coordinator::registerManagerClasses()
{
    for (const String &key :
         {ComponentKeys::aiObserver, ComponentKeys::editorProperties, ComponentKeys::grid,
          ComponentKeys::interactCounter, ComponentKeys::light, ComponentKeys::persist, ComponentKeys::postOffice,
          ComponentKeys::scriptedEvent, ComponentKeys::transform, ComponentKeys::trigger, ComponentKeys::viewer})
        addNullManager(key);

    const ReflectorPtr simple = SimpleManager::staticType;
    addManagerClass(ComponentKeys::cursor, simple, 120, RUN_ON_STOP);
    addManagerClass(ComponentKeys::tklogo, simple, 120, RUN_ON_STOP);
    addManagerClass(ComponentKeys::editor, simple, 150);
    addManagerClass(ComponentKeys::player, simple, 200);
    addManagerClass(ComponentKeys::interpolator, simple, 400);
    addManagerClass(ComponentKeys::director, simple, 500);
    addManagerClass(ComponentKeys::soundWays, simple, 900, RUN_ON_STOP);
    addManagerClass(ComponentKeys::reverb, managerClass("ReverbManager"), 910, RUN_ON_STOP);
    addManagerClass(ComponentKeys::sound, managerClass("SoundManager"), 1000, RUN_ON_STOP);
    addManagerClass(ComponentKeys::aiMessage, simple, 2300);
    addManagerClass(ComponentKeys::perception, managerClass("PerceptionManager"), 2400);
    addManagerClass(ComponentKeys::behaviors, simple, 2500);
    addManagerClass(ComponentKeys::dummy, simple, 2750);
    addManagerClass(ComponentKeys::physics, managerClass("PhysicsManager"), 3000);
    addManagerClass(ComponentKeys::boundingVolume, managerClass("BoundingVolumeManager"), 3001, RUN_ON_STOP);
    addManagerClass(ComponentKeys::partitioning, managerClass("PartitioningManager"), 3002);
    addManagerClass(ComponentKeys::hand, simple, 3003); // on the view of this frame, before what hangs on it
    addManagerClass(ComponentKeys::parentFollower, simple, 3005, RUN_ON_STOP);
    addManagerClass(ComponentKeys::screenSpaceHelper, simple, 3004, RUN_ON_STOP);
    addManagerClass(ComponentKeys::dread, simple, 3090);
    addManagerClass(ComponentKeys::nerves, simple, 3100);
    addManagerClass(ComponentKeys::form, simple, 4000, RUN_ON_STOP);
    addManagerClass(ComponentKeys::console, simple, 5000, RUN_ON_STOP);
    addManagerClass(ComponentKeys::scriptedSequence, simple, 6750);
    addManagerClass(ComponentKeys::walkways, simple, 6900);
    addManagerClass(ComponentKeys::path, managerClass("PathManager"), 7000);
    addManagerClass(ComponentKeys::pathFollower, simple, 7500);
    addManagerClass(ComponentKeys::steering, simple, 8000);
    addManagerClass(ComponentKeys::heightMap, simple, 8250);
    addManagerClass(ComponentKeys::flocking, simple, 8500);
    addManagerClass(ComponentKeys::flowInfluence, simple, 8750);
    addManagerClass(ComponentKeys::flowMovement, simple, 8900);
    addManagerClass(ComponentKeys::mapData, simple, 9000);
    addManagerClass(ComponentKeys::objectGroup, managerClass("ObjectGroupManager"), 9800);
    addManagerClass(ComponentKeys::hud, simple, 9850);
    addManagerClass(ComponentKeys::menu, simple, 9900, RUN_ON_STOP);
    addManagerClass(ComponentKeys::button, simple, 10000, RUN_ON_STOP);
    addManagerClass(ComponentKeys::tutorial, simple, 11000);
    addManagerClass(ComponentKeys::debugDrawCollector, simple, 9999999, RUN_ON_STOP);
    addManagerClass(ComponentKeys::graphics2, managerClass("GraphicsManager2"), 10000000, RUN_ON_STOP);
}

void Coordinator::addManagerClass(String key, ReflectorPtr type, ManagerDesc::UpdaterList updaters)
{
    managerClasses[key] = ManagerDesc{key, type, std::move(updaters)};
}

void Coordinator::addManagerClass(String key, ReflectorPtr type, String fn, int priority, bool runOnStop)
{
    addManagerClass(key, type, ManagerDesc::UpdaterList{ManagerUpdateDesc{fn, priority, runOnStop}});
}

void Coordinator::addManagerClass(String key, ReflectorPtr type, int priority, bool runOnStop)
{
    addManagerClass(key, type, SCS("doFrame"), priority, runOnStop);
}

void Coordinator::addNullManager(String key)
{
    addManagerClass(key, NullManager::staticType, ManagerDesc::UpdaterList());
}
