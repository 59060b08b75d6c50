// EffectLayout: where each parameter of an effect lies in the uniform block that all its shaders read.
#pragma once

#include "port/d3dx9/EffectDescription.h"

#include <cstddef>
#include <string>
#include <vector>

namespace port
{

/// One parameter's place. A texture has none, and counts among the textures instead.
struct ParameterLayout
{
    std::size_t valueBytes = 0;  ///< what SetValue takes
    std::size_t offset = 0;      ///< into the block
    std::size_t elements = 1;    ///< copied one by one
    std::size_t elementSize = 0; ///< bytes of one element's value
    std::size_t stride = 0;      ///< bytes from one element to the next in the block
};

/// The std140 layout of all parameters, in their order.
struct EffectLayout
{
    explicit EffectLayout(const std::vector<EffectParameter> &parameters);

    std::vector<ParameterLayout> parameters;
    std::size_t blockSize = 0; ///< bytes; 0 if there are only textures
};

/// Declarations of the uniform blocks and samplers, for the head of every shader.
std::string declareUniforms(const EffectDescription &effect);

} // namespace port
