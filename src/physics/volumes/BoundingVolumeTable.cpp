// BoundingVolume: which pairs of types are tested, and what a contact with the player sets off.
#include "physics/volumes/BoundingVolume.h"

#include "physics/volumes/Collision.h"
#include "physics/volumes/VolumeTraits.h"
#include "physics/bodies/PhysicsComponent.h"

#include "engine/entities/Entity.h"
#include "object/reflection/SavedArguments.h"

#include <algorithm>

/// The tests of all pairs of types, a row for each type of the testing volume; an empty row leaves the table as it is.
const BoundingVolume::DetectCollision *BoundingVolume::testsOfType(VolumeType type)
{
    constexpr DetectCollision N = &BoundingVolume::neverCollide;
    constexpr DetectCollision SS = &BoundingVolume::sphereToSphere, SB = &BoundingVolume::sphereToBox;
    constexpr DetectCollision BS = &BoundingVolume::boxToSphere, BB = &BoundingVolume::boxToBox;
    constexpr DetectCollision SL = &BoundingVolume::sphereToLineSegment, BL = &BoundingVolume::boxToLineSegment;
    constexpr DetectCollision CB = &BoundingVolume::containerToBox;
    constexpr DetectCollision PL = &BoundingVolume::playerToLight, LP = &BoundingVolume::lightToPlayer;
    static constexpr DetectCollision tests[NUM_VOLUMES][NUM_VOLUMES] = {
        // clang-format off
        // SPHERE BOX NONE WALL DOOR PLAYER SHADOW BULLET PARTICLE CONTAINER DUMMY
        {  SS,    SB, N,   SB,  SB,  SB,    N,     SL,    N,       N,        N  }, // BV_SPHERE
        {  BS,    BB, N,   BB,  BB,  BB,    N,     BL,    N,       CB,       N  }, // BV_BOX
        {  N,     N,  N,   N,   N,   N,     N,     N,     N,       N,        N  }, // BV_NONE
        {  BS,    BB, N,   N,   N,   BB,    BB,    BL,    N,       N,        N  }, // BV_WALL
        {  BS,    BB, N,   N,   N,   BB,    N,     BL,    N,       N,        N  }, // BV_DOOR
        {  BS,    BB, N,   BB,  BB,  BB,    N,     N,     N,       N,        PL }, // BV_PLAYER
        {  N,     N,  N,   BB,  N,   N,     N,     BL,    N,       N,        N  }, // BV_SHADOW
        {  N,     N,  N,   N,   N,   LP,    N,     N,     N,       N,        N  }, // BV_BULLET
        {},                                                                        // BV_PARTICLE
        {  N,     N,  N,   N,   N,   LP,    N,     N,     N,       N,        N  }, // BV_CONTAINER
        {  N,     N,  N,   N,   N,   LP,    N,     N,     N,       N,        N  }, // BV_PARTITIONING_DUMMY
        // clang-format on
    };
    return tests[type];
}

void BoundingVolume::setVolumeType(VolumeType t)
{
    if (t < 0 || t >= NUM_VOLUMES)
    {
        KV_ERROR("%d is no type of a bounding volume: they end at %d", static_cast<int>(t), NUM_VOLUMES - 1);
        return;
    }
    volumeType = t;
    typeChanged = true;
    if (!VolumeTraits::of(t).keepsTests)
        collisionTable = testsOfType(t);
}

bool BoundingVolume::alreadyCollided(const Handle<BoundingVolume> &other) const
{
    return std::find(collisions.begin(), collisions.end(), other) != collisions.end();
}

bool BoundingVolume::colliding(Handle<BoundingVolume> other, std::vector<Collision *> &found)
{
    if (alreadyCollided(other))
        return false;
    const auto volume = other.lookup();
    if (!volume)
        return false;
    const std::size_t before = found.size();
    if (!(this->*collisionTable[volume->volumeType])(other, found))
        return false;
    collisions.push_back(other);
    volume->collisions.push_back(getHandle(this));
    if (!VolumeTraits::of(volumeType).isPlayer && !VolumeTraits::of(*volume).isPlayer)
        return true;
    if (trigger)
        setOffTrigger(*volume, found, before);
    if (volume->trigger)
        volume->setOffTrigger(*this, found, before);
    return true;
}

/// Calls this trigger's function for a contact; the contact itself has no physical effect.
/// @param before  count of contacts before this pair was tested
void BoundingVolume::setOffTrigger(BoundingVolume &other, std::vector<Collision *> &found, std::size_t before)
{
    const PhysicsComponent *const own = findPhysics(), *const others = other.findPhysics();
    if (!own || !others)
        return;
    if (found.size() > before)
        dropLast(found);
    callTriggerFunc(SavedArguments::of(handle_cast<Entity>(getParent()), getHandle(others)), 2);
}

void BoundingVolume::dropLast(std::vector<Collision *> &found)
{
    Collision::release(found.back());
    found.pop_back();
}
