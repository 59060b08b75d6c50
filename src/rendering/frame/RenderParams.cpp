#include "rendering/frame/RenderParams.h"

#include "rendering/drawn/WholeWindow.h"

Vec4 GraphicsSystem2::SceneRenderParams::getFittedSize() const
{
    const WindowCoordinate window = getWholeWindow();
    return Vec4(window.x * projectionSize.x, window.y * projectionSize.y, 0, 0);
}

void GraphicsSystem2::SceneRenderParams::fitToSquare()
{
    const WindowCoordinate window = getWholeWindow();
    projectionSize = Vec4(1 / window.x, 1 / window.y, 0, 0);
}
