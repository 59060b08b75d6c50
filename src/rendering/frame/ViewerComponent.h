// ViewerComponent: a camera, and the ground its frustum covers.
#pragma once

#include "engine/entities/AbstractComponent.h"

#include "foundation/Matrix4.h"
#include "foundation/Vector.h"

#include <array>
#include <vector>

class TransformComponent;

/// A camera at its entity's transform, under the component key "viewer", looking along +z with +y up.
///
/// Widths and heights are those of the window in normalised units. Culling is two-dimensional: what counts is the
/// frustum's shadow on the x, z plane, given as at most three triangles. Does no work of its own in a frame.
class ViewerComponent : public AbstractComponent
{
    KV_REFLECTED(ViewerComponent)
public:
    /// How the third dimension is shown.
    enum ProjectionType
    {
        PERSPECTIVE = 0, ///< what is farther is smaller
        PARALLEL = 1,    ///< distance does not matter; the transform's scale is the size of the view
        NUM_PT = 2       ///< number of projection types
    };

    ViewerComponent() = default;

    /// Matrix from view to clip space in the device's form: a row-vector matrix, depth 0 to 1.
    Matrix4 getProjectionMatrix(float width, float height);
    /// The same while nothing is cut off; else the near plane lies where the view is cut, and takes what is above it.
    Matrix4 getDrawnProjectionMatrix(float width, float height);
    /// Horizontal angle as the effects expect it, radians: atan2(tan(vertical angle) * width, height).
    float getHorizontalFieldOfViewAngle(float width, float height) const;
    /// (horizontal, vertical, 0, 0), radians.
    Vec4 getFieldOfViewVector(float width, float height) const;

    /// World point of a screen point, with w 1.
    ///
    /// @param screenPoint  z is the depth in clip space, 0 near and 1 far
    /// @param normalize    true: x and y in window units from the top left; false: clip space already
    Vec4 unProject(const Vec4 &screenPoint, float screenWidth, float screenHeight, bool normalize = true);

    /// The eight corners of the frustum in world space, the four near ones first.
    std::vector<Vec4> calcFrustumPoints(float width, float height);
    /// The eye and the four far corners in world space.
    std::vector<Vec4> calcFarFrustumPoints(float width, float height);
    /// The frustum's footprint on the x, z plane in world space: three points a triangle.
    std::vector<Vec4> calcFrustumHullTriangles(float width, float height);
    /// As the other form, into a list that the caller uses again; allocates nothing once the list has grown.
    void calcFrustumHullTriangles(float width, float height, std::vector<Vec4> &triangles);

    /// Draws the edges of the frustum while GlobalConfigSystem's debugDrawViewerFrustums is set.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;

    ProjectionType getProjectionType() const { return projectionType; }
    /// How the third dimension is shown.
    void setProjectionType(ProjectionType val) { projectionType = val; }
    float getVerticalFieldOfViewAngle() const { return verticalFieldOfViewAngle; }
    /// Whole vertical angle, radians.
    void setVerticalFieldOfViewAngle(float val) { verticalFieldOfViewAngle = val; }
    float getNearClipDistance() const { return nearClipDistance; }
    /// Distance of the near plane, world units.
    void setNearClipDistance(float val) { nearClipDistance = val; }
    float getFarClipDistance() const { return farClipDistance; }
    /// Distance of the far plane, world units: nothing beyond is drawn, lights included.
    void setFarClipDistance(float val) { farClipDistance = val; }

    /// Whether this is the camera of the present `ViewCut`, and above it, so that its view is cut off there.
    bool isCut();

private:
    friend struct ViewerComponentTestAccess;
    class Unprojector;

    /// x, y and z of clip space are the bits 1, 2 and 4 of a corner's number.
    std::array<Vec4, 8> findFrustumCorners(float width, float height);
    void collectFarFrustumPoints(float width, float height, std::vector<Vec4> &points);
    void collectGroundRectangle(float width, float height, std::vector<Vec4> &triangles);
    void weldVertices(std::vector<Vec4> &inputPoints) const;
    void calc2DConvexHull(std::vector<Vec4> &inputPoints);
    void triangulateConvexPolygon(std::vector<Vec4> &inputPoints);
    TransformComponent *getTransform();

    ProjectionType projectionType = PERSPECTIVE;
    float verticalFieldOfViewAngle = 0.785398f; ///< radians
    float nearClipDistance = 0.01f;             ///< world units
    float farClipDistance = 50.0f;              ///< world units
    bool missingTransformTold = false;          ///< reported, and not found since
};
