#include "assets/building/MeshBuilder.h"

#include "assets/models/MeshMath.h"
#include "assets/building/PlaceGrid.h"
#include "assets/building/VertexSplitter.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float samePlace = 1e-5f; ///< metres; corners nearer than this are smoothed together

/// What one corner of a triangle adds to the normals at its place.
struct Corner
{
    Vec4 face;   ///< the triangle's unit normal; zero when it has no area
    float angle; ///< of the triangle at this corner, radians
};

float angleAt(const MeshVector3 &corner, const MeshVector3 &before, const MeshVector3 &after)
{
    const Vec4 to = toUnit(toDirection(before - corner), Vec4()), from = toUnit(toDirection(after - corner), Vec4());
    return std::acos(std::clamp(to.dot(from), -1.0f, 1.0f));
}

std::vector<Corner> gatherCorners(const MeshBuilder &mesh)
{
    const MeshBuilder::IndexVec &indices = mesh.getIndices();
    std::vector<Corner> corners(indices.size());
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3)
    {
        MeshVector3 at[3];
        for (std::size_t k = 0; k < 3; ++k)
            at[k] = mesh.getVertices()[indices[i + k]].position;
        const Vec4 face = toUnit(faceVector(at[0], at[1], at[2]), Vec4());
        for (std::size_t k = 0; k < 3; ++k)
            corners[i + k] = {face, angleAt(at[k], at[(k + 1) % 3], at[(k + 2) % 3])};
    }
    return corners;
}

/// The corners of a mesh sorted by their place: those of place p are `sorted[start[p]]` up to `sorted[start[p + 1]]`.
struct CornersByPlace
{
    std::vector<MeshBuilder::Index> placeOf; ///< by vertex
    std::vector<std::size_t> start, sorted;

    explicit CornersByPlace(const MeshBuilder &mesh)
    {
        const MeshBuilder::IndexVec &indices = mesh.getIndices();
        start.assign(numberPlaces(mesh) + 1, 0);
        for (const MeshBuilder::Index vertex : indices)
            ++start[placeOf[vertex] + 1];
        for (std::size_t place = 1; place < start.size(); ++place)
            start[place] += start[place - 1];
        sorted.resize(indices.size());
        std::vector<std::size_t> end(start.begin(), start.end() - 1);
        for (std::size_t corner = 0; corner < indices.size(); ++corner)
            sorted[end[placeOf[indices[corner]]]++] = corner;
    }

private:
    std::size_t numberPlaces(const MeshBuilder &mesh)
    {
        PlaceGrid grid(samePlace);
        std::vector<MeshVector3> places;
        for (const DefaultMeshVertex &vertex : mesh.getVertices())
        {
            const MeshVector3 &here = vertex.position;
            MeshBuilder::Index place = grid.find(here,
                                                 [&](MeshBuilder::Index other)
                                                 {
                                                     const MeshVector3 way = places[other] - here;
                                                     return std::fabs(way.x) <= samePlace &&
                                                            std::fabs(way.y) <= samePlace &&
                                                            std::fabs(way.z) <= samePlace;
                                                 });
            if (place == PlaceGrid::none)
            {
                place = grid.put(here);
                places.push_back(here);
            }
            placeOf.push_back(place);
        }
        return places.size();
    }
};

} // namespace

void MeshBuilder::flattenNormals()
{
    VertexSplitter splitter(vertices);
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3)
    {
        const Vec4 face = faceVector(vertices[indices[i]].position, vertices[indices[i + 1]].position,
                                     vertices[indices[i + 2]].position);
        for (std::size_t k = 0; k < 3; ++k)
        {
            DefaultMeshVertex vertex = vertices[indices[i + k]];
            vertex.normal = toMeshVector(toUnit(face, Vec4(0, 1, 0, 0)));
            indices[i + k] = splitter.place(indices[i + k], vertex);
        }
    }
}

void MeshBuilder::smoothNormals(float creaseAngle)
{
    const std::vector<Corner> corners = gatherCorners(*this);
    const CornersByPlace places(*this);
    const float leastCosine = creaseAngle >= PI ? -2.0f : std::cos(std::max(creaseAngle, 0.0f)) - 1e-5f;
    VertexSplitter splitter(vertices);
    for (std::size_t corner = 0; corner < indices.size(); ++corner)
    {
        const Vec4 &face = corners[corner].face;
        const Index place = places.placeOf[indices[corner]];
        const bool hasFace = face.magnitudeSquared() > 0;
        Vec4 sum;
        for (std::size_t i = places.start[place]; i < places.start[place + 1]; ++i)
        {
            const Corner &other = corners[places.sorted[i]];
            if (!hasFace || other.face.dot(face) >= leastCosine)
                sum += other.face * other.angle;
        }
        DefaultMeshVertex vertex = vertices[indices[corner]];
        vertex.normal = toMeshVector(toUnit(sum, hasFace ? face : Vec4(0, 1, 0, 0)));
        indices[corner] = splitter.place(indices[corner], vertex);
    }
}
