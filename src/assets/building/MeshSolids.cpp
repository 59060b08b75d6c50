#include "assets/building/MeshBuilder.h"

#include "assets/models/MeshMath.h"
#include "assets/building/PolygonTriangulator.h"

#include <cmath>

namespace
{

Vec4 onPlan(const MeshVector2 &point)
{
    return Vec4(point.x, 0, point.y, 1);
}

/// The plan's area facing +y, or -y for one that is seen from below.
MeshBuilder makeCap(const TriangulatedPlan &plan, bool fromBelow)
{
    MeshBuilder cap;
    cap.reserve(plan.points.size(), plan.triangles.size() / 3);
    const float side = fromBelow ? -1.0f : 1.0f;
    for (const MeshVector2 &point : plan.points)
        cap.addVertex(onPlan(point), Vec4(0, side, 0, 0), {point.x, -side * point.y});
    for (std::size_t i = 0; i + 2 < plan.triangles.size(); i += 3)
        cap.addTriangle(plan.triangles[i], plan.triangles[i + (fromBelow ? 2 : 1)],
                        plan.triangles[i + (fromBelow ? 1 : 2)]);
    return cap;
}

Vec4 origin(const Matrix4 &station)
{
    return station.getColumn(3);
}

/// The border's way between two stations; `top` and `bottom` are the texture's v at the later and the earlier one.
void addSides(MeshBuilder &mesh, const TriangulatedPlan &plan, const Matrix4 &earlier, const Matrix4 &later, float top,
              float bottom)
{
    for (const TriangulatedPlan::Side &side : plan.sides)
    {
        const Vec4 from = onPlan(plan.points[side.from]), to = onPlan(plan.points[side.to]);
        const Vec4 corners[] = {later * from, later * to, earlier * to, earlier * from};
        const Vec4 normal =
            toUnit((corners[2] - corners[0]).cross(corners[3] - corners[1]), Vec4(to.z - from.z, 0, from.x - to.x, 0));
        const float left = side.along, right = side.along + (to - from).magnitude();
        const MeshBuilder::Index first = mesh.addVertex(corners[0], normal, {left, top});
        mesh.addVertex(corners[1], normal, {right, top});
        mesh.addVertex(corners[2], normal, {right, bottom});
        mesh.addVertex(corners[3], normal, {left, bottom});
        mesh.addQuad(first, first + 1, first + 2, first + 3);
    }
}

MeshBuilder sweep(const TriangulatedPlan &plan, const std::vector<Matrix4> &stations)
{
    MeshBuilder solid;
    solid.merge(makeCap(plan, true), stations.front());
    float bottom = 0;
    for (std::size_t i = 1; i < stations.size(); ++i)
        bottom += (origin(stations[i]) - origin(stations[i - 1])).magnitude();
    for (std::size_t i = 1; i < stations.size(); ++i)
    {
        const float top = bottom - (origin(stations[i]) - origin(stations[i - 1])).magnitude();
        addSides(solid, plan, stations[i - 1], stations[i], top, bottom);
        bottom = top;
    }
    solid.merge(makeCap(plan, false), stations.back());
    return solid;
}

} // namespace

ErrorCode MeshBuilder::addPolygon(const MeshPolygon &polygon, const Matrix4 &placement)
{
    const ErrorReturn<TriangulatedPlan> plan = triangulate(polygon);
    if (plan.succeeded())
        merge(makeCap(plan.value, false), placement);
    return plan.code;
}

ErrorCode MeshBuilder::addExtrusion(const MeshPolygon &polygon, float height, const Matrix4 &placement)
{
    if (!(height > 0) || !std::isfinite(height))
        return ErrorCode::OUT_OF_BOUNDS;
    Matrix4 top;
    top.translate(Vec4(0, height, 0, 0));
    MeshBuilder solid;
    const ErrorCode result = solid.addExtrusion(polygon, {Matrix4(), top});
    merge(solid, placement);
    return result;
}

ErrorCode MeshBuilder::addExtrusion(const MeshPolygon &polygon, const std::vector<Matrix4> &stations)
{
    if (stations.size() < 2)
        return ErrorCode::OUT_OF_BOUNDS;
    const ErrorReturn<TriangulatedPlan> plan = triangulate(polygon);
    if (plan.succeeded())
        merge(sweep(plan.value, stations));
    return plan.code;
}
