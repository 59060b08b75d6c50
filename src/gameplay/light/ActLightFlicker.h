// ActLightFlicker: a light goes out and on by chance.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/TimeTypes.h"

/// Switches the light under "graphics2" beside it by chance, under the component key "behaviors".
///
/// A state lasts for its least time, then ends with its chance a second, and at its greatest time at the latest. What
/// the chance is does not depend on the length of frames.
class ActLightFlicker : public SimpleComponent
{
    KV_REFLECTED(ActLightFlicker)
public:
    ActLightFlicker() = default;

    /// Begins with the light as it is.
    void onLoadComplete() override;
    void doFrame() override;

    /// Chance that a dark light comes on within a second, 0..1.
    float getProbabilityOn() const { return probabilityOn; }
    void setProbabilityOn(float val);
    /// Chance that a burning light goes out within a second, 0..1.
    float getProbabilityOff() const { return probabilityOff; }
    void setProbabilityOff(float val);
    /// Least time that the light burns, seconds.
    double getMinOnTime() const { return minOnTime; }
    void setMinOnTime(double val);
    /// Greatest time that the light burns, seconds.
    double getMaxOnTime() const { return maxOnTime; }
    void setMaxOnTime(double val);
    /// Least time that the light is dark, seconds.
    double getMinOffTime() const { return minOffTime; }
    void setMinOffTime(double val);
    /// Greatest time that the light is dark, seconds.
    double getMaxOffTime() const { return maxOffTime; }
    void setMaxOffTime(double val);

private:
    bool stateEnds(Seconds frameTime) const;

    float probabilityOn = 0.9f;
    float probabilityOff = 0.4f;
    double minOnTime = 0.1;        ///< seconds
    double maxOnTime = 6.0;        ///< seconds
    double minOffTime = 0.03;      ///< seconds
    double maxOffTime = 0.4;       ///< seconds
    double currentStateTime = 0.0; ///< seconds
    bool lightOn = false;
};
