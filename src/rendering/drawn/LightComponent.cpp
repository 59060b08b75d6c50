#include "rendering/drawn/LightComponent.h"

#include "rendering/device/D3DPerfScopedEvent.h"
#include "rendering/frame/GraphicsManager2.h"
#include "rendering/frame/RenderParams.h"
#include "rendering/drawn/SurfaceTextures.h"
#include "rendering/frame/ViewerComponent.h"

#include "assets/cache/AssetSystem.h"
#include "assets/models/MeshAsset.h"
#include "assets/models/MeshAssetLoader.h"
#include "assets/cache/TextureAsset.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/debug/DebugCollector.h"
#include "engine/entities/Entity.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/transforms/ParentFollowerComponent.h"
#include "engine/transforms/TransformComponent.h"
#include "physics/volumes/BoundingVolume.h"

#include "foundation/Assertions.h"
#include "object/python/PythonCalls.h"

#include <algorithm>
#include <cmath>

namespace
{

/// What stays the same from light to light, made once.
struct LightNames
{
    const String dummy = SCS(".partitioningDummy");

    const String defaultSet = SCS("Default");
    const String shadowSet = SCS("Shadow");
    const String shadowMap = SCS("ShadowMap");
    const GraphicsSystem2::ShaderID sphereLight{SCS("lights.fx"), SCS("SphereLight")};
    const GraphicsSystem2::ShaderID spotLight{SCS("lights.fx"), SCS("SpotLight")};
    const GraphicsSystem2::ShaderID spotShadowsLight{SCS("lights.fx"), SCS("SpotShadowsLight")};
    const GraphicsSystem2::ShaderID spotShadowsLens{SCS("lights.fx"), SCS("SpotShadowsLens")};

    const String modelToWorld = SCS("modelToWorld");
    const String spotInnerAngleCos = SCS("spotInnerAngleCos");
    const String spotOuterAngleCos = SCS("spotOuterAngleCos");
    const String lightDiffuseColor = SCS("lightDiffuseColor");
    const String lightSpecularColor = SCS("lightSpecularColor");
    const String spotFalloff = SCS("spotFalloff");
    const String lightFalloffBegin = SCS("lightFalloffBegin");
    const String lightFalloffEnd = SCS("lightFalloffEnd");
    const String lightPosition = SCS("lightPosition_ViewSpace");
    const String spotDirection = SCS("spotDirection_ViewSpace");
    const String worldToLightView = SCS("worldToLightView");
    const String lightViewToLightProjection = SCS("lightViewToLightProjection");
    const String lensTexture = SCS("lens_texture");
    const String lensRight = SCS("lensRight_ViewSpace");
    const String lensUp = SCS("lensUp_ViewSpace");
};

const LightNames &names()
{
    static const LightNames theNames;
    return theNames;
}

/// View matrix of the camera that the level is drawn with; the identity without one.
Matrix4 currentWorldToView(const Handle<AbstractManager> &hManager)
{
    typedef TransformComponent T;
    const auto manager = handle_cast<GraphicsManager2>(hManager).lookup();
    T *camera = manager ? componentOf<T>(manager->getCurrentCamera(), ComponentKeys::transform) : nullptr;
    return camera ? camera->getCameraMatrix(T::INTO_WORLD_SPACE | T::INVERT | T::OMIT_SCALE) : Matrix4();
}

/// Where a light stands and faces, free of the scale that its transform carries for the volume's mesh.
struct Pose
{
    Vec4 position; ///< w 1
    Vec4 right;
    Vec4 up;
    Vec4 forward; ///< of length 1, w 0

