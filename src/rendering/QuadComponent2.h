// QuadComponent2: a picture on the screen plane or in the world.
#pragma once

#include "rendering/FlatGraphicsComponent.h"
#include "rendering/SurfaceTextures.h"

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
class QuadComponent2 : public FlatGraphicsComponent
{
    KV_REFLECTED(QuadComponent2)
public:
    QuadComponent2() = default;

    /// Requests the maps, then enters the scene graph.
    void onLoadComplete() override;

    GraphicsSystem2::BatchRenderParams batchGetParams() override;
    void objectDraw(BatchProxy &batch) override;
    bool doBatchCompare(const Handle<GraphicsComponent2> &rhs) const override;

    Handle<TextureAsset> getTexture() const { return surface.texture; }
    /// Diffuse map.
    void setTexture(Handle<TextureAsset> val) { surface.texture = val; }
    String getTextureName() const { return surface.textureName; }
    /// File name of the diffuse map, with extension.
    void setTextureName(const String &val) { surface.setTextureName(val); }

    Handle<TextureAsset> getNormalTexture() const { return surface.normalTexture; }
    /// Normal map, in tangent space.
    void setNormalTexture(Handle<TextureAsset> val) { surface.normalTexture = val; }
    String getNormalTextureName() const { return surface.normalTextureName; }
    /// File name of the normal map, with extension; "flatNormal.dds" where none is given.
    void setNormalTextureName(const String &val) { surface.setNormalTextureName(val); }

    Handle<TextureAsset> getEmissiveTexture() const { return surface.emissiveTexture; }
    /// Light that the surface gives off by itself.
    void setEmissiveTexture(Handle<TextureAsset> val) { surface.emissiveTexture = val; }
    String getEmissiveTextureName() const { return surface.emissiveTextureName; }
    /// File name of the emissive map, with extension; "black.dds" where none is given.
    void setEmissiveTextureName(const String &val) { surface.setEmissiveTextureName(val); }

    Handle<TextureAsset> getSpecularTexture() const { return surface.specularTexture; }
    /// Colour and strength of highlights.
    void setSpecularTexture(Handle<TextureAsset> val) { surface.specularTexture = val; }
    String getSpecularTextureName() const { return surface.specularTextureName; }
    /// File name of the specular map, with extension; "black.dds" where none is given.
    void setSpecularTextureName(const String &val) { surface.setSpecularTextureName(val); }

private:
    float getSortDepth() const;

    SurfaceTextures surface;
};
