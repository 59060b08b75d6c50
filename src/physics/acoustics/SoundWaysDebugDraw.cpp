// SoundWays: its ways for developers.
#include "physics/acoustics/SoundMap.h"
#include "physics/acoustics/SoundWays.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float QUIET = -60.f; ///< decibels that are drawn in red

/// Decibels at the ear of a sound of 0 at a metre.
float levelOf(const HeardWay &heard)
{
    return 20.f * std::log10(std::max(heard.gain / std::max(heard.distance, 1.f), 1e-6f));
}

/// From green, loud, over yellow to red.
Vec4 colorOf(float level)
{
    const float quiet = std::clamp(level / QUIET, 0.f, 1.f);
    return Vec4(std::min(2.f * quiet, 1.f), std::min(2.f - 2.f * quiet, 1.f), 0.1f, 1.f);
}

void label(DebugCollectorComponent &collector, const Vec4 &place, const HeardWay &heard)
{
    const float level = levelOf(heard);
    collector.addText3D(place,
                        String::format("%.0f dB, %.1f m, %.1f kHz%s", static_cast<double>(level),
                                       static_cast<double>(heard.distance), static_cast<double>(heard.lowpass) / 1000.0,
                                       heard.open ? "" : ", through walls"),
                        colorOf(level));
}

} // namespace

void SoundWays::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    if (!collector || !config.getDebugDrawEnabled() || !config.getDebugDrawSoundWays())
        return;
    std::vector<Vec4> corners;
    for (const SoundSource &source : sounds->sources)
    {
        if (!source.isUsed || source.heard.gain == 0.f)
            continue;
        sounds->traceWay(source, corners);
        for (std::size_t i = 1; i < corners.size(); ++i)
            collector->addLine3D(corners[i - 1], corners[i], colorOf(levelOf(source.heard)));
        label(*collector, source.place, source.heard);
    }
    for (const SoundMap::Question &question : sounds->questions)
    {
        if (question.framesLeft == 0)
            continue;
        collector->addLine3D(question.at, question.heard.apparent, colorOf(levelOf(question.heard)));
        label(*collector, question.from, question.heard);
    }
}
