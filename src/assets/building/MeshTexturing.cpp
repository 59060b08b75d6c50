#include "assets/building/MeshBuilder.h"

#include "assets/models/MeshMath.h"
#include "assets/building/VertexSplitter.h"

#include <cmath>

namespace
{

/// Where the texture of one triangle runs, unit lengths; zero where it has no extent.
struct TextureFrame
{
    Vec4 tangent;
    bool mirrored = false;

    bool isValid() const { return tangent.magnitudeSquared() > 0; }
};

TextureFrame frameOf(const DefaultMeshVertex &a, const DefaultMeshVertex &b, const DefaultMeshVertex &c)
{
    const Vec4 edge1 = toDirection(b.position - a.position), edge2 = toDirection(c.position - a.position);
    const MeshVector2 uv1 = b.texCoord0 - a.texCoord0, uv2 = c.texCoord0 - a.texCoord0;
    const double area = double(uv1.x) * uv2.y - double(uv2.x) * uv1.y;
    const double span = std::fabs(double(uv1.x) * uv2.y) + std::fabs(double(uv2.x) * uv1.y);
    // Rounding alone leaves this much of an area on a texture without extent. No number fails as well.
    if (!(std::fabs(area) > 1e-6 * span))
        return {};
    const float sign = area < 0 ? -1.0f : 1.0f;
    return {toUnit((edge1 * uv2.y - edge2 * uv1.y) * sign, Vec4()), area < 0};
}

/// Makes a vertex's frame from a unit normal and the way that u grows.
void setFrame(DefaultMeshVertex &vertex, const Vec4 &along, bool mirrored)
{
    const Vec4 normal = toDirection(vertex.normal);
    const Vec4 tangent = toUnitAcross(normal, along);
    vertex.tangent = toMeshVector(tangent);
    vertex.bitangent = toMeshVector(normal.cross(tangent) * (mirrored ? -1.0f : 1.0f));
}

/// The two axes of a texture that is projected along the axis that a face looks along most.
MeshVector2 project(const Vec4 &normal, const Vec4 &position)
{
    // Half way between two axes, rounding must not send one triangle of a face one way and the next the other.
    constexpr float preference = 1.0001f;
    const float x = std::fabs(normal.x) * preference, y = std::fabs(normal.y) * preference * preference,
                z = std::fabs(normal.z);
    if (y >= x && y >= z)
        return {position.x, normal.y < 0 ? position.z : -position.z};
    if (x >= z)
        return {normal.x < 0 ? -position.z : position.z, -position.y};
    return {normal.z < 0 ? position.x : -position.x, -position.y};
}

} // namespace

void MeshBuilder::generateTangents()
{
    for (DefaultMeshVertex &vertex : vertices)
    {
        vertex.normal = toMeshVector(toUnit(toDirection(vertex.normal), Vec4(0, 1, 0, 0)));
        setFrame(vertex, Vec4(), false);
    }

    struct Sums
    {
        Vec4 plain, mirrored;
    };
    std::vector<Sums> sums(vertices.size());
    std::vector<TextureFrame> frames(getTriangleCount());
    for (std::size_t i = 0; i < frames.size(); ++i)
    {
        const Index *corners = &indices[3 * i];
        frames[i] = frameOf(vertices[corners[0]], vertices[corners[1]], vertices[corners[2]]);
        for (int k = 0; k < 3; ++k)
            (frames[i].mirrored ? sums[corners[k]].mirrored : sums[corners[k]].plain) += frames[i].tangent;
    }

    VertexSplitter splitter(vertices);
    for (std::size_t corner = 0; corner < 3 * frames.size(); ++corner)
    {
        const Index original = indices[corner];
        const TextureFrame &frame = frames[corner / 3];
        // A triangle without a frame of its own takes part in whichever its vertex has.
        const bool mirrored = frame.isValid() ? frame.mirrored
                                              : sums[original].plain.magnitudeSquared() == 0 &&
                                                    sums[original].mirrored.magnitudeSquared() > 0;
        DefaultMeshVertex vertex = vertices[original];
        setFrame(vertex, mirrored ? sums[original].mirrored : sums[original].plain, mirrored);
        indices[corner] = splitter.place(original, vertex);
    }
}

void MeshBuilder::applyWorldTextureCoordinates(float scale, const Matrix4 &toWorld)
{
    const float front = toWorld.determinant() < 0 ? -1.0f : 1.0f;
    VertexSplitter splitter(vertices);
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3)
    {
        Vec4 places[3];
        for (std::size_t k = 0; k < 3; ++k)
            places[k] = toWorld * toPosition(vertices[indices[i + k]].position);
        const Vec4 face = (places[1] - places[0]).cross(places[2] - places[0]) * front;
        for (std::size_t k = 0; k < 3; ++k)
        {
            DefaultMeshVertex vertex = vertices[indices[i + k]];
            vertex.texCoord0 = project(face, places[k]) * scale;
            indices[i + k] = splitter.place(indices[i + k], vertex);
        }
    }
}
