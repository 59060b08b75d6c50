#include "rendering/frame/GraphicsManager2.h"

#include "rendering/device/D3DPerfScopedEvent.h"
#include "rendering/debug/DebugDrawing.h"
#include "rendering/drawn/GraphicsComponent2.h"
#include "rendering/frame/MindPictureSystem.h"
#include "rendering/frame/RenderParams.h"
#include "rendering/frame/ViewerComponent.h"
#include "rendering/drawn/WholeWindow.h"

#include "assets/models/DynamicMeshAsset.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/time/TimeSystem.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Assertions.h"
#include "foundation/ProfilerScope.h"
#include "foundation/precompile.h"
#include "object/python/PythonCalls.h"
#include "object/reflection/Variant.h"
#include "object/tree/WellKnownPaths.h"
#include "port/d3d9/D3D9Extras.h"
#include "port/d3d9/d3d9errors.h"

#include <algorithm>
#include <cmath>

namespace
{

/// Names of targets, keys and parameters, made once.
struct Names
{
    const String gBuffer = SCS("GBuffer");
    const String gBuffer1 = SCS("GBuffer1");
    const String gBuffer2 = SCS("GBuffer2");
    const String gBuffer3 = SCS("GBuffer3");
    const String lBuffer = SCS("LBuffer");
    const String shadowMap = SCS("ShadowMap");
    const String occlusion = SCS("Occlusion");
    const String occlusionMean = SCS("OcclusionMean");
    const String unsettled = SCS("Unsettled");
    const String picture = SCS("Picture");
    const String screen = SCS("screen");
    const String defaultSet = SCS("Default");
    const GraphicsSystem2::ShaderID occlusionShader{SCS("test.fx"), SCS("Occlusion")};
    const GraphicsSystem2::ShaderID occlusionMeanShader{SCS("test.fx"), SCS("OcclusionMean")};
    const GraphicsSystem2::ShaderID combineShader{SCS("test.fx"), SCS("CombineTest")};
    const GraphicsSystem2::ShaderID plainCombineShader{SCS("test.fx"), SCS("CombineSteps")};
    const GraphicsSystem2::ShaderID unsettleShader{SCS("test.fx"), SCS("Unsettle")};
    const String sceneAmbient = SCS("sceneAmbient");
    const String dissolveAmount = SCS("dissolveAmount");
    const String dissolveColor = SCS("dissolveColor");
    const String time = SCS("time");
    const String insanityAmount = SCS("insanityAmount");
    const String unsettling = SCS("unsettling");
    const String starts = SCS("starts");
    const String gamma = SCS("gamma");
    const String brightness = SCS("brightness");
    const String occlusionShare = SCS("occlusionShare");
};

const Names &names()
{
    static const Names theNames;
    return theNames;
}

TransformComponent *findTransform(const Handle<Entity> &hEntity)
{
    return componentOf<TransformComponent>(hEntity, ComponentKeys::transform);
}

bool hasViewer(const Handle<Entity> &hEntity)
{
    return componentOf<ViewerComponent>(hEntity, ComponentKeys::viewer) != nullptr;
}

bool isDeviceLost(const ErrorCode &result)
{
    return result.getCode() == ErrorCode::DX_ERROR && result.getHRESULT() == D3DERR_DEVICELOST;
}

} // namespace

void GraphicsManager2::doFrame()
{
    getLiveSceneGraph();
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    if (!graphics.isDrawing())
        return;
    if (const auto level = getAncestorOfType<Coordinator>().lookup())
        provideDebugDrawing(*level);
    if (!cameraStack.empty())
        graphics.setLastFrameCamera(getCurrentCamera());
    findUnsettling();

    typedef GraphicsManager2 M;
    static constexpr ErrorCode (M::*passes[])() = {
        &M::measureAskedView, &M::generateGBuffer, &M::drawLights, &M::findOcclusion, &M::postProcessWorld,
        &M::drawWorldDebug,   &M::unsettleWorld,   &M::showWorld,  &M::drawScreen,    &M::drawScreenDebug};
    for (const auto pass : passes)
    {
        const ErrorCode result = (this->*pass)();
        if (isDeviceLost(result))
            return graphics.lostDevice();
        KV_ASSERT(result.succeeded(), result);
        if (!result.succeeded())
            return;
    }
}

