// FramePacingSystem: when the next frame begins, and how large the world is drawn so that it comes in time.
#pragma once

#include "engine/systems/System.h"
#include "rendering/frame/FrameLimiter.h"
#include "rendering/frame/RenderScaleRule.h"

#include "foundation/TimeTypes.h"

#include <optional>

/// Paces the frames of a game that somebody watches.
///
/// Holds frames to a limit, fits the render scale of GraphicsSystem2 to the time that frames take, and lets the
/// processor rest while the window is put away. Starts only where somebody asks for it: a run that has to be
/// repeatable never does.
class FramePacingSystem : public System
{
    KV_REFLECTED(FramePacingSystem)
public:
    FramePacingSystem() = default;

    float getFrameLimit() const { return static_cast<float>(limiter.getRate()); }
    /// Most frames a second; 0, the default, for as many as there can be.
    void setFrameLimit(float framesPerSecond);

    bool getAutomaticScale() const { return scale.has_value(); }
    /// Whether the render scale follows the time that frames take, by default not.
    ///
    /// It begins at the full size, and lower where software draws. Where the smallest one is still too slow, details are
    /// left out, see GraphicsSystem2::setSparing. Taken back, the scale stays as it is and details come back.
    void setAutomaticScale(bool val);

    float getTargetFrameRate() const { return targetFrameRate; }
    /// Frames a second that the automatic scale aims at, 30 by default and no less than 1.
    void setTargetFrameRate(float framesPerSecond);

    /// How long the last frame took without its wait for the limit, seconds; 0 before the first.
    double getFrameSeconds() const { return frameSeconds; }

    /// Ends a frame: judges its time, then waits for the next one to be due. Frame step, the last of all.
    void endFrame();

protected:
    void systemStartup() override {}
    void systemShutdown() override {}
    DependencyList systemDependencies() override;
    UpdaterList getUpdaters() override;

private:
    double now() const;
    void startScaling();
    void fitScale(double seconds);

    FrameLimiter limiter;
    std::optional<RenderScaleRule> scale; ///< while the scale is automatic
    float targetFrameRate = 30.0f;        ///< frames a second
    double frameSeconds = 0;              ///< of the last frame
    double frameStart = 0;                ///< seconds of the time source; 0: the frame is not to be judged
};
