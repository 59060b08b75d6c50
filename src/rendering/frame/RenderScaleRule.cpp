#include "rendering/frame/RenderScaleRule.h"

#include <algorithm>

namespace
{
struct Step
{
    float scale;
    int sparing;
    double part; ///< of the time that its pixels take with all details

    /// Pixels of the full size that take as long.
    constexpr double cost() const { return part * static_cast<double>(scale) * static_cast<double>(scale); }
};

/// What the details take was measured in a room of lamps that software draws.
constexpr std::array STEPS{Step{0.15f, 2, 1.4}, Step{0.25f, 2, 0.67}, Step{0.25f, 1, 0.8}, Step{0.25f, 0, 1},
                           Step{0.3f, 0, 1},    Step{0.35f, 0, 1},    Step{0.4f, 0, 1},    Step{0.5f, 0, 1},
                           Step{0.6f, 0, 1},    Step{0.7f, 0, 1},     Step{0.8f, 0, 1},    Step{0.9f, 0, 1},
                           Step{1.0f, 0, 1}};

constexpr double TOO_SLOW = 1.15;       ///< times the target: above, the scale goes down
constexpr double SURELY_IN_TIME = 0.85; ///< times the target: what a larger picture may be expected to take
constexpr double LEAST_SECONDS = 0.5;   ///< that are judged together
constexpr std::size_t LEAST_FRAMES = 5;
constexpr int SETTLING_FRAMES = 2;
constexpr int LONGEST_CALM = 64;

/// How long a frame would take with another step, if all of its time went into pixels.
double expected(double seconds, const Step &step, const Step &other)
{
    return seconds * other.cost() / step.cost();
}
} // namespace

RenderScaleRule::RenderScaleRule(double targetSeconds, float startScale) : target(targetSeconds)
{
    while (step + 1 < STEPS.size() && STEPS[step + 1].scale <= startScale)
        ++step;
}

float RenderScaleRule::getScale() const
{
    return STEPS[step].scale;
}

int RenderScaleRule::getSparing() const
{
    return STEPS[step].sparing;
}

float RenderScaleRule::afterFrame(double seconds)
{
    if (framesToSettle > 0)
    {
        --framesToSettle;
        return getScale();
    }
    times[count++] = seconds;
    sum += seconds;
    if (count == MOST_FRAMES || (count >= LEAST_FRAMES && sum >= LEAST_SECONDS))
    {
        judge(middleTime());
        count = 0;
        sum = 0;
    }
    return getScale();
}

double RenderScaleRule::middleTime()
{
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(count / 2);
    std::nth_element(times.begin(), middle, times.begin() + static_cast<std::ptrdiff_t>(count));
    return *middle;
}

void RenderScaleRule::judge(double seconds)
{
    std::size_t wanted = step;
    if (seconds > target * TOO_SLOW)
    {
        wanted = step > 0 ? step - 1 : 0;
        while (wanted > 0 && expected(seconds, STEPS[step], STEPS[wanted]) > target)
            --wanted;
        return goTo(wanted);
    }
    while (wanted + 1 < STEPS.size() && expected(seconds, STEPS[step], STEPS[wanted + 1]) <= target * SURELY_IN_TIME)
        ++wanted;
    if (++calmJudgements >= calmBeforeRise)
        goTo(wanted);
}

void RenderScaleRule::goTo(std::size_t newStep)
{
    if (newStep == step)
        return;
    const bool up = newStep > step;
    if (!up && lastMoveWasUp)
        calmBeforeRise = std::min(calmBeforeRise * 2, LONGEST_CALM);
    lastMoveWasUp = up;
    step = newStep;
    calmJudgements = 0;
    framesToSettle = SETTLING_FRAMES;
}
