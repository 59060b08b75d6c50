#include "engine/screen/ScreenSpaceHelperComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/transforms/ParentTransform.h"
#include "engine/screen/ScreenMetrics.h"

namespace
{
/// Counted from a parent, a negative coordinate lies on the parent's other side and not at the window's far edge.
WindowCoordinateSystem withoutWrap(WindowCoordinateSystem system)
{
    return system == WCS_NORMALIZED ? WCS_NORMALIZED_NOWRAP : system;
}

Vec4 toScreenSpace(const WindowCoordinate &coordinate, float depth)
{
    const ScreenMetrics &screen = getScreenMetrics();
    const WindowCoordinate converted = coordinate.convert(WCS_NORMALIZED_NOWRAP, WCS_NORMALIZED_NOWRAP, screen.width,
                                                          screen.height, screen.normalizationFactor);
    return Vec4(converted.x, converted.y, depth, 1.f);
}
} // namespace

void ScreenSpaceHelperComponent::doFrame()
{
    TransformComponent *transform = ownTransform(*this);
    if (!transform || !getSibling(ComponentKeys::graphics2).isValid())
        return;

    WindowCoordinate coordinate(windowPosition.x, windowPosition.y, windowCoordinateSystemX, windowCoordinateSystemY);
    const TransformComponent *base = relToParent ? parentTransform(*this) : nullptr;
    if (!base)
    {
        transform->setPosition(toScreenSpace(coordinate, windowPosition.z));
        return;
    }
    coordinate.wcsX = withoutWrap(coordinate.wcsX);
    coordinate.wcsY = withoutWrap(coordinate.wcsY);
    const Vec4 origin = base->getPosition();
    transform->setPosition(toScreenSpace(coordinate, windowPosition.z) + Vec4(origin.x, origin.y, origin.z, 0.f));
}
