// VolumeTraits: what sets the types of bounding volumes apart.
#pragma once

#include "physics/volumes/BoundingVolume.h"

/// What the engine asks of a type of volume, a row for each of them.
///
/// Which pairs are tested, and how, stands in the table of tests beside it.
struct VolumeTraits
{
    enum Shape
    {
        BOX,
        BALL, ///< of diameter hitBox.x
        LINE, ///< along its own z axis, hitBox.z long
    };

    Shape shape;
    Vec4 debugColor;
    bool reachesAsBall; ///< it meets others as far as half of hitBox.x from its middle, whatever the box
    bool isStatic;      ///< nothing moves it: the grid keeps it apart, and its body takes no steps
    bool isPlayer;      ///< it slides along what it touches, sets off triggers, and leaves wait for it
    bool isShadow;      ///< the player is told of it
    bool isBody;        ///< contacts and leaves push it, where it has some inverse mass
    bool isSolid;       ///< what is pushed against it is held, or pushes it on
    bool takesForces;   ///< of the places that push
    bool keepsTests;    ///< a volume that becomes of this type is tested as before

    static const VolumeTraits &of(BoundingVolume::VolumeType type) { return table[type]; }
    static const VolumeTraits &of(const BoundingVolume &volume) { return table[volume.getVolumeType()]; }

private:
    static const VolumeTraits table[BoundingVolume::NUM_VOLUMES];
};
