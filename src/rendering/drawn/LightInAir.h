// LightInAir: what a light sends through a point of the air, for what is lit without a surface.
#pragma once

#include "foundation/Vector.h"

class LightComponent;
class TransformComponent;

/// A light as it stands now, ready to be asked about many points.
///
/// World space, metres; the laws of distance and cone are those of "lights.fx". What stands in the light's way does not
/// count: shadows are known to the device alone.
class LightInAir
{
public:
    LightInAir(const LightComponent &light, TransformComponent &transform);

    /// Whether any of the light may pass within a sphere.
    bool reaches(const Vec4 &centre, float radius) const;
    /// Light that passes a point, linear colour, scattered towards an eye: more if the eye looks into the light.
    Vec4 scatteredAt(const Vec4 &point, const Vec4 &eye) const;

private:
    float coneAt(const Vec4 &fromLight) const;

    Vec4 position;
    Vec4 direction; ///< of a spot, normalised
    Vec4 color;
    float falloffBegin, falloffEnd; ///< metres
    float innerCos, outerCos;       ///< of a spot's half angles
    float coneShape;                ///< of a spot's way from the inner to the outer angle: above 1 a narrower core
    bool isSpot;
};
