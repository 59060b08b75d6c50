#include "tools/digest/StateDigest.h"

#include "engine/levels/GameLoop.h"
#include "engine/systems/SystemSystem.h"

#include "foundation/Logger.h"
#include "foundation/ProfilerScope.h"
#include "port/win32/HostPath.h"
#include "port/win32/WholeFile.h"

#include <cerrno>
#include <cstring>

System::DependencyList StateDigest::systemDependencies()
{
    return {GameLoopSystem::staticType};
}

UpdaterList StateDigest::getUpdaters()
{
    constexpr int behindAllOthers = 93000000;
    return {Updater(SCS("StateDigest::endFrame"), bind(SCS("endFrame")), behindAllOthers, true)};
}

void StateDigest::systemShutdown()
{
    flush();
    out.close();
}

void StateDigest::setRecordFile(const String &file)
{
    flush();
    out.close();
    out.clear();
    recordFile = file;
    if (file.empty())
        return;
    errno = 0;
    out.open(port::hostPath(file.toCString()), std::ios::trunc | std::ios::binary);
    if (!out)
        fail(file, std::strerror(errno));
}

void StateDigest::endFrame()
{
    static const String scopeName = SCS("StateDigest");
    const ProfilerScope scope(scopeName, String());
    const GameLoopSystem &gameLoop = getSystemDeref<GameLoopSystem>();
    const std::int64_t frame = gameLoop.getFrameNumber();
    if (frame != latestFrame)
        flush();
    const std::int64_t frameOfDump = dumpFrame > 0 ? dumpFrame : gameLoop.getFrameLimit();
    const bool isDumped = !dumpFile.empty() && frame == frameOfDump;
    if (!out.is_open() && !isDumped)
        return;

    walk.meet();
    StateSketch sketch;
    walk.addTo(sketch);
    latest = sketch.getBytes();
    latestFrame = frame;
    if (isDumped)
        dump();
}

void StateDigest::flush()
{
    if (latestFrame == 0 || !out.is_open())
        return;
    latestFrame = 0;
    errno = 0;
    out.write(reinterpret_cast<const char *>(latest.data()), static_cast<std::streamsize>(latest.size()));
    if (!out)
        fail(recordFile, std::strerror(errno));
}

void StateDigest::dump()
{
    std::string problem = port::writeWholeFile(dumpFile.toCString(), walk.asText());
    if (problem.empty())
        return;
    problem.pop_back(); // its full stop
    fail(dumpFile, problem.c_str());
}

void StateDigest::fail(const String &file, const char *reason)
{
    KV_LOGF(Logger_::I_ERROR, "The state of the game cannot be written to %s: %s.", file.toCString(), reason);
    out.close();
    getSystemDeref<GameLoopSystem>().quitIfUnattended();
}
