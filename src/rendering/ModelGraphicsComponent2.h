// ModelGraphicsComponent2: a model with its four maps, placed by its entity's transform.
#pragma once

#include "rendering/GraphicsComponent2.h"
#include "rendering/SurfaceTextures.h"

class MeshAsset;

/// A drawn model: one mesh, and a diffuse, normal, emissive and specular map.
///
/// Models of the same mesh and maps share one instanced draw call. Names are those of the asset loaders; naming
/// another asset after loading requests it at once. A mesh or map that fails to load leaves a gap, never a fault.
class ModelGraphicsComponent2 : public GraphicsComponent2
{
    KV_REFLECTED(ModelGraphicsComponent2)
public:
    ModelGraphicsComponent2() = default;

    /// Requests the mesh and the maps, then enters the scene graph. Maps without a name get neutral ones.
    void onLoadComplete() override;

    GraphicsSystem2::BatchRenderParams batchGetParams() override;
    void objectDraw(BatchProxy &batch) override;
    bool doBatchCompare(const Handle<GraphicsComponent2> &rhs) const override;
    Vec4 getBoundingSphere() override;

    Handle<MeshAsset> getMesh() const { return mesh; }
    /// Draws another mesh from now on.
    void setMesh(Handle<MeshAsset> val) { mesh = val; }
    String getMeshName() const { return meshName; }
    /// Name of the model file, without folder and extension.
    void setMeshName(const String &val);

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
    void requestMesh();

    Handle<MeshAsset> mesh;
    String meshName;
    SurfaceTextures surface;
    bool loaded = false; ///< from onLoadComplete on, a new name requests its asset at once
};
