// DecalComponent: a picture projected onto what stands in its way.
#pragma once

#include "rendering/drawn/GraphicsComponent2.h"

class MeshAsset;
class TextureAsset;

/// A picture thrown along the entity's z axis onto every surface within the box of the entity's scale.
///
/// The box stands around the transform's position; the picture fills its x and y extents, upright, and shows through
/// its whole depth on surfaces that face against that axis. It changes their colour only: shape and highlights stay.
/// Belongs in the layer DECAL, where the map's grid finds it by its entity's "boundingVolume".
class DecalComponent : public GraphicsComponent2
{
    KV_REFLECTED(DecalComponent)
public:
    DecalComponent() = default;

    /// Requests the picture, then enters the scene graph.
    void onLoadComplete() override;

    GraphicsSystem2::BatchRenderParams batchGetParams() override;
    /// Writes nothing: every decal is a draw call of its own.
    void objectDraw(BatchProxy &batch) override;
    /// 0, and nothing drawn, for a decal that is wholly clear, flat or without a transform.
    int objectGetInstanceCount() override;

    float getAlpha() const { return alpha; }
    /// How much of the picture shows: 0 nothing, 1 as much as its own alpha says; other numbers go to the nearer end.
    void setAlpha(float val);

    Handle<TextureAsset> getTexture() const { return texture; }
    /// The picture.
    void setTexture(Handle<TextureAsset> val) { texture = val; }
    String getTextureName() const { return textureName; }
    /// Name of the picture's file.
    void setTextureName(const String &val);

private:
    float alpha = 1.0f; ///< 0..1
    Handle<TextureAsset> texture;
    String textureName;
    Handle<MeshAsset> mesh; ///< the unit cube, shared by all decals
    bool loaded = false;    ///< from onLoadComplete on, a new name requests its texture at once
};
