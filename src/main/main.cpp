// The process from its first instruction to its exit code.
#include "main/CommandLine.h"

#include "engine/levels/GameLoop.h"
#include "engine/systems/SystemSystem.h"
#include "engine/time/TimeSystem.h"
#include "object/python/PythonCalls.h"
#include "object/reflection/Variant.h"
#include "platform/input/InputSystem.h"
#include "platform/sound/SoundRecording.h"
#include "port/process/Confinement.h"
#include "port/process/EndRequests.h"
#include "port/process/MessageBoxProcess.h"
#include "port/win32/Messages.h"
#include "tools/profiler/ProfilerSystem.h"
#include "tools/timeline/TimelineSystem.h"

#include "foundation/Assertions.h"
#include "foundation/ConsoleOutputProviders.h"
#include "foundation/CrashReport.h"
#include "foundation/LogFile.h"
#include "foundation/ProgramFolder.h"

#include <cstdlib>
#include <cstring>

namespace
{
/// Prepares for every way in which a run may end, before anything else can fail.
void prepareForTheEnd()
{
    // Read here, before there are scripts, which check the word.
    const char *const verbose = std::getenv("KAVEL_VERBOSE");
    OutputDebugStringConsoleOutputProvider::showDebugLines(verbose && std::strcmp(verbose, "1") == 0);
    LogFile::start(versionText());
    port::showMessageBoxes();
    port::listenForEndRequests();
    CrashReport::install();
}

/// Ends the process with the traceback of the Python exception that nobody handled.
void failWithTraceback()
{
    Assertions::prepareAssert(AM_CRITICAL_ASSERT, AC_ALWAYS, "", "main", 78, getCurrentPythonTraceback());
}

/// Runs a step in which scripts run; an exception of theirs that comes out of it ends the process.
template <class Step>
void guarded(Step &&step)
{
    if (!pythonGuarded(step))
        failWithTraceback();
}

void loadInitialLevel()
{
    Variant level;
    if (!pythonAttribute("GameConfig", "initialLevel", level))
        pythonRaisePending();
    const ErrorReturn<String> name = level.get<String>();
    KV_CRITICAL_ASSERT(name.succeeded(), "initialLevel of the script GameConfig is no text; it names the first level.");
    getSystemDeref<GameLoopSystem>().setCurrentlyActiveCoordinator(loadLevel(name.value));
}

/// Starts the clock of the first frame behind the load.
void primeClock()
{
    TimeSystem &time = getSystemDeref<TimeSystem>();
    time.checkTPS();
    time.newFrame();
}

/// Handles the window messages that wait; false, with the rest unread, once the quit message is among them.
bool drainMessages(MSG &msg)
{
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE))
    {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
        if (msg.message == WM_QUIT)
            return false;
    }
    return true;
}

/// Samples input, drains messages and runs a frame, over and over; returns the quit message's value.
int runUntilQuit()
{
    InputDevices &devices = getSystemDeref<InputSystem>().getInputDevices();
    GameLoopSystem &gameLoop = getSystemDeref<GameLoopSystem>();
    MSG msg;
    for (;;)
    {
        const bool waits = TimelineSystem::isRunWaiting();
        if (!waits)
            devices.update();
        if (!drainMessages(msg))
            return static_cast<int>(msg.wParam);
        if (waits)
            getSystemDeref<TimelineSystem>().drawWaiting();
        else
            gameLoop.doFrame();
    }
}

void endLevel()
{
    if (auto level = getSystemDeref<GameLoopSystem>().getCurrentlyActiveCoordinator().lookup())
        level->murder();
}
} // namespace

int main(int argc, char **argv)
{
    if (const auto answer = port::runAsMessageBox(argc, argv))
        return *answer;
    if (const auto exitCode = runCommandLine(argc, argv))
        return *exitCode;
    prepareForTheEnd();
    ProgramFolder::enter();
    SystemSystem::bootstrap();
    initPython();
    getSystem<ProfilerSystem>(); // before the first level, whose load is measured too
    port::endConfinementTime();
    guarded(loadInitialLevel);
    primeClock();
    int exitCode = 0;
    guarded([&] { exitCode = runUntilQuit(); });
    if (!SoundRecording::finish() && exitCode == 0)
        exitCode = 1;
    endLevel();
    SystemSystem::shutdown();
    if (exitCode != 0)
        LogFile::tell();
    return exitCode;
}
