#include "physics/volumes/VolumeContact.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/bodies/PhysicsComponent.h"
#include "physics/bodies/RigidCollision.h"

#include <cmath>

bool addContact(BoundingVolume &first, BoundingVolume &second, const VolumeContact &contact,
                std::vector<Collision *> &found)
{
    const PhysicsComponent *const one = first.findPhysics(), *const two = second.findPhysics();
    if (!one || !two || !std::isfinite(contact.penetration))
        return false;
    RigidCollision *const collision = Collision::make<RigidCollision>();
    if (!collision)
        return false;
    collision->volumes[0] = getHandle(&first);
    collision->volumes[1] = getHandle(&second);
    collision->restitution = one->getRestitution() * two->getRestitution();
    collision->penetration = contact.penetration;
    collision->contactNormal = contact.normal;
    collision->contactPos = contact.position;
    collision->noteDetection();
    found.push_back(collision);
    return true;
}
