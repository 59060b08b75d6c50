// SceneGraph: turns one pass over a layer into draw calls.
#pragma once

#include "rendering/device/GraphicsSystem2.h"

#include "physics/grid/VolumeListGrid.h"

#include "engine/systems/RequestHandle.h"

#include "foundation/ErrorCode.h"
#include "foundation/Vector.h"
#include "object/tree/Object.h"

#include <memory>
#include <vector>

class Coordinator;
class Entity;
class GraphicsComponent2;
class MapRootEntity;
class ViewerComponent;

/// Lists of drawn components by layer, and the way from one of them to draw calls.
///
/// One for each GraphicsManager2. Holds components by handle and keeps nothing between passes but the lists. A pass may
/// run inside another (a light's shadow map is drawn while the lights are), so every working list is a stack.
class SceneGraph : public Object
{
    KV_REFLECTED(SceneGraph)
public:
    /// What a component is drawn as; a component is in exactly one layer.
    enum Layer
    {
        WORLD = 0,               ///< only what the viewer's frustum may see, found through the map's grid
        WORLD_UNCONDITIONAL = 1, ///< everything in the list, whatever the viewer sees
        WORLD_DEBUG = 2,         ///< debug geometry in the world
        LIGHT = 3,               ///< light volumes, found through the map's grid
        POST = 4,                ///< full-screen passes
        SCREEN = 5,              ///< objects on the screen plane
        SCREEN_DEBUG = 6,        ///< debug geometry on the screen plane
        DECAL = 7,               ///< marks on what has been drawn, found through the map's grid
        NUM_LAYERS = 8           ///< count; also the layer of a component that has none yet
    };
    typedef std::vector<Handle<GraphicsComponent2>> LayerComponentList;

    SceneGraph();
    ~SceneGraph() override;

    /// Draws one layer as the parameters say; the first failure ends the pass.
    ErrorCode render(const GraphicsSystem2::SceneRenderParams &params);
    /// Draws one thing that is in no list; UNKNOWN_KEY if it has no technique for the pass's shader set.
    ErrorCode renderOneObject(const GraphicsSystem2::SceneRenderParams &params,
                              const GraphicsSystem2::BatchRenderParams &batchParams);

    /// Appends a component to the list of its layer; one without a layer is not added.
    void addComponent(Handle<GraphicsComponent2> component);
    /// Takes a component out of the list of its layer.
    void removeComponent(Handle<GraphicsComponent2> component);

    /// Count of components in a layer's list; 0 for a number that is no layer.
    int getLayerSize(Layer layer) const;
    /// The components in a layer's list, in no promised order; borrowed until one enters or leaves. None for a number
    /// that is no layer.
    const LayerComponentList &getLayerComponents(Layer layer) const;

private:
    friend struct SceneGraphTestAccess;
    typedef std::vector<GraphicsComponent2 *> BatchObjects;
    struct Scratch;
    class ScratchScope;

    ErrorCode clearBuffers(const GraphicsSystem2::SceneRenderParams &params);
    ErrorCode setRenderTargets(const GraphicsSystem2::SceneRenderParams &params);

    ErrorCode applyParams(const GraphicsSystem2::SceneRenderParams &params,
                          const GraphicsSystem2::BatchRenderParams &batchParams);
    ErrorCode setViewerConstants(const String &effect, const GraphicsSystem2::SceneRenderParams &params);
    ErrorCode setShaderConstants(const String &effect, const GraphicsSystem2::SceneRenderParams &params,
                                 const GraphicsSystem2::BatchRenderParams &batchParams);
    ErrorCode bindTargetTextures(const String &effect, const GraphicsSystem2::SceneRenderParams &params);
    ErrorCode applyViewport(const String &effect, const GraphicsSystem2::SceneRenderParams &params);

    static void sortBatches(LayerComponentList &objects);
    ErrorCode sortListIntoBatchesAndRender(LayerComponentList &objects,
                                           const GraphicsSystem2::SceneRenderParams &params);
    ErrorCode renderSortedBatches(LayerComponentList &objects, const GraphicsSystem2::SceneRenderParams &params);
    ErrorCode renderBatch(const GraphicsSystem2::SceneRenderParams &params, const Handle<GraphicsComponent2> *begin,
                          const Handle<GraphicsComponent2> *end);
    ErrorCode drawBatch(const GraphicsSystem2::SceneRenderParams &params, GraphicsComponent2 &first,
                        std::size_t firstObject, int total);
    ErrorCode fillInstanceBuffer(MeshVertexType instanceType, std::size_t firstObject, int total);
    ErrorCode drawPasses(const GraphicsSystem2::SceneRenderParams &params,
                         const GraphicsSystem2::BatchRenderParams &batchParams, MeshVertexType instanceType,
                         int instanceCount);

    ErrorCode collectVisibleObjects(const GraphicsSystem2::SceneRenderParams &params, Scratch &lists);
    void leaveOutUnseen(const GraphicsSystem2::SceneRenderParams &params, LayerComponentList &objectsToDraw);
    ErrorCode collectVisibleObjectsInMap(MapRootEntity &map, Scratch &lists, RequestHandle request, Layer layer);
    void collectObjectsFromGridVolumeList(VolumeList volumes, LayerComponentList &objectsToDraw, RequestHandle request,
                                          Layer layer);

    std::vector<Vec4> calcFrustumPoints(const Handle<Entity> &viewer);
    std::vector<Vec4> calcFarFrustumPoints(const Handle<Entity> &viewer);
    void calcFrustumHullTriangles(const GraphicsSystem2::SceneRenderParams &params, std::vector<Vec4> &triangles);

    LayerComponentList layers[NUM_LAYERS];

    BatchObjects batchObjects;                     ///< stack: the drawn objects of the batches under way
    std::vector<std::unique_ptr<Scratch>> scratch; ///< stack: working lists of the passes under way
    std::size_t scratchDepth = 0;                  ///< passes under way
};
