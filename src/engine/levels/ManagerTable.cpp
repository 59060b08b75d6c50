// The managers that a level may have: the frame order of the whole engine.
#include "engine/levels/Coordinator.h"

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
    for (const char *key : {"editorProperties", "grid", "interactCounter", "light", "persist", "postOffice",
                            "scriptedEvent", "transform", "trigger", "viewer"})
        addNullManager(SCS(key));

    const ReflectorPtr simple = SimpleManager::staticType;
    addManagerClass(SCS("cursor"), simple, 120, RUN_ON_STOP);
    addManagerClass(SCS("tklogo"), simple, 120, RUN_ON_STOP);
    addManagerClass(SCS("editor"), simple, 150);
    addManagerClass(SCS("player"), simple, 200);
    addManagerClass(SCS("interpolator"), simple, 400);
    addManagerClass(SCS("director"), simple, 500);
    addManagerClass(SCS("sound"), managerClass("SoundManager"), 1000, RUN_ON_STOP);
    addManagerClass(SCS("behaviors"), simple, 2500);
    addManagerClass(SCS("dummy"), simple, 2750);
    addManagerClass(SCS("physics"), managerClass("PhysicsManager"), 3000);
    addManagerClass(SCS("boundingVolume"), managerClass("BoundingVolumeManager"), 3001, RUN_ON_STOP);
    addManagerClass(SCS("partitioning"), managerClass("PartitioningManager"), 3002);
    addManagerClass(SCS("parentFollower"), simple, 3005, RUN_ON_STOP);
    addManagerClass(SCS("screenSpaceHelper"), simple, 3004, RUN_ON_STOP);
    addManagerClass(SCS("form"), simple, 4000, RUN_ON_STOP);
    addManagerClass(SCS("console"), simple, 5000, RUN_ON_STOP);
    addManagerClass(SCS("scriptedSequence"), simple, 6750);
    addManagerClass(SCS("path"), managerClass("PathManager"), 7000);
    addManagerClass(SCS("steering"), simple, 8000);
    addManagerClass(SCS("heightMap"), simple, 8250);
    addManagerClass(SCS("flocking"), simple, 8500);
    addManagerClass(SCS("flowInfluence"), simple, 8750);
    addManagerClass(SCS("flowMovement"), simple, 8900);
    addManagerClass(SCS("mapData"), simple, 9000);
    addManagerClass(SCS("objectGroup"), managerClass("ObjectGroupManager"), 9800);
    addManagerClass(SCS("hud"), simple, 9850);
    addManagerClass(SCS("menu"), simple, 9900, RUN_ON_STOP);
    addManagerClass(SCS("button"), simple, 10000, RUN_ON_STOP);
    addManagerClass(SCS("tutorial"), simple, 11000);
    addManagerClass(SCS("debugDrawCollector"), simple, 9999999, RUN_ON_STOP);
    addManagerClass(SCS("graphics2"), managerClass("GraphicsManager2"), 10000000, RUN_ON_STOP);
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