    explicit Pose(TransformComponent &transform)
    {
        typedef TransformComponent T;
        const Matrix4 axes = transform.getTransformationMatrix(T::INTO_WORLD_SPACE | T::OMIT_SCALE);
        right = axes.getColumn(0);
        up = axes.getColumn(1);
        forward = axes.getColumn(2);
        forward.normalize();
        position = axes.getColumn(3);
    }
};

const Vec4 debugColor(0.4f, 0.4f, 0.2f, 1.0f);

constexpr float STEADY_MARGIN = 0.25f; ///< part of the cone's half angle by which the light may turn off a steady map
/// Radians by which a steady map is rolled. Upright and level edges, which houses are made of, would lie along its rows
/// and jump a whole texel at once when the light is carried past; at a slant to the rows the soft edge evens them out.
/// Measured: an edge is off its way by 0.1 texel then, where it was by 0.29; 22 degrees suit 45, too.
constexpr float STEADY_ROLL = 0.384f;

} // namespace

/// Turns the light's transform to where a steady shadow map looks, for its scope: cameras are entities, and the map's is
/// the light's own.
class LightComponent::TurnedToMap
{
public:
    TurnedToMap(LightComponent &light, TransformComponent &place) : place(place), own(place.getOrientation())
    {
        if (!light.steadyShadows)
            return;
        light.followLight(place);
        place.setOrientation(light.shadowTurn);
    }
    ~TurnedToMap() { place.setOrientation(own); }
    TurnedToMap(const TurnedToMap &) = delete;
    TurnedToMap &operator=(const TurnedToMap &) = delete;

private:
    TransformComponent &place;
    Quaternion own;
};

/// The light seen as the camera of its shadow map.
struct LightComponent::LightCamera
{
    Matrix4 worldToView;
    Matrix4 viewToProjection; ///< in the device's form

    LightCamera() = default;
    /// Makes the viewer as wide as the light's cone first.
    LightCamera(LightComponent &light, TransformComponent &transform, ViewerComponent &viewer)
    {
        typedef TransformComponent T;
        const TurnedToMap turned(light, transform);
        viewer.setVerticalFieldOfViewAngle(light.shadowAngle() * 2);
        worldToView = transform.getCameraMatrix(T::INTO_WORLD_SPACE | T::INVERT | T::OMIT_SCALE);
        viewToProjection = viewer.getProjectionMatrix(1, 1); // square, as the map is
    }
};

LightComponent::LightComponent()
{
    setCastShadows(false);
}

void LightComponent::onLoadComplete()
{
    GraphicsComponent2::onLoadComplete();
    requestMesh();
    if (!textureName.empty())
        texture = requestTexture(textureName);
    createPartitioningDummy();
    updatePartitioningDummy();
}

/// Half angle of the shadow map, radians.
float LightComponent::shadowAngle() const
{
    return steadyShadows ? spotOuterAngle * (1.0f + STEADY_MARGIN) : spotOuterAngle;
}

/// Turns a steady shadow map after the light where the cone would leave it.
void LightComponent::followLight(const TransformComponent &transform)
{
    const Quaternion now = transform.getOrientation();
    const Vec4 ahead = now.generateRotation().getColumn(2), kept = shadowTurn.generateRotation().getColumn(2);
    const bool isKnown = shadowTurn != Quaternion(0, 0, 0, 0);
    if (!isKnown || !(ahead.dot(kept) > std::cos(spotOuterAngle * STEADY_MARGIN)))
        shadowTurn = now * Quaternion::fromAxisAngle(Vec4(0, 0, 1, 0), STEADY_ROLL);
}

void LightComponent::requestMesh()
{
    static const String cone = SCS("lightCone");
    static const String sphere = SCS("unitsphere");
    mesh = handle_cast<MeshAsset>(getSystemDeref<AssetSystem>().startLoad(
        MeshAssetLoader::staticType, isSpot ? cone : sphere, nullptr, getNextRequestHandle()));
}

