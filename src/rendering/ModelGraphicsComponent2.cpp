#include "rendering/ModelGraphicsComponent2.h"

#include "rendering/BatchProxy.h"
#include "rendering/RenderParams.h"

#include "assets/AssetSystem.h"
#include "assets/MeshAsset.h"
#include "assets/MeshAssetLoader.h"
#include "assets/TextureAsset.h"
#include "assets/TextureAssetLoader.h"
#include "engine/TransformComponent.h"

#include "foundation/Assertions.h"

#include <cstring>
#include <tuple>

namespace
{

/// What stays the same from batch to batch, made once.
struct BatchConstants
{
    const String defaultSet = SCS("Default");
    const String shadowSet = SCS("Shadow");
    const String zPrePassSet = SCS("ZPrePass");
    const GraphicsSystem2::ShaderID defaultShader{SCS("ff.fx"), SCS("Crappy")};
    const GraphicsSystem2::ShaderID shadowShader{SCS("ff.fx"), SCS("CrappyShadow")};
    const GraphicsSystem2::ShaderID zPrePassShader{SCS("ff.fx"), SCS("CrappyZPrePass")};
    const String diffuseMap = SCS("diffuseMap_texture");
    const String normalMap = SCS("normalMap_texture");
    const String emissiveMap = SCS("emissiveMap_texture");
    const String specularMap = SCS("specularMap_texture");
};

DefaultInstanceVertex makeInstance(TransformComponent &transform)
{
    typedef TransformComponent T;
    const Matrix4 model = transform.getTransformationMatrix(T::USE_OFFSET);
    const Matrix4 normal = transform.getTransformationMatrix(T::TRANSPOSE | T::INVERT);
    DefaultInstanceVertex instance;
    std::memcpy(instance.modelMatrix, model.data, sizeof(instance.modelMatrix));
    for (int row = 0; row < 3; ++row)
        instance.normalMatrix[row] = {normal[row][0], normal[row][1], normal[row][2]};
    return instance;
}

/// Requests a map by its file name, or by a default; with neither, what is there already stays.
void requestTexture(Handle<TextureAsset> &texture, const String &name, const char *defaultName = nullptr)
{
    if (name.empty() && (!defaultName || texture.isValid()))
        return;
    const String fileName = name.empty() ? SCS(defaultName) : name;
    texture = handle_cast<TextureAsset>(getSystemDeref<AssetSystem>().startLoad(
        TextureAssetLoader::staticType, fileName, nullptr, getNextRequestHandle()));
}

} // namespace

void ModelGraphicsComponent2::onLoadComplete()
{
    loaded = true;
    requestMesh();
    requestTexture(texture, textureName);
    requestTexture(normalTexture, normalTextureName, "flatNormal.dds");
    requestTexture(emissiveTexture, emissiveTextureName, "black.dds");
    requestTexture(specularTexture, specularTextureName, "black.dds");
    GraphicsComponent2::onLoadComplete();
}

GraphicsSystem2::BatchRenderParams ModelGraphicsComponent2::batchGetParams()
{
    static const BatchConstants constants;
    GraphicsSystem2::BatchRenderParams params;
    params.instanceType = MVT_DEFAULT_INSTANCE;
    params.mesh = mesh;
    params.shaders.insert(constants.defaultSet, constants.defaultShader);
    params.shaders.insert(constants.shadowSet, constants.shadowShader);
    params.shaders.insert(constants.zPrePassSet, constants.zPrePassShader);
    params.shaderConstants.emplace_back(constants.diffuseMap, texture);
    params.shaderConstants.emplace_back(constants.normalMap, normalTexture);
    params.shaderConstants.emplace_back(constants.emissiveMap, emissiveTexture);
    params.shaderConstants.emplace_back(constants.specularMap, specularTexture);
    return params;
}

void ModelGraphicsComponent2::objectDraw(BatchProxy &batch)
{
    static const String transformKey = SCS("transform");
    const auto transform = handle_cast<TransformComponent>(getSibling(transformKey)).lookup();
    // Told once: a frame later nothing has changed.
    KV_ASSERT(transform || missingTransformTold, "ModelGraphicsComponent2 had no transform sibling");
    missingTransformTold = !transform;
    if (transform)
        batch.addInstanceData(makeInstance(*transform));
}

bool ModelGraphicsComponent2::doBatchCompare(const Handle<GraphicsComponent2> &rhs) const
{
    const auto object = rhs.lookup();
    if (!object || object->getType() != getType())
        return false;
    const auto *other = static_cast<const ModelGraphicsComponent2 *>(object.ptr);
    // Later assets first: a level names its walls before what stands in front of them, and what is hidden when its
    // turn comes is not shaded.
    return std::tie(mesh, texture, normalTexture, emissiveTexture, specularTexture) >
           std::tie(other->mesh, other->texture, other->normalTexture, other->emissiveTexture, other->specularTexture);
}

void ModelGraphicsComponent2::setMeshName(const String &val)
{
    meshName = val;
    if (loaded)
        requestMesh();
}

void ModelGraphicsComponent2::requestMesh()
{
    if (!meshName.empty())
        mesh = handle_cast<MeshAsset>(getSystemDeref<AssetSystem>().startLoad(MeshAssetLoader::staticType, meshName,
                                                                              nullptr, getNextRequestHandle()));
}

void ModelGraphicsComponent2::setTextureName(const String &val)
{
    textureName = val;
    if (loaded)
        requestTexture(texture, val);
}

void ModelGraphicsComponent2::setNormalTextureName(const String &val)
{
    normalTextureName = val;
    if (loaded)
        requestTexture(normalTexture, val, "flatNormal.dds");
}

void ModelGraphicsComponent2::setEmissiveTextureName(const String &val)
{
    emissiveTextureName = val;
    if (loaded)
        requestTexture(emissiveTexture, val, "black.dds");
}

void ModelGraphicsComponent2::setSpecularTextureName(const String &val)
{
    specularTextureName = val;
    if (loaded)
        requestTexture(specularTexture, val, "black.dds");
}
