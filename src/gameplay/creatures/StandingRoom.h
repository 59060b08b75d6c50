// StandingRoom: where something can be put down without being in anybody's way.
#pragma once

#include "object/tree/Handle.h"

#include "foundation/Vector.h"

class Entity;
class MapRootEntity;

/// Whether an entity could stand at a place of its map as a body of some radius, so that who walks still gets everywhere.
///
/// It must have room there itself, on ground that one can walk on. Around it people must be able to pass: of the
/// directions in which there is room for one beside it those that are free must lie side by side, so that what would
/// stand in a corridor or before a doorway, with free ground ahead and behind, is told that it cannot. Doors count as
/// open, and the player as somebody who moves on. Metres, space of the map; `place` is about as high as its knees. A map
/// without a path grid has room nowhere.
/// @cost some fifty segments through the map's grid; allocates nothing
bool hasStandingRoom(const Handle<Entity> &entity, Vec4 place, float radius);
