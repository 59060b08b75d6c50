#include "ai/perception/Belief.h"

#include <algorithm>

namespace
{

constexpr float LEAST_HEARD = 0.15f; ///< part of a sound's gain that the faintest one has

float later(float since, float seconds)
{
    return std::min(since + seconds, Belief::NEVER);
}

} // namespace

void Belief::perceive(const Vec4 &where, float howVague)
{
    place = where;
    vagueness = howVague;
    sincePerceived = 0.f;
}

void Belief::see(const Vec4 &where, float howVague, float clarity)
{
    perceive(where, howVague);
    sightClarity = clarity;
    sinceSeen = 0.f;
    heardName = String();
}

void Belief::hear(const Vec4 &where, float howVague, float strength, const String &what, const Temper &temper)
{
    suspicion += temper.hearingGain * (LEAST_HEARD + (1.f - LEAST_HEARD) * strength);
    suspicion = std::min(suspicion, 1.f);
    sinceHeard = 0.f;
    // Who sees a thing knows better where it is.
    if (getSees())
        return;
    perceive(where, howVague);
    heardName = what;
}

void Belief::alarm(const Vec4 &where, float howVague)
{
    suspicion = 1.f;
    perceive(where, howVague);
}

Belief::Change Belief::pass(float seconds, const Temper &temper)
{
    const float idle = idleIn(seconds, temper);
    sinceSeen = getSees() ? 0.f : later(sinceSeen, seconds);
    sinceHeard = later(sinceHeard, seconds);
    if (sincePerceived < NEVER)
        sincePerceived = getSees() ? 0.f : later(sincePerceived, seconds);
    suspicion += getSees() ? sightClarity * temper.sightGain * seconds : -temper.drainRate * idle;
    suspicion = std::clamp(suspicion, 0.f, 1.f);

    if (!getSees() && sincePerceived > temper.memoryTime && sincePerceived < NEVER)
    {
        const bool knew = knows;
        forget();
        return knew ? LOST : UNCHANGED;
    }
    if (knows || suspicion < temper.noticeLevel || !hasPlace())
        return UNCHANGED;
    knows = true;
    return NOTICED;
}

/// How much of some seconds lies behind the patience.
float Belief::idleIn(float seconds, const Temper &temper) const
{
    return std::clamp(sincePerceived + seconds - temper.patience, 0.f, seconds);
}

float Belief::vaguenessBy(const Temper &temper) const
{
    return std::min(vagueness + temper.vaguenessGrowth * std::min(sincePerceived, NEVER), temper.mostVagueness);
}
