#include "port/d3dx9/EffectCompiler.h"

#include "port/d3d9/Framebuffers.h"
#include "port/d3d9/VertexDeclaration.h"
#include "port/d3dx9/EffectLayout.h"

#include <regex>
#include <sstream>

namespace
{

using namespace port;

/// Line numbers carry the file's number too, as drivers lose the string number that is meant for it.
constexpr std::size_t linesPerFile = 1'000'000;
/// Code that the effect's author did not write has this number in place of a file's.
constexpr std::size_t generatedFile = 2000;

struct VertexInput
{
    const char *name;
    BYTE usage;
    BYTE index;
};

constexpr VertexInput vertexInputs[] = {
    {"POSITION", D3DDECLUSAGE_POSITION, 0},  {"NORMAL", D3DDECLUSAGE_NORMAL, 0},
    {"TANGENT", D3DDECLUSAGE_TANGENT, 0},    {"BINORMAL", D3DDECLUSAGE_BINORMAL, 0},
    {"COLOR0", D3DDECLUSAGE_COLOR, 0},       {"COLOR1", D3DDECLUSAGE_COLOR, 1},
    {"TEXCOORD0", D3DDECLUSAGE_TEXCOORD, 0}, {"TEXCOORD1", D3DDECLUSAGE_TEXCOORD, 1},
    {"TEXCOORD2", D3DDECLUSAGE_TEXCOORD, 2}, {"TEXCOORD3", D3DDECLUSAGE_TEXCOORD, 3},
    {"TEXCOORD4", D3DDECLUSAGE_TEXCOORD, 4}, {"TEXCOORD5", D3DDECLUSAGE_TEXCOORD, 5},
    {"TEXCOORD6", D3DDECLUSAGE_TEXCOORD, 6}, {"TEXCOORD7", D3DDECLUSAGE_TEXCOORD, 7},
    {"TEXCOORD8", D3DDECLUSAGE_TEXCOORD, 8}, {"TEXCOORD9", D3DDECLUSAGE_TEXCOORD, 9},
};

std::string vertexDeclarations()
{
    std::string text;
    for (const VertexInput &input : vertexInputs)
        text += "layout(location = " + std::to_string(vertexInputLocation(input.usage, input.index)) + ") in vec4 " +
                input.name + ";\n";
    return text;
}

std::string pixelDeclarations()
{
    std::string text;
    for (unsigned slot = 0; slot < maxRenderTargets; ++slot)
        text += "layout(location = " + std::to_string(slot) + ") out vec4 COLOR" + std::to_string(slot) + ";\n";
    return text;
}

std::string lineMark(SourcePlace place)
{
    return "\n#line " + std::to_string(place.file * linesPerFile + static_cast<std::size_t>(place.line)) + "\n";
}

/// The condition under which a pixel's alpha does not pass, or empty.
std::string alphaFailure(DWORD function, DWORD reference)
{
    static constexpr const char *opposites[] = {"", "true", ">=", "!=", ">", "<=", "==", "<", ""};
    std::string opposite = function < std::size(opposites) ? opposites[function] : "";
    if (opposite.empty() || opposite == "true")
        return opposite;
    return "COLOR0.a " + opposite + " " + std::to_string(static_cast<float>(reference) / 255.0f);
}

std::string shaderLog(GLuint shader)
{
    GLint length = 0;
    glGetShaderiv(shader, GL_INFO_LOG_LENGTH, &length);
    std::string log(static_cast<std::size_t>(std::max(length, 1)), '\0');
    glGetShaderInfoLog(shader, length, nullptr, log.data());
    log.resize(log.find('\0') == std::string::npos ? log.size() : log.find('\0'));
    return log;
}

std::string programLog(GLuint program)
{
    GLint length = 0;
    glGetProgramiv(program, GL_INFO_LOG_LENGTH, &length);
    std::string log(static_cast<std::size_t>(std::max(length, 1)), '\0');
    glGetProgramInfoLog(program, length, nullptr, log.data());
    log.resize(log.find('\0') == std::string::npos ? log.size() : log.find('\0'));
    return log;
}

} // namespace