void LightComponent::createPartitioningDummy()
{
    const auto entity = handle_cast<Entity>(getParent()).lookup();
    if (!entity || entity->getComponent(ComponentKeys::boundingVolume).isValid() ||
        entity->getChild(names().dummy).isValid())
        return;
    const bool built = pythonGuarded(
        [&entity]
        {
            loadFromPatternToHandle(SCS("objects.GameObjects"), SCS("LightPartitioningDummy"), entity->getHandle(),
                                    names().dummy);
        });
    if (!built)
        KV_ERROR(getCurrentPythonTraceback());
}

void LightComponent::updatePartitioningDummy() const
{
    const auto entity = getParent().lookup();
    const Handle<Object> dummy = entity ? entity->getChild(names().dummy) : Handle<Object>();
    auto *volume = componentOf<BoundingVolume>(dummy, ComponentKeys::boundingVolume);
    auto *follower = componentOf<ParentFollowerComponent>(dummy, ComponentKeys::parentFollower);
    if (!volume || !follower)
        return;

    const float end = lightFalloffEnd;
    const float radius = isSpot ? end * std::tan(spotOuterAngle) : end;
    volume->setHitBox(Vec4(2 * radius, 2 * radius, isSpot ? end : 2 * end, 0));
    follower->setPositionOffset(Vec4(0, 0, isSpot ? end * 0.5f : 0.0f, 0));
    constexpr float facetMargin = 1.1f; // the flat faces of the sphere's mesh cut into the sphere
    if (TransformComponent *transform = findTransform())
        transform->setScale(isSpot ? Vec4(radius, radius, end, 0)
                                   : Vec4(facetMargin * end, facetMargin * end, facetMargin * end, 0));
}

ViewerComponent *LightComponent::findViewer() const
{
    return componentOf<ViewerComponent>(getParent(), ComponentKeys::viewer);
}

ViewerComponent *LightComponent::findShadowViewer()
{
    if (!getCastShadows() || !(steadyShadows || getSystemDeref<GraphicsSystem2>().drawsLampShadows()))
        return nullptr;
    ViewerComponent *const viewer = findViewer();
    // Told once: a frame later nothing has changed.
    KV_VERIFY(viewer || missingViewerTold, "The light of %s cannot cast shadows: it needs a component \"viewer\".",
              getParent().toString().toCString());
    missingViewerTold = !viewer;
    return viewer;
}

GraphicsSystem2::BatchRenderParams LightComponent::batchGetParams()
{
    const LightNames &n = names();
    TransformComponent *transform = findTransform();
    KV_CRITICAL_ASSERT(transform, "LightComponent had no transform sibling");
    const Matrix4 worldToView = currentWorldToView(getManager());
    const Pose pose(*transform);
    ViewerComponent *viewer = findShadowViewer();
    const LightCamera lightCamera = viewer ? LightCamera(*this, *transform, *viewer) : LightCamera();
    const bool shadowed = isSpot && viewer, hasLens = shadowed && texture.isValid();
    const GraphicsSystem2::ShaderID &spot = hasLens ? n.spotShadowsLens : shadowed ? n.spotShadowsLight : n.spotLight;

    GraphicsSystem2::BatchRenderParams params;
    params.instanceType = MVT_NONE;
    params.mesh = mesh;
    params.shaders.insert(n.defaultSet, isSpot ? spot : n.sphereLight);
    const Matrix4 modelToWorld = transform->getTransformationMatrix(TransformComponent::INTO_WORLD_SPACE);
    params.shaderConstants.emplace_back(n.modelToWorld, modelToWorld.transpose());
    params.shaderConstants.emplace_back(n.spotInnerAngleCos, std::cos(spotInnerAngle));
    params.shaderConstants.emplace_back(n.spotOuterAngleCos, std::cos(spotOuterAngle));
    params.shaderConstants.emplace_back(n.lightDiffuseColor, diffuseColor);
    params.shaderConstants.emplace_back(n.lightSpecularColor, specularColor);
    params.shaderConstants.emplace_back(n.spotFalloff, spotFalloff);
    params.shaderConstants.emplace_back(n.lightFalloffBegin, lightFalloffBegin);
    params.shaderConstants.emplace_back(n.lightFalloffEnd, lightFalloffEnd);
    params.shaderConstants.emplace_back(n.lightPosition, worldToView * pose.position);
    params.shaderConstants.emplace_back(n.spotDirection, worldToView * pose.forward);
    if (shadowed)
    {
        params.shaderConstants.emplace_back(n.worldToLightView, lightCamera.worldToView.transpose());
        params.shaderConstants.emplace_back(n.lightViewToLightProjection, lightCamera.viewToProjection);
    }
    if (hasLens)
        addLens(params, worldToView * pose.right, worldToView * pose.up);
    return params;
}

