// CollisionResolver: contacts in the order of their urgency.
#pragma once

#include "physics/bodies/RigidCollision.h"

#include <vector>

/// Resolves contacts, the fastest closing one first. The grids go by the order of detection instead.
///
/// Borrows the contacts; who made them frees them.
class CollisionResolver
{
public:
    typedef std::vector<RigidCollision *> collisionList;

    /// Takes a contact into the next resolution.
    void AddCollision(RigidCollision *col) { collisions.push_back(col); }
    /// Resolves what was added, and forgets it.
    void ResolveCollisions(float frameTime);

private:
    collisionList collisions;
};
