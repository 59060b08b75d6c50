#include "rendering/drawn/WorldBasedTCBoxGraphicsComponent.h"

#include "rendering/drawn/SurfaceShaders.h"
#include "rendering/drawn/UnitMeshes.h"

#include "assets/models/DynamicMeshAsset.h"
#include "assets/building/MeshBuilder.h"
#include "engine/transforms/TransformComponent.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

void WorldBasedTCBoxGraphicsComponent::onLoadComplete()
{
    loadTextures();
    GraphicsComponent2::onLoadComplete();
}

GraphicsSystem2::BatchRenderParams WorldBasedTCBoxGraphicsComponent::batchGetParams()
{
    static const SurfaceShaders shaders(SCS("CrappyWorldSpaceTriangles"), SCS("CrappyWorldSpaceTrianglesShadow"),
                                        SCS("CrappyWorldSpaceTrianglesZPrePass"));
    const Matrix4 placement = findTransform()->getTransformationMatrix(TransformComponent::USE_OFFSET);
    // By its bits, so that a place that is no number is not built anew in every frame.
    typedef std::array<std::uint32_t, 16> Bits;
    const bool moved = std::bit_cast<Bits>(placement) != std::bit_cast<Bits>(builtPlacement);
    if (moved || !mesh.isValid() || textureScale != builtTextureScale)
        rebuild(placement);
    GraphicsSystem2::BatchRenderParams params;
    params.mesh = mesh;
    shaders.addTo(params);
    addTexturesTo(params, *this);
    return params;
}

void WorldBasedTCBoxGraphicsComponent::objectDraw(BatchProxy &batch) {}

int WorldBasedTCBoxGraphicsComponent::objectGetInstanceCount()
{
    return expectTransform() ? 1 : 0;
}

bool WorldBasedTCBoxGraphicsComponent::doBatchCompare(const Handle<GraphicsComponent2> &rhs) const
{
    const auto object = rhs.lookup();
    if (!object || object->getType() != getType())
        return false;
    const auto textures = getTextures();
    const auto others = static_cast<const WorldBasedTCBoxGraphicsComponent *>(object.ptr)->getTextures();
    return textures != others ? textures < others : GraphicsComponent2::doBatchCompare(rhs);
}

void WorldBasedTCBoxGraphicsComponent::setTextureScale(float val)
{
    textureScale = std::isfinite(val) ? val : 1.0f;
}

void WorldBasedTCBoxGraphicsComponent::rebuild(const Matrix4 &placement)
{
    if (!mesh.isValid())
        mesh = makeDynamicMesh(*this);
    const auto asset = mesh.lookup();
    if (!asset)
        return;
    MeshBuilder builder;
    builder.addBox(Vec4(0.5f, 0.5f, 0.5f, 0), placement);
    builder.applyWorldTextureCoordinates(textureScale);
    builder.generateTangents();
    asset->setMeshData(builder);
    builtPlacement = placement;
    builtTextureScale = textureScale;
}
