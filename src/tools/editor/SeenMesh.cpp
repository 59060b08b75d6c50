#include "tools/editor/SeenMesh.h"

#include "assets/models/DynamicMeshAsset.h"
#include "assets/models/MeshAsset.h"
#include "engine/transforms/TransformComponent.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "rendering/drawn/DecalComponent.h"
#include "rendering/drawn/HeightMapGraphics.h"
#include "rendering/drawn/ModelGraphicsComponent2.h"
#include "rendering/drawn/QuadComponent2.h"
#include "rendering/drawn/UnitMeshes.h"
#include "rendering/drawn/WorldBasedTCBoxGraphicsComponent.h"

#include "foundation/Finite.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{
template <class Drawn>
const Drawn *as(const GraphicsComponent2 &component)
{
    return component.getType()->isSubclassOf(Drawn::staticType) ? static_cast<const Drawn *>(&component) : nullptr;
}

/// The mesh that a component draws, or one of the same form; invalid for what has none.
Handle<MeshAsset> meshOf(const GraphicsComponent2 &component)
{
    if (const auto *const model = as<ModelGraphicsComponent2>(component))
        return model->getMesh();
    if (const auto *const terrain = as<HeightMapGraphics>(component))
        return terrain->getMesh();
    if (as<WorldBasedTCBoxGraphicsComponent>(component) || as<DecalComponent>(component))
        return getUnitCube();
    const bool onScreen =
        component.getLayer() == SceneGraph::SCREEN || component.getLayer() == SceneGraph::SCREEN_DEBUG;
    return as<QuadComponent2>(component) && !onScreen ? getUnitQuad() : Handle<MeshAsset>();
}

/// The way into a box along an axis, and out of it.
bool narrow(float origin, float direction, float low, float high, float &enters, float &leaves)
{
    if (std::fabs(direction) < 1e-12f)
        return origin >= low && origin <= high;
    float first = (low - origin) / direction, last = (high - origin) / direction;
    if (first > last)
        std::swap(first, last);
    enters = std::max(enters, first);
    leaves = std::min(leaves, last);
    return enters <= leaves;
}

bool boxIsMet(const Vec4 &origin, const Vec4 &direction, const Vec4 &low, const Vec4 &high, float farthest)
{
    float enters = 0.f, leaves = farthest;
    return narrow(origin.x, direction.x, low.x, high.x, enters, leaves) &&
           narrow(origin.y, direction.y, low.y, high.y, enters, leaves) &&
           narrow(origin.z, direction.z, low.z, high.z, enters, leaves);
}

Vec4 toVec(const MeshVector3 &v)
{
    return Vec4(v.x, v.y, v.z, 0.f);
}

/// How far along a way the front of a triangle is met; below 0 for not at all. Fronts are clockwise.
float triangleMet(const Vec4 &origin, const Vec4 &direction, const Vec4 &a, const Vec4 &ab, const Vec4 &ac, float side)
{
    const Vec4 across = direction.cross(ac);
    const float det = ab.dot(across) * side;
    // A front faces against the way. The orders of corners and of the axes are both left-handed.
    if (!(det > 1e-20f))
        return -1.f;
    const Vec4 from = origin - a;
    const float u = from.dot(across) * side;
    if (u < 0.f || u > det)
        return -1.f;
    const Vec4 up = from.cross(ab);
    const float v = direction.dot(up) * side;
    if (v < 0.f || u + v > det)
        return -1.f;
    return ac.dot(up) * side / det;
}
} // namespace

SeenMesh::SeenMesh(GraphicsComponent2 &component)
{
    const auto asset = meshOf(component).lookup();
    auto *const transform = componentOf<TransformComponent>(component.getParent(), ComponentKeys::transform);
    if (!asset || !transform || asset->getMeshData().getPrimitiveType() != MPT_TRIANGLES)
        return;
    toWorld = transform->getTransformationMatrix(TransformComponent::USE_OFFSET);
    least = asset->getBoundsMin();
    greatest = asset->getBoundsMax();
    const bool sound = isFinite(toWorld.getColumn(0)) && isFinite(toWorld.getColumn(1)) &&
                       isFinite(toWorld.getColumn(2)) && isFinite(toWorld.getColumn(3));
    if (sound && !asset->getMeshData().getVertexBufferData().empty())
        mesh = &asset->getMeshData();
}

bool SeenMesh::meets(const ViewRay &ray, float &nearest, Vec4 &normal) const
{
    const float volume = toWorld.determinant();
    if (!mesh || !(std::fabs(volume) > 1e-20f))
        return false;
    const Matrix4 toMesh = toWorld.inverse();
    const Vec4 origin = toMesh * ray.origin, direction = toMesh * ray.direction;
    if (!boxIsMet(origin, direction, least, greatest, nearest))
        return false;
    const Mesh::VertexBufferType &vertices = mesh->getVertexBufferData();
    const Mesh::IndexBufferType &indices = mesh->getIndexBufferData();
    const std::size_t corners = indices.empty() ? vertices.size() : indices.size();
    const float side = volume > 0.f ? 1.f : -1.f;
    const auto corner = [&](std::size_t i)
    { return std::min<std::size_t>(indices.empty() ? i : indices[i], vertices.size() - 1); };
    bool met = false;
    Vec4 bestAb, bestAc;
    for (std::size_t i = 0; i + 2 < corners; i += 3)
    {
        const Vec4 a = toVec(vertices[corner(i)].position);
        const Vec4 ab = toVec(vertices[corner(i + 1)].position) - a, ac = toVec(vertices[corner(i + 2)].position) - a;
        const float distance = triangleMet(origin, direction, a, ab, ac, side);
        if (distance < 0.f || distance >= nearest)
            continue;
        nearest = distance;
        bestAb = ab;
        bestAc = ac;
        met = true;
    }
    if (!met)
        return false;
    normal = (toWorld * bestAb).cross(toWorld * bestAc);
    normal.normalize();
    if (normal.dot(ray.direction) > 0.f)
        normal.negate();
    return true;
}

bool SeenMesh::holds(const Vec4 &place) const
{
    if (!mesh || !(std::fabs(toWorld.determinant()) > 1e-20f))
        return false;
    const Vec4 inside = toWorld.inverse() * place;
    return inside.x >= least.x && inside.x <= greatest.x && inside.y >= least.y && inside.y <= greatest.y &&
           inside.z >= least.z && inside.z <= greatest.z;
}

void SpanBox::take(const Vec4 &point)
{
    for (int axis = 0; axis < 3; ++axis)
    {
        low[axis] = std::min(low[axis], point[axis]);
        high[axis] = std::max(high[axis], point[axis]);
    }
    low.w = high.w = 1.f;
}

void SpanBox::take(const SpanBox &other)
{
    if (other.isEmpty())
        return;
    take(other.low);
    take(other.high);
}

void SpanBox::take(const Matrix4 &into, const Vec4 &least, const Vec4 &greatest)
{
    // Of each product the lesser and the greater: as if all eight corners had been taken.
    Vec4 from = into.getColumn(3), to = from;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
        {
            const float one = into[row][column] * least[column], other = into[row][column] * greatest[column];
            from[row] += std::min(one, other);
            to[row] += std::max(one, other);
        }
    take(from);
    take(to);
}
