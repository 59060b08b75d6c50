#include "rendering/frame/ViewerComponent.h"

#include "rendering/frame/AnglePointSorter.h"
#include "rendering/frame/ViewCut.h"
#include "rendering/drawn/WholeWindow.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/DebugShapes.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Assertions.h"
#include "foundation/Finite.h"
#include "port/d3dx9/D3DXMath.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace
{

Matrix4 fromDirectX(const D3DXMATRIX &matrix)
{
    static_assert(sizeof(D3DXMATRIX) == sizeof(Matrix4), "both are sixteen floats, row by row");
    Matrix4 result;
    std::memcpy(result.data, matrix.m, sizeof(result.data));
    return result;
}

/// Above 0 where the way over three points turns the way a hull is walked here: clockwise with x right and z up,
/// which is the winding that the partitioning grid takes.
double hullTurn(const Vec4 &p1, const Vec4 &p2, const Vec4 &p3)
{
    return (double(p2.z) - p1.z) * (double(p3.x) - p1.x) - (double(p3.z) - p1.z) * (double(p2.x) - p1.x);
}

bool isLower(const Vec4 &lhs, const Vec4 &rhs)
{
    return lhs.z < rhs.z || (lhs.z == rhs.z && lhs.x < rhs.x);
}

} // namespace

/// The matrices of one viewer at one moment, for any number of points.
class ViewerComponent::Unprojector
{
public:
    Unprojector(ViewerComponent &viewer, float width, float height)
    {
        TransformComponent *transform = viewer.getTransform();
        KV_VERIFY(transform || viewer.missingTransformTold, "The viewer of %s has no transform sibling.",
                  viewer.getParent().toString().toCString());
        viewer.missingTransformTold = !transform;
        usable = transform != nullptr;
        if (!usable)
            return;
        projectionToView = viewer.getProjectionMatrix(width, height).inverse();
        viewToWorld = transform->getCameraMatrix(TransformComponent::INTO_WORLD_SPACE | TransformComponent::OMIT_SCALE);
    }

    /// World point of a point in clip space; the origin without a transform.
    Vec4 fromClip(const Vec4 &clipPoint) const
    {
        if (!usable)
            return Vec4(0, 0, 0, 1);
        // The projection is in the device's form, for row vectors.
        Vec4 view = Vec4(clipPoint.x, clipPoint.y, clipPoint.z, 1) * projectionToView;
        view /= view.w;
        view.w = 1;
        Vec4 world = viewToWorld * view;
        world.w = 1;
        return world;
    }

    Vec4 eye() const { return viewToWorld.getColumn(3); }

private:
    bool usable = false;
    Matrix4 projectionToView;
    Matrix4 viewToWorld;
};

TransformComponent *ViewerComponent::getTransform()
{
    const auto transform = handle_cast<TransformComponent>(getSibling(ComponentKeys::transform)).lookup();
    return transform ? &*transform : nullptr;
}

Matrix4 ViewerComponent::getProjectionMatrix(float width, float height)
{
    D3DXMATRIX projection;
    if (projectionType == PARALLEL)
    {
        TransformComponent *transform = getTransform();
        const Vec4 scale = transform ? transform->getScale() : Vec4(1, 1, 1, 0);
        D3DXMatrixOrthoLH(&projection, scale.x * width, scale.y * height, nearClipDistance, farClipDistance);
    }
    else
        D3DXMatrixPerspectiveFovLH(&projection, verticalFieldOfViewAngle, width / height, nearClipDistance,
                                   farClipDistance);
    return fromDirectX(projection);
}

bool ViewerComponent::isCut()
{
    constexpr float clear = 0.01f; // the plane has to lie before the eye
    TransformComponent *const transform = getTransform();
    const ViewCut &cut = ViewCut::present();
    return transform && projectionType == PERSPECTIVE && cut.camera == getParent() &&
           transform->getPosition().y > cut.height + clear;
}

