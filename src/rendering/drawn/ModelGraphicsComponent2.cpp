#include "rendering/drawn/ModelGraphicsComponent2.h"

#include "rendering/device/BatchProxy.h"
#include "rendering/device/InstanceVertex.h"
#include "rendering/drawn/SurfaceShaders.h"

#include "assets/cache/AssetSystem.h"
#include "assets/models/MeshAsset.h"
#include "assets/models/MeshAssetLoader.h"

#include <algorithm>
#include <cmath>
#include <tuple>

void ModelGraphicsComponent2::onLoadComplete()
{
    loaded = true;
    requestMesh();
    loadTextures();
    GraphicsComponent2::onLoadComplete();
}

GraphicsSystem2::BatchRenderParams ModelGraphicsComponent2::batchGetParams()
{
    static const SurfaceShaders shaders(SCS("Crappy"), SCS("CrappyShadow"), SCS("CrappyZPrePass"));
    GraphicsSystem2::BatchRenderParams params;
    params.instanceType = MVT_DEFAULT_INSTANCE;
    params.mesh = mesh;
    shaders.addTo(params);
    addTexturesTo(params, *this);
    return params;
}

void ModelGraphicsComponent2::objectDraw(BatchProxy &batch)
{
    TransformComponent *transform = expectTransform();
    if (transform)
        batch.addInstanceData(
            makeInstanceVertex(*transform, transform->getTransformationMatrix(TransformComponent::USE_OFFSET)));
}

Vec4 ModelGraphicsComponent2::getBoundingSphere()
{
    TransformComponent *transform = findTransform();
    const Vec4 sphere = getSystemDeref<GraphicsSystem2>().getMeshSphere(mesh);
    if (!transform || sphere.w < 0.0f)
        return Vec4(0, 0, 0, -1);
    const Vec4 scale = transform->getScale();
    const float largest = std::max({std::fabs(scale.x), std::fabs(scale.y), std::fabs(scale.z)});
    Vec4 placed =
        transform->getTransformationMatrix(TransformComponent::USE_OFFSET) * Vec4(sphere.x, sphere.y, sphere.z, 1);
    placed.w = sphere.w * largest;
    return placed;
}

bool ModelGraphicsComponent2::doBatchCompare(const Handle<GraphicsComponent2> &rhs) const
{
    const auto object = rhs.lookup();
    if (!object || object->getType() != getType())
        return false;
    const auto *other = static_cast<const ModelGraphicsComponent2 *>(object.ptr);
    // Later assets first: a level names its walls before what stands in front of them, and what is hidden when its
    // turn comes is not shaded.
    return std::tuple(mesh, getTextures()) > std::tuple(other->mesh, other->getTextures());
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
