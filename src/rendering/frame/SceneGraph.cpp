#include "rendering/frame/SceneGraph.h"

#include "rendering/device/BatchProxy.h"
#include "rendering/device/D3DPerfScopedEvent.h"
#include "rendering/drawn/GraphicsComponent2.h"
#include "rendering/frame/RenderParams.h"
#include "rendering/frame/SceneGraphScratch.h"

#include "foundation/Assertions.h"
#include "object/reflection/EnumText.h"
#include "port/d3d9/d3d9.h"

#include <algorithm>

namespace
{

/// "SceneGraph::render " and the layer's name, made once.
const String &renderEventName(SceneGraph::Layer layer)
{
    static const std::vector<String> names = []
    {
        std::vector<String> made;
        made.reserve(SceneGraph::NUM_LAYERS);
        for (int i = 0; i < SceneGraph::NUM_LAYERS; ++i)
            made.push_back(SCS("SceneGraph::render ") + enumToString(static_cast<SceneGraph::Layer>(i)));
        return made;
    }();
    return names[static_cast<std::size_t>(layer)];
}

bool isLayer(SceneGraph::Layer layer)
{
    return layer >= 0 && layer < SceneGraph::NUM_LAYERS;
}

bool isCulled(SceneGraph::Layer layer)
{
    return layer == SceneGraph::WORLD || layer == SceneGraph::DECAL || layer == SceneGraph::LIGHT;
}

/// Whether a component takes part in a pass at all.
bool takesPart(const GraphicsComponent2 &component, const String &shaderSet)
{
    static const String shadowSet = SCS("Shadow");
    return component.getVisible() && (component.getCastShadows() || shaderSet != shadowSet);
}

} // namespace

SceneGraph::SceneGraph() = default;
SceneGraph::~SceneGraph() = default;

void SceneGraph::addComponent(Handle<GraphicsComponent2> component)
{
    const auto c = component.lookup();
    if (c && isLayer(c->getLayer()))
        layers[c->getLayer()].push_back(component);
}

void SceneGraph::removeComponent(Handle<GraphicsComponent2> component)
{
    const auto c = component.lookup();
    if (!c || !isLayer(c->getLayer()))
        return;
    LayerComponentList &list = layers[c->getLayer()];
    const auto entry = std::find(list.begin(), list.end(), component);
    if (entry != list.end())
        list.erase(entry);
}

int SceneGraph::getLayerSize(Layer layer) const
{
    return isLayer(layer) ? static_cast<int>(layers[layer].size()) : 0;
}

const SceneGraph::LayerComponentList &SceneGraph::getLayerComponents(Layer layer) const
{
    static const LayerComponentList none;
    return isLayer(layer) ? layers[layer] : none;
}

ErrorCode SceneGraph::render(const GraphicsSystem2::SceneRenderParams &params)
{
    KV_CRITICAL_ASSERT(isLayer(params.layer), "SceneGraph::render called for layer %i, which is none.",
                       static_cast<int>(params.layer));
    const D3DPerfScopedEvent event(renderEventName(params.layer));
    ErrorCode result = clearBuffers(params);
    if (!result.succeeded())
        return result;
    if (layers[params.layer].empty())
        return result; // nothing of this layer can be found, in a grid neither
    ScratchScope lists(*this);
    if (!isCulled(params.layer))
    {
        // The list itself is kept sorted, so that the next frame finds it so; what is drawn may change it meanwhile.
        sortBatches(layers[params.layer]);
        lists->objectsToDraw = layers[params.layer];
        return renderSortedBatches(lists->objectsToDraw, params);
    }
    result = collectVisibleObjects(params, *lists);
    return result.succeeded() ? sortListIntoBatchesAndRender(lists->objectsToDraw, params) : result;
}

ErrorCode SceneGraph::renderOneObject(const GraphicsSystem2::SceneRenderParams &params,
                                      const GraphicsSystem2::BatchRenderParams &batchParams)
{
    static const String eventName = SCS("SceneGraph::renderOneObject");
    const D3DPerfScopedEvent event(eventName);
    ErrorCode result = clearBuffers(params);
    if (!result.succeeded())
        return result;
    if (!batchParams.shaders.find(params.shaderSet))
        return ErrorCode::UNKNOWN_KEY;
    result = applyParams(params, batchParams);
    if (!result.succeeded())
        return result;
    if (!getSystemDeref<GraphicsSystem2>().getMeshData(batchParams.mesh).succeeded())
        return ErrorCode::SUCCESS;
    return drawPasses(params, batchParams, MVT_NONE, 0);
}

void SceneGraph::sortBatches(LayerComponentList &objects)
{
    const auto before = [](const Handle<GraphicsComponent2> &lhs, const Handle<GraphicsComponent2> &rhs)
    {
        const auto left = lhs.lookup();
        return left ? left->batchCompare(rhs) : rhs.isValid();
    };
    if (!std::is_sorted(objects.begin(), objects.end(), before))
        std::sort(objects.begin(), objects.end(), before);
}

ErrorCode SceneGraph::sortListIntoBatchesAndRender(LayerComponentList &objects,
                                                   const GraphicsSystem2::SceneRenderParams &params)
{
    sortBatches(objects);
    return renderSortedBatches(objects, params);
}

