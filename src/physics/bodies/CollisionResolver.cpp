#include "physics/bodies/CollisionResolver.h"

#include <algorithm>

void CollisionResolver::ResolveCollisions(float)
{
    std::stable_sort(collisions.begin(), collisions.end(),
                     [](const RigidCollision *lhs, const RigidCollision *rhs) { return *lhs < *rhs; });
    for (RigidCollision *collision : collisions)
        collision->resolve();
    collisions.clear();
}
