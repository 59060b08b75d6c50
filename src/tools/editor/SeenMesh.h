// SeenMesh: what is drawn of an entity, as the editor measures and meets it.
#pragma once

#include "tools/editor/EditorView.h"

#include "assets/models/Mesh.h"
#include "foundation/Matrix4.h"

class Entity;
class GraphicsComponent2;

/// The mesh of a drawn component in its place: its box in its own space, and its triangles.
///
/// Models, boxes with a world's texture, terrains, quads in the world, and the boxes of decals. Borrows the mesh for the
/// call. By the numbers of the transform as they stand, like what is drawn.
class SeenMesh
{
public:
    SeenMesh() = default;
    explicit SeenMesh(GraphicsComponent2 &component);

    /// Whether there is a mesh with an extent, in a place that is one.
    bool isSolid() const { return mesh != nullptr; }
    /// From the mesh's space into the world.
    const Matrix4 &placement() const { return toWorld; }
    const Vec4 &low() const { return least; }
    const Vec4 &high() const { return greatest; }

    /// Where a way first meets a triangle from its front.
    ///
    /// @param nearest  how far to look, metres; becomes the distance of what is met
    /// @param normal   becomes the triangle's, world space, of length 1
    /// @return whether one is met nearer than that
    bool meets(const ViewRay &ray, float &nearest, Vec4 &normal) const;
    /// Whether a place lies in the box, which is no larger than that.
    bool holds(const Vec4 &place) const;

private:
    const Mesh *mesh = nullptr;
    Matrix4 toWorld;
    Vec4 least, greatest; ///< mesh space
};

/// A box along the axes of some space.
struct SpanBox
{
    Vec4 low = Vec4(1.f, 1.f, 1.f, 1.f) * 1e30f;
    Vec4 high = Vec4(1.f, 1.f, 1.f, 1.f) * -1e30f;

    bool isEmpty() const { return !(low.x <= high.x); }
    void take(const Vec4 &point);
    void take(const SpanBox &other);
    /// The eight corners of another space's box, moved into this one.
    void take(const Matrix4 &into, const Vec4 &least, const Vec4 &greatest);
    Vec4 middle() const { return (low + high) * 0.5f; }
    Vec4 extents() const { return high - low; }
};
