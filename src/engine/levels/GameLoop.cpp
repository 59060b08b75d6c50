#include "engine/levels/GameLoop.h"

#include "engine/entities/InterpolatorComponent.h"
#include "engine/levels/PersistentStateComponent.h"
#include "engine/systems/RunningMark.h"
#include "engine/time/TimeSystem.h"
#include "object/python/PythonCalls.h"
#include "object/reflection/SavedArguments.h"
#include "object/tree/Obituaries.h"
#include "port/win32/Messages.h"

#include "foundation/Logger.h"
#include "foundation/ProfilerScope.h"

#include <algorithm>
#include <cmath>

namespace
{
/// Frames that the loading screen runs, enough to be on the screen while the level loads.
constexpr int LOADING_SCREEN_FRAMES = 2;

/// The entity of what is kept; null where it has died with its level or is about to.
Handle<Object>::Result holderOf(const Handle<PersistentStateComponent> &state)
{
    const auto kept = state.lookup();
    return kept && !kept->isDying() ? kept->getParent().lookup() : Handle<Object>::Result();
}

/// The level that a function of the script `loader` makes; invalid where it makes none.
Handle<Coordinator> callLoader(const char *function, const String &levelName)
{
    const ProfilerScope scope(SCS("loadLevel"), levelName);
    Variant result;
    if (!pythonCall("loader", function, SavedArguments::of(levelName), result))
        pythonRaisePending();
    return handle_cast<Coordinator>(result.get<Handle<Object>>().value);
}
} // namespace

void GameLoopSystem::retireLevel(Handle<Coordinator> level)
{
    const auto coordinator = level.lookup();
    if (!coordinator || coordinator->isDying())
        return;
    const auto holder = holderOf(persistentState);
    if (holder && holder->getParent() == level)
        holder->setParent(getTypedHandle());
    coordinator->murder();
}

void GameLoopSystem::givePersistentState(Handle<Coordinator> level)
{
    if (!level.isValid() || PersistentStateComponent::ofLevel(level).isValid())
        return;
    const auto holder = holderOf(persistentState);
    if (holder && holder->getParent() == getTypedHandle())
    {
        holder->setParent(level);
        return;
    }
    const Handle<PersistentStateComponent> made = PersistentStateComponent::makeFor(level);
    if (holder)
        return; // the level that it was given to goes on beside this one
    if (persistentState != Handle<PersistentStateComponent>())
        KV_LOGF(Logger_::I_WARNING,
                "What had become of the objects of all levels is forgotten in %s: the level that kept it was murdered. "
                "queueLoadLevel ends a level and hands on what it keeps.",
                level.lookup()->getLevelName().toCString());
    persistentState = made;
}

void GameLoopSystem::forgetPersistentState()
{
    if (const auto kept = persistentState.lookup())
        kept->forgetEverything();
}

/// Runs the loading screen in place of a level while the next one loads; both are gone when this returns.
Handle<Coordinator> GameLoopSystem::replaceLevel(const Handle<Coordinator> &present, const String &nextName)
{
    retireLevel(present);
    const Handle<Coordinator> loadingScreen = loadLevel(SCS("LoadingScreen"));
    for (int frame = 0; frame < LOADING_SCREEN_FRAMES; ++frame)
    {
        if (auto screen = loadingScreen.lookup())
            screen->doFrame();
    }
    retireLevel(loadingScreen);
    const Handle<Coordinator> next = loadLevel(nextName);
    cremateDeadObjects();
    return next;
}

/// Builds a level anew beside the present one; the one of the two that is to run on.
Handle<Coordinator> GameLoopSystem::renewLevel(const Handle<Coordinator> &present)
{
    const auto coordinator = present.lookup();
    if (!coordinator || coordinator->isDying())
        return present;
    // Both are to find what has become of the objects of all levels: the new one now, the old one where that fails.
    if (const auto holder = holderOf(persistentState); holder && holder->getParent() == present)
        holder->setParent(getTypedHandle());
    const Handle<Coordinator> next = callLoader("renewLevel", coordinator->getLevelName());
    if (next.isValid())
        coordinator->murder();
    else
        givePersistentState(present);
    cremateDeadObjects();
    return next.isValid() ? next : present;
}

