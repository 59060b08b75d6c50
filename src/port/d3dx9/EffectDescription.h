// EffectDescription: what an effect file says, before anything of it is compiled.
#pragma once

#include "port/d3d9/Samplers.h"
#include "port/d3d9/d3d9types.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace port
{

/// A line of one of the files that an effect is made of.
struct SourcePlace
{
    std::size_t file = 0; ///< index into EffectDescription::files
    int line = 1;
};

/// Why an effect file cannot be understood: "file(line): what".
class EffectError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

enum class ParameterKind
{
    FLOAT,
    FLOAT4,
    FLOAT4X4,
    TEXTURE
};

struct EffectParameter
{
    std::string name;
    ParameterKind kind = ParameterKind::FLOAT;
    std::size_t elements = 0;    ///< of an array; 0 for a single value
    std::vector<float> defaults; ///< as SetValue takes them; empty means zeros
    SourcePlace place;
};

struct EffectSampler
{
    std::string name;
    std::string texture; ///< parameter it reads from
    SamplerStates states;
    SourcePlace place;
};

enum class ShaderStage
{
    VERTEX,
    PIXEL
};

/// Shader code as it stands in the file, braces excluded.
struct ShaderCode
{
    std::string text;
    SourcePlace place; ///< of its first line
};

/// Code that stands in front of every shader below it, or of those of one stage.
struct SharedCode
{
    ShaderCode code;
    bool forVertex = true;
    bool forPixel = true;
};

struct NamedShader
{
    std::string name; ///< empty for one written inside its pass
    ShaderStage stage = ShaderStage::VERTEX;
    ShaderCode code;
    std::size_t sharedCount = 0; ///< shared pieces that stand above it
};

struct StateAssignment
{
    D3DRENDERSTATETYPE state;
    DWORD value;
};

struct EffectPass
{
    std::string name;
    SourcePlace place;
    std::vector<StateAssignment> states;
    std::size_t vertexShader = 0; ///< index into EffectDescription::shaders
    std::size_t pixelShader = 0;
};

struct EffectTechnique
{
    std::string name;
    std::vector<EffectPass> passes;
};

struct EffectDescription
{
    std::vector<std::string> files; ///< host paths, the effect's own first
    std::vector<EffectParameter> parameters;
    std::vector<EffectSampler> samplers;
    std::vector<SharedCode> shared;
    std::vector<NamedShader> shaders;
    std::vector<EffectTechnique> techniques;

    /// "file(line)".
    std::string describe(SourcePlace place) const;
};

} // namespace port