void GraphicsManager2::onAddToCoordinator()
{
    sceneAmbient = getSystemDeref<GlobalConfigSystem>().getDefaultSceneAmbient();
    sceneGraph = getSystemDeref<GraphicsSystem2>().getNewSceneGraph();
    loadScreenViewer();
}

void GraphicsManager2::loadScreenViewer()
{
    static const String viewerName = SCS("ScreenViewer");
    const bool loaded =
        pythonGuarded([this] { loadFromPattern(SCS("objects.GameObjects"), viewerName, getHandle(), viewerName); });
    if (!loaded)
        KV_FATAL(getCurrentPythonTraceback());
    screenViewer = handle_cast<Entity>(getDescendantByPath(viewerName));
}

void GraphicsManager2::onMurder()
{
    if (const auto graph = sceneGraph.lookup())
        graph->murder();
    AbstractManager::onMurder();
}

Handle<AbstractComponent> GraphicsManager2::constructComponent(const ReflectorPtr &type)
{
    return constructDerived(type, GraphicsComponent2::staticType);
}

void GraphicsManager2::addComponentToManager(Handle<AbstractComponent> component, Handle<Entity> entity)
{
    // A component enters the scene graph by itself, once it knows its layer.
}

void GraphicsManager2::removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity> entity) {}

void GraphicsManager2::destroyComponent(Handle<AbstractComponent> component)
{
    const auto c = component.lookup();
    if (c && !c->isDying())
        c->murder();
}

Handle<Entity> GraphicsManager2::getCurrentCamera() const
{
    return cameraStack.empty() ? Handle<Entity>() : cameraStack.back();
}

void GraphicsManager2::setCurrentCamera(Handle<Entity> camera)
{
    if (cameraStack.empty())
        pushCamera(camera);
    else
        cameraStack.back() = camera;
}

void GraphicsManager2::pushCamera(Handle<Entity> camera)
{
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    if (!graphics.getLastFrameCamera().isValid())
        graphics.setLastFrameCamera(camera);
    cameraStack.push_back(camera);
}

void GraphicsManager2::popCamera()
{
    if (cameraStack.size() > 1)
        cameraStack.pop_back();
}

void GraphicsManager2::dropCamera(Handle<Entity> camera)
{
    std::erase(cameraStack, camera);
}

SceneGraph &GraphicsManager2::getLiveSceneGraph()
{
    const auto graph = sceneGraph.lookup();
    KV_CRITICAL_ASSERT(graph, "Lost scene graph object in graphics manager.");
    return *graph;
}

bool GraphicsManager2::hasUsableCamera()
{
    const Handle<Entity> camera = getCurrentCamera();
    if (hasViewer(camera) && findTransform(camera))
        return true;
    // Told once for each camera: a frame later nothing has changed. One that has died is as good as none.
    const auto entity = camera.lookup();
    KV_VERIFY(!entity || camera == brokenCamera,
              "The camera %s shows nothing: it needs a component \"viewer\" and a component \"transform\".",
              entity->getName().toCString());
    brokenCamera = camera;
    return false;
}

ErrorCode GraphicsManager2::depthPrepass()
{
    static const String passName = SCS("Depth Prepass");
    const D3DPerfScopedEvent passEvent(passName);
    return ErrorCode::SUCCESS;
}

void GraphicsManager2::measureView(Handle<Entity> camera)
{
    measured = camera;
    measuresView = true;
}

