#include "rendering/drawn/QuadComponent2.h"

#include "rendering/device/BatchProxy.h"
#include "rendering/device/InstanceVertex.h"
#include "rendering/drawn/SurfaceShaders.h"
#include "rendering/drawn/UnitMeshes.h"

#include "assets/models/MeshAsset.h"

#include <cmath>

void QuadComponent2::onLoadComplete()
{
    expectLayer({SceneGraph::SCREEN, SceneGraph::SCREEN_DEBUG, SceneGraph::WORLD_DEBUG, SceneGraph::DECAL});
    loadTextures();
    FlatGraphicsComponent::onLoadComplete();
}

GraphicsSystem2::BatchRenderParams QuadComponent2::batchGetParams()
{
    static const SurfaceShaders shaders(SCS("CrappyTexturedQuads"), SCS("CrappyTexturedQuadsShadow"),
                                        SCS("CrappyTexturedQuadsZPrePass"));
    GraphicsSystem2::BatchRenderParams params;
    params.instanceType = MVT_DEFAULT_INSTANCE;
    params.mesh = getUnitQuad();
    shaders.addTo(params);
    addTexturesTo(params, *this);
    return params;
}

void QuadComponent2::objectDraw(BatchProxy &batch)
{
    TransformComponent *transform = expectTransform();
    if (!transform)
        return;
    Matrix4 anchor;
    anchor.translate(Vec4(-0.5f * static_cast<float>(getHorizontalAnchorPoint()),
                          -0.5f * static_cast<float>(getVerticalAnchorPoint()), 0, 1));
    const Matrix4 model = transform->getTransformationMatrix(TransformComponent::USE_OFFSET) * anchor;
    batch.addInstanceData(makeInstanceVertex(*transform, model));
}

bool QuadComponent2::doBatchCompare(const Handle<GraphicsComponent2> &rhs) const
{
    const auto object = rhs.lookup();
    if (!object || object->getType() != getType())
        return false;
    const auto *other = static_cast<const QuadComponent2 *>(object.ptr);
    // What shines through must be there first.
    const float depth = getSortDepth(), otherDepth = other->getSortDepth();
    if (depth != otherDepth)
        return depth > otherDepth;
    return getTextures() < other->getTextures();
}

float QuadComponent2::getSortDepth() const
{
    const bool onScreen = getLayer() == SceneGraph::SCREEN || getLayer() == SceneGraph::SCREEN_DEBUG;
    const TransformComponent *transform = onScreen ? findTransform() : nullptr;
    const float depth = transform ? transform->getPosition().z : 0.0f;
    return std::isfinite(depth) ? depth : 0.0f; // a depth that is no number has no place in an order
}
