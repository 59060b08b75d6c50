// ParentFollowerComponent: keeps a child at a fixed distance from its parent.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/Quaternion.h"
#include "foundation/Vector.h"

/// Ties its entity to the parent's transform, under the component key "parentFollower": the offset keeps its direction.
class ParentFollowerComponent : public SimpleComponent
{
    KV_REFLECTED(ParentFollowerComponent)
public:
    ParentFollowerComponent() = default;

    /// Places the entity after its parent, whose own follower runs first, so that a chain settles in one frame.
    void doFrame() override;

    /// Place relative to the parent, native space, metres.
    Vec4 getPositionOffset() const { return positionOffset; }
    void setPositionOffset(Vec4 val) { positionOffset = val; }
    /// Turn in the parent's frame, applied before the parent's own: a pitch is one at every heading.
    Quaternion getOrientationOffset() const { return orientationOffset; }
    void setOrientationOffset(Quaternion val) { orientationOffset = val; }

private:
    Vec4 positionOffset = Vec4(0.f, 0.f, 0.f, 0.f); ///< native space, metres
    Quaternion orientationOffset = Quaternion(1.f, 0.f, 0.f, 0.f);
};