/// Depth is measured from the cut's plane on, and reaches 1 in the far corner that is farthest from it.
Matrix4 ViewerComponent::getDrawnProjectionMatrix(float width, float height)
{
    typedef TransformComponent T;
    Matrix4 projection = getProjectionMatrix(width, height);
    if (!isCut())
        return projection;
    const Matrix4 axes = getTransform()->getCameraMatrix(T::INTO_WORLD_SPACE | T::OMIT_SCALE);
    const float below[] = {-axes.getColumn(0).y, -axes.getColumn(1).y, -axes.getColumn(2).y};
    const float begin = ViewCut::present().height - axes.getColumn(3).y;
    const float corner =
        (std::fabs(below[0]) / projection[0][0] + std::fabs(below[1]) / projection[1][1] + below[2]) * farClipDistance +
        begin;
    const float scale = farClipDistance / std::max(corner, 1e-3f);
    for (int row = 0; row < 3; ++row)
        projection[row][2] = below[row] * scale;
    projection[3][2] = begin * scale;
    return projection;
}

float ViewerComponent::getHorizontalFieldOfViewAngle(float width, float height) const
{
    return std::atan2(std::tan(verticalFieldOfViewAngle) * width, height);
}

Vec4 ViewerComponent::getFieldOfViewVector(float width, float height) const
{
    return Vec4(getHorizontalFieldOfViewAngle(width, height), verticalFieldOfViewAngle, 0, 0);
}

Vec4 ViewerComponent::unProject(const Vec4 &screenPoint, float screenWidth, float screenHeight, bool normalize)
{
    Vec4 clipPoint = screenPoint;
    if (normalize)
    {
        clipPoint.x = screenPoint.x / screenWidth * 2 - 1;
        clipPoint.y = 1 - screenPoint.y / screenHeight * 2;
    }
    return Unprojector(*this, screenWidth, screenHeight).fromClip(clipPoint);
}

std::array<Vec4, 8> ViewerComponent::findFrustumCorners(float width, float height)
{
    const Unprojector unprojector(*this, width, height);
    std::array<Vec4, 8> corners;
    for (unsigned i = 0; i < corners.size(); ++i)
        corners[i] = unprojector.fromClip(Vec4(i & 1 ? 1.0f : -1.0f, i & 2 ? 1.0f : -1.0f, i & 4 ? 1.0f : 0.0f, 1));
    return corners;
}

std::vector<Vec4> ViewerComponent::calcFrustumPoints(float width, float height)
{
    const std::array<Vec4, 8> corners = findFrustumCorners(width, height);
    return std::vector<Vec4>(corners.begin(), corners.end());
}

std::vector<Vec4> ViewerComponent::calcFarFrustumPoints(float width, float height)
{
    std::vector<Vec4> points;
    points.reserve(5);
    collectFarFrustumPoints(width, height, points);
    return points;
}

void ViewerComponent::collectFarFrustumPoints(float width, float height, std::vector<Vec4> &points)
{
    const Unprojector unprojector(*this, width, height);
    points.push_back(unprojector.eye());
    for (const float y : {-1.0f, 1.0f})
        for (const float x : {-1.0f, 1.0f})
            points.push_back(unprojector.fromClip(Vec4(x, y, 1, 1)));
}

void ViewerComponent::collectGroundRectangle(float width, float height, std::vector<Vec4> &triangles)
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    float minX = infinity, minZ = infinity, maxX = -infinity, maxZ = -infinity;
    for (const Vec4 &point : findFrustumCorners(width, height))
    {
        minX = std::min(minX, point.x);
        maxX = std::max(maxX, point.x);
        minZ = std::min(minZ, point.z);
        maxZ = std::max(maxZ, point.z);
    }
    const Vec4 nearLeft(minX, 0, minZ, 1), farLeft(minX, 0, maxZ, 1);
    const Vec4 farRight(maxX, 0, maxZ, 1), nearRight(maxX, 0, minZ, 1);
    for (const Vec4 &point : {nearLeft, farLeft, farRight, nearLeft, farRight, nearRight})
        triangles.push_back(point);
}

