// LightPulse: lets a light swell and fade.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/Vector.h"

/// Dims a light to nothing and brings it back, beat by beat.
///
/// Hangs below the light's entity as ".lightPulse/dummy", made when a light is first asked to pulse. Works on the
/// properties `diffuseColor` and `specularColor` of the component "graphics2" and leaves them at their full strength,
/// which is what they were when the pulsing began. Runs by the level's timer "master".
class LightPulse : public SimpleComponent
{
    KV_REFLECTED(LightPulse)
public:
    LightPulse() = default;

    /// The pulse of a light's entity, made where there is none yet.
    /// @return null where the entity has no light, or stands in no level
    static LightPulse *of(const Handle<Object> &hEntity);

    /// Has the light pulse for one beat, or for the next one too while a beat is under way.
    /// @param beatsPerSecond  0 or less ends the pulsing at once
    void beat(float beatsPerSecond);
    void doFrame() override;

private:
    Handle<AbstractComponent> findLight();
    void begin();
    void shine(float strength);

    bool beating = false;
    bool again = false;     ///< asked for during the beat under way
    double rate = 0.0;      ///< beats a second
    double phase = 0.0;     ///< of the beat, 0..1
    Vec4 fullDiffuseColor;  ///< when the pulsing began
    Vec4 fullSpecularColor; ///< when the pulsing began
};
