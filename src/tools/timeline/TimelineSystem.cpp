#include "tools/timeline/TimelineSystem.h"

#include "tools/bars/TweakSystem.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/GameLoop.h"
#include "engine/transforms/TransformComponent.h"
#include "object/reflection/SavedArguments.h"
#include "object/reflection/Variant.h"
#include "object/tree/TreeWalk.h"
#include "platform/input/InputSystem.h"
#include "port/win32/Waiting.h"
#include "rendering/device/GraphicsSystem2.h"
#include "rendering/frame/GraphicsManager2.h"

#include "foundation/Logger.h"

namespace
{
constexpr std::size_t MOST_BYTES = std::size_t(96) << 20; ///< some minutes of a level in which much moves
constexpr DWORD WAITING_MILLISECONDS = 10;                ///< between the pictures of a run that waits
constexpr int BEFORE_ANYTHING_MOVES = -999;
constexpr int BEFORE_THE_FRAME_IS_DRAWN = 999999;

bool runWaits = false; ///< asked for each frame, also of runs that never start the system

Placement placementOf(const TransformComponent &transform)
{
    return {transform.getPosition(), transform.getOrientation(), transform.getScale()};
}

void put(TransformComponent &transform, const Placement &placement)
{
    transform.setPosition(placement.position);
    transform.setOrientation(placement.orientation);
    transform.setScale(placement.scale);
}

Handle<Coordinator> levelInCharge()
{
    return getSystemDeref<GameLoopSystem>().getCurrentlyActiveCoordinator();
}

/// Whether nothing happens in a level; systems take their steps all the same.
bool standsStill(const Handle<Coordinator> &level)
{
    const auto coordinator = level.lookup();
    return !coordinator || coordinator->getLoopState() <= Coordinator::LOOP_STOP;
}
} // namespace

TimelineSystem::TimelineSystem() : tape(MOST_BYTES) {}

void TimelineSystem::systemShutdown()
{
    runWaits = false;
    restart(Handle<Coordinator>());
    callback = ReflectorPtr();
}

UpdaterList TimelineSystem::getUpdaters()
{
    return {Updater(SCS("TimelineSystem::beginFrame"), bind(SCS("beginFrame")), BEFORE_ANYTHING_MOVES),
            Updater(SCS("TimelineSystem::record"), bind(SCS("record")), BEFORE_THE_FRAME_IS_DRAWN)};
}

void TimelineSystem::restart(const Handle<Coordinator> &level)
{
    tape.clear();
    things.clear();
    met.clear();
    objectChanges = 0;
    present.clear();
    seconds = 0.0;
    recorded = level;
}

void TimelineSystem::setRecording(bool val)
{
    if (val && !recording)
    {
        goOn();
        restart(levelInCharge());
    }
    recording = val;
}

/// Takes up the transforms that have come since the last moment.
void TimelineSystem::meetTransforms()
{
    const auto level = recorded.lookup();
    if (!level || objectChanges == ObjectMap().getChangeCount())
        return;
    objectChanges = ObjectMap().getChangeCount();
    TreeWalk walk(*level);
    while (Object *const object = walk.next())
    {
        const Handle<TransformComponent> transform = handle_cast<TransformComponent>(object->getHandle());
        if (transform.isValid() && met.insert(transform).second)
            things.push_back(transform);
    }
}

void TimelineSystem::record()
{
    if (!recording || standsStill(levelInCharge()))
        return;
    if (const Handle<Coordinator> level = levelInCharge(); level != recorded)
        restart(level);
    meetTransforms();
    seconds += getSystemDeref<GameLoopSystem>().getTime().lookup()->getFrameTimeSeconds();
    tape.begin(seconds);
    for (std::size_t thing = 0; thing < things.size(); ++thing)
        if (const auto transform = things[thing].lookup())
            tape.add(static_cast<std::uint32_t>(thing), placementOf(*transform));
    if (callback)
        callback->call(tape.getNewest()).code.ignoreError(); // a script's exception has been told
}

void TimelineSystem::keepPresent()
{
    if (isShowing())
        return;
    for (const Handle<TransformComponent> &each : things)
        if (const auto transform = each.lookup())
            present.push_back({each, placementOf(*transform)});
}

void TimelineSystem::show(std::int64_t moment)
{
    if (tape.empty() || levelInCharge() != recorded)
        return;
    keepPresent();
    const std::vector<PlacementTape::Place> &places = tape.seek(moment);
    for (std::size_t thing = 0; thing < places.size(); ++thing)
        if (const auto transform = things[thing].lookup(); transform && places[thing].known)
            put(*transform, places[thing].placement);
}

void TimelineSystem::setWaiting(bool val)
{
    const InputSystem &input = getSystemDeref<InputSystem>();
    if (val && !(input.getReplaying() && input.getOnlooker()))
        KV_LOG(Logger_::I_ERROR,
               "TimelineSystem::setWaiting: no recorded input plays that somebody looks on at; the run "
               "goes on, since nobody could end its waiting");
    else
        runWaits = val;
}

bool TimelineSystem::isRunWaiting()
{
    return runWaits;
}

void TimelineSystem::drawWaiting()
{
    getSystemDeref<TweakSystem>().act();
    const auto level = levelInCharge().lookup();
    if (!runWaits || !level)
        return;
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    graphics.beginFrame();
    if (const auto manager = handle_cast<GraphicsManager2>(level->getManager(ComponentKeys::graphics2)).lookup())
        manager->doFrame();
    getSystemDeref<TweakSystem>().refresh();
    graphics.endFrame();
    graphics.present();
    Sleep(WAITING_MILLISECONDS);
}

void TimelineSystem::beginFrame()
{
    if (isShowing() && !standsStill(levelInCharge()))
        goOn();
}

void TimelineSystem::goOn()
{
    for (const Present &each : present)
        if (const auto transform = each.transform.lookup())
            put(*transform, each.placement);
    present.clear();
}
