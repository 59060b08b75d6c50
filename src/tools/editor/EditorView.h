// EditorView: how the camera of a level shows the world, in pixels of the window.
#pragma once

#include "object/tree/Handle.h"

#include "foundation/Matrix4.h"
#include "foundation/Vector.h"

#include <limits>
#include <optional>

class Coordinator;

/// A way into the world from a pixel.
struct ViewRay
{
    Vec4 origin;    ///< world space, metres, w 1
    Vec4 direction; ///< of length 1, w 0

    /// The place that lies so many metres along the way.
    Vec4 at(float distance) const;
    /// How far along the way a plane is met; none where it is parallel, or lies behind.
    /// @param point, normal  of the plane, world space
    std::optional<float> meets(const Vec4 &point, const Vec4 &normal) const;
};

/// A rectangle of the window, pixels from the upper left; may be given by any two corners.
struct ViewRect
{
    float left = 0.f, top = 0.f, right = 0.f, bottom = 0.f;

    static ViewRect between(float x0, float y0, float x1, float y1);
    bool contains(const Vec4 &pixel) const;
};

/// A camera's matrices and the window's size at one moment. A plain value.
///
/// World space is metres; places on the screen are pixels of the window from its upper left, with the distance ahead of
/// the camera in z.
class EditorView
{
public:
    EditorView() = default;
    /// What the current camera of a level shows; without one, nothing is seen.
    explicit EditorView(Coordinator &level);

    /// Whether there is a camera with usable numbers.
    bool isUsable() const { return usable; }
    /// The way into the world from a pixel.
    ViewRay rayAt(float x, float y) const;
    /// How far along such a way something can be seen first; none where all of it is cut off.
    std::optional<float> wayToShown(const ViewRay &ray) const;
    /// Whether a place belongs to what the view shows, so that it is marked: not where it lies high above the cut.
    bool shows(const Vec4 &place) const;
    /// Whether a place lies above what is drawn.
    bool isCutOff(const Vec4 &place) const { return place.y > cutHeight; }
    /// Where a place is seen; none behind the camera, and for what is no number.
    std::optional<Vec4> project(const Vec4 &place) const;
    /// Length that is seen as one pixel at a place's distance, metres.
    float metresPerPixel(const Vec4 &place) const;

    const Vec4 &eye() const { return position; }
    /// The camera's own axes in world space: x to the right, y up, z ahead.
    Vec4 axis(int index) const { return viewToWorld.getColumn(index); }
    /// From world space to clip space, for column vectors.
    const Matrix4 &worldToClip() const { return toClip; }
    float width() const { return pixelsWide; }
    float height() const { return pixelsHigh; }

private:
    bool usable = false;
    Vec4 position;
    Matrix4 viewToWorld;
    Matrix4 toClip;
    float pixelsWide = 1.f;
    float pixelsHigh = 1.f;
    float tanHalf = 1.f;                                      ///< of the vertical angle
    float cutHeight = std::numeric_limits<float>::infinity(); ///< above which nothing is drawn now
};
