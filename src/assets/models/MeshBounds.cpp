#include "assets/models/MeshBounds.h"

#include "assets/models/MeshMath.h"

#include <algorithm>

MeshBounds boundsOf(const Mesh::VertexBufferType &vertices)
{
    if (vertices.empty())
        return {};
    MeshVector3 low = vertices.front().position, high = low;
    for (const DefaultMeshVertex &vertex : vertices)
    {
        const MeshVector3 &p = vertex.position;
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
    }
    return {toPosition(low), toPosition(high)};
}