/// Draws what is drawn over by the frame's own passes, and counts.
ErrorCode GraphicsManager2::measureAskedView()
{
    if (!measuresView)
        return ErrorCode::SUCCESS;
    measuresView = false;
    viewCost = Vec4();
    if (!hasViewer(measured) || !findTransform(measured))
        return ErrorCode::SUCCESS;
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    IDirect3DDevice9 *const device = graphics.getDevice();
    const port::FrameStats before = port::currentFrameStats(device);
    cameraStack.push_back(measured);
    port::beginCountingPixels(device);
    ErrorCode result = generateGBuffer();
    const auto pixels = static_cast<float>(std::max(graphics.getTargetWidth() * graphics.getTargetHeight(), 1));
    viewCost.z = static_cast<float>(port::endCountingPixels(device)) / pixels;
    port::beginCountingPixels(device);
    if (result.succeeded())
        result = drawLights();
    viewCost.w = static_cast<float>(port::endCountingPixels(device)) / pixels;
    cameraStack.pop_back();
    const port::FrameStats after = port::currentFrameStats(device);
    viewCost.x = static_cast<float>(after.draws - before.draws);
    viewCost.y = static_cast<float>(after.instances - before.instances);
    return result;
}

ErrorCode GraphicsManager2::generateGBuffer()
{
    if (!hasUsableCamera())
        return ErrorCode::SUCCESS;
    static const String passName = SCS("G-Buffer Generation");
    const D3DPerfScopedEvent passEvent(passName);
    SceneGraph &graph = getLiveSceneGraph();
    GraphicsSystem2::SceneRenderParams params;
    params.viewer = getCurrentCamera();
    params.depthTarget = names().gBuffer;
    params.layer = SceneGraph::WORLD_UNCONDITIONAL;
    params.bindTarget(names().gBuffer1);
    params.bindTarget(names().gBuffer2);
    params.bindTarget(names().gBuffer3);
    params.clearTargets = true;
    params.clearDepth = true;
    ErrorCode result = graph.render(params);
    if (!result.succeeded())
        return result;

    params.layer = SceneGraph::WORLD;
    params.clearTargets = false;
    params.clearDepth = false;
    result = graph.render(params);
    if (!result.succeeded())
        return result;

    params.layer = SceneGraph::DECAL;
    params.renderTargetBindings.clear();
    params.bindTarget(names().gBuffer1);
    params.bind(names().gBuffer2, names().gBuffer2);
    params.bind(names().gBuffer3, names().gBuffer3);
    params.depthWritesEnabled = false;
    return graph.render(params);
}

ErrorCode GraphicsManager2::drawLights()
{
    if (!hasUsableCamera())
        return ErrorCode::SUCCESS;
    static const String profilerName = SCS("GraphicsManager2::drawLights");
    const ProfilerScope scope(profilerName, String());
    static const String passName = SCS("Lighting");
    const D3DPerfScopedEvent passEvent(passName);
    GraphicsSystem2::SceneRenderParams params;
    params.layer = SceneGraph::LIGHT;
    params.viewer = getCurrentCamera();
    params.depthTarget = names().gBuffer;
    params.clearTargets = true;
    params.bind(names().gBuffer1, names().gBuffer1);
    params.bind(names().gBuffer2, names().gBuffer2);
    params.bind(names().gBuffer3, names().gBuffer3);
    params.bind(names().shadowMap, names().shadowMap);
    params.bindTarget(names().lBuffer);
    return getLiveSceneGraph().render(params);
}

/// Two steps at half the size; see occlusion.fxh.
ErrorCode GraphicsManager2::findOcclusion()
{
    if (!hasUsableCamera() || !getSystemDeref<GraphicsSystem2>().drawsOcclusion())
        return ErrorCode::SUCCESS;
    static const String passName = SCS("Occlusion");
    const D3DPerfScopedEvent passEvent(passName);
    GraphicsSystem2::SceneRenderParams params;
    params.layer = SceneGraph::POST;
    params.viewer = getCurrentCamera();
    params.bind(names().gBuffer2, names().gBuffer2);
    params.bindTarget(names().occlusion);
    GraphicsSystem2::BatchRenderParams look;
    look.mesh = getSystemDeref<GraphicsSystem2>().getFullScreenQuad();
    look.shaders.insert(names().defaultSet, names().occlusionShader);
    const ErrorCode result = getLiveSceneGraph().renderOneObject(params, look);
    if (!result.succeeded())
        return result;

    params.renderTargetBindings.clear();
    params.bind(names().gBuffer2, names().gBuffer2);
    params.bind(names().occlusion, names().occlusion);
    params.bindTarget(names().occlusionMean);
    GraphicsSystem2::BatchRenderParams mean;
    mean.mesh = look.mesh;
    mean.shaders.insert(names().defaultSet, names().occlusionMeanShader);
    return getLiveSceneGraph().renderOneObject(params, mean);
}

