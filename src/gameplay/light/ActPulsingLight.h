// ActPulsingLight: a light swells and fades for ever.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/Vector.h"

/// Swells the light under "graphics2" beside it from dark to a colour and lets it fade again, under the key "behaviors".
///
/// Only while the light is visible.
class ActPulsingLight : public SimpleComponent
{
    KV_REFLECTED(ActPulsingLight)
public:
    ActPulsingLight() = default;

    void doFrame() override;

    /// Time from dark to full, and from full to dark, seconds.
    double getPulseTime() const { return pulseTime; }
    void setPulseTime(double val);
    /// Diffuse colour of the full light.
    Vec4 getLightColor() const { return lightColor; }
    void setLightColor(Vec4 val);

private:
    double pulseTime = 1.0;        ///< seconds
    double currentStateTime = 0.0; ///< seconds since the last turn
    bool increaseIntensity = true;
    Vec4 lightColor = Vec4(1.f, 1.f, 1.f, 0.f);
};
