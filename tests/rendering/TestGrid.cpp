#include "TestGrid.h"

void TestGrid::rasterizeTriangle(Vec4, Vec4, Vec4, GridCellAddressList &outList, RequestHandle request)
{
    ++triangles;
    if (request == lastRequest)
        return;
    lastRequest = request;
    for (const auto &[place, owners] : cells)
        outList.push_back(Vec4(static_cast<float>(place.first), 0, static_cast<float>(place.second), 1));
}

void TestGrid::collectOwners(int x, int z, RequestHandle, std::vector<Handle<Entity>> &outOwners)
{
    const auto &owners = cells[{x, z}];
    outOwners.insert(outOwners.end(), owners.begin(), owners.end());
}
