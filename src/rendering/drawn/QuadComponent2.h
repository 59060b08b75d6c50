// QuadComponent2: a picture on the screen plane or in the world.
#pragma once

#include "rendering/drawn/FlatGraphicsComponent.h"
#include "rendering/drawn/SurfaceTextures.h"

/// A flat picture: a rectangle of the size of its entity's scale, standing on the transform's position by its anchors.
///
/// The diffuse map is what is seen, blended by its alpha; what is wholly clear hides nothing. Quads of the same maps
/// and depth share one draw call.
///
/// On the screen (layers SCREEN and SCREEN_DEBUG) the position's z is the depth: deeper quads are drawn first, whatever
/// order they were made in. In the world a quad lies in the plane of its entity's x and y axes and is seen from both
/// sides. WORLD_DEBUG lays it over the finished picture, at its full brightness in the dark; DECAL paints it onto what
/// is right behind it, which keeps its shape and lights it: a poster on a wall, found by its entity's "boundingVolume".
/// Quads have no place among the solid things of the other layers, since they blend.
class QuadComponent2 : public FlatGraphicsComponent, public SurfaceTextures
{
    KV_REFLECTED(QuadComponent2)
public:
    QuadComponent2() = default;

    /// Requests the maps, then enters the scene graph.
    void onLoadComplete() override;

    GraphicsSystem2::BatchRenderParams batchGetParams() override;
    void objectDraw(BatchProxy &batch) override;
    bool doBatchCompare(const Handle<GraphicsComponent2> &rhs) const override;

private:
    float getSortDepth() const;
};
