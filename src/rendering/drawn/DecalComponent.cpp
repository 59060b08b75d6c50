#include "rendering/drawn/DecalComponent.h"

#include "rendering/frame/RenderParams.h"
#include "rendering/drawn/SurfaceTextures.h"
#include "rendering/drawn/UnitMeshes.h"

#include "assets/models/MeshAsset.h"
#include "assets/cache/TextureAsset.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/precompile.h"

namespace
{

/// Names that stay the same from batch to batch, made once.
struct DecalNames
{
    const String defaultSet = SCS("Default");
    const GraphicsSystem2::ShaderID shader{SCS("test.fx"), SCS("Projective_texture")};
    const String modelToWorld = SCS("modelToWorld");
    const String decalAlpha = SCS("decalAlpha");
    const String diffuseMap = SCS("diffuseMap_texture");
};

} // namespace

void DecalComponent::onLoadComplete()
{
    loaded = true;
    if (!textureName.empty())
        texture = requestTexture(textureName);
    expectLayer({SceneGraph::DECAL});
    GraphicsComponent2::onLoadComplete();
}

GraphicsSystem2::BatchRenderParams DecalComponent::batchGetParams()
{
    static const DecalNames names;
    mesh = getUnitCube();
    GraphicsSystem2::BatchRenderParams params;
    params.mesh = mesh;
    params.shaders.insert(names.defaultSet, names.shader);
    const Matrix4 modelToWorld = findTransform()->getTransformationMatrix(TransformComponent::USE_OFFSET);
    params.shaderConstants.emplace_back(names.modelToWorld, modelToWorld.transpose());
    params.shaderConstants.emplace_back(names.decalAlpha, alpha);
    params.shaderConstants.emplace_back(names.diffuseMap, texture);
    return params;
}

void DecalComponent::objectDraw(BatchProxy &batch) {}

int DecalComponent::objectGetInstanceCount()
{
    TransformComponent *transform = expectTransform();
    if (!transform || alpha <= 0.0f)
        return 0;
    const Vec4 scale = transform->getScale();
    return scale.x * scale.y * scale.z != 0.0f ? 1 : 0; // a flat box has no inside for a surface to lie in
}

void DecalComponent::setAlpha(float val)
{
    alpha = val > 0.0f ? saturate(val) : 0.0f; // what is no number goes to 0
}

void DecalComponent::setTextureName(const String &val)
{
    textureName = val;
    if (loaded)
        texture = val.empty() ? Handle<TextureAsset>() : requestTexture(val);
}
