// MindPictureSystem: how much of a failing mind a player wants to see.
#pragma once

#include "engine/systems/System.h"

/// The player's share of each effect by which the picture shows a failing mind: 1 as it is meant, 0 none of it.
///
/// All are 1 by default. What is no number is logged as an error and changes nothing; the rest is cut to 0..1. Changes
/// what is shown and nothing of what happens.
class MindPictureSystem : public System
{
    KV_REFLECTED(MindPictureSystem)
public:
    MindPictureSystem() = default;

    /// Colour that drains away.
    float getDrain() const { return drain; }
    void setDrain(float val) { take("drain", drain, val); }
    /// Grain that crawls in the dark.
    float getGrain() const { return grain; }
    void setGrain(float val) { take("grain", grain, val); }
    /// Darkness that closes in from the edges, and beats with the heart.
    float getPulse() const { return pulse; }
    void setPulse(float val) { take("pulse", pulse, val); }
    /// Edges that bend and swim.
    float getDistortion() const { return distortion; }
    void setDistortion(float val) { take("distortion", distortion, val); }
    /// The picture's start when the mind gets one.
    float getFlashes() const { return flashes; }
    void setFlashes(float val) { take("flashes", flashes, val); }

protected:
    void systemStartup() override {}
    void systemShutdown() override {}
    DependencyList systemDependencies() override { return {}; }

private:
    void take(const char *property, float &share, float val);

    float drain = 1.f;
    float grain = 1.f;
    float pulse = 1.f;
    float distortion = 1.f;
    float flashes = 1.f;
};
