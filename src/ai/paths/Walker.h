// Walker: who looks for a way: how wide he is, and which doors he can open.
#pragma once

#include "object/tree/Handle.h"

class PathFollower;
class PhysicsComponent;

/// What decides which ways somebody can go.
///
/// A creature without a "pathFollower" opens no doors, one without a volume is as slim as can be. Borrowed for the call
/// that asks.
struct Walker
{
    float radius = 0.f;                     ///< of the body, metres
    const PathFollower *follower = nullptr; ///< who knows which doors he opens; null for none

    Walker() = default;
    explicit Walker(float radius) : radius(radius) {}
    /// How somebody walks, by the components of the entity.
    static Walker of(const Handle<Object> &entity);

    /// Whether he passes through the closed leaf of a door: he opens doors, and has the key of a locked one.
    bool canOpen(PhysicsComponent &leaf) const;
};