std::vector<Vec4> ViewerComponent::calcFrustumHullTriangles(float width, float height)
{
    std::vector<Vec4> triangles;
    calcFrustumHullTriangles(width, height, triangles);
    return triangles;
}

void ViewerComponent::calcFrustumHullTriangles(float width, float height, std::vector<Vec4> &triangles)
{
    triangles.clear();
    if (projectionType == PARALLEL)
        return collectGroundRectangle(width, height, triangles);
    collectFarFrustumPoints(width, height, triangles);
    calc2DConvexHull(triangles);
    triangulateConvexPolygon(triangles);
}

void ViewerComponent::weldVertices(std::vector<Vec4> &inputPoints) const
{
    constexpr double weldDistance = 0.1;
    if (inputPoints.size() < 4)
        return;
    std::size_t kept = 0;
    for (std::size_t i = 1; i < inputPoints.size(); ++i)
    {
        if (double((inputPoints[i] - inputPoints[kept]).magnitude()) < weldDistance)
            inputPoints[kept] = (inputPoints[kept] + inputPoints[i]) * 0.5f;
        else
            inputPoints[++kept] = inputPoints[i];
    }
    inputPoints.resize(kept + 1);
}

void ViewerComponent::calc2DConvexHull(std::vector<Vec4> &inputPoints)
{
    if (inputPoints.size() < 3)
        return;
    // A projection of impossible numbers gives points that cannot be ordered: such a viewer covers nothing.
    if (!std::all_of(inputPoints.begin(), inputPoints.end(), [](const Vec4 &point) { return isFinite(point); }))
        return inputPoints.clear();
    std::iter_swap(inputPoints.begin(), std::min_element(inputPoints.begin(), inputPoints.end(), isLower));
    const Vec4 pivot = inputPoints.front();
    // From above, a far corner often falls exactly on another one; what lies on the pivot has no angle.
    const auto isOnPivot = [&pivot](const Vec4 &point) { return point.x == pivot.x && point.z == pivot.z; };
    inputPoints.erase(std::remove_if(inputPoints.begin() + 1, inputPoints.end(), isOnPivot), inputPoints.end());
    std::sort(inputPoints.begin() + 1, inputPoints.end(), AnglePointSorter{pivot});

    std::size_t top = 0; // the hull so far is the front of the list, up to here
    for (std::size_t i = 1; i < inputPoints.size(); ++i)
    {
        while (top > 0 && !(hullTurn(inputPoints[top - 1], inputPoints[top], inputPoints[i]) > 0))
            --top;
        inputPoints[++top] = inputPoints[i];
    }
    inputPoints.resize(top + 1);
}

void ViewerComponent::triangulateConvexPolygon(std::vector<Vec4> &inputPoints)
{
    const std::size_t corners = inputPoints.size();
    if (corners < 3)
        return inputPoints.clear();
    inputPoints.reserve(corners * 3);
    inputPoints.resize((corners - 2) * 3);
    // From the last triangle to the first, so that each corner is read before its place is written.
    for (std::size_t i = corners - 1; i >= 2; --i)
    {
        const Vec4 before = inputPoints[i - 1], corner = inputPoints[i];
        Vec4 *triangle = &inputPoints[(i - 2) * 3];
        triangle[0] = inputPoints[0];
        triangle[1] = before;
        triangle[2] = corner;
    }
}

void ViewerComponent::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    if (!getSystemDeref<GlobalConfigSystem>().getDebugDrawViewerFrustums())
        return;
    const auto collector = dcc.lookup();
    if (!collector)
        return;
    const WindowCoordinate size = getWholeWindow();
    drawBoxEdges(*collector, findFrustumCorners(size.x, size.y), Vec4(1, 1, 0, 1));
}
