// WorldBasedTCBoxGraphicsComponent: a box whose texture lies in the world and runs on from box to box.
#pragma once

#include "rendering/drawn/GraphicsComponent2.h"
#include "rendering/drawn/SurfaceTextures.h"

#include "engine/entities/ObjectGroupComponent.h"
#include "foundation/Matrix4.h"

class DynamicMeshAsset;

/// A box in the place of its entity's transform, as large as its scale: walls, floors and steps of one stuff.
///
/// Texture coordinates are world positions, along the two axes that a face turns to least, so that boxes side by side
/// show no seam. The mesh stands in world space and is made anew when the transform or the texture's scale has changed,
/// which is seen when the box is drawn: a box that moves in every frame is better a model.
class WorldBasedTCBoxGraphicsComponent : public GraphicsComponent2, public SurfaceTextures
{
    KV_REFLECTED(WorldBasedTCBoxGraphicsComponent)
public:
    WorldBasedTCBoxGraphicsComponent() = default;

    /// Requests the maps, then enters the scene graph.
    void onLoadComplete() override;

    GraphicsSystem2::BatchRenderParams batchGetParams() override;
    /// Writes nothing: every box is a draw call of its own.
    void objectDraw(BatchProxy &batch) override;
    /// 0, and nothing drawn, without a transform.
    int objectGetInstanceCount() override;
    /// Boxes of the same maps follow each other, so that the device changes them less often.
    bool doBatchCompare(const Handle<GraphicsComponent2> &rhs) const override;

    ObjectGroupComponent::Group getGroup() const { return group; }
    /// What the box is in the level; a mark for those who build and search levels, not seen in the picture.
    void setGroup(ObjectGroupComponent::Group val) { group = val; }

    float getTextureScale() const { return textureScale; }
    /// Repeats of the maps a metre.
    void setTextureScale(float val);

    /// What is drawn, in world space; invalid before the box is first drawn.
    Handle<DynamicMeshAsset> getMesh() const { return mesh; }

private:
    void rebuild(const Matrix4 &placement);

    ObjectGroupComponent::Group group = ObjectGroupComponent::NONE;
    float textureScale = 1.0f;      ///< repeats a metre
    Handle<DynamicMeshAsset> mesh;  ///< world space; invalid before the box is first drawn
    Matrix4 builtPlacement;         ///< what the mesh was made for
    float builtTextureScale = 0.0f; ///< what the mesh was made for
};
