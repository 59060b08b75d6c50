// ViewVolume: the part of the world that a pass can show, for leaving out what lies outside of it.
#pragma once

#include "foundation/Matrix4.h"
#include "foundation/Vector.h"

#include <array>

/// The frustum of a viewer, and inside it perhaps a cone; world space, metres.
///
/// Says "outside" only of what would leave no pixel behind, so that a picture is the same with and without the test.
class ViewVolume
{
public:
    /// @param worldToView  for column vectors
    /// @param projection   in the device's form: for row vectors, depth from 0 to 1
    ViewVolume(const Matrix4 &worldToView, const Matrix4 &projection);

    /// Leaves only the cone about the view axis; for a light's view, which nobody looks at beyond the cone of light.
    /// @param halfAngle  radians, below a right angle
    void narrowToCone(const Matrix4 &worldToView, float halfAngle);

    /// Whether no point of a sphere can be seen.
    bool excludes(const Vec4 &centre, float radius) const;

private:
    bool isBesideCone(const Vec4 &centre, float radius) const;

    std::array<Vec4, 6> planes; ///< normals of length 1 that point inwards, and the distance in w
    bool hasCone = false;
    Vec4 apex;
    Vec4 axis; ///< length 1
    float cosine = 1.0f;
    float sine = 0.0f;
};
