#include "rendering/device/ShaderConstantVisitor.h"

#include "rendering/device/GraphicsSystem2.h"

ErrorCode ShaderConstantVisitor::operator()(float value) const
{
    return gfxSystem.getShaders().setVariable(effect, parameter, value);
}

ErrorCode ShaderConstantVisitor::operator()(const Vec4 &value) const
{
    static_assert(sizeof(Vec4) == 4 * sizeof(float), "a vector is handed to the effect as it lies in memory");
    return gfxSystem.getShaders().setVariable(effect, parameter, value);
}

ErrorCode ShaderConstantVisitor::operator()(const Matrix4 &value) const
{
    static_assert(sizeof(Matrix4) == 16 * sizeof(float), "a matrix is handed to the effect as it lies in memory");
    return gfxSystem.getShaders().setVariable(effect, parameter, value);
}

ErrorCode ShaderConstantVisitor::operator()(const Handle<TextureAsset> &value) const
{
    return gfxSystem.getShaders().setVariable(effect, parameter, gfxSystem.getTexturePtr(value));
}

ErrorCode ShaderConstantVisitor::setArray(const void *data, std::size_t size) const
{
    ShaderBank &shaders = gfxSystem.getShaders();
    ID3DXEffect *shader = shaders.getShaderForVariable(effect, parameter);
    return shader ? shaders.setRawVariable(shader, parameter, data, size) : ErrorCode(ErrorCode::UNKNOWN_KEY);
}
