// DebugLineGraphicsComponent: draws the lines that a debug collector shows.
#pragma once

#include "rendering/drawn/GraphicsComponent2.h"

#include "assets/models/Mesh.h"

class DebugCollectorComponent;
class DynamicMeshAsset;

/// Draws a collector's lines: those of the world in the layer WORLD_DEBUG, those of the screen in SCREEN_DEBUG.
///
/// One draw call of a mesh that is made anew in every frame that has lines. Needs no transform.
class DebugLineGraphicsComponent : public GraphicsComponent2
{
    KV_REFLECTED(DebugLineGraphicsComponent)
public:
    DebugLineGraphicsComponent() = default;

    void onLoadComplete() override;

    GraphicsSystem2::BatchRenderParams batchGetParams() override;
    void objectDraw(BatchProxy &batch) override;
    /// 0 while there are no lines.
    int objectGetInstanceCount() override;
    ErrorCode batchPreRender() override;

    Handle<DebugCollectorComponent> getCollector() const { return collector; }
    /// Whose lines are drawn.
    void setCollector(Handle<DebugCollectorComponent> val) { collector = val; }

private:
    Handle<DebugCollectorComponent> collector;
    Handle<DynamicMeshAsset> mesh;
    Mesh::VertexBufferType vertices; ///< kept for the next frame
};
