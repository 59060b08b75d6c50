// RenderScaleRule: the render scale at which frames come in time.
#pragma once

#include <array>
#include <cstddef>

/// Finds a scale of the world's picture from the times that frames took.
///
/// The scale moves in steps, from a quarter to the full size; where a quarter is still too slow, details are left out
/// in two more steps, and a last one takes the smallest size of all. A few frames are judged together by the middle one of
/// their times, so that a hitch counts for nothing. Too slow, it goes down by as many steps as the pixels suggest; up
/// it goes only where the larger picture would still be in time if all of the time went into pixels. Between the two
/// lies room in which nothing moves, and each rise that had to be taken back makes the next one wait twice as long.
/// Counts seconds; allocates nothing.
class RenderScaleRule
{
public:
    /// @param targetSeconds  what a frame may take
    /// @param startScale     where to begin; the nearest step below is taken
    RenderScaleRule(double targetSeconds, float startScale);

    float getScale() const;
    /// What is left out, as `GraphicsSystem2::setSparing` counts.
    int getSparing() const;
    /// Takes the seconds that a frame took, without waits; returns the scale for the next one.
    float afterFrame(double seconds);

private:
    static constexpr std::size_t MOST_FRAMES = 64;

    double middleTime();
    void judge(double seconds);
    void goTo(std::size_t newStep);

    double target;
    std::size_t step = 0;
    std::array<double, MOST_FRAMES> times{}; ///< of the frames to be judged, seconds
    std::size_t count = 0;
    double sum = 0;         ///< of the times, seconds
    int framesToSettle = 0; ///< that are not judged, since the targets were just made anew
    int calmJudgements = 0; ///< since the last step
    int calmBeforeRise = 1; ///< judgements
    bool lastMoveWasUp = false;
};
