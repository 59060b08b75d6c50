// GameLoop: the coordinator in charge, the frame around it, and the switch of levels between frames.
#pragma once

#include "engine/levels/Coordinator.h"
#include "engine/systems/System.h"

class PersistentStateComponent;

/// Runs the frame and switches levels.
///
/// Holds the coordinator now in charge. A level switch is only noted when it is asked for and happens at the start of
/// the next frame, so it never pulls the tree away from under an updater. A run's end is this system's business alone:
/// the frame limit holds whatever becomes of the level.
class GameLoopSystem : public System
{
    KV_REFLECTED(GameLoopSystem)
public:
    GameLoopSystem() = default;

    /// Runs one frame: measures time, switches the level if one is queued, calls back, runs the updaters,
    /// cremates the dead, and quits with 0 where this was the last frame that was asked for.
    ///
    /// With no coordinator left to run, an error is logged and the game quits with exit code 1. A Python exception
    /// from a level's load travels to the caller.
    void doFrame();

    /// Puts this coordinator in charge from the next frame on.
    void setCurrentlyActiveCoordinator(Handle<Coordinator> c);
    /// The coordinator in charge; invalid before the first level.
    Handle<Coordinator> getCurrentlyActiveCoordinator() const { return currentCoordinator; }

    /// The clock of wall time that the coordinators' timers are fed from, made at first use.
    Handle<TimeKeeper> getTime();
    /// Sets how long a frame counts at most, seconds: one that took longer, as while the process stood still, goes on as
    /// if it had taken so long, and nobody falls through a floor meanwhile. 0 takes frames as they are; anything but a
    /// number from 0 on is logged as an error and changes nothing.
    void setLongestFrame(Seconds val);
    Seconds getLongestFrame() const { return longestFrame; }
    /// Count of frames begun so far.
    std::int64_t getFrameNumber() const { return frameNumber; }

    /// Has this level replace the present one at the start of the next frame; the last call wins.
    ///
    /// What has become of the present level's objects is kept for the next; see `PersistentStateComponent`.
    void queueLoadLevel(const String &levelName);
    /// Has the present level be built anew from its scripts at the start of the next frame, and take the old one's place
    /// once it stands.
    ///
    /// Where it cannot be built the old one goes on as it is; the script `loader.renewLevel` tells why. What has become
    /// of its objects is kept. A level that is queued comes first, and this is forgotten.
    void queueRenewLevel() { renewQueued = true; }
    /// Gives a level what the levels before it kept, or something new to keep it in; to be called before it loads maps.
    ///
    /// What a level has already stays. What was kept below a level that somebody murdered is lost, which is warned of.
    void givePersistentState(Handle<Coordinator> level);
    /// Ends a level that is not to run on, unless it is dying already, and keeps for the next one what it kept.
    void retireLevel(Handle<Coordinator> level);
    /// Forgets what has become of the objects of all levels, as a new game does; also while a level is being built.
    void forgetPersistentState();
    /// Ends the game after this frame; the process returns this exit code.
    void quit(int exitCode);
    /// Ends the game with exit code 1 if nobody watches it; a player's game goes on. The caller tells what has failed.
    void quitIfUnattended();

    /// Sets the number of the last frame: the game quits behind it, with 0 unless something else was asked for. 0 for no
    /// limit.
    void setFrameLimit(std::int64_t val) { frameLimit = val; }
    std::int64_t getFrameLimit() const { return frameLimit; }
    /// Sets that nobody watches, so that a failure which would only be told to a player ends the game.
    void setUnattended(bool val) { unattended = val; }
    bool getUnattended() const { return unattended; }
    /// Sets what is called in every frame, behind a switch of levels and before the updaters; None for nothing.
    ///
    /// No level can keep it from being called. A call that fails ends the game with exit code 1.
    void setFrameCallback(ReflectorPtr val) { frameCallback = val; }
    ReflectorPtr getFrameCallback() const { return frameCallback; }

protected:
    void systemStartup() override {}
    void systemShutdown() override {}
    DependencyList systemDependencies() override { return {}; }

private:
    void beginProfilerFrame();
    void measureFrame();
    void callFrameCallback();
    void quitWithoutLevel();
    void quitAtFrameLimit();
    void switchLevel();
    Handle<Coordinator> renewLevel(const Handle<Coordinator> &present);
    Handle<Coordinator> replaceLevel(const Handle<Coordinator> &present, const String &nextName);

    Handle<Coordinator> currentCoordinator;
    Handle<PersistentStateComponent> persistentState; ///< of the level that was given it, or in this system's care
    Handle<TimeKeeper> time;
    String queuedLevel; ///< empty while no switch is asked for
    bool renewQueued = false;
    std::int64_t frameNumber = 0;
    std::int64_t frameLimit = 0; ///< 0: none
    Seconds longestFrame = 0.0;  ///< 0: as long as it takes
    bool frameRunning = false;
    bool quitAsked = false; ///< so that the frame limit leaves the exit code alone
    bool unattended = false;
    ReflectorPtr frameCallback;
    ReflectorPtr profilerNewFrame; ///< the profiler's bound frame step, looked up in the first frame
};

/// Has the script `loader.loadLevel` build a level; the new coordinator is not put in charge.
///
/// A Python exception travels to the caller. A script that returns no coordinator is logged as an error and gives an
/// invalid handle.
Handle<Coordinator> loadLevel(const String &levelName);