/// The lens, and its axes so long that what they measure is 1 at the rim of the cone.
void LightComponent::addLens(GraphicsSystem2::BatchRenderParams &params, const Vec4 &right, const Vec4 &up) const
{
    const float rim = 1.0f / std::max(std::tan(spotOuterAngle), 1e-4f);
    params.textures.emplace_back(names().lensTexture, texture);
    params.shaderConstants.emplace_back(names().lensRight, right * rim);
    params.shaderConstants.emplace_back(names().lensUp, up * rim);
}

void LightComponent::objectDraw(BatchProxy &batch) {}

int LightComponent::objectGetInstanceCount()
{
    return 1;
}

ErrorCode LightComponent::batchPreRender()
{
    ViewerComponent *viewer = findShadowViewer();
    if (!viewer)
        return ErrorCode::SUCCESS;
    static const String eventName = SCS("Shadow Map Generation");
    const D3DPerfScopedEvent event(eventName);
    const auto graph = getSceneGraph().lookup();
    TransformComponent *transform = findTransform();
    if (!graph || !transform)
        return ErrorCode::BAD_HANDLE;

    const LightCamera lightCamera(*this, *transform, *viewer);
    const TurnedToMap turned(*this, *transform);
    GraphicsSystem2::SceneRenderParams params;
    params.viewer = unchecked_handle_cast<Entity>(getParent());
    params.layer = SceneGraph::WORLD;
    params.shaderSet = names().shadowSet;
    params.bindTarget(names().shadowMap);
    params.depthTarget = names().shadowMap;
    params.clearTargets = true;
    params.clearDepth = true;
    params.fitToSquare();
    params.shaderConstants.emplace_back(names().worldToLightView, lightCamera.worldToView.transpose());
    params.shaderConstants.emplace_back(names().lightViewToLightProjection, lightCamera.viewToProjection);
    return graph->render(params);
}

Vec4 LightComponent::getBoundingSphere()
{
    TransformComponent *transform = findTransform();
    if (!transform)
        return Vec4(0, 0, 0, -1);
    // As in the shader, the cosine is the cone. A narrow one has its tip and its rim on the sphere, a wider one its rim
    // as the sphere's largest circle; from a right angle on nothing is smaller than the ball.
    constexpr float eighthTurn = 0.70710678f;
    const float cosine = isSpot ? std::cos(spotOuterAngle) : 0.0f;
    const float ahead = cosine > eighthTurn ? 0.5f / cosine : std::max(cosine, 0.0f);
    const float radius = cosine > eighthTurn ? ahead : std::sqrt(1.0f - ahead * ahead);
    const Pose pose(*transform);
    Vec4 sphere = pose.position + pose.forward * (ahead * lightFalloffEnd);
    sphere.w = radius * lightFalloffEnd;
    return sphere;
}

