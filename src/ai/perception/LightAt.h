// LightAt: how much light there is at a place of a map.
#pragma once

#include "object/tree/Handle.h"

#include "foundation/Vector.h"

class MapRootEntity;

/// Luminance of the light that comes to a place of a map: what a white, matt surface there would return if it faced
/// each of the lights.
///
/// Linear, as the lights' diffuse colours are: a candle at arm's length gives about 0.1, a work lamp overhead 0.5. Sums
/// the level's lights that are switched on, as bright as they are at this moment, by distance and cone as they are
/// drawn; what stops looks keeps off those that draw shadows, and the scene's ambient light comes to every place. What
/// holds the place in itself, as the body of who stands there, casts no shadow on it. The place is given as the
/// transforms in the map are, and as these are drawn, metres: wherever the map's own transform lies. One that is no
/// number, or in no map, is dark.
/// @cost a look at each light of the level, and a segment through the map's grid for each that draws shadows and reaches
///       the place, at most 8; allocates nothing
float lightAt(const Handle<MapRootEntity> &map, Vec4 place);

/// Luminance of the light that a white, matt surface at a place of a map returns, turned as its normal says.
///
/// As `lightAt` besides: what comes at a slant counts for less, and what comes from behind for nothing.
/// @param normal  of the surface, length 1
float lightOn(const Handle<MapRootEntity> &map, Vec4 place, Vec4 normal);
