#include "assets/building/MeshBuilder.h"

#include "assets/models/MeshMath.h"
#include "assets/building/PlaceGrid.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace
{

bool isNear(float a, float b, float tolerance)
{
    return std::fabs(a - b) <= tolerance;
}

bool isNear(const MeshVector3 &a, const MeshVector3 &b, float tolerance)
{
    return isNear(a.x, b.x, tolerance) && isNear(a.y, b.y, tolerance) && isNear(a.z, b.z, tolerance);
}

bool isNear(const DefaultMeshVertex &a, const DefaultMeshVertex &b, float tolerance)
{
    return isNear(a.position, b.position, tolerance) && isNear(a.normal, b.normal, tolerance) &&
           isNear(a.tangent, b.tangent, tolerance) && isNear(a.bitangent, b.bitangent, tolerance) &&
           isNear(a.texCoord0.x, b.texCoord0.x, tolerance) && isNear(a.texCoord0.y, b.texCoord0.y, tolerance);
}

} // namespace

void MeshBuilder::weld(float tolerance)
{
    PlaceGrid grid(tolerance);
    const VertexVec old = std::move(vertices);
    vertices.clear();
    std::vector<Index> kept(old.size(), PlaceGrid::none);
    IndexVec joined;
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3)
    {
        Index corners[3];
        for (int corner = 0; corner < 3; ++corner)
        {
            const Index original = indices[i + static_cast<std::size_t>(corner)];
            const DefaultMeshVertex &vertex = old[original];
            Index &now = kept[original];
            if (now == PlaceGrid::none)
                now =
                    grid.find(vertex.position, [&](Index other) { return isNear(vertices[other], vertex, tolerance); });
            if (now == PlaceGrid::none)
            {
                now = grid.put(vertex.position);
                vertices.push_back(vertex);
            }
            corners[corner] = now;
        }
        if (corners[0] != corners[1] && corners[1] != corners[2] && corners[2] != corners[0])
            joined.insert(joined.end(), corners, corners + 3);
    }
    indices = std::move(joined);
}

void MeshBuilder::dropFlatTriangles(float leastArea)
{
    std::size_t kept = 0;
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3)
    {
        const Vec4 face = faceVector(vertices[indices[i]].position, vertices[indices[i + 1]].position,
                                     vertices[indices[i + 2]].position);
        if (face.magnitude() < 2 * leastArea)
            continue;
        std::copy_n(indices.begin() + static_cast<std::ptrdiff_t>(i), 3,
                    indices.begin() + static_cast<std::ptrdiff_t>(kept));
        kept += 3;
    }
    indices.resize(kept);
}