float LightComponent::shareAt(const Vec4 &place) const
{
    const TransformComponent *const transform = findTransform();
    if (!transform)
        return 0.0f;
    Vec4 way = place - transform->getPosition();
    way.w = 0.0f;
    const float squared = way.magnitudeSquared();
    if (!(squared < lightFalloffEnd * lightFalloffEnd))
        return 0.0f;
    const float distance = std::sqrt(squared);
    const float falloff = 1.0f / std::max(lightFalloffEnd - lightFalloffBegin, 1e-4f);
    const float left = std::min((lightFalloffEnd - distance) * falloff, 1.0f);
    const float reach = left * left;
    if (!isSpot)
        return reach;
    const Vec4 forward = transform->getOrientation().generateRotation().getColumn(2);
    return reach * shareInCone(forward.dot(way) / std::max(distance, 1e-4f));
}

/// Share of the light at an angle from its axis, by its cosine.
float LightComponent::shareInCone(float cosine) const
{
    const float outer = std::cos(spotOuterAngle);
    const float rim = 1.0f / std::max(std::cos(spotInnerAngle) - outer, 1e-4f);
    float share = std::min(std::max((cosine - outer) * rim, 0.0f), 1.0f);
    share /= std::max(share + spotFalloff * 0.1f * (1.0f - share), 1e-4f);
    return share * share * (3.0f - 2.0f * share);
}

Vec4 LightComponent::getPlace() const
{
    const TransformComponent *const transform = findTransform();
    return transform ? transform->getPosition() : Vec4(0, 0, 0, 1);
}

bool LightComponent::drawsShadows() const
{
    return isSpot && getCastShadows() && findViewer();
}

float LightComponent::getShadowNear() const
{
    const ViewerComponent *const viewer = findViewer();
    return viewer ? viewer->getNearClipDistance() : 0.0f;
}

void LightComponent::setTexture(Handle<TextureAsset> val)
{
    const auto asset = val.lookup();
    // Assets are named as their files are; one that code makes has neither.
    textureName = asset && !asset->getFileName().empty() ? asset->getName() : String();
    texture = val;
}

void LightComponent::setTextureName(const String &val)
{
    textureName = val;
    texture = val.empty() ? Handle<TextureAsset>() : requestTexture(val);
}

void LightComponent::setIsSpot(bool val)
{
    isSpot = val;
    requestMesh();
    updatePartitioningDummy();
}

void LightComponent::setSpotOuterAngle(float val)
{
    spotOuterAngle = val;
    updatePartitioningDummy();
}

void LightComponent::setLightFalloffEnd(float val)
{
    lightFalloffEnd = val;
    updatePartitioningDummy();
}

void LightComponent::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const auto collector = dcc.lookup();
    TransformComponent *transform = findTransform();
    if (!collector || !transform || !getSystemDeref<GlobalConfigSystem>().getDebugDrawLightVolumes())
        return;
    if (isSpot)
        drawRays(*collector, *transform);
    else
        drawRings(*collector, *transform);
}

void LightComponent::drawRays(DebugCollectorComponent &collector, TransformComponent &transform) const
{
    const Pose pose(transform);
    const Vec4 end = pose.position + pose.forward * lightFalloffEnd;
    const float radius = lightFalloffEnd * std::tan(spotOuterAngle);
    for (const Vec4 &toRim : {pose.right, pose.up, pose.right * -1.0f, pose.up * -1.0f})
        collector.addLine3D(pose.position, end + toRim * radius, debugColor);
}

void LightComponent::drawRings(DebugCollectorComponent &collector, TransformComponent &transform) const
{
    constexpr float step = 0.698132f; // 40 degrees, nine chords a ring
    const Pose pose(transform);
    const Vec4 planes[][2] = {{pose.right, pose.up}, {pose.up, pose.forward}, {pose.forward, pose.right}};
    for (const auto &[across, along] : planes)
        for (int chord = 0; chord < 9; ++chord)
        {
            const auto onRing = [&, across = across, along = along](int corner)
            {
                const float angle = step * static_cast<float>(corner);
                return pose.position + (across * std::cos(angle) + along * std::sin(angle)) * lightFalloffEnd;
            };
            collector.addLine3D(onRing(chord), onRing(chord + 1), debugColor);
        }
}
