// SceneGraph: what of the culled layers a viewer may see.
#include "rendering/SceneGraph.h"

#include "rendering/GraphicsComponent2.h"
#include "rendering/RenderParams.h"
#include "rendering/SceneGraphScratch.h"
#include "rendering/ViewerComponent.h"
#include "rendering/WholeWindow.h"

#include "engine/Coordinator.h"
#include "engine/Entity.h"
#include "engine/MapRootEntity.h"

#include "foundation/Assertions.h"
#include "foundation/ProfilerScope.h"

namespace
{

ViewerComponent *findViewer(const Handle<Entity> &hViewer)
{
    static const String viewerKey = SCS("viewer");
    const auto entity = hViewer.lookup();
    if (!entity)
        return nullptr;
    const auto viewer = handle_cast<ViewerComponent>(entity->getComponent(viewerKey)).lookup();
    return viewer ? &*viewer : nullptr;
}

IVisibilitySource *findGrid(MapRootEntity &map)
{
    static const String gridEntity = SCS(".MapData_partitioningGrid");
    static const String gridKey = SCS("partitioning");
    const auto entity = map.getChild(gridEntity).lookup();
    const auto grid = entity ? entity->getChild(gridKey).lookup() : Handle<Object>::Result{};
    return grid ? dynamic_cast<IVisibilitySource *>(&*grid) : nullptr;
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

void SceneGraph::calcFrustumHullTriangles(const Handle<Entity> &viewer, std::vector<Vec4> &triangles)
{
    const WindowCoordinate size = getWholeWindow();
    if (ViewerComponent *component = findViewer(viewer))
        component->calcFrustumHullTriangles(size.x, size.y, triangles);
}

ErrorCode SceneGraph::collectVisibleObjects(const GraphicsSystem2::SceneRenderParams &params, Scratch &lists)
{
    const RequestHandle request = getNextRequestHandle();
    calcFrustumHullTriangles(params.viewer, lists.hullTriangles);
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
    return ErrorCode::SUCCESS;
}

ErrorCode SceneGraph::collectVisibleObjectsInMap(MapRootEntity &map, Scratch &lists, RequestHandle request, Layer layer)
{
    static const String category = SCS("SceneGraph::collectVisibleObjectsInMap");
    static const String rasterizeSection = SCS("rasterize");
    static const String collectionSection = SCS("collection");
    const ProfilerScope scope(category, String());
    IVisibilitySource *grid = findGrid(map);
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
        lists.owners.clear();
        grid->collectOwners(static_cast<int>(cell.x), static_cast<int>(cell.z), request, lists.owners);
        collectObjectsFromGridVolumeList(lists.owners, lists.objectsToDraw, request, layer);
    }
    return ErrorCode::SUCCESS;
}

void SceneGraph::collectObjectsFromGridVolumeList(const std::vector<Handle<Entity>> &owners,
                                                  LayerComponentList &objectsToDraw, RequestHandle request, Layer layer)
{
    static const String graphicsKey = SCS("graphics2");
    for (const Handle<Entity> &hOwner : owners)
    {
        const auto owner = hOwner.lookup();
        if (!owner)
            continue;
        const auto hComponent = handle_cast<GraphicsComponent2>(owner->getComponent(graphicsKey));
        const auto component = hComponent.lookup();
        if (!component || component->getLastRequest() == request || !component->getVisible() ||
            component->getLayer() != layer)
            continue;
        objectsToDraw.push_back(hComponent);
        component->setLastRequest(request);
    }
}
