// ModelGraphicsComponent2: a model with its four maps, placed by its entity's transform.
#pragma once

#include "rendering/drawn/GraphicsComponent2.h"
#include "rendering/drawn/SurfaceTextures.h"

class MeshAsset;

/// A drawn model: one mesh, and a diffuse, normal, emissive and specular map.
///
/// Models of the same mesh and maps share one instanced draw call. Names are those of the asset loaders; naming
/// another asset after loading requests it at once. A mesh or map that fails to load leaves a gap, never a fault.
class ModelGraphicsComponent2 : public GraphicsComponent2, public SurfaceTextures
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

private:
    void requestMesh();

    Handle<MeshAsset> mesh;
    String meshName;
    bool loaded = false; ///< from onLoadComplete on, a new name requests its asset at once
};