Vec4 GraphicsManager2::getAmbientLight() const
{
    const float light = sceneAmbient * 0.1f;
    return Vec4(light, light, sceneAmbient * 0.08f, light);
}

ErrorCode GraphicsManager2::postProcessWorld()
{
    if (!hasUsableCamera())
        return ErrorCode::SUCCESS;
    static const String passName = SCS("Post-Processing (World)");
    const D3DPerfScopedEvent passEvent(passName);
    static const String combineName = SCS("Combine");
    const D3DPerfScopedEvent combineEvent(combineName);
    GraphicsSystem2::SceneRenderParams params;
    params.layer = SceneGraph::POST;
    params.viewer = getCurrentCamera();
    params.bind(names().gBuffer1, names().gBuffer1);
    params.bind(names().gBuffer2, names().gBuffer2);
    params.bind(names().gBuffer3, names().gBuffer3);
    params.bind(names().lBuffer, names().lBuffer);
    params.bind(names().occlusion, names().occlusionMean);
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    params.bindTarget(getPictureTarget());
    params.shaderConstants.emplace_back(names().gamma, graphics.getGamma());
    params.shaderConstants.emplace_back(names().brightness, graphics.getBrightness());
    params.shaderConstants.emplace_back(names().occlusionShare, graphics.drawsOcclusion() ? 1.0f : 0.0f);

    GraphicsSystem2::BatchRenderParams batch;
    batch.mesh = graphics.getFullScreenQuad();
    // Two techniques: where software draws, both sides of a shader's branch are paid for.
    batch.shaders.insert(names().defaultSet,
                         graphics.drawsAntialiased() ? names().combineShader : names().plainCombineShader);
    batch.shaderConstants.emplace_back(names().sceneAmbient, getAmbientLight());
    batch.shaderConstants.emplace_back(names().dissolveAmount, dissolveAmount);
    batch.shaderConstants.emplace_back(names().dissolveColor, dissolveColor);
    batch.shaderConstants.emplace_back(names().time, getMasterTime());
    batch.shaderConstants.emplace_back(names().insanityAmount, insanity);
    return getLiveSceneGraph().renderOneObject(params, batch);
}

ErrorCode GraphicsManager2::drawWorldDebug()
{
    if (!hasUsableCamera())
        return ErrorCode::SUCCESS;
    static const String passName = SCS("World Debug");
    const D3DPerfScopedEvent passEvent(passName);
    GraphicsSystem2::SceneRenderParams params;
    params.layer = SceneGraph::WORLD_DEBUG;
    params.viewer = getCurrentCamera();
    params.bindTarget(getPictureTarget());
    params.depthTarget = names().gBuffer;
    return getLiveSceneGraph().render(params);
}

/// Finds what a failing mind makes of the picture, as far as the player wants to see it.
void GraphicsManager2::findUnsettling()
{
    constexpr float shows = 0.1f; // a sound mind has some way to go before it does, see test.fx
    const MindPictureSystem &shares = getSystemDeref<MindPictureSystem>();
    const auto amount = [](float val) { return std::isfinite(val) ? saturate(val) : 0.0f; };
    insanity = getInsanityAmount();
    unsettling = amount(insanity) > shows
                     ? Vec4(shares.getDrain(), shares.getGrain(), shares.getPulse(), shares.getDistortion())
                     : Vec4();
    starts = Vec4(shares.getPulse() * amount(heartbeat), shares.getFlashes() * amount(flash), 0, 0);
}

/// Whether the picture is anything but as it is.
bool GraphicsManager2::isUnsettled() const
{
    return unsettling != Vec4() || starts != Vec4();
}

