#include "tools/profiler/FrameMeter.h"

#include "engine/levels/GameLoop.h"
#include "engine/systems/SystemSystem.h"

#include "foundation/Allocators.h"
#include "foundation/Logger.h"
#include "port/win32/WholeFile.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <string>

namespace
{
constexpr std::int64_t MOST_FRAMES_EXPECTED = 200000;
}

System::DependencyList FrameMeter::systemDependencies()
{
    return {GameLoopSystem::staticType};
}

UpdaterList FrameMeter::getUpdaters()
{
    constexpr int last = 99000000;
    return {Updater(SCS("FrameMeter::endFrame"), bind(SCS("endFrame")), last, true)};
}

void FrameMeter::systemStartup()
{
    const std::int64_t expected = getSystemDeref<GameLoopSystem>().getFrameLimit();
    frames.reserve(static_cast<std::size_t>(std::clamp<std::int64_t>(expected, 0, MOST_FRAMES_EXPECTED)));
    for (auto *category = AllocationCategory::getFirst(); category; category = category->getNext())
        purposes.push_back({category, category->allocationsEver});
    before = spentSoFar();
}

FrameMeter::Spent FrameMeter::spentSoFar()
{
    Spent spent;
    spent.wall = std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
    spent.processor = static_cast<std::int64_t>(std::clock()) * 1000000 / CLOCKS_PER_SEC;
    for (auto *category = AllocationCategory::getFirst(); category; category = category->getNext())
    {
        spent.blocks += category->allocationsEver;
        spent.alive += category->objectCount;
    }
    return spent;
}

void FrameMeter::endFrame()
{
    const Spent now = spentSoFar();
    frames.push_back({now.wall - before.wall, now.processor - before.processor, now.blocks - before.blocks,
                      now.alive - before.alive});
    before = now;
}

void FrameMeter::systemShutdown()
{
    if (file.empty())
        return;
    std::string lines;
    for (const Spent &frame : frames)
        lines += std::to_string(frame.wall) + ' ' + std::to_string(frame.processor) + ' ' +
                 std::to_string(frame.blocks) + ' ' + std::to_string(static_cast<std::int64_t>(frame.alive)) + '\n';
    for (const Purpose &purpose : purposes)
        lines += std::to_string(purpose.category->allocationsEver - purpose.before) + ' ' +
                 purpose.category->getName() + '\n';
    const std::string problem = port::writeWholeFile(file.toCString(), lines);
    if (!problem.empty())
        KV_LOGF(Logger_::I_ERROR, "What the frames cost cannot be written to %s: %s", file.toCString(),
                problem.c_str());
}
