#include "assets/building/MeshBuilder.h"

#include "assets/models/MeshMath.h"
#include "foundation/Assertions.h"

#include <utility>

namespace
{

/// Moves vertices by one matrix, with what that means for their directions.
class VertexPlacement
{
public:
    explicit VertexPlacement(const Matrix4 &placement) : placement(placement)
    {
        const Vec4 x = column(0), y = column(1), z = column(2);
        mirrors = x.dot(y.cross(z)) < 0;
        // Normals go by the inverse transposed, of which the cofactors are a multiple that needs no division.
        const float sign = mirrors ? -1.0f : 1.0f;
        normalAxes[0] = y.cross(z) * sign;
        normalAxes[1] = z.cross(x) * sign;
        normalAxes[2] = x.cross(y) * sign;
    }

    bool isMirror() const { return mirrors; }

    DefaultMeshVertex operator()(const DefaultMeshVertex &from) const
    {
        const Vec4 normal =
            normalAxes[0] * from.normal.x + normalAxes[1] * from.normal.y + normalAxes[2] * from.normal.z;
        const Vec4 unitNormal = toUnit(normal, toDirection(from.normal));
        const Vec4 tangent = toUnitAcross(unitNormal, turned(from.tangent));
        const Vec4 wantedBitangent = turned(from.bitangent);
        Vec4 bitangent = unitNormal.cross(tangent);
        if (bitangent.dot(wantedBitangent) < 0)
            bitangent.negate();
        return {toMeshVector(placement * toPosition(from.position)), toMeshVector(unitNormal), toMeshVector(tangent),
                toMeshVector(bitangent), from.texCoord0};
    }

private:
    Vec4 column(int index) const
    {
        const Vec4 axis = placement.getColumn(index);
        return Vec4(axis.x, axis.y, axis.z, 0);
    }

    Vec4 turned(const MeshVector3 &direction) const
    {
        return column(0) * direction.x + column(1) * direction.y + column(2) * direction.z;
    }

    Matrix4 placement;
    Vec4 normalAxes[3];
    bool mirrors;
};

} // namespace

void MeshBuilder::clear()
{
    vertices.clear();
    indices.clear();
}

void MeshBuilder::reserve(std::size_t moreVertices, std::size_t moreTriangles)
{
    vertices.reserve(vertices.size() + moreVertices);
    indices.reserve(indices.size() + 3 * moreTriangles);
}

MeshBuilder::Index MeshBuilder::addVertex(const DefaultMeshVertex &vertex)
{
    vertices.push_back(vertex);
    return static_cast<Index>(vertices.size() - 1);
}

MeshBuilder::Index MeshBuilder::addVertex(const Vec4 &position, const Vec4 &normal, MeshVector2 texCoord)
{
    const Vec4 tangent = anyAcross(normal);
    return addVertex({toMeshVector(position), toMeshVector(normal), toMeshVector(tangent),
                      toMeshVector(normal.cross(tangent)), texCoord});
}

void MeshBuilder::addTriangle(Index a, Index b, Index c)
{
    const std::size_t count = vertices.size();
    const bool present = a < count && b < count && c < count;
    KV_ASSERT(present, "Triangle %u %u %u of a mesh of %zu vertices.", a, b, c, count);
    if (present)
        indices.insert(indices.end(), {a, b, c});
}

void MeshBuilder::addQuad(Index a, Index b, Index c, Index d)
{
    addTriangle(a, b, c);
    addTriangle(a, c, d);
}

void MeshBuilder::addTriangle(const Vec4 &a, const Vec4 &b, const Vec4 &c)
{
    const Vec4 normal = toUnit((b - a).cross(c - a), Vec4(0, 1, 0, 0));
    const Index first = addVertex(a, normal);
    addVertex(b, normal);
    addVertex(c, normal);
    addTriangle(first, first + 1, first + 2);
}

void MeshBuilder::addQuad(const Vec4 &topLeft, const Vec4 &topRight, const Vec4 &bottomRight, const Vec4 &bottomLeft)
{
    const Vec4 normal = toUnit((bottomRight - topLeft).cross(bottomLeft - topRight), Vec4(0, 1, 0, 0));
    const Index first = addVertex(topLeft, normal, {0, 0});
    addVertex(topRight, normal, {1, 0});
    addVertex(bottomRight, normal, {1, 1});
    addVertex(bottomLeft, normal, {0, 1});
    addQuad(first, first + 1, first + 2, first + 3);
}

void MeshBuilder::merge(const MeshBuilder &other, const Matrix4 &placement)
{
    if (&other == this)
        return merge(MeshBuilder(other), placement);
    const VertexPlacement place(placement);
    const auto offset = static_cast<Index>(vertices.size());
    for (const DefaultMeshVertex &vertex : other.vertices)
        vertices.push_back(place(vertex));
    for (std::size_t corner = 0; corner + 2 < other.indices.size(); corner += 3)
    {
        const Index *triangle = &other.indices[corner];
        indices.insert(indices.end(), {offset + triangle[0], offset + triangle[place.isMirror() ? 2 : 1],
                                       offset + triangle[place.isMirror() ? 1 : 2]});
    }
}

void MeshBuilder::transform(const Matrix4 &placement)
{
    MeshBuilder placed;
    placed.merge(*this, placement);
    *this = std::move(placed);
}

void MeshBuilder::flip()
{
    for (DefaultMeshVertex &vertex : vertices)
        vertex.normal = -vertex.normal;
    flipTriangles();
}

void MeshBuilder::flipTriangles()
{
    for (std::size_t corner = 0; corner + 2 < indices.size(); corner += 3)
        std::swap(indices[corner + 1], indices[corner + 2]);
}

Mesh MeshBuilder::toMesh() const
{
    Mesh mesh;
    mesh.setData(vertices, indices);
    return mesh;
}