namespace port
{

EffectCompiler::EffectCompiler(const EffectDescription &effect, const D3DXMACRO *defines)
    : effect(effect), head("#version 450 core" + lineMark({generatedFile, 1}))
{
    for (; defines && defines->Name; ++defines)
        head += "#define " + std::string(defines->Name) + " " + (defines->Definition ? defines->Definition : "") + "\n";
    head += declareUniforms(effect);
}

EffectCompiler::~EffectCompiler()
{
    for (const auto &[key, shader] : shaders)
        glDeleteShader(shader);
    for (GLuint program : programs)
        glDeleteProgram(program);
}

bool EffectCompiler::compileAll()
{
    for (const EffectTechnique &technique : effect.techniques)
    {
        std::vector<CompiledPass> compiled;
        for (const EffectPass &pass : technique.passes)
            compiled.push_back(compilePass({&technique, &pass}));
        passes.push_back(std::move(compiled));
    }
    return !failed;
}

EffectCompiler::AlphaTest EffectCompiler::alphaTestOf(const EffectPass &pass)
{
    AlphaTest test;
    bool enabled = false;
    for (const StateAssignment &assignment : pass.states)
    {
        if (assignment.state == D3DRS_ALPHATESTENABLE)
            enabled = assignment.value;
        else if (assignment.state == D3DRS_ALPHAFUNC)
            test.function = assignment.value;
        else if (assignment.state == D3DRS_ALPHAREF)
            test.reference = assignment.value;
    }
    return enabled ? test : AlphaTest{};
}

CompiledPass EffectCompiler::compilePass(const Position &position)
{
    const GLuint vertex = compileShader(position.pass->vertexShader, {}, position);
    const GLuint pixel = compileShader(position.pass->pixelShader, alphaTestOf(*position.pass), position);
    if (!vertex || !pixel)
        return {};
    const auto key = std::make_pair(vertex, pixel);
    if (const auto known = linked.find(key); known != linked.end())
        return known->second;
    CompiledPass compiled;
    compiled.program = link(vertex, pixel, position);
    compiled.samplers = compiled.program ? findSamplers(compiled.program) : 0;
    linked.emplace(key, compiled);
    return compiled;
}

std::string EffectCompiler::assemble(const NamedShader &shader, const AlphaTest &alphaTest) const
{
    const bool vertex = shader.stage == ShaderStage::VERTEX;
    std::string text = head + (vertex ? vertexDeclarations() : pixelDeclarations()) + "#define main kv_main\n";
    for (std::size_t index = 0; index < shader.sharedCount; ++index)
    {
        const SharedCode &shared = effect.shared[index];
        if (vertex ? shared.forVertex : shared.forPixel)
            text += lineMark(shared.code.place) + shared.code.text;
    }
    text += lineMark(shader.code.place) + shader.code.text;
    text += lineMark({generatedFile, 1}) + "#undef main\nvoid main()\n{\n";
    if (vertex)
        return text + "    gl_PointSize = kv_pointSize;\n    kv_main();\n"
                      "    gl_Position.xy += kv_pixelShift * gl_Position.w;\n}\n";
    text += "    kv_main();\n";
    const std::string failure = alphaFailure(alphaTest.function, alphaTest.reference);
    if (!failure.empty())
        text += "    if (" + failure + ")\n        discard;\n";
    return text + "}\n";
}

GLuint EffectCompiler::compileShader(std::size_t index, const AlphaTest &alphaTest, const Position &position)
{
    const auto key = std::make_pair(index, alphaTest);
    if (const auto known = shaders.find(key); known != shaders.end())
        return known->second;
    const NamedShader &source = effect.shaders[index];
    const bool vertex = source.stage == ShaderStage::VERTEX;
    const std::string text = assemble(source, alphaTest);
    const char *lines = text.c_str();
    GLuint shader = glCreateShader(vertex ? GL_VERTEX_SHADER : GL_FRAGMENT_SHADER);
    glShaderSource(shader, 1, &lines, nullptr);
    glCompileShader(shader);
    GLint compiled = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    report(shaderLog(shader), compiled, position, vertex ? "vertex shader" : "pixel shader");
    if (!compiled)
    {
        failed = true;
        glDeleteShader(shader);
        shader = 0;
    }
    shaders.emplace(key, shader);
    return shader;
}

GLuint EffectCompiler::link(GLuint vertex, GLuint pixel, const Position &position)
{
    const GLuint program = glCreateProgram();
    glAttachShader(program, vertex);
    glAttachShader(program, pixel);
    glLinkProgram(program);
    GLint isLinked = 0;
    glGetProgramiv(program, GL_LINK_STATUS, &isLinked);
    report(programLog(program), isLinked, position, "linking");
    glDetachShader(program, vertex);
    glDetachShader(program, pixel);
    if (isLinked)
    {
        programs.push_back(program);
        return program;
    }
    failed = true;
    glDeleteProgram(program);
    return 0;
}

std::uint32_t EffectCompiler::findSamplers(GLuint program) const
{
    std::uint32_t used = 0;
    for (std::size_t index = 0; index < effect.samplers.size(); ++index)
        if (glGetUniformLocation(program, effect.samplers[index].name.c_str()) >= 0)
            used |= 1u << index;
    return used;
}

/// Finds the place in a line of the driver's, which writes "string:line(column): text" or "string(line) : text", and
/// leaves its text; a line without one is about the pass as a whole.
std::string EffectCompiler::translateLine(const std::string &line, const EffectPass &pass, std::string &text) const
{
    static const std::regex withColumn(R"(^\d+:(\d+)\(\d+\): (.*)$)");
    static const std::regex withoutColumn(R"(^\d+\((\d+)\) ?: (.*)$)");
    std::smatch match;
    const bool placed = std::regex_match(line, match, withColumn) || std::regex_match(line, match, withoutColumn);
    text = placed ? match[2].str() : line;
    if (!placed)
        return effect.describe(pass.place);
    const unsigned long number = std::stoul(match[1].str());
    const SourcePlace place{number / linesPerFile, static_cast<int>(number % linesPerFile)};
    return effect.describe(place.file < effect.files.size() ? place : pass.place);
}

void EffectCompiler::report(const std::string &log, bool onlyWarnings, const Position &position, const char *part)
{
    std::istringstream lines(log);
    for (std::string line; std::getline(lines, line);)
    {
        if (line.empty() || (onlyWarnings && line.find("warning") == std::string::npos))
            continue;
        std::string text;
        const std::string place = translateLine(line, *position.pass, text);
        addLine(place + ": technique " + position.technique->name + ", pass " + position.pass->name + ", " + part +
                ": " + text + "\n");
    }
    if (!onlyWarnings && log.empty())
        addLine(effect.describe(position.pass->place) + ": technique " + position.technique->name + ", pass " +
                position.pass->name + ", " + part + ": error: the driver gives no reason\n");
}

void EffectCompiler::addLine(const std::string &line)
{
    if (output.find(line) == std::string::npos)
        output += line;
}

} // namespace port
