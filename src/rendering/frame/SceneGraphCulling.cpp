// SceneGraph: what of the culled layers a viewer may see.
#include "rendering/frame/SceneGraph.h"

#include "rendering/drawn/GraphicsComponent2.h"
#include "rendering/frame/RenderParams.h"
#include "rendering/frame/SceneGraphScratch.h"
#include "rendering/frame/ViewVolume.h"
#include "rendering/frame/ViewerComponent.h"
#include "rendering/drawn/WholeWindow.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/entities/Entity.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"
#include "physics/volumes/BoundingVolume.h"

#include "foundation/Assertions.h"
#include "foundation/ProfilerScope.h"
#include "foundation/precompile.h"

#include <cmath>

namespace
{

ViewerComponent *findViewer(const Handle<Entity> &hViewer)
{
    return componentOf<ViewerComponent>(hViewer, ComponentKeys::viewer);
}

/// Whose volume it is: the entity it stands beside, or for a dummy the one that has the dummy's entity as a child.
Entity *findOwner(const BoundingVolume &volume)
{
    auto owner = volume.getParent();
    if (volume.getIsPartitioningDummy())
    {
        const auto helper = owner.lookup();
        owner = helper ? helper->getParent() : Handle<Object>();
    }
    return handle_cast<Entity>(owner).lookup().ptr;
}

/// Leaves of a shadow map's view the cone of its light, and around it what the soft edge of a shadow looks at.
void narrowToLight(ViewVolume &volume, const Matrix4 &worldToView, float coneAngle)
{
    constexpr float edge = 5; // texels in the middle of the map: a look-up's lift off its surface, and its width
    const auto size = static_cast<float>(getSystemDeref<GraphicsSystem2>().getShadowMapSize());
    const float halfAngle = coneAngle + edge * 2 * std::tan(coneAngle) / size;
    if (coneAngle < static_cast<float>(PI) / 2 && halfAngle < static_cast<float>(PI) / 2)
        volume.narrowToCone(worldToView, halfAngle);
}

} // namespace

std::vector<Vec4> SceneGraph::calcFrustumPoints(const Handle<Entity> &viewer)
{
    ViewerComponent *component = findViewer(viewer);
    const WindowCoordinate size = getWholeWindow();
    return component ? component->calcFrustumPoints(size.x, size.y) : std::vector<Vec4>();
}

std::vector<Vec4> SceneGraph::calcFarFrustumPoints(const Handle<Entity> &viewer)
{
    ViewerComponent *component = findViewer(viewer);
    const WindowCoordinate size = getWholeWindow();
    return component ? component->calcFarFrustumPoints(size.x, size.y) : std::vector<Vec4>();
}

void SceneGraph::calcFrustumHullTriangles(const GraphicsSystem2::SceneRenderParams &params,
                                          std::vector<Vec4> &triangles)
{
    const Vec4 size = params.getFittedSize();
    if (ViewerComponent *component = findViewer(params.viewer))
        component->calcFrustumHullTriangles(size.x, size.y, triangles);
}

ErrorCode SceneGraph::collectVisibleObjects(const GraphicsSystem2::SceneRenderParams &params, Scratch &lists)
{
    const RequestHandle request = getNextRequestHandle();
    calcFrustumHullTriangles(params, lists.hullTriangles);
    const auto viewer = params.viewer.lookup();
    const auto coordinator = viewer ? viewer->getAncestorOfType<Coordinator>().lookup() : Handle<Coordinator>::Result{};
    if (!coordinator)
        return ErrorCode::SUCCESS;
    for (auto child = coordinator->children_begin(); child != coordinator->children_end(); ++child)
    {
        const auto map = handle_cast<MapRootEntity>(*child).lookup();
        if (!map)
            continue;
        const ErrorCode result = collectVisibleObjectsInMap(*map, lists, request, params.layer);
        KV_ASSERT(result.succeeded(), result);
        if (!result.succeeded())
            return result;
    }
    leaveOutUnseen(params, lists.objectsToDraw);
    return ErrorCode::SUCCESS;
}

/// The grid knows of footprints only: above, below and beside what a viewer sees there is more, and less than a third
/// of a shadow map's casters may lie in the cone of its light.
void SceneGraph::leaveOutUnseen(const GraphicsSystem2::SceneRenderParams &params, LayerComponentList &objectsToDraw)
{
    static const String shadowSet = SCS("Shadow");
    typedef TransformComponent T;
    ViewerComponent *viewer = findViewer(params.viewer);
    T *const transform = componentOf<T>(params.viewer, ComponentKeys::transform);
    if (!viewer || !transform)
        return;
    const Vec4 size = params.getFittedSize();
    const Matrix4 worldToView = transform->getCameraMatrix(T::INTO_WORLD_SPACE | T::INVERT | T::OMIT_SCALE);
    ViewVolume volume(worldToView, viewer->getProjectionMatrix(size.x, size.y));
    if (params.shaderSet == shadowSet && viewer->getProjectionType() == ViewerComponent::PERSPECTIVE)
        narrowToLight(volume, worldToView, std::fabs(viewer->getVerticalFieldOfViewAngle()) / 2);
    std::erase_if(objectsToDraw,
                  [&volume](const Handle<GraphicsComponent2> &component)
                  {
                      const Vec4 sphere = component.lookup()->getBoundingSphere();
                      return sphere.w >= 0.0f && volume.excludes(sphere, sphere.w);
                  });
}

ErrorCode SceneGraph::collectVisibleObjectsInMap(MapRootEntity &map, Scratch &lists, RequestHandle request, Layer layer)
{
    static const String category = SCS("SceneGraph::collectVisibleObjectsInMap");
    static const String rasterizeSection = SCS("rasterize");
    static const String collectionSection = SCS("collection");
    const ProfilerScope scope(category, String());
    const auto grid = PartitioningGrid::ofMap(getHandle(&map)).lookup();
    if (!grid)
        return ErrorCode::SUCCESS;

    lists.cells.clear();
    {
        const ProfilerScope section(category, rasterizeSection);
        const std::vector<Vec4> &hull = lists.hullTriangles;
        for (std::size_t i = 0; i + 2 < hull.size(); i += 3)
            grid->rasterizeTriangle(hull[i], hull[i + 1], hull[i + 2], lists.cells, request);
    }
    const ProfilerScope section(category, collectionSection);
    for (const Vec4 &cell : lists.cells)
    {
        const int x = static_cast<int>(cell.x), z = static_cast<int>(cell.z);
        collectObjectsFromGridVolumeList(grid->getGridCellList(x, z), lists.objectsToDraw, request, layer);
        collectObjectsFromGridVolumeList(grid->getStaticGridCellList(x, z), lists.objectsToDraw, request, layer);
    }
    return ErrorCode::SUCCESS;
}

void SceneGraph::collectObjectsFromGridVolumeList(VolumeList volumes, LayerComponentList &objectsToDraw,
                                                  RequestHandle request, Layer layer)
{
    for (const Handle<BoundingVolume> &hVolume : volumes)
    {
        const auto volume = hVolume.lookup();
        if (!volume || volume->getLastRequest() == request)
            continue;
        volume->setLastRequest(request);
        Entity *const owner = findOwner(*volume);
        if (!owner)
            continue;
        const auto hComponent = handle_cast<GraphicsComponent2>(owner->getComponent(ComponentKeys::graphics2));
        const auto component = hComponent.lookup();
        if (!component || component->getLastRequest() == request || !component->getVisible() ||
            component->getLayer() != layer)
            continue;
        objectsToDraw.push_back(hComponent);
        component->setLastRequest(request);
    }
}
