// ProfilerSystem: the rolling record of timed events, and the table on screen that sums it up.
#pragma once

#include "engine/systems/System.h"

#include "foundation/TimeTypes.h"

#include <cstdint>
#include <memory>
#include <vector>

class ProfilerDisplay;
class TimeSystem;

/// Number of a recorded event, counted from 0 and never reused.
typedef std::uint64_t EventID;

/// Records when what happened over the last frames, for the whole run.
///
/// Scopes of every folder arrive through `ProfilerScope`; the game loop brackets each frame with one "FRAME" pair. The
/// record lives in memory only, in rings of fixed size: recording takes no memory beyond counting the two strings.
class ProfilerSystem : public System
{
    KV_REFLECTED(ProfilerSystem)
public:
    /// What an event measures.
    enum CounterType
    {
        CT_MARKER = 0, ///< nothing: a mark in time
        CT_TIME = 1,   ///< a stretch of time
        CT_COUNT = 2,  ///< a number
        NUM_COUNTER_TYPES = 3
    };

    /// Which end of a stretch an event is.
    enum EventType
    {
        ET_BEGIN = 0,
        ET_END = 1,
        ET_INSTANTANEOUS = 2,
        NUM_EVENT_TYPES = 3
    };

    /// The number of no event.
    static constexpr EventID NO_EVENT = ~EventID(0);
    /// Events that are kept; a power of two, so that a number finds its place by a mask.
    static constexpr std::size_t RECORD_CAPACITY = 65536;
    /// Frames whose begin is kept; a power of two.
    static constexpr std::size_t FRAME_CAPACITY = 1024;

    /// One event; a cache line each, since recording costs what it writes.
    struct alignas(64) EventRecord
    {
        EventID id = NO_EVENT;
        TimerTicks timestamp = 0;        ///< raw reading of the time source, ticks
        EventID associatedID = NO_EVENT; ///< of an end: its begin; of a begin: the end's timestamp once there is one
        String profileKey;
        String verboseDesc;
        EventType type = ET_INSTANTANEOUS;
        CounterType counterType = CT_MARKER;
        std::int64_t value = 0; ///< of a count; 0 for others
    };

    ProfilerSystem();
    ~ProfilerSystem() override;

    /// Records an event now and returns its number.
    ///
    /// An ET_END notes its timestamp in the begin that `associatedID` names. A begin that never was, or has left the
    /// ring, is reported in the log; the end is recorded all the same.
    EventID recordEvent(const String &profileKey, const String &verboseDesc = String(),
                        EventType type = ET_INSTANTANEOUS, CounterType counterType = CT_MARKER,
                        EventID associatedID = NO_EVENT);
    /// Records the begin of a stretch of time; the number is what endScope wants.
    EventID beginScope(const String &func, const String &profileKey);
    /// Records the end of a stretch of time.
    /// @param verbose  log how long it took
    void endScope(EventID beginID, const String &func, const String &profileKey, bool verbose);
    /// Ends the "FRAME" pair of the frame before, and begins that of the next one. Called by the game loop.
    void newFrame();

    /// The event that began a frame; all ones where the frame is unknown or no longer kept.
    /// @param frameID  counted from 0; negative counts back from the present frame, which is -1
    EventID getFrameBeginEventID(int frameID = -1) const;
    /// The record of an event, until it leaves the ring; null for an unknown number.
    const EventRecord *getRecord(EventID id) const;
    /// The last number given out; all ones before the first event.
    EventID getLastEventID() const { return lastID; }
    /// Number of frames begun so far.
    int getFrameCount() const { return frameCtr; }

    /// Draws the table of the last frames while showResults is set.
    ///
    /// Time a frame, draw calls and state changes, then each scope below the one around it, the dearest first: its mean
    /// time, its share of the frame and its calls a frame.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;
    /// Whether debug drawing shows the table of scopes.
    bool getShowResults() const { return showResults; }
    void setShowResults(bool val) { showResults = val; }

protected:
    void systemStartup() override;
    void systemShutdown() override;
    DependencyList systemDependencies() override { return {}; }

private:
    class Sink;

    EventRecord &append(const String &profileKey, const String &verboseDesc, EventType type, CounterType counterType,
                        EventID associatedID);
    EventRecord *noteEnd(EventID beginID, TimerTicks timestamp);
    EventRecord &slotOf(EventID id) { return currentRecords[id & (RECORD_CAPACITY - 1)]; }
    void logDuration(TimerTicks ticks, const String &func, const String &profileKey) const;

    std::vector<EventRecord> currentRecords; ///< ring of RECORD_CAPACITY: each event at its number
    std::vector<EventID> frameBeginIDs;      ///< ring of FRAME_CAPACITY: the begin of each frame at its number
    int frameCtr = 0;                        ///< frames begun so far
    EventID lastID = NO_EVENT;               ///< the last one given out
    bool showResults = false;

    TimeSystem *clock = nullptr; ///< started before this system and stopped after it
    std::unique_ptr<Sink> sink;
    std::unique_ptr<ProfilerDisplay> display; ///< made when it is first shown
};
