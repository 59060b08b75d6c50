#include "rendering/frame/FramePacingSystem.h"

#include "engine/time/TimeSystem.h"
#include "platform/window/WindowSystem2.h"
#include "rendering/device/GraphicsSystem2.h"

#include "foundation/ProfilerScope.h"
#include "port/d3d9/D3D9Extras.h"
#include "port/win32/Waiting.h"

#include <algorithm>
#include <cmath>

namespace
{
/// Where the scale begins where the processor draws: a sixth of the pixels.
constexpr float SOFTWARE_START = 0.4f;
constexpr float HARDWARE_START = 1.0f;

/// How long a window that was put away rests between two frames, unless a message comes.
constexpr DWORD REST_MILLISECONDS = 100;
} // namespace

System::DependencyList FramePacingSystem::systemDependencies()
{
    return {GraphicsSystem2::staticType, WindowSystem2::staticType};
}

UpdaterList FramePacingSystem::getUpdaters()
{
    constexpr int behindPresent = 92000000;
    return {Updater(SCS("FramePacingSystem::endFrame"), bind(SCS("endFrame")), behindPresent, true)};
}

void FramePacingSystem::setFrameLimit(float framesPerSecond)
{
    limiter.setRate(std::isfinite(framesPerSecond) ? static_cast<double>(framesPerSecond) : 0);
}

void FramePacingSystem::setAutomaticScale(bool val)
{
    if (val == getAutomaticScale())
        return;
    if (val)
        startScaling();
    else
    {
        scale.reset();
        getSystemDeref<GraphicsSystem2>().setSparing(0);
    }
}

void FramePacingSystem::setTargetFrameRate(float framesPerSecond)
{
    targetFrameRate = std::isfinite(framesPerSecond) ? std::max(framesPerSecond, 1.0f) : 30.0f;
    if (scale)
        scale.emplace(1.0 / static_cast<double>(targetFrameRate), scale->getScale());
}

void FramePacingSystem::startScaling()
{
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    const float start = port::drawsInSoftware(graphics.getDevice()) ? SOFTWARE_START : HARDWARE_START;
    scale.emplace(1.0 / static_cast<double>(targetFrameRate), start);
    graphics.setRenderScale(scale->getScale());
}

double FramePacingSystem::now() const
{
    TimeSystem &time = getSystemDeref<TimeSystem>();
    return time.toSeconds(time.now());
}

void FramePacingSystem::endFrame()
{
    const double end = now();
    if (getSystemDeref<WindowSystem2>().getMinimised())
    {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, REST_MILLISECONDS, QS_ALLINPUT);
        frameStart = 0;
        return;
    }
    if (frameStart > 0)
    {
        frameSeconds = end - frameStart;
        fitScale(frameSeconds);
    }
    if (const double wait = limiter.waitAfter(end); wait > 0)
    {
        static const String waiting = SCS("waiting for the frame limit");
        const ProfilerScope scope(waiting, String());
        Sleep(static_cast<DWORD>(std::ceil(wait * 1000)));
    }
    frameStart = now();
}

void FramePacingSystem::fitScale(double seconds)
{
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    if (!scale || !graphics.isDrawing())
        return;
    graphics.setRenderScale(scale->afterFrame(seconds));
    graphics.setSparing(scale->getSparing());
}
