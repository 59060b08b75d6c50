// VolumeContact: what a test of two volumes tells of a contact.
#pragma once

#include "foundation/Vector.h"

#include <vector>

class BoundingVolume;
class Collision;

/// Where two volumes touch, and how deep.
struct VolumeContact
{
    Vec4 position;     ///< native space, metres
    Vec4 normal;       ///< from the second volume to the first
    float penetration; ///< metres
};

/// Appends a contact of two volumes for the bodies beside them; false if a body is missing, or the depth is none that a
/// body could be moved by.
bool addContact(BoundingVolume &first, BoundingVolume &second, const VolumeContact &contact,
                std::vector<Collision *> &found);
