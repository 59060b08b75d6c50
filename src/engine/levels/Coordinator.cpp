#include "engine/levels/Coordinator.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/levels/GameLoop.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/systems/NameSuggestion.h"
#include "engine/levels/PersistentStateComponent.h"
#include "engine/systems/RunningMark.h"
#include "engine/systems/SystemSystem.h"
#include "engine/time/TimeSystem.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"
#include "object/python/PythonCalls.h"
#include "object/reflection/SavedArguments.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"
#include "foundation/ProfilerScope.h"

#include <cmath>
#include <limits>

namespace
{
bool isInUnitBox(const Vec4 &p)
{
    return std::fabs(p.x) < 0.5f && std::fabs(p.y) < 0.5f && std::fabs(p.z) < 0.5f;
}

/// Calls a function of the script that builds levels; a Python exception travels to the caller.
Variant callLoader(const char *function, const SavedArguments &args)
{
    Variant result;
    if (!pythonCall("loader", function, args, result))
        pythonRaisePending();
    return result;
}
} // namespace

Coordinator::Coordinator()
{
    registerManagerClasses();
}

void Coordinator::setLoopState(LoopControlState newState)
{
    if (newState == LOOP_ALL_STOP)
        KV_LOGF(Logger_::I_WARNING, "%s: in LOOP_ALL_STOP the frame of a running chain never ends",
                toString().toCString());
    loopState = newState;
}

void Coordinator::setSubCoordinator(Handle<Coordinator> val)
{
    for (auto next = val.lookup(); next; next = next->subCoordinator.lookup())
    {
        if (next.ptr != this)
            continue;
        KV_LOGF(Logger_::I_ERROR, "setSubCoordinator: %s is reached from %s already; the chain would be a ring",
                toString().toCString(), val.toString().toCString());
        return;
    }
    subCoordinator = val;
}

void Coordinator::doFrame()
{
    if (frameWalk.running)
    {
        KV_LOGF(Logger_::I_ERROR, "%s: doFrame was called from within this coordinator's own frame",
                toString().toCString());
        return;
    }
    const RunningMark mark(frameWalk.running);
    gatherUpdaters(frameWalk);
    runUpdaters(frameWalk);
}

void Coordinator::gatherUpdaters(FrameWalk &walk)
{
    const TimerTicks ticks = getSystemDeref<GameLoopSystem>().getTime().lookup()->getFrameTime();
    const UpdaterSet &systemUpdaters = SystemSystem::getInstance().lookup()->updaters;
    walk.states.assign(1, LOOP_RUN);
    walk.begins.assign(1, systemUpdaters.begin());
    walk.ends.assign(1, systemUpdaters.end());

    for (auto coordinator = getTypedHandle().lookup(); coordinator;)
    {
        // A coordinator that is stopped altogether is not passed: the chain waits at it.
        if (coordinator->loopState == LOOP_ALL_STOP)
            continue;
        coordinator->joinFrame(walk, ticks);
        coordinator = coordinator->subCoordinator.lookup();
    }
    walk.range.assign(walk.begins, walk.ends);
}

void Coordinator::joinFrame(FrameWalk &walk, TimerTicks ticks)
{
    walk.states.push_back(loopState);
    walk.begins.push_back(managerUpdaters.begin());
    walk.ends.push_back(managerUpdaters.end());
    // The list keeps the step: this frame still counts as a run.
    if (loopState == LOOP_STEP)
        loopState = LOOP_STOP;

    getTimerHandle(TimerNames::master);
    for (const auto &[name, timer] : timers)
    {
        if (auto keeper = timer.lookup())
            keeper->newFrame(ticks);
    }
    lastFrameTime = ticks;
}

void Coordinator::runUpdaters(FrameWalk &walk)
{
    static const String category = SCS("UPDATER");
    TimeSystem &time = getSystemDeref<TimeSystem>();
    const UpdaterIterator &end = walk.range.end();
    for (UpdaterIterator &it = walk.range.begin(); it != end; ++it)
    {
        const ProfilerScope scope(category, it->updaterName);
        if (walk.states[it.index()] == LOOP_STOP && !it->runOnStop)
            continue;
        const TimerTicks start = time.now();
        if (it->fn)
            it->fn->call().code.ignoreError();
        it->frameTime = time.now() - start;
    }
}

