// TransformOffsetComponent: keeps a child at a place that turns with its parent.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/Quaternion.h"
#include "foundation/Vector.h"

/// Ties its entity to the parent's transform, under the component key "parentFollower": the offset turns with it.
class TransformOffsetComponent : public SimpleComponent
{
    KV_REFLECTED(TransformOffsetComponent)
public:
    TransformOffsetComponent() = default;

    /// Places the entity after its parent, whose own follower runs first, so that a chain settles in one frame.
    void doFrame() override;

    /// Turn in the parent's frame, applied before the parent's own: a pitch is one at every heading.
    Quaternion getOrientationOffset() const { return orientationOffset; }
    void setOrientationOffset(Quaternion val) { orientationOffset = val; }
    /// Place relative to the parent, in the parent's axes, metres.
    Vec4 getPositionOffset() const { return positionOffset; }
    void setPositionOffset(Vec4 val) { positionOffset = val; }

private:
    Quaternion orientationOffset = Quaternion(1.f, 0.f, 0.f, 0.f);
    Vec4 positionOffset = Vec4(0.f, 0.f, 0.f, 0.f); ///< parent's axes, metres
};