ErrorCode SceneGraph::renderSortedBatches(LayerComponentList &objects, const GraphicsSystem2::SceneRenderParams &params)
{
    for (std::size_t begin = 0, end = 0; begin < objects.size(); begin = end)
    {
        const auto first = objects[begin].lookup();
        // In a sorted list, what the first one does not sort before is equivalent to it.
        for (end = begin + 1; end < objects.size() && first && !first->batchCompare(objects[end]);)
            ++end;
        // Where two of them meet at one depth, the picture must not change with what else was found.
        std::sort(objects.data() + begin, objects.data() + end);
        const ErrorCode result = renderBatch(params, objects.data() + begin, objects.data() + end);
        if (!result.succeeded())
            return result;
    }
    return ErrorCode::SUCCESS;
}

ErrorCode SceneGraph::renderBatch(const GraphicsSystem2::SceneRenderParams &params,
                                  const Handle<GraphicsComponent2> *begin, const Handle<GraphicsComponent2> *end)
{
    // A pass inside batchPreRender stacks its own objects on top; everything from here on is ours.
    const std::size_t firstObject = batchObjects.size();
    int total = 0;
    for (const Handle<GraphicsComponent2> *h = begin; h != end; ++h)
    {
        const auto component = h->lookup();
        KV_VERIFY(component, "Dead component found in rendering layer.");
        if (!component || !takesPart(*component, params.shaderSet))
            continue;
        batchObjects.push_back(&*component);
        total += component->objectGetInstanceCount();
    }
    const ErrorCode result =
        total > 0 ? drawBatch(params, *batchObjects[firstObject], firstObject, total) : ErrorCode();
    batchObjects.resize(firstObject);
    return result;
}

ErrorCode SceneGraph::drawBatch(const GraphicsSystem2::SceneRenderParams &params, GraphicsComponent2 &first,
                                std::size_t firstObject, int total)
{
    const GraphicsSystem2::BatchRenderParams batchParams = first.batchGetParams();
    if (!batchParams.shaders.find(params.shaderSet))
        return ErrorCode::SUCCESS; // the class takes no part in passes of this set
    ErrorCode result = first.batchPreRender();
    if (result.succeeded())
        result = applyParams(params, batchParams);
    if (!result.succeeded())
        return result;
    if (!getSystemDeref<GraphicsSystem2>().getMeshData(batchParams.mesh).succeeded())
        return ErrorCode::SUCCESS; // not loaded yet
    if (batchParams.instanceType != MVT_NONE)
        result = fillInstanceBuffer(batchParams.instanceType, firstObject, total);
    return result.succeeded() ? drawPasses(params, batchParams, batchParams.instanceType, total) : result;
}

ErrorCode SceneGraph::fillInstanceBuffer(MeshVertexType instanceType, std::size_t firstObject, int total)
{
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    const ErrorReturn<void *> memory = graphics.lockInstanceBuffer(instanceType, total);
    if (!memory.succeeded())
        return memory.code;
    BatchProxy proxy(memory.value, static_cast<std::size_t>(total),
                     graphics.getVertexDescription(instanceType).vertexSize);
    for (std::size_t i = firstObject; i < batchObjects.size(); ++i)
        batchObjects[i]->objectDraw(proxy);
    proxy.clearRemaining();
    return graphics.unlockInstanceBuffer();
}

ErrorCode SceneGraph::drawPasses(const GraphicsSystem2::SceneRenderParams &params,
                                 const GraphicsSystem2::BatchRenderParams &batchParams, MeshVertexType instanceType,
                                 int instanceCount)
{
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    if (params.layer == LIGHT)
    {
        const ErrorCode cleared = dxCall(graphics.getDevice()->Clear(0, nullptr, D3DCLEAR_STENCIL, 0, 0.0f, 0));
        if (!cleared.succeeded())
            return cleared;
    }
    const GraphicsSystem2::ShaderID &shader = *batchParams.shaders.find(params.shaderSet);
    ShaderBank &shaders = graphics.getShaders();
    ErrorCode result = shaders.setShaderTechnique(shader.effect, shader.technique);
    if (!result.succeeded())
        return result;
    const unsigned passes = shaders.BeginShader(shader.effect);
    for (unsigned pass = 0; pass < passes && result.succeeded(); ++pass)
        result = graphics.renderBatch(batchParams, params.shaderSet, pass, instanceType, instanceCount);
    shaders.EndShader(shader.effect);
    return result;
}

ErrorCode SceneGraph::clearBuffers(const GraphicsSystem2::SceneRenderParams &params)
{
    const ErrorCode result = setRenderTargets(params);
    const DWORD flags = (params.clearDepth ? D3DCLEAR_ZBUFFER : 0) | (params.clearTargets ? D3DCLEAR_TARGET : 0);
    if (!result.succeeded() || flags == 0)
        return result;
    return dxCall(getSystemDeref<GraphicsSystem2>().getDevice()->Clear(0, nullptr, flags, 0, 1.0f, 0));
}

ErrorCode SceneGraph::setRenderTargets(const GraphicsSystem2::SceneRenderParams &params)
{
    constexpr int slots = 4;
    static const String targetKey = SCS("<target>");
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    int used = 0;
    for (const auto &[key, targetName] : params.renderTargetBindings)
    {
        if (key != targetKey)
            continue;
        KV_VERIFY(used < slots, "Only one render target set may be bound as <target>. Ignored.");
        if (used == slots)
            continue;
        const ErrorCode result = graphics.useRenderTargetAndMipLevel(used++, targetName, 0);
        if (!result.succeeded())
            return result;
    }
    for (int slot = used; slot < slots; ++slot)
    {
        const ErrorCode result = graphics.useRenderTargetAndMipLevel(slot, String(), 0);
        if (!result.succeeded())
            return result;
    }
    return graphics.useDepthTarget(params.depthTarget);
}