Handle<AbstractManager> Coordinator::getManager(const String &name)
{
    const auto known = managers.find(name);
    if (known != managers.end())
        return known->second;
    const auto desc = managerClasses.find(name);
    if (desc != managerClasses.end())
        return constructManager(desc->second);

    std::vector<String> keys;
    for (const auto &entry : managerClasses)
        keys.push_back(entry.first);
    KV_LOGF(Logger_::I_ERROR, "getManager: %s", describeUnknownName("manager key", name, keys).toCString());
    return Handle<AbstractManager>();
}

Handle<AbstractManager> Coordinator::constructManager(const ManagerDesc &desc)
{
    Handle<AbstractManager> h;
    if (desc.type)
        h = handle_cast<AbstractManager>(desc.type->construct_a(*DefaultAllocatorGroup(), defaultAllocationCategory));
    auto manager = h.lookup();
    if (!manager)
    {
        KV_LOGF(Logger_::I_ERROR, "getManager: the class registered for the key '%s' makes no manager",
                desc.key.toCString());
        return h;
    }
    manager->setParent(getTypedHandle());
    manager->setName(desc.key + SCS("Manager"));
    managers[desc.key] = h;
    manager->key = desc.key;
    for (const ManagerUpdateDesc &update : desc.updaters)
        managerUpdaters.insert(
            Updater(manager->getName(), manager->bind(update.method_name), update.priority, update.runOnStop));
    manager->onAddToCoordinator();
    return h;
}

TimeKeeper &Coordinator::getTimer(const String &name)
{
    return *getTimerHandle(name).lookup();
}

Handle<TimeKeeper> Coordinator::getTimerHandle(const String &name)
{
    Handle<TimeKeeper> &timer = timers[name];
    if (!timer.isValid())
    {
        timer = construct<TimeKeeper>(defaultAllocationCategory);
        timer.lookup()->setParent(getTypedHandle());
    }
    return timer;
}

Seconds Coordinator::getLastFrameTime() const
{
    return getSystemDeref<TimeSystem>().toSeconds(lastFrameTime);
}

Seconds Coordinator::getInstantFPS() const
{
    return getLastFrameTime();
}

const std::vector<Handle<MapRootEntity>> &Coordinator::findMaps()
{
    const auto childCount = static_cast<std::size_t>(children_end() - children_begin());
    const std::uint64_t objectChanges = ObjectMap().getChangeCount();
    if (knownMaps.objectChanges == objectChanges && knownMaps.childCount == childCount)
        return knownMaps.maps;
    knownMaps.objectChanges = objectChanges;
    knownMaps.childCount = childCount;
    knownMaps.maps.clear();
    for (auto child = children_begin(); child != children_end(); ++child)
        if (const auto map = handle_cast<MapRootEntity>(*child); map.isValid())
            knownMaps.maps.push_back(map);
    return knownMaps.maps;
}

Handle<MapRootEntity> Coordinator::findMap(Vec4 worldPosition)
{
    Handle<MapRootEntity> nearest;
    float nearestDistance = std::numeric_limits<float>::infinity();
    for (const Handle<MapRootEntity> &map : findMaps())
    {
        auto transform = handle_cast<TransformComponent>(map.lookup()->getComponent(ComponentKeys::transform)).lookup();
        if (!transform)
            continue;
        if (isInUnitBox(transform->getTransformationMatrix(TransformComponent::INVERT) * worldPosition))
            return map;
        const float distance = (transform->getPosition() - worldPosition).magnitudeSquared();
        if (distance < nearestDistance)
        {
            nearestDistance = distance;
            nearest = map;
        }
    }
    if (knownMaps.maps.empty())
        KV_ERROR("Traveled to the fires of Mount Doom to find MapRootEntity. Nobody was home.");
    return nearest;
}

Handle<MapRootEntity> Coordinator::loadMap(const String &mapName)
{
    const ProfilerScope scope(SCS("Coordinator::loadMap"), levelName + SCS(".") + mapName);
    const Variant loaded = callLoader("loadMap", SavedArguments::of(getTypedHandle(), mapName));
    const Handle<MapRootEntity> map = handle_cast<MapRootEntity>(loaded.get<Handle<Object>>().value);
    if (!map.isValid())
    {
        KV_LOGF(Logger_::I_ERROR, "loader.loadMap('%s') returned no MapRootEntity", mapName.toCString());
        return map;
    }
    if (const auto kept = PersistentStateComponent::ofLevel(getTypedHandle()).lookup())
        kept->persistState(map);
    callLoader("completeMap", SavedArguments::of(map));
    return map;
}