/// Where the world's picture is put together: in a target of its own where a failing mind looks at it.
String GraphicsManager2::getPictureTarget() const
{
    return isUnsettled() ? names().unsettled : getSystemDeref<GraphicsSystem2>().getWorldTarget();
}

/// Brings the picture over as a failing mind sees it; a sound one costs nothing.
ErrorCode GraphicsManager2::unsettleWorld()
{
    if (!isUnsettled() || !hasUsableCamera())
        return ErrorCode::SUCCESS;
    static const String passName = SCS("Unsettled mind");
    const D3DPerfScopedEvent passEvent(passName);
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    GraphicsSystem2::SceneRenderParams params;
    params.layer = SceneGraph::POST;
    params.viewer = getCurrentCamera();
    params.bind(names().picture, names().unsettled);
    params.bindTarget(graphics.getWorldTarget());
    GraphicsSystem2::BatchRenderParams batch;
    batch.mesh = graphics.getFullScreenQuad();
    batch.shaders.insert(names().defaultSet, names().unsettleShader);
    batch.shaderConstants.emplace_back(names().time, getMasterTime());
    batch.shaderConstants.emplace_back(names().insanityAmount, insanity);
    batch.shaderConstants.emplace_back(names().unsettling, unsettling);
    batch.shaderConstants.emplace_back(names().starts, starts);
    return getLiveSceneGraph().renderOneObject(params, batch);
}

ErrorCode GraphicsManager2::showWorld()
{
    if (!hasUsableCamera())
        return ErrorCode();
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    const ErrorCode result = graphics.showWorld();
    graphics.writeWorldPicture();
    return result;
}

ErrorCode GraphicsManager2::drawScreen()
{
    static const String passName = SCS("Screen-space");
    const D3DPerfScopedEvent passEvent(passName);
    return drawScreenLayer(SceneGraph::SCREEN);
}

ErrorCode GraphicsManager2::drawScreenDebug()
{
    static const String passName = SCS("Screen-space Debug");
    const D3DPerfScopedEvent passEvent(passName);
    return drawScreenLayer(SceneGraph::SCREEN_DEBUG);
}

ErrorCode GraphicsManager2::drawScreenLayer(int layer)
{
    centreScreenViewer();
    GraphicsSystem2::SceneRenderParams params;
    params.layer = static_cast<SceneGraph::Layer>(layer);
    params.viewer = screenViewer;
    params.depthTarget = names().screen;
    params.clearDepth = true;
    return getLiveSceneGraph().render(params);
}

void GraphicsManager2::centreScreenViewer()
{
    TransformComponent *transform = findTransform(screenViewer);
    KV_CRITICAL_ASSERT(transform, "Lost screen viewer object in graphics manager.");
    const WindowCoordinate size = getWholeWindow();
    transform->setPosition(Vec4(size.x * 0.5f, size.y * 0.5f, -1, 1));
}

float GraphicsManager2::getMasterTime()
{
    const auto coordinator = getAncestorOfType<Coordinator>().lookup();
    if (!coordinator)
        return 0.0f;
    const auto ticks = static_cast<double>(coordinator->getTimer(TimerNames::master).getValue());
    return static_cast<float>(ticks / static_cast<double>(getSystemDeref<TimeSystem>().getTicksPerSecond()));
}

float GraphicsManager2::getInsanityAmount()
{
    // The path ../Player/player, walked by hand: splitting it would make strings in every frame. The player's class
    // stands in a higher folder, so it is met as whatever has a sanity.
    static const String sanityName = SCS("sanity");
    const auto level = getParent().lookup();
    const auto entity = level ? level->getChild(WellKnownPaths::player).lookup() : Handle<Object>::Result{};
    const auto player = entity ? entity->getChild(ComponentKeys::player).lookup() : Handle<Object>::Result{};
    if (!player)
        return 0.0f;
    const ErrorReturn<Variant> property = player->getPropertyValue(sanityName);
    const ErrorReturn<float> sanity =
        property.succeeded() ? property.value.get<float>() : ErrorReturn<float>(property.code);
    return sanity.succeeded() ? 1.0f - sanity.value * 0.01f : 0.0f;
}
