// TimelineSystem: the last minutes of a level, moment by moment, to be looked at.
#pragma once

#include "tools/timeline/PlacementTape.h"

#include "engine/systems/System.h"
#include "object/tree/Handle.h"
#include "object/tree/ReflectorPtr.h"

#include <cstdint>
#include <unordered_set>
#include <vector>

class Coordinator;
class TransformComponent;

/// Keeps where everything in the level stood in each frame, and puts it there again for show.
///
/// While a moment is shown the level has to stand still, which is for who shows it to see to. `goOn` gives all
/// transforms back to the last bit what they were before: nothing of the game can tell. Another level begins a new tape;
/// frames of a level that stands still are not kept. It costs nothing while nothing is recorded.
class TimelineSystem : public System
{
    KV_REFLECTED(TimelineSystem)
public:
    TimelineSystem();

    bool getRecording() const { return recording; }
    /// Whether the frames from now on are kept. Switched on, it begins a new tape; switched off, what there is stays.
    void setRecording(bool val);
    /// Sets what is called with the number of each moment that has been kept, for what else belongs to it.
    void setCallback(ReflectorPtr val) { callback = val; }
    ReflectorPtr getCallback() const { return callback; }

    /// Number of the oldest moment that is kept; moments count on from 0, and the oldest fall out.
    std::int64_t getOldest() const { return tape.getOldest(); }
    /// Number of the newest moment; one below the oldest where nothing is kept.
    std::int64_t getNewest() const { return tape.getNewest(); }
    /// When a moment was, seconds of recording; 0 for one that is not kept.
    double secondsOf(std::int64_t moment) const { return tape.getSeconds(moment); }
    /// How many things had moved in a moment since the one before; 0 for one that is not kept.
    int changesIn(std::int64_t moment) const { return tape.getChanges(moment); }
    /// Memory that the moments take.
    std::int64_t getBytes() const { return static_cast<std::int64_t>(tape.getBytes()); }

    /// Puts everything that is still there to where it was in a moment, or in the nearest one kept.
    void show(std::int64_t moment);
    /// Puts everything back to the present; as soon as the level goes on, this happens by itself.
    void goOn();
    /// Whether a moment is shown, not the present.
    bool isShowing() const { return !present.empty(); }

    /// Has the whole run wait after this frame, or go on: while it waits no frame is counted, no time passes and no input
    /// is heard; what is drawn is drawn on, and the bars can be used. For recorded input that plays, which nothing else
    /// can keep waiting, and on which an `onlooker` of the input looks; else it is logged as an error, and the run goes on.
    void setWaiting(bool val);
    bool getWaiting() const { return isRunWaiting(); }
    /// Whether a run waits; the system need not have been started.
    static bool isRunWaiting();
    /// Draws the present frame once more, and has the bars do what they were asked for.
    void drawWaiting();

    /// Gives the present back to a level that goes on. Frame step, before anything moves.
    void beginFrame();
    /// Keeps the present moment. Frame step, before the frame is drawn; not of a level that stands still.
    void record();

protected:
    void systemStartup() override {}
    void systemShutdown() override;
    DependencyList systemDependencies() override { return {}; }
    UpdaterList getUpdaters() override;

private:
    struct Present
    {
        Handle<TransformComponent> transform;
        Placement placement;
    };

    void restart(const Handle<Coordinator> &level);
    void meetTransforms();
    void keepPresent();

    PlacementTape tape;
    bool recording = false;
    double seconds = 0.0; ///< that have been recorded
    ReflectorPtr callback;
    Handle<Coordinator> recorded;                   ///< the level that the tape is of
    std::vector<Handle<TransformComponent>> things; ///< by their numbers on the tape; those that died keep theirs
    std::unordered_set<Handle<TransformComponent>> met;
    std::uint64_t objectChanges = 0; ///< births and deaths that `things` takes account of
    std::vector<Present> present;    ///< while a moment is shown
};
