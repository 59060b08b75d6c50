// GraphicsSystem2: what it offers of the frame: scene graphs, and the world under a point of the last picture.
#include "rendering/device/GraphicsSystem2.h"

#include "rendering/drawn/WholeWindow.h"
#include "rendering/frame/SceneGraph.h"
#include "rendering/frame/ViewerComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"

Handle<SceneGraph> GraphicsSystem2::getNewSceneGraph()
{
    const Handle<SceneGraph> hSceneGraph = construct<SceneGraph>(defaultAllocationCategory);
    hSceneGraph.lookup()->setParent(getHandle());
    return hSceneGraph;
}

Vec4 GraphicsSystem2::unprojectPointFromLastFrame(const Vec4 &screenPoint, bool useSceneDepth)
{
    auto *const viewer = componentOf<ViewerComponent>(lastFrameCamera, ComponentKeys::viewer);
    if (!viewer)
        return Vec4(0, 0, 0, 1);
    const WindowCoordinate size = getWholeWindow();
    return viewer->unProject(screenPoint, size.x, size.y, true);
}
