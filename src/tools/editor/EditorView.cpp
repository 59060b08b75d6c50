#include "tools/editor/EditorView.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/screen/ScreenMetrics.h"
#include "engine/transforms/TransformComponent.h"
#include "rendering/drawn/WholeWindow.h"
#include "rendering/frame/GraphicsManager2.h"
#include "rendering/frame/ViewCut.h"
#include "rendering/frame/ViewerComponent.h"

#include "foundation/Finite.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr float NEAREST = 1e-3f;     ///< metres ahead; what is nearer is not projected
constexpr float MARKED_ABOVE = 1.2f; ///< metres above a cut up to which lamps below a ceiling hang
} // namespace

Vec4 ViewRay::at(float distance) const
{
    Vec4 place = origin + direction * distance;
    place.w = 1.f;
    return place;
}

std::optional<float> ViewRay::meets(const Vec4 &point, const Vec4 &normal) const
{
    const float towards = direction.dot(normal);
    if (std::fabs(towards) < 1e-5f)
        return std::nullopt;
    const float distance = (point - origin).dot(normal) / towards;
    return distance > 0.f && std::isfinite(distance) ? std::optional(distance) : std::nullopt;
}

ViewRect ViewRect::between(float x0, float y0, float x1, float y1)
{
    return {std::min(x0, x1), std::min(y0, y1), std::max(x0, x1), std::max(y0, y1)};
}

bool ViewRect::contains(const Vec4 &pixel) const
{
    return pixel.x >= left && pixel.x <= right && pixel.y >= top && pixel.y <= bottom;
}

EditorView::EditorView(Coordinator &level)
{
    typedef TransformComponent T;
    const auto graphics = handle_cast<GraphicsManager2>(level.getManager(ComponentKeys::graphics2)).lookup();
    const Handle<Entity> camera = graphics ? graphics->getCurrentCamera() : Handle<Entity>();
    T *const transform = componentOf<T>(camera, ComponentKeys::transform);
    auto *const viewer = componentOf<ViewerComponent>(camera, ComponentKeys::viewer);
    const ScreenMetrics &window = getScreenMetrics();
    if (!transform || !viewer || window.width < 1 || window.height < 1)
        return;
    const WindowCoordinate size = getWholeWindow();
    pixelsWide = static_cast<float>(window.width);
    pixelsHigh = static_cast<float>(window.height);
    viewToWorld = transform->getCameraMatrix(T::INTO_WORLD_SPACE | T::OMIT_SCALE);
    position = viewToWorld.getColumn(3);
    const Matrix4 worldToView = transform->getCameraMatrix(T::INTO_WORLD_SPACE | T::INVERT | T::OMIT_SCALE);
    // The projection is a matrix for row vectors.
    toClip = viewer->getDrawnProjectionMatrix(size.x, size.y).transpose() * worldToView;
    if (viewer->isCut())
        cutHeight = ViewCut::present().height;
    tanHalf = std::tan(viewer->getVerticalFieldOfViewAngle() * 0.5f);
    const bool sound = isFinite(position) && isFinite(toClip.getColumn(0)) && isFinite(toClip.getColumn(3));
    usable = sound && tanHalf > 0.f && std::isfinite(tanHalf);
}

ViewRay EditorView::rayAt(float x, float y) const
{
    const float right = (x / pixelsWide * 2.f - 1.f) * tanHalf * pixelsWide / pixelsHigh;
    const float up = (1.f - y / pixelsHigh * 2.f) * tanHalf;
    Vec4 direction = axis(2) + axis(0) * right + axis(1) * up;
    direction.w = 0.f;
    direction.normalize();
    return {position, direction};
}

std::optional<float> EditorView::wayToShown(const ViewRay &ray) const
{
    if (std::isinf(cutHeight))
        return 0.f;
    return ray.meets(Vec4(0, cutHeight, 0, 1), Vec4(0, 1, 0, 0));
}

bool EditorView::shows(const Vec4 &place) const
{
    return place.y <= cutHeight + MARKED_ABOVE;
}

std::optional<Vec4> EditorView::project(const Vec4 &place) const
{
    const Vec4 clip = toClip * Vec4(place.x, place.y, place.z, 1.f);
    if (!usable || !(clip.w > NEAREST) || !isFinite(clip))
        return std::nullopt;
    return Vec4((clip.x / clip.w + 1.f) * 0.5f * pixelsWide, (1.f - clip.y / clip.w) * 0.5f * pixelsHigh, clip.w, 1.f);
}

float EditorView::metresPerPixel(const Vec4 &place) const
{
    const float ahead = (place - position).dot(axis(2));
    return 2.f * tanHalf * std::max(std::isfinite(ahead) ? ahead : 0.f, 0.05f) / pixelsHigh;
}
