#include "tools/profiler/ProfilerSystem.h"

#include "tools/profiler/ProfilerDisplay.h"

#include "engine/debug/DebugCollector.h"
#include "engine/time/TimeSystem.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"
#include "foundation/ProfilerScope.h"

/// Takes what the scopes of lower folders report.
class ProfilerSystem::Sink final : public IProfilerSink
{
public:
    explicit Sink(ProfilerSystem &profiler_) : profiler(profiler_) { profilerSink = this; }
    ~Sink() { profilerSink = nullptr; }

    std::uint64_t beginScope(const String &category, const String &name) override
    {
        return profiler.append(category, name, ET_BEGIN, CT_TIME, NO_EVENT).id;
    }
    void endScope(std::uint64_t beginID, const String &category, const String &name, bool verbose) override
    {
        profiler.endScope(beginID, category, name, verbose);
    }

private:
    ProfilerSystem &profiler;
};

ProfilerSystem::ProfilerSystem() = default;
ProfilerSystem::~ProfilerSystem() = default;

void ProfilerSystem::systemStartup()
{
    currentRecords.resize(RECORD_CAPACITY);
    frameBeginIDs.resize(FRAME_CAPACITY);
    // Before the first scope can ask for it: a system that starts runs scripts, and these may be measured themselves.
    clock = &getSystemDeref<TimeSystem>();
    sink = std::make_unique<Sink>(*this);
}

void ProfilerSystem::systemShutdown()
{
    sink.reset();
}

// Twice in every scope of every frame, hence inline by force.
[[gnu::always_inline]] inline ProfilerSystem::EventRecord &
ProfilerSystem::append(const String &profileKey, const String &verboseDesc, EventType type, CounterType counterType,
                       EventID associatedID)
{
    const TimerTicks now = clock->now();
    EventRecord &record = slotOf(++lastID);
    record.id = lastID;
    record.timestamp = now;
    record.associatedID = associatedID;
    record.profileKey = profileKey;
    record.verboseDesc = verboseDesc;
    record.type = type;
    record.counterType = counterType;
    record.value = 0;
    return record;
}

/// Tells a begin when it ended; null, with a report, where it is not there.
[[gnu::always_inline]] inline ProfilerSystem::EventRecord *ProfilerSystem::noteEnd(EventID beginID,
                                                                                   TimerTicks timestamp)
{
    EventRecord *beginRecord = &slotOf(beginID);
    if (beginRecord->id != beginID || beginID == NO_EVENT) [[unlikely]]
    {
        Assertions::prepareAssert(AM_VERIFY, AC_ALWAYS, "beginRecord", "ProfilerSystem", 76,
                                  "ET_END event record created with invalid or already-spilled associatedID");
        return nullptr;
    }
    beginRecord->associatedID = static_cast<EventID>(timestamp);
    return beginRecord;
}

EventID ProfilerSystem::recordEvent(const String &profileKey, const String &verboseDesc, EventType type,
                                    CounterType counterType, EventID associatedID)
{
    const EventRecord &record = append(profileKey, verboseDesc, type, counterType, associatedID);
    if (type == ET_END)
        noteEnd(associatedID, record.timestamp);
    return record.id;
}

EventID ProfilerSystem::beginScope(const String &func, const String &profileKey)
{
    return append(func, profileKey, ET_BEGIN, CT_TIME, NO_EVENT).id;
}

void ProfilerSystem::endScope(EventID beginID, const String &func, const String &profileKey, bool verbose)
{
    const TimerTicks now = append(func, profileKey, ET_END, CT_TIME, beginID).timestamp;
    const EventRecord *beginRecord = noteEnd(beginID, now);
    if (verbose && beginRecord)
        logDuration(now - beginRecord->timestamp, func, profileKey);
}

void ProfilerSystem::logDuration(TimerTicks ticks, const String &func, const String &profileKey) const
{
    static const std::int64_t oneSecond = clock->getTicksPerSecond();
    const double rate = static_cast<double>(clock->getTicksPerSecond());
    const bool isShort = ticks < oneSecond;
    Logger().writeFormatted(Logger_::I_INFO, SCS("ProfilerSystem"), 0,
                            isShort ? "%s/%s completed in %f ms" : "%s/%s completed in %f s", profileKey.toCString(),
                            func.toCString(), static_cast<double>(ticks) * (isShort ? 1000.0 : 1.0) / rate);
}

void ProfilerSystem::newFrame()
{
    static const String key = SCS("FRAME");
    if (frameCtr > 0)
        recordEvent(key, String(), ET_END, CT_TIME, getFrameBeginEventID());
    frameBeginIDs[static_cast<std::size_t>(frameCtr) & (FRAME_CAPACITY - 1)] =
        recordEvent(key, String(), ET_BEGIN, CT_TIME, NO_EVENT);
    ++frameCtr;
}

EventID ProfilerSystem::getFrameBeginEventID(int frameID) const
{
    const std::int64_t frame = frameID < 0 ? std::int64_t(frameCtr) + frameID : frameID;
    if (frame < 0 || frame >= frameCtr || frameCtr - frame > std::int64_t(FRAME_CAPACITY))
        return NO_EVENT;
    return frameBeginIDs[static_cast<std::size_t>(frame) & (FRAME_CAPACITY - 1)];
}

const ProfilerSystem::EventRecord *ProfilerSystem::getRecord(EventID id) const
{
    const EventRecord &record = currentRecords[id & (RECORD_CAPACITY - 1)];
    return record.id == id && id != NO_EVENT ? &record : nullptr;
}

void ProfilerSystem::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const auto collector = dcc.lookup();
    if (!showResults || !collector)
        return;
    if (!display)
        display = std::make_unique<ProfilerDisplay>();
    display->update(*this, clock->getTicksPerSecond());
    display->draw(*collector);
}
