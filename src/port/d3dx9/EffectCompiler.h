// EffectCompiler: turns the passes of an effect into programs of the graphics library.
#pragma once

#include "port/d3dx9/EffectDescription.h"
#include "port/d3dx9/d3dx9effect.h"

#include <cstdint>
#include <epoxy/gl.h>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace port
{

/// A pass that is ready to draw.
struct CompiledPass
{
    GLuint program = 0;
    std::uint32_t samplers = 0; ///< bit per sampler that its shaders read
};

/// Compiles each shader once, however many passes name it, and each pair of shaders into one program.
///
/// Owns the programs until they are taken over.
class EffectCompiler
{
public:
    EffectCompiler(const EffectDescription &effect, const D3DXMACRO *defines);
    ~EffectCompiler();
    EffectCompiler(const EffectCompiler &) = delete;
    EffectCompiler &operator=(const EffectCompiler &) = delete;

    /// Compiles every pass; what the driver says about each gathers in getOutput().
    /// @return false if one of them failed
    bool compileAll();

    /// Compiled passes by technique and pass.
    const std::vector<std::vector<CompiledPass>> &getPasses() const { return passes; }
    /// Hands the programs over to the caller, who deletes them.
    std::vector<GLuint> takePrograms() { return std::exchange(programs, {}); }
    /// Errors and warnings, each line as "file(line): technique ..., pass ..., vertex shader: text".
    const std::string &getOutput() const { return output; }

private:
    /// How a pass wants its pixels tested, which is compiled into its shader.
    struct AlphaTest
    {
        DWORD function = D3DCMP_ALWAYS;
        DWORD reference = 0;
        auto operator<=>(const AlphaTest &) const = default;
    };
    /// Where the pass in work stands, for messages.
    struct Position
    {
        const EffectTechnique *technique;
        const EffectPass *pass;
    };

    static AlphaTest alphaTestOf(const EffectPass &pass);
    CompiledPass compilePass(const Position &position);
    GLuint compileShader(std::size_t index, const AlphaTest &alphaTest, const Position &position);
    GLuint link(GLuint vertex, GLuint pixel, const Position &position);
    std::string assemble(const NamedShader &shader, const AlphaTest &alphaTest) const;
    std::uint32_t findSamplers(GLuint program) const;
    void report(const std::string &log, bool onlyWarnings, const Position &position, const char *part);
    void addLine(const std::string &line);
    std::string translateLine(const std::string &line, const EffectPass &pass, std::string &text) const;

    const EffectDescription &effect;
    std::string head; ///< version, definitions and uniforms, the same for every shader
    std::map<std::pair<std::size_t, AlphaTest>, GLuint> shaders;
    std::map<std::pair<GLuint, GLuint>, CompiledPass> linked;
    std::vector<GLuint> programs;
    std::vector<std::vector<CompiledPass>> passes;
    std::string output;
    bool failed = false;
};

} // namespace port
