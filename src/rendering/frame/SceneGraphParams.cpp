// SceneGraph: the constants, textures and viewport that a pass gives to an effect.
#include "rendering/frame/SceneGraph.h"

#include "rendering/frame/RenderParams.h"
#include "rendering/device/ShaderConstantVisitor.h"
#include "rendering/frame/ViewerComponent.h"
#include "rendering/drawn/WholeWindow.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Assertions.h"
#include "port/d3d9/d3d9.h"

#include <boost/variant/apply_visitor.hpp>

#include <cmath>

namespace
{

/// The parameters that every effect may read without anybody setting them for a batch.
struct ViewerConstantNames
{
    const String worldToView = SCS("worldToView");
    const String viewToWorld = SCS("viewToWorld");
    const String worldToViewInverseTranspose = SCS("worldToViewInverseTranspose");
    const String viewToProjection = SCS("viewToProjection");
    const String camFOV = SCS("camFOV");
    const String camNear = SCS("camNear");
    const String camFar = SCS("camFar");
};

/// Sets parameters of one effect until the first failure.
class ParameterSetter
{
public:
    ParameterSetter(ShaderBank &shaders_, const String &effect_) : shaders(shaders_), effect(effect_) {}

    template <class T>
    ParameterSetter &set(const String &name, const T &value)
    {
        if (result.succeeded())
            result = shaders.setVariable(effect, name, value);
        return *this;
    }

    ErrorCode result;

private:
    ShaderBank &shaders;
    const String &effect;
};

ErrorCode setConstants(GraphicsSystem2 &graphics, const String &effect, const ShaderConstantList &constants)
{
    for (const auto &[name, value] : constants)
    {
        const ErrorCode result = boost::apply_visitor(ShaderConstantVisitor(graphics, effect, name), value);
        if (!result.succeeded())
            return result;
    }
    return ErrorCode::SUCCESS;
}

/// The name of the parameter that takes the texture bound under a key; made once for each key.
const String &textureParameterName(const String &key)
{
    static std::map<String, String> names;
    String &name = names[key];
    if (name.empty())
        name = (key + SCS("_texture")).intern();
    return name;
}

} // namespace

ErrorCode SceneGraph::applyParams(const GraphicsSystem2::SceneRenderParams &params,
                                  const GraphicsSystem2::BatchRenderParams &batchParams)
{
    const GraphicsSystem2::ShaderID *shader = batchParams.shaders.find(params.shaderSet);
    if (!shader)
        return ErrorCode::UNKNOWN_KEY;
    ErrorCode result = setViewerConstants(shader->effect, params);
    if (result.succeeded())
        result = setShaderConstants(shader->effect, params, batchParams);
    if (result.succeeded())
        result = setRenderTargets(params); // batchPreRender may have bound others
    if (result.succeeded())
        result = bindTargetTextures(shader->effect, params);
    return result.succeeded() ? applyViewport(shader->effect, params) : result;
}

ErrorCode SceneGraph::setViewerConstants(const String &effect, const GraphicsSystem2::SceneRenderParams &params)
{
    static const ViewerConstantNames names;
    ViewerComponent *viewer = componentOf<ViewerComponent>(params.viewer, ComponentKeys::viewer);
    TransformComponent *transform = componentOf<TransformComponent>(params.viewer, ComponentKeys::transform);
    KV_VERIFY(viewer && transform, "A viewer lacks its component \"viewer\" or \"transform\".");
    if (!viewer || !transform)
        return ErrorCode::BAD_HANDLE;

    typedef TransformComponent T;
    const Vec4 size = params.getFittedSize();
    const auto cameraMatrix = [transform](unsigned flags)
    { return transform->getCameraMatrix(T::INTO_WORLD_SPACE | T::OMIT_SCALE | flags).transpose(); };
    return ParameterSetter(getSystemDeref<GraphicsSystem2>().getShaders(), effect)
        .set(names.worldToView, cameraMatrix(T::INVERT))
        .set(names.viewToWorld, cameraMatrix(0))
        .set(names.worldToViewInverseTranspose, cameraMatrix(T::TRANSPOSE))
        .set(names.viewToProjection, viewer->getDrawnProjectionMatrix(size.x, size.y))
        .set(names.camFOV, viewer->getFieldOfViewVector(size.x, size.y))
        .set(names.camNear, viewer->getNearClipDistance())
        .set(names.camFar, viewer->getFarClipDistance())
        .result;
}

ErrorCode SceneGraph::setShaderConstants(const String &effect, const GraphicsSystem2::SceneRenderParams &params,
                                         const GraphicsSystem2::BatchRenderParams &batchParams)
{
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    for (const auto &[name, texture] : batchParams.textures)
    {
        const ErrorCode result = graphics.getShaders().setVariable(effect, name, graphics.getTexturePtr(texture));
        if (!result.succeeded())
            return result;
    }
    const ErrorCode result = setConstants(graphics, effect, params.shaderConstants);
    return result.succeeded() ? setConstants(graphics, effect, batchParams.shaderConstants) : result;
}

ErrorCode SceneGraph::bindTargetTextures(const String &effect, const GraphicsSystem2::SceneRenderParams &params)
{
    static const String targetKey = SCS("<target>");
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    for (const auto &[key, targetName] : params.renderTargetBindings)
    {
        if (key == targetKey)
            continue;
        const ErrorReturn<IDirect3DTexture9 *> texture = graphics.getRenderTargetTexture(targetName);
        if (!texture.succeeded())
            return texture.code;
        const String &parameter = textureParameterName(key);
        const ErrorCode result = graphics.getShaders().setVariable(effect, parameter, texture.value);
        const bool unknown = result.getCode() == ErrorCode::UNKNOWN_KEY;
        KV_VERIFY(!unknown, "Unknown shader parameter `%s'.", parameter.toCString());
        if (!result.succeeded() && !unknown)
            return result;
    }
    return ErrorCode::SUCCESS;
}

ErrorCode SceneGraph::applyViewport(const String &effect, const GraphicsSystem2::SceneRenderParams &params)
{
    static const String viewportPixels = SCS("viewportPixels");
    GraphicsSystem2 &graphics = getSystemDeref<GraphicsSystem2>();
    const auto width = static_cast<float>(graphics.getTargetWidth());
    const auto height = static_cast<float>(graphics.getTargetHeight());
    const Vec4 pixels(std::trunc(width * params.viewport.x), std::trunc(height * params.viewport.y),
                      std::ceil(width * params.viewport.z), std::ceil(height * params.viewport.w));
    ErrorCode result = graphics.getShaders().setVariable(effect, viewportPixels, pixels);
    if (!result.succeeded())
        return result;
    D3DVIEWPORT9 viewport = {};
    viewport.X = static_cast<DWORD>(pixels.x);
    viewport.Y = static_cast<DWORD>(pixels.y);
    viewport.Width = static_cast<DWORD>(pixels.z);
    viewport.Height = static_cast<DWORD>(pixels.w);
    viewport.MinZ = 0.0f;
    viewport.MaxZ = 1.0f;
    result = dxCall(graphics.getDevice()->SetViewport(&viewport));
    KV_ASSERT(result.succeeded(), result);
    return result;
}
