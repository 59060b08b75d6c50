// Coordinator: one loaded level, the owner of its managers and timers, and the driver of its frame.
#pragma once

#include "engine/entities/AbstractManager.h"
#include "engine/systems/CombinedUpdaterRange.h"
#include "engine/time/TimeKeeper.h"
#include "engine/systems/Updater.h"
#include "object/tree/Object.h"

#include "foundation/KVString.h"
#include "foundation/TimeTypes.h"
#include "foundation/Vector.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

class MapRootEntity;

/// One loaded level: the root of its object tree.
///
/// Made by the loading script, run by the game loop, dead with its whole tree at the next level switch. Managers and
/// timers are its children and are made when first asked for. Coordinators may be chained: the first one's frame runs
/// the updaters of all systems and of the whole chain in one order of priority.
class Coordinator : public Object
{
    KV_REFLECTED(Coordinator)
public:
    /// Which manager updaters the coordinator's frame runs; system updaters run in every state.
    enum LoopControlState
    {
        LOOP_ALL_STOP = 0, ///< no manager updaters are run
        LOOP_STOP = 1,     ///< only run-on-stop manager updaters are run
        LOOP_STEP = 2,     ///< like LOOP_RUN for one frame, then changes to LOOP_STOP
        LOOP_RUN = 3       ///< all manager updaters are run
    };

    /// One frame step of a manager class: a method and its place in the frame.
    struct ManagerUpdateDesc
    {
        String method_name;
        int priority = 0;
        bool runOnStop = false;

        bool operator<(const ManagerUpdateDesc &rhs) const { return priority < rhs.priority; }
    };

    /// What may be made under a manager key: its class and its frame steps.
    struct ManagerDesc
    {
        using UpdaterList = std::vector<ManagerUpdateDesc>;

        String key;
        ReflectorPtr type;
        UpdaterList updaters;
    };

    using ManagerMap = std::map<String, Handle<AbstractManager>>;
    using TimerMap = std::map<String, Handle<TimeKeeper>>;
    using ManagerClassMap = std::map<String, ManagerDesc>;

    Coordinator();

    /// Chooses which updaters run from the next frame on.
    ///
    /// LOOP_ALL_STOP is for a coordinator outside the running chain: within it, the frame never ends.
    void setLoopState(LoopControlState newState);
    /// Which updaters run.
    LoopControlState getLoopState() const { return loopState; }

    /// Runs one frame of all systems and of the whole chain; called for the chain's first coordinator only.
    void doFrame();

    /// The manager under a key, made at first use; an unknown key is logged as an error and gives an invalid handle.
    Handle<AbstractManager> getManager(const String &name);
    /// The timer of this name, made at first use; the game's own is "master". Borrowed for the call.
    TimeKeeper &getTimer(const String &name);
    /// The timer of this name, made at first use; the game's own is "master".
    Handle<TimeKeeper> getTimerHandle(const String &name);

    /// Length of the last frame, seconds of wall time.
    Seconds getLastFrameTime() const;
    /// Length of the last frame, seconds: the same number as the last frame time.
    Seconds getInstantFPS() const;

    /// The map that holds a point, or else the nearest one by its centre.
    ///
    /// World space, metres. The first map whose box holds the point wins; without a map at all this is an assertion
    /// and an invalid handle. Cost: linear in the level's maps.
    Handle<MapRootEntity> findMap(Vec4 worldPosition);

    /// Name under which the level was loaded.
    String getLevelName() const { return levelName; }
    /// Stores the name under which the level was loaded.
    void setLevelName(const String &val) { levelName = val; }

    /// Has the script `loader.loadMap` build a map in this level, then replays what the level persists for it.
    ///
    /// A Python exception travels to the caller.
    Handle<MapRootEntity> loadMap(const String &mapName);

    /// The next coordinator of the chain; invalid at its end.
    Handle<Coordinator> getSubCoordinator() const { return subCoordinator; }
    /// Chains another coordinator behind this one; one that would close a ring is refused with an error.
    void setSubCoordinator(Handle<Coordinator> val);

private:
    /// The three parallel lists of one frame and the walk over them, kept so that a frame allocates nothing.
    struct FrameWalk
    {
        std::vector<LoopControlState> states;
        CombinedUpdaterRange::IteratorList begins;
        CombinedUpdaterRange::IteratorList ends;
        CombinedUpdaterRange range;
        bool running = false;
    };

    /// The maps among the children, kept while nothing is born, dies or comes and goes, since every volume in world
    /// space asks for its map in each frame.
    struct KnownMaps
    {
        std::vector<Handle<MapRootEntity>> maps;
        std::uint64_t objectChanges = 0; ///< births and deaths that these take account of
        std::size_t childCount = 0;      ///< likewise
    };

    const std::vector<Handle<MapRootEntity>> &findMaps();

    void addManagerClass(String key, ReflectorPtr type, ManagerDesc::UpdaterList updaters);
    void addManagerClass(String key, ReflectorPtr type, String fn, int priority, bool runOnStop = false);
    void addManagerClass(String key, ReflectorPtr type, int priority, bool runOnStop = false);
    void addNullManager(String key);
    void registerManagerClasses();

    Handle<AbstractManager> constructManager(const ManagerDesc &desc);
    void gatherUpdaters(FrameWalk &walk);
    void joinFrame(FrameWalk &walk, TimerTicks ticks);
    void runUpdaters(FrameWalk &walk);

    String levelName;
    ManagerMap managers;            ///< managers made so far
    TimerMap timers;                ///< timers made so far
    UpdaterSet managerUpdaters;     ///< frame steps of the managers made so far
    ManagerClassMap managerClasses; ///< what may be made
    TimerTicks lastFrameTime = 0;   ///< wall ticks
    LoopControlState loopState = LOOP_RUN;
    Handle<Coordinator> subCoordinator; ///< next in the chain
    FrameWalk frameWalk;
    KnownMaps knownMaps;
};
