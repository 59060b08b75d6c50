#include "PassClock.h"

#include <cstdio>
#include <epoxy/gl.h>

std::uint64_t PassClock::beginScope(const String &category, const String &name)
{
    const std::string label = std::string(2 * open.size(), ' ') + category.toCString() + " " + name.toCString();
    const auto [place, isNew] = places.try_emplace(label, entries.size());
    if (isNew)
        entries.push_back({label, 0, 0});
    glFinish();
    open.emplace_back(place->second, Clock::now());
    return open.size();
}

void PassClock::endScope(std::uint64_t, const String &, const String &, bool)
{
    glFinish();
    const auto [entry, begin] = open.back();
    open.pop_back();
    entries[entry].milliseconds += std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
    ++entries[entry].calls;
}

void PassClock::print(int frames) const
{
    for (const Entry &entry : entries)
        std::printf("%9.3f ms %5d  %s\n", entry.milliseconds / frames, entry.calls / frames, entry.label.c_str());
}
