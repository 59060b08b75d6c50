// TestGrid: a map's visibility source that a test fills by hand.
#pragma once

#include "engine/AbstractComponent.h"
#include "engine/VisibilitySource.h"

#include <map>
#include <utility>

/// Cells of one metre; every triangle touches the cells that the test put things into.
class TestGrid : public AbstractComponent, public IVisibilitySource
{
    KV_REFLECTED(TestGrid)
public:
    TestGrid() = default;

    void rasterizeTriangle(Vec4 p1, Vec4 p2, Vec4 p3, GridCellAddressList &outList, RequestHandle request) override;
    void collectOwners(int x, int z, RequestHandle request, std::vector<Handle<Entity>> &outOwners) override;

    std::map<std::pair<int, int>, std::vector<Handle<Entity>>> cells;
    int triangles = 0;             ///< asked for so far
    RequestHandle lastRequest = 0; ///< of the last triangle: its cells have been listed
};
