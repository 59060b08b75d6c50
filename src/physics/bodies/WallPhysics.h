// WallPhysics: a body that nothing moves.
#pragma once

#include "physics/bodies/RigidBody.h"

/// An immovable body, under the component key "physics".
///
/// Its volume is of the type BV_WALL, by which the physics leave it where it stands. A wall needs a body all the same:
/// contacts are made between entities that both have one.
///
///     kaVel.addComponent(wall, 'boundingVolume', 'BoundingVolume', hitBox=kaVel.Vec4(4, 3, 0.2, 0),
///                        volumeType='BV_WALL')
///     kaVel.addComponent(wall, 'physics', 'WallPhysics')
class WallPhysics : public RigidBody
{
    KV_REFLECTED(WallPhysics)
public:
    /// Makes a body of inverse mass 0: what it meets takes the whole of a contact.
    WallPhysics() { setInverseMass(0.f); }

    /// Finds the wall's transform.
    void onLoadComplete() override { setTransformComponent(); }
};
