#include "rendering/drawn/ScreenPixels.h"

#include "rendering/device/GraphicsSystem2.h"

#include "engine/screen/ScreenMetrics.h"

#include <algorithm>
#include <cmath>

float getPixelsPerUnit()
{
    const ScreenMetrics &window = getScreenMetrics();
    const auto width = static_cast<float>(getSystemDeref<GraphicsSystem2>().getBackBufferWidth());
    const float factor = width * window.normalizationFactor / static_cast<float>(std::max(window.width, 1));
    return factor > 0.0f ? factor : 1.0f;
}

Vec4 snapToPixels(const Vec4 &screenPosition)
{
    const float pixels = getPixelsPerUnit();
    return Vec4(std::round(screenPosition.x * pixels) / pixels, std::round(screenPosition.y * pixels) / pixels,
                screenPosition.z, screenPosition.w);
}
