// VisibilitySource: what culling asks of a map's spatial index.
#pragma once

#include "engine/RequestHandle.h"

#include "foundation/Vector.h"
#include "object/Handle.h"

#include <vector>

class Entity;

/// A map's index of where things stand, seen from above; the map's partitioning grid is one.
///
/// The scene graph finds it below the map's root under ".MapData_partitioningGrid/partitioning" and draws nothing of a
/// map without one.
class IVisibilitySource
{
public:
    /// Cells as (x, 0, z, 1), whole numbers.
    typedef std::vector<Vec4> GridCellAddressList;

    virtual ~IVisibilitySource() = default;

    /// Appends the cells that a triangle on the x, z plane touches, each once for a request.
    virtual void rasterizeTriangle(Vec4 p1, Vec4 p2, Vec4 p3, GridCellAddressList &outList, RequestHandle request) = 0;

    /// Appends the entities whose volumes stand in a cell, each volume once for a request.
    ///
    /// A volume's owner is its parent, or its parent's parent for a partitioning dummy. Dead volumes and cells outside
    /// the grid add nothing.
    virtual void collectOwners(int x, int z, RequestHandle request, std::vector<Handle<Entity>> &outOwners) = 0;
};
