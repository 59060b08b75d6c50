#include "support/TestLevel.h"

#include "platform/window/WindowSystem2.h"
#include "port/d3d9/D3D9Extras.h"
#include "port/win32/SdlPlatform.h"
#include "rendering/device/GraphicsSystem2.h"
#include "rendering/frame/FrameLimiter.h"
#include "rendering/frame/FramePacingSystem.h"
#include "rendering/frame/RenderScaleRule.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace
{
constexpr double TARGET = 1.0 / 30;

/// A machine that takes some time for a frame and more for each of its pixels, seconds at the full size.
struct Machine
{
    double seconds(float scale) const { return fixed + pixels * static_cast<double>(scale * scale); }
    /// Draws frames, and returns how often the scale moved.
    int draw(RenderScaleRule &rule, int frames) const
    {
        int moves = 0;
        for (int frame = 0; frame < frames; ++frame)
        {
            const float before = rule.getScale();
            moves += rule.afterFrame(seconds(before)) != before;
        }
        return moves;
    }

    double fixed;
    double pixels;
};

/// The host's platform off-screen, where waiting costs no time and is written down.
struct RestlessPlatform : port::SdlPlatform
{
    RestlessPlatform() { setenv("KAVEL_HEADLESS", "1", 1); }
    void Sleep(DWORD milliseconds) override { slept += milliseconds; }
    DWORD MsgWaitForMultipleObjects(DWORD, const HANDLE *, BOOL, DWORD, DWORD) override
    {
        ++rests;
        return WAIT_TIMEOUT;
    }

    DWORD slept = 0; ///< milliseconds
    int rests = 0;
};
} // namespace

TEST(RenderScaleRule, RisesToWhatTheMachineDrawsInTimeAndStaysThere)
{
    RenderScaleRule rule(TARGET, 0.45f);
    EXPECT_FLOAT_EQ(rule.getScale(), 0.4f) << "the step below";
    const Machine modest{0.006, 0.04};
    modest.draw(rule, 200);
    EXPECT_FLOAT_EQ(rule.getScale(), 0.7f) << "0.8 would take the time that is there and leave none";
    EXPECT_EQ(modest.draw(rule, 5000), 0);

    const Machine fast{0.001, 0.005};
    fast.draw(rule, 200);
    EXPECT_FLOAT_EQ(rule.getScale(), 1.0f);
}

TEST(RenderScaleRule, FallsAtOnceAsFarAsThePixelsSuggestAndNoLowerThanTheLastStep)
{
    RenderScaleRule rule(TARGET, 1.0f);
    const Machine slow{0, 0.2};
    EXPECT_EQ(slow.draw(rule, 8), 1);
    EXPECT_FLOAT_EQ(rule.getScale(), 0.4f);
    const Machine hopeless{3, 1};
    EXPECT_EQ(rule.getSparing(), 0);
    hopeless.draw(rule, 200);
    EXPECT_FLOAT_EQ(rule.getScale(), 0.15f);
    EXPECT_EQ(rule.getSparing(), 2) << "and leaves out details";
    const Machine fast{0.001, 0.005};
    fast.draw(rule, 400);
    EXPECT_EQ(rule.getSparing(), 0);
    EXPECT_GE(rule.getScale(), 0.9f);
}

TEST(RenderScaleRule, HitchCountsForNothing)
{
    RenderScaleRule rule(TARGET, 1.0f);
    for (int frame = 0; frame < 200; ++frame)
        EXPECT_FLOAT_EQ(rule.afterFrame(frame % 20 == 3 ? 1.5 : 0.03), 1.0f) << "frame " << frame;
}

TEST(RenderScaleRule, RiseThatFailsAgainAndAgainIsTriedEverMoreSeldom)
{
    // Whatever is larger than half takes far more than its pixels would explain.
    const auto treacherous = [](float scale) { return scale > 0.5f ? 0.06 : 0.01; };
    RenderScaleRule rule(TARGET, 0.5f);
    int moves[2] = {};
    for (int &half : moves)
        for (int frame = 0; frame < 10000; ++frame)
        {
            const float before = rule.getScale();
            half += rule.afterFrame(treacherous(before)) != before;
        }
    EXPECT_GT(moves[0], 0);
    EXPECT_LE(moves[1], 8) << "at most one rise in sixty-four judgements";
    EXPECT_LT(moves[1], moves[0]);
}

TEST(FrameLimiter, KeepsTheRateOnAverageAndBeginsAnewBehindALateFrame)
{
    FrameLimiter limiter;
    EXPECT_EQ(limiter.waitAfter(7), 0) << "no limit";
    limiter.setRate(100);
    double now = 1;
    limiter.waitAfter(now);
    for (int frame = 0; frame < 100; ++frame)
    {
        now += 0.004;                          // work
        now += limiter.waitAfter(now) + 0.001; // the wait ends late
    }
    EXPECT_NEAR(now, 2, 0.002);

    now += 0.5;
    EXPECT_EQ(limiter.waitAfter(now), 0);
    EXPECT_NEAR(limiter.waitAfter(now + 0.004), 0.006, 1e-9) << "what was lost is not made up";
}

TEST(FramePacing, RestsWhileTheWindowIsPutAwayAndWaitsForTheLimit)
{
    RestlessPlatform platform;
    const port::ScopedWin32Platform scope(platform);
    TestLevel level;
    FramePacingSystem &pacing = getSystemDeref<FramePacingSystem>();
    level.frame();
    EXPECT_EQ(platform.slept, 0u);

    pacing.setFrameLimit(0.01f);
    level.frame();
    level.frame();
    EXPECT_GT(platform.slept, 50000u) << "a frame in a hundred seconds";

    const HWND window = getSystemDeref<WindowSystem2>().getWindowHandle();
    SendMessageA(window, WM_SIZE, SIZE_MINIMIZED, 0);
    level.frame();
    EXPECT_EQ(platform.rests, 1);
    SendMessageA(window, WM_SIZE, SIZE_RESTORED, 0);
    level.frame();
    EXPECT_EQ(platform.rests, 1);
}

TEST(FramePacing, AutomaticScaleBeginsLowWhereSoftwareDrawsAndIsLeftAsItStands)
{
    RestlessPlatform platform;
    const port::ScopedWin32Platform scope(platform);
    TestLevel level;
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    FramePacingSystem &pacing = getSystemDeref<FramePacingSystem>();
    EXPECT_FLOAT_EQ(graphics.getRenderScale(), 1.0f);
    pacing.setAutomaticScale(true);
    const bool software = port::drawsInSoftware(graphics.getDevice());
    EXPECT_FLOAT_EQ(graphics.getRenderScale(), software ? 0.4f : 1.0f);
    pacing.setTargetFrameRate(-1);
    EXPECT_FLOAT_EQ(pacing.getTargetFrameRate(), 1.0f);
    pacing.setAutomaticScale(false);
    EXPECT_FLOAT_EQ(graphics.getRenderScale(), software ? 0.4f : 1.0f);
}