void GameLoopSystem::switchLevel()
{
    if (!queuedLevel.empty())
        setCurrentlyActiveCoordinator(replaceLevel(currentCoordinator, queuedLevel));
    else if (renewQueued)
        setCurrentlyActiveCoordinator(renewLevel(currentCoordinator));
    queuedLevel = String();
    renewQueued = false;
}

void GameLoopSystem::doFrame()
{
    if (frameRunning)
    {
        KV_LOG(Logger_::I_ERROR, "GameLoopSystem::doFrame was called from within a frame");
        return;
    }
    const RunningMark mark(frameRunning);
    Obituaries::setFrame(++frameNumber);

    beginProfilerFrame();
    measureFrame();
    switchLevel();
    callFrameCallback();
    if (auto level = currentCoordinator.lookup())
        level->doFrame();
    else
        quitWithoutLevel();
    cremateDeadObjects();
    quitAtFrameLimit();
}

void GameLoopSystem::beginProfilerFrame()
{
    // The profiler lies above this folder, so it is reached by name, once.
    if (!profilerNewFrame)
    {
        if (auto profiler = getSystem(SCS("ProfilerSystem")).lookup())
            profilerNewFrame = profiler->bind(SCS("newFrame"));
    }
    if (profilerNewFrame)
        profilerNewFrame->call().code.ignoreError();
}

void GameLoopSystem::measureFrame()
{
    TimeSystem &clock = getSystemDeref<TimeSystem>();
    const TimerTicks ticks = clock.newFrame();
    getTime().lookup()->newFrame(longestFrame > 0.0 ? std::min(ticks, clock.toTicks(longestFrame)) : ticks);
}

void GameLoopSystem::setLongestFrame(Seconds val)
{
    if (std::isfinite(val) && val >= 0.0)
        longestFrame = val;
    else
        KV_LOGF(Logger_::I_ERROR, "GameLoopSystem: longestFrame cannot be %g and stays %g", val, longestFrame);
}

void GameLoopSystem::callFrameCallback()
{
    // A copy: the callback may set another one in its own place.
    const ReflectorPtr called = frameCallback;
    if (!called)
        return;
    const ErrorCode outcome = called->call().code;
    if (outcome.succeeded())
        return;
    KV_LOGF(Logger_::I_ERROR, "The callback of every frame, %s, failed (%s), and the game quits.",
            called->getQualifiedName().toCString(), outcome.toString().toCString());
    quit(1);
}

void GameLoopSystem::quitWithoutLevel()
{
    KV_LOG(Logger_::I_ERROR, "There is no level to run: the coordinator died or was never loaded. The game quits; "
                             "queueLoadLevel is the way to another level.");
    quit(1);
}

void GameLoopSystem::setCurrentlyActiveCoordinator(Handle<Coordinator> c)
{
    currentCoordinator = c;
    if (const auto level = c.lookup())
        InterpolatorComponent::startWaiting(*level);
}

Handle<TimeKeeper> GameLoopSystem::getTime()
{
    if (!time.isValid())
    {
        time = construct<TimeKeeper>(defaultAllocationCategory);
        time.lookup()->setParent(getTypedHandle());
    }
    return time;
}

void GameLoopSystem::queueLoadLevel(const String &levelName)
{
    queuedLevel = levelName;
}

void GameLoopSystem::quit(int exitCode)
{
    quitAsked = true;
    PostQuitMessage(exitCode);
}

void GameLoopSystem::quitIfUnattended()
{
    if (unattended)
        quit(1);
}

void GameLoopSystem::quitAtFrameLimit()
{
    if (frameLimit > 0 && frameNumber >= frameLimit && !quitAsked)
        quit(0);
}

Handle<Coordinator> loadLevel(const String &levelName)
{
    const Handle<Coordinator> level = callLoader("loadLevel", levelName);
    if (!level.isValid())
        KV_LOGF(Logger_::I_ERROR, "loader.loadLevel('%s') returned no Coordinator", levelName.toCString());
    return level;
}
