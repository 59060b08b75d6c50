#include "assets/building/MeshBuilder.h"

#include "foundation/Assertions.h"

#include <algorithm>
#include <cmath>

namespace
{

int atLeast(int minimum, int given)
{
    KV_ASSERT(given >= minimum, "A shape of %i parts needs at least %i.", given, minimum);
    return std::max(minimum, given);
}

/// Point `part` of `parts` on the unit circle in the x/z plane, clockwise seen from above; the last is the first.
Vec4 circlePoint(int part, int parts)
{
    const float angle = 2 * PI * static_cast<float>(part % parts) / static_cast<float>(parts);
    return Vec4(std::cos(angle), 0, -std::sin(angle), 0);
}

/// A disc across the y axis; `side` is 1 for one that faces up, -1 for one that faces down.
void addDisc(MeshBuilder &mesh, float radius, float height, int segments, float side)
{
    const Vec4 normal(0, side, 0, 0);
    const MeshBuilder::Index middle = mesh.addVertex(Vec4(0, height, 0, 1), normal, {0.5f, 0.5f});
    for (int i = 0; i < segments; ++i)
    {
        const Vec4 edge = circlePoint(i, segments);
        mesh.addVertex(edge * radius + Vec4(0, height, 0, 1), normal,
                       {0.5f + 0.5f * edge.x, 0.5f - 0.5f * side * edge.z});
    }
    for (int i = 0; i < segments; ++i)
    {
        const auto here = middle + 1 + static_cast<MeshBuilder::Index>(i);
        const auto next = middle + 1 + static_cast<MeshBuilder::Index>((i + 1) % segments);
        if (side > 0)
            mesh.addTriangle(middle, here, next);
        else
            mesh.addTriangle(middle, next, here);
    }
}

/// Joins two rows of vertices, the upper one first, left to right as seen from the front.
void addBand(MeshBuilder &mesh, MeshBuilder::Index upper, MeshBuilder::Index lower, int cells)
{
    for (MeshBuilder::Index i = 0; i < static_cast<MeshBuilder::Index>(cells); ++i)
        mesh.addQuad(upper + i, upper + i + 1, lower + i + 1, lower + i);
}

} // namespace

void MeshBuilder::addBox(const Vec4 &halfSizes, const Matrix4 &placement)
{
    struct Face
    {
        Vec4 normal, right, up; ///< as seen from its front
    };
    static const Face faces[] = {{{0, 0, -1}, {1, 0, 0}, {0, 1, 0}}, {{0, 0, 1}, {-1, 0, 0}, {0, 1, 0}},
                                 {{1, 0, 0}, {0, 0, 1}, {0, 1, 0}},  {{-1, 0, 0}, {0, 0, -1}, {0, 1, 0}},
                                 {{0, 1, 0}, {1, 0, 0}, {0, 0, 1}},  {{0, -1, 0}, {1, 0, 0}, {0, 0, -1}}};
    Vec4 half = halfSizes;
    half.absoluteValue();
    half.w = 0;
    MeshBuilder box;
    for (const Face &face : faces)
    {
        const Vec4 middle = face.normal * half + Vec4(0, 0, 0, 1), right = face.right * half, up = face.up * half;
        box.addQuad(middle - right + up, middle + right + up, middle + right - up, middle - right - up);
    }
    merge(box, placement);
}

void MeshBuilder::addPlane(float width, float depth, int columns, int rows, const Matrix4 &placement)
{
    columns = atLeast(1, columns);
    rows = atLeast(1, rows);
    width = std::fabs(width);
    depth = std::fabs(depth);
    MeshBuilder plane;
    for (int row = 0; row <= rows; ++row)
        for (int column = 0; column <= columns; ++column)
        {
            const float u = static_cast<float>(column) / static_cast<float>(columns);
            const float v = static_cast<float>(row) / static_cast<float>(rows);
            plane.addVertex(Vec4((u - 0.5f) * width, 0, (0.5f - v) * depth, 1), Vec4(0, 1, 0, 0), {u, v});
        }
    for (int row = 0; row < rows; ++row)
    {
        const auto upper = static_cast<Index>(row * (columns + 1));
        addBand(plane, upper, upper + static_cast<Index>(columns) + 1, columns);
    }
    merge(plane, placement);
}

void MeshBuilder::addCylinder(float radius, float height, int segments, const Matrix4 &placement)
{
    segments = atLeast(3, segments);
    radius = std::fabs(radius);
    height = std::fabs(height);
    MeshBuilder cylinder;
    for (const float end : {0.5f, -0.5f})
        for (int i = 0; i <= segments; ++i)
        {
            // Seen from outside, left to right is counter-clockwise seen from above.
            const Vec4 out = circlePoint(segments - i, segments);
            const float u = static_cast<float>(i) / static_cast<float>(segments);
            cylinder.addVertex(out * radius + Vec4(0, end * height, 0, 1), out, {u, 0.5f - end});
        }
    addBand(cylinder, 0, static_cast<Index>(segments) + 1, segments);
    addDisc(cylinder, radius, 0.5f * height, segments, 1);
    addDisc(cylinder, radius, -0.5f * height, segments, -1);
    merge(cylinder, placement);
}

void MeshBuilder::addSphere(float radius, int segments, int rings, const Matrix4 &placement)
{
    segments = atLeast(3, segments);
    rings = atLeast(2, rings);
    radius = std::fabs(radius);
    MeshBuilder sphere;
    for (int ring = 0; ring <= rings; ++ring)
    {
        const float v = static_cast<float>(ring) / static_cast<float>(rings);
        const bool pole = ring == 0 || ring == rings;
        const float across = pole ? 0.0f : std::sin(v * PI);
        for (int i = 0; i <= segments; ++i)
        {
            // A pole's vertex stands in the middle of its triangle's stretch of the texture.
            const float u = (static_cast<float>(i) + (pole ? 0.5f : 0.0f)) / static_cast<float>(segments);
            const Vec4 out = circlePoint(segments - i, segments) * across + Vec4(0, std::cos(v * PI), 0, 0);
            sphere.addVertex(out * radius + Vec4(0, 0, 0, 1), out, {u, v});
        }
    }
    const auto row = static_cast<Index>(segments) + 1;
    for (Index i = 0; i + 1 < row; ++i)
    {
        const Index last = row * static_cast<Index>(rings);
        sphere.addTriangle(i, row + i + 1, row + i);
        sphere.addTriangle(last - row + i, last - row + i + 1, last + i);
    }
    for (int ring = 1; ring + 1 < rings; ++ring)
        addBand(sphere, row * static_cast<Index>(ring), row * static_cast<Index>(ring + 1), segments);
    merge(sphere, placement);
}
