// Footing: what a body stands on.
#pragma once

#include "foundation/Vector.h"
#include "object/tree/Handle.h"

class BoundingVolume;
class PartitioningGrid;
class TransformComponent;

/// Knows the ground below a body that walks, from its contacts and from segments that look below its box.
///
/// Metres, the space of the body's transform, which must be that of its map. Owned by the body, and moves nothing.
class Footing
{
public:
    /// Cosine of the steepest slope that is ground: 50 degrees.
    static constexpr float STEEPEST = 0.64f;
    /// How far below the feet there may be ground for a body that stood on some: a step down.
    static constexpr float STEP_DOWN = 0.32f;

    /// Notes a contact of the frame, by its normal away from what is touched.
    void touch(const Vec4 &normal);
    /// Begins a step with what the contacts of the last frame have told.
    void begin();
    /// Forgets all ground: the body is somewhere else.
    void leave();

    /// Whether the body stands.
    bool isOnGround() const { return onGround; }
    /// The ground's normal; straight up in the air.
    const Vec4 &getNormal() const { return normal; }
    /// How far the ground is below the box of a body that stood; negative where there is none within a step.
    ///
    /// Takes over the normal of what it finds.
    /// @cost nine segments of a metre; allocates nothing
    float findGap(PartitioningGrid &grid, BoundingVolume &volume, const TransformComponent &place);
    /// Says that there is no ground any more.
    void loseGround();

    /// A direction along the ground instead of along the plane, of the same length.
    Vec4 along(const Vec4 &direction) const;
    /// A vector without its part along the ground's normal.
    Vec4 without(const Vec4 &vector) const { return vector - normal * vector.dot(normal); }

private:
    Vec4 touched; ///< of this frame's contacts, the one that is most level; zero for none
    Vec4 normal = Vec4(0.f, 1.f, 0.f, 0.f);
    bool onGround = false;
};
