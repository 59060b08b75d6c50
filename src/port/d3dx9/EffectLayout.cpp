#include "port/d3dx9/EffectLayout.h"

#include "port/d3d9/Device.h"

#include <algorithm>

namespace
{

using namespace port;

constexpr std::size_t vectorSize = 16;

std::size_t sizeOf(ParameterKind kind)
{
    switch (kind)
    {
    case ParameterKind::FLOAT:
        return sizeof(float);
    case ParameterKind::FLOAT4:
        return 4 * sizeof(float);
    case ParameterKind::FLOAT4X4:
        return 16 * sizeof(float);
    default:
        return sizeof(void *);
    }
}

const char *shaderType(ParameterKind kind)
{
    switch (kind)
    {
    case ParameterKind::FLOAT4:
        return "vec4 ";
    case ParameterKind::FLOAT4X4:
        return "mat4 ";
    default:
        return "float ";
    }
}

std::size_t roundUp(std::size_t value, std::size_t unit)
{
    return (value + unit - 1) / unit * unit;
}

} // namespace

namespace port
{

EffectLayout::EffectLayout(const std::vector<EffectParameter> &list)
{
    for (const EffectParameter &parameter : list)
    {
        ParameterLayout layout;
        layout.elementSize = sizeOf(parameter.kind);
        layout.elements = std::max<std::size_t>(1, parameter.elements);
        layout.valueBytes = layout.elementSize * layout.elements;
        if (parameter.kind != ParameterKind::TEXTURE)
        {
            // Only a single float lies closer than a vector to its neighbour.
            const bool packed = parameter.kind == ParameterKind::FLOAT && parameter.elements == 0;
            layout.stride = packed ? layout.elementSize : roundUp(layout.elementSize, vectorSize);
            layout.offset = roundUp(blockSize, packed ? sizeof(float) : vectorSize);
            blockSize = layout.offset + layout.stride * layout.elements;
        }
        parameters.push_back(layout);
    }
    blockSize = roundUp(blockSize, vectorSize);
}

std::string declareUniforms(const EffectDescription &effect)
{
    std::string text = "layout(std140, binding = " + std::to_string(deviceBlockBinding) +
                       ") uniform KvDevice\n{\n    vec2 kv_pixelShift;\n    float kv_pointSize;\n};\n";
    std::string members;
    for (const EffectParameter &parameter : effect.parameters)
    {
        if (parameter.kind == ParameterKind::TEXTURE)
            continue;
        members += "    " + std::string(shaderType(parameter.kind)) + parameter.name;
        if (parameter.elements > 0)
            members += "[" + std::to_string(parameter.elements) + "]";
        members += ";\n";
    }
    if (!members.empty())
        text += "layout(std140, binding = " + std::to_string(effectBlockBinding) + ") uniform KvEffect\n{\n" + members +
                "};\n";
    for (std::size_t unit = 0; unit < effect.samplers.size(); ++unit)
        text +=
            "layout(binding = " + std::to_string(unit) + ") uniform sampler2D " + effect.samplers[unit].name + ";\n";
    return text;
}

} // namespace port
