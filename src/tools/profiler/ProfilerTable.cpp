#include "tools/profiler/ProfilerTable.h"

#include "tools/profiler/ProfilerSystem.h"

#include <algorithm>

ProfilerTable::ProfilerTable()
{
    rows.reserve(MAX_ROWS);
    open.reserve(64);
    rows.emplace_back();
    rows.front().profileKey = SCS("FRAME");
}

void ProfilerTable::update(const ProfilerSystem &profiler)
{
    const int ended = profiler.getFrameCount() - 1;
    nextFrame = std::max(nextFrame, ended - static_cast<int>(WINDOW));
    for (; nextFrame < ended; ++nextFrame)
        addFrame(profiler, nextFrame);
}

void ProfilerTable::addFrame(const ProfilerSystem &profiler, int frame)
{
    const EventID begin = profiler.getFrameBeginEventID(frame);
    const EventID end = profiler.getFrameBeginEventID(frame + 1);
    if (!profiler.getRecord(begin))
        return; // more events than the ring holds since then
    open.clear();
    for (EventID id = begin; id != end; ++id)
    {
        const ProfilerSystem::EventRecord &record = *profiler.getRecord(id);
        if (record.type == ProfilerSystem::ET_BEGIN)
            beginScope(profiler, id);
        else if (record.type == ProfilerSystem::ET_END)
            endScope(record.associatedID, record.timestamp);
    }
    moveWindow();
}

void ProfilerTable::beginScope(const ProfilerSystem &profiler, std::uint64_t id)
{
    const ProfilerSystem::EventRecord &record = *profiler.getRecord(id);
    const int row = open.empty() ? 0 : childOf(open.back().row, record.profileKey, record.verboseDesc);
    open.push_back({id, record.timestamp, row});
}

void ProfilerTable::endScope(std::uint64_t beginID, TimerTicks end)
{
    const auto matches = [beginID](const OpenScope &scope) { return scope.beginID == beginID; };
    const auto found = std::find_if(open.rbegin(), open.rend(), matches);
    if (found == open.rend())
        return;
    if (found->row != NONE)
    {
        Row &row = rows[static_cast<std::size_t>(found->row)];
        row.frameTicks += end - found->begin;
        ++row.frameCalls;
    }
    // What was begun inside and never ended goes with it.
    open.resize(static_cast<std::size_t>(open.rend() - found) - 1);
}

int ProfilerTable::childOf(int parent, const String &profileKey, const String &verboseDesc)
{
    if (parent == NONE)
        return NONE;
    for (int child = rows[static_cast<std::size_t>(parent)].firstChild; child != NONE;)
    {
        const Row &row = rows[static_cast<std::size_t>(child)];
        if (row.verboseDesc == verboseDesc && row.profileKey == profileKey)
            return child;
        child = row.nextSibling;
    }
    if (rows.size() == MAX_ROWS)
        return NONE;
    Row made;
    made.profileKey = profileKey;
    made.verboseDesc = verboseDesc;
    made.parent = parent;
    made.nextSibling = rows[static_cast<std::size_t>(parent)].firstChild;
    rows.push_back(made);
    return rows[static_cast<std::size_t>(parent)].firstChild = static_cast<int>(rows.size()) - 1;
}

void ProfilerTable::moveWindow()
{
    for (Row &row : rows)
    {
        row.sumTicks += row.frameTicks - row.ticks[windowSlot];
        row.sumCalls += row.frameCalls - row.calls[windowSlot];
        row.ticks[windowSlot] = row.frameTicks;
        row.calls[windowSlot] = row.frameCalls;
        row.frameTicks = 0;
        row.frameCalls = 0;
    }
    windowSlot = (windowSlot + 1) % WINDOW;
    framesHeld = std::min(framesHeld + 1, WINDOW);
}
