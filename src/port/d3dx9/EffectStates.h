// EffectStates: the names that effect files use for render and sampler states and their values.
#pragma once

#include "port/d3d9/Samplers.h"
#include "port/d3d9/d3d9types.h"

#include <string_view>

namespace port
{

/// The render state of a name, such as "ZFunc"; letter case does not matter.
bool findRenderState(std::string_view name, D3DRENDERSTATETYPE &state);

/// The number behind a value's name for that state, such as "LessEqual"; letter case does not matter.
bool findRenderStateValue(D3DRENDERSTATETYPE state, std::string_view name, DWORD &value);

/// Whether the state holds a float, such as DepthBias.
bool isFloatState(D3DRENDERSTATETYPE state);

/// Sets one sampler state, such as "MinFilter", from a value's name or number.
/// @return false for an unknown name or value
bool setSamplerState(SamplerStates &states, std::string_view name, std::string_view value);

} // namespace port
